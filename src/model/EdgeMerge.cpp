#include "history/History.h"
#include "model/Attribute.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Shell.h"
#include "model/SmoothAngles.h"
#include "model/Vertex.h"

namespace QRV
{
namespace
{
void RemoveRedundant(const History& history, const std::vector<std::uint64_t>& aVertexIDs)
{
    for (const std::uint64_t nVertex : aVertexIDs)
        if (auto* pVertex = history.Get<Vertex>(nVertex))
            pVertex->RemoveIfRedundant();
}

/// Takes an edge out from between its two coedges, which run against one another.
class EdgeRemoval
{
public:
    EdgeRemoval(Edge& edge, Edge::MergeOutcome& outcome)
        : m_history(*edge.GetHistory()), m_edge(edge), m_first(*edge.GetCoedge()),
          m_second(*edge.GetCoedge()->GetPartner()), m_outcome(outcome), m_nStart(edge.GetStartVertex()->GetID()),
          m_nEnd(edge.GetEndVertex()->GetID()), m_aAtStart(edge.GetStartVertex()->GetConnectedEdgeIDs()),
          m_aAtEnd(edge.GetEndVertex()->GetConnectedEdgeIDs())
    {
    }

    void Run()
    {
        m_edge.Changed(nBoundaryChanged);
        if (m_first.GetLoop() == m_second.GetLoop())
            LeaveOneLoop();
        else
            JoinFaces();
        // The last of the two takes the edge with it.
        Coedge& last = m_second;
        m_first.DeleteSelf();
        last.DeleteSelf();
        Regroup(m_nStart, m_aAtStart);
        Regroup(m_nEnd, m_aAtEnd);
    }

private:
    void LeaveOneLoop()
    {
        Loop& loop = *m_first.GetLoop();
        Face& face = *loop.GetFace();
        const bool bFirstThenSecond = m_first.GetNext() == &m_second;
        const bool bSecondThenFirst = m_second.GetNext() == &m_first;
        if (bFirstThenSecond && bSecondThenFirst)
        {
            face.RemoveLoop(&loop);
            loop.DeleteSelf();
            if (face.GetLoops().empty())
                m_outcome.pRemovedFace = &face;
            return;
        }
        if (bFirstThenSecond || bSecondThenFirst)
        {
            m_first.Unlink();
            m_second.Unlink();
            return;
        }
        SplitLoop(loop, face);
    }

    /// The edge was a bridge: its loop falls into two.
    void SplitLoop(Loop& loop, Face& face)
    {
        Coedge& beforeFirst = *m_first.GetPrevious();
        Coedge& behindFirst = *m_first.GetNext();
        Coedge& beforeSecond = *m_second.GetPrevious();
        Coedge& behindSecond = *m_second.GetNext();
        Coedge::Link(beforeFirst, behindSecond);
        Coedge::Link(beforeSecond, behindFirst);
        Loop& other = m_history.Create<Loop>();
        InheritAttributes(loop, other);
        const bool bOuter = face.GetOuterLoop() == &loop;
        loop.SetCoedge(&beforeFirst);
        other.SetCoedge(&beforeSecond);
        other.OwnCoedges();
        const Plane plane = face.GetPlane();
        if (bOuter && loop.GetSignedArea(plane) > kLinearTolerance && other.GetSignedArea(plane) > kLinearTolerance)
        {
            Face& split = Face::Create(m_history, plane, face.GetShell());
            InheritAttributes(face, split);
            split.AddLoop(&other, true);
            face.HandOverInnerLoops(split, loop);
            face.Changed(nShapeChanged);
            m_outcome.pNewFace = &split;
            return;
        }
        face.AddLoop(&other, false);
        if (bOuter)
            face.ChooseOuterLoop();
    }

    /// One face takes over the other's loops, and the two loops at the edge become one.
    void JoinFaces()
    {
        // The face around the other keeps its identity: its outer loop is not the one at the edge.
        Face* pKept = m_first.GetFace();
        Face* pGone = m_second.GetFace();
        Coedge* pInKept = &m_first;
        if (m_second.GetLoop() != pGone->GetOuterLoop())
        {
            std::swap(pKept, pGone);
            pInKept = &m_second;
        }
        Loop* pLoop = pInKept->GetLoop();
        Coedge& inKept = *pInKept;
        Coedge& inGone = *inKept.GetPartner();
        Loop* pGoneLoop = inGone.GetLoop();
        MergeAttributesFrom(*pKept, *pGone, true);
        pKept->Changed(nChangeBox | nChangeFacets);
        const std::vector<Loop*> aLoops = pGone->GetLoops();
        for (Loop* pMoved : aLoops)
        {
            pGone->RemoveLoop(pMoved);
            if (pMoved != pGoneLoop)
                pKept->AddLoop(pMoved, false);
        }
        Coedge& beforeKept = *inKept.GetPrevious();
        Coedge& behindKept = *inKept.GetNext();
        Coedge::Link(beforeKept, *inGone.GetNext());
        Coedge::Link(*inGone.GetPrevious(), behindKept);
        pLoop->SetCoedge(&beforeKept);
        pLoop->OwnCoedges();
        pGoneLoop->DeleteSelf();
        m_outcome.pRemovedFace = pGone;
    }

