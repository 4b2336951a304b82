// The parts of a boundary solid: Vertex3d, Edge3d, Normal3, Material3 and Face3.
//
// A face is a planar polygon with holes, given by loops of indices into its solid's vertex list.
// In a closed solid the outer loop turns clockwise seen from outside the solid and every hole
// loop turns the other way, so that each edge is run once in each direction by the two faces that
// share it; `Face3::GetNormal` then points out of the solid (its sign rule is the reverse of
// `PolyNormal`'s, on purpose: it turns the clockwise loops outward).
//
// Besides its vertex loops a face carries two loops of the same shape, corner for corner:
//   - the normal loops (`normalLoop`, `normalHoles`): indices into the solid's normal list;
//   - the texture loops (`textureLoop`, `textureHoles`): indices into the face's own texture
//     vertices (`texture`, (u, v) pairs);
// either may be left empty; they count only while they have the vertex loops' shape. The face's
// edge list (`edges`) holds, corner for corner over the outer loop and then each hole, the index
// in the solid's edge list of the edge leaving that corner; `Solid3::GenerateEdges` and the prism
// generators fill it, other operations that change loops empty it.
//
// Indices are 32-bit unsigned; nothing here checks them against a solid (the solid does).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/plane/vector2.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

struct Vertex3d {
    Point3 point;

    Vertex3d() = default;
    Vertex3d(const Point3& p) : point(p) {}
    Vertex3d(double x, double y, double z) : point(x, y, z) {}
    bool operator==(const Vertex3d& o) const {
        return point.x == o.point.x && point.y == o.point.y && point.z == o.point.z;
    }
};

struct Edge3d {
    std::uint32_t beg = 0;  // vertex index of one end
    std::uint32_t end = 0;  // vertex index of the other

    Edge3d() = default;
    Edge3d(std::uint32_t b, std::uint32_t e) : beg(b), end(e) {}
    bool operator==(const Edge3d& o) const { return beg == o.beg && end == o.end; }
};

struct Normal3 {
    Vector3 vec;

    Normal3() = default;
    Normal3(const Vector3& v) : vec(v) {}
    Normal3(double x, double y, double z) : vec(x, y, z) {}
    bool operator==(const Normal3& o) const {
        return vec.x == o.vec.x && vec.y == o.vec.y && vec.z == o.vec.z;
    }
};

// A surface material as the MTL exchange carries it: colours are (r, g, b) in [0, 1], `opacity`
// is MTL's dissolve (1 opaque), `illum` its illumination model.
struct Material3 {
    std::wstring name;
    Vector3 ambient{0.2, 0.2, 0.2};   // "Ka"
    Vector3 diffuse{0.8, 0.8, 0.8};   // "Kd"
    Vector3 specular{0.0, 0.0, 0.0};  // "Ks"
    double opacity = 1.0;             // "d"
    int illum = 1;                    // "illum"

    Material3() = default;
    explicit Material3(std::wstring n) : name(std::move(n)) {}
    bool operator==(const Material3& o) const;
};

class Face3 {
public:
    Mvector<std::uint32_t> loop;          // outer loop: vertex indices in boundary order
    Mmatrix<std::uint32_t> holes;         // hole loops
    Mvector<std::uint32_t> normalLoop;    // normal indices, parallel to `loop`
    Mmatrix<std::uint32_t> normalHoles;   // parallel to `holes`
    Mvector<std::uint32_t> textureLoop;   // indices into `texture`, parallel to `loop`
    Mmatrix<std::uint32_t> textureHoles;  // parallel to `holes`
    Mvector<Point2> texture;              // the face's texture vertices (u, v)
    Mvector<std::uint32_t> edges;         // edge indices, corner for corner (see the header)
    int material = -1;                    // index into the solid's materials; negative: none
    Vector3 normal;                       // cached unit normal, zero until computed

    Face3() = default;
    // A face with the given outer loop.
    explicit Face3(Mvector<std::uint32_t> outer, int materialIndex = -1)
        : loop(std::move(outer)), material(materialIndex) {}

    // Corners of the outer loop and of every hole loop.
    std::size_t GetAllNodesCnt() const;
    // Adds k to every vertex index of the outer and hole loops (nothing for k = 0).
    void OffsetInd(std::uint32_t k);
    // Empties the face: every loop and list, no material, zero normal.
    void Reset();
    // The unit normal pointing out of a closed solid (see the header), from the outer loop's
    // vertices. The cached `normal` is returned while its length is within eps of 1; otherwise
    // it is recomputed: a = the first vertex, b = the first later one at least eps from a, c = the
    // first after b not collinear with a and b; in the frame LocalPlane(a, b, c) the loop's
    // orientation decides the sign (the frame's z when clockwise, its negation when counter-
    // clockwise). Zero when there is no such b or c, or the loop has fewer than three vertices.
    // A loop index outside `vertices` gives zero too. Changing the loop calls for zeroing
    // `normal` first.
    const Vector3& GetNormal(const Mvector<Vertex3d>& vertices, double eps);
    // Merges hole loops that share an edge run in opposite directions, in this order: for each
    // hole A, the later holes B from the last back to the one after A; with the first p, then
    // the first q, such that A[p] = B[q] and A[p + 1] = B[q − 1] (cyclically), A becomes
    // A[0..p], B[q + 1], B[q + 2], ... (|B| − 2 indices), A[p + 1..], and B is removed. Nothing
    // happens with fewer than two holes; the outer loop is never touched. Parallel normal and
    // texture hole loops are spliced alike while they have the holes' shape; the edge list is
    // emptied when anything merged.
    void GlueHoles();

    bool operator==(const Face3& o) const;
};

// The face (outer loop with its holes) as triangles whose rows hold three corner numbers: the
// outer loop's corners first, then each hole's, counted as one list. The loops are carried into a
// frame in the face's plane (origin the first vertex, z along the outer loop's area vector) and
// triangulated there as plane polygons with tolerance eps; each triangle turns as the outer loop
// does. False (and no rows) when a loop index lies outside `vertices` or the face has no area.
bool TriangulateFaceCorners(const Face3& face, const Mvector<Vertex3d>& vertices, double eps,
                            Mmatrix<std::size_t>& corners);

}  // namespace quillon
