/// Insertion into a BoxTree: choice of the node, forced reinsertion, split.
#pragma once

#include <utility>

namespace QRV
{
/// An order of the slots of an overflowing node.
class BoxTreeSlotOrder
{
public:
    std::uint32_t operator[](std::uint32_t n) const { return m_aSlots[n]; }

    /// Slots that are equal stay in the order in which they stand in the node.
    template <class Less>
    void Sort(const Less& isLess)
    {
        for (std::uint32_t n = 0; n <= kBoxTreeMaxEntries; ++n)
        {
            std::uint32_t nPlace = n;
            for (; nPlace > 0 && isLess(n, m_aSlots[nPlace - 1]); --nPlace)
                m_aSlots[nPlace] = m_aSlots[nPlace - 1];
            m_aSlots[nPlace] = n;
        }
    }

private:
    std::uint32_t m_aSlots[kBoxTreeMaxEntries + 1];
};

/// The levels that have had their forced reinsertion within one insertion.
template <class T>
class BoxTree<T>::LevelSet
{
public:
    /// False if it was there.
    bool Add(std::uint32_t nLevel)
    {
        const std::uint64_t nBit = std::uint64_t(1) << nLevel;
        const bool bNew = (m_nBits & nBit) == 0;
        m_nBits |= nBit;
        return bNew;
    }

private:
    std::uint64_t m_nBits = 0; // with 4 entries in every node a tree stays below 32 levels
};

template <class T>
bool BoxTree<T>::Insert(T* pElement)
{
    const Interval3d box = BoxOfElement(*pElement);
    if (box.isNull())
        return false;
    AdmitWaiting();
    if (!m_spareNodes.FillUpTo(GetNodesForInsertion()))
        throw std::bad_alloc();
    Enter(pElement, box);
    return true;
}

template <class T>
void BoxTree<T>::InsertNoThrow(T* pElement) noexcept
{
    const Interval3d box = BoxOfElement(*pElement);
    if (box.isNull())
        return;
    AdmitWaiting();
    if (m_spareNodes.FillUpTo(GetNodesForInsertion()))
        Enter(pElement, box);
    else
        m_aWaiting.push_back(pElement);
}

template <class T>
void BoxTree<T>::ReserveReturns(std::size_t nCount)
{
    const std::size_t nNeeded = m_aWaiting.size() + nCount;
    if (nNeeded > m_aWaiting.capacity())
        m_aWaiting.reserve(std::max(nNeeded, 2 * m_aWaiting.capacity())); // room is often asked for one by one
}

template <class T>
void BoxTree<T>::TrimReturns() noexcept
{
    constexpr std::size_t kKept = 1024;
    if (m_aWaiting.empty() && m_aWaiting.capacity() > kKept)
        std::vector<T*>().swap(m_aWaiting);
}

template <class T>
void BoxTree<T>::AdmitWaiting() noexcept
{
    std::size_t nAdmitted = 0;
    while (nAdmitted < m_aWaiting.size() && m_spareNodes.FillUpTo(GetNodesForInsertion()))
    {
        T* pElement = m_aWaiting[nAdmitted++];
        Enter(pElement, BoxOfElement(*pElement));
    }
    m_aWaiting.erase(m_aWaiting.begin(), m_aWaiting.begin() + static_cast<std::ptrdiff_t>(nAdmitted));
}

/// The most nodes that placing one entry can create, with so many levels between its own, counted too, and the root.
///
/// Each level has at most one forced reinsertion, of 3 entries. So at most 4 entries are appended to nodes of the
/// lowest level, one of which leads to the reinsertion, and at most 3 nodes are split. Each level above gets one entry
/// for each split below it and 3 of its own reinsertion, so it sees at most 2 splits more than the level below. The
/// root is split for its eleventh entry and again with every four more, and ends under a new one.
template <class T>
std::size_t BoxTree<T>::GetNodesForPlacing(std::size_t nLevelsBelowRoot)
{
    if (nLevelsBelowRoot == 0)
        return 2;
    const std::size_t nSplitsBelowRoot = nLevelsBelowRoot * (nLevelsBelowRoot + 2);
    const std::size_t nEntriesForRoot = 2 * nLevelsBelowRoot + 1;
    const std::size_t nSplitsOfRoot = 1 + (nEntriesForRoot + kBoxTreeReinsertedEntries) / kBoxTreeMinEntries;
    return nSplitsBelowRoot + nSplitsOfRoot + 1;
}

template <class T>
BoxTreeNode<T>* BoxTree<T>::CreateNode(std::uint32_t nLevel) noexcept
{
    ++m_nNodes;
    return m_spareNodes.Take(nLevel);
}

template <class T>
void BoxTree<T>::Enter(T* pElement, const Interval3d& box) noexcept
{
    if (!m_pRoot)
        m_pRoot = CreateNode(0);
    LevelSet reinserted;
    Place(EntryOf(pElement, box), 0, reinserted);
    ++m_nCount;
}

template <class T>
void BoxTree<T>::Place(const Entry& entry, std::uint32_t nLevel, LevelSet& reinserted) noexcept
{
    Node* pNode = ChooseNode(entry.box, nLevel);
    pNode->Append(entry);
    TreatOverflow(pNode, reinserted);
}

/// Widens the boxes on its way down: what is chosen there will hold the new box.
template <class T>
BoxTreeNode<T>* BoxTree<T>::ChooseNode(const Interval3d& box, std::uint32_t nLevel) noexcept
{
    Node* pNode = m_pRoot;
    WidenBox(m_rootBox, box);
    while (pNode->m_nLevel > nLevel)
    {
        const std::uint32_t nChild = AsInterior(*pNode).ChooseChild(box);
        WidenBox(pNode->m_aBoxes[nChild], box);
        pNode = AsInterior(*pNode).GetChild(nChild);
    }
    return pNode;
}

template <class T>
void BoxTree<T>::TreatOverflow(Node* pNode, LevelSet& reinserted) noexcept
{
    while (pNode->IsOverflowing())
    {
        if (pNode->m_pParent && reinserted.Add(pNode->m_nLevel))
        {
            Reinsert(pNode, reinserted);
            return;
        }
        Node* pSibling = SplitOff(*pNode);
        if (!pNode->m_pParent)
        {
            GrowRoot(pSibling);
            return;
        }
        BoxOfNode(*pNode) = pNode->ComputeBox();
        pNode->m_pParent->Append(EntryOf(pSibling, pSibling->ComputeBox()));
        pNode = pNode->m_pParent;
    }
}

/// Sends the entries farthest from the node's centre down from the root again, the nearest of them first.
template <class T>
void BoxTree<T>::Reinsert(Node* pNode, LevelSet& reinserted) noexcept
{
    constexpr std::uint32_t nKept = kSlots - kBoxTreeReinsertedEntries;
    const Point3d center = BoxOfNode(*pNode).mid();
    Entry aEntries[kSlots];
    double aDistancesSqrd[kSlots];
    for (std::uint32_t n = 0; n < kSlots; ++n)
    {
        aEntries[n] = pNode->GetEntry(n);
        aDistancesSqrd[n] = aEntries[n].box.mid().distSqrd(center);
    }
    BoxTreeSlotOrder order;
    order.Sort([&](std::uint32_t a, std::uint32_t b) { return aDistancesSqrd[a] < aDistancesSqrd[b]; });

    for (std::uint32_t n = 0; n < nKept; ++n)
        pNode->SetEntry(n, aEntries[order[n]]);
    pNode->m_nCount = nKept;
    RecomputeUpward(pNode);
    const std::uint32_t nLevel = pNode->m_nLevel;
    for (std::uint32_t n = nKept; n < kSlots; ++n)
        Place(aEntries[order[n]], nLevel, reinserted);
}

/// The two groups that a node's entries fall into, along the axis and at the place that serve best.
template <class T>
class BoxTree<T>::Split
{
public:
    explicit Split(const Node& node)
    {
        double dLeastScore = 0.0;
        for (int nAxis = 0; nAxis < 3; ++nAxis)
        {
            const Distributions candidate(node, nAxis);
            if (nAxis == 0 || candidate.GetScore() < dLeastScore)
            {
                dLeastScore = candidate.GetScore();
                m_distributions = candidate;
            }
        }
        ChooseDistribution();
    }

