#include "history/History.h"
#include "model/Body.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "model/Vertex.h"
#include "operations/CellSearch.h"
#include "operations/FaceInterior.h"
#include "operations/FaceSearch.h"
#include "spatial/Measures.h"

#include <algorithm>
#include <functional>

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
    return std::any_of(aAround.begin(), aAround.end(),
                       [&](Face* pOther) {
                           return pOther != &face && pOther->GetSideIn(face.GetPlane()) != 0 &&
                                  pOther->ContainsPointInside(p);
                       });
}

/// Whether the face shares its edges with one other at most, so that nothing hangs together through it.
bool HangsOnOneFace(const Face& face)
{
    std::vector<Edge*> aEdges;
    face.GetEdges(aEdges);
    ShortList<Face*> aFaces;
    for (const Edge* pEdge : aEdges)
        pEdge->GetFaces(aFaces);
    aFaces.EraseIf([&face](const Face* pFace) { return pFace == &face; });
    return std::adjacent_find(aFaces.begin(), aFaces.end(), std::not_equal_to<>()) == aFaces.end();
}

/// The faces at whose edges shells may hang together in another way now that a face has come to stand among others. It
/// alone will do when its own edges branch, for then its body is rebuilt, and when it is no bridge. Else all of its
/// shell: which way a sheet goes at a branch depends on what it has reached before.
std::vector<Face*> GetSheetJoined(Face& face, bool bBroughtOthers)
{
    std::vector<Face*> aSheet{&face};
    const Shell* pShell = face.GetShell();
    if (pShell && (bBroughtOthers || !(face.IsAtBranch() || HangsOnOneFace(face))))
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
    ShortList<Coedge*> aOnEdge;
    for (std::size_t i = 0; i < aQueue.size(); ++i)
    {
        aCoedges.clear();
        aQueue[i]->GetCoedges(aCoedges);
        for (const Coedge* pCoedge : aCoedges)
        {
            aOnEdge.clear();
            pCoedge->GetEdge()->GetCoedges(aOnEdge);
            aOnEdge.EraseIf([&](const Coedge* pOther)
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

/// The faces reached over edges of two sides. Empty when an edge on the way has one side only, or a face of another
/// shell on the other.
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
            Face* pNeighbour = pPartner->GetPartner() == pCoedge ? pPartner->GetFace() : nullptr;
            if (pNeighbour && pNeighbour->GetShell() != face.GetShell())
                return {};
            if (pNeighbour && seen.insert(pNeighbour).second)
                aFaces.push_back(pNeighbour);
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
    sheet.bWithinShell = true;
    ObjectSet seen;
    face.GetConnectedComponent(aFaces, seen, sheet);
    if (sheet.bClosed)
        return aFaces;

    // Where others share an edge, a sheet not yet turned consistently may have been left for theirs.
    const std::vector<Face*> aToOrient = sheet.bNoOpenEdge ? aFaces : FindTwoSidedComponent(face);
    if (!aToOrient.empty())
    {
        const std::vector<Face*> aTurned = OrientFaceComponent(aToOrient);
        aFaces.clear();
        seen.clear();
        face.GetConnectedComponent(aFaces, seen, sheet);
        if (sheet.bClosed)
            return aFaces;
        for (Face* pTurned : aTurned)
            pTurned->Reverse();
    }
    // And where open faces share edges with a closed sheet, they may have led astray.
    for (const bool bFront : {false, true})
        if (std::vector<Face*> aCell = EncloseCell(face, bFront); !aCell.empty())
            return aCell;
    return {};
}

/// Gives a closed component a body if it has none and a shell if it has several, and turns its faces so that a solid
/// has them outward.
void MakeSolid(Face& face, const std::vector<Face*>& aFaces)
{
    Body* pBody = face.GetBody();
    if (!pBody || std::any_of(aFaces.begin(), aFaces.end(),
                              [&](const Face* pFace) { return pFace->GetShell() != face.GetShell(); }))
    {
        if (!pBody)
            pBody = &face.GetHistory()->Create<Body>();
        pBody->AddShell().TakeFaces(aFaces);
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

bool SettleNewFace(Face& newFace, bool bKeepOrientation, Face* pHolding, std::vector<Face*>* pNewFaces)
{
    History& history = *newFace.GetHistory();
    const std::uint64_t nNewFace = newFace.GetID();
    const Shell* pShellBefore = newFace.GetShell();
    Face* pAround = pHolding && pHolding->AddInnerFace(&newFace) ? pHolding : nullptr;
    if (!pHolding)
        pAround = FillHoleAround(history, newFace);
    if (pAround)
        DrawInSpurs(*pAround, GetCornerIDs(newFace, false));
    const InnerFaces taken = TakeInnerFaces(newFace);
    const bool bTookHoles = taken.bTookAny;
    if (!bKeepOrientation && !bTookHoles && RunsWithNeighbour(newFace))
        newFace.Reverse();
    const bool bJoinedAround = newFace.GetShell() != pShellBefore;
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
        bool bAllCorners = taken.bLeftEdgesOut;
        if (bSplitOff && !CoincidesWithAnother(history, *pFace))
            bAllCorners = TakeInnerFaces(*pFace).bLeftEdgesOut || bAllCorners;
        for (const std::uint64_t nSplitOff : DrawInEdges(*pFace, GetCornerIDs(*pFace, bAllCorners)))
            aToDrawIn.push_back(nSplitOff);
        if (bSplitOff && (CoincidesWithAnother(history, *pFace) || IsCovered(history, *pFace)))
            DeleteTwin(history, *pFace);
    }
    for (const std::uint64_t nFace : aToDrawIn)
        if (auto* pFace = history.Get<Face>(nFace))
            RebuildBranchedBodies(GetSheetJoined(*pFace, bTookHoles || (bJoinedAround && pFace->IsAtBranch())));
    const auto* pSettled = history.Get<Face>(nNewFace);
    return !pSettled || !pAround || !HangsOnOneFace(*pSettled);
}

void RebuildBranchedBodies(const std::vector<Face*>& aFaces)
{
    ShortList<Face*> aAtBranches;
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
        pBody->RebuildAround({aAtBranches.begin(), aAtBranches.end()});
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
