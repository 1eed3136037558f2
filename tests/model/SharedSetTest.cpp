#include "model/SharedSet.h"

#include "support/FailingAllocator.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace QRV
{
namespace
{
struct OwnKey
{
    std::uint64_t operator()(std::uint64_t n) const { return n; }
};
using NumberSet = SharedSet<std::uint64_t, OwnKey>;
using PlainSet = std::set<std::uint64_t>;

struct Part
{
    std::uint64_t nID;
};
struct PartKey
{
    std::uint64_t operator()(const Part* pPart) const { return pPart->nID; }
};
using PartSet = SharedSet<Part*, PartKey>;

NumberSet MakeRange(std::uint64_t nCount)
{
    NumberSet set;
    for (std::uint64_t n = 0; n < nCount; ++n)
        set.Insert(3 * n);
    return set;
}

void ExpectSame(const NumberSet& set, const PlainSet& expected)
{
    ASSERT_EQ(set.size(), expected.size());
    EXPECT_TRUE(std::equal(set.begin(), set.end(), expected.begin(), expected.end()));
    if (!expected.empty())
    {
        EXPECT_EQ(set.front(), *expected.begin());
        EXPECT_EQ(set.back(), *expected.rbegin());
    }
}

/// A key of the range at random, or one next to the ends, where the way down differs.
std::uint64_t PickKey(std::mt19937_64& random, std::uint64_t nRange, const PlainSet& present)
{
    switch (present.empty() ? 3 : random() % 8)
    {
    case 0:
        return *present.begin();
    case 1:
        return *present.rbegin();
    case 2:
        return *present.rbegin() + 1;
    default:
        return random() % nRange;
    }
}
} // namespace

TEST(SharedSet, AgreesWithAPlainSetAndLeavesOldCopiesAlone)
{
    for (const std::uint64_t nRange : {8ull, 60ull, 700ull, 5000ull, ~0ull})
        for (unsigned nSeed = 0; nSeed < 6; ++nSeed)
        {
            SCOPED_TRACE(testing::Message() << "range " << nRange << ", seed " << nSeed);
            std::mt19937_64 random(nSeed);
            NumberSet set;
            PlainSet expected;
            std::vector<std::pair<NumberSet, PlainSet>> aCopies;
            for (unsigned n = 0; n < 6000; ++n)
            {
                const bool bGrows = random() % 100 < (n / 1500 % 2 == 0 ? 75 : 25);
                const std::uint64_t nKey = PickKey(random, nRange, expected);
                if (bGrows)
                    ASSERT_EQ(set.Insert(nKey), expected.insert(nKey).second);
                else
                    ASSERT_EQ(set.Erase(nKey), expected.erase(nKey) > 0);
                ASSERT_EQ(set.Contains(nKey), bGrows);
                if (n % 250 == 0)
                    aCopies.emplace_back(set, expected);
            }
            ExpectSame(set, expected);
            for (const auto& [copy, inCopy] : aCopies)
                ExpectSame(copy, inCopy);
            while (!expected.empty())
            {
                const std::uint64_t nKey = *expected.lower_bound(random() % (*expected.rbegin() + 1));
                expected.erase(nKey);
                ASSERT_TRUE(set.Erase(nKey));
            }
            ExpectSame(set, {});
            EXPECT_EQ(set.GetSizeInBytes(), 0u);
        }
}

TEST(SharedSet, IsBuiltAlikeFromEitherEnd)
{
    NumberSet fromBelow = MakeRange(3000);
    NumberSet fromAbove;
    for (std::uint64_t n = 3000; n-- > 0;)
        fromAbove.Insert(3 * n);
    EXPECT_TRUE(fromBelow == fromAbove);
    fromAbove.Erase(1500);
    EXPECT_FALSE(fromBelow == fromAbove);
    fromAbove.Insert(1501);
    EXPECT_FALSE(fromBelow == fromAbove);
    // Keys that come in order fill their nodes; in the worst case one node in two is full.
    EXPECT_LT(fromBelow.GetSizeInBytes(), 3000 * 10);
    EXPECT_LT(fromAbove.GetSizeInBytes(), 3000 * 20);
    ExpectSame({5, 3, 9, 3}, {3, 5, 9});
}

TEST(SharedSet, SharesAllButTheWayToAChange)
{
    constexpr std::size_t kWay = 3 * 32 * 16 + 600; // three levels of nodes, and one that is split
    const NumberSet original = MakeRange(20000);
    const std::size_t nAlone = original.GetSizeInBytes();
    NumberSet copy = original;
    EXPECT_EQ(original.GetSizeInBytes(), nAlone / 2);

    for (const std::uint64_t nKey : {0ull, 29999ull, 60000ull, 70000ull})
    {
        copy = original;
        copy.Insert(nKey + 1);
        copy.Erase(nKey + 1);
        copy.Erase(nKey);
        const std::size_t nBoth = original.GetSizeInBytes() + copy.GetSizeInBytes();
        EXPECT_GT(nBoth, nAlone) << nKey;
        EXPECT_LT(nBoth, nAlone + kWay) << nKey;
    }
    copy = NumberSet();
    EXPECT_EQ(original.GetSizeInBytes(), nAlone);
}

TEST(SharedSet, ChangesInPlaceWhatNobodyElseHolds)
{
    NumberSet set = MakeRange(1000);
    {
        const FailingAllocator::Scope shortage(0);
        EXPECT_TRUE(set.Erase(300));
        EXPECT_TRUE(set.Insert(301));
    }
    const NumberSet copy = set;
    const FailingAllocator::Scope shortage(0);
    EXPECT_THROW(set.Erase(303), std::bad_alloc);
}

TEST(SharedSet, SurvivesAShortageAtEveryAllocation)
{
    // Full nodes on every level, so that one more element at the end or within splits up to the root.
    const NumberSet full = MakeRange(32 * 32);
    for (const std::uint64_t nKey : {1ull, 1501ull, 9999ull})
    {
        NumberSet set = full;
        std::size_t nAllowed = 0;
        for (; !SucceedsWith(nAllowed, [&] { set.Insert(nKey); }); ++nAllowed)
        {
            ASSERT_TRUE(set == full);
            set = full;
        }
        EXPECT_GT(nAllowed, 2u);
        EXPECT_EQ(set.size(), full.size() + 1);
        EXPECT_TRUE(set.Erase(nKey));
        EXPECT_TRUE(set == full);
    }
    const std::vector<std::uint64_t> aNumbers(full.begin(), full.end());
    std::size_t nAllowed = 0;
    while (!SucceedsWith(nAllowed, [&] { const NumberSet built(aNumbers.begin(), aNumbers.end()); }))
        ++nAllowed;
    EXPECT_GT(nAllowed, 31u);
}

TEST(SharedSet, FollowsKeysThatMoveUpAlike)
{
    std::vector<std::unique_ptr<Part>> aParts;
    PartSet set;
    for (std::uint64_t n = 0; n < 2000; ++n)
    {
        aParts.push_back(std::make_unique<Part>(Part{n}));
        set.Insert(aParts.back().get());
    }
    for (auto& pPart : aParts)
        pPart->nID += 500000;
    EXPECT_FALSE(set.Contains(700));
    ASSERT_TRUE(set.Contains(500700));
    EXPECT_EQ(*set.Find(500700), aParts[700].get());
    Part added{400000};
    EXPECT_TRUE(set.Insert(&added));
    EXPECT_EQ(set.front(), &added);
    EXPECT_TRUE(set.Erase(501999));
    EXPECT_EQ(set.back(), aParts[1998].get());
}
} // namespace QRV
