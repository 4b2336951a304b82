// Angle constants shared by the plane and the contour code: one definition, so every module
// wraps and compares angles with the same double.
#pragma once

#include <numbers>

namespace quillon {

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kTwoPi = 2.0 * std::numbers::pi;

}  // namespace quillon
