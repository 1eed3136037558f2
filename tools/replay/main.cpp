/// Runs a journal again: every call of the session, in a process of its own.
#include "replay/ModelReport.h"
#include "replay/Replay.h"
#include "support/Condition.h"

#include <QRV/API.h>

#include <CLI/CLI.hpp>

#include <cstdio>
#include <fstream>
#include <map>

namespace tools
{
namespace
{
struct Options
{
    std::string strFile;
    std::string strJournal;
    std::optional<std::uint64_t> mainHistory;
    std::optional<Condition> condition;
    bool bResults = false;
    bool bTimes = false;
    bool bCounts = false;
    bool bAudit = false;
    bool bDigest = false;
    bool bNoFiles = false;
};

double ToSeconds(std::chrono::steady_clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

/// Follows the calls as they are made.
class Watcher
{
public:
    explicit Watcher(const Options& options) : m_options(options) {}

    /// Prints what was asked for. False once the condition holds.
    bool operator()(const ReplayedCall& call)
    {
        ++m_nCalls;
        m_nFailed += !call.outcome.result.IsGood();
        m_time += call.outcome.time;
        const std::vector<QRV::Result> aFindings = NeedsAudit(call) ? AuditAll() : std::vector<QRV::Result>();
        if (m_options.bResults || m_options.bTimes || m_options.bCounts || m_options.bAudit)
            Print(call, aFindings);
        m_bHeld = Holds(call, aFindings);
        return !m_bHeld;
    }

    void PrintTotal() const
    {
        std::printf("%zu calls, %zu failed, %.3f s in calls\n", m_nCalls, m_nFailed, ToSeconds(m_time));
    }

    bool IsHeld() const { return m_bHeld; }

private:
    bool NeedsAudit(const ReplayedCall& call) const
    {
        const bool bWatched = m_options.condition && m_options.condition->m_nKind == Condition::nKind::nAudit;
        return m_options.bAudit || (bWatched && call.nKind != nFamily::nReadOnly);
    }

    bool Holds(const ReplayedCall& call, const std::vector<QRV::Result>& aFindings) const
    {
        if (!m_options.condition)
            return false;
        switch (m_options.condition->m_nKind)
        {
        case Condition::nKind::nAudit:
            return !aFindings.empty();
        case Condition::nKind::nCode:
            return call.outcome.result.GetErrorCode() == m_options.condition->m_nCode;
        case Condition::nKind::nTime:
            return ToSeconds(call.outcome.time) > m_options.condition->m_dSeconds;
        case Condition::nKind::nCrash:
            break;
        }
        return false;
    }

    void Print(const ReplayedCall& call, const std::vector<QRV::Result>& aFindings) const
    {
        std::printf("%zu\t%.*s", call.nLine, static_cast<int>(call.strName.size()), call.strName.data());
        if (m_options.bResults)
        {
            const QRV::Result& result = call.outcome.result;
            const unsigned nCode = result.IsGood() ? result.GetWarningCode() : result.GetErrorCode();
            std::printf("\t%s%u %s", result.HasWarning() ? "warning " : "", nCode, result.GetErrorString().c_str());
        }
        if (m_options.bTimes)
            std::printf("\t%.3f ms", ToSeconds(call.outcome.time) * 1e3);
        if (m_options.bCounts)
            PrintCounts();
        if (m_options.bAudit)
            std::printf("\t%zu findings", aFindings.size());
        std::printf("\n");
        for (const QRV::Result& finding : aFindings)
            std::printf("\t%s\n", finding.GetErrorString().c_str());
        std::fflush(stdout); // the next call may be the last
    }

    static void PrintCounts()
    {
        std::printf("\t");
        const char* pSeparator = "";
        for (const auto& [strClass, nCount] : CountObjects())
        {
            std::printf("%s%zu %s", pSeparator, nCount, strClass.c_str());
            pSeparator = ", ";
        }
    }

    const Options& m_options;
    std::size_t m_nCalls = 0;
    std::size_t m_nFailed = 0;
    std::chrono::steady_clock::duration m_time{};
    bool m_bHeld = false;
};

int RunJournal(const Options& options)
{
    std::ifstream stream(options.strFile, std::ios::binary);
    if (!stream || stream.peek() == std::ifstream::traits_type::eof())
    {
        std::fprintf(stderr, "%s cannot be read or is empty\n", options.strFile.c_str());
        return nUnreadable;
    }
    Watcher watcher(options);
    Replay replay(options.mainHistory);
    if (options.bNoFiles)
        replay.MakeOnly([](const CallEntry& entry, const std::vector<Argument>&) { return !entry.bTakesFile; });
    replay.WriteJournal(options.strJournal);
    const std::optional<Refusal> refusal = replay.Run(stream, std::ref(watcher));
    if (!options.strJournal.empty())
        QRV::APIDisableJournaling();
    if (refusal)
    {
        std::fflush(stdout);
        std::fprintf(stderr, "%s:%zu:%zu: %s\n", options.strFile.c_str(), refusal->nLine, refusal->nColumn,
                     refusal->strMessage.c_str());
        return nRefused;
    }
    watcher.PrintTotal();
    if (options.bDigest)
        std::printf("%s\n", DigestModel().c_str());
    return watcher.IsHeld() ? nConditionHeld : nReplayed;
}

int Main(int nArguments, char** aArguments)
{
    Options options;
    std::string strCondition;
    CLI::App app("Runs the calls of a journal again.", "qrv-replay");
    app.add_option("FILE", options.strFile, "the journal")->required();
    app.add_flag("--results", options.bResults, "print after each call its code and message");
    app.add_flag("--times", options.bTimes, "print after each call how long it took");
    app.add_flag("--counts", options.bCounts, "print after each call how many objects of each class live");
    app.add_flag("--audit", options.bAudit, "print after each call what the audit of all Histories finds");
    app.add_flag("--digest", options.bDigest, "print at the end one SHA-256 over the dumps of all live objects");
    app.add_option("--journal", options.strJournal, "write the calls there as a journal anew");
    app.add_flag("--no-files", options.bNoFiles, "leave out the calls that read or write files");
    app.add_option("--history", options.mainHistory, "the id that the History of the session had; none if it had none")
        ->transform(CLI::Transformer(std::map<std::string, std::uint64_t>{{"none", QRV::INVALID_ID}}));
    app.add_option("--until", strCondition, "end with code 4 after a call that makes it hold: audit, code:N or time:S")
        ->check(
            [&](const std::string& strText)
            { return (options.condition = ReadCondition(strText)) ? "" : "is none of audit, code:N, crash, time:S"; });
    CLI11_PARSE(app, nArguments, aArguments);
    return RunJournal(options);
}
} // namespace
} // namespace tools

int main(int nArguments, char** aArguments)
{
    return tools::Main(nArguments, aArguments);
}
