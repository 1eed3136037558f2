#include "history/HistoryRegistry.h"
#include "support/TestModel.h"

namespace QRV
{
namespace
{
/// Vertices made, moved and deleted in steps of any mixture.
class Steps : public testing::Test
{
protected:
    std::uint64_t GetID() const { return m_model.GetID(); }
    History& GetHistory() const { return m_model.GetHistory(); }
    QRV::Vertex* Find(std::uint64_t nID) const { return GetHistory().Get<QRV::Vertex>(nID); }

    std::uint64_t Make()
    {
        QRV::Vertex& vertex = GetHistory().Create<QRV::Vertex>(Point3d(double(m_nMade++), 0, 0));
        vertex.AddToSearch();
        return vertex.GetID();
    }
    void Move(std::uint64_t nID, double z) { Find(nID)->SetPosition({0, 0, z}); }
    void Delete(std::uint64_t nID) { EXPECT_TRUE(Find(nID)->Delete()); }
    double GetHeight(std::uint64_t nID) const { return Find(nID)->GetPosition()[2]; }

    void Step(const std::function<void()>& change, bool bRollback = false)
    {
        ASSERT_TRUE(GetHistory().StartDelta());
        change();
        if (bRollback)
            GetHistory().Rollback();
        else
            EXPECT_TRUE(GetHistory().Commit("step"));
        ExpectSound(m_model);
    }
    std::uint64_t MakeInStep()
    {
        std::uint64_t nID = INVALID_ID;
        Step([&] { nID = Make(); });
        return nID;
    }
    void Undo(int n = 1)
    {
        while (n-- > 0)
            ExpectGood(APIUndoHistory(GetID()));
        ExpectSound(m_model);
    }

    TestModel m_model;
    int m_nMade = 0;
};

TEST_F(Steps, LeaveNothingBehindWhenAllThatWasMadeDied)
{
    MakeInStep();
    std::uint64_t nShort = INVALID_ID;
    Step(
        [&]
        {
            nShort = Make();
            Delete(nShort);
        });
    EXPECT_EQ(m_model.GetDeltas(), IDs{1});
    EXPECT_EQ(MakeInStep(), nShort);
    Step([] {});
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2}));
}

TEST_F(Steps, GiveBackTheirIDsOnRollback)
{
    IDs aIDs;
    Step([&] { aIDs = {Make(), Make(), Make()}; });
    Step([&] { EXPECT_EQ((IDs{Make(), Make()}), (IDs{3, 4})); }, true);
    EXPECT_EQ(GetHistory().GetObjectTable().Size(), 3u);
    EXPECT_EQ(MakeInStep(), 3u);
    // A reused id in the middle goes back to the free ones.
    ExpectGood(APIUndoHistory(GetID(), true));
    Step([&] { Delete(Make()); });
    EXPECT_EQ(GetHistory().GetReusableIDs().Get(), std::set<std::uint64_t>{3});
    Step(
        [&]
        {
            EXPECT_EQ((IDs{Make(), Make(), Make()}), (IDs{3, 4, 5}));
            Delete(3);
            Delete(5);
        });
    EXPECT_EQ(GetHistory().GetReusableIDs().Get(), (std::set<std::uint64_t>{3, 5}));
    Step([&] { EXPECT_EQ(Make(), 3u); }, true);
    EXPECT_EQ(GetHistory().GetReusableIDs().Get(), (std::set<std::uint64_t>{3, 5}));
    EXPECT_EQ(MakeInStep(), 3u);
    EXPECT_EQ(MakeInStep(), 5u);
    EXPECT_EQ(MakeInStep(), 6u);
}

TEST_F(Steps, AreNumberedForGood)
{
    EXPECT_EQ(m_model.GetActiveDelta(1), INVALID_ID);
    MakeInStep();
    MakeInStep();
    MakeInStep();
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2, 3}));
    EXPECT_EQ((IDs{m_model.GetActiveDelta(-3), m_model.GetActiveDelta(-2), m_model.GetActiveDelta(),
                   m_model.GetActiveDelta(1)}),
              (IDs{INVALID_ID, 1, 3, INVALID_ID}));
    Undo(3);
    EXPECT_EQ((IDs{m_model.GetActiveDelta(-1), m_model.GetActiveDelta(), m_model.GetActiveDelta(1),
                   m_model.GetActiveDelta(2)}),
              (IDs{INVALID_ID, INVALID_ID, 1, 2}));
    std::uint64_t nLast = 0;
    for (const std::uint64_t n : {0, 2, 3})
    {
        ExpectGood(APIGetLastDeltaIDReadOnly(GetID(), nLast, n));
        EXPECT_EQ(nLast, n == 3 ? INVALID_ID : 3 - n);
    }
    ExpectGood(APIRedoHistory(GetID()));
    std::uint64_t nVertex = INVALID_ID;
    ExpectGood(APICreateVertex(GetID(), {5, 5, 5}, nVertex));
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 4}));
}

