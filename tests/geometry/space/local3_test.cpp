#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::ExpectNear;
using space_test::Random;
constexpr double kPi = std::numbers::pi;

void ExpectOrthonormalRightHanded(const LocalPlane& f) {
    const Vector3 x = f.get_dir_x(), y = f.get_dir_y(), z = f.get_dir_z();
    EXPECT_NEAR(x.length(), 1.0, 1e-12);
    EXPECT_NEAR(y.length(), 1.0, 1e-12);
    EXPECT_NEAR(x * y, 0.0, 1e-12);
    ExpectNear(x % y, z);
}

TEST(LocalPlane, FrameOfThreeRandomPointsIsOrthonormalAndFlattensThem) {
    Random rnd(17);
    for (int i = 0; i < 200; ++i) {
        const Point3 o = rnd.point(), px = rnd.point(), pq = rnd.point();
        const LocalPlane f(o, px, pq);
        ASSERT_TRUE(f.isDefined());
        ExpectOrthonormalRightHanded(f);
        Point3 lq = pq;
        lq /= f;
        ExpectNear(o * f.inverse(), Point3::_OO);
        ExpectNear(px * f.inverse(), Point3(o.distance(px), 0, 0));
        EXPECT_NEAR(lq.z, 0.0, 1e-12);
        EXPECT_GT(lq.y, 0.0) << "the third point lies on the local +y side";
        const Vector3 zdir = rnd.vector();
        const LocalPlane g(o, zdir);
        ExpectOrthonormalRightHanded(g);
        ExpectNear(g.get_dir_z(), zdir.get_normalized());
    }
    const LocalPlane up(Point3(1, 2, 3), Vector3(0, 0, 5));
    ExpectNear(up.get_dir_x(), Vector3::_Ox);
    ExpectNear(up.get_dir_y(), Vector3::_Oy);

    // Degenerate input: undefined, identity axes, origin kept.
    const Point3 o(1, 2, 3);
    for (const LocalPlane& bad :
         {LocalPlane(o, o + Vector3(1e-11, 0, 0), Point3(0, 5, 0)),
          LocalPlane(o, Point3(4, 2, 3), Point3(7, 2, 3 + 5e-11)), LocalPlane(o, Vector3(0, 0, 0)),
          LocalPlane(o, Point3(2, 2, 3), Point3(1, 2.5, 3), 1.0)}) {
        EXPECT_FALSE(bad.isDefined());
        EXPECT_TRUE(bad.equal(LocalPlane(Isometry3(Translate3(o.vec()))).seterr(o), 0.0));
    }
    EXPECT_TRUE(LocalPlane(o, Point3(2, 2, 3), Point3(1, 2.5, 3), 0.4).isDefined());
}

TEST(LocalPlane, MovesAndCompositions) {
    Random rnd(19);
    for (int i = 0; i < 50; ++i) {
        const LocalPlane f(rnd.point(), rnd.point(), rnd.point());
        const LocalPlane g(rnd.point(), rnd.point(), rnd.point());
        const Point3 p = rnd.point();
        const double a = rnd(-3, 3);

        // Turning the frame by R maps local points through M, then R.
        LocalPlane turned = f;
        turned.rotate(a, Axis3::Y);
        ExpectNear(p * turned, (p * f) << Rotate3_Y(a));
        turned = f;
        turned.rotate(std::sin(a), std::cos(a), Axis3::X);
        ExpectNear(p * turned, (p * f) << Rotate3_X(a));
        LocalPlane moved = f;
        moved.translate(Translate3(1, 2, 3));
        ExpectNear(moved.zero(), f.zero() + Vector3(1, 2, 3));
        LocalPlane aboutAxis = f, aboutZ = f;
        aboutAxis.rotate(a, Vector3(0, 0, 2));
        aboutZ.rotate(Rotate3_Z(a));
        EXPECT_TRUE(aboutAxis.equal(aboutZ, 1e-12));

        // Into another frame and back out; the inverse exchanges global and local.
        LocalPlane h = f;
        h >>= g;
        ExpectNear(p * h * g, p * f);
        h <<= g;
        EXPECT_TRUE(h.equal(f, 1e-12));
        ExpectNear(p * f * f.inverse(), p);
    }
    LocalPlane undefined;
    undefined.seterr(Point3(1, 1, 1));
    LocalPlane f;
    f <<= undefined;
    EXPECT_FALSE(f.isDefined()) << "a frame carried through an undefined frame is undefined";
    EXPECT_FALSE(LocalPlane().seterr(Point3()).equal(LocalPlane(), 1.0)) << "flags differ";
    EXPECT_TRUE(f.identity().isDefined());
}

TEST(LocalPlaneYPR, ThroughLocalPlaneAndBackGivesTheSameFrame) {
    Random rnd(23);
    for (int i = 0; i < 300; ++i) {
        const LocalPlaneYPR ypr(rnd(-3, 3), rnd(-1.5, 1.5), rnd(-3, 3), rnd.point(10));
        const LocalPlane f = ypr;
        const Point3 p = rnd.point();
        ExpectNear(p * f, p * Rotate3(ypr.yaw, ypr.pitch, ypr.roll) + ypr.origin.vec());
        LocalPlaneYPR back;
        back = f;
        ExpectNear(Point3(back.yaw, back.pitch, back.roll), Point3(ypr.yaw, ypr.pitch, ypr.roll));
        ExpectNear(back.origin, ypr.origin, 0.0);

        // At gimbal lock the angles may differ but the frame does not.
        const LocalPlaneYPR lock(ypr.yaw, i % 2 == 0 ? kPi / 2 : -kPi / 2, ypr.roll, ypr.origin);
        EXPECT_TRUE(LocalPlaneYPR(lock.get()).get().equal(lock.get(), 1e-12));
    }
}

TEST(LocalCoordSystem, AxesToleranceAndDegeneracy) {
    LocalCoordSystem s;
    EXPECT_EQ(s.setEps(-1.0), 1e-10) << "a negative tolerance reads the stored one";
    s.setEps(0.01);
    EXPECT_EQ(s.setEps(-5.0), 0.01);

    s.set(Point3(1, 2, 3), Vector3(2, 0, 0), Vector3(1, 3, 0), false);
    ASSERT_TRUE(s);
    Vector3 y, z;
    s.get(nullptr, nullptr, &y, &z);
    ExpectNear(y, Vector3(1, 3, 0), 0.0);  // a skew system is kept as given
    ExpectNear(z, Vector3(0, 0, 6), 0.0);
    s.set(Point3(1, 2, 3), Vector3(2, 0, 0), Vector3(1, 3, 0), Vector3(0, 1, 1), true);
    ASSERT_TRUE(s);
    ExpectNear(s.z, Vector3(0, 1, 1).get_normalized());

    // Too short, parallel, or z in the plane of x and y: undefined with global axes.
    s.set(Point3(4, 5, 6), Vector3(0.001, 0, 0), Vector3(0, 1, 0), true);
    EXPECT_FALSE(s.isDefined());
    ExpectNear(s.x, Vector3::_Ox, 0.0);
    ExpectNear(s.origin, Point3(4, 5, 6), 0.0);
    for (const double zz : {0.001, 0.1}) {
        s.set(Point3(), Vector3(1, 0, 0), Vector3(2, zz, 0), true);
        EXPECT_EQ(s.isDefined(), zz > 0.01);
        s.set(Point3(), Vector3(1, 0, 0), Vector3(0, 1, 0), Vector3(1, 1, zz), true);
        EXPECT_EQ(s.isDefined(), zz > 0.01);
    }
}

}  // namespace
}  // namespace quillon
