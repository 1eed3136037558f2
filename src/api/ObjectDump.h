/// Objects as text for people.
#pragma once

#include <QRV/Export.h>
#include <QRV/Result.h>

#include <cstdint>
#include <string>

namespace QRV
{
/// Prints an object and all that it reaches below, class by class: how many there are of each, then the saved fields of
/// each with their names, those that could be derived included.
/// @param strText  replaced; empty when the call fails
QRV_API Result APIDebugObjectReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, std::string& strText);
} // namespace QRV
