#include "geometry/Trigonometry.h"

#include <QRV/Geometry.h>

namespace QRV
{
namespace
{
/// The axis that a direction is crossed with to give one at right angles.
Vector3d GetPerpendicularHelper(const Vector3d& direction)
{
    constexpr double kNearZAxis = 0.015625;
    return std::abs(direction.x) < kNearZAxis && std::abs(direction.y) < kNearZAxis ? Vector3d::kYDir : Vector3d::kZDir;
}
} // namespace

bool Vector2d::isParallel(const Vector2d& v, double dTolSqrd) const
{
    const Vector2d a = getNormalized(kPointToleranceSqrd);
    const Vector2d b = v.getNormalized(kPointToleranceSqrd);
    return !a.isExactNull() && !b.isExactNull() && (dTolSqrd >= a.distSqrd(b) || dTolSqrd >= a.distSqrd(-b));
}

bool Vector2d::isPerpend(const Vector2d& v, double dTol) const
{
    const Vector2d a = getNormalized(kPointToleranceSqrd);
    const Vector2d b = v.getNormalized(kPointToleranceSqrd);
    return !a.isExactNull() && !b.isExactNull() && dTol > std::abs(a % b);
}

double Vector2d::angle(const Vector2d& v, double dTol) const
{
    constexpr double kNullSqrd = 1e-12;
    const Vector2d a = getNormalized(kPointToleranceSqrd);
    const Vector2d b = v.getNormalized(kPointToleranceSqrd);
    return a.isNull(kNullSqrd) || b.isNull(kNullSqrd) ? 0.0 : a.angleBetweenNormalized(b, dTol);
}

double Vector2d::angleBetweenNormalized(const Vector2d& v, double dTol) const
{
    return AngleFromCosine(*this % v, dTol);
}

void Point2d::rotate(double dAngle)
{
    const double c = Cos(dAngle);
    const double s = Sin(dAngle);
    *this = {x * c - y * s, x * s + y * c};
}

bool Vector3d::isPerpend(const Vector3d& v, double dTol) const
{
    const Vector3d a = getNormalized();
    const Vector3d b = v.getNormalized();
    return !a.isExactNull() && !b.isExactNull() && dTol > std::abs(a % b);
}

bool Vector3d::isPerpend(const UnitVector3d& v, double dTol) const
{
    return UnitVector3d(*this, true).isPerpend(v, dTol);
}

double Vector3d::angle(const Vector3d& v) const
{
    const Vector3d a = getNormalized();
    const Vector3d b = v.getNormalized();
    return a.isNull() || b.isNull() ? 0.0 : a.angleBetweenNormalized(b);
}

double Vector3d::angleBetweenNormalized(const Vector3d& v) const
{
    return AngleFromCosine(*this % v, kAngleCosineTolerance);
}

Vector3d Vector3d::perpend() const
{
    const Vector3d direction = getNormalized();
    return (GetPerpendicularHelper(direction) * direction).getNormalized();
}

UnitVector3d& UnitVector3d::set(double dX, double dY, double dZ, bool bNormalize)
{
    x = dX, y = dY, z = dZ;
    if (!bNormalize)
        return *this;
    const double dSqrd = x * x + y * y + z * z;
    if (!(dSqrd > kPointToleranceSqrd))
    {
        zero();
        return *this;
    }
    // Exact axis directions stay free of rounding noise: many tests on them are exact.
    const double dLength = std::sqrt(dSqrd);
    if (std::abs(x) >= dLength)
        return set(x < 0.0 ? -1.0 : 1.0, 0.0, 0.0, false);
    if (std::abs(y) >= dLength)
        return set(0.0, y < 0.0 ? -1.0 : 1.0, 0.0, false);
    if (std::abs(z) >= dLength)
        return set(0.0, 0.0, z < 0.0 ? -1.0 : 1.0, false);
    return set(x / dLength, y / dLength, z / dLength, false);
}

double UnitVector3d::angle(const UnitVector3d& v) const
{
    return AngleFromCosine(*this % v, kAngleCosineTolerance);
}

UnitVector3d UnitVector3d::perpend() const
{
    return UnitVector3d(GetPerpendicularHelper(*this) * Vector3d(*this), true);
}

UnitVector3d UnitVector3d::CreateArbitraryPerpendicularVector3D() const
{
    const bool bAlongX = !isExactNull() && isParallel(kXDir);
    return UnitVector3d((*this * (bAlongX ? kYDir : kXDir)) * *this, true);
}

Vector3d& Vector3d::operator*=(const Transf3d& transform)
{
    return *this = transform * *this;
}

UnitVector3d& UnitVector3d::operator*=(const Transf3d& transform)
{
    return *this = transform * *this;
}

Point3d& Point3d::operator*=(const Transf3d& transform)
{
    return *this = transform * *this;
}

Point3d Point3d::project(const Transf3d& t) const
{
    const double w = t(3, 0) * x + t(3, 1) * y + t(3, 2) * z + t(3, 3);
    return (t * *this) / w;
}
} // namespace QRV
