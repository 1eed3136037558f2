/// The library's values as JSON, for hosts that pass them across a script boundary.
///
/// A record is an object that names its class under "objectName" and has a key for each field. `INVALID_ID` is written
/// as 4294967295, and that reads as `INVALID_ID`.
///
/// `to_json_impl<T>::f(value)` gives the JSON of a value.
///
/// `from_json_impl<T>::f(source, key, out, optional)` reads `source[key]`, or `source` itself for an empty key. It gives
/// true when `out` was read, or when `optional` is set and the value is missing: then `out` stays as it is. A plain
/// value of the wrong JSON type raises nlohmann's type error; a number outside the range of its type gives false. When
/// it gives false a record may be partly filled. A record may stand in a string, as JSON text, under a non-empty key;
/// text that is no JSON raises nlohmann's parse error.
#pragma once

#include <QRV/AnyConverters.h>
#include <QRV/Color.h>
#include <QRV/Export.h>
#include <QRV/Geometry.h>
#include <QRV/GroupInstancePath.h>
#include <QRV/Ids.h>
#include <QRV/Result.h>

#include <nlohmann/json.hpp>

#include <concepts>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace QRV
{
/// What stands for `INVALID_ID` in JSON.
inline constexpr std::uint64_t kInvalidIDInJSON = 0xFFFFFFFF;

template <class T>
struct to_json_impl;

template <class T>
struct from_json_impl;

/// The value that `key` asks for; null when it is missing or the source is null.
QRV_API const nlohmann::json* FindJSONValue(const nlohmann::json& source, const std::string& key);
/// A whole number within the limits, both of which fit; a fraction is cut. False for anything that is no number.
QRV_API bool ReadJSONInteger(const nlohmann::json& value, std::int64_t nMin, std::int64_t nMax, std::int64_t& nOut);
} // namespace QRV
