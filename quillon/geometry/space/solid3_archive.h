// Binary archive layouts of the solid model. Integers are little-endian in the width given,
// doubles IEEE-754 little-endian, strings the archive's wide form; stored files depend on these
// orders, so they never change:
//   Vertex3d     x, y, z (double)
//   Normal3      x, y, z (double)
//   Edge3d       beg, end (uint32)
//   Material3    name (string), ambient r, g, b, diffuse r, g, b, specular r, g, b, opacity
//                (double), illum (int32)
//   index loop   count (uint32), then count indices (uint32)
//   loop list    count (uint32), then count index loops
//   Face3        outer loop, holes (loop list), normal loop, normal holes, texture loop,
//                texture holes, texture vertex count (uint32) and u, v (double) each, edge
//                list (index loop), material (int32), cached normal x, y, z (double)
//   Solid3       version (int32, 1), name (string), vertex count (uint32) and vertices, edge
//                count and edges, face count and faces, normal count and normals, material
//                count and materials, closed (uint8: 0 or 1), eps (double)
// Loading fails only by ArchiveException and leaves the target as it was: endOfFile for a short
// archive, badSchema for an unknown solid version or a closed flag other than 0 or 1, badIndex
// when a loaded solid's face or edge refers to a vertex, normal, texture vertex, edge or
// material it does not have. Counts are read in bounded steps, so a damaged count fails at the
// end of the data instead of reserving memory for it.
#pragma once

#include "quillon/geometry/space/face3.h"
#include "quillon/platform/archive.h"

namespace quillon {

Archive& operator<<(Archive& ar, const Vertex3d& v);
Archive& operator>>(Archive& ar, Vertex3d& v);
Archive& operator<<(Archive& ar, const Normal3& n);
Archive& operator>>(Archive& ar, Normal3& n);
Archive& operator<<(Archive& ar, const Edge3d& e);
Archive& operator>>(Archive& ar, Edge3d& e);
Archive& operator<<(Archive& ar, const Material3& m);
Archive& operator>>(Archive& ar, Material3& m);
Archive& operator<<(Archive& ar, const Face3& f);
Archive& operator>>(Archive& ar, Face3& f);

}  // namespace quillon
