/// The exported operations of the library.
#pragma once

#include <QRV/Export.h>
#include <QRV/Geometry.h>
#include <QRV/GroupInstancePath.h>
#include <QRV/Ids.h>
#include <QRV/ObjectTypes.h>
#include <QRV/Result.h>

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace QRV
{
// --- Library and journal control

QRV_API Result APIGetVersionReadOnly(std::uint64_t& nMajor, std::uint64_t& nMinor);
QRV_API Result APIEnableJournaling(std::uint64_t nHistoryID, const std::string& strPath);
QRV_API Result APIEnableJournalingTypes(const std::vector<std::string>& aTypes, bool bKeep);
QRV_API Result APIDisableJournaling();
QRV_API Result APIIsJournalingReadOnly(bool& bJournaling);
QRV_API Result APIGetEnabledJournalingTypesReadOnly(std::set<std::string>& aTypes);

// --- History life cycle

QRV_API Result APICreateHistory(std::uint64_t& nHistoryID, bool bNonTemporary);
QRV_API Result APIDeleteHistory(std::uint64_t nHistoryID);
QRV_API Result APIDeleteAllHistories();
QRV_API Result APIChangeHistoryID(std::uint64_t& nHistoryID);
QRV_API Result APIIsHistoryLiveReadOnly(std::uint64_t nHistoryID, bool& bLive);
QRV_API Result APIIsHistoryNonTemporaryReadOnly(std::uint64_t nHistoryID, bool& bNonTemporary);
QRV_API Result APIGetAllHistoriesReadOnly(std::vector<std::uint64_t>& aHistoryIDs, bool bIncludeTemporary = false);
QRV_API Result APIGetAllReachableHistoriesReadOnly(std::uint64_t nHistoryID, bool bUpward,
                                                   std::vector<std::uint64_t>& aHistoryIDs);
QRV_API Result APIGetHistoryReferencingGroupsReadOnly(std::uint64_t nHistoryID, std::vector<ObjectHistoryID>& aGroups);
QRV_API Result APIGetMemorySizeReadOnly(std::uint64_t nHistoryID, std::uint64_t& nBytes, bool bActiveOnly);

// --- Deltas, undo and redo

QRV_API Result APIUndoHistory(std::uint64_t nHistoryID, bool bDeleteRedo = false, std::uint64_t nDelta = INVALID_ID);
QRV_API Result APIRedoHistory(std::uint64_t nHistoryID, std::uint64_t nDelta = INVALID_ID);
QRV_API Result APIUndoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta);
QRV_API Result APIRedoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta);
QRV_API Result APIUndoOrRedoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta, bool bDeleteRedo = false);
QRV_API Result APICanUndoHistoryReadOnly(std::uint64_t nHistoryID, bool& bCan);
QRV_API Result APICanRedoHistoryReadOnly(std::uint64_t nHistoryID, bool& bCan);
QRV_API Result APICanUndoHistoryToDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, bool& bCan);
QRV_API Result APICanRedoHistoryToDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, bool& bCan);
QRV_API Result APIDeleteAllRedoHistory(std::uint64_t nHistoryID, bool bReuseIDs = false);
QRV_API Result APIMergeDeltas(std::uint64_t nHistoryID, std::uint64_t nFrom = INVALID_ID,
                              std::uint64_t nTo = INVALID_ID, bool bReuseIDs = false);
QRV_API Result APIGetIdOfActiveDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t& nDelta, int nOffset = 0);
QRV_API Result APIGetLastDeltaIDReadOnly(std::uint64_t nHistoryID, std::uint64_t& nDelta, std::uint64_t nFromEnd = 0);
QRV_API Result APIGetAllHistoryDeltasReadOnly(std::uint64_t nHistoryID, std::vector<std::uint64_t>& aDeltas);
QRV_API Result APIGetHistoryDeltasReadOnly(std::uint64_t nHistoryID, std::uint64_t nFrom, std::uint64_t nTo,
                                           std::vector<std::uint64_t>& aDeltas);
QRV_API Result APIGetDeltaFlagsReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, std::uint64_t& nFlags);
QRV_API Result APISetDeltaFlags(std::uint64_t nHistoryID, std::uint64_t nDelta, std::uint64_t nFlags);
QRV_API Result APISetAllDeltaFlags(std::uint64_t nHistoryID, std::uint64_t nSet, std::uint64_t nClear,
                                   bool bIncludeReachable);

// --- Change reports, comparison and validity

QRV_API Result APICheckValidityReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                        std::vector<Result>& aResults);
QRV_API Result APICheckHistoryValidityReadOnly(std::uint64_t nHistoryID, std::vector<Result>& aResults);

// --- Exchange formats and packaged files

QRV_API Result APISaveToFileReadOnly(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                                     const char* path, nFileType type, bool saveDerivable, double scale,
                                     const std::vector<ObjectHistoryID>& extraObjects,
                                     const std::vector<ObjectHistoryID>& excludedObjects);

// --- Object queries

QRV_API Result APIGetObjectTypeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType& nType);
QRV_API Result APIIsObjectLiveReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bLive);
QRV_API Result APIGetObjectsByTypeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType nType,
                                           std::vector<std::uint64_t>& aIDs, bool bUpward);
QRV_API Result APIGetAllObjectsByTypeReadOnly(std::uint64_t nHistoryID, nObjectType nType,
                                              std::vector<std::uint64_t>& aIDs);
QRV_API Result APIGetAllNonOwnedReadOnly(std::uint64_t nHistoryID, std::vector<std::uint64_t>& aIDs);
QRV_API Result APIIsNonOwnedReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bNonOwned);
QRV_API Result APIGetAllConnectedNonOwnedReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                                  std::vector<std::uint64_t>& aIDs);
QRV_API Result APIGetTopLevelOwnersReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                            std::vector<std::uint64_t>& aOwners);
QRV_API Result APIGetObjectAttributesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType nType,
                                              std::vector<std::uint64_t>& aAttributes);
QRV_API Result APIGetObjectNameReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, const char*& pName);
QRV_API Result APIGetBoxReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, Interval3d& box,
                                 const Transf3d& transform);

// --- Topology queries

QRV_API Result APIGetBodyFacesReadOnly(std::uint64_t nHistoryID, std::uint64_t nBodyID,
                                       std::vector<std::uint64_t>& aFaces);
QRV_API Result APIGetBodyEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nBodyID,
                                       std::vector<std::uint64_t>& aEdges);
QRV_API Result APIGetConnectedEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID,
                                            std::vector<std::uint64_t>& aEdges, bool bSmoothVerticesOnly);
QRV_API Result APIGetCoedgeDirectionReadOnly(std::uint64_t nHistoryID, std::uint64_t nCoedgeID, bool& bForward);
QRV_API Result APIGetConvexityReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nConvexity& convexity);
QRV_API Result APIGetConvexityConnectedComponentReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                                         std::uint64_t nMask, std::vector<std::uint64_t>& aFaces);
QRV_API Result APIGetEdgeFaceClassificationReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID,
                                                    nEdgeFaceClass& nClass);
QRV_API Result APIGetEdgeOrVertexMarkedSmoothReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bSmooth);
QRV_API Result APIGetEdgePointsReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, Point3d& start, Point3d& end);
QRV_API Result APIGetFaceCentroidPoint3dReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, Point3d& centroid);
QRV_API Result APIGetFaceConnectedComponentReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                                    bool bThroughVertices, bool bSmoothEdgesOnly,
                                                    std::vector<std::uint64_t>& aFaces);
QRV_API Result APIGetFaceFacetsReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::vector<Point3d>& aPoints);
QRV_API Result APIGetFacePlaneReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, Plane& plane);
QRV_API Result APIGetFaceVariantReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, double& dVariant);
QRV_API Result APIGetFaceVertexNormalsReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                               std::vector<std::pair<std::uint64_t, UnitVector3d>>& aNormals);
QRV_API Result APIGetRenderableFaceReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                            std::vector<Point3d>& aPoints, std::vector<UnitVector3d>& aNormals,
                                            std::vector<Point2d>& aUVs, bool bIncludeUVs, bool bBackSide);
