// One thing broken in a sound model is found, and nothing else is.

#include "support/TestModel.h"

namespace QRV
{
namespace
{
/// A way to a private member: an explicit instantiation may name it.
template <class Tag, typename Tag::Member Tag::Owner::*kMember>
struct Opened
{
    friend typename Tag::Member& Open(typename Tag::Owner& owner, Tag) { return owner.*kMember; }
};
struct ReusableKey
{
    using Owner = History;
    using Member = ReusableIDs;
    friend Member& Open(Owner&, ReusableKey);
};
struct DeltasKey
{
    using Owner = History;
    using Member = std::vector<std::unique_ptr<Delta>>;
    friend Member& Open(Owner&, DeltasKey);
};
struct GroupsKey
{
    using Owner = History;
    using Member = std::set<ObjectHistoryID>;
    friend Member& Open(Owner&, GroupsKey);
};
struct ListKey
{
    using Owner = Delta;
    using Member = std::vector<std::uint64_t>;
    friend Member& Open(Owner&, ListKey);
};
struct NumberKey
{
    using Owner = Delta;
    using Member = std::uint64_t;
    friend Member& Open(Owner&, NumberKey);
};
template struct Opened<ReusableKey, &History::m_reusableIDs>;
template struct Opened<DeltasKey, &History::m_aDeltas>;
template struct Opened<GroupsKey, &History::m_aReferencingGroups>;
template struct Opened<ListKey, &Delta::m_aObjectIDs>;
template struct Opened<NumberKey, &Delta::m_nID>;

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
    auto& edge = GetFirst<Edge>(nEdgeType);
    auto& face = GetFirst<Face>(nFaceType);
    face.RemoveFromSearch();
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " Face tree is bad."});
    face.AddToSearch();
    edge.RemoveFromSearch();
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " Edge tree is bad."});
    edge.AddToSearch();
    vertex.RemoveFromSearch();
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " Vertex tree is bad."});
    vertex.AddToSearch();
    EXPECT_EQ(Audit(), Findings{});
    vertex.AddToSearch();
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " Vertex tree is bad."}) << "it stands there twice";
    vertex.RemoveFromSearch();
}

TEST_F(HistoryAuditOf, IDsFindsThoseThatNobodyCanTake)
{
    std::set<std::uint64_t> aBad{1000000};
    Open(GetHistory(), ReusableKey()).Merge(aBad);
    EXPECT_EQ(Audit(), Findings{"ID in m_aObjectIDsToReuse is greater than the maximum Object ID."});
    Open(GetHistory(), ReusableKey()).Erase(1000000);
}

TEST_F(HistoryAuditOf, StepsFindsWhatTheyListAndTheObjectsDoNot)
{
    auto& aIDs = Open(GetDelta(3), ListKey());
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

TEST_F(HistoryAuditOf, StepsFindsADisorderOnce)
{
    std::swap(Open(GetDelta(2), NumberKey()), Open(GetDelta(3), NumberKey()));
    std::swap(Open(GetDelta(6), NumberKey()), Open(GetDelta(7), NumberKey()));
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " has a bad Delta order."});
    std::swap(Open(GetDelta(2), NumberKey()), Open(GetDelta(3), NumberKey()));
    std::swap(Open(GetDelta(6), NumberKey()), Open(GetDelta(7), NumberKey()));
    Open(GetHistory(), DeltasKey()).push_back(nullptr);
    EXPECT_EQ(Audit(), Findings{"In " + ThisHistory() + ", one of m_aDeltas elements is NULL."});
    Open(GetHistory(), DeltasKey()).pop_back();
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
    std::erase(Open(*pOwn, ListKey()), 0);
    EXPECT_EQ(Audit(), Findings{"Delta in ObjectHistory of Object " + ThisObject(0) + " is not found in m_aDeltas."});
    second.pDelta = pOwn;
    Open(*pOwn, ListKey()).push_back(0);
    EXPECT_EQ(Audit(), Findings{});
}

TEST_F(HistoryAuditOf, GroupsFindsOneThatShowsSomethingElse)
{
    Open(GetHistory(), GroupsKey()).insert({m_model.GetID(), 0});
    EXPECT_EQ(Audit(), Findings{ThisHistory() + " has a bad owning Group."});
    Open(GetHistory(), GroupsKey()).clear();
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
