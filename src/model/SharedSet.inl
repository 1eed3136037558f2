#include <bit>

namespace QRV
{
/// Nodes made before a change begins, so that the change itself cannot fail.
template <class T, class KeyOf>
class SharedSet<T, KeyOf>::SpareNodes
{
public:
    SpareNodes() = default;
    SpareNodes(const SpareNodes&) = delete;
    SpareNodes& operator=(const SpareNodes&) = delete;
    ~SpareNodes()
    {
        for (; m_nTaken < m_nCount; ++m_nTaken)
            Node::Release(m_aNodes[m_nTaken]);
    }

    void Add(unsigned nLevel)
    {
        m_aNodes[m_nCount] = Node::Create(nLevel, Node::kCapacity);
        ++m_nCount;
    }
    /// In the order of `Add`.
    Node* Take() { return m_aNodes[m_nTaken++]; }

private:
    std::array<Node*, kMaxLevels + 1> m_aNodes;
    unsigned m_nCount = 0;
    unsigned m_nTaken = 0;
};

template <class T, class KeyOf>
unsigned SharedSet<T, KeyOf>::GetLowerBound(const Node& node, std::uint64_t nKey)
{
    unsigned nBegin = 0;
    unsigned nEnd = node.GetCount();
    if (GetKey(node, nEnd - 1) < nKey) // new objects have the highest ids, so this is the common case
        return nEnd;
    while (nBegin < nEnd)
    {
        const unsigned nMiddle = (nBegin + nEnd) / 2;
        if (GetKey(node, nMiddle) < nKey)
            nBegin = nMiddle + 1;
        else
            nEnd = nMiddle;
    }
    return nBegin;
}

/// The child under which the key lies or would lie.
template <class T, class KeyOf>
unsigned SharedSet<T, KeyOf>::GetChildPlace(const Node& branch, std::uint64_t nKey)
{
    const unsigned nPlace = GetLowerBound(branch, nKey);
    const bool bIsFirst = nPlace < branch.GetCount() && GetKey(branch, nPlace) == nKey;
    return bIsFirst || nPlace == 0 ? nPlace : nPlace - 1;
}

template <class T, class KeyOf>
const typename SharedSet<T, KeyOf>::Node* SharedSet<T, KeyOf>::GetFirstLeaf(const Node* pNode)
{
    while (!pNode->IsLeaf())
        pNode = pNode->GetChild(0);
    return pNode;
}

/// The leaf that follows the one of `nKey`, which is in the set; null behind the last.
template <class T, class KeyOf>
const typename SharedSet<T, KeyOf>::Node* SharedSet<T, KeyOf>::GetLeafBehind(const Node* pRoot, std::uint64_t nKey)
{
    const Node* pBehind = nullptr;
    for (const Node* pNode = pRoot; !pNode->IsLeaf();)
    {
        const unsigned nPlace = GetChildPlace(*pNode, nKey);
        if (nPlace + 1 < pNode->GetCount())
            pBehind = pNode->GetChild(nPlace + 1);
        pNode = pNode->GetChild(nPlace);
    }
    return pBehind ? GetFirstLeaf(pBehind) : nullptr;
}

template <class T, class KeyOf>
std::size_t SharedSet<T, KeyOf>::GetShareInBytes(const Node& node)
{
    if (node.IsShared())
        return node.GetBytes() / node.GetReferences();
    std::size_t nBytes = node.GetBytes();
    if (!node.IsLeaf())
        for (unsigned n = 0; n < node.GetCount(); ++n)
            nBytes -= node.GetChild(n)->GetBytes() - GetShareInBytes(*node.GetChild(n));
    return nBytes;
}

template <class T, class KeyOf>
const T& SharedSet<T, KeyOf>::back() const
{
    const Node* pNode = m_pRoot;
    while (!pNode->IsLeaf())
        pNode = pNode->GetChild(pNode->GetCount() - 1);
    return pNode->GetElement(pNode->GetCount() - 1);
}

template <class T, class KeyOf>
const T* SharedSet<T, KeyOf>::Find(std::uint64_t nKey) const
{
    const Node* pNode = m_pRoot;
    if (!pNode)
        return nullptr;
    while (!pNode->IsLeaf())
        pNode = pNode->GetChild(GetChildPlace(*pNode, nKey));
    const unsigned nPlace = GetLowerBound(*pNode, nKey);
    return nPlace < pNode->GetCount() && GetKey(*pNode, nPlace) == nKey ? &pNode->GetElement(nPlace) : nullptr;
}

template <class T, class KeyOf>
typename SharedSet<T, KeyOf>::Way SharedSet<T, KeyOf>::FindWay(std::uint64_t nKey) const
{
    Way way;
    Node* pNode = m_pRoot;
    for (; !pNode->IsLeaf(); pNode = way.aSteps[way.nSteps - 1].pNode->GetChild(way.aSteps[way.nSteps - 1].nPlace))
        way.aSteps[way.nSteps++] = {pNode, GetChildPlace(*pNode, nKey)};
    way.aSteps[way.nSteps++] = {pNode, GetLowerBound(*pNode, nKey)};
    return way;
}

template <class T, class KeyOf>
bool SharedSet<T, KeyOf>::LeadsTo(const Way& way, std::uint64_t nKey)
{
    const Step& leaf = way.Leaf();
    return leaf.nPlace < leaf.pNode->GetCount() && GetKey(*leaf.pNode, leaf.nPlace) == nKey;
}

template <class T, class KeyOf>
bool SharedSet<T, KeyOf>::IsBehindAll(const Way& way)
{
    for (unsigned n = 0; n < way.nSteps; ++n)
        if (way.aSteps[n].nPlace + (n + 1 < way.nSteps) != way.aSteps[n].pNode->GetCount())
            return false;
    return true;
}

/// Makes the nodes of the way those of this set alone. What it holds stays the same, also when a copy fails halfway.
template <class T, class KeyOf>
void SharedSet<T, KeyOf>::OwnWay(Way& way)
{
    for (unsigned n = 0; n < way.nSteps; ++n)
    {
        Node*& pNode = way.aSteps[n].pNode;
        if (!pNode->IsShared())
            continue;
        Node* pCopy = Node::Copy(*pNode, pNode->GetCapacity());
        if (n > 0)
            way.aSteps[n - 1].pNode->ReplaceChild(way.aSteps[n - 1].nPlace, pCopy);
        else
        {
            Node::Release(m_pRoot);
            m_pRoot = pCopy;
        }
        pNode = pCopy;
    }
}

/// Small sets are many, so a leaf without a branch above it is only as large as it needs to be.
template <class T, class KeyOf>
void SharedSet<T, KeyOf>::GrowLoneLeaf(Way& way)
{
    Node*& pLeaf = way.Leaf().pNode;
    if (way.nSteps > 1 || !pLeaf->IsFull() || pLeaf->GetCapacity() == Node::kCapacity)
        return;
    Node* pLarger = Node::Copy(*pLeaf, std::bit_ceil(pLeaf->GetCount() + 1));
    Node::Release(m_pRoot);
    m_pRoot = pLeaf = pLarger;
}

/// From the leaf up.
template <class T, class KeyOf>
unsigned SharedSet<T, KeyOf>::CountNodesToSplit(const Way& way)
{
    unsigned nNodes = 0;
    while (nNodes < way.nSteps && way.aSteps[way.nSteps - 1 - nNodes].pNode->IsFull())
        ++nNodes;
    return nNodes;
}

/// Moves the upper half of a full node to `right`, or nothing when the element is to come behind all others: keys that
/// arrive in order leave full nodes. `step`, the place of an entry to come, then leads into the right one of the two.
template <class T, class KeyOf>
void SharedSet<T, KeyOf>::Split(Step& step, Node& right, bool bAtEnd)
{
    Node& left = *step.pNode;
    const unsigned nCount = left.GetCount();
    const unsigned nKept = bAtEnd ? nCount : nCount / 2;
    right.InsertRange(0, left, nKept, nCount);
    left.Remove(nKept, nCount);
    if (step.nPlace >= nKept)
        step = {&right, step.nPlace - nKept};
}

template <class T, class KeyOf>
bool SharedSet<T, KeyOf>::Insert(const T& element)
{
    if (!m_pRoot)
    {
        m_pRoot = Node::Create(0, 1);
        m_pRoot->InsertElement(0, element);
        m_nSize = 1;
        return true;
    }
    const std::uint64_t nKey = KeyOf{}(element);
    Way way = FindWay(nKey);
    if (LeadsTo(way, nKey))
        return false;
    GrowLoneLeaf(way);
    OwnWay(way);
    SpareNodes spares;
    const unsigned nSplits = CountNodesToSplit(way);
    for (unsigned n = 0; n < nSplits; ++n)
        spares.Add(n);
    if (nSplits == way.nSteps)
        spares.Add(nSplits); // a root above the two halves
    InsertAlong(way, element, spares);
    ++m_nSize;
    return true;
}

template <class T, class KeyOf>
void SharedSet<T, KeyOf>::InsertAlong(const Way& way, const T& element, SpareNodes& spares)
{
    const bool bAtEnd = IsBehindAll(way);
    const bool bNodesCome = way.Leaf().pNode->IsFull();
    Node* pRight = nullptr;
    for (unsigned n = way.nSteps; n-- > 0;)
    {
        Step place = way.aSteps[n];
        Node* pChild = std::exchange(pRight, nullptr);
        if (pChild)
            ++place.nPlace;
        if ((pChild || place.pNode->IsLeaf()) && place.pNode->IsFull())
        {
            pRight = spares.Take();
            Split(place, *pRight, bAtEnd);
        }
        if (place.pNode->IsLeaf())
            place.pNode->InsertElement(place.nPlace, element);
        else if (pChild)
            place.pNode->InsertChild(place.nPlace, pChild);
        if (bNodesCome)
            way.aSteps[n].pNode->RecountBytes();
        if (pRight)
            pRight->RecountBytes();
    }
    UpdateFirst(way);
    if (pRight)
        PutRootAbove(pRight, spares.Take());
}

/// An element that comes before all others is the first one under every node of its way.
template <class T, class KeyOf>
void SharedSet<T, KeyOf>::UpdateFirst(const Way& way)
{
    if (way.Leaf().nPlace > 0)
        return;
    for (unsigned n = way.nSteps - 1; n-- > 0;)
        way.aSteps[n].pNode->SetElement(0, way.aSteps[n + 1].pNode->GetElement(0));
}

template <class T, class KeyOf>
void SharedSet<T, KeyOf>::PutRootAbove(Node* pRight, Node* pRoot)
{
    pRoot->InsertChild(0, m_pRoot);
    pRoot->InsertChild(1, pRight);
    pRoot->RecountBytes();
    m_pRoot = pRoot;
}

template <class T, class KeyOf>
bool SharedSet<T, KeyOf>::Erase(std::uint64_t nKey)
{
    if (!m_pRoot)
        return false;
    Way way = FindWay(nKey);
    if (!LeadsTo(way, nKey))
        return false;
    OwnWay(way);
    EraseAlong(way);
    --m_nSize;
    return true;
}

template <class T, class KeyOf>
void SharedSet<T, KeyOf>::EraseAlong(const Way& way)
{
    way.Leaf().pNode->Remove(way.Leaf().nPlace, way.Leaf().nPlace + 1);
    bool bNodesGone = false;
    for (unsigned n = way.nSteps - 1; n-- > 0;)
    {
        Node& parent = *way.aSteps[n].pNode;
        const unsigned nPlace = way.aSteps[n].nPlace;
        Node& child = *way.aSteps[n + 1].pNode;
        if (child.GetCount() == 0)
        {
            parent.Remove(nPlace, nPlace + 1);
            bNodesGone = true;
            continue;
        }
        parent.SetElement(nPlace, child.GetElement(0));
        bNodesGone = MergeWithNeighbour(parent, nPlace) || bNodesGone;
        if (bNodesGone)
            child.RecountBytes();
    }
    if (bNodesGone)
        m_pRoot->RecountBytes();
    DropThinRoots();
}

/// Takes the entries of a neighbour into the child of that place when both fit well into one. The child is nobody
/// else's; the neighbour may be.
template <class T, class KeyOf>
bool SharedSet<T, KeyOf>::MergeWithNeighbour(Node& parent, unsigned nPlace)
{
    Node& child = *parent.GetChild(nPlace);
    const auto fits = [&](unsigned nOther)
    { return nOther < parent.GetCount() && child.GetCount() + parent.GetChild(nOther)->GetCount() <= kMergedCount; };
    if (fits(nPlace + 1))
    {
        const Node& right = *parent.GetChild(nPlace + 1);
        child.InsertRange(child.GetCount(), right, 0, right.GetCount());
        parent.Remove(nPlace + 1, nPlace + 2);
        return true;
    }
    if (nPlace > 0 && fits(nPlace - 1))
    {
        const Node& left = *parent.GetChild(nPlace - 1);
        child.InsertRange(0, left, 0, left.GetCount());
        parent.SetElement(nPlace, child.GetElement(0));
        parent.Remove(nPlace - 1, nPlace);
        return true;
    }
    return false;
}

/// The root is a leaf with elements, or a branch with two children at least.
template <class T, class KeyOf>
void SharedSet<T, KeyOf>::DropThinRoots()
{
    while (!m_pRoot->IsLeaf() && m_pRoot->GetCount() == 1)
    {
        Node* pChild = m_pRoot->GetChild(0);
        Node::Retain(pChild);
        Node::Release(std::exchange(m_pRoot, pChild));
    }
    if (m_pRoot->GetCount() == 0)
        Node::Release(std::exchange(m_pRoot, nullptr));
}
} // namespace QRV
