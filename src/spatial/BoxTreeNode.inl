/// Bodies of BoxTreeNode.h.
#pragma once

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
    struct Extents
    {
        Vector3d own;
        Vector3d united;
    };
    Extents aExtents[kBoxTreeMaxEntries + 1];
    std::uint32_t aCandidates[kBoxTreeMaxEntries + 1];
    std::uint32_t nCandidates = this->m_nCount;
    for (std::uint32_t n = 0; n < nCandidates; ++n)
    {
        const Interval3d& child = this->m_aBoxes[n];
        Interval3d united = child;
        WidenBox(united, box);
        aExtents[n] = {child.upper - child.lower, united.upper - united.lower};
        aCandidates[n] = n;
    }

    const auto KeepLeastGrowth = [&](auto measure)
    {
        double aGrowths[kBoxTreeMaxEntries + 1];
        double dLeast = std::numeric_limits<double>::infinity();
        for (std::uint32_t n = 0; n < nCandidates; ++n)
        {
            const Extents& extents = aExtents[aCandidates[n]];
            aGrowths[n] = measure(extents.united) - measure(extents.own);
            dLeast = std::min(dLeast, aGrowths[n]);
        }
        std::uint32_t nKept = 0;
        for (std::uint32_t n = 0; n < nCandidates; ++n)
        {
            aCandidates[nKept] = aCandidates[n];
            nKept += aGrowths[n] == dLeast;
        }
        nCandidates = nKept;
        return nKept == 1;
    };
    if (!KeepLeastGrowth([](const Vector3d& v) { return v.x * v.y * v.z; }) &&
        !KeepLeastGrowth([](const Vector3d& v) { return v.x * v.y + v.y * v.z + v.z * v.x; }))
        KeepLeastGrowth([](const Vector3d& v) { return v.x + v.y + v.z; });
    return aCandidates[0];
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
