/// The calls of the library by the names under which journals write them.
#pragma once

#include "interface/ExportedCall.h"
#include "replay/Script.h"

#include <QRV/Result.h>

#include <chrono>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace tools
{
/// What came of a call.
struct CallOutcome
{
    QRV::Result result;
    std::chrono::steady_clock::duration time{};                        ///< of the call alone
    std::vector<std::pair<std::string_view, nlohmann::json>> aResults; ///< the numbers and bools, by parameter
};

struct CallEntry
{
    std::string_view strFunction;
    nFamily nKind;
    std::size_t nArguments; ///< that its line has
    bool bTakesFile;        ///< reads or writes a file that an argument names
    CallOutcome (*pRun)(const std::vector<Argument>&);
};

class CallTable
{
public:
    CallTable();

    /// The call of that name first, then others whose lines bear it too: all of them are questions. Empty for a name
    /// that no journal has.
    const std::vector<CallEntry>& Find(std::string_view strScriptName) const;

private:
    std::map<std::string_view, std::vector<CallEntry>> m_aEntries;
};
} // namespace tools
