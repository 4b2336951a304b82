// Binary archive layouts of the plane types.
//
// Doubles are 8 bytes and integers 4 bytes, little-endian, in the orders below; stored files depend
// on them, so they never change:
//   Point2, Vector2, Node2      x, y
//   Rect2                       x2, x1, y2, y1 (this order, as files have always had it)
//   Line2                       int32 status: -1 (unset, nothing follows) or 0 followed by a, b, c
//                               and the tolerance 1e-10 (read and discarded)
//   Ray2                        the Line2 record, then the start point
//   Sector2                     the Line2 record, then begin and end
//   Matrix2, Anchor2            4 doubles, rows in order
//   Matrix3x2, Linear2,         6 doubles, rows in order
//   Isometry2
//   Rotate2                     sin, cos
//   Translate2                  the vector
//   Scale2                      x, y
// A loaded line is unchecked (state 0) or unset (-1); its validity is decided on first use. Reading
// fails only by ArchiveException: endOfFile for a short archive, badSchema for a line status other
// than 0 or -1. A failed read leaves the target unchanged.
#pragma once

#include "quillon/geometry/plane/arc2.h"
#include "quillon/geometry/plane/bound_rect2.h"
#include "quillon/geometry/plane/line2.h"
#include "quillon/geometry/plane/plane_matrix.h"
#include "quillon/geometry/plane/vector2.h"
#include "quillon/platform/archive.h"

namespace quillon {

Archive& operator<<(Archive& ar, const Point2& p);
Archive& operator>>(Archive& ar, Point2& p);
Archive& operator<<(Archive& ar, const Vector2& v);
Archive& operator>>(Archive& ar, Vector2& v);
Archive& operator<<(Archive& ar, const Node2& n);
Archive& operator>>(Archive& ar, Node2& n);
Archive& operator<<(Archive& ar, const Rect2& r);
Archive& operator>>(Archive& ar, Rect2& r);
Archive& operator<<(Archive& ar, const Line2& l);
Archive& operator>>(Archive& ar, Line2& l);
Archive& operator<<(Archive& ar, const Ray2& r);
Archive& operator>>(Archive& ar, Ray2& r);
Archive& operator<<(Archive& ar, const Sector2& s);
Archive& operator>>(Archive& ar, Sector2& s);
Archive& operator<<(Archive& ar, const Matrix2& m);
Archive& operator>>(Archive& ar, Matrix2& m);
Archive& operator<<(Archive& ar, const Matrix3x2& m);
Archive& operator>>(Archive& ar, Matrix3x2& m);
Archive& operator<<(Archive& ar, const Rotate2& r);
Archive& operator>>(Archive& ar, Rotate2& r);
Archive& operator<<(Archive& ar, const Translate2& t);
Archive& operator>>(Archive& ar, Translate2& t);
Archive& operator<<(Archive& ar, const Scale2& s);
Archive& operator>>(Archive& ar, Scale2& s);
// Anchor2, Linear2 and Isometry2 travel through their Matrix2 / Matrix3x2 bases.

}  // namespace quillon
