#include "model/LayerAttribute.h"

#include "model/JoinableOf.inl"
#include "model/Layer.h"

namespace QRV
{
template class ObjectOf<LayerAttribute, Attribute>;
template class JoinAttributeOf<LayerAttribute, Layer>;

bool LayerAttribute::ConflictsWith(const Attribute& other) const
{
    const Layer* pOther = GetOtherTarget(other);
    return pOther && pOther->IsDisplayed() != m_pTarget->IsDisplayed();
}
} // namespace QRV
