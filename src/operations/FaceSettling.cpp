#include "history/History.h"
#include "model/Body.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "model/Vertex.h"
#include "operations/FaceSearch.h"
#include "operations/OutlineWalk.h"
#include "spatial/Measures.h"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>

namespace QRV
{
namespace
{

/// Of the outline, or of all loops.
std::vector<std::uint64_t> GetCornerIDs(const Face& face, bool bAll)
{
    std::vector<Vertex*> aCorners;
    if (bAll)
        face.GetVertices(aCorners);
    else
        face.GetOuterLoop()->GetVertices(aCorners);
    std::vector<std::uint64_t> aIDs;
    aIDs.reserve(aCorners.size());
    for (const Vertex* pCorner : aCorners)
        aIDs.push_back(pCorner->GetID());
    return aIDs;
}

/// Draws the edges that leave certain corners of a face, and that it does not use yet, into it.
class EdgesIntoFace
{
public:
    EdgesIntoFace(History& history, Face& face, std::vector<std::uint64_t> aCorners)
        : m_history(history), m_face(face), m_aCorners(std::move(aCorners)), m_seen(m_aCorners.begin(), m_aCorners.end())
    {
    }

    /// The dangling edges, with the trees of edges behind them.
    void DrawInSpurs()
    {
        ObjectSet done;
        for (std::size_t i = 0; i < m_aCorners.size(); ++i)
        {
            for (const std::uint64_t nEdge : FindEdgesAt(i))
            {
                auto* pEdge = m_history.Get<Edge>(nEdge);
                if (pEdge && !m_face.HasEdge(*pEdge))
                    m_face.AddSpurEdge(*pEdge, pEdge->GetStartVertex()->GetID() == m_aCorners[i], done);
            }
            FollowSpurs(i);
        }
    }

    /// Those between two corners too, as chords. Gives the ids of the faces that these split off, each of which has its
    /// own edges to draw in.
    std::vector<std::uint64_t> DrawInAll()
    {
        DrawInSpurs();
        std::vector<std::uint64_t> aSplitOff;
        for (std::size_t i = 0; i < m_aCorners.size(); ++i)
            for (const std::uint64_t nEdge : FindEdgesAt(i))
            {
                auto* pEdge = m_history.Get<Edge>(nEdge);
                Face* pSplitOff = nullptr;
                if (pEdge && !m_face.HasEdge(*pEdge) && m_face.SplitByEdge(*pEdge, &pSplitOff, false) && pSplitOff)
                    aSplitOff.push_back(pSplitOff->GetID());
            }
        return aSplitOff;
    }

private:
    const std::vector<std::uint64_t>& FindEdgesAt(std::size_t nCorner)
    {
        m_aFound.clear();
        m_aEdges.clear();
        const auto* pCorner = m_history.Get<Vertex>(m_aCorners[nCorner]);
        if (pCorner && pCorner->GetConnectedEdges(m_aEdges) > 2)
            for (const Edge* pEdge : m_aEdges)
                if (!m_face.HasEdge(*pEdge))
                    m_aFound.push_back(pEdge->GetID());
        return m_aFound;
    }

    /// What hangs on the far ends of spurs is to be drawn in as well.
    void FollowSpurs(std::size_t nCorner)
    {
        const auto* pCorner = m_history.Get<Vertex>(m_aCorners[nCorner]);
        for (const Edge* pEdge : m_aEdges)
            if (pEdge->GetUseBy(m_face) > 1)
                if (const std::uint64_t nFar = pEdge->GetOtherVertex(pCorner)->GetID(); m_seen.insert(nFar).second)
                    m_aCorners.push_back(nFar);
    }

