#include "history/History.h"

namespace QRV
{
bool History::DeleteRedo(bool bReuseIDs)
{
    if (!CanRedo() || m_objects.Size() == 0)
        return true;
    if (m_pOpenDelta && !m_pOpenDelta->GetObjectIDs().empty())
        return false;

    const std::size_t nFirst = std::size_t(m_nActiveDeltaIdx + 1);
    // All memory is asked for before anything is given up.
    std::set<std::uint64_t> aFreed; // objects that only the deltas behind the active one know
    if (bReuseIDs)
        for (std::size_t i = nFirst; i < m_aDeltas.size(); ++i)
            for (const std::uint64_t nID : m_aDeltas[i]->GetObjectIDs())
                if (nID < m_objects.Size() && m_objects.At(nID).GetActiveCount() == 0)
                    aFreed.insert(nID);

    bool bGood = true;
    while (m_aDeltas.size() > nFirst)
    {
        const Delta& delta = *m_aDeltas.back();
        for (const std::uint64_t nID : delta.GetObjectIDs())
            if (nID < m_objects.Size() && m_objects.At(nID).GetRecordCount() != 0)
                bGood = m_objects.At(nID).PopLastRecord(delta) && bGood;
        m_aDeltas.pop_back();
    }
    std::erase_if(aFreed, [&](std::uint64_t nID) { return m_objects.At(nID).GetRecordCount() != 0; });
    while (!aFreed.empty() && *aFreed.rbegin() + 1 == m_objects.Size())
    {
        aFreed.erase(std::prev(aFreed.end()));
        m_objects.Shrink();
    }
    m_reusableIDs.Merge(aFreed);
    // Ids that earlier runs freed may now stand at the end; they stay in the set, which only knows ids of the table.
    m_mapObjectsByType.clear();
    NotifyModelChanged(nModelRedoDeleted, "", INVALID_ID, INVALID_ID);
    return bGood;
}

bool History::MergeDeltas(std::uint64_t nFrom, std::uint64_t nTo, bool bReuseIDs)
{
    if (m_aDeltas.size() < 2)
        return true;
    if (m_nActiveDeltaIdx == INVALID_ID)
        return false;
    const std::uint64_t nFirst = nFrom == INVALID_ID ? 0 : FindDeltaIndex(nFrom);
    const std::uint64_t nLast = nTo == INVALID_ID ? m_nActiveDeltaIdx : FindDeltaIndex(nTo);
    if (nFirst == INVALID_ID || nLast == INVALID_ID || nFirst > m_nActiveDeltaIdx || nLast > m_nActiveDeltaIdx)
        return false;
    // The end of the run is sought behind its start; only as the active delta, not by name, may both be one.
    if (nFirst >= nLast)
        return nFirst == nLast && nTo == INVALID_ID;

    Delta& first = *m_aDeltas[nFirst];
    Delta& last = *m_aDeltas[nLast];
    std::set<std::uint64_t> aTouched;
    for (std::uint64_t i = nFirst; i <= nLast; ++i)
        aTouched.insert(m_aDeltas[i]->GetObjectIDs().begin(), m_aDeltas[i]->GetObjectIDs().end());
    for (const std::uint64_t nID : aTouched)
        if (nID >= m_objects.Size() || !m_objects.At(nID).CanMergeRecords(first, last))
            return false;
    std::vector<std::uint64_t> aMerged;
    aMerged.reserve(aTouched.size());

    // From here on nothing can fail.
    for (auto it = aTouched.begin(); it != aTouched.end();)
    {
        bool bRemoved = false;
        m_objects.At(*it).MergeRecords(first, last, bRemoved);
        if (!bRemoved)
            aMerged.push_back(*it);
        const bool bFree = bRemoved && bReuseIDs && m_objects.At(*it).GetRecordCount() == 0;
        it = bFree ? std::next(it) : aTouched.erase(it);
    }
    m_reusableIDs.Merge(aTouched);
    m_mapObjectsByType.clear();
    const std::uint64_t nFirstID = first.GetID();
    const std::uint64_t nLastID = last.GetID();
    last.m_aObjectIDs.swap(aMerged);
    last.m_nFlags = 0;
    // A run in which all that was made also died leaves nothing to step over.
    const std::uint64_t nEnd = last.m_aObjectIDs.empty() ? nLast + 1 : nLast;
    m_aDeltas.erase(m_aDeltas.begin() + std::ptrdiff_t(nFirst), m_aDeltas.begin() + std::ptrdiff_t(nEnd));
    m_nActiveDeltaIdx -= nEnd - nFirst; // wraps to INVALID_ID when all is gone
    NotifyModelChanged(nModelDeltasMerged, "", nFirstID, nLastID);
    return true;
}
} // namespace QRV
