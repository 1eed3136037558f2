/// The model on its way to other programs.
#pragma once

#include "Session.h"

namespace examples
{
/// Writes objects as one STL file, reads it back, and expects its triangles to hold their volume.
/// @param dVolume  of all the objects, by the library
void SaveSTL(const Session& session, const std::vector<std::uint64_t>& aObjects, double dVolume,
             const std::filesystem::path& path);
} // namespace examples
