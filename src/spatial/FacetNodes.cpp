#include "spatial/FacetNodes.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
namespace
{
// Areas are compared after halving, so the doubled ones get twice the bound.
constexpr double kDoubledAreaTolerance = 2.0 * 1e-12;
} // namespace

FacetNodes::FacetNodes(std::span<const FacetCorner> aCorners, std::span<const std::uint32_t> aLoopEnds,
                       const Plane& plane)
    : m_aCorners(aCorners), m_aLoopEnds(aLoopEnds), m_normal(plane.normal)
{
    Project(plane);
    const std::span<const FacetCorner> aOuter = GetLoop(0);
    m_aNodes.reserve(aCorners.size() + 2 * aLoopEnds.size());
    for (const FacetCorner& corner : aOuter)
        AppendNode(corner.nVertex);
    const auto nLast = static_cast<std::uint32_t>(aOuter.size() - 1);
    LinkAppended(0, nLast, 0);
}

std::span<const FacetCorner> FacetNodes::GetLoop(std::uint32_t nLoop) const
{
    const std::uint32_t nStart = nLoop == 0 ? 0 : m_aLoopEnds[nLoop - 1];
    return m_aCorners.subspan(nStart, m_aLoopEnds[nLoop] - nStart);
}

/// Coordinates are taken from the first corner, so that a polygon far from the origin loses no digits.
void FacetNodes::Project(const Plane& plane)
{
    const UnitVector3d xAxis = m_normal.CreateArbitraryPerpendicularVector3D();
    const Vector3d yAxis = m_normal * xAxis;
    const Point3d& origin = *m_aCorners.front().pPoint;
    m_aVertices.resize(m_aCorners.size());
    for (const FacetCorner& corner : m_aCorners)
    {
        FacetVertex& vertex = m_aVertices[corner.nVertex];
        if (vertex.pPoint)
            continue;
        const Vector3d v = *corner.pPoint - origin;
        vertex.pPoint = corner.pPoint;
        vertex.x = v % xAxis;
        vertex.y = v % yAxis;
        vertex.dSlack = std::max(corner.pPoint->toVector3d().length(), 1.0) * kDoubledAreaTolerance;
        m_dLargestSlack = std::max(m_dLargestSlack, vertex.dSlack);
        m_dFlatness = std::max(m_dFlatness, std::abs(plane.dist(*corner.pPoint)));
    }
}

/// Adds a node that is linked to the one before it and the one to come.
void FacetNodes::AppendNode(std::uint32_t nVertex)
{
    const auto nNode = static_cast<std::uint32_t>(m_aNodes.size());
    m_aNodes.push_back({nVertex, nNode - 1, nNode + 1, kNone});
    FacetVertex& vertex = m_aVertices[nVertex];
    if (vertex.nFirstNode == kNone)
        vertex.nFirstNode = nNode;
    else
        m_aNodes[vertex.nLastNode].nSibling = nNode;
    vertex.nLastNode = nNode;
    ++vertex.nLiveNodes;
}

/// Links the nodes from `nStart` to the last between two others.
void FacetNodes::LinkAppended(std::uint32_t nStart, std::uint32_t nBefore, std::uint32_t nAfter)
{
    const auto nLast = static_cast<std::uint32_t>(m_aNodes.size() - 1);
    m_aNodes[nStart].nPrevious = nBefore;
    m_aNodes[nBefore].nNext = nStart;
    m_aNodes[nLast].nNext = nAfter;
    m_aNodes[nAfter].nPrevious = nLast;
    m_nCount = nLast + 1;
}

void FacetNodes::SpliceLoop(std::uint32_t nNode, std::uint32_t nLoop, std::uint32_t nCorner)
{
    const std::span<const FacetCorner> aLoop = GetLoop(nLoop);
    const auto nStart = static_cast<std::uint32_t>(m_aNodes.size());
    for (std::size_t i = 0; i <= aLoop.size(); ++i)
        AppendNode(aLoop[(nCorner + i) % aLoop.size()].nVertex);
    AppendNode(m_aNodes[nNode].nVertex);
    LinkAppended(nStart, nNode, m_aNodes[nNode].nNext);
}

void FacetNodes::Unlink(std::uint32_t nNode)
{
    const FacetNode& node = m_aNodes[nNode];
    m_aNodes[node.nPrevious].nNext = node.nNext;
    m_aNodes[node.nNext].nPrevious = node.nPrevious;
    if (m_nFirst == nNode)
        m_nFirst = node.nPrevious;
    --m_nCount;
    if (m_aUnlinked.empty())
        m_aUnlinked.reserve(m_aNodes.size());
    m_aUnlinked.push_back(nNode);
    --m_aVertices[node.nVertex].nLiveNodes;
}

void FacetNodes::Relink()
{
    // An unlinked node still points to the neighbours it had, so going backward restores the cycle.
    for (; !m_aUnlinked.empty(); m_aUnlinked.pop_back())
    {
        const std::uint32_t nNode = m_aUnlinked.back();
        const FacetNode& node = m_aNodes[nNode];
        m_aNodes[node.nPrevious].nNext = nNode;
        m_aNodes[node.nNext].nPrevious = nNode;
        ++m_aVertices[node.nVertex].nLiveNodes;
    }
    m_nFirst = 0;
    m_nCount = static_cast<std::uint32_t>(m_aNodes.size());
}
} // namespace QRV