TEST_F(Steps, AreListedFromOneToAnother)
{
    for (int n = 0; n < 4; ++n)
        MakeInStep();
    const auto list = [&](std::uint64_t nFrom, std::uint64_t nTo)
    {
        IDs aIDs{9};
        ExpectGood(APIGetHistoryDeltasReadOnly(GetID(), nFrom, nTo, aIDs));
        return aIDs;
    };
    EXPECT_EQ(list(2, 4), (IDs{9, 2, 3, 4}));
    EXPECT_EQ(list(3, 1), (IDs{9, 3, 2, 1}));
    EXPECT_EQ(list(2, 2), (IDs{9, 2}));
    EXPECT_EQ(list(INVALID_ID, 4), (IDs{9, INVALID_ID, 1, 2, 3, 4}));
    EXPECT_EQ(list(2, INVALID_ID), (IDs{9, 2, 1, INVALID_ID}));
    EXPECT_EQ(list(INVALID_ID, INVALID_ID), (IDs{9, INVALID_ID}));
    EXPECT_EQ(list(0, 3), IDs{9});
    EXPECT_EQ(list(1, 77), IDs{9});
}

TEST_F(Steps, CarryTheHostsFlags)
{
    MakeInStep();
    MakeInStep();
    const auto getFlags = [&](std::uint64_t nDelta, unsigned nCode = 0)
    {
        std::uint64_t nFlags = 99;
        EXPECT_EQ(APIGetDeltaFlagsReadOnly(GetID(), nDelta, nFlags).GetErrorCode(), nCode);
        return nFlags;
    };
    ExpectGood(APISetDeltaFlags(GetID(), 2, 5));
    EXPECT_EQ(getFlags(1), 0u);
    ExpectGood(APISetAllDeltaFlags(GetID(), 6, 4, true));
    EXPECT_EQ(getFlags(1), 2u);
    EXPECT_EQ(getFlags(2), 3u);
    EXPECT_EQ(getFlags(0, Result::nBadInput), 0u) << "steps have numbers from 1 on";
    ExpectGood(APIMergeDeltas(GetID()));
    EXPECT_EQ(m_model.GetDeltas(), IDs{2});
    EXPECT_EQ(getFlags(2), 0u);
}

TEST_F(Steps, AreUndoneAndRedoneAsAskedOrRefused)
{
    const auto call = [&](const Result& result, std::uint64_t nActive)
    {
        EXPECT_EQ(m_model.GetActiveDelta(), nActive);
        ExpectSound(m_model);
        return result.GetErrorCode();
    };
    const std::uint64_t h = GetID();
    EXPECT_EQ(call(APIUndoHistory(h, true, 5), INVALID_ID), Result::nOK) << "no steps at all";
    EXPECT_EQ(call(APIRedoHistory(h), INVALID_ID), Result::nFailure);
    EXPECT_EQ(call(APIUndoHistoryToDelta(h, INVALID_ID), INVALID_ID), Result::nFailure);
    EXPECT_EQ(call(APIUndoOrRedoHistoryToDelta(h, INVALID_ID), INVALID_ID), Result::nOK);
    for (int n = 0; n < 6; ++n)
        MakeInStep();
    Undo(2);
    EXPECT_EQ(call(APIRedoHistory(h, 5), 4), Result::nFailure) << "the step names where the host stands";
    EXPECT_EQ(call(APIRedoHistory(h, 4), 5), Result::nOK);
    EXPECT_EQ(call(APIUndoHistory(h, false, 6), 5), Result::nBadInput);
    EXPECT_EQ(call(APIUndoHistory(h, false, 99), 5), Result::nBaseDeltaNotFound);
    EXPECT_EQ(call(APIUndoHistory(h, false, 0), 5), Result::nBaseDeltaNotFound);
    EXPECT_EQ(call(APIUndoHistory(h, false, 5), 4), Result::nOK);
    for (const std::uint64_t nBad : {4, 5, 6, 99, 0})
        EXPECT_EQ(call(APIUndoHistoryToDelta(h, nBad), 4), Result::nFailure);
    for (const std::uint64_t nBad : {std::uint64_t(4), std::uint64_t(3), std::uint64_t(99), INVALID_ID})
        EXPECT_EQ(call(APIRedoHistoryToDelta(h, nBad), 4), Result::nFailure);
    EXPECT_EQ(call(APIUndoHistoryToDelta(h, 2), 2), Result::nOK);
    EXPECT_EQ(call(APIRedoHistoryToDelta(h, 6), 6), Result::nOK);
    EXPECT_EQ(call(APIUndoOrRedoHistoryToDelta(h, 6), 6), Result::nOK);
    EXPECT_EQ(call(APIUndoOrRedoHistoryToDelta(h, 99), 6), Result::nBadInput);
    EXPECT_EQ(call(APIUndoOrRedoHistoryToDelta(h, INVALID_ID), INVALID_ID), Result::nOK);
    EXPECT_EQ(call(APIUndoHistory(h), INVALID_ID), Result::nOK);
    EXPECT_EQ(call(APIUndoHistory(h, false, 3), INVALID_ID), Result::nBadInput) << "it stands behind";
    EXPECT_EQ(call(APIUndoHistory(h, false, 99), INVALID_ID), Result::nBaseDeltaNotFound);
    EXPECT_EQ(m_model.GetDeltas().size(), 6u);
    EXPECT_EQ(call(APIUndoOrRedoHistoryToDelta(h, 5), 5), Result::nOK);
    EXPECT_EQ(call(APIUndoHistory(h, true, 1), INVALID_ID), Result::nOK) << "past it, and all behind is gone for good";
    EXPECT_TRUE(m_model.GetDeltas().empty());
    EXPECT_EQ(GetHistory().GetObjectTable().Size(), 0u);
    EXPECT_EQ(MakeInStep(), 0u);
}

