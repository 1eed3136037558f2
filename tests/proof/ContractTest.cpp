// Every exported call with each argument bad in every way, the rest being good: what its frame promises must hold.

#include "proof/ProvingGround.h"
#include "proof/Session.h"
#include "support/Deafen.h"
#include "support/Journaled.h"

#include <gtest/gtest.h>

namespace QRV
{
namespace
{
using tools::nFamily;
using enum nHostile;

/// One place of an argument that is bad on purpose, in a call that would be good.
struct Attack
{
    std::uint64_t nSeed = 0;
    nHostile nHow = nNothing;
    std::size_t nPlace = 0;
    nObjectType nClass = nUnspecifiedType;
};

constexpr std::array kNotFinite{nNaN, nInfinite, nMinusInfinite};
constexpr std::array kWithoutObject{nUnknownID, nDeadID, nForeignID};
constexpr std::array kWithoutHistory{nUnknownHistory, nNoHistory};
constexpr std::array kNoHistory{nNoHistory};

bool IsOneOf(nHostile nHow, std::span<const nHostile> aWays)
{
    return std::find(aWays.begin(), aWays.end(), nHow) != aWays.end();
}

/// Bad arguments that are not refused.
struct Tolerance
{
    std::string_view strCall; ///< a part of its name
    std::string_view strParameter;
    std::span<const nHostile> aWays;
    const char* pReason;
};
const Tolerance kTolerances[] = {
    {"APICanUndoHistoryToDelta", "nDelta", kWithoutObject, "the answer is no"},
    {"APICanRedoHistoryToDelta", "nDelta", kWithoutObject, "the answer is no"},
    {"APICompareHistory", "aDeltaIDs", kWithoutObject, "they are steps of a copy, which may have others"},
    {"APIGetHistoryDeltas", "n", kWithoutObject, "there are no steps between"},
    {"APIIsObjectLive", "nObjectID", kWithoutObject, "the answer is no"},
    {"APIIsObjectLive", "nHistoryID", kNoHistory, "the answer is no"},
    {"APIIsHistoryLive", "nHistoryID", kWithoutHistory, "the answer is no"},
    {"APICreateHistory", "nHistoryID", kWithoutHistory, "an id that is wanted, or none"},
    {"APIEnableJournaling", "nHistoryID", kWithoutHistory, "a journal may be of no History"},
    {"APISetLevelsData", "data", kNotFinite, "pairs behind that of the last level are not looked at"},
    {"APISaveToFile", "extraObjects", kWithoutObject, "no format that is written looks at them"},
    {"APISaveToFile", "extraObjects", kWithoutHistory, "no format that is written looks at them"},
    {"APISaveToFile", "excludedObjects", kWithoutObject, "what does not live need not be left out"},
    {"APISaveToFile", "excludedObjects", kWithoutHistory, "what does not live need not be left out"},
    {"APIRegisterProgressCallbacks", "f", kNotFinite, "the host's own figures, which only go back to it"},
};

/// What a call did, as the host sees it.
struct Outcome
{
    Result result;
    std::string strJournal;
    std::vector<std::string> aHeard;
    std::string_view strWrittenResult;

    bool IsHeard(std::string_view strWord) const
    {
        return std::find(aHeard.begin(), aHeard.end(), strWord) != aHeard.end();
    }
};

bool HasWord(const std::string& strText, std::string_view strWord)
{
    const auto isLetter = [&](std::size_t n)
    { return n < strText.size() && std::isalpha(static_cast<unsigned char>(strText[n])); };
    for (std::size_t n = strText.find(strWord); n != std::string::npos; n = strText.find(strWord, n + 1))
        if (!isLetter(n - 1) && !isLetter(n + strWord.size()))
            return true;
    return false;
}

class Contract : public testing::TestWithParam<const CallKind*>
{
protected:
    Contract() { Ground().Restore(); }

    static ProvingGround& Ground()
    {
        static ProvingGround s_ground;
        return s_ground;
    }
    const CallKind& Kind() const { return *GetParam(); }

