#include "operations/Healing.h"

#include "geometry/Finite.h"
#include "history/History.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "operations/EdgeSplit.h"
#include "operations/FaceInterior.h"

#include <algorithm>
#include <map>

namespace QRV
{
namespace
{
/// Moves everything at `from` to `to`, which stand at one place. `from` dies with its last edge.
void TakeOverVertex(Vertex& to, Vertex& from)
{
    History& history = *to.GetHistory();
    history.GetOuterSides().Clear();
    MergeAttributesFrom(to, from, false);
    std::vector<std::uint64_t> aKnown = to.GetConnectedEdgeIDs();
    const std::vector<std::uint64_t> aMoved = from.GetConnectedEdgeIDs();
    if (aMoved.empty())
    {
        from.Delete();
        return;
    }
    for (const std::uint64_t nEdge : aMoved)
        history.Get<Edge>(nEdge)->Changed(nShapeChanged);
    for (const std::uint64_t nEdge : aMoved)
        if (auto* pEdge = history.Get<Edge>(nEdge))
            pEdge->ReplaceReferences({{&from, &to}});
    aKnown.insert(aKnown.end(), aMoved.begin(), aMoved.end());
    to.Regroup(aKnown);
}

bool SplitEdgesThrough(History& history, std::uint64_t nVertex, double dTol)
{
    const auto* pVertex = history.Get<Vertex>(nVertex);
    if (!pVertex)
        return false;
    const Point3d place = pVertex->GetPosition();
    ShortList<Edge*> aEdges;
    history.GetEdgeTree().FindTouching(Interval3d(place, ScaledTolerance(place, dTol)), aEdges);
    std::sort(aEdges.begin(), aEdges.end(), ByObjectID());
    bool bSplit = false;
    for (Edge* pEdge : aEdges)
        bSplit = SplitEdgeAtPoint(*pEdge, place, {.pAtVertex = history.Get<Vertex>(nVertex), .dTol = dTol}) || bSplit;
    return bSplit;
}

/// Takes a coedge out of its loop and the model; the edge stays, free if that was its last use.
void CutOutCoedge(Coedge& coedge)
{
    Edge* pEdge = coedge.GetEdge();
    coedge.Unlink();
    pEdge->IncrementUse(); // so that the edge outlives its last coedge
    coedge.DeleteSelf();
    pEdge->DecrementUse(false);
}

/// Where the coedges of an edge stand back to back in a loop, without being a dangling end of it, the pair goes; a loop
/// that this empties goes with its face, when the face has no other.
void CutOutSpikes(History& history, std::uint64_t nEdge)
{
    auto* pEdge = history.Get<Edge>(nEdge);
    if (!pEdge)
        return;
    ShortList<Coedge*> aCoedges;
    pEdge->GetCoedges(aCoedges);
    for (Coedge* pCoedge : aCoedges)
    {
        Coedge* pBack = pCoedge->GetNext();
        if (!pBack || pBack == pCoedge || pBack->GetEdge() != pEdge || pBack->IsForward() == pCoedge->IsForward())
            continue;
        Loop* pLoop = pCoedge->GetLoop();
        Face* pFace = pLoop->GetFace();
        const std::vector<std::uint64_t> aAtStart = pEdge->GetStartVertex()->GetConnectedEdgeIDs();
        const std::vector<std::uint64_t> aAtEnd = pEdge->GetEndVertex()->GetConnectedEdgeIDs();
        pEdge->Changed(nBoundaryChanged);
        const bool bEmpties = pBack->GetNext() == pCoedge;
        if (bEmpties && pFace && pFace->GetLoops().size() == 1)
            pFace->Delete(true, true);
        else if (bEmpties && pFace)
            pFace->DeleteLoop(pLoop);
        else
        {
            if (pFace)
                pFace->Changed(nShapeChanged); // nothing else may reach as far as the spike did
            CutOutCoedge(*pBack);
            CutOutCoedge(*pCoedge);
        }
        if ((pEdge = history.Get<Edge>(nEdge)))
        {
            pEdge->GetStartVertex()->Regroup(aAtStart);
            pEdge->GetEndVertex()->Regroup(aAtEnd);
        }
        return;
    }
}

bool JoinSameVertices(const Edge& a, const Edge& b)
{
    return a.HasVertex(b.GetStartVertex()) && a.HasVertex(b.GetEndVertex());
}

/// `kept` takes over the coedges and attributes of `gone`, an edge between the same two vertices, which dies.
void TakeOverEdge(Edge& kept, Edge& gone)
{
    kept.Changed(nBoundaryChanged);
    gone.Changed(nBoundaryChanged);
    const bool bOpposite = kept.GetStartVertex() != gone.GetStartVertex();
    const bool bSmooth = kept.IsSmooth() || gone.IsSmooth();
    std::vector<std::uint64_t> aAtStart = kept.GetStartVertex()->GetConnectedEdgeIDs();
    std::vector<std::uint64_t> aAtEnd = kept.GetEndVertex()->GetConnectedEdgeIDs();
    MergeAttributesFrom(kept, gone, true);

    ShortList<Coedge*> aCoedges;
    kept.GetCoedges(aCoedges);
    ShortList<Coedge*> aMoved;
    gone.GetCoedges(aMoved);
    gone.SetCoedge(nullptr);
    if (aMoved.empty())
        gone.DeleteSelf();
    for (Coedge* pCoedge : aMoved)
    {
        if (bOpposite)
            pCoedge->SetForward(!pCoedge->IsForward());
        pCoedge->SetEdge(&kept); // the last one takes the edge with it
        aCoedges.push_back(pCoedge);
    }
    SetPartnerChain(aCoedges);
    if (!aCoedges.empty())
        kept.SetCoedge(aCoedges.front());
    kept.SetSmooth(bSmooth && aCoedges.size() <= 2);
    kept.GetStartVertex()->Regroup(aAtStart);
    kept.GetEndVertex()->Regroup(aAtEnd);
}

/// Removes an edge that starts where it ends.
void RemoveZeroEdge(History& history, std::uint64_t nEdge)
{
    auto* pEdge = history.Get<Edge>(nEdge);
    ShortList<Coedge*> aCoedges;
    pEdge->GetCoedges(aCoedges);
    for (Coedge* pCoedge : aCoedges)
    {
        pCoedge->Changed(nBoundaryChanged);
        pCoedge->Unlink();
        pCoedge->DeleteSelf();
    }
    if ((pEdge = history.Get<Edge>(nEdge)))
        pEdge->DeleteSelf();
}

/// One loop of one face that may pass one vertex twice.
class LoopPinch
{
public:
    LoopPinch(Vertex& vertex, Face& face) : m_vertex(vertex), m_face(face) {}

