/// The nodes of a box tree.
#pragma once

#include <QRV/Interval3d.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

namespace QRV
{
inline constexpr std::uint32_t kBoxTreeMaxEntries = 10;
inline constexpr std::uint32_t kBoxTreeMinEntries = 4; ///< of every node but the root
inline constexpr std::uint32_t kBoxTreeReinsertedEntries = 3;

template <class T>
class BoxTreeNode;
template <class T>
class BoxTreeInteriorNode;

/// Makes `box` hold `other` too. As `+=`, without its tests for null: `other` is never null, and plain minimum and
/// maximum serve a null `box` as well.
inline void WidenBox(Interval3d& box, const Interval3d& other)
{
    box.lower = {std::min(box.lower.x, other.lower.x), std::min(box.lower.y, other.lower.y),
                 std::min(box.lower.z, other.lower.z)};
    box.upper = {std::max(box.upper.x, other.upper.x), std::max(box.upper.y, other.upper.y),
                 std::max(box.upper.z, other.upper.z)};
}

inline bool IsSameBox(const Interval3d& a, const Interval3d& b)
{
    bool bSame = true;
    for (int i = 0; i < 3; ++i)
    {
        bSame &= a.lower[i] == b.lower[i];
        bSame &= a.upper[i] == b.upper[i];
    }
    return bSame;
}

/// What a node holds: an element, borrowed, in a leaf; a child node, owned, above.
template <class T>
union BoxTreeLink
{
    T* pElement;
    BoxTreeNode<T>* pChild;
};

/// A link with its box, on its way between nodes.
template <class T>
struct BoxTreeEntry
{
    Interval3d box;
    BoxTreeLink<T> link;
};

/// What leaves and interior nodes have in common.
///
/// Between calls of the tree a node holds at most kBoxTreeMaxEntries entries; the slot beyond is for a node that waits
/// for its overflow treatment. The box of each entry, element or child, is kept beside its link and nowhere else, so
/// that a search reads a node and never the elements behind it; the tree keeps that of the root.
template <class T>
class BoxTreeNode
{
public:
    bool IsLeaf() const { return m_nLevel == 0; }
    bool IsOverflowing() const { return m_nCount > kBoxTreeMaxEntries; }
    BoxTreeEntry<T> GetEntry(std::uint32_t n) const { return {m_aBoxes[n], m_aLinks[n]}; }
    void SetEntry(std::uint32_t n, const BoxTreeEntry<T>& entry);
    /// A child node learns its parent.
    void Append(const BoxTreeEntry<T>& entry);
    /// The entries behind move up, so that the order of the others stays.
    void RemoveAt(std::uint32_t n);
    /// The box of all entries, null without any.
    Interval3d ComputeBox() const;

    BoxTreeInteriorNode<T>* m_pParent = nullptr; ///< null at the root
    std::uint32_t m_nLevel;                      ///< 0 at the leaves
    std::uint32_t m_nCount = 0;
    BoxTreeLink<T> m_aLinks[kBoxTreeMaxEntries + 1];
    Interval3d m_aBoxes[kBoxTreeMaxEntries + 1];

protected:
    explicit BoxTreeNode(std::uint32_t nLevel) : m_nLevel(nLevel) {}
};

template <class T>
class BoxTreeLeafNode : public BoxTreeNode<T>
{
public:
    explicit BoxTreeLeafNode(std::uint32_t) : BoxTreeNode<T>(0) {}
    T* GetElement(std::uint32_t n) const { return this->m_aLinks[n].pElement; }
    /// The slot of an element, or m_nCount.
    std::uint32_t FindElement(const T* pElement) const;
};

template <class T>
class BoxTreeInteriorNode : public BoxTreeNode<T>
{
public:
    explicit BoxTreeInteriorNode(std::uint32_t nLevel) : BoxTreeNode<T>(nLevel) {}
    BoxTreeNode<T>* GetChild(std::uint32_t n) const { return this->m_aLinks[n].pChild; }
    std::uint32_t FindChild(const BoxTreeNode<T>& child) const;
    /// The slot of the child that a new box widens least: by volume, on ties by surface, then by perimeter, then the
    /// earlier one.
    std::uint32_t ChooseChild(const Interval3d& box) const;
};

template <class T>
BoxTreeLeafNode<T>& AsLeaf(BoxTreeNode<T>& node)
{
    return static_cast<BoxTreeLeafNode<T>&>(node);
}

template <class T>
const BoxTreeLeafNode<T>& AsLeaf(const BoxTreeNode<T>& node)
{
    return static_cast<const BoxTreeLeafNode<T>&>(node);
}

template <class T>
BoxTreeInteriorNode<T>& AsInterior(BoxTreeNode<T>& node)
{
    return static_cast<BoxTreeInteriorNode<T>&>(node);
}

template <class T>
const BoxTreeInteriorNode<T>& AsInterior(const BoxTreeNode<T>& node)
{
    return static_cast<const BoxTreeInteriorNode<T>&>(node);
}

/// Memory for nodes that are still to come. A change of a tree first fills up its spare nodes to the most that the
/// change can need, so that memory cannot run short half way.
template <class T>
class BoxTreeSpareNodes
{
public:
    BoxTreeSpareNodes() = default;
    BoxTreeSpareNodes(BoxTreeSpareNodes&& other) noexcept { Swap(other); }
    BoxTreeSpareNodes& operator=(BoxTreeSpareNodes&& other) noexcept;
    ~BoxTreeSpareNodes() { TrimTo(0); }

    std::size_t GetCount() const { return m_nCount; }
    /// False when memory is short; what was obtained till then stays.
    bool FillUpTo(std::size_t nCount) noexcept;
    void TrimTo(std::size_t nCount) noexcept;
    /// There must be one.
    BoxTreeNode<T>* Take(std::uint32_t nLevel) noexcept;
    /// Keeps the node's memory unless `nKept` spare nodes are there.
    void Return(BoxTreeNode<T>* pNode, std::size_t nKept) noexcept;
    void Swap(BoxTreeSpareNodes& other) noexcept;

private:
    struct Spare
    {
        Spare* pNext;
    };
    void Push(void* pMemory) noexcept;
    void* Pop() noexcept;

    Spare* m_pFirst = nullptr;
    std::size_t m_nCount = 0;
};
} // namespace QRV

#include "spatial/BoxTreeNode.inl"
