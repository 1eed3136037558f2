/// Sets in which a History keeps the objects of a class.
#pragma once

#include <cstddef>
#include <set>
#include <utility>

namespace QRV
{
/// The live objects of one class in an order of their own; `Order` tells any two of them apart.
///
/// An object is out of the set while the values change that its place rests on. It keeps its node meanwhile: coming
/// back asks for no memory, so undo cannot fail.
template <class T, class Order>
class SearchSet
{
    using Elements = std::set<T*, Order>;

public:
    /// What an object keeps while it is out of the set. A copy of the object keeps nothing.
    class Place
    {
    public:
        Place() = default;
        Place(const Place&) noexcept {}
        Place& operator=(const Place&) = delete;

    private:
        friend class SearchSet;
        typename Elements::node_type m_node;
    };

    auto begin() const { return m_elements.begin(); }
    auto end() const { return m_elements.end(); }
    std::size_t size() const { return m_elements.size(); }
    /// The first element that does not stand before the key.
    template <class Key>
    auto GetLowerBound(const Key& key) const
    {
        return m_elements.lower_bound(key);
    }
    bool Contains(const T& element) const { return Find(element) != m_elements.end(); }

    /// Throws only for want of memory, when the object is here for the first time.
    void Insert(T& element, Place& place)
    {
        if (place.m_node)
            m_elements.insert(std::move(place.m_node));
        else
            m_elements.insert(&element);
    }
    /// False when it is not here.
    bool Remove(const T& element, Place& place) noexcept
    {
        const auto it = Find(element);
        if (it == m_elements.end())
            return false;
        place.m_node = m_elements.extract(it);
        return true;
    }

private:
    auto Find(const T& element) const
    {
        const auto it = m_elements.find(const_cast<T*>(&element));
        return it != m_elements.end() && *it == &element ? it : m_elements.end();
    }

    Elements m_elements;
};
} // namespace QRV
