#include "model/Image.h"

#include "model/SearchedOf.inl"

#include <algorithm>
#include <cmath>

namespace QRV
{
template class ObjectOf<Image, Object>;
template class SearchedOf<Image, Object>;

namespace
{
constexpr double kSamePlaceSqrd = 1e-12;

bool HoldsCorner(const std::array<Point3d, 4>& aCorners, const Point3d& p)
{
    return std::ranges::any_of(aCorners, [&](const Point3d& corner) { return corner.distSqrd(p) <= kSamePlaceSqrd; });
}

bool AreSame(const Vector2d& a, const Vector2d& b)
{
    return (a - b).lengthSqrd() <= kSamePlaceSqrd;
}
} // namespace

std::uint64_t Image::GetNextZPosition(const History& history)
{
    std::uint64_t nNext = 0;
    for (const Image* pImage : history.GetSearchSet<Image>())
        nNext = std::max(nNext, pImage->m_nZPosition + 1);
    return nNext;
}

bool Image::Says(const ImageSettings& settings) const
{
    return m_sName == settings.sName && m_pTexture == settings.pTexture && m_fAlpha == settings.fAlpha &&
           m_bFeaturesVisible == settings.bFeaturesVisible &&
           std::ranges::all_of(settings.aCorners, [&](const Point3d& p) { return HoldsCorner(m_aCorners, p); });
}

void Image::Take(const ImageSettings& settings)
{
    std::string sName = settings.sName;
    RecordChange();
    std::swap(m_sName, sName);
    Texture* pBefore = std::exchange(m_pTexture, settings.pTexture);
    m_fAlpha = settings.fAlpha;
    m_bFeaturesVisible = settings.bFeaturesVisible;
    m_aCorners = settings.aCorners;
    UpdateTextureOwners(*this, {pBefore}, {m_pTexture});
}

void Image::SetData(const ImageSettings& settings, Result& result)
{
    if (settings.pTexture && GetSatelliteData())
        result.SetErrorCode(Result::nImageTextureAndSatellite);
    else if (!Says(settings))
        Take(settings);
}

SatelliteDataAttribute* Image::GetSatelliteData() const
{
    std::vector<Attribute*> aAttributes;
    GetAttributesOfType(nSatelliteDataAttributeType, aAttributes);
    return aAttributes.empty() ? nullptr : dynamic_cast<SatelliteDataAttribute*>(aAttributes.front());
}

void Image::SetSatelliteData(const Vector2d& location, const Vector2d& span,
                             const SatelliteDataAttribute::PixelSize& pixelSize, Result& result)
{
    if (m_pTexture)
        return result.SetErrorCode(Result::nImageTextureAndSatellite);
    const SatelliteDataAttribute* pOld = GetSatelliteData();
    if (pOld && AreSame(pOld->GetLocation(), location) && AreSame(pOld->GetSpan(), span) &&
        pOld->GetPixelSize() == pixelSize)
        return;
    auto& data = GetHistory()->Create<SatelliteDataAttribute>(location, span, pixelSize);
    RemoveSatelliteData();
    AddAttribute(&data, true);
}

bool Image::RemoveSatelliteData()
{
    SatelliteDataAttribute* pData = GetSatelliteData();
    return pData && pData->Delete();
}

void Image::MoveZ(std::int64_t nDelta)
{
    const auto& images = GetHistory()->GetSearchSet<Image>();
    const auto z = std::int64_t(m_nZPosition);
    const std::int64_t nRoomAbove = std::max<std::int64_t>(0, std::int64_t(images.size()) - 1 - z);
    nDelta = nDelta < 1 ? std::max(-z, nDelta) : std::min(nRoomAbove, nDelta);
    if (nDelta == 0)
        return;
    const std::int64_t nTarget = z + nDelta;
    const auto [nFirst, nLast] = std::minmax(z, nTarget);
    const std::int64_t nAside = nDelta > 0 ? -1 : 1;
    SetZPosition(std::uint64_t(nTarget));
    for (Image* pImage : images)
    {
        const auto nOther = std::int64_t(pImage->m_nZPosition);
        if (pImage != this && nOther >= nFirst && nOther <= nLast)
            pImage->SetZPosition(std::uint64_t(nOther + nAside));
    }
}

void Image::DeleteSelf()
{
    History& history = *GetHistory();
    RemoveSatelliteData();
    UpdateTextureOwners(*this, {m_pTexture}, {});
    Object::DeleteSelf(); // `this` is out of the set, and may be gone
    const auto& images = history.GetSearchSet<Image>();
    std::vector<Image*> aOthers(images.begin(), images.end());
    std::ranges::stable_sort(aOthers, {}, &Image::m_nZPosition);
    std::uint64_t nZPosition = 0;
    for (Image* pOther : aOthers)
        pOther->SetZPosition(nZPosition++);
}

void Image::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    Object::GetChildren(aChildren, seen, bOwnedOnly);
    if (!bOwnedOnly && m_pTexture && seen.insert(m_pTexture).second)
        aChildren.push_back(m_pTexture);
}

void Image::ReplaceReferences(const ObjectMap& map)
{
    Texture* pBefore = m_pTexture;
    SearchedOf::ReplaceReferences(map);
    UpdateTextureOwners(*this, {pBefore}, {m_pTexture});
}

void Image::Transform(const Transf3d& transform)
{
    if (transform.isIdentity())
        return;
    RecordChange();
    for (Point3d& corner : m_aCorners)
        corner *= transform;
}

bool Image::IsEquivalent(const Object& other, ObjectPairing& pairing) const
{
    constexpr float kSameAlpha = 1e-6f;
    const auto* pOther = dynamic_cast<const Image*>(&other);
    return pOther && m_sName == pOther->m_sName && pairing.Pair(m_pTexture, pOther->m_pTexture) &&
           std::abs(m_fAlpha - pOther->m_fAlpha) <= kSameAlpha && m_bFeaturesVisible == pOther->m_bFeaturesVisible &&
           std::ranges::equal(m_aCorners, pOther->m_aCorners,
                              [](const Point3d& a, const Point3d& b) { return a.isEqual(b); }) &&
           m_nZPosition == pOther->m_nZPosition;
}

std::size_t Image::CheckValidity(std::vector<Result>& aResults) const
{
    return CheckTextureOwners(*this, {m_pTexture}, aResults) + Object::CheckValidity(aResults);
}
} // namespace QRV
