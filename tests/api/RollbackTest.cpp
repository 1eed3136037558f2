// Every call that changes something is tried with the first, the second, ... allocation refused, till it gets all.

#include "support/DressedModel.h"
#include "support/FailingAllocator.h"

#include <numbers>
#include <optional>

namespace QRV
{
namespace
{
using IDs = std::vector<std::uint64_t>;

/// All that a failed call must leave as it was.
struct State
{
    std::string strModel;
    IDs aDeltas;
    std::uint64_t nActiveDelta = INVALID_ID;
    std::set<std::uint64_t> reusableIDs;
    std::size_t nObjectIDs = 0;

    explicit State(const TestModel& model)
        : strModel(model.Describe()), reusableIDs(model.GetHistory().GetReusableIDs().Get()),
          nObjectIDs(model.GetHistory().GetObjectTable().Size())
    {
        APIGetAllHistoryDeltasReadOnly(model.GetID(), aDeltas);
        APIGetIdOfActiveDeltaReadOnly(model.GetID(), nActiveDelta);
    }
    /// The next new object gets the same id, and the one behind it; a free id at the table's end may go.
    std::vector<std::uint64_t> GetNextIDs() const
    {
        std::vector<std::uint64_t> aNext(reusableIDs.begin(), reusableIDs.end());
        for (std::uint64_t nID = nObjectIDs; aNext.size() < 2000; ++nID)
            aNext.push_back(nID);
        return aNext;
    }
    void ExpectIn(const TestModel& model) const
    {
        const State now(model);
        EXPECT_EQ(now.strModel, strModel);
        EXPECT_EQ(now.aDeltas, aDeltas);
        EXPECT_EQ(now.nActiveDelta, nActiveDelta);
        EXPECT_EQ(now.GetNextIDs(), GetNextIDs());
    }
};

struct Case
{
    const char* pName;
    std::function<void(TestModel&)> setUp;
    std::function<Result(const TestModel&)> call;
    Result::nResultType nOutOfMemory = Result::nCaughtException; ///< another code for the same, of calls that make one
    std::size_t nLeastRefusals = 10; ///< a case that does real work asks for memory this often
};

/// One model, on which the call fails again and again, against one on which it never did.
/// @param nRefusals  how many allocations are refused from the first one on
void TryWithEveryAllocationRefused(const Case& test, std::size_t nRefusals)
{
    SCOPED_TRACE(test.pName);
    TestModel reference;
    test.setUp(reference);
    ASSERT_TRUE(test.call(reference).IsGood());
    const State done(reference);

    std::optional<TestModel> model(std::in_place);
    test.setUp(*model);
    const State before(*model);
    ASSERT_FALSE(before.strModel == done.strModel && before.aDeltas == done.aDeltas) << "the call does nothing";
    std::size_t nTrials = 0;
    for (std::size_t nGranted = 0;; ++nGranted)
    {
        SCOPED_TRACE(nGranted);
        Result result;
        {
            const FailingAllocator::Scope scope(nGranted, nRefusals);
            result = test.call(*model);
        }
        ExpectSound(*model);
        ExpectBitmapsCounted();
        if (!FailingAllocator::HasFailed())
        {
            EXPECT_TRUE(result.IsGood());
            done.ExpectIn(*model);
            break;
        }
        ++nTrials;
        if (result.IsGood())
        {
            // What was refused could be done without.
            done.ExpectIn(*model);
            model.emplace();
            test.setUp(*model);
            continue;
        }
        const auto nCode = result.GetErrorCode();
        EXPECT_TRUE(nCode == Result::nCaughtException || nCode == test.nOutOfMemory) << result.GetErrorString();
        before.ExpectIn(*model);
        if (testing::Test::HasFailure())
            return;
    }
    EXPECT_GE(nTrials, test.nLeastRefusals);
    if (model->GetHistory().CanUndo())
        ExpectUndoRedoRestores(*model);
}

void TryWithEveryAllocationRefused(const Case& test)
{
    for (const std::size_t nRefusals : {FailingAllocator::kForGood, std::size_t(1)})
        TryWithEveryAllocationRefused(test, nRefusals);
}

const Frame& GetFrame()
{
    return GetFrames()[1];
}

Point3d At(double u, double v, double w = 0.0)
{
    return GetFrame()(u, v, w);
}

void DrawBox(TestModel& model)
{
    model.Box(GetFrame(), Point3d(0, 0, 0), Point3d(2, 2, 2));
}

void DrawBoxButForOneEdge(TestModel& model)
{
    std::vector<Segment> aEdges = GetBoxEdges(GetFrame(), Point3d(0, 0, 0), Point3d(2, 2, 2));
    std::erase_if(aEdges, [](const Segment& edge)
                  { return (edge.first + (edge.second - edge.first) * 0.5).dist(At(1, 0, 2)) < 0.1; });
    model.Lines(aEdges);
}

std::uint64_t FindVertex(const TestModel& model, const Point3d& p)
{
    for (const std::uint64_t nVertex : model.GetIDs(nVertexType))
        if (model.GetHistory().Get<Vertex>(nVertex)->GetPosition().distSqrd(p) < 1e-18)
            return nVertex;
    ADD_FAILURE() << "no vertex there";
    return INVALID_ID;
}
} // namespace

TEST(Rollback, LeavesNoTraceOfADrawingCallThatMemoryRanOutOn)
{
    std::uint64_t nID = INVALID_ID;
    std::vector<Point3d> aPoints;
    const UnitVector3d& x = GetFrame().x;
    const UnitVector3d& y = GetFrame().y;
    aPoints.reserve(1000);
    const std::vector<Point3d> aRing{At(0.5, 0.5, 2), At(1.5, 0.5, 2), At(1.5, 1.5, 2), At(0.5, 1.5, 2)};
    const auto findFirst = [](const TestModel& m, nObjectType n) { return m.GetIDs(n).front(); };
    std::uint64_t nVertexA = INVALID_ID;
    std::uint64_t nVertexB = INVALID_ID;
    std::uint64_t nFace = INVALID_ID;
    std::uint64_t nBody = INVALID_ID;

    const Case aCases[] = {
        {"a vertex in the air", DrawBox, [&](auto& m) { return APICreateVertex(m.GetID(), At(9, 9), nID); },
         Result::nCaughtException, 3},
        {"a vertex on a solid's edge", DrawBox, [&](auto& m) { return APICreateVertex(m.GetID(), At(1, 0, 2), nID); }},
        {"the last edge of a solid", DrawBoxButForOneEdge,
         [&](auto& m) { return APIConnectPoint3ds(m.GetID(), At(0, 0, 2), At(2, 0, 2)); }},
        {"a line across a face, over its edges", DrawBox,
         [&](auto& m) { return APIConnectPoint3ds(m.GetID(), At(-1, 1, 2), At(3, 1, 2)); }},
        {"a line through free lines",
         [&](TestModel& m)
         {
             m.Line(At(0, -1), At(0, 1));
             m.Line(At(1, -1), At(1, 1));
             m.Line(At(0, 1), At(1, 1));
         },
         [&](auto& m) { return APIConnectPoint3ds(m.GetID(), At(-1, 0), At(2, 0)); }},
        {"a spur into a face",
         [&](TestModel& m)
         {
             DrawBox(m);
             nVertexA = FindVertex(m, At(0, 0, 2));
         },
         [&](auto& m) { return APIConnectVertexAndPoint3d(m.GetID(), nVertexA, At(0.5, 0.7, 2)); }},
        {"a chord from a corner to an edge",
         [&](TestModel& m)
         {
             DrawBox(m);
             nVertexA = FindVertex(m, At(0, 0, 2));
         },
         [&](auto& m) { return APIConnectVertexAndPoint3d(m.GetID(), nVertexA, At(1, 2, 2)); }},
        {"a diagonal",
         [&](TestModel& m)
         {
             DrawBox(m);
             nVertexA = FindVertex(m, At(0, 0, 2));
             nVertexB = FindVertex(m, At(2, 2, 2));
         },
         [&](auto& m) { return APIConnectVertices(m.GetID(), nVertexA, nVertexB); }},
        {"a bridge from a hole to the outline",
         [&](TestModel& m)
         {
             DrawBox(m);
             m.Outline(aRing);
             nVertexA = FindVertex(m, At(0, 0, 2));
             nVertexB = FindVertex(m, aRing[0]);
         },
         [&](auto& m) { return APIConnectVertices(m.GetID(), nVertexA, nVertexB); }},
        {"a polyline", DrawBox, [&](auto& m) { return APICreatePolyline(m.GetID(), aRing, nID, true); }},
        {"a rectangle in a face", DrawBox,
         [&](auto& m) { return APICreateRectangle(m.GetID(), aRing[0], aRing[1], aRing[2], aPoints, false); }},
        {"a rectangle over an edge", DrawBox,
         [&](auto& m)
         { return APICreateRectangle(m.GetID(), At(1, 0.5, 2), At(3, 0.5, 2), At(3, 1.5, 2), aPoints, false); }},
        {"a circle in a face", DrawBox,
         [&](auto& m)
         {
             aPoints.clear();
             return APICreateCircleOrArc(m.GetID(), 0.5, At(1, 1, 2), aPoints, x, y, 0.0, 2 * std::numbers::pi, 0.05,
                                         false, Transf3d(), 8);
         }},
        {"an arc that closes a sheet", [&](TestModel& m) { m.Line(At(-1, 0), At(1, 0)); },
         [&](auto& m)
         {
             aPoints.clear();
             return APICreateCircleOrArcFromPoints(m.GetID(), At(1, 0), At(-1, 0), At(0, 1), aPoints, 0.05, false,
                                                   Transf3d(), 6, false);
         }},
        {"an empty body", DrawBox, [&](auto& m) { return APICreateEmptyBody(m.GetID(), nID); }, Result::nOutOfMemory,
         3},
        {"a sheet for a body",
         [&](TestModel& m)
         {
             m.Outline({At(0, 0), At(1, 0), At(1, 1)});
             m.Outline({At(0, 0), At(1, 1), At(0, 1, 1)});
             EXPECT_TRUE(APICreateEmptyBody(m.GetID(), nBody).IsGood());
             nFace = findFirst(m, nFaceType);
         },
         [&](auto& m) { return APIAddFaceComponentToBody(m.GetID(), nFace, nBody); }},
    };
    for (const Case& test : aCases)
        TryWithEveryAllocationRefused(test);
}

TEST(Rollback, LeavesTheStepsAsTheyWereWhenMemoryRunsOutOnAJump)
{
    const auto drawAndUndo = [](TestModel& model, int nUndone)
    {
        DrawBox(model);
        model.Outline({At(0.5, 0.5, 2), At(1.5, 0.5, 2), At(1.5, 1.5, 2)});
        for (int n = 0; n < nUndone; ++n)
            ASSERT_TRUE(APIUndoHistory(model.GetID()).IsGood());
    };
    const auto undone = [&](int n) { return [&drawAndUndo, n](TestModel& model) { drawAndUndo(model, n); }; };
    // Whether a step asks for memory at all is its own affair.
    const Case aCases[] = {
        {"undo", undone(0), [](auto& m) { return APIUndoHistory(m.GetID()); }, Result::nCaughtException, 0},
        {"undo for good", undone(0), [](auto& m) { return APIUndoHistory(m.GetID(), true); }, Result::nCaughtException,
         0},
        {"redo", undone(5), [](auto& m) { return APIRedoHistory(m.GetID()); }, Result::nCaughtException, 0},
        {"undo all", undone(0), [](auto& m) { return APIUndoHistoryToDelta(m.GetID(), INVALID_ID); },
         Result::nCaughtException, 0},
        {"redo far", undone(14), [](auto& m) { return APIRedoHistoryToDelta(m.GetID(), 12); }, Result::nCaughtException,
         0},
        {"merge", undone(2), [](auto& m) { return APIMergeDeltas(m.GetID(), 3, 9, true); }, Result::nCaughtException,
         1},
        {"delete redo", undone(6), [](auto& m) { return APIDeleteAllRedoHistory(m.GetID(), true); },
         Result::nCaughtException, 1},
        {"delete redo and leave the ids", undone(6), [](auto& m) { return APIDeleteAllRedoHistory(m.GetID(), false); },
         Result::nCaughtException, 0},
    };
    for (const Case& test : aCases)
        TryWithEveryAllocationRefused(test);
}

namespace
{
struct Answer
{
    IDs aIDs;
    IDs aChanged;
    std::string strText;
    std::vector<Point3d> aPoints;
    std::vector<UnitVector3d> aNormals;
    std::vector<std::pair<std::uint64_t, UnitVector3d>> aVertexNormals;
    std::vector<Result> aResults;
    SortedHits hits;
    double dValue = 0.0;
    bool bValue = false;
    Interval3d box;

