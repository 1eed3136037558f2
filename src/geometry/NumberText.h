/// How coordinates are written as text.
#pragma once

#include <array>
#include <charconv>
#include <string>

namespace QRV
{
/// Appends the number with 16 significant digits, as a stream in the classic locale prints it; the host's locale has
/// no say.
inline void AppendNumber(std::string& strText, double dValue)
{
    std::array<char, 32> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), dValue, std::chars_format::general, 16);
    strText.append(digits.data(), end.ptr);
}
} // namespace QRV
