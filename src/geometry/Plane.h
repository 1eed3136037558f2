/// Planes, and convex sets bounded by planes.
#pragma once

#include <QRV/Interval3d.h>

#include <vector>

namespace QRV
{
/// The points p with `normal % p + d == 0`. A zero normal marks no plane. The positive side is the one that the normal
/// points to.
class QRV_API Plane
{
public:
    UnitVector3d normal;
    double d = 0.0;

    constexpr Plane() = default;
    /// Through three points; the normal follows their order by the right hand.
    Plane(const Point3d& a, const Point3d& b, const Point3d& c);
    Plane(const Point3d& p, const UnitVector3d& n) : normal(n), d(-(n % p.toVector3d())) {}
    Plane(const Point3d& p, const Vector3d& n) : Plane(p, UnitVector3d(n, true)) {}
    /// Through a point along two vectors.
    Plane(const Point3d& p, const Vector3d& u, const Vector3d& v) : Plane(p, UnitVector3d(u * v, true)) {}
    constexpr Plane(const UnitVector3d& n, double dConstant) : normal(n), d(dConstant) {}
    Plane(const Vector3d& n, double dConstant) : normal(n, true), d(dConstant) {}
    /// Of an ordered polygon, convex or not; no plane for a null pointer or fewer than 3 points.
    Plane(const Point3d* p, std::size_t n);
    /// With a given normal, through the mean of the points.
    Plane(const Point3d* p, std::size_t n, const Vector3d& normalGiven);

    /// Of a cloud of points in no order; no plane when they lie in a line. With `bRequirePlanar` none either when a
    /// point is farther off than 1e-6.
    static Plane fromPoints(const Point3d* p, std::size_t n, bool bRequirePlanar);
    /// Of an ordered polygon from its first three corners that tell a plane. `nStatus`: 0 good, -1 no plane, -2 some
    /// point lies off the plane given back.
    static Plane fromPointsUsingThreeNoncollinearPnts(const Point3d* p, std::size_t n, bool bCheckAll, int& nStatus,
                                                      double dTol, bool bRetryWithBestFit);

    bool isValid() const { return !normal.isExactNull(); }
    /// Signed distance.
    double dist(const Point3d& p) const { return normal % p.toVector3d() + d; }
    bool isEqual(const Plane& other, double dTolD, double dTolNSqrd) const;
    /// As isEqual, for either side of the other plane.
    bool isEquivalent(const Plane& other, double dTolD, double dTolNSqrd) const;
    Plane operator-() const { return Plane(-normal, -d); }
    void negate() { *this = -*this; }
    /// Moves the plane along its normal.
    void OffsetByDistance(double x) { d -= x; }
    Point3d project(const Point3d& p) const { return p - normal * dist(p); }
    Vector3d project(const Vector3d& v) const { return normal * (v * normal); }
    /// The vector may come out zero.
    Line3d project(const Line3d& line) const { return Line3d(project(line.point), project(line.vector)); }
    bool intersectsInLine(const Plane& other, Line3d& out) const;
    /// A parallel line meets the plane, at its own origin, only when that lies in it.
    bool intersectsInPoint(const Line3d& line, Point3d& out, double& t) const;
    /// Line3d::kNull when there is no line.
    Line3d operator*(const Plane& other) const;
    /// The line's own origin when there is no point.
    Point3d operator*(const Line3d& line) const;
    Plane& operator*=(const Transf3d& transform);
    bool pointIntersectsNegativeSide(const Point3d& p, double dTol) const { return dTol > dist(p); }
    bool boxIntersectsNegativeSide(const Interval3d& box, double dTol) const
    {
        return !box.isNull() && dTol > dist(box.lowerInDirection(normal));
    }
    bool boxLiesOnNegativeSide(const Interval3d& box, double dTol) const
    {
        return !box.isNull() && dTol > dist(box.upperInDirection(normal));
    }
};

/// Tests against the negative side of all planes. No planes count as all of space.
QRV_API bool PointIntersectsNegativeSideOfPlanes(const Point3d& p, const std::vector<Plane>& aPlanes, double dTol);
/// Quick and generous: a box may pass and yet miss the set.
QRV_API bool BoxIntersectsNegativeSideOfPlanes(const Interval3d& box, const std::vector<Plane>& aPlanes, double dTol);
QRV_API bool BoxLiesOnNegativeSideOfPlanes(const Interval3d& box, const std::vector<Plane>& aPlanes, double dTol);
/// Some point of the segment lies in the set; with `bTestEnds` its ends are tested first. False without planes unless
/// an end says otherwise.
QRV_API bool SegmentIntersectsNegativeSideOfPlanes(const Point3d& a, const Point3d& b,
                                                   const std::vector<Plane>& aPlanes, double dTol, bool bTestEnds);
} // namespace QRV
