#include "spatial/RayFire.h"
#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <algorithm>
#include <map>
#include <random>

namespace QRV
{
namespace
{
/// The parameter of each object hit.
using Hits = std::map<std::uint64_t, double>;

/// What a ray meets, by looking at every vertex, edge and face of the model.
class PlainLoop
{
public:
    PlainLoop(History& history, const Line3d& ray, double dTol, double dMax, PickKinds kinds)
        : m_ray(ray), m_dTol(dTol), m_dMax(dMax)
    {
        if (!kinds.bVertices && !kinds.bEdges && !kinds.bFaces)
            return;
        std::map<const Vertex*, double> vertices;
        for (const Vertex* pVertex : GetAll<Vertex>(history))
            if (Interval3d(pVertex->GetPosition()).intersectsRay(ray, dTol, dMax))
                vertices[pVertex] = ray.GetParameter(pVertex->GetPosition());
        if (kinds.bVertices)
            for (const auto& [pVertex, t] : vertices)
                m_hits[pVertex->GetID()] = t;

        const std::vector<Edge*> aEdges = GetAll<Edge>(history);
        std::map<const Edge*, double> edges = GetTouched(aEdges, vertices);
        const std::map<const Edge*, double> atVertices = edges;
        for (const Edge* pEdge : aEdges)
            if (double t = 0.0; (!kinds.bEdges || !edges.contains(pEdge)) && IsMet(*pEdge, t))
                edges[pEdge] = kinds.bEdges || !edges.contains(pEdge) ? t : std::min(t, edges[pEdge]);
        if (kinds.bEdges)
            for (const auto& [pEdge, t] : edges)
                if (!kinds.bVertices || !atVertices.contains(pEdge))
                    m_hits[pEdge->GetID()] = t;

        if (kinds.bFaces)
            for (Face* pFace : GetAll<Face>(history))
                LookAtFace(*pFace, vertices, edges, atVertices, kinds);
    }

    Hits m_hits;

private:
    std::map<const Edge*, double> GetTouched(const std::vector<Edge*>& aEdges,
                                             const std::map<const Vertex*, double>& vertices) const
    {
        std::map<const Edge*, double> touched;
        for (const Edge* pEdge : aEdges)
            for (const Vertex* pEnd : {pEdge->GetStartVertex(), pEdge->GetEndVertex()})
                if (const auto it = vertices.find(pEnd); it != vertices.end())
                    touched[pEdge] = touched.contains(pEdge) ? std::min(touched[pEdge], it->second) : it->second;
        return touched;
    }

    bool IsMet(const Edge& edge, double& t) const
    {
        Point3d p;
        double u = 0.0;
        return edge.GetBox().intersectsRay(m_ray, m_dTol, m_dMax) &&
               m_ray.intersectWithParameters(edge.GetLine(), p, t, u, m_dTol) && t >= -1e-12 && t <= m_dMax + 1e-12 &&
               u >= -1e-12 && u <= 1 + 1e-12;
    }

    void LookAtFace(Face& face, const std::map<const Vertex*, double>& vertices,
                    const std::map<const Edge*, double>& edges, const std::map<const Edge*, double>& atVertices,
                    PickKinds kinds)
    {
        double dNearest = 1e30;
        bool bAtVertex = false;
        bool bAtEdge = false;
        std::vector<Vertex*> aVertices;
        face.GetVertices(aVertices);
        for (const Vertex* pVertex : aVertices)
            if (const auto it = vertices.find(pVertex); it != vertices.end())
            {
                bAtVertex = true;
                dNearest = std::min(dNearest, it->second);
            }
        std::vector<Edge*> aEdges;
        face.GetEdges(aEdges);
        for (const Edge* pEdge : aEdges)
            if (const auto it = edges.find(pEdge); it != edges.end() && (!kinds.bEdges || !atVertices.contains(pEdge)))
                if (double t = 0.0; IsMet(*pEdge, t))
                {
                    bAtEdge = true;
                    dNearest = std::min(dNearest, t);
                }
        if (bAtVertex || bAtEdge)
        {
            const bool bShows = bAtVertex ? !kinds.bVertices && !kinds.bEdges : !kinds.bEdges;
            if (bShows)
                m_hits[face.GetID()] = dNearest;
            return;
        }
        Point3d p;
        double t = 0.0;
        if (face.GetBox().intersectsRay(m_ray, m_dTol, m_dMax) && face.GetPlane().intersectsInPoint(m_ray, p, t) &&
            t > -1e-12 && t <= m_dMax + 1e-12 && face.ContainsPoint(face.GetPlane().project(p), false))
            m_hits[face.GetID()] = t;
    }

