/// A model to attack and another beside it, for call after call, each of which meets the same models.
#pragma once

#include "proof/Calls.h"
#include "proof/RichModel.h"

#include <optional>

namespace QRV
{
/// All that a failed call must leave as it was.
struct ModelState
{
    std::string strModel;
    std::string strSteps;
    std::string strNextIDs; ///< what new objects will get
    std::string strOtherSteps;
    std::vector<std::uint64_t> aHistories;

    bool operator==(const ModelState&) const = default;
};

/// Of a text of steps, what is done.
std::string GetDone(const std::string& strSteps);

/// Of one History alone.
ModelState Look(std::uint64_t nHistoryID);

std::vector<const CallKind*> SelectKinds(bool (*isWanted)(const CallKind&));
/// For tests of one kind each.
std::string NameOfKind(const testing::TestParamInfo<const CallKind*>& kind);

class ProvingGround
{
public:
    ProvingGround() { Rebuild(); }
    ~ProvingGround();

    const RichModel& GetModel() const { return *m_model; }
    std::uint64_t GetID() const { return m_model->GetID(); }
    std::uint64_t GetOtherID() const { return m_other->GetID(); }
    /// Plain arguments for a call on the model.
    ArgumentSource GetSource(std::uint64_t nSeed) const;
    ModelState Look() const;
    /// The model, with a step to redo, and the other one are there again, whatever a call has done.
    void Restore();
    void Rebuild();
    /// With these a call of the kind succeeds: the first changes something, if any does, the second, if there is one,
    /// does not. Empty if none was found that succeeds.
    std::vector<std::uint64_t> FindGoodSeeds(const CallKind& kind);

private:
    void Clear();

    std::optional<RichModel> m_model;
    std::optional<RichModel> m_other;
    std::uint64_t m_nForeignID = INVALID_ID;
    ModelState m_state; ///< of the models as they were built, but for undone steps
};
} // namespace QRV
