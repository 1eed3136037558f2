/// The order of hits along a ray.
#pragma once

#include <QRV/ObjectTypes.h>

namespace QRV
{
/// By parameter; hits at one spot, within max(|t|, 1) * 1e-12 of the first there, by index.
void SortHits(SortedHits& aHits);
} // namespace QRV
