#include "operations/EdgeSketch.h"

#include "geometry/Finite.h"
#include "history/History.h"
#include "model/Attribute.h"
#include "model/Body.h"
#include "operations/EdgeSplit.h"
#include "operations/FaceSearch.h"
#include "operations/Healing.h"
#include "spatial/RayFire.h"

#include <algorithm>

namespace QRV
{
namespace
{
Interval3d PlaceBox(const Point3d& p)
{
    return Interval3d(p, ScaledTolerance(p));
}

Vertex& CreateVertex(History& history, const Point3d& p, bool bSmooth)
{
    Vertex& vertex = history.Create<Vertex>(p);
    vertex.AddToSearch();
    vertex.SetSmooth(bSmooth);
    return vertex;
}

void FindVerticesAt(History& history, const Point3d& p, ShortList<Vertex*>& aVertices)
{
    history.GetVertexTree().FindTouching(PlaceBox(p), aVertices);
    std::sort(aVertices.begin(), aVertices.end(), ByObjectID());
}

/// By id, since work at one may end another.
void FindEdgesAt(History& history, const Point3d& p, ShortList<std::uint64_t>& aIDs)
{
    ShortList<Edge*> aEdges;
    history.GetEdgeTree().FindTouching(PlaceBox(p), aEdges);
    for (const Edge* pEdge : aEdges)
        aIDs.push_back(pEdge->GetID());
    std::sort(aIDs.begin(), aIDs.end());
}

/// Finds, makes or splits out the vertex of one place, and leaves one vertex and no passing edge there.
class VertexAtPlace
{
public:
    VertexAtPlace(History& history, const Point3d& p, const VertexSketchOptions& options,
                  std::vector<std::uint64_t>* pSplitEdges)
        : m_history(history), m_p(p), m_options(options), m_pSplitEdges(pSplitEdges)
    {
    }

    Vertex* Run()
    {
        ShortList<Vertex*> aHits;
        FindVerticesAt(m_history, m_p, aHits);
        Vertex* pVertex = nullptr;
        if (aHits.empty())
            pVertex = SplitOutOrCreate();
        else if (aHits.size() == 1)
            pVertex = aHits.front();
        else
            pVertex = ChooseAmong(aHits);
        if (pVertex && m_options.bSplitEdges)
            pVertex = SplitPassingEdges(*pVertex);
        if (pVertex && (m_bSplit || aHits.size() > 1))
            pVertex = Heal(*pVertex);
        return pVertex;
    }

private:
    void NoteSplit(const Edge* pNewEdge)
    {
        m_bSplit = true;
        if (m_pSplitEdges)
            m_pSplitEdges->push_back(pNewEdge->GetID());
    }

    Vertex* SplitOutOrCreate()
    {
        ShortList<std::uint64_t> aEdgeIDs;
        if (m_options.bSplitEdges)
            FindEdgesAt(m_history, m_p, aEdgeIDs);
        for (const std::uint64_t nEdge : aEdgeIDs)
        {
            Edge* pNewEdge = nullptr;
            if (Vertex* pVertex = SplitEdgeAtPoint(*m_history.Get<Edge>(nEdge), m_p, {}, &pNewEdge))
            {
                NoteSplit(pNewEdge);
                return pVertex;
            }
        }
        return &CreateVertex(m_history, m_p, m_options.bSmooth);
    }

    Vertex* ChooseAmong(const ShortList<Vertex*>& aHits)
    {
        if (!m_options.bMergeBodies)
            return aHits.front();
        std::vector<std::uint64_t> aIDs;
        for (const Vertex* pVertex : aHits)
            aIDs.push_back(pVertex->GetID());
        MergeCoincidentVertices(m_history, nullptr, aIDs, false, kLinearTolerance, nullptr);
        auto* pFirst = m_history.Get<Vertex>(aIDs.front());
        if (auto* pBody = pFirst ? dynamic_cast<Body*>(pFirst->GetTopOwner()) : nullptr)
            pBody->Rebuild(false);
        return m_history.Get<Vertex>(aIDs.front());
    }

    Vertex* SplitPassingEdges(Vertex& vertex)
    {
        const std::uint64_t nVertex = vertex.GetID();
        const Point3d place = vertex.GetPosition();
        ShortList<std::uint64_t> aEdgeIDs;
        FindEdgesAt(m_history, place, aEdgeIDs);
        for (const std::uint64_t nEdge : aEdgeIDs)
        {
            auto* pEdge = m_history.Get<Edge>(nEdge);
            if (!pEdge || pEdge->HasVertex(&vertex))
                continue;
            EdgeSplitOptions split;
            split.pAtVertex = &vertex;
            Edge* pNewEdge = nullptr;
            if (SplitEdgeAtPoint(*pEdge, place, split, &pNewEdge))
                NoteSplit(pNewEdge);
        }
        return m_history.Get<Vertex>(nVertex);
    }

