#include "model/Coedge.h"

#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Finding.h"
#include "model/Loop.h"
#include "model/ObjectOf.inl"

#include <algorithm>

namespace QRV
{
template class ObjectOf<Coedge, Object>;

Face* Coedge::GetFace() const
{
    return m_pLoop ? m_pLoop->GetFace() : nullptr;
}

Vector3d Coedge::GetVector() const
{
    const Vertex* pStart = GetStartVertex();
    const Vertex* pEnd = GetEndVertex();
    return pStart && pEnd ? pEnd->GetPosition() - pStart->GetPosition() : Vector3d();
}

Vector3d Coedge::GetInward() const
{
    return GetFace()->GetPlane().normal * Vector3d(UnitVector3d(GetVector(), true));
}

Coedge* Coedge::GetNeighbourAt(const Vertex* pVertex) const
{
    return GetStartVertex() == pVertex ? m_pPrevious : m_pNext;
}

void Coedge::SetForward(bool bForward)
{
    if (m_bForward == bForward)
        return;
    RecordChange();
    m_bForward = bForward;
}

void Coedge::SetLoop(Loop* pLoop)
{
    if (m_pLoop == pLoop)
        return;
    RecordChange();
    m_pLoop = pLoop;
}

void Coedge::SetEdge(Edge* pEdge)
{
    if (m_pEdge == pEdge)
        return;
    RecordChange();
    Edge* pOld = m_pEdge;
    m_pEdge = pEdge;
    if (pEdge)
        pEdge->IncrementUse();
    if (pOld && pOld->GetHistoryID() == GetHistoryID())
        pOld->DecrementUse(true);
}

void Coedge::SetPartner(Coedge* pPartner)
{
    if (m_pPartner == pPartner)
        return;
    RecordChange();
    m_pPartner = pPartner;
}

void Coedge::SetNext(Coedge* pNext)
{
    if (m_pNext == pNext)
        return;
    RecordChange();
    m_pNext = pNext;
}

void Coedge::SetPrevious(Coedge* pPrevious)
{
    if (m_pPrevious == pPrevious)
        return;
    RecordChange();
    m_pPrevious = pPrevious;
}

void Coedge::Link(Coedge& a, Coedge& b)
{
    a.SetNext(&b);
    b.SetPrevious(&a);
}

void Coedge::Reverse()
{
    RecordChange();
    m_bForward = !m_bForward;
    std::swap(m_pNext, m_pPrevious);
}

void Coedge::Unlink()
{
    if (m_pLoop && m_pLoop->GetCoedge() == this)
        m_pLoop->SetCoedge(m_pNext == this ? nullptr : m_pNext);
    if (m_pPrevious && m_pNext && m_pNext != this)
        Link(*m_pPrevious, *m_pNext);
}

void Coedge::DeleteSelf()
{
    // This object may be freed by the base, and the edge with its last use: only locals are used behind it.
    Edge* pEdge = m_pEdge;
    const std::uint64_t nEdge = pEdge ? pEdge->GetID() : INVALID_ID;
    History* pHistory = GetHistory();
    if (pEdge)
    {
        ShortList<Coedge*> aChain;
        pEdge->GetCoedges(aChain);
        aChain.EraseIf([this](const Coedge* pOther) { return pOther == this; });
        if (aChain.size() <= 2)
            SetPartnerChain(aChain);
        else
        {
            Coedge* pBefore = this;
            while (pBefore->m_pPartner != this)
                pBefore = pBefore->m_pPartner;
            pBefore->SetPartner(m_pPartner);
        }
        if (pEdge->GetCoedge() == this)
            pEdge->SetCoedge(m_pPartner);
    }
    Object::DeleteSelf();
    if (pHistory && nEdge != INVALID_ID)
        if (auto* pLive = pHistory->Get<Edge>(nEdge))
            pLive->DecrementUse(true);
}

void Coedge::Changed(unsigned nFlags)
{
    if ((nFlags & nChangePropagate) && m_pLoop)
        m_pLoop->Changed(nFlags);
}

void Coedge::AddToBox(Interval3d& box) const
{
    if (m_pEdge)
        m_pEdge->AddToBox(box);
}

Object* Coedge::GetTopOwner() const
{
    return m_pLoop ? m_pLoop->GetTopOwner() : nullptr;
}

void Coedge::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    if (!bOwnedOnly && m_pEdge && seen.insert(m_pEdge).second)
        aChildren.push_back(m_pEdge);
    Object::GetChildren(aChildren, seen, bOwnedOnly);
}

void Coedge::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    if (m_pLoop && seen.insert(m_pLoop).second)
        aParents.push_back(m_pLoop);
}

bool Coedge::IsOnWalkOfLoop() const
{
    // Coedges that are linked are on the walk together or not at all. The lowest among its neighbours walks for the
    // others, so that the audit of a long loop does not go round it once for each coedge.
    const auto speaksForThis = [this](const Coedge* pNeighbour)
    { return pNeighbour && pNeighbour->m_pLoop == m_pLoop && pNeighbour->GetID() < GetID(); };
    if ((speaksForThis(m_pPrevious) && m_pPrevious->m_pNext == this) ||
        (speaksForThis(m_pNext) && m_pNext->m_pPrevious == this))
        return true;
    bool bFound = false;
    m_pLoop->ForEachCoedge([&](const Coedge& coedge) { bFound = bFound || &coedge == this; });
    return bFound;
}

std::size_t Coedge::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    if (!m_pEdge)
        nFindings += AddFinding(aResults, Result::nCoedgeNoEdge, this);
    if (m_pPartner && m_pPartner->m_pEdge != m_pEdge)
        nFindings += AddFinding(aResults, Result::nCoedgePartnerEdge, this, m_pPartner);
    if (m_pPrevious && m_pPrevious->m_pLoop != m_pLoop)
        nFindings += AddFinding(aResults, Result::nCoedgePreviousLoop, this, m_pPrevious);
    if (!m_pPrevious || m_pPrevious->m_pNext != this || m_pPrevious->GetEndVertex() != GetStartVertex())
        nFindings += AddFinding(aResults, Result::nCoedgePreviousMismatch, this, m_pPrevious);
    if (m_pNext && m_pNext->m_pLoop != m_pLoop)
        nFindings += AddFinding(aResults, Result::nCoedgeNextLoop, this, m_pNext);
    if (!m_pNext || m_pNext->m_pPrevious != this || m_pNext->GetStartVertex() != GetEndVertex())
        nFindings += AddFinding(aResults, Result::nCoedgeNextMismatch, this, m_pNext);
    if (m_pLoop && m_pLoop->GetCoedge() && !IsOnWalkOfLoop())
        nFindings += AddFinding(aResults, Result::nLoopCoedgeMismatch, m_pLoop, this);
    return nFindings + Object::CheckValidity(aResults);
}

void SetPartnerChain(std::span<Coedge* const> aCoedges)
{
    for (std::size_t i = 0; i < aCoedges.size(); ++i)
        aCoedges[i]->SetPartner(aCoedges.size() == 1 ? nullptr : aCoedges[(i + 1) % aCoedges.size()]);
}

void LinkLoop(const std::vector<Coedge*>& aCoedges)
{
    for (std::size_t i = 0; i < aCoedges.size(); ++i)
    {
        Coedge& behind = *aCoedges[(i + 1) % aCoedges.size()];
        if (aCoedges[i]->GetEndVertex() == behind.GetStartVertex())
            Coedge::Link(*aCoedges[i], behind);
    }
}
} // namespace QRV
