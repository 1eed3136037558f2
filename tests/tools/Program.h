/// The tools as a user runs them.
#pragma once

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace tools
{
struct Ended
{
    int nCode = -1; ///< -1 for a program that was killed
    std::string strOutput;
};

/// Runs a command line of the shell to its end.
inline Ended RunProgram(const std::string& strCommand)
{
    Ended ended;
    std::FILE* pPipe = ::popen((strCommand + " 2>&1").c_str(), "r");
    if (!pPipe)
        return ended;
    char aBuffer[4096];
    while (const std::size_t nRead = std::fread(aBuffer, 1, sizeof aBuffer, pPipe))
        ended.strOutput.append(aBuffer, nRead);
    const int nStatus = ::pclose(pPipe);
    ended.nCode = WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
    return ended;
}

/// The last line that a program printed.
inline std::string GetLastLine(const std::string& strOutput)
{
    const std::size_t nEnd = strOutput.find_last_not_of('\n');
    const std::size_t nBegin = strOutput.rfind('\n', nEnd);
    return nEnd == std::string::npos ? "" : strOutput.substr(nBegin + 1, nEnd - nBegin);
}
} // namespace tools
