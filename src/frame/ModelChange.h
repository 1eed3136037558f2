/// What the library tells the host when a History has moved.
#pragma once

#include <QRV/Ids.h>
#include <QRV/ObjectTypes.h>

#include <string>

namespace QRV
{
/// One change of one History. `INVALID_ID` in the delta ids stands for no delta.
struct ModelChangeData
{
    std::uint64_t historyID = INVALID_ID; ///< `INVALID_ID` when all Histories were deleted
    nModelChangeType type = nModelCommitted;
    std::string name;                         ///< of the exported call that committed; otherwise empty
    std::uint64_t previousDelta = INVALID_ID; ///< active before; for a merge the first delta merged
    std::uint64_t currentDelta = INVALID_ID;  ///< active after; for a merge the last delta merged
};
} // namespace QRV
