/// The tests of boxes that the searches of a BoxTree make, with all that depends on the query worked out beforehand.
///
/// `IsMet(box)` is the answer for an element's box. `MayHoldMet(box)` is true for any box around one that is met; a
/// tolerance that grows with coordinates is taken from `whole`, a box around all boxes that will be asked about,
/// because the corners of a box may be nearer the origin than those of a smaller box inside. No box asked about is
/// null.
#pragma once

#include <QRV/Interval3d.h>
#include <QRV/Plane.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace QRV
{
/// An upper bound for the rectangular length of any point in the box, and at least 1.
inline double GetCoordinateSize(const Interval3d& box)
{
    double dSize = 0.0;
    for (int i = 0; i < 3; ++i)
        dSize += std::max(std::abs(box.lower[i]), std::abs(box.upper[i]));
    return std::max(1.0, dSize);
}

using PairOfDoubles = double __attribute__((vector_size(16)));

/// Overlap with a fixed box, in pairs of coordinates and without a branch, since which axis decides is anybody's guess.
class OverlapTest
{
public:
    /// True for boxes with lower <= `upper` and upper + `dSlack` >= `lower` on every axis.
    OverlapTest(const Point3d& lower, const Point3d& upper, double dSlack)
        : m_aLimits{{upper[0], upper[1]}, {upper[2], lower[0]}, {lower[1], lower[2]}}, m_middleSlack{0.0, dSlack},
          m_lastSlack{dSlack, dSlack}
    {
    }

    bool IsMet(const Interval3d& box) const
    {
        // A gap is above zero exactly where a side is beyond its limit.
        const PairOfDoubles first = GetSides<0>(box) - m_aLimits[0];
        const PairOfDoubles middle = (GetSides<1>(box) + m_middleSlack - m_aLimits[1]) * PairOfDoubles{1.0, -1.0};
        const PairOfDoubles last = m_aLimits[2] - (GetSides<2>(box) + m_lastSlack);
        PairOfDoubles gap = first > middle ? first : middle;
        gap = gap > last ? gap : last;
        return std::max(gap[0], gap[1]) <= 0.0;
    }

private:
    /// The box's lower x and y, lower z and upper x, or upper y and z.
    template <int nPair>
    static PairOfDoubles GetSides(const Interval3d& box)
    {
        static_assert(sizeof(box) == 3 * sizeof(PairOfDoubles));
        PairOfDoubles sides;
        std::memcpy(&sides, reinterpret_cast<const char*>(&box) + nPair * sizeof(sides), sizeof(sides));
        return sides;
    }

    PairOfDoubles m_aLimits[3];
    PairOfDoubles m_middleSlack;
    PairOfDoubles m_lastSlack;
};

inline Interval3d GetEnlarged(const Interval3d& box, double dSlack)
{
    Interval3d enlarged = box;
    for (int i = 0; i < 3; ++i)
    {
        enlarged.lower[i] -= dSlack;
        enlarged.upper[i] += dSlack;
    }
    return enlarged;
}

/// Interval3d::operator&.
class BoxTouchTest
{
public:
    explicit BoxTouchTest(const Interval3d& box)
        : m_overlap(box.lower, GetEnlarged(box, kLinearTolerance).upper, kLinearTolerance)
    {
    }

    bool IsMet(const Interval3d& box) const { return m_overlap.IsMet(box); }
    bool MayHoldMet(const Interval3d& box) const { return IsMet(box); }

private:
    OverlapTest m_overlap;
};

/// Overlap with a slack in proportion to the query's coordinates.
class BoxOverlapTest
{
public:
    explicit BoxOverlapTest(const Interval3d& box)
        : BoxOverlapTest(box, std::max({1.0, box.lower.lengthRect(), box.upper.lengthRect()}) * kLinearTolerance)
    {
    }

    bool IsMet(const Interval3d& box) const { return m_overlap.IsMet(box); }
    bool MayHoldMet(const Interval3d& box) const { return IsMet(box); }

private:
    BoxOverlapTest(const Interval3d& box, double dSlack) : m_overlap(box.lower, GetEnlarged(box, dSlack).upper, dSlack)
    {
    }

    OverlapTest m_overlap;
};

/// Interval3d::operator<= with the query on the right.
class BoxInsideTest
{
public:
    explicit BoxInsideTest(const Interval3d& box)
        // The slack serves a box that stands out, one with its sides reversed, and rounding.
        : BoxInsideTest(box, GetEnlarged(box, 3.0 * kLinearTolerance * GetCoordinateSize(box)))
    {
    }

    bool IsMet(const Interval3d& box) const { return MayHoldMet(box) && box <= m_box; }
    bool MayHoldMet(const Interval3d& box) const { return m_overlap.IsMet(box); }

private:
    BoxInsideTest(const Interval3d& box, const Interval3d& enlarged)
        : m_box(box), m_overlap(enlarged.lower, enlarged.upper, 0.0)
    {
    }

    Interval3d m_box;
    OverlapTest m_overlap;
};

/// Interval3d::operator<= with the query on the left.
class BoxHoldingTest
{
public:
    BoxHoldingTest(const Interval3d& box, const Interval3d& whole)
        : m_box(box), m_core(GetEnlarged(box, -2.0 * kLinearTolerance * GetCoordinateSize(whole))),
          m_bNull(box.isNull())
    {
    }

    bool IsMet(const Interval3d& box) const { return MayHoldMet(box) && m_box <= box; }
    bool MayHoldMet(const Interval3d& box) const
    {
        bool bHolds = true;
        for (int i = 0; i < 3; ++i)
        {
            bHolds &= box.lower[i] <= m_core.lower[i];
            bHolds &= box.upper[i] >= m_core.upper[i];
        }
        return bHolds | m_bNull;
    }

private:
    Interval3d m_box;
    Interval3d m_core; // smaller by the slack, its sides perhaps reversed
    bool m_bNull;
};

/// Interval3d::intersectsPlane.
class BoxOnPlaneTest
{
public:
    BoxOnPlaneTest(const Plane& plane, double dTol, const Interval3d& whole) : m_plane(plane), m_dTol(dTol)
    {
        constexpr double dRounding = 1e-14;
        const double dSize = GetCoordinateSize(whole);
        m_dSlack = dSize * dTol + dRounding * (dSize + std::abs(plane.d));
    }

    bool IsMet(const Interval3d& box) const { return MayHoldMet(box) && box.intersectsPlane(m_plane, m_dTol); }
    bool MayHoldMet(const Interval3d& box) const
    {
        double dLowest = m_plane.d;
        double dHighest = m_plane.d;
        for (int i = 0; i < 3; ++i)
        {
            const double dLower = m_plane.normal[i] * box.lower[i];
            const double dUpper = m_plane.normal[i] * box.upper[i];
            dLowest += std::min(dLower, dUpper);
            dHighest += std::max(dLower, dUpper);
        }
        return (dLowest <= m_dSlack) & (dHighest >= -m_dSlack);
    }

private:
    Plane m_plane;
    double m_dTol;
    double m_dSlack;
};

/// BoxIntersectsNegativeSideOfPlanes, which what it is met by passes on to all boxes around it. Borrows the planes.
class BoxOnNegativeSideTest
{
public:
    BoxOnNegativeSideTest(const std::vector<Plane>& aPlanes, double dTol) : m_aPlanes(aPlanes), m_dTol(dTol) {}

    bool IsMet(const Interval3d& box) const { return BoxIntersectsNegativeSideOfPlanes(box, m_aPlanes, m_dTol); }
    bool MayHoldMet(const Interval3d& box) const { return IsMet(box); }

private:
    const std::vector<Plane>& m_aPlanes;
    double m_dTol;
};
} // namespace QRV
