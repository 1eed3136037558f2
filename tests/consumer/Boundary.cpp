/// What holds at the boundary of the installed library beyond the types of its calls.
#include <QRV/API.h>
#include <QRV/JSONConversion.h>

using namespace QRV;

namespace
{
using ID = std::uint64_t;
using IDs = std::vector<ID>;

/// The arguments that a host may leave out, left out.
bool TakesDefaults(ID nHistory)
{
    ID nID = 0;
    IDs aIDs;
    double dSize = 0;
    bool bMatch = false;
    APIGetAllHistoriesReadOnly(aIDs);
    APIGetIdOfActiveDeltaReadOnly(nHistory, nID);
    APIGetLastDeltaIDReadOnly(nHistory, nID);
    APIUndoHistory(nHistory);
    APIRedoHistory(nHistory);
    APIRegisterProgressCallbacksReadOnly({}, {}, {});
    APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly(nHistory, &aIDs, nullptr, nullptr);
    APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(nHistory, 0, nID, nullptr, &aIDs, nullptr);
    APIIsExactMatchReadOnly(nHistory, nHistory, bMatch);
    APIUndoOrRedoHistoryToDelta(nHistory, nID);
    APIDeleteAllRedoHistory(nHistory);
    APIMergeDeltas(nHistory);
    APIRayFireReadOnly(nHistory, Line3d(), aIDs, 0.0, true, true, true, 1.0);
    APIComputeAreaReadOnly(nHistory, nID, dSize);
    std::string sName;
    bool bFlag = false;
    APIGetLayerDataReadOnly(nHistory, nID, sName, bFlag);
    APISetObjectProperties(nHistory, nID, sName, bFlag);
    return !APIComputeVolumeReadOnly(nHistory, nID, dSize).IsGood();
}

/// An exception that the library's hidden code throws is known to its host by class.
bool CatchesLibraryException()
{
    Point3d point;
    try
    {
        FromJSON(nlohmann::json{{"place", "{"}}, "place", point, false);
    }
    catch (const nlohmann::json::parse_error&)
    {
        return true;
    }
    return false;
}
} // namespace

int main()
{
    ID nHistory = INVALID_ID;
    APICreateHistory(nHistory, true);
    return TakesDefaults(nHistory) && CatchesLibraryException() ? 0 : 1;
}
