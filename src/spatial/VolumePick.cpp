#include "history/History.h"
#include "spatial/RayFire.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// Selection by a convex volume in one History.
class VolumePick
{
public:
    VolumePick(History& history, const VolumeQuery& query, PickResults results)
        : m_history(history), m_query(query), m_results(results), m_nFirst(results.aIDs.size())
    {
    }

    std::size_t Run()
    {
        if (m_query.aPlanes.empty())
            return 0;
        const bool bAlongLine = m_query.pLine && m_results.pSorted;
        if (m_query.kinds.bVertices)
            PickVertices();
        if (m_query.kinds.bEdges)
            PickEdges();
        if (m_query.kinds.bFaces && !bAlongLine)
            PickFaces();
        if (bAlongLine)
        {
            PlaceHitsOnLine();
            if (m_query.kinds.bFaces)
                PickFacesOnLine();
            std::stable_sort(m_results.pSorted->begin(), m_results.pSorted->end(),
                             [](const auto& a, const auto& b) { return a.first < b.first; });
        }
        return m_results.aIDs.size() - m_nFirst;
    }

private:
    template <class T>
    std::vector<T*> FindCandidates(const BoxTree<T>& tree) const
    {
        std::vector<T*> aFound;
        tree.FindOnNegativeSide(m_query.aPlanes, aFound, m_query.dTol);
        std::sort(aFound.begin(), aFound.end(), ByObjectID());
        return aFound;
    }

    bool Holds(const Point3d& p) const { return PointIntersectsNegativeSideOfPlanes(p, m_query.aPlanes, m_query.dTol); }

    void PickVertices()
    {
        for (const Vertex* pVertex : FindCandidates(m_history.GetVertexTree()))
            m_results.aIDs.push_back(pVertex->GetID());
    }

    void PickEdges()
    {
        for (const Edge* pEdge : FindCandidates(m_history.GetEdgeTree()))
        {
            const Point3d& start = pEdge->GetStartVertex()->GetPosition();
            const Point3d& end = pEdge->GetEndVertex()->GetPosition();
            if (m_query.bWhole ? Holds(start) && Holds(end)
                               : SegmentIntersectsNegativeSideOfPlanes(start, end, m_query.aPlanes, m_query.dTol, true))
                m_results.aIDs.push_back(pEdge->GetID());
        }
    }

    void PickFaces()
    {
        for (Face* pFace : FindCandidates(m_history.GetFaceTree()))
            if (pFace->IntersectsNegativeSideOfPlanes(m_query.aPlanes, m_query.dTol, m_query.bWhole))
                m_results.aIDs.push_back(pFace->GetID());
    }

    void PlaceHitsOnLine()
    {
        for (std::size_t i = m_nFirst; i < m_results.aIDs.size(); ++i)
        {
            const Object* pObject = m_history.GetObject(m_results.aIDs[i]);
            double t = 0.0;
            if (const auto* pVertex = dynamic_cast<const Vertex*>(pObject))
                t = m_query.pLine->GetParameter(pVertex->GetPosition());
            else if (const auto* pEdge = dynamic_cast<const Edge*>(pObject); !pEdge || !PlaceEdgeOnLine(*pEdge, t))
                continue;
            m_results.pSorted->emplace_back(t, std::ptrdiff_t(i));
        }
    }

    bool PlaceEdgeOnLine(const Edge& edge, double& t) const
    {
        const Line3d& line = *m_query.pLine;
        const Line3d edgeLine = edge.GetLine();
        const Point3d& start = edge.GetStartVertex()->GetPosition();
        const Point3d& end = edge.GetEndVertex()->GetPosition();
        Point3d met;
        if (line.intersect(edgeLine, met, kLinearTolerance))
        {
            const double u = edgeLine.GetParameter(met);
            if (u <= kLinearTolerance)
                met = start;
            else if (u >= 1.0 - kLinearTolerance)
                met = end;
            t = line.GetParameter(met);
            return true;
        }
        t = std::min(line.GetParameter(start), line.GetParameter(end));
        return line.isCoincident(edgeLine, false, kLinearTolerance);
    }

    /// The faces that the line meets within the volume, at each crossing.
    void PickFacesOnLine()
    {
        double dLow = 1e30;
        double dHigh = -1e30;
        if (!m_history.GetFaceTree().GetBox().boundsLine(*m_query.pLine, dLow, dHigh, kLinearTolerance))
            return;
        const Line3d ray(m_query.pLine->GetPointFromParameter(dLow), m_query.pLine->vector);
        std::vector<RayHit> aHits;
        FireRay(m_history, ray, kLinearTolerance, dHigh - dLow, {.bFaces = true}, aHits);
        for (const RayHit& hit : aHits)
        {
            auto* pFace = dynamic_cast<Face*>(hit.pObject);
            const bool bCounts =
                m_query.bWhole ? pFace && pFace->IntersectsNegativeSideOfPlanes(m_query.aPlanes, m_query.dTol, true)
                               : Holds(ray.GetPointFromParameter(hit.t));
            if (!bCounts)
                continue;
            m_results.pSorted->emplace_back(hit.t + dLow, std::ptrdiff_t(m_results.aIDs.size()));
            m_results.aIDs.push_back(hit.pObject->GetID());
        }
    }

    History& m_history;
    const VolumeQuery& m_query;
    PickResults m_results;
    const std::size_t m_nFirst;
};
} // namespace

std::size_t IntersectsNegativeSideOfPlanes(History& history, const VolumeQuery& query, PickResults results)
{
    return VolumePick(history, query, results).Run();
}
} // namespace QRV
