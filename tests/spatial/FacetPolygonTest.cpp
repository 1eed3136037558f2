#include "spatial/FacetPolygon.h"
#include "support/PolygonModel.h"
#include "support/SharedData.h"

#include "geometry/Trigonometry.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace QRV
{
namespace
{
using Ring = std::vector<std::pair<double, double>>;

double GetSignedArea(const Ring& ring)
{
    double dArea = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i)
    {
        const auto& [x0, y0] = ring[i];
        const auto& [x1, y1] = ring[(i + 1) % ring.size()];
        dArea += (x0 * y1 - x1 * y0) / 2.0;
    }
    return dArea;
}

Ring Reversed(Ring ring)
{
    std::reverse(ring.begin(), ring.end());
    return ring;
}

/// A square around a point, clockwise as a hole runs.
Ring SquareHole(double x, double y, double dHalfSide)
{
    const double d = dHalfSide;
    return {{x - d, y - d}, {x - d, y + d}, {x + d, y + d}, {x + d, y - d}};
}

/// A polygon whose corners at one place are one vertex, the outer ring counter-clockwise and the holes clockwise.
class IndexedPolygon
{
public:
    explicit IndexedPolygon(std::vector<Ring> aRings, const Frame& frame = GetFrames().front())
        : m_aRings(std::move(aRings))
    {
        std::map<std::pair<double, double>, std::uint32_t> vertices;
        for (const Ring& ring : m_aRings)
        {
            for (const auto& place : ring)
            {
                const auto [it, bNew] = vertices.try_emplace(place, static_cast<std::uint32_t>(m_aPlaces.size()));
                if (bNew)
                    m_aPlaces.push_back(place);
                m_aVertices.push_back(it->second);
            }
            m_aLoopEnds.push_back(static_cast<std::uint32_t>(m_aVertices.size()));
        }
        for (const auto& [u, v] : m_aPlaces)
            m_aPoints.push_back(frame(u, v));
        m_plane = Plane(frame.origin, frame.z);
    }

    bool Triangulate(std::vector<std::uint32_t>& aTriangles) const
    {
        std::vector<FacetCorner> aCorners;
        for (const std::uint32_t nVertex : m_aVertices)
            aCorners.push_back({&m_aPoints[nVertex], nVertex});
        return TriangulateLoops(aCorners, m_aLoopEnds, m_plane, aTriangles);
    }

    double GetArea() const
    {
        return std::accumulate(m_aRings.begin(), m_aRings.end(), 0.0,
                               [](double d, const Ring& ring) { return d + GetSignedArea(ring); });
    }

    std::size_t GetCornerCount() const { return m_aVertices.size(); }
    std::size_t GetHoleCount() const { return m_aRings.size() - 1; }

    double GetTriangleArea(const std::uint32_t* pTriangle) const
    {
        const Point3d& a = m_aPoints[pTriangle[0]];
        return ((m_aPoints[pTriangle[1]] - a) * (m_aPoints[pTriangle[2]] - a)) % m_plane.normal / 2.0;
    }

    /// How often each way from vertex to vertex is taken in one direction more than in the other.
    using Ways = std::map<std::pair<std::uint32_t, std::uint32_t>, int>;

    Ways GetBoundary() const { return GetBoundary(m_aVertices, m_aLoopEnds); }

    static Ways GetBoundary(const std::vector<std::uint32_t>& aTriangles)
    {
        std::vector<std::uint32_t> aEnds(aTriangles.size() / 3);
        for (std::uint32_t n = 0; n < aEnds.size(); ++n)
            aEnds[n] = 3 * n + 3;
        return GetBoundary(aTriangles, aEnds);
    }

    /// The triangles by their places, each from its least corner, sorted.
    std::vector<Ring> GetPlaces(const std::vector<std::uint32_t>& aTriangles) const
    {
        std::vector<Ring> aPlaces;
        for (std::size_t i = 0; i < aTriangles.size(); i += 3)
        {
            Ring ring{m_aPlaces[aTriangles[i]], m_aPlaces[aTriangles[i + 1]], m_aPlaces[aTriangles[i + 2]]};
            std::rotate(ring.begin(), std::min_element(ring.begin(), ring.end()), ring.end());
            aPlaces.push_back(ring);
        }
        std::sort(aPlaces.begin(), aPlaces.end());
        return aPlaces;
    }

private:
    static Ways GetBoundary(const std::vector<std::uint32_t>& aVertices, const std::vector<std::uint32_t>& aLoopEnds)
    {
        Ways ways;
        std::uint32_t nStart = 0;
        for (const std::uint32_t nEnd : aLoopEnds)
        {
            for (std::uint32_t n = nStart; n < nEnd; ++n)
            {
                const auto [nLow, nHigh] = std::minmax(aVertices[n], aVertices[n + 1 < nEnd ? n + 1 : nStart]);
                ways[{nLow, nHigh}] += aVertices[n] == nLow ? 1 : -1;
            }
            nStart = nEnd;
        }
        std::erase_if(ways, [](const auto& way) { return way.second == 0; });
        return ways;
    }

    std::vector<Ring> m_aRings;
    Ring m_aPlaces;
    std::vector<Point3d> m_aPoints;
    std::vector<std::uint32_t> m_aVertices; // by corner
    std::vector<std::uint32_t> m_aLoopEnds;
    Plane m_plane;
};

/// Triangles that are all wound like the polygon, and whose sides cancel out but for the polygon's own, cover it once.
/// @return the triangles
std::vector<std::uint32_t> ExpectCovered(const IndexedPolygon& polygon, double dAreaTolerance)
{
    std::vector<std::uint32_t> aTriangles;
    EXPECT_TRUE(polygon.Triangulate(aTriangles));
    double dArea = 0.0;
    for (std::size_t i = 0; i < aTriangles.size(); i += 3)
    {
        const double d = polygon.GetTriangleArea(&aTriangles[i]);
        EXPECT_GE(d, -dAreaTolerance) << "triangle " << i / 3;
        dArea += d;
    }
    const double dWanted = polygon.GetArea();
    EXPECT_NEAR(dArea, dWanted, std::max(1.0, dWanted) * dAreaTolerance);
    EXPECT_TRUE(IndexedPolygon::GetBoundary(aTriangles) == polygon.GetBoundary());
    return aTriangles;
}

/// Corners around the origin at even angles.
Ring MakeStar(const std::vector<double>& aRadii)
{
    Ring ring;
    for (std::size_t i = 0; i < aRadii.size(); ++i)
    {
        const double dAngle = 2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(aRadii.size());
        ring.emplace_back(aRadii[i] * Cos(dAngle), aRadii[i] * Sin(dAngle));
    }
    return ring;
}

/// A star of random radii with square holes on a grid inside its least radius.
std::vector<Ring> MakeRandomPolygon(std::mt19937& random)
{
    std::uniform_int_distribution<std::size_t> corners(4, 300);
    std::uniform_real_distribution<double> radius(60.0, 100.0);
    std::vector<double> aRadii(corners(random));
    for (double& d : aRadii)
        d = radius(random);
    std::vector<Ring> aRings{MakeStar(aRadii)};

    std::bernoulli_distribution taken(0.3);
    std::uniform_real_distribution<double> halfSide(0.5, 4.0);
    for (int i = -2; i <= 2; ++i)
        for (int k = -2; k <= 2; ++k)
            if (taken(random) && aRadii.size() > 6)
                aRings.push_back(SquareHole(i * 12.0, k * 12.0, halfSide(random)));
    std::shuffle(aRings.begin() + 1, aRings.end(), random);
    return aRings;
}

/// Rectangles on a grid that don't overlap, but share corners, sides and parts of sides with each other and with the
/// square around them.
std::vector<Ring> MakeTouchingRectangles(std::mt19937& random)
{
    constexpr int kSize = 12;
    std::vector<Ring> aRings{{{0, 0}, {kSize, 0}, {kSize, kSize}, {0, kSize}}};
    bool aTaken[kSize][kSize] = {};
    for (int nTry = 0; nTry < 20; ++nTry)
    {
        const auto number = [&](int nBelow) { return static_cast<int>(random() % static_cast<unsigned>(nBelow)); };
        const int x0 = number(kSize), y0 = number(kSize);
        const int x1 = std::min(kSize, x0 + 1 + number(4)), y1 = std::min(kSize, y0 + 1 + number(4));
        bool bFree = true;
        for (int x = x0; x < x1; ++x)
            bFree = bFree && std::none_of(aTaken[x] + y0, aTaken[x] + y1, [](bool b) { return b; });
        if (!bFree)
            continue;
        for (int x = x0; x < x1; ++x)
            std::fill(aTaken[x] + y0, aTaken[x] + y1, true);
        const double l = x0, b = y0, r = x1, t = y1;
        aRings.push_back({{l, b}, {l, t}, {r, t}, {r, b}});
    }
    return aRings;
}
} // namespace

