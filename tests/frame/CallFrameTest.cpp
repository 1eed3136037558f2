// What a host hears during a call, what it may do then, and what its throwing does.

#include "support/Deafen.h"
#include "support/TestModel.h"

#include <stdexcept>

namespace QRV
{
namespace
{
std::string ToText(std::uint64_t nID)
{
    return nID == INVALID_ID ? "-" : std::to_string(nID);
}

/// Writes down what the host hears; a script may run at each word.
class CallFrame : public testing::Test
{
protected:
    CallFrame()
    {
        APIRegisterProgressCallbacksReadOnly(
            [this](const std::string& strName) { Hear("start " + strName); },
            [this](float f) { Hear("progress " + std::to_string(int(f))); },
            [this](const Result& result) { Hear("end " + std::to_string(result.GetErrorCode())); }, 1.0f, 0.0f, 50.0f);
        APIRegisterModelChangedCallbackReadOnly(
            [this](const ModelChangeData& change)
            {
                const char* pWhere = change.historyID == m_model.GetID() ? "model"
                                     : change.historyID == INVALID_ID    ? "all"
                                                                         : "other";
                Hear(std::to_string(change.type) + ' ' + pWhere + ' ' + change.name + ' ' +
                     ToText(change.previousDelta) + ' ' + ToText(change.currentDelta));
            });
        m_model.Line({0, 0, 0}, {1, 0, 0});
        m_model.Line({1, 0, 0}, {1, 1, 0});
        m_aHeard.clear();
    }
    ~CallFrame() override { Deafen(); }

    void Hear(const std::string& strWord)
    {
        if (strWord.starts_with("progress") && m_strThrowAt != "progress")
            return; // once, at the end of the very first call
        m_aHeard.push_back(strWord);
        const auto atWord = std::exchange(m_atWord, nullptr);
        if (atWord && strWord.starts_with(m_strAtWord))
            atWord();
        else
            m_atWord = atWord;
        if (!m_strThrowAt.empty() && strWord.starts_with(m_strThrowAt))
            throw std::runtime_error("the host throws");
    }
    std::vector<std::string> GetHeard() { return std::exchange(m_aHeard, {}); }
    using Words = std::vector<std::string>;

    std::uint64_t GetID() const { return m_model.GetID(); }
    Result DrawMore() { return APIConnectPoint3ds(GetID(), {1, 1, 0}, {double(++m_nDrawn), 5, 0}); }

