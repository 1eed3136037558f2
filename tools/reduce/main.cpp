/// Shortens a journal to the few lines that matter.
#include "reduce/DeltaDebugging.h"
#include "reduce/Trial.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <fstream>

namespace tools
{
namespace
{
/// The lines of a journal between its head and its tail, which it keeps.
struct Journal
{
    std::string strHead;
    Lines aBody;

    std::string GetText(const Lines& aLines) const
    {
        std::string strText = strHead;
        for (const std::string& strLine : aLines)
            strText.append(strLine).append("\n");
        return strText.append("    return result; \n}");
    }
};

bool Read(const std::string& strFile, Journal& journal)
{
    std::ifstream stream(strFile, std::ios::binary);
    std::string strLine;
    bool bHead = true;
    while (std::getline(stream, strLine))
    {
        if (strLine.starts_with("    return result;"))
            break;
        if (bHead)
            journal.strHead.append(strLine).append("\n");
        else if (!strLine.empty())
            journal.aBody.push_back(strLine);
        bHead = bHead && !strLine.starts_with("    var mainHistID =");
    }
    return !bHead;
}

struct Options
{
    std::string strFile, strOutput, strCheck, strHistory, strReplay;
    std::optional<Condition> condition;
    double dTimeout = 60.0;
};

int Run(const Options& options)
{
    Journal journal;
    if (!Read(options.strFile, journal))
        throw std::runtime_error(options.strFile + " is no journal");
    std::vector<std::string> aCommand{options.strReplay, "--until", options.strCheck};
    if (!options.strHistory.empty())
        aCommand.insert(aCommand.end(), {"--history", options.strHistory});
    Trial trial(aCommand, *options.condition, std::chrono::duration<double>(options.dTimeout));
    const auto fails = [&](const Lines& aLines) { return trial.Holds(journal.GetText(aLines)); };
    if (!fails(journal.aBody))
        throw std::runtime_error("the whole journal does not fail so");

    const Lines aLeft = Reduce(journal.aBody, fails);
    std::ofstream stream(options.strOutput, std::ios::binary | std::ios::trunc);
    stream << journal.GetText(aLeft);
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + options.strOutput);
    std::printf("%zu lines shortened to %zu in %zu tries: %s\n", journal.aBody.size(), aLeft.size(), trial.GetCount(),
                options.strOutput.c_str());
    return 0;
}

int Main(int nArguments, char** aArguments)
{
    Options options;
    std::error_code ignored;
    options.strReplay =
        (std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path() / "qrv-replay").string();
    CLI::App app("Shortens a journal to a few lines that still fail.", "qrv-reduce");
    app.add_option("FILE", options.strFile, "the journal")->required();
    app.add_option(
           "--check", options.strCheck,
           "what it is to fail in: audit (of any History, after a call), code:N (of a call), crash, time:S (of a "
           "call, in seconds)")
        ->required()
        ->check(
            [&](const std::string& strText)
            { return (options.condition = ReadCondition(strText)) ? "" : "is none of audit, code:N, crash, time:S"; });
    app.add_option("-o,--output", options.strOutput, "the shorter journal; FILE.reduced without");
    app.add_option("--timeout", options.dTimeout, "the seconds after which a try is ended, 60 without")
        ->check(CLI::PositiveNumber);
    app.add_option("--history", options.strHistory, "as for qrv-replay");
    app.add_option("--replay", options.strReplay, "the program that replays; the qrv-replay beside this without");
    CLI11_PARSE(app, nArguments, aArguments);
    if (options.strOutput.empty())
        options.strOutput = options.strFile + ".reduced";
    try
    {
        return Run(options);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "qrv-reduce: %s\n", error.what());
        return 1;
    }
}
} // namespace
} // namespace tools

int main(int nArguments, char** aArguments)
{
    return tools::Main(nArguments, aArguments);
}
