/// Points and vectors of the plane.
#pragma once

#include <QRV/Export.h>
#include <QRV/Tolerances.h>

#include <cmath>
#include <cstddef>

namespace QRV
{
/// A vector of the plane. `%` is the dot product.
class QRV_API Vector2d
{
public:
    double x = 0.0, y = 0.0;

    constexpr Vector2d() = default;
    constexpr Vector2d(double dX, double dY) : x(dX), y(dY) {}

    static const Vector2d kNull, kXDir, kYDir;

    double& operator[](std::size_t n) { return n == 0 ? x : y; }
    double operator[](std::size_t n) const { return n == 0 ? x : y; }

    Vector2d& set(double dX, double dY) { return x = dX, y = dY, *this; }
    void zero() { x = y = 0.0; }
    Vector2d& scale(const Vector2d& v) { return x *= v.x, y *= v.y, *this; }
    Vector2d getScaled(const Vector2d& v) const { return {x * v.x, y * v.y}; }

    constexpr Vector2d operator+(const Vector2d& v) const { return {x + v.x, y + v.y}; }
    constexpr Vector2d operator-(const Vector2d& v) const { return {x - v.x, y - v.y}; }
    constexpr Vector2d operator-() const { return {-x, -y}; }
    constexpr Vector2d operator*(double d) const { return {x * d, y * d}; }
    constexpr Vector2d operator/(double d) const { return {x / d, y / d}; }
    Vector2d& operator+=(const Vector2d& v) { return *this = *this + v; }
    Vector2d& operator-=(const Vector2d& v) { return *this = *this - v; }
    Vector2d& operator*=(double d) { return *this = *this * d; }
    Vector2d& operator/=(double d) { return *this = *this / d; }
    constexpr double operator%(const Vector2d& v) const { return x * v.x + y * v.y; }

    constexpr double lengthSqrd() const { return x * x + y * y; }
    double length() const { return std::sqrt(lengthSqrd()); }
    double lengthRect() const { return std::abs(x) + std::abs(y); }
    double dist(const Vector2d& v) const { return (*this - v).length(); }
    double distSqrd(const Vector2d& v) const { return (*this - v).lengthSqrd(); }
    double distRect(const Vector2d& v) const { return (*this - v).lengthRect(); }
    bool isEqual(const Vector2d& v, double dTolSqrd = kPointToleranceSqrd) const { return dTolSqrd >= distSqrd(v); }
    bool isEqualRect(const Vector2d& v, double dTol) const { return dTol >= distRect(v); }
    bool isNull(double dTolSqrd = kPointToleranceSqrd) const { return dTolSqrd >= lengthSqrd(); }
    constexpr bool isExactNull() const { return x == 0.0 && y == 0.0; }

    /// Divides by the length when its square is above `dTolSqrd`; otherwise the result is zero.
    void normalize(double dTolSqrd) { *this = getNormalized(dTolSqrd); }
    Vector2d getNormalized(double dTolSqrd) const { return lengthSqrd() > dTolSqrd ? *this / length() : Vector2d(); }
    /// Opposite directions are parallel; a zero vector is parallel to nothing.
    bool isParallel(const Vector2d& v, double dTolSqrd = kParallelToleranceSqrd) const;
    bool isPerpend(const Vector2d& v, double dTol = kPerpendicularTolerance) const;
    /// Radians, 0 to pi; 0 when either is zero.
    double angle(const Vector2d& v, double dTol) const;
    double angleBetweenNormalized(const Vector2d& v, double dTol) const;
    /// The left normal, not normalised.
    constexpr Vector2d perpend() const { return {-y, x}; }
};

/// A point of the plane.
class QRV_API Point2d
{
public:
    double x = 0.0, y = 0.0;

    constexpr Point2d() = default;
    constexpr Point2d(double dX, double dY) : x(dX), y(dY) {}

    static const Point2d kNull;

    double& operator[](std::size_t n) { return n == 0 ? x : y; }
    double operator[](std::size_t n) const { return n == 0 ? x : y; }

    Point2d& set(double dX, double dY) { return x = dX, y = dY, *this; }
    void zero() { x = y = 0.0; }
    Point2d& scale(const Vector2d& v) { return x *= v.x, y *= v.y, *this; }
    Point2d getScaled(const Vector2d& v) const { return {x * v.x, y * v.y}; }
    constexpr Vector2d toVector2d() const { return {x, y}; }

    constexpr Point2d operator+(const Point2d& p) const { return {x + p.x, y + p.y}; }
    constexpr Point2d operator+(const Vector2d& v) const { return {x + v.x, y + v.y}; }
    constexpr Point2d operator-(const Vector2d& v) const { return {x - v.x, y - v.y}; }
    constexpr Vector2d operator-(const Point2d& p) const { return {x - p.x, y - p.y}; }
    constexpr Point2d operator-() const { return {-x, -y}; }
    constexpr Point2d operator*(double d) const { return {x * d, y * d}; }
    constexpr Point2d operator/(double d) const { return {x / d, y / d}; }
    Point2d& operator+=(const Point2d& p) { return *this = *this + p; }
    Point2d& operator+=(const Vector2d& v) { return *this = *this + v; }
    Point2d& operator-=(const Vector2d& v) { return *this = *this - v; }
    Point2d& operator-=(const Point2d& p) { return x -= p.x, y -= p.y, *this; }
    Point2d& operator*=(double d) { return *this = *this * d; }
    Point2d& operator/=(double d) { return *this = *this / d; }
    constexpr double operator%(const Vector2d& v) const { return x * v.x + y * v.y; }

    /// Every coordinate is of size below kInfinity.
    bool isValid() const { return std::abs(x) < kInfinity && std::abs(y) < kInfinity; }
    double length() const { return toVector2d().length(); }
    double lengthSqrd() const { return toVector2d().lengthSqrd(); }
    double lengthRect() const { return toVector2d().lengthRect(); }
    double dist(const Point2d& p) const { return (*this - p).length(); }
    double distSqrd(const Point2d& p) const { return (*this - p).lengthSqrd(); }
    double distRect(const Point2d& p) const { return (*this - p).lengthRect(); }
    bool isEqual(const Point2d& p, double dTolSqrd = kPointToleranceSqrd) const { return dTolSqrd >= distSqrd(p); }
    bool isEqualRect(const Point2d& p, double dTol) const { return dTol >= distRect(p); }
    /// Turns the point about the origin, counter-clockwise for a positive angle in radians.
    void rotate(double dAngle);
};

inline constexpr Vector2d Vector2d::kNull{};
inline constexpr Vector2d Vector2d::kXDir{1.0, 0.0};
inline constexpr Vector2d Vector2d::kYDir{0.0, 1.0};
inline constexpr Point2d Point2d::kNull{};

inline Vector2d operator*(double d, const Vector2d& v)
{
    return v * d;
}

/// Foot of the perpendicular from `p` on the line; a zero direction divides by zero.
inline Point2d projectPointOnLine(const Point2d& p, const Point2d& origin, const Vector2d& direction)
{
    return origin + direction * (((p - origin) % direction) / (direction % direction));
}
} // namespace QRV
