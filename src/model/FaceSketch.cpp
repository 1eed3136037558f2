#include "history/History.h"
#include "geometry/Finite.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "spatial/FacetNodes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QRV
{
/// Two loops of one face that share a vertex.
struct LoopTouch
{
    Vertex* pVertex;
    Loop* pFrom;
    Loop* pTo;
    Vector3d intoTo;                     ///< along a side of `pTo` away from the vertex
    std::vector<std::uint64_t> aEdgeIDs; ///< all edges at the vertex
};

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
    const double dAngle = std::atan2(normal % (from * to), from % to);
    return dAngle < -kAngleTolerance ? dAngle + 2 * std::numbers::pi : dAngle;
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
    std::vector<Coedge*> aCoedges;
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
    if (done.contains(pFar) || !face.ContainsPointInside(pFar->GetPosition()))
        return false;
    Coedge* pCorner = face.FindCorner(spur.pNear, pFar->GetPosition() - spur.pNear->GetPosition());
    if (!pCorner || pCorner->GetNext()->GetEdge() == &edge)
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
void PushOtherEdges(Vertex& vertex, const Edge& edge, std::vector<DanglingEdge>& aStack)
{
    std::vector<Edge*> aEdges;
    vertex.GetConnectedEdges(aEdges);
    for (auto it = aEdges.rbegin(); it != aEdges.rend(); ++it)
        if (*it != &edge)
            aStack.push_back({*it, &vertex});
}

/// Whether one side of the corner is this edge.
bool IsAtCorner(const Edge& edge, const Coedge& corner)
{
    return corner.GetEdge() == &edge || corner.GetNext()->GetEdge() == &edge;
}

bool IsOnRing(const Coedge& ring, const Coedge* pSought)
{
    const Coedge* pCoedge = &ring;
    do
    {
        if (pCoedge == pSought)
            return true;
        pCoedge = pCoedge->GetNext();
    } while (pCoedge != &ring);
    return false;
}

/// The corners at which two loops that touch take each other in.
struct TouchingCorners
{
    Coedge* pFrom;
    Coedge* pTo;
};

Coedge* FindCornerOfLoop(Face& face, const Vertex& vertex, const Loop& loop, const Vector3d& direction)
{
    const UnitVector3d normal = face.GetPlane().normal;
    std::vector<Coedge*> aCoedges;
    vertex.GetCoedges(aCoedges, &face);
    Coedge* pLast = nullptr;
    for (Coedge* pCoedge : aCoedges)
        if (pCoedge->GetLoop() == &loop && pCoedge->GetEndVertex() == &vertex)
        {
            pLast = pCoedge;
            if (IsInCorner(*pCoedge, direction, normal))
                break;
        }
    return pLast;
}

TouchingCorners FindTouchingCorners(Face& face, const LoopTouch& touch)
{
    Coedge* pFrom = FindCornerOfLoop(face, *touch.pVertex, *touch.pFrom, touch.intoTo);
    return {pFrom, FindCornerOfLoop(face, *touch.pVertex, *touch.pTo, pFrom->GetNext()->GetVector())};
}

void ExchangeNext(const TouchingCorners& corners)
{
    Coedge& behindFrom = *corners.pFrom->GetNext();
    Coedge::Link(*corners.pFrom, *corners.pTo->GetNext());
    Coedge::Link(*corners.pTo, behindFrom);
}

/// Appends where the loop touches other loops of the face.
void CollectTouches(const Face& face, Loop& loop, std::vector<LoopTouch>& aTouches)
{
    loop.ForEachCoedge(
        [&](const Coedge& own)
        {
            Vertex* pVertex = own.GetStartVertex();
            std::vector<Coedge*> aAtVertex;
            if (pVertex->GetEdgesPerGroup().size() > 1 || pVertex->GetUse() > 2)
                pVertex->GetCoedges(aAtVertex, &face);
            for (const Coedge* pCoedge : aAtVertex)
                if (pCoedge->GetLoop() != &loop && pCoedge->GetStartVertex() == pVertex)
                    aTouches.push_back({pVertex, &loop, pCoedge->GetLoop(), pCoedge->GetVector(), pVertex->GetConnectedEdgeIDs()});
        });
}

/// The chain of touches that leads from one loop of the face to another; empty when none does. Loops of a face touch in
/// single vertices and in no ring, so there is one chain at most.
std::vector<LoopTouch> FindTouches(const Face& face, Loop& from, Loop& to)
{
    std::vector<LoopTouch> aChain;
    if (&from == &to)
        return aChain;
    std::vector<LoopTouch> aTouches;
    std::vector<Loop*> aReached{&from};
    for (std::size_t n = 0; n < aReached.size() && aReached.back() != &to; ++n)
    {
        const std::size_t nFirst = aTouches.size();
        CollectTouches(face, *aReached[n], aTouches);
        for (std::size_t i = nFirst; i < aTouches.size() && aReached.back() != &to; ++i)
            if (std::find(aReached.begin(), aReached.end(), aTouches[i].pTo) == aReached.end())
                aReached.push_back(aTouches[i].pTo);
    }
    if (aReached.back() != &to)
        return aChain;
    for (const Loop* pLoop = &to; pLoop != &from; pLoop = aChain.back().pFrom)
        aChain.push_back(*std::find_if(aTouches.begin(), aTouches.end(), [&](const LoopTouch& touch) { return touch.pTo == pLoop; }));
    return aChain;
}
} // namespace

