/// Files that tests write.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace QRV
{
/// A file below the directory for temporary files, removed at the end. Tests that run at the same time in processes of
/// their own do not meet: the name holds the process.
class TemporaryFile
{
public:
    explicit TemporaryFile(const std::string& strName)
        : m_path(std::filesystem::path(testing::TempDir()) / ("qrv_" + std::to_string(::getpid()) + "_" + strName))
    {
        std::filesystem::remove(m_path);
    }
    ~TemporaryFile() { std::filesystem::remove(m_path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string GetPath() const { return m_path.string(); }
    bool Exists() const { return std::filesystem::exists(m_path); }
    std::string Read() const
    {
        std::ifstream stream(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    std::filesystem::path m_path;
};
} // namespace QRV
