/// The tolerances of the system: plain numbers at the call sites, no settings.
#pragma once

namespace QRV
{
inline constexpr double kInfinity = 1e30;                   ///< a coordinate of this size is not valid; empty boxes
inline constexpr double kPointToleranceSqrd = 1e-24;        ///< squared distance: two points coincide
inline constexpr double kLinearTolerance = 1e-12;           ///< distance or length that counts as zero
inline constexpr double kParallelToleranceSqrd = 1e-20;     ///< squared distance of unit vectors: parallel
inline constexpr double kPerpendicularTolerance = 1e-10;    ///< dot product of unit vectors: perpendicular
inline constexpr double kAngleCosineTolerance = 1e-10;      ///< a cosine this near to 1 or -1 snaps to it
inline constexpr double kPlaneDistanceTolerance = 1e-6;     ///< offset in tests of plane equivalence
inline constexpr double kPointSegmentToleranceSqrd = 1e-12; ///< squared distance: Point3d::isBetween
} // namespace QRV
