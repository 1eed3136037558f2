#include <QRV/Geometry.h>

namespace QRV
{
bool Interval3d::isEqual(const Interval3d& box, double dTolSqrd) const
{
    if (isNull() && box.isNull())
        return true;
    const double dLimit = std::max({1.0, lower.lengthSqrd(), upper.lengthSqrd()}) * dTolSqrd;
    return lower.distSqrd(box.lower) <= dLimit && upper.distSqrd(box.upper) <= dLimit;
}

bool Interval3d::boundariesTouch(const Interval3d& box, double dTol) const
{
    if (isNull() || box.isNull())
        return false;
    for (std::size_t i = 0; i < 3; ++i)
        for (const double dSide : {lower[i], upper[i]})
            if (std::abs(dSide - box.lower[i]) < dTol || std::abs(dSide - box.upper[i]) < dTol)
                return true;
    return false;
}

Interval3d Interval3d::operator*(const Transf3d& transform) const
{
    Interval3d box;
    if (isNull())
        return box;
    for (const Point3d& corner : getBoundsPoints().second)
        box += transform * corner;
    return box;
}

double Interval3d::length() const
{
    return hasExtent() ? (upper - lower).length() : 0.0;
}

double Interval3d::lengthSqrd() const
{
    return hasExtent() ? (upper - lower).lengthSqrd() : 0.0;
}

void Interval3d::enlarge(double r)
{
    if (isNull())
        return;
    lower -= Vector3d(r, r, r);
    upper += Vector3d(r, r, r);
}

std::pair<bool, std::array<Point3d, 8>> Interval3d::getBoundsPoints() const
{
    std::array<Point3d, 8> a;
    if (isNull())
    {
        a.fill({1e30, 1e30, 1e30});
        return {false, a};
    }
    const auto setSide = [&](std::size_t n, double z) {
        a[n] = {lower.x, lower.y, z};
        a[n + 1] = {lower.x, upper.y, z};
        a[n + 2] = {upper.x, upper.y, z};
        a[n + 3] = {upper.x, lower.y, z};
    };
    setSide(0, lower.z);
    setSide(4, upper.z);
    return {true, a};
}

bool Interval3d::intersectsPlane(const Plane& plane, double dTol) const
{
    if (isNull())
        return false;
    const auto scaled = [&](const Point3d& corner) { return std::max(1.0, corner.lengthRect()) * dTol; };
    const Point3d low = lowerInDirection(plane.normal);
    const Point3d high = upperInDirection(plane.normal);
    return plane.dist(low) <= scaled(low) && plane.dist(high) >= -scaled(high);
}

bool Interval3d::boundsLine(const Line3d& line, double& tMin, double& tMax, double dTol) const
{
    if (isNull() || !line.isValid())
        return false;
    Interval3d box = *this;
    if (dTol > 0.0)
        box.enlarge(std::sqrt(std::max({1.0, lower.lengthSqrd(), upper.lengthSqrd()})) * dTol);
    bool bCrosses = false;
    for (std::size_t i = 0; i < 3; ++i)
    {
        if (std::abs(line.vector[i]) < kLinearTolerance)
            continue;
        for (const double dSide : {box.upper[i], box.lower[i]})
        {
            const double t = (dSide - line.point[i]) / line.vector[i];
            if (!(box & line.GetPointFromParameter(t)))
                continue;
            tMin = std::min(tMin, t);
            tMax = std::max(tMax, t);
            bCrosses = true;
        }
    }
    return bCrosses;
}

bool Interval3d::intersectsRay(const Line3d& line, double dTol, double tMax) const
{
    if (isNull() || line.vector.isNull())
        return false;
    double dLimit = tMax;
    for (std::size_t i = 0; i < 3; ++i)
    {
        const double v = line.vector[i];
        if (std::abs(v) <= kLinearTolerance)
            continue;
        const double dFar = v > 0.0 ? upper[i] + dTol : lower[i] - dTol;
        dLimit = std::min(dLimit, (dFar - line.point[i]) / v);
        if (dLimit < -dTol)
            return false;
    }
    for (std::size_t i = 0; i < 3; ++i)
    {
        const double dStart = line.point[i];
        const double dEnd = dStart + dLimit * line.vector[i];
        const double r0 = std::min(dStart, dEnd);
        const double r1 = std::max(dStart, dEnd);
        if (lower[i] > r1 + dTol + std::max(1.0, std::abs(lower[i])) * kLinearTolerance ||
            r0 > upper[i] + dTol + std::max(1.0, std::abs(r0)) * kLinearTolerance)
            return false;
    }
    return true;
}
} // namespace QRV
