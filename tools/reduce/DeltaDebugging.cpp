#include "reduce/DeltaDebugging.h"

#include <algorithm>

namespace tools
{
namespace
{
Lines Without(const Lines& aLines, std::size_t nBegin, std::size_t nEnd)
{
    Lines aLeft(aLines.begin(), aLines.begin() + static_cast<std::ptrdiff_t>(nBegin));
    aLeft.insert(aLeft.end(), aLines.begin() + static_cast<std::ptrdiff_t>(nEnd), aLines.end());
    return aLeft;
}

/// Leaves out each run of that length that is not needed. False when all are.
bool LeaveOut(Lines& aLines, std::size_t nLength, const std::function<bool(const Lines&)>& fails)
{
    bool bShorter = false;
    // From the end: what the last lines do, the others do not rest on.
    for (std::size_t nEnd = aLines.size(); nEnd > 0;)
    {
        const std::size_t nBegin = nEnd - std::min(nEnd, nLength);
        Lines aLeft = Without(aLines, nBegin, nEnd);
        if (fails(aLeft))
        {
            aLines = std::move(aLeft);
            bShorter = true;
        }
        nEnd = nBegin;
    }
    return bShorter;
}
} // namespace

Lines Reduce(Lines aLines, const std::function<bool(const Lines&)>& fails)
{
    std::size_t nLength = std::max<std::size_t>(aLines.size() / 2, 1);
    while (!aLines.empty())
    {
        const bool bShorter = LeaveOut(aLines, nLength, fails);
        if (nLength == 1 && !bShorter)
            break;
        nLength = std::max<std::size_t>(nLength / 2, 1);
    }
    return aLines;
}
} // namespace tools
