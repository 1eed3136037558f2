/// What surfaces look like.
#pragma once

#include "appearance/MaterialAttribute.h"
#include "appearance/Texture.h"

#include <QRV/Color.h>

namespace QRV
{
/// A colour, the size of its texture in the model, textures, and values of the host's own. Objects have it through its
/// attributes, one for fronts and whole objects and one for backs of faces.
class Material : public JoinableOf<Material, MaterialAttribute>
{
public:
    static constexpr nObjectType kType = nMaterialType;
    static constexpr const char* kName = "Material";
    static constexpr Result::nResultType kNotInSet = Result::nMaterialNotInSet;
    static constexpr Result::nResultType kManyAttributes = Result::nMaterialManyAttributes;
    static constexpr Result::nResultType kBadAttribute = Result::nMaterialBadAttribute;
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("color", &Material::m_color), Saved("hscale", &Material::m_dHScale),
                               Saved("vscale", &Material::m_dVScale), Saved("texture", &Material::m_pTexture).Since(4),
                               Saved("name", &Material::m_sName).Since(12),
                               Saved("identifier", &Material::m_sIdentifier).Since(12),
                               Saved("additionaldata", &Material::m_aAdditionalData).Since(12),
                               Saved("additionaltextures", &Material::m_aAdditionalTextures).Since(12));
    }

    /// Textures of the model under keys of the host's own.
    using KeyedTextures = std::vector<std::pair<std::string, Texture*>>;

    const Color& GetColor() const { return m_color; }
    void SetColor(const Color& color) { Assign(m_color, color); }
    /// Width and height of the texture in the model.
    double GetHScale() const { return m_dHScale; }
    double GetVScale() const { return m_dVScale; }
    /// Whether a texture can have that width or height.
    static bool IsScale(double dScale);
    void SetScales(double dHScale, double dVScale);
    /// May be null.
    Texture* GetTexture() const { return m_pTexture; }
    void SetTexture(Texture* pTexture);
    const std::string& GetIdentifier() const { return m_sIdentifier; }
    void SetIdentifier(const std::string& sIdentifier) { Assign(m_sIdentifier, sIdentifier); }
    const StringPairs& GetAdditionalData() const { return m_aAdditionalData; }
    void SetAdditionalData(const StringPairs& aData) { Assign(m_aAdditionalData, aData); }
    const KeyedTextures& GetAdditionalTextures() const { return m_aAdditionalTextures; }
    void SetAdditionalTextures(const KeyedTextures& aTextures);

    /// By all members in order, scales within 1e-12, textures by value or not at all: negative, 0 or positive.
    int Compare(const Material& other, bool bWithTextures) const;
    bool CountsAs(const Material& other) const { return Compare(other, true) == 0; }
    /// Whether any object has the material.
    bool IsUsed() const;

    nCopyBehavior GetCopyRule() const override { return nCopyShared; }
    void DeleteSelf() override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void ReplaceReferences(const ObjectMap& map) override;
    bool Load(IArchive& archive) override;
    bool IsEquivalent(const Object& other, ObjectPairing& pairing) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    /// The main one, then the additional ones; may hold nulls and repeat itself.
    std::vector<Texture*> GetTextures() const;

    Color m_color;
    double m_dHScale = 1.0;
    double m_dVScale = 1.0;
    Texture* m_pTexture = nullptr;
    std::string m_sIdentifier;
    StringPairs m_aAdditionalData;
    KeyedTextures m_aAdditionalTextures;
};
extern template class ObjectOf<Material, Object>;
extern template class SearchedOf<Material, Object>;
extern template class NamedObjectOf<Material>;
extern template class JoinableOf<Material, MaterialAttribute>;
} // namespace QRV
