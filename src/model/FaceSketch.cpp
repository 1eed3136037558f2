#include "geometry/Finite.h"
#include "geometry/Trigonometry.h"
#include "history/History.h"
#include "model/CornersAtVertex.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/LoopTouching.h"
#include "model/Vertex.h"
#include "spatial/FacetNodes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <ranges>

namespace QRV
{
namespace
{
constexpr double kAngleTolerance = 1e-12;
constexpr double kShortestSpurSqrd = kPointToleranceSqrd;
constexpr double kShortestChordSqrd = 1e-12;
/// Below this squared length a spur can slip out of a narrow corner within the tolerances of the other tests.
constexpr double kCrumbLengthSqrd = 1e-12;

/// Counter-clockwise from `from` to `to` about the normal: from 0 to 2 pi.
double GetTurn(const Vector3d& from, const Vector3d& to, const UnitVector3d& normal)
{
    return TurnFromTan2(normal % (from * to), from % to, -kAngleTolerance);
}

/// Whether the direction falls into the corner at the end of the coedge. The face lies on the left, so its sector runs
/// counter-clockwise from the next coedge to this one. The side of the next coedge counts, so that an edge which is
/// there already is noticed.
bool IsInCorner(const Coedge& coedge, const Vector3d& direction, const UnitVector3d& normal)
{
    const Vector3d out = coedge.GetNext()->GetVector();
    double dSector = GetTurn(out, -coedge.GetVector(), normal);
    if (dSector <= kAngleTolerance)
        dSector = 2 * std::numbers::pi; // the tip of a spur
    double dTurn = GetTurn(out, direction, normal);
    if (2 * std::numbers::pi - dTurn <= kAngleTolerance)
        dTurn = 0.0;
    return dTurn < dSector - kAngleTolerance;
}

/// Whether a point very near a corner lies between its two sides.
bool IsBetweenSides(const Coedge& corner, const Point3d& p, const UnitVector3d& normal)
{
    const Point3d& tip = corner.GetEndVertex()->GetPosition();
    const UnitVector3d xAxis = normal.perpend();
    const UnitVector3d yAxis(normal * xAxis, false);
    const auto flatten = [&](const Point3d& q)
    {
        FacetVertex flat;
        flat.x = (q - tip) % xAxis;
        flat.y = (q - tip) % yAxis;
        flat.dSlack = 2 * ScaledTolerance(q);
        return flat;
    };
    return IsInCone(flatten(corner.GetStartVertex()->GetPosition()), flatten(tip),
                    flatten(corner.GetNext()->GetEndVertex()->GetPosition()), flatten(p), false);
}

bool HasExactlyTwoEdges(const Face& face, const Vertex& vertex)
{
    ShortList<Coedge*> aCoedges;
    vertex.GetCoedges(aCoedges, &face);
    std::vector<std::uint64_t> aEdgeIDs;
    for (const Coedge* pCoedge : aCoedges)
        aEdgeIDs.push_back(pCoedge->GetEdge()->GetID());
    std::sort(aEdgeIDs.begin(), aEdgeIDs.end());
    return std::unique(aEdgeIDs.begin(), aEdgeIDs.end()) - aEdgeIDs.begin() == 2;
}

/// A new coedge of the edge, behind `previous` in its loop.
Coedge& AppendCoedge(Edge& edge, bool bForward, Coedge& previous)
{
    Coedge& coedge = previous.GetHistory()->Create<Coedge>(bForward);
    edge.AddCoedge(coedge);
    coedge.SetLoop(previous.GetLoop());
    Coedge::Link(previous, coedge);
    return coedge;
}

/// An edge that hangs on a face by one vertex.
struct DanglingEdge
{
    Edge* pEdge;
    Vertex* pNear;
};

/// Lets the loop walk out along the edge and back. False, with nothing changed, when the edge does not run in the face.
bool DrawInSpur(Face& face, const DanglingEdge& spur, const ObjectSet& done)
{
    Edge& edge = *spur.pEdge;
    if (!edge.IsComplete() || edge.GetStartVertex() == edge.GetEndVertex() ||
        edge.GetLengthSqrd() <= kShortestSpurSqrd || edge.GetUse() + 2 > Edge::kMaxUse)
        return false;
    const Vertex* pFar = edge.GetOtherVertex(spur.pNear);
    if (done.contains(pFar))
        return false;
    Coedge* pCorner = face.FindCorner(spur.pNear, pFar->GetPosition() - spur.pNear->GetPosition());
    if (!pCorner || pCorner->GetNext()->GetEdge() == &edge || !face.ContainsPointInside(pFar->GetPosition()) ||
        edge.PassesUncut(face.GetPlane()))
        return false;
    if (edge.GetLengthSqrd() < kCrumbLengthSqrd && HasExactlyTwoEdges(face, *spur.pNear) &&
        !IsBetweenSides(*pCorner, pFar->GetPosition(), face.GetPlane().normal))
        return false;

    Coedge& next = *pCorner->GetNext();
    const bool bOutForward = edge.GetStartVertex() == spur.pNear;
    Coedge& out = AppendCoedge(edge, bOutForward, *pCorner);
    Coedge& back = AppendCoedge(edge, !bOutForward, out);
    Coedge::Link(back, next);
    spur.pNear->RebuildGroups(false);
    return true;
}

/// Puts the other edges at the vertex on the stack, the first of them on top.
void PushOtherEdges(Vertex& vertex, const Edge& edge, ShortList<DanglingEdge>& aStack)
{
    ShortList<Edge*> aEdges;
    vertex.GetConnectedEdges(aEdges);
    for (Edge* pOther : std::views::reverse(aEdges))
        if (pOther != &edge)
            aStack.push_back({pOther, &vertex});
}

/// Whether one side of the corner is this edge.
bool IsAtCorner(const Edge& edge, const Coedge& corner)
{
    return corner.GetEdge() == &edge || corner.GetNext()->GetEdge() == &edge;
}

std::vector<Coedge*> GetCoedgesTo(const Loop& loop, const Vertex& vertex)
{
    std::vector<Coedge*> aCoedges;
    loop.ForEachCoedge(
        [&](Coedge& coedge)
        {
            if (coedge.GetEndVertex() == &vertex)
                aCoedges.push_back(&coedge);
        });
    return aCoedges;
}

/// Makes one ring of two loops that pass a vertex: each runs on into the other there. False, with nothing changed, when
/// they do not lie in each other's corner.
bool LinkAtVertex(const Loop& first, const Loop& second, const Vertex& vertex, const UnitVector3d& normal)
{
    for (Coedge* pFirst : GetCoedgesTo(first, vertex))
        for (Coedge* pSecond : GetCoedgesTo(second, vertex))
        {
            Coedge& firstNext = *pFirst->GetNext();
            Coedge& secondNext = *pSecond->GetNext();
            if (!IsInCorner(*pFirst, secondNext.GetVector(), normal) ||
                !IsInCorner(*pSecond, firstNext.GetVector(), normal))
                continue;
            Coedge::Link(*pFirst, secondNext);
            Coedge::Link(*pSecond, firstNext);
            return true;
        }
    return false;
}

/// Whether a box inside another reaches as far as that does somewhere, along axes in which it has an extent.
bool ReachesSide(const Interval3d& part, const Interval3d& whole)
{
    for (std::size_t n = 0; n < 3; ++n)
    {
        const double dSlack =
            4 * kLinearTolerance * std::max({1.0, std::abs(whole.lower[n]), std::abs(whole.upper[n])});
        if (whole.upper[n] > whole.lower[n] &&
            (part.lower[n] <= whole.lower[n] + dSlack || part.upper[n] >= whole.upper[n] - dSlack))
            return true;
    }
    return false;
}

/// Whether a coedge that is on one of two rings is on the first. Goes round both in turn, so that the shorter decides.
bool IsOnFirst(const Coedge& first, const Coedge& second, const Coedge* pSought)
{
    const Coedge* pFirst = &first;
    const Coedge* pSecond = &second;
    while (pFirst != pSought && pSecond != pSought)
    {
        pFirst = pFirst->GetNext();
        if (pFirst == &first)
            return false;
        pSecond = pSecond->GetNext();
        if (pSecond == &second)
            return true;
    }
    return pFirst == pSought;
}

/// Collects the coedges of a loop that has been linked with another to one ring, where they stand side by side.
class CoedgesInRing
{
public:
    explicit CoedgesInRing(const Loop& loop)
        : m_loop(loop), m_pNext(loop.GetCoedge()), m_pPrevious(loop.GetCoedge()->GetPrevious())
    {
    }

