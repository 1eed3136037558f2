/// Ordered sets whose copies share what did not change between them.
#pragma once

#include "model/SharedSetNode.h"

#include <array>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace QRV
{
/// A set ordered by the keys of its elements: `KeyOf{}(element)`, unique 64-bit numbers. A copy costs one reference; an
/// insertion or erasure copies the few nodes on the way to the element that others share, and changes those in place
/// that nobody else holds. A call that throws leaves the set as it was.
///
/// The keys are asked of the elements and stored nowhere, so they may change while a set stands, provided that their
/// order stays: the ids of all loaded objects may move up alike.
template <class T, class KeyOf>
class SharedSet
{
    using Node = SharedSetNode<T>;

public:
    using value_type = T;
    using size_type = std::size_t;

    /// In order of key. An insertion or erasure in the set makes its iterators void; those of its copies stay.
    class const_iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = const T*;
        using reference = const T&;

        const_iterator() = default;
        explicit const_iterator(const Node* pRoot) : m_pRoot(pRoot), m_pLeaf(pRoot ? GetFirstLeaf(pRoot) : nullptr) {}

        reference operator*() const { return m_pLeaf->GetElement(m_nPlace); }
        pointer operator->() const { return &**this; }
        const_iterator& operator++()
        {
            if (++m_nPlace == m_pLeaf->GetCount())
            {
                m_pLeaf = GetLeafBehind(m_pRoot, KeyOf{}(m_pLeaf->GetElement(m_nPlace - 1)));
                m_nPlace = 0;
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
            return m_pLeaf == other.m_pLeaf && m_nPlace == other.m_nPlace;
        }

    private:
        const Node* m_pRoot = nullptr;
        const Node* m_pLeaf = nullptr; ///< null behind the last element
        unsigned m_nPlace = 0;
    };
    using iterator = const_iterator;

    SharedSet() noexcept = default;
    template <class Iterator>
    SharedSet(Iterator itBegin, Iterator itEnd) : SharedSet() // delegates, so that a throw frees what was inserted
    {
        for (; itBegin != itEnd; ++itBegin)
            Insert(*itBegin);
    }
    SharedSet(std::initializer_list<T> aElements) : SharedSet(aElements.begin(), aElements.end()) {}
    SharedSet(const SharedSet& other) noexcept : m_pRoot(other.m_pRoot), m_nSize(other.m_nSize)
    {
        Node::Retain(m_pRoot);
    }
    SharedSet(SharedSet&& other) noexcept { swap(other); }
    SharedSet& operator=(SharedSet other) noexcept
    {
        swap(other);
        return *this;
    }
    ~SharedSet() { Node::Release(m_pRoot); }

    std::size_t size() const { return m_nSize; }
    bool empty() const { return m_nSize == 0; }
    const_iterator begin() const { return const_iterator(m_pRoot); }
    const_iterator end() const { return const_iterator(); }
    /// Of a set that is not empty.
    const T& front() const { return GetFirstLeaf(m_pRoot)->GetElement(0); }
    const T& back() const;
    void clear() noexcept { SharedSet().swap(*this); }
    void swap(SharedSet& other) noexcept
    {
        std::swap(m_pRoot, other.m_pRoot);
        std::swap(m_nSize, other.m_nSize);
    }
    friend void swap(SharedSet& a, SharedSet& b) noexcept { a.swap(b); }

    bool Contains(std::uint64_t nKey) const { return Find(nKey) != nullptr; }
    /// Null when there is no element of the key.
    const T* Find(std::uint64_t nKey) const;
    /// False when the key is there already.
    bool Insert(const T& element);
    /// False when there is no element of the key.
    bool Erase(std::uint64_t nKey);

    friend bool operator==(const SharedSet& a, const SharedSet& b)
    {
        return a.m_pRoot == b.m_pRoot || (a.m_nSize == b.m_nSize && std::equal(a.begin(), a.end(), b.begin()));
    }

    /// Heap bytes. Nodes that several sets hold count in equal parts, at the highest node that is shared.
    std::size_t GetSizeInBytes() const { return m_pRoot ? GetShareInBytes(*m_pRoot) : 0; }

private:
    /// More levels than memory can fill.
    static constexpr unsigned kMaxLevels = 16;
    /// Neighbours that together have no more entries become one node. Below the capacity, so that insertions and
    /// erasures in turn don't merge and split each time.
    static constexpr unsigned kMergedCount = 24;

    struct Step
    {
        Node* pNode;
        unsigned nPlace;
    };
    /// From the root to the place of a key in a leaf.
    struct Way
    {
        std::array<Step, kMaxLevels> aSteps;
        unsigned nSteps = 0;

        Step& Leaf() { return aSteps[nSteps - 1]; }
        const Step& Leaf() const { return aSteps[nSteps - 1]; }
    };
    class SpareNodes;

    static std::uint64_t GetKey(const Node& node, unsigned nPlace) { return KeyOf{}(node.GetElement(nPlace)); }
    static unsigned GetLowerBound(const Node& node, std::uint64_t nKey);
    static unsigned GetChildPlace(const Node& branch, std::uint64_t nKey);
    static const Node* GetFirstLeaf(const Node* pNode);
    static const Node* GetLeafBehind(const Node* pRoot, std::uint64_t nKey);
    static std::size_t GetShareInBytes(const Node& node);

    Way FindWay(std::uint64_t nKey) const;
    static bool LeadsTo(const Way& way, std::uint64_t nKey);
    static bool IsBehindAll(const Way& way);
    void OwnWay(Way& way);
    void GrowLoneLeaf(Way& way);
    static unsigned CountNodesToSplit(const Way& way);
    static void Split(Step& step, Node& right, bool bAtEnd);
    void InsertAlong(const Way& way, const T& element, SpareNodes& spares);
    void EraseAlong(const Way& way);
    static bool MergeWithNeighbour(Node& parent, unsigned nPlace);
    static void UpdateFirst(const Way& way);
    void PutRootAbove(Node* pRight, Node* pRoot);
    void DropThinRoots();

    Node* m_pRoot = nullptr;
    std::size_t m_nSize = 0;
};
} // namespace QRV

#include "model/SharedSet.inl"
