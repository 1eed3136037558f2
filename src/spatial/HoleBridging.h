/// Joining the holes of a polygon to its outer boundary.
#pragma once

namespace QRV
{
class FacetNodes;

/// Splices the holes of a polygon one by one into its cycle of nodes, each by a bridge from a node of the cycle to the
/// hole's extreme vertex, the one that is first in the frame's order: by x, then by y.
///
/// The bridge starts at the nearest node before the extreme vertex from which the way is clear. Since the holes come
/// in the order of their extreme vertices, such a node is there in any sound polygon.
void BridgeHoles(FacetNodes& nodes);
} // namespace QRV
