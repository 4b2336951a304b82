#include "quillon/geometry/space/detail/item_rings.h"

namespace quillon::detail {

ContourRing ApproximateRing(const LAContour& contour) {
    LAContour approx;
    contour.approximate(approx, 48, 24, 1.0);
    ContourRing ring;
    ring.points.reserve(approx.size());
    for (const LAEdge& e : approx) ring.points.push_back(e.start);
    ring.orientation = approx.orientation();
    return ring;
}

Mvector<Point3> PlaceRing(const ContourRing& ring, const Matrix4x3& frame, bool reversed) {
    Mvector<Point3> out;
    out.reserve(ring.points.size());
    for (const Point2& p : ring.points) out.push_back(Point3(p) * frame);
    if (reversed) out.Reverse();
    return out;
}

}  // namespace quillon::detail