TEST(TriangulateLoops, FansFromTheFirstCornerOrTheOnlyReflexOne)
{
    const std::pair<Ring, std::vector<std::uint32_t>> aCases[] = {
        {{{0, 0}, {4, 0}, {0, 3}}, {0, 1, 2}},
        {MakeStar({5, 5, 5, 5, 5}), {0, 1, 2, 0, 2, 3, 0, 3, 4}},
        {{{0, 0}, {4, -3}, {1, 0}, {4, 3}}, {2, 3, 0, 2, 0, 1}},
        {{{0, 0}, {2, 0}, {2, 1}, {2, 0}, {4, 0}, {4, 4}, {0, 4}}, {2, 1, 3, 2, 3, 4, 2, 4, 5, 2, 5, 0, 2, 0, 1}},
    };
    for (const Frame& frame : GetFramesAndFar())
        for (const auto& [ring, aExpected] : aCases)
        {
            SCOPED_TRACE(frame.pName);
            EXPECT_EQ(ExpectCovered(IndexedPolygon({ring}, frame), 1e-9), aExpected);
        }
}

TEST(TriangulateLoops, BridgesHolesInTheOrderOfTheFrame)
{
    const Ring square{{0, 0}, {20, 0}, {20, 20}, {0, 20}};
    const Ring left = SquareHole(4, 10, 1);
    const Ring right = SquareHole(8, 10, 2);
    const Ring above = SquareHole(4, 15, 1);
    const IndexedPolygon inOrder({square, left, above, right});
    const IndexedPolygon outOfOrder({square, right, above, left});
    EXPECT_EQ(inOrder.GetPlaces(ExpectCovered(inOrder, 1e-12)), outOfOrder.GetPlaces(ExpectCovered(outOfOrder, 1e-12)));
}

