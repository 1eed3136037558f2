#include "model/Lump.h"

#include "history/History.h"
#include "model/Body.h"
#include "model/Finding.h"
#include "model/ObjectOf.inl"
#include "model/Shell.h"
#include "spatial/Measures.h"

#include <algorithm>

namespace QRV
{
template class ObjectOf<Lump, Object>;

namespace
{
bool IsVoidIn(const Shell& outer, const Shell& inner)
{
    Point3d p;
    return inner.GetVolume(nullptr) < -kVolumeTolerance && inner.GetSamplePoint(p) && outer.ContainsPoint(p);
}
} // namespace

void Lump::SetBody(Body* pBody)
{
    if (m_pBody == pBody)
        return;
    RecordChange();
    m_pBody = pBody;
}

void Lump::AddShell(Shell* pShell, bool bUpdateOld)
{
    if (std::find(m_aShells.begin(), m_aShells.end(), pShell) != m_aShells.end())
        return;
    if (bUpdateOld && pShell->GetLump())
        pShell->GetLump()->RemoveShell(pShell);
    NoteRestructured();
    RecordChange();
    m_aShells.push_back(pShell);
    pShell->SetLump(this);
}

void Lump::RemoveShell(Shell* pShell)
{
    const auto itShell = std::find(m_aShells.begin(), m_aShells.end(), pShell);
    if (itShell == m_aShells.end())
        return;
    NoteRestructured();
    RecordChange();
    m_aShells.erase(itShell);
    pShell->SetLump(nullptr);
}

void Lump::NoteRestructured()
{
    Changed(nBoxChanged);
    if (m_pBody)
        GetHistory()->GetBodyBoxMemo().NoteRestructured(*m_pBody);
}

bool Lump::ContainsPoint(const Point3d& p, const Vector3d* pDirection) const
{
    return QRV::ContainsPoint(this, p, pDirection);
}

void Lump::Changed(unsigned nFlags)
{
    if ((nFlags & nBoxChanged) == nBoxChanged && m_pBody)
        m_pBody->Changed(nFlags);
}

void Lump::AddToBox(Interval3d& box) const
{
    for (const Shell* pShell : m_aShells)
        pShell->AddToBox(box);
}

Object* Lump::GetTopOwner() const
{
    return m_pBody ? m_pBody->GetTopOwner() : const_cast<Lump*>(this);
}

void Lump::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    for (Shell* pShell : m_aShells)
        if (pShell && seen.insert(pShell).second)
            aChildren.push_back(pShell);
    Object::GetChildren(aChildren, seen, bOwnedOnly);
}

void Lump::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    if (m_pBody && seen.insert(m_pBody).second)
        aParents.push_back(m_pBody);
}

std::size_t Lump::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    for (const Shell* pShell : m_aShells)
        if (pShell->GetLump() != this)
            nFindings += AddFinding(aResults, Result::nLumpShellOwner, this, pShell);
    if (m_aShells.size() > 1 && m_aShells.front()->GetVolume(nullptr) >= kVolumeTolerance)
        for (std::size_t n = 1; n < m_aShells.size(); ++n)
            if (!IsVoidIn(*m_aShells.front(), *m_aShells[n]))
                nFindings += AddFinding(aResults, Result::nBadInnerShell, m_aShells.front(), m_aShells[n]);
    return nFindings + Object::CheckValidity(aResults);
}
} // namespace QRV
