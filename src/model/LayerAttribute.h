/// What puts its owners on a layer.
#pragma once

#include "model/JoinableOf.h"

namespace QRV
{
class Layer;

class LayerAttribute : public JoinAttributeOf<LayerAttribute, Layer>
{
public:
    static constexpr nObjectType kType = nLayerAttributeType;
    static constexpr const char* kName = "LayerAttribute";
    static constexpr Result::nResultType kBadTarget = Result::nLayerAttributeBadLayer;
    static constexpr auto Fields() { return std::make_tuple(Saved("layer", &LayerAttribute::m_pTarget)); }

    explicit LayerAttribute(Layer& layer) : JoinAttributeOf(layer) {}

    /// Of another layer, which is shown when this one is hidden or the other way round.
    bool ConflictsWith(const Attribute& other) const override;
};
extern template class ObjectOf<LayerAttribute, Attribute>;
extern template class JoinAttributeOf<LayerAttribute, Layer>;
} // namespace QRV
