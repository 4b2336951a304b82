// Boolean operations on boundary solids: subtraction, union, intersection and the split of two
// solids into all their pieces.
//
// Solid3Inter holds the working data of one pair of operands. Its preparation (MakeInterData)
// runs in this order, and the first step that fails ends it:
//   1. PrepareData: one shared vertex list for both operands (points closer than eps become one
//      vertex), the undirected edges of each operand, one working face per face;
//   2. GenSecondaryData: each face's unit normal, plane, local frame and plane polygons, and the
//      box trees over faces and edges (error bit 0x200 when a face has no normal);
//   3. CutEdges(1), CutEdges(2): the edges of one operand are cut by the faces of the other;
//   4. SetEdgeVertexStatus: every edge is classed outside (1), inside (2) or on the other solid's
//      boundary (4); inside-ness spreads to the vertices;
//   5. GenrateNewEdges: the segments along which faces of the two solids meet become edges of
//      both faces;
//   6. GenerateFaces: faces crossed by new edges are replaced by the regions the edges cut them
//      into;
//   7. SetFaceStatus: every face is classed outside (1), inside (2), or as the twin of a face of
//      the other solid, of the same (8) or the opposite (16) orientation (error bit 0x80 when a
//      face's edge list does not match its loop).
// BoolOper then picks faces by owner and class (the selection table is in BoolOper).
//
// Conventions: the operands are closed solids whose outer face loops turn clockwise seen from
// outside (Face3::GetNormal points out), holes the other way. Every tolerance test uses eps, the
// larger of the operands' own. Nothing throws except std::bad_alloc; failures come back as false
// with bits in GetErrorStat:
//   0x0080  a face's edge list and vertex loop differ in length
//   0x0100  an operand's face refers to a vertex the operand does not have
//   0x0200  the faces' secondary data could not be built (a face without area or normal)
//   0x0400  a face could not be rebuilt along its new edges (a loop did not close, or a hole
//           lay in no region): the cuts were inconsistent, typically faces meeting at a tangent
//           or at a distance close to eps
//   0x0800  a point could not be classed inside or outside (every probe ray grazed an edge)
//   0x1000  the selected faces do not form a closed surface although both operands are closed
// The work grows like n log n in the number of faces when few of them meet: every search of
// faces near an edge, a point or a ray goes through a box tree.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/space/detail/box_tree.h"
#include "quillon/geometry/space/detail/point_pool.h"
#include "quillon/geometry/space/detail/ring2.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/solid3.h"

namespace quillon {

// Which operand a face or an edge comes from; masks combine them (7 selects every owner).
enum E_OWNER : int { OWNER_FIRST = 1, OWNER_SECOND = 2, OWNER_ALL = 7 };

// The class of a face (and, for the first three values, of an edge) against the other solid.
enum E_STATUS : int {
    STATUS_OUTSIDE = 1,
    STATUS_INSIDE = 2,
    STATUS_BOUNDARY = 4,       // on the other solid's boundary; transient for faces
    STATUS_SAME_TWIN = 8,      // coincides with a face of the other solid, same orientation
    STATUS_OPPOSITE_TWIN = 16  // coincides with a face of the other solid, opposite orientation
};

enum EBOOL_OPER : int {
    BOOL_SUBTRACT = 1,  // first minus second
    BOOL_UNION = 2,
    BOOL_INTERSECT = 3,
    BOOL_ALL_PIECES = 4  // every piece of both solids
};

// One row of a face selection: faces whose owner is in `owner` and whose status is in `status`
// are copied, with their orientation reversed when `reverse` is set.
struct CSelSolidParam {
    int owner = 0;
    int status = 0;
    bool reverse = false;
};

// A working edge: an undirected edge of one operand (or a piece of one after cutting, or a new
// edge along which the faces of the two operands meet).
struct Edge3Inter {
    std::uint32_t v0 = 0;
    std::uint32_t v1 = 0;
    int owner = 0;
    int status = STATUS_OUTSIDE;
    bool generated = false;  // a new edge, made where faces of the two operands meet
};

// A working face: loops of indices into the working vertices, with an edge list corner for
// corner (the edge leaving each corner), and the face's derived data.
struct Face3Inter {
    static constexpr std::uint32_t noTwin = 0x7fffffffu;

