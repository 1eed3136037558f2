#include "geometry/Finite.h"

#include <QRV/Geometry.h>

namespace QRV
{
bool Line3d::isEqual(const Line3d& other) const
{
    constexpr double kSameSqrd = 1e-12;
    return point.isEqual(other.point, kSameSqrd) && vector.isEqual(other.vector, kSameSqrd);
}

bool Line3d::isCoincident(const Line3d& other, bool bSameDirection, double dTol) const
{
    if (!vector.isParallel(other.vector) || (bSameDirection && vector % other.vector <= 0.0))
        return false;
    return dist(other.point) < ScaledTolerance(other.point, dTol) && other.dist(point) < ScaledTolerance(point, dTol);
}

double Line3d::dist(const Point3d& p) const
{
    const double dSqrd = vector.lengthSqrd();
    const Vector3d toPoint = p - point;
    if (dSqrd <= kPointToleranceSqrd)
        return toPoint.length();
    return (toPoint * vector).length() / std::sqrt(dSqrd);
}

Point3d Line3d::project(const Point3d& p) const
{
    const Vector3d direction = vector.getNormalized();
    return point + direction * ((p - point) % direction);
}

bool Line3d::intersect(const Line3d& other, Point3d& out, double dTol) const
{
    constexpr double kNearlyParallel = 1e-12;
    const Vector3d u = vector.getNormalized();
    const Vector3d w = other.vector.getNormalized();
    if (u.isExactNull() || w.isExactNull() || u.isParallelNorm(w, kParallelToleranceSqrd))
        return false;
    const double c = -(u % w);
    const double e = 1.0 - c * c;
    if (e < kNearlyParallel)
        return false;
    const Vector3d apart = other.point - point;
    const Point3d nearest = other.point + w * ((-(apart % w) - (apart % u) * c) / e);
    if (!(dTol > dist(nearest)))
        return false;
    out = nearest;
    return true;
}

bool Line3d::intersectWithParameters(const Line3d& other, Point3d& out, double& t, double& u, double dTol) const
{
    if (!intersect(other, out, dTol))
        return false;
    t = GetParameter(out);
    u = other.GetParameter(out);
    return true;
}

Line3d& Line3d::operator*=(const Transf3d& transform)
{
    return *this = transform * *this;
}
} // namespace QRV
