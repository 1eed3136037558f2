/// From the type of a file to the code that writes it.
#pragma once

#include "model/Object.h"

#include <vector>

namespace QRV
{
struct SaveRequest
{
    std::vector<Object*> aObjects;
    const char* pPath;
    nFileType nType;
    double dScale;
    ObjectSet excluded;
};

/// Writes the objects to a file. False on failure, with a code in `result` or none; `nBadInput` for a type that has no
/// writer, and then no file is touched.
bool SaveToFile(const SaveRequest& request, Result& result);
} // namespace QRV