    /// Splits the loop at the vertex; true when it did. `pNewFaces` gets the id of a face that came off.
    bool Heal(std::vector<std::uint64_t>* pNewFaces)
    {
        const bool bSpike = TakeOutSpike();
        const bool bPinched = IsPinched();
        Face* pNewFace = bPinched ? Split() : nullptr;
        if (pNewFace && pNewFaces)
            pNewFaces->push_back(pNewFace->GetID());
        if (bSpike)
            DrawInSpurs(m_face, {m_vertex.GetID()});
        if (bSpike && pNewFace)
            DrawInSpurs(*pNewFace, {m_vertex.GetID()});
        return bPinched;
    }

private:
    /// A dangling end that starts at the pinch, between two ways through it, would hide it. It is taken out of the loop
    /// and drawn in again behind the split, into the face where it lies.
    bool TakeOutSpike()
    {
        ShortList<Coedge*> aCoedges;
        m_vertex.GetCoedges(aCoedges, &m_face);
        const Loop* pLoop = aCoedges.empty() ? nullptr : aCoedges[0]->GetLoop();
        if (aCoedges.size() != 6 || CountEdges(aCoedges) != 5 ||
            std::any_of(aCoedges.begin(), aCoedges.end(),
                        [&](const Coedge* pCoedge) { return pCoedge->GetLoop() != pLoop; }))
            return false;
        for (Coedge* pCoedge : aCoedges)
            if (pCoedge->GetStartVertex() == &m_vertex && IsSpike(*pCoedge))
            {
                TakeOut(GetRun(*pCoedge));
                return true;
            }
        return false;
    }

    static std::size_t CountEdges(const ShortList<Coedge*>& aCoedges)
    {
        ObjectSet edges;
        for (const Coedge* pCoedge : aCoedges)
            edges.insert(pCoedge->GetEdge());
        return edges.size();
    }

    /// From the vertex back to it.
    std::vector<Coedge*> GetRun(Coedge& first) const
    {
        std::vector<Coedge*> aRun{&first};
        while (aRun.back()->GetEndVertex() != &m_vertex)
            aRun.push_back(aRun.back()->GetNext());
        return aRun;
    }

    /// Whether the run goes back on the edges on which it came.
    bool IsSpike(Coedge& first) const
    {
        std::vector<std::uint64_t> aEdgeIDs;
        for (const Coedge* pCoedge : GetRun(first))
            aEdgeIDs.push_back(pCoedge->GetEdge()->GetID());
        std::sort(aEdgeIDs.begin(), aEdgeIDs.end());
        for (std::size_t n = 0; n < aEdgeIDs.size(); n += 2)
            if (n + 1 == aEdgeIDs.size() || aEdgeIDs[n] != aEdgeIDs[n + 1])
                return false;
        return true;
    }

