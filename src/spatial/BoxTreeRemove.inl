/// Removal from a BoxTree and what it does to nodes that it leaves too empty.
#pragma once

#include <cassert>

namespace QRV
{
template <class T>
bool BoxTree<T>::Remove(T* pElement) noexcept
{
    const bool bRemoved = RemoveIfThere(pElement);
    assert((bRemoved || BoxOfElement(*pElement).isNull()) &&
           "an element leaves a tree that it isn't in, or its box changed while it was there");
    return bRemoved;
}

template <class T>
bool BoxTree<T>::RemoveIfThere(T* pElement) noexcept
{
    const Interval3d box = BoxOfElement(*pElement);
    if (box.isNull())
        return false;
    if (RemoveWaiting(pElement))
        return true;
    if (!m_pRoot)
        return false;
    Leaf* pLeaf = FindLeafWith(pElement, box);
    if (!pLeaf)
        return false;
    pLeaf->RemoveAt(pLeaf->FindElement(pElement));
    --m_nCount;
    RecomputeUpward(pLeaf);
    Condense(pLeaf);
    return true;
}

template <class T>
bool BoxTree<T>::RemoveWaiting(const T* pElement) noexcept
{
    const auto it = std::find(m_aWaiting.begin(), m_aWaiting.end(), pElement);
    if (it == m_aWaiting.end())
        return false;
    m_aWaiting.erase(it);
    return true;
}

template <class T>
BoxTreeLeafNode<T>* BoxTree<T>::FindLeafWith(const T* pElement, const Interval3d& box) const noexcept
{
    const Leaf* pFound = nullptr;
    const BoxTouchTest touches(box);
    VisitLeaves([&](const Interval3d& node) { return touches.IsMet(node); },
                [&](const Leaf& leaf)
                {
                    if (leaf.FindElement(pElement) < leaf.m_nCount)
                        pFound = &leaf;
                    return pFound == nullptr;
                });
    return const_cast<Leaf*>(pFound);
}

template <class T>
void BoxTree<T>::Condense(Node* pNode) noexcept
{
    while (pNode->m_nCount < kBoxTreeMinEntries && pNode->m_pParent)
    {
        Node* pParent = pNode->m_pParent;
        if (m_spareNodes.FillUpTo(GetNodesForDissolving(*pNode)))
            Dissolve(pNode);
        else
            FillFromSibling(pNode);
        pNode = pParent;
    }
    if (!m_pRoot->IsLeaf() && m_pRoot->m_nCount == 1)
        LowerRoot();
}

/// Each entry is placed anew and counts its reinsertions from none; one of them may raise the root first.
template <class T>
std::size_t BoxTree<T>::GetNodesForDissolving(const Node& node) const
{
    return node.m_nCount * GetNodesForPlacing(m_pRoot->m_nLevel - node.m_nLevel + 1);
}

template <class T>
void BoxTree<T>::Dissolve(Node* pNode) noexcept
{
    Interior* pParent = pNode->m_pParent;
    pParent->RemoveAt(pParent->FindChild(*pNode));
    RecomputeUpward(pParent);
    for (std::uint32_t n = 0; n < pNode->m_nCount; ++n)
    {
        LevelSet reinserted;
        Place(pNode->GetEntry(n), pNode->m_nLevel, reinserted);
    }
    DeleteNode(pNode);
}

/// Keeps the rules without a new node, where memory is too short for placing entries anew: the node goes into a sibling
/// that has room, or, if all are nearly full, takes an entry over.
template <class T>
void BoxTree<T>::FillFromSibling(Node* pNode) noexcept
{
    Interior* pParent = pNode->m_pParent;
    Node* pSibling = nullptr;
    for (std::uint32_t n = 0; n < pParent->m_nCount; ++n)
    {
        Node* pChild = pParent->GetChild(n);
        if (pChild != pNode && (!pSibling || pChild->m_nCount < pSibling->m_nCount))
            pSibling = pChild;
    }
    if (pSibling->m_nCount + pNode->m_nCount > kBoxTreeMaxEntries)
    {
        pNode->Append(pSibling->GetEntry(pSibling->m_nCount - 1));
        pSibling->RemoveAt(pSibling->m_nCount - 1);
        BoxOfNode(*pNode) = pNode->ComputeBox();
    }
    else
    {
        for (std::uint32_t n = 0; n < pNode->m_nCount; ++n)
            pSibling->Append(pNode->GetEntry(n));
        pParent->RemoveAt(pParent->FindChild(*pNode));
        DeleteNode(pNode);
    }
    BoxOfNode(*pSibling) = pSibling->ComputeBox();
}

template <class T>
void BoxTree<T>::LowerRoot() noexcept
{
    Node* pOldRoot = m_pRoot;
    m_pRoot = AsInterior(*pOldRoot).GetChild(0);
    m_pRoot->m_pParent = nullptr;
    DeleteNode(pOldRoot);
    m_spareNodes.TrimTo(GetSparesKept());
}

/// Ends at the first box that stays as it was.
template <class T>
void BoxTree<T>::RecomputeUpward(Node* pNode) noexcept
{
    for (; pNode; pNode = pNode->m_pParent)
    {
        Interval3d& kept = BoxOfNode(*pNode);
        const Interval3d box = pNode->ComputeBox();
        if (IsSameBox(box, kept))
            return;
        kept = box;
    }
}

template <class T>
Interval3d& BoxTree<T>::BoxOfNode(const Node& node) noexcept
{
    return node.m_pParent ? node.m_pParent->m_aBoxes[node.m_pParent->FindChild(node)] : m_rootBox;
}

template <class T>
void BoxTree<T>::DeleteNode(Node* pNode) noexcept
{
    --m_nNodes;
    m_spareNodes.Return(pNode, GetSparesKept());
}

/// Enough for the next removal to dissolve a leaf without a call for memory.
template <class T>
std::size_t BoxTree<T>::GetSparesKept() const
{
    return (kBoxTreeMinEntries - 1) * GetNodesForPlacing(m_pRoot ? m_pRoot->m_nLevel + 1 : 0);
}
} // namespace QRV