TEST(TriangulateLoops, CoversLoopsThatTouch)
{
    const Ring square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    const Ring atCorner{{0, 0}, {2, 4}, {4, 2}};
    const std::vector<std::vector<Ring>> aPolygons{
        {square, atCorner, {{4, 2}, {6, 5}, {7, 3}}, {{10, 10}, {8, 5}, {5, 8}}}, // corners on corners
        {square, {{10, 10}, {8, 5}, {5, 8}}},
        {square, {{0, 5}, {4, 7}, {4, 3}}},                                           // corner on a side
        {square, {{3, 0}, {3, 4}, {7, 4}, {7, 0}}},                                   // side along a side
        {square, {{0, 0}, {4, 6}, {10, 10}, {6, 4}}},                                 // cut in two
        {square, {{2, 2}, {2, 5}, {5, 5}, {5, 2}}, {{5, 3}, {5, 4}, {8, 4}, {8, 3}}}, // along another hole
        {square,
         {{1, 1}, {1, 9}, {2, 9}, {2, 1}},
         {{2, 8}, {2, 9}, {9, 9}, {9, 8}}, // a ring of holes
         {{8, 1}, {8, 8}, {9, 8}, {9, 1}},
         {{2, 1}, {2, 2}, {8, 2}, {8, 1}}},
        {{{0, 0}, {5, 0}, {5, 4}, {5, 0}, {10, 0}, {10, 10}, {0, 10}}, SquareHole(5, 5, 1)}, // spur up to a hole
        {{{0, 0}, {10, 0}, {5, 5}, {10, 10}, {0, 10}, {5, 5}}},                              // pinched
        {{{0, 0}, {3, 0}, {3, 1}, {3, 0}, {6, 0}, {6, 2}, {2, 2}, {2, 6}, {0, 6}}},          // an L with a spur
        {{{0, 0}, {2, 0}, {2, 1}, {3, 1}, {2, 1}, {2, 0}, {4, 0}, {4, 4}, {2, 4}, {2, 3}, {2, 4}, {0, 4}}}, // two spurs
        {{{0, 0}, {10, 0}, {10, 10}, {7, 10}, {5, 0}, {3, 10}, {0, 10}}}}; // corner on own side
    for (const Frame& frame : GetFramesAndFar())
        for (const std::vector<Ring>& aRings : aPolygons)
        {
            SCOPED_TRACE(testing::Message() << frame.pName << ", polygon " << &aRings - aPolygons.data());
            ExpectCovered(IndexedPolygon(aRings, frame), 1e-8);
        }
}

TEST(TriangulateLoops, CoversAroundHolesThatShareSidesInAnyFrame)
{
    for (unsigned nSeed = 1; nSeed <= 150; ++nSeed)
    {
        std::mt19937 random(nSeed);
        const std::vector<Ring> aRings = MakeTouchingRectangles(random);
        for (const Frame& frame : GetFramesAndFar())
        {
            SCOPED_TRACE(testing::Message() << "seed " << nSeed << ", " << frame.pName);
            ExpectCovered(IndexedPolygon(aRings, frame), 1e-8);
        }
    }
}

