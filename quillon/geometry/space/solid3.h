// The solid model of space: Solid3, the polyhedral boundary model on which the solid booleans
// work, its parts (Vertex3d, Edge3d, Face3 with holes, Normal3, Material3), the tolerant point
// index Point3Cache, and the exchange of solids in the Wavefront OBJ and MTL text formats.
//
// Conventions:
//   - a solid is a list of vertices and a list of faces that refer to them by index; edges,
//     normals and materials are further lists. Faces are planar polygons with holes;
//   - orientation: in a closed solid every outer face loop turns clockwise seen from outside and
//     every hole loop the other way, so each edge is run once in each direction by its two faces,
//     and Face3::GetNormal points outward. The swept and lofted prisms (GenCuboid with a path,
//     GenComplexCuboid) are built so whatever their input turns; the two-ring GenCuboid follows
//     its rings. By the divergence theorem the volume of such a solid, taken with the outward
//     normals, is positive;
//   - eps (given to the constructor; negative means 1e-10) is the vertex and normal merge
//     tolerance: two vertices are one when their Euclidean distance is below eps (strictly);
//   - the closed flag is true after construction and after Clear; SetClosed changes it, and
//     ImportFromObj sets it to whether the mesh read is closed;
//   - geometry never throws; the OBJ exchange answers 1 or 0; archive loads fail only by
//     ArchiveException and leave the target as it was.
//
// Solid3 is a GeometricItem3 (type id 1): GetSolid is the solid itself, Clone a heap copy owned by
// the caller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/space/face3.h"
#include "quillon/geometry/space/item3.h"
#include "quillon/geometry/space/point3_cache.h"
#include "quillon/geometry/space/point3_grid.h"
#include "quillon/geometry/space/solid3_archive.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

class Solid3 : public GeometricItem3 {
public:
    // A negative eps asks for the default 1e-10.
    explicit Solid3(double eps = -1.0);
    Solid3(const Solid3&) = default;
    Solid3(Solid3&&) = default;
    Solid3& operator=(const Solid3&) = default;
    Solid3& operator=(Solid3&&) = default;
    ~Solid3() override = default;

    // Field by field: name, every list, the closed flag and eps (the look-up indexes aside).
    bool operator==(const Solid3& o) const;

    // GeometricItem3
    Solid3* Clone() const override { return new Solid3(*this); }
    const Solid3& GetSolid() const override { return *this; }
    E_TYPEID GetTypeID() const override { return SOLID3; }
    // The solid's archive record (layout in solid3_archive.h).
    void Serialize(Archive& ar) override;
    // Moves every vertex by the isometry (p · iso), from the last vertex to the first. The
    // normal list is deliberately left as it is: callers that need turned normals rebuild them.
    // The faces' cached normals are zeroed, as derived data of the vertices.
    Solid3& operator<<=(const Isometry3& iso) override;

    // The lists. Writing vertices or normals through the non-const accessors is allowed; the
    // look-up index of GetVertexInd / AddNormal is rebuilt on its next use after any non-const
    // access to that list (keep no reference across a GetVertexInd call that you write through
    // afterwards).
    const Mvector<Vertex3d>& Vertex() const { return vertices; }
    Mvector<Vertex3d>& Vertex() {
        vertexIndex.Invalidate();
        return vertices;
    }
    const Mvector<Edge3d>& Edge() const { return edges; }
    Mvector<Edge3d>& Edge() { return edges; }
    const Mvector<Face3>& Face() const { return faces; }
    Mvector<Face3>& Face() { return faces; }
    const Mvector<Normal3>& Normal() const { return normals; }
    Mvector<Normal3>& Normal() {
        normalIndex.Invalidate();
        return normals;
    }
    const Mvector<Material3>& Material() const { return materials; }
    Mvector<Material3>& Material() { return materials; }

    const std::wstring& GetName() const { return name; }
    void SetName(std::wstring n) { name = std::move(n); }
    double GetEps() const { return eps; }
    bool GetClosed() const { return closed; }
    void SetClosed(bool c) { closed = c; }

