// Binary archive layouts of the space types.
//
// Doubles are 8 bytes and integers 4 bytes, little-endian, in the orders below; stored solids and
// items depend on them, so they never change:
//   Point3, Vector3, Node3       x, y, z
//   Line3                        direction (x, y, z), origin (x, y, z), the line's own tolerance
//                                as stored (negative: the default)
//   Plane3                       normal (x, y, z), d
//   Sector3                      begin, end
//   Arc3                         begin, middle, end, tolerance
//   Matrix3, Anchor3, Rotate3    9 doubles, rows in order
//   Matrix4x3, Linear3,          12 doubles, rows in order (row 3 the translation)
//   Isometry3
//   Rotate3_X, _Y, _Z            sin, cos
//   Translate3                   the vector
//   Scale3                       x, y, z
//   LocalPlane                   the 12 doubles of its matrix, int32 defined (1 or 0), tolerance
//   LocalCoordSystem             origin, x axis, y axis, z axis, int32 defined (1 or 0), tolerance
//   LocalPlaneYPR                origin, yaw, pitch, roll
// Lines and planes carry no state: a loaded one is unchecked and its validity is decided on first
// use; an arc is rebuilt from its three points (Arc3::Set), so its derived fields never disagree
// with them. Reading fails only by ArchiveException: endOfFile for a short archive, badSchema for a
// defined flag other than 0 or 1. A failed read leaves the target unchanged.
#pragma once

#include "quillon/geometry/space/arc3.h"
#include "quillon/geometry/space/line3.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/plane3.h"
#include "quillon/geometry/space/sector3.h"
#include "quillon/geometry/space/space_matrix.h"
#include "quillon/geometry/space/vector3.h"
#include "quillon/platform/archive.h"

namespace quillon {

Archive& operator<<(Archive& ar, const Point3& p);
Archive& operator>>(Archive& ar, Point3& p);
Archive& operator<<(Archive& ar, const Vector3& v);
Archive& operator>>(Archive& ar, Vector3& v);
Archive& operator<<(Archive& ar, const Node3& n);
Archive& operator>>(Archive& ar, Node3& n);
Archive& operator<<(Archive& ar, const Line3& l);
Archive& operator>>(Archive& ar, Line3& l);
Archive& operator<<(Archive& ar, const Plane3& pl);
Archive& operator>>(Archive& ar, Plane3& pl);
Archive& operator<<(Archive& ar, const Sector3& s);
Archive& operator>>(Archive& ar, Sector3& s);
Archive& operator<<(Archive& ar, const Arc3& a);
Archive& operator>>(Archive& ar, Arc3& a);
Archive& operator<<(Archive& ar, const Matrix3& m);
Archive& operator>>(Archive& ar, Matrix3& m);
Archive& operator<<(Archive& ar, const Matrix4x3& m);
Archive& operator>>(Archive& ar, Matrix4x3& m);
Archive& operator<<(Archive& ar, const Rotate3_X& r);
Archive& operator>>(Archive& ar, Rotate3_X& r);
Archive& operator<<(Archive& ar, const Rotate3_Y& r);
Archive& operator>>(Archive& ar, Rotate3_Y& r);
Archive& operator<<(Archive& ar, const Rotate3_Z& r);
Archive& operator>>(Archive& ar, Rotate3_Z& r);
Archive& operator<<(Archive& ar, const Translate3& t);
Archive& operator>>(Archive& ar, Translate3& t);
Archive& operator<<(Archive& ar, const Scale3& s);
Archive& operator>>(Archive& ar, Scale3& s);
Archive& operator<<(Archive& ar, const LocalPlane& f);
Archive& operator>>(Archive& ar, LocalPlane& f);
Archive& operator<<(Archive& ar, const LocalCoordSystem& s);
Archive& operator>>(Archive& ar, LocalCoordSystem& s);
Archive& operator<<(Archive& ar, const LocalPlaneYPR& f);
Archive& operator>>(Archive& ar, LocalPlaneYPR& f);
// Anchor3, Rotate3, Linear3 and Isometry3 travel through their Matrix3 / Matrix4x3 bases.

}  // namespace quillon
