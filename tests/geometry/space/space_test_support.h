// Shared helpers of the space tests: a seeded source of random values and near-equality checks.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "quillon/geometry/space/space_types.h"

namespace quillon::space_test {

struct Random {
    std::mt19937 gen;
    explicit Random(unsigned seed) : gen(seed) {}
    double operator()(double lo = -2.0, double hi = 2.0) {
        return std::uniform_real_distribution<double>(lo, hi)(gen);
    }
    Point3 point(double r = 2.0) { return Point3((*this)(-r, r), (*this)(-r, r), (*this)(-r, r)); }
    Vector3 vector(double r = 2.0) { return point(r).vec(); }
    Matrix3 matrix() {
        Random& g = *this;
        return Matrix3(g(), g(), g(), g(), g(), g(), g(), g(), g());
    }
    Matrix4x3 matrix4x3() { return Matrix4x3(matrix(), vector()); }
};

inline void ExpectNear(const Point3& got, const Point3& want, double tol = 1e-12) {
    EXPECT_NEAR(got.x, want.x, tol);
    EXPECT_NEAR(got.y, want.y, tol);
    EXPECT_NEAR(got.z, want.z, tol);
}
inline void ExpectNear(const Vector3& got, const Vector3& want, double tol = 1e-12) {
    ExpectNear(got.pnt(), want.pnt(), tol);
}
inline void ExpectNear(const Matrix4x3& got, const Matrix4x3& want, double tol = 1e-12) {
    for (short i = 0; i < 4; ++i) {
        for (short j = 0; j < 3; ++j) EXPECT_NEAR(got[i][j], want[i][j], tol) << i << "," << j;
    }
}
inline void ExpectNear(const Matrix3& got, const Matrix3& want, double tol = 1e-12) {
    ExpectNear(Matrix4x3(got), Matrix4x3(want), tol);
}

}  // namespace quillon::space_test
