// Bytes as a journal: no line of it may crash the library or break a model. Calls that name files are left out, so that
// no input reaches beyond the process.
#include "Target.h"

#include "replay/ModelReport.h"
#include "replay/Replay.h"

#include <QRV/API.h>

#include <algorithm>
#include <sstream>

namespace
{
/// A circle may have a million sides, which takes long and shows nothing that thirty do not. One with more is refused.
bool MayHaveManySides(const tools::CallEntry& entry, const std::vector<tools::Argument>& aArguments)
{
    const auto isCostly = [](const tools::Argument& argument)
    {
        const double dSize = argument.value.is_number() ? argument.value.get<double>() : 1.0;
        return (dSize > 30.0 && dSize <= 1e6) || (dSize > 1e-12 && dSize < 0.01);
    };
    return entry.strFunction.starts_with("APICreateCircleOrArc") &&
           std::any_of(aArguments.begin(), aArguments.end(), isCostly);
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    std::istringstream stream(fuzz::ToText(pData, nSize));
    tools::Replay replay(std::nullopt);
    replay.MakeOnly([](const tools::CallEntry& entry, const std::vector<tools::Argument>& aArguments)
                    { return !entry.bTakesFile && !MayHaveManySides(entry, aArguments); });
    replay.Run(stream, [](const tools::ReplayedCall&) { return true; });
    for (const QRV::Result& finding : tools::AuditAll())
        fuzz::Fail("the audit finds: " + finding.GetErrorString());
    QRV::APIDeleteAllHistories();
    return 0;
}
