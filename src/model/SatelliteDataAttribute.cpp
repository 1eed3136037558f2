#include "model/SatelliteDataAttribute.h"

#include "model/ObjectOf.inl"

namespace QRV
{
template class ObjectOf<SatelliteDataAttribute, Attribute>;
} // namespace QRV
