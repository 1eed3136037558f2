#include "history/SearchTrees.h"

namespace QRV
{
namespace
{
template <class T>
void InsertInto(BoxTree<T> TopologyTrees::*pTree, TopologyTrees& main, std::optional<TopologyTrees>& temporary, T* pElement)
{
    // Room in both before either changes.
    (main.*pTree).ReserveReturns(1);
    if (temporary)
    {
        ((*temporary).*pTree).ReserveReturns(1);
        ((*temporary).*pTree).InsertNoThrow(pElement);
    }
    (main.*pTree).InsertNoThrow(pElement);
}

template <class T>
bool RemoveFrom(BoxTree<T> TopologyTrees::*pTree, TopologyTrees& main, std::optional<TopologyTrees>& temporary,
                T* pElement) noexcept
{
    if (temporary)
        ((*temporary).*pTree).RemoveIfThere(pElement);
    return (main.*pTree).Remove(pElement);
}
} // namespace

void SearchTrees::Insert(Vertex* pVertex)
{
    InsertInto(&TopologyTrees::m_vertices, m_main, m_temporary, pVertex);
}

void SearchTrees::Insert(Edge* pEdge)
{
    InsertInto(&TopologyTrees::m_edges, m_main, m_temporary, pEdge);
}

void SearchTrees::Insert(Face* pFace)
{
    InsertInto(&TopologyTrees::m_faces, m_main, m_temporary, pFace);
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
    m_main.ReserveReturns(nCount);
    if (m_temporary)
        m_temporary->ReserveReturns(nCount);
}

void SearchTrees::TrimReturns() noexcept
{
    m_main.m_vertices.TrimReturns();
    m_main.m_edges.TrimReturns();
    m_main.m_faces.TrimReturns();
}
} // namespace QRV
