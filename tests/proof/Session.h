/// A session of calls over one History, and what must hold of the model after each.
#pragma once

#include "proof/Calls.h"

#include <set>

namespace QRV
{
/// The texts of all objects that nothing owns, one below the other by ascending id, each with what it reaches.
std::string DumpObjects(std::uint64_t nHistoryID);
/// What is wrong with any History, its box trees beside a scan over all objects; nothing if all is well.
std::string FindFaults();
/// What else a failed call must leave as it was: the steps with their flags, a bar between those done and those undone.
std::string DescribeSteps(std::uint64_t nHistoryID);

/// Makes up calls and makes them. A rule that is broken throws `std::runtime_error` with what broke.
class Session
{
public:
    explicit Session(std::uint64_t nHistoryID) : m_nHistoryID(nHistoryID) {}

    /// A call with arguments that the seed chooses.
    void Make(const CallKind& kind, std::uint64_t nSeed);
    /// To nothing and back again.
    void UndoAndRedoAll();

private:
    void FollowHistory();
    void RememberDead();
    void CheckUndoAndRedo();

    std::uint64_t m_nHistoryID;
    std::set<std::uint64_t> m_everLive;
    std::string m_strModel; ///< as it was dumped last
};
} // namespace QRV
