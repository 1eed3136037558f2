/// Sides of outlines in a plane that run through one another.
#pragma once

#include <QRV/Geometry.h>

#include <vector>

namespace QRV
{
struct OutlineSide
{
    const Point3d* pStart;
    const Point3d* pEnd;
};

/// Whether two sides cross, or one ends in the other, clear of the ends that they share. Ends that they share are the
/// same point; two points in one place are not.
bool RunThrough(const OutlineSide& a, const OutlineSide& b, const UnitVector3d& normal);

/// Whether two sides of a closed outline run through one another. A corner may be met twice, as the same
/// point.
bool CrossesItself(const std::vector<const Point3d*>& aCorners, const UnitVector3d& normal);
} // namespace QRV
