#include "history/History.h"
#include "model/Face.h"
#include "support/Arrangement.h"
#include "support/SharedData.h"
#include "support/TestModel.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>

namespace QRV
{
namespace
{
enum class nSketchKind
{
    nLoose,    ///< anywhere, so that segments only cross
    nGridded,  ///< between points of a small grid: ends meet, lines run on one another, many cross in one point
    nTriangles ///< closed outlines, some inside others
};

std::vector<PlanarSegment> MakeSketch(std::mt19937_64& random, nSketchKind nKind)
{
    const auto nSegments = 3 + random() % 25;
    const auto place = [&]
    {
        const auto number = [&]
        {
            return nKind == nSketchKind::nGridded ? double(random() % 6)
                                                  : std::uniform_real_distribution<double>(0, 10)(random);
        };
        const double x = number();
        return Point2d(x, number());
    };
    std::vector<PlanarSegment> aSketch;
    while (aSketch.size() < nSegments)
    {
        const Point2d a = place();
        const Point2d b = place();
        if (nKind == nSketchKind::nTriangles)
        {
            const Point2d c = place();
            aSketch.insert(aSketch.end(), {{a, b}, {b, c}, {c, a}});
        }
        else
            aSketch.emplace_back(a, b);
    }
    if (nKind == nSketchKind::nTriangles)
        std::shuffle(aSketch.begin(), aSketch.end(), random);
    return aSketch;
}

/// Segments of one length in a square, turned at random.
std::vector<PlanarSegment> MakeDenseSketch(std::mt19937_64& random, std::size_t nSegments, double dSquare,
                                           double dLength)
{
    std::uniform_real_distribution<double> place(0, dSquare);
    std::uniform_real_distribution<double> turn(0, 6.28);
    std::vector<PlanarSegment> aSketch;
    while (aSketch.size() < nSegments)
    {
        const Point2d a(place(random), place(random));
        const double dTurn = turn(random);
        aSketch.emplace_back(a, Point2d(a.x + dLength * std::cos(dTurn), a.y + dLength * std::sin(dTurn)));
    }
    return aSketch;
}

void AddOutline(std::vector<PlanarSegment>& aSketch, const std::vector<Point2d>& aCorners)
{
    for (std::size_t n = 0; n < aCorners.size(); ++n)
        aSketch.emplace_back(aCorners[n], aCorners[(n + 1) % aCorners.size()]);
}

void Draw(TestModel& model, const Frame& at, const std::vector<PlanarSegment>& aSketch)
{
    for (const auto& [a, b] : aSketch)
        model.Line(at(a.x, a.y), at(b.x, b.y));
}

/// Draws the sketch, and finds in the model what the lines divide their plane into.
void ExpectDivides(const std::vector<PlanarSegment>& aSketch, const Frame& at, bool bUndoes = false)
{
    SCOPED_TRACE(at.pName);
    const Arrangement expected = ComputeArrangement(aSketch, 1e-7);
    TestModel model;
    Draw(model, at, aSketch);
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, expected.nFaces, expected.nEdges, expected.nVertices}));
    EXPECT_NEAR(model.GetArea(), expected.dArea, 1e-7);
    ExpectSound(model);
    if (bUndoes)
        ExpectUndoRedoRestores(model);
}

struct Plan
{
    const char* pName;
    std::size_t nVertices;
    std::size_t nEdges;
    std::size_t nFaces;
};

std::vector<PlanarSegment> LoadPlan(const std::filesystem::path& path)
{
    std::vector<PlanarSegment> aSegments;
    std::ifstream file(path);
    const nlohmann::json plan = nlohmann::json::parse(file);
    for (const auto& segment : plan["segments"])
        aSegments.emplace_back(Point2d(segment[0], segment[1]), Point2d(segment[2], segment[3]));
    return aSegments;
}
} // namespace

TEST(PlanarSketch, MakesTheFacesOfItsArrangement)
{
    for (std::uint64_t nSeed = 0; nSeed < 1500 && !testing::Test::HasFailure(); ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        std::mt19937_64 random(nSeed);
        const Frame at = nSeed % 3 == 0 ? GetFrames()[0] : MakeRandomFrame(random, nSeed % 3 == 1 ? 3.0 : 1e4);
        ExpectDivides(MakeSketch(random, nSketchKind(nSeed / 3 % 3)), at, nSeed % 32 == 1);
    }
}

TEST(PlanarSketch, MakesTheFacesOfDenseSketches)
{
    // Many short segments: islands arise, touch what is around them, and are joined to it once more elsewhere.
    for (std::uint64_t nSeed = 0; nSeed < 40 && !testing::Test::HasFailure(); ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        std::mt19937_64 random(nSeed);
        const std::vector<PlanarSegment> aSketch = MakeDenseSketch(random, 150, 100, 25);
        ExpectDivides(aSketch, nSeed % 2 == 0 ? GetFrames()[0] : MakeRandomFrame(random, 3.0));
    }
}

TEST(PlanarSketch, DividesTheWholeOfALargeSketch)
{
    // Clusters grow together here: large outlines close around islands of many faces, and most lines fall into large
    // faces. Faces below the shortest chord may be missing, so that only their places tell.
    for (std::uint64_t nSeed = 0; nSeed < 3; ++nSeed)
    {
        std::mt19937_64 random(nSeed);
        const std::vector<PlanarSegment> aSketch = MakeDenseSketch(random, 1500, 1, 0.08);
        const Arrangement expected = ComputeArrangement(aSketch, 1e-10);
        TestModel model;
        Draw(model, nSeed == 2 ? MakeRandomFrame(random, 10.0) : GetFrames()[0], aSketch);
        EXPECT_EQ(model.Count(nVertexType), expected.nVertices) << nSeed;
        EXPECT_EQ(model.Count(nEdgeType), expected.nEdges) << nSeed;
        EXPECT_EQ(model.Count(nBodyType), 0u) << nSeed;
        EXPECT_NEAR(model.GetArea(), expected.dArea, 1e-8) << nSeed;
        ExpectSound(model);
    }
}

