#include "reduce/Trial.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <thread>

namespace tools
{
namespace
{
/// Becomes the program, without a word and without a core file.
[[noreturn]] void Become(char* const* aArguments)
{
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const int nNull = ::open("/dev/null", O_RDWR);
    for (const int nStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nNull, nStream);
    ::execv(aArguments[0], aArguments);
    ::_exit(nBadCommand);
}
} // namespace

Trial::Trial(std::vector<std::string> aCommand, const Condition& condition, std::chrono::duration<double> timeout)
    : m_aCommand(std::move(aCommand)), m_condition(condition), m_timeout(timeout),
      m_file(std::filesystem::temp_directory_path() / ("qrv-reduce-" + std::to_string(::getpid()) + ".journal"))
{
    m_aCommand.push_back(m_file.string());
}

Trial::~Trial()
{
    std::error_code ignored;
    std::filesystem::remove(m_file, ignored);
}

bool Trial::Holds(const std::string& strText)
{
    std::ofstream stream(m_file, std::ios::binary | std::ios::trunc);
    stream << strText;
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + m_file.string());

    ++m_nCount;
    const Ending ending = RunProgram();
    if (ending.bTimeout)
        return m_condition.m_nKind == Condition::nKind::nTime;
    if (!ending.bKilled && ending.nCode >= nBadCommand)
        throw std::runtime_error("cannot run " + m_aCommand.front());
    const bool bOwnCode = ending.nCode == nReplayed || ending.nCode == nRefused || ending.nCode == nUnreadable ||
                          ending.nCode == nConditionHeld;
    if (ending.bKilled || !bOwnCode)
        return m_condition.m_nKind == Condition::nKind::nCrash;
    return ending.nCode == nConditionHeld && m_condition.m_nKind != Condition::nKind::nCrash;
}

Trial::Ending Trial::RunProgram()
{
    std::vector<char*> aArguments;
    for (std::string& strArgument : m_aCommand)
        aArguments.push_back(strArgument.data());
    aArguments.push_back(nullptr);
    const pid_t nChild = ::fork();
    if (nChild < 0)
        throw std::runtime_error("cannot start a process");
    if (nChild == 0)
        Become(aArguments.data());

    constexpr std::chrono::milliseconds kPause(1);
    const auto end = std::chrono::steady_clock::now() + m_timeout;
    Ending ending;
    int nStatus = 0;
    while (::waitpid(nChild, &nStatus, WNOHANG) == 0)
    {
        if (!ending.bTimeout && std::chrono::steady_clock::now() > end)
        {
            ending.bTimeout = true;
            ::kill(nChild, SIGKILL);
        }
        std::this_thread::sleep_for(kPause);
    }
    ending.bKilled = WIFSIGNALED(nStatus);
    ending.nCode = WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : 0;
    return ending;
}
} // namespace tools