    const BoxTreeSlotOrder& GetOrder() const { return m_distributions.m_order; }
    std::uint32_t GetFirstCount() const { return m_nFirst; }

private:
    static constexpr std::uint32_t kMostFirst = kSlots - kBoxTreeMinEntries;

    /// The entries in order along one axis, with the boxes of both sides of each cut that leaves enough on either.
    struct Distributions
    {
        Distributions() = default;
        Distributions(const Node& node, int nAxis)
        {
            m_order.Sort(
                [&](std::uint32_t a, std::uint32_t b)
                {
                    const Interval3d& first = node.m_aBoxes[a];
                    const Interval3d& second = node.m_aBoxes[b];
                    return first.lower[nAxis] < second.lower[nAxis] ||
                           (first.lower[nAxis] == second.lower[nAxis] && first.upper[nAxis] < second.upper[nAxis]);
                });
            Interval3d box;
            for (std::uint32_t n = 0; n < kMostFirst; ++n)
            {
                WidenBox(box, node.m_aBoxes[m_order[n]]);
                m_aFirst[n + 1] = box;
            }
            box.init();
            for (std::uint32_t n = kSlots; n-- > kBoxTreeMinEntries;)
            {
                WidenBox(box, node.m_aBoxes[m_order[n]]);
                m_aRest[n] = box;
            }
        }

