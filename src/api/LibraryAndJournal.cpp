#include <QRV/API.h>

#include "frame/APICall.h"

#include <cmath>

namespace QRV
{
namespace
{
constexpr double kVersion = 0.23;
}

Result APIGetVersionReadOnly(std::uint64_t& nMajor, std::uint64_t& nMinor)
{
    return ReadOnlyCall("APIGetVersionReadOnly", NoHistory{}, OutCount{nMajor}, OutCount{nMinor})
        .Run(
            [&](Result&)
            {
                nMajor = static_cast<std::uint64_t>(std::floor(kVersion));
                nMinor = static_cast<std::uint64_t>((kVersion - std::floor(kVersion)) * 100.0 + 0.5);
            });
}

Result APIEnableJournaling(std::uint64_t nHistoryID, const std::string& strPath)
{
    return UnjournaledCall(NoHistory{})
        .Run(
            [&](Result&)
            {
                JournalingState& journal = HistoryRegistry::Get().GetJournal();
                journal.EnableTypes({kJournalChange}, true);
                // What the History holds already is not saved beside the journal: that waits for the writer of whole
                // histories. Until then a replay needs the History as it stood here.
                journal.Open(strPath, nHistoryID);
            });
}

Result APIEnableJournalingTypes(const std::vector<std::string>& aTypes, bool bKeep)
{
    return UnjournaledCall(NoHistory{})
        .Run([&](Result&) { HistoryRegistry::Get().GetJournal().EnableTypes(aTypes, bKeep); });
}

Result APIDisableJournaling()
{
    return UnjournaledCall(NoHistory{}).Run([](Result&) { HistoryRegistry::Get().GetJournal().Close(); });
}

Result APIIsJournalingReadOnly(bool& bJournaling)
{
    return UnjournaledCall(NoHistory{}, Out{bJournaling})
        .Run([&](Result&) { bJournaling = HistoryRegistry::Get().GetJournal().IsEnabled(); });
}

Result APIGetEnabledJournalingTypesReadOnly(std::set<std::string>& aTypes)
{
    return UnjournaledCall(NoHistory{})
        .Run([&](Result&) { aTypes = HistoryRegistry::Get().GetJournal().GetEnabledTypes(); });
}
} // namespace QRV