    Vertex* Heal(Vertex& vertex)
    {
        const std::uint64_t nVertex = vertex.GetID();
        bool bRemovedZeroEdges = false;
        std::vector<std::uint64_t> aMergedEdges;
        MergeDoubleEdges(m_history, {nVertex}, bRemovedZeroEdges, aMergedEdges);
        HealLoopsAtVertices(m_history, {nVertex}, nullptr, nullptr);
        return m_history.Get<Vertex>(nVertex);
    }

    History& m_history;
    const Point3d m_p;
    const VertexSketchOptions m_options;
    std::vector<std::uint64_t>* m_pSplitEdges;
    bool m_bSplit = false;
};

/// A vertex that may be merged away between two looks at it.
class TrackedVertex
{
public:
    TrackedVertex(History& history, const Vertex& vertex)
        : m_history(history), m_nID(vertex.GetID()), m_position(vertex.GetPosition())
    {
    }

    std::uint64_t GetID() const { return m_nID; }
    /// By id, and failing that what stands at the old place now.
    Vertex* Find() const
    {
        auto* pVertex = m_history.Get<Vertex>(m_nID);
        return pVertex ? pVertex : FindOrCreateVertex(m_history, m_position, {});
    }

private:
    History& m_history;
    std::uint64_t m_nID;
    Point3d m_position;
};

void GetFaceIDs(const Vertex& vertex, ShortList<std::uint64_t>& aIDs)
{
    ShortList<Face*> aFaces;
    vertex.GetFaces(aFaces);
    for (const Face* pFace : aFaces)
        aIDs.push_back(pFace->GetID());
}

bool Holds(const ShortList<std::uint64_t>& aIDs, std::uint64_t nID)
{
    return std::find(aIDs.begin(), aIDs.end(), nID) != aIDs.end();
}

/// A chord where other faces stand already parts the sheet that it cuts: either half may close with theirs. And faces
/// that come apart may lead a sheet another way at branches.
void CloseSheetsAt(History& history, std::uint64_t nEdge)
{
    const auto* pEdge = history.Get<Edge>(nEdge);
    if (!pEdge)
        return;
    ShortList<Face*> aFaces;
    pEdge->GetFaces(aFaces);
    if (pEdge->GetUse() > 2)
        for (Face* pFace : aFaces)
            CloseFaceComponent(*pFace);
    RebuildBranchedBodies({aFaces.begin(), aFaces.end()});
}

/// Draws the edge into the faces that both or one of its ends stand on.
void DrawIntoFaces(History& history, std::uint64_t nEdge, const Vertex& first, const Vertex& last)
{
    ShortList<std::uint64_t> aAtFirst;
    ShortList<std::uint64_t> aAtLast;
    GetFaceIDs(first, aAtFirst);
    GetFaceIDs(last, aAtLast);
    bool bCut = false;
    for (const std::uint64_t nFace : aAtFirst)
    {
        auto* pEdge = history.Get<Edge>(nEdge);
        auto* pFace = history.Get<Face>(nFace);
        if (!pEdge || !pFace || pFace->HasEdge(*pEdge))
            continue;
        if (Holds(aAtLast, nFace))
            bCut = pFace->SplitByEdge(*pEdge, nullptr, false) || bCut;
        else
        {
            ObjectSet done;
            pFace->AddSpurEdge(*pEdge, pEdge->GetStartVertex() == &first, done);
        }
    }
    for (const std::uint64_t nFace : aAtLast)
    {
        auto* pEdge = history.Get<Edge>(nEdge);
        auto* pFace = history.Get<Face>(nFace);
        if (!pEdge || !pFace || Holds(aAtFirst, nFace) || pFace->HasEdge(*pEdge))
            continue;
        ObjectSet done;
        pFace->AddSpurEdge(*pEdge, pEdge->GetStartVertex() == &last, done);
    }
    if (bCut)
        CloseSheetsAt(history, nEdge);
}

void ConnectAdjacentVertices(History& history, Vertex& first, Vertex& last, const EdgeSketchOptions& options)
{
    if (&first == &last)
        return;
    Vertex* pFirst = &first;
    Vertex* pLast = &last;
    Edge* pEdge = pFirst->FindEdgeTo(*pLast);
    if (pEdge && !pEdge->IsFree() && options.bClearSmooth)
        pEdge->SetSmooth(false);
    if (!pEdge)
    {
        if (options.bMergeBodies)
        {
            const TrackedVertex trackedFirst(history, first);
            const TrackedVertex trackedLast(history, last);
            const std::vector<Point3d> aWay{first.GetPosition(), last.GetPosition()};
            if (MergeObjectsInBox(history, Interval3d(aWay[0], aWay[1]), &aWay))
            {
                pFirst = trackedFirst.Find();
                pLast = trackedLast.Find();
            }
        }
        pEdge = Edge::Create(pFirst, pLast, history, Edge::nGroupMode::nBoth);
    }
    if (!pEdge)
        return;

    const std::uint64_t nEdge = pEdge->GetID();
    DrawIntoFaces(history, nEdge, *pFirst, *pLast);
    pFirst->RebuildGroups(false);
    pLast->RebuildGroups(false);
    FaceSearchOptions search;
    search.bInsideFacesOnly = options.bInsideFacesOnly;
    search.pFaceAttributes = &options.aFaceAttributes;
    search.pPlane = options.pPlane;
    search.pBoundingPlanes = options.pBoundingPlanes;
    FormFacesFromEdge(*pEdge, search);
    if ((pEdge = history.Get<Edge>(nEdge)))
        for (Attribute* pAttribute : options.aEdgeAttributes)
            pEdge->AddAttribute(pAttribute, true);
}

/// The vertices on the way from one vertex to another, in order, edges on the way split.
class WayBetweenVertices
{
public:
    WayBetweenVertices(History& history, const Vertex& first, const Vertex& last)
        : m_history(history), m_nFirst(first.GetID()), m_nLast(last.GetID()),
          m_ray(first.GetPosition(), last.GetPosition())
    {
        const double dScale = std::max({m_ray.vector.length(), first.GetPosition().toVector3d().length(),
                                        last.GetPosition().toVector3d().length(), 1.0});
        m_dTol = dScale * kLinearTolerance;
    }

