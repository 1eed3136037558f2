#include "spatial/FaceFacets.h"

#include "geometry/Finite.h"
#include "model/Face.h"
#include "spatial/FacetPolygon.h"

#include <algorithm>
#include <bit>

namespace QRV
{
namespace
{
constexpr std::size_t kSmallSet = 8;    ///< so many triangles are looked through faster than a tree is built
constexpr double kRayStart = -1e-12;    ///< a hit that lies behind the start by no more than this counts
constexpr double kSmallTriangle = 1e-6; ///< below this area a triangle is no good place for an interior point

Plane GetFacetPlane(const Facet& facet)
{
    return Plane(facet.GetPoint(0), facet.GetPoint(1), facet.GetPoint(2));
}

/// Numbers for vertices in the order in which they are first asked for, in one table of open addresses.
class VertexNumbers
{
public:
    /// @param nMost  no fewer than the distinct vertices to come
    explicit VertexNumbers(std::size_t nMost) : m_aSlots(std::bit_ceil(2 * nMost + 1), kFree)
    {
        m_aVertices.reserve(nMost);
    }

    std::uint32_t Get(Vertex* pVertex)
    {
        const std::size_t nMask = m_aSlots.size() - 1;
        std::size_t n = (reinterpret_cast<std::uintptr_t>(pVertex) * kMultiplier) >> kHighHalf & nMask;
        while (m_aSlots[n] != kFree && m_aVertices[m_aSlots[n]] != pVertex)
            n = (n + 1) & nMask;
        if (m_aSlots[n] == kFree)
        {
            m_aSlots[n] = std::uint32_t(m_aVertices.size());
            m_aVertices.push_back(pVertex);
        }
        return m_aSlots[n];
    }

    Vertex* GetVertex(std::uint32_t nNumber) const { return m_aVertices[nNumber]; }

private:
    static constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15; // spreads addresses over the high bits
    static constexpr int kHighHalf = 32;
    static constexpr std::uint32_t kFree = 0xFFFFFFFF;

    std::vector<std::uint32_t> m_aSlots; // numbers; how many slots is a power of two
    std::vector<Vertex*> m_aVertices;
};

/// The corners of all loops with each vertex numbered once.
class FaceCorners
{
public:
    explicit FaceCorners(const Face& face) : FaceCorners(face, CountCorners(face)) {}

    /// Each hole costs two more than its corners.
    std::size_t GetMostTriangles() const { return m_aCorners.size() + 2 * m_aLoopEnds.size(); }
    std::uint32_t GetOuterCount() const { return m_aLoopEnds.front(); }
    Vertex* GetVertex(std::uint32_t nNumber) const { return m_numbers.GetVertex(nNumber); }
    bool Triangulate(const Plane& plane, std::vector<std::uint32_t>& aTriangles) const
    {
        return TriangulateLoops(m_aCorners, m_aLoopEnds, plane, aTriangles);
    }

private:
    FaceCorners(const Face& face, std::size_t nCorners) : m_numbers(nCorners)
    {
        m_aCorners.reserve(nCorners);
        m_aLoopEnds.reserve(face.GetLoops().size());
        for (const Loop* pLoop : face.GetLoops())
        {
            pLoop->ForEachCoedge(
                [&](const Coedge& coedge)
                {
                    if (Vertex* pVertex = coedge.GetStartVertex())
                        m_aCorners.push_back({&pVertex->GetPosition(), m_numbers.Get(pVertex)});
                });
            m_aLoopEnds.push_back(std::uint32_t(m_aCorners.size()));
        }
    }

    static std::size_t CountCorners(const Face& face)
    {
        std::size_t nCorners = 0;
        for (const Loop* pLoop : face.GetLoops())
            pLoop->ForEachCoedge([&](const Coedge&) { ++nCorners; });
        return nCorners;
    }

