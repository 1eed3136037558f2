/// What the audit of an object finds.
#pragma once

#include "frame/ResultImplementation.h"

#include <cstddef>
#include <vector>

namespace QRV
{
/// Appends one finding that names up to two objects; gives 1, for the count.
inline std::size_t AddFinding(std::vector<Result>& aResults, Result::nResultType nType, const Object* pFirst,
                              const Object* pSecond = nullptr)
{
    aResults.emplace_back().GetImplementation()->SetErrorCode(nType, pFirst, pSecond);
    return 1;
}
} // namespace QRV
