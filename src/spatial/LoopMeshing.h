/// The triangles of loops that touch and all but cross each other.
#pragma once

#include <cstdint>
#include <vector>

namespace QRV
{
class FacetNodes;

/// Triangulates what the loops enclose, whatever way they touch: it connects all corners, forces the sides in, and
/// keeps the triangles around which the loops run once. Slower than clipping ears, and never stuck.
///
/// Where a side passes a corner within the tolerance of touching, it is led through that corner; a triangle without
/// area between the side and the corner then makes the triangles' sides cancel out but for those of the loops.
/// @return false, with `aTriangles` as it was, when sides cross, or more than a sliver is enclosed twice or backward.
bool MeshLoops(const FacetNodes& nodes, std::vector<std::uint32_t>& aTriangles);
} // namespace QRV
