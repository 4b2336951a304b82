// Plane primitives: the vocabulary of all two-dimensional work in Quillon.
//
// Value types only (copyable, no heap, no virtual operations): Point2, Vector2, Node2; Line2, Ray2,
// Sector2 (a finite segment); Circle2, Arc2; Rect2, BoundRect2; the transforms Matrix2, Matrix3x2,
// Rotate2, Translate2, Scale2, Anchor2, Linear2, Isometry2 with the _Mat_Mat family of builders;
// the local frame Local2; and their binary archive layouts.
//
// Conventions shared by everything built on these types:
//   - lengths are doubles in the caller's unit; angles are radians, counter-clockwise positive,
//     from +x; arc sweeps are signed;
//   - a line's value a·x + b·y + c (and every signed distance) is negative LEFT of its direction;
//   - tolerances are absolute lengths, default 1e-10 (Line2::eps, Local2::eps); any negative
//     tolerance asks for the default; 1e-20 is the zero of squared quantities; matrices are
//     singular below |det| 2.220446049250313e-16;
//   - points are row vectors (p' = p·M) and products read "first left, then right";
//   - nothing throws: failures are false flags, std::pair<Point2, bool> results, invalid states
//     (Line2 state -1, Arc2 invalid, Local2 error state, BoundRect2 empty) or -1 codes. Only the
//     archive readers throw, and only ArchiveException;
//   - Line2 caches its validity and norm in mutable fields written by const queries: a line must
//     not be queried from two threads at once.
#pragma once

#include "quillon/geometry/plane/arc2.h"
#include "quillon/geometry/plane/bound_rect2.h"
#include "quillon/geometry/plane/line2.h"
#include "quillon/geometry/plane/local2.h"
#include "quillon/geometry/plane/plane_archive.h"
#include "quillon/geometry/plane/plane_matrix.h"
#include "quillon/geometry/plane/vector2.h"
