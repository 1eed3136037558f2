#include "history/ReusableIDs.h"

namespace QRV
{
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
