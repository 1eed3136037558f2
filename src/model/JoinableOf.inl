/// The bodies of JoinableOf and JoinAttributeOf, for the sources of the classes.
#pragma once

#include "model/JoinableOf.h"
#include "model/NamedObjectOf.inl"

namespace QRV
{
// --- the attribute

template <class T, class Target>
void JoinAttributeOf<T, Target>::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    Object::GetChildren(aChildren, seen, bOwnedOnly);
    if (!bOwnedOnly && m_pTarget && seen.insert(m_pTarget).second)
        aChildren.push_back(m_pTarget);
}

template <class T, class Target>
Object* JoinAttributeOf<T, Target>::FindEquivalent(History& history) const
{
    auto* pTarget = m_pTarget ? static_cast<Target*>(m_pTarget->FindEquivalent(history)) : nullptr;
    return pTarget ? &pTarget->GetJoinAttribute(static_cast<const T*>(this)->IsForBack()) : nullptr;
}

template <class T, class Target>
std::size_t JoinAttributeOf<T, Target>::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    if (!m_pTarget || !m_pTarget->HasAttribute(this))
        nFindings += AddFinding(aResults, T::kBadTarget, this, m_pTarget);
    return nFindings + Attribute::CheckValidity(aResults);
}

template <class T, class Target>
const Target* JoinAttributeOf<T, Target>::GetOtherTarget(const Attribute& other) const
{
    const auto* pOther = dynamic_cast<const T*>(&other);
    return pOther && pOther->m_pTarget != m_pTarget ? pOther->m_pTarget : nullptr;
}

// --- the target

template <class T, class A, class Order>
std::vector<Attribute*> JoinableOf<T, A, Order>::GetJoinAttributes() const
{
    std::vector<Attribute*> aAttributes;
    this->GetAttributesOfType(A::kType, aAttributes);
    return aAttributes;
}

template <class T, class A, class Order>
A* JoinableOf<T, A, Order>::FindJoinAttribute(bool bForBack) const
{
    for (Attribute* pAttribute : GetJoinAttributes())
        if (auto* pJoin = dynamic_cast<A*>(pAttribute); pJoin && pJoin->IsForBack() == bForBack)
            return pJoin;
    return nullptr;
}

template <class T, class A, class Order>
A& JoinableOf<T, A, Order>::GetJoinAttribute(bool bForBack)
{
    if (A* pFound = FindJoinAttribute(bForBack))
        return *pFound;
    A& attribute = this->GetHistory()->template Create<A>(static_cast<T&>(*this));
    if constexpr (A::kSides > 1)
        attribute.SetForBack(bForBack);
    this->AddAttribute(&attribute, true);
    return attribute;
}

template <class T, class A, class Order>
bool JoinableOf<T, A, Order>::AcceptsAttribute(const Attribute& attribute) const
{
    if (attribute.GetType() != A::kType)
        return true;
    const auto* pJoin = dynamic_cast<const A*>(&attribute);
    return pJoin && pJoin->GetTarget() == this && GetJoinAttributes().size() < A::kSides &&
           !FindJoinAttribute(pJoin->IsForBack());
}

template <class T, class A, class Order>
void JoinableOf<T, A, Order>::DeleteSelf()
{
    for (Attribute* pAttribute : GetJoinAttributes())
        pAttribute->Delete();
    Object::DeleteSelf();
}

template <class T, class A, class Order>
std::size_t JoinableOf<T, A, Order>::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    const std::vector<Attribute*> aAttributes = GetJoinAttributes();
    if (aAttributes.size() > A::kSides)
        nFindings += AddFinding(aResults, T::kManyAttributes, this);
    for (Attribute* pAttribute : aAttributes)
    {
        const auto* pJoin = dynamic_cast<const A*>(pAttribute);
        const bool bGood =
            pJoin && pJoin->GetTarget() == this && (A::kSides == 1 || FindJoinAttribute(pJoin->IsForBack()) == pJoin);
        if (!bGood)
            nFindings += AddFinding(aResults, T::kBadAttribute, this, pAttribute);
    }
    return nFindings + NamedObjectOf<T, Order>::CheckValidity(aResults);
}
} // namespace QRV
