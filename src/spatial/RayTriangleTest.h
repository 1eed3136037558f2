/// Whether a ray can meet a face, told from its triangles alone.
#pragma once

#include "spatial/FaceFacets.h"
#include <QRV/Line3d.h>

namespace QRV
{
/// How a ray passes a triangle, with room for all tolerances.
enum class nRayPass
{
    nMissed,  ///< nothing of the triangle is met, not its corners and sides either
    nThrough, ///< its inside alone is, up to the exact test
    nNear,    ///< the line runs by a side or corner, or along the triangle; only the exact tests can tell
};

/// Sorts out most triangles whose box a ray meets, by the sides on which the line of the ray passes those of the
/// triangle: the signed volume that a side spans with the ray's direction is the distance of the two lines in disguise,
/// and needs no division. What lies behind the start or beyond the end of the ray is left to the exact test.
class RayTriangleTest
{
public:
    /// A face of more is near: its own tree of triangles is the shorter way.
    static constexpr std::size_t kMostTriangles = 8;

    /// `dTol` is the tolerance of the exact tests; `whole` a box around all triangles that will be asked about.
    RayTriangleTest(const Line3d& ray, double dTol, const Interval3d& whole);

    nRayPass Classify(const Facet& facet) const;
    /// The same of a whole face, every boundary of which is a side of some triangle.
    nRayPass Classify(const FaceFacets& facets) const;

private:
    Line3d m_ray;
    double m_dMargin;        ///< of the signed volumes
    double m_dMarginPerSide; ///< the same for each unit of a side's length
};
} // namespace QRV
