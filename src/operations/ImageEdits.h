/// Placing images.
#pragma once

#include "model/Image.h"

namespace QRV
{
/// On top of the others. Null with `nOutOfMemory`.
Image* CreateImage(History& history, const ImageSettings& settings, Result& result);
} // namespace QRV