    // Appends p (no merging) and returns its index.
    std::size_t AddVertex(const Point3& p);
    // The index of the last-added vertex whose distance from p is below eps (strictly), the
    // answer of a backward scan (recently added vertices are found first); when none is that
    // close, p is appended and its index returned. Indexed, so that n calls cost O(n).
    std::size_t GetVertexInd(const Point3& p);
    void ReserveVertex(std::size_t n) { vertices.reserve(n); }
    // With merge: the index of the last normal whose difference from n is shorter than eps;
    // otherwise, or when none is, n is appended and its index returned.
    std::size_t AddNormal(const Vector3& n, bool merge);
    std::size_t AddFace(const Face3& f);
    std::size_t AddMaterial(const Material3& m);
    // Empties every list; name and eps stay, the closed flag becomes true.
    void Clear();
    // The axis-aligned box of the vertices; false (arguments untouched) without vertices.
    bool GetExtents(Point3& min, Point3& max) const;
    // The enclosed volume by the divergence theorem over every face with its holes: positive for a
    // closed, outward-oriented solid, 0 without vertices. Meaningful for closed solids only.
    double GetVolume() const { return SignedVolume(0); }

    // Rebuilds the edge list from the faces' loops: every undirected edge once, in order of first
    // appearance (faces in order, outer loop then holes, each loop from its first corner, the
    // edge kept in the direction first met), and fills every face's edge list.
    void GenerateEdges();
    // The face (with its holes) as triangles: rows of three vertex indices, each triangle turning
    // as the outer loop does, covering the face exactly (TriangulateFaceCorners, with eps). False
    // (and no rows) for a face index out of range, a loop index out of the vertex list, or a face
    // with no area.
    bool TriangulateFace(std::size_t face, Mmatrix<std::size_t>& triangles) const;

    // A prism from a base ring of k points followed by a top ring of k points in matching order:
    // the 2k points are appended as vertices as they are, then 3k edges (for each i: base
    // (i, i+1), top (k+i, k+i+1), upright (i, k+i)), then k + 2 faces (each side face
    // (i, k+i, k+i+1, i+1), the base ring in order, the top ring reversed), indices offset by the
    // former vertex count. False (nothing added) when the count is odd or k < 3. The solid is
    // extended, not replaced; the orientation follows the rings (a base ring turning counter-
    // clockwise seen from the top ring gives outward normals).
    bool GenCuboid(const Mvector<Point3>& points);
    // A prism swept from a planar base polygon with holes along `path`, oriented outward whatever
    // the orientation of the polygons and the side of the path:
    //   - points repeating their predecessor within eps (the last compared with the first) are
    //     dropped; holes left with fewer than three points or no area are ignored;
    //   - false (nothing added) when the base keeps fewer than three points or no area (area not
    //     above eps times its longest extent), when a base or hole point lies farther than eps
    //     from the base plane, or when the path's height over that plane is not above eps;
    //   - vertices appended ring by ring: base outer ring, its copy moved by `path`, then each
    //     hole's base ring and moved copy; the base ring is reordered (reversed) so that it turns
    //     counter-clockwise seen from the path's side, holes the other way;
    //   - faces appended: the outer side faces, each hole's side faces (both as in the two-ring
    //     prism), then the base face with its holes, then the top face (outer and hole rings
    //     reversed); edges appended ring by ring as in the two-ring prism, and the faces'
    //     edge lists filled.
    // Holes are taken as given: they must lie inside the base and apart from each other.
    bool GenCuboid(const Mvector<Point3>& base, const Vector3& path, const Mmatrix<Point3>& holes);
    // A loft through m rings of `count` corresponding points each (points holds them ring after
    // ring, m = points.size() / count): consecutive rings are joined by quadrilateral side
    // faces. With `loop` false the first and the last ring are capped (m >= 2); with `loop`
    // true the last ring is joined back to the first and there are no caps (m >= 3), as for a
    // curved tube closing on itself. Vertices are appended as they are; faces come joint by
    // joint (side faces in ring order), then the caps; edges ring by ring, then the uprights of
    // each joint. The result is oriented outward (every loop reversed when the rings' order gave
    // a negative volume). False (nothing added) when count < 3, the size is not m·count with m
    // large enough, or the volume is not above eps times the surface area.
    bool GenComplexCuboid(const Mvector<Point3>& points, int count, bool loop);

