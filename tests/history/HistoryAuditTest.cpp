// One thing broken in a sound model is found, and nothing else is.

#include "support/TestModel.h"

namespace QRV
{
namespace
{
/// A way to private members: an explicit instantiation may name them.
template <class Tag, auto... kMembers>
struct Opened
{
    friend auto Open(typename Tag::Owner& owner, Tag) { return std::tie(owner.*kMembers...); }
};
struct OfHistory
{
    using Owner = History;
    friend auto Open(Owner&, OfHistory);
};
struct OfDelta
{
    using Owner = Delta;
    friend auto Open(Owner&, OfDelta);
};
template struct Opened<OfHistory, &History::m_reusableIDs, &History::m_aDeltas, &History::m_aReferencingGroups>;
template struct Opened<OfDelta, &Delta::m_aObjectIDs, &Delta::m_nID>;

template <class Member>
Member& GetPart(History& history)
{
    return std::get<Member&>(Open(history, OfHistory()));
}
template <class Member>
Member& GetPart(Delta& delta)
{
    return std::get<Member&>(Open(delta, OfDelta()));
}
using Deltas = std::vector<std::unique_ptr<Delta>>;

ObjectHistory::Record& GetRecord(History& history, std::uint64_t nID, std::size_t nIndex)
{
    return const_cast<ObjectHistory::Record&>(history.GetObjectTable().At(nID).GetRecord(nIndex));
}

/// A box, whose corner 0 has a record for more than one step.
class HistoryAuditOf : public testing::Test
{
protected:
    HistoryAuditOf()
    {
        m_model.Box(GetFrames()[1], Point3d(0, 0, 0), Point3d(1, 1, 1));
        ExpectSound(m_model);
    }
    History& GetHistory() const { return m_model.GetHistory(); }
    template <class T>
    T& GetFirst(nObjectType nType) const
    {
        return *GetHistory().Get<T>(m_model.GetIDs(nType).front());
    }
    Delta& GetDelta(std::size_t n) const { return *GetHistory().GetDeltas()[n]; }
    std::vector<std::string> Audit() const
    {
        std::vector<Result> aResults{Result()};
        ExpectGood(APICheckHistoryValidityReadOnly(m_model.GetID(), aResults));
        std::vector<std::string> aFound;
        for (std::size_t n = 1; n < aResults.size(); ++n)
            aFound.push_back(aResults[n].GetErrorString());
        return aFound;
    }
    std::string ThisHistory() const { return "History " + std::to_string(m_model.GetID()); }
    std::string ThisObject(std::uint64_t nID) const
    {
        return '(' + std::to_string(m_model.GetID()) + ", " + std::to_string(nID) + ')';
    }
    using Findings = std::vector<std::string>;

    TestModel m_model;
};

TEST_F(HistoryAuditOf, TreesMissesWhatLeftThem)
{
    auto& vertex = GetFirst<Vertex>(nVertexType);
    const std::pair<const char*, Object*> aRows[] = {
        {" Vertex", &vertex}, {" Edge", &GetFirst<Edge>(nEdgeType)}, {" Face", &GetFirst<Face>(nFaceType)}};
    for (const auto& [pName, pObject] : aRows)
    {
        pObject->RemoveFromSearch();
        EXPECT_EQ(Audit(), Findings{ThisHistory() + pName + " tree is bad."});
        pObject->AddToSearch();
    }
    EXPECT_EQ(Audit(), Findings{});
    vertex.AddToSearch();
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " Vertex tree is bad."}) << "it stands there twice";
    vertex.RemoveFromSearch();
}

TEST_F(HistoryAuditOf, IDsFindsThoseThatNobodyCanTake)
{
    std::set<std::uint64_t> aBad{1000000};
    GetPart<ReusableIDs>(GetHistory()).Merge(aBad);
    EXPECT_EQ(Audit(), Findings{"ID in m_aObjectIDsToReuse is greater than the maximum Object ID."});
    GetPart<ReusableIDs>(GetHistory()).Erase(1000000);
}

TEST_F(HistoryAuditOf, StepsFindsWhatTheyListAndTheObjectsDoNot)
{
    auto& aIDs = GetPart<IDs>(GetDelta(3));
    aIDs.push_back(0); // the first vertex was not touched by the fourth edge
    ASSERT_EQ(GetHistory().GetObjectTable().At(0).GetObject(&GetDelta(3)), nullptr);
    EXPECT_EQ(Audit(),
              Findings{"Object " + ThisObject(0) + " Does not contain a Delta in its ObjectHistory exactly once."});
    aIDs.pop_back();

    // An id without any record.
    m_model.Line({9, 9, 9}, {8, 9, 9});
    const std::uint64_t nGone = m_model.GetIDs(nVertexType).back();
    ExpectGood(APIUndoHistory(m_model.GetID()));
    ExpectGood(APIDeleteAllRedoHistory(m_model.GetID(), false));
    aIDs.push_back(nGone);
    EXPECT_EQ(Audit(), Findings{"Object " + ThisObject(nGone) + " has NULL ObjectHistory."});
    aIDs.pop_back();
    EXPECT_EQ(Audit(), Findings{});
}

