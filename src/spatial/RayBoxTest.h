/// Whether a ray meets a box, for one ray and many boxes.
#pragma once

#include "spatial/BoxQueryTests.h"
#include <QRV/Interval3d.h>
#include <QRV/Line3d.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace QRV
{
/// Interval3d::intersectsRay as a test of a BoxTree. Most boxes are sorted out by a test of slabs, that divides nothing
/// and has a little more slack than the true one, which is asked about the few elements that remain.
class RayBoxTest
{
public:
    /// `whole` is a box around all boxes that will be asked about. No box asked about is null.
    RayBoxTest(const Line3d& line, double dTol, double dMax, const Interval3d& whole)
        : m_line(line), m_dTol(dTol), m_dMax(dMax), m_bNull(line.vector.isNull(kPointToleranceSqrd))
    {
        constexpr double dRounding = 1e-14;
        const double dSlack = dTol + 2.0 * kLinearTolerance * (GetCoordinateSize(whole) + dTol);
        for (int i = 0; i < 3; ++i)
        {
            // An axis along which the ray hardly moves never ends it: there the box must only be where the ray is.
            const bool bMoves = std::abs(line.vector[i]) > kLinearTolerance;
            const double dReach = line.vector[i] == 0.0 ? 0.0 : std::abs(line.vector[i]) * std::max(dMax, 0.0);
            const double dSide = dSlack + dRounding * std::abs(line.point[i]) + (bMoves ? 0.0 : dReach);
            m_aInverse[i] = bMoves ? 1.0 / line.vector[i] : kEndless;
            m_aLower[i] = line.point[i] + dSide;
            m_aUpper[i] = line.point[i] - dSide;
        }
    }

    bool IsMet(const Interval3d& box) const { return MayHoldMet(box) && box.intersectsRay(m_line, m_dTol, m_dMax); }

    bool MayHoldMet(const Interval3d& box) const
    {
        double dEnter = 0.0;
        double dLeave = m_dMax;
        for (int i = 0; i < 3; ++i)
        {
            const double dLower = (box.lower[i] - m_aLower[i]) * m_aInverse[i];
            const double dUpper = (box.upper[i] - m_aUpper[i]) * m_aInverse[i];
            dEnter = std::max(dEnter, std::min(dLower, dUpper));
            dLeave = std::min(dLeave, std::max(dLower, dUpper));
        }
        return !m_bNull & (dLeave >= -m_dTol) & (dEnter <= std::max(dLeave, 0.0));
    }

private:
    static constexpr double kEndless = 1e300;

    Line3d m_line;
    double m_dTol;
    double m_dMax;
    bool m_bNull;
    std::array<double, 3> m_aInverse;
    std::array<double, 3> m_aLower; // where the ray starts, as seen from the sides widened by all slack
    std::array<double, 3> m_aUpper;
};
} // namespace QRV
