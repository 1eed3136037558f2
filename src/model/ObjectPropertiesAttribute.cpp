#include "model/ObjectPropertiesAttribute.h"

#include "model/ObjectOf.inl"

namespace QRV
{
template class ObjectOf<ObjectPropertiesAttribute, Attribute>;
} // namespace QRV
