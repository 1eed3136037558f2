/// Objects that others belong to: materials, layers and levels.
#pragma once

#include "model/Attribute.h"
#include "model/NamedObjectOf.h"

namespace QRV
{
/// The attribute by which objects belong to a target: they are its owners, and so is the target itself, which keeps the
/// attribute alive. `T` gives `kBadTarget`, the code of the audit, and names the target in its list of fields.
template <class T, class Target>
class JoinAttributeOf : public ObjectOf<T, Attribute>
{
public:
    /// How many attributes a target has at most, each for another side of what it is put on.
    static constexpr std::size_t kSides = 1;
    bool IsForBack() const { return false; }

    Target* GetTarget() const { return m_pTarget; }

    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    /// The attribute of what counts as the target there.
    Object* FindEquivalent(History& history) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

protected:
    explicit JoinAttributeOf(Target& target) : m_pTarget(&target) {}
    JoinAttributeOf(const JoinAttributeOf&) = default;

    /// The other's target when that is another one; otherwise null.
    const Target* GetOtherTarget(const Attribute& other) const;

    Target* m_pTarget;
};

/// A named object that others join. It carries the one attribute (of class `A`) for each side that is in use, made when
/// first asked for, and takes no other attribute of that class. `T` gives `kManyAttributes` and `kBadAttribute`, codes
/// of the audit.
template <class T, class A, class Order = ByObjectID>
class JoinableOf : public NamedObjectOf<T, Order>
{
public:
    /// Null while nothing has asked for it.
    A* FindJoinAttribute(bool bForBack = false) const;
    A& GetJoinAttribute(bool bForBack = false);

    bool AcceptsAttribute(const Attribute& attribute) const override;
    /// What belongs here stays and loses the attribute.
    void DeleteSelf() override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

protected:
    JoinableOf() = default;
    explicit JoinableOf(const std::string& sName) : NamedObjectOf<T, Order>(sName) {}
    JoinableOf(const JoinableOf&) = default;

private:
    std::vector<Attribute*> GetJoinAttributes() const;
};
} // namespace QRV
