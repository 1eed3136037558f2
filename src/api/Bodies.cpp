#include "frame/APICall.h"
#include "history/History.h"
#include "model/Body.h"
#include "model/Face.h"
#include "operations/ObjectCreation.h"

#include <QRV/API.h>

namespace QRV
{
Result APICreateEmptyBody(std::uint64_t nHistoryID, std::uint64_t& nBodyID)
{
    return ModifyingCall("APICreateEmptyBody", nHistoryID, Out{nBodyID})
        .Run([&](History& history, Result& result)
             { GiveID(TryCreate<Body>(history, result, Result::nOutOfMemory), nBodyID); });
}

Result APIAddFaceComponentToBody(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::uint64_t nBodyID)
{
    return ModifyingCall("APIAddFaceComponentToBody", nHistoryID, nFaceID, nBodyID)
        .Run(
            [&](History& history, Result&)
            {
                auto* pFace = history.Get<Face>(nFaceID);
                auto* pBody = history.Get<Body>(nBodyID);
                if (!pFace || !pBody || !pBody->AddFaceComponent(*pFace))
                    return false;
                // Each sheet is a shell of its own, also one that hangs on others over an edge of three or more sides.
                pBody->Rebuild(false);
                return true;
            });
}
} // namespace QRV
