#include "history/ReusableIDs.h"

namespace QRV
{
void ReusableIDs::PrepareToTake()
{
    if (m_aSpare.size() == m_aSpare.capacity())
        m_aSpare.reserve(2 * m_aSpare.size() + 4);
}

std::uint64_t ReusableIDs::TakeSmallest() noexcept
{
    m_aSpare.push_back(m_aIDs.extract(m_aIDs.begin()));
    return m_aSpare.back().value();
}

void ReusableIDs::PutBack(std::uint64_t nID) noexcept
{
    if (m_aSpare.empty())
        return;
    m_aSpare.back().value() = nID;
    m_aIDs.insert(std::move(m_aSpare.back()));
    m_aSpare.pop_back();
}
} // namespace QRV
