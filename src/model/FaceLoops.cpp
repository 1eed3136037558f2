#include "history/History.h"
#include "model/Body.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Shell.h"
#include "model/Vertex.h"

#include <algorithm>

namespace QRV
{
namespace
{
using Ring = std::vector<Coedge*>;

double GetSignedArea(const Ring& ring, const Plane& plane)
{
    const Point3d& origin = ring.front()->GetStartVertex()->GetPosition();
    Vector3d sum;
    for (const Coedge* pCoedge : ring)
        sum += (pCoedge->GetStartVertex()->GetPosition() - origin) * (pCoedge->GetEndVertex()->GetPosition() - origin);
    return sum % plane.normal / 2;
}

/// The loop without the edges that it passes twice falls into rings: one around it all, and one for each hole that a
/// bridge has joined to it. Spurs leave nothing.
std::vector<Ring> SplitAtEdgesPassedTwice(const Loop& loop)
{
    std::vector<Ring> aRings;
    std::vector<Ring> aOpen(1); // a ring within a ring ends where its bridge is met again
    std::vector<const Edge*> aBridges;
    ObjectSet passedTwice;
    ObjectSet seen;
    loop.ForEachCoedge(
        [&](const Coedge& coedge)
        {
            if (!seen.insert(coedge.GetEdge()).second)
                passedTwice.insert(coedge.GetEdge());
        });
    loop.ForEachCoedge(
        [&](Coedge& coedge)
        {
            if (!passedTwice.contains(coedge.GetEdge()))
                aOpen.back().push_back(&coedge);
            else if (!aBridges.empty() && aBridges.back() == coedge.GetEdge())
            {
                aBridges.pop_back();
                aRings.push_back(std::move(aOpen.back()));
                aOpen.pop_back();
            }
            else
            {
                aBridges.push_back(coedge.GetEdge());
                aOpen.emplace_back();
            }
        });
    for (Ring& ring : aOpen)
        aRings.push_back(std::move(ring));
    std::erase_if(aRings, [](const Ring& ring) { return ring.empty(); });
    return aRings;
}

/// The ring around all of the loop: the only one that runs counter-clockwise.
Ring FindOutline(const Loop& loop, const Plane& plane)
{
    Ring outline;
    double dLargest = kLinearTolerance;
    for (Ring& ring : SplitAtEdgesPassedTwice(loop))
        if (const double dArea = GetSignedArea(ring, plane); dArea > dLargest)
        {
            dLargest = dArea;
            outline = std::move(ring);
        }
    return outline;
}

bool IsComplete(const Loop& loop)
{
    bool bComplete = loop.GetCoedge() != nullptr;
    loop.ForEachCoedge([&](const Coedge& coedge)
                       { bComplete = bComplete && coedge.GetStartVertex() && coedge.GetEndVertex(); });
    return bComplete;
}

bool IsOnLoops(const Face& face, const Point3d& p)
{
    return std::any_of(face.GetLoops().begin(), face.GetLoops().end(),
                       [&](const Loop* pLoop) { return pLoop->FindSide(p) == nLoopSide::nOn; });
}

/// Whether the whole loop runs in the face, and not all of it along the face's own loops.
bool RunsInside(const Loop& loop, Face& face)
{
    std::vector<Point3d> aPoints;
    loop.ForEachCoedge(
        [&](const Coedge& coedge)
        {
            aPoints.push_back(coedge.GetStartVertex()->GetPosition());
            aPoints.push_back(coedge.GetEdge()->GetMidpoint());
        });
    return std::all_of(aPoints.begin(), aPoints.end(),
                       [&](const Point3d& p) { return face.ContainsPoint(p, false); }) &&
           !std::all_of(aPoints.begin(), aPoints.end(), [&](const Point3d& p) { return IsOnLoops(face, p); });
}

/// The outline of an inner face as the hole around it runs.
std::vector<std::pair<Edge*, bool>> GetWayRound(const Ring& outline, bool bSameDirection)
{
    std::vector<std::pair<Edge*, bool>> aWay;
    aWay.reserve(outline.size());
    for (const Coedge* pCoedge : outline)
        aWay.emplace_back(pCoedge->GetEdge(), pCoedge->IsForward() != bSameDirection);
    if (bSameDirection)
        std::reverse(aWay.begin(), aWay.end());
    return aWay;
}

/// Whether the loop lies in the box. Mostly one corner tells that it does not.
bool LiesWithin(const Loop& loop, const Interval3d& box)
{
    const Vertex* pCorner = loop.GetCoedge() ? loop.GetCoedge()->GetStartVertex() : nullptr;
    return (!pCorner || Interval3d(pCorner->GetPosition()) <= box) && loop.GetBox() <= box;
}

/// Moves the holes of `outer` that lie within `inner` there; one that `inner` has already goes.
void MoveHoles(Face& outer, Face& inner, bool bSameDirection)
{
    const Loop& outline = *inner.GetOuterLoop();
    const Interval3d box = outline.GetBox();
    const std::vector<Loop*> aHoles(outer.GetLoops().begin() + 1, outer.GetLoops().end());
    for (Loop* pHole : aHoles)
    {
        if (!LiesWithin(*pHole, box) || !outline.ContainsLoop(*pHole))
            continue;
        std::vector<Edge*> aEdges;
        pHole->GetEdges(aEdges);
        if (std::all_of(aEdges.begin(), aEdges.end(), [&](const Edge* pEdge) { return inner.HasEdge(*pEdge); }))
        {
            outer.DeleteLoop(pHole);
            continue;
        }
        outer.RemoveLoop(pHole);
        if (!bSameDirection)
            pHole->Reverse();
        inner.AddLoop(pHole, false);
    }
}

/// Brings a face and what is to stand in its hole into one shell, and what hangs on either. A closed shell stays
/// closed: the inner face joins it alone. So this is begun before the hole is cut.
class HoleJoining
{
public:
    HoleJoining(Face& outer, Face& inner) : m_outer(outer), m_inner(inner)
    {
        TakeFromOpenShell();
        m_bInnerJoins = outer.GetShell() && !inner.GetShell();
        if (!m_bInnerJoins && (outer.GetShell() || !inner.GetShell()))
            return;
        m_aHanging = (m_bInnerJoins ? inner : outer).GetShelllessAround();
        m_pForHanging = m_bInnerJoins ? outer.GetShell() : inner.GetShell();
        if (m_aHanging.size() > (m_bInnerJoins ? 1 : 0))
            m_pForHanging = &m_pForHanging->ChooseForOutside();
    }

