/// The life of a BoxTree: moving, copying, packing at once, auditing.
#pragma once

#include <unordered_set>
#include <utility>

namespace QRV
{
template <class T>
BoxTree<T>& BoxTree<T>::operator=(BoxTree&& other) noexcept
{
    BoxTree taken(std::move(other));
    Swap(taken);
    return *this;
}

template <class T>
void BoxTree<T>::Swap(BoxTree& other) noexcept
{
    std::swap(m_pRoot, other.m_pRoot);
    std::swap(m_rootBox, other.m_rootBox);
    std::swap(m_nCount, other.m_nCount);
    std::swap(m_nNodes, other.m_nNodes);
    m_spareNodes.Swap(other.m_spareNodes);
    m_aWaiting.swap(other.m_aWaiting);
}

template <class T>
void BoxTree<T>::Clear() noexcept
{
    if (m_pRoot)
        DeleteBelow(m_pRoot);
    m_pRoot = nullptr;
    m_rootBox.init();
    m_nCount = 0;
    m_nNodes = 0;
    m_spareNodes.TrimTo(0);
    m_aWaiting.clear();
}

template <class T>
void BoxTree<T>::DeleteBelow(Node* pNode) noexcept
{
    if (!pNode->IsLeaf())
        for (std::uint32_t n = 0; n < pNode->m_nCount; ++n)
            DeleteBelow(AsInterior(*pNode).GetChild(n));
    m_spareNodes.Return(pNode, 0);
}

template <class T>
BoxTreeEntry<T> BoxTree<T>::EntryOf(T* pElement, const Interval3d& box)
{
    Entry entry{box, {}};
    entry.link.pElement = pElement;
    return entry;
}

template <class T>
BoxTreeEntry<T> BoxTree<T>::EntryOf(Node* pChild, const Interval3d& box)
{
    Entry entry{box, {}};
    entry.link.pChild = pChild;
    return entry;
}

template <class T>
std::size_t BoxTree<T>::GetSizeInBytes() const
{
    return sizeof(*this) + (m_nNodes + m_spareNodes.GetCount()) * sizeof(Node) + m_aWaiting.capacity() * sizeof(T*);
}

template <class T>
bool BoxTree<T>::CheckValidity(std::size_t& nCount) const
{
    std::vector<T*> aElements;
    aElements.reserve(GetCount());
    bool bGood = true;
    if (m_pRoot)
        bGood = !m_pRoot->m_pParent && (m_pRoot->IsLeaf() || m_pRoot->m_nCount > 1) &&
                CheckBelow(*m_pRoot, m_rootBox, aElements);
    bGood = bGood && aElements.size() == m_nCount;
    for (T* pElement : m_aWaiting)
    {
        bGood = bGood && !BoxOfElement(*pElement).isNull();
        aElements.push_back(pElement);
    }
    nCount = aElements.size();
    return bGood && std::unordered_set<const T*>(aElements.begin(), aElements.end()).size() == nCount;
}

template <class T>
bool BoxTree<T>::CheckBelow(const Node& node, const Interval3d& nodeBox, std::vector<T*>& aElements) const
{
    bool bGood = node.m_nCount <= kBoxTreeMaxEntries && (&node == m_pRoot || node.m_nCount >= kBoxTreeMinEntries);
    for (std::uint32_t n = 0; n < node.m_nCount; ++n)
    {
        bGood &= node.m_aBoxes[n] <= nodeBox;
        if (node.IsLeaf())
        {
            T* pElement = AsLeaf(node).GetElement(n);
            bGood &= IsSameBox(node.m_aBoxes[n], BoxOfElement(*pElement));
            aElements.push_back(pElement);
            continue;
        }
        const Node& child = *AsInterior(node).GetChild(n);
        bGood &= child.m_pParent == &node && child.m_nLevel + 1 == node.m_nLevel;
        bGood &= CheckBelow(child, node.m_aBoxes[n], aElements);
    }
    return bGood;
}

template <class T>
BoxTree<T> BoxTree<T>::Clone() const
{
    BoxTree copy;
    copy.m_aWaiting = m_aWaiting;
    if (!m_pRoot)
        return copy;
    if (!copy.m_spareNodes.FillUpTo(m_nNodes))
        throw std::bad_alloc();
    copy.m_pRoot = copy.CloneBelow(*m_pRoot);
    copy.m_rootBox = m_rootBox;
    copy.m_nCount = m_nCount;
    return copy;
}

template <class T>
BoxTreeNode<T>* BoxTree<T>::CloneBelow(const Node& node) noexcept
{
    Node* pCopy = CreateNode(node.m_nLevel);
    for (std::uint32_t n = 0; n < node.m_nCount; ++n)
        pCopy->Append(node.IsLeaf() ? node.GetEntry(n)
                                    : EntryOf(CloneBelow(*AsInterior(node).GetChild(n)), node.m_aBoxes[n]));
    return pCopy;
}

template <class T>
template <class Map>
void BoxTree<T>::ReplaceElements(const Map& replacements)
{
    const auto Replace = [&](T*& pElement)
    {
        const auto it = replacements.find(pElement);
        if (it != replacements.end())
            pElement = it->second;
    };
    VisitLeaves([](const Interval3d&) { return true; },
                [&](const Leaf& leaf)
                {
                    Leaf& changed = const_cast<Leaf&>(leaf);
                    for (std::uint32_t n = 0; n < changed.m_nCount; ++n)
                        Replace(changed.m_aLinks[n].pElement);
                    return true;
                });
    for (T*& pElement : m_aWaiting)
        Replace(pElement);
}

template <class T>
void BoxTree<T>::Transform(const Transf3d& transform)
{
    if (m_pRoot)
        TransformBelow(*m_pRoot, m_rootBox, transform);
}

/// Where elements round their coordinates, as parts of a mesh do, the transformed node box may miss them by a little.
template <class T>
void BoxTree<T>::TransformBelow(Node& node, Interval3d& nodeBox, const Transf3d& transform)
{
    nodeBox *= transform;
    for (std::uint32_t n = 0; n < node.m_nCount; ++n)
    {
        if (node.IsLeaf())
            node.m_aBoxes[n] = BoxOfElement(*AsLeaf(node).GetElement(n));
        else
            TransformBelow(*AsInterior(node).GetChild(n), node.m_aBoxes[n], transform);
        WidenBox(nodeBox, node.m_aBoxes[n]);
    }
}

/// Packs elements into a tree from top to bottom: each node's share of the elements is halved across its longest side
/// till one part is left for each child.
template <class T>
class BoxTree<T>::Packing
{
public:
    explicit Packing(const std::vector<T*>& aElements)
    {
        m_aItems.reserve(aElements.size());
        for (T* pElement : aElements)
        {
            const Interval3d box = BoxOfElement(*pElement);
            if (!box.isNull())
                m_aItems.push_back({EntryOf(pElement, box), box.mid(), m_aItems.size()});
        }
        m_aNodesOfLevel.push_back(m_aItems.size());
        do
            m_aNodesOfLevel.push_back((m_aNodesOfLevel.back() + kBoxTreeMaxEntries - 1) / kBoxTreeMaxEntries);
        while (m_aNodesOfLevel.back() > 1);
    }

