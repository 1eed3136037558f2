#include "history/HistoryRegistry.h"
#include "support/TestModel.h"

#include <stdexcept>

namespace QRV
{
namespace
{
std::uint64_t Create(std::uint64_t nWanted, bool bNonTemporary, unsigned nCode = 0)
{
    std::uint64_t nID = nWanted;
    EXPECT_EQ(APICreateHistory(nID, bNonTemporary).GetErrorCode(), nCode);
    EXPECT_TRUE(nCode == 0 || nID == nWanted);
    return nID;
}

IDs GetAll(bool bTemporaryToo)
{
    IDs aIDs;
    ExpectGood(APIGetAllHistoriesReadOnly(aIDs, bTemporaryToo));
    return aIDs;
}

/// Starts with a registry as in a fresh process.
class HistoryRegistryCalls : public testing::Test
{
protected:
    HistoryRegistryCalls() { ExpectGood(APIDeleteAllHistories()); }
    ~HistoryRegistryCalls() override
    {
        HistoryRegistry::Get().SetModelChangedCallback(nullptr);
        ExpectGood(APIDeleteAllHistories());
    }
};

TEST_F(HistoryRegistryCalls, GiveIDsInTurn)
{
    EXPECT_EQ(Create(INVALID_ID, true), 0u);
    EXPECT_EQ(Create(INVALID_ID, false), 1u);
    EXPECT_EQ(Create(42, true), 42u);
    EXPECT_EQ(Create(INVALID_ID, true), 43u);
    EXPECT_EQ(Create(7, true), 7u);
    EXPECT_EQ(GetAll(false), (IDs{0, 7, 42, 43}));
    EXPECT_EQ(GetAll(true), (IDs{0, 1, 7, 42, 43}));
    bool bAnswer = true;
    ExpectGood(APIIsHistoryNonTemporaryReadOnly(1, bAnswer));
    EXPECT_FALSE(bAnswer);
    ExpectGood(APIIsHistoryLiveReadOnly(INVALID_ID, bAnswer));
    EXPECT_FALSE(bAnswer);
    bAnswer = true;
    ExpectGood(APIIsObjectLiveReadOnly(INVALID_ID, 0, bAnswer));
    EXPECT_FALSE(bAnswer);
    for (const std::uint64_t nBad : {std::uint64_t(0xFFFFFFFE), std::uint64_t(0xFFFFFFFF), INVALID_ID - 1})
        Create(nBad, true, Result::nBadInput);
    ExpectGood(APIDeleteAllHistories());
    EXPECT_TRUE(GetAll(true).empty());
    EXPECT_EQ(Create(INVALID_ID, true), 0u);
    EXPECT_EQ(Create(0xFFFFFFFD, true), 0xFFFFFFFDu);
    Create(INVALID_ID, true, Result::nFailure);
    std::uint64_t nZero = 0;
    EXPECT_EQ(APIChangeHistoryID(nZero).GetErrorCode(), Result::nFailure);
    EXPECT_EQ(nZero, 0u);
}

TEST_F(HistoryRegistryCalls, ReplaceButNeverALastingModelByAScratchOne)
{
    const auto draw = [](std::uint64_t h)
    {
        std::uint64_t nVertex = INVALID_ID;
        ExpectGood(APICreateVertex(h, {1, 2, 3}, nVertex));
    };
    const auto isEmpty = [](std::uint64_t h)
    {
        bool bLive = true;
        ExpectGood(APIIsObjectLiveReadOnly(h, 0, bLive));
        return !bLive;
    };
    const std::uint64_t nLasting = Create(INVALID_ID, true);
    const std::uint64_t nScratch = Create(INVALID_ID, false);
    draw(nLasting);
    draw(nScratch);
    EXPECT_EQ(Create(nLasting, false), 2u);
    EXPECT_FALSE(isEmpty(nLasting));
    EXPECT_EQ(Create(nScratch, false), nScratch);
    EXPECT_TRUE(isEmpty(nScratch));
    draw(nScratch);
    EXPECT_EQ(Create(nScratch, true), nScratch);
    EXPECT_TRUE(isEmpty(nScratch));
    EXPECT_EQ(Create(nLasting, true), nLasting);
    EXPECT_TRUE(isEmpty(nLasting));
    EXPECT_EQ(GetAll(true), (IDs{0, 1, 2}));
}

TEST_F(HistoryRegistryCalls, RenameAHistoryWithAllItsStates)
{
    const std::uint64_t nOld = Create(5, true);
    ExpectGood(APIConnectPoint3ds(nOld, {0, 0, 0}, {1, 0, 0}));
    ExpectGood(APIConnectPoint3ds(nOld, {0, 0, 0}, {0, 1, 0}));
    ExpectGood(APIUndoHistory(nOld));
    std::uint64_t nID = nOld;
    ExpectGood(APIChangeHistoryID(nID));
    EXPECT_EQ(nID, 6u);
    bool bLive = false;
    EXPECT_EQ(APIIsObjectLiveReadOnly(nOld, 0, bLive).GetErrorCode(), Result::nBadHistoryID);
    ExpectGood(APIIsObjectLiveReadOnly(nID, 0, bLive));
    EXPECT_TRUE(bLive);
    History& history = *HistoryRegistry::Get().GetHistory(6);
    ExpectGood(APIRedoHistory(6));
    ExpectUndoRedoRestores(history);
    IDs aReached{9};
    ExpectGood(APIGetAllReachableHistoriesReadOnly(6, true, aReached));
    ExpectGood(APIGetAllReachableHistoriesReadOnly(6, false, aReached));
    EXPECT_EQ(aReached, (IDs{9, 6, 6}));
}

TEST_F(HistoryRegistryCalls, EndAllTellingOfEachAndSurviveWhatCallbacksDo)
{
    Create(3, true);
    Create(1, false);
    std::vector<std::pair<int, std::uint64_t>> aHeard;
    HistoryRegistry::Get().SetModelChangedCallback(
        [&](const ModelChangeData& change)
        {
            aHeard.emplace_back(int(change.type), change.historyID);
            if (change.type != nModelAllHistoriesDeleted)
                return;
            EXPECT_TRUE(GetAll(true).empty()) << "they are gone for all who ask";
            EXPECT_EQ(Create(INVALID_ID, true), 4u);
        });
    ExpectGood(APIDeleteAllHistories());
    EXPECT_EQ(aHeard, (std::vector<std::pair<int, std::uint64_t>>{{7, INVALID_ID}, {5, 1}, {5, 3}}));
    EXPECT_EQ(GetAll(true), IDs{4});
    HistoryRegistry::Get().SetModelChangedCallback([](const ModelChangeData&) { throw std::runtime_error("host"); });
    EXPECT_EQ(APIDeleteAllHistories().GetErrorCode(), Result::nCaughtException);
    HistoryRegistry::Get().SetModelChangedCallback(nullptr);
    EXPECT_TRUE(GetAll(true).empty());
    for (std::uint64_t n = 0; n < 3; ++n)
        EXPECT_EQ(Create(INVALID_ID, true), n);
}

TEST_F(HistoryRegistryCalls, WeighAHistory)
{
    const std::uint64_t h = Create(INVALID_ID, true);
    std::uint64_t nEmpty = 0;
    ExpectGood(APIGetMemorySizeReadOnly(h, nEmpty, false));
    EXPECT_GE(nEmpty, 384u);
    std::uint64_t nBefore = nEmpty;
    for (int n = 0; n < 300; ++n)
    {
        ExpectGood(APIConnectPoint3ds(h, {double(n), 0, 0}, {double(n + 1), 0, 0}));
        std::uint64_t nAll = 0;
        std::uint64_t nActive = 0;
        ExpectGood(APIGetMemorySizeReadOnly(h, nAll, false));
        ExpectGood(APIGetMemorySizeReadOnly(h, nActive, true));
        EXPECT_GT(nAll, nBefore);
        EXPECT_LT(nActive, nAll);
        nBefore = nAll;
    }
    EXPECT_LT(nBefore - nEmpty, 300 * 1000u);
    // Undone and thrown away, without the ids: nothing may weigh more as it stands than with its past.
    ExpectGood(APIUndoHistoryToDelta(h, INVALID_ID));
    ExpectGood(APIDeleteAllRedoHistory(h, false));
    std::uint64_t nAll = 0;
    std::uint64_t nActive = 0;
    ExpectGood(APIGetMemorySizeReadOnly(h, nAll, false));
    ExpectGood(APIGetMemorySizeReadOnly(h, nActive, true));
    EXPECT_LE(nActive, nAll);
    EXPECT_LT(nAll, nBefore);
}
} // namespace
} // namespace QRV
