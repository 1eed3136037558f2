#include "history/HistoryRegistry.h"
#include "support/Journaled.h"
#include "support/TestModel.h"

namespace QRV
{
namespace
{
using IDs = std::vector<std::uint64_t>;

/// A report, behind what the lists held before.
struct Report
{
    IDs aCreated{77};
    IDs aChanged{77};
    IDs aDeleted{77};

    bool operator==(const Report&) const = default;
};
std::ostream& operator<<(std::ostream& text, const Report& report)
{
    for (const IDs* pList : {&report.aCreated, &report.aChanged, &report.aDeleted})
        text << testing::PrintToString(*pList) << ' ';
    return text;
}

Report Expected(const IDs& aCreated, const IDs& aChanged, const IDs& aDeleted)
{
    Report report;
    report.aCreated.insert(report.aCreated.end(), aCreated.begin(), aCreated.end());
    report.aChanged.insert(report.aChanged.end(), aChanged.begin(), aChanged.end());
    report.aDeleted.insert(report.aDeleted.end(), aDeleted.begin(), aDeleted.end());
    return report;
}

Report GetActive(const TestModel& model, bool bNext, unsigned nCode = 0, nObjectType nType = nUnspecifiedType)
{
    Report report;
    const Result result = APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly(
        model.GetID(), &report.aCreated, &report.aChanged, &report.aDeleted, nType, bNext);
    EXPECT_EQ(result.GetErrorCode(), nCode);
    return report;
}

Report GetRange(const TestModel& model, std::uint64_t nFrom, std::uint64_t nTo, unsigned nCode = 0,
                const std::vector<nObjectType>& aTypes = {})
{
    Report report;
    const Result result = APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(
        model.GetID(), nFrom, nTo, &report.aCreated, &report.aChanged, &report.aDeleted, aTypes);
    EXPECT_EQ(result.GetErrorCode(), nCode);
    return report;
}

/// A line; one that crosses it and splits it: vertices 0, 1, 3, 4, 6, edges 2 and its parts.
void DrawCross(TestModel& model)
{
    model.Line({0, 0, 0}, {2, 0, 0});
    model.Line({1, -1, 0}, {1, 1, 0});
}

bool Match(std::uint64_t nFirst, std::uint64_t nSecond, unsigned nCode = 0, std::uint64_t nObject1 = INVALID_ID,
           std::uint64_t nObject2 = INVALID_ID)
{
    bool bMatch = true;
    EXPECT_EQ(APIIsExactMatchReadOnly(nFirst, nSecond, bMatch, nObject1, nObject2).GetErrorCode(), nCode);
    return bMatch;
}

/// Stands for a group: an object that shows another History.
class Sign : public Vertex
{
public:
    explicit Sign(std::uint64_t nShown) : Vertex(Point3d()), m_nShown(nShown) {}
    std::uint64_t GetReferencedHistoryID() const override { return m_nShown; }

private:
    std::uint64_t m_nShown;
};

void AddSign(PolygonModel& model, std::uint64_t nShown)
{
    const Step step(model);
    model.GetHistory().Create<Sign>(nShown);
}
} // namespace

TEST(ChangeReports, TellWhatAStepDidAndWhatTakingItBackDid)
{
    TestModel model;
    const Report none;
    EXPECT_EQ(GetActive(model, false, Result::nFailure), none);
    EXPECT_EQ(GetRange(model, 0, 1, Result::nFailure), none);
    DrawCross(model);
    const IDs aAll = model.GetIDs(nUnspecifiedType);
    Report second = GetActive(model, false);
    EXPECT_EQ(GetRange(model, 1, 2), second) << "one delta keeps its order";
    std::ranges::sort(second.aCreated);
    EXPECT_EQ(second.aCreated.front(), 3u) << "beyond the line and its ends";
    EXPECT_EQ(second.aCreated.size() - 1 + 3, aAll.size());
    EXPECT_GT(second.aChanged.size(), 1u) << "the line that was split";
    EXPECT_EQ(GetActive(model, false, 0, nFaceType), none);
    EXPECT_EQ(GetActive(model, true), none) << "nothing to redo";

    EXPECT_TRUE(APIUndoHistory(model.GetID()).IsGood());
    Report undone = GetActive(model, true);
    std::ranges::sort(undone.aDeleted);
    EXPECT_EQ(undone.aDeleted, second.aCreated);
    EXPECT_EQ(undone.aCreated, second.aDeleted);
    EXPECT_EQ(GetActive(model, false), Expected({0, 1, 2}, {}, {}));
    EXPECT_TRUE(APIUndoHistory(model.GetID()).IsGood());
    EXPECT_EQ(GetActive(model, false), none) << "no delta is applied";
    EXPECT_EQ(GetActive(model, true), Expected({}, {}, {0, 1, 2}));

    // Each list may be left out; while something is being drawn there is no report.
    EXPECT_TRUE(
        APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly(model.GetID(), nullptr, nullptr, nullptr).IsGood());
    EXPECT_TRUE(APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(model.GetID(), 0, 2, nullptr, nullptr, nullptr)
                    .IsGood());
    EXPECT_TRUE(APIRedoHistoryToDelta(model.GetID(), 2).IsGood());
    History& history = model.GetHistory();
    EXPECT_TRUE(history.StartDelta());
    EXPECT_EQ(GetRange(model, 0, 2, Result::nFailure), none);
    EXPECT_EQ(GetActive(model, false).aCreated.size(), second.aCreated.size());
    history.Create<Vertex>(Point3d(9, 9, 9)).AddToSearch();
    EXPECT_EQ(GetActive(model, false, Result::nFailure), none);
    history.Rollback();
}

TEST(ChangeReports, ReduceARangeToWhatIsNewChangedOrGoneAfterIt)
{
    TestModel model;
    DrawCross(model);                    // 1, 2
    const std::uint64_t nLone = model.Vertex({5, 5, 5}); // 3
    model.Line({5, 5, 5}, {6, 5, 5});                    // 4: the lone vertex changes
    {
        History& history = model.GetHistory();
        ASSERT_TRUE(history.StartDelta());
        for (const std::uint64_t nEdge : model.GetIDs(nEdgeType))
            if (Object* pEdge = history.GetObject(nEdge))
                pEdge->Delete();
        history.Commit("Test"); // 5
    }
    const Report none;
    const Report whole = GetRange(model, 0, 5);
    EXPECT_EQ(IDs(whole.aCreated.begin() + 1, whole.aCreated.end()), model.GetIDs(nUnspecifiedType));
    EXPECT_EQ(whole.aChanged, none.aChanged);
    EXPECT_EQ(whole.aDeleted, none.aDeleted) << "what came and went is not told of";
    EXPECT_EQ(GetRange(model, INVALID_ID, 5), whole);
    EXPECT_EQ(GetRange(model, 5, 0), Expected({}, {}, IDs(whole.aCreated.begin() + 1, whole.aCreated.end())));

    const Report middle = GetRange(model, 2, 4);
    EXPECT_EQ(middle.aCreated[1], nLone) << "made, then changed";
    EXPECT_EQ(middle.aChanged, none.aChanged);
    const Report faces = GetRange(model, 0, 4, 0, {nEdgeType, nFaceType});
    EXPECT_EQ(faces.aCreated.size() - 1, 5u);
    const Report forward = GetRange(model, 1, 4);
    const Report back = GetRange(model, 4, 1);
    EXPECT_EQ(back.aDeleted, forward.aCreated);
    EXPECT_EQ(back.aCreated, forward.aDeleted);
    EXPECT_EQ(back.aChanged, forward.aChanged);
    EXPECT_NE(back.aChanged, none.aChanged);
    EXPECT_TRUE(std::ranges::is_sorted(forward.aCreated.begin() + 1, forward.aCreated.end()));

    using Ends = std::pair<std::uint64_t, std::uint64_t>;
    for (const auto& [nFrom, nTo] : {Ends{3, 3}, Ends{0, INVALID_ID}, Ends{0, 0}, Ends{1, 6}, Ends{99, 1}})
        EXPECT_EQ(GetRange(model, nFrom, nTo, Result::nFailure), none);
}

TEST(CompareHistory, TellsHowACopyStandsToAHistory)
{
    TestModel model;
    const auto compare = [&](std::uint64_t nActive, const IDs& aDeltas)
    {
        nHistoryComparison nComparison = nHistoryDeltaDiffers;
        EXPECT_TRUE(APICompareHistoryReadOnly(model.GetID(), nActive, aDeltas, nComparison).IsGood());
        return unsigned(nComparison);
    };
    EXPECT_EQ(compare(INVALID_ID, {}), 0u);
    EXPECT_EQ(compare(0, {}), 0u);
    EXPECT_EQ(compare(0, {1}), unsigned(nHistoryListLonger | nHistoryActiveAbove));
    for (int n = 0; n < 3; ++n)
        model.Line({0, 0, 0}, {1.0 + n, 1, 0});
    EXPECT_EQ(compare(2, {1, 2}), unsigned(nHistoryListLonger | nHistoryHasLaterDeltas)) << "nothing is shared";
    EXPECT_TRUE(APISetAllDeltaFlags(model.GetID(), 8, 0, false).IsGood());
    EXPECT_EQ(compare(2, {1, 2, 3}), 0u);
    EXPECT_EQ(compare(1, {1, 2, 4}), unsigned(nHistoryDeltaDiffers | nHistoryActiveAbove));
    EXPECT_EQ(compare(2, {1, 2}), unsigned(nHistoryPrefixLonger));
    EXPECT_EQ(compare(INVALID_ID, {1, 2, 3, 5}), unsigned(nHistoryListLonger | nHistoryActiveBelow));
    EXPECT_TRUE(APISetDeltaFlags(model.GetID(), 2, 7).IsGood());
    EXPECT_EQ(compare(2, {1}), unsigned(nHistoryHasLaterDeltas)) << "the run of shared deltas breaks off";
    EXPECT_TRUE(APIUndoHistoryToDelta(model.GetID(), INVALID_ID).IsGood());
    EXPECT_EQ(compare(0, {1}), unsigned(nHistoryHasLaterDeltas | nHistoryActiveAbove));
}

TEST(IsExactMatch, ComparesModelsByTheIDsOfWhatLives)
{
    const auto draw = [](TestModel& model)
    {
        model.Box(GetFrames().front(), {0, 0, 0}, {1, 2, 3});
        model.Line({1, 2, 0}, {5, 5, 0});
    };
    TestModel a;
    TestModel b;
    EXPECT_TRUE(Match(a.GetID(), a.GetID()));
    EXPECT_TRUE(Match(a.GetID(), b.GetID()));
    draw(a);
    EXPECT_FALSE(Match(a.GetID(), b.GetID()));
    draw(b);
    EXPECT_TRUE(Match(a.GetID(), b.GetID()));
    b.Line({8, 8, 8}, {9, 9, 9});
    EXPECT_FALSE(Match(a.GetID(), b.GetID()));
    EXPECT_TRUE(APIUndoHistory(b.GetID()).IsGood());
    EXPECT_TRUE(Match(a.GetID(), b.GetID())) << "dead objects do not count";

    // The same shape from lines drawn the other way round has other ids.
    TestModel c;
    c.Line({1, 2, 0}, {5, 5, 0});
    c.Box(GetFrames().front(), {0, 0, 0}, {1, 2, 3});
    EXPECT_FALSE(Match(a.GetID(), c.GetID()));
    // A corner elsewhere by a hair.
    TestModel d;
    d.Box(GetFrames().front(), {0, 0, 0}, {1, 2, 3});
    d.Line({1, 2, 0}, {5, 5.000001, 0});
    EXPECT_FALSE(Match(a.GetID(), d.GetID()));
    const std::uint64_t nBody = a.GetIDs(nBodyType).front();
    EXPECT_TRUE(Match(a.GetID(), d.GetID(), 0, nBody, d.GetIDs(nBodyType).front()));
    EXPECT_TRUE(Match(a.GetID(), a.GetID(), 0, nBody, nBody));
    const IDs aFaces = a.GetIDs(nFaceType);
    EXPECT_FALSE(Match(a.GetID(), a.GetID(), 0, nBody, aFaces[0]));
    EXPECT_FALSE(Match(a.GetID(), a.GetID(), 0, aFaces[0], aFaces[1]));
    EXPECT_TRUE(Match(a.GetID(), b.GetID(), 0, aFaces[1], aFaces[1]));

    EXPECT_FALSE(Match(a.GetID(), 123456, Result::nBadHistoryID));
    EXPECT_FALSE(Match(a.GetID(), b.GetID(), Result::nBadInput, nBody));
    EXPECT_FALSE(Match(a.GetID(), b.GetID(), Result::nBadInput, INVALID_ID, nBody));
    EXPECT_FALSE(Match(a.GetID(), b.GetID(), Result::nBadInput, nBody, 99999));
    Journaled journal(a.GetID());
    APIEnableJournalingTypes({"QRVReadOnly"}, true);
    journal.ReadOn();
    Match(a.GetID(), a.GetID(), 0, 3, 4);
    EXPECT_EQ(journal.ReadOn(), "    QRV.APIIsExactMatchReadOnly(mainHistID, mainHistID, 3, 4);\n");
}

TEST(IsExactMatch, GoesDownIntoWhatGroupsShow)
{
    PolygonModel a;
    PolygonModel b;
    PolygonModel shownByA;
    PolygonModel shownByB;
    const auto id = [](PolygonModel& model) { return model.GetHistory().GetID(); };
    AddSign(a, id(shownByA));
    AddSign(b, id(shownByB));
    EXPECT_TRUE(Match(id(a), id(b)));
    EXPECT_TRUE(Match(id(a), id(b), 0, 0, 0)) << "the groups alone";
    {
        const Step step(shownByA);
        shownByA.AddVertex({1, 0, 0});
    }
    EXPECT_FALSE(Match(id(a), id(b)));
    EXPECT_FALSE(Match(id(a), id(b), 0, 0, 0));
    {
        const Step step(shownByB);
        shownByB.AddVertex({1, 0, 0});
    }
    EXPECT_TRUE(Match(id(a), id(b)));
    // One History stands for one other, also where models show each other in a ring.
    AddSign(shownByA, id(a));
    AddSign(shownByB, id(b));
    EXPECT_TRUE(Match(id(a), id(b)));
    PolygonModel other;
    AddSign(a, id(shownByA));
    AddSign(b, id(other));
    EXPECT_FALSE(Match(id(a), id(b)));
    // What no longer exists stands for what no longer exists only.
    PolygonModel c;
    PolygonModel d;
    AddSign(c, 1234567);
    AddSign(d, 7654321);
    EXPECT_TRUE(Match(id(c), id(d)));
    AddSign(c, 1234568);
    AddSign(d, id(other));
    EXPECT_FALSE(Match(id(c), id(d)));
}
} // namespace QRV
