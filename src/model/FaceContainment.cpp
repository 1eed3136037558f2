#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/PointSide.h"
#include "model/SideWalk.h"
#include "model/Vertex.h"
#include "spatial/FaceFacets.h"

#include <cmath>

namespace QRV
{
namespace
{
/// Outlines up to this many sides are walked; of longer ones the tree gives the sides that a ray can cross.
constexpr std::size_t kMaxSidesToWalk = 48;

void PassEdge(PointSide& side, const Edge& edge)
{
    if (edge.IsComplete())
        side.Pass(edge.GetStartVertex()->GetPosition(), edge.GetEndVertex()->GetPosition());
}

/// The shortest way out of a face's box along one of the plane's two coordinates.
struct WayOut
{
    PlaneAxes axes;
    bool bAscending;
    Line3d line; ///< ends where the box does
};

WayOut FindWayOut(const Point3d& p, const UnitVector3d& normal, const Interval3d& box)
{
    WayOut way{PlaneAxes(normal), true, Line3d()};
    const PlaneAxes axes = way.axes;
    double dShortest = -1.0;
    for (const auto& [nU, nV] : {std::pair(axes.nU, axes.nV), {axes.nV, axes.nU}})
        for (const bool bAscending : {true, false})
        {
            const double dToEnd = bAscending ? box.upper[nU] - p[nU] : p[nU] - box.lower[nU];
            const double dLength = std::max(dToEnd, 0.0) + 4 * ScaledTolerance(p); // of some length, and over the end
            if (dShortest >= 0.0 && dLength >= dShortest)
                continue;
            dShortest = dLength;
            way.axes.nU = nU;
            way.axes.nV = nV;
            way.bAscending = bAscending;
        }
    const int nDominant = normal.dominantDirection();
    Vector3d onward;
    onward[way.axes.nU] = way.bAscending ? dShortest : -dShortest;
    onward[nDominant] = -onward[way.axes.nU] * normal[way.axes.nU] / normal[nDominant];
    way.line = Line3d(p, onward);
    return way;
}
} // namespace

nLoopSide Face::FindSide(const Point3d& p)
{
    const UnitVector3d normal = GetPlane().normal;
    History& history = *GetHistory();
    const std::size_t nMax = history.HasTemporaryTrees() ? std::size_t(-1) : kMaxSidesToWalk;
    PointSide walked(p, PlaneAxes(normal));
    const auto passSide = [&](const Coedge& coedge)
    {
        if (const Edge* pEdge = coedge.GetEdge())
            PassEdge(walked, *pEdge);
    };
    if (VisitSidesUpTo(*this, nMax, passSide))
        return walked.Get();

    const WayOut way = FindWayOut(p, normal, GetBox());
    PointSide crossed(p, way.axes, way.bAscending);
    const double dSlack = 2 * ScaledTolerance(p);
    history.GetEdgeTree().Visit([&](const Interval3d& box) { return box.intersectsRay(way.line, dSlack, 1.0); },
                                [&](const Edge* pEdge, const Interval3d&)
                                {
                                    for (std::size_t n = pEdge->GetUseBy(*this); n > 0; --n)
                                        PassEdge(crossed, *pEdge);
                                    return crossed.Get() != nLoopSide::nOn;
                                });
    return crossed.Get();
}

nLoopSide Face::FindSideInPlane(const Point3d& p)
{
    if (m_aLoops.empty() || !(GetBox() & p) || !IsOnPlane(p, GetPlane()))
        return nLoopSide::nOutside;
    return FindSide(p);
}

bool Face::ContainsPoint(const Point3d& p, bool bWide)
{
    if (!bWide && !m_pFacets)
        return FindSideInPlane(p) != nLoopSide::nOutside;
    if (!(GetBox() & p))
        return false;
    const FaceFacets* pFacets = GetFacets();
    return pFacets && pFacets->ContainsPoint(p, GetPlane(), bWide);
}

bool Face::ContainsPointInside(const Point3d& p)
{
    return FindSideInPlane(p) == nLoopSide::nInside;
}
} // namespace QRV
