/// Runs the script of a journal.
#pragma once

#include "replay/CallTable.h"
#include "replay/Script.h"

#include <QRV/Ids.h>

#include <functional>
#include <istream>
#include <optional>
#include <string>

namespace tools
{
/// A call that was made.
struct ReplayedCall
{
    std::size_t nLine = 0;
    std::string_view strName; ///< in the script
    nFamily nKind = nFamily::nReadOnly;
    const CallOutcome& outcome;
};

/// Where and why a file is no journal.
struct Refusal
{
    std::size_t nLine = 0;
    std::size_t nColumn = 0;
    std::string strMessage;
};

/// The function `runtest` of a journal, line by line. What one line leaves behind is the models and the variables, so
/// that the length of the journal does not matter. A call that fails does not end it.
class Replay
{
public:
    /// Hears of each call once it was made; false ends the run.
    using Watch = std::function<bool(const ReplayedCall&)>;
    using Choice = std::function<bool(const CallEntry&, const std::vector<Argument>&)>;

    /// @param mainHistory  the id that the History of the session had, `INVALID_ID` for a session that had none; the
    ///                     library chooses where it is not given
    explicit Replay(std::optional<std::uint64_t> mainHistory) : m_mainHistory(mainHistory) {}

    /// Leaves out each call of which `isWanted` is false: it gives no result, and nobody hears of it.
    void MakeOnly(Choice isWanted) { m_isWanted = std::move(isWanted); }

    /// Has the calls written as a journal anew, from where the History of the session is made on.
    void WriteJournal(std::string strFile) { m_strJournal = std::move(strFile); }

    /// Runs up to the end, to the first line that is refused, or until `watch` ends it. A journal may break off
    /// between two lines, as that of a session that died does.
    std::optional<Refusal> Run(std::istream& stream, const Watch& watch);

private:
    /// How far into the function it is.
    enum class nPart
    {
        nHead,
        nOpen,
        nBody,
        nClose,
        nEnd
    };

    bool RunLine(std::string_view strLine, const Watch& watch);
    void Advance(const Statement& statement);
    bool RunCall(const Statement& statement, const Watch& watch);
    CallOutcome GetActiveHistory(const Statement& statement);
    void Assign(const std::string& strVariable, const CallOutcome& outcome);

    const CallTable m_table;
    Variables m_variables;
    std::optional<std::uint64_t> m_mainHistory;
    std::string m_strJournal;
    Choice m_isWanted;
    nPart m_nPart = nPart::nHead;
    std::size_t m_nLine = 0;
};
} // namespace tools
