#include "api/ObjectArguments.h"
#include "archive/DebugDump.h"
#include "frame/APICall.h"

#include <QRV/ObjectDump.h>

#include <sstream>

namespace QRV
{
Result APIDebugObjectReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, std::string& strText)
{
    return ReadOnlyCall("APIDebugObjectReadOnly", nHistoryID, nObjectID, Out{strText})
        .Run(
            [&](History& history, Result& result)
            {
                constexpr unsigned kIndent = 4;
                const Object* pObject = FindArgument<Object>(history, nObjectID, result);
                if (!pObject)
                    return;
                std::ostringstream stream;
                stream.exceptions(std::ios::badbit); // want of memory would only end the text early
                DebugDump(*pObject, "Debug Dump", true, stream, kIndent);
                strText = stream.str();
            });
}
} // namespace QRV
