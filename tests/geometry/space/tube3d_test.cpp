#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "quillon/geometry/space/solid3.h"
#include "quillon/geometry/space/tube3d.h"
#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::ExpectNear;
using space_test::Random;
constexpr double kPi = std::numbers::pi;

struct Tube {
    Mvector<Point3> points;
    Mvector<Vector3> normals;
    Mmatrix<std::size_t> faces;
    bool ok = false;
    Tube(const Mvector<Point3>& path, double d, int ring, int cap) {
        ok = BRNF_Tube3D(points, normals, faces, path, d, ring, cap);
    }
    // The mesh as a solid, points identified by position.
    Solid3 solid() const {
        Solid3 s(1e-12);
        for (const auto& face : faces) {
            Face3 f;
            for (const std::size_t i : face)
                f.loop.push_back(static_cast<std::uint32_t>(s.GetVertexInd(points[i])));
            s.AddFace(f);
        }
        return s;
    }
};

TEST(Tube3D, RandomTubesAreClosedOutwardWithTheGivenCounts) {
    Random rnd(61);
    for (int i = 0; i < 60; ++i) {
        Mvector<Point3> path;
        const int N = 2 + i % 6, n = 3 + i % 9;
        for (int k = 0; k < N; ++k) path.Add(rnd.point(5));
        const double d = rnd(0.1, 1.0);
        const Tube t(path, d, n, -1);
        ASSERT_TRUE(t.ok);
        ASSERT_EQ(t.points.size(), static_cast<std::size_t>(N * n + 2 * n));
        ASSERT_EQ(t.faces.size(), static_cast<std::size_t>((N - 1) * n + 2));
        EXPECT_TRUE(space_test::Closed(t.solid())) << i;
        EXPECT_GT(space_test::Volume(t.solid()), 0.0) << i;
        for (int k = 0; k < N * n; ++k) {
            EXPECT_NEAR(t.points[k].distance(path[k / n]), d / 2, 1e-12);
            ExpectNear(t.normals[k], (t.points[k] - path[k / n]) / (d / 2), 1e-9);
        }
        // The cap normals point out of the ends; caps of their own size are whole polygons.
        ExpectNear(t.normals[N * n], -(path[1] - path[0]).get_normalized());
        ExpectNear(t.normals.back(), (path[N - 1] - path[N - 2]).get_normalized());
        EXPECT_EQ(Tube(path, d, n, n + 2).faces.back().size(), static_cast<std::size_t>(n + 2));
    }
    // Along a regular polygon the rings lie symmetric: the runs between interior rings are plane.
    Mvector<Point3> path;
    for (int k = 0; k < 7; ++k) path.Add(Point3(std::cos(k * 0.5), std::sin(k * 0.5), 0.3));
    const Tube t(path, 0.2, 12, -1);
    for (std::size_t f = 12; f < 5 * 12; ++f) {
        const auto& q = t.faces[f];
        EXPECT_TRUE(
            Coplanar(t.points[q[0]], t.points[q[1]], t.points[q[2]], t.points[q[3]], 1e-12));
    }
}

TEST(Tube3D, ReferenceVectorAndDegenerateInput) {
    const Tube none(Mvector<Point3>{Point3(1, 2, 3)}, 1.0, 8, -1);
    EXPECT_TRUE(none.ok && none.points.empty() && none.faces.empty());
    // Along x: w = (2, 0, 0) × (0, 0, 1) = (0, -2, 0), seam along t × w = -z. Vertical: w falls
    // back on (1, 0, 0). Bent: w from the first point off the line of the first two,
    // (2, 1, 0) × (-1, -1, 0) = (0, 0, -1), seam along (1, 0, 0) × w = +y.
    ExpectNear(Tube({Point3(0, 0, 0), Point3(2, 0, 0)}, 2.0, 4, -1).points[0], Point3(0, 0, -1));
    ExpectNear(Tube({Point3(0, 0, 0), Point3(0, 0, 3)}, 2.0, 4, -1).points[0], Point3(-1, 0, 0));
    ExpectNear(
        Tube({Point3(), Point3(1, 0, 0), Point3(2, 0, 0), Point3(2, 1, 0)}, 2.0, 4, -1).points[0],
        Point3(0, 1, 0));
    // No reference vector, too few segments: false and empty outputs.
    const Tube repeated(Mvector<Point3>{Point3(1, 1, 1), Point3(1, 1, 1), Point3(1, 1, 1)}, 1.0, 8,
                        -1);
    EXPECT_FALSE(repeated.ok || !repeated.points.empty() || !repeated.faces.empty());
    EXPECT_FALSE(Tube({Point3(), Point3(1, 0, 0)}, 1.0, 2, -1).ok);
    EXPECT_FALSE(Tube({Point3(), Point3(1, 0, 0)}, 1.0, 8, 2).ok);
    // A tangent parallel to the reference vector gives a degenerate ring, not a failure.
    const Tube up({Point3(0, 0, 0), Point3(1, 0, 0), Point3(1, 1, 0), Point3(1, 1, 5)}, 1.0, 6, -1);
    ASSERT_TRUE(up.ok);
    for (int j = 18; j < 24; ++j) {
        ExpectNear(up.points[j], Point3(1, 1, 5), 0.0);
        ExpectNear(up.normals[j], Vector3(), 0.0);
    }
}

