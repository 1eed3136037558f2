#include "operations/FaceInterior.h"

#include "history/History.h"
#include "model/CornersAtVertex.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "operations/OutlineWalk.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace QRV
{
namespace
{
/// Draws the edges that leave certain corners of a face, and that it does not use yet, into it.
class EdgesIntoFace
{
public:
    EdgesIntoFace(Face& face, std::vector<std::uint64_t> aCorners)
        : m_history(*face.GetHistory()), m_face(face), m_aCorners(std::move(aCorners)),
          m_seen(m_aCorners.begin(), m_aCorners.end())
    {
    }

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
    /// Those that leave the corner for the inside of the face, as long as nothing else is drawn in.
    const std::vector<std::uint64_t>& FindEdgesAt(std::size_t nCorner)
    {
        m_aFound.clear();
        m_aEdges.clear();
        const auto* pVertex = m_history.Get<Vertex>(m_aCorners[nCorner]);
        if (!pVertex || pVertex->GetConnectedEdges(m_aEdges) <= 2)
            return m_aFound;
        const CornersAtVertex corners(m_face, *pVertex);
        for (const Edge* pEdge : m_aEdges)
            if (!m_face.HasEdge(*pEdge) && pEdge->IsComplete() &&
                corners.Find(pEdge->GetOtherVertex(pVertex)->GetPosition() - pVertex->GetPosition()))
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
    ShortList<Edge*> m_aEdges;
};

class HoleTaking
{
public:
    explicit HoleTaking(Face& face)
        : m_history(*face.GetHistory()), m_face(face), m_plane(face.GetPlane()),
          m_nAxis((m_plane.normal.dominantDirection() + 1) % 3)
    {
    }

    InnerFaces Run()
    {
        for (Face* pInner : FindInnerFaces())
            m_taken.bTookAny = Take(*pInner) || m_taken.bTookAny;
        return m_taken;
    }

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
        case nOutline::nTouching: // its edges are drawn in from there, and cut it out
        case nOutline::nCrossed:
            return false;
        case nOutline::nUnclear:
            break;
        }
        m_taken.bLeftEdgesOut = true;
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
        nCrossed,  ///< by edges that do not cut it
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
            if (at.pEdge->PassesUncut(m_plane))
                return nOutline::nCrossed;
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
    InnerFaces m_taken;
    ShortList<Coedge*> m_aCoedges;
};
} // namespace

void DrawInSpurs(Face& face, std::vector<std::uint64_t> aCorners)
{
    EdgesIntoFace(face, std::move(aCorners)).DrawInSpurs();
}

std::vector<std::uint64_t> DrawInEdges(Face& face, std::vector<std::uint64_t> aCorners)
{
    return EdgesIntoFace(face, std::move(aCorners)).DrawInAll();
}

InnerFaces TakeInnerFaces(Face& face)
{
    return HoleTaking(face).Run();
}
} // namespace QRV
