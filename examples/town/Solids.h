/// What of a town other programs take for solids.
#pragma once

#include "support/Session.h"

#include <cstdint>
#include <vector>

namespace examples
{
/// A body, or those of its faces that close a surface.
struct Solid
{
    std::uint64_t nBody = QRV::INVALID_ID;
    std::vector<std::uint64_t> aObjects; ///< the body, or the faces
};

struct Solids
{
    /// The bodies with two faces at every edge. A house that shares a wall or an edge with its neighbour is not one,
    /// nor one with a courtyard.
    std::vector<Solid> aWhole;
    /// Others that close when the sheets that hang on them are taken away: the outlines of a courtyard above and below
    /// fill with faces too.
    std::vector<Solid> aUnderSheets;
};

/// @param bTakeSheetsAway  for houses that stand clear of one another; a sheet may else be the neighbour's wall
Solids FindSolids(const Session& session, bool bTakeSheetsAway);
} // namespace examples
