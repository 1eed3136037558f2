#include "operations/SideSearch.h"

#include "geometry/Finite.h"
#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace QRV
{
namespace
{
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
    OutlineWalk(const OuterSideMemo& memo, const Plane& plane, const SideOfEdge& first)
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
        double dSharpest = -3.0; // below any turn
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
    bool HasSeenOuter() const { return m_bSeenOuter; }

private:
    void Note()
    {
        ++m_nSteps;
        const Point3d& start = m_at.GetStart()->GetPosition();
        const Vector3d fromOrigin = start - m_origin;
        m_dArea += m_plane.normal % (fromOrigin * (m_at.GetEnd()->GetPosition() - m_origin));
        m_dExtent = std::max(m_dExtent, fromOrigin.lengthSqrd());
        m_bSeenOuter = m_bSeenOuter || m_memo.IsMarked(m_at.pEdge->GetID(), m_at.bForward, m_plane.normal);
    }

    const OuterSideMemo& m_memo;
    const Plane& m_plane;
    const SideOfEdge m_first;
    SideOfEdge m_at;
    const Point3d m_origin;
    double m_dArea = 0.0;
    double m_dExtent = 0.0; ///< squared
    std::size_t m_nSteps = 0;
    bool m_bSeenOuter = false;
    std::vector<Edge*> m_aEdgesAt;
};

void MarkSide(OuterSideMemo& memo, const Plane& plane, const SideOfEdge& side)
{
    memo.Mark(side.pEdge->GetID(), side.bForward, plane.normal);
}

void MarkOutline(History& history, const Plane& plane, const SideOfEdge& first)
{
    OuterSideMemo& memo = history.GetOuterSides();
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
/// An edge joins two sketches: one walk has gone round all of the first, the other along a part of the second.
void NoteBridge(History& history, const Plane& plane, const OutlineWalk& first, const OutlineWalk& second)
{
    OuterSideMemo& memo = history.GetOuterSides();
    if (GetOrientation(first) > 0)
        return memo.Clear(); // the second sketch lies in an empty region now joined to it
    if (second.HasSeenOuter())
    {
        MarkSide(memo, plane, first.GetFirst());
        MarkSide(memo, plane, second.GetFirst());
        return;
    }
    if (!first.HasSeenOuter())
        return;
    // What is known of the first holds on if the second is seen from outside too.
    OutlineWalk walk(memo, plane, second.GetFirst());
    bool bGoesOn = true;
    while (bGoesOn && !walk.HasSeenOuter() && !(walk.GetAt() == first.GetFirst()))
        bGoesOn = walk.Step();
    if (walk.GetAt() == first.GetFirst() && GetOrientation(walk) < 0)
        MarkOutline(history, plane, second.GetFirst());
    else if (!walk.HasSeenOuter() || walk.GetAt() == first.GetFirst())
        memo.Clear();
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
    if (!bLeftFilled && !bRightFilled)
        return FollowBoth(sides);
    sides.nLeft = bLeftFilled ? nFinding::nNothing : FollowOne(sides.plane, true);
    sides.nRight = bRightFilled ? nFinding::nNothing : FollowOne(sides.plane, false);
}

void SideSearch::FollowBoth(Sides& sides)
{
    const Plane& plane = sides.plane;
    OuterSideMemo& memo = m_history.GetOuterSides();
    OutlineWalk left(memo, plane, {m_pEdge, true});
    OutlineWalk right(memo, plane, {m_pEdge, false});
    OutlineWalk* pAhead = &left;
    OutlineWalk* pOther = &right;
    while (pAhead->Step())
    {
        if (pAhead->GetAt() == pOther->GetFirst())
        {
            // It has come round to the other side: the edge joins two sketches.
            sides.nLeft = sides.nRight = nFinding::nNothing;
            return NoteBridge(m_history, plane, *pAhead, *pOther);
        }
        const int nOrientation = pAhead->IsBack() ? GetOrientation(*pAhead) : 0;
        if (nOrientation != 0)
        {
            nFinding& nAhead = pAhead == &left ? sides.nLeft : sides.nRight;
            nFinding& nOther = pAhead == &left ? sides.nRight : sides.nLeft;
            nAhead = nOrientation > 0 ? nFinding::nEncloses : nFinding::nNothing;
            if (nOrientation < 0)
            {
                nOther = nFinding::nEncloses;
                MarkOutline(m_history, plane, pAhead->GetFirst());
            }
            else if (left.HasSeenOuter() || right.HasSeenOuter())
            {
                nOther = nFinding::nNothing;
                MarkSide(memo, plane, pOther->GetFirst());
            }
            else
                nOther = FollowOne(plane, pOther == &left);
            return;
        }
        if (pAhead->IsBack())
            break;
        std::swap(pAhead, pOther);
    }
    memo.Clear(); // it cannot be told what the edge has done to the outlines
}

SideSearch::nFinding SideSearch::FollowOne(const Plane& plane, bool bLeft)
{
    OuterSideMemo& memo = m_history.GetOuterSides();
    OutlineWalk walk(memo, plane, {m_pEdge, bLeft});
    while (!walk.HasSeenOuter() && walk.Step() && !walk.IsBack()) {}
    if (walk.HasSeenOuter())
    {
        MarkSide(memo, plane, walk.GetFirst());
        return nFinding::nNothing;
    }
    const int nOrientation = walk.IsBack() ? GetOrientation(walk) : 0;
    if (nOrientation == 0)
        memo.Clear();
    if (nOrientation < 0)
        MarkOutline(m_history, plane, walk.GetFirst());
    return nOrientation > 0 ? nFinding::nEncloses : nOrientation < 0 ? nFinding::nNothing : nFinding::nUnknown;
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
        m_history.GetOuterSides().Clear();
}
} // namespace QRV
