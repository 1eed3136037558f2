/// Points, vectors and directions of space.
#pragma once

#include <QRV/Export.h>
#include <QRV/Tolerances.h>

#include <cmath>
#include <cstddef>

namespace QRV
{
class Transf3d;
class UnitVector3d;

/// A vector of space. `*` between vectors is the cross product, `%` the dot product.
class QRV_API Vector3d
{
public:
    double x = 0.0, y = 0.0, z = 0.0;

    constexpr Vector3d() = default;
    constexpr Vector3d(double dX, double dY, double dZ) : x(dX), y(dY), z(dZ) {}
    constexpr Vector3d(const UnitVector3d& v);

    static const Vector3d kNull, kXDir, kYDir, kZDir;

    double& operator[](std::size_t n) { return n == 0 ? x : n == 1 ? y : z; }
    double operator[](std::size_t n) const { return n == 0 ? x : n == 1 ? y : z; }

    Vector3d& set(double dX, double dY, double dZ) { return x = dX, y = dY, z = dZ, *this; }
    void zero() { x = y = z = 0.0; }
    void negate() { *this = -*this; }
    Vector3d& scale(const Vector3d& v) { return x *= v.x, y *= v.y, z *= v.z, *this; }
    Vector3d getScaled(const Vector3d& v) const { return {x * v.x, y * v.y, z * v.z}; }

    constexpr Vector3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3d operator-() const { return {-x, -y, -z}; }
    constexpr Vector3d operator*(double d) const { return {x * d, y * d, z * d}; }
    constexpr Vector3d operator/(double d) const { return {x / d, y / d, z / d}; }
    Vector3d& operator+=(const Vector3d& v) { return *this = *this + v; }
    Vector3d& operator-=(const Vector3d& v) { return *this = *this - v; }
    Vector3d& operator*=(double d) { return *this = *this * d; }
    Vector3d& operator/=(double d) { return *this = *this / d; }
    Vector3d& operator*=(const Transf3d& transform);
    /// Cross product, this one on the left.
    constexpr Vector3d operator*(const Vector3d& v) const
    {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    constexpr double operator%(const Vector3d& v) const { return x * v.x + y * v.y + z * v.z; }

    constexpr double lengthSqrd() const { return x * x + y * y + z * z; }
    double length() const { return std::sqrt(lengthSqrd()); }
    double lengthRect() const { return std::abs(x) + std::abs(y) + std::abs(z); }
    double dist(const Vector3d& v) const { return (*this - v).length(); }
    double distSqrd(const Vector3d& v) const { return (*this - v).lengthSqrd(); }
    double distRect(const Vector3d& v) const { return (*this - v).lengthRect(); }
    bool isEqual(const Vector3d& v, double dTolSqrd = kPointToleranceSqrd) const { return dTolSqrd >= distSqrd(v); }
    bool isEqualRect(const Vector3d& v, double dTol) const { return dTol >= distRect(v); }
    bool isNull(double dTolSqrd = kPointToleranceSqrd) const { return dTolSqrd >= lengthSqrd(); }
    constexpr bool isExactNull() const { return x == 0.0 && y == 0.0 && z == 0.0; }

    /// Divides by the length when that is above 1e-12; otherwise the result is zero.
    void normalize() { *this = getNormalized(); }
    Vector3d getNormalized() const
    {
        const double dLength = length();
        return dLength > kLinearTolerance ? *this / dLength : Vector3d();
    }
    /// Opposite directions are parallel; a zero vector is parallel to nothing.
    bool isParallel(const Vector3d& v, double dTolSqrd = kParallelToleranceSqrd) const
    {
        return getNormalized().isParallelNorm(v.getNormalized(), dTolSqrd);
    }
    /// As isParallel, for vectors of unit length.
    bool isParallelNorm(const Vector3d& v, double dTolSqrd) const
    {
        return !isExactNull() && !v.isExactNull() && (dTolSqrd >= distSqrd(v) || dTolSqrd >= distSqrd(-v));
    }
    bool isPerpend(const Vector3d& v, double dTol = kPerpendicularTolerance) const;
    bool isPerpend(const UnitVector3d& v, double dTol = kPerpendicularTolerance) const;
    /// Radians, 0 to pi; 0 when either is zero.
    double angle(const Vector3d& v) const;
    double angleBetweenNormalized(const Vector3d& v) const;
    /// Index of the component largest in size; the lower one on ties.
    std::size_t dominantDirection() const
    {
        const double dX = std::abs(x), dY = std::abs(y), dZ = std::abs(z);
        if (dX >= dY)
            return dX >= dZ ? 0 : 2;
        return dY >= dZ ? 1 : 2;
    }
    /// A normalised vector at right angles; zero for a zero vector.
    Vector3d perpend() const;
};

/// A direction: of length 1, or exactly zero for none. Building without normalising is the caller's promise.
class QRV_API UnitVector3d
{
public:
    double x = 0.0, y = 0.0, z = 0.0;

