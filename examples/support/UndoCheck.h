/// The trial that every example ends with: all steps undone and redone.
#pragma once

#include "Session.h"

#include <vector>

namespace examples
{
/// What must come back exactly: every object's id, and the area and volume of every body.
struct ModelState
{
    std::vector<std::uint64_t> aIDs;
    std::vector<double> aAreas;
    std::vector<double> aVolumes;

    bool operator==(const ModelState&) const = default;
};

ModelState GetState(const Session& session);

/// Undoes all steps to an empty model and redoes them, one by one and then in one jump each way, and expects after each
/// way what belongs there.
/// @return how many steps there are
std::size_t ExpectUndoRedo(const Session& session);
} // namespace examples
