#include "history/HistoryRegistry.h"
#include "support/DressedModel.h"

namespace QRV
{
namespace
{
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
    InStep(model, [&] { model.GetHistory().Create<Sign>(nShown); });
}
} // namespace

TEST(ChangeReports, TellWhatAStepDidAndWhatTakingItBackDid)
{
    TestModel model;
    const Report none;
    EXPECT_EQ(GetActive(model, false, Result::nFailure), none);
    EXPECT_EQ(GetRange(model, 0, 1, Result::nFailure), none);
    DrawCross(model);
    Report second = GetActive(model, false);
    EXPECT_EQ(GetRange(model, 1, 2), second) << "one delta keeps its order";
    std::ranges::sort(second.aCreated);
    EXPECT_EQ(GetActive(model, false, 0, nFaceType), none);
    EXPECT_EQ(GetActive(model, true), none) << "nothing to redo";

    ExpectGood(APIUndoHistory(model.GetID()));
    Report undone = GetActive(model, true);
    std::ranges::sort(undone.aDeleted);
    EXPECT_EQ(undone.aDeleted, second.aCreated);
    EXPECT_EQ(undone.aCreated, second.aDeleted);
    EXPECT_EQ(GetActive(model, false), (Report{{77, 0, 1, 2}, {77}, {77}}));
    ExpectGood(APIUndoHistory(model.GetID()));
    EXPECT_EQ(GetActive(model, false), none) << "no delta is applied";
    EXPECT_EQ(GetActive(model, true), (Report{{77}, {77}, {77, 0, 1, 2}}));

    // Each list may be left out; while something is being drawn there is no report.
    ExpectGood(APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly(model.GetID(), nullptr, nullptr, nullptr));
    ExpectGood(APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(model.GetID(), 0, 2, nullptr, nullptr, nullptr));
    ExpectGood(APIRedoHistoryToDelta(model.GetID(), 2));
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
    DrawCross(model);                                    // 1, 2
    const std::uint64_t nLone = model.Vertex({5, 5, 5}); // 3
    model.Line({5, 5, 5}, {6, 5, 5});                    // 4: the lone vertex changes
    InStep(model.GetID(),                                // 5
           [](History& history)
           {
               for (Edge* pEdge : GetAll<Edge>(history))
                   pEdge->Delete();
           });
    const Report none;
    const Report whole = GetRange(model, 0, 5);
    EXPECT_EQ(IDs(whole.aCreated.begin() + 1, whole.aCreated.end()), model.GetIDs(nUnspecifiedType));
    EXPECT_EQ(whole.aChanged, none.aChanged);
    EXPECT_EQ(whole.aDeleted, none.aDeleted) << "what came and went is not told of";
    EXPECT_EQ(GetRange(model, INVALID_ID, 5), whole);
    EXPECT_EQ(GetRange(model, 5, 0), (Report{{77}, {77}, whole.aCreated}));

    const Report middle = GetRange(model, 2, 4);
    EXPECT_EQ(middle.aCreated[1], nLone) << "made, then changed";
    EXPECT_EQ(middle.aChanged, none.aChanged);
    const Report faces = GetRange(model, 0, 4, 0, {nEdgeType, nFaceType});
    EXPECT_EQ(faces.aCreated.size() - 1, 5u);
    const Report forward = GetRange(model, 1, 4);
    EXPECT_NE(forward.aChanged, none.aChanged);
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
        ExpectGood(APICompareHistoryReadOnly(model.GetID(), nActive, aDeltas, nComparison));
        return unsigned(nComparison);
    };
    EXPECT_EQ(compare(INVALID_ID, {}), 0u);
    EXPECT_EQ(compare(0, {}), 0u);
    EXPECT_EQ(compare(0, {1}), unsigned(nHistoryListLonger | nHistoryActiveAbove));
    for (int n = 0; n < 3; ++n)
        model.Line({0, 0, 0}, {1.0 + n, 1, 0});
    EXPECT_EQ(compare(2, {1, 2}), unsigned(nHistoryListLonger | nHistoryHasLaterDeltas)) << "nothing is shared";
    ExpectGood(APISetAllDeltaFlags(model.GetID(), 8, 0, false));
    EXPECT_EQ(compare(2, {1, 2, 3}), 0u);
    EXPECT_EQ(compare(1, {1, 2, 4}), unsigned(nHistoryDeltaDiffers | nHistoryActiveAbove));
    EXPECT_EQ(compare(2, {1, 2}), unsigned(nHistoryPrefixLonger));
    EXPECT_EQ(compare(INVALID_ID, {1, 2, 3, 5}), unsigned(nHistoryListLonger | nHistoryActiveBelow));
    ExpectGood(APISetDeltaFlags(model.GetID(), 2, 7));
    EXPECT_EQ(compare(2, {1}), unsigned(nHistoryHasLaterDeltas)) << "the run of shared deltas breaks off";
    ExpectGood(APIUndoHistoryToDelta(model.GetID(), INVALID_ID));
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
    ExpectGood(APIUndoHistory(b.GetID()));
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

    EXPECT_FALSE(Match(a.GetID(), b.GetID(), Result::nBadInput, nBody));
    EXPECT_FALSE(Match(a.GetID(), b.GetID(), Result::nBadInput, INVALID_ID, nBody));
}

