/// The piece of the earth that a placed image shows.
#pragma once

#include "model/Attribute.h"

#include <array>

namespace QRV
{
/// On an image without a texture, at most one; its picture is for the host to fetch. Fixed once made.
class SatelliteDataAttribute : public ObjectOf<SatelliteDataAttribute, Attribute>
{
public:
    static constexpr nObjectType kType = nSatelliteDataAttributeType;
    static constexpr const char* kName = "SatelliteDataAttribute";
    static constexpr auto Fields()
    {
        using Self = SatelliteDataAttribute;
        return std::make_tuple(Saved("latitude", &Self::m_dLatitude), Saved("longitud", &Self::m_dLongitude),
                               Saved("latitudeSpan", &Self::m_dLatitudeSpan),
                               Saved("longitudSpan", &Self::m_dLongitudeSpan),
                               Saved("pixelWidth", &Self::m_nPixelWidth), Saved("pixelHeight", &Self::m_nPixelHeight));
    }

    using PixelSize = std::array<std::uint64_t, 2>;

    /// Latitude first, then longitude; width first, then height.
    SatelliteDataAttribute(const Vector2d& location, const Vector2d& span, const PixelSize& pixelSize)
        : m_dLatitude(location.x), m_dLongitude(location.y), m_dLatitudeSpan(span.x), m_dLongitudeSpan(span.y),
          m_nPixelWidth(pixelSize[0]), m_nPixelHeight(pixelSize[1])
    {
    }

    Vector2d GetLocation() const { return {m_dLatitude, m_dLongitude}; }
    Vector2d GetSpan() const { return {m_dLatitudeSpan, m_dLongitudeSpan}; }
    PixelSize GetPixelSize() const { return {m_nPixelWidth, m_nPixelHeight}; }

    nCopyBehavior GetCopyRule() const override { return nCopyNone; }

private:
    double m_dLatitude;
    double m_dLongitude;
    double m_dLatitudeSpan;
    double m_dLongitudeSpan;
    std::uint64_t m_nPixelWidth;
    std::uint64_t m_nPixelHeight;
};
extern template class ObjectOf<SatelliteDataAttribute, Attribute>;
} // namespace QRV
