/// The bodies of NamedObjectOf, for the source of each class.
#pragma once

#include "model/Finding.h"
#include "model/NamedObjectOf.h"
#include "model/SearchedOf.inl"

namespace QRV
{
template <class T, class Order>
Object* NamedObjectOf<T, Order>::FindEquivalent(History& history) const
{
    for (T* pOther : history.GetSearchSet<T>())
        if (pOther != this && static_cast<const T*>(this)->CountsAs(*pOther))
            return pOther;
    return nullptr;
}

template <class T, class Order>
std::size_t NamedObjectOf<T, Order>::CheckValidity(std::vector<Result>& aResults) const
{
    const std::size_t nFindings = this->IsInSearch() ? 0 : AddFinding(aResults, T::kNotInSet, this);
    return nFindings + Object::CheckValidity(aResults);
}
} // namespace QRV
