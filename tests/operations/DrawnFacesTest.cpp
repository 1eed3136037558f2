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

Polygon MakeRectangle(const Frame& at, double u0, double v0, double u1, double v1)
{
    return {at(u0, v0), at(u1, v0), at(u1, v1), at(u0, v1)};
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
    ExpectSound(model);
    ExpectUndoRedoRestores(model);
}

nEdgeFaceClass GetClass(const TestModel& model, std::uint64_t nEdge)
{
    nEdgeFaceClass nClass = nEdgeFree;
    EXPECT_TRUE(APIGetEdgeFaceClassificationReadOnly(model.GetID(), nEdge, nClass).IsGood());
    return nClass;
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
} // namespace

TEST(DrawnFaces, ALineAcrossAFaceSplitsIt)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Outline(MakeRectangle(at, 0, 0, 4, 2));
        model.Line(at(1, -1), at(1, 3));
        EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 2, 9, 8}));
        ExpectAreas(model, {2, 6});
    }
}

TEST(DrawnFaces, ASpurBecomesAChordWhenItReachesTheBoundary)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Outline(MakeRectangle(at, 0, 0, 4, 2));
        model.Line(at(0, 0), at(1, 1));
        EXPECT_EQ(GetClass(model, FindEdge(model, at(0, 0), at(1, 1))), nEdgeInsideFace);
        EXPECT_EQ(model.Count(nFaceType), 1u);
        model.Line(at(1, 1), at(4, 1));
        EXPECT_EQ(model.Count(nFaceType), 2u);
        EXPECT_EQ(GetClass(model, FindEdge(model, at(0, 0), at(1, 1))), nEdgeManifold);
        ExpectAreas(model, {3.5, 4.5});
    }
}

TEST(DrawnFaces, ALooseSketchWithinAFaceJoinsItWhenTied)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Line(at(1, 1), at(2, 1));
        model.Line(at(2, 1), at(2, 1.5));
        model.Outline(MakeRectangle(at, 0, 0, 4, 2));
        EXPECT_EQ(GetClass(model, FindEdge(model, at(1, 1), at(2, 1))), nEdgeFree);
        model.Line(at(0, 0), at(1, 1));
        EXPECT_EQ(GetClass(model, FindEdge(model, at(2, 1), at(2, 1.5))), nEdgeInsideFace);
        ExpectAreas(model, {8});
    }
}

TEST(DrawnFaces, AClosedSketchInAFaceIsAFaceAndAHole)
{
    for (const Frame& at : GetSketchFrames())
        for (const bool bInnerFirst : {false, true})
        {
            SCOPED_TRACE(std::string(at.pName) + (bInnerFirst ? ", inner first" : ""));
            Polygon inner = MakeRectangle(at, 1, 1, 2, 3);
            if (bInnerFirst)
                std::reverse(inner.begin(), inner.end());
            const Polygon middle = MakeRectangle(at, 0.5, 0.5, 4, 4);
            const Polygon outer = MakeRectangle(at, 0, 0, 5, 5);
            std::vector<const Polygon*> aPolygons{&inner, &middle, &outer};
            if (!bInnerFirst)
                std::reverse(aPolygons.begin(), aPolygons.end());
            TestModel model;
            for (const Polygon* pPolygon : aPolygons)
                model.Outline(*pPolygon);
            EXPECT_EQ(model.Count(nLoopType), 5u);
            ExpectAreas(model, {2, 10.25, 12.75});
        }
}

TEST(DrawnFaces, TheSharedEdgeDrawnLastMakesTwo)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Lines({{at(1, 0), at(0, 0)},
                     {at(0, 0), at(0, 1)},
                     {at(0, 1), at(1, 1)},
                     {at(1, 1), at(2, 1)},
                     {at(2, 1), at(2, 0)}});
        model.Line(at(2, 0), at(1, 0));
        EXPECT_EQ(model.Count(nFaceType), 1u);
        model.Line(at(1, 0), at(1, 1));
        EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 2, 7, 6}));
        ExpectAreas(model, {1, 1});
    }
    // Two squares at a right angle: neither stands before the edge that both lack.
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Lines({{at(0, 0), at(1, 0)}, {at(1, 0), at(1, 1)}, {at(1, 1), at(0, 1)}});
        model.Lines({{at(0, 0), at(0, 0, 1)}, {at(0, 0, 1), at(0, 1, 1)}, {at(0, 1, 1), at(0, 1)}});
        EXPECT_EQ(model.Count(nFaceType), 0u);
        model.Line(at(0, 0), at(0, 1));
        ExpectAreas(model, {1, 1});
    }
}

