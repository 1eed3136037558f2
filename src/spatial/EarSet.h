/// The ears of a polygon during clipping.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace QRV
{
/// A set of node indices that gives its first member at once: a bit per index, and above each level a bit per word
/// that isn't empty.
class EarSet
{
public:
    /// An empty set with room for the indices below `nNodes`.
    explicit EarSet(std::size_t nNodes)
    {
        do
        {
            nNodes = (nNodes + kWordBits - 1) / kWordBits;
            m_aLevels.emplace_back(nNodes);
        } while (nNodes > 1);
    }

    bool IsEmpty() const { return m_aLevels.back().front() == 0; }

    void Insert(std::size_t nNode)
    {
        for (std::vector<std::uint64_t>& aWords : m_aLevels)
        {
            aWords[nNode / kWordBits] |= std::uint64_t{1} << nNode % kWordBits;
            nNode /= kWordBits;
        }
    }

    void Remove(std::size_t nNode)
    {
        for (std::vector<std::uint64_t>& aWords : m_aLevels)
        {
            aWords[nNode / kWordBits] &= ~(std::uint64_t{1} << nNode % kWordBits);
            nNode /= kWordBits;
            if (aWords[nNode] != 0)
                return;
        }
    }

    /// The lowest index; the set isn't empty.
    std::uint32_t GetFirst() const
    {
        std::size_t n = 0;
        for (auto it = m_aLevels.rbegin(); it != m_aLevels.rend(); ++it)
            n = n * kWordBits + static_cast<std::size_t>(std::countr_zero((*it)[n]));
        return static_cast<std::uint32_t>(n);
    }

private:
    static constexpr std::size_t kWordBits = 64;

    std::vector<std::vector<std::uint64_t>> m_aLevels; // the members first
};

/// A cost per node index, infinite at first, as a tree of least costs. The next index below a given cost is found
/// without a walk through all of them.
class EarCosts
{
public:
    static constexpr double kNoCost = std::numeric_limits<double>::infinity();
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    /// Makes room for the indices below `nNodes`.
    explicit EarCosts(std::size_t nNodes) : m_nLeaves(std::bit_ceil(nNodes)), m_aLeast(2 * m_nLeaves, kNoCost) {}

    void Set(std::uint32_t nNode, double dCost)
    {
        std::size_t n = m_nLeaves + nNode;
        while (m_aLeast[n] != dCost)
        {
            m_aLeast[n] = dCost;
            if (n == 1)
                return;
            dCost = dCost < m_aLeast[n ^ 1] ? dCost : m_aLeast[n ^ 1];
            n /= 2;
        }
    }

    double Get(std::uint32_t nNode) const { return m_aLeast[m_nLeaves + nNode]; }

    /// The first index after `nNode` with a cost below `dCost`, or `kNone`.
    std::uint32_t FindNextBelow(std::uint32_t nNode, double dCost) const
    {
        std::size_t n = m_nLeaves + nNode;
        while (n % 2 == 1 || m_aLeast[n + 1] >= dCost)
        {
            n /= 2;
            if (n <= 1)
                return kNone;
        }
        for (++n; n < m_nLeaves;)
            n = m_aLeast[2 * n] < dCost ? 2 * n : 2 * n + 1;
        return static_cast<std::uint32_t>(n - m_nLeaves);
    }

private:
    std::size_t m_nLeaves;
    std::vector<double> m_aLeast; // the children of n are 2n and 2n + 1
};
} // namespace QRV
