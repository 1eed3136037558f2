/// Freed object ids.
#pragma once

#include <QRV/Ids.h>

#include <set>
#include <vector>

namespace QRV
{
/// The ids that new objects take before the table grows, smallest first. What is taken out in a Delta can be put back
/// by its rollback without asking for memory.
class ReusableIDs
{
public:
    bool IsEmpty() const { return m_aIDs.empty(); }
    std::size_t GetCount() const { return m_aIDs.size(); }
    const std::set<std::uint64_t>& Get() const { return m_aIDs; }
    std::uint64_t GetSmallest() const { return *m_aIDs.begin(); }
    /// Takes in all of `aIDs`, which is left with those that were here already. Needs no memory.
    void Merge(std::set<std::uint64_t>& aIDs) noexcept { m_aIDs.merge(aIDs); }
    void Erase(std::uint64_t nID) noexcept { m_aIDs.erase(nID); }
    /// Makes room to take the smallest id; may throw.
    void PrepareToTake();
    /// Takes the smallest id, after PrepareToTake.
    std::uint64_t TakeSmallest() noexcept;
    /// Puts back an id taken in this Delta.
    void PutBack(std::uint64_t nID) noexcept;
    /// The Delta is over: what was taken is taken.
    void ForgetTaken() noexcept { m_aSpare.clear(); }

private:
    std::set<std::uint64_t> m_aIDs;
    std::vector<std::set<std::uint64_t>::node_type> m_aSpare;
};
} // namespace QRV
