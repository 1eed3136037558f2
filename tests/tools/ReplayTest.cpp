#include "Program.h"

#include "proof/Calls.h"
#include "replay/ModelReport.h"
#include "replay/Replay.h"
#include "support/Journaled.h"

#include <QRV/Journaling.h>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <random>
#include <sstream>

namespace tools
{
using namespace QRV;

namespace
{
const std::string kReplay = QRV_REPLAY;

void WriteFile(const TemporaryFile& file, const std::string& strText)
{
    std::ofstream(file.GetPath(), std::ios::binary) << strText;
}

/// A session that makes every call that journals hold, over and over, with arguments from a seed.
class RandomSession
{
public:
    explicit RandomSession(std::uint64_t nSeed) : m_random(nSeed)
    {
        // The lines of the two questions about silhouettes bear one name: where one fails, the other is asked.
        for (const CallKind& kind : GetCallKinds())
            if (!kind.aScriptNames.empty() && kind.strName.find("Silhouette") == std::string_view::npos)
                m_aKinds.push_back(&kind);
        APIDeleteAllHistories(); // so that the first id is that of a fresh process
        APICreateHistory(m_nHistory, true);
    }

    void Run(unsigned nRounds)
    {
        for (unsigned nRound = 0; nRound < nRounds; ++nRound)
        {
            std::shuffle(m_aKinds.begin(), m_aKinds.end(), m_random);
            for (const CallKind* pKind : m_aKinds)
            {
                KeepAModel();
                Note(Prepare(*pKind)->Run());
            }
        }
    }

    std::uint64_t GetHistory() const { return m_nHistory; }
    /// Code and message of each call, in order, as the program prints them.
    const std::vector<std::string>& GetOutcomes() const { return m_aOutcomes; }

private:
    std::unique_ptr<PreparedCall> Prepare(const CallKind& kind)
    {
        ArgumentSource source({m_nHistory, {}}, m_random());
        source.StartResultsEmpty();
        return kind.prepare(source);
    }

    /// Some calls end the History, name it anew, or replace it by an empty one.
    void KeepAModel()
    {
        std::vector<std::uint64_t> aHistories;
        {
            const QRVJournalingSuspend aside("QRV");
            APIGetAllHistoriesReadOnly(aHistories, true);
        }
        if (aHistories.empty())
            Note(APICreateHistory(m_nHistory, true));
        else
            m_nHistory = aHistories.back();
        std::vector<Point3d> aCorners;
        const double z = static_cast<double>(m_random() % 4);
        Note(APICreateRectangle(m_nHistory, {0, 0, z}, {2, 0, z}, {2, 2, z}, aCorners, false));
        Note(APIConnectPoint3ds(m_nHistory, {0, 0, z}, {0, 0, z + 1}));
    }

    void Note(const Result& result)
    {
        const unsigned nCode = result.IsGood() ? result.GetWarningCode() : result.GetErrorCode();
        m_aOutcomes.push_back((result.HasWarning() ? "warning " : "") + std::to_string(nCode) + " " +
                              result.GetErrorString());
    }

