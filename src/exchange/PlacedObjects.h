/// The walk over what a file of an exchange format is to show.
#pragma once

#include "model/Object.h"

#include <functional>
#include <vector>

namespace QRV
{
/// Takes an object where it is placed. False ends the walk.
using PlacedObjectVisitor = std::function<bool(Object& object, const Transf3d& transform)>;

/// Visits objects in the order of the list, each once for each place that it has. Passed over are excluded objects and
/// what is part of one, and what is part of another object of the list.
/// @param transform  from the coordinates of the objects to those of the file
/// @return false when the visitor did so
bool WalkPlacedObjects(const std::vector<Object*>& aObjects, const ObjectSet& excluded, const Transf3d& transform,
                       const PlacedObjectVisitor& visit);

/// Whether the object, or one that it is part of, is in the set.
bool IsPartOfAny(const Object& object, const ObjectSet& objects);
} // namespace QRV
