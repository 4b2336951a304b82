// Extrusion3: a prism swept from a plane outline with holes along a straight path, the item in
// which plates and members with openings are modelled.
//
// The outer contour and the inner contours (holes) are line-arc contours in the xy plane of the
// item's frame (a LocalPlane): the contour point (x, y) is the point (x, y, 0) · frame. The path
// is a vector in global coordinates: its direction and length are the sweep; it need not be
// perpendicular to the contours (a slanted path gives an oblique prism).
//
// GetSolid approximates every contour with LAContour::approximate(…, 48, 24, 1.0) and builds the
// prism with Solid3::GenCuboid(base, path, holes), which orders the rings itself: the base turning
// counter-clockwise seen from the path's side, every hole the other way. So the prism is closed
// and oriented outward (positive volume) for either orientation of the outer contour and of each
// hole and for either side of the path. The solid is empty when the outer contour is degenerate
// (fewer than three corners, no orientation, or an arc sweeping more than a full turn, which would
// run over itself) or when the path lies in the contours' plane (|path · z| <
// 1.1920928955078125e-7). A degenerate hole is left out.
// Holes are taken as given: they must lie inside the outer contour and apart from each other.
//
// The solid is built on the first GetSolid and cached; every setter clears the cache first, then
// stores its value. Moving (operator<<=) moves the frame and turns the path, so the solid moves
// exactly with them.
//
// Archive record (Serialize): version (int32, 1), eps (double), the frame (12 doubles: the x, y, z
// rows of its rotation, then its origin; then defined as uint8 0 or 1), the path x, y, z
// (double), the outer contour, the count of inner contours (uint32) and each inner contour; a
// contour is its edge count (uint32), then per edge type (int32, 0 straight or 1 arc), start x,
// y, centre x, y, angle (double). Loading fails by ArchiveException only and leaves the item as
// it was: badSchema for another version, a number that is not finite, or a flag or edge type
// other than 0 or 1; endOfFile for a short record.
#pragma once

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/space/cached_item3.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/solid3.h"

namespace quillon {

class Extrusion3 : public CachedItem3 {
public:
    // eps is the tolerance of the solid built (negative: 1e-10). No contours, a zero path, the
    // global frame.
    explicit Extrusion3(double eps = -1.0);

    Extrusion3* Clone() const override { return new Extrusion3(*this); }
    const Solid3& GetSolid() const override;
    E_TYPEID GetTypeID() const override { return EXTRUSION3; }
    void Serialize(Archive& ar) override;
    Extrusion3& operator<<=(const Isometry3& iso) override;

    const LocalPlane& GetLocalPlane() const { return frame; }
    void SetLocalPlane(const LocalPlane& f);
    const Vector3& GetPath() const { return path; }
    void SetPath(const Vector3& p);
    // The path becomes `length` long along its direction (a negative length turns it round). A
    // zero path has no direction: it then takes the frame's z axis, so SetLength alone gives a
    // straight prism of that height.
    void SetLength(double length);
    const LAContour& GetOuterContour() const { return outer; }
    void SetOuterContour(const LAContour& c);
    const Mvector<LAContour>& GetInnerContours() const { return inner; }
    void SetInnerContours(const Mvector<LAContour>& c);
    void AddInnerContour(const LAContour& c);
    double GetEps() const { return solid.GetEps(); }
    // No contours, a zero path, the global frame.
    void Reset();

private:
    Vector3 path;
    LAContour outer;
    Mvector<LAContour> inner;
    LocalPlane frame;
};

}  // namespace quillon