    std::uint64_t m_nHistory = INVALID_ID;
    std::mt19937_64 m_random;
    std::vector<const CallKind*> m_aKinds;
    std::vector<std::string> m_aOutcomes;
};

/// The third column of what the program prints after each call.
std::vector<std::string> GetResultColumn(const std::string& strOutput)
{
    std::vector<std::string> aResults;
    std::istringstream stream(strOutput);
    for (std::string strLine; std::getline(stream, strLine);)
        if (const std::size_t nTab = strLine.rfind('\t'); nTab != std::string::npos)
            aResults.push_back(strLine.substr(nTab + 1));
    return aResults;
}

/// Replays a text in this process, from an empty one.
std::optional<Refusal> ReplayText(const std::string& strText)
{
    APIDeleteAllHistories();
    std::istringstream stream(strText);
    return Replay(std::nullopt).Run(stream, [](const ReplayedCall&) { return true; });
}
} // namespace

TEST(Replay, MakesEveryCallOfASessionAgainWithTheSameResultsAndModels)
{
    for (unsigned nSeed = 1; nSeed <= 3; ++nSeed)
    {
        RandomSession session(nSeed);
        const Journaled journal(session.GetHistory());
        APIEnableJournalingTypes({"QRVReadOnly", "QRVJournalPick"}, true);
        session.Run(4);
        APIDisableJournaling();
        const TemporaryFile script("script.js");
        WriteFile(script, journal.Read());
        const Ended ended = RunProgram(kReplay + " --results --digest " + script.GetPath());
        EXPECT_EQ(ended.nCode, 0) << ended.strOutput.substr(ended.strOutput.size() -
                                                            std::min<std::size_t>(ended.strOutput.size(), 400));
        const std::vector<std::string> aResults = GetResultColumn(ended.strOutput);
        const std::vector<std::string>& aOutcomes = session.GetOutcomes();
        const auto [itGot, itWanted] =
            std::mismatch(aResults.begin(), aResults.end(), aOutcomes.begin(), aOutcomes.end());
        EXPECT_TRUE(itGot == aResults.end() && itWanted == aOutcomes.end())
            << "seed " << nSeed << ", call " << itWanted - aOutcomes.begin() << ": "
            << (itGot == aResults.end() ? "none" : *itGot) << " for "
            << (itWanted == aOutcomes.end() ? "none" : *itWanted);
        EXPECT_EQ(GetLastLine(ended.strOutput), DigestModel()) << "seed " << nSeed;
    }
}

TEST(Replay, DrawsTheExampleHouseAsItsSessionDid)
{
    const TemporaryFile folder("house");
    const Ended session = RunProgram(QRV_HOUSE " " + folder.GetPath());
    EXPECT_EQ(session.nCode, 0) << session.strOutput;
    const std::string strJournal = folder.GetPath() + "/house.journal";
    const Ended ended = RunProgram(kReplay + " --digest " + strJournal);
    EXPECT_EQ(ended.nCode, 0) << ended.strOutput;

    const auto read = [](const std::string& strPath)
    {
        std::ifstream stream(strPath, std::ios::binary);
        return std::string{std::istreambuf_iterator<char>(stream), {}};
    };
    const std::optional<Refusal> refusal = ReplayText(read(strJournal));
    EXPECT_FALSE(refusal);
    EXPECT_EQ(GetLastLine(ended.strOutput), DigestModel());

    std::vector<std::uint64_t> aBodies;
    APIGetAllObjectsByTypeReadOnly(0, nBodyType, aBodies);
    const TemporaryFile stl("house.stl");
    EXPECT_TRUE(APISaveToFileReadOnly(0, aBodies, stl.GetPath().c_str(), nFileTypeSTL, false, 1.0, {}, {}).IsGood());
    EXPECT_EQ(stl.Read(), read(folder.GetPath() + "/house.stl")) << "the file that the session wrote";
    std::filesystem::remove_all(folder.GetPath());
}

TEST(Replay, GivesVariablesTheResultOfTheirNameOrElseTheFirst)
{
    EXPECT_FALSE(ReplayText(kJournalHead +
                            "\n    var historyId_1 = QRV.APICreateHistory(QRV.INVALID_ID, false);\n"
                            "    var minor = QRV.APIGetVersionReadOnly();\n"
                            "    var any = QRV.APIGetVersionReadOnly();\n"
                            "    QRV.APISetOstrelModelInformation(historyId_1, \"\", \"\", \"\", \"\");\n"
                            "\n    historyId_1 = QRV.APICreateHistory(historyId_1, true);\n"
                            "\n    var historyId_2 = QRV.APICreateHistory(minor, true);\n"
                            "\n    var historyId_3 = QRV.APICreateHistory(7/*Unknown History ID*/, true);\n"
                            "    QRV.APIDeleteHistory(any);\n" +
                            kJournalTail));
    std::vector<std::uint64_t> aHistories;
    APIGetAllHistoriesReadOnly(aHistories);
    EXPECT_EQ(aHistories, (std::vector<std::uint64_t>{1, 7, 23}));
    EXPECT_TRUE(CountObjects().empty());
}

TEST(Replay, GoesOnAfterCallsThatFailAndEndsWithAJournalThatBreaksOff)
{
    EXPECT_FALSE(ReplayText(kJournalHead +
                            "    QRV.APICreateVertex(5/*Unknown History ID*/, QRV.Geom.Point3d(0, 0, 0));\n"
                            "    QRV.APIComputeAreaReadOnly(mainHistID, 12, undefined);\n"
                            "    QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(-0, 1e-3, 25));"));
    EXPECT_EQ(CountObjects(), (std::map<std::string, std::size_t>{{"Vertex", 1}}));
}

TEST(Replay, MakesCallsAgainWhoseNumbersAreNone)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    APIDeleteAllHistories();
    std::uint64_t nHistory = INVALID_ID;
    ASSERT_TRUE(APICreateHistory(nHistory, true).IsGood());
    std::string strText;
    {
        const Journaled journal(nHistory);
        std::uint64_t nID = INVALID_ID;
        std::vector<Point3d> aPoints;
        APICreateVertex(nHistory, {kNaN, kInfinity, -kInfinity}, nID);
        APICreateVertex(nHistory, {-kNaN, 0, 0}, nID);
        APICreatePolyline(nHistory, {{kNaN, 0, 0}, {kInfinity, 1, 1}}, nID, false);
        APICreateCircleOrArc(nHistory, kNaN, {}, aPoints, UnitVector3d(1, 0, 0, true), UnitVector3d(0, 1, 0, true), 0,
                             1, 6.0, false, Transf3d(Point3d(kNaN, 0, 0)), 0);
        APICreateVertex(nHistory, {1, 2, 3}, nID);
        APIDisableJournaling();
        strText = journal.Read();
    }
    EXPECT_FALSE(ReplayText(strText));
    EXPECT_EQ(CountObjects(), (std::map<std::string, std::size_t>{{"Vertex", 1}}));
}

