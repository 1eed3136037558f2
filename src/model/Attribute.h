/// Objects that hang on other objects, and the table in which an owner keeps them.
#pragma once

#include "model/ObjectOf.h"
#include "model/SharedSet.h"

#include <map>

namespace QRV
{
/// The key of a set of plain ids.
struct IdentityKey
{
    std::uint64_t operator()(std::uint64_t nID) const { return nID; }
};

using SharedIDSet = SharedSet<std::uint64_t, IdentityKey>;

/// The attributes of one object, by type; within a type in order of insertion, each once.
class AttributeTable
{
public:
    std::map<nObjectType, std::vector<Attribute*>> m_aByType;
};

/// An object carried by one or more owners of the same History.
///
/// The link runs both ways: the owner's table holds the attribute, `m_aOwnerIDs` the owner's id. An attribute
/// dies with its last owner. The owner set is never saved: it is rebuilt from the owners' tables.
class Attribute : public Object
{
public:
    bool Delete() override;
    bool IsNonOwned() const override { return m_aOwnerIDs.empty(); }
    void Changed(unsigned nFlags) override;
    std::size_t GetTopOwners(std::vector<Object*>& aOwners) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;
    nCopyBehavior GetCopyRule() const override { return nCopyShared; }

    /// A part split off an owner takes this attribute along.
    virtual bool IsInherited() const { return true; }
    /// Describes the exact shape of its owners.
    virtual bool IsAnalytic() const { return false; }
    /// May stay on the object made of `a` and `b`.
    virtual bool CanMerge(const Object& /*a*/, const Object& /*b*/) const { return true; }
    /// Of the same type, and different enough for both to stand on one object.
    virtual bool ConflictsWith(const Attribute& /*other*/) const { return false; }
    /// Moves an analytic surface by a distance.
    virtual bool OffsetBy(double /*dDistance*/) { return false; }
    /// Nearest point of the analytic surface.
    virtual bool ProjectPoint(const Point3d& /*p*/, Point3d& /*projected*/) const { return false; }
    /// New curve attribute for the section of the surface with a plane, or null.
    virtual Attribute* GetPlaneSection(const Plane& /*plane*/) const { return nullptr; }

    const SharedIDSet& GetOwnerIDs() const { return m_aOwnerIDs; }
    bool HasOwner(const Object& owner) const { return m_aOwnerIDs.Contains(owner.GetID()); }
    /// False when the id is already there.
    bool AddOwner(const Object& owner);
    /// False when `owner` is none. The attribute deletes itself with the last one, which `bDeleted` tells.
    bool RemoveOwner(const Object& owner, bool& bDeleted);

    static constexpr auto Fields() { return std::make_tuple(Cached(&Attribute::m_aOwnerIDs)); }

protected:
    Attribute() = default;
    Attribute(const Attribute&) = default;

    SharedIDSet m_aOwnerIDs;
};
} // namespace QRV
