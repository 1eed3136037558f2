#include "model/RebuildScope.h"

#include "model/Body.h"
#include "model/Coedge.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Loop.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "spatial/Measures.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
namespace
{
/// Calls `visit` with each other coedge along the edges of the faces of the shell.
template <class Visit>
void ForEachOtherCoedge(const Shell& shell, Visit visit)
{
    ShortList<Coedge*> aOnEdge;
    for (const Face* pFace : shell.GetFaces())
        for (const Loop* pLoop : pFace->GetLoops())
            pLoop->ForEachCoedge(
                [&](const Coedge& coedge)
                {
                    aOnEdge.clear();
                    coedge.GetEdge()->GetCoedges(aOnEdge);
                    for (const Coedge* pOther : aOnEdge)
                        if (pOther != &coedge)
                            visit(*pOther);
                });
}
} // namespace

double GetEnclosedVolume(const Shell& shell)
{
    return shell.IsClosed() ? GetSignedVolume({shell.GetFaces().begin(), shell.GetFaces().end()}) : 0.0;
}

bool IsVolume(double dVolume)
{
    return std::abs(dVolume) > kVolumeTolerance;
}

RebuildScope::RebuildScope(const Body& body) : m_body(body)
{
    for (const Lump* pLump : body.GetLumps())
        m_aShells.insert(m_aShells.end(), pLump->GetShells().begin(), pLump->GetShells().end());
}

RebuildScope::RebuildScope(const Body& body, const std::vector<Face*>& aFaces) : RebuildScope(body)
{
    if (m_aShells.size() > body.GetLumps().size())
        return;
    std::vector<Shell*> aAll;
    aAll.swap(m_aShells);
    for (const Face* pFace : aFaces)
        Reach(pFace);
    for (std::size_t n = 0; n < m_aShells.size(); ++n)
        if (!IsVolume(GetVolume(*m_aShells[n])) || HasOthersInside(*m_aShells[n]))
            ReachNeighbours(*m_aShells[n]);
    std::erase_if(aAll, [this](const Shell* pShell) { return !m_reached.contains(pShell); });
    m_aShells.swap(aAll);
}

double RebuildScope::GetVolume(const Shell& shell)
{
    const auto [it, bNew] = m_volumes.emplace(&shell, 0.0);
    if (bNew)
        it->second = GetEnclosedVolume(shell);
    return it->second;
}

bool RebuildScope::HasOthersInside(const Shell& shell) const
{
    bool bInside = false;
    ForEachOtherCoedge(shell,
                       [&](const Coedge& other)
                       {
                           bInside = bInside || (IsOther(other.GetFace(), shell) &&
                                                 other.GetEdge()->FindShellAround(other.GetInward()) == &shell);
                       });
    return bInside;
}

void RebuildScope::Reach(const Face* pFace)
{
    Shell* pShell = pFace ? pFace->GetShell() : nullptr;
    if (pShell && pShell->GetBody() == &m_body && m_reached.insert(pShell).second)
        m_aShells.push_back(pShell);
}

void RebuildScope::ReachNeighbours(const Shell& shell)
{
    ForEachOtherCoedge(shell, [&](const Coedge& other) { Reach(other.GetFace()); });
}

bool RebuildScope::IsOther(const Face* pFace, const Shell& shell) const
{
    const Shell* pOther = pFace ? pFace->GetShell() : nullptr;
    return pOther && pOther != &shell && pOther->GetBody() == &m_body;
}
} // namespace QRV
