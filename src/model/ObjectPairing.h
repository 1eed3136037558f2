/// The comparison of two structures of objects, or of two whole models.
#pragma once

#include "model/Object.h"

#include <map>
#include <set>

namespace QRV
{
/// What stands for what in a comparison under way: what one side calls a, the other calls b.
///
/// Each object has one partner at most, and an object stands for itself whatever its partner is. Histories that groups
/// on both sides show are paired too, and compared by `MatchHistories`, one after the other.
class ObjectPairing
{
public:
    /// Pairs two lists by position. False for lists of different lengths, and where an object has another partner.
    bool SetPairs(const std::vector<Object*>& aFirst, const std::vector<Object*>& aSecond);
    /// True when both are null, are one, are a pair already, or are both new here: then they are a pair from now on.
    bool Pair(const Object* pA, const Object* pB);
    /// The same for Histories, INVALID_ID being none.
    bool PairHistories(std::uint64_t nA, std::uint64_t nB);

    /// Whether two objects are of one class with equal members and attributes. What a group shows is paired only.
    bool Match(const Object& a, const Object& b);
    /// Compares what has been paired by `PairHistories`, and what their groups show: objects live under the same ids,
    /// and match. Deltas and dead objects do not count.
    bool MatchHistories();

private:
    bool MatchLiveObjects(const History& a, const History& b);

    std::unordered_map<const Object*, const Object*> m_mapForward;
    std::unordered_map<const Object*, const Object*> m_mapBackward;
    std::map<std::uint64_t, std::uint64_t> m_mapHistories;
    std::set<std::uint64_t> m_aPairedHistories; ///< second ids of that map
    std::vector<std::pair<std::uint64_t, std::uint64_t>> m_aHistoriesToMatch;
};
} // namespace QRV
