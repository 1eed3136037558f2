#include "spatial/EarClipping.h"

#include "geometry/Trigonometry.h"
#include "spatial/EarSet.h"
#include "spatial/FacetNodes.h"
#include "spatial/PlaneTree.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace QRV
{
namespace
{
constexpr double kBoxMargin = 1e-6;
constexpr double kAngleTolerance = 1e-12;
constexpr double kBestAngle = 0.5;       // radians
constexpr double kCostTolerance = 1e-10; // by less a later ear is no better

/// A vertex as the search for vertices in a triangle sees it.
struct FacetTreeVertex
{
    double x;
    double y;
    double dSlack;
    std::uint32_t nVertex;

    PlaneBox GetBox() const { return {x, y, x, y}; }
};

/// The triangle of an ear as a filter of boxes and points in the plane.
class TriangleFilter
{
public:
    /// Points up to `dSlack` outside of a side may be in; with `bInterior` only those inside of all sides.
    TriangleFilter(const FacetVertex& a, const FacetVertex& b, const FacetVertex& c, double dSlack, bool bInterior)
        : m_aSides{PlaneSide(a, b), PlaneSide(b, c), PlaneSide(c, a)}, m_dLowest(bInterior ? 0.0 : -dSlack),
          m_bInterior(bInterior)
    {
    }

    /// The boxes that may hold such a point, bit i for box i.
    std::uint32_t GetReached(const PlaneBoxes& boxes) const
    {
        std::uint32_t nReached = 0;
        for (std::uint32_t nHalf = 0; nHalf < 2; ++nHalf)
        {
            const auto reached = (m_aSides[0].GetLargestAreas(boxes, nHalf) >= m_dLowest) &
                                 (m_aSides[1].GetLargestAreas(boxes, nHalf) >= m_dLowest) &
                                 (m_aSides[2].GetLargestAreas(boxes, nHalf) >= m_dLowest);
            nReached |= ((reached[0] & 1) | (reached[1] & 2)) << (2 * nHalf);
        }
        return nReached;
    }

    bool Holds(const FacetTreeVertex& w) const
    {
        const double dLeast =
            std::min({m_aSides[0].GetArea(w.x, w.y), m_aSides[1].GetArea(w.x, w.y), m_aSides[2].GetArea(w.x, w.y)});
        return m_bInterior ? dLeast > w.dSlack : dLeast >= -w.dSlack;
    }

private:
    std::array<PlaneSide, 3> m_aSides;
    double m_dLowest;
    bool m_bInterior;
};

/// The box in space within which a vertex can lie in the triangle.
Interval3d GetSearchBox(const Point3d& a, const Point3d& b, const Point3d& c, const FacetNodes& nodes)
{
    Interval3d box(a, b);
    box += c;
    const double dLargest = std::max({a.toVector3d().length(), b.toVector3d().length(), c.toVector3d().length()});
    const double dMargin = std::max(1.0, dLargest) * kBoxMargin;
    const double dFlatness = 2.0 * nodes.GetFlatness();
    const double dReach = dFlatness > kBoxMargin ? dFlatness : 0.0;
    for (int i = 0; i < 3; ++i)
    {
        const double d = dMargin + dReach * std::abs(nodes.GetNormal()[i]);
        box.lower[i] -= d;
        box.upper[i] += d;
    }
    return box;
}

double GetAngle(const FacetVertex& apex, const FacetVertex& a, const FacetVertex& b)
{
    const Vector3d toA = (*a.pPoint - *apex.pPoint).getNormalized();
    const Vector3d toB = (*b.pPoint - *apex.pPoint).getNormalized();
    return AngleFromCosine(toA % toB, kAngleTolerance);
}

/// The vertices on which a corner of the polygon doesn't turn left, as a tree.
///
/// Where any vertex lies in the triangle of an ear, the one that is farthest from the diagonal is such a one: the
/// polygon's edges run from it towards the diagonal, and its inside is on the other side. So no others are looked for.
class ReflexVertices
{
public:
    explicit ReflexVertices(const FacetNodes& nodes);

    const PlaneTree<FacetTreeVertex>& GetTree() const { return m_tree; }

    /// The corner turns left from now on, or is cut off.
    void Leave(std::uint32_t nNode);

private:
    bool TurnsLeft(const FacetNode& node) const
    {
        return IsLeft(m_nodes.GetVertexOf(node.nPrevious), m_nodes.GetVertex(node.nVertex),
                      m_nodes.GetVertexOf(node.nNext));
    }

    const FacetNodes& m_nodes;
    std::vector<bool> m_aReflex;             // for each node
    std::vector<std::uint32_t> m_aNodeCount; // for each vertex its reflex nodes
    std::vector<std::uint32_t> m_aItems;     // for each vertex its number in the tree
    PlaneTree<FacetTreeVertex> m_tree;
};

ReflexVertices::ReflexVertices(const FacetNodes& nodes)
    : m_nodes(nodes), m_aReflex(nodes.GetNodes().size()), m_aNodeCount(nodes.GetVertices().size()),
      m_aItems(nodes.GetVertices().size())
{
    std::vector<PlanePlace> aPlaces;
    std::vector<FacetTreeVertex> aFound;
    std::uint32_t nNode = nodes.GetFirst();
    for (std::uint32_t i = 0; i < nodes.GetCount(); ++i, nNode = nodes.GetNode(nNode).nNext)
    {
        const FacetNode& node = nodes.GetNode(nNode);
        if (TurnsLeft(node))
            continue;
        m_aReflex[nNode] = true;
        if (m_aNodeCount[node.nVertex]++ > 0)
            continue;
        const FacetVertex& vertex = nodes.GetVertex(node.nVertex);
        const auto nItem = static_cast<std::uint32_t>(aFound.size());
        m_aItems[node.nVertex] = nItem;
        aPlaces.push_back({vertex.x, vertex.y, nItem});
        aFound.push_back({vertex.x, vertex.y, vertex.dSlack, node.nVertex});
    }
    m_tree.Arrange(aPlaces);
    m_tree.Fill(static_cast<std::uint32_t>(aFound.size()), [&](std::uint32_t n) { return aFound[n]; });
}

void ReflexVertices::Leave(std::uint32_t nNode)
{
    if (!m_aReflex[nNode])
        return;
    m_aReflex[nNode] = false;
    const std::uint32_t nVertex = m_nodes.GetNode(nNode).nVertex;
    if (--m_aNodeCount[nVertex] == 0)
        m_tree.Remove(m_aItems[nVertex]);
}

/// Cuts one ear after the other off the working polygon.
///
/// An ear is a corner that can be cut off: the diagonal between its neighbours runs inside the polygon at both ends,
/// and no other live vertex lies in its triangle.
class EarClipping
{
public:
    EarClipping(FacetNodes& nodes, bool bRelaxed)
        : m_nodes(nodes), m_bRelaxed(bRelaxed), m_reflex(nodes), m_ears(nodes.GetNodes().size()),
          m_costs(bRelaxed ? nodes.GetNodes().size() : 1)
    {
    }

    /// Appends the triangles; false when a part of the polygon has no ear. The polygon has 4 nodes or more.
    bool Run(std::vector<std::uint32_t>& aTriangles);

private:
    bool FindEars();
    void Classify(std::uint32_t nNode);
    bool IsEar(std::uint32_t nNode) const;
    bool HoldsVertex(const FacetNode& corner0, const FacetNode& corner1, const FacetNode& corner2) const;
    bool IsCutFrom(std::uint32_t nCorner, const FacetVertex& next, const FacetVertex& previous) const;
    double GetCost(const FacetNode& node) const;
    std::uint32_t ChooseEar() const;
    std::uint32_t FindFlatCorner() const;
    void Clip(std::uint32_t nNode, std::vector<std::uint32_t>& aTriangles);
    void Emit(const FacetNode& node, std::vector<std::uint32_t>& aTriangles) const;

    FacetNodes& m_nodes;
    bool m_bRelaxed;
    ReflexVertices m_reflex;
    EarSet m_ears;
    EarCosts m_costs; // of the ears; only relaxed clipping asks for them
};

bool EarClipping::Run(std::vector<std::uint32_t>& aTriangles)
{
    FindEars();
    while (m_nodes.GetCount() > 3)
    {
        std::uint32_t nNode = FacetNodes::kNone;
        if (!m_ears.IsEmpty() || (m_bRelaxed && FindEars()))
            nNode = ChooseEar();
        else if (m_bRelaxed)
            nNode = FindFlatCorner();
        if (nNode == FacetNodes::kNone)
            return false;
        Clip(nNode, aTriangles);
    }
    // Where the polygon touches itself, ears can lie over each other; the last triangle then is turned over.
    const FacetNode& last = m_nodes.GetNode(m_nodes.GetFirst());
    Emit(last, aTriangles);
    return !IsRight(m_nodes.GetVertexOf(last.nPrevious), m_nodes.GetVertex(last.nVertex),
                    m_nodes.GetVertexOf(last.nNext));
}

/// Tests all live nodes; false if none is an ear.
bool EarClipping::FindEars()
{
    std::uint32_t nNode = m_nodes.GetFirst();
    for (std::uint32_t i = 0; i < m_nodes.GetCount(); ++i, nNode = m_nodes.GetNode(nNode).nNext)
        Classify(nNode);
    return !m_ears.IsEmpty();
}

/// Enters the node into the ears or takes it out.
void EarClipping::Classify(std::uint32_t nNode)
{
    const FacetNode& node = m_nodes.GetNode(nNode);
    if (IsLeft(m_nodes.GetVertexOf(node.nPrevious), m_nodes.GetVertex(node.nVertex), m_nodes.GetVertexOf(node.nNext)))
        m_reflex.Leave(nNode);
    const bool bEar = IsEar(nNode);
    if (bEar)
        m_ears.Insert(nNode);
    else
        m_ears.Remove(nNode);
    if (m_bRelaxed)
        m_costs.Set(nNode, bEar ? GetCost(node) : EarCosts::kNoCost);
}

bool EarClipping::IsEar(std::uint32_t nNode) const
{
    const FacetNode& node = m_nodes.GetNode(nNode);
    const FacetNode& previous = m_nodes.GetNode(node.nPrevious);
    const FacetNode& next = m_nodes.GetNode(node.nNext);
    const FacetVertex& p = m_nodes.GetVertex(previous.nVertex);
    const FacetVertex& c = m_nodes.GetVertex(node.nVertex);
    const FacetVertex& n = m_nodes.GetVertex(next.nVertex);
    const bool bTurnsLeft = m_bRelaxed ? !IsRight(p, c, n) : IsLeft(p, c, n);
    return bTurnsLeft && IsInCone(m_nodes.GetVertexOf(previous.nPrevious), p, c, n, m_bRelaxed) &&
           IsInCone(c, n, m_nodes.GetVertexOf(next.nNext), p, m_bRelaxed) && !HoldsVertex(previous, node, next) &&
           !IsCutFrom(node.nPrevious, c, n) && !IsCutFrom(nNode, n, p) && !IsCutFrom(node.nNext, p, c);
}

/// True if a live vertex other than the three corners lies in the triangle.
bool EarClipping::HoldsVertex(const FacetNode& corner0, const FacetNode& corner1, const FacetNode& corner2) const
{
    const FacetVertex& a = m_nodes.GetVertex(corner0.nVertex);
    const FacetVertex& b = m_nodes.GetVertex(corner1.nVertex);
    const FacetVertex& c = m_nodes.GetVertex(corner2.nVertex);
    if (m_bRelaxed && !IsLeft(a, b, c))
        return false; // a triangle without area has no inside, and one that is a point would reach empty boxes
    const TriangleFilter filter(a, b, c, m_nodes.GetLargestSlack(), m_bRelaxed);
    // Without branches, since the corners themselves are always found in the triangle.
    const auto isOtherInside = [&](const FacetTreeVertex& w)
    {
        return filter.Holds(w) & (w.nVertex != corner0.nVertex) & (w.nVertex != corner1.nVertex) &
               (w.nVertex != corner2.nVertex);
    };
    // The slack of a thin triangle reaches far along its line; only what is near to the triangle in space counts.
    const auto isNear = [&](std::uint32_t nVertex)
    {
        const Point3d& point = *m_nodes.GetVertex(nVertex).pPoint;
        return GetSearchBox(*a.pPoint, *b.pPoint, *c.pPoint, m_nodes) & Interval3d(point);
    };
    return m_reflex.GetTree().Any([&](const PlaneBoxes& boxes) { return filter.GetReached(boxes); },
                                  [&](const FacetTreeVertex& w) { return isOtherInside(w) && isNear(w.nVertex); });
}

/// True if an edge of another node on the corner's vertex runs from there into the triangle.
///
/// Where a hole touches the outer loop in a vertex, the cone of either node there holds a part of the other loop. Such
/// an edge may leave through the opposite side, and no vertex in the triangle tells of it.
bool EarClipping::IsCutFrom(std::uint32_t nCorner, const FacetVertex& next, const FacetVertex& previous) const
{
    const FacetVertex& corner = m_nodes.GetVertexOf(nCorner);
    if (corner.nLiveNodes == 1)
        return false;
    const auto runsInto = [&](const FacetVertex& end)
    { return IsLeft(corner, next, end) && IsLeft(previous, corner, end); };
    for (std::uint32_t n = corner.nFirstNode; n != FacetNodes::kNone; n = m_nodes.GetNode(n).nSibling)
        if (n != nCorner && m_nodes.IsLive(n) &&
            (runsInto(m_nodes.GetVertexOf(m_nodes.GetNode(n).nPrevious)) ||
             runsInto(m_nodes.GetVertexOf(m_nodes.GetNode(n).nNext))))
            return true;
    return false;
}

/// How far the ear's triangle is from a good shape, by its largest angle. A flat ear costs nothing: the longer it
/// waits, the likelier a clip beside it leaves a corner that turns straight back, whose cone can't be told from a full
/// turn.
double EarClipping::GetCost(const FacetNode& node) const
{
    const FacetVertex& p = m_nodes.GetVertexOf(node.nPrevious);
    const FacetVertex& c = m_nodes.GetVertex(node.nVertex);
    const FacetVertex& n = m_nodes.GetVertexOf(node.nNext);
    if (!IsLeft(p, c, n))
        return 0.0;
    return std::abs(std::max({GetAngle(p, c, n), GetAngle(c, n, p), GetAngle(n, p, c)}) - kBestAngle);
}

/// The first ear, or in relaxed clipping the one of the best shape.
std::uint32_t EarClipping::ChooseEar() const
{
    std::uint32_t nBest = m_ears.GetFirst();
    std::uint32_t nBetter = m_bRelaxed ? nBest : EarCosts::kNone;
    while (nBetter != EarCosts::kNone)
    {
        nBest = nBetter;
        nBetter = m_costs.FindNextBelow(nBest, m_costs.Get(nBest) - kCostTolerance);
    }
    return nBest;
}

/// A corner that can go although it is no ear, since its triangle has no area.
std::uint32_t EarClipping::FindFlatCorner() const
{
    std::uint32_t nNode = m_nodes.GetFirst();
    for (std::uint32_t i = 0; i < m_nodes.GetCount(); ++i, nNode = m_nodes.GetNode(nNode).nNext)
    {
        const FacetNode& node = m_nodes.GetNode(nNode);
        const FacetVertex& p = m_nodes.GetVertexOf(node.nPrevious);
        const FacetVertex& c = m_nodes.GetVertex(node.nVertex);
        const FacetVertex& n = m_nodes.GetVertexOf(node.nNext);
        if (!IsLeft(p, c, n) && !IsRight(p, c, n))
            return nNode;
    }
    return FacetNodes::kNone;
}

void EarClipping::Clip(std::uint32_t nNode, std::vector<std::uint32_t>& aTriangles)
{
    const FacetNode node = m_nodes.GetNode(nNode);
    Emit(node, aTriangles);
    m_nodes.Unlink(nNode);
    m_reflex.Leave(nNode);
    m_ears.Remove(nNode);
    if (m_bRelaxed)
        m_costs.Set(nNode, EarCosts::kNoCost);
    if (m_nodes.GetCount() <= 3)
        return;
    Classify(node.nPrevious);
    Classify(node.nNext);
}

/// Appends the node's triangle. A node between two nodes on one vertex has none.
void EarClipping::Emit(const FacetNode& node, std::vector<std::uint32_t>& aTriangles) const
{
    const std::uint32_t nPrevious = m_nodes.GetNode(node.nPrevious).nVertex;
    const std::uint32_t nNext = m_nodes.GetNode(node.nNext).nVertex;
    if (nPrevious != node.nVertex && node.nVertex != nNext && nNext != nPrevious)
        aTriangles.insert(aTriangles.end(), {nPrevious, node.nVertex, nNext});
}
} // namespace

bool ClipEars(FacetNodes& nodes, bool bRelaxed, std::vector<std::uint32_t>& aTriangles)
{
    return EarClipping(nodes, bRelaxed).Run(aTriangles);
}
} // namespace QRV
