#include "spatial/HoleBridging.h"

#include "spatial/FacetNodes.h"
#include "spatial/PlaneTree.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace QRV
{
namespace
{
constexpr double kExtremeSlack = 1e-12;
constexpr double kOrderSlack = 1e-6;
constexpr double kWayMargin = 1e-6;
constexpr double kDoubledCrossingArea = 2.0 * 1e-12; // an end that is nearer to the other's line doesn't cross it

/// The order of the frame, by x and then by y; what is nearer than the slack is equal.
bool IsBefore(const FacetVertex& a, const FacetVertex& b, double dSlack)
{
    return a.x < b.x - dSlack || (std::abs(a.x - b.x) <= dSlack && a.y < b.y - dSlack);
}

double GetDistanceSqrd(const PlaneBox& box, const FacetVertex& p)
{
    const double dx = std::max({box.xMin - p.x, p.x - box.xMax, 0.0});
    const double dy = std::max({box.yMin - p.y, p.y - box.yMax, 0.0});
    return dx * dx + dy * dy;
}

/// A straight way between two vertices, an edge of the polygon or a bridge.
struct Segment
{
    std::uint32_t nStart;
    std::uint32_t nEnd;
    PlaneBox box;

    const PlaneBox& GetBox() const { return box; }
};

/// The nodes before an extreme vertex, nearest first and by index where equally near, found as they are asked for.
class NearestNodes
{
public:
    /// @param segments  has a segment from every vertex; lives as long as this
    NearestNodes(const FacetNodes& nodes, const PlaneTree<Segment>& segments) : m_nodes(nodes), m_segments(segments) {}

    void Start(const FacetVertex& extreme)
    {
        m_pExtreme = &extreme;
        m_aWaiting.clear();
        Expand(PlaneTree<Segment>::kRoot);
    }

    /// The next node, or `kNone` after the last.
    std::uint32_t GetNext()
    {
        while (!m_aWaiting.empty())
        {
            std::pop_heap(m_aWaiting.begin(), m_aWaiting.end(), IsLater);
            const Waiting waiting = m_aWaiting.back();
            m_aWaiting.pop_back();
            if (waiting.nTreeNode == 0)
                return waiting.nNode;
            Expand(waiting.nTreeNode);
        }
        return FacetNodes::kNone;
    }

private:
    /// A node of the tree, or with `nTreeNode` 0 one of the cycle.
    struct Waiting
    {
        double dDistanceSqrd;
        std::uint32_t nTreeNode;
        std::uint32_t nNode;
    };

    /// Parts of the tree come before nodes of the cycle at the same distance, as they may hold a lower index.
    static bool IsLater(const Waiting& a, const Waiting& b)
    {
        if (a.dDistanceSqrd != b.dDistanceSqrd)
            return a.dDistanceSqrd > b.dDistanceSqrd;
        return a.nTreeNode == 0 && (b.nTreeNode != 0 || a.nNode > b.nNode);
    }

    void Push(const Waiting& waiting)
    {
        m_aWaiting.push_back(waiting);
        std::push_heap(m_aWaiting.begin(), m_aWaiting.end(), IsLater);
    }

    void Expand(std::uint32_t nTreeNode)
    {
        if (m_segments.IsBucket(nTreeNode))
        {
            for (const Segment& segment : m_segments.GetItems(nTreeNode))
                PushNodesOn(m_nodes.GetVertex(segment.nStart));
            return;
        }
        for (std::uint32_t i = 0; i < PlaneBoxes::kCount; ++i)
        {
            const PlaneBox box = m_segments.GetBoxes(nTreeNode).Get(i);
            if (box.xMin <= m_pExtreme->x + kOrderSlack)
                Push({GetDistanceSqrd(box, *m_pExtreme), m_segments.GetChild(nTreeNode, i), 0});
        }
    }

    void PushNodesOn(const FacetVertex& vertex)
    {
        if (!IsBefore(vertex, *m_pExtreme, kOrderSlack))
            return;
        const double dDistanceSqrd = GetDistanceSqrd({vertex.x, vertex.y, vertex.x, vertex.y}, *m_pExtreme);
        for (std::uint32_t n = vertex.nFirstNode; n != FacetNodes::kNone; n = m_nodes.GetNode(n).nSibling)
            Push({dDistanceSqrd, 0, n});
    }

    const FacetNodes& m_nodes;
    const PlaneTree<Segment>& m_segments;
    const FacetVertex* m_pExtreme = nullptr;
    std::vector<Waiting> m_aWaiting; // a heap with the nearest on top
};

/// True if neither point lies on the line over which the doubled areas stand, and the line runs between them.
bool AreOnBothSides(double dDoubledArea0, double dDoubledArea1)
{
    return std::abs(dDoubledArea0) >= kDoubledCrossingArea && std::abs(dDoubledArea1) >= kDoubledCrossingArea &&
           (dDoubledArea0 > 0.0) != (dDoubledArea1 > 0.0);
}

PlaneBox GetBoxOf(const FacetVertex& a, const FacetVertex& b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

/// A hole by its extreme vertex.
struct Hole
{
    std::uint32_t nLoop;
    std::uint32_t nCorner;
    std::uint32_t nVertex;
};

class HoleBridging
{
public:
    explicit HoleBridging(FacetNodes& nodes) : m_nodes(nodes), m_nearest(nodes, m_segmentTree) {}

    void Run();

private:
    void CollectHoles();
    Hole FindExtremeCorner(std::uint32_t nLoop) const;
    void SortHoles();
    void FileSegments();
    Segment MakeSegment(std::uint32_t nStart, std::uint32_t nEnd) const;
    std::uint32_t FindBridgeNode(std::uint32_t nExtreme);
    std::uint32_t FindClearNodeBehind(std::uint32_t nExtreme) const;
    bool IsBridgeClear(std::uint32_t nNode, std::uint32_t nExtreme) const;
    bool IsCrossed(std::uint32_t nFrom, std::uint32_t nTo) const;
    bool Cross(const FacetVertex& from, const FacetVertex& to, const Segment& segment) const;

    FacetNodes& m_nodes;
    NearestNodes m_nearest;
    std::vector<Hole> m_aHoles;
    std::vector<std::uint32_t> m_aEdgeEnds; // for each corner the vertex of the next
    PlaneTree<Segment> m_segmentTree;
};

void HoleBridging::Run()
{
    CollectHoles();
    SortHoles();
    FileSegments();
    auto nBridge = static_cast<std::uint32_t>(m_nodes.GetCorners().size());
    for (const Hole& hole : m_aHoles)
    {
        const std::uint32_t nNode = FindBridgeNode(hole.nVertex);
        m_nodes.SpliceLoop(nNode, hole.nLoop, hole.nCorner);
        m_segmentTree.Insert(nBridge++, MakeSegment(m_nodes.GetNode(nNode).nVertex, hole.nVertex));
    }
}

void HoleBridging::CollectHoles()
{
    for (std::uint32_t nLoop = 1; nLoop < m_nodes.GetLoopCount(); ++nLoop)
        if (!m_nodes.GetLoop(nLoop).empty())
            m_aHoles.push_back(FindExtremeCorner(nLoop));
}

Hole HoleBridging::FindExtremeCorner(std::uint32_t nLoop) const
{
    const std::span<const FacetCorner> aLoop = m_nodes.GetLoop(nLoop);
    Hole hole{nLoop, 0, aLoop.front().nVertex};
    for (std::uint32_t i = 1; i < aLoop.size(); ++i)
        if (IsBefore(m_nodes.GetVertex(aLoop[i].nVertex), m_nodes.GetVertex(hole.nVertex), kExtremeSlack))
            hole = {nLoop, i, aLoop[i].nVertex};
    return hole;
}

/// Brings the holes into the order of their extreme vertices.
void HoleBridging::SortHoles()
{
    const auto getX = [&](const Hole& hole) { return m_nodes.GetVertex(hole.nVertex).x; };
    const auto getY = [&](const Hole& hole) { return m_nodes.GetVertex(hole.nVertex).y; };
    std::stable_sort(m_aHoles.begin(), m_aHoles.end(), [&](const Hole& a, const Hole& b) { return getX(a) < getX(b); });

    // Nothing can be sorted by an order with slack, so holes that hang together in x by the slack are sorted apart.
    for (auto itFirst = m_aHoles.begin(); itFirst != m_aHoles.end();)
    {
        auto itLast = itFirst + 1;
        while (itLast != m_aHoles.end() && getX(*itLast) - getX(*(itLast - 1)) <= kExtremeSlack)
            ++itLast;
        std::stable_sort(itFirst, itLast, [&](const Hole& a, const Hole& b) { return getY(a) < getY(b); });
        itFirst = itLast;
    }
}

/// Enters the edges of all loops, and files the bridges to come at the extreme vertices of their holes.
void HoleBridging::FileSegments()
{
    const std::span<const FacetCorner> aCorners = m_nodes.GetCorners();
    m_aEdgeEnds.reserve(aCorners.size());
    for (std::uint32_t nLoop = 0; nLoop < m_nodes.GetLoopCount(); ++nLoop)
    {
        const std::span<const FacetCorner> aLoop = m_nodes.GetLoop(nLoop);
        for (std::size_t i = 0; i < aLoop.size(); ++i)
            m_aEdgeEnds.push_back(aLoop[i + 1 < aLoop.size() ? i + 1 : 0].nVertex);
    }

    std::vector<PlanePlace> aPlaces;
    aPlaces.reserve(aCorners.size() + m_aHoles.size());
    const auto file = [&](const FacetVertex& a, const FacetVertex& b) {
        aPlaces.push_back({0.5 * (a.x + b.x), 0.5 * (a.y + b.y), static_cast<std::uint32_t>(aPlaces.size())});
    };
    for (std::size_t i = 0; i < aCorners.size(); ++i)
        file(m_nodes.GetVertex(aCorners[i].nVertex), m_nodes.GetVertex(m_aEdgeEnds[i]));
    for (const Hole& hole : m_aHoles)
        file(m_nodes.GetVertex(hole.nVertex), m_nodes.GetVertex(hole.nVertex));
    m_segmentTree.Arrange(aPlaces);

    m_segmentTree.Fill(static_cast<std::uint32_t>(aCorners.size()),
                       [&](std::uint32_t i) { return MakeSegment(aCorners[i].nVertex, m_aEdgeEnds[i]); });
}

Segment HoleBridging::MakeSegment(std::uint32_t nStart, std::uint32_t nEnd) const
{
    return {nStart, nEnd, GetBoxOf(m_nodes.GetVertex(nStart), m_nodes.GetVertex(nEnd))};
}

/// The node of the cycle from which the bridge to the extreme vertex starts.
std::uint32_t HoleBridging::FindBridgeNode(std::uint32_t nExtreme)
{
    const FacetVertex& extreme = m_nodes.GetVertex(nExtreme);
    if (extreme.nFirstNode != FacetNodes::kNone)
        return extreme.nFirstNode; // the hole touches the cycle there

    m_nearest.Start(extreme);
    const std::uint32_t nNearest = m_nearest.GetNext();
    for (std::uint32_t nNode = nNearest; nNode != FacetNodes::kNone; nNode = m_nearest.GetNext())
        if (IsBridgeClear(nNode, nExtreme))
            return nNode;
    const std::uint32_t nBehind = FindClearNodeBehind(nExtreme);
    if (nBehind != FacetNodes::kNone)
        return nBehind;
    return nNearest != FacetNodes::kNone ? nNearest : 0;
}

/// The first clear node that doesn't come before the extreme vertex; only a damaged polygon needs one.
std::uint32_t HoleBridging::FindClearNodeBehind(std::uint32_t nExtreme) const
{
    for (std::uint32_t nNode = 0; nNode < m_nodes.GetCount(); ++nNode)
        if (!IsBefore(m_nodes.GetVertexOf(nNode), m_nodes.GetVertex(nExtreme), kOrderSlack) &&
            IsBridgeClear(nNode, nExtreme))
            return nNode;
    return FacetNodes::kNone;
}

/// True if the bridge leaves the node into the polygon and crosses no edge and no other bridge.
bool HoleBridging::IsBridgeClear(std::uint32_t nNode, std::uint32_t nExtreme) const
{
    const FacetNode& node = m_nodes.GetNode(nNode);
    return IsInCone(m_nodes.GetVertexOf(node.nPrevious), m_nodes.GetVertex(node.nVertex),
                    m_nodes.GetVertexOf(node.nNext), m_nodes.GetVertex(nExtreme), false) &&
           !IsCrossed(node.nVertex, nExtreme);
}

/// True if an edge or bridge crosses the way between two vertices.
bool HoleBridging::IsCrossed(std::uint32_t nFrom, std::uint32_t nTo) const
{
    const FacetVertex& from = m_nodes.GetVertex(nFrom);
    const FacetVertex& to = m_nodes.GetVertex(nTo);
    PlaneBox way = GetBoxOf(from, to);
    way = {way.xMin - kWayMargin, way.yMin - kWayMargin, way.xMax + kWayMargin, way.yMax + kWayMargin};
    const auto hasEndIn = [&](const Segment& segment)
    { return segment.nStart == nFrom || segment.nEnd == nFrom || segment.nStart == nTo || segment.nEnd == nTo; };
    const PlaneSide side(from, to);
    const auto getReached = [&](const PlaneBoxes& boxes)
    {
        std::uint32_t nReached = 0;
        for (std::uint32_t nHalf = 0; nHalf < 2; ++nHalf)
        {
            const auto reached = (side.GetLargestAreas(boxes, nHalf) >= 0.0) &
                                 (side.GetSmallestAreas(boxes, nHalf) <= 0.0) &
                                 (boxes.GetHalf(PlaneBoxes::nXMin, nHalf) <= way.xMax) &
                                 (boxes.GetHalf(PlaneBoxes::nYMin, nHalf) <= way.yMax) &
                                 (boxes.GetHalf(PlaneBoxes::nXMax, nHalf) >= way.xMin) &
                                 (boxes.GetHalf(PlaneBoxes::nYMax, nHalf) >= way.yMin);
            nReached |= ((reached[0] & 1) | (reached[1] & 2)) << (2 * nHalf);
        }
        return nReached;
    };
    return m_segmentTree.Any(getReached, [&](const Segment& segment)
                             { return way.Touches(segment.box) && !hasEndIn(segment) && Cross(from, to, segment); });
}

bool HoleBridging::Cross(const FacetVertex& from, const FacetVertex& to, const Segment& segment) const
{
    const FacetVertex& start = m_nodes.GetVertex(segment.nStart);
    const FacetVertex& end = m_nodes.GetVertex(segment.nEnd);
    return AreOnBothSides(DoubledArea(from, to, start), DoubledArea(from, to, end)) &&
           AreOnBothSides(DoubledArea(start, end, from), DoubledArea(start, end, to));
}
} // namespace

void BridgeHoles(FacetNodes& nodes)
{
    HoleBridging(nodes).Run();
}
} // namespace QRV
