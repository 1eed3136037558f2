#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "geometry/Finite.h"
#include "model/Face.h"
#include "spatial/RayFire.h"

#include <QRV/API.h>

#include <algorithm>

namespace QRV
{
namespace
{
/// A length or parameter: finite, not negative; 1e30 stands for no limit.
bool IsExtent(double d)
{
    return d >= 0.0 && d <= 1e30;
}
} // namespace

Result APIRayFireReadOnly(std::uint64_t nHistoryID, const Line3d& ray, std::vector<std::uint64_t>& aIDs, double dTol,
                          bool bVertices, bool bEdges, bool bFaces, double dMax, std::vector<GroupInstancePath>* pPaths,
                          std::vector<Transf3d>* pTransforms, SortedHits* pSorted)
{
    const char* pJournalName = pSorted ? "APIRayFireSortedReadOnly" : "APIRayFireReadOnly";
    return ReadOnlyCall(CallName("APIRayFireReadOnly").JournaledAs(pJournalName).JournaledUnder(kJournalPick),
                        nHistoryID, ray, Append{aIDs}, dTol, bVertices, bEdges, bFaces, dMax)
        .Run(
            [&](History& history, Result& result)
            {
                const PickResults results{aIDs, pPaths, pTransforms, pSorted};
                if (!IsUsable(ray) || !ray.isValid() || !IsExtent(dTol) || !IsExtent(dMax) || !results.AreListsUsable())
                    return result.SetErrorCode(Result::nBadInput);
                RayFire(history, ray, dTol, dMax, {bVertices, bEdges, bFaces}, results);
            });
}

Result APIIntersectsNegativeSideOfPlanesReadOnly(std::uint64_t nHistoryID, const std::vector<Plane>& aPlanes,
                                                 std::vector<std::uint64_t>& aIDs, bool bVertices, bool bEdges,
                                                 bool bFaces, bool bWhole, double dTol, const Line3d* pLine,
                                                 std::vector<GroupInstancePath>* pPaths,
                                                 std::vector<Transf3d>* pTransforms, SortedHits* pSorted,
                                                 bool bInstances)
{
    return ReadOnlyCall(CallName("APIIntersectsNegativeSideOfPlanesReadOnly").JournaledUnder(kJournalPick), nHistoryID,
                        aPlanes, Append{aIDs}, bVertices, bEdges, bFaces, bWhole, dTol, pLine, bInstances)
        .Run(
            [&](History& history, Result& result)
            {
                const PickResults results{aIDs, pPaths, pTransforms, pSorted};
                const bool bPlanesUsable =
                    std::all_of(aPlanes.begin(), aPlanes.end(), [](const Plane& plane) { return IsUsable(plane); });
                if (!bPlanesUsable || !IsExtent(dTol) || (pLine && (!IsUsable(*pLine) || !pLine->isValid())) ||
                    !results.AreListsUsable())
                    return result.SetErrorCode(Result::nBadInput);
                const VolumeQuery query{aPlanes, {bVertices, bEdges, bFaces}, bWhole, dTol, pLine, bInstances};
                IntersectsNegativeSideOfPlanes(history, query, results);
            });
}

Result APIFaceContainsPointReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, const Point3d& point,
                                    bool& bContains)
{
    return ReadOnlyCall("APIFaceContainsPointReadOnly", nHistoryID, nFaceID, point, Out{bContains})
        .Run(
            [&](History& history, Result& result)
            {
                if (!IsUsable(point))
                    result.SetErrorCode(Result::nBadInput);
                else if (Face* pFace = FindArgument<Face>(history, nFaceID, result))
                    bContains = pFace->ContainsPoint(point, false);
            });
}
} // namespace QRV
