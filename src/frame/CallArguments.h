/// How an exported call names its arguments to its frame.
#pragma once

#include <QRV/Ids.h>

#include <type_traits>

namespace QRV
{
/// A reference parameter that brings a result; starts empty: an id as `INVALID_ID`, anything else as by default.
template <class T>
struct Out
{
    T& m_value;

    void Empty() const
    {
        if constexpr (std::is_same_v<T, std::uint64_t>)
            m_value = INVALID_ID;
        else
            m_value = T{};
    }
};

/// The same for an unsigned number that is no id: starts as 0.
struct OutCount
{
    std::uint64_t& m_nValue;

    void Empty() const { m_nValue = 0; }
};

/// A result that stays as the host passed it, to be appended to or to be written only when the work succeeds.
template <class T>
struct Append
{
    T& m_value;

    void Empty() const {}
};

/// Results are no part of a journal line.
template <class T>
concept ResultArgument = requires(const T& argument)
{
    argument.Empty();
};

/// Stands in the place of the history id in a call whose line has none.
struct NoHistory
{
};

/// The first argument of a call: a history id, or none.
struct HistoryArgument
{
    HistoryArgument(std::uint64_t nID) : m_nID(nID) {}
    HistoryArgument(NoHistory) : m_bPresent(false) {}

    std::uint64_t m_nID = INVALID_ID;
    bool m_bPresent = true;
};
} // namespace QRV
