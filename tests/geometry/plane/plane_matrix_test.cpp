#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "quillon/geometry/plane/plane_types.h"
#include "tests/support/checks.h"

namespace quillon {
namespace {

constexpr double kPi = std::numbers::pi;

using test_support::ExpectNear;

struct Random {
    std::mt19937 gen{23};
    double operator()() { return std::uniform_real_distribution<double>(-2.0, 2.0)(gen); }
    Matrix3x2 matrix() {
        Random& r = *this;
        return Matrix3x2(r(), r(), r(), r(), r(), r());
    }
    Point2 point() { return Point2((*this)(), (*this)()); }
};

// Every product and builder acts as its steps applied in name order, left first.
TEST(Transforms, ProductsAndBuildersActInNameOrder) {
    Random rnd;
    for (int i = 0; i < 50; ++i) {
        const Rotate2 R(rnd() * kPi);
        const Translate2 T(rnd(), rnd());
        const Scale2 S(rnd(), rnd());
        const Matrix3x2 A = rnd.matrix(), B = rnd.matrix();
        const Matrix2 A2 = A.mat2(), B2 = B.mat2();
        const Point2 p = rnd.point();
        auto rot = [&](Point2 q) { return q << R; };
        auto tra = [&](Point2 q) { return q + T.vec; };
        auto sca = [&](Point2 q) { return Point2(q.x * S.x, q.y * S.y); };
        Matrix3x2 m, inPlace = A;
        Matrix2 m2;
        // The column-vector product is the row-vector product with the transpose; the result may
        // be an operand; the conversions build the same transforms as the builders.
        const Matrix2 t(A2.m[0][0], A2.m[1][0], A2.m[0][1], A2.m[1][1]);
        const std::pair<Point2, Point2> checks[] = {
            {p * _Mat_Mat(A, B, m), (p * A) * B},
            {p * _Mat_Mat(A2, B, m), (p * A2) * B},
            {p * _Mat_Mat(A, B2, m), (p * A) * B2},
            {p * _Mat_Mat(A2, B2, m2), (p * A2) * B2},
            {p * _Mat_Mat(inPlace, B, inPlace), (p * A) * B},
            {A2 * p, p * t},
            {p * _Rotate(R, m), rot(p)},
            {p * _Rotate(R, m2), rot(p)},
            {p * _Translate(T, m), tra(p)},
            {p * _Scale(S, m), sca(p)},
            {p * _Scale(S, m2), sca(p)},
            {p * _Copy_Mat2_To_Mat3x2(A2, m), p * A2},
            {p * _Tran_Rotate(T, R, m), rot(tra(p))},
            {p * _Rotate_Tran(R, T, m), tra(rot(p))},
            {p * _Scale_Rotate(S, R, m), rot(sca(p))},
            {p * _Rotate_Scale(R, S, m), sca(rot(p))},
            {p * _Mat_Rotate(A, R, m), rot(p * A)},
            {p * _Mat_Rotate(A2, R, m2), rot(p * A2)},
            {p * _Rotate_Mat(R, A, m), rot(p) * A},
            {p * _Rotate_Mat(R, A2, m2), rot(p) * A2},
            {p * _Scale_Tran(S, T, m), tra(sca(p))},
            {p * _Tran_Scale(T, S, m), sca(tra(p))},
            {p * _Scale_Mat(S, A, m), sca(p) * A},
            {p * _Scale_Mat(S, A2, m2), sca(p) * A2},
            {p * _Mat_Scale(A, S, m), sca(p * A)},
            {p * _Mat_Scale(A2, S, m2), sca(p * A2)},
            {p * _Tran_Mat(T, A, m), tra(p) * A},
            {p * _Tran_Mat(T, A2, m), tra(p) * A2},
            {p * _Mat_Tran(A, T, m), tra(p * A)},
            {p * _Mat_Tran(A2, T, m), tra(p * A2)},
            {p * Anchor2(R), rot(p)},
            {p * Linear2(R), rot(p)},
            {p * Isometry2(R), rot(p)},
            {p * Isometry2(T), tra(p)},
            {p * Isometry2(R, T), tra(rot(p))},
            {p * Anchor2(S), sca(p)},
        };
        for (std::size_t k = 0; k < std::size(checks); ++k) {
            SCOPED_TRACE(k);
            ExpectNear(checks[k].first, checks[k].second);
        }
    }
}

TEST(Transforms, RotationsComposeAndUndo) {
    const Rotate2 a(0.7), b(-2.1);
    EXPECT_NEAR((a + b).angle(), -1.4, 1e-15);
    ExpectNear(Point2(1, 0) << Rotate2(kPi / 2.0), Point2(0, 1));  // counter-clockwise
    Point2 q(3, -4);
    q *= a;
    q /= a;
    ExpectNear(q, Point2(3, -4));
}

TEST(Transforms, InverseRefusesSingularAndCopiesTheSource) {
    const Matrix2 singular(1.0, 1e-17, 1.0, 2e-17);  // det = 1e-17
    Matrix2 r(7, 7, 7, 7);
    EXPECT_EQ(_Inverse(singular, r), -1);
    EXPECT_EQ(r[0][1] + r[1][1], 3e-17);
    Linear2 lin(Matrix3x2(2.0, 4.0, 1.0, 2.0, 3.0, 5.0));  // det 0
    Linear2 lr(Matrix3x2(9, 9, 9, 9, 9, 9));
    EXPECT_EQ(_Inverse(lin, lr), -1);
    EXPECT_EQ(lr[2][1] * 10 + lr[0][1], 54.0);
    Random rnd;
    for (int i = 0; i < 50; ++i) {
        const Matrix3x2 m = rnd.matrix();
        if (std::fabs(m.det()) < 1e-3) continue;
        const Linear2 l(m);
        const Point2 p = rnd.point();
        Linear2 li;
        ASSERT_EQ(_Inverse(l, li), 0);
        ExpectNear((p * l) * li, p, 1e-9);
        ExpectNear((p * l) * l.inverse(), p, 1e-9);
        // An isometry: inverse, point-back mapping and /= all agree.
        const Isometry2 iso(Rotate2(rnd() * kPi), Translate2(rnd(), rnd()));
        Isometry2 ii;
        ASSERT_EQ(_Inverse(iso, ii), 0);
        Point2 back, q = p * iso;
        _Inverse_Isometry_Point(iso, p * iso, back);
        q /= iso;
        ExpectNear(back, p);
        ExpectNear((p * iso) * ii, p);
        ExpectNear(q, p);
    }
    // /= is the inverse of isometries only: a scaling is not undone.
    Point2 s = Point2(1, 1) * Linear2(Anchor2(Scale2(2, 3)));
    s /= Linear2(Anchor2(Scale2(2, 3)));
    ExpectNear(s, Point2(4, 9));
}

TEST(Transforms, ReflectionInALine) {
    const Line2 l(Point2(1, 0), Point2(3, 2));  // y = x - 1, un-normalised
    const Isometry2 m(l);
    EXPECT_NEAR(m.det(), -1.0, 1e-15);
    Random rnd;
    for (int i = 0; i < 20; ++i) {
        const Point2 p = rnd.point();
        const Point2 q = p * m;
        EXPECT_NEAR(l.signed_distance(q), -l.signed_distance(p), 1e-12);
        ExpectNear(q * m, p);
    }
    ExpectNear(Point2(0, 0) * m, Point2(1, -1));
}

TEST(Local2, FramesAndTheErrorState) {
    const Point2 o(2, 3);
    const Local2 f(o, Vector2(0, 5));
    ExpectNear(Point2(1, 0) * f, Point2(2, 4));  // local x along (0, 1)
    ExpectNear(Point2(0, 1) * f, Point2(1, 3));  // local y to its left
    Point2 g(2, 4), origin;
    g /= f;
    ExpectNear(g, Point2(1, 0));
    Vector2 axis;
    f.get(&origin, &axis);
    ExpectNear(origin, o);
    ExpectNear(axis.pnt(), Point2(0, 1));
    f.get(nullptr, nullptr);
    const Local2 byPoint(o, Point2(5, 7)), byAngle(o, std::atan2(4.0, 3.0)), bySinCos(o, 0.8, 0.6);
    for (const Local2* l : {&f, &byPoint, &byAngle, &bySinCos}) EXPECT_TRUE(static_cast<bool>(*l));
    for (const Local2* l : {&byPoint, &byAngle, &bySinCos})
        ExpectNear(Point2(5, 0) * *l, Point2(5, 7));
    // Error states: zero axis, an axis shorter than the tolerance, a non-unit sine/cosine pair,
    // an axis under the default tolerance 1e-10 (a negative tolerance asks for it).
    for (const Local2& l : {Local2(o, Vector2(0, 0)), Local2(o, Vector2(1e-3, 0), 1e-2),
                            Local2(o, 0.8, 0.61), Local2(o, Vector2(1e-11, 0), -1.0)}) {
        EXPECT_EQ(l.valid, 0);
        ExpectNear(Point2(1, 1) * l, Point2(3, 4));  // a pure translation to o
    }
    EXPECT_TRUE(static_cast<bool>(Local2(o, Vector2(1e-9, 0))));
    EXPECT_TRUE(static_cast<bool>(Local2(o, Vector2(1e-11, 0), 0.0)));  // zero asks for exactness
    Local2 fromIso(o, Vector2(0, 0));
    fromIso = Isometry2(Rotate2(kPi / 2.0), Translate2(1, 1));
    EXPECT_TRUE(static_cast<bool>(fromIso));
    ExpectNear(Point2(1, 0) * fromIso, Point2(1, 2));
}

}  // namespace
}  // namespace quillon
