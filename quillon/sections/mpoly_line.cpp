#include "quillon/sections/mpoly_line.h"

#include <cmath>

namespace quillon {

CLine2::CLine2(const Point2& p, const Point2& q) {
    create(p.y - q.y, q.x - p.x, p.x * q.y - q.x * p.y);
}

CLine2::CLine2(const Point2& p, double t, double d) {
    const double la = -std::cos(t);
    const double lb = -std::sin(t);
    create(la, lb, -(la * p.x + lb * p.y) + d);
}

CLine2& CLine2::create(double la, double lb, double lc) {
    a = la;
    b = lb;
    c = lc;
    valid = !(a == 0.0 && b == 0.0);
    return *this;
}

short CLine2::side(const Point2& p) const {
    const double v = a * p.x + b * p.y + c;
    if (v > 0.0) return 1;
    if (v < 0.0) return -1;
    return 0;
}

double CLine2::dist(const Point2& p) const {
    if (!valid) return 0.0;
    return std::fabs(a * p.x + b * p.y + c) / std::sqrt(a * a + b * b);
}

short LineCross(const CLine2& l1, const CLine2& l2, Point2& p) {
    // An invalid line (a = b = 0) makes d zero, so it meets nothing.
    const double d = l1.a * l2.b - l2.a * l1.b;
    if (std::fabs(d) < kSectionEps) return -1;
    p.set((l1.b * l2.c - l2.b * l1.c) / d, (l1.c * l2.a - l2.c * l1.a) / d);
    return 0;
}

}  // namespace quillon
