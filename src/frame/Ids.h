/// The numbers by which histories, objects and deltas are named at the library's boundary.
#pragma once

#include <compare>
#include <cstdint>

namespace QRV
{
using uint64 = std::uint64_t;

/// No history, no object, no delta.
inline constexpr std::uint64_t INVALID_ID = ~std::uint64_t{0};

/// Names one object across all Histories. Ordered by history id, then by object id.
struct ObjectHistoryID
{
    std::uint64_t m_nHistoryID = INVALID_ID;
    std::uint64_t m_nObjectID = INVALID_ID;

    auto operator<=>(const ObjectHistoryID&) const = default;
};
} // namespace QRV