    bool Try(const Attack& attack);
    Outcome Make(PreparedCall& call) const;
    bool MustBeRefused(const Attack& attack, std::string_view strParameter) const;
    void CheckHeard(const Outcome& outcome) const;
    void CheckJournal(const std::string& strJournal) const;
    void CheckFailed(const Attack& attack, const Outcome& outcome, const ModelState& before,
                     const ModelState& after) const;
    void CheckDone(const Attack& attack, const Outcome& outcome, const ModelState& before,
                   const ModelState& after) const;
    void CheckStep(const ModelState& before, const ModelState& after) const;
};

Outcome Contract::Make(PreparedCall& call) const
{
    Outcome outcome;
    const auto hear = [&](std::string strWord) { outcome.aHeard.push_back(std::move(strWord)); };
    APIRegisterProgressCallbacksReadOnly([&](const std::string& strName) { hear("start " + strName); }, {},
                                         [&](const Result& result)
                                         { hear("end " + std::to_string(result.GetErrorCode())); });
    APIRegisterModelChangedCallbackReadOnly([&](const ModelChangeData& change) { hear("change " + change.name); });
    {
        Journaled journal(Ground().GetID());
        journal.ReadOn();
        APIEnableJournalingTypes({"QRVReadOnly", "QRVJournalPick"}, true);
        outcome.result = call.Run();
        outcome.strJournal = journal.ReadOn();
    }
    Deafen();
    outcome.strWrittenResult = call.FindWrittenResult();
    return outcome;
}

/// False if there is no such place to attack.
bool Contract::Try(const Attack& attack)
{
    ProvingGround& ground = Ground();
    ArgumentSource source = ground.GetSource(attack.nSeed);
    source.Attack(attack.nHow, attack.nPlace, attack.nClass);
    const std::unique_ptr<PreparedCall> call = Kind().prepare(source);
    if (source.GetAttacked().empty())
        return false;
    SCOPED_TRACE("seed " + std::to_string(attack.nSeed) + ", way " + std::to_string(int(attack.nHow)) + ", place " +
                 std::to_string(attack.nPlace) + " in " + std::string(source.GetAttacked()) + ", class " +
                 std::to_string(attack.nClass));
    const ModelState before = ground.Look();
    const Outcome outcome = Make(*call);
    SCOPED_TRACE("code " + std::to_string(outcome.result.GetErrorCode()));

    const ModelState after = ground.Look();
    if (MustBeRefused(attack, source.GetAttacked()))
    {
        EXPECT_FALSE(outcome.result.IsGood());
    }
    CheckJournal(outcome.strJournal);
    CheckHeard(outcome);
    if (outcome.result.IsGood())
        CheckDone(attack, outcome, before, after);
    else
        CheckFailed(attack, outcome, before, after);
    EXPECT_EQ(FindFaults(), "");
    ground.Restore();
    return true;
}

bool Contract::MustBeRefused(const Attack& attack, std::string_view strParameter) const
{
    const nObjectType nNamed = ArgumentSource::GetNamedClass(strParameter);
    const bool bOtherClass = attack.nHow == nOtherClass && nNamed != nUnspecifiedType && attack.nClass != nNamed;
    if (!bOtherClass && !IsOneOf(attack.nHow, kNotFinite) && !IsOneOf(attack.nHow, kWithoutObject) &&
        !IsOneOf(attack.nHow, kWithoutHistory))
        return false;
    return std::none_of(std::begin(kTolerances), std::end(kTolerances),
                        [&](const Tolerance& tolerance)
                        {
                            return Kind().strName.find(tolerance.strCall) != std::string_view::npos &&
                                   strParameter.find(tolerance.strParameter) != std::string_view::npos &&
                                   IsOneOf(attack.nHow, tolerance.aWays);
                        });
}

void Contract::CheckJournal(const std::string& strJournal) const
{
    if (Kind().aScriptNames.empty())
    {
        EXPECT_EQ(strJournal.find("QRV."), std::string::npos) << strJournal;
        return;
    }
    const bool bNamed =
        std::any_of(Kind().aScriptNames.begin(), Kind().aScriptNames.end(),
                    [&](std::string_view strName)
                    { return strJournal.find("QRV." + std::string(strName) + '(') != std::string::npos; });
    EXPECT_TRUE(bNamed && strJournal.ends_with(");\n")) << strJournal;
    const auto nLineEnds = std::count(strJournal.begin(), strJournal.end(), '\n');
    EXPECT_EQ(nLineEnds, strJournal.starts_with('\n') ? 2 : 1) << strJournal; // a new History begins a paragraph
}

void Contract::CheckHeard(const Outcome& outcome) const
{
    if (Kind().bTakesCallbacks)
        return;
    const std::string strStart = "start " + std::string(Kind().strName);
    const bool bTold = Kind().family == nFamily::nHistoryLevel || Kind().family == nFamily::nModifying ||
                       (Kind().family == nFamily::nBothWay && outcome.IsHeard(strStart));
    if (!bTold)
    {
        EXPECT_TRUE(outcome.aHeard.empty());
        return;
    }
    ASSERT_GE(outcome.aHeard.size(), 2u);
    EXPECT_EQ(outcome.aHeard.front(), strStart);
    EXPECT_EQ(outcome.aHeard.back(), "end " + std::to_string(outcome.result.GetErrorCode()));
}

void Contract::CheckFailed(const Attack& attack, const Outcome& outcome, const ModelState& before,
                           const ModelState& after) const
{
    EXPECT_EQ(outcome.strWrittenResult, "");
    ModelState expected = before;
    // A change that got under way has ended the redo branch.
    const bool bBegun =
        Kind().Changes() && !outcome.aHeard.empty() && outcome.result.GetErrorCode() != Result::nBadHistoryID;
    if (bBegun && attack.nHow != nOtherHistory)
        expected.strSteps = GetDone(before.strSteps) + "| ";
    if (attack.nHow == nOtherHistory)
        expected.strOtherSteps = after.strOtherSteps;
    EXPECT_TRUE(after == expected) << "not as before: steps " << after.strSteps << "\ninstead of " << expected.strSteps
                                   << (after.strModel == expected.strModel ? "" : "\nand the model differs");
}

void Contract::CheckDone(const Attack& attack, const Outcome& outcome, const ModelState& before,
                         const ModelState& after) const
{
    if (Kind().IsReadOnly())
    {
        EXPECT_TRUE(after == before) << "a query has changed something";
    }
    if (attack.nHow == nOtherHistory || Kind().family == nFamily::nHistoryLevel)
        return;
    EXPECT_EQ(after.aHistories, before.aHistories);
    EXPECT_EQ(after.strOtherSteps, before.strOtherSteps);
    EXPECT_FALSE(HasWord(after.strModel, "nan") || HasWord(after.strModel, "inf"));
    if (after.strModel != before.strModel || GetDone(after.strSteps) != GetDone(before.strSteps))
        CheckStep(before, after);
    else if (Kind().Changes() && !outcome.aHeard.empty())
    {
        EXPECT_EQ(after.strSteps, GetDone(before.strSteps) + "| ");
    }
}

/// One step more, which undo takes back and redo brings again.
void Contract::CheckStep(const ModelState& before, const ModelState& after) const
{
    const std::uint64_t nHistoryID = Ground().GetID();
    const std::string strNew = after.strSteps.substr(std::min(after.strSteps.size(), GetDone(before.strSteps).size()));
    EXPECT_TRUE(after.strSteps.starts_with(GetDone(before.strSteps))) << after.strSteps;
    EXPECT_TRUE(strNew.ends_with(":0 | ") && std::count(strNew.begin(), strNew.end(), ':') == 1) << after.strSteps;
    ExpectGood(APIUndoHistory(nHistoryID));
    EXPECT_EQ(FindFaults(), "");
    EXPECT_EQ(DumpObjects(nHistoryID), before.strModel);
    ExpectGood(APIRedoHistory(nHistoryID));
    EXPECT_EQ(DumpObjects(nHistoryID), after.strModel);
}

/// Gives `attempt` every attack on a call in turn. It gives false where there is no such place.
template <class Attempt>
void ForEachAttack(std::uint64_t nSeed, const RichModel& model, Attempt attempt)
{
    const auto goThrough = [&](nHostile nHow, nObjectType nClass)
    {
        for (std::size_t nPlace = 0; attempt(Attack{nSeed, nHow, nPlace, nClass}); ++nPlace)
            ;
    };
    for (int nHow = int(nNothing) + 1; nHow <= int(nOtherHistory); ++nHow)
        if (static_cast<nHostile>(nHow) != nOtherClass)
            goThrough(static_cast<nHostile>(nHow), nUnspecifiedType);
    for (const nObjectType nClass : model.GetClasses())
        goThrough(nOtherClass, nClass);
}

TEST_P(Contract, HoldsForBadArguments)
{
    const std::vector<std::uint64_t> aSeeds = Ground().FindGoodSeeds(Kind());
    EXPECT_FALSE(aSeeds.empty()) << "no arguments were found with which the call succeeds";
    for (const std::uint64_t nSeed : aSeeds)
        ForEachAttack(nSeed, Ground().GetModel(), [&](const Attack& attack) { return Try(attack) && !HasFailure(); });
}

TEST(ContractOfAll, IsTriedByManyAttacks)
{
    const ProvingGround ground;
    std::size_t nAll = 0;
    for (const CallKind& kind : GetCallKinds())
    {
        std::size_t nAttacks = 0;
        ForEachAttack(0, ground.GetModel(),
                      [&](const Attack& attack)
                      {
                          ArgumentSource source = ground.GetSource(attack.nSeed);
                          source.Attack(attack.nHow, attack.nPlace, attack.nClass);
                          kind.prepare(source);
                          return !source.GetAttacked().empty() && ++nAttacks != 0;
                      });
        EXPECT_GE(nAttacks, kind.TakesHistory() ? 3u : 0u) << kind.strName;
        nAll += nAttacks;
    }
    EXPECT_GE(nAll, 4000u);
    std::printf("contract: %zu bad arguments of %zu calls\n", nAll, GetCallKinds().size());
}

/// Where the library calls the host.
enum class nPoint
{
    nStart,
    nBar,
    nChange,
    nEnd
};

class HostileHost : public Contract
{
protected:
    struct Deed
    {
        const char* pName;
        std::function<void()> act;
    };

