/// The box trees of a History.
#pragma once

#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "spatial/BoxTree.h"

#include <optional>

namespace QRV
{
template <>
struct BoxOf<Vertex>
{
    static Interval3d Get(const Vertex& vertex) { return Interval3d(vertex.GetPosition()); }
};

template <>
struct BoxOf<Edge>
{
    static Interval3d Get(const Edge& edge) { return edge.GetBox(); }
};

template <>
struct BoxOf<Face>
{
    static Interval3d Get(const Face& face) { return face.GetCachedBox(); }
};

/// The trees of one set of topology.
struct TopologyTrees
{
    BoxTree<Vertex> m_vertices;
    BoxTree<Edge> m_edges;
    BoxTree<Face> m_faces;

    void ReserveReturns(std::size_t nCount)
    {
        m_vertices.ReserveReturns(nCount);
        m_edges.ReserveReturns(nCount);
        m_faces.ReserveReturns(nCount);
    }
};

/// The trees over all live vertices, edges and faces, owned or not, and while an operation asks for it the temporary
/// trees over a part of them, which then serve the operations' searches.
class SearchTrees
{
public:
    /// The trees that searches go through.
    TopologyTrees& GetActive() { return m_temporary ? *m_temporary : m_main; }
    const TopologyTrees& GetMain() const { return m_main; }
    bool HasTemporary() const { return m_temporary.has_value(); }

    /// Cannot fail for want of memory where ReserveReturns has made room.
    void Insert(Vertex* pVertex);
    void Insert(Edge* pEdge);
    void Insert(Face* pFace);
    bool Remove(Vertex* pVertex) noexcept;
    bool Remove(Edge* pEdge) noexcept;
    bool Remove(Face* pFace) noexcept;
    /// Room to put back so many elements of each kind without failing; may throw.
    void ReserveReturns(std::size_t nCount);
    void TrimReturns() noexcept;

    void ClearTemporary() noexcept { m_temporary.reset(); }
    void SwapTemporary(std::optional<TopologyTrees>& other) noexcept { m_temporary.swap(other); }

private:
    TopologyTrees m_main;
    std::optional<TopologyTrees> m_temporary;
};
} // namespace QRV
