#include "history/History.h"
#include "model/Face.h"
#include "support/TestModel.h"

#include <algorithm>

namespace QRV
{
namespace
{
std::vector<Frame> GetSketchFrames()
{
    std::mt19937_64 random(4711);
    std::vector<Frame> aFrames = GetFrames();
    aFrames.push_back(MakeRandomFrame(random, 1e4));
    return aFrames;
}

std::vector<double> GetAreas(const TestModel& model)
{
    std::vector<double> aAreas;
    for (const std::uint64_t nFace : model.GetIDs(nFaceType))
        aAreas.push_back(model.GetArea(nFace));
    std::sort(aAreas.begin(), aAreas.end());
    return aAreas;
}

void ExpectAreas(const TestModel& model, std::vector<double> aExpected)
{
    const std::vector<double> aAreas = GetAreas(model);
    ASSERT_EQ(aAreas.size(), aExpected.size());
    for (std::size_t n = 0; n < aAreas.size(); ++n)
        EXPECT_NEAR(aAreas[n], aExpected[n], 1e-7);
    ExpectUndoRedoRestores(model);
}

std::uint64_t FindEdge(const TestModel& model, const Point3d& a, const Point3d& b)
{
    for (const std::uint64_t nEdge : model.GetIDs(nEdgeType))
    {
        Point3d start;
        Point3d end;
        APIGetEdgePointsReadOnly(model.GetID(), nEdge, start, end);
        if ((start.dist(a) < 1e-7 && end.dist(b) < 1e-7) || (start.dist(b) < 1e-7 && end.dist(a) < 1e-7))
            return nEdge;
    }
    ADD_FAILURE() << "no such edge";
    return INVALID_ID;
}

using DrawnFacesInFrame = InFrame<TestModel>;
INSTANTIATE_TEST_SUITE_P(AllFrames, DrawnFacesInFrame, testing::ValuesIn(GetSketchFrames()));
} // namespace

TEST_P(DrawnFacesInFrame, ALineAcrossAFaceSplitsIt)
{
    m_model.Outline(MakeRectangle(m_at, 0, 0, 4, 2));
    m_model.Line(m_at(1, -1), m_at(1, 3));
    EXPECT_EQ(m_model.GetCounts(), (ModelCounts{0, 0, 0, 2, 9, 8}));
    ExpectAreas(m_model, {2, 6});
}

TEST_P(DrawnFacesInFrame, ASpurBecomesAChordWhenItReachesTheBoundary)
{
    m_model.Outline(MakeRectangle(m_at, 0, 0, 4, 2));
    m_model.Line(m_at(0, 0), m_at(1, 1));
    EXPECT_EQ(m_model.GetFaceClass(FindEdge(m_model, m_at(0, 0), m_at(1, 1))), nEdgeInsideFace);
    EXPECT_EQ(m_model.Count(nFaceType), 1u);
    m_model.Line(m_at(1, 1), m_at(4, 1));
    EXPECT_EQ(m_model.Count(nFaceType), 2u);
    EXPECT_EQ(m_model.GetFaceClass(FindEdge(m_model, m_at(0, 0), m_at(1, 1))), nEdgeManifold);
    ExpectAreas(m_model, {3.5, 4.5});
}

TEST_P(DrawnFacesInFrame, ALooseSketchWithinAFaceJoinsItWhenTied)
{
    m_model.Line(m_at(1, 1), m_at(2, 1));
    m_model.Line(m_at(2, 1), m_at(2, 1.5));
    m_model.Outline(MakeRectangle(m_at, 0, 0, 4, 2));
    EXPECT_EQ(m_model.GetFaceClass(FindEdge(m_model, m_at(1, 1), m_at(2, 1))), nEdgeFree);
    m_model.Line(m_at(0, 0), m_at(1, 1));
    EXPECT_EQ(m_model.GetFaceClass(FindEdge(m_model, m_at(2, 1), m_at(2, 1.5))), nEdgeInsideFace);
    ExpectAreas(m_model, {8});
}

TEST_P(DrawnFacesInFrame, AClosedSketchInAFaceIsAFaceAndAHole)
{
    for (const bool bInnerFirst : {false, true})
    {
        SCOPED_TRACE(bInnerFirst);
        const Polygon inner = MakeRectangle(m_at, 1, 1, 2, 3);
        std::vector<Polygon> aPolygons{MakeRectangle(m_at, 0, 0, 5, 5), MakeRectangle(m_at, 0.5, 0.5, 4, 4),
                                       bInnerFirst ? Reversed(inner) : inner};
        if (bInnerFirst)
            std::reverse(aPolygons.begin(), aPolygons.end());
        TestModel model;
        for (const Polygon& polygon : aPolygons)
            model.Outline(polygon);
        EXPECT_EQ(model.Count(nLoopType), 5u);
        ExpectAreas(model, {2, 10.25, 12.75});
    }
}

TEST_P(DrawnFacesInFrame, TheSharedEdgeDrawnLastMakesTwo)
{
    m_model.Outline({m_at(1, 0), m_at(0, 0), m_at(0, 1), m_at(1, 1), m_at(2, 1), m_at(2, 0)});
    EXPECT_EQ(m_model.Count(nFaceType), 1u);
    m_model.Line(m_at(1, 0), m_at(1, 1));
    EXPECT_EQ(m_model.GetCounts(), (ModelCounts{0, 0, 0, 2, 7, 6}));
    ExpectAreas(m_model, {1, 1});
}

TEST_P(DrawnFacesInFrame, TheEdgeThatTwoSquaresAtARightAngleLackMakesBoth)
{
    m_model.Lines({{m_at(0, 0), m_at(1, 0)}, {m_at(1, 0), m_at(1, 1)}, {m_at(1, 1), m_at(0, 1)}});
    m_model.Lines({{m_at(0, 0), m_at(0, 0, 1)}, {m_at(0, 0, 1), m_at(0, 1, 1)}, {m_at(0, 1, 1), m_at(0, 1)}});
    EXPECT_EQ(m_model.Count(nFaceType), 0u);
    m_model.Line(m_at(0, 0), m_at(0, 1));
    ExpectAreas(m_model, {1, 1});
}

TEST_P(DrawnFacesInFrame, AHoleThatTouchesTheBoundaryIsCutOffByABridge)
{
    m_model.Outline(MakeRectangle(m_at, 0, 0, 10, 4));
    // Two diamonds in a chain that touches the left side and one another; the last line ties it to the right side.
    m_model.Outline({m_at(0, 2), m_at(2, 1), m_at(4, 2), m_at(2, 3)});
    m_model.Outline({m_at(4, 2), m_at(6, 1), m_at(8, 2), m_at(6, 3)});
    EXPECT_EQ(m_model.Count(nFaceType), 3u);
    m_model.Line(m_at(8, 2), m_at(10, 2));
    ExpectAreas(m_model, {4, 4, 16, 16});
}

TEST_P(DrawnFacesInFrame, APolylineMeetsOnlyItself)
{
    for (int n = 0; n < 10; ++n)
        m_model.Outline(MakeRectangle(m_at, 2 * n, 0, 2 * n + 1, 1));
    const ModelCounts before = m_model.GetCounts();
    std::vector<Point3d> aZigzag;
    for (int n = 0; n <= 200; ++n)
        aZigzag.push_back(m_at(n * 0.1, n % 2 ? 2 : -1));
    EXPECT_EQ(m_model.Polyline(aZigzag, false), INVALID_ID);
    EXPECT_EQ(m_model.GetCounts(), (ModelCounts{0, 0, 0, before.nFaces, before.nEdges + 200, before.nVertices + 201}));
    EXPECT_EQ(m_model.GetArea(m_model.Polyline(MakeRectangle(m_at, 0, 0, 30, 1), true)) > 29.99, true);
    // A bow tie crosses itself: two faces, of which the first is told.
    const std::uint64_t nFace = m_model.Polyline({m_at(0, 0), m_at(2, 2), m_at(2, 0), m_at(0, 2)}, true);
    EXPECT_NEAR(m_model.GetArea(nFace), 1.0, 1e-7);
    EXPECT_EQ(m_model.Count(nFaceType), before.nFaces + 3);
    ExpectUndoRedoRestores(m_model);
}

TEST_P(DrawnFacesInFrame, ALineOverAPolylineMergesWhatCoincides)
{
    m_model.Outline(MakeRectangle(m_at, 0, 0, 2, 2));
    m_model.Polyline({m_at(0, 0), m_at(2, 0), m_at(2, 2)}, false);
    ExpectSound(m_model);
    EXPECT_EQ(m_model.Count(nVertexType), 7u);
    m_model.Line(m_at(0, 0), m_at(2, 0));
    m_model.Line(m_at(2, 0), m_at(2, 2));
    EXPECT_EQ(m_model.GetCounts(), (ModelCounts{0, 0, 0, 1, 4, 4}));
    ExpectAreas(m_model, {4});
}

TEST_P(DrawnFacesInFrame, ALineDrawnTwiceLeavesTheSpurThatItIs)
{
    m_model.Outline(MakeRectangle(m_at, 0, 0, 4, 4));
    m_model.Line(m_at(2, 0), m_at(2, 2));
    m_model.Polyline({m_at(2, 0), m_at(2, 2)}, false); // keeps to itself, with vertices of its own
    EXPECT_EQ(m_model.Count(nEdgeType), 7u);
    // Where a line starts, vertices become one, and so do edges between the same ends.
    m_model.Line(m_at(2, 0), m_at(2, -1));
    m_model.Line(m_at(2, 2), m_at(2, 3));
    EXPECT_EQ(m_model.Count(nEdgeType), 8u);
    std::vector<Edge*> aEdges;
    m_model.GetHistory().Get<Face>(m_model.GetIDs(nFaceType).front())->GetEdges(aEdges);
    EXPECT_EQ(aEdges.size(), 5u + 2); // the outline, and the spur that has grown
    ExpectUndoRedoRestores(m_model);
}

TEST(DrawnLines, HaveTheVertexOfOnePlaceOnce)
{
    TestModel model;
    const std::uint64_t nVertex = model.Vertex(Point3d(1, 2, 3));
    EXPECT_EQ(model.Vertex(Point3d(1, 2, 3 + 5e-13)), nVertex);
    model.Line(Point3d(1, 2, 3), Point3d(1, 2, 3 + 1e-12));
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 0, 0, 1}));
    model.Line(Point3d(0, 0, 0), Point3d(2, 4, 6)); // through the vertex
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 0, 2, 3}));
    model.Line(Point3d(0, 0, 0), Point3d(2, 4, 6));
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 0, 2, 3}));
    const std::uint64_t nMiddle = model.Vertex(Point3d(0.5, 1, 1.5));
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 0, 3, 4}));
    ExpectGood(APIConnectVertices(model.GetID(), nVertex, nMiddle));
    ExpectGood(APIConnectVertexAndPoint3d(model.GetID(), nVertex, Point3d(1, 2, 9)));
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 0, 4, 5}));
    const std::uint64_t nEdge = model.GetIDs(nEdgeType).front();
    ExpectRefused(model, Result::nBadInput, [&] { return APIConnectVertices(model.GetID(), nVertex, nEdge); });
    ExpectRefused(model, Result::nBadInput,
                  [&] { return APIConnectVertexAndPoint3d(model.GetID(), nEdge, Point3d()); });
    ExpectUndoRedoRestores(model);
}
} // namespace QRV
