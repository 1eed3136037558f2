/// One step of a History.
#pragma once

#include <QRV/Ids.h>
#include <QRV/ObjectTypes.h>

#include <vector>

namespace QRV
{
class History;

/// Where the objects that came, changed or went are gathered; each list may be null.
struct ChangeLists
{
    std::vector<std::uint64_t>* pCreated = nullptr;
    std::vector<std::uint64_t>* pChanged = nullptr;
    std::vector<std::uint64_t>* pDeleted = nullptr;

    /// For a step taken back: what it made has gone, what it deleted has come.
    ChangeLists GetReversed() const { return {pDeleted, pChanged, pCreated}; }
};

/// Knows which objects have a record for it; the states themselves stand in each object's ObjectHistory.
class Delta
{
public:
    std::uint64_t GetID() const { return m_nID; }
    std::uint64_t GetFlags() const { return m_nFlags; }
    void SetFlags(std::uint64_t nFlags) { m_nFlags = nFlags; }
    /// In the order in which they were first touched, each once.
    const std::vector<std::uint64_t>& GetObjectIDs() const { return m_aObjectIDs; }
    /// Appends each object of the classes `aTypes` (empty: all) to the list of what this step did with it, in order.
    void Classify(const History& history, const ChangeLists& lists, const std::vector<nObjectType>& aTypes) const;

private:
    friend class History;
    friend class ObjectHistory;

    std::vector<std::uint64_t> m_aObjectIDs;
    std::uint64_t m_nID = INVALID_ID; ///< given at commit, ascending, never used twice within a History
    std::uint64_t m_nFlags = 0;       ///< bits for the host
};
} // namespace QRV
