#include "quillon/sections/mpoly.h"

#include <cmath>

namespace quillon {

void AddPolygonProps(const Point2* pts, int n, double s, M_SECT_PROPStr& acc) {
    if (pts == nullptr || n < 3) return;  // mutate: off (under three vertices every sum is 0)
    // Plain locals rather than AddEdgeProps on a struct: the loop carries seven independent sums
    // and this is the hot path of large sections.
    double area = 0.0, perim = 0.0, sx = 0.0, sy = 0.0, ix = 0.0, iy = 0.0, ixy = 0.0;
    double x1 = pts[0].x;
    double y1 = pts[0].y;
    for (int i = 1; i <= n; ++i) {
        const Point2& q = pts[i == n ? 0 : i];
        const double x2 = q.x;
        const double y2 = q.y;
        const double t = 0.5 * (x1 * y2 - x2 * y1);
        const double dx = x1 - x2;
        const double dy = y1 - y2;
        const double l2 = dx * dx + dy * dy;
        area += t;
        perim += std::sqrt(l2);
        sx += t * (y1 + y2);
        sy += t * (x1 + x2);
        ix += t * (y1 * y1 + y2 * y2 + y1 * y2);
        iy += t * (x1 * x1 + x2 * x2 + x1 * x2);
        ixy += t * (x1 * y1 + x2 * y2 + 0.5 * (x1 * y2 + x2 * y1));
        x1 = x2;
        y1 = y2;
    }
    const double w = area > 0.0 ? s : -s;
    acc.area += w * area;
    acc.Sx += w * sx / 3.0;
    acc.Sy += w * sy / 3.0;
    acc.Ix += w * ix / 6.0;
    acc.Iy += w * iy / 6.0;
    acc.Ixy += w * ixy / 6.0;
    if (w > 0.0) acc.perimeter += perim;  // mutate: off (w is ±s, never 0)
}

short MPoly::get_point(int i, Point2& p) const {
    if (i < 0 || i >= num_point()) {
        p.set(0.0, 0.0);
        return 1;
    }
    p = point(static_cast<std::size_t>(i));
    return 0;
}

void MPoly::ToLocal(const Local2& frame) {
    for (Point2& p : storage()) p /= frame;
}

void MPolySet::CalcProps(M_SECT_PROPStr& props) const {
    props = M_SECT_PROPStr{};
    for (const MPoly& p : outlines) AddPolygonProps(p.tab_point(), p.num_point(), 1.0, props);
    for (const MPoly& p : holes) AddPolygonProps(p.tab_point(), p.num_point(), -1.0, props);
}

void MPolySet::ToLocal(const Local2& frame) {
    for (MPoly& p : outlines) p.ToLocal(frame);
    for (MPoly& p : holes) p.ToLocal(frame);
}

void MPolySet::Erase() {
    outlines.clear();
    holes.clear();
}

}  // namespace quillon
