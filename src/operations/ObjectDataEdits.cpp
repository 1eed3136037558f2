#include "operations/ObjectDataEdits.h"

#include "history/History.h"

#include <algorithm>

namespace QRV
{
namespace
{
bool CarriesKey(const Object& object, const std::string& sKey)
{
    std::vector<StringAttribute*> aFound;
    GetStringAttributes(object, sKey, aFound);
    return !aFound.empty();
}
} // namespace

ObjectPropertiesAttribute* FindObjectProperties(const Object& object)
{
    std::vector<Attribute*> aAttributes;
    object.GetAttributesOfType(nObjectPropertiesAttributeType, aAttributes);
    return aAttributes.empty() ? nullptr : dynamic_cast<ObjectPropertiesAttribute*>(aAttributes.front());
}

void SetObjectProperties(Object& object, const std::string& sName, bool bReportArea)
{
    if (ObjectPropertiesAttribute* pPresent = FindObjectProperties(object))
    {
        pPresent->SetObjectName(sName);
        pPresent->SetReportArea(bReportArea);
        return;
    }
    object.AddAttribute(&object.GetHistory()->Create<ObjectPropertiesAttribute>(sName, bReportArea), true);
}

StringAttribute* CreateStringAttribute(History& history, const std::string& sKey, const std::string& sValue,
                                       const std::vector<Object*>& aObjects, nCopyBehavior nCopy, bool bSplit,
                                       Result& result)
{
    const auto isTaken = [&](const Object* pObject) { return CarriesKey(*pObject, sKey); };
    if (sKey.empty() || nCopy > nCopyOwn || std::ranges::any_of(aObjects, isTaken))
    {
        result.SetErrorCode(Result::nBadInput);
        return nullptr;
    }
    auto& attribute = history.Create<StringAttribute>(sKey, sValue, nCopy, bSplit);
    attribute.AddToSearch();
    for (Object* pObject : aObjects)
        pObject->AddAttribute(&attribute, true);
    return &attribute;
}

void GetStringAttributes(const Object& object, const std::string& sKey, std::vector<StringAttribute*>& aAttributes)
{
    std::vector<Attribute*> aOfType;
    object.GetAttributesOfType(nStringAttributeType, aOfType);
    for (Attribute* pAttribute : aOfType)
        if (auto* pString = dynamic_cast<StringAttribute*>(pAttribute); pString && pString->GetKey() == sKey)
            aAttributes.push_back(pString);
}

void GetStringAttributes(const History& history, const std::string& sKey, std::vector<StringAttribute*>& aAttributes)
{
    const auto& all = history.GetSearchSet<StringAttribute>();
    for (auto it = all.GetLowerBound(std::string_view(sKey)); it != all.end() && (*it)->GetKey() == sKey; ++it)
        aAttributes.push_back(*it);
}

void MarkSmooth(const std::vector<Object*>& aObjects, bool bSmooth)
{
    for (Object* pObject : aObjects)
    {
        if (auto* pEdge = dynamic_cast<Edge*>(pObject))
            pEdge->SetSmooth(bSmooth);
        else if (auto* pVertex = dynamic_cast<Vertex*>(pObject))
            pVertex->SetSmooth(bSmooth);
    }
}
} // namespace QRV
