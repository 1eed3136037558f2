/// The bodies of SearchedOf, for the source of each class.
#pragma once

#include "history/History.h"
#include "model/ObjectOf.inl"
#include "model/SearchedOf.h"

namespace QRV
{
template <class T, class Base, class Order>
bool SearchedOf<T, Base, Order>::AddToSearch()
{
    this->GetHistory()->template GetSearchSet<T>().Insert(static_cast<T&>(*this), m_place);
    return true;
}

template <class T, class Base, class Order>
bool SearchedOf<T, Base, Order>::RemoveFromSearch()
{
    return this->GetHistory()->template GetSearchSet<T>().Remove(static_cast<T&>(*this), m_place);
}

template <class T, class Base, class Order>
bool SearchedOf<T, Base, Order>::IsInSearch() const
{
    const History* pHistory = this->GetHistory();
    return pHistory && pHistory->template GetSearchSet<T>().Contains(static_cast<const T&>(*this));
}

template <class T, class Base, class Order>
bool SearchedOf<T, Base, Order>::AssignKey(std::string& sMember, const std::string& sValue)
{
    if (sMember == sValue)
        return false;
    std::string sCopy = sValue; // nothing may fail while the object is out of the set
    this->RecordChange();
    const bool bWasInSearch = RemoveFromSearch();
    sMember.swap(sCopy);
    if (bWasInSearch)
        AddToSearch();
    return true;
}
} // namespace QRV
