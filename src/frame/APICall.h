/// The frames of the exported calls.
///
/// Each takes the name of the call, its history id and its arguments in signature order, results marked `Out`,
/// `OutCount` or `Append`. The constructor writes the journal line, if journaling is enabled, and empties the results;
/// `Run` does the work, turns whatever it throws into a code and gives the Result.
///
/// Work is a callable that takes `(History&, Result&)`, or `(Result&)` when the frame is not to look for the History.
/// It gives nothing, or a bool or pointer: false is a failure for which the Result gets a reason unless it has one.
#pragma once

#include "frame/APICallScope.h"
#include "frame/CallArguments.h"
#include "journal/JournalCall.h"

#include <tuple>
#include <type_traits>

namespace QRV
{
inline constexpr const char* kJournalChange = "QRV";
inline constexpr const char* kJournalQuery = "QRVReadOnly";
inline constexpr const char* kJournalPick = "QRVJournalPick";

/// The name of a call and, where these differ from what its frame says, how its line is written.
class CallName
{
public:
    CallName(const char* pName) : m_pName(pName), m_pJournalName(pName) {}

    CallName& JournaledAs(const char* pJournalName)
    {
        m_pJournalName = pJournalName;
        return *this;
    }
    CallName& JournaledUnder(const char* pType)
    {
        m_pType = pType;
        return *this;
    }
    CallName& Unjournaled()
    {
        m_bJournaled = false;
        return *this;
    }

    const char* m_pName;
    const char* m_pJournalName;
    const char* m_pType = nullptr;
    bool m_bJournaled = true;
};

template <class... Arguments>
void EmptyResults(const Arguments&... arguments)
{
    [[maybe_unused]] const auto emptyOne = [](const auto& argument)
    {
        if constexpr (ResultArgument<std::remove_cvref_t<decltype(argument)>>)
            argument.Empty();
    };
    (emptyOne(arguments), ...);
}

/// What comes before the work of every journaled call.
template <class... Arguments>
void EnterCall(const CallName& name, const char* pType, HistoryArgument history, const Arguments&... arguments)
{
    if (name.m_bJournaled && HistoryRegistry::Get().GetJournal().IsEnabled())
        WriteJournalCall({.nKind = history.m_nKind,
                          .pName = name.m_pJournalName,
                          .pType = name.m_pType ? name.m_pType : pType,
                          .nFirstHistory = history.m_nID,
                          .nSecondHistory = history.m_nSecondID},
                         arguments...);
    EmptyResults(arguments...);
}

template <class Work>
inline constexpr bool kTakesHistory = std::is_invocable_v<Work&, History&, Result&>;

template <class Work, class... History>
void DoWork(Work& work, Result& result, History&... history)
{
    if constexpr (std::is_void_v<std::invoke_result_t<Work&, History&..., Result&>>)
        work(history..., result);
    else if (!work(history..., result) && result.IsGood())
        result.SetErrorCode(Result::nFailure);
}

/// Runs a part of a call so that nothing is thrown across the library's boundary.
template <class Part>
void RunGuarded(Result& result, Part part) noexcept
{
    try
    {
        part();
    }
    catch (...)
    {
        result.SetErrorCode(Result::nCaughtException); // an error already held stays
    }
}

template <class Work>
Result RunReadOnly(std::uint64_t nHistoryID, Work& work)
{
    Result result;
    RunGuarded(result,
               [&]
               {
                   if constexpr (!kTakesHistory<Work>)
                       DoWork(work, result);
                   else if (History* pHistory = HistoryRegistry::Get().GetHistory(nHistoryID))
                       DoWork(work, result, *pHistory);
                   else
                       result.SetErrorCode(Result::nBadHistoryID);
               });
    return result;
}

template <class Work>
Result RunModifying(const char* pName, std::uint64_t nHistoryID, Work& work)
{
    APICallScope scope(pName);
    RunGuarded(scope.m_result,
               [&]
               {
                   scope.Start();
                   if (scope.Occupy(nHistoryID) && scope.Begin())
                       DoWork(work, scope.m_result, scope.GetHistory());
               });
    scope.End();
    return scope.m_result;
}

/// A call that changes the model: one transaction, committed when the Result is good and rolled back otherwise.
class ModifyingCall
{
public:
    template <class... Arguments>
    ModifyingCall(const CallName& name, std::uint64_t nHistoryID, const Arguments&... arguments)
        : m_pName(name.m_pName), m_nHistoryID(nHistoryID)
    {
        EnterCall(name, kJournalChange, nHistoryID, arguments...);
    }

    template <class Work>
    Result Run(Work work)
    {
        return RunModifying(m_pName, m_nHistoryID, work);
    }

private:
    const char* m_pName;
    std::uint64_t m_nHistoryID;
};

/// A call that changes nothing: no transaction, no progress hooks.
class ReadOnlyCall
{
public:
    template <class... Arguments>
    ReadOnlyCall(const CallName& name, HistoryArgument history, const Arguments&... arguments)
        : m_nHistoryID(history.m_nID)
    {
        EnterCall(name, kJournalQuery, history, arguments...);
    }

