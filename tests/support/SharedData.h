/// The real buildings and footprints that stand beside the checkout, where they are there.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace QRV
{
/// The file of that name below the shared data, or nothing where there is none; the test then says that it skips.
std::optional<std::filesystem::path> FindSharedFile(const std::string& strName);
} // namespace QRV
