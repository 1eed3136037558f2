#include <QRV/JSONConversion.h>

#include "history/HistoryRegistry.h"

#include <cmath>

namespace QRV
{
using nlohmann::json;

namespace
{
constexpr double kTwoTo64 = 18446744073709551616.0;

/// A plain value that nlohmann reads by itself, raising its type error for another type.
template <class T>
bool ReadPlain(const json& source, const std::string& key, T& out, bool optional)
{
    const json* pValue = FindJSONValue(source, key);
    if (!pValue)
        return optional;
    out = pValue->get<T>();
    return true;
}

bool ReadID(const json& value, std::uint64_t& nID)
{
    constexpr std::int64_t kInvalid = -1;
    if (!value.is_number())
        return false;
    if (value.is_number_float())
    {
        const double dID = std::trunc(value.get<double>());
        if (!(dID >= kInvalid && dID < kTwoTo64))
            return false;
        nID = dID < 0.0 ? INVALID_ID : static_cast<std::uint64_t>(dID);
    }
    else
    {
        if (!value.is_number_unsigned() && value.get<std::int64_t>() < kInvalid)
            return false;
        nID = value.get<std::uint64_t>(); // -1 becomes INVALID_ID
    }
    if (nID == kInvalidIDInJSON)
        nID = INVALID_ID;
    return true;
}

/// Gives the value of a type that `value` holds to `out`.
template <class T>
bool WriteHeld(const utils::any& value, json& out)
{
    const T* pHeld = std::any_cast<T>(&value);
    if (pHeld)
        out = ToJSON(*pHeld);
    return pHeld != nullptr;
}
} // namespace

const json* FindJSONValue(const json& source, const std::string& key)
{
    if (source.is_null())
        return nullptr;
    if (key.empty())
        return &source;
    if (!source.is_object())
        return nullptr;
    const auto it = source.find(key);
    return it == source.end() ? nullptr : &*it;
}

bool ReadJSONInteger(const json& value, std::int64_t nMin, std::int64_t nMax, std::int64_t& nOut)
{
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > static_cast<std::uint64_t>(nMax))
        return false;
    if (value.is_number_float())
    {
        const double dValue = value.get<double>();
        if (!(dValue > static_cast<double>(nMin) - 1.0 && dValue < static_cast<double>(nMax) + 1.0))
            return false;
    }
    nOut = value.get<std::int64_t>();
    return nOut >= nMin && nOut <= nMax;
}

json ToJSON(bool bValue)
{
    return bValue;
}

json ToJSON(int nValue)
{
    return nValue;
}

json ToJSON(std::uint64_t nID)
{
    return nID == INVALID_ID ? kInvalidIDInJSON : nID;
}

json ToJSON(double dValue)
{
    return dValue;
}

json ToJSON(float fValue)
{
    return static_cast<double>(fValue);
}

json ToJSON(const std::string& strValue)
{
    return strValue;
}

json ToJSON(char value)
{
    return static_cast<unsigned char>(value);
}

json ToJSON(const utils::any& value)
{
    json result;
    if (WriteHeld<bool>(value, result) || WriteHeld<double>(value, result) || WriteHeld<float>(value, result) ||
        WriteHeld<int>(value, result) || WriteHeld<std::uint64_t>(value, result) ||
        WriteHeld<std::string>(value, result) || !value.has_value())
        return result;
    const auto aConverters = HistoryRegistry::Get().GetJournal().m_aAnyToJSON; // a converter may register others
    for (const AnyToJSON& converter : aConverters)
        if (converter(value, result))
            return result;
    return {};
}

json ToJSON(const std::map<std::string, utils::any>& aValues)
{
    json result = json::object();
    for (const auto& [strKey, value] : aValues)
        result[strKey] = ToJSON(value);
    return result;
}

bool FromJSON(const json& source, const std::string& key, bool& out, bool optional)
{
    return ReadPlain(source, key, out, optional);
}

bool FromJSON(const json& source, const std::string& key, double& out, bool optional)
{
    return ReadPlain(source, key, out, optional);
}

bool FromJSON(const json& source, const std::string& key, std::string& out, bool optional)
{
    return ReadPlain(source, key, out, optional);
}

bool FromJSON(const json& source, const std::string& key, float& out, bool optional)
{
    double dValue = out;
    if (!FromJSON(source, key, dValue, optional) ||
        (std::isfinite(dValue) && std::abs(dValue) > std::numeric_limits<float>::max()))
        return false;
    out = static_cast<float>(dValue);
    return true;
}

bool FromJSON(const json& source, const std::string& key, int& out, bool optional)
{
    const json* pValue = FindJSONValue(source, key);
    if (!pValue)
        return optional;
    std::int64_t nValue = 0;
    if (!ReadJSONInteger(*pValue, std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), nValue))
        return false;
    out = static_cast<int>(nValue);
    return true;
}

bool FromJSON(const json& source, const std::string& key, char& out, bool optional)
{
    const json* pValue = FindJSONValue(source, key);
    if (!pValue)
        return optional;
    std::int64_t nValue = 0;
    if (!pValue->is_number() || !ReadJSONInteger(*pValue, -128, 255, nValue))
        return false;
    out = static_cast<char>(static_cast<unsigned char>(nValue));
    return true;
}

bool FromJSON(const json& source, const std::string& key, std::uint64_t& out, bool optional)
{
    const json* pValue = FindJSONValue(source, key);
    return pValue ? ReadID(*pValue, out) : optional;
}

bool FromJSON(const json& source, const std::string& key, utils::any& out, bool optional)
{
    const json* pValue = FindJSONValue(source, key);
    if (!pValue)
        return optional;
    switch (pValue->type())
    {
    case json::value_t::object:
    {
        const auto aConverters = HistoryRegistry::Get().GetJournal().m_aJSONToAny;
        for (const JSONToAny& converter : aConverters)
            if (converter(source, key, out))
                return true;
        return false;
    }
    case json::value_t::string:
        out = pValue->get<std::string>();
        return true;
    case json::value_t::boolean:
        out = pValue->get<bool>();
        return true;
    case json::value_t::number_integer:
    {
        int nValue = 0;
        if (!FromJSON(*pValue, std::string(), nValue, false))
            return false;
        out = nValue;
        return true;
    }
    case json::value_t::number_unsigned:
    {
        std::uint64_t nValue = 0;
        ReadID(*pValue, nValue);
        out = nValue;
        return true;
    }
    case json::value_t::number_float:
        out = pValue->get<double>();
        return true;
    default:
        return false;
    }
}

bool FromJSON(const json& source, const std::string& key, std::map<std::string, utils::any>& out, bool optional)
{
    const json* pValue = FindJSONValue(source, key);
    if (!pValue)
        return optional;
    if (!pValue->is_object())
        return false;
    for (const auto& [strKey, value] : pValue->items())
    {
        utils::any& element = out[strKey];
        if (!FromJSON(value, std::string(), element, false))
            element.reset();
    }
    return true;
}
} // namespace QRV
