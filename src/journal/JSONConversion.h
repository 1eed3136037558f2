/// The library's values as JSON, for hosts that pass them across a script boundary.
///
/// A record is an object that names its class under "objectName" and has a key for each field. `INVALID_ID` is written
/// as 4294967295, and that reads as `INVALID_ID`.
///
/// `to_json_impl<T>::f(value)` gives the JSON of a value.
///
/// `from_json_impl<T>::f(source, key, out, optional)` reads `source[key]`, or `source` itself for an empty key. It
/// gives true when `out` was read, or when `optional` is set and the value is missing: then `out` stays as it is. A
/// plain value of the wrong JSON type raises nlohmann's type error; a number outside the range of its type gives false.
/// When it gives false a record may be partly filled. A record may stand in a string, as JSON text, under a non-empty
/// key; text that is no JSON raises nlohmann's parse error, and a number in it beyond any double its out-of-range
/// error.
#pragma once

#include <QRV/AnyConverters.h>
#include <QRV/Color.h>
#include <QRV/Export.h>
#include <QRV/Geometry.h>
#include <QRV/GroupInstancePath.h>
#include <QRV/Ids.h>
#include <QRV/JSONDataRecords.h>
#include <QRV/Result.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace QRV
{
/// What stands for `INVALID_ID` in JSON.
inline constexpr std::uint64_t kInvalidIDInJSON = 0xFFFFFFFF;

QRV_API nlohmann::json ToJSON(bool bValue);
QRV_API nlohmann::json ToJSON(int nValue);
QRV_API nlohmann::json ToJSON(std::uint64_t nID);
QRV_API nlohmann::json ToJSON(double dValue);
QRV_API nlohmann::json ToJSON(float fValue);
QRV_API nlohmann::json ToJSON(const std::string& strValue);
/// A byte, 0 to 255.
QRV_API nlohmann::json ToJSON(char value);
QRV_API nlohmann::json ToJSON(const Point2d& value);
QRV_API nlohmann::json ToJSON(const Vector2d& value);
QRV_API nlohmann::json ToJSON(const Point3d& value);
QRV_API nlohmann::json ToJSON(const Vector3d& value);
QRV_API nlohmann::json ToJSON(const UnitVector3d& value);
/// "point" and "vector".
QRV_API nlohmann::json ToJSON(const Line3d& value);
/// "point", the foot of the origin, and "normal".
QRV_API nlohmann::json ToJSON(const Plane& value);
QRV_API nlohmann::json ToJSON(const Interval3d& value);
/// "data": the 16 elements row by row.
QRV_API nlohmann::json ToJSON(const Transf3d& value);
QRV_API nlohmann::json ToJSON(const Color& value);
/// "History" and "Object".
QRV_API nlohmann::json ToJSON(const ObjectHistoryID& value);
/// "ids".
QRV_API nlohmann::json ToJSON(const GroupInstancePath& value);
/// "good", and "error": the error code.
QRV_API nlohmann::json ToJSON(const Result& value);
/// The value that it holds: bool, double, float, int, unsigned 64-bit or string; else what the first converter that
/// knows it makes of it; else null.
QRV_API nlohmann::json ToJSON(const utils::any& value);
QRV_API nlohmann::json ToJSON(const std::map<std::string, utils::any>& aValues);

QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, bool& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, int& out, bool optional);
/// Also takes -1 for `INVALID_ID`; false for what is no number.
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, std::uint64_t& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, double& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, float& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, std::string& out, bool optional);
/// A byte, -128 to 255.
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, char& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Point2d& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Vector2d& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Point3d& out, bool optional);
/// A vector and a unit vector read each other's records.
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Vector3d& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, UnitVector3d& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Line3d& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Plane& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Interval3d& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Transf3d& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Color& out, bool optional);
/// Also takes a plain array of the two ids, history first.
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, ObjectHistoryID& out, bool optional);
/// Also takes a plain array of `ObjectHistoryID`.
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, GroupInstancePath& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, Result& out, bool optional);
/// Whole numbers are ints when JSON holds them with a sign, otherwise unsigned, 4294967295 being `INVALID_ID`. Objects
/// go to the converters; null and arrays give false.
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, utils::any& out, bool optional);
/// A value that cannot be read stands as an empty any under its key.
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, std::map<std::string, utils::any>& out,
                      bool optional);

