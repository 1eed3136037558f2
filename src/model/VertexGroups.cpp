#include "history/History.h"
#include "model/Coedge.h"
#include "model/Edge.h"
#include "model/Vertex.h"

#include <algorithm>
#include <span>

namespace QRV
{
namespace
{
bool Holds(std::span<Edge* const> aEdges, const Edge* pEdge)
{
    return std::find(aEdges.begin(), aEdges.end(), pEdge) != aEdges.end();
}

/// Another edge of the same group at the vertex; null when there is none.
Edge* FindSubstitute(const Vertex& vertex, const Edge& edge)
{
    ShortList<Coedge*> aCoedges;
    edge.GetCoedges(aCoedges);
    for (const Coedge* pCoedge : aCoedges)
    {
        const Coedge* pNeighbour = pCoedge->GetNeighbourAt(&vertex);
        Edge* pOther = pNeighbour ? pNeighbour->GetEdge() : nullptr;
        if (pOther && pOther != &edge && pOther->HasVertex(&vertex))
            return pOther;
    }
    return nullptr;
}
} // namespace

std::vector<std::uint64_t> Vertex::GetConnectedEdgeIDs() const
{
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    std::vector<std::uint64_t> aIDs;
    aIDs.reserve(aEdges.size());
    for (const Edge* pEdge : aEdges)
        aIDs.push_back(pEdge->GetID());
    return aIDs;
}

void Vertex::AddEdgeToGroups(Edge* pEdge, bool bOnlyIfEmpty)
{
    if (Holds(m_aEdgesPerGroup, pEdge) || (bOnlyIfEmpty && !m_aEdgesPerGroup.empty()))
        return;
    RecordChange();
    m_aEdgesPerGroup.push_back(pEdge);
}

bool Vertex::RemoveEdgeFromGroups(Edge* pEdge, bool bDeleting)
{
    const auto it = std::find(m_aEdgesPerGroup.begin(), m_aEdgesPerGroup.end(), pEdge);
    if (it == m_aEdgesPerGroup.end())
        return false;
    Edge* pSubstitute = bDeleting ? nullptr : FindSubstitute(*this, *pEdge);
    RecordChange();
    if (pSubstitute && !Holds(m_aEdgesPerGroup, pSubstitute))
        *it = pSubstitute;
    else
        m_aEdgesPerGroup.erase(it);
    return true;
}

bool Vertex::RebuildGroups(bool bForce)
{
    if (m_aEdgesPerGroup.size() < 2 && !bForce)
        return false;
    ShortList<Edge*> aKept;
    ShortList<Edge*> aReached;
    for (Edge* pEntry : m_aEdgesPerGroup)
    {
        if (!pEntry || !pEntry->HasVertex(this) || Holds(aReached, pEntry))
            continue;
        aKept.push_back(pEntry);
        GetConnectedEdges(aReached, pEntry);
    }
    if (aKept.size() == m_aEdgesPerGroup.size())
        return false;
    RecordChange();
    m_aEdgesPerGroup.assign(aKept.begin(), aKept.end());
    return true;
}

void Vertex::Regroup(const std::vector<std::uint64_t>& aKnownEdgeIDs)
{
    RebuildGroups(true);
    const History& history = *GetHistory();
    ShortList<Edge*> aReached;
    GetConnectedEdges(aReached);
    for (const std::uint64_t nEdge : aKnownEdgeIDs)
    {
        auto* pEdge = history.Get<Edge>(nEdge);
        if (!pEdge || !pEdge->HasVertex(this) || Holds(aReached, pEdge))
            continue;
        AddEdgeToGroups(pEdge, false);
        GetConnectedEdges(aReached, pEdge);
    }
}

bool Vertex::SplitIntoGroups(std::vector<Vertex*>& aVertices)
{
    if (m_aEdgesPerGroup.size() < 2)
        return false;
    History& history = *GetHistory();
    RecordChange();
    const std::vector<Edge*> aOthers(m_aEdgesPerGroup.begin() + 1, m_aEdgesPerGroup.end());
    Changed(nBoundaryChanged);
    for (Edge* pEntry : aOthers)
    {
        ShortList<Edge*> aGroup;
        GetConnectedEdges(aGroup, pEntry);
        Vertex& split = history.Create<Vertex>(m_Position);
        split.AddToSearch();
        split.SetSmooth(IsSmooth());
        split.AddEdgeToGroups(pEntry, false);
        RemoveEdgeFromGroups(pEntry, true);
        for (Edge* pEdge : aGroup)
        {
            pEdge->ReplaceVertex(this, &split, false);
            split.IncrementUse();
            DecrementUse();
        }
        aVertices.push_back(&split);
    }
    return true;
}
} // namespace QRV
