#include "operations/SideSearch.h"

#include "geometry/Finite.h"
#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace QRV
{
namespace
{
constexpr double kInfinity = 1e30;

/// An edge gone along, with the region on the left.
struct SideOfEdge
{
    Edge* pEdge;
    bool bForward;

    Vertex* GetStart() const { return bForward ? pEdge->GetStartVertex() : pEdge->GetEndVertex(); }
    Vertex* GetEnd() const { return bForward ? pEdge->GetEndVertex() : pEdge->GetStartVertex(); }
    bool operator==(const SideOfEdge& other) const { return pEdge == other.pEdge && bForward == other.bForward; }
};

/// Grows with the turn from one direction to another: -2 to 2 for -pi to pi.
double GetTurnMeasure(double dCosine, double dSine)
{
    const double dSum = std::abs(dCosine) + std::abs(dSine);
    const double dTurn = dSum > 0.0 ? 1.0 - dCosine / dSum : 0.0;
    return dSine < 0.0 ? -dTurn : dTurn;
}

/// Follows the edges of a plane round the region on the left of one of them, out along dangling edges and back.
class OutlineWalk
{
public:
    OutlineWalk(const OpenSideMemo& memo, const Plane& plane, const SideOfEdge& first)
        : m_memo(memo), m_plane(plane), m_first(first), m_at(first), m_origin(first.GetStart()->GetPosition())
    {
        Note();
    }

    /// One edge onward. False when the next edge cannot be told, because one is neither clearly in the plane nor off it.
    bool Step()
    {
        Vertex* pVertex = m_at.GetEnd();
        const Vector3d travel = pVertex->GetPosition() - m_at.GetStart()->GetPosition();
        m_aEdgesAt.clear();
        pVertex->GetConnectedEdges(m_aEdgesAt);
        SideOfEdge next{m_at.pEdge, !m_at.bForward}; // at the tip of a dangling edge
        double dSharpest = -kInfinity;
        for (Edge* pEdge : m_aEdgesAt)
        {
            const SideOfEdge side{pEdge, pEdge->GetStartVertex() == pVertex};
            const Point3d& far = side.GetEnd()->GetPosition();
            const double dOff = std::abs(m_plane.dist(far));
            if (dOff > ScaledTolerance(far))
            {
                constexpr double kClearly = 1e-3;
                if (dOff < kClearly * far.dist(pVertex->GetPosition()))
                    return false;
                continue;
            }
            if (pEdge == m_at.pEdge)
                continue;
            const Vector3d onward = far - pVertex->GetPosition();
            const double dTurn = GetTurnMeasure(travel % onward, m_plane.normal % (travel * onward));
            if (dTurn <= dSharpest)
                continue;
            dSharpest = dTurn;
            next = side;
        }
        m_at = next;
        Note();
        return true;
    }

    const SideOfEdge& GetAt() const { return m_at; }
    const SideOfEdge& GetFirst() const { return m_first; }
    bool IsBack() const { return m_nSteps > 1 && m_at == m_first; }
    /// Twice the area around which it has gone, once it is back: positive when the region is inside.
    double GetArea() const { return m_dArea; }
    double GetExtent() const { return m_dExtent; }
    bool HasSeenOpen() const { return m_bSeenOpen; }
    /// The corner farthest out in a direction of the plane.
    const SideOfEdge& GetFarthest() const { return m_farthest; }
    Vector3d GetOutward() const { return m_plane.normal.perpend(); }

private:
    void Note()
    {
        ++m_nSteps;
        const Point3d& start = m_at.GetStart()->GetPosition();
        const Vector3d fromOrigin = start - m_origin;
        m_dArea += m_plane.normal % (fromOrigin * (m_at.GetEnd()->GetPosition() - m_origin));
        m_dExtent = std::max(m_dExtent, fromOrigin.lengthSqrd());
        m_bSeenOpen = m_bSeenOpen || m_memo.IsMarked(m_at.pEdge->GetID(), m_at.bForward, m_plane.normal);
        const double dOutward = fromOrigin % GetOutward();
        if (dOutward > m_dFarthest || m_nSteps == 1)
        {
            m_dFarthest = dOutward;
            m_farthest = m_at;
        }
    }

    const OpenSideMemo& m_memo;
    const Plane& m_plane;
    const SideOfEdge m_first;
    SideOfEdge m_at;
    const Point3d m_origin;
    SideOfEdge m_farthest{};
    double m_dFarthest = 0.0;
    double m_dArea = 0.0;
    double m_dExtent = 0.0; ///< squared
    std::size_t m_nSteps = 0;
    bool m_bSeenOpen = false;
    std::vector<Edge*> m_aEdgesAt;
};

/// Whether a ray in the plane meets nothing, or first an edge whose side towards it is known to be open.
bool SeesOpen(History& history, const Plane& plane, const Line3d& ray, const Edge& from, const Vertex* pFromVertex)
{
    if (history.HasTemporaryTrees())
        return false;
    double dNearest = kInfinity;
    const Edge* pNearest = nullptr;
    const double dTol = ScaledTolerance(ray.point);
    history.GetEdgeTree().Visit([&](const Interval3d& box) { return box.intersectsRay(ray, kLinearTolerance, dNearest); },
                                [&](const Edge* pEdge, const Interval3d&)
                                {
                                    double t = 0.0;
                                    if (pEdge == &from || (pFromVertex && pEdge->HasVertex(pFromVertex)) ||
                                        !pEdge->HitByRay(ray, t, dTol, dNearest))
                                        return true;
                                    dNearest = t;
                                    pNearest = pEdge;
                                    return true;
                                });
    if (!pNearest)
        return true;
    const bool bFromLeft = plane.normal % (pNearest->GetLine().vector * ray.vector) < 0.0;
    return history.GetOpenSides().IsMarked(pNearest->GetID(), bFromLeft, plane.normal);
}

bool SeesOpenFromMiddle(History& history, const Plane& plane, const SideOfEdge& side)
{
    const Vector3d along = side.GetEnd()->GetPosition() - side.GetStart()->GetPosition();
    return SeesOpen(history, plane, Line3d(side.pEdge->GetMidpoint(), plane.normal * along), *side.pEdge, nullptr);
}

/// From the farthest corner of an outline that runs round the outside.
bool SeesOpenFromAfar(History& history, const Plane& plane, const OutlineWalk& walk)
{
    const SideOfEdge& corner = walk.GetFarthest();
    return SeesOpen(history, plane, Line3d(corner.GetStart()->GetPosition(), walk.GetOutward()), *corner.pEdge,
                    corner.GetStart());
}

void MarkSide(OpenSideMemo& memo, const Plane& plane, const SideOfEdge& side)
{
    memo.Mark(side.pEdge->GetID(), side.bForward, plane.normal);
}

void MarkOutline(History& history, const Plane& plane, const SideOfEdge& first)
{
    OpenSideMemo& memo = history.GetOpenSides();
    OutlineWalk walk(memo, plane, first);
    do
        MarkSide(memo, plane, walk.GetAt());
    while (walk.Step() && !walk.IsBack());
}

/// +1 for a region inside the outline, -1 for one outside, 0 when it is too thin to tell.
int GetOrientation(const OutlineWalk& walk)
{
    const double dThin = 1e-9 * walk.GetExtent();
    return walk.GetArea() > dThin ? 1 : walk.GetArea() < -dThin ? -1 : 0;
}

/// Which sides of the edge have a face in the plane.
std::pair<bool, bool> GetFilledSides(const Edge& edge, const Plane& plane)
{
    bool bLeft = false;
    bool bRight = false;
    std::vector<Coedge*> aCoedges;
    edge.GetCoedges(aCoedges);
    for (const Coedge* pCoedge : aCoedges)
    {
        Face* pFace = pCoedge->GetFace();
        const int nSide = pFace ? pFace->GetSideIn(plane) : 0;
        const bool bSame = pCoedge->IsForward() == (nSide > 0);
        bLeft = bLeft || (nSide != 0 && bSame);
        bRight = bRight || (nSide != 0 && !bSame);
    }
    return {bLeft, bRight};
}
} // namespace

SideSearch::SideSearch(History& history, Edge& edge) : m_history(history), m_nEdge(edge.GetID()), m_pEdge(&edge) {}

bool SideSearch::MayEnclose(const Plane& plane, bool bLeft)
{
    const Sides& sides = FindSides(plane);
    const bool bSameDirection = sides.plane.normal % plane.normal > 0.0;
    return (bLeft == bSameDirection ? sides.nLeft : sides.nRight) != nFinding::nNothing;
}

const SideSearch::Sides& SideSearch::FindSides(const Plane& plane)
{
    for (const Sides& sides : m_aSides)
        if (ComparePlanes(sides.plane, plane) != 0)
            return sides;
    Sides& sides = m_aSides.emplace_back();
    sides.plane = plane;
    Follow(sides);
    return sides;
}

void SideSearch::Follow(Sides& sides)
{
    const auto [bLeftFilled, bRightFilled] = GetFilledSides(*m_pEdge, sides.plane);
    if (bLeftFilled)
        sides.nLeft = nFinding::nNothing;
    if (bRightFilled)
        sides.nRight = nFinding::nNothing;
    if (!bLeftFilled && !bRightFilled)
        FollowBoth(sides);
    else if (!bLeftFilled || !bRightFilled)
        FollowOne(sides, !bLeftFilled);
}

void SideSearch::FollowBoth(Sides& sides)
{
    const Plane& plane = sides.plane;
    OpenSideMemo& memo = m_history.GetOpenSides();
    OutlineWalk left(memo, plane, {m_pEdge, true});
    OutlineWalk right(memo, plane, {m_pEdge, false});
    OutlineWalk* pAhead = &left;
    OutlineWalk* pOther = &right;
    for (; pAhead->Step(); std::swap(pAhead, pOther))
    {
        const bool bSeenOpen = left.HasSeenOpen() || right.HasSeenOpen();
        if (pAhead->GetAt() == pOther->GetFirst())
        {
            // It has come round to the other side: the edge joins two sketches.
            sides.nLeft = sides.nRight = nFinding::nNothing;
            if (bSeenOpen)
                for (const bool bForward : {true, false})
                    MarkSide(memo, plane, {m_pEdge, bForward});
            return;
        }
        if (!pAhead->IsBack())
            continue;
        const int nOrientation = GetOrientation(*pAhead);
        if (nOrientation == 0)
            return;
        nFinding& nAhead = pAhead == &left ? sides.nLeft : sides.nRight;
        if (nOrientation < 0)
        {
            nAhead = nFinding::nNothing;
            (pAhead == &left ? sides.nRight : sides.nLeft) = nFinding::nEncloses;
            if (bSeenOpen || SeesOpenFromAfar(m_history, plane, *pAhead))
                MarkOutline(m_history, plane, pAhead->GetFirst());
            return;
        }
        nAhead = nFinding::nEncloses;
        if (bSeenOpen)
        {
            (pAhead == &left ? sides.nRight : sides.nLeft) = nFinding::nNothing;
            MarkSide(memo, plane, pOther->GetFirst());
        }
        else
            FollowOne(sides, pOther == &left);
        return;
    }
}

void SideSearch::FollowOne(Sides& sides, bool bLeft)
{
    const Plane& plane = sides.plane;
    OpenSideMemo& memo = m_history.GetOpenSides();
    const SideOfEdge first{m_pEdge, bLeft};
    nFinding& nFound = bLeft ? sides.nLeft : sides.nRight;
    OutlineWalk walk(memo, plane, first);
    bool bOpen = SeesOpenFromMiddle(m_history, plane, first);
    while (!bOpen && walk.Step() && !walk.IsBack())
        bOpen = walk.HasSeenOpen();
    if (bOpen)
    {
        nFound = nFinding::nNothing;
        MarkSide(memo, plane, first);
        return;
    }
    if (!walk.IsBack())
        return;
    const int nOrientation = GetOrientation(walk);
    if (nOrientation > 0)
        nFound = nFinding::nEncloses;
    else if (nOrientation < 0)
    {
        nFound = nFinding::nNothing;
        if (SeesOpenFromAfar(m_history, plane, walk))
            MarkOutline(m_history, plane, first);
    }
}

void SideSearch::NoteFaceFormed()
{
    const auto* pEdge = m_history.Get<Edge>(m_nEdge);
    for (Sides& sides : m_aSides)
    {
        const auto [bLeft, bRight] = pEdge ? GetFilledSides(*pEdge, sides.plane) : std::pair(false, false);
        if (bLeft)
            sides.nLeft = nFinding::nNothing;
        if (bRight)
            sides.nRight = nFinding::nNothing;
    }
}

void SideSearch::Finish()
{
    if (std::any_of(m_aSides.begin(), m_aSides.end(), [](const Sides& sides)
                    { return sides.nLeft == nFinding::nEncloses || sides.nRight == nFinding::nEncloses; }))
        m_history.GetOpenSides().Clear();
}
} // namespace QRV
