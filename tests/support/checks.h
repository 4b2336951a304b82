// Small checks and helpers shared by the test programs.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "quillon/geometry/plane/vector2.h"
#include "quillon/platform/archive.h"

namespace quillon::test_support {

inline void ExpectNear(const Point2& got, const Point2& want, double tol = 1e-12) {
    EXPECT_NEAR(got.x, want.x, tol);
    EXPECT_NEAR(got.y, want.y, tol);
}

using Bytes = std::vector<unsigned char>;

// The bytes an archive stores for the value.
template <typename T>
Bytes Stored(const T& value) {
    std::ostringstream out;
    Archive ar(out);
    ar << value;
    const std::string s = out.str();
    return Bytes(s.begin(), s.end());
}

}  // namespace quillon::test_support
