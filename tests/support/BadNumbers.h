#pragma once

#include <limits>

namespace QRV
{
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();
} // namespace QRV
