/// The sets of objects of a History that are found by what they say, or listed by class.
#pragma once

#include "appearance/Material.h"
#include "appearance/Texture.h"
#include "model/GeneratedGeometryInformation.h"
#include "model/Image.h"
#include "model/Layer.h"
#include "model/Level.h"
#include "model/SketchProperties.h"
#include "model/StringAttribute.h"

#include <tuple>

namespace QRV
{
/// One set for each class that derives from SearchedOf.
class SearchSets
{
public:
    template <class T>
    typename T::All& Get()
    {
        return std::get<typename T::All>(m_sets);
    }
    template <class T>
    const typename T::All& Get() const
    {
        return std::get<typename T::All>(m_sets);
    }

private:
    std::tuple<Material::All, Texture::All, Level::All, Layer::All, StringAttribute::All, Image::All,
               SketchProperties::All, GeneratedGeometryInformation::All>
        m_sets;
};
} // namespace QRV
