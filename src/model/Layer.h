/// Named sets of objects that a host shows or hides together.
#pragma once

#include "model/LayerAttribute.h"

#include <string_view>

namespace QRV
{
/// By name, byte by byte, and by id among those of one name.
struct LayerOrder
{
    using is_transparent = void;
    bool operator()(const Layer* pA, const Layer* pB) const;
    bool operator()(const Layer* pLayer, std::string_view sName) const;
};

/// The objects on the layer are the owners of its attribute but for the layer itself. It owns none of them.
class Layer : public JoinableOf<Layer, LayerAttribute, LayerOrder>
{
public:
    static constexpr nObjectType kType = nLayerType;
    static constexpr const char* kName = "Layer";
    static constexpr Result::nResultType kNotInSet = Result::nLayerNotInSet;
    static constexpr Result::nResultType kManyAttributes = Result::nLayerManyAttributes;
    static constexpr Result::nResultType kBadAttribute = Result::nLayerBadAttribute;
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("name", &Layer::m_sName), Saved("displayed", &Layer::m_bDisplayed));
    }

    Layer(const std::string& sName, bool bDisplayed) : JoinableOf(sName), m_bDisplayed(bDisplayed) {}

    bool IsDisplayed() const { return m_bDisplayed; }
    void SetDisplayed(bool bDisplayed) { Assign(m_bDisplayed, bDisplayed); }

    bool CountsAs(const Layer& other) const { return m_sName == other.m_sName; }
    Object* FindEquivalent(History& history) const override;

private:
    bool m_bDisplayed;
};
extern template class ObjectOf<Layer, Object>;
extern template class SearchedOf<Layer, Object, LayerOrder>;
extern template class NamedObjectOf<Layer, LayerOrder>;
extern template class JoinableOf<Layer, LayerAttribute, LayerOrder>;
} // namespace QRV
