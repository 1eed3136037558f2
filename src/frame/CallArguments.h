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

template <class T>
Out(T&) -> Out<T>;

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

template <class T>
Append(T&) -> Append<T>;

/// Results are no part of a journal line.
template <class T>
concept ResultArgument = requires(const T& argument)
{
    argument.Empty();
};

/// How the history ids of a call are written in the journal.
enum class nJournalCallKind
{
    nNoHistory = 0,
    nOneHistory = 1,
    nTwoHistories = 2,
    nNewHistory = 3 ///< the call makes the second one, which gets a script variable
};

/// Stands in the place of the history id in a call whose line has none.
struct NoHistory
{
};

/// Stands there in a call on two of them. The frame looks for the first.
struct TwoHistories
{
    std::uint64_t m_nFirst;
    std::uint64_t m_nSecond;
};

/// The first argument of a call: a history id, two, or none.
struct HistoryArgument
{
    HistoryArgument(std::uint64_t nID) : m_nID(nID) {}
    HistoryArgument(TwoHistories both)
        : m_nID(both.m_nFirst), m_nSecondID(both.m_nSecond), m_nKind(nJournalCallKind::nTwoHistories)
    {
    }
    HistoryArgument(NoHistory) : m_nKind(nJournalCallKind::nNoHistory) {}

    std::uint64_t m_nID = INVALID_ID;
    std::uint64_t m_nSecondID = INVALID_ID;
    nJournalCallKind m_nKind = nJournalCallKind::nOneHistory;
};
} // namespace QRV
