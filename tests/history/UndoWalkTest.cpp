// Steps forth and back at random, against a plain list of what the model was at each step.

#include "support/DressedModel.h"

#include <map>

namespace QRV
{
namespace
{
/// What a model is at one step.
struct Sight
{
    std::string strModel;
    std::map<std::uint64_t, const Object*> mapAddresses;

    bool operator==(const Sight&) const = default;
};

class Walk
{
public:
    explicit Walk(unsigned nSeed) : m_user(nSeed) {}

    void Run(int nSteps)
    {
        for (int n = 0; n < nSteps && !testing::Test::HasFailure(); ++n)
        {
            SCOPED_TRACE(n);
            const std::function<void()> aMoves[] = {
                [&] { Undo(false); },
                [&] { Undo(false); },
                [&] { Redo(); },
                [&] { Jump(); },
                [&] { Pick(3) ? Jump() : Merge(); },
                [&] { Pick(3) ? Redo() : Undo(true); },
                [&] { Pick(3) ? Redo() : DeleteRedo(); },
                [&] { Pick(4) ? Undo(false) : UndoAwayFrom(); },
            };
            const std::uint64_t nMove = Pick(16);
            nMove < std::size(aMoves) ? aMoves[nMove]() : Draw();
            ExpectAsNoted();
        }
        ExpectUndoRedoRestores(m_model);
    }

private:
    static constexpr std::size_t kNothing = 0; ///< place of the state before the first step

    std::uint64_t Pick(std::uint64_t n) { return m_user.Pick(n); }
    std::uint64_t GetID() const { return m_model.GetID(); }
    std::uint64_t GetDeltaID(std::size_t nPlace) const { return m_aNotes[nPlace].first; }
    std::size_t PickPlace() { return Pick(m_aNotes.size()); }

    Sight Look() const
    {
        Sight sight{m_model.Describe(), {}};
        const History& history = m_model.GetHistory();
        for (std::uint64_t nID = 0; nID < history.GetObjectTable().Size(); ++nID)
            if (const Object* pObject = history.GetObject(nID))
                sight.mapAddresses.emplace(nID, pObject);
        return sight;
    }

    void ExpectAsNoted()
    {
        ExpectSound(m_model);
        EXPECT_TRUE(Look() == m_aNotes[m_nActive].second) << m_model.Describe();
        std::vector<std::uint64_t> aExpected;
        for (std::size_t n = 1; n < m_aNotes.size(); ++n)
            aExpected.push_back(GetDeltaID(n));
        EXPECT_EQ(m_model.GetDeltas(), aExpected);
        EXPECT_EQ(m_model.GetActiveDelta(), GetDeltaID(m_nActive));
        bool bCanUndo = false;
        bool bCanRedo = false;
        ExpectGood(APICanUndoHistoryReadOnly(GetID(), bCanUndo));
        ExpectGood(APICanRedoHistoryReadOnly(GetID(), bCanRedo));
        EXPECT_EQ(bCanUndo, m_nActive > kNothing);
        EXPECT_EQ(bCanRedo, m_nActive + 1 < m_aNotes.size());
    }

    void Draw()
    {
        const Sight before = Look();
        EXPECT_NE(m_user.Draw(GetID()).GetErrorCode(), Result::nCaughtException);
        m_aNotes.resize(m_nActive + 1); // whatever was drawn, or not
        const std::uint64_t nActive = m_model.GetActiveDelta();
        const Sight after = Look();
        if (nActive == GetDeltaID(m_nActive))
        {
            EXPECT_TRUE(after == before);
            return;
        }
        EXPECT_GT(nActive, m_nNewestDelta) << "a delta's id came twice";
        m_nNewestDelta = nActive;
        m_aNotes.emplace_back(nActive, after);
        ++m_nActive;
    }

    void Undo(bool bDeleteRedo)
    {
        ExpectGood(APIUndoHistory(GetID(), bDeleteRedo));
        if (m_nActive == kNothing)
            return;
        --m_nActive;
        if (bDeleteRedo)
            m_aNotes.resize(m_nActive + 1);
    }

    void Redo()
    {
        const bool bCan = m_nActive + 1 < m_aNotes.size();
        EXPECT_EQ(APIRedoHistory(GetID()).GetErrorCode(), bCan ? Result::nOK : Result::nFailure);
        m_nActive += bCan;
    }

    void Jump()
    {
        const std::size_t nPlace = PickPlace();
        const bool bDeleteRedo = Pick(8) == 0;
        ExpectGood(APIUndoOrRedoHistoryToDelta(GetID(), GetDeltaID(nPlace), bDeleteRedo));
        if (bDeleteRedo && nPlace < m_nActive) // on the way forth there is nothing to delete
            m_aNotes.resize(nPlace + 1);
        m_nActive = nPlace;
    }

    void DeleteRedo()
    {
        ExpectGood(APIDeleteAllRedoHistory(GetID(), Pick(2) == 0));
        m_aNotes.resize(m_nActive + 1);
    }

    void UndoAwayFrom()
    {
        const std::size_t nPlace = PickPlace();
        const bool bDeleteRedo = Pick(2) == 0;
        if (nPlace == kNothing || nPlace > m_nActive)
            return;
        ExpectGood(APIUndoHistory(GetID(), bDeleteRedo, GetDeltaID(nPlace)));
        const bool bWasActive = nPlace == m_nActive;
        m_nActive = nPlace - 1;
        if (bDeleteRedo)
            m_aNotes.resize(nPlace);
        else if (!bWasActive)
            m_aNotes.resize(nPlace + 1);
    }

    void Merge()
    {
        const std::size_t nFirst = PickPlace();
        const std::size_t nLast = PickPlace();
        if (nFirst == kNothing || nFirst >= nLast || nLast > m_nActive)
            return;
        ExpectGood(APIMergeDeltas(GetID(), GetDeltaID(nFirst), GetDeltaID(nLast), Pick(2) == 0));
        const IDs aIDs = m_model.GetDeltas();
        const bool bLeftNothing = std::find(aIDs.begin(), aIDs.end(), GetDeltaID(nLast)) == aIDs.end();
        EXPECT_TRUE(!bLeftNothing || m_aNotes[nLast].second == m_aNotes[nFirst - 1].second);
        const std::size_t nEnd = bLeftNothing ? nLast + 1 : nLast;
        m_aNotes.erase(m_aNotes.begin() + std::ptrdiff_t(nFirst), m_aNotes.begin() + std::ptrdiff_t(nEnd));
        m_nActive -= nEnd - nFirst;
    }

    RandomUser m_user;
    TestModel m_model;
    std::vector<std::pair<std::uint64_t, Sight>> m_aNotes{{INVALID_ID, {}}}; ///< delta id and what it led to
    std::size_t m_nActive = kNothing;
    std::uint64_t m_nNewestDelta = 0;
};
} // namespace

TEST(UndoWalk, FindsEveryStateAsItWasLeft)
{
    for (unsigned nSeed = 1; nSeed <= 40 && !testing::Test::HasFailure(); ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        Walk(nSeed).Run(120);
    }
}
} // namespace QRV
