#include "history/HistoryRegistry.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// Ids are 32 bits wide in stored data; the last two values mean none and invalid there.
constexpr std::uint64_t kIDLimit = 0xFFFFFFFE;

/// While it lives, changes of a History are refused.
class BusyScope
{
public:
    explicit BusyScope(History& history) : m_history(history) { m_history.SetBusy(true); }
    ~BusyScope() { m_history.SetBusy(false); }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    History& m_history;
};
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
    m_pLastFound = nullptr;
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

/// From kIDLimit up when no id is left.
std::uint64_t HistoryRegistry::FindFreeID() const
{
    std::uint64_t nFree = m_nNextHistoryID;
    while (m_mapHistories.contains(nFree))
        ++nFree;
    return nFree;
}

/// Tells the host that the History goes. No callback may touch it meanwhile.
void HistoryRegistry::AnnounceEnd(History& history) const
{
    const BusyScope busy(history);
    ModelChangeData change;
    change.historyID = history.GetID();
    change.type = nModelHistoryDeleted;
    Notify(change);
}

History* HistoryRegistry::CreateHistory(std::uint64_t& nID, bool bNonTemporary, Result& result)
{
    if (nID != INVALID_ID && nID >= kIDLimit)
    {
        result.SetErrorCode(Result::nBadInput);
        return nullptr;
    }
    History* pOld = nID == INVALID_ID ? nullptr : GetHistory(nID);
    if (pOld && !bNonTemporary && pOld->IsNonTemporary())
        pOld = nullptr; // stays, and the new one goes elsewhere
    const std::uint64_t nNewID = nID != INVALID_ID && (pOld || !GetHistory(nID)) ? nID : FindFreeID();
    if (nNewID >= kIDLimit)
    {
        result.SetErrorCode(Result::nFailure);
        return nullptr;
    }
    if (pOld && pOld->IsBusy())
    {
        result.SetErrorCode(Result::nHistoryOperationFailed, nID);
        return nullptr;
    }
    // All memory is asked for, and the host told, before anything changes.
    std::map<std::uint64_t, std::unique_ptr<History>> mapNew;
    History* pNew = mapNew.emplace(nNewID, std::make_unique<History>(nNewID, bNonTemporary)).first->second.get();
    if (pOld)
    {
        AnnounceEnd(*pOld);
        pNew->TakeReferencingGroupsFrom(*pOld);
        m_pLastFound = nullptr;
        m_mapHistories.erase(nNewID);
    }
    m_mapHistories.merge(mapNew);
    m_nNextHistoryID = std::max(m_nNextHistoryID, nNewID + 1);
    nID = nNewID;
    return pNew;
}

bool HistoryRegistry::DeleteHistory(std::uint64_t nID, Result& result)
{
    History* pHistory = GetHistory(nID);
    if (!pHistory)
        result.SetErrorCode(Result::nBadHistoryID);
    else if (pHistory->IsBusy())
        result.SetErrorCode(Result::nHistoryOperationFailed, nID);
    if (!result.IsGood())
        return false;
    AnnounceEnd(*pHistory);
    m_pLastFound = nullptr;
    m_mapHistories.erase(nID);
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
    m_bitmaps.Clear(); // now, for callbacks may make Histories with bitmaps of their own
    // Also when a callback throws. Ids that callbacks gave to Histories of their own are passed over then.
    struct StartOver
    {
        ~StartOver() { nNextID = 0; }
        std::uint64_t& nNextID;
    } const startOver{m_nNextHistoryID};

    ModelChangeData change;
    change.type = nModelAllHistoriesDeleted;
    Notify(change);
    change.type = nModelHistoryDeleted;
    while (!mapDying.empty())
    {
        change.historyID = mapDying.begin()->first;
        Notify(change);
        mapDying.erase(mapDying.begin());
    }
}

bool HistoryRegistry::ChangeHistoryID(std::uint64_t& nID, Result& result)
{
    const auto it = m_mapHistories.find(nID);
    const std::uint64_t nNewID = FindFreeID();
    if (it == m_mapHistories.end() || nNewID >= kIDLimit)
    {
        result.SetErrorCode(Result::nFailure);
        return false;
    }
    m_pLastFound = nullptr;
    m_nNextHistoryID = nNewID + 1;
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
    const auto reach = [&](std::uint64_t nReached)
    {
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
