/// Lists of what stands at one place, which are short.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

namespace QRV
{
/// A list of a moment whose first elements lie in itself, so that most lists ask for no memory. Holds pointers, ids and
/// the like; grows as a std::vector does, and throws std::bad_alloc with nothing changed.
template <class T, std::size_t kOwnRoom = 16>
class ShortList
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_default_constructible_v<T>);

public:
    ShortList() = default;
    ShortList(const ShortList&) = delete;
    ShortList& operator=(const ShortList&) = delete;

    void push_back(T value)
    {
        if (m_nSize == m_nCapacity)
            Grow();
        m_pElements[m_nSize++] = value;
    }
    void pop_back() { --m_nSize; }
    void clear() { m_nSize = 0; }
    template <class Predicate>
    void EraseIf(Predicate predicate)
    {
        m_nSize = std::size_t(std::remove_if(begin(), end(), predicate) - begin());
    }

    std::size_t size() const { return m_nSize; }
    bool empty() const { return m_nSize == 0; }
    T* begin() { return m_pElements; }
    T* end() { return m_pElements + m_nSize; }
    const T* begin() const { return m_pElements; }
    const T* end() const { return m_pElements + m_nSize; }
    T& operator[](std::size_t n) { return m_pElements[n]; }
    const T& operator[](std::size_t n) const { return m_pElements[n]; }
    T& front() { return m_pElements[0]; }
    const T& front() const { return m_pElements[0]; }
    T& back() { return m_pElements[m_nSize - 1]; }
    const T& back() const { return m_pElements[m_nSize - 1]; }

private:
    void Grow()
    {
        std::unique_ptr<T[]> pLarger(new T[2 * m_nCapacity]);
        std::copy(begin(), end(), pLarger.get());
        m_pLarger = std::move(pLarger);
        m_pElements = m_pLarger.get();
        m_nCapacity *= 2;
    }

    T m_aOwn[kOwnRoom];
    T* m_pElements = m_aOwn;
    std::size_t m_nSize = 0;
    std::size_t m_nCapacity = kOwnRoom;
    std::unique_ptr<T[]> m_pLarger; ///< once the room in the list itself is used up
};

/// Makes room for a few elements at once in a list that has none, instead of for one, two and four, one after another.
/// For lists of a moment: in those that stay the room would be lost.
template <class T>
void ReserveFew(std::vector<T>& aList)
{
    constexpr std::size_t kFew = 8;
    if (aList.capacity() == 0)
        aList.reserve(kFew);
}

/// It has that room of its own.
template <class T, std::size_t kOwnRoom>
void ReserveFew(ShortList<T, kOwnRoom>&)
{
}
} // namespace QRV
