#include "support/SharedData.h"

namespace QRV
{
std::optional<std::filesystem::path> FindSharedFile(const std::string& strName)
{
    const std::filesystem::path path = std::filesystem::path(QRV_SHARED_DATA) / strName;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt;
    return path;
}
} // namespace QRV
