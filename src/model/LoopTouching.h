/// Loops of one face that touch.
#pragma once

#include <vector>

namespace QRV
{
class Loop;
class Vertex;

/// One step from a loop to another of the same face, over a vertex that both pass.
struct LoopTouch
{
    Loop* pNext;
    Vertex* pVertex;
};

/// The way from one loop to another of its face over loops that touch in a vertex; empty when none leads there. Looks
/// from both ends in turn, so that the end where fewer sides hang together decides what it costs.
std::vector<LoopTouch> FindTouchingLoops(Loop& first, Loop& last);
} // namespace QRV
