#include "history/History.h"
#include "model/Attribute.h"
#include "model/Coedge.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// No coedge of the edge turns straight back at the vertex.
bool HasNoSpike(const Edge& edge, const Vertex& vertex)
{
    ShortList<Coedge*> aCoedges;
    edge.GetCoedges(aCoedges);
    return std::none_of(aCoedges.begin(), aCoedges.end(),
                        [&](const Coedge* pCoedge)
                        {
                            const Coedge* pNeighbour = pCoedge->GetNeighbourAt(&vertex);
                            return !pNeighbour || pNeighbour->GetEdge() == &edge;
                        });
}

/// The two edges are where the same two planes meet, so that they lie on one line.
bool AreOnOneCrease(const Edge& e0, const Edge& e1)
{
    ShortList<Face*> a0;
    ShortList<Face*> a1;
    e0.GetFaces(a0);
    e1.GetFaces(a1);
    if (a0.size() != 2 || a1.size() != 2 || !std::is_permutation(a0.begin(), a0.end(), a1.begin()))
        return false;
    return !a0[0]->GetPlane().isEquivalent(a0[1]->GetPlane(), kPlaneDistanceTolerance, kParallelToleranceSqrd);
}

bool LiesOnStraightRun(const Point3d& p, const Point3d& a, const Point3d& b, bool bOnCrease)
{
    constexpr double kOnCreaseSqrd = 1e-12;
    const double l = a.distSqrd(b);
    const double dScale = std::max(1.0, p.lengthSqrd());
    if (l < kPointToleranceSqrd)
        return false;
    const double dOffSqrd = ((p - a) * (b - a)).lengthSqrd() / l;
    if (bOnCrease)
        return dOffSqrd <= dScale * kOnCreaseSqrd;
    return p.distSqrd(a) <= l + kPointToleranceSqrd && p.distSqrd(b) <= l + kPointToleranceSqrd &&
           dOffSqrd <= dScale * kPointToleranceSqrd;
}

/// Makes one edge of the two at a vertex. `kept` takes the far vertex of `gone`, which dies with the vertex.
void JoinEdges(Vertex& vertex, Edge& kept, Edge& gone)
{
    History& history = *vertex.GetHistory();
    const std::uint64_t nGone = gone.GetID();
    vertex.Changed(nBoundaryChanged);
    Vertex& farVertex = *gone.GetOtherVertex(&vertex);
    std::vector<std::uint64_t> aAtFar{kept.GetID()};
    ShortList<Edge*> aEdges;
    farVertex.GetConnectedEdges(aEdges);
    for (const Edge* pEdge : aEdges)
        aAtFar.push_back(pEdge->GetID());
    farVertex.RemoveEdgeFromGroups(&gone, false);
    MergeAttributesFrom(kept, gone, true);
    farVertex.IncrementUse();
    ShortList<Coedge*> aCoedges;
    kept.GetCoedges(aCoedges);
    for (Coedge* pCoedge : aCoedges)
    {
        Coedge* pNeighbour = pCoedge->GetNeighbourAt(&vertex);
        if (pNeighbour->GetLoop()->GetCoedge() == pNeighbour)
            pNeighbour->GetLoop()->SetCoedge(pCoedge);
        pNeighbour->Unlink();
        pNeighbour->DeleteSelf(); // the last one takes the edge with it
    }
    if (auto* pGone = history.Get<Edge>(nGone))
        pGone->DeleteSelf();
    kept.ReplaceVertex(&vertex, &farVertex, true);
    vertex.DecrementUse();
    farVertex.Regroup(aAtFar);
}
} // namespace

bool Vertex::RemoveIfRedundant()
{
    ShortList<Edge*> aEdges;
    if (m_aEdgesPerGroup.empty() || m_aEdgesPerGroup.size() > 2 || GetConnectedEdges(aEdges) != 2)
        return false;
    Edge& kept = *m_aEdgesPerGroup.front();
    Edge& gone = *(aEdges[0] == &kept ? aEdges[1] : aEdges[0]);
    const Vertex* pA = kept.GetOtherVertex(this);
    const Vertex* pB = gone.GetOtherVertex(this);
    if (pA == pB || kept.GetUse() != gone.GetUse() || !HasNoSpike(kept, *this) || !HasNoSpike(gone, *this))
        return false;
    if (!LiesOnStraightRun(m_Position, pA->GetPosition(), pB->GetPosition(), AreOnOneCrease(kept, gone)))
        return false;
    JoinEdges(*this, kept, gone);
    return true;
}

void Vertex::RemoveIfUnused()
{
    if (GetUse() == 0 && m_aEdgesPerGroup.empty())
        Delete();
}

bool Vertex::Delete()
{
    History& history = *GetHistory();
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    if (aEdges.size() == 2 && RemoveIfRedundant())
        return true;
    if (aEdges.empty())
        return Object::Delete();
    const std::uint64_t nSelf = GetID();
    std::vector<std::pair<std::uint64_t, std::uint64_t>> aEdgesAndFarEnds;
    for (const Edge* pEdge : aEdges)
        aEdgesAndFarEnds.emplace_back(pEdge->GetID(), pEdge->GetOtherVertex(this)->GetID());
    for (const auto& [nEdge, nFar] : aEdgesAndFarEnds)
    {
        if (auto* pEdge = history.Get<Edge>(nEdge))
            pEdge->Delete(true);
        if (auto* pFar = history.Get<Vertex>(nFar))
            pFar->RemoveIfRedundant();
    }
    if (auto* pSelf = history.Get<Vertex>(nSelf))
        pSelf->RemoveIfUnused();
    return true;
}
} // namespace QRV
