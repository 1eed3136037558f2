#include "frame/APICall.h"
#include "history/HistoryRegistry.h"

#include <QRV/API.h>

namespace QRV
{
Result APIUndoHistory(std::uint64_t nHistoryID, bool bDeleteRedo, std::uint64_t nDelta)
{
    return HistoryCall("APIUndoHistory", nHistoryID, bDeleteRedo, nDelta)
        .Run([&](History& history, Result& result) { history.Undo(result, bDeleteRedo, nDelta, true); });
}

Result APIRedoHistory(std::uint64_t nHistoryID, std::uint64_t nDelta)
{
    return HistoryCall("APIRedoHistory", nHistoryID, nDelta)
        .Run([&](History& history, Result&) { return history.Redo(nDelta); });
}

Result APIUndoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta)
{
    return HistoryCall("APIUndoHistoryToDelta", nHistoryID, nDelta)
        .Run([&](History& history, Result& result) { history.UndoToDelta(result, nDelta, false); });
}

Result APIRedoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta)
{
    return HistoryCall("APIRedoHistoryToDelta", nHistoryID, nDelta)
        .Run([&](History& history, Result& result) { history.RedoToDelta(result, nDelta); });
}

Result APIUndoOrRedoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta, bool bDeleteRedo)
{
    return HistoryCall("APIUndoOrRedoHistoryToDelta", nHistoryID, nDelta, bDeleteRedo)
        .Run([&](History& history, Result& result) { history.UndoOrRedoToDelta(result, nDelta, bDeleteRedo); });
}

Result APICanUndoHistoryReadOnly(std::uint64_t nHistoryID, bool& bCan)
{
    return ReadOnlyCall("APICanUndoHistoryReadOnly", nHistoryID, Out{bCan})
        .Run([&](History& history, Result&) { bCan = history.CanUndo(); });
}

Result APICanRedoHistoryReadOnly(std::uint64_t nHistoryID, bool& bCan)
{
    return ReadOnlyCall("APICanRedoHistoryReadOnly", nHistoryID, Out{bCan})
        .Run([&](History& history, Result&) { bCan = history.CanRedo(); });
}

Result APICanUndoHistoryToDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, bool& bCan)
{
    return ReadOnlyCall("APICanUndoHistoryToDeltaReadOnly", nHistoryID, nDelta, Out{bCan})
        .Run([&](History& history, Result&) { bCan = history.CanUndoToDelta(nDelta); });
}

Result APICanRedoHistoryToDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, bool& bCan)
{
    return ReadOnlyCall("APICanRedoHistoryToDeltaReadOnly", nHistoryID, nDelta, Out{bCan})
        .Run([&](History& history, Result&) { bCan = history.CanRedoToDelta(nDelta); });
}

Result APIDeleteAllRedoHistory(std::uint64_t nHistoryID, bool bReuseIDs)
{
    return HistoryCall("APIDeleteAllRedoHistory", nHistoryID, bReuseIDs)
        .Run([&](History& history, Result&) { return history.DeleteRedo(bReuseIDs); });
}

Result APIMergeDeltas(std::uint64_t nHistoryID, std::uint64_t nFrom, std::uint64_t nTo, bool bReuseIDs)
{
    return HistoryCall("APIMergeDeltas", nHistoryID, nFrom, nTo, bReuseIDs)
        .Run([&](History& history, Result&) { return history.MergeDeltas(nFrom, nTo, bReuseIDs); });
}

Result APIGetIdOfActiveDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t& nDelta, int nOffset)
{
    return ReadOnlyCall("APIGetIdOfActiveDeltaReadOnly", nHistoryID, Out{nDelta}, nOffset)
        .Run([&](History& history, Result&) { nDelta = history.GetDeltaIDRelative(nOffset); });
}

Result APIGetLastDeltaIDReadOnly(std::uint64_t nHistoryID, std::uint64_t& nDelta, std::uint64_t nFromEnd)
{
    return UnjournaledCall(nHistoryID, Out{nDelta})
        .Run(
            [&](History& history, Result&)
            {
                const auto& aDeltas = history.GetDeltas();
                if (nFromEnd < aDeltas.size())
                    nDelta = aDeltas[aDeltas.size() - 1 - nFromEnd]->GetID();
            });
}

Result APIGetAllHistoryDeltasReadOnly(std::uint64_t nHistoryID, std::vector<std::uint64_t>& aDeltas)
{
    return ReadOnlyCall("APIGetAllHistoryDeltasReadOnly", nHistoryID, Append{aDeltas})
        .Run(
            [&](History& history, Result&)
            {
                for (const auto& pDelta : history.GetDeltas())
                    aDeltas.push_back(pDelta->GetID());
            });
}

Result APIGetHistoryDeltasReadOnly(std::uint64_t nHistoryID, std::uint64_t nFrom, std::uint64_t nTo,
                                   std::vector<std::uint64_t>& aDeltas)
{
    return ReadOnlyCall("APIGetHistoryDeltasReadOnly", nHistoryID, nFrom, nTo, Append{aDeltas})
        .Run([&](History& history, Result&) { history.GetDeltaIDs(nFrom, nTo, aDeltas); });
}

Result APIGetDeltaFlagsReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, std::uint64_t& nFlags)
{
    return UnjournaledCall(nHistoryID, OutCount{nFlags})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Delta* pDelta = history.GetDelta(nDelta, result))
                    nFlags = pDelta->GetFlags();
            });
}

Result APISetDeltaFlags(std::uint64_t nHistoryID, std::uint64_t nDelta, std::uint64_t nFlags)
{
    return UnjournaledCall(nHistoryID)
        .Run(
            [&](History& history, Result& result)
            {
                if (Delta* pDelta = history.GetDelta(nDelta, result))
                    pDelta->SetFlags(nFlags);
            });
}

Result APISetAllDeltaFlags(std::uint64_t nHistoryID, std::uint64_t nSet, std::uint64_t nClear, bool bIncludeReachable)
{
    return UnjournaledCall(nHistoryID)
        .Run(
            [&](History&, Result& result)
            {
                HistoryRegistry& registry = HistoryRegistry::Get();
                std::vector<std::uint64_t> aHistoryIDs{nHistoryID};
                if (bIncludeReachable)
                {
                    aHistoryIDs.clear();
                    registry.GetReachable(nHistoryID, false, aHistoryIDs);
                }
                for (const std::uint64_t nID : aHistoryIDs)
                {
                    const History* pHistory = registry.GetHistory(nID);
                    if (!pHistory)
                    {
                        result.SetErrorCode(Result::nFailure);
                        continue;
                    }
                    for (const auto& pDelta : pHistory->GetDeltas())
                        pDelta->SetFlags((pDelta->GetFlags() | nSet) & ~nClear);
                }
            });
}
} // namespace QRV