    void Regroup(std::uint64_t nVertex, const std::vector<std::uint64_t>& aKnown)
    {
        if (auto* pVertex = m_history.Get<Vertex>(nVertex))
            pVertex->Regroup(aKnown);
    }

    History& m_history;
    Edge& m_edge;
    Coedge& m_first;
    Coedge& m_second;
    Edge::MergeOutcome& m_outcome;
    const std::uint64_t m_nStart;
    const std::uint64_t m_nEnd;
    const std::vector<std::uint64_t> m_aAtStart;
    const std::vector<std::uint64_t> m_aAtEnd;
};

bool HasOneSurface(const Face& a, const Face& b)
{
    const auto getSurfaces = [](const Face& face)
    {
        std::vector<Attribute*> aAttributes;
        face.GetAttributes(aAttributes);
        std::erase_if(aAttributes, [](const Attribute* pAttribute) { return !pAttribute->IsAnalytic(); });
        return aAttributes;
    };
    const std::vector<Attribute*> aOfA = getSurfaces(a);
    const std::vector<Attribute*> aOfB = getSurfaces(b);
    return aOfA.size() <= 1 && aOfA.size() == aOfB.size() && (aOfA.empty() || aOfA[0]->GetType() == aOfB[0]->GetType());
}
} // namespace

bool Edge::TryMerge(MergeOutcome& outcome, bool /*bCheckUV*/, bool bMarkSmooth, double dCosAngle)
{
    const Coedge* pPartner = m_pCoedge ? m_pCoedge->GetPartner() : nullptr;
    if (!pPartner || pPartner->GetPartner() != m_pCoedge || pPartner->IsForward() == m_pCoedge->IsForward() ||
        !pPartner->GetLoop() || !m_pCoedge->GetFace())
        return false;
    Face* pFace = m_pCoedge->GetFace();
    Face* pOther = pPartner->GetFace();
    if (pPartner->GetLoop() != m_pCoedge->GetLoop())
    {
        if (!pOther || pOther == pFace)
            return false;
        const Plane plane = pFace->GetPlane();
        const Plane other = pOther->GetPlane();
        if (!plane.isEqual(other, kLinearTolerance, kParallelToleranceSqrd))
        {
            const double dDot = plane.normal % other.normal;
            const bool bSmoothEnd = m_pStartVertex->IsSmooth() || m_pEndVertex->IsSmooth();
            if (bMarkSmooth && (dDot > dCosAngle || (bSmoothEnd && dDot > kCosThirtyDegrees)) &&
                HasOneSurface(*pFace, *pOther))
                SetSmooth(true);
            return false;
        }
    }
    EdgeRemoval(*this, outcome).Run();
    return true;
}

bool Edge::Delete(bool bNoVertexCleanup)
{
    History& history = *GetHistory();
    const std::uint64_t nSelf = GetID();
    const std::uint64_t nStart = m_pStartVertex->GetID();
    const std::uint64_t nEnd = m_pEndVertex->GetID();
    MergeOutcome outcome;
    if (TryMerge(outcome, false, true, kCosHalfDegree))
    {
        if (outcome.pRemovedFace)
            outcome.pRemovedFace->Delete(false, true);
        if (!bNoVertexCleanup)
            RemoveRedundant(history, {nStart, nEnd});
        return true;
    }
    ShortList<Face*> aFaces;
    GetFaces(aFaces);
    std::vector<std::uint64_t> aVertexIDs{nStart, nEnd};
    for (Face* pFace : aFaces)
    {
        std::vector<Vertex*> aVertices;
        pFace->GetVertices(aVertices);
        for (const Vertex* pVertex : aVertices)
            aVertexIDs.push_back(pVertex->GetID());
        pFace->Delete(false, true);
    }
    if (auto* pSelf = history.Get<Edge>(nSelf))
        pSelf->DeleteSelf();
    // Behind the edge's end, which might have been joined to the edge it runs on to.
    if (!bNoVertexCleanup)
        RemoveRedundant(history, aVertexIDs);
    return true;
}
} // namespace QRV