TEST(PlanarSketch, CutsOutIslandsOfFacesThatShareEdgesOrCorners)
{
    std::vector<PlanarSegment> aPinwheel; // four wings round a square that shares an edge with each
    const Point2d aTips[] = {{5, 1}, {9, 5}, {5, 9}, {1, 5}};
    const Point2d aCorners[] = {{4, 4}, {6, 4}, {6, 6}, {4, 6}, {4, 4}};
    for (std::size_t n = 0; n < 4; ++n)
        AddOutline(aPinwheel, {aCorners[n], aTips[n], aCorners[n + 1]});
    std::vector<PlanarSegment> aInscribed; // its corners on the outline that closes around it
    AddOutline(aInscribed, {{5, 0}, {10, 10}, {0, 10}});
    std::vector<PlanarSegment> aPockets; // between a triangle that touches the outline and lines on to its corners
    AddOutline(aPockets, {{5, 0}, {7, 4}, {3, 4}});
    aPockets.insert(aPockets.end(), {{{0, 10}, {3, 4}}, {{10, 10}, {7, 4}}});
    std::vector<PlanarSegment> aNested; // an island in a lake of an island
    for (const double d : {1.0, 2.0, 4.0})
        AddOutline(aNested, {{d, d}, {10 - d, d}, {10 - d, 10 - d}, {d, 10 - d}});
    aNested.insert(aNested.end(), {{{1, 1}, {2, 2}}, {{4, 4}, {3, 3}}});
    const std::vector<Point2d> aTouching{{0, 0}, {5, 0}, {10, 0}, {10, 10}, {0, 10}};
    const std::vector<Point2d> aApart{{-1, -1}, {11, -1}, {11, 11}, {-1, 11}};
    for (const auto& [aIsland, aAround] :
         {std::pair(aPinwheel, aApart), {aInscribed, aTouching}, {aPockets, aTouching}, {aNested, aApart}})
    {
        std::vector<PlanarSegment> aSketch = aIsland;
        AddOutline(aSketch, aAround);
        for (const Frame& at : GetFrames())
            ExpectDivides(aSketch, at);
        std::reverse(aSketch.begin(), aSketch.end()); // the outline first
        ExpectDivides(aSketch, GetFrames()[0]);
    }
}

TEST(PlanarSketch, FillsAnEmptyPlaceInItsMiddleAnew)
{
    // What is known of the outside of the sketch must not be taken for true of a place that lost its face.
    TestModel model;
    const Frame at = GetFrames()[0];
    for (int n = 0; n <= 3; ++n)
    {
        model.Line(at(0, n), at(3, n));
        model.Line(at(n, 0), at(n, 3));
    }
    ASSERT_EQ(model.Count(nFaceType), 9u);
    InStep(model.GetID(),
           [&](History& history)
           {
               for (Face* pFace : GetAll<Face>(history))
                   if (pFace->ContainsPoint(at(1.5, 1.5), false))
                       pFace->Delete(false, true);
           });
    ASSERT_EQ(model.Count(nFaceType), 8u);
    model.Line(at(3, 0), at(4, 0));
    model.Line(at(4, 0), at(3, 1)); // a corner outside
    EXPECT_EQ(model.Count(nFaceType), 9u);
    model.Line(at(1, 1), at(2, 2)); // across the empty place: both halves close
    EXPECT_EQ(model.Count(nFaceType), 11u);
    EXPECT_NEAR(model.GetArea(), 9.5, 1e-12);
    ExpectSound(model);
}

TEST(PlanarSketch, MakesTheRoomsOfRealPlans)
{
    std::mt19937_64 random(7);
    std::vector<Frame> aFrames{GetFrames()[0]};
    for (const double dDistance : {100.0, 100.0, 1e4, 1e4})
        aFrames.push_back(MakeRandomFrame(random, dDistance));
    for (const Plan& plan :
         {Plan{"plans/house_walls.json", 226, 200, 16}, Plan{"plans/house_full.json", 800, 890, 116}})
    {
        const auto path = FindSharedFile(plan.pName);
        if (!path)
            GTEST_SKIP() << plan.pName << " is not here";
        SCOPED_TRACE(plan.pName);
        const std::vector<PlanarSegment> aSegments = LoadPlan(*path);
        const Arrangement arrangement = ComputeArrangement(aSegments, 1e-10);
        for (const Frame& at : aFrames)
        {
            SCOPED_TRACE(&at - aFrames.data());
            TestModel model;
            Draw(model, at, aSegments);
            EXPECT_EQ(model.Count(nFaceType), plan.nFaces);
            // The figures take places within 1e-6 for one, and leave out the lone vertices that lines of no length
            // make.
            EXPECT_NEAR(double(arrangement.nEdges), double(plan.nEdges), 2.0);
            EXPECT_NEAR(double(arrangement.nVertices), double(plan.nVertices), 4.0);
            EXPECT_EQ(model.Count(nEdgeType), arrangement.nEdges);
            EXPECT_EQ(model.Count(nVertexType), arrangement.nVertices);
            EXPECT_NEAR(model.GetArea(), arrangement.dArea, 1e-9);
            ExpectSound(model);
        }
    }
}
} // namespace QRV