    const Line3d& m_ray;
    const double m_dTol;
    const double m_dMax;
};

/// Rays at nothing in particular, and such as tests of rays stumble over.
std::vector<Line3d> MakeRays(History& history, std::mt19937& random)
{
    constexpr double kAside = 0.15; // about the widest tolerance
    std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
    const auto getVector = [&] { return Vector3d(coordinate(random), coordinate(random), coordinate(random)); };
    const Point3d middle = history.GetBox().mid();
    std::vector<Line3d> aRays;
    for (int n = 0; n < 12; ++n)
        aRays.emplace_back(middle + getVector() * 12.0, middle + getVector() * 4.0);
    for (const Vertex* pVertex : GetAll<Vertex>(history))
        if (random() % 6 == 0)
        {
            aRays.emplace_back(middle + getVector() * 12.0, pVertex->GetPosition());
            aRays.emplace_back(middle + getVector() * 12.0, pVertex->GetPosition() + getVector() * kAside);
        }
    for (const Edge* pEdge : GetAll<Edge>(history))
        switch (random() % 12)
        {
        case 0:
            aRays.emplace_back(middle + getVector() * 12.0, pEdge->GetMidpoint());
            aRays.emplace_back(middle + getVector() * 12.0, pEdge->GetMidpoint() + getVector() * kAside);
            break;
        case 1:
            aRays.emplace_back(pEdge->GetLine().GetPointFromParameter(-2.0), pEdge->GetLine().vector);
            break;
        case 2:
            aRays.emplace_back(pEdge->GetStartVertex()->GetPosition(), getVector());
        }
    for (Face* pFace : GetAll<Face>(history))
    {
        Point3d p;
        if (random() % 4 != 0 || !pFace->GetInteriorPoint(p))
            continue;
        aRays.emplace_back(p, getVector());
        aRays.emplace_back(p, pFace->GetPlane().project(getVector()));
    }
    return aRays;
}

/// The answer in its sorted form, with what holds for every sorted answer checked.
Hits FireSorted(History& history, const Line3d& ray, double dTol, double dMax, PickKinds kinds)
{
    IDs aIDs;
    SortedHits aSorted;
    ExpectGood(APIRayFireReadOnly(history.GetID(), ray, aIDs, dTol, kinds.bVertices, kinds.bEdges, kinds.bFaces, dMax,
                                  nullptr, nullptr, &aSorted));
    IDs aUnsorted{4711};
    ExpectGood(APIRayFireReadOnly(history.GetID(), ray, aUnsorted, dTol, kinds.bVertices, kinds.bEdges, kinds.bFaces,
                                  dMax, nullptr, nullptr, nullptr));
    EXPECT_EQ(aUnsorted.front(), 4711u);
    EXPECT_EQ(IDs(aUnsorted.begin() + 1, aUnsorted.end()), aIDs);
    Hits hits;
    for (std::size_t n = 0; n < aSorted.size(); ++n)
    {
        const auto& [t, nIndex] = aSorted[n];
        if (n > 0)
        {
            const auto& [tBefore, nIndexBefore] = aSorted[n - 1];
            const double dSpot = std::max(std::abs(tBefore), 1.0) * 1e-12;
            EXPECT_TRUE(t > tBefore || (tBefore - t < dSpot && nIndexBefore <= nIndex));
        }
        const auto [it, bNew] = hits.emplace(aIDs.at(std::size_t(nIndex)), t);
        EXPECT_TRUE(bNew || t - it->second <= 1e-9);
    }
    EXPECT_EQ(hits.size(), aIDs.size()); // each object is listed once, and each has its place
    return hits;
}

void ExpectSame(const Hits& found, const Hits& expected)
{
    ASSERT_EQ(found.size(), expected.size());
    for (const auto& [nID, t] : expected)
    {
        ASSERT_TRUE(found.contains(nID)) << nID;
        EXPECT_NEAR(found.at(nID), t, 1e-9) << nID;
    }
}
} // namespace

TEST(RayFire, FindsWhatAPlainLoopFinds)
{
    std::size_t nHits = 0;
    for (unsigned nSeed = 1; nSeed <= 12; ++nSeed)
    {
        std::mt19937 random(nSeed);
        PolygonModel model;
        FillAtRandom(model, GetFrames()[nSeed % 2], random);
        ExpectSound(model.GetHistory());
        for (const Line3d& ray : MakeRays(model.GetHistory(), random))
            for (const double dTol : {1e-12, 1e-6, 0.1})
                for (const double dMax : {1e30, 0.75})
                    for (unsigned nKinds = 0; nKinds < 8; ++nKinds)
                    {
                        SCOPED_TRACE(testing::Message()
                                     << "seed " << nSeed << " tol " << dTol << " max " << dMax << " kinds " << nKinds);
                        const PickKinds kinds{(nKinds & 1) != 0, (nKinds & 2) != 0, (nKinds & 4) != 0};
                        const Hits found = FireSorted(model.GetHistory(), ray, dTol, dMax, kinds);
                        ExpectSame(found, PlainLoop(model.GetHistory(), ray, dTol, dMax, kinds).m_hits);
                        if (HasFailure())
                            return;
                        nHits += found.size();
                    }
    }
    EXPECT_GT(nHits, 10000u);
}

TEST(RayFire, ReportsEachThingByTheMostSpecificKindAskedFor)
{
    PolygonModel model;
    const Frame& at = GetFrames()[0];
    std::vector<Face*> aBlock;
    InStep(model, [&] { aBlock = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(4, 4, 4)); });
    const std::uint64_t nBottom = aBlock[0]->GetID();
    const std::uint64_t nTop = aBlock[1]->GetID();
    const std::uint64_t nCorner = model.AddVertex(at(4, 4, 4)).GetID();
    const auto fire = [&](const Line3d& ray, PickKinds kinds, double dMax = 1e30)
    { return FireSorted(model.GetHistory(), ray, 1e-6, dMax, kinds); };

