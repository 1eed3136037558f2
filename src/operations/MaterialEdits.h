/// Making, changing and giving out materials and textures.
#pragma once

#include "appearance/Material.h"

#include <string_view>

namespace QRV
{
/// Null with the code of `CheckBitmapFormat` or `nOutOfMemory`.
Texture* CreateTexture(History& history, std::string_view bitmap, bool bUseAlpha, const std::string& sName,
                       Result& result);
/// A null name leaves the name alone. Changes nothing with a code of `CheckBitmapFormat`.
void SetTextureData(Texture& texture, std::string_view bitmap, bool bUseAlpha, const std::string* pName,
                    Result& result);

/// What a host says of a material. What is null stays as it is; a texture that is null goes.
struct MaterialSettings
{
    Color color;
    double dHScale = 0.0;
    double dVScale = 0.0;
    Texture* pTexture = nullptr;
    const std::string* pName = nullptr;
    const std::string* pIdentifier = nullptr;
    const StringPairs* pAdditionalData = nullptr;
    const Material::KeyedTextures* pAdditionalTextures = nullptr;
};
/// Null with `nBadInput` for scales that are no numbers, or `nOutOfMemory`.
Material* CreateMaterial(History& history, const MaterialSettings& settings, Result& result);
void SetMaterialSettings(Material& material, const MaterialSettings& settings, Result& result);
/// `nBadInput` as above.
void SetMaterialTexture(Material& material, double dHScale, double dVScale, Texture* pTexture, Result& result);

/// Gives each object the material in place of the one that it has, or the back of each face; null takes it away.
void GiveMaterial(const std::vector<Object*>& aObjects, Material* pMaterial, bool bBack);
} // namespace QRV
