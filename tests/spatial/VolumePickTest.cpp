#include "spatial/RayFire.h"
#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <algorithm>
#include <numbers>
#include <random>

namespace QRV
{
namespace
{
/// The planes of a box in a frame, its inside on their negative sides.
std::vector<Plane> MakeVolume(const Frame& at, const Point3d& lower, const Point3d& upper)
{
    return {Plane(at(lower.x, 0, 0), -at.x), Plane(at(upper.x, 0, 0), at.x),  Plane(at(0, lower.y, 0), -at.y),
            Plane(at(0, upper.y, 0), at.y),  Plane(at(0, 0, lower.z), -at.z), Plane(at(0, 0, upper.z), at.z)};
}

/// The planes through an eye and the sides of a small window before it, as a viewer selects.
std::vector<Plane> MakeFrustum(const Frame& at, double dHalfAngle)
{
    const double c = std::cos(dHalfAngle);
    const double s = std::sin(dHalfAngle);
    return {Plane(at.origin, Vector3d(at.x * c - at.z * s)), Plane(at.origin, Vector3d(at.x * -c - at.z * s)),
            Plane(at.origin, Vector3d(at.y * c - at.z * s)), Plane(at.origin, Vector3d(at.y * -c - at.z * s))};
}

/// What of a convex polygon, a segment or a point lies within: nothing, when it is empty.
Polygon Clip(Polygon polygon, const std::vector<Plane>& aPlanes)
{
    for (const Plane& plane : aPlanes)
    {
        Polygon kept;
        for (std::size_t n = 0; n < polygon.size(); ++n)
        {
            const Point3d& a = polygon[n];
            const Point3d& b = polygon[(n + 1) % polygon.size()];
            const double dA = plane.dist(a);
            const double dB = plane.dist(b);
            if (dA < 0)
                kept.push_back(a);
            if ((dA < 0) != (dB < 0))
                kept.push_back(a + (b - a) * (dA / (dA - dB)));
        }
        polygon.swap(kept);
    }
    return polygon;
}

bool IsIn(const Point3d& p, const std::vector<Plane>& aPlanes)
{
    return std::all_of(aPlanes.begin(), aPlanes.end(), [&](const Plane& plane) { return plane.dist(p) < 0; });
}

/// What lies in a volume, by cutting every vertex, edge and triangle of the model with it.
IDs PickByCutting(History& history, const std::vector<Plane>& aPlanes, PickKinds kinds, bool bWhole)
{
    IDs aIDs;
    if (aPlanes.empty())
        return aIDs;
    for (const Vertex* pVertex : GetAll<Vertex>(history))
        if (kinds.bVertices && IsIn(pVertex->GetPosition(), aPlanes))
            aIDs.push_back(pVertex->GetID());
    for (const Edge* pEdge : GetAll<Edge>(history))
    {
        const Polygon ends{pEdge->GetStartVertex()->GetPosition(), pEdge->GetEndVertex()->GetPosition()};
        if (kinds.bEdges && (bWhole ? IsIn(ends[0], aPlanes) && IsIn(ends[1], aPlanes) : !Clip(ends, aPlanes).empty()))
            aIDs.push_back(pEdge->GetID());
    }
    for (Face* pFace : GetAll<Face>(history))
    {
        std::vector<Vertex*> aTriangles;
        pFace->GetFacetVertices(aTriangles);
        bool bAll = true;
        bool bAny = false;
        for (std::size_t n = 0; n < aTriangles.size(); n += 3)
        {
            const Polygon triangle{aTriangles[n]->GetPosition(), aTriangles[n + 1]->GetPosition(),
                                   aTriangles[n + 2]->GetPosition()};
            bAny = bAny || !Clip(triangle, aPlanes).empty();
            for (const Point3d& p : triangle)
                bAll = bAll && IsIn(p, aPlanes);
        }
        if (kinds.bFaces && (bWhole ? bAll : bAny))
            aIDs.push_back(pFace->GetID());
    }
    return aIDs;
}

/// @param pLine  along which hits are sorted into the list
IDs Pick(History& history, const std::vector<Plane>& aPlanes, PickKinds kinds, bool bWhole,
         const Line3d* pLine = nullptr, SortedHits* pSorted = nullptr)
{
    IDs aIDs;
    ExpectGood(APIIntersectsNegativeSideOfPlanesReadOnly(history.GetID(), aPlanes, aIDs, kinds.bVertices, kinds.bEdges,
                                                         kinds.bFaces, bWhole, 1e-12, pLine, nullptr, nullptr, pSorted,
                                                         false));
    return aIDs;
}

UnitVector3d MakeRandomDirection(std::mt19937& random)
{
    std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
    const double x = coordinate(random);
    const double y = coordinate(random);
    return {x, y, coordinate(random), true};
}
} // namespace

TEST(VolumePick, FindsWhatCuttingTheModelFinds)
{
    std::size_t nFound = 0;
    for (unsigned nSeed = 1; nSeed <= 20; ++nSeed)
    {
        std::mt19937 random(nSeed);
        PolygonModel model;
        const Frame& at = GetFrames()[nSeed % GetFrames().size()];
        FillAtRandom(model, at, random);
        std::uniform_real_distribution<double> place(-2.0, 10.0);
        std::uniform_real_distribution<double> size(0.1, 12.0);
        for (int nVolume = 0; nVolume < 20; ++nVolume)
        {
            const UnitVector3d x = MakeRandomDirection(random);
            const Frame inModel =
                MakeFrame("random", at(place(random), place(random), place(random)), x, MakeRandomDirection(random));
            std::vector<Plane> aPlanes =
                nVolume % 3 == 0 ? MakeFrustum(inModel, size(random) / 12)
                                 : MakeVolume(inModel, Point3d(), Point3d(size(random), size(random), size(random)));
            if (nVolume % 5 == 0)
                aPlanes.resize(nVolume / 5); // half spaces, slabs, and no planes
            for (const bool bWhole : {false, true})
                for (unsigned nKinds = 0; nKinds < 8; ++nKinds)
                {
                    SCOPED_TRACE(testing::Message() << "seed " << nSeed << ", " << at.pName << ", volume " << nVolume
                                                    << (bWhole ? ", whole" : ", part") << ", kinds " << nKinds);
                    const PickKinds kinds{(nKinds & 1) != 0, (nKinds & 2) != 0, (nKinds & 4) != 0};
                    const IDs found = Pick(model.GetHistory(), aPlanes, kinds, bWhole);
                    ASSERT_EQ(found, PickByCutting(model.GetHistory(), aPlanes, kinds, bWhole));
                    nFound += found.size();
                }
        }
    }
    EXPECT_GT(nFound, 10000u);
}

TEST(VolumePick, FindsAFaceThatTheVolumePierces)
{
    for (const Frame& at : GetFramesAndFar())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        const std::uint64_t nFace = model
                                        .AddFace({at(-100, -70), at(90, -80), at(100, 90), at(-90, 110)},
                                                 {{at(10, 10), at(10, 20), at(20, 20), at(20, 10)}})
                                        .GetID();
        std::mt19937 random(7);
        std::uniform_real_distribution<double> place(-60.0, 60.0);
        for (int n = 0; n < 200; ++n)
        {
            const double u = place(random);
            const double v = place(random);
            Frame eye = at;
            eye.origin = at(u, v, -50);
            const bool bInHole = u > 10 && u < 20 && v > 10 && v < 20;
            const bool bNearRim =
                std::abs(u - 15) < 7 && std::abs(v - 15) < 7 && !(std::abs(u - 15) < 3 && std::abs(v - 15) < 3);
            if (bNearRim)
                continue;
            EXPECT_EQ(Pick(model.GetHistory(), MakeFrustum(eye, 0.01), {false, false, true}, false),
                      bInHole ? IDs{} : IDs{nFace})
                << u << ' ' << v;
        }
    }
}