    /// One more. False when there is none left.
    bool Step()
    {
        if (m_pNext->GetLoop() == &m_loop)
        {
            m_aCoedges.push_back(m_pNext);
            m_pNext = m_pNext->GetNext();
            return true;
        }
        if (m_pPrevious->GetLoop() != &m_loop)
            return false;
        m_aCoedges.push_back(m_pPrevious);
        m_pPrevious = m_pPrevious->GetPrevious();
        return true;
    }
    std::vector<Coedge*> GetAll()
    {
        while (Step())
        {
        }
        return m_aCoedges;
    }

private:
    const Loop& m_loop;
    Coedge* m_pNext;
    Coedge* m_pPrevious;
    std::vector<Coedge*> m_aCoedges;
};

/// Of two loops linked to one ring.
bool IsShorter(const Loop& first, const Loop& second)
{
    CoedgesInRing ofFirst(first);
    CoedgesInRing ofSecond(second);
    while (ofSecond.Step())
        if (!ofFirst.Step())
            return true;
    return false;
}
} // namespace

CornersAtVertex::CornersAtVertex(Face& face, const Vertex& vertex) : m_normal(face.GetPlane().normal)
{
    vertex.GetCoedges(m_aCorners, &face);
    m_aCorners.EraseIf([&](const Coedge* pCoedge)
                       { return pCoedge->GetEndVertex() != &vertex || !pCoedge->GetNext(); });
}

Coedge* CornersAtVertex::Find(const Vector3d& direction) const
{
    for (Coedge* pCorner : m_aCorners)
        if (IsInCorner(*pCorner, direction, m_normal))
            return pCorner;
    return nullptr;
}

Coedge* Face::FindCorner(const Vertex* pVertex, const Vector3d& direction)
{
    return CornersAtVertex(*this, *pVertex).Find(direction);
}

bool Face::AddSpurEdge(Edge& edge, bool bStartIsOnFace, ObjectSet& done)
{
    const DanglingEdge first{&edge, bStartIsOnFace ? edge.GetStartVertex() : edge.GetEndVertex()};
    bool bDrawnIn = false;
    // Spurs take no area from the face, so its facets of before serve all of them.
    ShortList<DanglingEdge> aStack;
    aStack.push_back(first);
    while (!aStack.empty())
    {
        const DanglingEdge spur = aStack.back();
        aStack.pop_back();
        if (!DrawInSpur(*this, spur, done))
            continue;
        bDrawnIn = true;
        Vertex* pFar = spur.pEdge->GetOtherVertex(spur.pNear);
        done.insert(pFar);
        PushOtherEdges(*pFar, *spur.pEdge, aStack);
    }
    if (bDrawnIn)
        Changed(nChangeFacets);
    return bDrawnIn;
}

bool Face::SplitByEdge(Edge& edge, Face** ppNewFace, bool bSkipMidpointTest)
{
    Vertex* pStart = edge.GetStartVertex();
    Vertex* pEnd = edge.GetEndVertex();
    if (!edge.IsComplete() || pStart == pEnd || edge.GetLengthSqrd() <= kShortestChordSqrd ||
        edge.GetUse() + 2 > Edge::kMaxUse)
        return false;
    const Vector3d way = pEnd->GetPosition() - pStart->GetPosition();
    Coedge* pStartCorner = FindCorner(pStart, way);
    Coedge* pEndCorner = pStartCorner ? FindCorner(pEnd, -way) : nullptr;
    if (!pEndCorner || IsAtCorner(edge, *pStartCorner) || IsAtCorner(edge, *pEndCorner))
        return false;
    if ((!bSkipMidpointTest && !ContainsPoint(edge.GetMidpoint(), false)) || edge.PassesUncut(GetPlane()))
        return false;

    if (JoinTouchingLoops(*pStartCorner->GetLoop(), *pEndCorner->GetLoop()))
    {
        pStartCorner = FindCorner(pStart, way);
        pEndCorner = pStartCorner ? FindCorner(pEnd, -way) : nullptr;
        if (!pEndCorner)
            return false;
    }
    Loop& startLoop = *pStartCorner->GetLoop();
    Loop& endLoop = *pEndCorner->GetLoop();
    Coedge& startNext = *pStartCorner->GetNext();
    Coedge& endNext = *pEndCorner->GetNext();
    Coedge& there = AppendCoedge(edge, true, *pStartCorner);
    Coedge& back = AppendCoedge(edge, false, *pEndCorner);
    Coedge::Link(there, endNext);
    Coedge::Link(back, startNext);
    if (&startLoop == &endLoop)
    {
        Face& part = SplitOff(startLoop, there, back);
        if (ppNewFace)
            *ppNewFace = &part;
    }
    else
        JoinLoops(startLoop, endLoop);
    pStart->RebuildGroups(false);
    pEnd->RebuildGroups(false);
    return true;
}

/// Loops that touch enclose a part of the face as soon as an edge joins them elsewhere, which no bridge between two
/// rings would show. So they become one ring first, and the edge is a chord of it.
bool Face::JoinTouchingLoops(Loop& first, Loop& last)
{
    if (&first == &last)
        return false;
    bool bJoined = false;
    Loop* pRing = &first;
    for (const LoopTouch& touch : FindTouchingLoops(first, last))
    {
        if (!LinkAtVertex(*pRing, *touch.pNext, *touch.pVertex, GetPlane().normal))
            break;
        pRing = &JoinLoops(*pRing, *touch.pNext);
        touch.pVertex->RebuildGroups(false);
        bJoined = true;
    }
    return bJoined;
}

/// A link has made one ring of two loops. Gives the loop that stays: the outline, and among holes the longer one, which
/// leaves less to be taken over.
Loop& Face::JoinLoops(Loop& first, Loop& second)
{
    const bool bOfHoles = &first != GetOuterLoop() && &second != GetOuterLoop();
    Loop& kept = bOfHoles ? (IsShorter(first, second) ? second : first) : &second == GetOuterLoop() ? second : first;
    Loop& gone = &kept == &first ? second : first;
    MergeAttributesFrom(kept, gone, true);
    RemoveLoop(&gone);
    for (Coedge* pCoedge : CoedgesInRing(gone).GetAll())
        pCoedge->SetLoop(&kept);
    gone.DeleteSelf();
    return kept;
}

/// A chord has made two rings of the loop's coedges. One stays in the loop, the other becomes a face of its own.
Face& Face::SplitOff(Loop& loop, Coedge& oneRing, Coedge& otherRing)
{
    const Plane plane = GetPlane();
    const bool bFirstIsHere = IsOnFirst(oneRing, otherRing, loop.GetCoedge());
    Coedge* pStaying = bFirstIsHere ? &oneRing : &otherRing;
    Coedge* pLeaving = bFirstIsHere ? &otherRing : &oneRing;
    if (&loop != GetOuterLoop() && loop.GetSignedArea(plane) > -kLinearTolerance)
    {
        std::swap(pStaying, pLeaving); // what runs counter-clockwise is no hole any more
        loop.SetCoedge(pStaying);
    }

    History& history = *GetHistory();
    Face& part = Create(history, plane, m_pShell);
    Loop& outline = history.Create<Loop>();
    outline.SetCoedge(pLeaving);
    outline.OwnCoedges();
    part.AddLoop(&outline, false);
    HandOverInnerLoops(part, loop);
    // What leaves from the middle leaves the box as it is.
    Changed(m_Box.isNull() || ReachesSide(part.GetBox(), m_Box) ? nShapeChanged : nBoundaryChanged);
    InheritAttributes(*this, part);
    return part;
}
} // namespace QRV
