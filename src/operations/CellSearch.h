/// Regions of space that faces enclose.
#pragma once

#include <vector>

namespace QRV
{
class Face;

/// The faces round the region on one side of a face, whichever way they are turned, `bFront` for the side that its
/// normal points to. Of other shells the faces of open ones of its body count; of a face without a shell only such do.
/// In the order reached, this face first, all turned to have the region behind them; without a few that hang in the
/// region. Empty, with nothing turned, when the region is open or endless.
std::vector<Face*> EncloseCell(Face& face, bool bFront);
} // namespace QRV
