#include "geometry/Finite.h"

#include <QRV/Geometry.h>

namespace QRV
{
namespace
{
double GetMeanConstant(const Point3d* p, std::size_t n, const UnitVector3d& normal)
{
    double dSum = 0.0;
    for (std::size_t i = 0; i < n; ++i)
        dSum += normal % p[i].toVector3d();
    return -dSum / double(n);
}

Vector3d GetNewellNormal(const Point3d* p, std::size_t n)
{
    Vector3d sum;
    for (std::size_t i = 0; i < n; ++i)
    {
        const Point3d& before = p[(i + n - 1) % n];
        const Point3d& behind = p[(i + 1) % n];
        sum += Vector3d(p[i].y * (behind.z - before.z), p[i].z * (behind.x - before.x), p[i].x * (behind.y - before.y));
    }
    return sum;
}

/// The two extreme points of the axis along which the cloud is longest.
std::pair<Point3d, Point3d> FindFarthestPair(const Point3d* p, std::size_t n)
{
    std::size_t aLow[3] = {0, 0, 0};
    std::size_t aHigh[3] = {0, 0, 0};
    for (std::size_t i = 1; i < n; ++i)
        for (std::size_t nAxis = 0; nAxis < 3; ++nAxis)
            if (p[i][nAxis] < p[aLow[nAxis]][nAxis])
                aLow[nAxis] = i;
            else if (p[i][nAxis] > p[aHigh[nAxis]][nAxis])
                aHigh[nAxis] = i;
    std::size_t nBest = 0;
    for (std::size_t nAxis = 1; nAxis < 3; ++nAxis)
        if (p[aLow[nAxis]].distSqrd(p[aHigh[nAxis]]) > p[aLow[nBest]].distSqrd(p[aHigh[nBest]]))
            nBest = nAxis;
    return {p[aLow[nBest]], p[aHigh[nBest]]};
}
} // namespace

Plane::Plane(const Point3d& a, const Point3d& b, const Point3d& c) : normal((b - a) * (c - a), true)
{
    d = -(normal % (a + b + c).toVector3d()) / 3.0;
}

Plane::Plane(const Point3d* p, std::size_t n)
{
    if (!p || n < 3)
        return;
    if (n == 3)
    {
        *this = Plane(p[0], UnitVector3d((p[1] - p[0]) * (p[2] - p[0]), true));
        return;
    }
    normal = UnitVector3d(n == 4 ? (p[2] - p[0]) * (p[3] - p[1]) : GetNewellNormal(p, n), true);
    if (isValid())
        d = GetMeanConstant(p, n, normal);
}

Plane::Plane(const Point3d* p, std::size_t n, const Vector3d& normalGiven) : normal(normalGiven, true)
{
    if (p && n > 0 && isValid())
        d = GetMeanConstant(p, n, normal);
}

Plane Plane::fromPoints(const Point3d* p, std::size_t n, bool bRequirePlanar)
{
    constexpr double kMinSpreadSqrd = 1e-10;
    constexpr double kMinWidth = 9.999999999999999e-6;
    if (!p || n < 3)
        return {};
    const auto [a, b] = FindFarthestPair(p, n);
    if (a.distSqrd(b) < kMinSpreadSqrd)
        return {};
    const Line3d line(a, b);
    const Point3d* pFarthest = p;
    double dFarthest = 0.0;
    for (const Point3d* q = p; q != p + n; ++q)
        if (const double dDistance = line.dist(*q); dDistance > dFarthest)
        {
            dFarthest = dDistance;
            pFarthest = q;
        }
    if (dFarthest < kMinWidth)
        return {};
    const Plane plane(p, n, (a - *pFarthest) * (b - *pFarthest));
    const auto isOff = [&](const Point3d& q) { return std::abs(plane.dist(q)) > kPlaneDistanceTolerance; };
    return bRequirePlanar && std::any_of(p, p + n, isOff) ? Plane() : plane;
}

Plane Plane::fromPointsUsingThreeNoncollinearPnts(const Point3d* p, std::size_t n, bool bCheckAll, int& nStatus,
                                                  double dTol, bool bRetryWithBestFit)
{
    nStatus = -1;
    if (!p || n < 3)
        return {};
    std::size_t nSecond = 1;
    while (nSecond < n &&
           p[nSecond].distSqrd(p[0]) <= ScaledTolerance(p[nSecond], dTol) * ScaledTolerance(p[nSecond], dTol))
        ++nSecond;
    Plane plane;
    std::size_t nThird = nSecond + 1;
    for (; nThird < n; ++nThird)
    {
        if (Line3d(p[0], p[nSecond]).dist(p[nThird]) < ScaledTolerance(p[nThird], dTol))
            continue;
        const Point3d aAnchors[3] = {p[0], p[nSecond], p[nThird]};
        plane = Plane(aAnchors, 3);
        if (plane.isValid())
            break;
    }
    if (!plane.isValid())
        return {};
    nStatus = 0;
    if (!bCheckAll)
        return plane;
    const auto holdsFrom = [&](const Plane& tested, std::size_t nFirst)
    {
        return std::all_of(p + nFirst, p + n,
                           [&](const Point3d& q) { return std::abs(tested.dist(q)) <= ScaledTolerance(q, dTol); });
    };
    if (holdsFrom(plane, nThird + 1))
        return plane;
    nStatus = -2;
    if (bRetryWithBestFit)
    {
        const Plane bestFit = fromPoints(p, n, false);
        if (bestFit.isValid() && holdsFrom(bestFit, 0))
        {
            nStatus = 0;
            return bestFit;
        }
    }
    return plane;
}

bool Plane::isEqual(const Plane& other, double dTolD, double dTolNSqrd) const
{
    return std::max(1.0, std::abs(d)) * dTolD >= std::abs(d - other.d) && normal.distSqrd(other.normal) <= dTolNSqrd;
}

bool Plane::isEquivalent(const Plane& other, double dTolD, double dTolNSqrd) const
{
    return isEqual(other, dTolD, dTolNSqrd) || isEqual(-other, dTolD, dTolNSqrd);
}

bool Plane::intersectsInLine(const Plane& other, Line3d& out) const
{
    const Vector3d dir = normal * other.normal;
    if (dir.lengthSqrd() <= kPointToleranceSqrd)
        return false;
    const std::size_t k = dir.dominantDirection();
    const std::size_t i = (k + 1) % 3;
    const std::size_t j = (k + 2) % 3;
    Point3d p;
    p[i] = (other.d * normal[j] - d * other.normal[j]) / dir[k];
    p[j] = (d * other.normal[i] - other.d * normal[i]) / dir[k];
    out = Line3d(p, dir.getNormalized());
    return true;
}

bool Plane::intersectsInPoint(const Line3d& line, Point3d& out, double& t) const
{
    t = 0.0;
    const double s = dist(line.point);
    const double c = normal % line.vector;
    if (std::max(1.0, line.vector.lengthSqrd()) * kPointToleranceSqrd > c * c)
    {
        if (!(std::abs(s) < kLinearTolerance))
            return false;
        out = line.point;
        return true;
    }
    t = -s / c;
    out = line.GetPointFromParameter(t);
    return true;
}

Line3d Plane::operator*(const Plane& other) const
{
    Line3d line;
    return intersectsInLine(other, line) ? line : Line3d::kNull;
}

Point3d Plane::operator*(const Line3d& line) const
{
    Point3d p;
    double t = 0.0;
    return intersectsInPoint(line, p, t) ? p : line.point;
}

Plane& Plane::operator*=(const Transf3d& transform)
{
    const Point3d p = transform * (Point3d() + normal * -d);
    const Transf3d map = transform.isEqualScalingOrthogonal() ? transform : transform.affineInverseTranspose();
    normal = UnitVector3d(map * Vector3d(normal), true);
    d = -(normal % p.toVector3d());
    return *this;
}

bool PointIntersectsNegativeSideOfPlanes(const Point3d& p, const std::vector<Plane>& aPlanes, double dTol)
{
    return std::all_of(aPlanes.begin(), aPlanes.end(),
                       [&](const Plane& plane) { return plane.pointIntersectsNegativeSide(p, dTol); });
}

bool BoxIntersectsNegativeSideOfPlanes(const Interval3d& box, const std::vector<Plane>& aPlanes, double dTol)
{
    return !box.isNull() && std::all_of(aPlanes.begin(), aPlanes.end(),
                                        [&](const Plane& plane) { return plane.boxIntersectsNegativeSide(box, dTol); });
}

bool BoxLiesOnNegativeSideOfPlanes(const Interval3d& box, const std::vector<Plane>& aPlanes, double dTol)
{
    return !box.isNull() && std::all_of(aPlanes.begin(), aPlanes.end(),
                                        [&](const Plane& plane) { return plane.boxLiesOnNegativeSide(box, dTol); });
}

bool SegmentIntersectsNegativeSideOfPlanes(const Point3d& a, const Point3d& b, const std::vector<Plane>& aPlanes,
                                           double dTol, bool bTestEnds)
{
    if (bTestEnds && (PointIntersectsNegativeSideOfPlanes(a, aPlanes, dTol) ||
                      PointIntersectsNegativeSideOfPlanes(b, aPlanes, dTol)))
        return true;
    constexpr double kEnd = 1e-12;
    const Vector3d v = b - a;
    for (const Plane& plane : aPlanes)
    {
        const double c = plane.normal % v;
        if (std::max(1.0, v.lengthSqrd()) * kPointToleranceSqrd > c * c)
            continue;
        const double t = -plane.dist(a) / c;
        if (t > kEnd && t < 1.0 - kEnd && PointIntersectsNegativeSideOfPlanes(a + v * t, aPlanes, dTol))
            return true;
    }
    return false;
}
} // namespace QRV
