#include "support/CommaLocale.h"
#include "support/Journaled.h"
#include "support/TestModel.h"

#include "journal/JournalCall.h"

#include <QRV/Journaling.h>

#include <cstdlib>

namespace QRV
{
TEST(Journal, TellsAWholeSession)
{
    const CommaLocale commas;
    TestModel model;
    model.Vertex({5, 5, 5}); // before the journal: not in it
    const std::uint64_t h = model.GetID();
    std::vector<std::uint64_t> aIDs;
    std::vector<Point3d> aPoints;
    std::uint64_t nID = INVALID_ID;
    bool bAnswer = false;
    double dArea = 0.0;
    SortedHits hits;

    std::string strExpected = kJournalHead;
    Journaled journal(h);
    APIIsJournalingReadOnly(bAnswer);
    EXPECT_TRUE(bAnswer);
    APIConnectPoint3ds(h, {0, 0, 0}, {1234567, 2.5, 0.1});
    strExpected +=
        "    QRV.APIConnectPoint3ds(mainHistID, QRV.Geom.Point3d(0, 0, 0), QRV.Geom.Point3d(1234567, 2.5, 0.1));\n";
    APICanUndoHistoryReadOnly(h, bAnswer);
    APICreateRectangle(h, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, aPoints, true);

    // Histories by name, by number, and not at all.
    std::uint64_t nScratch = INVALID_ID;
    APICreateHistory(nScratch, false);
    strExpected += "\n    var historyId_1 = QRV.APICreateHistory(QRV.INVALID_ID, false);\n";
    APICreateVertex(nScratch, {1.0 / 3.0, -1e-7, 1e22}, nID);
    strExpected += "    QRV.APICreateVertex(historyId_1, QRV.Geom.Point3d(0.3333333333333333, -1e-07, 1e+22));\n";
    std::uint64_t nBad = 0xFFFFFFFE;
    EXPECT_FALSE(APICreateHistory(nBad, true).IsGood());
    strExpected += "    QRV.APICreateHistory(4294967294/*Unknown History ID*/, true);\n";
    std::uint64_t nWanted = 400000;
    APICreateHistory(nWanted, true);
    strExpected += "\n    var historyId_2 = QRV.APICreateHistory(400000/*Unknown History ID*/, true);\n";
    APICreateHistory(nScratch, false);
    strExpected += "\n    historyId_1 = QRV.APICreateHistory(historyId_1, false);\n";
    APIUndoHistory(777000, true);
    strExpected += "    QRV.APIUndoHistory(777000/*Unknown History ID*/, true, QRV.INVALID_ID);\n";
    APIDeleteHistory(INVALID_ID);
    strExpected += "    QRV.APIDeleteHistory(QRV.INVALID_ID);\n";
    APIDeleteHistory(nWanted);
    strExpected += "    QRV.APIDeleteHistory(historyId_2);\n";
    APISetAllDeltaFlags(h, 1, 0, false);

    APIEnableJournalingTypes({"QRVReadOnly"}, true);
    APICreateRectangle(h, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, aPoints, true);
    APICreateRectangle(h, {0, 0, 9}, {1, 0, 9}, {1, 1, 9}, aPoints, false);
    strExpected += "    QRV.APICreateRectangle(mainHistID, QRV.Geom.Point3d(0, 0, 0), QRV.Geom.Point3d(1, 0, 0), "
                   "QRV.Geom.Point3d(1, 1, 0), true);\n"
                   "    QRV.APICreateRectangle(mainHistID, QRV.Geom.Point3d(0, 0, 9), QRV.Geom.Point3d(1, 0, 9), "
                   "QRV.Geom.Point3d(1, 1, 9), false);\n";
    APIGetAllReachableHistoriesReadOnly(h, false, aIDs);
    strExpected += "    QRV.APIGetAllReachableHistoriesReadOnly(" + JournalText(h) + ", false);\n";
    APIDetectSilhouettesReadOnly(h, INVALID_ID, {0, 0, 5}, {0, 0, -1}, false, aIDs);
    strExpected += "    QRV.APIIsEdgeSilhouetteReadOnly(mainHistID, QRV.INVALID_ID, QRV.Geom.Point3d(0, 0, 5), "
                   "QRV.Geom.Vector3d(0, 0, -1), false);\n";
    APIDetectFreeEdgesReadOnly(h, INVALID_ID, aIDs);
    strExpected += "    QRV.APIDetectFreeEdges(mainHistID, QRV.INVALID_ID);\n";
    const Transf3d move = Transf3d::translation(Vector3d(1, 2, 3));
    APIComputeAreaReadOnly(h, 0, dArea, &move);
    strExpected +=
        "    QRV.APIComputeAreaReadOnly(mainHistID, 0, QRV.Geom.MakeRigidTransform(QRV.Geom.Point3d(1, 2, 3), "
        "QRV.Geom.Vector3d(1, 0, 0), QRV.Geom.Vector3d(0, 1, 0), QRV.Geom.Vector3d(0, 0, 1)));\n";
    APIChangeHistoryID(nScratch);
    APIDeleteHistory(nScratch);
    strExpected += "    QRV.APIChangeHistoryID(historyId_1);\n"
                   "    QRV.APIDeleteHistory(" +
                   JournalText(nScratch) + "/*Unknown History ID*/);\n";

    // Rays are neither changes nor plain questions.
    const Line3d ray({0, 0, 1}, Vector3d(0, 0, 2));
    APIRayFireReadOnly(h, ray, aIDs, 0.5, true, false, true, 1e30);
    APIEnableJournalingTypes({"QRVJournalPick"}, false);
    APIRayFireReadOnly(h, ray, aIDs, 0.5, true, false, true, 1e30);
    APIRayFireReadOnly(h, ray, aIDs, 2, true, false, true, 1, nullptr, nullptr, &hits);
    APIIntersectsNegativeSideOfPlanesReadOnly(h, {}, aIDs, true, true, false, true, 0, &ray, nullptr, nullptr, nullptr,
                                              false);
    APIConnectPoint3ds(h, {0, 0, 0}, {0, 1, 0});
    const std::string strRay = "QRV.Geom.Line3d(QRV.Geom.Point3d(0, 0, 1), QRV.Geom.Vector3d(0, 0, 2))";
    strExpected += "    QRV.APIRayFireReadOnly(mainHistID, " + strRay + ", 0.5, true, false, true, 1e+30);\n";
    strExpected += "    QRV.APIRayFireSortedReadOnly(mainHistID, " + strRay + ", 2.0, true, false, true, 1.0);\n";
    strExpected += "    QRV.APIIntersectsNegativeSideOfPlanesReadOnly(mainHistID, [], true, true, false, true, 0.0, " +
                   strRay + ", false);\n";
    APIEnableJournalingTypes({}, false);
    APIConnectPoint3ds(h, {0, 0, 0}, {0, 2, 0});
    APIIsJournalingReadOnly(bAnswer);
    EXPECT_TRUE(bAnswer);
    EXPECT_EQ(journal.Read(), strExpected) << "every line is in the file once its call has begun";

    ExpectGood(APIDisableJournaling());
    ExpectGood(APIDisableJournaling());
    APIIsJournalingReadOnly(bAnswer);
    EXPECT_FALSE(bAnswer);
    EXPECT_EQ(journal.Read(), strExpected + kJournalTail);
}

TEST(Journal, IsSuspendedForTypesThatAreWritten)
{
    TestModel model;
    Journaled journal(model.GetID());
    const auto countLines = [&]
    {
        journal.ReadOn();
        APIUndoHistory(model.GetID());
        const std::string strNew = journal.ReadOn();
        return std::count(strNew.begin(), strNew.end(), '\n');
    };
    {
        const QRVJournalingSuspend other("QRVReadOnly");
        EXPECT_EQ(countLines(), 1);
        {
            const QRVJournalingSuspend outer("QRV");
            EXPECT_FALSE(IsJournalingEnabled());
            EXPECT_EQ(countLines(), 0);
            {
                const QRVJournalingSuspend inner("QRV");
                EXPECT_EQ(countLines(), 0);
            }
            EXPECT_EQ(countLines(), 0);
        }
        EXPECT_EQ(countLines(), 1);
        EXPECT_TRUE(IsJournalingEnabledForAnyType({"QRVReadOnly", "QRV"}));
        EXPECT_FALSE(IsJournalingEnabledForAnyType({"QRVReadOnly"}));
        EXPECT_FALSE(IsJournalingEnabledForAnyType({}));
        APIDisableJournaling();
    }
    EXPECT_FALSE(IsJournalingEnabled());
}

TEST(Journal, IsReplacedByAnotherThatKnowsNoNamesOfTheFirst)
{
    TestModel model;
    Journaled first(model.GetID(), "first.js");
    APIEnableJournalingTypes({"QRVReadOnly"}, false);
    std::uint64_t nID = INVALID_ID;
    {
        const Journaled second(INVALID_ID, "second.js"); // writes changes again
        EXPECT_EQ(first.Read(), kJournalHead + kJournalTail);
        APICreateHistory(nID, false);
        APIUndoHistory(model.GetID());
        EXPECT_EQ(second.Read(),
                  kJournalHead +
                      "\n    var historyId_1 = QRV.APICreateHistory(QRV.INVALID_ID, false);\n    QRV.APIUndoHistory(" +
                      JournalText(model.GetID()) + "/*Unknown History ID*/, false, QRV.INVALID_ID);\n");
        WriteToJournal("// ");
        WriteActiveHistoryVariableName(nID);
        WriteIndentToJournal();
        WriteToJournal(CreateActiveHistoryVariableName(nID));
        WriteToJournal(CreateActiveHistoryVariableName(INVALID_ID));
        FlushJournaling();
        EXPECT_TRUE(second.Read().ends_with("\n// historyId_1    historyId_2"));
        EXPECT_EQ(GetHistoryVariableName(nID), "historyId_2");
    }
    APIDeleteHistory(nID);
}

TEST(Journal, NeverFailsACall)
{
    TestModel model;
    {
        Journaled journal(model.GetID());
        journal.ReadOn();
        WriteJournalCall({.pName = "APISomething", .pType = "QRV", .nFirstHistory = model.GetID()}, 1,
                         std::string("\xff"), 2);
        APIUndoHistory(model.GetID());
        EXPECT_EQ(journal.ReadOn(),
                  "    QRV.APISomething(mainHistID, 1,     QRV.APIUndoHistory(mainHistID, false, QRV.INVALID_ID);\n");
    }
    for (const char* pPath : {"/no/such/folder/session.js", "", "/"})
    {
        bool bJournaling = false;
        ExpectGood(APIEnableJournaling(model.GetID(), pPath));
        ExpectGood(APIIsJournalingReadOnly(bJournaling));
        EXPECT_TRUE(bJournaling);
        model.Line({0, 0, 0}, {1, 0, 0});
        ExpectGood(APIDisableJournaling());
    }
}

TEST(Journal, GetsItsTailWhenTheProcessEndsAndTheHostHearsNothing)
{
    const TemporaryFile file("exit.js");
    const auto leave = [&]
    {
        std::uint64_t h = INVALID_ID;
        APICreateHistory(h, true);
        APIEnableJournaling(h, file.GetPath());
        APIConnectPoint3ds(h, {0, 0, 0}, {1, 0, 0});
        HistoryRegistry::Get().SetModelChangedCallback([](const ModelChangeData&) { std::_Exit(3); });
        std::exit(0);
    };
    EXPECT_EXIT(leave(), testing::ExitedWithCode(0), "");
    const std::string strText = file.Read();
    EXPECT_TRUE(strText.ends_with("QRV.Geom.Point3d(1, 0, 0));\n" + kJournalTail)) << strText;
}

TEST(JournalText, IsWhatTheScriptReads)
{
    const double dNumber = 0.1;
    const std::string strText = "a \"b\" \\ \xc3\xbc\n";
    const Plane plane(Point3d(7, 8, 2), UnitVector3d(Vector3d(0, 0, 1), true));
    const std::pair<std::string, std::string> aRows[] = {
        {JournalText(-3), "-3"},
        {JournalText(std::uint32_t(4294967295u)), "4294967295"},
        {JournalText(nFaceType), "4"},
        {JournalText(std::uint64_t(4294967295u)), "QRV.INVALID_ID"},
        {JournalText(dNumber), "0.1"},
        {JournalText(0.5f), "0.5"},
        {JournalText(3.0), "3.0"},
        {JournalText(strText), "\"a \\\"b\\\" \\\\ \xc3\xbc\\n\""},
        {JournalText(static_cast<const char*>(nullptr)), "undefined"},
        {JournalText(&dNumber), "0.1"},
        {JournalText(static_cast<const Line3d*>(nullptr)), "undefined"},
        {JournalText(Vector3d(1e20, -0.25, 2.0 / 3.0)), "QRV.Geom.Vector3d(1e+20, -0.25, 0.6666666666666666)"},
        {JournalText(UnitVector3d(Vector3d(0, 1, 0), true)), "QRV.Geom.UnitVector3d(0, 1, 0)"},
        {JournalText(Vector2d(1, 2)), "QRV.Geom.Vector2d(1, 2)"},
        {JournalText(plane), "QRV.Geom.Plane(QRV.Geom.Point3d(0, 0, 2), QRV.Geom.UnitVector3d(0, 0, 1))"},
        {JournalText(Point2d(1, 2)), R"({"objectName":"Point2d","x":1.0,"y":2.0})"},
        {JournalText(GroupInstancePath(1, 2)),
         R"({"ids":[{"History":1,"Object":2,"objectName":"ObjectHistoryID"}],"objectName":"GroupInstancePath"})"},
        {JournalText(std::vector<std::uint64_t>{1, 2, INVALID_ID}), "[1,2,4294967295]"},
    };
    for (const auto& [strGiven, strExpected] : aRows)
        EXPECT_EQ(strGiven, strExpected);
}
} // namespace QRV
