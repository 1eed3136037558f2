/// How a host carries values that only it knows through the library's JSON.
#pragma once

#include <QRV/Export.h>

#include <nlohmann/json_fwd.hpp>

#include <any>
#include <functional>
#include <string>

namespace QRV
{
namespace utils
{
using any = std::any;
}

/// Writes a value that the host knows; false when it knows it not.
using AnyToJSON = std::function<bool(const utils::any&, nlohmann::json&)>;
/// Reads such a value from `source[key]`, or from `source` itself when the key is empty; false when it knows it not.
/// The document may be hostile: one that is nested deeply ends the process that copies or dumps it.
/// So read by reference.
using JSONToAny = std::function<bool(const nlohmann::json&, const std::string&, utils::any&)>;

/// Adds a converter behind those registered before; the first that answers true ends the trial.
QRV_API void RegisterAnyToJSON(const AnyToJSON& converter);
QRV_API void RegisterJSONToAny(const JSONToAny& converter);
/// Forgets all converters of both directions.
QRV_API void ClearConverters();
} // namespace QRV
