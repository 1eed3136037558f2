/// Numbers that geometry can be made of.
#pragma once

#include <QRV/Geometry.h>

#include <algorithm>
#include <cmath>

namespace QRV
{
/// Finite and of size below kInfinity.
inline bool IsUsable(double d)
{
    return std::abs(d) < kInfinity; // false for a number that is none
}
inline bool IsUsable(const Point3d& p)
{
    return IsUsable(p.x) && IsUsable(p.y) && IsUsable(p.z);
}
inline bool IsUsable(const Vector3d& v)
{
    return IsUsable(v.x) && IsUsable(v.y) && IsUsable(v.z);
}
inline bool IsUsable(const UnitVector3d& v)
{
    return IsUsable(Vector3d(v));
}
inline bool IsUsable(const Line3d& line)
{
    return IsUsable(line.point) && IsUsable(line.vector);
}
inline bool IsUsable(const Plane& plane)
{
    return IsUsable(plane.normal) && IsUsable(plane.d);
}
inline bool IsUsable(const Transf3d& transform)
{
    for (std::size_t nRow = 0; nRow < 4; ++nRow)
        for (std::size_t nColumn = 0; nColumn < 4; ++nColumn)
            if (!IsUsable(transform(nRow, nColumn)))
                return false;
    return true;
}

/// A length scaled by the size of the coordinates at `p`.
inline double ScaledTolerance(const Point3d& p, double dTol = kLinearTolerance)
{
    return std::max(p.length(), 1.0) * dTol;
}

inline bool IsOnPlane(const Point3d& p, const Plane& plane)
{
    return std::abs(plane.dist(p)) <= ScaledTolerance(p);
}
} // namespace QRV