    // Adds the faces of `other`: every vertex of their outer and hole loops is mapped through
    // GetVertexInd (vertices within eps of existing ones are shared). Their normal indices are
    // mapped through AddNormal(…, true), their materials to this solid's material of the same
    // name (appended when there is none); texture loops and texture vertices travel with their
    // face; the faces' edge lists are emptied (this solid's edge list is not touched: call
    // GenerateEdges). False, and nothing added, when a face of `other` refers to a vertex,
    // normal or material it does not have.
    bool Merge(const Solid3& other);

    // Writes the solid as a Wavefront OBJ file (and, when it has materials, the MTL file beside
    // it: the same name with the extension ".mtl"); 1 on success, 0 on failure (no file left
    // behind). Numbers are written with "." whatever the process locale. Faces with holes, which
    // OBJ cannot hold, are written as the triangles of TriangulateFace; a face whose normal or
    // texture loops are empty (or not of the vertex loops' shape) is written without them; a
    // face with neither writes plain " %d" corners. A face, normal or material index out of
    // range gives 0. Corners are written in loop order, so faces keep this library's clockwise-
    // from-outside turn (viewers that cull back faces by the counter-clockwise rule want
    // two-sided display). Names are written as UTF-8, control characters as '_'.
    int SavetoObj(const wchar_t* path) const;
    int SavetoObj(const std::filesystem::path& path) const;
    // Reads a Wavefront OBJ file into the solid, replacing its lists (name, eps stay; an "o"
    // statement names the solid); 1 on success, 0 on failure with the solid as it was.
    // Statements: v (3 to 7 numbers, the first three used), vn, vt (1 to 3 numbers, u and v
    // used), f (three or more corners v, v/t, v/t/n or v//n, one form per face; negative indices
    // count back from the latest element), o, g, s, usemtl, mtllib (MTL files beside the OBJ or
    // at the paths given; newmtl, Ka, Kd, Ks, d, Tr and illum are read, other MTL statements
    // skipped, a library that is missing gives no materials), comments (also after
    // statements), blank lines, "\r\n" line ends, lines continued by a final backslash; l, p and
    // the free-form statements (vp, curv, surf, ...) are accepted and ignored. Anything else, a
    // number that does not read, or an index out of range is malformed. Materials come in the
    // order the libraries define them; a name that usemtl asks for and no library defines is
    // appended with default values. Vertices and normals are kept as they are, each face's
    // texture vertices gathered into its own list; the edges are generated and the closed flag
    // set to whether every edge is run once in each direction.
    int ImportFromObj(const wchar_t* path);
    int ImportFromObj(const std::filesystem::path& path);

private:
    void Invalidate() {
        vertexIndex.Invalidate();
        normalIndex.Invalidate();
    }
    // Builds the faces' edge lists for faces [firstFace, end) from edges [firstEdge, end).
    void LinkFaceEdges(std::size_t firstFace, std::size_t firstEdge);
    // The volume enclosed by faces [firstFace, end), positive for outward-oriented loops.
    double SignedVolume(std::size_t firstFace) const;

    std::wstring name;
    Mvector<Vertex3d> vertices;
    Mvector<Edge3d> edges;
    Mvector<Face3> faces;
    Mvector<Normal3> normals;
    Mvector<Material3> materials;
    bool closed = true;
    double eps;

    // Look-up indexes over `vertices` and `normals` (not part of the value: copies rebuild them).
    Point3Grid vertexIndex;
    Point3Grid normalIndex;
};

// The solid's archive record (layout in solid3_archive.h); Serialize stores and loads through
// these.
Archive& operator<<(Archive& ar, const Solid3& s);
Archive& operator>>(Archive& ar, Solid3& s);

}  // namespace quillon
