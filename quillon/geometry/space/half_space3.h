// Half-spaces as geometric items: HalfSpace3, everything on one side of a plane, and
// BoundedHalfSpace3, the part of it that lies under an outline.
//
// Both stand for unbounded regions by a deliberate finite model, adequate for the structural
// members they cut: the region lies on the side of the plane opposite its normal and reaches
// 1000 deep. A HalfSpace3 is a 2000 × 2000 × 1000 box centred on the foot of the plane; models
// larger than that must not rely on it.
//
// The solid is built on the first GetSolid and cached; every setter clears the cache first. A
// degenerate plane or outline gives an empty solid. Nothing throws except Serialize, which fails
// by ArchiveException only and leaves the item as it was.
#pragma once

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/space/cached_item3.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/plane3.h"
#include "quillon/geometry/space/solid3.h"

namespace quillon {

// The side of a plane opposite its normal.
//
// GetSolid, for a half-space that has not been moved: with n the plane's normal made unit and
// scaled to 1000 and p0 the foot of the origin on the plane, u = n × (0, 0, 1), or n × (1, 0, 0)
// when |u| < 1.1920928955078125e-7 (a vertical normal), v = n × u, u and v made unit and scaled to
// 1000; the box is Solid3::GenCuboid of p0 + u + v, p0 + u − v, p0 − u − v, p0 − u + v followed
// by the same four moved by −n (closed, faces oriented outward).
//
// Moving (operator<<=) moves the plane and the box with it: the item keeps the motion it has
// received since its plane was set (the placement), builds the box above from the plane taken
// back by that motion and moves the box by it. So the solid of a moved half-space is the moved
// solid, not a box laid out anew along the global axes. SetPlane places the half-space afresh
// (the placement becomes the identity).
//
// Archive record (Serialize): version (int32, 1), eps (double), the plane n.x, n.y, n.z, d
// (double), the placement (12 doubles: the x, y, z rows of its rotation, then its translation).
// Loading fails by ArchiveException: badSchema for another version or a number that is not
// finite, endOfFile for a short record.
class HalfSpace3 : public CachedItem3 {
public:
    // eps is the tolerance of the solid built (negative: 1e-10). The plane is degenerate.
    explicit HalfSpace3(double eps = -1.0);
    HalfSpace3(const Plane3& plane, double eps = -1.0);

    HalfSpace3* Clone() const override { return new HalfSpace3(*this); }
    const Solid3& GetSolid() const override;
    E_TYPEID GetTypeID() const override { return HALF_SPACE3; }
    void Serialize(Archive& ar) override;
    HalfSpace3& operator<<=(const Isometry3& iso) override;

    // The bounding plane, in global coordinates.
    const Plane3& GetPlane() const { return plane; }
    void SetPlane(const Plane3& p);
    // The motion received since the plane was set.
    const Isometry3& GetPlacement() const { return placement; }
    double GetEps() const { return solid.GetEps(); }
    // A degenerate plane, no placement.
    void Reset();

private:
    Plane3 plane;
    Isometry3 placement;
};

// The part of a half-space that lies under an outline: a prism whose cross-section is the outline
// and which runs from the plane 1000 deep on the side opposite the plane's normal.
//
// The outline (the bound) is a line-arc contour in the xy plane of the item's frame (the global
// frame unless set): its point (x, y) is (x, y, 0) · frame. GetSolid approximates it with
// LAContour::approximate(…, 48, 24, 1.0), carries the corners onto the plane along the plane's
// normal (Plane3::projection(Vector3, Point3)) and sweeps them by −1000 n̂ with
// Solid3::GenCuboid(ring, sweep, no holes), which orders the ring itself (counter-clockwise seen
// from the sweep's side); so the prism is closed and oriented outward whatever the outline's
// orientation. The solid is empty for a degenerate plane or outline (as for Extrusion3: fewer
// than three corners, no orientation, or an arc sweeping more than a full turn), and when the
// frame's xy plane contains the normal (|n̂ · z| < 1.1920928955078125e-7: the projection would
// flatten the outline).
//
// Moving moves the plane and the frame, and so the solid exactly with them.
//
// Archive record: version (int32, 1), eps (double), the plane (4 doubles as for HalfSpace3), the
// frame (12 doubles as the placement above, then defined as uint8 0 or 1), the bound: edge count
// (uint32), then per edge type (int32, 0 straight or 1 arc), start x, y, centre x, y, angle
// (double). Loading fails as for HalfSpace3, and with badSchema for a flag or an edge type other
// than 0 or 1.
class BoundedHalfSpace3 : public CachedItem3 {
public:
    explicit BoundedHalfSpace3(double eps = -1.0);
    BoundedHalfSpace3(const Plane3& plane, const LAContour& bound, double eps = -1.0);

    BoundedHalfSpace3* Clone() const override { return new BoundedHalfSpace3(*this); }
    const Solid3& GetSolid() const override;
    E_TYPEID GetTypeID() const override { return BOUNDED_HALF_SPACE3; }
    void Serialize(Archive& ar) override;
    BoundedHalfSpace3& operator<<=(const Isometry3& iso) override;

    const Plane3& GetPlane() const { return plane; }
    void SetPlane(const Plane3& p);
    const LAContour& GetBound() const { return bound; }
    void SetBound(const LAContour& b);
    // The frame in whose xy plane the bound lies.
    const LocalPlane& GetLocalPlane() const { return frame; }
    void SetLocalPlane(const LocalPlane& f);
    double GetEps() const { return solid.GetEps(); }
    // A degenerate plane, an empty bound, the global frame.
    void Reset();

private:
    Plane3 plane;
    LAContour bound;
    LocalPlane frame;
};

}  // namespace quillon
