#include "frame/APICall.h"
#include "geometry/Finite.h"
#include "model/GeneratedGeometryInformation.h"
#include "model/SketchProperties.h"

#include <QRV/HistoryInformation.h>

#include <tuple>

namespace QRV
{
namespace
{
using Information = GeneratedGeometryInformation;

/// False when there is none.
bool GetInformation(const History& history, Information::nGeneratorType nGenerator, std::string& name,
                    std::string& field1, std::string& field2, std::string& field3)
{
    const Information* pInformation = Information::Find(history, nGenerator);
    if (!pInformation)
        return false;
    const Information::Words words = pInformation->GetWords();
    std::tie(name, field1, field2, field3) = std::tie(words.sName, words.sField1, words.sField2, words.sField3);
    return true;
}
} // namespace

Result APIGetLocalCoordinateSystemReadOnly(std::uint64_t nHistoryID, Transf3d& transform)
{
    return ReadOnlyCall("APIGetLocalCoordinateSystemReadOnly", nHistoryID, Out{transform})
        .Run(
            [&](History& history, Result&)
            {
                if (const SketchProperties* pProperties = SketchProperties::Find(history))
                    transform = pProperties->GetTransform();
            });
}

Result APISetLocalCoordinateSystem(std::uint64_t nHistoryID, const Transf3d& transform)
{
    return ModifyingCall("APISetLocalCoordinateSystem", nHistoryID, transform)
        .Run(
            [&](History& history, Result& result)
            {
                if (IsUsable(transform) && transform.isValid())
                    SketchProperties::SetTransform(history, transform);
                else
                    result.SetErrorCode(Result::nBadInput);
            });
}

Result APIGetOstrelModelInformationReadOnly(std::uint64_t nHistoryID, std::string& name, std::string& field1,
                                            std::string& field2, std::string& field3)
{
    return ReadOnlyCall("APIGetOstrelModelInformationReadOnly", nHistoryID, Out{name}, Out{field1}, Out{field2},
                        Out{field3})
        .Run(
            [&](History& history, Result& result)
            {
                if (!GetInformation(history, Information::nOstrelModel, name, field1, field2, field3))
                    result.SetErrorCode(Result::nHistoryNoOstrelInfo, nHistoryID);
            });
}

Result APISetOstrelModelInformation(std::uint64_t nHistoryID, const std::string& name, const std::string& field1,
                                    const std::string& field2, const std::string& field3)
{
    return ModifyingCall("APISetOstrelModelInformation", nHistoryID, name, field1, field2, field3)
        .Run(
            [&](History& history, Result&) {
                Information::Write(history, Information::nOstrelModel, {name, field1, field2, field3});
            });
}

Result APIGetHalyxFamilyInformationReadOnly(std::uint64_t nHistoryID, std::string& name, std::string& field1,
                                            std::string& field2, std::string& field3)
{
    return ReadOnlyCall("APIGetHalyxFamilyInformationReadOnly", nHistoryID, Out{name}, Out{field1}, Out{field2},
                        Out{field3})
        .Run(
            [&](History& history, Result& result)
            {
                if (!GetInformation(history, Information::nHalyxFamily, name, field1, field2, field3))
                    result.SetWarningCode(Result::nHistoryNoHalyxInfo, nHistoryID);
            });
}

Result APISetHalyxFamilyInformation(std::uint64_t nHistoryID, const std::string& name, const std::string& field1,
                                    const std::string& field2, const std::string& field3)
{
    return ModifyingCall("APISetHalyxFamilyInformation", nHistoryID, name, field1, field2, field3)
        .Run(
            [&](History& history, Result&) {
                Information::Write(history, Information::nHalyxFamily, {name, field1, field2, field3});
            });
}
} // namespace QRV