    TestModel m_model;
    Words m_aHeard;
    std::string m_strThrowAt;
    std::string m_strAtWord;
    std::function<void()> m_atWord;
    int m_nDrawn = 0;
};

TEST_F(CallFrame, TellsOfEveryStepWithinStartAndEnd)
{
    const auto expect = [&](const Result& result, unsigned nCode, const Words& aWords)
    {
        EXPECT_EQ(result.GetErrorCode(), nCode);
        EXPECT_EQ(GetHeard(), aWords);
    };
    expect(DrawMore(), 0, {"start APIConnectPoint3ds", "0 model APIConnectPoint3ds 2 3", "end 0"});
    expect(APIConnectPoint3ds(GetID(), {0, 0, 0}, {0, 0, 0}), 0, {"start APIConnectPoint3ds", "end 0"}); // no step
    expect(APIUndoHistory(GetID()), 0, {"start APIUndoHistory", "-1 model  3 2", "end 0"});
    expect(APIUndoHistoryToDelta(GetID(), INVALID_ID), 0, {"start APIUndoHistoryToDelta", "-1 model  2 -", "end 0"});
    expect(APIUndoHistory(GetID()), 0, {"start APIUndoHistory", "end 0"});
    expect(APIRedoHistory(GetID()), 0, {"start APIRedoHistory", "1 model  - 1", "end 0"});
    expect(APIRedoHistoryToDelta(GetID(), 3), 0, {"start APIRedoHistoryToDelta", "1 model  1 3", "end 0"});
    expect(APIRedoHistory(GetID()), 1, {"start APIRedoHistory", "end 1"});
    expect(APIMergeDeltas(GetID(), 1, 2), 0, {"start APIMergeDeltas", "6 model  1 2", "end 0"});
    expect(APIDeleteAllRedoHistory(GetID()), 0, {"start APIDeleteAllRedoHistory", "end 0"});
    expect(APIUndoHistory(GetID(), true), 0, {"start APIUndoHistory", "-1 model  3 2", "8 model  - -", "end 0"});
    expect(APIUndoHistory(GetID()), 0, {"start APIUndoHistory", "-1 model  2 -", "end 0"});
    expect(DrawMore(), 0, {"start APIConnectPoint3ds", "8 model  - -", "0 model APIConnectPoint3ds - 4", "end 0"});
    expect(APIUndoHistory(GetID() + 1000), 4, {"start APIUndoHistory", "end 4"});
    bool bAnswer = false;
    expect(APICanUndoHistoryReadOnly(GetID(), bAnswer), 0, {});
    std::vector<Point3d> aPoints;
    expect(APICreateRectangle(GetID(), {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, aPoints, true), 0, {});

    // A scratch model tells nothing but its end.
    std::uint64_t nScratch = INVALID_ID;
    std::uint64_t nVertex = INVALID_ID;
    expect(APICreateHistory(nScratch, false), 0, {"start APICreateHistory", "end 0"});
    expect(APICreateVertex(nScratch, {0, 0, 0}, nVertex), 0, {"start APICreateVertex", "end 0"});
    expect(APICreateHistory(nScratch, true), 0, {"start APICreateHistory", "5 other  - -", "end 0"});
    expect(APIChangeHistoryID(nScratch), 0, {"start APIChangeHistoryID", "end 0"});
    expect(APIDeleteHistory(nScratch), 0, {"start APIDeleteHistory", "5 other  - -", "end 0"});
}

TEST_F(CallFrame, RefusesChangesOfAHistoryThatIsBusy)
{
    std::uint64_t nOther = INVALID_ID;
    APICreateHistory(nOther, true);
    const auto callBack = [&]
    {
        std::uint64_t nID = GetID();
        std::vector<Point3d> aPoints;
        const Result aRefused[] = {
            APIConnectPoint3ds(nID, {0, 0, 0}, {9, 9, 9}),
            APICreateRectangle(nID, {0, 0, 0}, {9, 0, 0}, {9, 9, 0}, aPoints, false),
            APIUndoHistory(nID),
            APIMergeDeltas(nID),
            APIDeleteHistory(nID),
            APIChangeHistoryID(nID),
            APICreateHistory(nID, true),
            APIDeleteAllHistories(),
        };
        for (const Result& result : aRefused)
            EXPECT_EQ(result.GetErrorString(), "History " + std::to_string(GetID()) + " operation failed.");
        EXPECT_EQ(nID, GetID());
        bool bLive = false;
        ExpectGood(APIIsHistoryLiveReadOnly(nID, bLive));
        EXPECT_TRUE(bLive);
        std::uint64_t nVertex = INVALID_ID;
        ExpectGood(APICreateVertex(nOther, {1, 2, 3}, nVertex));
        ExpectGood(APIUndoHistory(nOther));
    };
    const std::pair<const char*, std::function<Result()>> aCalls[] = {
        {"0 model", [&] { return DrawMore(); }},
        {"-1 model", [&] { return APIUndoHistory(GetID()); }},
        {"8 model", [&] { return DrawMore(); }},
        {"6 model", [&] { return APIMergeDeltas(GetID(), 1, 2); }},
    };
    for (const auto& [pWord, call] : aCalls)
    {
        SCOPED_TRACE(pWord);
        m_strAtWord = pWord;
        m_atWord = callBack;
        ExpectGood(call());
        EXPECT_FALSE(m_atWord) << "never called back";
        EXPECT_FALSE(m_model.GetHistory().IsBusy());
        ExpectSound(m_model);
    }
    // The end of a History, announced, is not to be changed either. When the end hook runs, all is free.
    std::uint64_t nSame = GetID();
    m_strAtWord = "5 model";
    m_atWord = callBack;
    ExpectGood(APICreateHistory(nSame, true));
    EXPECT_FALSE(m_atWord);
    EXPECT_EQ(nSame, GetID());
    EXPECT_TRUE(m_model.GetDeltas().empty());
    m_strAtWord = "end";
    m_atWord = [&] { EXPECT_TRUE(DrawMore().IsGood()); };
    ExpectGood(APIUndoHistory(GetID()));
    EXPECT_EQ(m_model.GetActiveDelta(), 1u);
    m_strAtWord = "5 other";
    m_atWord = [&] { EXPECT_EQ(APIDeleteHistory(nOther).GetErrorCode(), Result::nHistoryOperationFailed); };
    ExpectGood(APIDeleteHistory(nOther));
    EXPECT_EQ(APIDeleteHistory(nOther).GetErrorCode(), Result::nBadHistoryID);
}

TEST_F(CallFrame, TurnsWhatTheHostThrowsIntoACode)
{
    const auto callThrowing = [&](const char* pWord, const std::function<Result()>& call)
    {
        m_strThrowAt = pWord;
        const Result result = call();
        m_strThrowAt.clear();
        EXPECT_FALSE(m_model.GetHistory().IsBusy());
        EXPECT_FALSE(m_model.GetHistory().HasOpenDelta());
        ExpectSound(m_model);
        return result.GetErrorCode();
    };
    const auto draw = [&] { return DrawMore(); };
    const auto undo = [&] { return APIUndoHistory(GetID()); };
    EXPECT_EQ(callThrowing("start", undo), Result::nCaughtException);
    EXPECT_EQ(m_model.GetActiveDelta(), 2u) << "the work is not done";
    EXPECT_EQ(callThrowing("end", draw), Result::nOK);
    // When told of a step: the step stands.
    EXPECT_EQ(callThrowing("0 model", draw), Result::nCaughtException);
    EXPECT_EQ(m_model.GetActiveDelta(), 4u);
    EXPECT_EQ(callThrowing("-1 model", undo), Result::nCaughtException);
    EXPECT_EQ(m_model.GetActiveDelta(), 3u);
    EXPECT_EQ(callThrowing("8 model", draw), Result::nCaughtException);
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2, 3})) << "the redo branch is gone, and nothing drawn";
    // When told of the end of a History: it lives on.
    EXPECT_EQ(callThrowing("5 model", [&] { return APIDeleteHistory(GetID()); }), Result::nCaughtException);
    std::uint64_t nSame = GetID();
    EXPECT_EQ(callThrowing("5 model", [&] { return APICreateHistory(nSame, true); }), Result::nCaughtException);
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2, 3}));
    EXPECT_TRUE(DrawMore().IsGood());
    ExpectUndoRedoRestores(m_model);
}