TEST(Replay, LeavesFilesAloneWhereToldTo)
{
    const TemporaryFile script("saves.js");
    const TemporaryFile saved("saved.stl");
    WriteFile(script, kJournalHead +
                          "    QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(0, 0, 0));\n"
                          "    var saved = QRV.APISaveToFileReadOnly(mainHistID, [0], \"" +
                          saved.GetPath() + "\", 2, false, 1.0, [], []);\n" + kJournalTail);
    const Ended without = RunProgram(kReplay + " --results --no-files " + script.GetPath());
    EXPECT_EQ(without.nCode, 0);
    EXPECT_EQ(GetResultColumn(without.strOutput).size(), 1u) << without.strOutput;
    EXPECT_FALSE(saved.Exists());
    EXPECT_EQ(GetResultColumn(RunProgram(kReplay + " --results " + script.GetPath()).strOutput).size(), 2u);
    EXPECT_TRUE(saved.Exists());
}

TEST(Replay, RefusesWhatNoJournalSays)
{
    // "@" marks the place that is complained of.
    const std::string aRows[] = {
        "@print(1);",
        "@historyId_9 = QRV.APICreateHistory(QRV.INVALID_ID, true);",
        "    @{",
        "    var result = true; @}",
        "var result@ = false;",
        "QRV.@APINothing(mainHistID);",
        "QRV.@APISetDeltaFlags(mainHistID, 1, 1);",
        "QRV.@APIUndoHistory(mainHistID);",
        "QRV.@APIUndoHistory(mainHistID, true, 1, 1);",
        "QRV.APIGetActiveHistory(@mainHistID);",
        "QRV.APIUndoHistory(mainHistID, true, 1)@",
        "QRV.APIUndoHistory(mainHistID, true, 1);@;",
        "QRV.APIUndoHistory(mainHistID, true@,1);",
        "QRV.APIUndoHistory(mainHistID, @ true, 1);",
        "QRV.APIUndoHistory(@otherHistID, true, 1);",
        "QRV.APIUndoHistory(@undefined, true, 1);",
        "QRV.APIUndoHistory(mainHistID, @1, 1);",
        "QRV.APIUndoHistory(mainHistID, true, @\"1\");",
        "QRV.APIUndoHistory(mainHistID, true, @-2);",
        "QRV.APIUndoHistory(mainHistID, true, 1@/*Unknown*/);",
        "QRV.APIUndoHistory(mainHistID, true, @01);",
        "QRV.APIUndoHistory(mainHistID, true, @1e);",
        "QRV.APIUndoHistory(mainHistID, true, @0x10);",
        "QRV.APIUndoHistory(mainHistID, true, 1@ + 1);",
        "QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(@nano, 0, 0));",
        "QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(0, 0, @1e999));",
        "QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(0, 0@));",
        "QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(0, 0, 0@, 0));",
        "QRV.APICreateVertex(mainHistID, @QRV.Geom.Vector3d(0, 0, 0));",
        "QRV.APICreateVertex(mainHistID, QRV.Geom.@Sphere(1));",
        "QRV.APICreateVertex(mainHistID, @QRV.Other);",
        "QRV.APISetLocalCoordinateSystem(mainHistID, QRV.Geom.MakeRigidTransform(QRV.Geom.Point3d(0, 0, 0), "
        "QRV.Geom.@Point3d(1, 0, 0), QRV.Geom.Vector3d(0, 1, 0), QRV.Geom.Vector3d(0, 0, 1)));",
        "QRV.APICreatePolyline(mainHistID, @3, true);",
        "QRV.APICreatePolyline(mainHistID, [@QRV.Geom.Point3d(0, 0, 0)], true);",
        "QRV.APICreatePolyline(mainHistID, [@undefined], true);",
        "QRV.APICreatePolyline(mainHistID, [1,@], true);",
        "QRV.APICreatePolyline(mainHistID, [{\"x\":1,@\"x\":2}], true);",
        "QRV.APICreatePolyline(mainHistID, [{@x:1}], true);",
        "QRV.APICreatePolyline(mainHistID, [{\"x\"@=1}], true);",
        "QRV.APICreatePolyline(mainHistID, @[{\"objectName\":\"Point3d\",\"x\":0,\"y\":0}], true);",
        "QRV.APICreatePolyline(mainHistID, " + std::string(64, '[') + "@" + std::string(99999, '[') + "], true);",
        "QRV.APICreateLayer(mainHistID, @\"no end, true);",
        "QRV.APICreateLayer(mainHistID, \"a\\@q\", true);",
        "QRV.APICreateLayer(mainHistID, \"bad \xc3@\x28\", true);",
    };
    for (std::string strLine : aRows)
    {
        const std::size_t nMark = strLine.find('@');
        strLine.erase(nMark, 1);
        const auto refusal =
            ReplayText(kJournalHead + "    QRV.APIDeleteHistory(QRV.INVALID_ID);\n\n" + strLine + "\n" + kJournalTail);
        ASSERT_TRUE(refusal) << strLine;
        EXPECT_EQ(refusal->nLine, 7u) << strLine;
        EXPECT_EQ(refusal->nColumn, nMark + 1) << strLine << ": " << refusal->strMessage;
    }
}

