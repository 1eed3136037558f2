/// STL files.
#pragma once

#include "model/Object.h"

#include <vector>

namespace QRV
{
/// Writes the triangles of all faces of the objects as ASCII STL. Neighbouring faces name their common vertices with
/// the same digits, so a closed body gives a closed surface, with outward normals also for a negative scale.
/// @param dScale    about the origin; usable and not zero
/// @param excluded  left out, together with what is part of them
/// @return false when the file cannot be written, when it would take more than 100,000,000 triangles, or when a face
///         has no triangulation: then the file holds all others.
bool WriteSTL(const std::vector<Object*>& aObjects, const char* pPath, double dScale, const ObjectSet& excluded);
} // namespace QRV
