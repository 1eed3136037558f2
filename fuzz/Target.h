/// What every fuzz target has. libFuzzer drives it, or `ReplayCorpus.cpp` over inputs that are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// Runs one input, which no other input sees anything of. Any bytes must do; what the library does wrong ends the
/// process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize);

namespace fuzz
{
[[noreturn]] inline void Fail(std::string_view strWhat)
{
    std::fprintf(stderr, "%.*s\n", static_cast<int>(strWhat.size()), strWhat.data());
    std::abort();
}

inline std::string ToText(const std::uint8_t* pData, std::size_t nSize)
{
    return {pData, pData + nSize};
}

/// A number that hangs on every byte (FNV-1a).
inline std::uint64_t Mix(std::string_view strText)
{
    std::uint64_t nMixed = 0xcbf29ce484222325;
    for (const char c : strText)
        nMixed = (nMixed ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return nMixed;
}

/// The one of that name. Any other name chooses one too, so that no change to an input is in vain.
template <class List>
const auto& Choose(const List& aNamed, std::string_view strName)
{
    for (const auto& named : aNamed)
        if (named.strName == strName)
            return named;
    return aNamed[Mix(strName) % aNamed.size()];
}
} // namespace fuzz
