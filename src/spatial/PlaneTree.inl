#pragma once

namespace QRV
{
template <class Item>
void PlaneTree<Item>::Arrange(std::vector<PlanePlace>& aPlaces)
{
    const std::size_t nItems = aPlaces.size();
    const std::size_t nBuckets = std::bit_ceil(std::max<std::size_t>(1, (nItems + kBucketSize - 1) / kBucketSize));
    std::size_t nInner = 0;
    for (std::size_t nLevel = 1; nLevel < nBuckets; nLevel *= PlaneBoxes::kCount)
        nInner += nLevel;
    m_aBoxes.assign(nInner, PlaneBoxes());
    m_aItems.resize(nItems);
    m_aItemAt.assign(nItems, 0);
    m_aPlaceOf.assign(nItems, 0);
    m_aBucketOf.assign(nItems, 0);
    m_aLive.assign(nBuckets, 0);

    PlanePlace* const pPlaces = aPlaces.data();
    for (std::size_t nWidth = nBuckets; nWidth > 1; nWidth /= 2)
        for (std::size_t nFirst = 0; nFirst < nBuckets; nFirst += nWidth)
            Divide(pPlaces + BucketStart(nFirst), pPlaces + BucketStart(nFirst + nWidth / 2),
                   pPlaces + BucketStart(nFirst + nWidth));

    for (std::uint32_t nBucket = 0; nBucket < nBuckets; ++nBucket)
        for (std::size_t i = BucketStart(nBucket); i < BucketStart(nBucket + 1); ++i)
            m_aBucketOf[aPlaces[i].nItem] = nBucket;
}

/// Brings the places on the low side of the longer extent before `pMiddle`.
template <class Item>
void PlaneTree<Item>::Divide(PlanePlace* pFirst, PlanePlace* pMiddle, PlanePlace* pLast)
{
    PlaneBox box;
    for (const PlanePlace* p = pFirst; p != pLast; ++p)
        box.Add({p->x, p->y, p->x, p->y});
    if (box.xMax - box.xMin > box.yMax - box.yMin)
        std::nth_element(pFirst, pMiddle, pLast, [](const PlanePlace& a, const PlanePlace& b) { return a.x < b.x; });
    else
        std::nth_element(pFirst, pMiddle, pLast, [](const PlanePlace& a, const PlanePlace& b) { return a.y < b.y; });
}

/// Adds the item to its bucket; the boxes above stay as they are.
template <class Item>
void PlaneTree<Item>::Place(std::uint32_t nItem, const Item& item)
{
    const std::uint32_t nBucket = m_aBucketOf[nItem];
    const std::size_t nPlace = BucketStart(nBucket) + m_aLive[nBucket]++;
    m_aItems[nPlace] = item;
    m_aItemAt[nPlace] = nItem;
    m_aPlaceOf[nItem] = static_cast<std::uint32_t>(nPlace);
}

template <class Item>
PlaneBox PlaneTree<Item>::GetBucketBox(std::uint32_t nNode) const
{
    PlaneBox box;
    for (const Item& item : GetItems(nNode))
        box.Add(item.GetBox());
    return box;
}

template <class Item>
template <class GetItem>
void PlaneTree<Item>::Fill(std::uint32_t nItems, GetItem getItem)
{
    for (std::uint32_t n = 0; n < nItems; ++n)
        Place(n, getItem(n));
    // Children have higher numbers than their parent.
    for (auto nNode = static_cast<std::uint32_t>(m_aBoxes.size() + m_aLive.size() - 1); nNode != kRoot; --nNode)
        m_aBoxes[GetParent(nNode)].Set(GetSlot(nNode),
                                       IsBucket(nNode) ? GetBucketBox(nNode) : m_aBoxes[nNode].GetUnion());
}

template <class Item>
void PlaneTree<Item>::Insert(std::uint32_t nItem, const Item& item)
{
    Place(nItem, item);
    const PlaneBox added = item.GetBox();
    auto nNode = static_cast<std::uint32_t>(m_aBoxes.size() + m_aBucketOf[nItem]);
    while (nNode != kRoot)
    {
        PlaneBoxes& boxes = m_aBoxes[GetParent(nNode)];
        PlaneBox box = boxes.Get(GetSlot(nNode));
        if (box.Contains(added))
            return;
        box.Add(added);
        boxes.Set(GetSlot(nNode), box);
        nNode = GetParent(nNode);
    }
}

template <class Item>
void PlaneTree<Item>::Remove(std::uint32_t nItem)
{
    const std::uint32_t nBucket = m_aBucketOf[nItem];
    const std::size_t nPlace = m_aPlaceOf[nItem];
    const std::size_t nLast = BucketStart(nBucket) + --m_aLive[nBucket];
    m_aItems[nPlace] = m_aItems[nLast];
    m_aItemAt[nPlace] = m_aItemAt[nLast];
    m_aPlaceOf[m_aItemAt[nPlace]] = static_cast<std::uint32_t>(nPlace);

    auto nNode = static_cast<std::uint32_t>(m_aBoxes.size() + nBucket);
    PlaneBox box = GetBucketBox(nNode);
    while (nNode != kRoot)
    {
        PlaneBoxes& boxes = m_aBoxes[GetParent(nNode)];
        if (boxes.Get(GetSlot(nNode)) == box)
            return;
        boxes.Set(GetSlot(nNode), box);
        box = boxes.GetUnion();
        nNode = GetParent(nNode);
    }
}

template <class Item>
template <class GetReached, class Holds>
bool PlaneTree<Item>::Any(GetReached getReached, Holds holds) const
{
    std::array<std::uint32_t, kMaxOpen> aOpen;
    std::size_t nOpen = 0;
    aOpen[nOpen++] = kRoot;
    while (nOpen > 0)
    {
        const std::uint32_t nNode = aOpen[--nOpen];
        if (IsBucket(nNode))
        {
            for (const Item& item : GetItems(nNode))
                if (holds(item))
                    return true;
            continue;
        }
        // No branch here: which of the four are reached can't be foretold.
        const std::uint32_t nReached = getReached(m_aBoxes[nNode]);
        for (std::uint32_t i = 0; i < PlaneBoxes::kCount; ++i)
        {
            aOpen[nOpen] = GetChild(nNode, i);
            nOpen += nReached >> i & 1;
        }
    }
    return false;
}
} // namespace QRV
