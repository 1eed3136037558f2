#include "frame/APICall.h"
#include "history/HistoryRegistry.h"

#include <QRV/API.h>

namespace QRV
{
Result APICreateHistory(std::uint64_t& nHistoryID, bool bNonTemporary)
{
    return NewHistoryCall("APICreateHistory", nHistoryID, bNonTemporary)
        .Run([&](Result& result) { return HistoryRegistry::Get().CreateHistory(nHistoryID, bNonTemporary, result); });
}

Result APIDeleteHistory(std::uint64_t nHistoryID)
{
    return HistoryCall("APIDeleteHistory", nHistoryID)
        .Run([&](Result& result) { return HistoryRegistry::Get().DeleteHistory(nHistoryID, result); });
}

Result APIDeleteAllHistories()
{
    return HistoryCall("APIDeleteAllHistories", NoHistory{})
        .Run([](Result& result) { HistoryRegistry::Get().DeleteAllHistories(result); });
}

Result APIChangeHistoryID(std::uint64_t& nHistoryID)
{
    return HistoryCall(CallName("APIChangeHistoryID").JournaledUnder(kJournalQuery), nHistoryID)
        .Run([&](History&, Result& result) { return HistoryRegistry::Get().ChangeHistoryID(nHistoryID, result); });
}

Result APIIsHistoryLiveReadOnly(std::uint64_t nHistoryID, bool& bLive)
{
    return ReadOnlyCall("APIIsHistoryLiveReadOnly", nHistoryID, Out{bLive})
        .Run([&](Result&) { bLive = HistoryRegistry::Get().GetHistory(nHistoryID) != nullptr; });
}

Result APIIsHistoryNonTemporaryReadOnly(std::uint64_t nHistoryID, bool& bNonTemporary)
{
    return ReadOnlyCall("APIIsHistoryNonTemporaryReadOnly", nHistoryID, Out{bNonTemporary})
        .Run([&](History& history, Result&) { bNonTemporary = history.IsNonTemporary(); });
}

Result APIGetAllHistoriesReadOnly(std::vector<std::uint64_t>& aHistoryIDs, bool bIncludeTemporary)
{
    return ReadOnlyCall("APIGetAllHistoriesReadOnly", NoHistory{}, Append{aHistoryIDs}, bIncludeTemporary)
        .Run(
            [&](Result&)
            {
                for (const auto& [nID, pHistory] : HistoryRegistry::Get().GetHistories())
                    if (bIncludeTemporary || pHistory->IsNonTemporary())
                        aHistoryIDs.push_back(nID);
            });
}

Result APIGetAllReachableHistoriesReadOnly(std::uint64_t nHistoryID, bool bUpward,
                                           std::vector<std::uint64_t>& aHistoryIDs)
{
    return ReadOnlyCall("APIGetAllReachableHistoriesReadOnly", NoHistory{}, nHistoryID, bUpward, Append{aHistoryIDs})
        .Run(
            [&](Result& result)
            {
                HistoryRegistry& registry = HistoryRegistry::Get();
                if (!registry.GetHistory(nHistoryID))
                    return result.SetErrorCode(Result::nBadHistoryID);
                registry.GetReachable(nHistoryID, bUpward, aHistoryIDs);
            });
}

Result APIGetHistoryReferencingGroupsReadOnly(std::uint64_t nHistoryID, std::vector<ObjectHistoryID>& aGroups)
{
    return ReadOnlyCall("APIGetHistoryReferencingGroupsReadOnly", nHistoryID, Append{aGroups})
        .Run(
            [&](History& history, Result&)
            {
                const std::set<ObjectHistoryID>& groups = history.GetReferencingGroups();
                aGroups.insert(aGroups.end(), groups.begin(), groups.end());
            });
}

Result APIGetMemorySizeReadOnly(std::uint64_t nHistoryID, std::uint64_t& nBytes, bool bActiveOnly)
{
    return ReadOnlyCall("APIGetMemorySizeReadOnly", nHistoryID, OutCount{nBytes}, bActiveOnly)
        .Run([&](History& history, Result&) { nBytes = history.GetSizeInBytes(bActiveOnly); });
}

Result APICheckHistoryValidityReadOnly(std::uint64_t nHistoryID, std::vector<Result>& aResults)
{
    return ReadOnlyCall("APICheckHistoryValidityReadOnly", nHistoryID, Append{aResults})
        .Run([&](History& history, Result&) { history.CheckAllValidity(aResults); });
}
} // namespace QRV
