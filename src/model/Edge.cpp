#include "model/Edge.h"

#include "history/History.h"
#include "model/Attribute.h"
#include "model/Face.h"
#include "model/Finding.h"
#include "model/ObjectOf.inl"
#include "model/Vertex.h"
#include "spatial/ShortList.h"

#include <algorithm>

namespace QRV
{
template class ObjectOf<Edge, Object>;

Edge* Edge::Create(Vertex* pStart, Vertex* pEnd, History& history, nGroupMode nGroups)
{
    if (!pStart || !pEnd || pStart == pEnd)
        return nullptr;
    Edge& edge = history.Create<Edge>();
    edge.m_pStartVertex = pStart;
    edge.m_pEndVertex = pEnd;
    pStart->IncrementUse();
    pEnd->IncrementUse();
    if (nGroups != nGroupMode::nNeither)
        pStart->AddEdgeToGroups(&edge, false);
    if (nGroups == nGroupMode::nBoth)
        pEnd->AddEdgeToGroups(&edge, false);
    edge.EnterSearch();
    history.GetOuterSides().NoteEdgeMade(edge.GetID());
    return &edge;
}

void Edge::SetSmooth(bool bSmooth)
{
    if (IsSmooth() == bSmooth)
        return;
    RecordChange();
    m_nFlagsAndUse ^= kSmooth;
}

Interval3d Edge::GetBox() const
{
    return IsComplete() ? Interval3d(m_pStartVertex->GetPosition(), m_pEndVertex->GetPosition()) : Interval3d();
}

Line3d Edge::GetLine() const
{
    return IsComplete() ? Line3d(m_pStartVertex->GetPosition(), m_pEndVertex->GetPosition()) : Line3d();
}

double Edge::GetLengthSqrd() const
{
    return GetLine().vector.lengthSqrd();
}

double Edge::GetLength() const
{
    return GetLine().vector.length();
}

UnitVector3d Edge::GetDirection() const
{
    return UnitVector3d(GetLine().vector, true);
}

Point3d Edge::GetMidpoint() const
{
    return GetLine().GetPointFromParameter(0.5);
}

// --- counts and links

std::uint64_t Edge::GetUseBy(const Face& face) const
{
    std::uint64_t nUses = 0;
    const Coedge* pCoedge = m_pCoedge;
    for (std::uint64_t n = GetUse(); n > 0 && pCoedge; --n)
    {
        nUses += pCoedge->GetFace() == &face;
        pCoedge = pCoedge->GetPartner();
    }
    return nUses;
}

bool Edge::IncrementUse()
{
    if (GetUse() == kUseMask)
        return false;
    RecordChange();
    ++m_nFlagsAndUse;
    if (GetUse() >= 3)
        SetSmooth(false);
    return true;
}

std::uint64_t Edge::DecrementUse(bool bDeleteAtZero)
{
    if (GetUse() == 1 && bDeleteAtZero)
    {
        DeleteSelf();
        return 0;
    }
    RecordChange();
    --m_nFlagsAndUse;
    return GetUse();
}

void Edge::SetCoedge(Coedge* pCoedge)
{
    if (m_pCoedge == pCoedge)
        return;
    RecordChange();
    m_pCoedge = pCoedge;
}

void Edge::SetVertex(Vertex* Edge::*pEnd, Vertex* pVertex, bool bFixGroups)
{
    Vertex* pOld = this->*pEnd;
    if (pOld == pVertex)
        return;
    Changed(nChangeBox);
    if (bFixGroups && pOld)
        pOld->RemoveEdgeFromGroups(this, false);
    RecordChange();
    this->*pEnd = pVertex;
    GetHistory()->AwaitSearch(*this);
    if (!bFixGroups || !pVertex)
        return;
    ShortList<Edge*> aReached;
    pVertex->GetConnectedEdges(aReached);
    if (std::find(aReached.begin(), aReached.end(), this) == aReached.end())
        pVertex->AddEdgeToGroups(this, false);
}

void Edge::SetStartVertex(Vertex* pVertex, bool bFixGroups)
{
    SetVertex(&Edge::m_pStartVertex, pVertex, bFixGroups);
}

void Edge::SetEndVertex(Vertex* pVertex, bool bFixGroups)
{
    SetVertex(&Edge::m_pEndVertex, pVertex, bFixGroups);
}

void Edge::ReplaceVertex(Vertex* pOld, Vertex* pNew, bool bFixGroups)
{
    if (m_pStartVertex == pOld)
        SetStartVertex(pNew, bFixGroups);
    if (m_pEndVertex == pOld)
        SetEndVertex(pNew, bFixGroups);
}

bool Edge::AddCoedge(Coedge& coedge)
{
    if (GetUse() == kUseMask)
        return false;
    coedge.SetEdge(this);
    if (!m_pCoedge)
    {
        SetCoedge(&coedge);
        coedge.SetPartner(nullptr);
        return true;
    }
    coedge.SetPartner(m_pCoedge->GetPartner() ? m_pCoedge->GetPartner() : m_pCoedge);
    m_pCoedge->SetPartner(&coedge);
    return true;
}

void Edge::EnterSearch()
{
    if (IsInSearch() || !IsComplete())
        return;
    RecordChange();
    m_nFlagsAndUse |= kInSearch;
    AddToSearch();
}

bool Edge::AddToSearch()
{
    if (!IsInSearch())
        return false;
    GetHistory()->AddToTree(this);
    return true;
}

bool Edge::RemoveFromSearch()
{
    return IsInSearch() && GetHistory()->RemoveFromTree(this);
}

void Edge::Changed(unsigned nFlags)
{
    if ((nFlags & nChangeBox) && IsInSearch())
    {
        RecordChange();
        GetHistory()->AwaitSearch(*this);
        RemoveFromSearch(); // behind all that may fail: the flag says that the edge stands in the tree
        m_nFlagsAndUse &= ~kInSearch;
    }
    if ((nFlags & nChangeAnalytic) && (nFlags & nChangePlane))
    {
        std::vector<Attribute*> aCurves;
        GetAttributesOfType(nCircleAttributeType, aCurves);
        GetAttributesOfType(nSplineCurveAttributeType, aCurves);
        bool bDeleted = false;
        for (Attribute* pCurve : aCurves)
            RemoveAttribute(pCurve, bDeleted);
    }
    if (!(nFlags & nChangePropagate))
        return;
    ShortList<Coedge*> aCoedges;
    GetCoedges(aCoedges);
    for (Coedge* pCoedge : aCoedges)
        pCoedge->Changed(nFlags);
}

void Edge::DeleteSelf()
{
    Vertex* pStart = m_pStartVertex;
    Vertex* pEnd = m_pEndVertex;
    for (Vertex* pVertex : {pStart, pEnd})
        if (pVertex)
            pVertex->RemoveEdgeFromGroups(this, false);
    Object::DeleteSelf(); // leaves the tree while its ends still stand
    for (Vertex* pVertex : {pStart, pEnd})
        if (pVertex)
            pVertex->DecrementUse();
}

// --- walks

std::size_t Edge::GetCoedges(ShortList<Coedge*>& aCoedges) const
{
    const std::size_t nBefore = aCoedges.size();
    Coedge* pCoedge = m_pCoedge;
    for (std::size_t n = 0; pCoedge && n <= kUseMask; ++n)
    {
        aCoedges.push_back(pCoedge);
        pCoedge = pCoedge->GetPartner();
        if (pCoedge == m_pCoedge)
            break;
    }
    return aCoedges.size() - nBefore;
}

std::size_t Edge::GetLoops(std::vector<Loop*>& aLoops) const
{
    const std::size_t nBefore = aLoops.size();
    ShortList<Coedge*> aCoedges;
    GetCoedges(aCoedges);
    for (const Coedge* pCoedge : aCoedges)
    {
        Loop* pLoop = pCoedge->GetLoop();
        if (pLoop && std::find(aLoops.begin() + std::ptrdiff_t(nBefore), aLoops.end(), pLoop) == aLoops.end())
            aLoops.push_back(pLoop);
    }
    return aLoops.size() - nBefore;
}

std::size_t Edge::GetFaces(ShortList<Face*>& aFaces) const
{
    const std::size_t nBefore = aFaces.size();
    const Coedge* pCoedge = m_pCoedge;
    for (std::size_t n = 0; pCoedge && n <= kUseMask; ++n)
    {
        Face* pFace = pCoedge->GetFace();
        if (pFace && std::find(aFaces.begin() + std::ptrdiff_t(nBefore), aFaces.end(), pFace) == aFaces.end())
            aFaces.push_back(pFace);
        pCoedge = pCoedge->GetPartner();
        if (pCoedge == m_pCoedge)
            break;
    }
    return aFaces.size() - nBefore;
}

void Edge::AddToBox(Interval3d& box) const
{
    box += GetBox();
}

Object* Edge::GetTopOwner() const
{
    return m_pCoedge ? m_pCoedge->GetTopOwner() : const_cast<Edge*>(this);
}

std::size_t Edge::GetTopOwners(std::vector<Object*>& aOwners) const
{
    const std::size_t nBefore = aOwners.size();
    if (IsFree())
        aOwners.push_back(const_cast<Edge*>(this));
    ShortList<Coedge*> aCoedges;
    GetCoedges(aCoedges);
    for (const Coedge* pCoedge : aCoedges)
    {
        Object* pTop = pCoedge->GetTopOwner();
        if (pTop && std::find(aOwners.begin() + std::ptrdiff_t(nBefore), aOwners.end(), pTop) == aOwners.end())
            aOwners.push_back(pTop);
    }
    return aOwners.size() - nBefore;
}

void Edge::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    if (!bOwnedOnly)
        for (Vertex* pVertex : {m_pStartVertex, m_pEndVertex})
            if (pVertex && seen.insert(pVertex).second)
                aChildren.push_back(pVertex);
    Object::GetChildren(aChildren, seen, bOwnedOnly);
}

