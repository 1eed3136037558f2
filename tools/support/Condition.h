/// What a journal is watched for: the text that both tools take for it, and how a run ends.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tools
{
struct Condition
{
    enum class nKind
    {
        nAudit, ///< the audit of any History has findings
        nCode,  ///< a call comes out with this error code
        nCrash, ///< the process dies
        nTime   ///< a call takes longer than this
    };

    nKind m_nKind = nKind::nAudit;
    std::uint64_t m_nCode = 0;
    double m_dSeconds = 0.0;
};

/// From "audit", "code:N", "crash" or "time:S"; none from anything else.
std::optional<Condition> ReadCondition(const std::string& strText);

/// How the program that replays ends. Anything else is a crash, but for what the command line itself got wrong: that
/// ends with `nBadCommand` or above.
enum nExitCode
{
    nReplayed = 0,
    nRefused = 2, ///< a line is none of a journal
    nUnreadable = 3,
    nConditionHeld = 4,
    nBadCommand = 100
};
} // namespace tools