    Mvector<std::uint32_t> loop;
    Mmatrix<std::uint32_t> holes;
    Mvector<std::uint32_t> edges;      // parallel to `loop`
    Mmatrix<std::uint32_t> holeEdges;  // parallel to `holes`
    Vector3 normal;                    // unit, pointing out of its solid
    int status = STATUS_BOUNDARY;
    std::uint32_t twin = noTwin;  // unset when 0x7fffffff or more
    int owner = 0;
    std::uint32_t source = 0;  // the operand face it comes from (index in that operand)
    int material = -1;
    bool alive = true;  // false once the face has been replaced by its pieces

    // Derived (GenSecondaryData): the plane n·x + d = 0 (n = normal), a frame in the plane whose
    // z axis points into the solid (so the outer loop turns counter-clockwise in it), and the
    // loops as plane polygons in that frame. The pieces of a rebuilt face share its plane and
    // frame and leave the polygons empty: theirs come from their loops where needed.
    double d = 0.0;
    LocalPlane frame;
    detail::Ring2 outline;
    std::vector<detail::Ring2> holeOutlines;
    detail::Box3 box;

    bool hasTwin() const { return twin < noTwin; }
};

class Solid3Inter {
public:
    // Error bits of GetErrorStat.
    static constexpr int errInconsistentFace = 0x80;
    static constexpr int errBadOperand = 0x100;
    static constexpr int errSecondaryData = 0x200;
    static constexpr int errFaceRebuild = 0x400;
    static constexpr int errUnclassified = 0x800;
    static constexpr int errNotClosed = 0x1000;

    // The first operand is referenced (it must outlive this object), the second copied.
    Solid3Inter(const Solid3& first, const Solid3& second);
    // A temporary first operand would be gone before the operation reads it.
    Solid3Inter(Solid3&& first, const Solid3& second) = delete;

    // Runs the preparation steps in order; true when all succeeded (the object is then ready).
    bool MakeInterData();
    // Adds to `result` (callers clear it first) the faces the operation
    // selects, by owner and status:
    //   1 subtraction:   (first, outside or opposite twin, as is); (second, inside, reversed)
    //   2 union:         (first, outside or same twin, as is);     (second, outside, as is)
    //   3 intersection:  (first, inside or same twin, as is);      (second, inside, as is)
    //   4 all pieces:    (every owner, outside, inside or either twin, as is)
    // Coincident faces come from the first operand only, so no face is emitted twice. False when
    // not ready, for an operator outside 1 to 4 (result untouched), or — with bit 0x1000 — when
    // both operands are closed and the result is not (it then holds the selected faces). The
    // result's closed flag tells whether all its faces form a closed surface: every edge run as
    // often one way as the other (solids touching along an edge unite into a surface whose edge
    // there is run twice each way). The pieces of operation 4 are both surfaces cut along each
    // other: closed, enclosing |first| + |second|.
    bool BoolOper(EBOOL_OPER op, Solid3& result);
    int GetErrorStat() const { return errorStat; }
    bool IsReady() const { return ready; }

    // Copies every face whose owner and status match a row (see BoolOper) into `result`, which is
    // extended; vertices are shared through its GetVertexInd, materials of the operands are
    // appended to its own as needed. Returns the number of faces copied.
    int SelectSolidData(const Mvector<CSelSolidParam>& params, Solid3& result);

    // Whether faces i and j coincide: their unit normals parallel or opposite (within eps), both
    // with at least three corners and as many, the first corner of i found in j, and the next (or
    // else the previous) corner of j equal to the second of i. `status` becomes 16 for opposite
    // normals, 8 for parallel ones. Corners are compared as points within eps.
    bool AreTwinFaces(std::size_t i, std::size_t j, E_STATUS& status) const;

    // The preparation steps (MakeInterData runs them in this order).
    bool PrepareData();
    bool GenSecondaryData();
    // Cuts the edges of `owner` (1 or 2) by the faces of the other operand. A point where an
    // edge meets a face (inside it or on its outline, not inside one of its holes; an edge lying
    // in the face's plane meets it where it crosses the face's outline or holes) splits the edge,
    // unless it lies within eps of one of the edge's ends: that end is then marked as lying on the
    // other solid's boundary. Every such point is remembered with the two faces that meet there.
    bool CutEdges(int owner);
    bool SetEdgeVertexStatus();
    bool GenrateNewEdges();
    bool GenerateFaces();
    bool SetFaceStatus();

    // The working data, for inspection.
    const std::vector<Point3>& Vertices() const { return pool.points(); }
    const Mvector<int>& VertexStatus() const { return vertexStatus; }
    const Mvector<Edge3Inter>& Edges() const { return edges; }
    const Mvector<Face3Inter>& Faces() const { return faces; }
    // The faces may be adjusted between the steps (a caller running them one by one).
    Mvector<Face3Inter>& Faces() { return faces; }
    double GetEps() const { return eps; }

private:
    struct NewEdge {
        std::uint32_t face, u, w;
        bool crossing;  // the other solid passes through the face along this edge
    };

