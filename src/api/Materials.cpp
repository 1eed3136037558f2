#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "model/Face.h"
#include "operations/MaterialEdits.h"

#include <QRV/Materials.h>

#include <string_view>

namespace QRV
{
namespace
{
std::string_view GetBytes(const std::vector<char>& data)
{
    return {data.data(), data.size()};
}

/// The objects behind the ids of a material's textures.
class TextureArguments
{
public:
    /// False, with `nBadInput`, for an id that names no texture.
    bool Find(const History& history, std::uint64_t nTexture, const TexturePairs* pAdditional, Result& result)
    {
        if (!FindOptionalArgument(history, nTexture, m_pTexture, result))
            return false;
        m_bGiven = pAdditional != nullptr;
        for (const auto& [sKey, nID] : pAdditional ? *pAdditional : TexturePairs())
        {
            m_aAdditional.emplace_back(sKey, FindArgument<Texture>(history, nID, result));
            if (!m_aAdditional.back().second)
                return false;
        }
        return true;
    }

    Texture* GetTexture() const { return m_pTexture; }
    /// Null when none were given, which is not the same as an empty list.
    const Material::KeyedTextures* GetAdditional() const { return m_bGiven ? &m_aAdditional : nullptr; }

private:
    Texture* m_pTexture = nullptr;
    bool m_bGiven = false;
    Material::KeyedTextures m_aAdditional;
};
} // namespace

Result APICreateTexture(std::uint64_t nHistoryID, const std::vector<char>& data, bool useAlpha, std::uint64_t& outID,
                        const std::string& name)
{
    return ModifyingCall("APICreateTexture", nHistoryID, data, useAlpha, Out{outID}, name)
        .Run([&](History& history, Result& result)
             { return GiveID(CreateTexture(history, GetBytes(data), useAlpha, name, result), outID); });
}

Result APISetTextureData(std::uint64_t nHistoryID, std::uint64_t texture, const std::vector<char>& data, bool useAlpha,
                         const std::string* name)
{
    return ModifyingCall("APISetTextureData", nHistoryID, texture, data, useAlpha, name)
        .Run(
            [&](History& history, Result& result)
            {
                if (auto* pTexture = FindArgument<Texture>(history, texture, result))
                    SetTextureData(*pTexture, GetBytes(data), useAlpha, name, result);
            });
}

Result APIGetTextureDataReadOnly(std::uint64_t nHistoryID, std::uint64_t texture, std::vector<char>& data,
                                 bool& useAlpha, std::string* name)
{
    return ReadOnlyCall("APIGetTextureDataReadOnly", nHistoryID, texture, Append{data}, Out{useAlpha}, Append{name})
        .Run(
            [&](History& history, Result& result)
            {
                const auto* pTexture = FindArgument<Texture>(history, texture, result);
                if (!pTexture)
                    return;
                const std::string& strData = pTexture->GetBitmap().GetData();
                data.insert(data.end(), strData.begin(), strData.end());
                useAlpha = pTexture->UsesAlpha();
                if (name)
                    *name = pTexture->GetDisplayName();
            });
}

Result APICreateMaterial(std::uint64_t nHistoryID, const Color& color, double hScale, double vScale,
                         std::uint64_t textureID, std::uint64_t& outID, const std::string& name,
                         const std::string& identifier, const StringPairs* additionalData,
                         const TexturePairs* additionalTextures)
{
    return ModifyingCall("APICreateMaterial", nHistoryID, color, hScale, vScale, textureID, Out{outID}, name,
                         identifier, additionalData, additionalTextures)
        .Run(
            [&](History& history, Result& result)
            {
                TextureArguments textures;
                return textures.Find(history, textureID, additionalTextures, result) &&
                       GiveID(CreateMaterial(history,
                                             {color, hScale, vScale, textures.GetTexture(), &name, &identifier,
                                              additionalData, textures.GetAdditional()},
                                             result),
                              outID);
            });
}

Result APICreateMaterialWithTexture(std::uint64_t nHistoryID, const Color& color, double hScale, double vScale,
                                    const std::vector<char>& data, bool useAlpha, std::uint64_t& outID,
                                    const std::string& name, const std::string& identifier,
                                    const StringPairs* additionalData, const TexturePairs* additionalTextures,
                                    const std::string& textureName)
{
    return ModifyingCall("APICreateMaterialWithTexture", nHistoryID, color, hScale, vScale, data, useAlpha, Out{outID},
                         name, identifier, additionalData, additionalTextures, textureName)
        .Run(
            [&](History& history, Result& result)
            {
                TextureArguments textures;
                if (!textures.Find(history, INVALID_ID, additionalTextures, result))
                    return false;
                Texture* pTexture = CreateTexture(history, GetBytes(data), useAlpha, textureName, result);
                return pTexture && GiveID(CreateMaterial(history,
                                                         {color, hScale, vScale, pTexture, &name, &identifier,
                                                          additionalData, textures.GetAdditional()},
                                                         result),
                                          outID);
            });
}

Result APISetMaterialColor(std::uint64_t nHistoryID, std::uint64_t material, const Color& color)
{
    return ModifyingCall("APISetMaterialColor", nHistoryID, material, color)
        .Run(
            [&](History& history, Result& result)
            {
                if (auto* pMaterial = FindArgument<Material>(history, material, result))
                    pMaterial->SetColor(color);
            });
}

Result APISetMaterialData(std::uint64_t nHistoryID, std::uint64_t material, const Color& color, double hScale,
                          double vScale, std::uint64_t textureID, const std::string* name,
                          const std::string* identifier, const StringPairs* additionalData,
                          const TexturePairs* additionalTextures)
{
    return ModifyingCall("APISetMaterialData", nHistoryID, material, color, hScale, vScale, textureID, name, identifier,
                         additionalData, additionalTextures)
        .Run(
            [&](History& history, Result& result)
            {
                TextureArguments textures;
                auto* pMaterial = FindArgument<Material>(history, material, result);
                if (pMaterial && textures.Find(history, textureID, additionalTextures, result))
                    SetMaterialSettings(*pMaterial,
                                        {color, hScale, vScale, textures.GetTexture(), name, identifier, additionalData,
                                         textures.GetAdditional()},
                                        result);
            });
}

Result APISetMaterialTexture(std::uint64_t nHistoryID, std::uint64_t material, double hScale, double vScale,
                             std::uint64_t textureID)
{
    return ModifyingCall("APISetMaterialTexture", nHistoryID, material, hScale, vScale, textureID)
        .Run(
            [&](History& history, Result& result)
            {
                Texture* pTexture = nullptr;
                auto* pMaterial = FindArgument<Material>(history, material, result);
                if (pMaterial && FindOptionalArgument(history, textureID, pTexture, result))
                    SetMaterialTexture(*pMaterial, hScale, vScale, pTexture, result);
            });
}

Result APIGetMaterialDataReadOnly(std::uint64_t nHistoryID, std::uint64_t material, Color& color, double& hScale,
                                  double& vScale, std::uint64_t& textureID, std::string* name, std::string* identifier,
                                  StringPairs* additionalData, TexturePairs* additionalTextures)
{
    return ReadOnlyCall("APIGetMaterialDataReadOnly", nHistoryID, material, Out{color}, Out{hScale}, Out{vScale},
                        Out{textureID}, Append{name}, Append{identifier}, Append{additionalData},
                        Append{additionalTextures})
        .Run(
            [&](History& history, Result& result)
            {
                const auto* pMaterial = FindArgument<Material>(history, material, result);
                if (!pMaterial)
                    return;
                color = pMaterial->GetColor();
                hScale = pMaterial->GetHScale();
                vScale = pMaterial->GetVScale();
                GiveID(pMaterial->GetTexture(), textureID);
                if (name)
                    *name = pMaterial->GetDisplayName();
                if (identifier)
                    *identifier = pMaterial->GetIdentifier();
                if (additionalData)
                    additionalData->insert(additionalData->end(), pMaterial->GetAdditionalData().begin(),
                                           pMaterial->GetAdditionalData().end());
                if (additionalTextures)
                    for (const auto& [sKey, pTexture] : pMaterial->GetAdditionalTextures())
                        additionalTextures->emplace_back(sKey, pTexture ? pTexture->GetID() : INVALID_ID);
            });
}

Result APIIsMaterialUsedReadOnly(std::uint64_t nHistoryID, std::uint64_t material, bool& used)
{
    return ReadOnlyCall("APIIsMaterialUsedReadOnly", nHistoryID, material, Out{used})
        .Run(
            [&](History& history, Result& result)
            {
                if (const auto* pMaterial = FindArgument<Material>(history, material, result))
                    used = pMaterial->IsUsed();
            });
}

Result APISetObjectsMaterial(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                             std::uint64_t material)
{
    return ModifyingCall("APISetObjectsMaterial", nHistoryID, objects, material)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aObjects;
                Material* pMaterial = nullptr;
                if (FindBearers<Material>(history, objects, aObjects, result) &&
                    FindOptionalArgument(history, material, pMaterial, result))
                    GiveMaterial(aObjects, pMaterial, false);
            });
}

Result APIGetObjectMaterialReadOnly(std::uint64_t nHistoryID, std::uint64_t object, std::uint64_t& material)
{
    return ReadOnlyCall("APIGetObjectMaterialReadOnly", nHistoryID, object, Out{material})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Object* pObject = FindArgument<Object>(history, object, result))
                    GiveID(FindMaterial(*pObject, false), material);
            });
}

Result APISetFaceBacksideMaterial(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& faces,
                                  std::uint64_t material)
{
    return ModifyingCall("APISetFaceBacksideMaterial", nHistoryID, faces, material)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Face*> aFaces;
                Material* pMaterial = nullptr;
                if (FindArguments(history, faces, aFaces, result) &&
                    FindOptionalArgument(history, material, pMaterial, result))
                    GiveMaterial({aFaces.begin(), aFaces.end()}, pMaterial, true);
            });
}

Result APIGetFaceBacksideMaterialReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::uint64_t& nMaterialID)
{
    return ReadOnlyCall("APIGetFaceBacksideMaterialReadOnly", nHistoryID, nFaceID, Out{nMaterialID})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Face* pFace = FindArgument<Face>(history, nFaceID, result))
                    GiveID(FindMaterial(*pFace, true), nMaterialID);
            });
}
} // namespace QRV
