#include "spatial/RayTriangleTest.h"

#include "spatial/BoxQueryTests.h"

#include <cmath>

namespace QRV
{
namespace
{
double GetSize(const Vector3d& v)
{
    return std::abs(v.x) + std::abs(v.y) + std::abs(v.z);
}
} // namespace

RayTriangleTest::RayTriangleTest(const Line3d& ray, double dTol, const Interval3d& whole) : m_ray(ray)
{
    constexpr double kRounding = 6e-14;
    const double dSize = GetCoordinateSize(whole) + GetSize(ray.point.toVector3d());
    const double dSpeed = GetSize(ray.vector);
    // The exact test of a point in a triangle has slack in area, the others in length.
    m_dMargin = dSpeed * (4.0 * kLinearTolerance * dSize + kRounding * dSize * dSize);
    m_dMarginPerSide = dSpeed * (2.0 * dTol + 4.0 * kLinearTolerance * dSize);
}

nRayPass RayTriangleTest::Classify(const Facet& facet) const
{
    const Vector3d aCorners[3] = {facet.GetPoint(0) - m_ray.point, facet.GetPoint(1) - m_ray.point,
                                  facet.GetPoint(2) - m_ray.point};
    const double dWhole = m_ray.vector % ((aCorners[1] - aCorners[0]) * (aCorners[2] - aCorners[0]));
    bool bLeftOfAll = true;
    bool bRightOfAll = true;
    for (int i = 0; i < 3; ++i)
    {
        const Vector3d& from = aCorners[i];
        const Vector3d side = aCorners[(i + 1) % 3] - from;
        const double dMargin = m_dMargin + m_dMarginPerSide * GetSize(side);
        // Seen along the ray the triangle fills the band from 0, its side, to `dWhole`, its third corner.
        const double dRay = m_ray.vector % (from * side);
        if (dRay < std::min(0.0, dWhole) - dMargin || dRay > std::max(0.0, dWhole) + dMargin)
            return nRayPass::nMissed;
        bLeftOfAll = bLeftOfAll && dRay > dMargin;
        bRightOfAll = bRightOfAll && dRay < -dMargin;
    }
    return bLeftOfAll || bRightOfAll ? nRayPass::nThrough : nRayPass::nNear;
}

nRayPass RayTriangleTest::Classify(const FaceFacets& facets) const
{
    if (facets.GetFacets().size() > kMostTriangles)
        return nRayPass::nNear;
    nRayPass nPass = nRayPass::nMissed;
    for (const Facet& facet : facets.GetFacets())
    {
        const nRayPass nOne = Classify(facet);
        if (nOne == nRayPass::nNear)
            return nOne;
        if (nOne == nRayPass::nThrough)
            nPass = nOne;
    }
    return nPass;
}
} // namespace QRV
