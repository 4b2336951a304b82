// Tubes and rotation text: what the drawing and exchange of bar-like members need.
//
// BRNF_Tube3D turns a polyline in space into a closed tube mesh: rings of points with their
// normals, quadrilateral faces between consecutive rings and one polygon face at each end.
// BRNF_SetRotation / BRNF_GetRotation write a frame's orientation as an axis string with three
// angles and rebuild the frame from them. BRNF_SegmentsApprox turns plane line and arc segments
// into points.
//
// Conventions: rotations are right-handed and turn a frame by M·R (as LocalPlane::rotate); angles
// are radians; the single-precision epsilon 1.1920928955078125e-7 is the tolerance of collinear
// path points and of negligible angles. Nothing throws.
#pragma once

#include <cstddef>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/plane/vector2.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

// A plane segment: a straight line from `start` to `end`, or a circular arc from `start` about
// `centre` by the signed sweep `angle` (radians, counter-clockwise positive), which ends at `start`
// turned about `centre` by `angle` (its `end` is not used).
struct RNF_SEG {
    enum Type : short { line = 0, arc = 1 };

    short type = line;
    Point2 start;
    Point2 end;
    Point2 centre;
    double angle = 0.0;

    RNF_SEG() = default;
    // A line.
    RNF_SEG(const Point2& a, const Point2& b) : type(line), start(a), end(b) {}
    // An arc.
    RNF_SEG(const Point2& a, const Point2& c, double sweep)
        : type(arc), start(a), centre(c), angle(sweep) {}
};

// A tube of the given diameter along `path` (N points), with n = ringSegments points per ring and
// m = capSegments per end cap (-1: m = n).
//   - The outputs are emptied first; fewer than two path points give empty outputs and true.
//   - n or m below 3 gives false with empty outputs (no closed surface can be made of them).
//   - The seam follows one reference vector w for the whole tube: with p_k the first path point
//     not collinear (1.1920928955078125e-7) with p0 and p1, w = (p_k − p0) × (p1 − p_k); for a
//     straight path w = (p1 − p0) × (0, 0, 1), or (p1 − p0) × (1, 0, 0) when that is shorter than
//     1.1920928955078125e-7; false when that is short as well. Twist is deliberately not
//     minimised, and a tangent parallel to w gives a degenerate ring (all its points at the path
//     point, zero normals).
//   - Ring i (tangent t = p_(i+1) − p_(i−1), clamped at the ends) starts at p_i + r·ŝ with
//     s = t × w, r = diameter / 2, and turns by 2π / n about t; each point's normal is the unit
//     radial vector (pointing away from the path for a positive diameter).
//   - Faces, in order: for each ring after the first, one per ring segment j, with the indices
//     b − n + (j + 1) mod n, b − n + j, b + j, b + (j + 1) mod n (b the ring's first index); then
//     the start cap (m points about p0 with the normal −t̂, listed in rotation order) and the end
//     cap (m points about the last point with the normal +t̂, listed in reverse rotation order,
//     from its first point). So every face turns the same way and, with m = n, the caps' points
//     coincide with the end rings' points and every edge is shared by exactly two faces.
//   - A ring's quadrilaterals are plane when the rings at both ends of the run lie symmetric to it
//     (a straight run, or equal bends at both ends); elsewhere they are skew and are meant to be
//     split into triangles.
bool BRNF_Tube3D(Mvector<Point3>& points, Mvector<Vector3>& normals, Mmatrix<std::size_t>& faces,
                 const Mvector<Point3>& path, double diameter, int ringSegments, int capSegments);

// Writes the rotation of a defined frame as turns about the coordinate axes: `axes` receives up to
// three of the letters x, y, z and a terminating zero (room for four characters; null is allowed),
// `angles` the angle of each letter's turn (x, y, z; 0 for letters not written). Steps:
//   1. a = the polar angle of the z axis's (z, y) components; when |a| exceeds the single-precision
//      epsilon, angles.x = −a (the negated measurement, deliberately: it is the turn that
//      BRNF_GetRotation applies), "x" is written and the working frame turned by Rotate3_X(a);
//   2. b = the polar angle of the z axis's (z, x) components: angles.y = b, "y", turn by
//      Rotate3_Y(−b);
//   3. c = the polar angle of the x axis's (x, y) components: angles.z = c, "z", turn by
//      Rotate3_Z(−c);
//   4. the letters are reversed, so that they name the turns in the order they rebuild the frame.
// The axes are read as directions (tips minus origin); the origin is not part of the text. False,
// outputs untouched, for an undefined frame.
bool BRNF_SetRotation(const LocalPlane& frame, wchar_t* axes, Point3& angles);

// Rebuilds a frame from the text: the global frame turned, for each letter in order, by
// Rotate3_X(angles.x) for "x" or "X", Rotate3_Y(angles.y) for "y" or "Y", Rotate3_Z(angles.z) for
// "z" or "Z"; other characters are skipped and a null text gives the global frame. The origin is
// the global origin. Returns whether the frame is defined.
bool BRNF_GetRotation(LocalPlane& frame, const wchar_t* axes, const Point3& angles);

// The points of the segments in order: a segment's start (left out when it lies within 1e-10 of
// the point before it), then for a line its end, for an arc the points that split it into n
// equal turns, the last being its end. As LAContour::approximate's `limit / small_steps`, the
// tolerance is the angle of one step in radians: n = trunc(|angle| / tolerance), at least 1 and at
// most 100000. A tolerance that is not positive means 2π / 48 (the step of large arcs in
// extrusions). `points` is emptied first.
void BRNF_SegmentsApprox(const Mvector<RNF_SEG>& segments, Mvector<Point2>& points,
                         double tolerance);

}  // namespace quillon
