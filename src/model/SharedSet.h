/// Ordered sets whose copies share what did not change between them.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace QRV
{
/// A set ordered by the keys of its elements, unique 64-bit numbers. A copy costs one reference; an insertion or
/// erasure copies the few nodes on the way to the element that others share, and changes those in place that nobody
/// else holds. A call that throws leaves the set as it was.
///
/// The nodes form a tree over the digits of the key, five bits each, lowest digit at the leaves.
template <class T, class KeyOf>
class SharedSet
{
    struct Node
    {
        std::uint32_t nPresent = 0;                   ///< bit n: digit n has an entry
        std::size_t nCount = 0;                       ///< elements below
        std::vector<std::shared_ptr<Node>> aChildren; ///< above the lowest level
        std::vector<T> aElements;                     ///< at the lowest level

        std::size_t GetPlace(unsigned nDigit) const { return std::size_t(std::popcount(nPresent & ((1u << nDigit) - 1))); }
        bool Has(unsigned nDigit) const { return (nPresent >> nDigit) & 1u; }
    };
    using NodePointer = std::shared_ptr<Node>;

    static constexpr unsigned kDigitBits = 5;
    static constexpr unsigned kMaxLevels = 13; ///< 64 bits in digits of five

public:
    using value_type = T;

    /// In order of key.
    class const_iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = const T*;
        using reference = const T&;

        const_iterator() = default;
        explicit const_iterator(const Node* pRoot, unsigned nLevels)
        {
            if (pRoot)
                Descend(pRoot, nLevels);
        }

        reference operator*() const { return Leaf().pNode->aElements[Leaf().nPlace]; }
        pointer operator->() const { return &**this; }
        const_iterator& operator++()
        {
            ++m_aWay[m_nDepth - 1].nPlace;
            while (m_nDepth > 0 && IsThrough(m_aWay[m_nDepth - 1]))
                if (--m_nDepth > 0)
                    ++m_aWay[m_nDepth - 1].nPlace;
            if (m_nDepth > 0 && !m_aWay[m_nDepth - 1].pNode->aChildren.empty())
            {
                const Step& step = m_aWay[m_nDepth - 1];
                Descend(step.pNode->aChildren[step.nPlace].get(), m_nLevels - m_nDepth);
            }
            return *this;
        }
        const_iterator operator++(int)
        {
            const_iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const const_iterator& other) const
        {
            if (m_nDepth == 0 || other.m_nDepth == 0)
                return m_nDepth == other.m_nDepth;
            return &**this == &*other;
        }

    private:
        struct Step
        {
            const Node* pNode;
            std::size_t nPlace;
        };

        const Step& Leaf() const { return m_aWay[m_nDepth - 1]; }
        static bool IsThrough(const Step& step)
        {
            return step.nPlace >= step.pNode->aChildren.size() + step.pNode->aElements.size();
        }
        /// Goes down to the first element below `pNode`, which has so many levels.
        void Descend(const Node* pNode, unsigned nLevels)
        {
            if (m_nDepth == 0)
                m_nLevels = nLevels;
            for (;; pNode = pNode->aChildren.front().get())
            {
                m_aWay[m_nDepth++] = {pNode, 0};
                if (pNode->aChildren.empty())
                    return;
            }
        }

        std::array<Step, kMaxLevels> m_aWay{};
        unsigned m_nDepth = 0;
        unsigned m_nLevels = 0;
    };
    using iterator = const_iterator;

    SharedSet() = default;
    template <class Iterator>
    SharedSet(Iterator itBegin, Iterator itEnd)
    {
        for (; itBegin != itEnd; ++itBegin)
            Insert(*itBegin);
    }

    std::size_t size() const { return m_pRoot ? m_pRoot->nCount : 0; }
    bool empty() const { return size() == 0; }
    const_iterator begin() const { return empty() ? const_iterator() : const_iterator(m_pRoot.get(), m_nLevels); }
    const_iterator end() const { return const_iterator(); }
    const T& front() const { return *begin(); }
    void clear() noexcept
    {
        m_pRoot.reset();
        m_nLevels = 0;
    }
    void swap(SharedSet& other) noexcept
    {
        m_pRoot.swap(other.m_pRoot);
        std::swap(m_nLevels, other.m_nLevels);
    }
    friend void swap(SharedSet& a, SharedSet& b) noexcept { a.swap(b); }

    bool Contains(std::uint64_t nKey) const { return Find(nKey) != nullptr; }
    /// Null when there is no element of the key.
    const T* Find(std::uint64_t nKey) const
    {
        if (!Covers(nKey))
            return nullptr;
        const Node* pNode = m_pRoot.get();
        for (unsigned nLevel = m_nLevels; nLevel-- > 0;)
        {
            const unsigned nDigit = GetDigit(nKey, nLevel);
            if (!pNode->Has(nDigit))
                return nullptr;
            if (nLevel == 0)
                return &pNode->aElements[pNode->GetPlace(nDigit)];
            pNode = pNode->aChildren[pNode->GetPlace(nDigit)].get();
        }
        return nullptr;
    }

    /// False when the key is there already.
    bool Insert(const T& element)
    {
        const std::uint64_t nKey = KeyOf{}(element);
        if (Contains(nKey))
            return false;
        NodePointer pRoot = m_pRoot ? m_pRoot : std::make_shared<Node>();
        unsigned nLevels = m_nLevels ? m_nLevels : 1;
        while (nLevels < kMaxLevels && (nKey >> (nLevels * kDigitBits)) != 0)
        {
            auto pAbove = std::make_shared<Node>();
            if (pRoot->nCount > 0)
            {
                pAbove->nPresent = 1;
                pAbove->nCount = pRoot->nCount;
                pAbove->aChildren.push_back(pRoot);
            }
            pRoot = std::move(pAbove);
            ++nLevels;
        }
        NodePointer pChanged = WithElement(pRoot, nKey, nLevels - 1, element);
        m_pRoot = std::move(pChanged);
        m_nLevels = nLevels;
        return true;
    }

    /// False when there is no element of the key.
    bool Erase(std::uint64_t nKey)
    {
        if (!Contains(nKey))
            return false;
        m_pRoot = WithoutElement(m_pRoot, nKey, m_nLevels - 1);
        if (!m_pRoot)
            m_nLevels = 0;
        return true;
    }

    friend bool operator==(const SharedSet& a, const SharedSet& b)
    {
        if (a.m_pRoot == b.m_pRoot)
            return true;
        if (a.size() != b.size())
            return false;
        auto itB = b.begin();
        for (const T& element : a)
            if (!(element == *itB++))
                return false;
        return true;
    }

    /// Heap bytes, nodes that several sets hold counted in equal parts.
    std::size_t GetSizeInBytes() const { return m_pRoot ? GetSizeInBytes(m_pRoot) : 0; }

private:
    static unsigned GetDigit(std::uint64_t nKey, unsigned nLevel) { return unsigned(nKey >> (nLevel * kDigitBits)) & 31u; }
    bool Covers(std::uint64_t nKey) const
    {
        return m_pRoot && (m_nLevels == kMaxLevels || (nKey >> (m_nLevels * kDigitBits)) == 0);
    }

    // Changed nodes are new; what is not on the way to the element is shared with the old ones. At most 13 levels deep.
    static NodePointer WithElement(const NodePointer& pOld, std::uint64_t nKey, unsigned nLevel, const T& element)
    {
        auto pNode = std::make_shared<Node>(*pOld);
        const unsigned nDigit = GetDigit(nKey, nLevel);
        const auto nPlace = std::ptrdiff_t(pNode->GetPlace(nDigit));
        if (nLevel == 0)
            pNode->aElements.insert(pNode->aElements.begin() + nPlace, element);
        else if (pNode->Has(nDigit))
            pNode->aChildren[std::size_t(nPlace)] = WithElement(pNode->aChildren[std::size_t(nPlace)], nKey, nLevel - 1, element);
        else
            pNode->aChildren.insert(pNode->aChildren.begin() + nPlace,
                                    WithElement(std::make_shared<Node>(), nKey, nLevel - 1, element));
        pNode->nPresent |= 1u << nDigit;
        ++pNode->nCount;
        return pNode;
    }

    /// Null when nothing is left.
    static NodePointer WithoutElement(const NodePointer& pOld, std::uint64_t nKey, unsigned nLevel)
    {
        if (pOld->nCount == 1)
            return nullptr;
        auto pNode = std::make_shared<Node>(*pOld);
        const unsigned nDigit = GetDigit(nKey, nLevel);
        const auto nPlace = std::ptrdiff_t(pNode->GetPlace(nDigit));
        --pNode->nCount;
        if (nLevel == 0)
        {
            pNode->aElements.erase(pNode->aElements.begin() + nPlace);
            pNode->nPresent &= ~(1u << nDigit);
        }
        else if (NodePointer pChild = WithoutElement(pNode->aChildren[std::size_t(nPlace)], nKey, nLevel - 1))
            pNode->aChildren[std::size_t(nPlace)] = std::move(pChild);
        else
        {
            pNode->aChildren.erase(pNode->aChildren.begin() + nPlace);
            pNode->nPresent &= ~(1u << nDigit);
        }
        return pNode;
    }

    static std::size_t GetSizeInBytes(const NodePointer& pNode)
    {
        std::size_t nSize = sizeof(Node) + pNode->aChildren.capacity() * sizeof(NodePointer) + pNode->aElements.capacity() * sizeof(T);
        for (const NodePointer& pChild : pNode->aChildren)
            nSize += GetSizeInBytes(pChild);
        return nSize / std::size_t(pNode.use_count());
    }

    NodePointer m_pRoot;
    unsigned m_nLevels = 0;
};
} // namespace QRV
