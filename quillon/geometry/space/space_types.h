// Space primitives: the value types of three-dimensional work in Quillon, on which solids, their
// booleans, extrusions and tubes rest.
//
// Point3, Vector3, Node3; Line3 (infinite line), Plane3, Sector3 (segment), Triangle3, Arc3; the
// transforms Matrix3, Matrix4x3, Rotate3_X/Y/Z, Rotate3, Translate3, Scale3, Anchor3, Linear3,
// Isometry3 with the _Mat_Mat family of builders and the inverses; the frames LocalPlane,
// LocalCoordSystem, LocalPlaneYPR; the point relations Collinear, Coplanar, PolyNormal,
// MATH_CircleCenter; and their binary archive layouts.
//
// Conventions shared by everything built on these types:
//   - points are row vectors (p' = p·M) and products read "first left, then right"; rotations are
//     right-handed, given by sine and cosine in that order; turning a frame by R replaces its
//     matrix M by M·R; a LocalPlane maps local to global by p * frame and back by p /= frame;
//   - a triangle's and an arc's normal is (p2 − p1) × (p3 − p2): seen from its tip the corners
//     run counter-clockwise; PolyNormal ties its sign to Contour2::Orientation (−1 for
//     counter-clockwise);
//   - tolerances are absolute lengths, default 1e-10 (Line3::eps, Plane3::eps, LocalPlane::eps,
//     LocalCoordSystem::eps); arcs default to the single-precision epsilon 1.1920928955078125e-7
//     (Arc3::eps); any negative tolerance asks for the default; 1e-20 is the zero of squared
//     quantities; matrices are singular below |det| 2.220446049250313e-16;
//   - nothing throws: degeneracy is a state (Line3 / Plane3 state -1), a false flag in a returned
//     pair, a count of 0 or an undefined frame (identity axes at the requested origin). Only the
//     archive readers throw, and only ArchiveException;
//   - Line3 and Plane3 cache their validity and root in mutable fields written by const queries:
//     one object must not be queried from two threads at once. Triangle3 refers to caller-owned
//     points.
#pragma once

#include "quillon/geometry/space/arc3.h"
#include "quillon/geometry/space/line3.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/plane3.h"
#include "quillon/geometry/space/sector3.h"
#include "quillon/geometry/space/space_archive.h"
#include "quillon/geometry/space/space_matrix.h"
#include "quillon/geometry/space/space_relations.h"
#include "quillon/geometry/space/triangle3.h"
#include "quillon/geometry/space/vector3.h"