    void TakeOut(const std::vector<Coedge*>& aRun)
    {
        m_face.Changed(nShapeChanged);
        std::map<std::uint64_t, std::vector<std::uint64_t>> mapEdgesAt; // of each vertex on the way
        for (const Coedge* pCoedge : aRun)
        {
            pCoedge->GetEdge()->Changed(nBoundaryChanged);
            mapEdgesAt[pCoedge->GetStartVertex()->GetID()] = pCoedge->GetStartVertex()->GetConnectedEdgeIDs();
        }
        for (Coedge* pCoedge : aRun)
            CutOutCoedge(*pCoedge);
        for (const auto& [nVertex, aEdgeIDs] : mapEdgesAt)
            m_face.GetHistory()->Get<Vertex>(nVertex)->Regroup(aEdgeIDs);
    }

    /// Gives the face that came off, if any.
    Face* Split()
    {
        Loop& loop = *m_pA->GetLoop();
        m_face.Changed(nShapeChanged);
        Coedge& beforeA = *m_pA->GetPrevious();
        Coedge& beforeB = *m_pB->GetPrevious();
        Coedge::Link(beforeA, *m_pB);
        Coedge::Link(beforeB, *m_pA);
        return SettleRings(loop);
    }

    /// Two ways out and two in, on four edges: an edge that is there twice is a dangling end or a bridge, which stays.
    bool IsPinched()
    {
        ShortList<Coedge*> aCoedges;
        m_vertex.GetCoedges(aCoedges, &m_face);
        if (aCoedges.size() != 4)
            return false;
        ShortList<Coedge*> aOut;
        for (Coedge* pCoedge : aCoedges)
            if (pCoedge->GetStartVertex() == &m_vertex)
                aOut.push_back(pCoedge);
        if (aOut.size() != 2 || CountEdges(aCoedges) != 4 || aOut[0]->GetLoop() != aOut[1]->GetLoop())
            return false;
        m_pA = aOut[0];
        m_pB = aOut[1];
        return !DoRunsCross();
    }

    /// Whether the second run enters and leaves on different sides of the first. Told only where the runs share their
    /// far ends; elsewhere the loop may be split either way.
    bool DoRunsCross() const
    {
        if (m_pA->GetEndVertex() != m_pB->GetEndVertex())
            return false;
        const Coedge* pInner = m_face.FindCorner(&m_vertex, m_pB->GetVector());
        const Coedge* pOuter = m_face.FindCorner(&m_vertex, -m_pB->GetPrevious()->GetVector());
        return pInner != pOuter;
    }

    Face* SettleRings(Loop& loop)
    {
        const Plane plane = m_face.GetPlane();
        History& history = *m_face.GetHistory();
        const bool bOuter = m_face.GetOuterLoop() == &loop;
        Loop& other = history.Create<Loop>();
        loop.SetCoedge(m_pA);
        other.SetCoedge(m_pB);
        other.OwnCoedges();
        const double dArea = loop.GetSignedArea(plane);
        const double dOther = other.GetSignedArea(plane);
        const bool bBothFaces = bOuter && dArea > kLinearTolerance && dOther > kLinearTolerance;
        if (bBothFaces || (!bOuter && dOther > kLinearTolerance))
            return &MakeFace(other, loop);
        if (!bOuter && dArea > kLinearTolerance)
        {
            loop.SetCoedge(m_pB);
            loop.OwnCoedges();
            other.SetCoedge(m_pA);
            other.OwnCoedges();
            return &MakeFace(other, loop);
        }
        m_face.AddLoop(&other, false);
        if (bOuter)
            m_face.ChooseOuterLoop();
        DropFlatLoops();
        return nullptr;
    }

    Face& MakeFace(Loop& outline, const Loop& parted)
    {
        Face& face = Face::Create(*m_face.GetHistory(), m_face.GetPlane(), m_face.GetShell());
        InheritAttributes(m_face, face);
        face.AddLoop(&outline, true);
        m_face.HandOverInnerLoops(face, parted);
        m_face.Changed(nShapeChanged);
        return face;
    }

    void DropFlatLoops()
    {
        const std::vector<Loop*> aLoops = m_face.GetLoops();
        for (Loop* pLoop : aLoops)
            if (m_face.GetLoops().size() > 1 && std::abs(pLoop->GetSignedArea(m_face.GetPlane())) <= kLinearTolerance)
                m_face.DeleteLoop(pLoop);
    }

