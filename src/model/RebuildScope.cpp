#include "model/RebuildScope.h"

#include "model/Body.h"
#include "model/Coedge.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Loop.h"
#include "model/Lump.h"
#include "spatial/Measures.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
namespace
{
/// Calls `visit` with each coedge of the faces of the shell and each other coedge on its edge.
template <class Visit>
void ForEachPair(const Shell& shell, Visit visit)
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
                            visit(coedge, *pOther);
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
    ReachAll();
    Spread();
}

RebuildScope::RebuildScope(const Body& body, const std::vector<Face*>& aFaces) : m_body(body)
{
    const std::vector<Lump*>& aLumps = body.GetLumps();
    if (std::any_of(aLumps.begin(), aLumps.end(), [](const Lump* pLump) { return pLump->GetShells().size() > 1; }))
        ReachAll();
    for (const Face* pFace : aFaces)
        Reach(pFace->GetShell());
    Spread();
}

double RebuildScope::GetVolume(const Shell& shell)
{
    const auto [it, bNew] = m_volumes.emplace(&shell, 0.0);
    if (bNew)
        it->second = GetEnclosedVolume(shell);
    return it->second;
}

void RebuildScope::ReachAll()
{
    for (const Lump* pLump : m_body.GetLumps())
        for (Shell* pShell : pLump->GetShells())
            Reach(pShell);
}

void RebuildScope::Reach(Shell* pShell)
{
    if (pShell && pShell->GetBody() == &m_body && m_reached.insert(pShell).second)
        m_aShells.push_back(pShell);
}

void RebuildScope::Spread()
{
    for (std::size_t n = 0; n < m_aShells.size(); ++n)
        if (!IsVolume(GetVolume(*m_aShells[n])))
            ReachFromOpen(*m_aShells[n]);
    m_aShells.clear();
    for (const Lump* pLump : m_body.GetLumps())
        for (Shell* pShell : pLump->GetShells())
            if (m_reached.contains(pShell))
                m_aShells.push_back(pShell);
}

void RebuildScope::ReachFromOpen(const Shell& shell)
{
    ForEachPair(shell,
                [&](const Coedge& own, const Coedge& other)
                {
                    Shell* pOther = other.GetFace() ? other.GetFace()->GetShell() : nullptr;
                    if (!pOther || pOther == &shell || pOther->GetBody() != &m_body)
                        return;
                    Reach(pOther);
                    if (IsVolume(GetVolume(*pOther)) && own.GetEdge()->FindShellAround(own.GetInward(), pOther) &&
                        m_withOpenInside.insert(pOther).second)
                        ReachNeighbours(*pOther);
                });
}

void RebuildScope::ReachNeighbours(const Shell& shell)
{
    ForEachPair(shell,
                [&](const Coedge&, const Coedge& other)
                {
                    if (const Face* pFace = other.GetFace())
                        Reach(pFace->GetShell());
                });
}
} // namespace QRV
