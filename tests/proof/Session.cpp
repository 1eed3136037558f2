#include "proof/Session.h"

#include "history/History.h"
#include "history/HistoryRegistry.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "replay/ModelReport.h"

#include <sstream>
#include <stdexcept>

namespace QRV
{
namespace
{
void Require(bool bHolds, const std::string& strWhat)
{
    if (!bHolds)
        throw std::runtime_error(strWhat);
}

void RequireSound(const std::string& strWhen)
{
    const std::string strFaults = FindFaults();
    Require(strFaults.empty(), strWhen + ": " + strFaults);
}

std::vector<std::uint64_t> GetLiveIDs(std::uint64_t nHistoryID, nObjectType nType = nUnspecifiedType)
{
    std::vector<std::uint64_t> aIDs;
    APIGetAllObjectsByTypeReadOnly(nHistoryID, nType, aIDs);
    std::sort(aIDs.begin(), aIDs.end());
    return aIDs;
}

/// Places that pick something, nothing and everything.
std::array<Interval3d, 4> GetLookedAt()
{
    return {Interval3d({-100, -100, -100}, {100, 100, 100}), Interval3d({0, 0, 0}, {1, 1, 0}),
            Interval3d({1, 1, 0}, {1, 1, 0}), Interval3d({1.5, 0.5, -1}, {9, 9, 0.5})};
}

/// Empty if the tree finds in each place what a look at all objects finds there.
template <class T>
std::string CompareWithScan(const BoxTree<T>& tree, const std::vector<std::uint64_t>& aIDs, const History& history,
                            const char* pClass)
{
    for (const Interval3d& place : GetLookedAt())
    {
        std::vector<T*> aInTree;
        tree.FindTouching(place, aInTree);
        std::vector<std::uint64_t> aFound;
        for (const T* pFound : aInTree)
            aFound.push_back(pFound->GetID());
        std::sort(aFound.begin(), aFound.end());
        std::vector<std::uint64_t> aScanned;
        for (const std::uint64_t nID : aIDs)
        {
            const Interval3d box = BoxOf<T>::Get(*history.Get<T>(nID));
            if (!box.isNull() && (box & place))
                aScanned.push_back(nID);
        }
        if (aFound != aScanned)
            return std::string("the tree of objects of class ") + pClass + " differs from a scan\n";
    }
    return {};
}

void DescribeFindings(std::uint64_t nHistoryID, std::string& strFaults)
{
    std::vector<Result> aFindings;
    const Result result = APICheckHistoryValidityReadOnly(nHistoryID, aFindings);
    if (!result.IsGood())
        strFaults += "the audit fails: " + result.GetErrorString() + '\n';
    for (const Result& finding : aFindings)
        strFaults += finding.GetErrorString() + '\n';
}
} // namespace

std::string DumpObjects(std::uint64_t nHistoryID)
{
    std::vector<std::uint64_t> aTop;
    APIGetAllNonOwnedReadOnly(nHistoryID, aTop);
    std::sort(aTop.begin(), aTop.end());
    std::string strAll;
    for (const std::uint64_t nID : aTop)
        strAll += tools::DumpObject(nHistoryID, nID);
    return strAll;
}

std::string FindFaults()
{
    std::string strFaults;
    std::vector<std::uint64_t> aHistories;
    APIGetAllHistoriesReadOnly(aHistories, true);
    for (const std::uint64_t nHistoryID : aHistories)
    {
        DescribeFindings(nHistoryID, strFaults);
        History& history = *HistoryRegistry::Get().GetHistory(nHistoryID);
        strFaults += CompareWithScan(history.GetVertexTree(), GetLiveIDs(nHistoryID, nVertexType), history, "Vertex");
        strFaults += CompareWithScan(history.GetEdgeTree(), GetLiveIDs(nHistoryID, nEdgeType), history, "Edge");
        strFaults += CompareWithScan(history.GetFaceTree(), GetLiveIDs(nHistoryID, nFaceType), history, "Face");
    }
    return strFaults;
}

std::string DescribeSteps(std::uint64_t nHistoryID)
{
    std::vector<std::uint64_t> aDeltas;
    APIGetAllHistoryDeltasReadOnly(nHistoryID, aDeltas);
    std::uint64_t nActive = INVALID_ID;
    APIGetIdOfActiveDeltaReadOnly(nHistoryID, nActive);
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << (nActive == INVALID_ID ? "| " : "");
    for (const std::uint64_t nDelta : aDeltas)
    {
        std::uint64_t nFlags = 0;
        APIGetDeltaFlagsReadOnly(nHistoryID, nDelta, nFlags);
        text << nDelta << ':' << nFlags << (nDelta == nActive ? " | " : " ");
    }
    return text.str();
}

void Session::Make(const CallKind& kind, std::uint64_t nSeed)
{
    FollowHistory();
    RememberDead();
    std::vector<std::uint64_t> aDead;
    for (const std::uint64_t nID : m_everLive)
        if (bool bLive = false; APIIsObjectLiveReadOnly(m_nHistoryID, nID, bLive), !bLive)
            aDead.push_back(nID);
    ArgumentSource source({m_nHistoryID, std::move(aDead)}, nSeed);
    const std::unique_ptr<PreparedCall> call = kind.prepare(source);

    const std::string strBefore = std::move(m_strModel);
    const std::string strStepsBefore = DescribeSteps(m_nHistoryID);
    // The journal shows the queries of the session, not those of the checks.
    APIEnableJournalingTypes({"QRVReadOnly", "QRVJournalPick"}, true);
    const Result result = call->Run();
    APIEnableJournalingTypes({"QRV"}, false);
    const std::string strCall = std::string(kind.strName) + " -> " + std::to_string(result.GetErrorCode());
    RequireSound("after " + strCall);
    bool bLive = false;
    APIIsHistoryLiveReadOnly(m_nHistoryID, bLive);
    if (!bLive)
        return;
    m_strModel = DumpObjects(m_nHistoryID);
    const bool bMayChange = kind.family != tools::nFamily::nReadOnly && kind.family != tools::nFamily::nUnjournaled;
    Require(m_strModel == strBefore || (bMayChange && result.IsGood()), strCall + " changed the model");
    if (m_strModel != strBefore && kind.Changes())
    {
        Require(DescribeSteps(m_nHistoryID) != strStepsBefore, strCall + " changed the model without a step");
        CheckUndoAndRedo();
    }
}

/// The call may have ended the History, or named it anew.
void Session::FollowHistory()
{
    std::vector<std::uint64_t> aHistories;
    APIGetAllHistoriesReadOnly(aHistories, true);
    if (std::find(aHistories.begin(), aHistories.end(), m_nHistoryID) != aHistories.end())
        return;
    m_everLive.clear();
    if (aHistories.empty())
        APICreateHistory(m_nHistoryID, true);
    else
        m_nHistoryID = aHistories.back();
    m_strModel = DumpObjects(m_nHistoryID);
}

void Session::RememberDead()
{
    const std::vector<std::uint64_t> aLive = GetLiveIDs(m_nHistoryID);
    m_everLive.insert(aLive.begin(), aLive.end());
}

void Session::CheckUndoAndRedo()
{
    const std::string strSteps = DescribeSteps(m_nHistoryID);
    Require(APIUndoHistory(m_nHistoryID).IsGood(), "undo fails");
    RequireSound("after undo");
    Require(APIRedoHistory(m_nHistoryID).IsGood(), "redo fails");
    RequireSound("after redo");
    Require(DumpObjects(m_nHistoryID) == m_strModel, "undo and redo give another model");
    Require(DescribeSteps(m_nHistoryID) == strSteps, "undo and redo give other steps");
}

void Session::UndoAndRedoAll()
{
    FollowHistory();
    while (APIRedoHistory(m_nHistoryID).IsGood())
        ;
    const std::string strLast = DumpObjects(m_nHistoryID);
    std::vector<std::string> aStates;
    bool bCan = false;
    while (APICanUndoHistoryReadOnly(m_nHistoryID, bCan).IsGood() && bCan)
        Require(APIUndoHistory(m_nHistoryID).IsGood(), "an undo on the way to nothing fails");
    Require(GetLiveIDs(m_nHistoryID).empty(), "objects are left when all is undone");
    RequireSound("when all is undone");
    while (APICanRedoHistoryReadOnly(m_nHistoryID, bCan).IsGood() && bCan)
        Require(APIRedoHistory(m_nHistoryID).IsGood(), "a redo on the way back fails");
    RequireSound("when all is redone");
    Require(DumpObjects(m_nHistoryID) == strLast, "undoing and redoing all gives another model");
}
} // namespace QRV
