/// What gives its owners a material.
#pragma once

#include "model/JoinableOf.h"

namespace QRV
{
class Material;

/// The owners have the material: as a whole, or on the back of a face.
class MaterialAttribute : public JoinAttributeOf<MaterialAttribute, Material>
{
public:
    static constexpr nObjectType kType = nMaterialAttributeType;
    static constexpr const char* kName = "MaterialAttribute";
    static constexpr Result::nResultType kBadTarget = Result::nMaterialAttributeBadMaterial;
    static constexpr std::size_t kSides = 2;
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("material", &MaterialAttribute::m_pTarget),
                               Saved("face_back", &MaterialAttribute::m_bFaceBack));
    }

    explicit MaterialAttribute(Material& material) : JoinAttributeOf(material) {}

    bool IsForBack() const { return m_bFaceBack; }
    void SetForBack(bool bBack) { Assign(m_bFaceBack, bBack); }
    /// The two sides of a face have nothing to do with one another.
    bool ConflictsWith(const Attribute& other) const override;

private:
    bool m_bFaceBack = false;
};
extern template class ObjectOf<MaterialAttribute, Attribute>;
extern template class JoinAttributeOf<MaterialAttribute, Material>;

/// The attribute that gives an object its material, or a face that of its back; null for none.
MaterialAttribute* FindMaterialAttribute(const Object& object, bool bBack);
/// Null for none.
Material* FindMaterial(const Object& object, bool bBack);
} // namespace QRV