        double GetScore() const
        {
            double dSum = 0.0;
            for (std::uint32_t n = kBoxTreeMinEntries; n <= kMostFirst; ++n)
                dSum += m_aFirst[n].perimeter() + m_aRest[n].perimeter();
            return dSum;
        }

        BoxTreeSlotOrder m_order;
        Interval3d m_aFirst[kMostFirst + 1]; // [n]: box of the first n entries
        Interval3d m_aRest[kSlots];          // [n]: box of all but the first n
    };

    void ChooseDistribution()
    {
        double dLeastOverlap = 0.0;
        double dLeastVolume = 0.0;
        for (std::uint32_t n = kBoxTreeMinEntries; n <= kMostFirst; ++n)
        {
            const Interval3d& first = m_distributions.m_aFirst[n];
            const Interval3d& rest = m_distributions.m_aRest[n];
            const double dOverlap = (first * rest).volume();
            const double dVolume = first.volume() + rest.volume();
            if (m_nFirst == 0 || dOverlap < dLeastOverlap || (dOverlap == dLeastOverlap && dVolume < dLeastVolume))
            {
                m_nFirst = n;
                dLeastOverlap = dOverlap;
                dLeastVolume = dVolume;
            }
        }
    }

    Distributions m_distributions;
    std::uint32_t m_nFirst = 0;
};

/// Gives the new sibling, which has the parent but does not stand in it yet, nor is the node's box brought up to date.
template <class T>
BoxTreeNode<T>* BoxTree<T>::SplitOff(Node& node) noexcept
{
    const Split split(node);
    Entry aEntries[kSlots];
    for (std::uint32_t n = 0; n < kSlots; ++n)
        aEntries[n] = node.GetEntry(split.GetOrder()[n]);

    Node* pSibling = CreateNode(node.m_nLevel);
    pSibling->m_pParent = node.m_pParent;
    node.m_nCount = 0;
    for (std::uint32_t n = 0; n < kSlots; ++n)
        (n < split.GetFirstCount() ? node : *pSibling).Append(aEntries[n]);
    return pSibling;
}

template <class T>
void BoxTree<T>::GrowRoot(Node* pSibling) noexcept
{
    Node* pRoot = CreateNode(m_pRoot->m_nLevel + 1);
    for (Node* pChild : {m_pRoot, pSibling})
        pRoot->Append(EntryOf(pChild, pChild->ComputeBox()));
    m_pRoot = pRoot;
}
} // namespace QRV