QRV_API Result APIGetVertexPoint3dReadOnly(std::uint64_t nHistoryID, std::uint64_t nVertexID, Point3d& point);
QRV_API Result APIIsEdgeManifoldReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, bool& bManifold);
QRV_API Result APIIsEdgeMergeableReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, bool bCheckUV,
                                          bool& bMergeable);
QRV_API Result APIIsEdgeOnCircleReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, double& dRadius,
                                         Point3d& center, UnitVector3d& normal, UnitVector3d& xAxis,
                                         std::vector<std::uint64_t>& aEdges, bool& bOn);
QRV_API Result APIIsEdgeSilhouetteReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, const Point3d& eye,
                                           const Vector3d& direction, bool bPerspective, bool& bSilhouette);
QRV_API Result APIDetectFreeEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                          std::vector<std::uint64_t>& aEdges);
QRV_API Result APIDetectSilhouettesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, const Point3d& eye,
                                            const Vector3d& direction, bool bPerspective,
                                            std::vector<std::uint64_t>& aEdges);

// --- Spatial queries and measures

QRV_API Result APIRayFireReadOnly(std::uint64_t nHistoryID, const Line3d& ray, std::vector<std::uint64_t>& aIDs,
                                  double dTol, bool bVertices, bool bEdges, bool bFaces, double dMax,
                                  std::vector<GroupInstancePath>* pPaths = nullptr,
                                  std::vector<Transf3d>* pTransforms = nullptr, SortedHits* pSorted = nullptr);
QRV_API Result APIIntersectsNegativeSideOfPlanesReadOnly(std::uint64_t nHistoryID, const std::vector<Plane>& aPlanes,
                                                         std::vector<std::uint64_t>& aIDs, bool bVertices, bool bEdges,
                                                         bool bFaces, bool bWhole, double dTol, const Line3d* pLine,
                                                         std::vector<GroupInstancePath>* pPaths,
                                                         std::vector<Transf3d>* pTransforms, SortedHits* pSorted,
                                                         bool bInstances);
QRV_API Result APIFaceContainsPointReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, const Point3d& point,
                                            bool& bContains);
QRV_API Result APIComputeAreaReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, double& dArea,
                                      const Transf3d* pTransform = nullptr);
QRV_API Result APIComputeVolumeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, double& dVolume,
                                        const Transf3d* pTransform = nullptr);

// --- Sketching and primitives

QRV_API Result APICreateVertex(std::uint64_t nHistoryID, const Point3d& pt, std::uint64_t& nVertexID);
QRV_API Result APIConnectPoint3ds(std::uint64_t nHistoryID, const Point3d& p0, const Point3d& p1);
QRV_API Result APIConnectVertexAndPoint3d(std::uint64_t nHistoryID, std::uint64_t nVertexID, const Point3d& pt);
QRV_API Result APIConnectVertices(std::uint64_t nHistoryID, std::uint64_t nVertex0, std::uint64_t nVertex1);
QRV_API Result APICreatePolyline(std::uint64_t nHistoryID, const std::vector<Point3d>& aPoints, std::uint64_t& nFaceID,
                                 bool bClosed);
QRV_API Result APICreateRectangle(std::uint64_t nHistoryID, const Point3d& p0, const Point3d& p1, const Point3d& p2,
                                  std::vector<Point3d>& aCorners, bool bPointsOnly);
QRV_API Result APICreateCircleOrArc(std::uint64_t nHistoryID, double dRadius, const Point3d& center,
                                    std::vector<Point3d>& aPoints, const UnitVector3d& xAxis, const UnitVector3d& yAxis,
                                    double dStartAngle, double dEndAngle, double dAccuracy, bool bPointsOnly,
                                    const Transf3d& transform, std::uint64_t nMinSegments);
QRV_API Result APICreateCircleOrArcFromPoints(std::uint64_t nHistoryID, const Point3d& p1, const Point3d& p2,
                                              const Point3d& p3, std::vector<Point3d>& aPoints, double dAccuracy,
                                              bool bPointsOnly, const Transf3d& transform, std::uint64_t nMinSegments,
                                              bool bFullCircle);
QRV_API Result APICreateEmptyBody(std::uint64_t nHistoryID, std::uint64_t& nBodyID);
QRV_API Result APIAddFaceComponentToBody(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::uint64_t nBodyID);
} // namespace QRV
