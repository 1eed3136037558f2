/// Which side of an outline a point of its plane lies on.
#pragma once

#include "geometry/Finite.h"
#include "model/Loop.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
/// The two coordinates in which points of a plane are told apart.
struct PlaneAxes
{
    explicit PlaneAxes(const UnitVector3d& normal)
        : nU((normal.dominantDirection() + 1) % 3), nV((normal.dominantDirection() + 2) % 3)
    {
    }

    int nU;
    int nV;
};

inline double GetDistanceSqrd(const Point3d& p, const Point3d& a, const Point3d& b)
{
    const Vector3d way = b - a;
    const double dLengthSqrd = way.lengthSqrd();
    const double t = dLengthSqrd > 0.0 ? std::clamp((p - a) % way / dLengthSqrd, 0.0, 1.0) : 0.0;
    return p.distSqrd(a + way * t);
}

/// Counts the sides of an outline that a ray from the point along one of the plane's two coordinates crosses.
class PointSide
{
public:
    PointSide(const Point3d& p, const PlaneAxes& axes, bool bAscending = true)
        : m_p(p), m_axes(axes), m_bAscending(bAscending), m_dTol(ScaledTolerance(p))
    {
    }

    /// Passes one side of the outline. One that is passed twice must be given in the same direction both times: then it
    /// counts for nothing.
    void Pass(const Point3d& a, const Point3d& b)
    {
        if (m_bOn)
            return;
        // Nearly all sides pass the point at a distance in one coordinate.
        const double v = m_p[m_axes.nV];
        if (std::max(a[m_axes.nV], b[m_axes.nV]) < v - m_dTol || std::min(a[m_axes.nV], b[m_axes.nV]) > v + m_dTol)
            return;
        m_bOn = GetDistanceSqrd(m_p, a, b) <= m_dTol * m_dTol;
        // Half-open, so that a corner at the height of the point counts for one of its two sides only.
        if ((a[m_axes.nV] > v) == (b[m_axes.nV] > v))
            return;
        const double t = (v - a[m_axes.nV]) / (b[m_axes.nV] - a[m_axes.nV]);
        if ((m_p[m_axes.nU] < a[m_axes.nU] + t * (b[m_axes.nU] - a[m_axes.nU])) == m_bAscending)
            m_bInside = !m_bInside;
    }

    nLoopSide Get() const { return m_bOn ? nLoopSide::nOn : m_bInside ? nLoopSide::nInside : nLoopSide::nOutside; }

private:
    const Point3d m_p;
    const PlaneAxes m_axes;
    const bool m_bAscending;
    const double m_dTol;
    bool m_bOn = false;
    bool m_bInside = false;
};
} // namespace QRV
