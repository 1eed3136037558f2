/// The script text of one argument of a journaled call.
#pragma once

#include <QRV/Color.h>
#include <QRV/Geometry.h>
#include <QRV/GroupInstancePath.h>
#include <QRV/Ids.h>

#include <array>
#include <concepts>
#include <string>
#include <type_traits>
#include <vector>

namespace QRV
{
/// An id, or any other unsigned number of 64 bits; "QRV.INVALID_ID" for that and for its form of 32 bits.
std::string JournalIDText(std::uint64_t nID);

template <std::integral T>
std::string JournalText(T value)
{
    if constexpr (std::is_same_v<T, bool>)
        return value ? "true" : "false";
    else if constexpr (std::is_unsigned_v<T> && sizeof(T) == sizeof(std::uint64_t))
        return JournalIDText(value);
    else
        return std::to_string(value);
}

template <class T>
requires std::is_enum_v<T> std::string JournalText(T value)
{
    return std::to_string(static_cast<std::underlying_type_t<T>>(value));
}

/// JSON.
std::string JournalText(double dValue);
/// Quoted and escaped as in JSON. Throws for text that is not UTF-8.
std::string JournalText(const std::string& strValue);
/// "undefined" for null.
std::string JournalText(const char* pValue);

/// The calls by which the script builds the value. Coordinates have 16 significant digits.
std::string JournalText(const Point3d& value);
std::string JournalText(const Vector3d& value);
std::string JournalText(const UnitVector3d& value);
std::string JournalText(const Vector2d& value);
std::string JournalText(const Line3d& value);
std::string JournalText(const Plane& value);
std::string JournalText(const Transf3d& value);

/// The JSON record.
std::string JournalText(const Point2d& value);
std::string JournalText(const Interval3d& value);
std::string JournalText(const ObjectHistoryID& value);
std::string JournalText(const GroupInstancePath& value);
std::string JournalText(const Color& value);

/// The JSON array of the elements' records. Instantiated in JournalText.cpp for each element type of an exported call.
template <class T>
std::string JournalText(const std::vector<T>& aValues);
template <class T, std::size_t kCount>
std::string JournalText(const std::array<T, kCount>& aValues);

/// "undefined" for null, else the text of what it points to.
template <class T>
std::string JournalText(const T* pValue)
{
    return pValue ? JournalText(*pValue) : "undefined";
}
} // namespace QRV
