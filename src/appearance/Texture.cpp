#include "appearance/Texture.h"

#include "model/NamedObjectOf.inl"

#include <algorithm>

namespace QRV
{
template class ObjectOf<Texture, Object>;
template class SearchedOf<Texture, Object>;
template class NamedObjectOf<Texture>;

namespace
{
bool Shows(const Object& owner, const Texture& texture)
{
    std::vector<Object*> aChildren;
    ObjectSet seen;
    owner.GetChildren(aChildren, seen, false);
    return std::ranges::find(aChildren, &texture) != aChildren.end();
}
} // namespace

bool Texture::AddOwner(const Object& owner)
{
    if (owner.GetHistoryID() != GetHistoryID() || m_aOwnerIDs.Contains(owner.GetID()))
        return false;
    RecordChange();
    return m_aOwnerIDs.Insert(owner.GetID());
}

bool Texture::RemoveOwner(const Object& owner)
{
    if (owner.GetHistoryID() != GetHistoryID() || !m_aOwnerIDs.Contains(owner.GetID()))
        return false;
    RecordChange();
    return m_aOwnerIDs.Erase(owner.GetID());
}

int Texture::Compare(const Texture& other) const
{
    if (m_bUseAlpha != other.m_bUseAlpha)
        return m_bUseAlpha ? 1 : -1;
    return m_bitmap == other.m_bitmap ? 0 : m_bitmap.GetData().compare(other.m_bitmap.GetData());
}

void Texture::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    const History* pHistory = GetHistory();
    for (const std::uint64_t nOwner : m_aOwnerIDs)
        if (Object* pOwner = pHistory->GetObject(nOwner); pOwner && seen.insert(pOwner).second)
            aParents.push_back(pOwner);
}

bool Texture::Save(IArchive& archive) const
{
    static const std::string strWritten;
    const bool bFirst = archive.NoteBitmapWritten(m_bitmap);
    return SaveBase(archive) && archive.WriteString(bFirst ? m_bitmap.GetData() : strWritten, "bitmapdata") &&
           SaveFields<nFieldKind::nSaved>(archive) && archive.WriteID(m_bitmap.GetIndex(), "bitmapdataindex");
}

bool Texture::Load(IArchive& archive)
{
    constexpr std::uint64_t kFirstVersionWithoutSize = 5;
    constexpr std::uint64_t kFirstVersionWithName = 12;
    constexpr std::uint64_t kFirstVersionWithNumber = 23;
    std::uint64_t nWidth = 0;
    std::uint64_t nHeight = 0;
    std::string strData;
    if (!LoadBase(archive))
        return false;
    if (archive.GetVersion() < kFirstVersionWithoutSize && !(archive.ReadID(nWidth) && archive.ReadID(nHeight)))
        return false;
    if (!archive.ReadString(strData) || !LoadFields<nFieldKind::nSaved>(archive))
        return false;
    if (archive.GetVersion() < kFirstVersionWithName)
        m_sName = "Texture " + std::to_string(GetID());
    m_bitmap = strData.empty() ? BitmapReference() : BitmapReference(strData);
    if (archive.GetVersion() < kFirstVersionWithNumber)
        return true;
    std::uint64_t nNumber = INVALID_ID;
    if (!archive.ReadID(nNumber))
        return false;
    if (strData.empty())
        m_bitmap = archive.GetBitmapRead(nNumber);
    else
        archive.SetBitmapRead(nNumber, m_bitmap);
    return true;
}

std::size_t Texture::GetSizeInBytes(bool bInMemory, bool bDerivable) const
{
    constexpr std::size_t kNumberAndCount = 8;
    const std::size_t nSize = NamedObjectOf::GetSizeInBytes(bInMemory, bDerivable);
    return bInMemory ? nSize : nSize + m_bitmap.GetData().size() + kNumberAndCount;
}

bool Texture::IsEquivalent(const Object& other, ObjectPairing& pairing) const
{
    return NamedObjectOf::IsEquivalent(other, pairing) && Compare(static_cast<const Texture&>(other)) == 0;
}

std::size_t Texture::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    const Result::nResultType nFormat = CheckBitmapFormat(m_bitmap.GetData());
    if (nFormat != Result::nOK)
        nFindings += AddFinding(aResults, nFormat, this);
    const History* pHistory = GetHistory();
    for (const std::uint64_t nOwner : m_aOwnerIDs)
    {
        const Object* pOwner = pHistory ? pHistory->GetObject(nOwner) : nullptr;
        if (!pOwner)
            nFindings += AddFinding(aResults, Result::nTextureBadOwner, this);
        else if (!Shows(*pOwner, *this))
            nFindings += AddFinding(aResults, Result::nTextureOwnerMismatch, this, pOwner);
    }
    return nFindings + NamedObjectOf::CheckValidity(aResults);
}

// --- what shows textures

void UpdateTextureOwners(const Object& user, const std::vector<Texture*>& aBefore, const std::vector<Texture*>& aAfter)
{
    for (Texture* pTexture : aBefore)
        if (pTexture && std::ranges::find(aAfter, pTexture) == aAfter.end())
            pTexture->RemoveOwner(user);
    for (Texture* pTexture : aAfter)
        if (pTexture)
            pTexture->AddOwner(user);
}

std::size_t CheckTextureOwners(const Object& user, const std::vector<Texture*>& aTextures,
                               std::vector<Result>& aResults)
{
    std::size_t nFindings = 0;
    for (const Texture* pTexture : aTextures)
        if (pTexture && !pTexture->GetOwnerIDs().Contains(user.GetID()))
            nFindings += AddFinding(aResults, Result::nTextureOwnerMismatch, pTexture, &user);
    return nFindings;
}
} // namespace QRV
