/// How the exported calls go from ids to objects and back.
#pragma once

#include "history/History.h"
#include "model/Attribute.h"

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

/// As FindArgument, and true with null for `INVALID_ID`.
template <class T>
bool FindOptionalArgument(const History& history, std::uint64_t nID, T*& pObject, Result& result)
{
    pObject = nID == INVALID_ID ? nullptr : FindArgument<T>(history, nID, result);
    return pObject || nID == INVALID_ID;
}

/// Appends the objects that the ids name, in order. False at the first that FindArgument does not find.
template <class T>
bool FindArguments(const History& history, const std::vector<std::uint64_t>& aIDs, std::vector<T*>& aObjects,
                   Result& result)
{
    aObjects.reserve(aObjects.size() + aIDs.size());
    for (const std::uint64_t nID : aIDs)
    {
        T* pObject = FindArgument<T>(history, nID, result);
        if (!pObject)
            return false;
        aObjects.push_back(pObject);
    }
    return true;
}

/// The same for what is to be dressed: any objects but attributes, and but those of the classes `Barred`, which others
/// belong to.
template <class... Barred>
bool FindBearers(const History& history, const std::vector<std::uint64_t>& aIDs, std::vector<Object*>& aObjects,
                 Result& result)
{
    if (!FindArguments(history, aIDs, aObjects, result))
        return false;
    for (const Object* pObject : aObjects)
        if (dynamic_cast<const Attribute*>(pObject) || (dynamic_cast<const Barred*>(pObject) || ...))
            result.SetErrorCode(Result::nBadInput, pObject->GetID());
    return result.IsGood();
}

template <class T>
void AppendIDs(const std::vector<T*>& aObjects, std::vector<std::uint64_t>& aIDs)
{
    aIDs.reserve(aIDs.size() + aObjects.size());
    for (const T* pObject : aObjects)
        aIDs.push_back(pObject->GetID());
}
} // namespace QRV
