/// The exported operations on materials and textures. What holds for all calls stands in API.h.
#pragma once

#include <QRV/Color.h>
#include <QRV/Export.h>
#include <QRV/Ids.h>
#include <QRV/ObjectTypes.h>
#include <QRV/Result.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QRV
{
// --- Textures: encoded images, JPEG or PNG, that the library keeps as they are

/// Makes a texture.
/// @param data      the encoded image; equal ones are kept once for all Histories
/// @param useAlpha  whether hosts are to heed the opacity in the image
/// @return `nTextureBadSize` for fewer than 8 bytes, `nTextureBadFormat` for what starts neither as JPEG nor as PNG,
///         `nOutOfMemory`
QRV_API Result APICreateTexture(std::uint64_t nHistoryID, const std::vector<char>& data, bool useAlpha,
                                std::uint64_t& outID, const std::string& name);

/// Gives a texture another image and flag.
/// @param name  null leaves the name as it is
/// @return codes of `APICreateTexture`
QRV_API Result APISetTextureData(std::uint64_t nHistoryID, std::uint64_t texture, const std::vector<char>& data,
                                 bool useAlpha, const std::string* name);

/// What a texture holds. `data` is appended to; `name` may be null.
QRV_API Result APIGetTextureDataReadOnly(std::uint64_t nHistoryID, std::uint64_t texture, std::vector<char>& data,
                                         bool& useAlpha, std::string* name);

// --- Materials

/// Makes a material.
/// @param hScale, vScale      width and height of the texture in the model; `nBadInput` below 1e-12 where there is a
///                            texture
/// @param textureID           `INVALID_ID` for none
/// @param identifier          the host's own
/// @param additionalData      values of the host's own; may be null
/// @param additionalTextures  further textures under keys of the host's own; may be null
/// @return `nOutOfMemory` when there is no memory for it
QRV_API Result APICreateMaterial(std::uint64_t nHistoryID, const Color& color, double hScale, double vScale,
                                 std::uint64_t textureID, std::uint64_t& outID, const std::string& name,
                                 const std::string& identifier, const StringPairs* additionalData,
                                 const TexturePairs* additionalTextures);

/// Makes a texture as `APICreateTexture` does, and a material with it as `APICreateMaterial` does.
QRV_API Result APICreateMaterialWithTexture(std::uint64_t nHistoryID, const Color& color, double hScale, double vScale,
                                            const std::vector<char>& data, bool useAlpha, std::uint64_t& outID,
                                            const std::string& name, const std::string& identifier,
                                            const StringPairs* additionalData, const TexturePairs* additionalTextures,
                                            const std::string& textureName);

/// Gives a material another colour.
QRV_API Result APISetMaterialColor(std::uint64_t nHistoryID, std::uint64_t material, const Color& color);

/// Changes a material. What is null stays as it is; lists are replaced.
/// @param textureID  `INVALID_ID` takes the texture away
QRV_API Result APISetMaterialData(std::uint64_t nHistoryID, std::uint64_t material, const Color& color, double hScale,
                                  double vScale, std::uint64_t textureID, const std::string* name,
                                  const std::string* identifier, const StringPairs* additionalData,
                                  const TexturePairs* additionalTextures);

/// Gives a material another texture in another size.
/// @param textureID  `INVALID_ID` takes the texture away
QRV_API Result APISetMaterialTexture(std::uint64_t nHistoryID, std::uint64_t material, double hScale, double vScale,
                                     std::uint64_t textureID);

/// What a material holds. Pointers may be null; the lists are appended to.
/// @param textureID  `INVALID_ID` for none
QRV_API Result APIGetMaterialDataReadOnly(std::uint64_t nHistoryID, std::uint64_t material, Color& color,
                                          double& hScale, double& vScale, std::uint64_t& textureID, std::string* name,
                                          std::string* identifier, StringPairs* additionalData,
                                          TexturePairs* additionalTextures);

/// Whether any object has the material, or any face on its back.
QRV_API Result APIIsMaterialUsedReadOnly(std::uint64_t nHistoryID, std::uint64_t material, bool& used);

/// Gives objects a material in place of the one that they have.
/// @param objects   of any class but materials and attributes
/// @param material  `INVALID_ID` takes the material away
QRV_API Result APISetObjectsMaterial(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                                     std::uint64_t material);

/// The material that an object was given itself, not by its faces or its body.
/// @param material  `INVALID_ID` for none
QRV_API Result APIGetObjectMaterialReadOnly(std::uint64_t nHistoryID, std::uint64_t object, std::uint64_t& material);

/// Gives the backs of faces a material.
/// @param material  `INVALID_ID` takes it away
QRV_API Result APISetFaceBacksideMaterial(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& faces,
                                          std::uint64_t material);

/// The material of the back of a face.
/// @param nMaterialID  `INVALID_ID` for none
QRV_API Result APIGetFaceBacksideMaterialReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                                  std::uint64_t& nMaterialID);
} // namespace QRV
