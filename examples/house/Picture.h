/// A line drawing of a model, seen from afar.
#pragma once

#include "support/Session.h"

namespace examples
{
/// Writes an isometric view with hidden lines removed: each edge is cut where it can pass behind an outline, and of
/// each piece a ray towards the viewer tells whether a face stands before it. Outlines are drawn thicker.
/// @return how many pieces are seen
std::size_t DrawPicture(const Session& session, const std::filesystem::path& path);
} // namespace examples
