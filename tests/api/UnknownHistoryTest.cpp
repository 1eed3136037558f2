#include "support/Journaled.h"
#include "support/TestModel.h"

namespace QRV
{
TEST(UnknownHistory, IsRefusedByEveryCallAndStillJournaled)
{
    const std::uint64_t nUnknown = 123456789;
    std::uint64_t n = 0;
    bool b = true;
    double d = 1.0;
    const char* pName = nullptr;
    nObjectType nType = nFaceType;
    nConvexity convexity{};
    nEdgeFaceClass nClass{};
    nHistoryComparison comparison{};
    std::string strText;
    Interval3d box;
    Plane plane;
    Point3d p(1, 2, 3);
    Point3d q;
    UnitVector3d u;
    std::vector<std::uint64_t> a;
    std::vector<ObjectHistoryID> aPairs;
    std::vector<Result> aResults;
    std::vector<Point3d> aPoints;
    std::vector<UnitVector3d> aNormals;
    std::vector<Point2d> aUVs;
    std::vector<std::pair<std::uint64_t, UnitVector3d>> aVertexNormals;
    std::uint64_t nCount = 0;
    float f = 1.0f;
    std::string s;
    std::vector<char> aBytes(8);
    Color color;
    std::array<Point3d, 4> aCorners;
    Vector2d place;
    std::array<std::uint64_t, 2> aPixels{};
    Transf3d transform;
    const Line3d ray(p, Vector3d(0, 0, 1));
    const Vector3d v(0, 0, 1);
    using Call = std::function<Result(std::uint64_t)>;
    const char* const kUnwritten = "";
#define QRV_CALL(name, ...)                                                                                            \
    {                                                                                                                  \
#name, [&](std::uint64_t h) { return name(h __VA_OPT__(, ) __VA_ARGS__); }                                     \
    }
    const std::pair<const char*, Call> aCalls[] = {
        QRV_CALL(APIDeleteHistory),
        {"APIChangeHistoryID", [&](std::uint64_t h) { return APIChangeHistoryID(h); }},
        QRV_CALL(APIIsHistoryNonTemporaryReadOnly, b),
        QRV_CALL(APIGetAllReachableHistoriesReadOnly, true, a),
        QRV_CALL(APIGetHistoryReferencingGroupsReadOnly, aPairs),
        QRV_CALL(APIGetMemorySizeReadOnly, n, true),
        QRV_CALL(APIUndoHistory),
        QRV_CALL(APIRedoHistory),
        QRV_CALL(APIUndoHistoryToDelta, 1),
        QRV_CALL(APIRedoHistoryToDelta, 1),
        QRV_CALL(APIUndoOrRedoHistoryToDelta, 1),
        QRV_CALL(APICanUndoHistoryReadOnly, b),
        QRV_CALL(APICanRedoHistoryReadOnly, b),
        QRV_CALL(APICanUndoHistoryToDeltaReadOnly, 1, b),
        QRV_CALL(APICanRedoHistoryToDeltaReadOnly, 1, b),
        QRV_CALL(APIDeleteAllRedoHistory),
        QRV_CALL(APIMergeDeltas),
        QRV_CALL(APIGetIdOfActiveDeltaReadOnly, n),
        QRV_CALL(APIGetAllHistoryDeltasReadOnly, a),
        QRV_CALL(APIGetHistoryDeltasReadOnly, 1, 2, a),
        {kUnwritten, [&](std::uint64_t h) { return APIGetLastDeltaIDReadOnly(h, n); }},
        {kUnwritten, [&](std::uint64_t h) { return APIGetDeltaFlagsReadOnly(h, 1, n); }},
        {kUnwritten, [&](std::uint64_t h) { return APISetDeltaFlags(h, 1, 1); }},
        {kUnwritten, [&](std::uint64_t h) { return APISetAllDeltaFlags(h, 1, 1, true); }},
        QRV_CALL(APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly, &a, &a, &a),
        QRV_CALL(APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly, 1, 2, &a, &a, &a),
        QRV_CALL(APICompareHistoryReadOnly, 0, a, comparison),
        QRV_CALL(APIIsExactMatchReadOnly, 0, b),
        QRV_CALL(APIDebugObjectReadOnly, 0, strText),
        QRV_CALL(APICheckValidityReadOnly, 0, aResults),
        QRV_CALL(APICheckHistoryValidityReadOnly, aResults),
        QRV_CALL(APIGetObjectTypeReadOnly, 0, nType),
        QRV_CALL(APIIsObjectLiveReadOnly, 0, b),
        QRV_CALL(APIGetObjectsByTypeReadOnly, 0, nType, a, true),
        QRV_CALL(APIGetAllObjectsByTypeReadOnly, nType, a),
        QRV_CALL(APIGetAllNonOwnedReadOnly, a),
        QRV_CALL(APIIsNonOwnedReadOnly, 0, b),
        QRV_CALL(APIGetAllConnectedNonOwnedReadOnly, 0, a),
        QRV_CALL(APIGetTopLevelOwnersReadOnly, 0, a),
        QRV_CALL(APIGetObjectAttributesReadOnly, 0, nType, a),
        QRV_CALL(APIGetObjectNameReadOnly, 0, pName),
        QRV_CALL(APIGetBoxReadOnly, 0, box, Transf3d()),
        QRV_CALL(APIGetBodyFacesReadOnly, 0, a),
        QRV_CALL(APIGetBodyEdgesReadOnly, 0, a),
        QRV_CALL(APIGetConnectedEdgesReadOnly, 0, a, true),
        QRV_CALL(APIGetCoedgeDirectionReadOnly, 0, b),
        QRV_CALL(APIGetConvexityReadOnly, 0, convexity),
        QRV_CALL(APIGetConvexityConnectedComponentReadOnly, 0, 1, a),
        QRV_CALL(APIGetEdgeFaceClassificationReadOnly, 0, nClass),
        QRV_CALL(APIGetEdgeOrVertexMarkedSmoothReadOnly, 0, b),
        QRV_CALL(APIGetEdgePointsReadOnly, 0, p, q),
        QRV_CALL(APIGetFaceCentroidPoint3dReadOnly, 0, q),
        QRV_CALL(APIGetFaceConnectedComponentReadOnly, 0, true, true, a),
        QRV_CALL(APIGetFaceFacetsReadOnly, 0, aPoints),
        QRV_CALL(APIGetFacePlaneReadOnly, 0, plane),
        QRV_CALL(APIGetFaceVariantReadOnly, 0, d),
        QRV_CALL(APIGetFaceVertexNormalsReadOnly, 0, aVertexNormals),
        QRV_CALL(APIGetRenderableFaceReadOnly, 0, aPoints, aNormals, aUVs, true, true),
        QRV_CALL(APIGetVertexPoint3dReadOnly, 0, q),
        QRV_CALL(APIIsEdgeManifoldReadOnly, 0, b),
        QRV_CALL(APIIsEdgeMergeableReadOnly, 0, true, b),
        QRV_CALL(APIIsEdgeOnCircleReadOnly, 0, d, q, u, u, a, b),
        QRV_CALL(APIIsEdgeSilhouetteReadOnly, 0, p, v, true, b),
        {"APIDetectFreeEdges", [&](std::uint64_t h) { return APIDetectFreeEdgesReadOnly(h, 0, a); }},
        {"APIIsEdgeSilhouetteReadOnly",
         [&](std::uint64_t h) { return APIDetectSilhouettesReadOnly(h, 0, p, v, true, a); }},
        QRV_CALL(APIRayFireReadOnly, ray, a, 0.1, true, true, true, 1),
        QRV_CALL(APIIntersectsNegativeSideOfPlanesReadOnly, {}, a, true, true, true, true, 0.1, nullptr, nullptr,
                 nullptr, nullptr, true),
        QRV_CALL(APIFaceContainsPointReadOnly, 0, p, b),
        QRV_CALL(APIComputeAreaReadOnly, 0, d),
        QRV_CALL(APIComputeVolumeReadOnly, 0, d),
        QRV_CALL(APICreateVertex, p, n),
        QRV_CALL(APIConnectPoint3ds, p, q),
        QRV_CALL(APIConnectVertexAndPoint3d, 0, p),
        QRV_CALL(APIConnectVertices, 0, 1),
        QRV_CALL(APICreatePolyline, aPoints, n, true),
        QRV_CALL(APICreateRectangle, p, q, p, aPoints, false),
        QRV_CALL(APICreateRectangle, p, q, p, aPoints, true),
        QRV_CALL(APICreateCircleOrArc, 1, p, aPoints, u, u, 0, 1, 0.1, false, Transf3d(), 3),
        QRV_CALL(APICreateCircleOrArc, 1, p, aPoints, u, u, 0, 1, 0.1, true, Transf3d(), 3),
        QRV_CALL(APICreateCircleOrArcFromPoints, p, q, p, aPoints, 0.1, false, Transf3d(), 3, true),
        QRV_CALL(APICreateCircleOrArcFromPoints, p, q, p, aPoints, 0.1, true, Transf3d(), 3, true),
        QRV_CALL(APICreateEmptyBody, n),
        QRV_CALL(APIAddFaceComponentToBody, 0, 1),
        QRV_CALL(APICreateMaterial, color, 1, 1, INVALID_ID, n, s, s, nullptr, nullptr),
        QRV_CALL(APICreateMaterialWithTexture, color, 1, 1, aBytes, true, n, s, s, nullptr, nullptr, s),
        QRV_CALL(APISetMaterialColor, 0, color),
        QRV_CALL(APISetMaterialData, 0, color, 1, 1, INVALID_ID, &s, &s, nullptr, nullptr),
        QRV_CALL(APISetMaterialTexture, 0, 1, 1, 0),
        QRV_CALL(APIGetMaterialDataReadOnly, 0, color, d, d, n, nullptr, nullptr, nullptr, nullptr),
        QRV_CALL(APIIsMaterialUsedReadOnly, 0, b),
        QRV_CALL(APISetObjectsMaterial, a, 0),
        QRV_CALL(APIGetObjectMaterialReadOnly, 0, n),
        QRV_CALL(APISetFaceBacksideMaterial, a, 0),
        QRV_CALL(APIGetFaceBacksideMaterialReadOnly, 0, n),
        QRV_CALL(APICreateTexture, aBytes, true, n, s),
        QRV_CALL(APISetTextureData, 0, aBytes, true, nullptr),
        QRV_CALL(APIGetTextureDataReadOnly, 0, aBytes, b, nullptr),
        QRV_CALL(APICreateLayer, s, true, n),
        QRV_CALL(APISetLayerData, 0, s, true),
        QRV_CALL(APISetLayersDisplayed, a, true),
        QRV_CALL(APIGetLayerDataReadOnly, 0, s, b),
        QRV_CALL(APIAddObjectsLayers, a, a),
        QRV_CALL(APIRemoveObjectsLayers, a, a),
        QRV_CALL(APIAddRemoveObjectsLayers, a, a, a),
        QRV_CALL(APIGetObjectLayersReadOnly, 0, a),
        QRV_CALL(APICreateLevelObjects, {{"ground", 0.0}}, a),
        {kUnwritten, [&](std::uint64_t h) { return APISetLevelsData(h, a, {}); }},
        QRV_CALL(APISetObjectsLevels, a, a),
        QRV_CALL(APIGetLevelDataReadOnly, 0, s, d),
        QRV_CALL(APIGetObjectLevelsReadOnly, 0, a),
        QRV_CALL(APICreateImageObject, s, INVALID_ID, 1, true, aCorners, n),
        QRV_CALL(APICreateImageObjectWithTexture, s, 1, true, aCorners, aBytes, n, s),
        QRV_CALL(APICreateSatelliteImageObject, s, INVALID_ID, 1, true, aCorners, place, place, aPixels, n),
        QRV_CALL(APIMoveImage, 0, 1),
        QRV_CALL(APISetImageData, 0, s, INVALID_ID, 1, true, aCorners),
        QRV_CALL(APIGetImageDataReadOnly, 0, s, n, nCount, f, b, aCorners, b),
        QRV_CALL(APIGetSatelliteDataReadOnly, 0, place, place, aPixels),
        QRV_CALL(APISetSatelliteData, 0, place, place, aPixels),
        QRV_CALL(APIRemoveSatelliteData, 0),
        QRV_CALL(APICreateStringAttribute, "key", s, a, n, nCopyOwn, true),
        QRV_CALL(APISetStringAttributeValue, 0, s),
        QRV_CALL(APIGetStringAttributeKeyValueReadOnly, 0, s, s, a),
        QRV_CALL(APIGetStringAttributesByKeyReadOnly, 0, "key", a),
        QRV_CALL(APISetObjectProperties, 0, s, true),
        QRV_CALL(APIGetObjectPropertiesReadOnly, 0, s, b),
        QRV_CALL(APISetEdgesOrVerticesMarkedSmooth, a, true),
        QRV_CALL(APIGetLocalCoordinateSystemReadOnly, transform),
        QRV_CALL(APISetLocalCoordinateSystem, transform),
        QRV_CALL(APIGetOstrelModelInformationReadOnly, s, s, s, s),
        QRV_CALL(APISetOstrelModelInformation, s, s, s, s),
        QRV_CALL(APIGetHalyxFamilyInformationReadOnly, s, s, s, s),
        QRV_CALL(APISetHalyxFamilyInformation, s, s, s, s),
    };
#undef QRV_CALL
    Journaled journal(INVALID_ID);
    APIEnableJournalingTypes({"QRVReadOnly", "QRVJournalPick"}, true);
    journal.ReadOn();
    for (const auto& [pWritten, call] : aCalls)
    {
        SCOPED_TRACE(pWritten);
        for (const std::uint64_t h : {nUnknown, INVALID_ID})
        {
            // The one question that has an answer for no History at all.
            const bool bAnswered = std::string(pWritten) == "APIIsObjectLiveReadOnly" && h == INVALID_ID;
            EXPECT_EQ(call(h).GetErrorCode(), bAnswered ? Result::nOK : Result::nBadHistoryID);
            const std::string strLine = journal.ReadOn();
            if (pWritten == kUnwritten)
            {
                EXPECT_EQ(strLine, "");
                continue;
            }
            EXPECT_TRUE(strLine.starts_with("    QRV." + std::string(pWritten) + '(' +
                                            (h == INVALID_ID ? "QRV.INVALID_ID" : "123456789")))
                << strLine;
            EXPECT_TRUE(strLine.ends_with(");\n")) << strLine;
        }
    }
    EXPECT_TRUE(a.empty() && aPoints.empty() && aResults.empty() && aNormals.empty());
    EXPECT_EQ(n, INVALID_ID);
    EXPECT_FALSE(b);
    EXPECT_EQ(nType, nUnspecifiedType);
}
} // namespace QRV
