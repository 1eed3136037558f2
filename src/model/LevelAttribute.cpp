#include "model/LevelAttribute.h"

#include "model/JoinableOf.inl"
#include "model/Level.h"

namespace QRV
{
template class ObjectOf<LevelAttribute, Attribute>;
template class JoinAttributeOf<LevelAttribute, Level>;

bool LevelAttribute::ConflictsWith(const Attribute& other) const
{
    const Level* pOther = GetOtherTarget(other);
    return pOther && pOther->GetElevation() != m_pTarget->GetElevation();
}
} // namespace QRV
