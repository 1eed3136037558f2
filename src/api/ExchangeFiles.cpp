#include "exchange/FileDispatcher.h"
#include "frame/APICall.h"
#include "geometry/Finite.h"

#include <QRV/API.h>

#include <cmath>

namespace QRV
{
namespace
{
/// The live objects of the ids; false when one names none.
bool FindAll(const History& history, const std::vector<std::uint64_t>& aIDs, std::vector<Object*>& aObjects)
{
    for (const std::uint64_t nID : aIDs)
    {
        Object* pObject = history.GetObject(nID);
        if (!pObject)
            return false;
        aObjects.push_back(pObject);
    }
    return true;
}

/// The live objects of the ids, of any History; what does not live is passed over.
ObjectSet FindLive(const std::vector<ObjectHistoryID>& aIDs)
{
    ObjectSet objects;
    for (const ObjectHistoryID& id : aIDs)
    {
        const History* pHistory = HistoryRegistry::Get().GetHistory(id.m_nHistoryID);
        if (const Object* pObject = pHistory ? pHistory->GetObject(id.m_nObjectID) : nullptr)
            objects.insert(pObject);
    }
    return objects;
}

/// What a file can be scaled by: a smaller factor would leave nothing of a model.
bool IsUsableScale(double dScale)
{
    return IsUsable(dScale) && std::abs(dScale) > kLinearTolerance;
}
} // namespace

// The list of further objects is for formats that keep references between objects, and STL does not.
Result APISaveToFileReadOnly(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects, const char* path,
                             nFileType type, bool saveDerivable, double scale,
                             const std::vector<ObjectHistoryID>& extraObjects,
                             const std::vector<ObjectHistoryID>& excludedObjects)
{
    return ReadOnlyCall("APISaveToFileReadOnly", nHistoryID, objects, path, type, saveDerivable, scale, extraObjects,
                        excludedObjects)
        .Run(
            [&](Result& result)
            {
                SaveRequest request{{}, path, type, scale, FindLive(excludedObjects)};
                const History* pHistory = HistoryRegistry::Get().GetHistory(nHistoryID);
                if (nHistoryID == INVALID_ID || objects.empty() || !path || !IsUsableScale(scale))
                    result.SetErrorCode(Result::nBadInput);
                else if (!pHistory)
                    result.SetErrorCode(Result::nBadHistoryID);
                else if (!FindAll(*pHistory, objects, request.aObjects))
                    result.SetErrorCode(Result::nBadInput);
                return result.IsGood() && SaveToFile(request, result);
            });
}
} // namespace QRV
