#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "operations/LayerEdits.h"

#include <QRV/LayersAndLevels.h>

#include <algorithm>

namespace QRV
{
namespace
{
std::vector<std::uint64_t> GetDistinct(std::vector<std::uint64_t> aIDs)
{
    std::ranges::sort(aIDs);
    aIDs.erase(std::ranges::unique(aIDs).begin(), aIDs.end());
    return aIDs;
}

bool FindLayers(const History& history, const std::vector<std::uint64_t>& aIDs, std::vector<Layer*>& aLayers,
                Result& result)
{
    return FindArguments(history, GetDistinct(aIDs), aLayers, result);
}

bool FindObjects(const History& history, const std::vector<std::uint64_t>& aIDs, std::vector<Object*>& aObjects,
                 Result& result)
{
    return FindBearers<Layer>(history, GetDistinct(aIDs), aObjects, result);
}

/// Appends the ids of what the object belongs to by attributes of one class. `nFailure` for one without a target.
template <class A>
void AppendTargets(const Object& object, std::vector<std::uint64_t>& aIDs, Result& result)
{
    std::vector<Attribute*> aAttributes;
    object.GetAttributesOfType(A::kType, aAttributes);
    for (const Attribute* pAttribute : aAttributes)
    {
        const auto* pJoin = dynamic_cast<const A*>(pAttribute);
        if (pJoin && pJoin->GetTarget())
            aIDs.push_back(pJoin->GetTarget()->GetID());
        else if (pJoin)
            return result.SetErrorCode(Result::nFailure);
    }
}
} // namespace

Result APICreateLayer(std::uint64_t nHistoryID, const std::string& name, bool displayed, std::uint64_t& layer)
{
    return ModifyingCall("APICreateLayer", nHistoryID, name, displayed, Out{layer})
        .Run([&](History& history, Result& result)
             { return GiveID(CreateLayer(history, name, displayed, result), layer); });
}

Result APISetLayerData(std::uint64_t nHistoryID, std::uint64_t layer, const std::string& name, bool displayed)
{
    return ModifyingCall("APISetLayerData", nHistoryID, layer, name, displayed)
        .Run(
            [&](History& history, Result& result)
            {
                auto* pLayer = FindArgument<Layer>(history, layer, result);
                if (!pLayer)
                    return;
                pLayer->SetDisplayName(name);
                pLayer->SetDisplayed(displayed);
            });
}

Result APISetLayersDisplayed(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layers, bool displayed)
{
    return ModifyingCall("APISetLayersDisplayed", nHistoryID, layers, displayed)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Layer*> aLayers;
                if (FindLayers(history, layers, aLayers, result))
                    for (Layer* pLayer : aLayers)
                        pLayer->SetDisplayed(displayed);
            });
}

Result APIGetLayerDataReadOnly(std::uint64_t nHistoryID, std::uint64_t layer, std::string& name, bool& displayed,
                               std::vector<std::uint64_t>* objects)
{
    return ReadOnlyCall("APIGetLayerDataReadOnly", nHistoryID, layer, Out{name}, Out{displayed}, Append{objects})
        .Run(
            [&](History& history, Result& result)
            {
                const auto* pLayer = FindArgument<Layer>(history, layer, result);
                if (!pLayer)
                    return;
                name = pLayer->GetDisplayName();
                displayed = pLayer->IsDisplayed();
                const LayerAttribute* pAttribute = pLayer->FindJoinAttribute();
                if (objects && pAttribute)
                    std::ranges::copy_if(pAttribute->GetOwnerIDs(), std::back_inserter(*objects),
                                         [&](std::uint64_t nID) { return nID != layer; });
            });
}

Result APIAddObjectsLayers(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layers,
                           const std::vector<std::uint64_t>& objects)
{
    return ModifyingCall("APIAddObjectsLayers", nHistoryID, layers, objects)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Layer*> aLayers;
                std::vector<Object*> aObjects;
                if (FindLayers(history, layers, aLayers, result) && FindObjects(history, objects, aObjects, result))
                    AddToLayers(aLayers, aObjects);
            });
}

