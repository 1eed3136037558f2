/// The journal as the host sees it: the calls of a session as the text of one script function.
///
/// Nothing in the journal can fail a call. Starting and ending it, and choosing which kinds of call are written, are
/// exported calls of <QRV/API.h>.
#pragma once

#include <QRV/Export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QRV
{
/// A journal is open and not suspended.
QRV_API bool IsJournalingEnabled();
/// Enabled, and at least one of the types is among those that are written. The library's own types are "QRV" (calls
/// that change something), "QRVReadOnly" (queries) and "QRVJournalPick" (picking queries).
QRV_API bool IsJournalingEnabledForAnyType(const std::vector<std::string>& aTypes);

/// Puts the text into the journal, unchanged. Nothing without an open journal, as for the three below.
QRV_API void WriteToJournal(const std::string& strText);
/// Writes blanks up to the present indent of the script.
QRV_API void WriteIndentToJournal();
QRV_API void FlushJournaling();
/// Writes what stands for a History in the script: its variable, else "QRV.INVALID_ID", "mainHistID" for the History
/// that journaling was started with, or its number with the remark that it is unknown.
QRV_API void WriteActiveHistoryVariableName(std::uint64_t nHistoryID);

/// Makes a new script variable for a History and records it, in place of an earlier one.
/// @return its name, empty without an open journal; `INVALID_ID` gets none
QRV_API std::string CreateActiveHistoryVariableName(std::uint64_t nHistoryID);
/// The recorded variable of a History, or empty.
QRV_API std::string GetHistoryVariableName(std::uint64_t nHistoryID);

/// Keeps the calls within its scope out of the journal, for a host that runs one operation of its own through several
/// exported calls. Scopes nest, each restoring what it found.
class QRV_API QRVJournalingSuspend
{
public:
    /// Suspends journaling when that type is written; otherwise leaves it running.
    explicit QRVJournalingSuspend(const std::string& strType);
    ~QRVJournalingSuspend();

private:
    bool m_bWasEnabled;
};
} // namespace QRV
