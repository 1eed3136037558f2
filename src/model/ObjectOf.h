/// What every object class has in common, derived once from the list of its fields.
#pragma once

#include "model/FieldValue.h"
#include "model/Object.h"

#include <tuple>

namespace QRV
{
/// How a field takes part in saving and comparing.
enum class nFieldKind
{
    nSaved,     ///< always in an archive
    nDerivable, ///< in an archive that keeps derivable data
    nCached     ///< never saved or compared
};

template <class Owner, class Value>
struct Field
{
    const char* pName;
    Value Owner::*pMember;
    nFieldKind nKind;
    std::uint64_t nSince = 0; ///< in archives from this version on

    constexpr Field Since(std::uint64_t nVersion) const { return {pName, pMember, nKind, nVersion}; }
};

template <class Owner, class Value>
constexpr auto Saved(const char* pName, Value Owner::*pMember)
{
    return Field<Owner, Value>{pName, pMember, nFieldKind::nSaved};
}

template <class Owner, class Value>
constexpr auto Derivable(const char* pName, Value Owner::*pMember)
{
    return Field<Owner, Value>{pName, pMember, nFieldKind::nDerivable};
}

template <class Owner, class Value>
constexpr auto Cached(Value Owner::*pMember)
{
    return Field<Owner, Value>{nullptr, pMember, nFieldKind::nCached};
}

/// Writes the mechanical virtuals of class `T` from `T::Fields()`. `T` states its fields once, in the order of the
/// saved form, gives `kType` and `kName`, and overrides only where its rule differs. `Base` is `Object` or `Attribute`.
template <class T, class Base>
class ObjectOf : public Base
{
public:
    const char* GetName() const override { return T::kName; }
    nObjectType GetType() const override { return T::kType; }

    std::unique_ptr<Object> Clone() const override { return std::unique_ptr<Object>(new T(Self())); }
    void Swap(Object& other) noexcept override;
    bool Save(IArchive& archive) const override;
    bool Load(IArchive& archive) override;
    std::size_t GetSizeInBytes(bool bInMemory, bool bDerivable) const override;
    void ReplaceReferences(const ObjectMap& map) override;
    bool IsEquivalent(const Object& other, ObjectPairing& pairing) const override;

protected:
    ObjectOf() = default;
    ObjectOf(const ObjectOf&) = default;

private:
    T& Self() { return static_cast<T&>(*this); }
    const T& Self() const { return static_cast<const T&>(*this); }

    /// Visits the fields of the base and then those of the class, `visit(field)`.
    template <class Visit>
    static void ForEachField(Visit&& visit);
};
} // namespace QRV

#include "model/ObjectOf.inl"
