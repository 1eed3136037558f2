/// A search tree over a fixed set of places in a plane, whose items come and go.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace QRV
{
/// A box along the axes of a plane frame. As constructed it is null and reaches nothing.
struct PlaneBox
{
    double xMin = 1e30;
    double yMin = 1e30;
    double xMax = -1e30;
    double yMax = -1e30;

    bool operator==(const PlaneBox&) const = default;

    bool Contains(const PlaneBox& other) const
    {
        return xMin <= other.xMin && yMin <= other.yMin && xMax >= other.xMax && yMax >= other.yMax;
    }

    bool Touches(const PlaneBox& other) const
    {
        return xMin <= other.xMax && yMin <= other.yMax && other.xMin <= xMax && other.yMin <= yMax;
    }

    void Add(const PlaneBox& other)
    {
        xMin = std::min(xMin, other.xMin);
        yMin = std::min(yMin, other.yMin);
        xMax = std::max(xMax, other.xMax);
        yMax = std::max(yMax, other.yMax);
    }
};

/// Two numbers that the processor works on together, and the answers to a test of both.
using DoublePair = double __attribute__((vector_size(16)));
using AnswerPair = decltype(DoublePair() < DoublePair());

/// Four boxes side by side, so that a test runs over all of them at once.
class PlaneBoxes
{
public:
    static constexpr std::uint32_t kCount = 4;

    /// The sides of a box, `m_aSides` holds each of them for the four boxes.
    enum nSide
    {
        nXMin,
        nYMin,
        nXMax,
        nYMax
    };

    PlaneBox Get(std::uint32_t i) const
    {
        return {GetSide(nXMin, i), GetSide(nYMin, i), GetSide(nXMax, i), GetSide(nYMax, i)};
    }

    void Set(std::uint32_t i, const PlaneBox& box)
    {
        m_aSides[nXMin][i / 2][i % 2] = box.xMin;
        m_aSides[nYMin][i / 2][i % 2] = box.yMin;
        m_aSides[nXMax][i / 2][i % 2] = box.xMax;
        m_aSides[nYMax][i / 2][i % 2] = box.yMax;
    }

    PlaneBox GetUnion() const
    {
        PlaneBox box;
        for (std::uint32_t i = 0; i < kCount; ++i)
            box.Add(Get(i));
        return box;
    }

    /// A side of boxes 0 and 1, or of 2 and 3 for the second half.
    DoublePair GetHalf(nSide side, std::uint32_t nHalf) const { return m_aSides[side][nHalf]; }

private:
    double GetSide(nSide side, std::uint32_t i) const { return m_aSides[side][i / 2][i % 2]; }

    static constexpr DoublePair kHigh{1e30, 1e30};
    static constexpr DoublePair kLow{-1e30, -1e30};

    DoublePair m_aSides[4][2] = {{kHigh, kHigh}, {kHigh, kHigh}, {kLow, kLow}, {kLow, kLow}};
};

/// The line from one point to another, which tells the doubled areas of the triangles that other points make with it.
class PlaneSide
{
public:
    template <class A, class B>
    PlaneSide(const A& from, const B& to)
        : m_x(from.x), m_y(from.y), m_dx(to.x - from.x), m_dy(to.y - from.y),
          m_largestX(m_dy > 0.0 ? PlaneBoxes::nXMin : PlaneBoxes::nXMax),
          m_largestY(m_dx > 0.0 ? PlaneBoxes::nYMax : PlaneBoxes::nYMin),
          m_smallestX(m_dy > 0.0 ? PlaneBoxes::nXMax : PlaneBoxes::nXMin),
          m_smallestY(m_dx > 0.0 ? PlaneBoxes::nYMin : PlaneBoxes::nYMax)
    {
    }

    double GetArea(double x, double y) const { return m_dx * (y - m_y) - m_dy * (x - m_x); }

    // Rounding keeps the order of results, so no point of a box lies beyond its outermost corner.
    DoublePair GetLargestAreas(const PlaneBoxes& boxes, std::uint32_t nHalf) const
    {
        return m_dx * (boxes.GetHalf(m_largestY, nHalf) - m_y) - m_dy * (boxes.GetHalf(m_largestX, nHalf) - m_x);
    }

    DoublePair GetSmallestAreas(const PlaneBoxes& boxes, std::uint32_t nHalf) const
    {
        return m_dx * (boxes.GetHalf(m_smallestY, nHalf) - m_y) - m_dy * (boxes.GetHalf(m_smallestX, nHalf) - m_x);
    }

private:
    double m_x;
    double m_y;
    double m_dx;
    double m_dy;
    PlaneBoxes::nSide m_largestX;
    PlaneBoxes::nSide m_largestY;
    PlaneBoxes::nSide m_smallestX;
    PlaneBoxes::nSide m_smallestY;
};

/// The place at which an item is filed; the item itself may reach farther.
struct PlanePlace
{
    double x;
    double y;
    std::uint32_t nItem;
};

/// A complete tree of fours over buckets of up to `kBucketSize` items that are near to each other.
///
/// The division is made once for all items that may come. Items then enter and leave in logarithmic time, and every
/// box is kept tight around what is live below it, so that a search doesn't walk through what has gone.
/// `Item` has a member `GetBox` that gives its `PlaneBox`.
/// Nodes are numbered from the root, 0; the children of n are 4n + 1 to 4n + 4.
template <class Item>
class PlaneTree
{
public:
    static constexpr std::uint32_t kRoot = 0;

    static constexpr std::uint32_t GetChild(std::uint32_t nNode, std::uint32_t i)
    {
        return PlaneBoxes::kCount * nNode + 1 + i;
    }

    /// Divides the places into buckets; no item is live then. Changes the order of `aPlaces`, whose item numbers run
    /// from 0 to its size - 1.
    void Arrange(std::vector<PlanePlace>& aPlaces);

    /// Inserts `getItem(n)` for all n below `nItems` into the tree, in which no item is live.
    template <class GetItem>
    void Fill(std::uint32_t nItems, GetItem getItem);

    void Insert(std::uint32_t nItem, const Item& item);
    void Remove(std::uint32_t nItem);

    bool IsBucket(std::uint32_t nNode) const { return nNode >= m_aBoxes.size(); }

    /// The boxes of the four children of a node that is no bucket.
    const PlaneBoxes& GetBoxes(std::uint32_t nNode) const { return m_aBoxes[nNode]; }

    /// The live items of a bucket.
    std::span<const Item> GetItems(std::uint32_t nNode) const
    {
        const std::size_t nBucket = nNode - m_aBoxes.size();
        return {m_aItems.data() + BucketStart(nBucket), m_aLive[nBucket]};
    }

    /// True when `holds(item)` is true for a live item below nodes that pass `getReached(boxes)`, which gives bit i
    /// for box i.
    template <class GetReached, class Holds>
    bool Any(GetReached getReached, Holds holds) const;

private:
    static constexpr std::uint32_t kBucketSize = 8;
    static constexpr std::size_t kMaxOpen = 64; // three per level and one

    static std::uint32_t GetParent(std::uint32_t nNode) { return (nNode - 1) / PlaneBoxes::kCount; }
    static std::uint32_t GetSlot(std::uint32_t nNode) { return (nNode - 1) % PlaneBoxes::kCount; }

    std::size_t BucketStart(std::size_t nBucket) const { return nBucket * m_aItems.size() / m_aLive.size(); }

    void Place(std::uint32_t nItem, const Item& item);
    PlaneBox GetBucketBox(std::uint32_t nNode) const;
    static void Divide(PlanePlace* pFirst, PlanePlace* pMiddle, PlanePlace* pLast);

    std::vector<PlaneBoxes> m_aBoxes;
    std::vector<Item> m_aItems; // by bucket, the live ones first
    std::vector<std::uint32_t> m_aItemAt;
    std::vector<std::uint32_t> m_aPlaceOf;
    std::vector<std::uint32_t> m_aBucketOf;
    std::vector<std::uint32_t> m_aLive; // per bucket; their number is a power of two
};
} // namespace QRV

#include "spatial/PlaneTree.inl"
