/// Axis-aligned boxes of space.
#pragma once

#include <QRV/Line3d.h>

#include <algorithm>
#include <array>
#include <utility>

namespace QRV
{
class Plane;

/// A box; null (empty) while `lower` is above `upper` by more than 1e-12 on some axis. A default box is null.
class QRV_API Interval3d
{
public:
    Point3d lower{1e30, 1e30, 1e30};
    Point3d upper{-1e30, -1e30, -1e30};

    constexpr Interval3d() = default;
    Interval3d(const Point3d& a, const Point3d& b)
        : lower(std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)),
          upper(std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z))
    {
    }
    /// Lower and upper as given; the int selects this form.
    constexpr Interval3d(const Point3d& a, const Point3d& b, int) : lower(a), upper(b) {}
    explicit constexpr Interval3d(const Point3d& p) : lower(p), upper(p) {}
    /// A cube of half-side `r`.
    constexpr Interval3d(const Point3d& p, double r) : lower(p.x - r, p.y - r, p.z - r), upper(p.x + r, p.y + r, p.z + r) {}
    /// All numbers zero.
    explicit constexpr Interval3d(int) : lower(), upper() {}

    static const Interval3d kNull;

    void init() { *this = Interval3d(); }
    bool isNull() const
    {
        return lower.x > upper.x + kLinearTolerance || lower.y > upper.y + kLinearTolerance ||
               lower.z > upper.z + kLinearTolerance;
    }
    /// Both null, or corners within a squared distance scaled by the size of the corners.
    bool isEqual(const Interval3d& box, double dTolSqrd) const;
    /// Some side of one lies within `dTol` of a side of the other; false for a null box.
    bool boundariesTouch(const Interval3d& box, double dTol) const;

    Interval3d operator*(const Interval3d& box) const
    {
        return {Point3d(std::max(lower.x, box.lower.x), std::max(lower.y, box.lower.y), std::max(lower.z, box.lower.z)),
                Point3d(std::min(upper.x, box.upper.x), std::min(upper.y, box.upper.y), std::min(upper.z, box.upper.z)), 0};
    }
    Interval3d& operator*=(const Interval3d& box) { return *this = *this * box; }
    Interval3d operator+(const Interval3d& box) const { return Interval3d(*this) += box; }
    Interval3d& operator+=(const Interval3d& box)
    {
        if (box.isNull())
            return *this;
        if (isNull())
            return *this = box;
        lower = {std::min(lower.x, box.lower.x), std::min(lower.y, box.lower.y), std::min(lower.z, box.lower.z)};
        upper = {std::max(upper.x, box.upper.x), std::max(upper.y, box.upper.y), std::max(upper.z, box.upper.z)};
        return *this;
    }
    Interval3d& operator+=(const Point3d& p)
    {
        if (isNull())
            return *this = Interval3d(p);
        lower = {std::min(lower.x, p.x), std::min(lower.y, p.y), std::min(lower.z, p.z)};
        upper = {std::max(upper.x, p.x), std::max(upper.y, p.y), std::max(upper.z, p.z)};
        return *this;
    }
    /// The box around the eight transformed corners; null stays null.
    Interval3d operator*(const Transf3d& transform) const;
    Interval3d& operator*=(const Transf3d& transform) { return *this = *this * transform; }
    /// This box lies inside the other, with a slack scaled by the other's size. A null box lies in every box.
    bool operator<=(const Interval3d& box) const
    {
        if (isNull())
            return true;
        const double s = box.getSlack();
        return lower.x >= box.lower.x - s && lower.y >= box.lower.y - s && lower.z >= box.lower.z - s &&
               upper.x <= box.upper.x + s && upper.y <= box.upper.y + s && upper.z <= box.upper.z + s;
    }
    /// The boxes overlap or touch, within 1e-12; no test for null boxes.
    bool operator&(const Interval3d& box) const
    {
        return box.upper.x + kLinearTolerance >= lower.x && upper.x + kLinearTolerance >= box.lower.x &&
               box.upper.y + kLinearTolerance >= lower.y && upper.y + kLinearTolerance >= box.lower.y &&
               box.upper.z + kLinearTolerance >= lower.z && upper.z + kLinearTolerance >= box.lower.z;
    }
    /// The point lies in the box, with a slack scaled by the box's size.
    bool operator&(const Point3d& p) const
    {
        const double s = getSlack();
        return p.x >= lower.x - s && p.x <= upper.x + s && p.y >= lower.y - s && p.y <= upper.y + s && p.z >= lower.z - s &&
               p.z <= upper.z + s;
    }

    /// Of the diagonal; 0 for a null box, as with all measures here.
    double length() const;
    double lengthSqrd() const;
    double length(int nAxis) const { return upper[std::size_t(nAxis)] - lower[std::size_t(nAxis)]; }
    /// Of the six sides.
    double area() const
    {
        const Vector3d v = upper - lower;
        return hasExtent() ? 2.0 * (v.x * v.y + v.y * v.z + v.z * v.x) : 0.0;
    }
    /// Of the twelve edges.
    double perimeter() const
    {
        const Vector3d v = upper - lower;
        return hasExtent() ? 4.0 * (v.x + v.y + v.z) : 0.0;
    }
    double volume() const
    {
        const Vector3d v = upper - lower;
        return hasExtent() ? v.x * v.y * v.z : 0.0;
    }
    Point3d mid() const { return (lower + upper) * 0.5; }
    /// Moves every side outward; null stays null.
    void enlarge(double r);
    /// The corner that is lowest or highest along `dir`; a zero component counts as positive.
    Point3d lowerInDirection(const Vector3d& dir) const
    {
        return {dir.x < 0.0 ? upper.x : lower.x, dir.y < 0.0 ? upper.y : lower.y, dir.z < 0.0 ? upper.z : lower.z};
    }
    Point3d upperInDirection(const Vector3d& dir) const
    {
        return {dir.x < 0.0 ? lower.x : upper.x, dir.y < 0.0 ? lower.y : upper.y, dir.z < 0.0 ? lower.z : upper.z};
    }
    /// False and eight points at 1e30 for a null box; otherwise the corners, lower four first.
    std::pair<bool, std::array<Point3d, 8>> getBoundsPoints() const;
    bool intersectsPlane(const Plane& plane, double dTol) const;
    /// Widens `tMin` and `tMax`, which the caller sets, by the parameters at which the line crosses the surface.
    bool boundsLine(const Line3d& line, double& tMin, double& tMax, double dTol) const;
    /// Whether the ray from `line.point` up to parameter `tMax` passes within `dTol`.
    bool intersectsRay(const Line3d& line, double dTol, double tMax) const;

private:
    double getSlack() const { return std::max(1.0, std::max(lower.lengthRect(), upper.lengthRect())) * kLinearTolerance; }
    bool hasExtent() const
    {
        return upper.x - lower.x >= -kLinearTolerance && upper.y - lower.y >= -kLinearTolerance &&
               upper.z - lower.z >= -kLinearTolerance;
    }
};

inline constexpr Interval3d Interval3d::kNull{};
} // namespace QRV