    void Join()
    {
        if (m_bInnerJoins)
        {
            const bool bStaysClosed = m_bTaken || m_pForHanging != m_outer.GetShell();
            if (bStaysClosed && m_inner.GetPlane().normal % m_outer.GetPlane().normal < 0.0)
                m_inner.Reverse();
            m_outer.GetShell()->AddFaces({&m_inner});
        }
        if (m_pForHanging)
            m_pForHanging->AddFaces(m_aHanging);
        if (m_pLeftBody)
            m_pLeftBody->Rebuild(false);
        if (Body* pBody = m_outer.GetBody();
            pBody && m_outer.GetShell() != m_inner.GetShell() && pBody == m_inner.GetBody())
            pBody->RebuildAround({&m_outer, &m_inner});
    }

private:
    /// The last face of a sheet that ends at a wall is the newer one. Where the face around is, that has only just
    /// closed its shell, if any, and the other solid was there before.
    void TakeFromOpenShell()
    {
        Shell* pShell = m_inner.GetShell();
        m_bTaken = pShell && pShell != m_outer.GetShell() && m_inner.GetID() > m_outer.GetID() && m_outer.GetBody() &&
                   m_outer.GetShell()->IsClosed();
        if (!m_bTaken)
            return;
        m_pLeftBody = m_inner.GetBody();
        pShell->RemoveFace(&m_inner);
    }

