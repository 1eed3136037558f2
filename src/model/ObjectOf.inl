/// The bodies of ObjectOf, for the source of each class.
#pragma once

#include "model/FieldValue.h"
#include "model/ObjectOf.h"

namespace QRV
{
template <class Base>
concept HasFields = requires
{
    Base::Fields();
};

template <class F>
inline constexpr nFieldKind kKindOf = std::decay_t<F>::kKind;

template <class T, class Base>
template <class Visit>
void ObjectOf<T, Base>::ForEachField(Visit&& visit)
{
    if constexpr (HasFields<Base>)
        std::apply([&](const auto&... field) { (visit(field), ...); }, Base::Fields());
    std::apply([&](const auto&... field) { (visit(field), ...); }, T::Fields());
}

template <class T, class Base>
std::unique_ptr<Object> ObjectOf<T, Base>::Clone() const
{
    return std::unique_ptr<Object>(new T(Self()));
}

template <class T, class Base>
void ObjectOf<T, Base>::Swap(Object& other) noexcept
{
    auto* pOther = dynamic_cast<T*>(&other);
    if (!pOther)
        return;
    ForEachField(
        [&](const auto& field)
        {
            using std::swap;
            swap(Self().*field.pMember, pOther->*field.pMember);
        });
    Object::SwapBase(other);
}

template <class T, class Base>
template <nFieldKind kKind>
bool ObjectOf<T, Base>::SaveFields(IArchive& archive) const
{
    bool bGood = true;
    ForEachField(
        [&](const auto& field)
        {
            if constexpr (kKindOf<decltype(field)> == kKind)
                bGood = bGood && FieldValue::Write(archive, Self().*field.pMember, field.pName);
        });
    return bGood;
}

template <class T, class Base>
bool ObjectOf<T, Base>::Save(IArchive& archive) const
{
    return Object::SaveBase(archive) && SaveFields<nFieldKind::nSaved>(archive) &&
           (!archive.SavesDerivable() || SaveFields<nFieldKind::nDerivable>(archive));
}

template <class T, class Base>
template <nFieldKind kKind>
bool ObjectOf<T, Base>::LoadFields(IArchive& archive)
{
    bool bGood = true;
    ForEachField(
        [&](const auto& field)
        {
            if constexpr (kKindOf<decltype(field)> == kKind)
                if (archive.GetVersion() >= field.nSince)
                    bGood = bGood && FieldValue::Read(archive, Self().*field.pMember);
        });
    return bGood;
}

template <class T, class Base>
bool ObjectOf<T, Base>::Load(IArchive& archive)
{
    return Object::LoadBase(archive) && LoadFields<nFieldKind::nSaved>(archive) &&
           (!archive.HasDerivable() || LoadFields<nFieldKind::nDerivable>(archive));
}

template <class T, class Base>
std::size_t ObjectOf<T, Base>::GetSizeInBytes(bool bInMemory, bool bDerivable) const
{
    std::size_t nSize = Object::GetBaseSizeInBytes(bInMemory);
    if (bInMemory)
        nSize += sizeof(T) - sizeof(Object);
    ForEachField(
        [&](const auto& field)
        {
            constexpr nFieldKind kKind = kKindOf<decltype(field)>;
            if (bInMemory)
                nSize += FieldValue::GetHeapSize(Self().*field.pMember);
            else if constexpr (kKind != nFieldKind::nCached)
                if (kKind == nFieldKind::nSaved || bDerivable)
                    nSize += FieldValue::GetSavedSize(Self().*field.pMember);
        });
    return nSize;
}

template <class T, class Base>
void ObjectOf<T, Base>::ReplaceReferences(const ObjectMap& map)
{
    bool bRefers = false;
    ForEachField([&](const auto& field) { bRefers = bRefers || FieldValue::RefersTo(Self().*field.pMember, map); });
    if (bRefers)
    {
        this->RecordChange();
        ForEachField([&](const auto& field) { FieldValue::Replace(Self().*field.pMember, map); });
    }
    Object::ReplaceAttributeReferences(map);
}

template <class T, class Base>
bool ObjectOf<T, Base>::IsEquivalent(const Object& other, ObjectPairing& pairing) const
{
    const auto* pOther = dynamic_cast<const T*>(&other);
    bool bEqual = pOther != nullptr;
    ForEachField(
        [&](const auto& field)
        {
            if constexpr (kKindOf<decltype(field)> == nFieldKind::nSaved)
                bEqual = bEqual && FieldValue::AreEquivalent(Self().*field.pMember, pOther->*field.pMember, pairing);
        });
    return bEqual;
}
} // namespace QRV
