#include "operations/OutlineWalk.h"

#include "geometry/Finite.h"
#include "model/Edge.h"
#include "model/OuterSideMemo.h"
#include "model/Vertex.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
namespace
{
/// Grows with the turn from one direction to another: -2 to 2 for -pi to pi.
double GetTurnMeasure(double dCosine, double dSine)
{
    const double dSum = std::abs(dCosine) + std::abs(dSine);
    const double dTurn = dSum > 0.0 ? 1.0 - dCosine / dSum : 0.0;
    return dSine < 0.0 ? -dTurn : dTurn;
}

/// The edge that turns off most to the left, other than `pExcept`; null for none. False when an edge is neither clearly
/// in the plane nor off it.
bool FindSharpestLeft(const Plane& plane, Vertex& vertex, const Vector3d& travel, const Edge* pExcept,
                      ShortList<Edge*>& aEdges, SideOfEdge& sharpest)
{
    constexpr double kClearly = 1e-3;
    constexpr double kBelowAnyTurn = -3.0;
    const Point3d& at = vertex.GetPosition();
    double dSharpest = kBelowAnyTurn;
    sharpest = {};
    aEdges.clear();
    vertex.GetConnectedEdges(aEdges);
    for (Edge* pEdge : aEdges)
    {
        const SideOfEdge side{pEdge, pEdge->GetStartVertex() == &vertex};
        const Point3d& far = side.GetEnd()->GetPosition();
        const double dOff = std::abs(plane.dist(far));
        const bool bInPlane = dOff <= ScaledTolerance(far);
        if (!bInPlane && dOff < kClearly * far.dist(at))
            return false;
        if (!bInPlane || pEdge == pExcept)
            continue;
        const Vector3d onward = far - at;
        const double dTurn = GetTurnMeasure(travel % onward, plane.normal % (travel * onward));
        if (dTurn <= dSharpest)
            continue;
        dSharpest = dTurn;
        sharpest = side;
    }
    return true;
}
} // namespace

Vertex* SideOfEdge::GetStart() const
{
    return bForward ? pEdge->GetStartVertex() : pEdge->GetEndVertex();
}

Vertex* SideOfEdge::GetEnd() const
{
    return bForward ? pEdge->GetEndVertex() : pEdge->GetStartVertex();
}

OutlineWalk::OutlineWalk(const Plane& plane, const SideOfEdge& first, const OuterSideMemo* pMemo)
    : m_plane(plane), m_pMemo(pMemo), m_first(first), m_at(first), m_origin(first.GetStart()->GetPosition())
{
    Note();
}

SideOfEdge OutlineWalk::FindSideFacing(const Plane& plane, Vertex& vertex, const Vector3d& direction)
{
    ShortList<Edge*> aEdges;
    SideOfEdge side;
    return FindSharpestLeft(plane, vertex, -direction, nullptr, aEdges, side) ? side : SideOfEdge();
}

bool OutlineWalk::Step()
{
    Vertex& vertex = *m_at.GetEnd();
    SideOfEdge next;
    if (!FindSharpestLeft(m_plane, vertex, vertex.GetPosition() - m_at.GetStart()->GetPosition(), m_at.pEdge,
                          m_aEdgesAt, next))
        return false;
    m_at = next.pEdge ? next : SideOfEdge{m_at.pEdge, !m_at.bForward}; // back from the tip of a dangling edge
    Note();
    // Edges that lie on one another lead into a round without the first. It is found on its second time past a mark.
    if (m_at == m_mark && !(m_at == m_first))
        return false;
    if ((m_nSteps & (m_nSteps - 1)) == 0)
        m_mark = m_at;
    return true;
}

void OutlineWalk::Note()
{
    ++m_nSteps;
    const Vector3d start = m_at.GetStart()->GetPosition() - m_origin;
    const Vector3d end = m_at.GetEnd()->GetPosition() - m_origin;
    m_dArea += m_plane.normal % (start * end);
    m_dExtent = std::max(m_dExtent, start.lengthSqrd());
    m_bSeenOuter = m_bSeenOuter || (m_pMemo && m_pMemo->IsMarked(m_at.pEdge->GetID(), m_at.bForward, m_plane.normal));
}

int OutlineWalk::GetOrientation() const
{
    constexpr double kThin = 1e-9;
    return m_dArea > kThin * m_dExtent ? 1 : m_dArea < -kThin * m_dExtent ? -1 : 0;
}
} // namespace QRV
