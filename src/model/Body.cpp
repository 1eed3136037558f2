#include "model/Body.h"

#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Finding.h"
#include "model/Lump.h"
#include "model/ObjectOf.inl"
#include "model/Shell.h"
#include "spatial/Measures.h"

#include <algorithm>

namespace QRV
{
template class ObjectOf<Body, Object>;

const Interval3d& Body::GetBox()
{
    if (!m_Box.isNull())
        return m_Box;
    Interval3d box;
    if (!GetHistory()->GetBodyBoxMemo().TakeBox(*this, *GetHistory(), box))
    {
        box = Interval3d();
        for (const Lump* pLump : m_aLumps)
            pLump->AddToBox(box);
    }
    if (!box.isNull())
    {
        RecordChange();
        m_Box = box;
    }
    return m_Box;
}

Lump& Body::AddLump()
{
    Lump& lump = GetHistory()->Create<Lump>();
    TakeLump(lump);
    return lump;
}

Shell& Body::AddShell()
{
    Shell& shell = GetHistory()->Create<Shell>();
    AddLump().AddShell(&shell, false);
    return shell;
}

void Body::TakeLump(Lump& lump)
{
    NoteRestructured();
    RecordChange();
    m_aLumps.push_back(&lump);
    lump.SetBody(this);
}

void Body::RemoveLump(Lump* pLump)
{
    const auto itLump = std::find(m_aLumps.begin(), m_aLumps.end(), pLump);
    if (itLump == m_aLumps.end())
        return;
    NoteRestructured();
    RecordChange();
    m_aLumps.erase(itLump);
    pLump->SetBody(nullptr);
}

void Body::NoteRestructured()
{
    Changed(nBoxChanged);
    GetHistory()->GetBodyBoxMemo().NoteRestructured(*this);
}

void Body::TakeLumps(Body& body)
{
    Changed(nShapeChanged);
    body.Changed(nShapeChanged);
    const std::vector<Lump*> aLumps = body.m_aLumps;
    for (Lump* pLump : aLumps)
    {
        body.RemoveLump(pLump);
        TakeLump(*pLump);
    }
    MergeAttributesFrom(*this, body, true);
}

void Body::GetBodyFaces(std::vector<Face*>& aFaces) const
{
    for (const Lump* pLump : m_aLumps)
        for (const Shell* pShell : pLump->GetShells())
            aFaces.insert(aFaces.end(), pShell->GetFaces().begin(), pShell->GetFaces().end());
}

void Body::GetBodyEdges(std::vector<Edge*>& aEdges) const
{
    std::vector<Face*> aFaces;
    GetBodyFaces(aFaces);
    ObjectSet seen;
    for (const Face* pFace : aFaces)
        for (const Loop* pLoop : pFace->GetLoops())
            pLoop->ForEachCoedge(
                [&](const Coedge& coedge)
                {
                    if (coedge.GetEdge() && seen.insert(coedge.GetEdge()).second)
                        aEdges.push_back(coedge.GetEdge());
                });
}

bool Body::AddFaceComponent(Face& face)
{
    Shell* pShell =
        m_aLumps.empty() || m_aLumps.front()->GetShells().empty() ? nullptr : m_aLumps.front()->GetShells().front();
    std::vector<Face*> aFaces;
    face.GetNeighbourComponent(aFaces, false, nullptr, false);
    if (std::any_of(aFaces.begin(), aFaces.end(),
                    [&](const Face* pFace) { return pFace->GetShell() && pFace->GetShell() != pShell; }))
        return false;
    std::erase_if(aFaces, [](const Face* pFace) { return pFace->GetShell() != nullptr; });
    if (aFaces.empty())
        return false;

    Changed(nShapeChanged);
    if (!pShell)
    {
        pShell = &GetHistory()->Create<Shell>();
        (m_aLumps.empty() ? AddLump() : *m_aLumps.front()).AddShell(pShell, false);
    }
    pShell->AddFaces(aFaces);
    return true;
}

bool Body::ContainsPoint(const Point3d& p, const Vector3d* pDirection) const
{
    return QRV::ContainsPoint(this, p, pDirection);
}

void Body::Changed(unsigned nFlags)
{
    if (!(nFlags & nChangeBox) || m_Box.isNull())
        return;
    RecordChange();
    GetHistory()->GetBodyBoxMemo().NoteBoxVoid(*this, m_Box);
    m_Box = Interval3d();
}

void Body::AddToBox(Interval3d& box) const
{
    box += const_cast<Body*>(this)->GetBox();
}

void Body::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    for (Lump* pLump : m_aLumps)
        if (pLump && seen.insert(pLump).second)
            aChildren.push_back(pLump);
    Object::GetChildren(aChildren, seen, bOwnedOnly);
}

void Body::Transform(const Transf3d& transform)
{
    if (m_Box.isNull() || transform.isIdentity())
        return;
    if (!transform.isRotation90DegreeMultiple())
    {
        NoteRestructured();
        return;
    }
    RecordChange();
    m_Box *= transform;
    GetHistory()->GetBodyBoxMemo().NoteRestructured(*this);
}

std::size_t Body::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    for (const Lump* pLump : m_aLumps)
        if (pLump->GetBody() != this)
            nFindings += AddFinding(aResults, Result::nBodyLumpOwner, this, pLump);
    if (!m_Box.isNull())
    {
        std::vector<Face*> aFaces;
        GetBodyFaces(aFaces);
        Interval3d box;
        for (const Face* pFace : aFaces)
            box += pFace->ComputeBox();
        if (!m_Box.isEqual(box, kCachedBoxToleranceSqrd))
            nFindings += AddFinding(aResults, Result::nBodyBadBox, this);
    }
    return nFindings + Object::CheckValidity(aResults);
}
} // namespace QRV
