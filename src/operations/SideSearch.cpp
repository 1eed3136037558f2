#include "operations/SideSearch.h"

#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "operations/OutlineWalk.h"

#include <algorithm>
#include <utility>

namespace QRV
{
namespace
{
void MarkSide(OuterSideMemo& memo, const Plane& plane, const SideOfEdge& side)
{
    memo.Mark(side.pEdge->GetID(), side.bForward, plane.normal);
}

void MarkOutline(History& history, const Plane& plane, const SideOfEdge& first)
{
    OuterSideMemo& memo = history.GetOuterSides();
    OutlineWalk walk(plane, first);
    do
        MarkSide(memo, plane, walk.GetAt());
    while (walk.Step() && !walk.IsBack());
}

/// Which sides of the edge have a face in the plane.
std::pair<bool, bool> GetFilledSides(const Edge& edge, const Plane& plane)
{
    bool bLeft = false;
    bool bRight = false;
    ShortList<Coedge*> aCoedges;
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
    if (first.GetOrientation() > 0)
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
    OutlineWalk walk(plane, second.GetFirst(), &memo);
    bool bGoesOn = true;
    while (bGoesOn && !walk.HasSeenOuter() && !(walk.GetAt() == first.GetFirst()))
        bGoesOn = walk.Step();
    if (walk.GetAt() == first.GetFirst() && walk.GetOrientation() < 0)
        MarkOutline(history, plane, second.GetFirst());
    else if (!walk.HasSeenOuter() || walk.GetAt() == first.GetFirst())
        memo.Clear();
}
} // namespace

SideSearch::SideSearch(History& history, const Edge& edge) : m_history(history), m_nEdge(edge.GetID()) {}

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
    auto* pEdge = m_history.Get<Edge>(m_nEdge);
    if (!pEdge)
        return;
    const auto [bLeftFilled, bRightFilled] = GetFilledSides(*pEdge, sides.plane);
    if (!bLeftFilled && !bRightFilled)
        return FollowBoth(*pEdge, sides);
    sides.nLeft = bLeftFilled ? nFinding::nNothing : FollowOne(sides.plane, {pEdge, true});
    sides.nRight = bRightFilled ? nFinding::nNothing : FollowOne(sides.plane, {pEdge, false});
}

void SideSearch::FollowBoth(Edge& edge, Sides& sides)
{
    const Plane& plane = sides.plane;
    OuterSideMemo& memo = m_history.GetOuterSides();
    OutlineWalk left(plane, {&edge, true}, &memo);
    OutlineWalk right(plane, {&edge, false}, &memo);
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
        const int nOrientation = pAhead->IsBack() ? pAhead->GetOrientation() : 0;
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
                nOther = FollowOne(plane, pOther->GetFirst());
            return;
        }
        if (pAhead->IsBack())
            break;
        std::swap(pAhead, pOther);
    }
    memo.Clear(); // it cannot be told what the edge has done to the outlines
}

SideSearch::nFinding SideSearch::FollowOne(const Plane& plane, const SideOfEdge& side)
{
    OuterSideMemo& memo = m_history.GetOuterSides();
    OutlineWalk walk(plane, side, &memo);
    while (!walk.HasSeenOuter() && walk.Step() && !walk.IsBack())
    {
    }
    if (walk.HasSeenOuter())
    {
        MarkSide(memo, plane, side);
        return nFinding::nNothing;
    }
    const int nOrientation = walk.IsBack() ? walk.GetOrientation() : 0;
    if (nOrientation == 0)
        memo.Clear();
    if (nOrientation < 0)
        MarkOutline(m_history, plane, side);
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
    if (std::any_of(m_aSides.begin(), m_aSides.end(),
                    [](const Sides& sides)
                    { return sides.nLeft == nFinding::nEncloses || sides.nRight == nFinding::nEncloses; }))
        m_history.GetOuterSides().Clear();
}
} // namespace QRV
