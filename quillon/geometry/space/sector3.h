// Finite segments of space.
//
// Tolerances are absolute lengths; a negative one means 1e-10. In the containment tests a point
// within about the tolerance of an end counts as that end: contained when the test is inclusive,
// not contained when it is exclusive. Nothing throws.
#pragma once

#include <utility>

#include "quillon/geometry/space/vector3.h"

namespace quillon {

class Plane3;

class Sector3 {
public:
    Point3 beg;
    Point3 end;

    Sector3() = default;
    Sector3(const Point3& b, const Point3& e) : beg(b), end(e) {}

    Sector3& set(const Point3& b, const Point3& e) {
        beg = b;
        end = e;
        return *this;
    }
    void get(Point3& b, Point3& e) const {
        b = beg;
        e = end;
    }
    const Point3& get_beg() const { return beg; }
    const Point3& get_end() const { return end; }
    double length() const { return beg.distance(end); }

    // With L the length, when e ≤ L: p is off the segment's line by less than e
    // (|(p − beg) × (end − p)| / L < e) and (p − beg)·(end − p) / L exceeds e (exclusive) or −e
    // (inclusive). A segment shorter than e contains, inclusively, the points within e of either
    // end and, exclusively, nothing.
    bool contains(const Point3& p, double e = -1.0, bool exclusive = false) const;
    // The distance from p to the segment's foot or its nearer end. *interior (cleared first) tells
    // whether that point is the perpendicular foot, which is taken when e ≤ L and
    // (p − beg)·(p − end) < −e, that is when p lies inside the sphere on the segment as diameter;
    // otherwise the nearer end is taken, the end winning a tie. This rule is kept as it stands:
    // for a point farther from the segment than half its length the answer is the distance to the
    // nearer end even where the foot falls between the ends. Null pointers are skipped.
    double distance(const Point3& p, double e = -1.0, bool* interior = nullptr,
                    Point3* nearest = nullptr) const;
    // The supporting line (default tolerance) cut with the plane; (point, true) when that
    // succeeds and the segment contains the point, else ((0, 0, 0), false).
    std::pair<Point3, bool> intersection(const Plane3& pl, double e = -1.0,
                                         bool exclusive = false) const;
    // The point where the two segments meet within e, both containing it under the same rule.
    // Crossing segments meet at the middle of the shortest link between their lines when that link
    // is shorter than e. Parallel ones (sine of the angle below 1e-10) or ones shorter than e meet
    // at the first of this begin, this end, the other's begin, the other's end that both contain.
    // ((0, 0, 0), false) when they do not meet.
    std::pair<Point3, bool> intersection(const Sector3& s, double e = -1.0,
                                         bool exclusive = false) const;
};

}  // namespace quillon
