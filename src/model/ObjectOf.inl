#include "archive/IArchive.h"

namespace QRV
{
template <class Base>
concept HasFields = requires { Base::Fields(); };

template <class T, class Base>
template <class Visit>
void ObjectOf<T, Base>::ForEachField(Visit&& visit)
{
    if constexpr (HasFields<Base>)
        std::apply([&](const auto&... field) { (visit(field), ...); }, Base::Fields());
    std::apply([&](const auto&... field) { (visit(field), ...); }, T::Fields());
}

template <class T, class Base>
void ObjectOf<T, Base>::Swap(Object& other) noexcept
{
    auto* pOther = dynamic_cast<T*>(&other);
    if (!pOther)
        return;
    ForEachField([&](const auto& field) {
        using std::swap;
        swap(Self().*field.pMember, pOther->*field.pMember);
    });
    Object::SwapBase(other);
}

template <class T, class Base>
bool ObjectOf<T, Base>::Save(IArchive& archive) const
{
    bool bGood = Object::SaveBase(archive);
    const auto saveKind = [&](nFieldKind nKind) {
        ForEachField([&](const auto& field) {
            if (bGood && field.nKind == nKind)
                bGood = FieldValue::Write(archive, Self().*field.pMember, field.pName);
        });
    };
    saveKind(nFieldKind::nSaved);
    if (archive.SavesDerivable())
        saveKind(nFieldKind::nDerivable);
    return bGood;
}

template <class T, class Base>
bool ObjectOf<T, Base>::Load(IArchive& archive)
{
    bool bGood = Object::LoadBase(archive);
    const auto loadKind = [&](nFieldKind nKind) {
        ForEachField([&](const auto& field) {
            if (bGood && field.nKind == nKind && archive.GetVersion() >= field.nSince)
                bGood = FieldValue::Read(archive, Self().*field.pMember);
        });
    };
    loadKind(nFieldKind::nSaved);
    if (archive.HasDerivable())
        loadKind(nFieldKind::nDerivable);
    return bGood;
}

template <class T, class Base>
std::size_t ObjectOf<T, Base>::GetSizeInBytes(bool bInMemory, bool bDerivable) const
{
    std::size_t nSize = Object::GetBaseSizeInBytes(bInMemory);
    if (bInMemory)
        nSize += sizeof(T) - sizeof(Object);
    ForEachField([&](const auto& field) {
        if (bInMemory)
            nSize += FieldValue::GetHeapSize(Self().*field.pMember);
        else if (field.nKind == nFieldKind::nSaved || (bDerivable && field.nKind == nFieldKind::nDerivable))
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
    ForEachField([&](const auto& field) {
        if (bEqual && field.nKind == nFieldKind::nSaved)
            bEqual = FieldValue::AreEquivalent(Self().*field.pMember, pOther->*field.pMember, pairing);
    });
    return bEqual;
}
} // namespace QRV