TEST_F(HistoryAuditOf, StepsFindsWhatUndoStumblesOver)
{
    const std::uint64_t nID = m_model.GetID();
    const IDs aSteps = m_model.GetDeltas();
    const std::size_t nBroken = aSteps.size() - 2;
    auto& aIDs = GetPart<IDs>(GetDelta(nBroken));
    ASSERT_EQ(GetHistory().GetObjectTable().At(0).GetObject(&GetDelta(nBroken)), nullptr);
    const auto expectStumble = [&](const Result& result, std::uint64_t nActive)
    {
        EXPECT_EQ(result.GetErrorString(), "Undo of Delta-" + std::to_string(aSteps[nBroken]) + " failed.");
        EXPECT_EQ(m_model.GetActiveDelta(), nActive);
        EXPECT_NE(GetHistory().GetObject(0), nullptr) << "no step of this vertex was undone";
    };

    aIDs.push_back(0);
    ExpectGood(APIUndoHistory(nID));
    expectStumble(APIUndoHistory(nID), aSteps[nBroken - 1]);
    ExpectGood(APIUndoHistoryToDelta(nID, aSteps[1]));
    ExpectGood(APIRedoHistoryToDelta(nID, aSteps.back()));
    expectStumble(APIUndoHistoryToDelta(nID, aSteps[1]), aSteps[nBroken - 1]);
    aIDs.pop_back();
    ExpectSound(m_model);

    ExpectGood(APIRedoHistoryToDelta(nID, aSteps.back()));
    aIDs.push_back(0);
    expectStumble(APIUndoHistory(nID, false, aSteps[2]), aSteps[2]); // and the broken step is gone for good
    EXPECT_EQ(m_model.GetDeltas(), IDs(aSteps.begin(), aSteps.begin() + 3));
    ExpectSound(m_model);
}

TEST_F(HistoryAuditOf, StepsFindsADisorderOnce)
{
    const auto swapTwoPairs = [&]
    {
        for (const std::size_t n : {2, 6})
            std::swap(GetPart<std::uint64_t>(GetDelta(n)), GetPart<std::uint64_t>(GetDelta(n + 1)));
    };
    swapTwoPairs();
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " has a bad Delta order."});
    swapTwoPairs();
    GetPart<Deltas>(GetHistory()).push_back(nullptr);
    EXPECT_EQ(Audit(), Findings{"In " + ThisHistory() + ", one of m_aDeltas elements is NULL."});
    GetPart<Deltas>(GetHistory()).pop_back();
}

TEST_F(HistoryAuditOf, RecordsFindsForeignStepsAndDisorder)
{
    ObjectHistory::Record& first = GetRecord(GetHistory(), 0, 0);
    ObjectHistory::Record& second = GetRecord(GetHistory(), 0, 1);
    std::swap(first.pDelta, second.pDelta);
    EXPECT_EQ(Audit(), Findings{"ObjectHistory of Object " + ThisObject(0) + " lists Deltas in a wrong order."});
    std::swap(first.pDelta, second.pDelta);

    Delta foreign;
    Delta* pOwn = std::exchange(second.pDelta, &foreign);
    std::erase(GetPart<IDs>(*pOwn), 0);
    EXPECT_EQ(Audit(), Findings{"Delta in ObjectHistory of Object " + ThisObject(0) + " is not found in m_aDeltas."});
    second.pDelta = pOwn;
    GetPart<IDs>(*pOwn).push_back(0);
    EXPECT_EQ(Audit(), Findings{});
}

TEST_F(HistoryAuditOf, GroupsFindsOneThatShowsSomethingElse)
{
    GetPart<std::set<ObjectHistoryID>>(GetHistory()).insert({m_model.GetID(), 0});
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " has a bad owning Group."});
    GetPart<std::set<ObjectHistoryID>>(GetHistory()).clear();
}

TEST_F(HistoryAuditOf, OwnersFindsTheFirstThatNobodyReachesInAnOtherwiseSoundModel)
{
    ASSERT_TRUE(GetHistory().StartDelta());
    auto& body = GetFirst<Body>(nBodyType);
    Lump& lost = GetHistory().Create<Lump>();
    lost.SetBody(&body);
    GetHistory().Create<Lump>().SetBody(&body);
    EXPECT_EQ(Audit(),
              Findings{"Object " + ThisObject(lost.GetID()) + " has an owner but is not one of the owner's children."});
    auto& vertex = GetFirst<Vertex>(nVertexType);
    vertex.IncrementUse();
    EXPECT_EQ(Audit(), Findings{"Vertex " + ThisObject(vertex.GetID()) + " has bad use count."});
    GetHistory().Rollback();
    EXPECT_EQ(Audit(), Findings{});
}

TEST_F(HistoryAuditOf, OneObjectLooksBelowIt)
{
    ASSERT_TRUE(GetHistory().StartDelta());
    auto& vertex = GetFirst<Vertex>(nVertexType);
    vertex.IncrementUse();
    std::vector<Result> aResults;
    ExpectGood(APICheckValidityReadOnly(m_model.GetID(), m_model.GetIDs(nBodyType).front(), aResults));
    EXPECT_EQ(aResults.size(), 1u);
    ExpectGood(APICheckValidityReadOnly(m_model.GetID(), m_model.GetIDs(nVertexType).back(), aResults));
    EXPECT_EQ(aResults.size(), 1u);
    EXPECT_EQ(APICheckValidityReadOnly(m_model.GetID(), 1000000, aResults).GetErrorCode(), Result::nBadInput);
    GetHistory().Rollback();
}
} // namespace
} // namespace QRV