    // Splits edge e at vertex v (bookkeeping only: the edge's faces learn of v when the cut
    // edges are laid into their loops).
    void DivideEdge(std::uint32_t e, std::uint32_t v);
    void LayCutsIntoLoops();
    void CutEdgeByFace(std::uint32_t e, std::uint32_t g);
    void CutEdgeInPlane(std::uint32_t e, std::uint32_t g);
    // Vertex v of edge e lies on the plane of face g: when it lies in the face it is marked as on
    // the other solid's boundary and remembered for the faces that meet there.
    void TouchEnd(std::uint32_t v, std::uint32_t e, std::uint32_t g);
    void RecordCut(std::uint32_t e, std::uint32_t g, const Point3& x);
    void RememberPoint(std::uint32_t e, std::uint32_t g, std::uint32_t v);
    void AddNewEdge(std::uint32_t face, std::uint32_t u, std::uint32_t w, bool crossing);
    bool FillDerived(Face3Inter& f) const;
    struct RebuildScratch;  // working arrays of RebuildFace, reused from face to face
    bool RebuildFace(std::uint32_t f, std::vector<NewEdge>::const_iterator from,
                     std::vector<NewEdge>::const_iterator to, RebuildScratch& scratch);
    // 1 outside, 2 inside the solid of `owner` for a point off its boundary; 0 undecidable.
    int ClassifyPoint(const Point3& p, int owner) const;
    // Whether p lies on the boundary of the solid of `owner` (within eps of one of its faces).
    bool OnSolidBoundary(const Point3& p, int owner) const;
    // Whether the plane point (x, y) of face f lies in the face (outline and holes), with the
    // boundary counting as in.
    bool InFace(const Face3Inter& f, const Point2& q) const;
    bool OnFaceBoundary(const Face3Inter& f, const Point2& q) const;
    Point2 ToFace(const Face3Inter& f, const Point3& p) const;
    bool InteriorPoint(const Face3Inter& f, Point3& p) const;

    detail::PointPool pool;
    Mvector<int> vertexStatus;
    Mvector<Edge3Inter> edges;
    Mvector<Face3Inter> faces;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> pendingPairs;
    const Solid3& first;
    Solid3 second;
    bool ready = false;
    double eps = 0.0;
    std::size_t vertexCount = 0, edgeCount = 0, faceCount = 0;
    int errorStat = 0;

    // Index data kept between steps.
    std::vector<std::vector<std::uint32_t>> edgeFaces;  // per original edge: the faces using it
    std::vector<std::vector<std::uint32_t>> cuts;       // per original edge: vertices cutting it
    // Per pair of faces (first operand's face << 32 | second's): the vertices where they meet.
    std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> pairPoints;
    std::vector<std::uint64_t> coplanarPairs;  // pairs of faces lying in one plane
    std::vector<NewEdge> newEdges;
    detail::BoxTree faceTree[2];  // over the original faces of each owner (items: ownerFace)
    std::vector<std::uint32_t> ownerFace[2];
    std::size_t originalEdges = 0;
    std::size_t originalFaces = 0;
};

// The ready-made subtraction a − b: Solid3Inter, MakeInterData, BoolOper(1). The result is
// refused (false) when the boolean fails, when the box check is on and the result's box does not
// fit the operands' (see SetBoolSubstractChecking), or when a and b are closed and the result is
// not. `status`, when given, receives the error bits (GetErrorStat, plus 0x2000 for a box check
// failure). A refused result is left as BoolOper wrote it. Each call counts (BoolSubstractCalls).
bool BoolSubstract(const Solid3& a, const Solid3& b, Solid3& result, int* status);

// Process-wide switch of BoolSubstract's box checks (off by default). With it on, a result is
// refused unless, axis by axis within a's eps: its box lies in a's; where b (when closed) does
// not reach past a's extreme on a side, the result keeps that extreme; and an empty result needs
// a b that covers a's box.
void SetBoolSubstractChecking(bool on);
// The box rules above applied to a result of a − b: true when the result fits.
bool BoolSubstractBoxesFit(const Solid3& a, const Solid3& b, const Solid3& result);
bool GetBoolSubstractChecking();
// How many times BoolSubstract has been called in this process.
long BoolSubstractCalls();

}  // namespace quillon
