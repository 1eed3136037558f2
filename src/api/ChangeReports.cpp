#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "model/ObjectPairing.h"

#include <QRV/ChangeReports.h>

namespace QRV
{
Result APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly(std::uint64_t nHistoryID,
                                                           std::vector<std::uint64_t>* pCreated,
                                                           std::vector<std::uint64_t>* pChanged,
                                                           std::vector<std::uint64_t>* pDeleted, nObjectType nType,
                                                           bool bNext)
{
    return ReadOnlyCall("APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly", nHistoryID, nType, bNext)
        .Run(
            [&](History& history, Result&) {
                return history.ReportActiveDelta({pCreated, pChanged, pDeleted}, nType, bNext);
            });
}

Result APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(std::uint64_t nHistoryID, std::uint64_t nFrom,
                                                          std::uint64_t nTo, std::vector<std::uint64_t>* pCreated,
                                                          std::vector<std::uint64_t>* pChanged,
                                                          std::vector<std::uint64_t>* pDeleted,
                                                          const std::vector<nObjectType>& aTypes)
{
    return ReadOnlyCall("APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly", nHistoryID, nFrom, nTo, aTypes)
        .Run(
            [&](History& history, Result&) {
                return history.ReportDeltaRange(nFrom, nTo, {pCreated, pChanged, pDeleted}, aTypes);
            });
}

Result APICompareHistoryReadOnly(std::uint64_t nHistoryID, std::uint64_t nActiveIndex,
                                 const std::vector<std::uint64_t>& aDeltaIDs, nHistoryComparison& nComparison)
{
    return ReadOnlyCall("APICompareHistoryReadOnly", nHistoryID, nActiveIndex, aDeltaIDs, Out{nComparison})
        .Run([&](History& history, Result&)
             { nComparison = static_cast<nHistoryComparison>(history.Compare(nActiveIndex, aDeltaIDs)); });
}

Result APIIsExactMatchReadOnly(std::uint64_t nHistoryID1, std::uint64_t nHistoryID2, bool& bMatch,
                               std::uint64_t nObjectID1, std::uint64_t nObjectID2)
{
    return ReadOnlyCall("APIIsExactMatchReadOnly", TwoHistories{nHistoryID1, nHistoryID2}, Out{bMatch}, nObjectID1,
                        nObjectID2)
        .Run(
            [&](History& first, Result& result)
            {
                const History* pSecond = HistoryRegistry::Get().GetHistory(nHistoryID2);
                if (!pSecond)
                    return result.SetErrorCode(Result::nBadHistoryID);
                if (nObjectID1 == INVALID_ID && nObjectID2 == INVALID_ID)
                {
                    ObjectPairing pairing;
                    bMatch = pairing.PairHistories(nHistoryID1, nHistoryID2) && pairing.MatchHistories();
                    return;
                }
                const Object* pFirst = FindArgument<Object>(first, nObjectID1, result);
                const Object* pOther = FindArgument<Object>(*pSecond, nObjectID2, result);
                bMatch = pFirst && pOther && pFirst->IsEquivalentWithChildren(*pOther, false);
            });
}
} // namespace QRV
