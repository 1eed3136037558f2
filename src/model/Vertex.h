/// A place where edges end.
#pragma once

#include "model/ObjectOf.h"
#include "spatial/ShortList.h"

namespace QRV
{
class Coedge;
class Edge;
class Face;

/// A point of the model, shared and counted by the edges that end there.
///
/// Holds one representative edge for each edge group: a maximal set of edges at the vertex that are joined through
/// faces; a free edge is a group of its own. No entries means a lone vertex. The use count is the number of edge
/// ends here; the last edge to leave deletes the vertex.
class Vertex : public ObjectOf<Vertex, Object>
{
public:
    static constexpr nObjectType kType = nVertexType;
    static constexpr const char* kName = "Vertex";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("pos", &Vertex::m_Position), Saved("edgepg", &Vertex::m_aEdgesPerGroup),
                               Saved("use", &Vertex::m_nUseAndFlags));
    }

    explicit Vertex(const Point3d& position) : m_Position(position) {}

    const Point3d& GetPosition() const { return m_Position; }
    const std::vector<Edge*>& GetEdgesPerGroup() const { return m_aEdgesPerGroup; }
    std::uint64_t GetUse() const { return m_nUseAndFlags & kUseMask; }
    bool IsSmooth() const { return (m_nUseAndFlags & kSmooth) != 0; }
    void SetSmooth(bool bSmooth);

    void IncrementUse();
    /// Lowers the count; a vertex whose count falls from 1 deletes itself.
    void DecrementUse();
    void SetUse(std::uint64_t nUse);

    /// Appends all edges at the vertex, each once; with `pStart` those of its group only. Gives the number appended.
    std::size_t GetConnectedEdges(ShortList<Edge*>& aEdges, Edge* pStart = nullptr) const;
    std::vector<std::uint64_t> GetConnectedEdgeIDs() const;
    /// Appends the coedges of the vertex's faces that touch it, breadth first from the group representatives; with
    /// `pOnly` those on loops of that face. Gives the number appended.
    std::size_t GetCoedges(ShortList<Coedge*>& aCoedges, const Face* pOnly = nullptr) const;
    /// Appends the distinct faces at the vertex. Gives the number appended.
    std::size_t GetFaces(ShortList<Face*>& aFaces) const;
    /// The edge between this vertex and `other`: an owned one before a free one, then the lowest id; null if none.
    Edge* FindEdgeTo(const Vertex& other) const;

    /// Makes the edge a group entry, unless it is one; with `bOnlyIfEmpty` only when there is none yet.
    void AddEdgeToGroups(Edge* pEdge, bool bOnlyIfEmpty);
    /// False when the edge is no entry. Unless `bDeleting`, a neighbour of its group takes its place.
    bool RemoveEdgeFromGroups(Edge* pEdge, bool bDeleting);
    /// Drops entries that are no edges of the vertex or are reached from an earlier entry. With fewer than two
    /// entries only when forced. Gives whether anything changed.
    bool RebuildGroups(bool bForce);
    /// Rebuilds the groups and makes each edge of `aKnown` that still ends here and that no entry reaches an entry.
    /// To be called with what GetConnectedEdges gave before a coedge, loop or face went. Edges are named by id, since
    /// some may have died.
    void Regroup(const std::vector<std::uint64_t>& aKnownEdgeIDs);
    /// Gives every group after the first a vertex of its own at the same place. False with fewer than two groups.
    bool SplitIntoGroups(std::vector<Vertex*>& aVertices);

    /// Moves the vertex; nothing for a way shorter than 1e-12.
    void SetPosition(const Point3d& position);
    /// Dissolves the vertex when it lies on a straight run between exactly two edges. True when it is gone.
    bool RemoveIfRedundant();
    /// Deletes a vertex that nothing uses.
    void RemoveIfUnused();

    bool Delete() override;
    bool IsNonOwned() const override { return m_aEdgesPerGroup.empty(); }
    void Changed(unsigned nFlags) override;
    bool AddToSearch() override;
    bool RemoveFromSearch() override;
    void AddToBox(Interval3d& box) const override { box += m_Position; }
    std::size_t GetTopOwners(std::vector<Object*>& aOwners) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    void Transform(const Transf3d& transform) override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    static constexpr std::uint64_t kUseMask = 0xfffff;
    static constexpr std::uint64_t kSmooth = 0x100000;

    /// Takes the vertex and its edges along in the trees; faces have to be told by Changed.
    void MoveTo(const Point3d& position);

    Point3d m_Position;
    std::vector<Edge*> m_aEdgesPerGroup;
    std::uint64_t m_nUseAndFlags = 0;
};
extern template class ObjectOf<Vertex, Object>;
} // namespace QRV