TEST(TriangulateLoops, GivesNothingForLessThanAPolygonAndWhereItFails)
{
    std::vector<std::uint32_t> aTriangles{7, 8, 9};
    EXPECT_TRUE(IndexedPolygon({{{0, 0}, {1, 0}}}).Triangulate(aTriangles));
    EXPECT_TRUE(TriangulateLoops({}, {}, Plane(), aTriangles));
    EXPECT_FALSE(IndexedPolygon({Reversed(MakeStar({5, 3, 5, 3, 5, 3}))}).Triangulate(aTriangles));
    EXPECT_EQ(aTriangles, (std::vector<std::uint32_t>{7, 8, 9}));
    EXPECT_EQ(ExpectCovered(IndexedPolygon({{{0, 0}, {4, 0}, {4, 4}, {0, 4}}, {}, {}}), 1e-12).size(), 3u * 2);
}

TEST(TriangulateLoops, CoversLoopsWithCornersInLine)
{
    Ring comb{{0, 0}};
    for (int i = 0; i < 100; ++i)
    {
        const double x = 2.0 * i;
        comb.insert(comb.end(), {{x + 1, 0}, {x + 1, 3}, {x + 2, 3}, {x + 2, 0}});
    }
    comb.insert(comb.end(), {{200, -1}, {100, -1}, {50, -1}, {0, -1}});
    for (const Frame& frame : GetFramesAndFar())
    {
        SCOPED_TRACE(frame.pName);
        const IndexedPolygon polygon({Reversed(comb)}, frame);
        EXPECT_EQ(ExpectCovered(polygon, 1e-6).size(), 3 * (polygon.GetCornerCount() - 2));
    }
}

TEST(TriangulateLoops, CoversRandomPolygonsWithHolesInAnyFrame)
{
    for (unsigned nSeed = 1; nSeed <= 60; ++nSeed)
    {
        std::mt19937 random(nSeed);
        const std::vector<Ring> aRings = MakeRandomPolygon(random);
        for (const Frame& frame : GetFramesAndFar())
        {
            SCOPED_TRACE(testing::Message() << "seed " << nSeed << ", " << frame.pName);
            const IndexedPolygon polygon(aRings, frame);
            EXPECT_EQ(ExpectCovered(polygon, 1e-6).size(),
                      3 * (polygon.GetCornerCount() + 2 * polygon.GetHoleCount() - 2));
        }
    }
}

TEST(TriangulateLoops, CoversHardPolygons)
{
    const auto path = FindSharedFile("footprints/hard_polygons.json");
    if (!path)
        GTEST_SKIP() << "the footprints are not there";
    std::ifstream file(*path);
    const nlohmann::json data = nlohmann::json::parse(file);
    for (const nlohmann::json& footprint : data["footprints"])
    {
        SCOPED_TRACE(footprint["id"].dump());
        std::vector<Ring> aRings;
        const auto addRing = [&](const nlohmann::json& places)
        {
            Ring ring;
            for (const nlohmann::json& place : places)
                ring.emplace_back(double(place[0]), double(place[1]));
            ring.erase(std::unique(ring.begin(), ring.end()), ring.end());
            while (ring.size() > 1 && ring.front() == ring.back())
                ring.pop_back();
            const bool bRunsWell = (GetSignedArea(ring) > 0.0) == aRings.empty();
            aRings.push_back(bRunsWell ? ring : Reversed(ring));
        };
        addRing(footprint["outer"]);
        for (const nlohmann::json& hole : footprint["holes"])
            if (hole.size() > 2) // a point that is to be a corner of triangles is no hole
                addRing(hole);
        const IndexedPolygon polygon(aRings);
        const double dArea = footprint["area"];
        EXPECT_NEAR(polygon.GetArea(), dArea, 1e-12 * dArea);
        ExpectCovered(polygon, 1e-12);
    }
}

TEST(TriangulateLoops, CoversALargeStarWithManyHoles)
{
    std::vector<double> aRadii(10000, 100.0);
    for (std::size_t i = 0; i < aRadii.size(); i += 2)
        aRadii[i] = 80.0;
    std::vector<Ring> aRings{MakeStar(aRadii)};
    for (int i = 0; i < 20; ++i)
        for (int k = 0; k < 20; ++k)
            aRings.push_back(SquareHole(i * 5.0 - 47.5, k * 5.0 - 47.5, 1.0));
    EXPECT_EQ(ExpectCovered(IndexedPolygon(aRings), 1e-9).size(), 3u * (11600 + 2 * 400 - 2));
}
} // namespace QRV
