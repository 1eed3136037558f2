#include "operations/MaterialEdits.h"

#include "geometry/Finite.h"
#include "operations/ObjectCreation.h"

namespace QRV
{
namespace
{
bool CheckBitmap(std::string_view bitmap, Result& result)
{
    const Result::nResultType nFormat = CheckBitmapFormat(bitmap);
    if (nFormat != Result::nOK)
        result.SetErrorCode(nFormat);
    return nFormat == Result::nOK;
}

/// Without a texture any scale will do.
bool CheckScales(double dHScale, double dVScale, const Texture* pTexture, Result& result)
{
    const auto isGood = [&](double dScale) { return IsUsable(dScale) && (!pTexture || Material::IsScale(dScale)); };
    const bool bGood = isGood(dHScale) && isGood(dVScale);
    if (!bGood)
        result.SetErrorCode(Result::nBadInput);
    return bGood;
}
} // namespace

Texture* CreateTexture(History& history, std::string_view bitmap, bool bUseAlpha, const std::string& sName,
                       Result& result)
{
    if (!CheckBitmap(bitmap, result))
        return nullptr;
    return TryCreate<Texture>(history, result, Result::nOutOfMemory, BitmapReference(bitmap), bUseAlpha, sName);
}

void SetTextureData(Texture& texture, std::string_view bitmap, bool bUseAlpha, const std::string* pName, Result& result)
{
    if (!CheckBitmap(bitmap, result))
        return;
    texture.SetBitmap(BitmapReference(bitmap));
    texture.SetUseAlpha(bUseAlpha);
    if (pName)
        texture.SetDisplayName(*pName);
}

Material* CreateMaterial(History& history, const MaterialSettings& settings, Result& result)
{
    if (!CheckScales(settings.dHScale, settings.dVScale, settings.pTexture, result))
        return nullptr;
    auto* pMaterial = TryCreate<Material>(history, result, Result::nOutOfMemory);
    if (pMaterial)
        SetMaterialSettings(*pMaterial, settings, result);
    return pMaterial;
}

void SetMaterialSettings(Material& material, const MaterialSettings& settings, Result& result)
{
    if (!CheckScales(settings.dHScale, settings.dVScale, settings.pTexture, result))
        return;
    material.SetColor(settings.color);
    material.SetScales(settings.dHScale, settings.dVScale);
    material.SetTexture(settings.pTexture);
    if (settings.pName)
        material.SetDisplayName(*settings.pName);
    if (settings.pIdentifier)
        material.SetIdentifier(*settings.pIdentifier);
    if (settings.pAdditionalData)
        material.SetAdditionalData(*settings.pAdditionalData);
    if (settings.pAdditionalTextures)
        material.SetAdditionalTextures(*settings.pAdditionalTextures);
}

void SetMaterialTexture(Material& material, double dHScale, double dVScale, Texture* pTexture, Result& result)
{
    if (!CheckScales(dHScale, dVScale, pTexture, result))
        return;
    material.SetScales(dHScale, dVScale);
    material.SetTexture(pTexture);
}

void GiveMaterial(const std::vector<Object*>& aObjects, Material* pMaterial, bool bBack)
{
    for (Object* pObject : aObjects)
    {
        MaterialAttribute* pPresent = FindMaterialAttribute(*pObject, bBack);
        if (pPresent && pPresent->GetTarget() == pMaterial)
            continue;
        bool bDeleted = false;
        if (pPresent)
            pObject->RemoveAttribute(pPresent, bDeleted);
        if (pMaterial)
            pObject->AddAttribute(&pMaterial->GetJoinAttribute(bBack), true);
    }
}
} // namespace QRV
