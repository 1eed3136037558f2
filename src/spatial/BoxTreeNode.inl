/// Bodies of BoxTreeNode.h.
#pragma once

#include <bit>
#include <limits>
#include <type_traits>
#include <utility>

namespace QRV
{
template <class T>
void BoxTreeNode<T>::SetEntry(std::uint32_t n, const BoxTreeEntry<T>& entry)
{
    m_aBoxes[n] = entry.box;
    m_aLinks[n] = entry.link;
    if (!IsLeaf())
        entry.link.pChild->m_pParent = &AsInterior(*this);
}

template <class T>
void BoxTreeNode<T>::Append(const BoxTreeEntry<T>& entry)
{
    SetEntry(m_nCount++, entry);
}

template <class T>
void BoxTreeNode<T>::RemoveAt(std::uint32_t n)
{
    std::copy(m_aBoxes + n + 1, m_aBoxes + m_nCount, m_aBoxes + n);
    std::copy(m_aLinks + n + 1, m_aLinks + m_nCount, m_aLinks + n);
    --m_nCount;
}

template <class T>
Interval3d BoxTreeNode<T>::ComputeBox() const
{
    Interval3d box;
    for (std::uint32_t n = 0; n < m_nCount; ++n)
        WidenBox(box, m_aBoxes[n]);
    return box;
}

template <class T>
std::uint32_t BoxTreeLeafNode<T>::FindElement(const T* pElement) const
{
    std::uint32_t n = 0;
    while (n < this->m_nCount && this->m_aLinks[n].pElement != pElement)
        ++n;
    return n;
}

template <class T>
std::uint32_t BoxTreeInteriorNode<T>::FindChild(const BoxTreeNode<T>& child) const
{
    std::uint32_t n = 0;
    while (this->m_aLinks[n].pChild != &child)
        ++n;
    return n;
}

template <class T>
std::uint32_t BoxTreeInteriorNode<T>::ChooseChild(const Interval3d& box) const
{
    constexpr auto GetVolume = [](const Vector3d& v) { return v.x * v.y * v.z; };
    constexpr auto GetSurface = [](const Vector3d& v) { return v.x * v.y + v.y * v.z + v.z * v.x; };
    double aByVolume[kBoxTreeMaxEntries + 1];
    double aBySurface[kBoxTreeMaxEntries + 1];
    double aByPerimeter[kBoxTreeMaxEntries + 1];
    constexpr double kEndless = std::numeric_limits<double>::infinity();
    double dLeast = kEndless;
    for (std::uint32_t n = 0; n < this->m_nCount; ++n)
    {
        const Interval3d& child = this->m_aBoxes[n];
        Interval3d united = child;
        WidenBox(united, box);
        const Vector3d before = child.upper - child.lower;
        const Vector3d after = united.upper - united.lower;
        aByVolume[n] = GetVolume(after) - GetVolume(before);
        aBySurface[n] = GetSurface(after) - GetSurface(before);
        aByPerimeter[n] = (after.x + after.y + after.z) - (before.x + before.y + before.z);
        dLeast = std::min(dLeast, aByVolume[n]);
    }

    // A tie goes from one growth to the next; what is out of it counts as endless.
    std::uint32_t nLeast = 0; // bit n: child n is one of the least
    for (double* pGrowths : {aByVolume, aBySurface, aByPerimeter})
    {
        if (nLeast != 0)
        {
            dLeast = kEndless;
            for (std::uint32_t n = 0; n < this->m_nCount; ++n)
            {
                pGrowths[n] = (nLeast >> n & 1) != 0 ? pGrowths[n] : kEndless;
                dLeast = std::min(dLeast, pGrowths[n]);
            }
        }
        nLeast = 0;
        for (std::uint32_t n = 0; n < this->m_nCount; ++n)
            nLeast |= std::uint32_t(pGrowths[n] == dLeast) << n;
        if ((nLeast & (nLeast - 1)) == 0)
            break;
    }
    return std::uint32_t(std::countr_zero(nLeast));
}

template <class T>
BoxTreeSpareNodes<T>& BoxTreeSpareNodes<T>::operator=(BoxTreeSpareNodes&& other) noexcept
{
    BoxTreeSpareNodes taken(std::move(other));
    Swap(taken);
    return *this;
}

template <class T>
void BoxTreeSpareNodes<T>::Swap(BoxTreeSpareNodes& other) noexcept
{
    std::swap(m_pFirst, other.m_pFirst);
    std::swap(m_nCount, other.m_nCount);
}

template <class T>
bool BoxTreeSpareNodes<T>::FillUpTo(std::size_t nCount) noexcept
{
    while (m_nCount < nCount)
    {
        void* pMemory = ::operator new(sizeof(BoxTreeNode<T>), std::nothrow);
        if (!pMemory)
            return false;
        Push(pMemory);
    }
    return true;
}

template <class T>
void BoxTreeSpareNodes<T>::TrimTo(std::size_t nCount) noexcept
{
    while (m_nCount > nCount)
        ::operator delete(Pop());
}

template <class T>
BoxTreeNode<T>* BoxTreeSpareNodes<T>::Take(std::uint32_t nLevel) noexcept
{
    static_assert(sizeof(BoxTreeLeafNode<T>) == sizeof(BoxTreeNode<T>) &&
                  sizeof(BoxTreeInteriorNode<T>) == sizeof(BoxTreeNode<T>));
    static_assert(std::is_trivially_destructible_v<BoxTreeNode<T>>);
    void* pMemory = Pop();
    if (nLevel == 0)
        return ::new (pMemory) BoxTreeLeafNode<T>(nLevel);
    return ::new (pMemory) BoxTreeInteriorNode<T>(nLevel);
}

template <class T>
void BoxTreeSpareNodes<T>::Return(BoxTreeNode<T>* pNode, std::size_t nKept) noexcept
{
    if (m_nCount < nKept)
        Push(pNode);
    else
        ::operator delete(pNode);
}

template <class T>
void BoxTreeSpareNodes<T>::Push(void* pMemory) noexcept
{
    m_pFirst = ::new (pMemory) Spare{m_pFirst};
    ++m_nCount;
}

template <class T>
void* BoxTreeSpareNodes<T>::Pop() noexcept
{
    Spare* pSpare = m_pFirst;
    m_pFirst = pSpare->pNext;
    --m_nCount;
    return pSpare;
}
} // namespace QRV
