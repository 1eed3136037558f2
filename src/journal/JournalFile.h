/// The text file of one journal.
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <string_view>

namespace QRV
{
/// An open script: the constructor writes its head, the destructor its tail. A file that cannot be opened swallows all
/// that is written.
class JournalFile
{
public:
    JournalFile(const std::string& strPath, std::uint64_t nMainHistoryID);
    ~JournalFile();
    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    void Write(std::string_view strText);
    void WriteIndent();
    /// What was written reaches the file here.
    void Flush();

    /// Makes and records the next variable name for a History, in place of an earlier one. `INVALID_ID` gets none:
    /// from then on it would stand wherever no History is meant.
    std::string CreateHistoryVariable(std::uint64_t nHistoryID);
    /// Empty when none is recorded.
    std::string GetHistoryVariable(std::uint64_t nHistoryID) const;
    /// What stands for a History in an argument list.
    std::string GetHistoryText(std::uint64_t nHistoryID) const;

private:
    std::int32_t m_nIndent = 0;
    std::uint32_t m_nNextVariableNumber = 1;
    std::string m_strWaiting; ///< keeps its room from line to line
    std::filebuf m_file;      ///< without a stream around it, which would guard every write
    std::uint64_t m_nMainHistoryID;
    std::map<std::uint64_t, std::string> m_aHistoryVariableNames; ///< never shrinks: a deleted History keeps its name
};
} // namespace QRV
