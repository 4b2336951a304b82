// The fields the geometric items' archive records share (the records themselves are described in
// the items' headers). Doubles are IEEE-754 little-endian, integers little-endian in their width:
//   version     int32
//   eps         double; negative stands for the default tolerance
//   plane       n.x, n.y, n.z, d (double): the plane n·x + d = 0
//   motion      12 doubles: the x, y and z rows of the rotation, then the translation
//   frame       the motion, then defined (uint8: 0 or 1)
//   vector      x, y, z (double)
//   contour     edge count (uint32), then per edge: type (int32: 0 straight, 1 arc), start x, y,
//               centre x, y, angle (double)
// Loading throws ArchiveException only: endOfFile for a short archive, badSchema for a version
// other than the one expected, a number that is not finite, a flag other than 0 or 1 or an edge
// type other than 0 or 1. Counts are read in bounded steps, so a damaged count fails at the end
// of the data rather than reserving memory for it.
#pragma once

#include <cstdint>

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/plane3.h"
#include "quillon/platform/archive.h"

namespace quillon::detail {

void StoreVersion(Archive& ar, std::int32_t version);
// badSchema unless the stored version is `expected`.
void LoadVersion(Archive& ar, std::int32_t expected);
// A finite double (badSchema otherwise).
double LoadFinite(Archive& ar);
// A finite tolerance; negative values are kept (they ask for the default).
double LoadEps(Archive& ar);

void StorePlane(Archive& ar, const Plane3& p);
Plane3 LoadPlane(Archive& ar);
void StoreMotion(Archive& ar, const Matrix4x3& m);
Isometry3 LoadMotion(Archive& ar);
void StoreFrame(Archive& ar, const LocalPlane& f);
LocalPlane LoadFrame(Archive& ar);
void StoreVector(Archive& ar, const Vector3& v);
Vector3 LoadVector(Archive& ar);
void StoreContour(Archive& ar, const LAContour& c);
LAContour LoadContour(Archive& ar);

// A count of elements about to be read, and how many of them to reserve room for.
std::uint32_t LoadCount(Archive& ar);
std::uint32_t ReserveFor(std::uint32_t count);

}  // namespace quillon::detail
