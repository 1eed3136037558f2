/// What hangs together.
#pragma once

#include <vector>

namespace QRV
{
class Object;

/// Appends every top object (body, free face, free edge, lone vertex) reached from the objects over shared vertices,
/// their own included, in order of discovery, breadth first.
void GetAllConnectedNonOwned(const std::vector<Object*>& aStart, std::vector<Object*>& aTops);
} // namespace QRV