    Vertex& m_vertex;
    Face& m_face;
    Coedge* m_pA = nullptr; ///< the two coedges that leave the vertex
    Coedge* m_pB = nullptr;
};

bool HealOnePinch(History& history, const std::vector<std::uint64_t>& aVertexIDs, const Face* pOnlyFace,
                  std::vector<std::uint64_t>* pNewFaces)
{
    for (const std::uint64_t nVertex : aVertexIDs)
    {
        auto* pVertex = history.Get<Vertex>(nVertex);
        if (!pVertex)
            continue;
        ShortList<Face*> aFaces;
        pVertex->GetFaces(aFaces);
        for (Face* pFace : aFaces)
        {
            if (pOnlyFace && pFace != pOnlyFace)
                continue;
            const std::vector<std::uint64_t> aKnown = pVertex->GetConnectedEdgeIDs();
            if (LoopPinch(*pVertex, *pFace).Heal(pNewFaces))
            {
                if ((pVertex = history.Get<Vertex>(nVertex)))
                    pVertex->Regroup(aKnown);
                return true;
            }
        }
    }
    return false;
}
} // namespace

bool MergeCoincidentVertices(History& history, Object* pObject, const std::vector<std::uint64_t>& aVertexIDs,
                             bool bSplitEdges, double dTol, std::vector<std::uint64_t>* pChanged)
{
    dTol = std::max(dTol, kLinearTolerance);
    std::vector<std::uint64_t> aIDs = aVertexIDs;
    if (aIDs.empty() && pObject)
    {
        std::vector<Object*> aVertices;
        pObject->GetObjectsOfType(aVertices, nVertexType, false);
        for (const Object* pVertex : aVertices)
            aIDs.push_back(pVertex->GetID());
    }
    std::vector<std::uint64_t> aChanged;
    for (const std::uint64_t nVertex : aIDs)
    {
        auto* pVertex = history.Get<Vertex>(nVertex);
        if (!pVertex)
            continue;
        const Point3d& place = pVertex->GetPosition();
        ShortList<Vertex*> aHits;
        history.GetVertexTree().FindTouching(Interval3d(place, ScaledTolerance(place, dTol)), aHits);
        std::sort(aHits.begin(), aHits.end(), ByObjectID());
        for (Vertex* pHit : aHits)
            if (pHit != pVertex)
                TakeOverVertex(*pVertex, *pHit);
        if (aHits.size() > 1)
            aChanged.push_back(nVertex);
    }
    if (bSplitEdges)
        for (const std::uint64_t nVertex : aIDs)
            if (SplitEdgesThrough(history, nVertex, dTol) &&
                std::find(aChanged.begin(), aChanged.end(), nVertex) == aChanged.end())
                aChanged.push_back(nVertex);
    if (pChanged)
        pChanged->insert(pChanged->end(), aChanged.begin(), aChanged.end());
    return !aChanged.empty();
}

bool MergeDoubleEdges(History& history, const std::vector<std::uint64_t>& aVertexIDs, bool& bRemovedZeroEdges,
                      std::vector<std::uint64_t>& aRemovedEdges)
{
    bool bChanged = false;
    std::vector<std::uint64_t> aZeroEdges;
    std::vector<std::uint64_t> aWithSpikes; // back to back by the merge, and not dangling ends that stood so before
    for (const std::uint64_t nVertex : aVertexIDs)
    {
        const auto* pVertex = history.Get<Vertex>(nVertex);
        const std::vector<std::uint64_t> aEdgeIDs =
            pVertex ? pVertex->GetConnectedEdgeIDs() : std::vector<std::uint64_t>();
        for (std::size_t i = 0; i < aEdgeIDs.size(); ++i)
        {
            auto* pKept = history.Get<Edge>(aEdgeIDs[i]);
            if (pKept && pKept->GetStartVertex() == pKept->GetEndVertex())
                aZeroEdges.push_back(aEdgeIDs[i]);
            else
                for (std::size_t j = i + 1; pKept && j < aEdgeIDs.size(); ++j)
                {
                    auto* pGone = history.Get<Edge>(aEdgeIDs[j]);
                    if (!pGone || pGone->GetStartVertex() == pGone->GetEndVertex() || !JoinSameVertices(*pKept, *pGone))
                        continue;
                    if (!pKept->IsFree() && !pGone->IsFree())
                        aWithSpikes.push_back(aEdgeIDs[i]);
                    TakeOverEdge(*pKept, *pGone);
                    aRemovedEdges.push_back(aEdgeIDs[i]);
                    bChanged = true;
                }
        }
    }
    for (const std::uint64_t nEdge : aZeroEdges)
        if (history.Get<Edge>(nEdge))
        {
            RemoveZeroEdge(history, nEdge);
            bRemovedZeroEdges = bChanged = true;
        }
    for (const std::uint64_t nEdge : aWithSpikes)
        CutOutSpikes(history, nEdge);
    return bChanged;
}

bool HealLoopsAtVertices(History& history, const std::vector<std::uint64_t>& aVertexIDs, const Face* pOnlyFace,
                         std::vector<std::uint64_t>* pNewFaces)
{
    bool bChanged = false;
    while (HealOnePinch(history, aVertexIDs, pOnlyFace, pNewFaces))
        bChanged = true;
    return bChanged;
}
} // namespace QRV