    History& m_history;
    Face& m_face;
    std::vector<std::uint64_t> m_aCorners; ///< by id, since splitting may end vertices
    std::unordered_set<std::uint64_t> m_seen;
    std::vector<std::uint64_t> m_aFound;
    std::vector<Edge*> m_aEdges;
};

/// The first face around the new one that takes it as a hole, by ascending id; null for none.
Face* FillHoleAround(History& history, Face& face)
{
    std::vector<Face*> aAround;
    history.GetFaceTree().FindHolding(face.GetBox(), aAround);
    std::sort(aAround.begin(), aAround.end(), ByObjectID());
    for (Face* pAround : aAround)
        if (pAround->AddInnerFace(&face))
            return pAround;
    return nullptr;
}

/// Makes holes for the faces that stand in another: one for all that hang together, round the outside of them, with the
/// dangling edges there.
class HoleTaking
{
public:
    HoleTaking(History& history, Face& face)
        : m_history(history), m_face(face), m_plane(face.GetPlane()), m_nAxis((m_plane.normal.dominantDirection() + 1) % 3)
    {
    }

    /// Gives whether there was any.
    bool Run()
    {
        bool bTook = false;
        for (Face* pInner : FindInnerFaces())
            bTook = Take(*pInner) || bTook;
        return bTook;
    }

    /// Some hole runs round one face alone, since the outside of what hangs together there was not clear.
    bool LeftEdgesOut() const { return m_bLeftEdgesOut; }

private:
    /// Those in the plane and in the box, the farthest out along one axis first: of faces that hang together that one
    /// has a corner on the outside.
    std::vector<Face*> FindInnerFaces() const
    {
        std::vector<Face*> aInside;
        m_history.GetFaceTree().FindInside(m_face.GetBox(), aInside);
        std::erase_if(aInside, [&](Face* pInside)
                      { return pInside == &m_face || !pInside->GetOuterLoop() || pInside->GetSideIn(m_plane) == 0; });
        const auto getReach = [&](Face* pFace) { return pFace->GetBox().lower[std::size_t(m_nAxis)]; };
        std::sort(aInside.begin(), aInside.end(),
                  [&](Face* pA, Face* pB)
                  {
                      const double dA = getReach(pA);
                      const double dB = getReach(pB);
                      return dA != dB ? dA < dB : pA->GetID() < pB->GetID();
                  });
        return aInside;
    }

    bool Take(Face& inner)
    {
        Vertex& corner = FindFarthestCorner(inner);
        if (IsOnFace(corner) || !m_face.ContainsPointInside(corner.GetPosition()))
            return false;
        std::vector<std::pair<Edge*, bool>> aWay;
        switch (GoRound(corner, aWay))
        {
        case nOutline::nApart:
            m_face.AddHole(aWay, inner);
            return true;
        case nOutline::nTouching:
            return false; // its edges are drawn in from there, and cut it out
        case nOutline::nUnclear:
            break;
        }
        m_bLeftEdgesOut = true;
        return m_face.AddInnerFace(&inner);
    }

    Vertex& FindFarthestCorner(const Face& inner) const
    {
        Vertex* pFarthest = nullptr;
        const auto n = std::size_t(m_nAxis);
        inner.GetOuterLoop()->ForEachCoedge(
            [&](const Coedge& coedge)
            {
                Vertex* pVertex = coedge.GetStartVertex();
                if (!pFarthest || pVertex->GetPosition()[n] < pFarthest->GetPosition()[n])
                    pFarthest = pVertex;
            });
        return *pFarthest;
    }

    bool IsOnFace(const Vertex& vertex)
    {
        m_aCoedges.clear();
        return vertex.GetCoedges(m_aCoedges, &m_face) > 0;
    }

    enum class nOutline
    {
        nApart,
        nTouching, ///< the face has a corner on it
        nUnclear
    };

