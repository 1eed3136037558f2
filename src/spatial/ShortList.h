/// Lists of what stands at one place, which are short.
#pragma once

#include <cstddef>
#include <vector>

namespace QRV
{
/// Makes room for a few elements at once in a list that has none, instead of for one, two and four, one after another.
/// For lists of a moment: in those that stay the room would be lost.
template <class T>
void ReserveFew(std::vector<T>& aList)
{
    constexpr std::size_t kFew = 8;
    if (aList.capacity() == 0)
        aList.reserve(kFew);
}
} // namespace QRV
