// Sessions of calls chosen at random over the whole exported interface. Each runs in a process of its own, so that one
// that crashes is found and made shorter as any other that breaks a rule.

#include "proof/Isolated.h"
#include "proof/Session.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/state.h>

namespace QRV
{
namespace
{
/// What is known of a session before it runs: how long it is.
struct Planned
{
    int nSteps = 0;
};

/// The call is settled by the plan; what it is called with by the model that it meets, so that a session stays
/// meaningful when calls before it are left out.
class CallStep : public rc::state::Command<Planned, Session>
{
public:
    CallStep(const CallKind& kind, std::uint64_t nSeed) : m_kind(kind), m_nSeed(nSeed) {}

    void apply(Planned& planned) const override { ++planned.nSteps; }
    void run(const Planned&, Session& session) const override { session.Make(m_kind, m_nSeed); }
    void show(std::ostream& stream) const override { stream << m_kind.strName << " seed " << m_nSeed; }

private:
    const CallKind& m_kind;
    std::uint64_t m_nSeed;
};
using Steps = rc::state::Commands<rc::state::Command<Planned, Session>>;

/// Calls on a History that a replay can repeat: of those that change something, those that a journal shows.
bool IsPartOfSession(const CallKind& kind)
{
    if (kind.aScriptNames.empty() && !kind.IsReadOnly())
        return false;
    return kind.TakesHistory() || kind.strName == "APICreateHistory";
}

std::vector<const CallKind*> Select(const std::function<bool(const CallKind&)>& isWanted)
{
    std::vector<const CallKind*> aKinds;
    for (const CallKind& kind : GetCallKinds())
        if (IsPartOfSession(kind) && isWanted(kind))
            aKinds.push_back(&kind);
    return aKinds;
}

/// Mostly drawing, so that there is something to dress, to undo and to ask for.
rc::Gen<const CallKind*> ChooseKind()
{
    using tools::nFamily;
    static const auto s_aDrawing = Select([](const CallKind& kind) { return kind.Changes() && kind.bTakesPoints; });
    static const auto s_aOther = Select([](const CallKind& kind) { return kind.Changes() && !kind.bTakesPoints; });
    static const auto s_aSteps = Select([](const CallKind& kind) { return kind.family == nFamily::nHistoryLevel; });
    static const auto s_aAsking =
        Select([](const CallKind& kind) { return !kind.Changes() && kind.family != nFamily::nHistoryLevel; });
    return rc::gen::weightedOneOf<const CallKind*>({{50, rc::gen::elementOf(s_aDrawing)},
                                                    {25, rc::gen::elementOf(s_aOther)},
                                                    {12, rc::gen::elementOf(s_aSteps)},
                                                    {13, rc::gen::elementOf(s_aAsking)}});
}

rc::Gen<std::shared_ptr<const rc::state::Command<Planned, Session>>> ChooseStep(const Planned&)
{
    return rc::gen::map(rc::gen::pair(ChooseKind(), rc::gen::noShrink(rc::gen::arbitrary<std::uint64_t>())),
                        [](const std::pair<const CallKind*, std::uint64_t>& chosen)
                            -> std::shared_ptr<const rc::state::Command<Planned, Session>>
                        { return std::make_shared<CallStep>(*chosen.first, chosen.second); });
}

void RunSession(const Steps& steps, std::uint64_t nHistoryID)
{
    Session session(nHistoryID);
    rc::state::runAll(steps, Planned{}, session);
    session.UndoAndRedoAll();
}

/// As many sessions as the environment's RC_PARAMS says.
TEST(RandomHistories, StaySoundAndReplayAlike)
{
    constexpr int kMeanSteps = 40;
    EXPECT_TRUE(rc::check("every session keeps all rules",
                          []
                          {
                              const Steps steps =
                                  *rc::gen::resize(2 * kMeanSteps - 2, rc::state::gen::commands(Planned{}, ChooseStep));
                              const std::string strFault =
                                  RunIsolated([&](std::uint64_t nHistoryID) { RunSession(steps, nHistoryID); });
                              if (!strFault.empty())
                                  RC_FAIL(strFault);
                          }));
}
} // namespace
} // namespace QRV
