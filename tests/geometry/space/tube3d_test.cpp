#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <string>
#include <tuple>
#include <utility>

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
};

// Every directed edge, with points identified by position, is walked once each way: the surface
// is closed and all its faces turn the same way.
void ExpectClosedAndConsistent(const Tube& t) {
    std::map<std::tuple<double, double, double>, int> ids;
    auto id = [&](std::size_t i) {
        const Point3& p = t.points[i];
        return ids.emplace(std::make_tuple(p.x, p.y, p.z), static_cast<int>(ids.size()))
            .first->second;
    };
    std::map<std::pair<int, int>, int> directed;
    for (const auto& face : t.faces) {
        for (std::size_t k = 0; k < face.size(); ++k)
            ++directed[{id(face[k]), id(face[(k + 1) % face.size()])}];
    }
    for (const auto& [edge, count] : directed) {
        EXPECT_EQ(count, 1) << edge.first << "-" << edge.second;
        const auto back = directed.find({edge.second, edge.first});
        EXPECT_TRUE(back != directed.end() && back->second == 1)
            << edge.first << "-" << edge.second << " has no partner";
    }
}

TEST(Tube3D, RandomTubesAreClosedWithTheGivenCounts) {
    Random rnd(61);
    for (int i = 0; i < 60; ++i) {
        Mvector<Point3> path;
        const int N = 2 + i % 6;
        for (int k = 0; k < N; ++k) path.Add(rnd.point(5));
        const int n = 3 + i % 9;
        const double d = rnd(0.1, 1.0);
        const Tube t(path, d, n, -1);
        ASSERT_TRUE(t.ok);
        ASSERT_EQ(t.points.size(), static_cast<std::size_t>(N * n + 2 * n));
        ASSERT_EQ(t.normals.size(), t.points.size());
        ASSERT_EQ(t.faces.size(), static_cast<std::size_t>((N - 1) * n + 2));
        ExpectClosedAndConsistent(t);
        for (int k = 0; k < N; ++k) {
            for (int j = 0; j < n; ++j) {
                const std::size_t idx = static_cast<std::size_t>(k * n + j);
                EXPECT_NEAR(t.points[idx].distance(path[k]), d / 2, 1e-12);
                ExpectNear(t.normals[idx], (t.points[idx] - path[k]) / (d / 2), 1e-9);
            }
        }
        // The cap normals point out of the ends.
        ExpectNear(t.normals[N * n], -(path[1] - path[0]).get_normalized());
        ExpectNear(t.normals.back(), (path[N - 1] - path[N - 2]).get_normalized());
        // Caps of their own size are whole polygons of that size.
        EXPECT_EQ(Tube(path, d, n, n + 2).faces.back().size(), static_cast<std::size_t>(n + 2));
    }
}

TEST(Tube3D, FacesArePlaneWhereTheRingsLieSymmetric) {
    auto expectPlane = [](const Tube& t, std::size_t first, std::size_t last) {
        for (std::size_t f = first; f < last; ++f) {
            const auto& q = t.faces[f];
            EXPECT_TRUE(
                Coplanar(t.points[q[0]], t.points[q[1]], t.points[q[2]], t.points[q[3]], 1e-12))
                << f;
        }
    };
    // A straight run in any direction: every face is a plane rectangle.
    Random rnd(67);
    for (int i = 0; i < 20; ++i) {
        const Point3 a = rnd.point(), b = rnd.point();
        const Tube t(Mvector<Point3>{a, Between(a, b, 0.3, nullptr), b}, 0.5, 8, -1);
        ASSERT_TRUE(t.ok);
        expectPlane(t, 0, 16);
    }
    // A regular polygon path: the runs between two interior rings are plane.
    Mvector<Point3> path;
    for (int k = 0; k < 7; ++k) path.Add(Point3(std::cos(k * 0.5), std::sin(k * 0.5), 0.3));
    const Tube t(path, 0.2, 12, -1);
    ASSERT_TRUE(t.ok);
    expectPlane(t, 12, 5 * 12);
}

