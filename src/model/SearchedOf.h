/// Objects that stand in a set of their History.
#pragma once

#include "history/SearchSet.h"
#include "model/ObjectOf.h"

#include <string>

namespace QRV
{
/// An object of a class whose live objects a History keeps in a set, by `Order` of their content or by id. The bodies
/// stand in SearchedOf.inl; see ObjectOf.
template <class T, class Base, class Order = ByObjectID>
class SearchedOf : public ObjectOf<T, Base>
{
public:
    /// The set of all of the class.
    using All = SearchSet<T, Order>;

    bool AddToSearch() override;
    bool RemoveFromSearch() override;
    bool IsInSearch() const;

protected:
    SearchedOf() = default;
    SearchedOf(const SearchedOf&) = default;

    /// As Assign, for what the place in the set rests on.
    bool AssignKey(std::string& sMember, const std::string& sValue);

private:
    typename All::Place m_place;
};
} // namespace QRV
