#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "geometry/Finite.h"
#include "operations/ImageEdits.h"
#include "operations/MaterialEdits.h"

#include <QRV/Images.h>

#include <algorithm>

namespace QRV
{
namespace
{
/// False, with `nBadInput`, for numbers that are none.
bool AreUsable(float fAlpha, const std::array<Point3d, 4>& corners, Result& result)
{
    const bool bGood = IsUsable(fAlpha) && std::ranges::all_of(corners, [](const Point3d& p) { return IsUsable(p); });
    if (!bGood)
        result.SetErrorCode(Result::nBadInput);
    return bGood;
}

bool AreUsable(const Vector2d& location, const Vector2d& span, Result& result)
{
    const bool bGood = IsUsable(location.x) && IsUsable(location.y) && IsUsable(span.x) && IsUsable(span.y);
    if (!bGood)
        result.SetErrorCode(Result::nBadInput);
    return bGood;
}

/// The satellite data of the image that an id names; null with `nBadInput` for none.
SatelliteDataAttribute* FindSatelliteData(const History& history, std::uint64_t nImage, Result& result)
{
    const auto* pImage = FindArgument<Image>(history, nImage, result);
    SatelliteDataAttribute* pData = pImage ? pImage->GetSatelliteData() : nullptr;
    if (pImage && !pData)
        result.SetErrorCode(Result::nBadInput, nImage);
    return pData;
}
} // namespace

Result APICreateImageObject(std::uint64_t nHistoryID, const std::string& name, std::uint64_t texture, float alpha,
                            bool bFeaturesVisible, const std::array<Point3d, 4>& corners, std::uint64_t& id)
{
    return ModifyingCall("APICreateImageObject", nHistoryID, name, texture, alpha, bFeaturesVisible, corners, Out{id})
        .Run(
            [&](History& history, Result& result)
            {
                Texture* pTexture = nullptr;
                return AreUsable(alpha, corners, result) && FindOptionalArgument(history, texture, pTexture, result) &&
                       GiveID(CreateImage(history, {name, pTexture, alpha, bFeaturesVisible, corners}, result), id);
            });
}

Result APICreateImageObjectWithTexture(std::uint64_t nHistoryID, const std::string& name, float alpha,
                                       bool bFeaturesVisible, const std::array<Point3d, 4>& corners,
                                       const std::vector<char>& bitmap, std::uint64_t& id,
                                       const std::string& textureName)
{
    return ModifyingCall("APICreateImageObjectWithTexture", nHistoryID, name, alpha, bFeaturesVisible, corners, bitmap,
                         Out{id}, textureName)
        .Run(
            [&](History& history, Result& result)
            {
                if (!AreUsable(alpha, corners, result))
                    return false;
                constexpr bool kUseAlpha = true;
                Texture* pTexture =
                    CreateTexture(history, {bitmap.data(), bitmap.size()}, kUseAlpha, textureName, result);
                return pTexture &&
                       GiveID(CreateImage(history, {name, pTexture, alpha, bFeaturesVisible, corners}, result), id);
            });
}

Result APICreateSatelliteImageObject(std::uint64_t nHistoryID, const std::string& name, std::uint64_t texture,
                                     float alpha, bool bFeaturesVisible, const std::array<Point3d, 4>& corners,
                                     const Vector2d& location, const Vector2d& span,
                                     const std::array<std::uint64_t, 2>& pixelSize, std::uint64_t& id)
{
    return ModifyingCall("APICreateSatelliteImageObject", nHistoryID, name, texture, alpha, bFeaturesVisible, corners,
                         location, span, pixelSize, Out{id})
        .Run(
            [&](History& history, Result& result)
            {
                Texture* pTexture = nullptr;
                if (!AreUsable(alpha, corners, result) || !AreUsable(location, span, result) ||
                    !FindOptionalArgument(history, texture, pTexture, result))
                    return false;
                Image* pImage = CreateImage(history, {name, pTexture, alpha, bFeaturesVisible, corners}, result);
                if (pImage)
                    pImage->SetSatelliteData(location, span, pixelSize, result);
                return result.IsGood() && GiveID(pImage, id);
            });
}

Result APIMoveImage(std::uint64_t nHistoryID, std::uint64_t image, int delta)
{
    return ModifyingCall("APIMoveImage", nHistoryID, image, delta)
        .Run(
            [&](History& history, Result& result)
            {
                if (auto* pImage = FindArgument<Image>(history, image, result))
                    pImage->MoveZ(delta);
            });
}

Result APISetImageData(std::uint64_t nHistoryID, std::uint64_t image, const std::string& name, std::uint64_t texture,
                       float alpha, bool bFeaturesVisible, const std::array<Point3d, 4>& corners)
{
    return ModifyingCall("APISetImageData", nHistoryID, image, name, texture, alpha, bFeaturesVisible, corners)
        .Run(
            [&](History& history, Result& result)
            {
                Texture* pTexture = nullptr;
                auto* pImage = FindArgument<Image>(history, image, result);
                if (pImage && FindOptionalArgument(history, texture, pTexture, result) &&
                    AreUsable(alpha, corners, result))
                    pImage->SetData({name, pTexture, alpha, bFeaturesVisible, corners}, result);
            });
}

Result APIGetImageDataReadOnly(std::uint64_t nHistoryID, std::uint64_t image, std::string& name, std::uint64_t& texture,
                               std::uint64_t& zPosition, float& alpha, bool& bFeaturesVisible,
                               std::array<Point3d, 4>& corners, bool& bSatellite)
{
    return ReadOnlyCall("APIGetImageDataReadOnly", nHistoryID, image, Out{name}, Out{texture}, OutCount{zPosition},
                        Out{alpha}, Out{bFeaturesVisible}, Out{corners}, Out{bSatellite})
        .Run(
            [&](History& history, Result& result)
            {
                const auto* pImage = FindArgument<Image>(history, image, result);
                if (!pImage)
                    return;
                name = pImage->GetDisplayName();
                GiveID(pImage->GetTexture(), texture);
                zPosition = pImage->GetZPosition();
                alpha = pImage->GetAlpha();
                bFeaturesVisible = pImage->AreFeaturesVisible();
                corners = pImage->GetCorners();
                bSatellite = pImage->GetSatelliteData() != nullptr;
            });
}

Result APIGetSatelliteDataReadOnly(std::uint64_t nHistoryID, std::uint64_t image, Vector2d& location, Vector2d& span,
                                   std::array<std::uint64_t, 2>& pixelSize)
{
    return ReadOnlyCall("APIGetSatelliteDataReadOnly", nHistoryID, image, Out{location}, Out{span}, Out{pixelSize})
        .Run(
            [&](History& history, Result& result)
            {
                const SatelliteDataAttribute* pData = FindSatelliteData(history, image, result);
                if (!pData)
                    return;
                location = pData->GetLocation();
                span = pData->GetSpan();
                pixelSize = pData->GetPixelSize();
            });
}

Result APISetSatelliteData(std::uint64_t nHistoryID, std::uint64_t image, const Vector2d& location,
                           const Vector2d& span, const std::array<std::uint64_t, 2>& pixelSize)
{
    return ModifyingCall("APISetSatelliteData", nHistoryID, image, location, span, pixelSize)
        .Run(
            [&](History& history, Result& result)
            {
                auto* pImage = FindArgument<Image>(history, image, result);
                if (pImage && AreUsable(location, span, result))
                    pImage->SetSatelliteData(location, span, pixelSize, result);
            });
}

Result APIRemoveSatelliteData(std::uint64_t nHistoryID, std::uint64_t image)
{
    return ModifyingCall("APIRemoveSatelliteData", nHistoryID, image)
        .Run(
            [&](History& history, Result& result)
            {
                SatelliteDataAttribute* pData = FindSatelliteData(history, image, result);
                return pData && pData->Delete();
            });
}
} // namespace QRV
