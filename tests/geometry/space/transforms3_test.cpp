#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <utility>

#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::ExpectNear;
using space_test::Random;
constexpr double kPi = std::numbers::pi;

// The settled reading: right-handed turns, points as row vectors.
TEST(SpaceTransforms, RotationsAreRightHandedRowVectorTurns) {
    const double a = 0.7, s = std::sin(a), c = std::cos(a);
    ExpectNear(Point3(1, 2, 3) * Rotate3(Rotate3_Z(a)), Point3(c - 2 * s, s + 2 * c, 3));
    ExpectNear(Point3(1, 2, 3) * Rotate3(Rotate3_X(a)), Point3(1, 2 * c - 3 * s, 2 * s + 3 * c));
    ExpectNear(Point3(1, 2, 3) * Rotate3(Rotate3_Y(a)), Point3(c + 3 * s, 2, 3 * c - s));

    Random rnd(5);
    for (int i = 0; i < 40; ++i) {
        const Point3 p = rnd.point();
        const double yaw = rnd(-4, 4), pitch = rnd(-4, 4), roll = rnd(-4, 4);
        const Rotate3_X rx(pitch);
        const Rotate3_Y ry(yaw);
        const Rotate3_Z rz(roll);
        // Yaw about y first, then pitch about x, then roll about z.
        ExpectNear(p * Rotate3(yaw, pitch, roll), ((p << ry) << rx) << rz);
        // Shifting left and right are inverse; the vector forms agree with the point forms.
        ExpectNear((((((p << rx) >> rx) << ry) >> ry) << rz) >> rz, p);
        ExpectNear(p.vec() << rz, (p << rz).vec());
        // _Rot_V about a coordinate axis is the single-axis rotation; about any axis it keeps
        // the axis and lengths.
        Matrix3 m;
        ExpectNear(_Rot_V(Vector3(0, 0, 3), rz.sin, rz.cos, m), Rotate3(rz));
        ExpectNear(_Rot_V(Vector3(2, 0, 0), rx.sin, rx.cos, m), Rotate3(rx));
        ExpectNear(_Rot_V(Vector3(0, 0.5, 0), ry.sin, ry.cos, m), Rotate3(ry));
        const Vector3 axis = rnd.vector();
        _Rot_V(axis, rz.sin, rz.cos, m);
        ExpectNear(axis * m, axis);
        EXPECT_NEAR((p * m).distance() + m.det(), p.distance() + 1, 1e-12);
        // _Rot_V2 turns one direction into the other about the centre, which stays put.
        const Vector3 from = rnd.vector(), to = rnd.vector();
        const Point3 centre = rnd.point();
        Matrix4x3 m4;
        _Rot_V2(from, to, centre.nod(), m4);
        ExpectNear(centre * m4, centre);
        ExpectNear(((centre + from) * m4 - centre).get_normalized(), to.get_normalized());
    }
    Matrix4x3 m4;
    _Rot_V2(Vector3(1, 1, 0), Vector3(-2, -2, 0), Node3(1, 1, 1), m4);
    ExpectNear(Point3(2, 2, 1) * m4, Point3(0, 0, 1));
    // Opposite directions turn half about z × from, z being the axis least along from.
    ExpectNear(Point3(1, 1, 2) * m4, Point3(1, 1, 0));
    ExpectNear(_Rot_V2(Vector3(), Vector3(0, 1, 0), Node3(1, 2, 3), m4), Matrix4x3(), 0.0);
}