    constexpr UnitVector3d() = default;
    constexpr UnitVector3d(double dX, double dY, double dZ, bool bNormalize) : x(dX), y(dY), z(dZ)
    {
        if (bNormalize)
            set(dX, dY, dZ, true);
    }
    UnitVector3d(const Vector3d& v, bool bNormalize) { set(v.x, v.y, v.z, bNormalize); }

    static const UnitVector3d kNull, kXDir, kYDir, kZDir;

    double& operator[](std::size_t n) { return n == 0 ? x : n == 1 ? y : z; }
    double operator[](std::size_t n) const { return n == 0 ? x : n == 1 ? y : z; }

    /// With `bNormalize`, a squared length of at most 1e-24 gives zero, and axis directions come out exact.
    UnitVector3d& set(double dX, double dY, double dZ, bool bNormalize);
    void zero() { x = y = z = 0.0; }
    void negate() { *this = -*this; }
    UnitVector3d& scale(const Vector3d& v) { return x *= v.x, y *= v.y, z *= v.z, *this; }
    UnitVector3d getScaled(const Vector3d& v) const { return {x * v.x, y * v.y, z * v.z, false}; }

    constexpr UnitVector3d operator-() const { return UnitVector3d(-x, -y, -z, false); }
    constexpr Vector3d operator*(double d) const { return {x * d, y * d, z * d}; }
    constexpr Vector3d operator/(double d) const { return {x / d, y / d, z / d}; }
    constexpr Vector3d operator+(const UnitVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3d operator-(const UnitVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    UnitVector3d& operator*=(const Transf3d& transform);
    /// Cross products, this one on the left, not normalised.
    constexpr Vector3d operator*(const UnitVector3d& v) const { return Vector3d(*this) * Vector3d(v); }
    constexpr Vector3d operator*(const Vector3d& v) const { return Vector3d(*this) * v; }
    constexpr double operator%(const UnitVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    constexpr double operator%(const Vector3d& v) const { return x * v.x + y * v.y + z * v.z; }

    double length() const { return Vector3d(*this).length(); }
    double lengthSqrd() const { return Vector3d(*this).lengthSqrd(); }
    double lengthRect() const { return Vector3d(*this).lengthRect(); }
    double dist(const UnitVector3d& v) const { return (*this - v).length(); }
    double distSqrd(const UnitVector3d& v) const { return (*this - v).lengthSqrd(); }
    double distRect(const UnitVector3d& v) const { return (*this - v).lengthRect(); }
    bool isEqual(const UnitVector3d& v, double dTolSqrd = kPointToleranceSqrd) const { return dTolSqrd >= distSqrd(v); }
    bool isEqualRect(const UnitVector3d& v, double dTol) const { return dTol >= distRect(v); }
    constexpr bool isExactNull() const { return x == 0.0 && y == 0.0 && z == 0.0; }
    /// Opposite directions are parallel; a zero direction is parallel to nothing.
    bool isParallel(const UnitVector3d& v, double dTolSqrd = kParallelToleranceSqrd) const
    {
        return Vector3d(*this).isParallelNorm(v, dTolSqrd);
    }
    bool isParallel(const Vector3d& v, double dTolSqrd = kParallelToleranceSqrd) const
    {
        return !isExactNull() && Vector3d(*this).isParallel(v, dTolSqrd);
    }
    bool isPerpend(const UnitVector3d& v, double dTol = kPerpendicularTolerance) const
    {
        return !isExactNull() && !v.isExactNull() && dTol > std::abs(*this % v);
    }
    /// Radians, 0 to pi.
    double angle(const UnitVector3d& v) const;
    std::size_t dominantDirection() const { return Vector3d(*this).dominantDirection(); }
    /// A direction at right angles: (z, 0, -x) near the Z axis, (-y, x, 0) elsewhere, normalised.
    UnitVector3d perpend() const;
    /// Another direction at right angles, towards X where it can be.
    UnitVector3d CreateArbitraryPerpendicularVector3D() const;
};

/// A point of space.
class QRV_API Point3d
{
public:
    double x = 0.0, y = 0.0, z = 0.0;

    constexpr Point3d() = default;
    constexpr Point3d(double dX, double dY, double dZ) : x(dX), y(dY), z(dZ) {}

    static const Point3d kNull;

    double& operator[](std::size_t n) { return n == 0 ? x : n == 1 ? y : z; }
    double operator[](std::size_t n) const { return n == 0 ? x : n == 1 ? y : z; }

    void set(double dX, double dY, double dZ) { x = dX, y = dY, z = dZ; }
    void zero() { x = y = z = 0.0; }
    Point3d& scale(const Vector3d& v) { return x *= v.x, y *= v.y, z *= v.z, *this; }
    Point3d getScaled(const Vector3d& v) const { return {x * v.x, y * v.y, z * v.z}; }
    constexpr Vector3d toVector3d() const { return {x, y, z}; }

    constexpr Point3d operator+(const Point3d& p) const { return {x + p.x, y + p.y, z + p.z}; }
    constexpr Point3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Point3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3d operator-(const Point3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    constexpr Point3d operator-() const { return {-x, -y, -z}; }
    constexpr Point3d operator*(double d) const { return {x * d, y * d, z * d}; }
    constexpr Point3d operator/(double d) const { return {x / d, y / d, z / d}; }
    Point3d& operator+=(const Point3d& p) { return *this = *this + p; }
    Point3d& operator+=(const Vector3d& v) { return *this = *this + v; }
    Point3d& operator-=(const Vector3d& v) { return *this = *this - v; }
    Point3d& operator-=(const Point3d& p) { return x -= p.x, y -= p.y, z -= p.z, *this; }
    Point3d& operator*=(double d) { return *this = *this * d; }
    Point3d& operator/=(double d) { return *this = *this / d; }
    Point3d& operator*=(const Transf3d& transform);
    constexpr double operator%(const Vector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    constexpr double operator%(const UnitVector3d& v) const { return x * v.x + y * v.y + z * v.z; }

    /// Every coordinate is of size below kInfinity.
    bool isValid() const { return std::abs(x) < kInfinity && std::abs(y) < kInfinity && std::abs(z) < kInfinity; }
    double length() const { return toVector3d().length(); }
    double lengthSqrd() const { return toVector3d().lengthSqrd(); }
    double lengthRect() const { return toVector3d().lengthRect(); }
    double dist(const Point3d& p) const { return (*this - p).length(); }
    double distSqrd(const Point3d& p) const { return (*this - p).lengthSqrd(); }
    double distRect(const Point3d& p) const { return (*this - p).lengthRect(); }
    bool isEqual(const Point3d& p, double dTolSqrd = kPointToleranceSqrd) const { return dTolSqrd >= distSqrd(p); }
    bool isEqualRect(const Point3d& p, double dTol) const { return dTol >= distRect(p); }
    /// Near `a` or `b` (squared distance 1e-12), or where the angle to both is obtuse. Being on the line is not tested.
    bool isBetween(const Point3d& a, const Point3d& b) const
    {
        return distSqrd(a) <= kPointSegmentToleranceSqrd || distSqrd(b) <= kPointSegmentToleranceSqrd ||
               (a - *this) % (b - *this) < 0.0;
    }
    /// Through the whole matrix, with division by the homogeneous coordinate, untested.
    Point3d project(const Transf3d& transform) const;
};

constexpr Vector3d::Vector3d(const UnitVector3d& v) : x(v.x), y(v.y), z(v.z) {}

inline constexpr Vector3d Vector3d::kNull{};
inline constexpr Vector3d Vector3d::kXDir{1.0, 0.0, 0.0};
inline constexpr Vector3d Vector3d::kYDir{0.0, 1.0, 0.0};
inline constexpr Vector3d Vector3d::kZDir{0.0, 0.0, 1.0};
inline constexpr UnitVector3d UnitVector3d::kNull{};
inline constexpr UnitVector3d UnitVector3d::kXDir{1.0, 0.0, 0.0, false};
inline constexpr UnitVector3d UnitVector3d::kYDir{0.0, 1.0, 0.0, false};
inline constexpr UnitVector3d UnitVector3d::kZDir{0.0, 0.0, 1.0, false};
inline constexpr Point3d Point3d::kNull{};

inline constexpr Vector3d operator*(double d, const Vector3d& v)
{
    return v * d;
}
} // namespace QRV
