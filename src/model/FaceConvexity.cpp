#include "model/Edge.h"
#include "model/Face.h"

namespace QRV
{
namespace
{
/// The walk over faces whose outline bends one way. A queue instead of recursion: a long strip of faces is as deep as
/// it is long.
class ConvexityWalk
{
public:
    ConvexityWalk(Face& start, std::uint64_t nMask) : m_nMask(nMask) { Visit(&start); }

    std::size_t Run(std::vector<Face*>& aFaces)
    {
        const std::size_t nBefore = aFaces.size();
        for (std::size_t n = 0; n < m_aQueue.size(); ++n)
        {
            const Face& face = *m_aQueue[n];
            if (!face.GetOuterLoop())
                continue;
            const nConvexity nOuter = face.GetOuterLoop()->GetConvexity();
            if (static_cast<std::uint64_t>(nOuter) & m_nMask)
            {
                aFaces.push_back(m_aQueue[n]);
                CrossLoopsLike(face, nOuter);
            }
            else
                CrossBends(face);
        }
        return aFaces.size() - nBefore;
    }

private:
    void Visit(Face* pFace)
    {
        if (pFace && m_seenFaces.insert(pFace).second)
            m_aQueue.push_back(pFace);
    }

    void CrossLoopsLike(const Face& face, nConvexity nOuter)
    {
        for (const Loop* pLoop : face.GetLoops())
        {
            if (pLoop != face.GetOuterLoop() && pLoop->GetConvexity() != nOuter)
                continue;
            ForEachFreshEdge(*pLoop,
                             [&](const Edge& edge)
                             {
                                 ShortList<Face*> aNeighbours;
                                 edge.GetFaces(aNeighbours);
                                 for (Face* pNeighbour : aNeighbours)
                                     Visit(pNeighbour);
                             });
        }
    }

    /// From a face that does not belong: over real bends only, into loops that bend both ways.
    void CrossBends(const Face& face)
    {
        for (const Loop* pLoop : face.GetLoops())
            ForEachFreshEdge(*pLoop,
                             [&](const Edge& edge)
                             {
                                 const nConvexity nEdge = edge.GetConvexity();
                                 if (nEdge == nConvexityFlat || nEdge == nConvexityNonManifold)
                                     return;
                                 std::vector<Loop*> aLoops;
                                 edge.GetLoops(aLoops);
                                 for (const Loop* pNeighbour : aLoops)
                                     if (pNeighbour->GetConvexity() == nConvexityMixed)
                                         Visit(pNeighbour->GetFace());
                             });
    }

    template <class Cross>
    void ForEachFreshEdge(const Loop& loop, Cross&& cross)
    {
        loop.ForEachCoedge(
            [&](const Coedge& coedge)
            {
                if (const Edge* pEdge = coedge.GetEdge(); pEdge && m_seenEdges.insert(pEdge).second)
                    cross(*pEdge);
            });
    }

    std::uint64_t m_nMask;
    std::vector<Face*> m_aQueue;
    ObjectSet m_seenFaces;
    ObjectSet m_seenEdges;
};
} // namespace

std::size_t Face::GetConvexityConnectedComponent(std::vector<Face*>& aFaces, std::uint64_t nMask)
{
    return ConvexityWalk(*this, nMask).Run(aFaces);
}
} // namespace QRV