    std::vector<FacetCorner> m_aCorners;
    std::vector<std::uint32_t> m_aLoopEnds;
    VertexNumbers m_numbers;
};

/// As PointIntersectsNegativeSideOfPlanes, for a point made to lie on planes `i` and `j`: far from the origin rounding
/// puts it on either side of them.
bool IsOnNegativeSideOfOthers(const Point3d& p, const std::vector<Plane>& aPlanes, std::size_t i, std::size_t j,
                              double dTol)
{
    for (std::size_t n = 0; n < aPlanes.size(); ++n)
        if (n != i && n != j && !aPlanes[n].pointIntersectsNegativeSide(p, dTol))
            return false;
    return true;
}

std::array<Point3d, 3> GetPoints(const Facet& facet, const Transf3d* pTransform)
{
    std::array<Point3d, 3> aPoints{facet.GetPoint(0), facet.GetPoint(1), facet.GetPoint(2)};
    if (pTransform)
        for (Point3d& p : aPoints)
            p = *pTransform * p;
    return aPoints;
}
} // namespace

Interval3d Facet::GetBox() const
{
    Interval3d box(GetPoint(0));
    box += GetPoint(1);
    box += GetPoint(2);
    return box;
}

double Facet::GetSignedArea(const UnitVector3d& normal) const
{
    return ((GetPoint(1) - GetPoint(0)) * (GetPoint(2) - GetPoint(0))) % normal / 2.0;
}

bool Facet::ContainsPoint(const Point3d& p, const Plane* pPlane, bool bBoxFirst, double dRounding) const
{
    if (bBoxFirst && !(GetBox() & p))
        return false;
    Plane own;
    if (!pPlane)
    {
        own = GetFacetPlane(*this);
        if (!own.isValid() || std::abs(own.dist(p)) > kLinearTolerance)
            return false;
        pPlane = &own;
    }
    const double dLeast = -ScaledTolerance(p);
    for (std::size_t i = 0; i < 3; ++i)
    {
        const Point3d& u = GetPoint(i);
        const Point3d& v = GetPoint((i + 1) % 3);
        const double dArea = ((v - u) * (p - u)) % pPlane->normal / 2.0;
        if (dArea <= dLeast && dArea <= dLeast - dRounding * (v - u).lengthRect())
            return false;
    }
    return true;
}

std::shared_ptr<const FaceFacets> FaceFacets::Compute(Face& face, bool& bFailed)
{
    bFailed = false;
    if (face.GetLoops().empty())
        return nullptr;
    const FaceCorners corners(face);
    if (corners.GetOuterCount() < 3)
        return nullptr;
    const Plane plane = face.GetPlane();
    std::vector<std::uint32_t> aTriangles;
    aTriangles.reserve(corners.GetMostTriangles() * 3);
    bFailed = !plane.isValid() || !corners.Triangulate(plane, aTriangles);
    if (bFailed || aTriangles.empty())
        return nullptr;

    auto pFacets = std::make_shared<FaceFacets>();
    pFacets->m_aFacets.reserve(aTriangles.size() / 3);
    for (std::size_t i = 0; i + 2 < aTriangles.size(); i += 3)
    {
        Facet facet{};
        for (std::size_t n = 0; n < 3; ++n)
        {
            facet.aVertices[n] = corners.GetVertex(aTriangles[i + n]);
            pFacets->m_dTolerance = std::max(pFacets->m_dTolerance, std::abs(plane.dist(facet.GetPoint(n))));
        }
        pFacets->m_aFacets.push_back(facet);
    }
    return pFacets;
}

double FaceFacets::GetArea(const Plane& plane, const Transf3d* pTransform) const
{
    double dArea = 0.0;
    for (const Facet& facet : m_aFacets)
    {
        if (!pTransform)
        {
            dArea += facet.GetSignedArea(plane.normal);
            continue;
        }
        const auto p = GetPoints(facet, pTransform);
        dArea += ((p[1] - p[0]) * (p[2] - p[0])).length() / 2.0;
    }
    return dArea;
}

bool FaceFacets::GetCentroid(Point3d& centroid, const Plane& plane) const
{
    if (m_aFacets.empty())
        return false;
    // Measured from a corner, so that places far from the origin lose nothing.
    const Point3d origin = m_aFacets.front().GetPoint(0);
    double dTotal = 0.0;
    Vector3d sum;
    for (const Facet& facet : m_aFacets)
    {
        const double dArea = facet.GetSignedArea(plane.normal);
        sum += ((facet.GetPoint(0) - origin) + (facet.GetPoint(1) - origin) + (facet.GetPoint(2) - origin)) *
               (dArea / 3.0);
        dTotal += dArea;
    }
    if (std::abs(dTotal) <= kLinearTolerance)
        return false;
    centroid = origin + sum / dTotal;
    return true;
}

bool FaceFacets::GetInteriorPoint(Point3d& p, const Plane& plane) const
{
    if (m_aFacets.empty())
        return false;
    const Facet* pChosen = &m_aFacets.front();
    const bool bPoor = !GetFacetPlane(*pChosen).isValid() || pChosen->GetSignedArea(plane.normal) < kSmallTriangle;
    if (m_aFacets.size() > 1 && bPoor)
        pChosen = &*std::max_element(m_aFacets.begin(), m_aFacets.end(),
                                     [&](const Facet& a, const Facet& b)
                                     { return a.GetSignedArea(plane.normal) < b.GetSignedArea(plane.normal); });
    const Point3d& a = pChosen->GetPoint(0);
    p = a + ((pChosen->GetPoint(1) - a) + (pChosen->GetPoint(2) - a)) / 3.0;
    return true;
}

double FaceFacets::GetVolumeContribution(const Transf3d* pTransform, const Point3d& origin) const
{
    double dVolume = 0.0;
    for (const Facet& facet : m_aFacets)
    {
        const auto p = GetPoints(facet, pTransform);
        dVolume += (p[0] - origin) % ((p[1] - origin) * (p[2] - origin)) / 6.0;
    }
    return dVolume;
}

template <class BoxTest, class Visit>
void FaceFacets::ForEachCandidate(BoxTest&& test, Visit&& visit) const
{
    if (m_aFacets.size() <= kSmallSet)
    {
        for (const Facet& facet : m_aFacets)
            if (test(facet.GetBox()) && !visit(facet))
                return;
        return;
    }
    if (!m_pTree)
    {
        std::vector<const Facet*> aFacets;
        aFacets.reserve(m_aFacets.size());
        for (const Facet& facet : m_aFacets)
            aFacets.push_back(&facet);
        auto pTree = std::make_unique<BoxTree<const Facet>>();
        pTree->BulkLoad(aFacets);
        m_pTree = std::move(pTree);
    }
    m_pTree->Visit(test, [&](const Facet* pFacet, const Interval3d& box) { return !test(box) || visit(*pFacet); });
}

bool FaceFacets::ContainsPoint(const Point3d& p, const Plane& plane, bool bWide) const
{
    const double dTol = ScaledTolerance(p);
    if (!bWide && std::abs(plane.dist(p)) > dTol)
        return false;
    const Interval3d box(p, bWide ? std::max(2.0 * m_dTolerance, 100.0 * dTol) : dTol);
    bool bContains = false;
    ForEachCandidate([&](const Interval3d& other) { return box & other; },
                     [&](const Facet& facet)
                     {
                         bContains = facet.ContainsPoint(p, &plane, false);
                         return !bContains;
                     });
    return bContains;
}

void FaceFacets::HitByRay(const Line3d& ray, std::vector<double>& aParameters, double dTol, double dMax) const
{
    const auto nFirst = std::ptrdiff_t(aParameters.size());
    // Where the ray passes between two triangles, both are hit and the face is crossed but once.
    const auto isKnown = [&](double t)
    {
        const double dSpot = std::max(std::abs(t), 1.0) * kLinearTolerance;
        return std::any_of(aParameters.begin() + nFirst, aParameters.end(),
                           [&](double tKnown) { return std::abs(t - tKnown) < dSpot; });
    };
    // Along a side of two large triangles it must not pass between them.
    const auto getRounding = [&](const Point3d& p)
    {
        constexpr double kRounding = 4e-15;
        return kRounding * (ray.point.toVector3d().lengthRect() + p.toVector3d().lengthRect());
    };
    ForEachCandidate([&](const Interval3d& box) { return box.intersectsRay(ray, dTol, dMax); },
                     [&](const Facet& facet)
                     {
                         const Plane plane = GetFacetPlane(facet);
                         Point3d p;
                         double t = 0.0;
                         if (plane.isValid() && plane.intersectsInPoint(ray, p, t) && t > kRayStart &&
                             t <= dMax + kLinearTolerance && facet.ContainsPoint(p, &plane, false, getRounding(p)) &&
                             !isKnown(t))
                             aParameters.push_back(t);
                         return true;
                     });
}

bool FaceFacets::IntersectsNegativeSideOfPlanes(const std::vector<Plane>& aPlanes, const Plane& plane, double dTol,
                                                bool bWhole) const
{
    std::vector<const Facet*> aCandidates;
    ForEachCandidate([&](const Interval3d& box) { return BoxIntersectsNegativeSideOfPlanes(box, aPlanes, dTol); },
                     [&](const Facet& facet)
                     {
                         aCandidates.push_back(&facet);
                         return true;
                     });
    if (bWhole && aCandidates.size() < m_aFacets.size())
        return false;
    for (const Facet* pFacet : aCandidates)
        for (const Vertex* pVertex : pFacet->aVertices)
            if (PointIntersectsNegativeSideOfPlanes(pVertex->GetPosition(), aPlanes, dTol) != bWhole)
                return !bWhole;
    if (bWhole)
        return true;
    for (const Facet* pFacet : aCandidates)
        for (std::size_t i = 0; i < 3; ++i)
            if (SegmentIntersectsNegativeSideOfPlanes(pFacet->GetPoint(i), pFacet->GetPoint((i + 1) % 3), aPlanes, dTol,
                                                      false))
                return true;
    // A volume that pierces the face without touching a side of a triangle.
    for (std::size_t i = 0; i < aPlanes.size(); ++i)
        for (std::size_t j = i + 1; j < aPlanes.size(); ++j)
        {
            Line3d line;
            Point3d p;
            double t = 0.0;
            if (aPlanes[i].intersectsInLine(aPlanes[j], line) && plane.intersectsInPoint(line, p, t) &&
                IsOnNegativeSideOfOthers(p, aPlanes, i, j, dTol))
                return ContainsPoint(plane.project(p), plane, false);
        }
    return false;
}

std::size_t FaceFacets::GetSizeInBytes() const
{
    return sizeof(FaceFacets) + m_aFacets.capacity() * sizeof(Facet) + (m_pTree ? m_pTree->GetSizeInBytes() : 0);
}
} // namespace QRV
