#include "history/History.h"

#include <algorithm>

namespace QRV
{
namespace
{
using IDs = std::vector<std::uint64_t>;

constexpr std::uint64_t kSharedDelta = 8; ///< the flag by which the host marks deltas that copies have in common

void SortUnique(IDs& aIDs)
{
    std::ranges::sort(aIDs);
    const auto rest = std::ranges::unique(aIDs);
    aIDs.erase(rest.begin(), rest.end());
}

/// Takes the ids of ascending lists out.
void Remove(IDs& aIDs, const IDs& aOut)
{
    std::erase_if(aIDs, [&](std::uint64_t nID) { return std::ranges::binary_search(aOut, nID); });
}

void Append(const IDs& aIDs, IDs* pTo)
{
    if (pTo)
        pTo->insert(pTo->end(), aIDs.begin(), aIDs.end());
}

/// Makes one report of the reports of many deltas: each object stands in one list at most, and one that came and went
/// in none.
void Reduce(IDs& aCreated, IDs& aChanged, IDs& aDeleted)
{
    SortUnique(aCreated);
    SortUnique(aChanged);
    SortUnique(aDeleted);
    Remove(aChanged, aCreated);
    Remove(aChanged, aDeleted);
    IDs aBoth;
    std::ranges::set_intersection(aCreated, aDeleted, std::back_inserter(aBoth));
    Remove(aCreated, aBoth);
    Remove(aDeleted, aBoth);
}
} // namespace

void Delta::Classify(const History& history, const ChangeLists& lists, const std::vector<nObjectType>& aTypes) const
{
    for (const std::uint64_t nID : m_aObjectIDs)
    {
        if (!aTypes.empty() && std::ranges::find(aTypes, history.GetObjectType(nID)) == aTypes.end())
            continue;
        const ObjectHistory& records = history.GetObjectTable().At(nID);
        IDs* const pList = records.IsDeletedIn(this)   ? lists.pDeleted
                           : records.IsCreatedIn(this) ? lists.pCreated
                                                       : lists.pChanged;
        if (pList)
            pList->push_back(nID);
    }
}

bool History::ReportActiveDelta(const ChangeLists& lists, nObjectType nType, bool bNext) const
{
    if ((m_pOpenDelta && !m_pOpenDelta->GetObjectIDs().empty()) || m_aDeltas.empty())
        return false;
    // With nothing applied the index is all ones: past the end, and the one behind it wraps to 0.
    const std::uint64_t nIndex = m_nActiveDeltaIdx + (bNext ? 1 : 0);
    if (nIndex >= m_aDeltas.size())
        return true;
    const std::vector<nObjectType> aTypes(nType == nUnspecifiedType ? 0 : 1, nType);
    m_aDeltas[nIndex]->Classify(*this, bNext ? lists.GetReversed() : lists, aTypes);
    return true;
}

bool History::FindDeltaOrStart(std::uint64_t nDelta, std::uint64_t& nPlace) const
{
    const bool bStart = nDelta == 0 || nDelta == INVALID_ID;
    const std::uint64_t nIndex = bStart ? INVALID_ID : FindDeltaIndex(nDelta);
    nPlace = nIndex + 1; // INVALID_ID wraps to 0
    return bStart || nIndex != INVALID_ID;
}

bool History::ReportDeltaRange(std::uint64_t nFrom, std::uint64_t nTo, const ChangeLists& lists,
                               const std::vector<nObjectType>& aTypes) const
{
    // Places are numbers of deltas applied: the walk goes over those in between.
    std::uint64_t nStart = 0;
    std::uint64_t nEnd = 0;
    if (m_pOpenDelta || m_aDeltas.empty() || !FindDeltaOrStart(nFrom, nStart) || !FindDeltaOrStart(nTo, nEnd) ||
        nStart == nEnd)
        return false;
    const ChangeLists out = nStart < nEnd ? lists : lists.GetReversed();
    const auto [nLower, nUpper] = std::minmax(nStart, nEnd);
    if (nUpper - nLower == 1)
    {
        m_aDeltas[nLower]->Classify(*this, out, aTypes);
        return true;
    }
    IDs aCreated;
    IDs aChanged;
    IDs aDeleted;
    for (std::uint64_t n = nLower; n < nUpper; ++n)
        m_aDeltas[n]->Classify(*this, {&aCreated, &aChanged, &aDeleted}, aTypes);
    Reduce(aCreated, aChanged, aDeleted);
    Append(aCreated, out.pCreated);
    Append(aChanged, out.pChanged);
    Append(aDeleted, out.pDeleted);
    return true;
}

std::uint32_t History::Compare(std::uint64_t nActiveIndex, const std::vector<std::uint64_t>& aDeltaIDs) const
{
    if (aDeltaIDs.empty() && m_aDeltas.empty())
        return nHistoryAgrees;
    std::uint32_t nBits = nHistoryAgrees;
    std::size_t nShared = 0;
    for (; nShared < m_aDeltas.size() && (m_aDeltas[nShared]->GetFlags() & kSharedDelta) != 0; ++nShared)
        if (nShared < aDeltaIDs.size() && aDeltaIDs[nShared] != m_aDeltas[nShared]->GetID())
            nBits |= nHistoryDeltaDiffers;
    if (nShared < aDeltaIDs.size())
        nBits |= nHistoryListLonger;
    else if (nShared > aDeltaIDs.size())
        nBits |= nHistoryPrefixLonger;
    if (m_aDeltas.size() > nShared)
        nBits |= nHistoryHasLaterDeltas;
    if (m_nActiveDeltaIdx < nActiveIndex)
        nBits |= nHistoryActiveBelow;
    else if (m_nActiveDeltaIdx > nActiveIndex)
        nBits |= nHistoryActiveAbove;
    return nBits;
}
} // namespace QRV
