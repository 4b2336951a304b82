#include "quillon/sections/mpoly_cpoly.h"

#include <algorithm>
#include <cmath>

#include "quillon/sections/mpoly_line.h"

namespace quillon {

CPoly::CPoly(const Point2* pts, std::size_t count) {
    if (pts != nullptr) pts_.assign(pts, pts + count);
}

void CPoly::push_back(const Point2& p) {
    if (pts_.empty()) {
        pts_.push_back(p);
        return;
    }
    const Point2& last = pts_.back();
    const Vector2 v = p - last;
    const double v2 = v.length2();
    if (v2 < kPolyZero2) return;
    if (pts_.size() >= 2) {
        const Vector2 w = last - pts_[pts_.size() - 2];
        const double w2 = w.length2();
        if (w2 < kPolyZero2) return;
        if (w * v > 0.0 && std::fabs(w % v) / (w2 * v2) < kPolyStraight) {
            pts_.back() = p;
            return;
        }
    }
    pts_.push_back(p);
}

CPoly& CPoly::compress() {
    if (pts_.size() < 3) return *this;
    std::size_t i = 1;
    while (i + 1 < pts_.size()) {
        const Vector2 in = pts_[i] - pts_[i - 1];
        const Vector2 out = pts_[i + 1] - pts_[i];
        if (std::fabs(in.angle(out)) < kPolyStraight) {
            pts_.erase(pts_.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
    return *this;
}

double CPoly::surface() const {
    const std::size_t n = pts_.size();
    if (n <= 2) return 0.0;
    double s = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& p = pts_[i];
        const Point2& q = pts_[i + 1 == n ? 0 : i + 1];
        s += (p.x - q.x) * (p.y + q.y);
    }
    return 0.5 * s;
}

short CPoly::centre(Point2* c) const {
    Point2 dummy;
    Point2& out = c != nullptr ? *c : dummy;
    out.set(0.0, 0.0);
    const std::size_t n = pts_.size();
    if (n == 0) return -1;
    // Moments about the first vertex, then carried back: the same integrals as the section code
    // but without the cancellation that far-off coordinates would cause.
    const Point2 o = pts_[0];
    double area = 0.0;
    double mx = 0.0;
    double my = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const Vector2 p = pts_[i] - o;
        const Vector2 q = pts_[i + 1 == n ? 0 : i + 1] - o;
        const double t = 0.5 * (p % q);
        area += t;
        mx += t * (p.x + q.x) / 3.0;
        my += t * (p.y + q.y) / 3.0;
    }
    if (std::fabs(area) < kPolyZero2) return -1;
    out.set(o.x + mx / area, o.y + my / area);
    return 0;
}

double CPoly::length() const {
    double s = 0.0;
    for (std::size_t i = 1; i < pts_.size(); ++i) s += pts_[i - 1].distance(pts_[i]);
    return s;
}

double CPoly::perimeter() const {
    double s = length();
    if (pts_.size() >= 2) s += pts_.back().distance(pts_.front());
    return s;
}

double CPoly::width() const {
    if (pts_.empty()) return 0.0;
    const auto [lo, hi] = std::minmax_element(
        pts_.begin(), pts_.end(), [](const Point2& p, const Point2& q) { return p.x < q.x; });
    return hi->x - lo->x;
}

double CPoly::height() const {
    if (pts_.empty()) return 0.0;
    const auto [lo, hi] = std::minmax_element(
        pts_.begin(), pts_.end(), [](const Point2& p, const Point2& q) { return p.y < q.y; });
    return hi->y - lo->y;
}

Rect2 CPoly::extents() const {
    if (pts_.empty()) return Rect2();
    Point2 lo = pts_.front();
    Point2 hi = lo;
    for (const Point2& p : pts_) {
        lo.x = std::min(lo.x, p.x);
        lo.y = std::min(lo.y, p.y);
        hi.x = std::max(hi.x, p.x);
        hi.y = std::max(hi.y, p.y);
    }
    return Rect2(lo, hi);
}

int CPoly::polygon_points() const {
    const int n = static_cast<int>(pts_.size());
    if (n < 2) return n;
    const Point2& f = pts_.front();
    const Point2& l = pts_.back();
    const bool open = std::fabs(l.x - f.x) >= kSectionEps || std::fabs(l.y - f.y) >= kSectionEps;
    return open ? n + 1 : n;
}

bool CPoly::polygon_point(int i, Point2& p) const {
    const int n = static_cast<int>(pts_.size());
    if (i >= 0 && i < n) {
        p = pts_[static_cast<std::size_t>(i)];
        return true;
    }
    if (i == n && i < polygon_points()) {
        p = pts_.front();
        return true;
    }
    return false;
}

bool CPoly::Equals(const CPoly& other, double tol) const {
    const std::size_t n = pts_.size();
    if (n != other.pts_.size()) return false;
    auto close = [tol](const Point2& p, const Point2& q) { return p.distance(q) <= tol; };
    for (std::size_t k = 0; k < n; ++k) {
        if (!close(pts_[0], other.pts_[k])) continue;
        bool forward = true;
        for (std::size_t j = 0; j < n && forward; ++j) {
            forward = close(pts_[j], other.pts_[(k + j) % n]);
        }
        if (forward) return true;
        bool backward = true;
        for (std::size_t j = 0; j < n && backward; ++j) {
            backward = close(pts_[j], other.pts_[(k + n - j) % n]);
        }
        if (backward) return true;
    }
    return false;
}

}  // namespace quillon
