// Every exported call is tried with the first, the second, ... allocation refused, till it gets all.

#include "operations/EdgeSketch.h"
#include "proof/ProvingGround.h"
#include "proof/Session.h"
#include "support/FailingAllocator.h"

#include <numbers>

namespace QRV
{
namespace
{
/// A call that changes something, on a model made for it.
struct Trial
{
    std::function<void()> build;
    std::function<Result()> call;
    std::function<ModelState()> look;
};

/// Every one of the first allocations is refused once, of later ones some.
std::size_t GetNext(std::size_t nGranted)
{
    constexpr std::size_t kAll = 60;
    return nGranted + 1 + (nGranted < kAll ? 0 : nGranted / 8);
}

void ExpectLike(const ModelState& now, const ModelState& expected)
{
    EXPECT_EQ(now.strModel, expected.strModel);
    EXPECT_EQ(now.strSteps, expected.strSteps);
    EXPECT_EQ(now.strNextIDs, expected.strNextIDs);
    EXPECT_TRUE(now == expected) << "the Histories differ";
}

/// Bitmaps get ever new numbers as long as the process lives.
ModelState LookWithoutBitmaps(const Trial& trial)
{
    ModelState state = trial.look();
    constexpr std::string_view kWord = "bitmapdataindex ";
    std::string& strText = state.strModel;
    for (std::size_t n = strText.find(kWord); n != std::string::npos; n = strText.find(kWord, n))
    {
        n += kWord.size();
        strText.erase(n, strText.find_first_not_of("0123456789", n) - n);
    }
    return state;
}

/// The call fails again and again on one model and at last succeeds as on one on which it never failed.
/// @param nRefusals  how many allocations are refused from the first one on
void Starve(const Trial& trial, std::size_t nRefusals)
{
    SCOPED_TRACE(nRefusals == 1 ? "refused once" : "refused for good");
    trial.build();
    ASSERT_TRUE(trial.call().IsGood());
    const ModelState done = LookWithoutBitmaps(trial);
    trial.build();
    ModelState expected = trial.look();
    bool bRedoEnded = false;
    for (std::size_t nGranted = 0; !testing::Test::HasFailure(); nGranted = GetNext(nGranted))
    {
        SCOPED_TRACE(nGranted);
        Result result;
        {
            const FailingAllocator::Scope scope(nGranted, nRefusals);
            result = trial.call();
        }
        EXPECT_EQ(FindFaults(), "");
        ExpectBitmapsCounted();
        if (result.IsGood())
        {
            ExpectLike(LookWithoutBitmaps(trial), done);
            if (!FailingAllocator::HasFailed())
                return;
            trial.build(); // what was refused could be done without
            expected = trial.look();
            continue;
        }
        EXPECT_TRUE(FailingAllocator::HasFailed()) << "fails with enough memory: " << result.GetErrorString();
        const ModelState now = trial.look();
        if (now.strSteps != expected.strSteps)
        {
            expected.strSteps = GetDone(expected.strSteps) + "| ";
            if (!std::exchange(bRedoEnded, true))
                nGranted = 0; // without undone steps to delete it asks for less
        }
        ExpectLike(now, expected);
    }
}

void Starve(const Trial& trial)
{
    for (const std::size_t nRefusals : {FailingAllocator::kForGood, std::size_t(1)})
        Starve(trial, nRefusals);
}

struct Case
{
    const char* pName;
    std::function<void(TestModel&)> setUp;
    std::function<Result(const TestModel&)> call;
};

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

TEST(Starvation, LeavesNoTraceOfADrawingCall)
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
        {"a vertex in the air", DrawBox, [&](auto& m) { return APICreateVertex(m.GetID(), At(9, 9), nID); }},
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
        {"an empty body", DrawBox, [&](auto& m) { return APICreateEmptyBody(m.GetID(), nID); }},
        {"a sheet for a body",
         [&](TestModel& m)
         {
             m.Outline({At(0, 0), At(1, 0), At(1, 1)});
             m.Outline({At(0, 0), At(1, 1), At(0, 1, 1)});
             ExpectGood(APICreateEmptyBody(m.GetID(), nBody));
             nFace = findFirst(m, nFaceType);
         },
         [&](auto& m) { return APIAddFaceComponentToBody(m.GetID(), nFace, nBody); }},
    };
    std::optional<TestModel> model;
    for (const Case& test : aCases)
    {
        SCOPED_TRACE(test.pName);
        Starve({.build =
                    [&]
                {
                    model.reset();
                    APIDeleteAllHistories(); // ids start at 0 again
                    model.emplace();
                    test.setUp(*model);
                },
                .call = [&] { return test.call(*model); },
                .look = [&] { return Look(model->GetID()); }});
    }
}