// Every product and builder acts as its steps applied in name order, left first.
TEST(SpaceTransforms, ProductsAndBuildersActInNameOrder) {
    Random rnd(7);
    for (int i = 0; i < 30; ++i) {
        const Rotate3_X X(rnd() * kPi);
        const Rotate3_Y Y(rnd() * kPi);
        const Rotate3_Z Z(rnd() * kPi);
        const Translate3 T(rnd.vector());
        const Scale3 S(rnd(), rnd(), rnd());
        const Matrix4x3 A = rnd.matrix4x3(), B = rnd.matrix4x3();
        const Matrix3 A3 = A.mat3(), B3 = B.mat3();
        const Point3 p = rnd.point();
        auto tra = [&](Point3 q) { return q + T.vec; };
        auto sca = [&](Point3 q) { return Point3(q.x * S.x, q.y * S.y, q.z * S.z); };
        Matrix4x3 m, inPlace = A;
        Matrix3 m3;
        const Matrix3 t(A3[0][0], A3[1][0], A3[2][0], A3[0][1], A3[1][1], A3[2][1], A3[0][2],
                        A3[1][2], A3[2][2]);
        const std::pair<Point3, Point3> checks[] = {
            {p * _Mat_Mat(A, B, m), (p * A) * B},
            {p * _Mat_Mat(A3, B, m), (p * A3) * B},
            {p * _Mat_Mat(A, B3, m), (p * A) * B3},
            {p * _Mat_Mat(A3, B3, m3), (p * A3) * B3},
            {p * _Mat_Mat(inPlace, B, inPlace), (p * A) * B},
            {A3 * p, p * t},
            {p * _Transpose(A3, m3), p * t},
            {p * _Copy_Mat3_To_Mat4x3(A3, m), p * A3},
            {p * _Rot_X(X, m), p << X},
            {p * _Rot_Y(Y, m3), p << Y},
            {p * _Rot_Z(Z, m), p << Z},
            {p * _Translate(T, m), tra(p)},
            {p * _Scale(S, m), sca(p)},
            {p * _Scale(S, m3), sca(p)},
            {p * _Mat_Rot_X(A, X, m), (p * A) << X},
            {p * _Mat_Rot_Y(A3, Y, m3), (p * A3) << Y},
            {p * _Mat_Rot_Z(A, Z, m), (p * A) << Z},
            {p * _Rot_X_Mat(X, A, m), (p << X) * A},
            {p * _Rot_Y_Mat(Y, A3, m3), (p << Y) * A3},
            {p * _Rot_Z_Mat(Z, A, m), (p << Z) * A},
            {p * _Rot_X_Rot_Y(X, Y, m3), (p << X) << Y},
            {p * _Rot_X_Rot_Z(X, Z, m3), (p << X) << Z},
            {p * _Rot_Y_Rot_X(Y, X, m3), (p << Y) << X},
            {p * _Rot_Y_Rot_Z(Y, Z, m3), (p << Y) << Z},
            {p * _Rot_Z_Rot_X(Z, X, m3), (p << Z) << X},
            {p * _Rot_Z_Rot_Y(Z, Y, m3), (p << Z) << Y},
            {p * _Rot_X_Scale(X, S, m3), sca(p << X)},
            {p * _Rot_Y_Scale(Y, S, m3), sca(p << Y)},
            {p * _Rot_Z_Scale(Z, S, m3), sca(p << Z)},
            {p * _Scale_Rot_X(S, X, m3), sca(p) << X},
            {p * _Scale_Rot_Y(S, Y, m3), sca(p) << Y},
            {p * _Scale_Rot_Z(S, Z, m3), sca(p) << Z},
            {p * _Rot_X_Tran(X, T, m), tra(p << X)},
            {p * _Rot_Y_Tran(Y, T, m), tra(p << Y)},
            {p * _Rot_Z_Tran(Z, T, m), tra(p << Z)},
            {p * _Tran_Rot_X(T, X, m), tra(p) << X},
            {p * _Tran_Rot_Y(T, Y, m), tra(p) << Y},
            {p * _Tran_Rot_Z(T, Z, m), tra(p) << Z},
            {p * _Scale_Mat(S, A, m), sca(p) * A},
            {p * _Scale_Mat(S, A3, m3), sca(p) * A3},
            {p * _Mat_Scale(A, S, m), sca(p * A)},
            {p * _Mat_Scale(A3, S, m3), sca(p * A3)},
            {p * _Scale_Tran(S, T, m), tra(sca(p))},
            {p * _Tran_Scale(T, S, m), sca(tra(p))},
            {p * _Tran_Mat(T, A, m), tra(p) * A},
            {p * _Tran_Mat(T, A3, m), tra(p) * A3},
            {p * _Mat_Tran(A, T, m), tra(p * A)},
            {p * _Mat_Tran(A3, T, m), tra(p * A3)},
            {p * Linear3(Anchor3(S), T), tra(sca(p))},
            {p * Isometry3(Rotate3(Y), T), tra(p << Y)},
        };
        for (std::size_t k = 0; k < std::size(checks); ++k) {
            SCOPED_TRACE(k);
            ExpectNear(checks[k].first, checks[k].second, 1e-11);
        }
        // Vectors ignore the translation.
        ExpectNear(p.vec() * A, (p * A.mat3()).vec());
    }
}

