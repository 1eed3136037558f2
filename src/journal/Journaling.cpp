#include <QRV/Journaling.h>

#include "history/HistoryRegistry.h"
#include "journal/JournalFile.h"

#include <algorithm>

namespace QRV
{
namespace
{
JournalingState& GetJournal()
{
    return HistoryRegistry::Get().GetJournal();
}
} // namespace

bool IsJournalingEnabled()
{
    return GetJournal().IsEnabled();
}

bool IsJournalingEnabledForAnyType(const std::vector<std::string>& aTypes)
{
    return std::any_of(aTypes.begin(), aTypes.end(),
                       [](const std::string& strType) { return GetJournal().IsEnabledFor(strType); });
}

void WriteToJournal(const std::string& strText)
{
    if (JournalFile* pFile = GetJournal().GetFile())
        pFile->Write(strText);
}

void WriteIndentToJournal()
{
    if (JournalFile* pFile = GetJournal().GetFile())
        pFile->WriteIndent();
}

void FlushJournaling()
{
    if (JournalFile* pFile = GetJournal().GetFile())
        pFile->Flush();
}

void WriteActiveHistoryVariableName(std::uint64_t nHistoryID)
{
    if (JournalFile* pFile = GetJournal().GetFile())
        pFile->Write(pFile->GetHistoryText(nHistoryID));
}

std::string CreateActiveHistoryVariableName(std::uint64_t nHistoryID)
{
    JournalFile* pFile = GetJournal().GetFile();
    return pFile ? pFile->CreateHistoryVariable(nHistoryID) : std::string();
}

std::string GetHistoryVariableName(std::uint64_t nHistoryID)
{
    const JournalFile* pFile = GetJournal().GetFile();
    return pFile ? pFile->GetHistoryVariable(nHistoryID) : std::string();
}

QRVJournalingSuspend::QRVJournalingSuspend(const std::string& strType) : m_bWasEnabled(IsJournalingEnabled())
{
    if (GetJournal().IsEnabledFor(strType))
        GetJournal().SetEnabled(false);
}

QRVJournalingSuspend::~QRVJournalingSuspend()
{
    GetJournal().SetEnabled(m_bWasEnabled);
}

void RegisterAnyToJSON(const AnyToJSON& converter)
{
    GetJournal().m_aAnyToJSON.push_back(converter);
}

void RegisterJSONToAny(const JSONToAny& converter)
{
    GetJournal().m_aJSONToAny.push_back(converter);
}

void ClearConverters()
{
    GetJournal().m_aAnyToJSON.clear();
    GetJournal().m_aJSONToAny.clear();
}
} // namespace QRV
