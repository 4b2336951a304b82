#include "quillon/geometry/space/detail/item_rings.h"

#include <cmath>
#include <numbers>

namespace quillon::detail {

ContourRing ApproximateRing(const LAContour& contour) {
    // An arc of more than a full turn runs over itself: no outline has one.
    constexpr double kFullTurn = 2.0 * std::numbers::pi + 1e-9;
    for (const LAEdge& e : contour) {
        const bool overTurn = !(std::fabs(e.angle) <= kFullTurn);  // mutate: off (at the limit)
        if (e.type == 1 && overTurn) return {};
    }
    LAContour approx;
    contour.approximate(approx, 48, 24, 1.0);
    ContourRing ring;
    ring.points.reserve(approx.size());
    for (const LAEdge& e : approx) ring.points.push_back(e.start);
    ring.orientation = approx.orientation();
    return ring;
}

Mvector<Point3> PlaceRing(const ContourRing& ring, const Matrix4x3& frame) {
    Mvector<Point3> out;
    out.reserve(ring.points.size());
    for (const Point2& p : ring.points) out.push_back(Point3(p) * frame);
    return out;
}

}  // namespace quillon::detail
