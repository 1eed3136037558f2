#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Shell.h"
#include "model/Vertex.h"

namespace QRV
{
namespace
{
/// The edges at a vertex before something was taken from it, by id, since some of them may die.
struct KnownEdges
{
    std::uint64_t nVertexID;
    std::vector<std::uint64_t> aEdgeIDs;
};

std::vector<KnownEdges> NoteEdges(const std::vector<Vertex*>& aVertices)
{
    std::vector<KnownEdges> aKnown;
    ShortList<Edge*> aEdges;
    for (const Vertex* pVertex : aVertices)
    {
        aEdges.clear();
        pVertex->GetConnectedEdges(aEdges);
        KnownEdges& known = aKnown.emplace_back(KnownEdges{pVertex->GetID(), {}});
        known.aEdgeIDs.reserve(aEdges.size());
        for (const Edge* pEdge : aEdges)
            known.aEdgeIDs.push_back(pEdge->GetID());
    }
    return aKnown;
}

void RegroupKnown(const History& history, const std::vector<KnownEdges>& aKnown)
{
    for (const KnownEdges& known : aKnown)
        if (Vertex* pVertex = history.Get<Vertex>(known.nVertexID))
            pVertex->Regroup(known.aEdgeIDs);
}

/// Deletes a coedge; its edge stays, if need be as a free one.
void DeleteKeepingEdge(Coedge& coedge)
{
    Edge* pEdge = coedge.GetEdge();
    const bool bLastUse = pEdge && pEdge->GetUse() == 1;
    if (bLastUse)
        pEdge->IncrementUse(); // or the edge would die with its last coedge
    coedge.DeleteSelf();
    if (bLastUse)
        pEdge->DecrementUse(false);
}

void DeleteWithCoedges(Loop& loop, bool bKeepEdges)
{
    std::vector<Coedge*> aCoedges;
    loop.GetCoedges(aCoedges);
    for (Coedge* pCoedge : aCoedges)
    {
        if (bKeepEdges)
            DeleteKeepingEdge(*pCoedge);
        else
            pCoedge->DeleteSelf();
    }
    loop.DeleteSelf();
}
} // namespace

bool Face::Delete(bool bVertexCleanup, bool bKeepEdges)
{
    const History& history = *GetHistory();
    std::vector<Vertex*> aVertices;
    GetVertices(aVertices);
    const std::vector<KnownEdges> aKnown = NoteEdges(aVertices);

    if (m_pShell)
        m_pShell->RemoveFace(this);
    const std::vector<Loop*> aLoops = m_aLoops;
    for (Loop* pLoop : aLoops)
        DeleteWithCoedges(*pLoop, bKeepEdges);
    DeleteSelf(); // may free this face

    RegroupKnown(history, aKnown);
    if (bVertexCleanup)
        for (const KnownEdges& known : aKnown)
            if (Vertex* pVertex = history.Get<Vertex>(known.nVertexID))
                pVertex->RemoveIfRedundant();
    return true;
}

void Face::DeleteLoop(Loop* pLoop)
{
    if (!RemoveLoop(pLoop))
        return;
    std::vector<Vertex*> aVertices;
    pLoop->GetVertices(aVertices);
    const std::vector<KnownEdges> aKnown = NoteEdges(aVertices);
    DeleteWithCoedges(*pLoop, false);
    RegroupKnown(*GetHistory(), aKnown);
}
} // namespace QRV
