#include "spatial/ShortList.h"

#include <gtest/gtest.h>

#include <vector>

namespace QRV
{
TEST(ShortList, HoldsWhatAVectorHoldsBeyondItsOwnRoom)
{
    ShortList<int, 4> list;
    std::vector<int> aExpected;
    const auto expectSame = [&] { EXPECT_EQ(std::vector<int>(list.begin(), list.end()), aExpected); };
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        for (int n = 0; n < 40; ++n)
        {
            list.push_back(n);
            aExpected.push_back(n);
            expectSame();
        }
        const auto isOdd = [](int n) { return n % 2 != 0; };
        list.EraseIf(isOdd);
        std::erase_if(aExpected, isOdd);
        expectSame();
        list.pop_back();
        aExpected.pop_back();
        expectSame();
        EXPECT_EQ(list.front(), aExpected.front());
        EXPECT_EQ(list.back(), aExpected.back());
        if (nRound == 1)
        {
            list.clear();
            aExpected.clear();
            EXPECT_TRUE(list.empty());
        }
    }
}
} // namespace QRV
