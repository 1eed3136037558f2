#include "model/Shell.h"

#include "history/History.h"
#include "model/Body.h"
#include "model/Face.h"
#include "model/Finding.h"
#include "model/Lump.h"
#include "model/ObjectOf.inl"
#include "spatial/Measures.h"

#include <algorithm>

namespace QRV
{
template class ObjectOf<Shell, Object>;

Body* Shell::GetBody() const
{
    return m_pLump ? m_pLump->GetBody() : nullptr;
}

void Shell::SetLump(Lump* pLump)
{
    if (m_pLump == pLump)
        return;
    RecordChange();
    m_pLump = pLump;
}

void Shell::AddFaces(const std::vector<Face*>& aFaces)
{
    const Body* pBody = GetBody();
    bool bAnnounced = false;
    for (Face* pFace : aFaces)
    {
        if (pFace->GetShell())
            continue;
        if (!bAnnounced)
        {
            Changed(nBoxChanged);
            RecordChange();
            bAnnounced = true;
        }
        m_aFaces.Insert(pFace);
        pFace->SetShell(this);
        if (pBody)
            GetHistory()->GetBodyBoxMemo().NoteFaceTouched(*pBody, *pFace);
    }
}

void Shell::RemoveFace(Face* pFace)
{
    if (pFace->GetShell() != this)
        return;
    Changed(nBoxChanged);
    RecordChange();
    m_aFaces.Erase(pFace->GetID());
    pFace->SetShell(nullptr);
    const Body* pBody = GetBody();
    if (pBody && !pFace->GetCachedBox().isNull())
        GetHistory()->GetBodyBoxMemo().NoteFaceLeft(*pBody, pFace->GetCachedBox());
}

bool Shell::TakeFaces(const std::vector<Face*>& aFaces)
{
    std::vector<Face*> aMoving;
    for (Face* pFace : aFaces)
        if (pFace->GetShell() != this)
            aMoving.push_back(pFace);
    for (Face* pFace : aMoving)
        if (pFace->GetShell())
            pFace->GetShell()->RemoveFace(pFace);
    AddFaces(aMoving);
    return !aMoving.empty();
}

bool Shell::IsClosed() const
{
    if (m_aFaces.size() == 0)
        return false;
    std::vector<Face*> aComponent;
    ObjectSet seen;
    Face::Sheet sheet;
    sheet.bWithinShell = true;
    sheet.bStopWhenOpen = true;
    (*m_aFaces.begin())->GetConnectedComponent(aComponent, seen, sheet);
    return sheet.bClosed && aComponent.size() == m_aFaces.size();
}

Shell& Shell::ChooseForOutside()
{
    Body* pBody = GetBody();
    return pBody && IsClosed() ? pBody->AddShell() : *this;
}

bool Shell::GetSamplePoint(Point3d& p) const
{
    return std::any_of(m_aFaces.begin(), m_aFaces.end(), [&](Face* pFace) { return pFace->GetInteriorPoint(p); });
}

bool Shell::ContainsPoint(const Point3d& p, const Vector3d* pDirection) const
{
    return QRV::ContainsPoint(this, p, pDirection);
}

void Shell::Changed(unsigned nFlags)
{
    if ((nFlags & nBoxChanged) == nBoxChanged && m_pLump)
        m_pLump->Changed(nFlags);
}

void Shell::AddToBox(Interval3d& box) const
{
    for (const Face* pFace : m_aFaces)
        pFace->AddToBox(box);
}

Object* Shell::GetTopOwner() const
{
    return m_pLump ? m_pLump->GetTopOwner() : const_cast<Shell*>(this);
}

void Shell::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    for (Face* pFace : m_aFaces)
        if (seen.insert(pFace).second)
            aChildren.push_back(pFace);
    Object::GetChildren(aChildren, seen, bOwnedOnly);
}

void Shell::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    if (m_pLump && seen.insert(m_pLump).second)
        aParents.push_back(m_pLump);
}

std::size_t Shell::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    for (const Face* pFace : m_aFaces)
        if (pFace->GetShell() != this)
            nFindings += AddFinding(aResults, Result::nShellFaceOwner, this, pFace);
    // Faces of another owner are not asked whether they hang together.
    if (nFindings == 0 && m_aFaces.size() > 0)
    {
        std::vector<Face*> aComponent;
        ObjectSet seen;
        Face::Sheet sheet;
        sheet.bWithinShell = true;
        (*m_aFaces.begin())->GetConnectedComponent(aComponent, seen, sheet);
        if (!std::all_of(m_aFaces.begin(), m_aFaces.end(), [&](const Face* pFace) { return seen.contains(pFace); }))
            nFindings += AddFinding(aResults, Result::nShellNotConnected, this);
    }
    return nFindings + Object::CheckValidity(aResults);
}
} // namespace QRV
