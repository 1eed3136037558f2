#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "operations/LayerEdits.h"
#include "operations/ObjectDataEdits.h"

#include <QRV/ObjectData.h>

namespace QRV
{
Result APISetObjectProperties(std::uint64_t nHistoryID, std::uint64_t object, const std::string& name, bool reportArea,
                              const std::vector<std::uint64_t>* levels)
{
    return ModifyingCall("APISetObjectProperties", nHistoryID, object, name, reportArea, levels)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aObjects;
                std::vector<Level*> aLevels;
                if (!FindBearers(history, {object}, aObjects, result) ||
                    (levels && !FindArguments(history, *levels, aLevels, result)))
                    return;
                SetObjectProperties(*aObjects.front(), name, reportArea);
                if (levels)
                    SetLevelsOf(aObjects, aLevels, result);
            });
}

Result APIGetObjectPropertiesReadOnly(std::uint64_t nHistoryID, std::uint64_t object, std::string& name,
                                      bool& reportArea)
{
    return ReadOnlyCall("APIGetObjectPropertiesReadOnly", nHistoryID, object, Out{name}, Out{reportArea})
        .Run(
            [&](History& history, Result& result)
            {
                const Object* pObject = FindArgument<Object>(history, object, result);
                const ObjectPropertiesAttribute* pProperties = pObject ? FindObjectProperties(*pObject) : nullptr;
                if (!pProperties)
                    return;
                name = pProperties->GetObjectName();
                reportArea = pProperties->ReportsArea();
            });
}

Result APICreateStringAttribute(std::uint64_t nHistoryID, const std::string& key, const std::string& value,
                                const std::vector<std::uint64_t>& objects, std::uint64_t& attribute, nCopyBehavior copy,
                                bool split)
{
    return ModifyingCall("APICreateStringAttribute", nHistoryID, key, value, objects, Out{attribute}, copy, split)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aObjects;
                return FindBearers(history, objects, aObjects, result) &&
                       GiveID(CreateStringAttribute(history, key, value, aObjects, copy, split, result), attribute);
            });
}

Result APISetStringAttributeValue(std::uint64_t nHistoryID, std::uint64_t attribute, const std::string& value)
{
    return ModifyingCall("APISetStringAttributeValue", nHistoryID, attribute, value)
        .Run(
            [&](History& history, Result& result)
            {
                if (auto* pAttribute = FindArgument<StringAttribute>(history, attribute, result))
                    pAttribute->SetValue(value);
            });
}

Result APIGetStringAttributeKeyValueReadOnly(std::uint64_t nHistoryID, std::uint64_t attribute, std::string& key,
                                             std::string& value, std::vector<std::uint64_t>& owners)
{
    return ReadOnlyCall("APIGetStringAttributeKeyValueReadOnly", nHistoryID, attribute, Out{key}, Out{value},
                        Append{owners})
        .Run(
            [&](History& history, Result& result)
            {
                const auto* pAttribute = FindArgument<StringAttribute>(history, attribute, result);
                if (!pAttribute)
                    return;
                key = pAttribute->GetKey();
                value = pAttribute->GetValue();
                owners.insert(owners.end(), pAttribute->GetOwnerIDs().begin(), pAttribute->GetOwnerIDs().end());
            });
}

Result APIGetStringAttributesByKeyReadOnly(std::uint64_t nHistoryID, std::uint64_t object, const std::string& key,
                                           std::vector<std::uint64_t>& attributes)
{
    return ReadOnlyCall("APIGetStringAttributesByKeyReadOnly", nHistoryID, object, key, Append{attributes})
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<StringAttribute*> aFound;
                Object* pObject = nullptr;
                if (!FindOptionalArgument(history, object, pObject, result))
                    return;
                if (pObject)
                    GetStringAttributes(*pObject, key, aFound);
                else
                    GetStringAttributes(history, key, aFound);
                AppendIDs(aFound, attributes);
            });
}

Result APISetEdgesOrVerticesMarkedSmooth(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                                         bool bSmooth)
{
    return ModifyingCall("APISetEdgesOrVerticesMarkedSmooth", nHistoryID, objects, bSmooth)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Object*> aObjects;
                if (FindArguments(history, objects, aObjects, result))
                    MarkSmooth(aObjects, bSmooth);
            });
}
} // namespace QRV