TEST(VolumePick, OrdersHitsAlongTheLine)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    std::vector<Face*> aNear, aFar;
    {
        Step step(model);
        aNear = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(2, 2, 2));
        aFar = model.AddBlockFaces(at, Point3d(0, 0, 5), Point3d(3, 3, 7));
    }
    History& history = model.GetHistory();
    // Down the middle of the near block, from above the far one.
    const Line3d line(at(1, 1, 10), -at.z);
    const auto pick = [&](const std::vector<Plane>& aPlanes, PickKinds kinds, bool bWhole, const Line3d& along)
    {
        SortedHits aSorted;
        const IDs aIDs = Pick(history, aPlanes, kinds, bWhole, &along, &aSorted);
        EXPECT_TRUE(std::is_sorted(aSorted.begin(), aSorted.end(),
                                   [](const auto& a, const auto& b) { return a.first < b.first; }));
        std::vector<std::pair<double, std::uint64_t>> aHits;
        for (const auto& [t, nIndex] : aSorted)
            aHits.emplace_back(std::round(t * 1e6) / 1e6, aIDs.at(std::size_t(nIndex)));
        return aHits;
    };
    using Places = std::vector<std::pair<double, std::uint64_t>>;
    const auto narrow = MakeVolume(at, Point3d(0.9, 0.9, -1), Point3d(1.1, 1.1, 6));
    const auto wide = MakeVolume(at, Point3d(-1, -1, -1), Point3d(9, 9, 9));
    // Faces at each crossing within the volume, the top of the far block being above it.
    EXPECT_EQ(pick(narrow, {.bFaces = true}, false, line),
              (Places{{5, aFar[0]->GetID()}, {8, aNear[1]->GetID()}, {10, aNear[0]->GetID()}}));
    EXPECT_TRUE(pick(narrow, {.bFaces = true}, true, line).empty());
    EXPECT_EQ(pick(wide, {.bFaces = true}, true, line),
              (Places{{3, aFar[1]->GetID()}, {5, aFar[0]->GetID()}, {8, aNear[1]->GetID()}, {10, aNear[0]->GetID()}}));
    // All 16 vertices have a place; of the edges those that the line meets.
    EXPECT_EQ(pick(wide, {.bVertices = true}, false, line).size(), 16u);
    EXPECT_TRUE(pick(wide, {.bEdges = true}, false, line).empty());
    const Line3d acrossTop(at(-1, 1, 2), at.x);
    EXPECT_EQ(pick(wide, {.bEdges = true}, false, acrossTop).size(), 2u);
    // The edge itself from its nearer end on, the four that it meets, and two whose lines it meets beyond their ends.
    const Line3d alongEdge(at(-1, 0, 2), at.x);
    EXPECT_EQ(pick(wide, {.bEdges = true}, false, alongEdge).size(), 7u);
    EXPECT_EQ(pick(wide, {.bEdges = true}, false, alongEdge).front().first, 1.0);
}
} // namespace QRV