TEST(Tube3D, ReferenceVectorAndDegenerateInput) {
    Tube none(Mvector<Point3>{Point3(1, 2, 3)}, 1.0, 8, -1);
    EXPECT_TRUE(none.ok);
    EXPECT_TRUE(none.points.empty() && none.normals.empty() && none.faces.empty());

    // A straight path along x: w = (2, 0, 0) × (0, 0, 1) = (0, -2, 0), seam along t × w = -z.
    const Tube alongX(Mvector<Point3>{Point3(0, 0, 0), Point3(2, 0, 0)}, 2.0, 4, -1);
    ExpectNear(alongX.points[0], Point3(0, 0, -1));
    // A straight vertical path falls back on (1, 0, 0): w = (0, 0, h) × (1, 0, 0) = (0, h, 0).
    const Tube vertical(Mvector<Point3>{Point3(0, 0, 0), Point3(0, 0, 3)}, 2.0, 4, -1);
    ASSERT_TRUE(vertical.ok);
    ExpectNear(vertical.points[0], Point3(-1, 0, 0));
    ExpectClosedAndConsistent(vertical);
    // A bent path takes w from the first point off the line of the first two.
    const Tube bent(
        Mvector<Point3>{Point3(0, 0, 0), Point3(1, 0, 0), Point3(2, 0, 0), Point3(2, 1, 0)}, 2.0, 4,
        -1);
    // w = (2, 1, 0) × (-1, -1, 0) = (0, 0, -1), seam along (1, 0, 0) × w = +y.
    ExpectNear(bent.points[0], Point3(0, 1, 0));

    // No reference vector, too few segments: false and empty outputs.
    Tube repeated(Mvector<Point3>{Point3(1, 1, 1), Point3(1, 1, 1), Point3(1, 1, 1)}, 1.0, 8, -1);
    EXPECT_FALSE(repeated.ok);
    EXPECT_TRUE(repeated.points.empty() && repeated.faces.empty());
    EXPECT_FALSE(Tube(Mvector<Point3>{Point3(), Point3(1, 0, 0)}, 1.0, 2, -1).ok);
    EXPECT_FALSE(Tube(Mvector<Point3>{Point3(), Point3(1, 0, 0)}, 1.0, 8, 2).ok);

    // A tangent parallel to the reference vector gives a degenerate ring, not a failure.
    const Tube up(
        Mvector<Point3>{Point3(0, 0, 0), Point3(1, 0, 0), Point3(1, 1, 0), Point3(1, 1, 5)}, 1.0, 6,
        -1);
    ASSERT_TRUE(up.ok);
    for (int j = 0; j < 6; ++j) {
        ExpectNear(up.points[18 + j], Point3(1, 1, 5), 0.0);
        ExpectNear(up.normals[18 + j], Vector3(), 0.0);
    }
}