TEST_F(CallFrame, PushesTheBarToItsEndOnceThoughHooksThrow)
{
    Words aWords;
    APIRegisterProgressCallbacksReadOnly(
        {},
        [&](float f)
        {
            aWords.push_back("bar " + std::to_string(int(f)));
            throw 1;
        },
        [&](const Result&)
        {
            aWords.push_back("end");
            throw 2;
        },
        1.0f, 0.0f, 50.0f);
    EXPECT_TRUE(DrawMore().IsGood());
    EXPECT_TRUE(DrawMore().IsGood());
    EXPECT_EQ(aWords, (Words{"bar 50", "end", "end"}));
}

TEST_F(CallFrame, LetsACallbackRegisterOthersWhereverItIsCalled)
{
    int nHeard = 0;
    // What it holds must outlive its registration.
    const auto replaceAll = [&nHeard, strKept = std::string(100, 'x')](const auto&)
    {
        Deafen();
        nHeard += strKept == std::string(100, 'x');
    };
    const std::function<void()> aRegister[] = {
        [&] { APIRegisterProgressCallbacksReadOnly(replaceAll, {}, {}); },
        [&] { APIRegisterProgressCallbacksReadOnly({}, replaceAll, {}); },
        [&] { APIRegisterProgressCallbacksReadOnly({}, {}, replaceAll); },
        [&] { APIRegisterModelChangedCallbackReadOnly(replaceAll); },
    };
    for (const auto& registerOne : aRegister)
    {
        Deafen();
        registerOne();
        nHeard = 0;
        EXPECT_TRUE(DrawMore().IsGood());
        EXPECT_TRUE(DrawMore().IsGood());
        EXPECT_EQ(nHeard, 1);
    }
}

TEST_F(CallFrame, LooksForTheHistoryWhenTheStartHookHasRun)
{
    m_strAtWord = "start";
    m_atWord = [&] { EXPECT_TRUE(DrawMore().IsGood()); };
    EXPECT_TRUE(DrawMore().IsGood());
    EXPECT_EQ(m_model.GetDeltas(), (IDs{1, 2, 3, 4}));
    std::uint64_t nOther = INVALID_ID;
    const std::function<Result()> aCalls[] = {
        [&] { return APIConnectPoint3ds(nOther, Point3d(), Point3d(1, 1, 1)); },
        [&] { return APIUndoHistory(nOther); },
        [&] { return APIDeleteHistory(nOther); },
    };
    for (const auto& call : aCalls)
    {
        APICreateHistory(nOther, true);
        m_atWord = [&] { ExpectGood(APIDeleteHistory(nOther)); };
        EXPECT_EQ(call().GetErrorCode(), Result::nBadHistoryID);
        EXPECT_FALSE(m_atWord);
        nOther = INVALID_ID;
    }
}

TEST_F(CallFrame, KeepsTheHooksItHasWhenOthersCannotBeTaken)
{
    struct Uncopied
    {
        Uncopied() = default;
        Uncopied(const Uncopied& other) : pCopies(other.pCopies)
        {
            if (++*pCopies > 1)
                throw std::bad_alloc();
        }
        void operator()(const ModelChangeData&) const {}
        void operator()(const Result&) const {}
        int* pCopies = nullptr;
    };
    int nCopies = 0;
    Uncopied hook;
    hook.pCopies = &nCopies;
    EXPECT_EQ(APIRegisterModelChangedCallbackReadOnly(hook).GetErrorCode(), Result::nCaughtException);
    nCopies = 0;
    EXPECT_EQ(APIRegisterProgressCallbacksReadOnly({}, {}, hook).GetErrorCode(), Result::nCaughtException);
    EXPECT_TRUE(DrawMore().IsGood());
    EXPECT_EQ(GetHeard().size(), 3u);
    // The second registration wins wholly.
    ExpectGood(APIRegisterProgressCallbacksReadOnly([this](const std::string&) { Hear("start"); }, {}, {}));
    ExpectGood(APIRegisterModelChangedCallbackReadOnly({}));
    EXPECT_TRUE(DrawMore().IsGood());
    EXPECT_EQ(GetHeard(), Words{"start"});
}
} // namespace
} // namespace QRV
