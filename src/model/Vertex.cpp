#include "model/Vertex.h"

#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Finding.h"
#include "model/ObjectOf.inl"

#include <algorithm>
#include <optional>

namespace QRV
{
template class ObjectOf<Vertex, Object>;

namespace
{
/// Appends what is not in the list from `nFirst` on yet. Short lists are searched through; long ones keep a set.
template <class List>
class DistinctAppender
{
public:
    explicit DistinctAppender(List& aList) : m_aList(aList), m_nFirst(aList.size()) {}

    template <class T>
    bool Add(T* pElement)
    {
        constexpr std::size_t kLong = 32;
        const auto itFirst = m_aList.begin() + std::ptrdiff_t(m_nFirst);
        if (m_aList.size() - m_nFirst < kLong)
        {
            if (std::find(itFirst, m_aList.end(), pElement) != m_aList.end())
                return false;
        }
        else
        {
            if (!m_seen)
                m_seen.emplace(itFirst, m_aList.end());
            if (!m_seen->insert(pElement).second)
                return false;
        }
        m_aList.push_back(pElement);
        return true;
    }
    std::size_t GetCount() const { return m_aList.size() - m_nFirst; }

private:
    List& m_aList;
    const std::size_t m_nFirst;
    std::optional<ObjectSet> m_seen;
};

/// Calls `visit(Coedge&)` for each coedge on the partner chain of `first`.
template <class Visit>
void ForEachPartner(Coedge& first, Visit&& visit)
{
    constexpr int kMaxUse = 256;
    Coedge* pCoedge = &first;
    for (int n = 0; pCoedge && n < kMaxUse; ++n)
    {
        visit(*pCoedge);
        pCoedge = pCoedge->GetPartner();
        if (pCoedge == &first)
            return;
    }
}
} // namespace

void Vertex::SetSmooth(bool bSmooth)
{
    if (IsSmooth() == bSmooth)
        return;
    RecordChange();
    m_nUseAndFlags ^= kSmooth;
}

void Vertex::IncrementUse()
{
    RecordChange();
    ++m_nUseAndFlags;
}

void Vertex::DecrementUse()
{
    if (GetUse() <= 1)
    {
        DeleteSelf();
        return;
    }
    RecordChange();
    --m_nUseAndFlags;
}

void Vertex::SetUse(std::uint64_t nUse)
{
    if (GetUse() == nUse)
        return;
    RecordChange();
    m_nUseAndFlags = (m_nUseAndFlags & ~kUseMask) | (nUse & kUseMask);
}

std::size_t Vertex::GetConnectedEdges(ShortList<Edge*>& aEdges, Edge* pStart) const
{
    DistinctAppender edges(aEdges);
    std::size_t nNext = aEdges.size();
    // The list is its own worklist: each edge leads to its neighbours round the corners at this vertex.
    const auto addAround = [&]
    {
        for (; nNext < aEdges.size(); ++nNext)
            if (Coedge* pFirst = aEdges[nNext]->GetCoedge())
                ForEachPartner(*pFirst,
                               [&](const Coedge& coedge)
                               {
                                   const Coedge* pNeighbour = coedge.GetNeighbourAt(this);
                                   Edge* pEdge = pNeighbour ? pNeighbour->GetEdge() : nullptr;
                                   if (pEdge && pEdge->HasVertex(this))
                                       edges.Add(pEdge);
                               });
    };
    if (pStart && pStart->HasVertex(this))
    {
        edges.Add(pStart);
        addAround();
        return edges.GetCount();
    }
    for (Edge* pEntry : m_aEdgesPerGroup)
    {
        if (pEntry)
            edges.Add(pEntry);
        addAround();
    }
    return edges.GetCount();
}

std::size_t Vertex::GetCoedges(ShortList<Coedge*>& aCoedges, const Face* pOnly) const
{
    const std::size_t nBefore = aCoedges.size();
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    for (const Edge* pEdge : aEdges)
        if (Coedge* pFirst = pEdge->GetCoedge())
            ForEachPartner(*pFirst,
                           [&](Coedge& coedge)
                           {
                               if (!pOnly || coedge.GetFace() == pOnly)
                                   aCoedges.push_back(&coedge);
                           });
    return aCoedges.size() - nBefore;
}

std::size_t Vertex::GetFaces(ShortList<Face*>& aFaces) const
{
    DistinctAppender faces(aFaces);
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    for (const Edge* pEdge : aEdges)
        if (Coedge* pFirst = pEdge->GetCoedge())
            ForEachPartner(*pFirst,
                           [&](const Coedge& coedge)
                           {
                               if (Face* pFace = coedge.GetFace())
                                   faces.Add(pFace);
                           });
    return faces.GetCount();
}

Edge* Vertex::FindEdgeTo(const Vertex& other) const
{
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    Edge* pFound = nullptr;
    const auto isBetter = [](const Edge& a, const Edge& b)
    { return a.IsFree() != b.IsFree() ? b.IsFree() : a.GetID() < b.GetID(); };
    for (Edge* pEdge : aEdges)
        if (pEdge->GetOtherVertex(this) == &other && (!pFound || isBetter(*pEdge, *pFound)))
            pFound = pEdge;
    return pFound;
}

void Vertex::SetPosition(const Point3d& position)
{
    if (m_Position.distSqrd(position) < kPointToleranceSqrd)
        return;
    MoveTo(position);
    Changed(nMoved);
}

void Vertex::Transform(const Transf3d& transform)
{
    if (!transform.isIdentity())
        MoveTo(transform * m_Position);
}

void Vertex::MoveTo(const Point3d& position)
{
    GetHistory()->GetOuterSides().Clear();
    RecordChange();
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    for (Edge* pEdge : aEdges)
        pEdge->Changed(nChangeBox);
    RemoveFromSearch(); // by the box that it was entered with
    m_Position = position;
    AddToSearch();
}

void Vertex::Changed(unsigned nFlags)
{
    if (!(nFlags & nChangePropagate))
        return;
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    for (Edge* pEdge : aEdges)
        pEdge->Changed(nFlags);
}

bool Vertex::AddToSearch()
{
    GetHistory()->AddToTree(this);
    return true;
}

bool Vertex::RemoveFromSearch()
{
    return GetHistory()->RemoveFromTree(this);
}

std::size_t Vertex::GetTopOwners(std::vector<Object*>& aOwners) const
{
    DistinctAppender owners(aOwners);
    if (IsNonOwned())
        owners.Add(const_cast<Vertex*>(this));
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    for (const Edge* pEdge : aEdges)
    {
        std::vector<Object*> aOfEdge;
        pEdge->GetTopOwners(aOfEdge);
        for (Object* pTop : aOfEdge)
            owners.Add(pTop);
    }
    return owners.GetCount();
}

void Vertex::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    for (Edge* pEdge : aEdges)
        if (seen.insert(pEdge).second)
            aParents.push_back(pEdge);
}