TEST(IsExactMatch, ComparesWhatModelsAreDressedIn)
{
    const DressedModel a;
    const DressedModel b;
    const std::uint64_t h = b.GetID();
    const std::string sOther = "other";
    const std::array<Point3d, 4> aCorners{Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(1, 1, 0), Point3d(0, 1, 0)};
    const Color paint{200, 0, 0, 255};
    const TexturePairs aMore{{"bump", b.nTexture}};
    ASSERT_TRUE(Match(a.GetID(), h));
    const std::function<Result()> aChanges[] = {
        [&] { return APISetTextureData(h, b.nTexture, MakeJPEG('b'), true, nullptr); },
        [&] { return APISetTextureData(h, b.nTexture, MakeJPEG('a'), false, nullptr); },
        [&] { return APISetTextureData(h, b.nTexture, MakeJPEG('a'), true, &sOther); },
        [&] {
            return APISetMaterialColor(h, b.nPaint, {200, 0, 0, 254});
        },
        [&] { return APISetMaterialTexture(h, b.nPaint, 1, 1.0 + 1e-9, INVALID_ID); },
        [&] { return APISetMaterialTexture(h, b.nPaint, 1, 1, b.nTexture); },
        [&] { return APISetMaterialData(h, b.nPaint, paint, 1, 1, INVALID_ID, nullptr, nullptr, nullptr, &aMore); },
        [&] { return APISetObjectsMaterial(h, {b.aFaces[2]}, b.nWallpaper); },
        [&] { return APISetFaceBacksideMaterial(h, {b.aFaces[0]}, INVALID_ID); },
        [&] { return APIAddObjectsLayers(h, {b.nLayer}, {b.aFaces[3]}); },
        [&] {
            return APISetLevelsData(h, {b.nLevel}, {{"ground", 1e-9}});
        },
        [&] { return APISetStringAttributeValue(h, b.nKeyed, "F30"); },
        [&] { return APISetImageData(h, b.nImage, "plan", b.nTexture, 0.51f, true, aCorners); },
        [&] { return APISetLocalCoordinateSystem(h, Transf3d(Point3d(1, 0, 0))); },
    };
    std::size_t nChange = 0;
    for (const auto& change : aChanges)
    {
        SCOPED_TRACE(nChange++);
        ExpectGood(change());
        EXPECT_FALSE(Match(a.GetID(), h));
        ExpectGood(APIUndoHistory(h, true));
        EXPECT_TRUE(Match(a.GetID(), h));
    }
    // Less than the tolerances.
    ExpectGood(APISetMaterialTexture(h, b.nPaint, 1, 1.0 + 1e-13, INVALID_ID));
    ExpectGood(APISetLevelsData(h, {b.nLevel}, {{"ground", 1e-13}}));
    ExpectGood(APISetImageData(h, b.nImage, "plan", b.nTexture, 0.5f + 1e-7f, true, aCorners));
    EXPECT_TRUE(Match(a.GetID(), h));
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
    shownByA.AddVertex({1, 0, 0});
    EXPECT_FALSE(Match(id(a), id(b)));
    EXPECT_FALSE(Match(id(a), id(b), 0, 0, 0));
    shownByB.AddVertex({1, 0, 0});
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