    Face& m_outer;
    Face& m_inner;
    bool m_bTaken = false;
    bool m_bInnerJoins = false;
    Body* m_pLeftBody = nullptr;
    Shell* m_pForHanging = nullptr;
    std::vector<Face*> m_aHanging;
};
} // namespace

bool Face::AddLoop(Loop* pLoop, bool bFront)
{
    if (pLoop->GetFace())
        return pLoop->GetFace() == this;
    Changed(nChangeFacets);
    RecordChange();
    m_aLoops.insert(bFront ? m_aLoops.begin() : m_aLoops.end(), pLoop);
    pLoop->SetFace(this);
    return true;
}

bool Face::RemoveLoop(Loop* pLoop)
{
    const auto itLoop = std::find(m_aLoops.begin(), m_aLoops.end(), pLoop);
    if (itLoop == m_aLoops.end())
        return false;
    Changed(nChangeFacets);
    RecordChange();
    m_aLoops.erase(itLoop);
    pLoop->SetFace(nullptr);
    return true;
}

bool Face::ChooseOuterLoop()
{
    if (m_aLoops.size() < 2)
        return false;
    const Plane plane = GetPlane();
    if (m_aLoops.front()->GetSignedArea(plane) >= kLinearTolerance)
        return false;
    const auto itOuter =
        std::find_if(m_aLoops.begin() + 1, m_aLoops.end(),
                     [&](const Loop* pLoop) { return pLoop->GetSignedArea(plane) > kLinearTolerance; });
    if (itOuter == m_aLoops.end())
        return false;
    Changed(nChangeFacets);
    RecordChange();
    std::iter_swap(m_aLoops.begin(), itOuter);
    return true;
}

bool Face::AddInnerFace(Face* pInner)
{
    const Loop* pOutline = pInner ? pInner->GetOuterLoop() : nullptr;
    if (!pOutline || pInner == this || m_aLoops.empty())
        return false;
    const int nDirection = pInner->GetSideIn(GetPlane());
    if (nDirection == 0 || !(pInner->GetBox() <= GetBox()) || !IsComplete(*pOutline))
        return false;
    const Ring outline = FindOutline(*pOutline, pInner->GetPlane());
    std::vector<Edge*> aEdges;
    pOutline->GetEdges(aEdges);
    if (outline.empty() || !std::all_of(aEdges.begin(), aEdges.end(),
                                        [this](const Edge* pEdge) {
                                            return pEdge->GetUse() < Edge::kMaxUse && !HasEdge(*pEdge) &&
                                                   !pEdge->PassesUncut(GetPlane());
                                        }))
        return false;
    if (!RunsInside(*pOutline, *this))
        return false;

    MoveHoles(*this, *pInner, nDirection > 0);
    AddHole(GetWayRound(outline, nDirection > 0), *pInner);
    return true;
}

void Face::AddHole(const std::vector<std::pair<Edge*, bool>>& aWay, Face& inner)
{
    History& history = *GetHistory();
    HoleJoining joining(*this, inner);
    std::vector<Coedge*> aCoedges;
    aCoedges.reserve(aWay.size());
    for (const auto& [pEdge, bForward] : aWay)
    {
        Coedge& coedge = history.Create<Coedge>(bForward);
        pEdge->AddCoedge(coedge);
        aCoedges.push_back(&coedge);
    }
    LinkLoop(aCoedges);
    Loop& hole = history.Create<Loop>();
    hole.SetCoedge(aCoedges.front());
    hole.OwnCoedges();
    AddLoop(&hole, false);
    for (const Coedge* pCoedge : aCoedges)
        pCoedge->GetStartVertex()->RebuildGroups(false);
    Changed(nBoundaryChanged);
    inner.Changed(nBoundaryChanged);
    joining.Join();
}

void Face::HandOverInnerLoops(Face& other, const Loop& parted)
{
    const Loop& outline = *other.GetOuterLoop();
    const Interval3d box = outline.GetBox();
    std::vector<Loop*> aStaying{m_aLoops.front()};
    std::vector<Loop*> aLeaving;
    for (std::size_t n = 1; n < m_aLoops.size(); ++n)
    {
        const bool bLeaves =
            m_aLoops[n] != &parted && LiesWithin(*m_aLoops[n], box) && outline.ContainsLoop(*m_aLoops[n]);
        (bLeaves ? aLeaving : aStaying).push_back(m_aLoops[n]);
    }
    if (aLeaving.empty())
        return;
    Changed(nChangeFacets);
    RecordChange();
    m_aLoops.swap(aStaying);
    for (Loop* pLoop : aLeaving)
    {
        pLoop->SetFace(nullptr);
        other.AddLoop(pLoop, false);
    }
}

void Face::Reverse()
{
    for (Loop* pLoop : m_aLoops)
        pLoop->Reverse();
    if (m_Plane.isValid())
    {
        RecordChange();
        m_Plane.negate();
    }
    Changed(nChangeFacets);
}
} // namespace QRV
