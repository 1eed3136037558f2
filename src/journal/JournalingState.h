/// What the library knows about journaling.
#pragma once

#include <QRV/AnyConverters.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace QRV
{
class JournalFile;

/// Whether a journal is open, which kinds of call go into it, and the host's converters of values. The types and the
/// converters outlive the journals.
class JournalingState
{
public:
    /// A journal is open and not suspended.
    bool IsEnabled() const { return m_bEnabled && m_pJournalFile; }
    bool IsEnabledFor(const std::string& strType) const { return IsEnabled() && m_aEnabledTypes.contains(strType); }

    /// Opens a journal; one that is open already gets its tail afterwards.
    void Open(const std::string& strPath, std::uint64_t nMainHistoryID);
    /// Ends the journal. Harmless without one.
    void Close();
    /// Lowers or raises the flag and leaves the file open.
    void SetEnabled(bool bEnabled) { m_bEnabled = bEnabled; }
    /// Adds to the types that are written, or replaces them.
    void EnableTypes(const std::vector<std::string>& aTypes, bool bKeep);
    const std::set<std::string>& GetEnabledTypes() const { return m_aEnabledTypes; }
    /// Null when no journal is open.
    JournalFile* GetFile() const { return m_pJournalFile.get(); }

    std::vector<AnyToJSON> m_aAnyToJSON;
    std::vector<JSONToAny> m_aJSONToAny;

private:
    bool m_bEnabled = false;
    std::set<std::string> m_aEnabledTypes{"QRV"};
    std::string m_sJournalPath;
    std::shared_ptr<JournalFile> m_pJournalFile;
};
} // namespace QRV
