/// One step of a History.
#pragma once

#include <QRV/Ids.h>

#include <vector>

namespace QRV
{
class History;

/// Knows which objects have a record for it; the states themselves stand in each object's ObjectHistory.
class Delta
{
public:
    std::uint64_t GetID() const { return m_nID; }
    std::uint64_t GetFlags() const { return m_nFlags; }
    void SetFlags(std::uint64_t nFlags) { m_nFlags = nFlags; }
    /// In the order in which they were first touched, each once.
    const std::vector<std::uint64_t>& GetObjectIDs() const { return m_aObjectIDs; }

private:
    friend class History;
    friend class ObjectHistory;

    std::vector<std::uint64_t> m_aObjectIDs;
    std::uint64_t m_nID = INVALID_ID; ///< given at commit, ascending, never used twice within a History
    std::uint64_t m_nFlags = 0;       ///< bits for the host
};
} // namespace QRV
