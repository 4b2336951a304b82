// Shared helpers of the space tests: a seeded source of random values, near-equality checks, and
// expected archive records.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <sstream>
#include <string>

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

// Expected records, built value by value in little-endian order independently of the host.
struct Expect {
    std::string bytes;
    Expect& le(std::uint64_t bits, int n) {
        for (int i = 0; i < n; ++i) bytes.push_back(static_cast<char>(bits >> (8 * i)));
        return *this;
    }
    Expect& d(std::initializer_list<double> vs) {
        for (double v : vs) le(std::bit_cast<std::uint64_t>(v), 8);
        return *this;
    }
    Expect& i32(std::initializer_list<std::int32_t> vs) {
        for (std::int32_t v : vs) le(static_cast<std::uint32_t>(v), 4);
        return *this;
    }
    Expect& ws(const char* ascii) {  // a short wide string
        le(0xFF, 1).le(0xFFFE, 2).le(std::string(ascii).size(), 1);
        for (const char* c = ascii; *c; ++c) le(static_cast<unsigned char>(*c), 2);
        return *this;
    }
};

// The bytes `write` puts into an archive.
template <typename F>
std::string Written(F write) {
    std::ostringstream out;
    Archive ar(out);
    write(ar);
    return out.str();
}

// Runs `read` on an archive over `bytes`: the exception's cause, or -1 when the read succeeded.
template <typename F>
int Cause(const std::string& bytes, F read) {
    std::istringstream in(bytes);
    Archive ar(in);
    try {
        read(ar);
    } catch (const ArchiveException& e) {
        return e.cause;
    }
    return -1;
}

}  // namespace quillon::space_test
