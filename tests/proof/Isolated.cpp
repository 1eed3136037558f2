#include "proof/Isolated.h"

#include "replay/ModelReport.h"
#include "support/TemporaryFile.h"

#include <QRV/API.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <exception>

namespace QRV
{
namespace
{
/// What a child process writes, and how it ended.
struct Ending
{
    std::string strOutput;
    int nStatus = 0;

    bool IsClean() const { return WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0; }
    std::string Describe() const
    {
        if (WIFSIGNALED(nStatus))
            return std::string("ended by signal: ") + strsignal(WTERMSIG(nStatus)) + '\n' + strOutput;
        return strOutput.empty() ? "ended with " + std::to_string(WEXITSTATUS(nStatus)) : strOutput;
    }
};

/// `body` gets the descriptor to write to and gives the exit code.
Ending RunChild(const std::function<int(int)>& body)
{
    std::array<int, 2> aPipe{};
    if (::pipe(aPipe.data()) != 0)
        return {"no pipe", 1 << 8};
    const pid_t nChild = ::fork();
    if (nChild == 0)
    {
        ::close(aPipe[0]);
        ::_exit(body(aPipe[1]));
    }
    ::close(aPipe[1]);
    Ending ending;
    std::array<char, 4096> aRead{};
    for (ssize_t n = 0; (n = ::read(aPipe[0], aRead.data(), aRead.size())) > 0;)
        ending.strOutput.append(aRead.data(), static_cast<std::size_t>(n));
    ::close(aPipe[0]);
    if (nChild < 0 || ::waitpid(nChild, &ending.nStatus, 0) != nChild)
        return {"no process", 1 << 8};
    return ending;
}

void Write(int nFile, const std::string& strText)
{
    for (std::size_t nDone = 0; nDone < strText.size();)
    {
        const ssize_t n = ::write(nFile, strText.data() + nDone, strText.size() - nDone);
        if (n <= 0)
            return;
        nDone += static_cast<std::size_t>(n);
    }
}

/// Writes the digest of the model at the end, or what went wrong.
int RunWork(const std::function<void(std::uint64_t)>& work, const std::string& strJournal, int nFile)
{
    try
    {
        std::uint64_t nHistoryID = INVALID_ID;
        APICreateHistory(nHistoryID, true);
        APIEnableJournaling(nHistoryID, strJournal);
        work(nHistoryID);
        APIDisableJournaling();
        Write(nFile, tools::DigestModel() + '\n');
        return 0;
    }
    catch (const std::exception& fault)
    {
        Write(nFile, fault.what());
        return 1;
    }
}

int RunReplay(const std::string& strJournal, int nFile)
{
    ::dup2(nFile, STDOUT_FILENO);
    ::dup2(nFile, STDERR_FILENO);
    ::execl(QRV_REPLAY, "qrv-replay", "--digest", strJournal.c_str(), nullptr);
    return 127;
}

std::string Keep(const TemporaryFile& journal, const std::string& strFault)
{
    const std::string strKept = testing::TempDir() + "qrv_failed_session_" + std::to_string(::getpid()) + ".js";
    std::filesystem::copy_file(journal.GetPath(), strKept, std::filesystem::copy_options::overwrite_existing);
    return strFault + "\njournal: " + strKept;
}
} // namespace

std::string RunIsolated(const std::function<void(std::uint64_t)>& work)
{
    const TemporaryFile journal("session.js");
    const Ending session = RunChild([&](int nFile) { return RunWork(work, journal.GetPath(), nFile); });
    if (!session.IsClean())
        return Keep(journal, session.Describe());
    const Ending replay = RunChild([&](int nFile) { return RunReplay(journal.GetPath(), nFile); });
    if (!replay.IsClean() || !replay.strOutput.ends_with(session.strOutput))
        return Keep(journal,
                    "the replay gives another model: " + replay.Describe() + " instead of " + session.strOutput);
    return {};
}
} // namespace QRV
