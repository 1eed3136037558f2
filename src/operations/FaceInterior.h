/// What stands in a face and is to be part of it: edges in its plane, and other faces as holes.
#pragma once

#include <cstdint>
#include <vector>

namespace QRV
{
class Face;

/// Draws the dangling edges that leave these corners of a face, given by id, into it, with the trees of edges behind
/// them.
void DrawInSpurs(Face& face, std::vector<std::uint64_t> aCorners);

/// The same, and then the edges between two corners, as chords. Gives the ids of the faces that these split off, each
/// of which has its own edges to draw in.
std::vector<std::uint64_t> DrawInEdges(Face& face, std::vector<std::uint64_t> aCorners);

struct InnerFaces
{
    bool bTookAny = false;
    bool bLeftEdgesOut =
        false; ///< some hole runs round one face alone; the outside of what it belongs to was not clear
};

/// Makes holes for the faces that stand in another: one for all that hang together, round the outside of them, with the
/// dangling edges there.
InnerFaces TakeInnerFaces(Face& face);
} // namespace QRV