/// The value that `key` asks for; null when the source is null or has no such key.
QRV_API const nlohmann::json* FindJSONValue(const nlohmann::json& source, const std::string& key);
/// A whole number within the limits; a fraction is cut. Raises the type error for what is no number.
QRV_API bool ReadJSONInteger(const nlohmann::json& value, std::int64_t nMin, std::int64_t nMax, std::int64_t& nOut);

template <class T>
struct to_json_impl
{
    static nlohmann::json f(const T& value) { return ToJSON(value); }
};

template <class T>
struct from_json_impl
{
    static bool f(const nlohmann::json& source, const std::string& key, T& out, bool optional)
    {
        return FromJSON(source, key, out, optional);
    }
};

template <class T>
requires std::is_enum_v<T>
struct to_json_impl<T>
{
    static nlohmann::json f(const T& value) { return static_cast<std::int64_t>(value); }
};

template <class T>
requires std::is_enum_v<T>
struct from_json_impl<T>
{
    static bool f(const nlohmann::json& source, const std::string& key, T& out, bool optional)
    {
        using Number = std::underlying_type_t<T>;
        constexpr std::int64_t kMin = std::is_signed_v<Number> ? std::numeric_limits<Number>::min() : 0;
        constexpr std::int64_t kMax = sizeof(Number) < sizeof(std::int64_t)
                                          ? static_cast<std::int64_t>(std::numeric_limits<Number>::max())
                                          : std::numeric_limits<std::int64_t>::max();
        const nlohmann::json* pValue = FindJSONValue(source, key);
        if (!pValue)
            return optional;
        std::int64_t nValue = 0;
        if (!ReadJSONInteger(*pValue, kMin, kMax, nValue))
            return false;
        out = static_cast<T>(nValue);
        return true;
    }
};

template <class T>
struct to_json_impl<std::vector<T>>
{
    static nlohmann::json f(const std::vector<T>& aValues)
    {
        nlohmann::json array = nlohmann::json::array();
        for (const T& value : aValues)
            array.push_back(to_json_impl<T>::f(value));
        return array;
    }
};

/// What is no array is read as the one element.
template <class T>
struct from_json_impl<std::vector<T>>
{
    static bool f(const nlohmann::json& source, const std::string& key, std::vector<T>& out, bool optional)
    {
        const nlohmann::json* pValue = FindJSONValue(source, key);
        if (!pValue)
            return optional;
        const bool bArray = pValue->is_array();
        out.assign(bArray ? pValue->size() : 1, T{});
        for (std::size_t i = 0; i < out.size(); ++i)
        {
            T element{};
            if (!from_json_impl<T>::f(bArray ? (*pValue)[i] : *pValue, std::string(), element, false))
                return false;
            out[i] = std::move(element);
        }
        return true;
    }
};

template <class T, std::size_t kCount>
struct to_json_impl<std::array<T, kCount>>
{
    static nlohmann::json f(const std::array<T, kCount>& aValues)
    {
        nlohmann::json array = nlohmann::json::array();
        for (const T& value : aValues)
            array.push_back(to_json_impl<T>::f(value));
        return array;
    }
};

/// From an array of just so many elements.
template <class T, std::size_t kCount>
struct from_json_impl<std::array<T, kCount>>
{
    static bool f(const nlohmann::json& source, const std::string& key, std::array<T, kCount>& out, bool optional)
    {
        if (!FindJSONValue(source, key))
            return optional;
        std::vector<T> aValues;
        if (!from_json_impl<std::vector<T>>::f(source, key, aValues, false) || aValues.size() != kCount)
            return false;
        std::move(aValues.begin(), aValues.end(), out.begin());
        return true;
    }
};

template <class First, class Second>
struct to_json_impl<std::pair<First, Second>>
{
    static nlohmann::json f(const std::pair<First, Second>& value)
    {
        nlohmann::json json;
        json["first"] = to_json_impl<First>::f(value.first);
        json["second"] = to_json_impl<Second>::f(value.second);
        return json;
    }
};

template <class First, class Second>
struct from_json_impl<std::pair<First, Second>>
{
    static bool f(const nlohmann::json& source, const std::string& key, std::pair<First, Second>& out, bool optional)
    {
        const nlohmann::json* pValue = FindJSONValue(source, key);
        if (!pValue)
            return optional;
        return from_json_impl<First>::f(*pValue, "first", out.first, false) &&
               from_json_impl<Second>::f(*pValue, "second", out.second, false);
    }
};
} // namespace QRV