TEST_F(Steps, BehindTheActiveOneAreThrownAway)
{
    for (int n = 0; n < 4; ++n)
        MakeInStep();
    Undo(2);
    ExpectGood(APIDeleteAllRedoHistory(GetID(), false));
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2}));
    EXPECT_EQ(MakeInStep(), 4u) << "the ids stay taken";
    Undo(1);
    ExpectGood(APIDeleteAllRedoHistory(GetID(), true));
    EXPECT_TRUE(GetHistory().GetReusableIDs().IsEmpty()) << "off the end of the table";
    EXPECT_EQ(MakeInStep(), 4u);
    // An id in the middle that was made in the branch, above it one from before: it goes to the free ones.
    Step([&] { Delete(Make()); });
    Step(
        [&]
        {
            EXPECT_EQ((IDs{Make(), Make()}), (IDs{5, 6}));
            Delete(5);
        });
    Step(
        [&]
        {
            EXPECT_EQ(Make(), 5u);
            Move(6, 4);
        });
    Undo(1);
    ExpectGood(APIDeleteAllRedoHistory(GetID(), true));
    EXPECT_EQ(GetHistory().GetReusableIDs().Get(), std::set<std::uint64_t>{5});
    EXPECT_EQ(GetHeight(6), 0.0);
    ExpectUndoRedoRestores(m_model);
}

TEST_F(Steps, BecomeOne)
{
    const std::uint64_t nOld = MakeInStep();
    const QRV::Vertex* pOld = Find(nOld);
    Step([&] { Move(nOld, 1); });
    std::uint64_t nShort = INVALID_ID;
    Step([&] { nShort = Make(), Move(nOld, 2); });
    Step([&] { Delete(nShort), Delete(nOld); });
    const std::uint64_t h = GetID();
    for (const auto& [nFrom, nTo] :
         std::vector<std::pair<std::uint64_t, std::uint64_t>>{{3, 3}, {3, 2}, {9, INVALID_ID}, {1, 9}, {0, 2}})
        EXPECT_EQ(APIMergeDeltas(h, nFrom, nTo).GetErrorCode(), Result::nFailure) << nFrom << ' ' << nTo;
    EXPECT_TRUE(APIMergeDeltas(h, 4, INVALID_ID).IsGood()) << "the active one alone";
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2, 3, 4}));

    // Steps 3 and 4: what lived in them only leaves no trace, what died in them comes back as before them.
    ExpectGood(APIMergeDeltas(h, 3, 4, true));
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2, 4}));
    EXPECT_EQ(m_model.GetActiveDelta(), 4u);
    EXPECT_EQ(GetHistory().GetDeltas().back()->GetObjectIDs(), IDs{nOld});
    EXPECT_EQ(GetHistory().GetReusableIDs().Get(), std::set<std::uint64_t>{nShort});
    ExpectSound(m_model);
    Undo();
    EXPECT_EQ(Find(nOld), pOld);
    EXPECT_EQ(GetHeight(nOld), 1.0);
    EXPECT_EQ(APIMergeDeltas(h, 1, 4).GetErrorCode(), Result::nFailure) << "not applied";
    ExpectUndoRedoRestores(m_model);
    // All of them: nothing is left, and no step either.
    ExpectGood(APIRedoHistory(h));
    ExpectGood(APIMergeDeltas(h));
    EXPECT_TRUE(m_model.GetDeltas().empty());
    EXPECT_EQ(m_model.GetActiveDelta(), INVALID_ID);
    ExpectSound(m_model);
    EXPECT_EQ(MakeInStep(), nShort);
    EXPECT_EQ(m_model.GetDeltas(), IDs{5});
}

} // namespace
} // namespace QRV
