#include "history/History.h"
#include "history/HistoryRegistry.h"

namespace QRV
{
bool History::BeginTransaction(std::uint64_t nID, History*& pHistory, Result& result, bool bReuseIDs)
{
    History* pFound = HistoryRegistry::Get().GetHistory(nID);
    if (!pFound)
    {
        result.SetErrorCode(Result::nBadHistoryID);
        return false;
    }
    if (!pFound->StartDelta())
    {
        result.SetErrorCode(Result::nHistoryOperationFailed, nID);
        return false;
    }
    pHistory = pFound;
    pFound->DeleteRedo(bReuseIDs);
    return true;
}

void History::EndTransaction(History* pHistory, Result& result, const char* pName) noexcept
{
    if (!pHistory)
        return;
    try
    {
        if (result.IsGood())
            pHistory->Commit(pName);
        else
            pHistory->Rollback();
    }
    catch (...)
    {
        result.SetErrorCode(Result::nCaughtException);
    }
}

bool History::StartDelta()
{
    if (m_pOpenDelta)
        return false;
    ClearTemporaryTrees();
    m_pOpenDelta = std::make_unique<Delta>();
    return true;
}

bool History::Commit(const char* pName, bool bSilent)
{
    ClearTemporaryTrees();
    if (!m_pOpenDelta)
        return false;
    const std::uint64_t nPrevious = GetActiveDeltaID();
    std::set<std::uint64_t> aUnmade;
    try
    {
        CompleteOpenDelta();
        for (const std::uint64_t nID : m_pOpenDelta->m_aObjectIDs)
            if (m_objects.At(nID).GetRecordCount() == 0)
                aUnmade.insert(nID);
        if (m_aDeltas.size() == m_aDeltas.capacity())
            m_aDeltas.reserve(2 * m_aDeltas.size() + 4);
    }
    catch (...)
    {
        Rollback();
        throw;
    }
    DropUnmadeObjects(aUnmade);
    ForgetDerived();
    m_trees.TrimReturns();
    m_reusableIDs.ForgetTaken();
    if (m_pOpenDelta->m_aObjectIDs.empty())
    {
        m_pOpenDelta.reset();
        return true;
    }
    m_pOpenDelta->m_nID = m_nNextDeltaID++;
    m_aDeltas.push_back(std::move(m_pOpenDelta));
    m_nActiveDeltaIdx = m_aDeltas.size() - 1;
    if (!bSilent)
        NotifyModelChanged(nModelCommitted, pName, nPrevious, m_aDeltas.back()->m_nID);
    return true;
}

void History::CompleteOpenDelta()
{
    // By index: filling a cache may bring further objects into the Delta.
    for (std::size_t i = 0; i < m_pOpenDelta->m_aObjectIDs.size(); ++i)
        if (Object* pObject = GetObject(m_pOpenDelta->m_aObjectIDs[i]))
            pObject->CompleteCaches();
}

void History::DropUnmadeObjects(std::set<std::uint64_t>& aUnmade) noexcept
{
    if (aUnmade.empty())
        return;
    std::vector<std::uint64_t>& aIDs = m_pOpenDelta->m_aObjectIDs;
    for (std::size_t i = 0; i < aIDs.size();)
    {
        if (m_objects.At(aIDs[i]).GetRecordCount() != 0)
        {
            ++i;
            continue;
        }
        aIDs[i] = aIDs.back();
        aIDs.pop_back();
    }
    m_reusableIDs.Merge(aUnmade);
}

void History::ForgetDerived() noexcept
{
    m_aAwaitingEdges.clear();
    m_aAwaitingFaces.clear();
    m_bodyBoxes.Clear();
    m_mapObjectsByType.clear();
}

bool History::Rollback() noexcept
{
    ClearTemporaryTrees();
    if (!m_pOpenDelta)
        return false;
    ForgetDerived();
    UndoDelta(*m_pOpenDelta, nRecords::nDrop);
    m_trees.TrimReturns();
    m_reusableIDs.ForgetTaken();
    m_pOpenDelta.reset();
    return true;
}

void History::LeaveSearch(const Delta& delta) noexcept
{
    for (const std::uint64_t nID : delta.m_aObjectIDs)
        if (Object* pObject = GetObject(nID))
            pObject->RemoveFromSearch();
}

void History::ReturnToSearch(const Delta& delta) noexcept
{
    for (const std::uint64_t nID : delta.m_aObjectIDs)
        if (Object* pObject = GetObject(nID))
            pObject->AddToSearch();
    m_mapObjectsByType.clear();
}

bool History::UndoDelta(Delta& delta, nRecords nRecordsAfter) noexcept
{
    m_outerSides.Clear();
    LeaveSearch(delta);
    bool bAll = true;
    for (auto it = delta.m_aObjectIDs.rbegin(); it != delta.m_aObjectIDs.rend(); ++it)
    {
        if (!m_objects.At(*it).Undo(delta))
            bAll = false;
        if (nRecordsAfter == nRecords::nDrop)
            DropRecord(*it, delta);
    }
    ReturnToSearch(delta);
    return bAll;
}

void History::DropRecord(std::uint64_t nID, const Delta& delta) noexcept
{
    ObjectHistory& records = m_objects.At(nID);
    records.PopLastRecord(delta);
    if (records.GetRecordCount() != 0)
        return;
    if (nID + 1 == m_objects.Size())
        m_objects.Shrink();
    else
        m_reusableIDs.PutBack(nID);
}

void History::RedoDelta(Delta& delta) noexcept
{
    m_outerSides.Clear();
    LeaveSearch(delta);
    for (const std::uint64_t nID : delta.m_aObjectIDs)
        m_objects.At(nID).Redo(delta);
    ReturnToSearch(delta);
}
} // namespace QRV
