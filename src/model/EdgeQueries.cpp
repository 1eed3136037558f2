#include "geometry/Finite.h"
#include "geometry/Trigonometry.h"
#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/SmoothAngles.h"
#include "model/Vertex.h"
#include "spatial/OutlineSide.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QRV
{
namespace
{
/// The two coedges of an edge that has just two; null for others.
Coedge* GetOnlyPartner(const Coedge* pCoedge)
{
    Coedge* pPartner = pCoedge ? pCoedge->GetPartner() : nullptr;
    return pPartner && pPartner != pCoedge && pPartner->GetPartner() == pCoedge ? pPartner : nullptr;
}

/// Follows edges not marked smooth from vertex to vertex while just two meet there.
class EdgeChainWalk
{
public:
    EdgeChainWalk(std::vector<Edge*>& aEdges, bool bSmoothVerticesOnly)
        : m_aEdges(aEdges), m_bSmoothOnly(bSmoothVerticesOnly)
    {
    }

    /// Leaves `start` through `pVertex`; true when the chain comes back to `start`.
    bool Walk(Edge& start, const Vertex* pVertex)
    {
        Edge* pEdge = &start;
        while (Edge* pNext = FindNext(*pEdge, *pVertex))
        {
            if (pNext == &start)
                return true;
            m_aEdges.push_back(pNext);
            pVertex = pNext->GetOtherVertex(pVertex);
            pEdge = pNext;
        }
        return false;
    }

private:
    Edge* FindNext(const Edge& edge, const Vertex& vertex) const
    {
        ShortList<Edge*> aEdges;
        vertex.GetConnectedEdges(aEdges);
        aEdges.EraseIf([](const Edge* pEdge) { return pEdge->IsSmooth(); });
        if (aEdges.size() != 2)
            return nullptr;
        Edge* pNext = aEdges[0] == &edge ? aEdges[1] : aEdges[0];
        return !m_bSmoothOnly || (vertex.IsSmooth() && RunsOn(edge, *pNext)) ? pNext : nullptr;
    }

    static bool RunsOn(const Edge& a, const Edge& b)
    {
        const bool bInLine = a.GetEndVertex() == b.GetStartVertex() || b.GetEndVertex() == a.GetStartVertex();
        const double dCos = a.GetDirection() % b.GetDirection();
        return (bInLine ? dCos : -dCos) > kCosThirtyDegrees;
    }

    std::vector<Edge*>& m_aEdges;
    const bool m_bSmoothOnly;
};

/// Whether a direction away from the edge of two coedges runs behind the faces of both, clear of either.
bool IsBehind(const Coedge& first, const Coedge& second, const Vector3d& direction)
{
    if (first.IsForward() == second.IsForward())
        return false;
    const UnitVector3d normal = first.GetFace()->GetPlane().normal;
    const Vector3d inward = first.GetInward();
    const auto getTurn = [&](const Vector3d& v)
    { return TurnFromTan2(-(v % normal), v % inward, kPerpendicularTolerance); };
    return getTurn(direction) < getTurn(second.GetInward()) - kPerpendicularTolerance;
}
} // namespace

bool Edge::PassesUncut(const Plane& plane) const
{
    const auto getSide = [](const Edge& edge) {
        return OutlineSide{&edge.GetStartVertex()->GetPosition(), &edge.GetEndVertex()->GetPosition()};
    };
    const auto isIn = [&](const Edge& edge)
    {
        return IsOnPlane(edge.GetStartVertex()->GetPosition(), plane) &&
               IsOnPlane(edge.GetEndVertex()->GetPosition(), plane);
    };
    std::vector<Edge*> aNear;
    GetHistory()->GetEdgeTree().FindTouching(GetBox(), aNear);
    return std::any_of(aNear.begin(), aNear.end(),
                       [&](const Edge* pOther) {
                           return pOther != this && RunThrough(getSide(*this), getSide(*pOther), plane.normal) &&
                                  isIn(*pOther);
                       });
}

bool Edge::IsManifold() const
{
    const Coedge* pPartner = GetOnlyPartner(m_pCoedge);
    return pPartner && pPartner->GetLoop() != m_pCoedge->GetLoop();
}

bool Edge::IsMergeable(bool /*bCheckUV*/) const
{
    const Coedge* pPartner = GetOnlyPartner(m_pCoedge);
    if (!IsComplete() || !pPartner || pPartner->IsForward() == m_pCoedge->IsForward())
        return false;
    Face* pFace = m_pCoedge->GetFace();
    Face* pOther = pPartner->GetFace();
    if (!pFace || !pOther)
        return false;
    return pPartner->GetLoop() == m_pCoedge->GetLoop() ||
           pFace->GetPlane().isEqual(pOther->GetPlane(), kLinearTolerance, kParallelToleranceSqrd);
}

bool Edge::IsSilhouette(const Point3d& eye, const Vector3d& direction, bool bPerspective) const
{
    if (GetUse() <= 1)
        return true;
    const Coedge* pPartner = GetOnlyPartner(m_pCoedge);
    if (!pPartner || pPartner->GetLoop() == m_pCoedge->GetLoop())
        return false;
    Face* pFace = m_pCoedge->GetFace();
    Face* pOther = pPartner->GetFace();
    if (!pFace || !pOther)
        return true;
    const Vector3d view = bPerspective ? m_pStartVertex->GetPosition() - eye : direction;
    double s1 = view % pFace->GetPlane().normal;
    const double s2 = view % pOther->GetPlane().normal;
    if (pPartner->IsForward() == m_pCoedge->IsForward())
        s1 = -s1;
    return std::signbit(s1) != std::signbit(s2);
}

bool Edge::ContainsInterior(const Point3d& p, double dTol) const
{
    constexpr double kMinLengthSqrd = 1e-12;
    const Line3d line = GetLine();
    const double s = dTol * dTol * std::max(1.0, p.lengthSqrd());
    if (line.vector.lengthSqrd() < kMinLengthSqrd || p.distSqrd(line.point) < s ||
        p.distSqrd(line.GetPointFromParameter(1.0)) < s)
        return false;
    const double t = line.GetParameter(p);
    return t >= 1e-12 && t <= 0.999999999999 && p.distSqrd(line.GetPointFromParameter(t)) <= s;
}

nConvexity Edge::GetConvexity() const
{
    if (!m_pCoedge || !m_pCoedge->GetPartner())
        return nConvexityNone;
    const Coedge* pPartner = GetOnlyPartner(m_pCoedge);
    if (!pPartner || !m_pCoedge->GetFace() || !pPartner->GetFace())
        return nConvexityNonManifold;
    const UnitVector3d n1 = m_pCoedge->GetFace()->GetPlane().normal;
    const UnitVector3d n2 = pPartner->GetFace()->GetPlane().normal;
    if (std::abs(n1 % n2) > kCosHalfDegree)
        return nConvexityFlat;
    const UnitVector3d u(m_pCoedge->GetVector(), true);
    return TurnFromTan2(u % (n1 * n2), n1 % n2, 0.0) > std::numbers::pi ? nConvexityConcave : nConvexityConvex;
}

const Shell* Edge::FindShellAround(const Vector3d& direction, const Shell* pOnly) const
{
    ShortList<Coedge*> aCoedges;
    GetCoedges(aCoedges);
    if (pOnly)
        aCoedges.EraseIf([pOnly](const Coedge* p) { return !p->GetFace() || p->GetFace()->GetShell() != pOnly; });
    for (std::size_t i = 0; i < aCoedges.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
        {
            const Face* pFirst = aCoedges[i]->GetFace();
            const Face* pSecond = aCoedges[j]->GetFace();
            if (pFirst && pSecond && pFirst->GetBody() && pFirst->GetShell() == pSecond->GetShell() &&
                IsBehind(*aCoedges[i], *aCoedges[j], direction))
                return pFirst->GetShell();
        }
    return nullptr;
}

nEdgeFaceClass Edge::GetFaceClass() const
{
    switch (GetUse())
    {
    case 0:
        return nEdgeFree;
    case 1:
        return nEdgeBoundary;
    case 2:
        return m_pCoedge->GetFace() == m_pCoedge->GetPartner()->GetFace() ? nEdgeInsideFace : nEdgeManifold;
    default:
        return nEdgeNonManifold;
    }
}

bool Edge::HitByRay(const Line3d& ray, double& t, double dTol, double dMax, const Transf3d* pTransform) const
{
    t = -1.0;
    if (!IsComplete() || (!pTransform && !GetBox().intersectsRay(ray, dTol, dMax)))
        return false;
    const Line3d line = pTransform ? *pTransform * GetLine() : GetLine();
    Point3d p;
    double u = 0.0;
    if (!ray.intersectWithParameters(line, p, t, u, dTol))
        return false;
    return t >= -kLinearTolerance && t <= dMax + kLinearTolerance && u >= -kLinearTolerance &&
           u <= 1.0 + kLinearTolerance;
}

std::size_t Edge::GetEdgeChain(std::vector<Edge*>& aEdges, bool bSmoothVerticesOnly)
{
    if (IsSmooth())
        return 0;
    aEdges.push_back(this);
    EdgeChainWalk walk(aEdges, bSmoothVerticesOnly);
    if (!walk.Walk(*this, m_pStartVertex))
        walk.Walk(*this, m_pEndVertex);
    return aEdges.size();
}
} // namespace QRV