TEST(RotationText, GetRebuildsWhatSetWrote) {
    Random rnd(71);
    for (int i = 0; i < 300; ++i) {
        const LocalPlane f(rnd.point(), rnd.point(), rnd.point());
        wchar_t axes[4] = {L'?', L'?', L'?', L'?'};
        Point3 angles;
        ASSERT_TRUE(BRNF_SetRotation(f, axes, angles));
        EXPECT_EQ(std::wstring(axes), L"zyx");
        LocalPlane back;
        ASSERT_TRUE(BRNF_GetRotation(back, axes, angles));
        ExpectNear(back.get_dir_x(), f.get_dir_x());
        ExpectNear(back.get_dir_y(), f.get_dir_y());
        ExpectNear(back.get_dir_z(), f.get_dir_z());
        ExpectNear(back.zero(), Point3::_OO, 0.0);  // the origin is not part of the text
    }

    // The identity writes nothing and reads back as the identity.
    wchar_t axes[4] = {L'?', L'?', L'?', L'?'};
    Point3 angles(9, 9, 9);
    ASSERT_TRUE(BRNF_SetRotation(LocalPlane(), axes, angles));
    EXPECT_EQ(std::wstring(axes), L"");
    LocalPlane back(Point3(1, 1, 1), Vector3(1, 1, 1));
    ASSERT_TRUE(BRNF_GetRotation(back, axes, angles));
    EXPECT_TRUE(back.equal(LocalPlane(), 0.0));

    // One turn about z writes "z"; the x step stores the negated measured angle, which is the
    // turn that rebuilds the frame; two letters come out swapped.
    LocalPlane turned;
    turned.rotate(Rotate3_Z(0.4));
    BRNF_SetRotation(turned, axes, angles);
    EXPECT_EQ(std::wstring(axes), L"z");
    EXPECT_NEAR(angles.z, 0.4, 1e-15);
    turned.identity().rotate(Rotate3_X(0.3));
    BRNF_SetRotation(turned, axes, angles);
    EXPECT_EQ(std::wstring(axes), L"x");
    EXPECT_NEAR(angles.x, 0.3, 1e-15);
    turned.identity().rotate(Rotate3_Z(-0.7)).rotate(Rotate3_X(0.3));
    BRNF_SetRotation(turned, axes, angles);
    EXPECT_EQ(std::wstring(axes), L"zx");
    ASSERT_TRUE(BRNF_GetRotation(back, axes, angles));
    EXPECT_TRUE(back.equal(turned, 1e-12));
    // Upper case works, other characters are skipped, angles of unwritten letters ignored.
    ASSERT_TRUE(BRNF_GetRotation(back, L"Z?x-", Point3(0.3, 5.0, -0.7)));
    EXPECT_TRUE(back.equal(turned, 1e-12));

    // An undefined frame writes nothing.
    LocalPlane undefined;
    undefined.seterr(Point3());
    wchar_t kept[4] = {L'k', 0, 0, 0};
    EXPECT_FALSE(BRNF_SetRotation(undefined, kept, angles));
    EXPECT_EQ(kept[0], L'k');
}

TEST(SegmentsApprox, LinesAndArcsInOrderWithTheStepOfOneAngle) {
    Mvector<RNF_SEG> segs;
    segs.Add(RNF_SEG(Point2(0, 0), Point2(2, 0)));
    segs.Add(RNF_SEG(Point2(2, 0), Point2(2, 1), kPi));  // half circle to (2, 2), left turn
    segs.Add(RNF_SEG(Point2(2, 2), Point2(0, 2)));
    Mvector<Point2> pts{Point2(9, 9)};
    BRNF_SegmentsApprox(segs, pts, kPi / 4 * 1.01);  // trunc(π / (π/4·1.01)) = 3 steps
    ASSERT_EQ(pts.size(), 2u + 3u + 1u) << "starts that repeat the previous point are left out";
    ExpectNear(Point3(pts[0]), Point3(0, 0, 0), 0.0);
    ExpectNear(Point3(pts[1]), Point3(2, 0, 0), 0.0);
    ExpectNear(Point3(pts[2]), Point3(2 + std::sin(kPi / 3), 1 - std::cos(kPi / 3), 0), 1e-15);
    ExpectNear(Point3(pts[4]), Point3(2, 2, 0), 1e-15);
    ExpectNear(Point3(pts[5]), Point3(0, 2, 0), 0.0);
    for (std::size_t k = 2; k < 5; ++k) EXPECT_NEAR(pts[k].distance(Point2(2, 1)), 1.0, 1e-15);

    // Clockwise arcs turn the other way; a sweep below one step is one chord; the default step.
    segs = Mvector<RNF_SEG>{RNF_SEG(Point2(1, 0), Point2(0, 0), -kPi / 2)};
    BRNF_SegmentsApprox(segs, pts, 1.0);
    ASSERT_EQ(pts.size(), 2u);
    ExpectNear(Point3(pts[1]), Point3(0, -1, 0), 1e-15);
    segs[0].angle = -kPi / 2 * 1.01;
    BRNF_SegmentsApprox(segs, pts, -1.0);
    EXPECT_EQ(pts.size(), 1u + 12u) << "a quarter turn and a little at 2π / 48";
    BRNF_SegmentsApprox(Mvector<RNF_SEG>{RNF_SEG(Point2(1, 0), Point2(0, 0), 1e6)}, pts, 1e-12);
    EXPECT_EQ(pts.size(), 1u + 100000u) << "at most 100000 steps per arc";
}

}  // namespace
}  // namespace quillon
