#include "Program.h"

#include "reduce/DeltaDebugging.h"
#include "support/Condition.h"
#include "support/Journaled.h"

#include <algorithm>
#include <random>
#include <set>

namespace tools
{
using namespace QRV;

namespace
{
std::string VertexLine(unsigned i)
{
    return "    QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(" + std::to_string(i) + ", 0, 0));\n";
}

/// A journal of so many lines that do no harm, with others put in at places of their own.
std::string MakeJournal(unsigned nLines, const std::map<unsigned, std::string>& planted)
{
    std::string strText = kJournalHead;
    for (unsigned i = 0; i < nLines; ++i)
        strText += planted.contains(i) ? planted.at(i) : VertexLine(i);
    return strText + kJournalTail;
}

/// Reduces a journal and gives what is left of it.
std::string ReduceJournal(const std::string& strText, const std::string& strOptions)
{
    const TemporaryFile file("long.journal");
    const TemporaryFile reduced("short.journal");
    std::ofstream(file.GetPath(), std::ios::binary) << strText;
    const Ended ended = RunProgram(QRV_REDUCE " " + file.GetPath() + " -o " + reduced.GetPath() + " " + strOptions);
    return ended.nCode == 0 ? reduced.Read() : ended.strOutput;
}

/// A program in the place of the one that replays, which does as the text says when the journal has both lines.
class Impostor
{
public:
    explicit Impostor(const std::string& strDoes) : m_file("impostor.sh")
    {
        std::ofstream(m_file.GetPath())
            << "#!/bin/sh\nfor file; do :; done\n"
               "if grep -q 'Point3d(17,' \"$file\" && grep -q 'Point3d(41,' \"$file\"; then "
            << strDoes << "; fi\n";
        std::filesystem::permissions(m_file.GetPath(), std::filesystem::perms::owner_all);
    }

    std::string GetOption() const { return " --replay " + m_file.GetPath(); }

private:
    TemporaryFile m_file;
};
} // namespace

TEST(DeltaDebugging, LeavesJustTheLinesThatMatter)
{
    for (unsigned nSeed = 0; nSeed < 200; ++nSeed)
    {
        std::mt19937 random(nSeed);
        Lines aLines;
        for (unsigned i = 0; i < 1 + random() % 60; ++i)
            aLines.push_back(std::to_string(i));
        std::set<std::string> needed;
        for (unsigned i = random() % 5; i > 0; --i)
            needed.insert(aLines[random() % aLines.size()]);
        const auto fails = [&](const Lines& aLeft)
        {
            return std::all_of(needed.begin(), needed.end(),
                               [&](const std::string& strLine)
                               { return std::find(aLeft.begin(), aLeft.end(), strLine) != aLeft.end(); });
        };
        const Lines aLeft = Reduce(aLines, fails);
        EXPECT_EQ(std::set<std::string>(aLeft.begin(), aLeft.end()), needed) << "seed " << nSeed;
        EXPECT_EQ(aLeft.size(), needed.size()) << "seed " << nSeed;
    }
}

TEST(Reduce, FindsTheCallThatFailsAndWhatItRestsOn)
{
    const std::string strHistory = "    var historyId_1 = QRV.APICreateHistory(QRV.INVALID_ID, false);\n";
    const std::string strEnd = "    QRV.APIDeleteHistory(historyId_1);\n";
    const std::string strUse = "    QRV.APIUndoHistory(historyId_1, false, QRV.INVALID_ID);\n";
    const std::string strJournal =
        MakeJournal(300, {{30, "\n" + strHistory}, {120, strEnd}, {199, "    QRV.APINothing();\n"}, {200, strUse}});
    EXPECT_NE(ReduceJournal(strJournal, "--check code:4").find("does not fail"), std::string::npos)
        << "the run ends at a line that is refused";
    const std::string strSound = MakeJournal(300, {{30, "\n" + strHistory}, {120, strEnd}, {250, strUse}});
    EXPECT_EQ(ReduceJournal(strSound, "--check code:4"), kJournalHead + strHistory + strEnd + strUse + kJournalTail);
}

TEST(Reduce, FindsWhatMakesTheProgramCrashOrFailTheAudit)
{
    const std::string strJournal = MakeJournal(64, {});
    const std::string strExpected = kJournalHead + VertexLine(17) + VertexLine(41) + kJournalTail;
    EXPECT_EQ(ReduceJournal(strJournal, "--check crash" + Impostor("kill -SEGV $$").GetOption()), strExpected);
    EXPECT_EQ(ReduceJournal(strJournal, "--check crash" + Impostor("exit 1").GetOption()), strExpected)
        << "as under a sanitizer";
    EXPECT_EQ(ReduceJournal(strJournal, "--check audit" + Impostor("exit 4").GetOption()), strExpected);
    EXPECT_EQ(ReduceJournal(strJournal, "--check time:9" + Impostor("exit 4").GetOption()), strExpected);
}

TEST(Reduce, EndsAProgramThatDoesNotComeBack)
{
    const TemporaryFile program("stalls.sh");
    std::ofstream(program.GetPath()) << "#!/bin/sh\nexec sleep 99\n";
    std::filesystem::permissions(program.GetPath(), std::filesystem::perms::owner_all);
    const std::string strOptions = " --timeout 0.1 --replay " + program.GetPath();
    EXPECT_EQ(ReduceJournal(MakeJournal(8, {}), "--check time:9" + strOptions), kJournalHead + kJournalTail);
    EXPECT_NE(ReduceJournal(MakeJournal(8, {}), "--check crash" + strOptions).find("does not fail"), std::string::npos);
}

TEST(Reduce, TakesOneFailureForNoOther)
{
    const std::string strJournal = MakeJournal(64, {});
    for (const auto& [strCheck, strDoes] : std::vector<std::pair<std::string, std::string>>{{"crash", "exit 4"},
                                                                                            {"crash", "exit 2"},
                                                                                            {"audit", "kill -SEGV $$"},
                                                                                            {"code:5", "exit 1"},
                                                                                            {"time:1", "exit 1"}})
        EXPECT_NE(
            ReduceJournal(strJournal, "--check " + strCheck + Impostor(strDoes).GetOption()).find("does not fail"),
            std::string::npos)
            << strCheck << " by " << strDoes;
    EXPECT_NE(ReduceJournal(strJournal, "--check crash --replay /no/such/program").find("cannot run"),
              std::string::npos);
    EXPECT_NE(ReduceJournal("text", "--check crash").find("no journal"), std::string::npos);
}

TEST(Condition, IsReadFromItsTextAlone)
{
    EXPECT_EQ(ReadCondition("code:14")->m_nCode, 14u);
    EXPECT_EQ(ReadCondition("time:0.5")->m_dSeconds, 0.5);
    for (const char* pText :
         {"", "audits", "code:", "code:0", "code:-1", "code:5x", "time:", "time:-1", "time:nan", "time:inf", "time:1 "})
        EXPECT_FALSE(ReadCondition(pText)) << pText;
}
} // namespace tools
