/// What stands in all Histories of the process.
#pragma once

#include <QRV/Result.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tools
{
/// The live objects by the name of their class.
std::map<std::string, std::size_t> CountObjects();
/// What the audit of each History finds.
std::vector<QRV::Result> AuditAll();
/// The text that `APIDebugObjectReadOnly` gives of an object, without the figures of the memory that objects take.
std::string DumpObject(std::uint64_t nHistory, std::uint64_t nObject);
/// The SHA-256, in hexadecimal digits, over the texts of DumpObject() of all live objects, of one History after the
/// other and in each by ascending id.
std::string DigestModel();
} // namespace tools
