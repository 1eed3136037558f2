/// A named image to be spread over what a material covers, or shown by a placed image.
#pragma once

#include "appearance/BitmapStore.h"
#include "model/Attribute.h"
#include "model/NamedObjectOf.h"

namespace QRV
{
/// One encoded image of the process's bitmap store under a name. It knows the objects of its History that show it,
/// materials and images; while there are any it is theirs.
class Texture : public NamedObjectOf<Texture>
{
public:
    static constexpr nObjectType kType = nTextureType;
    static constexpr const char* kName = "Texture";
    static constexpr Result::nResultType kNotInSet = Result::nTextureNotInSet;
    /// The bitmap is saved by hand: its bytes stand before the rest, its number behind.
    static constexpr auto Fields()
    {
        return std::make_tuple(Cached(&Texture::m_aOwnerIDs), Cached(&Texture::m_bitmap),
                               Saved("name", &Texture::m_sName).Since(12), Saved("usealpha", &Texture::m_bUseAlpha));
    }

    Texture(const BitmapReference& bitmap, bool bUseAlpha, const std::string& sName)
        : NamedObjectOf(sName), m_bitmap(bitmap), m_bUseAlpha(bUseAlpha)
    {
    }

    const BitmapReference& GetBitmap() const { return m_bitmap; }
    void SetBitmap(const BitmapReference& bitmap) { Assign(m_bitmap, bitmap); }
    bool UsesAlpha() const { return m_bUseAlpha; }
    void SetUseAlpha(bool bUseAlpha) { Assign(m_bUseAlpha, bUseAlpha); }

    const SharedIDSet& GetOwnerIDs() const { return m_aOwnerIDs; }
    /// False for an object of another History, and when it is an owner already.
    bool AddOwner(const Object& owner);
    /// False when `owner` is none. The texture stays.
    bool RemoveOwner(const Object& owner);

    /// Orders by the use of alpha, false first, then by the bytes of the bitmap: negative, 0 or positive.
    int Compare(const Texture& other) const;
    bool CountsAs(const Texture& other) const { return Compare(other) == 0; }

    bool IsNonOwned() const override { return m_aOwnerIDs.empty(); }
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    bool Save(IArchive& archive) const override;
    bool Load(IArchive& archive) override;
    std::size_t GetSizeInBytes(bool bInMemory, bool bDerivable) const override;
    bool IsEquivalent(const Object& other, ObjectPairing& pairing) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    SharedIDSet m_aOwnerIDs;
    BitmapReference m_bitmap;
    bool m_bUseAlpha;
};
extern template class ObjectOf<Texture, Object>;
extern template class SearchedOf<Texture, Object>;
extern template class NamedObjectOf<Texture>;

/// To be called when an object that shows textures has changed from some to others: those that it left lose it as an
/// owner, those that it shows have it. The lists may hold nulls and repeat themselves.
void UpdateTextureOwners(const Object& user, const std::vector<Texture*>& aBefore, const std::vector<Texture*>& aAfter);
/// A finding for each texture that does not know the object that shows it.
std::size_t CheckTextureOwners(const Object& user, const std::vector<Texture*>& aTextures,
                               std::vector<Result>& aResults);
} // namespace QRV
