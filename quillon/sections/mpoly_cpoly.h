// CPoly: the vertex polygon under the section code.
//
// The polygon is closed implicitly (the last vertex joins the first); the first vertex may or may
// not be repeated at the end, and every measure below gives the same result either way except
// length() (which is open by definition) and polygon_points() (which reports the closed count).
// Signed areas are positive for counter-clockwise polygons.
//
// push_back() cleans up as it goes: it drops near-duplicates and lets a straight continuation
// replace the last vertex. The constructors copy the given vertices as they are.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <vector>

#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

// Zero of squared lengths and areas in polygon clean-up (2^-46).
inline constexpr double kPolyZero2 = 1.4210854715202004e-14;
// Relative turn below which push_back() treats a new vertex as a straight continuation, and the
// angle (radians) below which compress() drops a vertex.
inline constexpr double kPolyStraight = 0.0001;

class CPoly {
public:
    CPoly() = default;
    CPoly(std::initializer_list<Point2> pts) : pts_(pts) {}
    explicit CPoly(const std::vector<Point2>& pts) : pts_(pts) {}
    CPoly(const Point2* pts, std::size_t count);

    // Appends p unless it merges with the tail:
    //  - |p - last|^2 < 2^-46: p is dropped (a duplicate);
    //  - with two vertices or more and w = last - previous: |w|^2 < 2^-46 drops p; when w.v > 0
    //    and |w x v| / (|w|^2 |v|^2) < 0.0001 (v = p - last) p replaces the last vertex.
    // The straightness measure divides by the product of the SQUARED lengths, so it is not
    // scale-free: short edges are merged more eagerly than long ones. Kept as it is because
    // existing section data was cleaned up with exactly this rule.
    void push_back(const Point2& p);

    Point2& point(std::size_t i) { return pts_[i]; }
    const Point2& point(std::size_t i) const { return pts_[i]; }
    std::size_t size() const { return pts_.size(); }
    bool empty() const { return pts_.empty(); }
    const std::vector<Point2>& points() const { return pts_; }
    std::vector<Point2>::const_iterator begin() const { return pts_.begin(); }
    std::vector<Point2>::const_iterator end() const { return pts_.end(); }

    void erase() { pts_.clear(); }
    // Drops every vertex at which the direction turns by less than 0.0001 rad (in either sense).
    // A turn back along the same line (pi) is kept.
    CPoly& compress();

    // Signed area (counter-clockwise positive); 0 for two vertices or fewer.
    double surface() const;
    // The centroid into *c: 0 on success; -1 with *c = (0, 0) when |area| < 2^-46.
    short centre(Point2* c) const;

    // Sum of the distances between successive vertices, not closed.
    double length() const;
    // length() plus the closing edge (two vertices or more).
    double perimeter() const;
    // Spread of the x and y coordinates; 0 for an empty polygon.
    double width() const;
    double height() const;
    // Bounding rectangle, lower-left then upper-right; all zero for an empty polygon.
    Rect2 extents() const;

    // The closed vertex count: size(), plus 1 when the last vertex differs from the first by
    // 1.1920928955078125e-7 or more in x or y. For fewer than two vertices, size().
    int polygon_points() const;
    // Vertex i of the closed sequence (i == size() gives the closing repeat of the first vertex
    // when polygon_points() counts one); false when i is out of range.
    bool polygon_point(int i, Point2& p) const;

    // Same vertex count and the same vertices within tol (distance), starting anywhere and running
    // either way round. Two empty polygons are not equal.
    bool Equals(const CPoly& other, double tol) const;

protected:
    std::vector<Point2>& storage() { return pts_; }

private:
    std::vector<Point2> pts_;
};

}  // namespace quillon