    /// Ids of the vertices; empty when the ends are not what it runs between.
    std::vector<TrackedVertex> Find()
    {
        std::vector<RayHit> aHits;
        FireRay(m_history, m_ray, m_dTol, 1.0, {.bVertices = true, .bEdges = true}, aHits);
        std::vector<std::pair<double, std::uint64_t>> aHitIDs; // splitting one edge may end another
        for (const RayHit& hit : aHits)
            aHitIDs.emplace_back(hit.t, hit.pObject->GetID());

        std::vector<TrackedVertex> aWay;
        if (aHitIDs.size() < 2)
            return aWay;
        for (const auto& [t, nID] : aHitIDs)
            if (Vertex* pVertex = Resolve(t, nID))
                if (aWay.empty() || aWay.back().GetID() != pVertex->GetID())
                    aWay.emplace_back(m_history, *pVertex);
        if (aWay.empty() || aWay.front().GetID() != m_nFirst || aWay.back().GetID() != m_nLast)
            aWay.clear();
        return aWay;
    }

private:
    /// The vertex that a hit gives, standing alone at its place; null for a hit that does not count.
    Vertex* Resolve(double t, std::uint64_t nID)
    {
        Object* pObject = m_history.GetObject(nID);
        auto* pVertex = AsType<Vertex>(pObject);
        if (auto* pEdge = AsType<Edge>(pObject))
            pVertex = SplitAtHit(*pEdge);
        if (!pVertex || pVertex->GetID() == m_nFirst || pVertex->GetID() == m_nLast)
            return pVertex;
        if (t < 0.0 || t > 1.0)
            return nullptr;
        return FindOrCreateVertex(m_history, pVertex->GetPosition(), {.bSplitEdges = true});
    }

    Vertex* SplitAtHit(Edge& edge)
    {
        Point3d place;
        double t = 0.0;
        double u = 0.0;
        if (!m_ray.intersectWithParameters(edge.GetLine(), place, t, u, m_dTol))
            return nullptr;
        return SplitEdgeAtPoint(edge, place, {});
    }

    History& m_history;
    const std::uint64_t m_nFirst;
    const std::uint64_t m_nLast;
    const Line3d m_ray;
    double m_dTol;
};
} // namespace

Vertex* FindOrCreateVertex(History& history, const Point3d& p, const VertexSketchOptions& options,
                           std::vector<std::uint64_t>* pSplitEdges)
{
    return VertexAtPlace(history, p, options, pSplitEdges).Run();
}

void ConnectVerticesAlongLine(History& history, Vertex*& pFirst, Vertex*& pLast, const EdgeSketchOptions& options)
{
    if (!pFirst || !pLast || pFirst == pLast)
        return;
    const std::vector<TrackedVertex> aWay = WayBetweenVertices(history, *pFirst, *pLast).Find();
    if (aWay.size() < 2)
        return;
    for (std::size_t i = 1; i < aWay.size(); ++i)
    {
        Vertex* pA = aWay[i - 1].Find();
        Vertex* pB = aWay[i].Find();
        ConnectAdjacentVertices(history, *pA, *pB, options);
    }
    pFirst = aWay.front().Find();
    pLast = aWay.back().Find();
}

void ConnectPoints(History& history, const Point3d& p0, const Point3d& p1, const EdgeSketchOptions& options,
                   Vertex** ppV0, Vertex** ppV1)
{
    VertexSketchOptions place{
        .bSplitEdges = true, .bMergeBodies = options.bMergeBodies, .bSmooth = options.bSmoothStart};
    Vertex* pFirst = FindOrCreateVertex(history, p0, place);
    const TrackedVertex trackedFirst(history, *pFirst);
    place.bSmooth = options.bSmoothEnd;
    Vertex* pLast = FindOrCreateVertex(history, p1, place);
    pFirst = trackedFirst.Find();
    ConnectVerticesAlongLine(history, pFirst, pLast, options);
    if (ppV0)
        *ppV0 = pFirst;
    if (ppV1)
        *ppV1 = pLast;
}

bool MergeObjectsInBox(History&, const Interval3d&, const std::vector<Point3d>*)
{
    // Objects that a new edge ties together stay apart until bodies can be united.
    return false;
}
} // namespace QRV
