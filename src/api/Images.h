/// The exported operations on placed images. What holds for all calls stands in API.h.
#pragma once

#include <QRV/Export.h>
#include <QRV/Geometry.h>
#include <QRV/Ids.h>
#include <QRV/Result.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace QRV
{
// An image is a flat picture at four corners. It shows a texture, or satellite data tell the host which piece of the
// earth to fetch for it; never both. The images of a History have z positions 0, 1, 2 and so on, for the order of
// drawing.

/// Places an image on top of the others.
/// @param texture           `INVALID_ID` for none
/// @param alpha             opacity
/// @param bFeaturesVisible  the host's own
/// @param corners           in the host's order
/// @return `nOutOfMemory` when there is no memory for it
QRV_API Result APICreateImageObject(std::uint64_t nHistoryID, const std::string& name, std::uint64_t texture,
                                    float alpha, bool bFeaturesVisible, const std::array<Point3d, 4>& corners,
                                    std::uint64_t& id);

/// Makes a texture as `APICreateTexture` does, and an image of it as above.
QRV_API Result APICreateImageObjectWithTexture(std::uint64_t nHistoryID, const std::string& name, float alpha,
                                               bool bFeaturesVisible, const std::array<Point3d, 4>& corners,
                                               const std::vector<char>& bitmap, std::uint64_t& id,
                                               const std::string& textureName);

/// Places an image with satellite data.
/// @param location, span  latitude and longitude, in degrees or as the host pleases
/// @param pixelSize       width and height
/// @return `nImageTextureAndSatellite` when there is a texture too
QRV_API Result APICreateSatelliteImageObject(std::uint64_t nHistoryID, const std::string& name, std::uint64_t texture,
                                             float alpha, bool bFeaturesVisible, const std::array<Point3d, 4>& corners,
                                             const Vector2d& location, const Vector2d& span,
                                             const std::array<std::uint64_t, 2>& pixelSize, std::uint64_t& id);

/// Moves an image through the order of drawing, up or down, as far as there are others. Those passed move the other
/// way.
QRV_API Result APIMoveImage(std::uint64_t nHistoryID, std::uint64_t image, int delta);

/// Changes an image. Corners in another order are no change.
/// @return `nImageTextureAndSatellite` for a texture on an image with satellite data
QRV_API Result APISetImageData(std::uint64_t nHistoryID, std::uint64_t image, const std::string& name,
                               std::uint64_t texture, float alpha, bool bFeaturesVisible,
                               const std::array<Point3d, 4>& corners);

/// What an image holds.
/// @param texture     `INVALID_ID` for none
/// @param bSatellite  whether it has satellite data
QRV_API Result APIGetImageDataReadOnly(std::uint64_t nHistoryID, std::uint64_t image, std::string& name,
                                       std::uint64_t& texture, std::uint64_t& zPosition, float& alpha,
                                       bool& bFeaturesVisible, std::array<Point3d, 4>& corners, bool& bSatellite);

/// The satellite data of an image.
/// @return `nBadInput` for an image without
QRV_API Result APIGetSatelliteDataReadOnly(std::uint64_t nHistoryID, std::uint64_t image, Vector2d& location,
                                           Vector2d& span, std::array<std::uint64_t, 2>& pixelSize);

/// Gives an image satellite data in place of those that it has.
/// @return `nImageTextureAndSatellite` for an image with a texture
QRV_API Result APISetSatelliteData(std::uint64_t nHistoryID, std::uint64_t image, const Vector2d& location,
                                   const Vector2d& span, const std::array<std::uint64_t, 2>& pixelSize);

/// Takes the satellite data off an image.
/// @return `nBadInput` for an image without
QRV_API Result APIRemoveSatelliteData(std::uint64_t nHistoryID, std::uint64_t image);
} // namespace QRV
