#include "history/History.h"

#include <algorithm>

namespace QRV
{
// --- deltas

std::uint64_t History::FindDeltaIndex(std::uint64_t nID) const
{
    // Ids ascend along the list.
    const auto it = std::lower_bound(m_aDeltas.begin(), m_aDeltas.end(), nID,
                                     [](const auto& pDelta, std::uint64_t n) { return pDelta->GetID() < n; });
    return it != m_aDeltas.end() && (*it)->GetID() == nID ? std::uint64_t(it - m_aDeltas.begin()) : INVALID_ID;
}

std::uint64_t History::GetDeltaIDAt(std::uint64_t nIndex) const
{
    return nIndex < m_aDeltas.size() ? m_aDeltas[nIndex]->GetID() : INVALID_ID;
}

std::uint64_t History::GetDeltaIDRelative(int nOffset) const
{
    // With nothing applied the index is all ones, and the delta behind it wraps to 0.
    return GetDeltaIDAt(m_nActiveDeltaIdx + std::uint64_t(std::int64_t(nOffset)));
}

Delta* History::GetDelta(std::uint64_t nID, Result& result) const
{
    const std::uint64_t nIndex = nID == INVALID_ID ? INVALID_ID : FindDeltaIndex(nID);
    if (nIndex != INVALID_ID)
        return m_aDeltas[nIndex].get();
    result.SetErrorCode(Result::nBadInput);
    return nullptr;
}

void History::GetDeltaIDs(std::uint64_t nFrom, std::uint64_t nTo, std::vector<std::uint64_t>& aDeltas) const
{
    const std::uint64_t nFromIndex = FindDeltaIndex(nFrom);
    const std::uint64_t nToIndex = FindDeltaIndex(nTo);
    if ((nFrom != INVALID_ID && nFromIndex == INVALID_ID) || (nTo != INVALID_ID && nToIndex == INVALID_ID))
        return;
    // One place lower than the first delta stands the state before it.
    const std::int64_t nLast = nToIndex == INVALID_ID ? -1 : std::int64_t(nToIndex);
    std::int64_t n = nFromIndex == INVALID_ID ? -1 : std::int64_t(nFromIndex);
    for (const std::int64_t nStep = n <= nLast ? 1 : -1;; n += nStep)
    {
        aDeltas.push_back(n < 0 ? INVALID_ID : m_aDeltas[std::size_t(n)]->GetID());
        if (n == nLast)
            return;
    }
}

// --- one step

bool History::CanUndo() const
{
    return !m_aDeltas.empty() && m_nActiveDeltaIdx != INVALID_ID;
}

bool History::CanRedo() const
{
    return m_nActiveDeltaIdx + 1 < m_aDeltas.size();
}

void History::Undo(Result& result, bool bDeleteRedo, std::uint64_t nDelta, bool bNotify)
{
    if (CanUndo() && (nDelta == INVALID_ID || nDelta == GetActiveDeltaID()))
        UndoActive(result, bDeleteRedo, bNotify);
    else if (nDelta != INVALID_ID && !m_aDeltas.empty())
        UndoAwayFrom(result, nDelta, bDeleteRedo, bNotify);
}

/// A jump must not break off between two steps.
void History::ReserveReturns(std::uint64_t nFirst, std::uint64_t nLast)
{
    std::size_t nTouched = 0;
    for (std::uint64_t n = nFirst; n <= nLast; ++n)
        nTouched += m_aDeltas[n]->GetObjectIDs().size();
    m_trees.ReserveReturns(std::min(nTouched, m_objects.Size())); // nothing waits twice
}

void History::StepBack(Result& result, bool bNotify)
{
    Delta& delta = *m_aDeltas[m_nActiveDeltaIdx];
    const std::uint64_t nPrevious = delta.GetID();
    if (!UndoDelta(delta, nRecords::nKeep))
        result.SetErrorCode(Result::nUndoDeltaFailed, nPrevious);
    --m_nActiveDeltaIdx;
    if (bNotify)
        NotifyModelChanged(nModelUndone, "", nPrevious, GetActiveDeltaID());
}

void History::UndoActive(Result& result, bool bDeleteRedo, bool bNotify)
{
    ClearTemporaryTrees();
    ReserveReturns(m_nActiveDeltaIdx, m_nActiveDeltaIdx);
    std::set<std::uint64_t> aFreeable;
    if (bDeleteRedo)
        aFreeable = GetIDsMadeFrom(m_nActiveDeltaIdx);
    StepBack(result, bNotify);
    m_trees.TrimReturns();
    if (bDeleteRedo)
        DropRedo(aFreeable);
}

/// Undoes everything down to and including `nDelta`, for good.
void History::UndoAwayFrom(Result& result, std::uint64_t nDelta, bool bDeleteRedo, bool bNotify)
{
    const std::uint64_t nIndex = FindDeltaIndex(nDelta);
    if (nIndex == INVALID_ID)
        return result.SetErrorCode(Result::nBaseDeltaNotFound, nDelta);
    if (m_nActiveDeltaIdx == INVALID_ID || nIndex > m_nActiveDeltaIdx)
        return result.SetErrorCode(Result::nBadInput);

    ClearTemporaryTrees();
    ReserveReturns(nIndex, m_nActiveDeltaIdx);
    std::set<std::uint64_t> aFreeable = GetIDsMadeFrom(nIndex);
    DropRedo(aFreeable);
    while (m_nActiveDeltaIdx > nIndex)
    {
        StepBack(result, false);
        DropRedo(aFreeable);
    }
    if (result.IsGood())
        StepBack(result, bNotify);
    m_trees.TrimReturns();
    if (bDeleteRedo)
        DropRedo(aFreeable);
}

bool History::Redo(std::uint64_t nDelta)
{
    if (nDelta != INVALID_ID && nDelta != GetActiveDeltaID())
        return false;
    if (!CanRedo())
        return false;
    Delta& delta = *m_aDeltas[m_nActiveDeltaIdx + 1];
    ClearTemporaryTrees();
    ReserveReturns(m_nActiveDeltaIdx + 1, m_nActiveDeltaIdx + 1);
    const std::uint64_t nPrevious = GetActiveDeltaID();
    ++m_nActiveDeltaIdx;
    RedoDelta(delta);
    m_trees.TrimReturns();
    NotifyModelChanged(nModelRedone, "", nPrevious, GetActiveDeltaID());
    return true;
}

// --- jumps

bool History::CanUndoToDelta(std::uint64_t nDelta) const
{
    if (!CanUndo())
        return false;
    if (nDelta == INVALID_ID)
        return true;
    const std::uint64_t nIndex = FindDeltaIndex(nDelta);
    return nIndex != INVALID_ID && nIndex < m_nActiveDeltaIdx;
}

bool History::CanRedoToDelta(std::uint64_t nDelta) const
{
    const std::uint64_t nIndex = nDelta == INVALID_ID ? INVALID_ID : FindDeltaIndex(nDelta);
    return nIndex != INVALID_ID && (m_nActiveDeltaIdx == INVALID_ID || nIndex > m_nActiveDeltaIdx);
}

void History::UndoToDelta(Result& result, std::uint64_t nDelta, bool bDeleteRedo)
{
    if (!CanUndoToDelta(nDelta))
        return result.SetErrorCode(Result::nFailure);
    ClearTemporaryTrees();
    const std::uint64_t nFirst = FindDeltaIndex(nDelta) + 1; // INVALID_ID wraps to 0
    ReserveReturns(nFirst, m_nActiveDeltaIdx);
    std::set<std::uint64_t> aFreeable;
    if (bDeleteRedo)
        aFreeable = GetIDsMadeFrom(nFirst);
    const std::uint64_t nPrevious = GetActiveDeltaID();
    do
    {
        StepBack(result, false);
    } while (result.IsGood() && m_nActiveDeltaIdx != INVALID_ID && GetActiveDeltaID() != nDelta);
    m_trees.TrimReturns();
    if (!result.IsGood())
        return;
    NotifyModelChanged(nModelUndone, "", nPrevious, GetActiveDeltaID());
    if (bDeleteRedo)
        DropRedo(aFreeable);
}

void History::RedoToDelta(Result& result, std::uint64_t nDelta)
{
    if (!CanRedoToDelta(nDelta))
        return result.SetErrorCode(Result::nFailure);
    ClearTemporaryTrees();
    ReserveReturns(m_nActiveDeltaIdx + 1, FindDeltaIndex(nDelta));
    const std::uint64_t nPrevious = GetActiveDeltaID();
    do
    {
        ++m_nActiveDeltaIdx;
        RedoDelta(*m_aDeltas[m_nActiveDeltaIdx]);
    } while (CanRedo() && GetActiveDeltaID() != nDelta);
    m_trees.TrimReturns();
    NotifyModelChanged(nModelRedone, "", nPrevious, GetActiveDeltaID());
}

void History::UndoOrRedoToDelta(Result& result, std::uint64_t nDelta, bool bDeleteRedo)
{
    if (nDelta == GetActiveDeltaID())
        return;
    if (CanUndoToDelta(nDelta))
        UndoToDelta(result, nDelta, bDeleteRedo);
    else if (CanRedoToDelta(nDelta))
        RedoToDelta(result, nDelta);
    else
        result.SetErrorCode(Result::nBadInput);
}
} // namespace QRV
