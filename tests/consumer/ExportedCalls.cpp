/// Hosts are compiled against these types: each exported call is taken by its address under its exact type, so that a
/// changed parameter fails to compile and a call that the library does not export fails to link.
#include <QRV/API.h>
#include <QRV/JSONConversion.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

using namespace QRV;

namespace
{
using ID = std::uint64_t;
using IDs = std::vector<ID>;
using Points = std::vector<Point3d>;
using Text = std::string;
using Bytes = std::vector<char>;
using Levels = std::vector<std::pair<std::string, double>>;
using Corners = std::array<Point3d, 4>;
using Pixels = std::array<std::uint64_t, 2>;
using AnyCall = void (*)();

template <class Type, Type* pCall>
AnyCall Linked()
{
    return reinterpret_cast<AnyCall>(pCall);
}

AnyCall g_aCalls[] = {
    Linked<Result(ID&, ID&), &APIGetVersionReadOnly>(),
    Linked<Result(ID, const std::string&), &APIEnableJournaling>(),
    Linked<Result(const std::vector<std::string>&, bool), &APIEnableJournalingTypes>(),
    Linked<Result(), &APIDisableJournaling>(),
    Linked<Result(bool&), &APIIsJournalingReadOnly>(),
    Linked<Result(std::set<std::string>&), &APIGetEnabledJournalingTypesReadOnly>(),
    Linked<Result(const std::function<void(const ModelChangeData&)>&), &APIRegisterModelChangedCallbackReadOnly>(),
    Linked<Result(const std::function<void(const std::string&)>&, const std::function<void(float)>&,
                  const std::function<void(const Result&)>&, float, float, float),
           &APIRegisterProgressCallbacksReadOnly>(),
    Linked<Result(ID&, bool), &APICreateHistory>(),
    Linked<Result(ID), &APIDeleteHistory>(),
    Linked<Result(), &APIDeleteAllHistories>(),
    Linked<Result(ID&), &APIChangeHistoryID>(),
    Linked<Result(ID, bool&), &APIIsHistoryLiveReadOnly>(),
    Linked<Result(ID, bool&), &APIIsHistoryNonTemporaryReadOnly>(),
    Linked<Result(IDs&, bool), &APIGetAllHistoriesReadOnly>(),
    Linked<Result(ID, bool, IDs&), &APIGetAllReachableHistoriesReadOnly>(),
    Linked<Result(ID, std::vector<ObjectHistoryID>&), &APIGetHistoryReferencingGroupsReadOnly>(),
    Linked<Result(ID, ID&, bool), &APIGetMemorySizeReadOnly>(),
    Linked<Result(ID, bool, ID), &APIUndoHistory>(),
    Linked<Result(ID, ID), &APIRedoHistory>(),
    Linked<Result(ID, ID), &APIUndoHistoryToDelta>(),
    Linked<Result(ID, ID), &APIRedoHistoryToDelta>(),
    Linked<Result(ID, ID, bool), &APIUndoOrRedoHistoryToDelta>(),
    Linked<Result(ID, bool&), &APICanUndoHistoryReadOnly>(),
    Linked<Result(ID, bool&), &APICanRedoHistoryReadOnly>(),
    Linked<Result(ID, ID, bool&), &APICanUndoHistoryToDeltaReadOnly>(),
    Linked<Result(ID, ID, bool&), &APICanRedoHistoryToDeltaReadOnly>(),
    Linked<Result(ID, bool), &APIDeleteAllRedoHistory>(),
    Linked<Result(ID, ID, ID, bool), &APIMergeDeltas>(),
    Linked<Result(ID, ID&, int), &APIGetIdOfActiveDeltaReadOnly>(),
    Linked<Result(ID, ID&, ID), &APIGetLastDeltaIDReadOnly>(),
    Linked<Result(ID, IDs&), &APIGetAllHistoryDeltasReadOnly>(),
    Linked<Result(ID, ID, ID, IDs&), &APIGetHistoryDeltasReadOnly>(),
    Linked<Result(ID, ID, ID&), &APIGetDeltaFlagsReadOnly>(),
    Linked<Result(ID, ID, ID), &APISetDeltaFlags>(),
    Linked<Result(ID, ID, ID, bool), &APISetAllDeltaFlags>(),
    Linked<Result(ID, IDs*, IDs*, IDs*, nObjectType, bool), &APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly>(),
    Linked<Result(ID, ID, ID, IDs*, IDs*, IDs*, const std::vector<nObjectType>&),
           &APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly>(),
    Linked<Result(ID, ID, const IDs&, nHistoryComparison&), &APICompareHistoryReadOnly>(),
    Linked<Result(ID, ID, bool&, ID, ID), &APIIsExactMatchReadOnly>(),
    Linked<Result(ID, ID, std::string&), &APIDebugObjectReadOnly>(),
    Linked<Result(ID, ID, std::vector<Result>&), &APICheckValidityReadOnly>(),
    Linked<Result(ID, std::vector<Result>&), &APICheckHistoryValidityReadOnly>(),
    Linked<Result(ID, ID, nObjectType&), &APIGetObjectTypeReadOnly>(),
    Linked<Result(ID, ID, bool&), &APIIsObjectLiveReadOnly>(),
    Linked<Result(ID, ID, nObjectType, IDs&, bool), &APIGetObjectsByTypeReadOnly>(),
    Linked<Result(ID, nObjectType, IDs&), &APIGetAllObjectsByTypeReadOnly>(),
    Linked<Result(ID, IDs&), &APIGetAllNonOwnedReadOnly>(),
    Linked<Result(ID, ID, bool&), &APIIsNonOwnedReadOnly>(),
    Linked<Result(ID, ID, IDs&), &APIGetAllConnectedNonOwnedReadOnly>(),
    Linked<Result(ID, ID, IDs&), &APIGetTopLevelOwnersReadOnly>(),
    Linked<Result(ID, ID, nObjectType, IDs&), &APIGetObjectAttributesReadOnly>(),
    Linked<Result(ID, ID, const char*&), &APIGetObjectNameReadOnly>(),
    Linked<Result(ID, ID, Interval3d&, const Transf3d&), &APIGetBoxReadOnly>(),
    Linked<Result(ID, ID, IDs&), &APIGetBodyFacesReadOnly>(),
    Linked<Result(ID, ID, IDs&), &APIGetBodyEdgesReadOnly>(),
    Linked<Result(ID, ID, IDs&, bool), &APIGetConnectedEdgesReadOnly>(),
    Linked<Result(ID, ID, bool&), &APIGetCoedgeDirectionReadOnly>(),
    Linked<Result(ID, ID, nConvexity&), &APIGetConvexityReadOnly>(),
    Linked<Result(ID, ID, ID, IDs&), &APIGetConvexityConnectedComponentReadOnly>(),
    Linked<Result(ID, ID, nEdgeFaceClass&), &APIGetEdgeFaceClassificationReadOnly>(),
    Linked<Result(ID, ID, bool&), &APIGetEdgeOrVertexMarkedSmoothReadOnly>(),
    Linked<Result(ID, ID, Point3d&, Point3d&), &APIGetEdgePointsReadOnly>(),
    Linked<Result(ID, ID, Point3d&), &APIGetFaceCentroidPoint3dReadOnly>(),
    Linked<Result(ID, ID, bool, bool, IDs&), &APIGetFaceConnectedComponentReadOnly>(),
    Linked<Result(ID, ID, Points&), &APIGetFaceFacetsReadOnly>(),
    Linked<Result(ID, ID, Plane&), &APIGetFacePlaneReadOnly>(),
    Linked<Result(ID, ID, double&), &APIGetFaceVariantReadOnly>(),
    Linked<Result(ID, ID, std::vector<std::pair<ID, UnitVector3d>>&), &APIGetFaceVertexNormalsReadOnly>(),
    Linked<Result(ID, ID, Points&, std::vector<UnitVector3d>&, std::vector<Point2d>&, bool, bool),
           &APIGetRenderableFaceReadOnly>(),
    Linked<Result(ID, ID, Point3d&), &APIGetVertexPoint3dReadOnly>(),
    Linked<Result(ID, ID, bool&), &APIIsEdgeManifoldReadOnly>(),
    Linked<Result(ID, ID, bool, bool&), &APIIsEdgeMergeableReadOnly>(),
    Linked<Result(ID, ID, double&, Point3d&, UnitVector3d&, UnitVector3d&, IDs&, bool&), &APIIsEdgeOnCircleReadOnly>(),
    Linked<Result(ID, ID, const Point3d&, const Vector3d&, bool, bool&), &APIIsEdgeSilhouetteReadOnly>(),
    Linked<Result(ID, ID, IDs&), &APIDetectFreeEdgesReadOnly>(),
    Linked<Result(ID, ID, const Point3d&, const Vector3d&, bool, IDs&), &APIDetectSilhouettesReadOnly>(),
    Linked<Result(ID, const Line3d&, IDs&, double, bool, bool, bool, double, std::vector<GroupInstancePath>*,
                  std::vector<Transf3d>*, SortedHits*),
           &APIRayFireReadOnly>(),
    Linked<Result(ID, const std::vector<Plane>&, IDs&, bool, bool, bool, bool, double, const Line3d*,
                  std::vector<GroupInstancePath>*, std::vector<Transf3d>*, SortedHits*, bool),
           &APIIntersectsNegativeSideOfPlanesReadOnly>(),
    Linked<Result(ID, ID, const Point3d&, bool&), &APIFaceContainsPointReadOnly>(),
    Linked<Result(ID, ID, double&, const Transf3d*), &APIComputeAreaReadOnly>(),
    Linked<Result(ID, ID, double&, const Transf3d*), &APIComputeVolumeReadOnly>(),
    Linked<Result(ID, const Point3d&, ID&), &APICreateVertex>(),
    Linked<Result(ID, const Point3d&, const Point3d&), &APIConnectPoint3ds>(),
    Linked<Result(ID, ID, const Point3d&), &APIConnectVertexAndPoint3d>(),
    Linked<Result(ID, ID, ID), &APIConnectVertices>(),
    Linked<Result(ID, const Points&, ID&, bool), &APICreatePolyline>(),
    Linked<Result(ID, const Point3d&, const Point3d&, const Point3d&, Points&, bool), &APICreateRectangle>(),
    Linked<Result(ID, double, const Point3d&, Points&, const UnitVector3d&, const UnitVector3d&, double, double, double,
                  bool, const Transf3d&, ID),
           &APICreateCircleOrArc>(),
    Linked<Result(ID, const Point3d&, const Point3d&, const Point3d&, Points&, double, bool, const Transf3d&, ID, bool),
           &APICreateCircleOrArcFromPoints>(),
    Linked<Result(ID, ID&), &APICreateEmptyBody>(),
    Linked<Result(ID, ID, ID), &APIAddFaceComponentToBody>(),
    Linked<Result(ID, const IDs&, const char*, nFileType, bool, double, const std::vector<ObjectHistoryID>&,
                  const std::vector<ObjectHistoryID>&),
           &APISaveToFileReadOnly>(),
    Linked<Result(ID, const Color&, double, double, ID, ID&, const Text&, const Text&, const StringPairs*,
                  const TexturePairs*),
           &APICreateMaterial>(),
    Linked<Result(ID, const Color&, double, double, const Bytes&, bool, ID&, const Text&, const Text&,
                  const StringPairs*, const TexturePairs*, const Text&),
           &APICreateMaterialWithTexture>(),
    Linked<Result(ID, ID, const Color&), &APISetMaterialColor>(),
    Linked<Result(ID, ID, const Color&, double, double, ID, const Text*, const Text*, const StringPairs*,
                  const TexturePairs*),
           &APISetMaterialData>(),
    Linked<Result(ID, ID, double, double, ID), &APISetMaterialTexture>(),
    Linked<Result(ID, ID, Color&, double&, double&, ID&, Text*, Text*, StringPairs*, TexturePairs*),
           &APIGetMaterialDataReadOnly>(),
    Linked<Result(ID, ID, bool&), &APIIsMaterialUsedReadOnly>(),
    Linked<Result(ID, const IDs&, ID), &APISetObjectsMaterial>(),
    Linked<Result(ID, ID, ID&), &APIGetObjectMaterialReadOnly>(),
    Linked<Result(ID, const IDs&, ID), &APISetFaceBacksideMaterial>(),
    Linked<Result(ID, ID, ID&), &APIGetFaceBacksideMaterialReadOnly>(),
    Linked<Result(ID, const Bytes&, bool, ID&, const Text&), &APICreateTexture>(),
    Linked<Result(ID, ID, const Bytes&, bool, const Text*), &APISetTextureData>(),
    Linked<Result(ID, ID, Bytes&, bool&, Text*), &APIGetTextureDataReadOnly>(),
    Linked<Result(ID, const Text&, bool, ID&), &APICreateLayer>(),
    Linked<Result(ID, ID, const Text&, bool), &APISetLayerData>(),
    Linked<Result(ID, const IDs&, bool), &APISetLayersDisplayed>(),
    Linked<Result(ID, ID, Text&, bool&, IDs*), &APIGetLayerDataReadOnly>(),
    Linked<Result(ID, const IDs&, const IDs&), &APIAddObjectsLayers>(),
    Linked<Result(ID, const IDs&, const IDs&), &APIRemoveObjectsLayers>(),
    Linked<Result(ID, const IDs&, const IDs&, const IDs&), &APIAddRemoveObjectsLayers>(),
    Linked<Result(ID, ID, IDs&), &APIGetObjectLayersReadOnly>(),
    Linked<Result(ID, const Levels&, IDs&), &APICreateLevelObjects>(),
    Linked<Result(ID, const IDs&, const Levels&), &APISetLevelsData>(),
    Linked<Result(ID, const IDs&, const IDs&), &APISetObjectsLevels>(),
    Linked<Result(ID, ID, Text&, double&), &APIGetLevelDataReadOnly>(),
    Linked<Result(ID, ID, IDs&), &APIGetObjectLevelsReadOnly>(),
    Linked<Result(ID, const Text&, ID, float, bool, const Corners&, ID&), &APICreateImageObject>(),
    Linked<Result(ID, const Text&, float, bool, const Corners&, const Bytes&, ID&, const Text&),
           &APICreateImageObjectWithTexture>(),
    Linked<Result(ID, const Text&, ID, float, bool, const Corners&, const Vector2d&, const Vector2d&, const Pixels&,
                  ID&),
           &APICreateSatelliteImageObject>(),
    Linked<Result(ID, ID, int), &APIMoveImage>(),
    Linked<Result(ID, ID, const Text&, ID, float, bool, const Corners&), &APISetImageData>(),
    Linked<Result(ID, ID, Text&, ID&, ID&, float&, bool&, Corners&, bool&), &APIGetImageDataReadOnly>(),
    Linked<Result(ID, ID, Vector2d&, Vector2d&, Pixels&), &APIGetSatelliteDataReadOnly>(),
    Linked<Result(ID, ID, const Vector2d&, const Vector2d&, const Pixels&), &APISetSatelliteData>(),
    Linked<Result(ID, ID), &APIRemoveSatelliteData>(),
    Linked<Result(ID, const Text&, const Text&, const IDs&, ID&, nCopyBehavior, bool), &APICreateStringAttribute>(),
    Linked<Result(ID, ID, const Text&), &APISetStringAttributeValue>(),
    Linked<Result(ID, ID, Text&, Text&, IDs&), &APIGetStringAttributeKeyValueReadOnly>(),
    Linked<Result(ID, ID, const Text&, IDs&), &APIGetStringAttributesByKeyReadOnly>(),
    Linked<Result(ID, ID, const Text&, bool, const IDs*), &APISetObjectProperties>(),
    Linked<Result(ID, ID, Text&, bool&), &APIGetObjectPropertiesReadOnly>(),
    Linked<Result(ID, const IDs&, bool), &APISetEdgesOrVerticesMarkedSmooth>(),
    Linked<Result(ID, Transf3d&), &APIGetLocalCoordinateSystemReadOnly>(),
    Linked<Result(ID, const Transf3d&), &APISetLocalCoordinateSystem>(),
    Linked<Result(ID, Text&, Text&, Text&, Text&), &APIGetOstrelModelInformationReadOnly>(),
    Linked<Result(ID, const Text&, const Text&, const Text&, const Text&), &APISetOstrelModelInformation>(),
    Linked<Result(ID, Text&, Text&, Text&, Text&), &APIGetHalyxFamilyInformationReadOnly>(),
    Linked<Result(ID, const Text&, const Text&, const Text&, const Text&), &APISetHalyxFamilyInformation>(),
};

bool AreDistinct()
{
    std::sort(std::begin(g_aCalls), std::end(g_aCalls));
    return std::adjacent_find(std::begin(g_aCalls), std::end(g_aCalls)) == std::end(g_aCalls);
}

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
    Text sName;
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
    std::printf("%zu calls\n", std::size(g_aCalls));
    ID nHistory = INVALID_ID;
    APICreateHistory(nHistory, true);
    return AreDistinct() && TakesDefaults(nHistory) && CatchesLibraryException() ? 0 : 1;
}
