#include "history/History.h"
#include "model/Face.h"
#include "support/TestModel.h"

#include <algorithm>
#include <array>

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

void ExpectAreas(const TestModel& model, const std::vector<double>& aExpected)
{
    std::vector<double> aAreas;
    for (const std::uint64_t nFace : model.GetIDs(nFaceType))
        aAreas.push_back(model.GetArea(nFace));
    std::sort(aAreas.begin(), aAreas.end());
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

class DrawnFacesInFrame : public testing::TestWithParam<Frame>
{
protected:
    const Frame m_at = GetParam();
    TestModel m_model;
};
INSTANTIATE_TEST_SUITE_P(AllFrames, DrawnFacesInFrame, testing::ValuesIn(GetSketchFrames()));

TEST_P(DrawnFacesInFrame, ALineDividesWhatItCloses)
{
    const auto box = [&](double u0, double v0, double u1, double v1) { return MakeRectangle(m_at, u0, v0, u1, v1); };
    struct Case
    {
        std::vector<Polygon> aOutlines; ///< a face each
        std::vector<Segment> aLines;
        std::vector<double> aAreas;
    };
    const Case aCases[] = {
        // Over the whole of a face.
        {{box(0, 0, 4, 2)}, {{m_at(1, -1), m_at(1, 3)}}, {2, 6}},
        // From a chain of two diamonds, which touches the left side, to the right side.
        {{box(0, 0, 10, 4),
          {m_at(0, 2), m_at(2, 1), m_at(4, 2), m_at(2, 3)},
          {m_at(4, 2), m_at(6, 1), m_at(8, 2), m_at(6, 3)}},
         {{m_at(8, 2), m_at(10, 2)}},
         {4, 4, 16, 16}},
        // From a hole, which a bridge ties to the outline, on to it.
        {{box(0, 0, 10, 10), box(4, 4, 6, 6)}, {{m_at(4, 4), m_at(0, 0)}, {m_at(6, 6), m_at(10, 10)}}, {4, 48, 48}},
        // Over the notch of a hole.
        {{box(0, 0, 10, 10), {m_at(4, 4), m_at(6, 4), m_at(6, 5), m_at(5, 5), m_at(5, 6), m_at(4, 6)}},
         {{m_at(6, 5), m_at(5, 6)}},
         {0.5, 3, 96.5}},
        // Between holes.
        {{box(0, 0, 10, 10), box(1, 4, 2, 5), box(3, 4, 4, 5), box(6, 4, 7, 5), box(7, 1, 9, 2), box(8, 4, 9, 5)},
         {{m_at(5, 0), m_at(5, 10)}},
         {1, 1, 1, 1, 2, 46, 48}},
    };
    for (const Case& test : aCases)
    {
        SCOPED_TRACE(&test - aCases);
        TestModel model;
        for (const Polygon& outline : test.aOutlines)
            model.Outline(outline);
        model.Lines({test.aLines.begin(), test.aLines.end() - 1});
        EXPECT_EQ(model.Count(nFaceType), test.aOutlines.size());
        model.Lines({test.aLines.back()});
        ExpectAreas(model, test.aAreas);
    }
}

TEST_P(DrawnFacesInFrame, TheEdgeThatTwoSquaresAtARightAngleLackMakesBoth)
{
    m_model.Lines({{m_at(0, 0), m_at(1, 0)}, {m_at(1, 0), m_at(1, 1)}, {m_at(1, 1), m_at(0, 1)}});
    m_model.Lines({{m_at(0, 0), m_at(0, 0, 1)}, {m_at(0, 0, 1), m_at(0, 1, 1)}, {m_at(0, 1, 1), m_at(0, 1)}});
    EXPECT_EQ(m_model.Count(nFaceType), 0u);
    m_model.Line(m_at(0, 0), m_at(0, 1));
    ExpectAreas(m_model, {1, 1});
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
    const Polygon inner = MakeRectangle(m_at, 1, 1, 2, 3);
    for (const Polygon& innermost : {inner, Reversed(inner)})
    {
        std::array<int, 3> aOrder{0, 1, 2};
        const Polygon aOutlines[] = {MakeRectangle(m_at, 0, 0, 5, 5), MakeRectangle(m_at, 0.5, 0.5, 4, 4), innermost};
        do
        {
            SCOPED_TRACE(testing::PrintToString(aOrder));
            TestModel model;
            for (const int n : aOrder)
                model.Outline(aOutlines[n]);
            EXPECT_EQ(model.Count(nLoopType), 5u);
            ExpectAreas(model, {2, 10.25, 12.75});
        } while (std::next_permutation(aOrder.begin(), aOrder.end()));
    }
}

TEST_P(DrawnFacesInFrame, AClosedSketchCloseToASideIsAHoleToo)
{
    for (const double dGap : {1e-4, 1e-5, 1e-6})
    {
        SCOPED_TRACE(dGap);
        TestModel model;
        model.Outline(MakeRectangle(m_at, 0, 0, 10, 10));
        model.Outline(MakeRectangle(m_at, dGap, 3, 3 + dGap, 6));
        ExpectAreas(model, {9, 91});
    }
}

TEST_P(DrawnFacesInFrame, LooseLinesDivideWhatIsDrawnRoundThem)
{
    const std::array<Point3d, 4> aCorners{m_at(7, 8), m_at(5, 8), m_at(5, 6), m_at(7, 6)};
    struct Case
    {
        Point3d tip; ///< of a V whose ends stand on a side of the rectangle
        std::vector<double> aAreas;
    };
    for (const Case& test : {Case{m_at(6.5, 7), {0.125, 3.875, 96}}, Case{m_at(7.5, 7), {0.125, 4, 95.875}}})
        for (std::size_t nStart = 0; nStart < 4; ++nStart)
            for (const bool bClockwise : {false, true})
            {
                SCOPED_TRACE(testing::Message() << "from corner " << nStart << (bClockwise ? ", clockwise" : ""));
                TestModel model;
                model.Outline(MakeRectangle(m_at, 0, 0, 10, 10));
                model.Lines({{m_at(7, 7), test.tip}, {test.tip, m_at(7, 6.5)}});
                Polygon rectangle;
                for (std::size_t n = 0; n < 4; ++n)
                    rectangle.push_back(aCorners[(nStart + (bClockwise ? 4 - n : n)) % 4]);
                model.Outline(rectangle);
                ExpectAreas(model, test.aAreas);
            }
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
    EXPECT_NEAR(m_model.GetArea(m_model.Polyline(MakeRectangle(m_at, 0, 0, 30, 1), true)), 30.0, 1e-7);
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
    ExpectUndoRedoRestores(model);
}
} // namespace
} // namespace QRV
