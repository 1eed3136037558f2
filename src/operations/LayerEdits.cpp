#include "operations/LayerEdits.h"

#include "geometry/Finite.h"
#include "operations/ObjectCreation.h"

namespace QRV
{
namespace
{
bool CheckElevation(double dElevation, Result& result)
{
    const bool bGood = IsUsable(dElevation);
    if (!bGood)
        result.SetErrorCode(Result::nBadInput);
    return bGood;
}

void LeaveLevels(Object& object)
{
    std::vector<Attribute*> aPresent;
    object.GetAttributesOfType(nLevelAttributeType, aPresent);
    bool bDeleted = false;
    for (Attribute* pAttribute : aPresent)
        object.RemoveAttribute(pAttribute, bDeleted);
}

bool StandsOnLevels(const Object& object)
{
    const nObjectType nType = object.GetType();
    return nType == nBodyType || nType == nInstanceType || nType == nMeshType;
}
} // namespace

Layer* CreateLayer(History& history, const std::string& sName, bool bDisplayed, Result& result)
{
    return TryCreate<Layer>(history, result, Result::nOutOfMemory, sName, bDisplayed);
}

void AddToLayers(const std::vector<Layer*>& aLayers, const std::vector<Object*>& aObjects)
{
    for (Layer* pLayer : aLayers)
    {
        LayerAttribute& attribute = pLayer->GetJoinAttribute();
        for (Object* pObject : aObjects)
            pObject->AddAttribute(&attribute, true);
    }
}

void RemoveFromLayers(const std::vector<Layer*>& aLayers, const std::vector<Object*>& aObjects)
{
    bool bDeleted = false;
    for (Layer* pLayer : aLayers)
    {
        LayerAttribute& attribute = pLayer->GetJoinAttribute();
        for (Object* pObject : aObjects)
            pObject->RemoveAttribute(&attribute, bDeleted);
    }
}

void CreateLevels(History& history, const std::vector<LevelSettings>& aSettings, std::vector<std::uint64_t>& aLevels,
                  Result& result)
{
    for (const auto& [sName, dElevation] : aSettings)
    {
        if (!CheckElevation(dElevation, result))
            return;
        const auto* pLevel = TryCreate<Level>(history, result, Result::nBadInput, sName, dElevation);
        if (!pLevel)
            return;
        aLevels.push_back(pLevel->GetID());
    }
}

void SetLevels(const History& history, const std::vector<std::uint64_t>& aLevels,
               const std::vector<LevelSettings>& aSettings, Result& result)
{
    for (std::size_t i = 0; i < aLevels.size(); ++i)
    {
        auto* pLevel = history.Get<Level>(aLevels[i]);
        if (!pLevel)
            return result.SetErrorCode(Result::nBadInput, aLevels[i]);
        const auto& [sName, dElevation] = aSettings.at(i);
        if (!CheckElevation(dElevation, result))
            return;
        pLevel->SetDisplayName(sName);
        pLevel->SetElevation(dElevation);
    }
}

void SetLevelsOf(const std::vector<Object*>& aObjects, const std::vector<Level*>& aLevels, Result& result)
{
    for (Object* pObject : aObjects)
    {
        if (!StandsOnLevels(*pObject))
            return result.SetErrorCode(Result::nBadInput, pObject->GetID());
        LeaveLevels(*pObject);
        for (Level* pLevel : aLevels)
            pObject->AddAttribute(&pLevel->GetJoinAttribute(), true);
    }
}
} // namespace QRV
