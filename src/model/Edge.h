/// A straight segment between two vertices.
#pragma once

#include "model/ObjectOf.h"
#include "spatial/ShortList.h"

namespace QRV
{
class Coedge;
class Face;
class Loop;
class Shell;
class Vertex;

/// A straight edge, shared by the coedges of any number of faces; free while it has none.
///
/// The coedges form one circular chain through their partners, `m_pCoedge` is on it, and its length is the use count.
/// An edge stands in the History's tree exactly while IsInSearch().
class Edge : public ObjectOf<Edge, Object>
{
public:
    static constexpr nObjectType kType = nEdgeType;
    static constexpr const char* kName = "Edge";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("startvtx", &Edge::m_pStartVertex), Saved("endvtx", &Edge::m_pEndVertex),
                               Saved("edgecoed", &Edge::m_pCoedge), Saved("flaguse", &Edge::m_nFlagsAndUse));
    }

    /// More coedges than this cannot use one edge.
    static constexpr std::uint64_t kMaxUse = 0xff;

    /// Into which of its vertices' groups a new edge enters.
    enum class nGroupMode
    {
        nNeither,
        nStart,
        nBoth
    };

    Edge() = default;

    /// A new edge, entered in the tree; both use counts go up. Null for a missing vertex or the same vertex twice.
    static Edge* Create(Vertex* pStart, Vertex* pEnd, History& history, nGroupMode nGroups);

    Vertex* GetStartVertex() const { return m_pStartVertex; }
    Vertex* GetEndVertex() const { return m_pEndVertex; }
    Vertex* GetOtherVertex(const Vertex* pVertex) const
    {
        return pVertex == m_pStartVertex ? m_pEndVertex : m_pStartVertex;
    }
    bool HasVertex(const Vertex* pVertex) const { return pVertex == m_pStartVertex || pVertex == m_pEndVertex; }
    bool IsComplete() const { return m_pStartVertex && m_pEndVertex; }
    Coedge* GetCoedge() const { return m_pCoedge; }
    bool IsFree() const { return !m_pCoedge; }
    std::uint64_t GetUse() const { return m_nFlagsAndUse & kUseMask; }
    /// How often the loops of one face pass the edge.
    std::uint64_t GetUseBy(const Face& face) const;
    bool IsSmooth() const { return (m_nFlagsAndUse & kSmooth) != 0; }
    void SetSmooth(bool bSmooth);

    double GetLength() const;
    double GetLengthSqrd() const;
    /// From start to end; zero for a missing vertex.
    UnitVector3d GetDirection() const;
    Point3d GetMidpoint() const;
    /// Null box for a missing vertex.
    Interval3d GetBox() const;
    Line3d GetLine() const;

    /// Adds to the count and clears the smooth mark from the third use on. False, with nothing changed, at 255 uses.
    bool IncrementUse();
    /// Lowers the count; from 1 with `bDeleteAtZero` the edge deletes itself. Gives the new count.
    std::uint64_t DecrementUse(bool bDeleteAtZero);
    /// Plain links: no use count changes.
    void SetCoedge(Coedge* pCoedge);
    /// Changes an end, without use counts. With `bFixGroups` the old vertex's groups get a substitute and the new
    /// vertex's groups take the edge in unless they reach it already.
    void SetStartVertex(Vertex* pVertex, bool bFixGroups);
    void SetEndVertex(Vertex* pVertex, bool bFixGroups);
    void ReplaceVertex(Vertex* pOld, Vertex* pNew, bool bFixGroups);
    /// Puts a coedge on this edge, directly behind the first in the partner chain. False when the edge is full.
    bool AddCoedge(Coedge& coedge);

    bool IsInSearch() const { return (m_nFlagsAndUse & kInSearch) != 0; }
    /// Enters the tree when both ends stand, recording first. The only way in.
    void EnterSearch();

    bool IsManifold() const;
    /// Whether the two sides may become one: one loop on both sides, or coplanar faces of one direction.
    bool IsMergeable(bool bCheckUV) const;
    bool IsSilhouette(const Point3d& eye, const Vector3d& direction, bool bPerspective) const;
    /// Whether another edge in the plane runs through this one, or ends in it, with no vertex of both there:
    /// lines drawn without a look at the model leave that.
    bool PassesUncut(const Plane& plane) const;
    /// The point lies on the open edge, within a length `dTol` scaled by its size.
    bool ContainsInterior(const Point3d& p, double dTol) const;
    nConvexity GetConvexity() const;
    nEdgeFaceClass GetFaceClass() const;
    /// Whether the ray meets the edge, and where on the ray. With a transform the edge is taken to its place.
    bool HitByRay(const Line3d& ray, double& t, double dTol, double dMax, const Transf3d* pTransform = nullptr) const;

    /// Append each distinct face or loop on the chain, or all coedges; give the number appended.
    std::size_t GetFaces(ShortList<Face*>& aFaces) const;
    std::size_t GetLoops(std::vector<Loop*>& aLoops) const;
    std::size_t GetCoedges(ShortList<Coedge*>& aCoedges) const;
    /// The shell of a body that has its inside in a direction away from the edge: behind two of its faces here, and
    /// clear of either. Null for none; with `pOnly` for any other than that.
    const Shell* FindShellAround(const Vector3d& direction, const Shell* pOnly = nullptr) const;
    /// The chain through vertices of exactly two edges not marked smooth; gives the length of `aEdges`.
    std::size_t GetEdgeChain(std::vector<Edge*>& aEdges, bool bSmoothVerticesOnly);

    bool Delete() override { return Delete(false); }
    bool Delete(bool bNoVertexCleanup);
    void DeleteSelf() override;
    /// What became of the faces when an edge was taken from between its sides.
    struct MergeOutcome
    {
        Face* pRemovedFace = nullptr; ///< left empty; the caller takes it out of its shell and deletes it
        Face* pNewFace = nullptr;     ///< split off
    };
    /// Removes the edge from between its two sides where they make one. True when the edge is gone.
    bool TryMerge(MergeOutcome& outcome, bool bCheckUV, bool bMarkSmooth, double dCosAngle);

    bool IsNonOwned() const override { return !m_pCoedge; }
    void Changed(unsigned nFlags) override;
    void CompleteCaches() override { EnterSearch(); }
    bool AddToSearch() override;
    bool RemoveFromSearch() override;
    void AddToBox(Interval3d& box) const override;
    Object* GetTopOwner() const override;
    std::size_t GetTopOwners(std::vector<Object*>& aOwners) const override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    void ReplaceReferences(const ObjectMap& map) override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    static constexpr std::uint64_t kUseMask = kMaxUse;
    static constexpr std::uint64_t kInSearch = 0x100;
    static constexpr std::uint64_t kSmooth = 0x200;

    void SetVertex(Vertex* Edge::*pEnd, Vertex* pVertex, bool bFixGroups);

    Coedge* m_pCoedge = nullptr;
    Vertex* m_pStartVertex = nullptr;
    Vertex* m_pEndVertex = nullptr;
    std::uint64_t m_nFlagsAndUse = 0;
};
extern template class ObjectOf<Edge, Object>;
} // namespace QRV
