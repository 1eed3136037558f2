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

/// The bodies with two faces at every edge. A house that shares a wall or an edge with its neighbour is not one, nor one
/// with a courtyard.
std::vector<Solid> FindWholeSolids(const Session& session);

/// Of the other bodies those that close when the sheets that hang on them are taken away: the outlines of a courtyard
/// above and below fill with faces too. For houses that stand clear of one another: a sheet may else be the neighbour's
/// wall.
std::vector<Solid> FindSolidsUnderSheets(const Session& session);
} // namespace examples
