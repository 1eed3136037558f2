/// Up to which angle an edge or a vertex counts as smooth, as cosines.
#pragma once

namespace QRV
{
inline constexpr double kCosHalfDegree = 0.9999619230641713;    ///< faces that meet at less lie flat
inline constexpr double kCosThirtyDegrees = 0.8660254037844386; ///< what meets at less at a smooth vertex runs on
} // namespace QRV
