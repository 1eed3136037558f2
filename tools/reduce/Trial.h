/// One try of a journal, in a process of its own.
#pragma once

#include "support/Condition.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace tools
{
class Trial
{
public:
    /// @param aCommand  the program that replays and its options; the file is added
    /// @param timeout   after which a run is ended; it then counts as one that takes too long
    Trial(std::vector<std::string> aCommand, const Condition& condition, std::chrono::duration<double> timeout);
    ~Trial();
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;

    /// Whether the condition holds for a journal of this text. Throws std::runtime_error when it cannot be tried.
    bool Holds(const std::string& strText);
    std::size_t GetCount() const { return m_nCount; }

private:
    struct Ending
    {
        bool bTimeout = false;
        bool bKilled = false;
        int nCode = 0;
    };

    Ending RunProgram();

    std::vector<std::string> m_aCommand;
    Condition m_condition;
    std::chrono::duration<double> m_timeout;
    std::filesystem::path m_file;
    std::size_t m_nCount = 0;
};
} // namespace tools
