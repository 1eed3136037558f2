/// What stands in all Histories of the process.
#pragma once

#include <QRV/Result.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace tools
{
/// The live objects by the name of their class.
std::map<std::string, std::size_t> CountObjects();
/// What the audit of each History finds.
std::vector<QRV::Result> AuditAll();
/// The SHA-256, in hexadecimal digits, over the texts that `APIDebugObjectReadOnly` gives of all live objects, of one
/// History after the other and in each by ascending id.
std::string DigestModel();
} // namespace tools
