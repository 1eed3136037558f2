#include "history/History.h"
#include "model/Body.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "model/Vertex.h"
#include "operations/FaceSearch.h"
#include "spatial/Measures.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace QRV
{
namespace
{

std::vector<std::uint64_t> GetCornerIDs(const Face& face)
{
    std::vector<Vertex*> aCorners;
    face.GetVertices(aCorners);
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
            bool bBranches = false;
            for (const std::uint64_t nEdge : FindEdgesAt(i, bBranches))
            {
                auto* pEdge = m_history.Get<Edge>(nEdge);
                if (pEdge && !m_face.HasEdge(*pEdge))
                    m_face.AddSpurEdge(*pEdge, pEdge->GetStartVertex()->GetID() == m_aCorners[i], done);
            }
            if (bBranches)
                FollowSpurs(i);
        }
    }

    /// Those between two corners too, as chords. Gives the ids of the faces that these split off.
    std::vector<std::uint64_t> DrawInAll()
    {
        std::vector<std::uint64_t> aSplitOff;
        for (bool bSplit = true; bSplit;)
        {
            DrawInSpurs();
            Face* pSplitOff = nullptr;
            bSplit = DrawInChord(pSplitOff);
            if (pSplitOff)
                aSplitOff.push_back(pSplitOff->GetID());
        }
        return aSplitOff;
    }

private:
    const std::vector<std::uint64_t>& FindEdgesAt(std::size_t nCorner, bool& bBranches)
    {
        m_aFound.clear();
        m_aEdges.clear();
        const auto* pCorner = m_history.Get<Vertex>(m_aCorners[nCorner]);
        bBranches = pCorner && pCorner->GetConnectedEdges(m_aEdges) > 2;
        if (bBranches)
            for (const Edge* pEdge : m_aEdges)
                if (!m_face.HasEdge(*pEdge))
                    m_aFound.push_back(pEdge->GetID());
        return m_aFound;
    }

    /// What hangs on the far ends of spurs is to be drawn in as well.
    void FollowSpurs(std::size_t nCorner)
    {
        m_aEdges.clear();
        const auto* pCorner = m_history.Get<Vertex>(m_aCorners[nCorner]);
        pCorner->GetConnectedEdges(m_aEdges);
        for (const Edge* pEdge : m_aEdges)
            if (pEdge->GetUseBy(m_face) > 1)
                if (const std::uint64_t nFar = pEdge->GetOtherVertex(pCorner)->GetID(); m_seen.insert(nFar).second)
                    m_aCorners.push_back(nFar);
    }

    /// One edge between two corners. False when there is none to draw in; `pSplitOff` gets what came off.
    bool DrawInChord(Face*& pSplitOff)
    {
        bool bBranches = false;
        for (std::size_t i = 0; i < m_aCorners.size(); ++i)
            for (const std::uint64_t nEdge : FindEdgesAt(i, bBranches))
                if (auto* pEdge = m_history.Get<Edge>(nEdge))
                {
                    pSplitOff = nullptr;
                    if (m_face.SplitByEdge(*pEdge, &pSplitOff, false))
                        return true;
                }
        return false;
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

/// The faces in the plane of another and inside its box, largest first, so that a face inside another candidate does
/// not become a hole beside it.
std::vector<std::uint64_t> FindInnerFaces(History& history, Face& face)
{
    std::vector<Face*> aInside;
    history.GetFaceTree().FindInside(face.GetBox(), aInside);
    std::vector<std::pair<double, std::uint64_t>> aByArea;
    for (Face* pInside : aInside)
        if (pInside != &face && pInside->GetOuterLoop() && pInside->GetSideIn(face.GetPlane()) != 0)
            aByArea.emplace_back(-pInside->GetOuterLoop()->GetSignedArea(pInside->GetPlane()), pInside->GetID());
    std::sort(aByArea.begin(), aByArea.end());
    std::vector<std::uint64_t> aIDs;
    for (const auto& [dArea, nFace] : aByArea)
        aIDs.push_back(nFace);
    return aIDs;
}

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

/// The face with those of the shell that it has joined.
std::vector<Face*> GetSheetJoined(Face& face)
{
    std::vector<Face*> aSheet{&face};
    if (const Shell* pShell = face.GetShell())
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
    for (std::size_t i = 0; i < aQueue.size(); ++i)
    {
        std::vector<Coedge*> aCoedges;
        aQueue[i]->GetCoedges(aCoedges);
        for (const Coedge* pCoedge : aCoedges)
        {
            std::vector<Coedge*> aOnEdge;
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
    for (std::size_t i = 0; i < aFaces.size(); ++i)
    {
        std::vector<Coedge*> aCoedges;
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

/// Makes holes for the faces that stand in a new one. Of faces that hang together one gets a hole; the edges of the
/// others are drawn in at once, before the next is tried, so that they cut off what they surround and no ring of holes
/// encloses a rest of the face.
class HoleTaking
{
public:
    HoleTaking(History& history, Face& face) : m_history(history), m_nFace(face.GetID()), m_aInner(FindInnerFaces(history, face)) {}

    /// The first hole, with nothing drawn in yet. False for none.
    bool TakeFirst()
    {
        while (m_nNext < m_aInner.size())
            if (Take(m_aInner[m_nNext++]))
                return true;
        return false;
    }

    /// Draws in what hangs on the first hole, and takes all others. Appends the faces split off.
    void TakeRest(std::vector<std::uint64_t>& aSplitOff)
    {
        do
        {
            Face* pFace = m_history.Get<Face>(m_nFace);
            if (!pFace || !m_history.Get<Face>(m_aInner[m_nNext - 1]))
                continue;
            const std::vector<std::uint64_t> aNew =
                EdgesIntoFace(m_history, *pFace, GetCornerIDs(*m_history.Get<Face>(m_aInner[m_nNext - 1]))).DrawInAll();
            aSplitOff.insert(aSplitOff.end(), aNew.begin(), aNew.end());
        } while (TakeFirst());
    }

private:
    bool Take(std::uint64_t nInner)
    {
        auto* pFace = m_history.Get<Face>(m_nFace);
        auto* pInner = m_history.Get<Face>(nInner);
        return pFace && pInner && !IsTouching(*pFace, *pInner) && pFace->AddInnerFace(pInner);
    }

    /// An inner face that touches a loop is cut out by its own edges. Holes that touch would leave the face in one piece
    /// however many pockets they part.
    static bool IsTouching(const Face& face, const Face& inner)
    {
        bool bTouching = false;
        std::vector<Coedge*> aCoedges;
        inner.GetOuterLoop()->ForEachCoedge(
            [&](const Coedge& coedge)
            {
                aCoedges.clear();
                bTouching = bTouching || coedge.GetStartVertex()->GetCoedges(aCoedges, &face) > 0;
            });
        return bTouching;
    }

    History& m_history;
    const std::uint64_t m_nFace;
    const std::vector<std::uint64_t> m_aInner;
    std::size_t m_nNext = 0;
};
/// Deletes a face that another coincides with. Its edges stay, for walks of the search still run along them.
void DeleteTwin(History& history, Face& face)
{
    const OuterSideMemo::ReplacingFaces replacing(history.GetOuterSides());
    face.Delete(false, true);
}

void DrawInAndTakeHoles(History& history, Face& face, bool bSplitOff, std::vector<std::uint64_t>& aSplitOff)
{
    const std::uint64_t nFace = face.GetID();
    if (bSplitOff)
        if (HoleTaking holes(history, face); holes.TakeFirst())
            holes.TakeRest(aSplitOff);
    if (auto* pFace = history.Get<Face>(nFace))
        for (const std::uint64_t nSplitOff : EdgesIntoFace(history, *pFace, GetCornerIDs(*pFace)).DrawInAll())
            aSplitOff.push_back(nSplitOff);
    if (auto* pFace = history.Get<Face>(nFace); pFace && bSplitOff && CoincidesWithAnother(history, *pFace))
        DeleteTwin(history, *pFace);
}
} // namespace

void SettleNewFace(Face& newFace, bool bKeepOrientation, Face* pHolding, std::vector<Face*>* pNewFaces)
{
    History& history = *newFace.GetHistory();
    const std::uint64_t nNewFace = newFace.GetID();
    Face* pAround = pHolding && pHolding->AddInnerFace(&newFace) ? pHolding : nullptr;
    if (!pHolding)
        pAround = FillHoleAround(history, newFace);
    if (pAround)
        EdgesIntoFace(history, *pAround, GetCornerIDs(newFace)).DrawInSpurs();
    HoleTaking holes(history, newFace);
    const bool bTookHoles = holes.TakeFirst();
    if (!bKeepOrientation && !bTookHoles && RunsWithNeighbour(newFace))
        newFace.Reverse();
    RebuildBranchedBodies(GetSheetJoined(newFace));

    std::vector<std::uint64_t> aToDrawIn{nNewFace};
    if (bTookHoles)
        holes.TakeRest(aToDrawIn);
    for (std::size_t i = 0; i < aToDrawIn.size(); ++i)
    {
        auto* pFace = history.Get<Face>(aToDrawIn[i]);
        if (!pFace)
            continue;
        const bool bSplitOff = i > 0;
        if (bSplitOff && pNewFaces)
            pNewFaces->push_back(pFace);
        else if (bSplitOff && CoincidesWithAnother(history, *pFace))
            DeleteTwin(history, *pFace);
        else
            DrawInAndTakeHoles(history, *pFace, bSplitOff, aToDrawIn);
    }
}

void RebuildBranchedBodies(const std::vector<Face*>& aFaces)
{
    std::vector<Face*> aAtBranches;
    for (const Face* pFace : aFaces)
    {
        std::vector<Edge*> aEdges;
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