    template <class Work>
    Result Run(Work work)
    {
        return RunReadOnly(m_nHistoryID, work);
    }

private:
    std::uint64_t m_nHistoryID;
};

/// As ReadOnlyCall, and never journaled.
class UnjournaledCall
{
public:
    template <class... Arguments>
    explicit UnjournaledCall(HistoryArgument history, const Arguments&... arguments) : m_nHistoryID(history.m_nID)
    {
        EmptyResults(arguments...);
    }

    template <class Work>
    Result Run(Work work)
    {
        return RunReadOnly(m_nHistoryID, work);
    }

private:
    std::uint64_t m_nHistoryID;
};

/// A call that changes a History outside any transaction. Work that takes the History finds it kept busy; work that
/// does not, because it may end the History, sees to that itself.
class HistoryCall
{
public:
    template <class... Arguments>
    HistoryCall(const CallName& name, HistoryArgument history, const Arguments&... arguments)
        : m_pName(name.m_pName), m_nHistoryID(history.m_nID)
    {
        EnterCall(name, kJournalChange, history, arguments...);
    }

    template <class Work>
    Result Run(Work work)
    {
        APICallScope scope(m_pName);
        RunGuarded(scope.m_result,
                   [&]
                   {
                       scope.Start();
                       if constexpr (!kTakesHistory<Work>)
                           DoWork(work, scope.m_result);
                       else if (scope.Occupy(m_nHistoryID))
                           DoWork(work, scope.m_result, scope.GetHistory());
                   });
        scope.End();
        return scope.m_result;
    }

private:
    const char* m_pName;
    std::uint64_t m_nHistoryID;
};

/// A call that makes a History. Its line is written after the work, since it names the History made: the script
/// keeps the id in a variable. The line of a failed call is that of any other.
template <class... Arguments>
class NewHistoryCall
{
public:
    /// `nHistoryID` goes in with the wanted id and comes out with the one given.
    NewHistoryCall(const char* pName, std::uint64_t& nHistoryID, const Arguments&... arguments)
        : m_pName(pName), m_nHistoryID(nHistoryID), m_nWantedID(nHistoryID), m_arguments(arguments...)
    {
    }

    template <class Work>
    Result Run(Work work)
    {
        APICallScope scope(m_pName);
        RunGuarded(scope.m_result,
                   [&]
                   {
                       scope.Start();
                       DoWork(work, scope.m_result);
                   });
        if (HistoryRegistry::Get().GetJournal().IsEnabled())
            WriteLine(scope.m_result.IsGood());
        return scope.m_result;
    }

private:
    void WriteLine(bool bMade) const
    {
        const JournalHead head{.nKind = bMade ? nJournalCallKind::nNewHistory : nJournalCallKind::nOneHistory,
                               .pName = m_pName,
                               .pType = kJournalChange,
                               .nFirstHistory = m_nWantedID,
                               .nSecondHistory = m_nHistoryID};
        std::apply([&](const auto&... arguments) { WriteJournalCall(head, arguments...); }, m_arguments);
    }

    const char* m_pName;
    std::uint64_t& m_nHistoryID;
    std::uint64_t m_nWantedID;
    std::tuple<Arguments...> m_arguments;
};

/// A call that either computes what it would draw, as a query, or draws it, as a change.
class ModifyOrComputeCall
{
public:
    template <class... Arguments>
    ModifyOrComputeCall(bool bComputeOnly, const char* pName, std::uint64_t nHistoryID, const Arguments&... arguments)
        : m_bComputeOnly(bComputeOnly), m_pName(pName), m_nHistoryID(nHistoryID)
    {
        EnterCall(pName, bComputeOnly ? kJournalQuery : kJournalChange, nHistoryID, arguments...);
    }

    /// @param compute  bool(Result&): fills the results
    /// @param change   bool(History&, Result&): runs after `compute`, in the same transaction, if that gave true
    template <class Compute, class Change>
    Result Run(Compute compute, Change change)
    {
        if (m_bComputeOnly)
        {
            auto query = [&](History&, Result& result) { return compute(result); };
            return RunReadOnly(m_nHistoryID, query);
        }
        auto work = [&](History& history, Result& result) { return compute(result) && change(history, result); };
        return RunModifying(m_pName, m_nHistoryID, work);
    }

private:
    bool m_bComputeOnly;
    const char* m_pName;
    std::uint64_t m_nHistoryID;
};

/// Hands over the id of the object that the work made.
/// @return false for null
template <class T>
bool GiveID(const T* pObject, std::uint64_t& nObjectID)
{
    if (!pObject)
        return false;
    nObjectID = pObject->GetID();
    return true;
}
} // namespace QRV