    const Line3d atCorner(at(5, 6, 7), at(4, 4, 4)); // and through the bottom far behind
    ExpectSame(fire(atCorner, {true, true, true}), {{nCorner, 1.0}, {nBottom, 7.0 / 3}});
    EXPECT_EQ(fire(atCorner, {false, true, true}).size(), 3u + 1);
    EXPECT_EQ(fire(atCorner, {false, false, true}).size(), 3u + 1);

    ExpectSame(fire(Line3d(at(1, 2, 4), at.z), {false, false, true}), {{nTop, 0.0}});
    // In the plane of the top the rim is met, and the face itself only from a start within it.
    ExpectSame(fire(Line3d(at(1, 2, 4), at.x), {false, false, true}, 2.0), {{nTop, 0.0}});
    const Hits along = fire(Line3d(at(-1, 2, 4), at.x), {false, true, true});
    EXPECT_EQ(along.size(), 2u);
    EXPECT_FALSE(along.contains(nTop));
}

TEST(RayFire, PassesBetweenNoTwoTrianglesOfALargeFace)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> number(0.0, 1.0);
    for (const double dSize : {30.0, 300.0, 3000.0})
        for (int nRoof = 0; nRoof < 60; ++nRoof)
        {
            const double dSlope = 0.1 + 0.9 * number(random);
            const double dTurn = 6.28 * number(random);
            const Frame at = MakeFrame("roof", Point3d(), Vector3d(std::cos(dTurn), std::sin(dTurn), dSlope),
                                       Vector3d(-std::sin(dTurn), std::cos(dTurn), 0));
            const double d = dSize / 2.0;
            const Polygon corners = MakeRectangle(at, -d, -d, d, d);
            PolygonModel model;
            const Face& face = model.AddFace(corners);
            for (int nRay = 0; nRay < 60; ++nRay)
            {
                const Point3d& corner = corners[std::size_t(nRay % 2)];
                const Point3d& opposite = corners[std::size_t(nRay % 2 + 2)];
                const Point3d p = corner + (opposite - corner) * (0.45 + 0.1 * number(random));
                const Hits hits = FireSorted(model.GetHistory(), Line3d({p.x, p.y, 2 * dSize}, Vector3d(0, 0, -1)),
                                             1e-6, 1e30, {false, false, true});
                ASSERT_TRUE(hits.contains(face.GetID())) << dSize << ' ' << nRoof << ' ' << nRay;
            }
        }
}

TEST(RayFire, TakesTheNearerOfAVertexAndAnEdge)
{
    // The ray passes the corner within the tolerance, and before that a side of the triangle exactly.
    PolygonModel model;
    const Face& face = model.AddFace({{0, 0, 0}, {8, 0, 0}, {4, 0.05, 6}});
    const Line3d ray(Point3d(-1, 0.06, 0.2), Vector3d(1, 0, 0));
    const Hits hits = FireSorted(model.GetHistory(), ray, 0.3, 1e30, {false, false, true});
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_LT(hits.at(face.GetID()), 1.2);
    ExpectSame(hits, PlainLoop(model.GetHistory(), ray, 0.3, 1e30, {false, false, true}).m_hits);
}
} // namespace QRV
