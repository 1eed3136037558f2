#include "history/HistoryRegistry.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// Ids are 32 bits wide in stored data; the last two values mean none and invalid there.
constexpr std::uint64_t kIDLimit = 0xFFFFFFFE;
} // namespace

HistoryRegistry& HistoryRegistry::Get()
{
    static HistoryRegistry registry;
    return registry;
}

HistoryRegistry::~HistoryRegistry()
{
    m_modelChangedCallback = nullptr;
    m_progressHooks = {};
    m_mapHistories.clear();
    m_journal.Close();
}

History* HistoryRegistry::GetHistory(std::uint64_t nID) const
{
    if (m_pLastFound && m_pLastFound->GetID() == nID)
        return m_pLastFound;
    const auto it = m_mapHistories.find(nID);
    if (it == m_mapHistories.end())
        return nullptr;
    m_pLastFound = it->second.get();
    return m_pLastFound;
}

void HistoryRegistry::SetModelChangedCallback(std::function<void(const ModelChangeData&)> callback)
{
    m_modelChangedCallback = std::move(callback);
}

void HistoryRegistry::Notify(const ModelChangeData& change) const
{
    // A copy: the callback may register another in its own place.
    if (const auto callback = m_modelChangedCallback)
        callback(change);
}

bool HistoryRegistry::FindFreeID(std::uint64_t& nID)
{
    std::uint64_t nFree = m_nNextHistoryID;
    while (m_mapHistories.contains(nFree))
        ++nFree;
    if (nFree >= kIDLimit)
        return false;
    nID = nFree;
    m_nNextHistoryID = nFree + 1;
    return true;
}

void HistoryRegistry::Remove(std::uint64_t nID)
{
    m_pLastFound = nullptr;
    m_mapHistories.erase(nID);
}

History* HistoryRegistry::CreateHistory(std::uint64_t& nID, bool bNonTemporary, Result& result)
{
    if (nID != INVALID_ID && nID >= kIDLimit)
    {
        result.SetErrorCode(Result::nBadInput);
        return nullptr;
    }
    History* pOld = nID == INVALID_ID ? nullptr : GetHistory(nID);
    const bool bKeepOld = pOld && !bNonTemporary && pOld->IsNonTemporary();
    std::uint64_t nNewID = nID;
    if ((nID == INVALID_ID || bKeepOld) && !FindFreeID(nNewID))
    {
        result.SetErrorCode(Result::nFailure);
        return nullptr;
    }
    auto pNew = std::make_unique<History>(nNewID, bNonTemporary);
    if (pOld && !bKeepOld)
    {
        if (pOld->IsBusy())
        {
            result.SetErrorCode(Result::nHistoryOperationFailed, nID);
            return nullptr;
        }
        ModelChangeData change;
        change.historyID = nID;
        change.type = nModelHistoryDeleted;
        Notify(change);
        if (History* pStill = GetHistory(nID))
            pNew->TakeReferencingGroupsFrom(*pStill);
        Remove(nID);
    }
    m_nNextHistoryID = std::max(m_nNextHistoryID, nNewID + 1);
    nID = nNewID;
    return (m_mapHistories[nNewID] = std::move(pNew)).get();
}

bool HistoryRegistry::DeleteHistory(std::uint64_t nID, Result& result)
{
    History* pHistory = GetHistory(nID);
    if (!pHistory)
    {
        result.SetErrorCode(Result::nBadHistoryID);
        return false;
    }
    ModelChangeData change;
    change.historyID = nID;
    change.type = nModelHistoryDeleted;
    Notify(change);
    Remove(nID);
    return true;
}

void HistoryRegistry::DeleteAllHistories(Result& result)
{
    for (const auto& [nID, pHistory] : m_mapHistories)
        if (pHistory->IsBusy())
            return result.SetErrorCode(Result::nHistoryOperationFailed, nID);
    m_pLastFound = nullptr;
    auto mapDying = std::move(m_mapHistories);
    m_mapHistories.clear();
    m_nNextHistoryID = 0;

    ModelChangeData change;
    change.type = nModelAllHistoriesDeleted;
    Notify(change);
    while (!mapDying.empty())
    {
        change.historyID = mapDying.begin()->first;
        change.type = nModelHistoryDeleted;
        Notify(change);
        mapDying.erase(mapDying.begin());
    }
}

bool HistoryRegistry::ChangeHistoryID(std::uint64_t& nID, Result& result)
{
    const auto it = m_mapHistories.find(nID);
    std::uint64_t nNewID = INVALID_ID;
    if (it == m_mapHistories.end() || !FindFreeID(nNewID))
    {
        result.SetErrorCode(Result::nFailure);
        return false;
    }
    m_pLastFound = nullptr;
    auto node = m_mapHistories.extract(it);
    node.key() = nNewID;
    node.mapped()->SetID(nNewID);
    m_mapHistories.insert(std::move(node));
    nID = nNewID;
    return true;
}

void HistoryRegistry::GetReachable(std::uint64_t nID, bool bUpward, std::vector<std::uint64_t>& aIDs) const
{
    std::set<std::uint64_t> seen{nID};
    std::size_t nNext = aIDs.size();
    aIDs.push_back(nID);
    const auto reach = [&](std::uint64_t nReached) {
        if (seen.insert(nReached).second)
            aIDs.push_back(nReached);
    };
    for (; nNext < aIDs.size(); ++nNext)
    {
        History* pHistory = GetHistory(aIDs[nNext]);
        if (!pHistory)
            continue;
        if (bUpward)
        {
            for (const ObjectHistoryID& group : pHistory->GetReferencingGroups())
                reach(group.m_nHistoryID);
            continue;
        }
        std::vector<Object*> aGroups;
        pHistory->GetObjectsByType(aGroups, nGroupType, false);
        for (const Object* pGroup : aGroups)
            reach(pGroup->GetReferencedHistoryID());
    }
}
} // namespace QRV