    nOutline GoRound(Vertex& corner, std::vector<std::pair<Edge*, bool>>& aWay)
    {
        Vector3d outward;
        outward[std::size_t(m_nAxis)] = -1.0;
        outward -= m_plane.normal * (m_plane.normal % outward);
        const SideOfEdge first = OutlineWalk::FindSideFacing(m_plane, corner, outward);
        if (!first.pEdge)
            return nOutline::nUnclear;
        OutlineWalk walk(m_plane, first);
        do
        {
            const SideOfEdge& at = walk.GetAt();
            if (at.pEdge->GetUse() + 2 > Edge::kMaxUse)
                return nOutline::nUnclear;
            if (IsOnFace(*at.GetStart()))
                return nOutline::nTouching;
            aWay.emplace_back(at.pEdge, at.bForward);
            if (!walk.Step())
                return nOutline::nUnclear;
        } while (!walk.IsBack());
        return walk.GetOrientation() < 0 ? nOutline::nApart : nOutline::nUnclear;
    }

    History& m_history;
    Face& m_face;
    const Plane m_plane;
    const int m_nAxis;
    bool m_bLeftEdgesOut = false;
    std::vector<Coedge*> m_aCoedges;
};

/// Whether the first edge that the face shares with exactly one other is run the same way by both.
bool RunsWithNeighbour(const Face& face)
{
    std::vector<Coedge*> aCoedges;
    face.GetCoedges(aCoedges);
    for (const Coedge* pCoedge : aCoedges)
    {
        const Coedge* pPartner = pCoedge->GetPartner();
        if (pPartner && pPartner->GetPartner() == pCoedge && pPartner->GetFace() && pPartner->GetFace() != &face)
            return pPartner->IsForward() == pCoedge->IsForward();
    }
    return false;
}

bool CoincidesWithAnother(History& history, Face& face)
{
    std::vector<Face*> aAround;
    history.GetFaceTree().FindHolding(face.GetBox(), aAround);
    return std::any_of(aAround.begin(), aAround.end(),
                       [&](Face* pOther) { return pOther != &face && pOther->IsCoincident(face); });
}

/// Whether another face in the plane covers what a chord has split off, though with another outline: an edge too short
/// for a chord has been passed by.
bool IsCovered(History& history, Face& face)
{
    Point3d p;
    if (!face.GetInteriorPoint(p))
        return false;
    std::vector<Face*> aAround;
    history.GetFaceTree().FindHolding(Interval3d(p), aAround);
    return std::any_of(aAround.begin(), aAround.end(), [&](Face* pOther)
                       { return pOther != &face && pOther->GetSideIn(face.GetPlane()) != 0 && pOther->ContainsPointInside(p); });
}

bool IsAtBranch(const Face& face)
{
    std::vector<Edge*> aEdges;
    face.GetEdges(aEdges);
    return std::any_of(aEdges.begin(), aEdges.end(), [](const Edge* pEdge) { return pEdge->GetUse() > 2; });
}

/// Whether the face shares its edges with one other at most, so that nothing hangs together through it.
bool HangsOnOneFace(const Face& face)
{
    std::vector<Edge*> aEdges;
    face.GetEdges(aEdges);
    std::vector<Face*> aFaces;
    for (const Edge* pEdge : aEdges)
        pEdge->GetFaces(aFaces);
    std::erase(aFaces, &face);
    return std::adjacent_find(aFaces.begin(), aFaces.end(), std::not_equal_to<>()) == aFaces.end();
}

/// The faces at whose edges shells may hang together in another way now that a face has come to stand among others. It
/// alone will do when its own edges branch, for then its body is rebuilt, and when it is no bridge. Else all of its
/// shell: which way a sheet goes at a branch depends on what it has reached before.
std::vector<Face*> GetSheetJoined(Face& face, bool bBroughtOthers)
{
    std::vector<Face*> aSheet{&face};
    const Shell* pShell = face.GetShell();
    if (pShell && (bBroughtOthers || !(IsAtBranch(face) || HangsOnOneFace(face))))
        aSheet.insert(aSheet.end(), pShell->GetFaces().begin(), pShell->GetFaces().end());
    return aSheet;
}

/// Breadth first from the first face: each neighbour over an edge that only the two of the set share is turned to
/// agree. Gives the faces turned.
std::vector<Face*> OrientFaceComponent(const std::vector<Face*>& aFaces)
{
    std::vector<Face*> aTurned;
    const ObjectSet component(aFaces.begin(), aFaces.end());
    std::vector<Face*> aQueue{aFaces.front()};
    ObjectSet seen{aFaces.front()};
    std::vector<Coedge*> aCoedges;
    std::vector<Coedge*> aOnEdge;
    for (std::size_t i = 0; i < aQueue.size(); ++i)
    {
        aCoedges.clear();
        aQueue[i]->GetCoedges(aCoedges);
        for (const Coedge* pCoedge : aCoedges)
        {
            aOnEdge.clear();
            pCoedge->GetEdge()->GetCoedges(aOnEdge);
            std::erase_if(aOnEdge, [&](const Coedge* pOther)
                          { return pOther->GetFace() == aQueue[i] || !component.contains(pOther->GetFace()); });
            if (aOnEdge.size() != 1 || !seen.insert(aOnEdge.front()->GetFace()).second)
                continue;
            Face* pNeighbour = aOnEdge.front()->GetFace();
            if (aOnEdge.front()->IsForward() == pCoedge->IsForward())
            {
                pNeighbour->Reverse();
                aTurned.push_back(pNeighbour);
            }
            aQueue.push_back(pNeighbour);
        }
    }
    return aTurned;
}

/// The faces reached over edges of two sides. Empty when an edge on the way has one side only.
std::vector<Face*> FindTwoSidedComponent(Face& face)
{
    std::vector<Face*> aFaces{&face};
    ObjectSet seen{&face};
    std::vector<Coedge*> aCoedges;
    for (std::size_t i = 0; i < aFaces.size(); ++i)
    {
        aCoedges.clear();
        aFaces[i]->GetCoedges(aCoedges);
        for (const Coedge* pCoedge : aCoedges)
        {
            const Coedge* pPartner = pCoedge->GetPartner();
            if (!pPartner)
                return {};
            if (pPartner->GetPartner() == pCoedge && pPartner->GetFace() && seen.insert(pPartner->GetFace()).second)
                aFaces.push_back(pPartner->GetFace());
        }
    }
    return aFaces;
}

/// The closed sheet around a face, turned consistently where only that was missing; empty for an open one. A wall of
/// another solid that would close it does not: it bounds that one alone.
std::vector<Face*> FindClosedComponent(Face& face)
{
    std::vector<Face*> aFaces;
    Face::Sheet sheet;
    sheet.bStopWhenOpen = true;
    sheet.pWithin = face.GetShell();
    ObjectSet seen;
    face.GetConnectedComponent(aFaces, seen, sheet);
    if (sheet.bClosed)
        return aFaces;

    // Where others share an edge, a sheet not yet turned consistently may have been left for theirs.
    const std::vector<Face*> aToOrient = sheet.bNoOpenEdge ? aFaces : FindTwoSidedComponent(face);
    aFaces.clear();
    if (aToOrient.empty())
        return aFaces;
    const std::vector<Face*> aTurned = OrientFaceComponent(aToOrient);
    seen.clear();
    face.GetConnectedComponent(aFaces, seen, sheet);
    if (sheet.bClosed)
        return aFaces;
    for (Face* pTurned : aTurned)
        pTurned->Reverse();
    return {};
}

/// Gives a closed component a body if it has none, and turns its faces so that a solid has them outward.
void MakeSolid(Face& face, const std::vector<Face*>& aFaces)
{
    if (!face.GetBody())
    {
        History& history = *face.GetHistory();
        Body& body = history.Create<Body>();
        Shell& shell = history.Create<Shell>();
        body.AddLump().AddShell(&shell, false);
        shell.AddFaces(aFaces);
    }
    OrientFaceComponent(aFaces);

    const Shell* pShell = face.GetShell();
    const bool bOuter = pShell && pShell->GetLump() && pShell->GetLump()->GetShells().front() == pShell;
    const double dVolume = GetSignedVolume(aFaces);
    const bool bInsideOut = bOuter ? dVolume < -kLinearTolerance : dVolume > kLinearTolerance;
    if (bInsideOut)
        for (Face* pFace : aFaces)
            pFace->Reverse();
}

/// Deletes a face that another coincides with. Its edges stay, for walks of the search still run along them.
void DeleteTwin(History& history, Face& face)
{
    const OuterSideMemo::ReplacingFaces replacing(history.GetOuterSides());
    face.Delete(false, true);
}

} // namespace

void SettleNewFace(Face& newFace, bool bKeepOrientation, Face* pHolding, std::vector<Face*>* pNewFaces)
{
    History& history = *newFace.GetHistory();
    const std::uint64_t nNewFace = newFace.GetID();
    const Shell* pShellBefore = newFace.GetShell();
    Face* pAround = pHolding && pHolding->AddInnerFace(&newFace) ? pHolding : nullptr;
    if (!pHolding)
        pAround = FillHoleAround(history, newFace);
    if (pAround)
        EdgesIntoFace(history, *pAround, GetCornerIDs(newFace, false)).DrawInSpurs();
    HoleTaking holes(history, newFace);
    const bool bTookHoles = holes.Run();
    if (!bKeepOrientation && !bTookHoles && RunsWithNeighbour(newFace))
        newFace.Reverse();
    const bool bJoinedAround = newFace.GetShell() != pShellBefore;
    RebuildBranchedBodies(GetSheetJoined(newFace, bTookHoles || (bJoinedAround && IsAtBranch(newFace))));

    std::vector<std::uint64_t> aToDrawIn{nNewFace};
    for (std::size_t i = 0; i < aToDrawIn.size(); ++i)
    {
        auto* pFace = history.Get<Face>(aToDrawIn[i]);
        if (!pFace)
            continue;
        const bool bSplitOff = i > 0;
        if (bSplitOff && pNewFaces)
        {
            pNewFaces->push_back(pFace);
            continue;
        }
        bool bAllCorners = holes.LeftEdgesOut();
        if (bSplitOff && !CoincidesWithAnother(history, *pFace))
        {
            HoleTaking inner(history, *pFace);
            inner.Run();
            bAllCorners = bAllCorners || inner.LeftEdgesOut();
        }
        for (const std::uint64_t nSplitOff : EdgesIntoFace(history, *pFace, GetCornerIDs(*pFace, bAllCorners)).DrawInAll())
            aToDrawIn.push_back(nSplitOff);
        if (bSplitOff && (CoincidesWithAnother(history, *pFace) || IsCovered(history, *pFace)))
            DeleteTwin(history, *pFace);
    }
}

void RebuildBranchedBodies(const std::vector<Face*>& aFaces)
{
    std::vector<Face*> aAtBranches;
    std::vector<Edge*> aEdges;
    for (const Face* pFace : aFaces)
    {
        aEdges.clear();
        pFace->GetEdges(aEdges);
        for (const Edge* pEdge : aEdges)
            if (pEdge->GetUse() > 2)
                pEdge->GetFaces(aAtBranches);
    }
    std::vector<Body*> aBodies;
    for (const Face* pFace : aAtBranches)
        if (Body* pBody = pFace->GetBody(); pBody && std::find(aBodies.begin(), aBodies.end(), pBody) == aBodies.end())
            aBodies.push_back(pBody);
    std::sort(aBodies.begin(), aBodies.end(), ByObjectID());
    for (Body* pBody : aBodies)
        pBody->Rebuild(false);
}

void CloseFaceComponent(Face& face)
{
    if (face.SeesOpenEdge())
        return;
    const std::vector<Face*> aFaces = FindClosedComponent(face);
    if (aFaces.empty())
        return;
    MakeSolid(face, aFaces);
    RebuildBranchedBodies(aFaces);
}
} // namespace QRV
