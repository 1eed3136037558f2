/// Axis-aligned boxes of the plane.
#pragma once

#include <QRV/Point2d.h>

#include <algorithm>

namespace QRV
{
/// A box of the plane; null (empty) while `lower` is above `upper` by more than 1e-12 on some axis.
class QRV_API Interval2d
{
public:
    Point2d lower{kInfinity, kInfinity};
    Point2d upper{-kInfinity, -kInfinity};

    constexpr Interval2d() = default;
    Interval2d(const Point2d& a, const Point2d& b)
        : lower(std::min(a.x, b.x), std::min(a.y, b.y)), upper(std::max(a.x, b.x), std::max(a.y, b.y))
    {
    }
    /// Lower and upper as given; the int selects this form.
    constexpr Interval2d(const Point2d& a, const Point2d& b, int) : lower(a), upper(b) {}
    explicit constexpr Interval2d(const Point2d& p) : lower(p), upper(p) {}
    constexpr Interval2d(const Point2d& p, double r) : lower(p.x - r, p.y - r), upper(p.x + r, p.y + r) {}
    /// All numbers zero.
    explicit constexpr Interval2d(int) : lower(), upper() {}

    static const Interval2d kNull;

    void init() { *this = Interval2d(); }
    bool isNull() const { return lower.x > upper.x + kLinearTolerance || lower.y > upper.y + kLinearTolerance; }
    double length() const { return (upper - lower).length(); }
    double length(int nAxis) const { return upper[std::size_t(nAxis)] - lower[std::size_t(nAxis)]; }
    Point2d mid() const { return (lower + upper) * 0.5; }
    void enlarge(double r) { lower -= Vector2d(r, r), upper += Vector2d(r, r); }

    Interval2d operator*(const Interval2d& box) const
    {
        return {Point2d(std::max(lower.x, box.lower.x), std::max(lower.y, box.lower.y)),
                Point2d(std::min(upper.x, box.upper.x), std::min(upper.y, box.upper.y)), 0};
    }
    Interval2d& operator*=(const Interval2d& box) { return *this = *this * box; }
    Interval2d operator+(const Interval2d& box) const
    {
        return {Point2d(std::min(lower.x, box.lower.x), std::min(lower.y, box.lower.y)),
                Point2d(std::max(upper.x, box.upper.x), std::max(upper.y, box.upper.y)), 0};
    }
    Interval2d& operator+=(const Interval2d& box) { return *this = *this + box; }
    Interval2d operator+(const Point2d& p) const { return *this + Interval2d(p); }
    Interval2d& operator+=(const Point2d& p) { return *this = *this + p; }
    /// This box lies inside the other; a null box lies in every box.
    bool operator<=(const Interval2d& box) const
    {
        return isNull() || (lower.x >= box.lower.x - kLinearTolerance && lower.y >= box.lower.y - kLinearTolerance &&
                            upper.x <= box.upper.x + kLinearTolerance && upper.y <= box.upper.y + kLinearTolerance);
    }
    bool operator&(const Interval2d& box) const
    {
        return box.upper.x + kLinearTolerance >= lower.x && upper.x + kLinearTolerance >= box.lower.x &&
               box.upper.y + kLinearTolerance >= lower.y && upper.y + kLinearTolerance >= box.lower.y;
    }
    bool operator&(const Point2d& p) const { return *this & Interval2d(p); }
};

inline constexpr Interval2d Interval2d::kNull{};
} // namespace QRV