TEST(RotationText, GetRebuildsWhatSetWrote) {
    Random rnd(71);
    wchar_t axes[4] = {L'?', L'?', L'?', L'?'};
    Point3 angles(9, 9, 9);
    LocalPlane back;
    for (int i = 0; i < 300; ++i) {
        const LocalPlane f(rnd.point(), rnd.point(), rnd.point());
        ASSERT_TRUE(BRNF_SetRotation(f, axes, angles));
        EXPECT_EQ(std::wstring(axes), L"zyx");
        ASSERT_TRUE(BRNF_GetRotation(back, axes, angles));
        ExpectNear(back.zero(), Point3::_OO, 0.0);  // the origin is not part of the text
        back.translate(Translate3(f.zero().vec()));
        EXPECT_TRUE(back.equal(f, 1e-12));
    }
    // The identity writes nothing and reads back as the identity.
    ASSERT_TRUE(BRNF_SetRotation(LocalPlane(), axes, angles));
    EXPECT_EQ(std::wstring(axes), L"");
    ASSERT_TRUE(BRNF_GetRotation(back, axes, angles));
    EXPECT_TRUE(back.equal(LocalPlane(), 0.0));
    // One turn writes its letter; the x step stores the negated measured angle, which is the turn
    // that rebuilds the frame. Upper case is read, other characters skipped, angles of unwritten
    // letters ignored.
    LocalPlane turned;
    BRNF_SetRotation(turned.rotate(Rotate3_Z(0.4)), axes, angles);
    EXPECT_EQ(std::wstring(axes), L"z");
    EXPECT_EQ(axes[2], L'x');  // left from "zyx": nothing is written past the terminator
    EXPECT_NEAR(angles.z, 0.4, 1e-15);
    BRNF_SetRotation(turned.identity().rotate(Rotate3_X(0.3)), axes, angles);
    EXPECT_EQ(std::wstring(axes), L"x");
    EXPECT_NEAR(angles.x, 0.3, 1e-15);
    turned.identity().rotate(Rotate3_Z(-0.7)).rotate(Rotate3_X(0.3));
    BRNF_SetRotation(turned, axes, angles);
    EXPECT_EQ(std::wstring(axes), L"zx");
    ASSERT_TRUE(BRNF_GetRotation(back, L"Z?x-", Point3(0.3, 5.0, -0.7)));
    EXPECT_TRUE(back.equal(turned, 1e-12));
    // An undefined frame writes nothing.
    wchar_t kept[4] = {L'k', 0, 0, 0};
    EXPECT_FALSE(BRNF_SetRotation(LocalPlane().seterr(Point3()), kept, angles));
    EXPECT_EQ(kept[0], L'k');
}

TEST(SegmentsApprox, LinesAndArcsInOrderWithTheStepOfOneAngle) {
    Mvector<RNF_SEG> segs{RNF_SEG(Point2(0, 0), Point2(2, 0)),
                          RNF_SEG(Point2(2, 0), Point2(2, 1), kPi),  // half circle to (2, 2)
                          RNF_SEG(Point2(2, 2), Point2(0, 2))};
    Mvector<Point2> pts{Point2(9, 9)};
    BRNF_SegmentsApprox(segs, pts, kPi / 4 * 1.01);  // trunc(π / (π/4·1.01)) = 3 steps
    ASSERT_EQ(pts.size(), 2u + 3u + 1u) << "starts that repeat the previous point are left out";
    const Point2 want[] = {{0, 0},
                           {2, 0},
                           {2 + std::sin(kPi / 3), 1 - std::cos(kPi / 3)},
                           {2 + std::sin(kPi / 3), 1 + std::cos(kPi / 3)},
                           {2, 2},
                           {0, 2}};
    for (std::size_t k = 0; k < 6; ++k) EXPECT_LT(pts[k].distance(want[k]), 1e-15) << k;
    // Clockwise arcs turn the other way; a sweep below one step is one chord; the default step.
    segs = Mvector<RNF_SEG>{RNF_SEG(Point2(1, 0), Point2(0, 0), -kPi / 2)};
    BRNF_SegmentsApprox(segs, pts, 1.0);
    ASSERT_EQ(pts.size(), 2u);
    EXPECT_LT(pts[1].distance(Point2(0, -1)), 1e-15);
    segs[0].angle = -kPi / 2 * 1.01;
    BRNF_SegmentsApprox(segs, pts, -1.0);
    EXPECT_EQ(pts.size(), 1u + 12u) << "a quarter turn and a little at 2π / 48";
    BRNF_SegmentsApprox(Mvector<RNF_SEG>{RNF_SEG(Point2(1, 0), Point2(0, 0), 1e6)}, pts, 1e-12);
    EXPECT_EQ(pts.size(), 1u + 100000u) << "at most 100000 steps per arc";
}

}  // namespace
}  // namespace quillon
