#include "journal/JournalingState.h"

#include "journal/JournalFile.h"

namespace QRV
{
void JournalingState::Open(const std::string& strPath, std::uint64_t nMainHistoryID)
{
    m_bEnabled = true;
    m_sJournalPath = strPath;
    m_pJournalFile = std::make_shared<JournalFile>(strPath, nMainHistoryID);
}

void JournalingState::Close()
{
    m_bEnabled = false;
    m_sJournalPath.clear();
    m_pJournalFile.reset();
}

void JournalingState::EnableTypes(const std::vector<std::string>& aTypes, bool bKeep)
{
    std::set<std::string> aEnabled;
    if (bKeep)
        aEnabled = m_aEnabledTypes;
    aEnabled.insert(aTypes.begin(), aTypes.end());
    m_aEnabledTypes.swap(aEnabled);
}
} // namespace QRV