Coedge* Face::FindCorner(const Vertex* pVertex, const Vector3d& direction)
{
    const UnitVector3d normal = GetPlane().normal;
    std::vector<Coedge*> aCoedges;
    pVertex->GetCoedges(aCoedges, this);
    for (Coedge* pCoedge : aCoedges)
        if (pCoedge->GetEndVertex() == pVertex && pCoedge->GetNext() && IsInCorner(*pCoedge, direction, normal))
            return pCoedge;
    return nullptr;
}

bool Face::AddSpurEdge(Edge& edge, bool bStartIsOnFace, ObjectSet& done)
{
    const DanglingEdge first{&edge, bStartIsOnFace ? edge.GetStartVertex() : edge.GetEndVertex()};
    bool bDrawnIn = false;
    // Spurs take no area from the face, so its facets of before serve all of them.
    std::vector<DanglingEdge> aStack{first};
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
    if (!bSkipMidpointTest && !ContainsPoint(edge.GetMidpoint(), false))
        return false;
    const Vector3d way = pEnd->GetPosition() - pStart->GetPosition();
    Coedge* pStartCorner = FindCorner(pStart, way);
    Coedge* pEndCorner = pStartCorner ? FindCorner(pEnd, -way) : nullptr;
    if (!pEndCorner || IsAtCorner(edge, *pStartCorner) || IsAtCorner(edge, *pEndCorner))
        return false;

    Loop& startLoop = *pStartCorner->GetLoop();
    Loop& endLoop = *pEndCorner->GetLoop();
    const std::vector<LoopTouch> aTouches = FindTouches(*this, startLoop, endLoop);
    Coedge& startNext = *pStartCorner->GetNext();
    Coedge& endNext = *pEndCorner->GetNext();
    Coedge& there = AppendCoedge(edge, true, *pStartCorner);
    Coedge& back = AppendCoedge(edge, false, *pEndCorner);
    Coedge::Link(there, endNext);
    Coedge::Link(back, startNext);
    Face* pPart = &startLoop == &endLoop ? &SplitOff(startLoop, there, back) : JoinLoops(startLoop, endLoop, aTouches);
    if (pPart && ppNewFace)
        *ppNewFace = pPart;
    pStart->RebuildGroups(false);
    pEnd->RebuildGroups(false);
    return true;
}

/// A bridge has made one ring of two loops. Where a chain of loops that touch one another ties the two together, the
/// bridge cuts the face in two all the same, and what comes off is given back; else null.
Face* Face::JoinLoops(Loop& first, Loop& second, const std::vector<LoopTouch>& aTouches)
{
    std::vector<Loop*> aJoined{&first, &second};
    std::vector<TouchingCorners> aCorners;
    for (const LoopTouch& touch : aTouches)
    {
        aCorners.push_back(FindTouchingCorners(*this, touch));
        if (std::find(aJoined.begin(), aJoined.end(), touch.pTo) == aJoined.end())
            aJoined.push_back(touch.pTo);
    }
    const auto itOuter = std::find(aJoined.begin(), aJoined.end(), GetOuterLoop());
    Loop& kept = itOuter == aJoined.end() ? first : **itOuter;
    std::erase(aJoined, &kept);
    for (Loop* pGone : aJoined)
    {
        MergeAttributesFrom(kept, *pGone, true);
        RemoveLoop(pGone);
    }
    // Each touch but the last makes one more loop part of the ring; there the ring falls in two.
    for (std::size_t n = 0; n + 1 < aCorners.size(); ++n)
        ExchangeNext(aCorners[n]);
    kept.OwnCoedges();
    for (Loop* pGone : aJoined)
        pGone->DeleteSelf();
    if (aCorners.empty())
        return nullptr;
    ExchangeNext(aCorners.back());
    Face& part = SplitOff(kept, *aCorners.back().pFrom, *aCorners.back().pTo);
    for (const LoopTouch& touch : aTouches)
        touch.pVertex->Regroup(touch.aEdgeIDs);
    return &part;
}

/// A chord has made two rings of the loop's coedges. One stays in the loop, the other becomes a face of its own.
Face& Face::SplitOff(Loop& loop, Coedge& oneRing, Coedge& otherRing)
{
    const Plane plane = GetPlane();
    const bool bFirstIsHere = IsOnRing(oneRing, loop.GetCoedge());
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
    HandOverInnerLoops(part);
    Changed(nShapeChanged);
    InheritAttributes(*this, part);
    return part;
}
} // namespace QRV
