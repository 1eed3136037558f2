/// Flat pictures placed in the model, such as scanned plans.
#pragma once

#include "appearance/Texture.h"
#include "model/SatelliteDataAttribute.h"

namespace QRV
{
/// What a host says of an image.
struct ImageSettings
{
    std::string sName;
    Texture* pTexture = nullptr; ///< may be null
    float fAlpha = 1.0f;
    bool bFeaturesVisible = false;
    std::array<Point3d, 4> aCorners;
};

/// A picture at four corners: that of a texture, or one that satellite data tell of, or none; never both. The images of
/// a History have places in an order of drawing. Calls keep these at 0, 1, 2 and so on.
class Image : public SearchedOf<Image, Object>
{
public:
    static constexpr nObjectType kType = nImageType;
    static constexpr const char* kName = "Image";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("imageName", &Image::m_sName), Saved("texture", &Image::m_pTexture),
                               Saved("alphaValue", &Image::m_fAlpha),
                               Saved("featuresVisible", &Image::m_bFeaturesVisible),
                               Saved("corner", &Image::m_aCorners), Saved("zPosition", &Image::m_nZPosition));
    }

    /// Above all images of the History.
    static std::uint64_t GetNextZPosition(const History& history);
    explicit Image(std::uint64_t nZPosition) : m_nZPosition(nZPosition) {}

    const std::string& GetDisplayName() const { return m_sName; }
    Texture* GetTexture() const { return m_pTexture; }
    float GetAlpha() const { return m_fAlpha; }
    bool AreFeaturesVisible() const { return m_bFeaturesVisible; }
    const std::array<Point3d, 4>& GetCorners() const { return m_aCorners; }
    std::uint64_t GetZPosition() const { return m_nZPosition; }

    /// Nothing when all is as it is; corners in another order are no change. `nImageTextureAndSatellite` for a texture
    /// on an image with satellite data.
    void SetData(const ImageSettings& settings, Result& result);
    /// Null for none.
    SatelliteDataAttribute* GetSatelliteData() const;
    /// `nImageTextureAndSatellite` for an image with a texture.
    void SetSatelliteData(const Vector2d& location, const Vector2d& span,
                          const SatelliteDataAttribute::PixelSize& pixelSize, Result& result);
    /// False when there are none.
    bool RemoveSatelliteData();
    /// So many places up, or down, as far as there are any; those passed move one place the other way.
    void MoveZ(std::int64_t nDelta);

    bool IsNonOwned() const override { return true; }
    void Changed(unsigned /*nFlags*/) override {}
    /// The other images close up.
    void DeleteSelf() override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void ReplaceReferences(const ObjectMap& map) override;
    void Transform(const Transf3d& transform) override;
    bool IsEquivalent(const Object& other, ObjectPairing& pairing) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    bool Says(const ImageSettings& settings) const;
    void Take(const ImageSettings& settings);
    void SetZPosition(std::uint64_t nZPosition) { Assign(m_nZPosition, nZPosition); }

    std::string m_sName;
    Texture* m_pTexture = nullptr;
    float m_fAlpha = 1.0f;
    bool m_bFeaturesVisible = false;
    std::array<Point3d, 4> m_aCorners;
    std::uint64_t m_nZPosition;
};
extern template class ObjectOf<Image, Object>;
extern template class SearchedOf<Image, Object>;
} // namespace QRV
