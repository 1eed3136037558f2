/// A model to attack.
#pragma once

#include "support/DressedModel.h"

namespace QRV
{
/// Something of every class of object, some of it dead, many steps and one that is undone. A class that is new belongs
/// in here too. Two such models have the same ids.
class RichModel : public DressedModel
{
public:
    RichModel();

    /// The objects that died in its making.
    const std::vector<std::uint64_t>& GetDeadIDs() const { return m_aDeadIDs; }
    /// The classes of its objects, ascending.
    std::vector<nObjectType> GetClasses() const;
    /// There is a step to redo; makes one if need be, without a change of the model.
    void EnsureRedo() const;

private:
    std::vector<std::uint64_t> m_aDeadIDs;
};
} // namespace QRV
