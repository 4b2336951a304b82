// Relations of points in space: collinearity, coplanarity, the normal of a planar polygon and the
// centre of the circle through three points.
//
// Tolerances are absolute lengths (heights of a point over a side or a face); a negative one means
// 1e-10. Nothing throws.
#pragma once

#include <cstddef>
#include <utility>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

// True when a side is shorter than e; otherwise whether the height over the longest side,
// |(b − a) × (c − b)| / max(|b − a|, |c − b|, |a − c|), is below e.
bool Collinear(const Point3& a, const Point3& b, const Point3& c, double e = -1.0);
// True for a null array or fewer than two points; otherwise every point must be collinear with the
// first and the point farthest from it (the earliest of equally far ones).
bool Collinear(const Point3* pts, std::size_t n, double e = -1.0);
// True when any three of the points are collinear; otherwise whether the height of the tetrahedron
// over its largest face, |det(b − a, c − a, d − a)| / (largest face cross product), is below e.
bool Coplanar(const Point3& a, const Point3& b, const Point3& c, const Point3& d, double e = -1.0);
// The unit normal of a planar polygon. The zero vector for fewer than three vertices or when every
// vertex from the third on is collinear (e) with the first two. Otherwise, with k the first vertex
// not collinear with them, the vertices are taken into LocalPlane(p0, p1, pk) as a Contour2 with
// tolerance e: the frame's z axis when its Orientation is negative (counter-clockwise in the
// frame), else its negation. The sign is tied to that orientation convention on purpose.
Vector3 PolyNormal(const Mvector<Point3>& pts, double e = -1.0);
// The centre of the circle through three points (Triangle3::CircleCentre with tolerance e);
// ((0, 0, 0), false) when they are collinear.
std::pair<Point3, bool> MATH_CircleCenter(const Point3& a, const Point3& b, const Point3& c,
                                          double e = -1.0);

}  // namespace quillon
