#include "model/OuterSideMemo.h"

#include <cmath>

namespace QRV
{
namespace
{
/// Normals of one plane through one edge, told from different corners.
constexpr double kSameDirectionCosine = 1.0 - 1e-9;
} // namespace

void OuterSideMemo::Mark(std::uint64_t nEdge, bool bLeft, const UnitVector3d& normal)
{
    Sides& sides = m_mapSides[nEdge];
    if (std::abs(sides.normal % normal) < kSameDirectionCosine)
        sides = {normal, false, false};
    const double dCosine = sides.normal % normal;
    (bLeft == (dCosine > 0.0) ? sides.bLeft : sides.bRight) = true;
}

bool OuterSideMemo::IsMarked(std::uint64_t nEdge, bool bLeft, const UnitVector3d& normal) const
{
    const auto it = m_mapSides.find(nEdge);
    if (it == m_mapSides.end())
        return false;
    const double dCosine = it->second.normal % normal;
    if (std::abs(dCosine) < kSameDirectionCosine)
        return false;
    return bLeft == (dCosine > 0.0) ? it->second.bLeft : it->second.bRight;
}

void OuterSideMemo::NoteEdgeMade(std::uint64_t nEdge) noexcept
{
    if (m_nEdgeMade != INVALID_ID)
        Clear();
    m_nEdgeMade = nEdge;
}

void OuterSideMemo::NoteFacesSought(std::uint64_t nEdge) noexcept
{
    if (m_nEdgeMade != INVALID_ID && m_nEdgeMade != nEdge)
        Clear();
    m_nEdgeMade = INVALID_ID;
}
} // namespace QRV
