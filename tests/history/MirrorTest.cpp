// A host that keeps its own list of what lives, told by callbacks and change reports alone, agrees with the library.

#include "spatial/BoxTreeNode.h"
#include "support/DressedModel.h"

#include <algorithm>
#include <map>

namespace QRV
{
namespace
{
/// Of what has a box of its own; those of loops, shells and the like follow from what they list.
Interval3d GetBox(std::uint64_t nHistory, std::uint64_t nObject)
{
    Interval3d box;
    nObjectType nType = nUnspecifiedType;
    ExpectGood(APIGetObjectTypeReadOnly(nHistory, nObject, nType));
    if (nType == nLumpType || nType == nShellType || nType == nLoopType || nType == nCoedgeType)
        return box;
    ExpectGood(APIGetBoxReadOnly(nHistory, nObject, box, Transf3d()));
    return box;
}

/// The lasting models of the library as a host knows them that looks at nothing but what it is told of.
class Mirror
{
public:
    Mirror()
    {
        APIRegisterModelChangedCallbackReadOnly([this](const ModelChangeData& change) { Hear(change); });
    }
    ~Mirror() { APIRegisterModelChangedCallbackReadOnly(nullptr); }
    Mirror(const Mirror&) = delete;
    Mirror& operator=(const Mirror&) = delete;

    void ExpectAgrees(std::uint64_t nHistory) const
    {
        const auto it = m_mapModels.find(nHistory);
        const std::map<std::uint64_t, Interval3d> none;
        const std::map<std::uint64_t, Interval3d>& mapKnown = it == m_mapModels.end() ? none : it->second.mapBoxes;
        IDs aLive;
        ExpectGood(APIGetAllObjectsByTypeReadOnly(nHistory, nUnspecifiedType, aLive));
        IDs aKnown;
        for (const auto& [nID, box] : mapKnown)
        {
            aKnown.push_back(nID);
            const char* pName = "nothing";
            APIGetObjectNameReadOnly(nHistory, nID, pName);
            EXPECT_TRUE(IsSameBox(box, GetBox(nHistory, nID))) << "the box of " << pName << ' ' << nID;
        }
        EXPECT_EQ(aKnown, aLive);
    }
    std::size_t GetStepsHeard() const { return m_nStepsHeard; }
    std::size_t GetModelCount() const { return m_mapModels.size(); }

private:
    struct Report
    {
        IDs aCreated;
        IDs aChanged;
        IDs aDeleted;
    };

    struct Model
    {
        std::map<std::uint64_t, Interval3d> mapBoxes;
        std::uint64_t nActive = INVALID_ID;
        std::map<std::uint64_t, Report> mapReports; ///< of each delta, as it was done
    };

    void Hear(const ModelChangeData& change)
    {
        ++m_nStepsHeard;
        if (change.type == nModelHistoryDeleted)
            m_mapModels.erase(change.historyID);
        else if (change.type == nModelAllHistoriesDeleted)
            m_mapModels.clear();
        else if (Model& model = m_mapModels[change.historyID]; change.type == nModelDeltasMerged)
            HearOfMerge(change, model);
        else if (change.type == nModelRedoDeleted)
            model.mapReports.erase(GetBehind(model, model.nActive), model.mapReports.end());
        else
            HearOfStep(change, model);
    }

    static std::map<std::uint64_t, Report>::iterator GetBehind(Model& model, std::uint64_t nDelta)
    {
        return nDelta == INVALID_ID ? model.mapReports.begin() : model.mapReports.upper_bound(nDelta);
    }

    static bool Ask(std::uint64_t nHistory, std::uint64_t nFrom, std::uint64_t nTo, Report& report)
    {
        return APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(nHistory, nFrom, nTo, &report.aCreated,
                                                                  &report.aChanged, &report.aDeleted)
            .IsGood();
    }

    void HearOfStep(const ModelChangeData& change, Model& model)
    {
        std::set<std::uint64_t> touched;
        if (change.previousDelta != model.nActive)
            TakeBackUntold(change.previousDelta, model, touched);
        Report report;
        EXPECT_TRUE(Ask(change.historyID, change.previousDelta, change.currentDelta, report));
        Apply(report, model, touched);
        if (change.type == nModelCommitted)
        {
            Report next;
            ExpectGood(APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly(change.historyID, &next.aCreated,
                                                                           &next.aChanged, &next.aDeleted));
            EXPECT_EQ(next.aCreated, report.aCreated);
            EXPECT_EQ(next.aDeleted, report.aDeleted);
            model.mapReports[change.currentDelta] = report;
        }
        model.nActive = change.currentDelta;
        for (const std::uint64_t nID : touched)
            if (const auto it = model.mapBoxes.find(nID); it != model.mapBoxes.end())
                it->second = GetBox(change.historyID, nID);
    }

    /// A call that takes back many steps for good tells of the oldest only, when the others are gone.
    static void TakeBackUntold(std::uint64_t nDelta, Model& model, std::set<std::uint64_t>& touched)
    {
        const auto itLast = GetBehind(model, model.nActive);
        for (auto it = itLast; it != GetBehind(model, nDelta);)
        {
            --it;
            const Report& done = it->second;
            Apply({done.aDeleted, done.aChanged, done.aCreated}, model, touched);
        }
        model.mapReports.erase(GetBehind(model, nDelta), itLast);
    }

