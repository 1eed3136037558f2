#include "history/SearchTrees.h"

namespace QRV
{
namespace
{
template <class T>
void InsertInto(BoxTree<T> TopologyTrees::*pTree, TopologyTrees& main, std::optional<TopologyTrees>& temporary, T* pElement,
                bool bCannotFail)
{
    if (bCannotFail)
        (main.*pTree).InsertNoThrow(pElement);
    else
        (main.*pTree).Insert(pElement);
    if (!temporary)
        return;
    if (bCannotFail)
        ((*temporary).*pTree).InsertNoThrow(pElement);
    else
        ((*temporary).*pTree).Insert(pElement);
}

template <class T>
bool RemoveFrom(BoxTree<T> TopologyTrees::*pTree, TopologyTrees& main, std::optional<TopologyTrees>& temporary,
                T* pElement) noexcept
{
    if (temporary)
        ((*temporary).*pTree).Remove(pElement);
    return (main.*pTree).Remove(pElement);
}
} // namespace

void SearchTrees::Insert(Vertex* pVertex, bool bCannotFail)
{
    InsertInto(&TopologyTrees::m_vertices, m_main, m_temporary, pVertex, bCannotFail);
}

void SearchTrees::Insert(Edge* pEdge, bool bCannotFail)
{
    InsertInto(&TopologyTrees::m_edges, m_main, m_temporary, pEdge, bCannotFail);
}

void SearchTrees::Insert(Face* pFace, bool bCannotFail)
{
    InsertInto(&TopologyTrees::m_faces, m_main, m_temporary, pFace, bCannotFail);
}

bool SearchTrees::Remove(Vertex* pVertex) noexcept
{
    return RemoveFrom(&TopologyTrees::m_vertices, m_main, m_temporary, pVertex);
}

bool SearchTrees::Remove(Edge* pEdge) noexcept
{
    return RemoveFrom(&TopologyTrees::m_edges, m_main, m_temporary, pEdge);
}

bool SearchTrees::Remove(Face* pFace) noexcept
{
    return RemoveFrom(&TopologyTrees::m_faces, m_main, m_temporary, pFace);
}

void SearchTrees::ReserveReturns(std::size_t nCount)
{
    m_main.m_vertices.ReserveReturns(nCount);
    m_main.m_edges.ReserveReturns(nCount);
    m_main.m_faces.ReserveReturns(nCount);
}
} // namespace QRV
