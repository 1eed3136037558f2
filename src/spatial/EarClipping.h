/// Cutting a polygon into triangles by its ears.
#pragma once

#include <cstdint>
#include <vector>

namespace QRV
{
class FacetNodes;

/// Cuts one ear after the other off the working polygon, which has 4 nodes or more, and appends the triangles.
///
/// An ear is a corner that can be cut off: the diagonal between its neighbours runs inside the polygon at both ends,
/// and no other live vertex lies in its triangle.
/// @param bRelaxed  false: a vertex on a triangle's border is in it, and a diagonal along a cone's side is not in the
///                  cone. True: the other way round, for polygons that touch themselves, and the ear of the best shape
///                  goes first
/// @return false when a part of the polygon is left that has no ear, or triangles lie over each other; what was cut off
///         stays appended.
bool ClipEars(FacetNodes& nodes, bool bRelaxed, std::vector<std::uint32_t>& aTriangles);
} // namespace QRV
