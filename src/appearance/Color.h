/// A colour with opacity.
#pragma once

#include <cstdint>

namespace QRV
{
/// Red, green, blue and opacity, 0 to 255 each. Opaque white by default.
struct Color
{
    std::uint8_t r = 255;
    std::uint8_t g = 255;
    std::uint8_t b = 255;
    std::uint8_t a = 255;

    bool operator==(const Color&) const = default;
};
} // namespace QRV