    /// Makes the call with a host that does the deed once, at the point.
    /// @return whether the call came to that point
    bool Serve(const Attack& attack, const Deed& deed, nPoint nWhen);
    std::unique_ptr<PreparedCall> Prepare(const Attack& attack) const;
    /// The first attack by which the call fails at its work.
    std::optional<Attack> FindFailing(std::uint64_t nSeed) const;
    void ReEnter();
    static void ExpectIdle();
};

std::unique_ptr<PreparedCall> HostileHost::Prepare(const Attack& attack) const
{
    ArgumentSource source = Ground().GetSource(attack.nSeed);
    source.Attack(attack.nHow, attack.nPlace);
    return Kind().prepare(source);
}

std::optional<Attack> HostileHost::FindFailing(std::uint64_t nSeed) const
{
    for (const nHostile nHow : {nUnknownID, nNaN, nEmpty, nHuge})
    {
        const Result result = Prepare({nSeed, nHow})->Run();
        Ground().Restore();
        if (!result.IsGood())
            return Attack{nSeed, nHow};
    }
    return std::nullopt;
}

void HostileHost::ReEnter()
{
    std::uint64_t nVertex = INVALID_ID;
    for (const std::uint64_t nHistoryID : {Ground().GetID(), Ground().GetOtherID()})
    {
        DumpObjects(nHistoryID);
        APICreateVertex(nHistoryID, {6, 6, 6}, nVertex);
        APIUndoHistory(nHistoryID);
        APIUndoHistory(nHistoryID);
        APIRedoHistory(nHistoryID);
        APIMergeDeltas(nHistoryID, 1, 3);
    }
    Prepare({3})->Run();
}

/// No History is kept busy, and each that lives takes changes.
void HostileHost::ExpectIdle()
{
    std::vector<std::uint64_t> aHistories;
    APIGetAllHistoriesReadOnly(aHistories, true);
    for (const std::uint64_t nHistoryID : aHistories)
    {
        std::uint64_t nVertex = INVALID_ID;
        ExpectGood(APICreateVertex(nHistoryID, {5, 6, 7}, nVertex));
        ExpectGood(APIUndoHistory(nHistoryID));
    }
}

bool HostileHost::Serve(const Attack& attack, const Deed& deed, nPoint nWhen)
{
    SCOPED_TRACE(std::string(deed.pName) + " at point " + std::to_string(int(nWhen)) + ", seed " +
                 std::to_string(attack.nSeed) + ", way " + std::to_string(int(attack.nHow)));
    const unsigned nUndisturbed = Prepare(attack)->Run().GetErrorCode();
    Ground().Restore();
    const std::unique_ptr<PreparedCall> call = Prepare(attack);
    const ModelState before = Ground().Look();
    bool bReached = false;
    const auto at = [&](nPoint nHere)
    {
        if (nHere == nWhen && !std::exchange(bReached, true))
            deed.act();
    };
    APIRegisterModelChangedCallbackReadOnly([&](const auto&) { at(nPoint::nChange); });
    APIRegisterProgressCallbacksReadOnly([&](const auto&) { at(nPoint::nStart); }, [&](float) { at(nPoint::nBar); },
                                         [&](const auto&) { at(nPoint::nEnd); });
    const unsigned nCode = call->Run().GetErrorCode();
    Deafen();
    EXPECT_EQ(FindFaults(), "");
    const bool bThrows = std::string_view(deed.pName) == "throws";
    if (bThrows && bReached)
    {
        const bool bCaught = nWhen == nPoint::nStart || nWhen == nPoint::nChange;
        EXPECT_EQ(nCode, bCaught ? Result::nCaughtException : nUndisturbed);
    }
    if (bThrows && bReached && nWhen == nPoint::nStart)
    {
        EXPECT_TRUE(Ground().Look() == before);
    }
    ExpectIdle();
    Ground().Restore();
    return bReached;
}

TEST_P(HostileHost, LeavesModelsSound)
{
    const std::vector<std::uint64_t> aSeeds = Ground().FindGoodSeeds(Kind());
    ASSERT_FALSE(aSeeds.empty());
    std::vector<Attack> aCalls{{aSeeds.front()}};
    if (const std::optional<Attack> failing = FindFailing(aSeeds.front()))
        aCalls.push_back(*failing);
    const Deed aDeeds[] = {
        {"throws", [] { throw std::runtime_error("the host throws"); }},
        {"calls back", [this] { ReEnter(); }},
        {"ends Histories",
         []
         {
             APIDeleteHistory(Ground().GetID());
             APIDeleteHistory(Ground().GetOtherID());
         }},
        {"registers others", Deafen},
    };
    for (const Attack& call : aCalls)
        for (const Deed& deed : aDeeds)
        {
            EXPECT_TRUE(Serve(call, deed, nPoint::nStart));
            EXPECT_TRUE(Serve(call, deed, nPoint::nBar));
            EXPECT_TRUE(Serve(call, deed, nPoint::nEnd));
            const bool bHeard = Serve(call, deed, nPoint::nChange);
            EXPECT_TRUE(bHeard || !Kind().Changes() || call.nHow != nNothing);
        }
}

INSTANTIATE_TEST_SUITE_P(Of, Contract, testing::ValuesIn(SelectKinds([](const CallKind&) { return true; })),
                         NameOfKind);
INSTANTIATE_TEST_SUITE_P(
    Of, HostileHost,
    testing::ValuesIn(SelectKinds([](const CallKind& kind)
                                  { return kind.Changes() || kind.family == nFamily::nHistoryLevel; })),
    NameOfKind);
} // namespace
} // namespace QRV
