#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "geometry/Finite.h"
#include "model/Attribute.h"
#include "model/ConnectedObjects.h"
#include "spatial/Measures.h"

#include <QRV/API.h>

namespace QRV
{
Result APIGetObjectTypeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType& nType)
{
    return ReadOnlyCall("APIGetObjectTypeReadOnly", nHistoryID, nObjectID, Out{nType})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    nType = pObject->GetType();
            });
}

Result APIGetObjectNameReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, const char*& pName)
{
    return ReadOnlyCall("APIGetObjectNameReadOnly", nHistoryID, nObjectID, Out{pName})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    pName = pObject->GetName();
            });
}

Result APIIsObjectLiveReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bLive)
{
    return ReadOnlyCall("APIIsObjectLiveReadOnly", nHistoryID, nObjectID, Out{bLive})
        .Run(
            [&](Result& result)
            {
                if (nHistoryID == INVALID_ID)
                    return;
                const History* pHistory = HistoryRegistry::Get().GetHistory(nHistoryID);
                if (!pHistory)
                    return result.SetErrorCode(Result::nBadHistoryID);
                bLive = pHistory->GetObject(nObjectID) != nullptr;
            });
}

Result APIGetObjectsByTypeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType nType,
                                   std::vector<std::uint64_t>& aIDs, bool bUpward)
{
    return ReadOnlyCall("APIGetObjectsByTypeReadOnly", nHistoryID, nObjectID, nType, Append{aIDs}, bUpward)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aFound;
                if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    pObject->GetObjectsOfType(aFound, nType, bUpward);
                AppendIDs(aFound, aIDs);
            });
}

Result APIGetAllObjectsByTypeReadOnly(std::uint64_t nHistoryID, nObjectType nType, std::vector<std::uint64_t>& aIDs)
{
    return ReadOnlyCall("APIGetAllObjectsByTypeReadOnly", nHistoryID, nType, Append{aIDs})
        .Run(
            [&](History& history, Result&)
            {
                std::vector<Object*> aFound;
                history.GetObjectsByType(aFound, nType, true);
                AppendIDs(aFound, aIDs);
            });
}

Result APIGetAllNonOwnedReadOnly(std::uint64_t nHistoryID, std::vector<std::uint64_t>& aIDs)
{
    return ReadOnlyCall("APIGetAllNonOwnedReadOnly", nHistoryID, Append{aIDs})
        .Run(
            [&](History& history, Result&)
            {
                std::vector<Object*> aFound;
                history.GetObjectsByType(aFound, nUnspecifiedType, true);
                std::erase_if(aFound, [](const Object* pObject) { return !pObject->IsNonOwned(); });
                AppendIDs(aFound, aIDs);
            });
}

Result APIIsNonOwnedReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bNonOwned)
{
    return ReadOnlyCall("APIIsNonOwnedReadOnly", nHistoryID, nObjectID, Out{bNonOwned})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    bNonOwned = pObject->IsNonOwned();
            });
}

Result APIGetAllConnectedNonOwnedReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                          std::vector<std::uint64_t>& aIDs)
{
    return ReadOnlyCall("APIGetAllConnectedNonOwnedReadOnly", nHistoryID, nObjectID, Append{aIDs})
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aTops;
                if (Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    GetAllConnectedNonOwned({pObject}, aTops);
                AppendIDs(aTops, aIDs);
            });
}

Result APIGetTopLevelOwnersReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                    std::vector<std::uint64_t>& aOwners)
{
    return ReadOnlyCall("APIGetTopLevelOwnersReadOnly", nHistoryID, nObjectID, Append{aOwners})
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aFound;
                if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    pObject->GetTopOwners(aFound);
                AppendIDs(aFound, aOwners);
            });
}

Result APIGetObjectAttributesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType nType,
                                      std::vector<std::uint64_t>& aAttributes)
{
    return ReadOnlyCall("APIGetObjectAttributesReadOnly", nHistoryID, nObjectID, nType, Append{aAttributes})
        .Run(
            [&](History& history, Result& result)
            {
                const Object* pObject = FindArgument<Object>(history, nObjectID, result);
                if (!pObject)
                    return;
                std::vector<Attribute*> aFound;
                if (nType == nUnspecifiedType)
                    pObject->GetAttributes(aFound);
                else
                    pObject->GetAttributesOfType(nType, aFound);
                AppendIDs(aFound, aAttributes);
            });
}

Result APICheckValidityReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, std::vector<Result>& aResults)
{
    return ReadOnlyCall("APICheckValidityReadOnly", nHistoryID, nObjectID, Append{aResults})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    pObject->CheckValidityRecursive(aResults);
            });
}

Result APIGetBoxReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, Interval3d& box, const Transf3d& transform)
{
    return ReadOnlyCall("APIGetBoxReadOnly", nHistoryID, nObjectID, Out{box}, transform)
        .Run(
            [&](History& history, Result& result)
            {
                if (!IsUsable(transform))
                    result.SetErrorCode(Result::nBadInput);
                else if (nObjectID == INVALID_ID)
                    box = history.GetBox(transform);
                else if (Object* pObject = FindArgument<Object>(history, nObjectID, result))
                    box = GetTransformedBox(*pObject, transform);
            });
}

namespace
{
/// A measure of one object, as transformed.
using Measure = double (Object::*)(const Transf3d*) const;

void TakeMeasure(const History& history, std::uint64_t nObjectID, const Transf3d* pTransform, Measure measure,
                 double& dValue, Result& result)
{
    if (pTransform && !IsUsable(*pTransform))
        return result.SetErrorCode(Result::nBadInput);
    if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
        dValue = (pObject->*measure)(pTransform);
}
} // namespace

Result APIComputeAreaReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, double& dArea,
                              const Transf3d* pTransform)
{
    return ReadOnlyCall("APIComputeAreaReadOnly", nHistoryID, nObjectID, Out{dArea}, pTransform)
        .Run([&](History& history, Result& result)
             { TakeMeasure(history, nObjectID, pTransform, &Object::GetArea, dArea, result); });
}

Result APIComputeVolumeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, double& dVolume,
                                const Transf3d* pTransform)
{
    return ReadOnlyCall("APIComputeVolumeReadOnly", nHistoryID, nObjectID, Out{dVolume}, pTransform)
        .Run([&](History& history, Result& result)
             { TakeMeasure(history, nObjectID, pTransform, &Object::GetVolume, dVolume, result); });
}
} // namespace QRV