std::size_t Vertex::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    for (const Edge* pEntry : m_aEdgesPerGroup)
        if (!pEntry || !pEntry->HasVertex(this))
            nFindings += AddFinding(aResults, Result::nVertexBadEdge, this, pEntry);
    for (Edge* pEntry : m_aEdgesPerGroup)
    {
        if (!pEntry || !pEntry->HasVertex(this))
            continue;
        ShortList<Edge*> aGroup;
        GetConnectedEdges(aGroup, pEntry);
        // Counted over the entries, since one edge may stand there twice.
        const auto nEntries = std::count_if(m_aEdgesPerGroup.begin(), m_aEdgesPerGroup.end(),
                                            [&](const Edge* pEdge)
                                            { return std::find(aGroup.begin(), aGroup.end(), pEdge) != aGroup.end(); });
        if (nEntries > 1)
        {
            nFindings += AddFinding(aResults, Result::nVertexOverlappingGroups, this);
            break;
        }
    }
    ShortList<Edge*> aEdges;
    GetConnectedEdges(aEdges);
    std::uint64_t nEnds = 0;
    for (const Edge* pEdge : aEdges)
        nEnds += std::uint64_t(pEdge->GetStartVertex() == this) + std::uint64_t(pEdge->GetEndVertex() == this);
    if (nEnds != GetUse())
        nFindings += AddFinding(aResults, Result::nVertexBadUseCount, this);
    return nFindings + Object::CheckValidity(aResults);
}
} // namespace QRV
