// Geometric items: the solids of half-spaces, bounded half-spaces and extrusions (closed, outward,
// of the expected volume for either orientation and side), boolean results and their caches, the
// factory, and moves that carry the solid with the item.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "quillon/geometry/space/geometric_item3.h"
#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::Circle;
using space_test::Closed;
using space_test::Polygon;
using space_test::Volume;

// The outline at height z0 extruded by h along z.
Extrusion3 Prism(const LAContour& outline, double z0, double h) {
    Extrusion3 e(1e-9);
    e.SetLocalPlane(LocalPlane(Point3(0, 0, z0), Vector3::_Oz));
    e.SetOuterContour(outline);
    e.SetPath(Vector3(0, 0, h));
    return e;
}

LAContour Rect(double x0, double y0, double x1, double y1) {
    return Polygon({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

TEST(HalfSpace3, BoxOnTheSideOppositeTheNormal) {
    // A vertical normal: the box edges fall back to n × x.
    const HalfSpace3 flat(Plane3(Point3(3, 4, 5), Vector3(0, 0, 2)));
    ASSERT_EQ(flat.GetSolid().Vertex().size(), 8u);
    for (int i = 0; i < 8; ++i) {
        const Point3 p((i + 1) % 4 < 2 ? -1000 : 1000, i % 4 < 2 ? 1000 : -1000, i < 4 ? 5 : -995);
        EXPECT_LT(flat.GetSolid().Vertex()[i].point.distance(p), 1e-9) << i;
    }
    std::mt19937 gen(7);
    for (int k = 0; k < 20; ++k) {
        const Plane3 plane = space_test::RandomPlane(gen);
        const HalfSpace3 h(plane);
        const auto& v = h.GetSolid().Vertex();
        ASSERT_TRUE(Closed(h.GetSolid()));
        EXPECT_NEAR(Volume(h.GetSolid()), 4e9, 1e-3);
        for (int i = 0; i < 8; ++i)
            EXPECT_NEAR(plane.signed_distance(v[i].point), i < 4 ? 0.0 : -1000.0, 1e-9);
        EXPECT_NEAR((v[0].point - v[3].point).z, 0.0, 1e-9) << "u = n × z is horizontal";
        Point3 foot;
        plane.get(nullptr, &foot);
        EXPECT_LT(((v[0].point + v[2].point) / 2.0).distance(foot), 1e-9);
    }
    EXPECT_TRUE(HalfSpace3().GetSolid().Vertex().empty()) << "a degenerate plane";
}

TEST(Extrusion3, ClosedOutwardWithTheVolumeOfItsApproximationForEitherOrientationAndSide) {
    std::mt19937 gen(11);
    for (int k = 0; k < 150; ++k) {
        const space_test::Outline o = space_test::RandomOutline(gen);
        Extrusion3 e(1e-9);
        e.SetLocalPlane(space_test::RandomFrame(gen));
        e.SetOuterContour(o.outer);
        e.SetInnerContours(o.holes);
        e.SetPath(space_test::RandomPath(gen, e.GetLocalPlane()));
        ASSERT_TRUE(Closed(e.GetSolid())) << k;
        const double expected = o.area * std::fabs(e.GetPath() * e.GetLocalPlane().get_dir_z());
        EXPECT_NEAR(e.GetSolid().GetVolume(), expected, 1e-9 * expected) << k;
    }
}

TEST(Extrusion3, DegenerateInputsAndLength) {
    Extrusion3 e = Prism(Circle(0, 0, 1, false), 0, 2);
    e.SetPath(Vector3(3, 4, 0));  // in the contour plane
    EXPECT_TRUE(e.GetSolid().Face().empty());
    e.SetPath(Vector3(0, 0, 1));
    e.SetOuterContour(Polygon({{0, 0}, {1, 1}, {2, 2}}));  // no area
    EXPECT_TRUE(e.GetSolid().Face().empty());
    // An arc past a full turn would run over itself: no outline, and no hole.
    LAContour coil = Circle(0, 0, 1, false);
    coil[0].angle += 0.5;
    e.SetOuterContour(coil);
    EXPECT_TRUE(e.GetSolid().Face().empty());
    e.SetOuterContour(Rect(-2, -2, 2, 2));
    e.AddInnerContour(coil);
    EXPECT_NEAR(Volume(e.GetSolid()), 16, 1e-9);

    // SetLength keeps the direction; a zero path takes the frame's z axis.
    Extrusion3 p = Prism(Rect(0, 0, 2, 3), 0, 0);
    p.SetLocalPlane(LocalPlane(Point3(1, 1, 1), Vector3(0, 1, 0)));
    p.SetLength(5);
    EXPECT_LT((p.GetPath() - Vector3(0, 5, 0)).length(), 1e-12);
    EXPECT_NEAR(Volume(p.GetSolid()), 30, 1e-9);
    p.SetPath(Vector3(0.3, 0, -0.4));
    p.SetLength(2);
    EXPECT_LT((p.GetPath() - Vector3(1.2, 0, -1.6)).length(), 1e-12);
}

TEST(BoundedHalfSpace3, PrismUnderTheOutlineOppositeTheNormal) {
    std::mt19937 gen(5);
    for (int k = 0; k < 60; ++k) {
        const Plane3 plane = space_test::RandomPlane(gen);
        BoundedHalfSpace3 b(plane, space_test::RandomOutline(gen).outer, 1e-9);
        b.SetLocalPlane(space_test::RandomFrame(gen));
        ASSERT_TRUE(Closed(b.GetSolid())) << k;
        // The cross-section is the outline seen along the normal.
        const double facing = plane.normal().get_normalized() * b.GetLocalPlane().get_dir_z();
        const double expected = space_test::ApproxArea(b.GetBound()) * std::fabs(facing) * 1000.0;
        EXPECT_NEAR(Volume(b.GetSolid()), expected, 1e-9 * expected) << k;
        for (const Vertex3d& v : b.GetSolid().Vertex()) {
            const double d = plane.signed_distance(v.point);
            EXPECT_TRUE(std::fabs(d) < 1e-7 || std::fabs(d + 1000) < 1e-7) << d;
        }
    }
    const BoundedHalfSpace3 edgeOn(Plane3(Point3(0, 0, 0), Vector3(1, 0, 0)),
                                   Circle(0, 0, 1, true));
    EXPECT_TRUE(edgeOn.GetSolid().Face().empty()) << "the normal lies in the outline's plane";
}

TEST(BooleanResult3, OperatorsOperandsAndCache) {
    const Extrusion3 a = Prism(Rect(0, 0, 4, 4), 0, 4);
    const Extrusion3 b = Prism(Rect(2, 2, 6, 6), 2, 4);
    BooleanResult3 r;
    EXPECT_TRUE(r.GetSolid().Face().empty());
    EXPECT_EQ(r.GetSolid().GetEps(), 1.1920928955078125e-7) << "the shared empty solid";
    r.SetFirstOperand(&a);
    EXPECT_TRUE(r.GetSolid().Face().empty()) << "subtraction without a second operand";
    for (int op : {3, 4, 0}) {
        r.SetOperator(static_cast<EBOOL_OPER>(op));
        EXPECT_EQ(&r.GetSolid(), &r.GetFirstOperand()->GetSolid()) << op;
    }
    r.SetSecondOperand(&b);
    r.SetOperator(BOOL_UNION);
    EXPECT_TRUE(Closed(r.GetSolid()));
    EXPECT_NEAR(Volume(r.GetSolid()), 64 + 64 - 8, 1e-9);
    r.SetOperator(BOOL_SUBTRACT);
    EXPECT_NEAR(Volume(r.GetSolid()), 64 - 8, 1e-9);

    // Copies own copies of the operands and of a result computed already.
    BooleanResult3 copy;
    copy = r;
    EXPECT_NE(copy.GetFirstOperand(), r.GetFirstOperand());
    const long calls = BoolSubstractCalls();
    EXPECT_NEAR(Volume(copy.GetSolid()), 56, 1e-9);
    EXPECT_EQ(BoolSubstractCalls(), calls);
    r.SetSecondOperand(&a);
    EXPECT_TRUE(r.GetSolid().Face().empty()) << "a − a";
    EXPECT_NEAR(Volume(copy.GetSolid()), 56, 1e-9);
}

TEST(BooleanResult3, FailedBooleanIsNotRetried) {
    Solid3 flawed(1e-9);  // a face without area: the boolean cannot prepare its data
    for (int i = 0; i < 3; ++i) flawed.AddVertex(Point3(i, 0, 0));
    flawed.AddFace(Face3(Mvector<std::uint32_t>{0, 1, 2}));
    const Extrusion3 box = Prism(Rect(0, 0, 1, 1), 0, 1);
    BooleanResult3 r;
    r.SetFirstOperand(&flawed);
    r.SetSecondOperand(&box);
    const long calls = BoolSubstractCalls();
    EXPECT_TRUE(r.GetSolid().Face().empty());
    EXPECT_TRUE(r.GetSolid().Face().empty());
    EXPECT_EQ(BoolSubstractCalls(), calls + 1);
    r.SetOperator(BOOL_SUBTRACT);
    EXPECT_TRUE(r.GetSolid().Face().empty());
    EXPECT_EQ(BoolSubstractCalls(), calls + 2) << "a setter clears the cache";
}

TEST(GeometricItem3, MovingTheItemMovesItsSolid) {
    std::mt19937 gen(3);
    for (int k = 0; k < 80; ++k) {
        // Every other item a computed boolean result.
        std::unique_ptr<GeometricItem3> item = space_test::RandomItem(gen, 2);
        if (k % 2 == 0) {
            BooleanResult3 r;
            r.SetOperator(k % 4 == 0 ? BOOL_SUBTRACT : BOOL_UNION);
            r.SetFirstOperand(item.get());
            r.SetSecondOperand(space_test::RandomItem(gen, 1).get());
            item.reset(r.Clone());
        }
        const LocalPlane iso = space_test::RandomFrame(gen);
        const std::unique_ptr<GeometricItem3> moved(item->Clone());
        *moved <<= iso;
        Solid3 expected = item->GetSolid();
        expected <<= iso;
        // A boolean computed anew in the moved place may number its vertices otherwise, and its
        // cut points agree only as far as its own rounding (about 1e-9 where faces meet at a
        // small angle): they are held to the boolean's tolerance.
        const bool boolean = item->GetTypeID() == GeometricItem3::BOOLEAN_RESULT3;
        EXPECT_TRUE(space_test::Matches(moved->GetSolid(), expected,
                                        boolean ? expected.GetEps() : 1e-9, !boolean))
            << k << " kind " << item->GetTypeID();
        // Moved again after its solid was built: the solid moves with it.
        *moved <<= iso;
        expected <<= iso;
        EXPECT_TRUE(space_test::Matches(moved->GetSolid(), expected, 1e-9, true)) << k;
    }
}

}  // namespace
}  // namespace quillon
