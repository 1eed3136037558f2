#include "replay/Replay.h"

#include <QRV/API.h>
#include <QRV/JSONConversion.h>

#include <algorithm>
#include <cctype>

namespace tools
{
namespace
{
constexpr std::size_t kMaxLine = std::size_t{256} << 20;

/// Reads up to the end of the line, which is not kept. False at the end of the stream.
bool ReadLine(std::istream& stream, std::string& strLine)
{
    strLine.clear();
    std::streambuf& buffer = *stream.rdbuf();
    for (int c = buffer.sbumpc(); c != '\n'; c = buffer.sbumpc())
    {
        if (c == std::char_traits<char>::eof())
            return !strLine.empty();
        if (strLine.size() == kMaxLine)
            throw ScriptError(kMaxLine, "the line is too long");
        strLine.push_back(static_cast<char>(c));
    }
    return true;
}

/// A parameter without the letters that tell its type: nGroupID is GroupID.
std::string_view GetPlainName(std::string_view strParameter)
{
    const auto itUpper =
        std::find_if(strParameter.begin(), strParameter.end(), [](unsigned char c) { return std::isupper(c) != 0; });
    return itUpper == strParameter.end()
               ? strParameter
               : strParameter.substr(static_cast<std::size_t>(itUpper - strParameter.begin()));
}

bool IsSameName(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}
} // namespace

std::optional<Refusal> Replay::Run(std::istream& stream, const Watch& watch)
{
    std::string strLine;
    try
    {
        for (++m_nLine; ReadLine(stream, strLine); ++m_nLine)
            if (!RunLine(strLine, watch))
                return std::nullopt;
        if (m_nPart == nPart::nHead || m_nPart == nPart::nOpen)
            throw ScriptError(1, "the journal ends before it begins");
    }
    catch (const ScriptError& error)
    {
        return Refusal{m_nLine, error.m_nColumn, error.what()};
    }
    return std::nullopt;
}

bool Replay::RunLine(std::string_view strLine, const Watch& watch)
{
    const Statement statement = ReadStatement(strLine, m_variables);
    Advance(statement);
    return statement.m_nKind != Statement::nKind::nCall || RunCall(statement, watch);
}

/// Takes a statement only where the journal has it.
void Replay::Advance(const Statement& statement)
{
    using nKind = Statement::nKind;
    const auto step = [&](nPart nFrom, nPart nTo)
    {
        if (m_nPart != nFrom)
            throw ScriptError(statement.m_nColumn, "not at this place of a journal");
        m_nPart = nTo;
    };
    switch (statement.m_nKind)
    {
    case nKind::nBlank:
        return;
    case nKind::nHead:
        return step(nPart::nHead, nPart::nOpen);
    case nKind::nOpen:
        return step(nPart::nOpen, nPart::nBody);
    case nKind::nTruth:
    case nKind::nCall:
        return step(nPart::nBody, nPart::nBody);
    case nKind::nReturn:
        return step(nPart::nBody, nPart::nClose);
    case nKind::nClose:
        return step(nPart::nClose, nPart::nEnd);
    }
}

bool Replay::RunCall(const Statement& statement, const Watch& watch)
{
    if (statement.m_strCall == "APIGetActiveHistory")
    {
        Assign(statement.m_strVariable, GetActiveHistory(statement));
        return true;
    }
    const std::vector<CallEntry>& aEntries = m_table.Find(statement.m_strCall);
    if (aEntries.empty())
        throw ScriptError(statement.m_nColumn, "no call that journals hold is named so");
    const std::size_t nArguments = aEntries.front().nArguments;
    if (statement.m_aArguments.size() != nArguments)
        throw ScriptError(statement.m_nColumn, "the line of this call has " + std::to_string(nArguments) +
                                                   " arguments and not " +
                                                   std::to_string(statement.m_aArguments.size()));
    if (m_isWanted && !std::all_of(aEntries.begin(), aEntries.end(),
                                   [&](const CallEntry& entry) { return m_isWanted(entry, statement.m_aArguments); }))
    {
        Assign(statement.m_strVariable, {});
        return true;
    }
    CallOutcome outcome = aEntries.front().pRun(statement.m_aArguments);
    // The line may be that of another question, which the name does not tell.
    for (std::size_t i = 1; i < aEntries.size() && outcome.result.GetErrorCode() == QRV::Result::nBadInput; ++i)
        outcome = aEntries[i].pRun(statement.m_aArguments);
    Assign(statement.m_strVariable, outcome);
    return watch({m_nLine, statement.m_strCall, aEntries.front().nKind, outcome});
}

/// The script asks for the History of its session; here it is a new one.
CallOutcome Replay::GetActiveHistory(const Statement& statement)
{
    if (!statement.m_aArguments.empty())
        throw ScriptError(statement.m_aArguments.front().nColumn, "this call has no arguments");
    std::uint64_t nHistory = m_mainHistory.value_or(QRV::INVALID_ID);
    if (m_mainHistory != QRV::INVALID_ID && QRV::APICreateHistory(nHistory, true).IsGood())
        m_mainHistory = nHistory;
    if (!m_strJournal.empty())
    {
        if (!QRV::APIEnableJournaling(nHistory, m_strJournal).IsGood())
            throw ScriptError(statement.m_nColumn, m_strJournal + " cannot be written");
        QRV::APIEnableJournalingTypes({"QRVReadOnly", "QRVJournalPick"}, true);
        m_strJournal.clear();
    }
    CallOutcome outcome;
    outcome.aResults.emplace_back("nHistoryID", QRV::ToJSON(nHistory));
    return outcome;
}

/// Gives a variable the result of its own name, or else the first. A call without results leaves it undefined.
void Replay::Assign(const std::string& strVariable, const CallOutcome& outcome)
{
    if (strVariable.empty())
        return;
    const auto& aResults = outcome.aResults;
    auto it = std::find_if(aResults.begin(), aResults.end(),
                           [&](const auto& named) { return IsSameName(GetPlainName(named.first), strVariable); });
    if (it == aResults.end())
        it = aResults.begin();
    m_variables[strVariable] = it == aResults.end() ? nlohmann::json() : it->second;
}
} // namespace tools