    std::size_t GetCount() const { return m_aItems.size(); }
    std::size_t GetNodeCount() const
    {
        std::size_t nNodes = 0;
        for (std::size_t nLevel = 1; nLevel < m_aNodesOfLevel.size(); ++nLevel)
            nNodes += m_aNodesOfLevel[nLevel];
        return nNodes;
    }

    Node* BuildRoot(BoxTree& tree) { return Build(tree, static_cast<std::uint32_t>(m_aNodesOfLevel.size() - 2), 0); }

private:
    struct Item
    {
        Entry entry;
        Point3d center;
        std::size_t nIndex;
    };

    /// The children of all nodes of a level stand in one row, shared out evenly, so that a node has 5 of them or more
    /// unless it is the root.
    std::size_t GetFirstChild(std::uint32_t nLevel, std::size_t nNode) const
    {
        return nNode * m_aNodesOfLevel[nLevel] / m_aNodesOfLevel[nLevel + 1];
    }

    std::size_t GetFirstItem(std::uint32_t nLevel, std::size_t nChild) const
    {
        for (; nLevel > 0; --nLevel)
            nChild = GetFirstChild(nLevel - 1, nChild);
        return nChild;
    }

    Node* Build(BoxTree& tree, std::uint32_t nLevel, std::size_t nNode)
    {
        const std::size_t nFirst = GetFirstChild(nLevel, nNode);
        const std::size_t nEnd = GetFirstChild(nLevel, nNode + 1);
        if (nLevel > 0)
            Arrange(nLevel, nFirst, nEnd);
        Node* pNode = tree.CreateNode(nLevel);
        for (std::size_t n = nFirst; n < nEnd; ++n)
        {
            if (nLevel == 0)
            {
                pNode->Append(m_aItems[n].entry);
                continue;
            }
            Node* pChild = Build(tree, nLevel - 1, n);
            pNode->Append(EntryOf(pChild, pChild->ComputeBox()));
        }
        return pNode;
    }

    /// Orders the items so that each child in the range gets a compact part.
    void Arrange(std::uint32_t nLevel, std::size_t nFirst, std::size_t nEnd)
    {
        if (nEnd - nFirst < 2)
            return;
        const std::size_t nMiddle = nFirst + (nEnd - nFirst) / 2;
        const auto At = [&](std::size_t nChild)
        { return m_aItems.begin() + static_cast<std::ptrdiff_t>(GetFirstItem(nLevel, nChild)); };
        Interval3d centers;
        for (auto it = At(nFirst); it != At(nEnd); ++it)
            centers += it->center;
        int nAxis = 0;
        for (int n = 1; n < 3; ++n)
            if (centers.length(n) > centers.length(nAxis))
                nAxis = n;
        std::nth_element(At(nFirst), At(nMiddle), At(nEnd),
                         [nAxis](const Item& a, const Item& b) {
                             return a.center[nAxis] != b.center[nAxis] ? a.center[nAxis] < b.center[nAxis]
                                                                       : a.nIndex < b.nIndex;
                         });
        Arrange(nLevel, nFirst, nMiddle);
        Arrange(nLevel, nMiddle, nEnd);
    }

    std::vector<Item> m_aItems;
    std::vector<std::size_t> m_aNodesOfLevel; // [0]: items, [n + 1]: nodes of level n
};

template <class T>
void BoxTree<T>::BulkLoad(const std::vector<T*>& aElements)
{
    Packing packing(aElements);
    BoxTree packed;
    if (packing.GetCount() > 0)
    {
        if (!packed.m_spareNodes.FillUpTo(packing.GetNodeCount()))
            throw std::bad_alloc();
        packed.m_pRoot = packing.BuildRoot(packed);
        packed.m_rootBox = packed.m_pRoot->ComputeBox();
        packed.m_nCount = packing.GetCount();
    }
    m_aWaiting.clear();
    packed.m_aWaiting.swap(m_aWaiting); // the room reserved there stays
    Swap(packed);
}
} // namespace QRV
