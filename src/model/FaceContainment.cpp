#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/PointSide.h"
#include "model/SideWalk.h"
#include "model/Vertex.h"
#include "spatial/FaceFacets.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

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
/// Looks for the side of a face that a ray from a point to the end of the face's box crosses first: the face lies on
/// the left of its sides, so that one tells whether the point is inside. Of a face with many sides few have to be
/// looked at.
class NearestCrossing
{
public:
    NearestCrossing(Face& face, const Point3d& p, const WayOut& way)
        : m_face(face), m_p(p), m_way(way), m_on(p, way.axes, way.bAscending),
          m_dScale(std::max({1.0, face.GetBox().lower.lengthRect(), face.GetBox().upper.lengthRect()}))
    {
    }

    /// None when crossings lie too near to one another to be told apart.
    std::optional<nLoopSide> Find(const BoxTree<Edge>& tree)
    {
        constexpr double kFirstPart = 1.0 / 32;
        constexpr double kGrowth = 8.0;
        const double dLength = std::abs(m_way.line.vector[m_way.axes.nU]);
        for (double dPart = kFirstPart;; dPart *= kGrowth)
        {
            Look(tree, std::min(dPart, 1.0));
            if (m_on.Get() == nLoopSide::nOn)
                return nLoopSide::nOn;
            if (!m_bClear || (dPart >= 1.0 && m_dNearest == kNone))
                return m_bClear ? std::optional(nLoopSide::nOutside) : std::nullopt;
            if (m_dNearest + GetApart() < std::min(dPart, 1.0) * dLength || dPart >= 1.0)
                return m_dSecond - m_dNearest > GetApart() ? std::optional(m_nSide) : std::nullopt;
        }
    }

private:
    static constexpr double kNone = std::numeric_limits<double>::infinity();

    /// Crossings no farther apart than this may be one, at a corner.
    double GetApart() const
    {
        constexpr double kApart = 1e-9;
        return kApart * m_dScale;
    }

    void Look(const BoxTree<Edge>& tree, double dPart)
    {
        m_dNearest = m_dSecond = kNone;
        const Interval3d part =
            GetEnlarged(Interval3d(m_p, m_way.line.GetPointFromParameter(dPart)), 4 * kLinearTolerance * m_dScale);
        tree.Visit([&](const Interval3d& box) { return box & part; },
                   [&](const Edge* pEdge, const Interval3d&)
                   {
                       Pass(*pEdge);
                       return m_bClear && m_on.Get() != nLoopSide::nOn;
                   });
    }

    void Pass(const Edge& edge)
    {
        const std::uint64_t nUses = edge.GetUseBy(m_face);
        if (nUses == 0 || !edge.IsComplete())
            return;
        PassEdge(m_on, edge);
        m_bClear = m_bClear && nUses <= 2;
        if (nUses == 1)
            Cross(*FindCoedge(edge));
    }

    const Coedge* FindCoedge(const Edge& edge) const
    {
        const Coedge* pCoedge = edge.GetCoedge();
        while (pCoedge->GetFace() != &m_face)
            pCoedge = pCoedge->GetPartner();
        return pCoedge;
    }

    void Cross(const Coedge& coedge)
    {
        const auto [nU, nV] = m_way.axes;
        const Point3d& a = coedge.GetStartVertex()->GetPosition();
        const Point3d& b = coedge.GetEndVertex()->GetPosition();
        const bool bRises = b[nV] > m_p[nV];
        if ((a[nV] > m_p[nV]) == bRises)
            return;
        const double dAlong = a[nU] + (m_p[nV] - a[nV]) / (b[nV] - a[nV]) * (b[nU] - a[nU]) - m_p[nU];
        const double dAway = m_way.bAscending ? dAlong : -dAlong;
        if (dAway < 0.0)
            return;
        if (dAway < m_dNearest)
        {
            m_nSide = bRises == IsInsideLeftOfRising() ? nLoopSide::nInside : nLoopSide::nOutside;
            m_dSecond = m_dNearest;
            m_dNearest = dAway;
        }
        else
            m_dSecond = std::min(m_dSecond, dAway);
    }

    /// Whether the ray comes from the left when it crosses a side that rises.
    bool IsInsideLeftOfRising() const
    {
        const auto [nU, nV] = m_way.axes;
        const bool bCyclic = nV == (nU + 1) % 3;
        const bool bSeenFromAbove = m_face.GetCachedPlane().normal[3 - nU - nV] > 0.0;
        return (bCyclic == bSeenFromAbove) == m_way.bAscending;
    }

    Face& m_face;
    const Point3d& m_p;
    const WayOut& m_way;
    PointSide m_on; ///< tells whether the point lies on a side
    const double m_dScale;
    bool m_bClear = true;
    double m_dNearest = kNone;
    double m_dSecond = kNone;
    nLoopSide m_nSide = nLoopSide::nOutside;
};
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
    if (const std::optional<nLoopSide> side = NearestCrossing(*this, p, way).Find(history.GetEdgeTree()))
        return *side;
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
