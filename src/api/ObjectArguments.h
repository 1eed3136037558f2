/// How the exported calls go from ids to objects and back.
#pragma once

#include "history/History.h"

#include <vector>

namespace QRV
{
/// The live object of the class that an argument names; for any other id null, and `nBadInput` with that id.
template <class T>
T* FindArgument(const History& history, std::uint64_t nID, Result& result)
{
    T* pObject = history.Get<T>(nID);
    if (!pObject)
        result.SetErrorCode(Result::nBadInput, nID);
    return pObject;
}

template <class T>
void AppendIDs(const std::vector<T*>& aObjects, std::vector<std::uint64_t>& aIDs)
{
    aIDs.reserve(aIDs.size() + aObjects.size());
    for (const T* pObject : aObjects)
        aIDs.push_back(pObject->GetID());
}
} // namespace QRV
