#include "history/TemporaryTreesScope.h"

namespace QRV
{
TemporaryTreesScope::TemporaryTreesScope(History& history, const Object* pFirst, const Object* pSecond)
    : m_history(history)
{
    history.FlushAwaitingEdges();
    history.FlushAwaitingFaces();
    std::vector<Object*> aBelow;
    ObjectSet seen;
    for (const Object* pObject : {pFirst, pSecond})
        if (pObject)
            pObject->GetAllChildren(aBelow, false, &seen);

    std::optional<TopologyTrees> trees(std::in_place);
    for (Object* pObject : aBelow)
    {
        if (auto* pVertex = dynamic_cast<Vertex*>(pObject))
            trees->m_vertices.Insert(pVertex);
        else if (auto* pEdge = dynamic_cast<Edge*>(pObject))
            trees->m_edges.Insert(pEdge);
        else if (auto* pFace = dynamic_cast<Face*>(pObject))
            trees->m_faces.Insert(pFace);
    }
    if (history.m_pOpenDelta)
        trees->ReserveReturns(history.m_pOpenDelta->GetObjectIDs().size());
    m_previous.swap(trees);
    m_history.m_trees.SwapTemporary(m_previous);
}

TemporaryTreesScope::~TemporaryTreesScope()
{
    m_history.m_trees.SwapTemporary(m_previous);
}
} // namespace QRV