    static void Apply(const Report& report, Model& model, std::set<std::uint64_t>& touched)
    {
        for (const std::uint64_t nID : report.aDeleted)
            EXPECT_EQ(model.mapBoxes.erase(nID), 1u) << nID << " is not known and deleted";
        for (const std::uint64_t nID : report.aChanged)
            EXPECT_TRUE(model.mapBoxes.contains(nID)) << nID << " is not known and changed";
        for (const std::uint64_t nID : report.aCreated)
            EXPECT_TRUE(model.mapBoxes.emplace(nID, Interval3d()).second) << nID << " is known and created";
        touched.insert(report.aChanged.begin(), report.aChanged.end());
        touched.insert(report.aCreated.begin(), report.aCreated.end());
    }

    void HearOfMerge(const ModelChangeData& change, Model& model)
    {
        const auto itFirst = model.mapReports.find(change.previousDelta);
        ASSERT_NE(itFirst, model.mapReports.end());
        const std::uint64_t nBefore = itFirst == model.mapReports.begin() ? INVALID_ID : std::prev(itFirst)->first;
        model.mapReports.erase(itFirst, GetBehind(model, change.currentDelta));
        Report merged;
        if (Ask(change.historyID, nBefore, change.currentDelta, merged))
            model.mapReports[change.currentDelta] = merged;
        else if (model.nActive == change.currentDelta) // nothing was left of the run
            model.nActive = nBefore;
    }

    std::map<std::uint64_t, Model> m_mapModels;
    std::size_t m_nStepsHeard = 0;
};

/// Calls at random on a lasting model, with one of a scratch model in between.
class Session
{
public:
    explicit Session(unsigned nSeed) : m_user(nSeed)
    {
        APICreateHistory(m_nLasting, true);
        APICreateHistory(m_nScratch, false);
    }
    ~Session()
    {
        APIDeleteHistory(m_nLasting);
        APIDeleteHistory(m_nScratch);
    }

    void Run(int nSteps)
    {
        for (int n = 0; n < nSteps && !testing::Test::HasFailure(); ++n)
        {
            SCOPED_TRACE("step " + std::to_string(n));
            Call();
            m_mirror.ExpectAgrees(m_nLasting);
            if (Pick(2) == 0)
                continue;
            m_user.Dress(m_nLasting);
            m_mirror.ExpectAgrees(m_nLasting);
        }
        EXPECT_LE(m_mirror.GetModelCount(), 1u) << "a scratch model is heard of";
        m_nHeard = m_mirror.GetStepsHeard();
    }
    std::size_t GetStepsHeard() const { return m_nHeard; }

private:
    std::uint64_t Pick(std::uint64_t n) { return m_user.Pick(n); }
    std::uint64_t PickDelta()
    {
        IDs aDeltas{INVALID_ID};
        APIGetAllHistoryDeltasReadOnly(m_nLasting, aDeltas);
        return aDeltas[Pick(aDeltas.size())];
    }

    void Call()
    {
        const std::function<void()> aCalls[] = {
            [&] { APIUndoHistory(m_nLasting); },
            [&] { APIUndoHistory(m_nLasting); },
            [&] { APIRedoHistory(m_nLasting); },
            [&] { APIUndoHistoryToDelta(m_nLasting, PickDelta()); },
            [&] { APIRedoHistoryToDelta(m_nLasting, PickDelta()); },
            [&] { APIUndoOrRedoHistoryToDelta(m_nLasting, PickDelta(), Pick(4) == 0); },
            [&] { APIUndoOrRedoHistoryToDelta(m_nLasting, PickDelta(), Pick(4) == 0); },
            [&] { APIUndoHistory(m_nLasting, Pick(2) == 0, PickDelta()); },
            [&] { APIDeleteAllRedoHistory(m_nLasting, Pick(2) == 0); },
            [&] { Merge(); },
            [&] { m_user.Draw(m_nScratch); },
            [&] { Pick(4) ? void() : DrawBox(m_nLasting); },
            [&] { Pick(8) ? void() : ReplaceLasting(); },
        };
        const std::uint64_t nCall = Pick(24);
        nCall < std::size(aCalls) ? aCalls[nCall]() : void(m_user.Draw(m_nLasting));
    }

    void ReplaceLasting() { APICreateHistory(m_nLasting, true); }
    void Merge()
    {
        const std::uint64_t nFrom = PickDelta();
        APIMergeDeltas(m_nLasting, nFrom, PickDelta(), Pick(2) == 0);
    }

    static void DrawBox(std::uint64_t nHistory)
    {
        for (const auto& [a, b] : GetBoxEdges(GetFrames().front(), {0, 0, 0}, {1, 1, 1}))
            APIConnectPoint3ds(nHistory, a, b);
    }

    RandomUser m_user;
    Mirror m_mirror;
    std::uint64_t m_nLasting = INVALID_ID;
    std::uint64_t m_nScratch = INVALID_ID;
    std::size_t m_nHeard = 0;
};
} // namespace

TEST(Mirror, AgreesWithTheModelAfterEveryStepOfAThousandSessions)
{
    std::size_t nHeard = 0;
    for (unsigned nSeed = 1; nSeed <= 1000 && !testing::Test::HasFailure(); ++nSeed)
    {
        SCOPED_TRACE("seed " + std::to_string(nSeed));
        Session session(nSeed);
        session.Run(12);
        nHeard += session.GetStepsHeard();
    }
    EXPECT_GT(nHeard, 5000u) << "little has happened";
}
} // namespace QRV