TEST(DrawnFaces, AHoleThatTouchesTheBoundaryIsCutOffByABridge)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Outline(MakeRectangle(at, 0, 0, 10, 4));
        // Two diamonds in a chain that touches the left side and one another; the last line ties it to the right side.
        model.Outline({at(0, 2), at(2, 1), at(4, 2), at(2, 3)});
        model.Outline({at(4, 2), at(6, 1), at(8, 2), at(6, 3)});
        EXPECT_EQ(model.Count(nFaceType), 3u);
        model.Line(at(8, 2), at(10, 2));
        ExpectAreas(model, {4, 4, 16, 16});
    }
}

TEST(DrawnFaces, APolylineMeetsOnlyItself)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        for (int n = 0; n < 10; ++n)
            model.Outline(MakeRectangle(at, 2 * n, 0, 2 * n + 1, 1));
        const ModelCounts before = model.GetCounts();
        std::vector<Point3d> aZigzag;
        for (int n = 0; n <= 200; ++n)
            aZigzag.push_back(at(n * 0.1, n % 2 ? 2 : -1));
        EXPECT_EQ(model.Polyline(aZigzag, false), INVALID_ID);
        EXPECT_EQ(model.GetCounts(),
                  (ModelCounts{0, 0, 0, before.nFaces, before.nEdges + 200, before.nVertices + 201}));
        EXPECT_EQ(model.GetArea(model.Polyline(MakeRectangle(at, 0, 0, 30, 1), true)) > 29.99, true);
        // A bow tie crosses itself: two faces, of which the first is told.
        const std::uint64_t nFace = model.Polyline({at(0, 0), at(2, 2), at(2, 0), at(0, 2)}, true);
        EXPECT_NEAR(model.GetArea(nFace), 1.0, 1e-7);
        EXPECT_EQ(model.Count(nFaceType), before.nFaces + 3);
        ExpectSound(model);
        ExpectUndoRedoRestores(model);
    }
}

TEST(DrawnFaces, ALineOverAPolylineMergesWhatCoincides)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Outline(MakeRectangle(at, 0, 0, 2, 2));
        model.Polyline({at(0, 0), at(2, 0), at(2, 2)}, false);
        ExpectSound(model);
        EXPECT_EQ(model.Count(nVertexType), 7u);
        model.Line(at(0, 0), at(2, 0));
        model.Line(at(2, 0), at(2, 2));
        EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 1, 4, 4}));
        ExpectAreas(model, {4});
    }
}

TEST(DrawnFaces, ALineDrawnTwiceLeavesTheSpurThatItIs)
{
    for (const Frame& at : GetSketchFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Outline(MakeRectangle(at, 0, 0, 4, 4));
        model.Line(at(2, 0), at(2, 2));
        model.Polyline({at(2, 0), at(2, 2)}, false); // keeps to itself, with vertices of its own
        EXPECT_EQ(model.Count(nEdgeType), 7u);
        // Where a line starts, vertices become one, and so do edges between the same ends.
        model.Line(at(2, 0), at(2, -1));
        model.Line(at(2, 2), at(2, 3));
        EXPECT_EQ(model.Count(nEdgeType), 8u);
        std::vector<Edge*> aEdges;
        model.GetHistory().Get<Face>(model.GetIDs(nFaceType).front())->GetEdges(aEdges);
        EXPECT_EQ(aEdges.size(), 5u + 2); // the outline, and the spur that has grown
        ExpectSound(model);
        ExpectUndoRedoRestores(model);
    }
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
    EXPECT_TRUE(APIConnectVertices(model.GetID(), nVertex, nMiddle).IsGood());
    EXPECT_TRUE(APIConnectVertexAndPoint3d(model.GetID(), nVertex, Point3d(1, 2, 9)).IsGood());
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 0, 4, 5}));
    const std::uint64_t nEdge = model.GetIDs(nEdgeType).front();
    ExpectRefused(model, Result::nBadInput, [&] { return APIConnectVertices(model.GetID(), nVertex, nEdge); });
    ExpectRefused(model, Result::nBadInput,
                  [&] { return APIConnectVertexAndPoint3d(model.GetID(), nEdge, Point3d()); });
    ExpectSound(model);
    ExpectUndoRedoRestores(model);
}
} // namespace QRV
