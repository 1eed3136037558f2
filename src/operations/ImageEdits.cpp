#include "operations/ImageEdits.h"

#include "operations/ObjectCreation.h"

namespace QRV
{
Image* CreateImage(History& history, const ImageSettings& settings, Result& result)
{
    const std::uint64_t nZPosition = Image::GetNextZPosition(history);
    auto* pImage = TryCreate<Image>(history, result, Result::nOutOfMemory, nZPosition);
    if (pImage)
        pImage->SetData(settings, result);
    return pImage;
}
} // namespace QRV
