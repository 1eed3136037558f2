/// Writes one exported call as one line of the journal.
#pragma once

#include "frame/CallArguments.h"
#include "history/HistoryRegistry.h"
#include "journal/JournalFile.h"
#include "journal/JournalText.h"

namespace QRV
{
/// What a journal line says besides the arguments.
struct JournalHead
{
    nJournalCallKind nKind = nJournalCallKind::nOneHistory;
    const char* pName = nullptr; ///< without the namespace
    const char* pType = nullptr; ///< of the line: "QRV", "QRVReadOnly" or "QRVJournalPick"
    std::uint64_t nFirstHistory = INVALID_ID;
    std::uint64_t nSecondHistory = INVALID_ID;
};

/// Writes up to the history arguments.
/// @return true when an argument has been written
bool WriteJournalHead(JournalFile& file, const JournalHead& head);

template <class T>
void WriteJournalArgument(JournalFile& file, bool& bWritten, const T& argument)
{
    if constexpr (!ResultArgument<T>)
    {
        if (bWritten)
            file.Write(", ");
        bWritten = true;
        file.Write(JournalText(argument));
    }
}

/// Writes the call, when its type is enabled, and flushes. Nothing that goes wrong here is of concern to the call:
/// a line that breaks off stays so.
template <class... Arguments>
void WriteJournalCall(const JournalHead& head, const Arguments&... arguments) noexcept
{
    try
    {
        const JournalingState& journal = HistoryRegistry::Get().GetJournal();
        if (!journal.IsEnabledFor(head.pType))
            return;
        JournalFile& file = *journal.GetFile();
        [[maybe_unused]] bool bWritten = WriteJournalHead(file, head);
        (WriteJournalArgument(file, bWritten, arguments), ...);
        file.Write(");\n");
        file.Flush();
    }
    catch (...)
    {
    }
}
} // namespace QRV
