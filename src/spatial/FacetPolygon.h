/// Triangulation of a planar polygon with holes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace QRV
{
class Plane;
class Point3d;

/// One corner of a loop.
struct FacetCorner
{
    const Point3d* pPoint; ///< lives as long as the triangulation runs
    std::uint32_t nVertex; ///< index of the distinct vertex; a vertex that is met twice has the same index both times
};

/// Breaks a planar polygon with holes into triangles over its own vertices; no point is added.
///
/// The outer loop runs counter-clockwise seen from the side to which the plane's normal points, the holes clockwise.
/// A loop with at most one reflex corner is fanned; any other polygon has its holes bridged in and its ears clipped.
/// Where that gets stuck, since loops touch elsewhere than in a vertex or nearly so, all corners are connected instead
/// and the sides forced in.
/// @param aCorners    the corners of all loops in loop order, the outer loop first. The vertex indices lie below the
///                    number of corners
/// @param aLoopEnds   for each loop the number of corners up to its end; the first entry ends the outer loop. A hole
///                    without corners is passed over
/// @param aTriangles  gets three vertex indices per triangle appended, in the winding of the outer loop. Corners in
///                    one line, and corners on a side, give triangles without area. An outer loop of fewer than 3
///                    corners gives none
/// @return false, with `aTriangles` as it was, when there is no triangulation: sides cross, or loops run the wrong way.
bool TriangulateLoops(std::span<const FacetCorner> aCorners, std::span<const std::uint32_t> aLoopEnds,
                      const Plane& plane, std::vector<std::uint32_t>& aTriangles);
} // namespace QRV