namespace
{
class Starvation : public testing::TestWithParam<const CallKind*>
{
protected:
    Starvation() : m_aSeeds(m_ground.FindGoodSeeds(Kind())) { m_ground.Rebuild(); }
    ~Starvation() override
    {
        APIDisableJournaling();
        APIEnableJournalingTypes({"QRV"}, false);
    }

    static const CallKind& Kind() { return *GetParam(); }
    std::unique_ptr<PreparedCall> Prepare(std::uint64_t nSeed) const
    {
        ArgumentSource source = m_ground.GetSource(nSeed);
        return Kind().prepare(source);
    }

    ProvingGround m_ground;
    std::vector<std::uint64_t> m_aSeeds;
};
using StarvedChange = Starvation;
using StarvedQuestion = Starvation;

TEST_P(StarvedChange, LeavesNoTrace)
{
    ASSERT_FALSE(m_aSeeds.empty());
    std::unique_ptr<PreparedCall> call;
    Starve({.build =
                [&]
            {
                m_ground.Rebuild();
                call = Prepare(m_aSeeds.front());
            },
            .call = [&] { return call->Run(); },
            .look = [&] { return m_ground.Look(); }});
}

TEST_P(StarvedQuestion, GivesTheWholeAnswerOrNone)
{
    ASSERT_FALSE(m_aSeeds.empty());
    const ModelState before = m_ground.Look();
    for (const std::uint64_t nSeed : m_aSeeds)
    {
        const std::unique_ptr<PreparedCall> expected = Prepare(nSeed);
        ASSERT_TRUE(expected->Run().IsGood());
        // Memory that comes back may hide that an answer is not whole.
        for (const std::size_t nRefusals : {FailingAllocator::kForGood, std::size_t(1)})
            for (std::size_t nGranted = 0; !HasFailure(); nGranted = GetNext(nGranted))
            {
                SCOPED_TRACE(nGranted);
                // The memory of an earlier answer may serve again, but not past a change.
                m_ground.GetModel().GetHistory().ClearTemporaryTrees();
                const std::unique_ptr<PreparedCall> call = Prepare(nSeed);
                Result result;
                {
                    const FailingAllocator::Scope scope(nGranted, nRefusals);
                    result = call->Run();
                }
                EXPECT_TRUE(result.IsGood() ? call->HasSameResults(*expected) : FailingAllocator::HasFailed());
                if (!FailingAllocator::HasFailed())
                    break;
            }
    }
    EXPECT_TRUE(m_ground.Look() == before);
    EXPECT_EQ(FindFaults(), "");
}

TEST(Starvation, RollbackAsksForNoMemory)
{
    const RichModel model;
    History& history = model.GetHistory();
    const std::string strBefore = DumpObjects(model.GetID());
    ASSERT_TRUE(history.StartDelta());
    ConnectPoints(history, {-1, 1, 0}, {6, 1, 0}, {});
    for (const std::uint64_t nID : model.GetIDs(nUnspecifiedType))
        if (Object* pObject = history.GetObject(nID))
            pObject->Delete();
    {
        const FailingAllocator::Scope scope(0);
        EXPECT_TRUE(history.Rollback());
    }
    EXPECT_FALSE(FailingAllocator::HasFailed());
    EXPECT_EQ(DumpObjects(model.GetID()), strBefore);
    EXPECT_EQ(FindFaults(), "");
}

INSTANTIATE_TEST_SUITE_P(Of, StarvedChange,
                         testing::ValuesIn(SelectKinds([](const CallKind& kind) { return !kind.IsReadOnly(); })),
                         NameOfKind);
INSTANTIATE_TEST_SUITE_P(Of, StarvedQuestion,
                         testing::ValuesIn(SelectKinds([](const CallKind& kind) { return kind.IsReadOnly(); })),
                         NameOfKind);
} // namespace
} // namespace QRV
