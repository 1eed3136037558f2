#include "appearance/MaterialAttribute.h"

#include "appearance/Material.h"
#include "model/JoinableOf.inl"

namespace QRV
{
template class ObjectOf<MaterialAttribute, Attribute>;
template class JoinAttributeOf<MaterialAttribute, Material>;

bool MaterialAttribute::ConflictsWith(const Attribute& other) const
{
    const auto* pOther = dynamic_cast<const MaterialAttribute*>(&other);
    return pOther && pOther->m_bFaceBack != m_bFaceBack;
}

MaterialAttribute* FindMaterialAttribute(const Object& object, bool bBack)
{
    std::vector<Attribute*> aAttributes;
    object.GetAttributesOfType(nMaterialAttributeType, aAttributes);
    for (Attribute* pAttribute : aAttributes)
        if (auto* pFound = dynamic_cast<MaterialAttribute*>(pAttribute); pFound && pFound->IsForBack() == bBack)
            return pFound;
    return nullptr;
}

Material* FindMaterial(const Object& object, bool bBack)
{
    const MaterialAttribute* pAttribute = FindMaterialAttribute(object, bBack);
    return pAttribute ? pAttribute->GetTarget() : nullptr;
}
} // namespace QRV
