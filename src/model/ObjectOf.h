/// What every object class has in common, derived once from the list of its fields.
#pragma once

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

template <class Owner, class Value, nFieldKind kFieldKind>
struct Field
{
    static constexpr nFieldKind kKind = kFieldKind;

    const char* pName;
    Value Owner::*pMember;
    std::uint64_t nSince = 0; ///< in archives from this version on

    constexpr Field Since(std::uint64_t nVersion) const { return {pName, pMember, nVersion}; }
};

template <class Owner, class Value>
constexpr auto Saved(const char* pName, Value Owner::*pMember)
{
    return Field<Owner, Value, nFieldKind::nSaved>{pName, pMember};
}

template <class Owner, class Value>
constexpr auto Derivable(const char* pName, Value Owner::*pMember)
{
    return Field<Owner, Value, nFieldKind::nDerivable>{pName, pMember};
}

template <class Owner, class Value>
constexpr auto Cached(Value Owner::*pMember)
{
    return Field<Owner, Value, nFieldKind::nCached>{nullptr, pMember};
}

/// Writes the mechanical virtuals of class `T` from `T::Fields()`. `T` states its fields once, in the order of the
/// saved form, gives `kType` and `kName`, and overrides only where its rule differs. `Base` is `Object` or `Attribute`.
/// The bodies stand in ObjectOf.inl: the source of each class includes that, and what its fields point to, and
/// instantiates `ObjectOf<T, Base>`.
template <class T, class Base>
class ObjectOf : public Base
{
public:
    const char* GetName() const override { return T::kName; }
    nObjectType GetType() const override { return T::kType; }

    std::unique_ptr<Object> Clone() const override;
    void Swap(Object& other) noexcept override;
    bool Save(IArchive& archive) const override;
    bool Load(IArchive& archive) override;
    std::size_t GetSizeInBytes(bool bInMemory, bool bDerivable) const override;
    void ReplaceReferences(const ObjectMap& map) override;
    bool IsEquivalent(const Object& other, ObjectPairing& pairing) const override;

protected:
    ObjectOf() = default;
    ObjectOf(const ObjectOf&) = default;

    /// The fields of one kind, without the base.
    template <nFieldKind kKind>
    bool SaveFields(IArchive& archive) const;
    template <nFieldKind kKind>
    bool LoadFields(IArchive& archive);

private:
    T& Self() { return static_cast<T&>(*this); }
    const T& Self() const { return static_cast<const T&>(*this); }

    /// Visits the fields of the base and then those of the class, `visit(field)`.
    template <class Visit>
    static void ForEachField(Visit&& visit);
};
} // namespace QRV
