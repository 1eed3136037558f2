/// The working polygon of a triangulation.
#pragma once

#include "spatial/FacetPolygon.h"

#include <QRV/Plane.h>

#include <cstdint>
#include <span>
#include <vector>

namespace QRV
{
/// A vertex in the frame of the polygon's plane.
struct FacetVertex
{
    double x = 0.0;
    double y = 0.0;
    double dSlack = 0.0; ///< a doubled area at or below which the point counts as in line with two others
    const Point3d* pPoint = nullptr;
    std::uint32_t nFirstNode = 0xFFFFFFFF; ///< the nodes on the vertex hang together by `FacetNode::nSibling`
    std::uint32_t nLastNode = 0xFFFFFFFF;
    std::uint32_t nLiveNodes = 0;
};

/// One corner of the working polygon.
struct FacetNode
{
    std::uint32_t nVertex;
    std::uint32_t nPrevious;
    std::uint32_t nNext;
    std::uint32_t nSibling; ///< the next higher node on the same vertex
};

/// Twice the signed area of the triangle.
template <class A, class B, class C>
double DoubledArea(const A& u, const B& v, const C& w)
{
    return (v.x - u.x) * (w.y - u.y) - (v.y - u.y) * (w.x - u.x);
}

/// True if w lies left of the way from u to v, beyond the slack.
inline bool IsLeft(const FacetVertex& u, const FacetVertex& v, const FacetVertex& w)
{
    return DoubledArea(u, v, w) > w.dSlack;
}

inline bool IsRight(const FacetVertex& u, const FacetVertex& v, const FacetVertex& w)
{
    return DoubledArea(u, v, w) < -w.dSlack;
}

/// True if p lies in the cone at b that the polygon's inside fills between the next corner and the previous one.
/// The sides of the cone belong to it only if `bSidesCount`.
inline bool IsInCone(const FacetVertex& previous, const FacetVertex& b, const FacetVertex& next, const FacetVertex& p,
                     bool bSidesCount)
{
    if (IsLeft(b, next, previous))
        return bSidesCount ? !IsRight(b, p, previous) && !IsRight(p, b, next)
                           : IsLeft(b, p, previous) && IsLeft(p, b, next);
    return bSidesCount ? !IsLeft(b, p, next) || !IsLeft(p, b, previous)
                       : IsRight(b, p, next) || IsRight(p, b, previous);
}

/// The corners of a polygon with holes in the plane's frame, and the cycle of nodes that is the polygon still to be
/// cut. At first the cycle is the outer loop; holes are spliced in, then nodes unlinked one by one.
class FacetNodes
{
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    FacetNodes(std::span<const FacetCorner> aCorners, std::span<const std::uint32_t> aLoopEnds, const Plane& plane);

    std::uint32_t GetLoopCount() const { return static_cast<std::uint32_t>(m_aLoopEnds.size()); }
    /// The corners of a loop; loop 0 is the outer one.
    std::span<const FacetCorner> GetLoop(std::uint32_t nLoop) const;
    std::span<const FacetCorner> GetCorners() const { return m_aCorners; }

    const std::vector<FacetVertex>& GetVertices() const { return m_aVertices; }
    const std::vector<FacetNode>& GetNodes() const { return m_aNodes; }
    const FacetVertex& GetVertex(std::uint32_t nVertex) const { return m_aVertices[nVertex]; }
    const FacetVertex& GetVertexOf(std::uint32_t nNode) const { return m_aVertices[m_aNodes[nNode].nVertex]; }
    const FacetNode& GetNode(std::uint32_t nNode) const { return m_aNodes[nNode]; }

    /// True while the node is in the cycle.
    bool IsLive(std::uint32_t nNode) const { return m_aNodes[m_aNodes[nNode].nPrevious].nNext == nNode; }

    std::uint32_t GetFirst() const { return m_nFirst; }
    std::uint32_t GetCount() const { return m_nCount; }
    const UnitVector3d& GetNormal() const { return m_normal; }
    /// The largest distance of a vertex from the plane.
    double GetFlatness() const { return m_dFlatness; }
    /// The largest `dSlack` of all vertices.
    double GetLargestSlack() const { return m_dLargestSlack; }

    /// Lets the cycle run from `nNode` to corner `nCorner` of the loop, round the loop and back to `nNode`. Both ends
    /// of this bridge are then in the cycle twice.
    void SpliceLoop(std::uint32_t nNode, std::uint32_t nLoop, std::uint32_t nCorner);

    /// Takes a live node out of the cycle.
    void Unlink(std::uint32_t nNode);

    /// Makes all nodes live again, linked as they were when the last loop was spliced in.
    void Relink();

private:
    void Project(const Plane& plane);
    void AppendNode(std::uint32_t nVertex);
    void LinkAppended(std::uint32_t nStart, std::uint32_t nBefore, std::uint32_t nAfter);

    std::span<const FacetCorner> m_aCorners;
    std::span<const std::uint32_t> m_aLoopEnds;
    UnitVector3d m_normal;
    double m_dFlatness = -1.0;
    double m_dLargestSlack = 0.0;
    std::vector<FacetVertex> m_aVertices;
    std::vector<FacetNode> m_aNodes;
    std::vector<std::uint32_t> m_aUnlinked; // in the order of unlinking
    std::uint32_t m_nFirst = 0;
    std::uint32_t m_nCount = 0;
};
} // namespace QRV
