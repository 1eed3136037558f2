/// Lines and rays.
#pragma once

#include <QRV/Point3d.h>

namespace QRV
{
/// A line through `point`, parameter 0, along `vector`, whose length is the unit of the parameter.
class QRV_API Line3d
{
public:
    Point3d point;
    Vector3d vector;

    constexpr Line3d() = default;
    /// Through two points, at parameters 0 and 1.
    constexpr Line3d(const Point3d& a, const Point3d& b) : point(a), vector(b - a) {}
    constexpr Line3d(const Point3d& p, const UnitVector3d& v) : point(p), vector(v) {}
    constexpr Line3d(const Point3d& p, const Vector3d& v) : point(p), vector(v) {}

    static const Line3d kNull, kXAxis, kYAxis, kZAxis;

    bool isValid() const { return vector.lengthSqrd() > kPointToleranceSqrd; }
    /// Origins and vectors are within a squared distance of 1e-12.
    bool isEqual(const Line3d& other) const;
    /// The same line, within a length scaled by the size of the origins.
    bool isCoincident(const Line3d& other, bool bSameDirection, double dTol) const;
    /// -kInfinity for an exactly zero vector.
    double GetParameter(const Point3d& p) const
    {
        return vector.isExactNull() ? -kInfinity : ((p - point) % vector) / (vector % vector);
    }
    Point3d GetPointFromParameter(double t) const { return point + vector * t; }
    /// Distance from the infinite line; from the origin where there is no direction.
    double dist(const Point3d& p) const;
    Point3d project(const Point3d& p) const;
    /// The point of `other` nearest to this line, when it is nearer than `dTol`; `out` is written then only. False for
    /// parallel lines.
    bool intersect(const Line3d& other, Point3d& out, double dTol) const;
    /// As intersect, with the parameters of the point on this line and on the other.
    bool intersectWithParameters(const Line3d& other, Point3d& out, double& t, double& u, double dTol) const;
    Line3d& operator*=(const Transf3d& transform);
};

inline constexpr Line3d Line3d::kNull{};
inline constexpr Line3d Line3d::kXAxis{Point3d(), Vector3d(1.0, 0.0, 0.0)};
inline constexpr Line3d Line3d::kYAxis{Point3d(), Vector3d(0.0, 1.0, 0.0)};
inline constexpr Line3d Line3d::kZAxis{Point3d(), Vector3d(0.0, 0.0, 1.0)};
} // namespace QRV
