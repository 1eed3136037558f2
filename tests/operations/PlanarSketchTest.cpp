#include "support/Arrangement.h"
#include "support/SharedData.h"
#include "support/TestModel.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

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
        const auto number = [&] {
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

void Draw(TestModel& model, const Frame& at, const std::vector<PlanarSegment>& aSketch)
{
    for (const auto& [a, b] : aSketch)
        model.Line(at(a.x, a.y), at(b.x, b.y));
}

/// What is wrong with the model of a sketch; empty for nothing.
std::string FindFault(const std::vector<PlanarSegment>& aSketch, const Frame& at)
{
    const Arrangement expected = ComputeArrangement(aSketch, 1e-7);
    TestModel model;
    Draw(model, at, aSketch);
    std::ostringstream text;
    const ModelCounts counts = model.GetCounts();
    const ModelCounts expectedCounts{0, 0, 0, expected.nFaces, expected.nEdges, expected.nVertices};
    if (counts != expectedCounts)
        text << "has " << counts << " instead of " << expectedCounts << '\n';
    if (std::abs(model.GetArea() - expected.dArea) > 1e-7)
        text << "area " << model.GetArea() << " instead of " << expected.dArea << '\n';
    std::vector<Result> aFindings;
    APICheckHistoryValidityReadOnly(model.GetID(), aFindings);
    for (const Result& finding : aFindings)
        text << finding.GetErrorString() << '\n';
    return text.str();
}

/// Leaves out what does not matter to the fault, and tells what is left.
std::string Shrink(std::vector<PlanarSegment> aSketch, const Frame& at)
{
    for (std::size_t n = 0; n < aSketch.size();)
    {
        std::vector<PlanarSegment> aFewer = aSketch;
        aFewer.erase(aFewer.begin() + std::ptrdiff_t(n));
        if (FindFault(aFewer, at).empty())
            ++n;
        else
        {
            aSketch = aFewer;
            n = 0;
        }
    }
    std::ostringstream text;
    text.precision(17);
    text << FindFault(aSketch, at);
    for (const auto& [a, b] : aSketch)
        text << a.x << ' ' << a.y << "  " << b.x << ' ' << b.y << '\n';
    return text.str();
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
    for (std::uint64_t nSeed = 0; nSeed < 1500; ++nSeed)
    {
        std::mt19937_64 random(nSeed);
        const Frame at = nSeed % 3 == 0 ? GetFrames()[0] : MakeRandomFrame(random, nSeed % 3 == 1 ? 3.0 : 1e4);
        const std::vector<PlanarSegment> aSketch = MakeSketch(random, nSketchKind(nSeed / 3 % 3));
        const std::string strFault = FindFault(aSketch, at);
        ASSERT_EQ(strFault, "") << "seed " << nSeed << ", at least:\n" << Shrink(aSketch, at);
    }
}

TEST(PlanarSketch, MakesTheFacesOfDenseSketches)
{
    // Many short segments: islands arise, touch what is around them, and are joined to it once more elsewhere.
    for (std::uint64_t nSeed = 0; nSeed < 40; ++nSeed)
    {
        std::mt19937_64 random(nSeed);
        std::uniform_real_distribution<double> place(0, 100);
        std::uniform_real_distribution<double> turn(0, 6.28);
        std::vector<PlanarSegment> aSketch;
        while (aSketch.size() < 150)
        {
            const Point2d a(place(random), place(random));
            const double dTurn = turn(random);
            aSketch.emplace_back(a, Point2d(a.x + 25 * std::cos(dTurn), a.y + 25 * std::sin(dTurn)));
        }
        const Frame at = nSeed % 2 == 0 ? GetFrames()[0] : MakeRandomFrame(random, 3.0);
        const std::string strFault = FindFault(aSketch, at);
        ASSERT_EQ(strFault, "") << "seed " << nSeed << ", at least:\n" << Shrink(aSketch, at);
    }
}

TEST(PlanarSketch, ClosesThePocketBesideAFaceThatTouchesItsSurroundings)
{
    const std::vector<Point2d> aTriangle{{5, 0}, {7, 4}, {3, 4}};
    const std::vector<Point2d> aSquare{{0, 0}, {5, 0}, {10, 0}, {10, 10}, {0, 10}};
    std::vector<PlanarSegment> aSketch;
    for (const auto& outline : {aTriangle, aSquare})
        for (std::size_t n = 0; n < outline.size(); ++n)
            aSketch.emplace_back(outline[n], outline[(n + 1) % outline.size()]);
    aSketch.emplace_back(Point2d(0, 10), Point2d(3, 4));
    aSketch.emplace_back(Point2d(10, 10), Point2d(7, 4));
    for (const Frame& at : GetFrames())
        EXPECT_EQ(FindFault(aSketch, at), "") << at.pName;
}

TEST(PlanarSketch, UndoesAndRedoes)
{
    for (std::uint64_t nSeed = 0; nSeed < 45 && !::testing::Test::HasFailure(); ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        std::mt19937_64 random(nSeed);
        TestModel model;
        Draw(model, MakeRandomFrame(random, 10.0), MakeSketch(random, nSketchKind(nSeed % 3)));
        ExpectUndoRedoRestores(model);
    }
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
            // The figures take places within 1e-6 for one, and leave out the lone vertices that lines of no length make.
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