TEST(Replay, RefusesAFileThatIsBuiltOtherwise)
{
    const std::tuple<std::string, std::size_t, std::size_t> aRows[] = {
        {"", 1, 1},
        {"{\n", 1, 1},
        {"\n\nfunction runtest() \n", 4, 1},
        {"function runtest() \nfunction runtest() \n", 2, 1},
        {"function runtest() {\n", 1, 20},
        {kJournalHead + "}", 5, 1},
        {kJournalHead + kJournalTail + "\n" + kJournalTail, 7, 5},
        {kJournalHead + kJournalTail + "\nQRV.APIUndoHistory(mainHistID, true, 1);", 7, 5},
        {std::string("\0", 1), 1, 1},
    };
    for (const auto& [strText, nLine, nColumn] : aRows)
    {
        const auto refusal = ReplayText(strText);
        ASSERT_TRUE(refusal) << strText;
        EXPECT_EQ(std::pair(refusal->nLine, refusal->nColumn), std::pair(nLine, nColumn)) << strText;
    }
}

TEST(Replay, TellsByItsExitCodeHowTheRunEnded)
{
    const TemporaryFile good("good.js");
    WriteFile(good, kJournalHead +
                        "    QRV.APIDeleteHistory(5/*Unknown History ID*/);\n    QRV.APIDeleteAllHistories();\n" +
                        kJournalTail);
    const TemporaryFile bad("bad.js");
    WriteFile(bad, kJournalHead + "    QRV.APIDeleteHistory(5/*Unknown*/);\n" + kJournalTail);
    EXPECT_EQ(RunProgram(kReplay + " " + good.GetPath()).nCode, 0);
    EXPECT_EQ(RunProgram(kReplay + " --until code:5 " + good.GetPath()).nCode, 0);
    EXPECT_EQ(RunProgram(kReplay + " --until audit " + good.GetPath()).nCode, 0);
    EXPECT_EQ(RunProgram(kReplay + " --until code:4 " + good.GetPath()).nCode, 4);
    EXPECT_EQ(RunProgram(kReplay + " --until time:0 " + good.GetPath()).nCode, 4);
    EXPECT_EQ(RunProgram(kReplay + " /no/such/journal").nCode, 3);
    EXPECT_EQ(RunProgram(kReplay + " /").nCode, 3);
    EXPECT_GE(RunProgram(kReplay + " --until code:x " + good.GetPath()).nCode, 100);
    const Ended ended = RunProgram(kReplay + " " + bad.GetPath());
    EXPECT_EQ(ended.nCode, 2);
    EXPECT_TRUE(ended.strOutput.starts_with(bad.GetPath() + ":5:27: ")) << ended.strOutput;
}

#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed
TEST(Replay, NeedsNoMoreMemoryForALongJournal)
{
    const auto getPeak = [](unsigned nLines)
    {
        const TemporaryFile file("long.js");
        {
            std::ofstream stream(file.GetPath(), std::ios::binary);
            stream << kJournalHead;
            for (unsigned i = 0; i < nLines; i += 2)
                stream << "    QRV.APICreateVertex(mainHistID, QRV.Geom.Point3d(1, 2, " << i
                       << "));\n    QRV.APIUndoHistory(mainHistID, true, QRV.INVALID_ID);\n";
            stream << kJournalTail;
        }
        const pid_t nChild = ::fork();
        if (nChild == 0)
        {
            ::close(STDOUT_FILENO);
            ::execl(kReplay.c_str(), kReplay.c_str(), file.GetPath().c_str(), nullptr);
            ::_exit(127);
        }
        int nStatus = 0;
        rusage usage{};
        ::wait4(nChild, &nStatus, 0, &usage);
        EXPECT_EQ(nStatus, 0);
        return usage.ru_maxrss;
    };
    constexpr long kSlack = 2048; // kB
    EXPECT_LT(getPeak(50000), getPeak(2000) + kSlack);
}
#endif
} // namespace tools
