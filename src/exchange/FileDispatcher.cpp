#include "exchange/FileDispatcher.h"

#include "exchange/STL.h"

namespace QRV
{
bool SaveToFile(const SaveRequest& request, Result& result)
{
    switch (request.nType)
    {
    case nFileTypeSTL:
        return WriteSTL(request.aObjects, request.pPath, request.dScale, request.excluded);
    default: // a type without a writer
        result.SetErrorCode(Result::nBadInput);
        return false;
    }
}
} // namespace QRV
