#include "journal/JournalCall.h"

namespace QRV
{
namespace
{
void WriteAssignment(JournalFile& file, std::uint64_t nHistoryID)
{
    file.Write("\n");
    file.WriteIndent();
    if (const std::string strName = file.GetHistoryVariable(nHistoryID); !strName.empty())
        file.Write(strName);
    else
        file.Write("var " + file.CreateHistoryVariable(nHistoryID));
    file.Write(" = ");
}
} // namespace

bool WriteJournalHead(JournalFile& file, const JournalHead& head)
{
    // Before a variable for the new History is recorded: the call may name the same id as its wish.
    const std::string strFirst = file.GetHistoryText(head.nFirstHistory);
    if (head.nKind == nJournalCallKind::nNewHistory)
        WriteAssignment(file, head.nSecondHistory);
    else
        file.WriteIndent();

    file.Write("QRV.");
    file.Write(head.pName);
    file.Write("(");
    if (head.nKind == nJournalCallKind::nNoHistory)
        return false;
    file.Write(strFirst);
    if (head.nKind == nJournalCallKind::nTwoHistories)
    {
        file.Write(", ");
        file.Write(file.GetHistoryText(head.nSecondHistory));
    }
    return true;
}
} // namespace QRV
