#include "appearance/Material.h"

#include "model/JoinableOf.inl"

#include <algorithm>
#include <compare>
#include <tuple>

namespace QRV
{
template class ObjectOf<Material, Object>;
template class SearchedOf<Material, Object>;
template class NamedObjectOf<Material>;
template class JoinableOf<Material, MaterialAttribute>;

namespace
{
constexpr double kMinScale = 1e-12;

/// Numbers that differ by no more than the tolerance are equal.
int CompareScales(double a, double b)
{
    return std::abs(a - b) <= kMinScale ? 0 : a < b ? -1 : 1;
}

template <class T>
int CompareValues(const T& a, const T& b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

int CompareTextures(const Texture* pA, const Texture* pB)
{
    return pA && pB ? pA->Compare(*pB) : CompareValues(pA != nullptr, pB != nullptr);
}

auto GetBytes(const Color& color)
{
    return std::tuple(color.r, color.g, color.b, color.a);
}
} // namespace

bool Material::IsScale(double dScale)
{
    return dScale >= kMinScale;
}

void Material::SetScales(double dHScale, double dVScale)
{
    Assign(m_dHScale, dHScale);
    Assign(m_dVScale, dVScale);
}

void Material::SetTexture(Texture* pTexture)
{
    const std::vector<Texture*> aBefore = GetTextures();
    if (Assign(m_pTexture, pTexture))
        UpdateTextureOwners(*this, aBefore, GetTextures());
}

void Material::SetAdditionalTextures(const KeyedTextures& aTextures)
{
    const std::vector<Texture*> aBefore = GetTextures();
    if (Assign(m_aAdditionalTextures, aTextures))
        UpdateTextureOwners(*this, aBefore, GetTextures());
}

std::vector<Texture*> Material::GetTextures() const
{
    std::vector<Texture*> aTextures{m_pTexture};
    for (const auto& [sKey, pTexture] : m_aAdditionalTextures)
        aTextures.push_back(pTexture);
    return aTextures;
}

int Material::Compare(const Material& other, bool bWithTextures) const
{
    if (const int n = CompareValues(GetBytes(m_color), GetBytes(other.m_color)))
        return n;
    if (const int n = CompareScales(m_dHScale, other.m_dHScale))
        return n;
    if (const int n = CompareScales(m_dVScale, other.m_dVScale))
        return n;
    if (const int n = bWithTextures ? CompareTextures(m_pTexture, other.m_pTexture) : 0)
        return n;
    if (const int n = CompareValues(std::tie(m_sName, m_sIdentifier), std::tie(other.m_sName, other.m_sIdentifier)))
        return n;
    if (const int n = CompareValues(m_aAdditionalData.size(), other.m_aAdditionalData.size()))
        return n;
    if (const int n = CompareValues(m_aAdditionalData, other.m_aAdditionalData))
        return n;
    if (const int n = CompareValues(m_aAdditionalTextures.size(), other.m_aAdditionalTextures.size()))
        return n;
    for (std::size_t i = 0; i < m_aAdditionalTextures.size(); ++i)
    {
        const auto& [sKey, pTexture] = m_aAdditionalTextures[i];
        const auto& [sOtherKey, pOtherTexture] = other.m_aAdditionalTextures[i];
        if (const int n = CompareValues(sKey, sOtherKey))
            return n;
        if (const int n = bWithTextures ? CompareTextures(pTexture, pOtherTexture) : 0)
            return n;
    }
    return 0;
}

bool Material::IsUsed() const
{
    // The material itself is an owner of each.
    const auto isCarriedElsewhere = [&](bool bBack)
    {
        const MaterialAttribute* pAttribute = FindJoinAttribute(bBack);
        return pAttribute && pAttribute->GetOwnerIDs().size() > 1;
    };
    return isCarriedElsewhere(false) || isCarriedElsewhere(true);
}

void Material::DeleteSelf()
{
    UpdateTextureOwners(*this, GetTextures(), {});
    JoinableOf::DeleteSelf();
}

void Material::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    JoinableOf::GetChildren(aChildren, seen, bOwnedOnly);
    if (bOwnedOnly)
        return;
    for (Texture* pTexture : GetTextures())
        if (pTexture && seen.insert(pTexture).second)
            aChildren.push_back(pTexture);
}

void Material::ReplaceReferences(const ObjectMap& map)
{
    const std::vector<Texture*> aBefore = GetTextures();
    JoinableOf::ReplaceReferences(map);
    UpdateTextureOwners(*this, aBefore, GetTextures());
}

bool Material::Load(IArchive& archive)
{
    constexpr std::uint64_t kFirstVersionWithName = 12;
    if (!JoinableOf::Load(archive))
        return false;
    for (double* pScale : {&m_dHScale, &m_dVScale})
        if (!IsScale(*pScale))
            *pScale = 1.0;
    if (archive.GetVersion() < kFirstVersionWithName)
        m_sName = "Material " + std::to_string(GetID());
    return true;
}

bool Material::IsEquivalent(const Object& other, ObjectPairing& pairing) const
{
    const auto* pOther = dynamic_cast<const Material*>(&other);
    if (!pOther || Compare(*pOther, false) != 0)
        return false;
    return std::ranges::equal(GetTextures(), pOther->GetTextures(),
                              [&](const Texture* pA, const Texture* pB) { return pairing.Pair(pA, pB); });
}

std::size_t Material::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = CheckTextureOwners(*this, GetTextures(), aResults);
    if (m_pTexture && !(IsScale(m_dHScale) && IsScale(m_dVScale)))
        nFindings += AddFinding(aResults, Result::nMaterialBadData, this);
    return nFindings + JoinableOf::CheckValidity(aResults);
}
} // namespace QRV