    std::vector<double> GetNumbers() const
    {
        std::vector<double> aNumbers{dValue, double(bValue), double(aResults.size()), double(hits.size()),
                                     double(aChanged.size())};
        aNumbers.insert(aNumbers.end(), strText.begin(), strText.end());
        for (const std::uint64_t nID : aIDs)
            aNumbers.push_back(double(nID));
        const auto add = [&](const auto& p)
        {
            for (int n = 0; n < 3; ++n)
                aNumbers.push_back(p[n]);
        };
        std::for_each(aPoints.begin(), aPoints.end(), add);
        std::for_each(aNormals.begin(), aNormals.end(), add);
        for (const auto& [nID, normal] : aVertexNormals)
            add(normal);
        add(box.lower);
        add(box.upper);
        return aNumbers;
    }
};
} // namespace

TEST(Rollback, LeavesNoTraceOfADressingCallThatMemoryRanOutOn)
{
    const std::string s = "a name that is too long for the place inside a string";
    const std::vector<char> aBytes = MakeJPEG('z');
    const StringPairs aData{{s, s}, {s + "2", s}};
    const std::array<Point3d, 4> aCorners{};
    std::uint64_t nID = INVALID_ID;
    IDs aIDs;
    aIDs.reserve(100);
    const std::vector<std::pair<std::string, double>> aLevels{{s, 1.0}, {s, 2.0}};
    Dress dress;
    std::uint64_t nEarth = INVALID_ID;
    TexturePairs aTextures;
    IDs aLayers;
    IDs aBodies;
    IDs aEdges;
    IDs aOneLevel;
    const IDs aNone;
    const auto setUp = [&](TestModel& m)
    {
        dress = DressBox(m);
        aTextures.assign(2, {s, dress.nTexture});
        aLayers = {dress.nLayer};
        aBodies = {dress.nBody};
        aEdges = m.GetIDs(nEdgeType);
        aOneLevel = {dress.nLevel};
    };
    const auto setUpTwoImages = [&](TestModel& m)
    {
        setUp(m);
        APICreateSatelliteImageObject(m.GetID(), s, INVALID_ID, 1, true, aCorners, {1, 2}, {3, 4}, {5, 6}, nEarth);
    };
    constexpr auto kOut = Result::nOutOfMemory;
    constexpr auto kAny = Result::nCaughtException;
    const Case aCases[] = {
        {"a texture", setUp, [&](auto& m) { return APICreateTexture(m.GetID(), aBytes, true, nID, s); }, kOut, 5},
        {"another image", setUp,
         [&](auto& m) { return APISetTextureData(m.GetID(), dress.nTexture, aBytes, false, &s); }, kAny, 4},
        {"a material", setUp,
         [&](auto& m)
         { return APICreateMaterialWithTexture(m.GetID(), {}, 1, 1, aBytes, true, nID, s, s, &aData, &aTextures, s); },
         kOut},
        {"a plain material", setUp,
         [&](auto& m) { return APICreateMaterial(m.GetID(), {}, 1, 1, dress.nTexture, nID, s, s, &aData, &aTextures); },
         kOut},
        {"a colour", setUp,
         [&](auto& m) {
             return APISetMaterialColor(m.GetID(), dress.nPaint, {9, 9, 9, 9});
         },
         kAny, 2},
        {"a texture for a material", setUp,
         [&](auto& m) { return APISetMaterialTexture(m.GetID(), dress.nPaint, 2, 2, dress.nTexture); }, kAny, 4},
        {"other material data", setUp,
         [&](auto& m)
         { return APISetMaterialData(m.GetID(), dress.nPaint, {}, 2, 2, dress.nTexture, &s, &s, &aData, &aTextures); }},
        {"a first back", setUp,
         [&](auto& m) { return APISetFaceBacksideMaterial(m.GetID(), dress.aFaces, dress.nPaint); }},
        {"another material", setUp,
         [&](auto& m) { return APISetObjectsMaterial(m.GetID(), dress.aFaces, dress.nWallpaper); }},
        {"a layer", setUp, [&](auto& m) { return APICreateLayer(m.GetID(), s, true, nID); }, kOut, 4},
        {"another layer name", setUp, [&](auto& m) { return APISetLayerData(m.GetID(), dress.nLayer, s, false); }, kAny,
         4},
        {"a hidden layer", setUp, [&](auto& m) { return APISetLayersDisplayed(m.GetID(), aLayers, false); }, kAny, 3},
        {"on a layer", setUp, [&](auto& m) { return APIAddObjectsLayers(m.GetID(), aLayers, aEdges); }},
        {"off a layer", setUp, [&](auto& m) { return APIRemoveObjectsLayers(m.GetID(), aLayers, aBodies); }, kAny, 5},
        {"on a layer and off", setUp,
         [&](auto& m) { return APIAddRemoveObjectsLayers(m.GetID(), aLayers, aLayers, dress.aFaces); }},
        {"levels", setUp, [&](auto& m) { return APICreateLevelObjects(m.GetID(), aLevels, aIDs); }, Result::nBadInput,
         8},
        {"another height", setUp, [&](auto& m) { return APISetLevelsData(m.GetID(), aOneLevel, aLevels); }, kAny, 3},
        {"off the levels", setUp, [&](auto& m) { return APISetObjectsLevels(m.GetID(), aBodies, aNone); }, kAny, 5},
        {"a second image", setUp,
         [&](auto& m) { return APICreateImageObjectWithTexture(m.GetID(), s, 1, true, aCorners, aBytes, nID, s); },
         kOut},
        {"an image of a texture", setUp,
         [&](auto& m) { return APICreateImageObject(m.GetID(), s, dress.nTexture, 1, true, aCorners, nID); }, kOut, 8},
        {"another picture", setUp,
         [&](auto& m) { return APISetImageData(m.GetID(), dress.nImage, s, INVALID_ID, 1, true, aCorners); }, kAny, 4},
        {"images that change places", setUpTwoImages, [&](auto& m) { return APIMoveImage(m.GetID(), dress.nImage, 1); },
         kAny, 4},
        {"another piece of the earth", setUpTwoImages,
         [&](auto& m) {
             return APISetSatelliteData(m.GetID(), nEarth, {7, 8}, {3, 4}, {5, 6});
         },
         kAny, 5},
        {"no piece of the earth", setUpTwoImages, [&](auto& m) { return APIRemoveSatelliteData(m.GetID(), nEarth); },
         kAny, 4},
        {"an image of the earth", setUp,
         [&](auto& m) {
             return APICreateSatelliteImageObject(m.GetID(), s, INVALID_ID, 1, true, aCorners, {1, 2}, {3, 4}, {5, 6},
                                                  nID);
         },
         kOut},
        {"a keyed value", setUp,
         [&](auto& m) { return APICreateStringAttribute(m.GetID(), s, s, dress.aFaces, nID, nCopyOwn, true); }},
        {"another value", setUp, [&](auto& m) { return APISetStringAttributeValue(m.GetID(), dress.nKeyed, s); }, kAny,
         4},
        {"properties", setUp, [&](auto& m) { return APISetObjectProperties(m.GetID(), dress.nBody, s, true); }, kAny,
         5},
        {"a frame", setUp, [&](auto& m) { return APISetLocalCoordinateSystem(m.GetID(), Transf3d(Point3d(1, 2, 3))); },
         kAny, 3},
        {"an origin", setUp, [&](auto& m) { return APISetOstrelModelInformation(m.GetID(), s, s, s, s); }, kAny, 5},
        {"an origin of another kind", setUp,
         [&](auto& m) { return APISetHalyxFamilyInformation(m.GetID(), s, s, s, s); }, kAny, 5},
        {"smooth marks", setUp, [&](auto& m) { return APISetEdgesOrVerticesMarkedSmooth(m.GetID(), aEdges, true); }},
        {"a line through all that is dressed", setUp,
         [&](auto& m) { return APIConnectPoint3ds(m.GetID(), At(-1, 1, 2), At(3, 1, 2)); }},
    };
    for (const Case& test : aCases)
        TryWithEveryAllocationRefused(test);
}

TEST(Rollback, IsNotNeededForAQuestionThatMemoryRanOutOn)
{
    TestModel model;
    TestModel like;
    for (TestModel* pModel : {&model, &like})
    {
        DrawBox(*pModel);
        pModel->Circle(At(1, 1, 2), 0.5, GetFrame().x, GetFrame().y, 0.05);
    }
    const std::uint64_t h = model.GetID();
    const std::uint64_t nBody = model.GetIDs(nBodyType).front();
    const std::uint64_t nFace = model.GetIDs(nFaceType).front();
    const std::uint64_t nEdge = model.GetIDs(nEdgeType).back();
    const Line3d ray(At(1, 1, -1), Vector3d(GetFrame().z));
    using Question = std::function<Result(Answer&)>;
    const std::pair<const char*, Question> aQuestions[] = {
        {"all of a type", [&](auto& a) { return APIGetAllObjectsByTypeReadOnly(h, nEdgeType, a.aIDs); }},
        {"all non-owned", [&](auto& a) { return APIGetAllNonOwnedReadOnly(h, a.aIDs); }},
        {"below", [&](auto& a) { return APIGetObjectsByTypeReadOnly(h, nBody, nVertexType, a.aIDs, false); }},
        {"connected", [&](auto& a) { return APIGetAllConnectedNonOwnedReadOnly(h, nFace, a.aIDs); }},
        {"attributes", [&](auto& a) { return APIGetObjectAttributesReadOnly(h, nEdge, nUnspecifiedType, a.aIDs); }},
        {"faces", [&](auto& a) { return APIGetBodyFacesReadOnly(h, nBody, a.aIDs); }},
        {"facets", [&](auto& a) { return APIGetFaceFacetsReadOnly(h, nFace, a.aPoints); }},
        {"normals", [&](auto& a) { return APIGetFaceVertexNormalsReadOnly(h, nFace, a.aVertexNormals); }},
        {"area", [&](auto& a) { return APIComputeAreaReadOnly(h, nBody, a.dValue); }},
        {"volume", [&](auto& a) { return APIComputeVolumeReadOnly(h, nBody, a.dValue); }},
        {"box", [&](auto& a) { return APIGetBoxReadOnly(h, nBody, a.box, Transf3d()); }},
        {"ray", [&](auto& a)
         { return APIRayFireReadOnly(h, ray, a.aIDs, 0.01, true, true, true, 1e30, nullptr, nullptr, &a.hits); }},
        {"contains", [&](auto& a) { return APIFaceContainsPointReadOnly(h, nFace, At(1, 1, 0), a.bValue); }},
        {"free edges", [&](auto& a) { return APIDetectFreeEdgesReadOnly(h, INVALID_ID, a.aIDs); }},
        {"audit", [&](auto& a) { return APICheckHistoryValidityReadOnly(h, a.aResults); }},
        {"deltas", [&](auto& a) { return APIGetHistoryDeltasReadOnly(h, INVALID_ID, 5, a.aIDs); }},
        {"dump", [&](auto& a) { return APIDebugObjectReadOnly(h, nEdge, a.strText); }},
        {"changes", [&](auto& a)
         { return APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(h, 3, 11, &a.aIDs, &a.aChanged, nullptr); }},
        {"match", [&](auto& a) { return APIIsExactMatchReadOnly(h, like.GetID(), a.bValue); }},
        {"reachable", [&](auto& a) { return APIGetAllReachableHistoriesReadOnly(h, false, a.aIDs); }},
    };
    const std::string strBefore = model.Describe();
    for (const auto& [pName, question] : aQuestions)
    {
        SCOPED_TRACE(pName);
        Answer expected;
        ASSERT_TRUE(question(expected).IsGood());
        // Memory that comes back may hide that an answer is not whole.
        for (const std::size_t nRefusals : {FailingAllocator::kForGood, std::size_t(1)})
            for (std::size_t nGranted = 0;; ++nGranted)
            {
                // The memory of an earlier answer may serve again, but not past a change.
                model.GetHistory().ClearTemporaryTrees();
                Answer answer;
                Result result;
                {
                    const FailingAllocator::Scope scope(nGranted, nRefusals);
                    result = question(answer);
                }
                if (result.IsGood())
                    EXPECT_EQ(answer.GetNumbers(), expected.GetNumbers()) << nGranted;
                else
                    EXPECT_EQ(result.GetErrorCode(), Result::nCaughtException);
                if (!FailingAllocator::HasFailed())
                {
                    EXPECT_TRUE(result.IsGood());
                    break;
                }
                Answer later;
                EXPECT_TRUE(question(later).IsGood());
                EXPECT_EQ(later.GetNumbers(), expected.GetNumbers());
            }
    }
    EXPECT_EQ(model.Describe(), strBefore);
    ExpectSound(model);
}
} // namespace QRV