Result APIRemoveObjectsLayers(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layers,
                              const std::vector<std::uint64_t>& objects)
{
    return ModifyingCall("APIRemoveObjectsLayers", nHistoryID, layers, objects)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Layer*> aLayers;
                std::vector<Object*> aObjects;
                if (FindLayers(history, layers, aLayers, result) && FindObjects(history, objects, aObjects, result))
                    RemoveFromLayers(aLayers, aObjects);
            });
}

Result APIAddRemoveObjectsLayers(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layersToAdd,
                                 const std::vector<std::uint64_t>& layersToRemove,
                                 const std::vector<std::uint64_t>& objects)
{
    return ModifyingCall("APIAddRemoveObjectsLayers", nHistoryID, layersToAdd, layersToRemove, objects)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Layer*> aAdd;
                std::vector<Layer*> aRemove;
                std::vector<Object*> aObjects;
                if (!FindLayers(history, layersToAdd, aAdd, result) ||
                    !FindLayers(history, layersToRemove, aRemove, result) ||
                    !FindObjects(history, objects, aObjects, result))
                    return;
                AddToLayers(aAdd, aObjects);
                RemoveFromLayers(aRemove, aObjects);
            });
}

Result APIGetObjectLayersReadOnly(std::uint64_t nHistoryID, std::uint64_t object, std::vector<std::uint64_t>& layers)
{
    return ReadOnlyCall("APIGetObjectLayersReadOnly", nHistoryID, object, Append{layers})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Object* pObject = FindArgument<Object>(history, object, result))
                    AppendTargets<LayerAttribute>(*pObject, layers, result);
            });
}

Result APICreateLevelObjects(std::uint64_t nHistoryID, const std::vector<std::pair<std::string, double>>& data,
                             std::vector<std::uint64_t>& levels)
{
    return ModifyingCall("APICreateLevelObjects", nHistoryID, data, Append{levels})
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<std::uint64_t> aLevels;
                CreateLevels(history, data, aLevels, result);
                if (result.IsGood())
                    levels.insert(levels.end(), aLevels.begin(), aLevels.end());
            });
}

Result APISetLevelsData(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& levels,
                        const std::vector<std::pair<std::string, double>>& data)
{
    return ModifyingCall(CallName("APISetLevelsData").Unjournaled(), nHistoryID, levels, data)
        .Run([&](History& history, Result& result) { SetLevels(history, levels, data, result); });
}

Result APISetObjectsLevels(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                           const std::vector<std::uint64_t>& levels)
{
    return ModifyingCall("APISetObjectsLevels", nHistoryID, objects, levels)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aObjects;
                std::vector<Level*> aLevels;
                if (objects.empty())
                    return;
                if (FindArguments(history, objects, aObjects, result) &&
                    FindArguments(history, levels, aLevels, result))
                    SetLevelsOf(aObjects, aLevels, result);
            });
}

Result APIGetLevelDataReadOnly(std::uint64_t nHistoryID, std::uint64_t level, std::string& name, double& elevation)
{
    return ReadOnlyCall("APIGetLevelDataReadOnly", nHistoryID, level, Out{name}, Out{elevation})
        .Run(
            [&](History& history, Result& result)
            {
                const auto* pLevel = FindArgument<Level>(history, level, result);
                if (!pLevel)
                    return;
                name = pLevel->GetDisplayName();
                elevation = pLevel->GetElevation();
            });
}

Result APIGetObjectLevelsReadOnly(std::uint64_t nHistoryID, std::uint64_t object, std::vector<std::uint64_t>& levels)
{
    return ReadOnlyCall("APIGetObjectLevelsReadOnly", nHistoryID, object, Append{levels})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Object* pObject = FindArgument<Object>(history, object, result))
                    AppendTargets<LevelAttribute>(*pObject, levels, result);
            });
}
} // namespace QRV
