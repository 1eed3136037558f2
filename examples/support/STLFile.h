/// The model on its way to other programs.
#pragma once

#include "Session.h"

namespace examples
{
/// Writes bodies as one STL file, reads it back, and expects its triangles to hold the volume of the bodies.
/// @param dVolume  of all the bodies, by the library
void SaveSTL(const Session& session, const std::vector<std::uint64_t>& aBodies, double dVolume,
             const std::filesystem::path& path);
} // namespace examples