void Edge::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    std::vector<Loop*> aLoops;
    GetLoops(aLoops);
    for (Loop* pLoop : aLoops)
        if (seen.insert(pLoop).second)
            aParents.push_back(pLoop);
}

void Edge::ReplaceReferences(const ObjectMap& map)
{
    for (Vertex* Edge::*pEnd : {&Edge::m_pStartVertex, &Edge::m_pEndVertex})
    {
        Vertex* pOld = this->*pEnd;
        auto* pNew = dynamic_cast<Vertex*>(FieldValue::FindReplacement(pOld, map));
        if (pNew == pOld)
            continue;
        if (pNew)
            pNew->IncrementUse();
        SetVertex(pEnd, pNew, false);
        if (pOld && pOld->GetHistoryID() == GetHistoryID())
            pOld->DecrementUse();
    }
    SetCoedge(dynamic_cast<Coedge*>(FieldValue::FindReplacement(m_pCoedge, map)));
    ReplaceAttributeReferences(map);
}

std::size_t Edge::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    if (!IsComplete())
        nFindings += AddFinding(aResults, Result::nEdgeIncomplete, this);
    ShortList<Coedge*> aCoedges;
    GetCoedges(aCoedges);
    for (const Coedge* pCoedge : aCoedges)
        if (pCoedge->GetEdge() != this)
            nFindings += AddFinding(aResults, Result::nEdgeBrokenPartnerChain, this, pCoedge);
    if (aCoedges.size() > 2 && !aCoedges.back()->GetPartner())
        nFindings += AddFinding(aResults, Result::nEdgeBrokenPartnerChain, this, aCoedges.back());
    if (aCoedges.size() != GetUse())
        nFindings += AddFinding(aResults, Result::nEdgeBadUseCount, this);
    return nFindings + Object::CheckValidity(aResults);
}
} // namespace QRV
