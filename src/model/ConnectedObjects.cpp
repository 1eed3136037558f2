#include "model/ConnectedObjects.h"

#include "model/Edge.h"
#include "model/Vertex.h"

namespace QRV
{
namespace
{
/// One walk: objects lead to the vertices below them, vertices to their edges, edges to what owns them.
class ConnectedWalk
{
public:
    explicit ConnectedWalk(std::vector<Object*>& aTops) : m_aTops(aTops) {}

    void Run(const std::vector<Object*>& aStart)
    {
        for (Object* pStart : aStart)
            Start(*pStart);
        for (std::size_t i = 0; i < m_aQueue.size(); ++i)
            ReachVerticesBelow(*m_aQueue[i]);
    }

private:
    void Start(Object& start)
    {
        std::vector<Object*> aOwn;
        start.GetTopOwners(aOwn);
        Reach(aOwn);
    }

    void Reach(const std::vector<Object*>& aTops)
    {
        for (Object* pTop : aTops)
            if (m_seen.insert(pTop).second)
            {
                m_aTops.push_back(pTop);
                m_aQueue.push_back(pTop);
            }
    }

    void ReachVerticesBelow(Object& object)
    {
        std::vector<Object*> aVertices;
        object.GetObjectsOfType(aVertices, nVertexType, false);
        for (const Object* pVertex : aVertices)
        {
            if (!m_vertices.insert(pVertex).second)
                continue;
            ShortList<Edge*> aEdges;
            static_cast<const Vertex*>(pVertex)->GetConnectedEdges(aEdges);
            for (const Edge* pEdge : aEdges)
            {
                std::vector<Object*> aTops;
                pEdge->GetTopOwners(aTops);
                Reach(aTops);
            }
        }
    }

    std::vector<Object*>& m_aTops;
    std::vector<Object*> m_aQueue;
    ObjectSet m_seen;
    ObjectSet m_vertices;
};
} // namespace

void GetAllConnectedNonOwned(const std::vector<Object*>& aStart, std::vector<Object*>& aTops)
{
    ConnectedWalk(aTops).Run(aStart);
}
} // namespace QRV
