#include "operations/EdgeSplit.h"

#include "history/History.h"
#include "model/Coedge.h"
#include "model/Edge.h"
#include "model/Loop.h"
#include "model/Vertex.h"
#include "operations/EdgeSketch.h"

#include <algorithm>

namespace QRV
{
namespace
{
constexpr double kMinSplitLengthSqrd = 1e-12;
constexpr double kEndParameter = 1e-12;

bool LiesOnOpenEdge(const Edge& edge, const Point3d& p, double dTol)
{
    const Point3d& start = edge.GetStartVertex()->GetPosition();
    const Point3d& end = edge.GetEndVertex()->GetPosition();
    const double dBound = dTol * dTol * std::max(p.lengthSqrd(), 1.0);
    if (edge.GetLengthSqrd() < kMinSplitLengthSqrd || p.distSqrd(start) < dBound || p.distSqrd(end) < dBound)
        return false;
    const Line3d line(start, end);
    const double t = line.GetParameter(p);
    return t >= kEndParameter && t <= 1.0 - kEndParameter && p.distSqrd(line.GetPointFromParameter(t)) <= dBound;
}

/// For each coedge of the old edge one with the same sense on the new edge, next to it in its loop.
void DoubleCoedges(History& history, Edge& oldEdge, Edge& newEdge)
{
    ShortList<Coedge*> aOld;
    oldEdge.GetCoedges(aOld);
    ShortList<Coedge*> aNew;
    for (Coedge* pOld : aOld)
    {
        Coedge& twin = history.Create<Coedge>(pOld->IsForward());
        twin.SetLoop(pOld->GetLoop());
        twin.SetEdge(&newEdge);
        Coedge& before = pOld->IsForward() ? *pOld : *pOld->GetPrevious();
        Coedge& behind = *before.GetNext();
        Coedge::Link(before, twin);
        Coedge::Link(twin, behind);
        aNew.push_back(&twin);
    }
    SetPartnerChain(aNew);
    if (!aNew.empty())
        newEdge.SetCoedge(aNew.front());
}
} // namespace

Vertex* SplitEdgeAtPoint(Edge& edge, const Point3d& p, const EdgeSplitOptions& options, Edge** ppNewEdge)
{
    if (!edge.IsComplete() || (options.pAtVertex && edge.HasVertex(options.pAtVertex)))
        return nullptr;
    if (options.bCheck && !LiesOnOpenEdge(edge, p, options.dTol))
        return nullptr;
    History& history = *edge.GetHistory();
    Vertex* pSplit = options.pAtVertex ? options.pAtVertex : FindOrCreateVertex(history, p, {});
    if (!pSplit || edge.HasVertex(pSplit))
        return nullptr;

    edge.Changed(nBoundaryChanged); // every face on the edge gains a corner
    Vertex* pOldEnd = edge.GetEndVertex();
    Edge* pNewEdge = Edge::Create(pSplit, pOldEnd, history, Edge::nGroupMode::nNeither);
    history.GetOuterSides().NoteFacesSought(pNewEdge->GetID());
    pNewEdge->SetSmooth(edge.IsSmooth());
    edge.SetEndVertex(pSplit, false);
    pSplit->IncrementUse();
    if (pOldEnd->RemoveEdgeFromGroups(&edge, true))
        pOldEnd->AddEdgeToGroups(pNewEdge, false);
    pOldEnd->DecrementUse();
    DoubleCoedges(history, edge, *pNewEdge);

    pSplit->Regroup({edge.GetID(), pNewEdge->GetID()});
    if (edge.IsSmooth())
        pSplit->SetSmooth(true);
    InheritAttributes(edge, *pNewEdge);
    if (ppNewEdge)
        *ppNewEdge = pNewEdge;
    return pSplit;
}
} // namespace QRV
