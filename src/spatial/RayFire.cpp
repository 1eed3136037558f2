#include "spatial/RayFire.h"

#include "history/History.h"
#include "model/Coedge.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "spatial/PickSorting.h"
#include "spatial/RayTriangleTest.h"
#include "spatial/ShortList.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace QRV
{
namespace
{
/// Asks for the memory of a face ahead of a look at it.
void Prefetch(const Face& face)
{
    constexpr std::size_t kCacheLine = 64;
    for (std::size_t n = 0; n < sizeof(Face); n += kCacheLine)
        __builtin_prefetch(reinterpret_cast<const char*>(&face) + n);
}

/// Sorts the faces whose box a ray meets into those that it may meet itself and those that it cannot. Some at a time,
/// so that the memory of all of them is on its way at once: a face, its triangles and their corners lie apart.
class FaceSieve
{
public:
    /// `aMet` gets the faces that the ray may meet, `aNear` those of them that it may meet in an edge or vertex.
    FaceSieve(const RayTriangleTest& test, std::vector<Face*>& aMet, std::vector<Face*>& aNear)
        : m_test(test), m_aMet(aMet), m_aNear(aNear)
    {
    }

    void Add(Face* pFace)
    {
        Prefetch(*pFace);
        m_aFaces[m_nFaces++] = pFace;
        if (m_nFaces == m_aFaces.size())
            Flush();
    }

    void Flush()
    {
        for (std::size_t n = 0; n < m_nFaces; ++n)
            if ((m_aFacets[n] = m_aFaces[n]->GetCachedFacets()))
                __builtin_prefetch(&m_aFacets[n]->GetFacets());
        ForEachFacet([](const Facet& facet) { __builtin_prefetch(&facet); });
        ForEachFacet(
            [](const Facet& facet)
            {
                for (const Vertex* pVertex : facet.aVertices)
                    __builtin_prefetch(&pVertex->GetPosition());
            });
        for (std::size_t n = 0; n < m_nFaces; ++n)
        {
            const nRayPass nPass = m_aFacets[n] ? m_test.Classify(*m_aFacets[n]) : nRayPass::nNear;
            if (nPass != nRayPass::nMissed)
                m_aMet.push_back(m_aFaces[n]);
            if (nPass == nRayPass::nNear)
                m_aNear.push_back(m_aFaces[n]);
        }
        m_nFaces = 0;
    }

private:
    template <class Visit>
    void ForEachFacet(Visit visit) const
    {
        for (std::size_t n = 0; n < m_nFaces; ++n)
            if (m_aFacets[n] && m_aFacets[n]->GetFacets().size() <= RayTriangleTest::kMostTriangles)
                for (const Facet& facet : m_aFacets[n]->GetFacets())
                    visit(facet);
    }

    const RayTriangleTest& m_test;
    std::vector<Face*>& m_aMet;
    std::vector<Face*>& m_aNear;
    std::array<Face*, 16> m_aFaces{};
    std::array<const FaceFacets*, 16> m_aFacets{};
    std::size_t m_nFaces = 0;
};

/// One ray through one History. A hit on a vertex stands for its edges and faces, one on an edge for its faces: each is
/// reported by the most specific kind asked for.
class RayQuery
{
public:
    RayQuery(History& history, const Line3d& ray, double dTol, double dMax, PickKinds kinds)
        : m_history(history), m_ray(ray), m_dTol(dTol), m_dMax(dMax), m_kinds(kinds)
    {
    }

    void Run()
    {
        if (!m_kinds.bVertices && !m_kinds.bEdges && !m_kinds.bFaces)
            return;
        if (m_kinds.bFaces)
            FindFaces();
        FindCandidates();
        MeetVertices();
        MeetEdges();
        MeetFaces();
    }

    /// Every object hit, once.
    const std::vector<Object*>& GetObjects() const { return m_aObjects; }
    /// Every parameter with the place of its object; a face may have several.
    SortedHits& GetHits() { return m_aHits; }

private:
    void AddHit(Object* pObject, double t)
    {
        ReserveFew(m_aHits);
        ReserveFew(m_aObjects);
        m_aHits.emplace_back(t, std::ptrdiff_t(m_aObjects.size()));
        m_aObjects.push_back(pObject);
    }

    /// An object that was hit before may have been hit nearer.
    void MeetAgain(const Object* pObject, double t)
    {
        for (; m_nMapped < m_aHits.size(); ++m_nMapped)
            m_mapHits[m_aObjects[std::size_t(m_aHits[m_nMapped].second)]] = m_nMapped;
        if (const auto it = m_mapHits.find(pObject); it != m_mapHits.end())
            m_aHits[it->second].first = std::min(m_aHits[it->second].first, t);
    }

    /// `bReported`: the object shows by itself, and not through something more specific that was asked for.
    void Meet(Object* pObject, double t, bool bReported)
    {
        if (!m_seen.insert(pObject).second)
            MeetAgain(pObject, t);
        else if (bReported)
            AddHit(pObject, t);
    }

    void FindFaces()
    {
        BoxTree<Face>& tree = m_history.GetFaceTree();
        const Interval3d whole = tree.GetBox();
        const RayBoxTest boxTest(m_ray, m_dTol, m_dMax, whole);
        const RayTriangleTest triangleTest(m_ray, m_dTol, whole);
        FaceSieve sieve(triangleTest, m_aFaces, m_aNearFaces);
        tree.Visit([&](const Interval3d& box) { return boxTest.MayHoldMet(box); },
                   [&](Face* pFace, const Interval3d&)
                   {
                       sieve.Add(pFace);
                       return true;
                   });
        sieve.Flush();
        std::sort(m_aFaces.begin(), m_aFaces.end(), ByObjectID());
    }

    /// The vertices and edges that the ray may hit. For faces alone those of the faces near the ray suffice, mostly
    /// none.
    void FindCandidates()
    {
        if (m_kinds.bVertices || m_kinds.bEdges || !TakeCandidatesOfFaces())
        {
            m_history.GetVertexTree().FindOnRay(m_ray, m_aVertices, m_dTol, m_dMax);
            if (m_kinds.bEdges || m_kinds.bFaces)
                m_history.GetEdgeTree().FindOnRay(m_ray, m_aEdges, m_dTol, m_dMax);
        }
        SortOnce(m_aVertices);
        SortOnce(m_aEdges);
    }

    template <class T>
    static void SortOnce(std::vector<T*>& aElements)
    {
        std::sort(aElements.begin(), aElements.end(), ByObjectID());
        aElements.erase(std::unique(aElements.begin(), aElements.end()), aElements.end());
    }

    /// False, with nothing taken, when the faces have so many corners that the trees are the shorter way.
    bool TakeCandidatesOfFaces()
    {
        constexpr std::size_t kManyCorners = 64;
        std::vector<Coedge*> aCoedges;
        for (const Face* pFace : m_aNearFaces)
        {
            pFace->GetCoedges(aCoedges);
            if (aCoedges.size() > kManyCorners)
                return false;
        }
        for (const Coedge* pCoedge : aCoedges)
        {
            Edge* pEdge = pCoedge->GetEdge();
            if (!pEdge || !pEdge->IsComplete())
                continue;
            m_aEdges.push_back(pEdge);
            Vertex* pVertex = pCoedge->GetStartVertex();
            if (Interval3d(pVertex->GetPosition()).intersectsRay(m_ray, m_dTol, m_dMax))
                m_aVertices.push_back(pVertex);
        }
        return true;
    }

    void MeetVertices()
    {
        if (m_kinds.bVertices)
            for (Vertex* pVertex : m_aVertices)
                AddHit(pVertex, m_ray.GetParameter(pVertex->GetPosition()));
        for (const Vertex* pVertex : m_aVertices)
            MeetAroundVertex(*pVertex);
    }

    void MeetAroundVertex(const Vertex& vertex)
    {
        const double t = m_ray.GetParameter(vertex.GetPosition());
        if (m_kinds.bEdges)
        {
            ShortList<Edge*> aEdges;
            vertex.GetConnectedEdges(aEdges);
            for (Edge* pEdge : aEdges)
                Meet(pEdge, t, !m_kinds.bVertices);
        }
        if (m_kinds.bFaces)
        {
            ShortList<Face*> aFaces;
            vertex.GetFaces(aFaces);
            for (Face* pFace : aFaces)
                Meet(pFace, t, !m_kinds.bVertices && !m_kinds.bEdges);
        }
    }

    void MeetEdges()
    {
        for (Edge* pEdge : m_aEdges)
        {
            double t = 0.0;
            if (m_seen.contains(pEdge) || !pEdge->HitByRay(m_ray, t, m_dTol, m_dMax))
                continue;
            if (m_kinds.bEdges)
                Meet(pEdge, t, true);
            if (!m_kinds.bFaces)
                continue;
            ShortList<Face*> aFaces;
            pEdge->GetFaces(aFaces);
            for (Face* pFace : aFaces)
                Meet(pFace, t, !m_kinds.bEdges);
        }
    }

    void MeetFaces()
    {
        std::vector<double> aParameters;
        for (Face* pFace : m_aFaces)
        {
            aParameters.clear();
            if (m_seen.contains(pFace) || !pFace->HitByRay(m_ray, aParameters, m_dTol, m_dMax))
                continue;
            for (const double t : aParameters)
                m_aHits.emplace_back(t, std::ptrdiff_t(m_aObjects.size()));
            m_aObjects.push_back(pFace);
        }
    }

    History& m_history;
    const Line3d& m_ray;
    const double m_dTol;
    const double m_dMax;
    const PickKinds m_kinds;
    std::vector<Vertex*> m_aVertices; ///< each once, in order of id, as the edges and faces; all may be met yet
    std::vector<Edge*> m_aEdges;
    std::vector<Face*> m_aFaces;
    std::vector<Face*> m_aNearFaces; ///< those that may be met in an edge or vertex
    std::vector<Object*> m_aObjects;
    SortedHits m_aHits;
    ObjectSet m_seen;                                         ///< edges and faces
    std::unordered_map<const Object*, std::size_t> m_mapHits; ///< of the first `m_nMapped` hits
    std::size_t m_nMapped = 0;
};
} // namespace

bool PickResults::AreListsUsable() const
{
    if (pSorted)
        return aIDs.empty() && pSorted->empty() && (!pPaths || pPaths->empty()) &&
               (!pTransforms || pTransforms->empty());
    return !pPaths || !pTransforms || pPaths->size() == pTransforms->size();
}

std::size_t RayFire(History& history, const Line3d& ray, double dTol, double dMax, PickKinds kinds, PickResults results)
{
    RayQuery query(history, ray, dTol, dMax, kinds);
    query.Run();
    for (const Object* pObject : query.GetObjects())
        results.aIDs.push_back(pObject->GetID());
    if (results.pSorted)
    {
        results.pSorted->assign(query.GetHits().begin(), query.GetHits().end());
        SortHits(*results.pSorted);
    }
    return query.GetObjects().size();
}

void FireRay(History& history, const Line3d& ray, double dTol, double dMax, PickKinds kinds, std::vector<RayHit>& aHits)
{
    RayQuery query(history, ray, dTol, dMax, kinds);
    query.Run();
    SortHits(query.GetHits());
    for (const auto& [t, nIndex] : query.GetHits())
        aHits.push_back({t, query.GetObjects()[std::size_t(nIndex)]});
}

void SortHits(SortedHits& aHits)
{
    std::sort(aHits.begin(), aHits.end());
    for (auto itFirst = aHits.begin(); itFirst != aHits.end();)
    {
        const double dSpot = std::max(std::abs(itFirst->first), 1.0) * kLinearTolerance;
        const auto itEnd =
            std::find_if(itFirst, aHits.end(), [&](const auto& hit) { return hit.first - itFirst->first >= dSpot; });
        std::sort(itFirst, itEnd, [](const auto& a, const auto& b) { return a.second < b.second; });
        itFirst = itEnd;
    }
}
} // namespace QRV