TEST(SpaceTransforms, InversesUndoTheTransformAndReportSingularity) {
    Random rnd(11);
    int tested = 0;
    while (tested < 200) {
        const Matrix4x3 A = rnd.matrix4x3();
        if (std::fabs(A.det()) < 0.05) continue;  // keep the condition moderate
        ++tested;
        Matrix3 inv3, prod;
        ASSERT_EQ(_Inverse(A.mat3(), inv3), 0);
        ExpectNear(_Mat_Mat(A.mat3(), inv3, prod), Matrix3());
        Matrix4x3 inv, prod4;
        ASSERT_EQ(_Inverse(A, inv), 0);
        ExpectNear(_Mat_Mat(A, inv, prod4), Matrix4x3());
        const Point3 p = rnd.point();
        Point3 q = p * A;
        q /= A;
        ExpectNear(q, p, 1e-11);
        Vector3 v = p.vec() * A.mat3();
        v /= A.mat3();
        ExpectNear(v, p.vec(), 1e-11);

        // Rigid motions: the transpose, which cannot fail; the point form agrees.
        const Isometry3 iso(Rotate3(rnd(-4, 4), rnd(-4, 4), rnd(-4, 4)), Translate3(rnd.vector()));
        Isometry3 isoInv;
        EXPECT_EQ(_Inverse(iso, isoInv), 0);
        ExpectNear(_Mat_Mat(iso, isoInv, prod4), Matrix4x3());
        Point3 back, r = p * iso;
        ExpectNear(_Inverse_Isometry_Point(iso, r, back), p);
        r /= iso;
        ExpectNear(r, p);
    }

    // Singular below the double epsilon: status -1 and a copy of the source.
    const Matrix3 tiny(1e-6, 0, 0, 0, 1e-6, 0, 0, 0, 1e-5);  // det 1e-17
    Matrix3 out(2, 2, 2, 2, 2, 2, 2, 2, 2);
    EXPECT_EQ(_Inverse(tiny, out), -1);
    ExpectNear(out, tiny, 0.0);
    const Matrix3 justRegular(1e-5, 0, 0, 0, 1e-5, 0, 0, 0, 2.220446049250313e-6);
    EXPECT_EQ(_Inverse(justRegular, out), 0);
    Matrix4x3 flat(Matrix3(1, 2, 3, 2, 4, 6, 0, 0, 1), Vector3(1, 1, 1)), flatOut;
    EXPECT_EQ(_Inverse(flat, flatOut), -1);
    ExpectNear(flatOut, flat, 0.0);
    Point3 p(1, 2, 3);
    p /= flat;
    ExpectNear(p, Point3(1, 2, 3), 0.0);
}

TEST(SpaceTransforms, ThreeAnglesReadBackRebuildTheRotation) {
    Random rnd(13);
    auto check = [](double yaw, double pitch, double roll) {
        const Rotate3 r(yaw, pitch, roll);
        double a = 9, b = 9, c = 9;
        r.get(a, b, c);
        ExpectNear(Rotate3(a, b, c), r);
        EXPECT_LE(std::fabs(b), kPi / 2);
        return std::make_pair(a, c);
    };
    for (int i = 0; i < 300; ++i) {
        const double yaw = rnd(-3, 3), pitch = rnd(-1.5, 1.5), roll = rnd(-3, 3);
        const auto [a, c] = check(yaw, pitch, roll);
        EXPECT_NEAR(a, yaw, 1e-12);
        EXPECT_NEAR(c, roll, 1e-12);
        check(rnd(-9, 9), rnd(-9, 9), rnd(-9, 9));  // any angles: an equivalent triple
        // Near and at gimbal lock the frame still comes back exactly.
        check(yaw, kPi / 2 - std::ldexp(1.0, -30 - i % 25), roll);
        check(yaw, -kPi / 2, roll);
        const auto [lockYaw, lockRoll] = check(yaw, kPi / 2, roll);
        EXPECT_EQ(lockRoll, 0.0) << "at the lock the roll is zero and the yaw takes the turn";

        // Through a placed frame and back: the same angles and origin; at the lock the same frame.
        const LocalPlaneYPR ypr(yaw, pitch, roll, rnd.point(10));
        const LocalPlane f = ypr;
        const Point3 p = rnd.point();
        ExpectNear(p * f, p * Rotate3(yaw, pitch, roll) + ypr.origin.vec());
        LocalPlaneYPR back;
        back = f;
        ExpectNear(Point3(back.yaw, back.pitch, back.roll), Point3(yaw, pitch, roll));
        ExpectNear(back.origin, ypr.origin, 0.0);
        const LocalPlaneYPR lock(yaw, i % 2 == 0 ? kPi / 2 : -kPi / 2, roll, ypr.origin);
        EXPECT_TRUE(LocalPlaneYPR(lock.get()).get().equal(lock.get(), 1e-12));
    }
}

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
        Point3 at, atX, atY;
        f.get(&at, &atX, &atY);
        ExpectNear(atY, at + f.get_dir_y());
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
        EXPECT_TRUE(h.equal(f, 1e-12) && !h.equal(g, 1e-12));
        ExpectNear(p * f * f.inverse(), p);
    }
    LocalPlane undefined;
    undefined.seterr(Point3(1, 1, 1));
    LocalPlane f;
    f <<= undefined;
    EXPECT_FALSE(f.isDefined() || (LocalPlane() >>= undefined).isDefined())
        << "a frame carried through an undefined frame is undefined";
    EXPECT_FALSE(LocalPlane().seterr(Point3()).equal(LocalPlane(), 1.0)) << "flags differ";
    EXPECT_TRUE(f.identity().isDefined());
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
