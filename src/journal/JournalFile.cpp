#include "journal/JournalFile.h"

#include <QRV/Ids.h>

#include <algorithm>
#include <locale>

namespace QRV
{
namespace
{
constexpr std::int32_t kIndentStep = 4;
}

JournalFile::JournalFile(const std::string& strPath, std::uint64_t nMainHistoryID) : m_nMainHistoryID(nMainHistoryID)
{
    m_file.pubimbue(std::locale::classic());
    m_file.open(strPath, std::ios::out | std::ios::trunc | std::ios::binary);
    Write("function runtest() \n{\n");
    m_nIndent += kIndentStep;
    WriteIndent();
    Write("var result = true; \n");
    WriteIndent();
    Write("var mainHistID = QRV.APIGetActiveHistory();\n");
    Flush();
}

JournalFile::~JournalFile()
{
    try
    {
        WriteIndent();
        Write("return result; \n");
        m_nIndent = std::max(m_nIndent - kIndentStep, 0);
        Write("}");
        Flush();
    }
    catch (...)
    {
        // No memory for the tail: the script breaks off before it.
    }
}

void JournalFile::Write(std::string_view strText)
{
    m_strWaiting.append(strText);
}

void JournalFile::WriteIndent()
{
    m_strWaiting.append(static_cast<std::size_t>(m_nIndent), ' ');
}

void JournalFile::Flush()
{
    m_file.sputn(m_strWaiting.data(), static_cast<std::streamsize>(m_strWaiting.size()));
    m_file.pubsync();
    m_strWaiting.clear();
}

std::string JournalFile::CreateHistoryVariable(std::uint64_t nHistoryID)
{
    if (nHistoryID == INVALID_ID)
        return {};
    std::string strName = "historyId_" + std::to_string(m_nNextVariableNumber);
    m_aHistoryVariableNames[nHistoryID] = strName;
    ++m_nNextVariableNumber;
    return strName;
}

std::string JournalFile::GetHistoryVariable(std::uint64_t nHistoryID) const
{
    const auto it = m_aHistoryVariableNames.find(nHistoryID);
    return it == m_aHistoryVariableNames.end() ? std::string() : it->second;
}

std::string JournalFile::GetHistoryText(std::uint64_t nHistoryID) const
{
    if (std::string strName = GetHistoryVariable(nHistoryID); !strName.empty())
        return strName;
    if (nHistoryID == INVALID_ID)
        return "QRV.INVALID_ID";
    if (nHistoryID == m_nMainHistoryID)
        return "mainHistID";
    return std::to_string(nHistoryID) + "/*Unknown History ID*/";
}
} // namespace QRV
