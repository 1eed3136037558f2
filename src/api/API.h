/// The exported operations of the library.
///
/// What holds for all of them:
/// - A call gives a Result by value and throws nothing. Whatever was thrown within, by a callback of the host too,
///   comes back as `nCaughtException`, a failed allocation included.
/// - Most take the id of a History first; `nBadHistoryID` for an id that names none. Ids of objects are looked up among
///   the live objects of that History; `nBadInput` for an id that names none or one of the wrong class. `nBadInput`
///   also for numbers that are not finite, before anything changes.
/// - `INVALID_ID` (all bits set) is none. A result that is an id starts as `INVALID_ID`, a bool as false, a number as
///   0, and stays so when the call fails. Vectors that bring results are appended to, unless the call says otherwise.
/// - A name that ends in `ReadOnly` changes nothing. A call that changes a model makes at most one step of undo. When
///   it fails the model is as before, except that the redo branch is gone. A change is refused with
///   `nHistoryOperationFailed` on a History on which another change is under way, as when a callback calls back.
/// - Coordinates are in one length unit of the host's choice, angles in radians. Vertices whose points lie within
///   1e-12 times max(1, size of the point) of each other are one.
/// - Calls come from one thread at a time.
#pragma once

#include <QRV/Callbacks.h>
#include <QRV/ChangeReports.h>
#include <QRV/Export.h>
#include <QRV/Geometry.h>
#include <QRV/GroupInstancePath.h>
#include <QRV/HistoryInformation.h>
#include <QRV/Ids.h>
#include <QRV/Images.h>
#include <QRV/LayersAndLevels.h>
#include <QRV/Materials.h>
#include <QRV/ObjectData.h>
#include <QRV/ObjectDump.h>
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

/// The version of the library: 0 and 23 for 0.23.
QRV_API Result APIGetVersionReadOnly(std::uint64_t& nMajor, std::uint64_t& nMinor);

/// Starts a journal: each exported call that takes part is written to the file as one line of script before it does its
/// work, and flushed. The file is replaced; a journal that is open is ended. Adds "QRV" to the types that are written.
///
/// A file that cannot be opened is no error: the lines go nowhere.
/// @param nHistoryID  written as "mainHistID"; `INVALID_ID` for none
QRV_API Result APIEnableJournaling(std::uint64_t nHistoryID, const std::string& strPath);

/// Chooses the kinds of call that journals show: "QRV" (changes; on from the start), "QRVReadOnly" (queries) and
/// "QRVJournalPick" (picking queries). Stands until the next such call, whether a journal is open or not.
/// @param bKeep  adds to the present types; otherwise they are replaced, by an empty list too
QRV_API Result APIEnableJournalingTypes(const std::vector<std::string>& aTypes, bool bKeep);

/// Ends the journal with the tail of its script. Harmless when none is open.
QRV_API Result APIDisableJournaling();

/// Whether a journal is open and not suspended by a `QRVJournalingSuspend`.
QRV_API Result APIIsJournalingReadOnly(bool& bJournaling);

/// The kinds of call that journals show. `aTypes` is replaced.
QRV_API Result APIGetEnabledJournalingTypesReadOnly(std::set<std::string>& aTypes);

// --- History life cycle

/// Makes an empty History.
///
/// A live History of the wanted id is replaced, after a notification of its end. But a temporary one never replaces a
/// non-temporary one: it gets a fresh id instead.
/// @param nHistoryID     in: the wanted id, or `INVALID_ID` for a fresh one; out: the id given. The first is 0
/// @param bNonTemporary  false for a scratch model: no notifications, and left out of lists unless asked for
/// @return `nBadInput` for a wanted id from 0xFFFFFFFE up (stored data has no room for it), `nFailure` when no fresh id
///         is left, `nHistoryOperationFailed` when the History to be replaced is busy
QRV_API Result APICreateHistory(std::uint64_t& nHistoryID, bool bNonTemporary);

/// Ends a History with all its objects and steps. Groups elsewhere that refer to it then find none.
QRV_API Result APIDeleteHistory(std::uint64_t nHistoryID);

/// Ends all Histories; fresh ids start at 0 again. `nHistoryOperationFailed`, with nothing changed, while any is busy.
QRV_API Result APIDeleteAllHistories();

/// Gives a History a fresh id. Object ids, steps and contents stay; groups that refer to it follow. No notification.
/// @param nHistoryID  in: the present id; out: the fresh one
/// @return `nFailure` when no fresh id is left
QRV_API Result APIChangeHistoryID(std::uint64_t& nHistoryID);

/// Whether the id names a History. Good for any id.
QRV_API Result APIIsHistoryLiveReadOnly(std::uint64_t nHistoryID, bool& bLive);

/// Whether the History was made as a lasting model.
QRV_API Result APIIsHistoryNonTemporaryReadOnly(std::uint64_t nHistoryID, bool& bNonTemporary);

/// Appends the ids of all Histories, ascending; of the temporary ones only if asked.
QRV_API Result APIGetAllHistoriesReadOnly(std::vector<std::uint64_t>& aHistoryIDs, bool bIncludeTemporary = false);

/// Appends the History and all that are reached from it through groups, breadth first, each once: upward those in which
/// a group shows it, downward those that its own groups show.
QRV_API Result APIGetAllReachableHistoriesReadOnly(std::uint64_t nHistoryID, bool bUpward,
                                                   std::vector<std::uint64_t>& aHistoryIDs);

/// Appends the groups, in any History, that show this one, ascending.
QRV_API Result APIGetHistoryReferencingGroupsReadOnly(std::uint64_t nHistoryID, std::vector<ObjectHistoryID>& aGroups);

/// An estimate of the memory that a History takes.
/// @param nBytes       in bytes
/// @param bActiveOnly  counts the present state of each object only, without earlier states and steps
QRV_API Result APIGetMemorySizeReadOnly(std::uint64_t nHistoryID, std::uint64_t& nBytes, bool bActiveOnly);

// --- Deltas, undo and redo

/// Undoes the last step that is applied. Good, with nothing done, when none is, or when there are no steps at all,
/// whatever delta is asked for.
/// @param bDeleteRedo  also deletes what was undone, for good; its object ids are used again
/// @param nDelta       `INVALID_ID` or the active delta for one step. An earlier delta: it and all steps behind it are
///                     undone, all but it deleted for good, and it too with `bDeleteRedo`
/// @return `nBaseDeltaNotFound` for an unknown delta, `nBadInput` for one that is not applied, `nUndoDeltaFailed` with
///         the step that lists an object which has no state of it, a fault that the audit finds too: all else of that
///         step is undone, but an earlier `nDelta` then stays applied
QRV_API Result APIUndoHistory(std::uint64_t nHistoryID, bool bDeleteRedo = false, std::uint64_t nDelta = INVALID_ID);

/// Redoes the next step.
/// @param nDelta  where the host believes the History to stand: `INVALID_ID`, or the active delta
/// @return `nFailure` when nothing is to be redone or another delta is active
QRV_API Result APIRedoHistory(std::uint64_t nHistoryID, std::uint64_t nDelta = INVALID_ID);

/// Undoes all steps behind a delta, with one notification. `INVALID_ID` undoes all.
/// @return `nFailure` unless the delta lies before the active one, `nUndoDeltaFailed` as `APIUndoHistory` gives it: the
///         way ends with that step, unannounced
QRV_API Result APIUndoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta);

/// Redoes all steps up to and including a delta, with one notification.
/// @return `nFailure` unless the delta lies behind the active one
QRV_API Result APIRedoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta);

/// Goes to a delta in the direction in which it lies. Good, with nothing done, when it is active.
/// @param nDelta       `INVALID_ID` for the state before the first
/// @param bDeleteRedo  deletes what was undone, for good
/// @return `nBadInput` for a delta that lies in neither direction
QRV_API Result APIUndoOrRedoHistoryToDelta(std::uint64_t nHistoryID, std::uint64_t nDelta, bool bDeleteRedo = false);

/// Whether a step is applied that can be undone.
QRV_API Result APICanUndoHistoryReadOnly(std::uint64_t nHistoryID, bool& bCan);

/// Whether an undone step is left that can be redone.
QRV_API Result APICanRedoHistoryReadOnly(std::uint64_t nHistoryID, bool& bCan);

/// Whether `APIUndoHistoryToDelta` would go there. True for `INVALID_ID` when any step is applied.
QRV_API Result APICanUndoHistoryToDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, bool& bCan);

/// Whether `APIRedoHistoryToDelta` would go there.
QRV_API Result APICanRedoHistoryToDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, bool& bCan);

/// Deletes all undone steps for good. Good when there are none.
/// @param bReuseIDs  the ids of objects that only they knew are given out again
QRV_API Result APIDeleteAllRedoHistory(std::uint64_t nHistoryID, bool bReuseIDs = false);

/// Makes one step of a run of applied steps. It keeps the id of the last and has no flags. A run in which everything
/// made was also deleted leaves no step at all.
/// @param nFrom      the first delta of the run; `INVALID_ID` for the first of all
/// @param nTo        the last, behind `nFrom`; `INVALID_ID` for the active one
/// @param bReuseIDs  the ids of objects made and deleted within the run are given out again
/// @return `nFailure`, with nothing changed, for ends that name no run of applied steps
QRV_API Result APIMergeDeltas(std::uint64_t nHistoryID, std::uint64_t nFrom = INVALID_ID,
                              std::uint64_t nTo = INVALID_ID, bool bReuseIDs = false);

/// The delta so many places behind the newest one applied (before it for a negative offset); `INVALID_ID` outside the
/// list. Before the first step an offset of 1 gives the first.
QRV_API Result APIGetIdOfActiveDeltaReadOnly(std::uint64_t nHistoryID, std::uint64_t& nDelta, int nOffset = 0);

/// The delta so many places from the end of the list, applied or not; `INVALID_ID` outside it.
QRV_API Result APIGetLastDeltaIDReadOnly(std::uint64_t nHistoryID, std::uint64_t& nDelta, std::uint64_t nFromEnd = 0);

/// Appends all deltas in order, applied or not.
QRV_API Result APIGetAllHistoryDeltasReadOnly(std::uint64_t nHistoryID, std::vector<std::uint64_t>& aDeltas);

/// Appends the deltas between two, both included, in order from `nFrom` to `nTo`, so descending when `nTo` is older.
/// `INVALID_ID` is the state before the first and is listed as itself. Nothing for an unknown delta, such as 0.
QRV_API Result APIGetHistoryDeltasReadOnly(std::uint64_t nHistoryID, std::uint64_t nFrom, std::uint64_t nTo,
                                           std::vector<std::uint64_t>& aDeltas);

/// The flags that the host has given a delta. `nBadInput` for an unknown one.
QRV_API Result APIGetDeltaFlagsReadOnly(std::uint64_t nHistoryID, std::uint64_t nDelta, std::uint64_t& nFlags);

/// Sets the flags of a delta. No step of undo. `nBadInput` for an unknown delta.
QRV_API Result APISetDeltaFlags(std::uint64_t nHistoryID, std::uint64_t nDelta, std::uint64_t nFlags);

/// Sets, then clears, flags on every delta of a History. No step of undo.
/// @param bIncludeReachable  also of the Histories that its groups show, however deep; `nFailure` when one of them
///                           does not exist, with the others done
QRV_API Result APISetAllDeltaFlags(std::uint64_t nHistoryID, std::uint64_t nSet, std::uint64_t nClear,
                                   bool bIncludeReachable);

// --- Change reports, comparison and validity

/// Audits an object and what is below it.
/// @param aResults  appended to: one Result for each finding, with the objects that it names. The call is good
///                  whatever is found
QRV_API Result APICheckValidityReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                        std::vector<Result>& aResults);

/// Audits a whole History: its objects, search trees, ids and steps, and the Histories that its groups show.
/// @param aResults  as for `APICheckValidityReadOnly`
QRV_API Result APICheckHistoryValidityReadOnly(std::uint64_t nHistoryID, std::vector<Result>& aResults);

// --- Exchange formats and packaged files

/// Writes objects to a file, which is replaced.
///
/// STL is ASCII, in the triangles of all faces of the objects; a closed body gives a closed surface. Numbers have 16
/// digits; programs that hold them in single precision see the model the better, the nearer it is to the origin.
/// @param objects          ids in this History, at least one, all live; else `nBadInput`
/// @param path             `nBadInput` for null
/// @param type             `nFileTypeSTL`; `nBadInput` for a format that is not written
/// @param saveDerivable    not used by STL
/// @param scale            coordinates are multiplied by it; a negative one mirrors; `nBadInput` when not finite or of
///                         size 1e-12 or less
/// @param extraObjects     not used by STL
/// @param excludedObjects  of any History; left out together with what is part of them; what does not live is passed
///                         over
/// @return `nFailure` when the file cannot be written, or when a face has no triangulation: the file then holds all
///         others
QRV_API Result APISaveToFileReadOnly(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                                     const char* path, nFileType type, bool saveDerivable, double scale,
                                     const std::vector<ObjectHistoryID>& extraObjects,
                                     const std::vector<ObjectHistoryID>& excludedObjects);

// --- Object queries

/// The class of a live object.
QRV_API Result APIGetObjectTypeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType& nType);

/// Whether the object lives. False, and good, for an unknown object and for `INVALID_ID` as History.
QRV_API Result APIIsObjectLiveReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bLive);

/// Appends the objects of a class below an object, itself included, each once.
/// @param nType    0 for all classes
/// @param bUpward  those above it instead: its owners and theirs
QRV_API Result APIGetObjectsByTypeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType nType,
                                           std::vector<std::uint64_t>& aIDs, bool bUpward);

/// Appends all live objects of a class, in order of id.
/// @param nType  0 for all classes
QRV_API Result APIGetAllObjectsByTypeReadOnly(std::uint64_t nHistoryID, nObjectType nType,
                                              std::vector<std::uint64_t>& aIDs);

/// Appends all live objects that no other owns, in order of id: bodies, free faces, edges and vertices and the like.
QRV_API Result APIGetAllNonOwnedReadOnly(std::uint64_t nHistoryID, std::vector<std::uint64_t>& aIDs);

/// Whether no other object owns this one.
QRV_API Result APIIsNonOwnedReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bNonOwned);

/// Appends the non-owned objects that hang together with an object through shared vertices, directly or through others,
/// each once, in order of discovery; its own top owners are among them.
QRV_API Result APIGetAllConnectedNonOwnedReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                                  std::vector<std::uint64_t>& aIDs);

/// Appends the non-owned objects above an object, each once; the object itself if it is one.
QRV_API Result APIGetTopLevelOwnersReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                            std::vector<std::uint64_t>& aOwners);

/// Appends the attributes that an object carries, in the order in which it holds them.
/// @param nType  of the attributes; 0 for all
QRV_API Result APIGetObjectAttributesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nObjectType nType,
                                              std::vector<std::uint64_t>& aAttributes);

/// The name of an object's class. The text lives as long as the library; null when the call fails.
QRV_API Result APIGetObjectNameReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, const char*& pName);

/// The axis-parallel box around an object, tight also under a rotation.
/// @param nObjectID  `INVALID_ID` for the whole History
/// @param box        null (`isNull`) for what has no extent
/// @param transform  applied to the object first
QRV_API Result APIGetBoxReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, Interval3d& box,
                                 const Transf3d& transform);

// --- Topology queries

/// Appends the faces of a body in the order of its lumps and shells.
QRV_API Result APIGetBodyFacesReadOnly(std::uint64_t nHistoryID, std::uint64_t nBodyID,
                                       std::vector<std::uint64_t>& aFaces);

/// Appends the edges of a body's faces, each once.
QRV_API Result APIGetBodyEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nBodyID,
                                       std::vector<std::uint64_t>& aEdges);

/// Appends the chain of edges through an edge, itself included: at each end it goes on while exactly two edges meet
/// that are not marked smooth.
/// @param bSmoothVerticesOnly  it goes on only through vertices that are marked smooth
QRV_API Result APIGetConnectedEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID,
                                            std::vector<std::uint64_t>& aEdges, bool bSmoothVerticesOnly);

/// Whether a coedge runs from the start to the end of its edge.
QRV_API Result APIGetCoedgeDirectionReadOnly(std::uint64_t nHistoryID, std::uint64_t nCoedgeID, bool& bForward);

/// How the faces at an edge are bent, or those along a loop.
QRV_API Result APIGetConvexityReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nConvexity& convexity);

/// Appends the faces that hang together with a face over edges of the convexities wanted.
/// @param nMask  1 flat, 2 concave, 4 convex, added up; `nBadInput` for 0 and with bit 8; further bits are ignored
QRV_API Result APIGetConvexityConnectedComponentReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                                         std::uint64_t nMask, std::vector<std::uint64_t>& aFaces);

/// How many uses by faces an edge has.
QRV_API Result APIGetEdgeFaceClassificationReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID,
                                                    nEdgeFaceClass& nClass);

/// Whether an edge or vertex is marked smooth.
QRV_API Result APIGetEdgeOrVertexMarkedSmoothReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bSmooth);

/// The positions of the start and the end vertex of an edge.
QRV_API Result APIGetEdgePointsReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, Point3d& start, Point3d& end);

/// The centroid of the area of a face. `nFailure` when it has none.
QRV_API Result APIGetFaceCentroidPoint3dReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, Point3d& centroid);

/// Appends the faces that hang together with a face, itself included.
/// @param bThroughVertices  a common vertex is enough; otherwise a common edge is needed
/// @param bSmoothEdgesOnly  only across edges that are marked smooth
QRV_API Result APIGetFaceConnectedComponentReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                                    bool bThroughVertices, bool bSmoothEdgesOnly,
                                                    std::vector<std::uint64_t>& aFaces);

/// Appends the triangles of a face, three points each, counterclockwise as seen against the normal.
/// @return `nFaceBadFacets` with the face when it cannot be triangulated
QRV_API Result APIGetFaceFacetsReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::vector<Point3d>& aPoints);

/// The plane of a face; its normal points out of the solid.
QRV_API Result APIGetFacePlaneReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, Plane& plane);

/// The mean distance from the centroid of a face to its corners and the midpoints of its edges, as a mark that does not
/// change when the face moves; -1 for a face without one.
QRV_API Result APIGetFaceVariantReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, double& dVariant);

/// Appends each vertex of a face once, with its shading normal: the mean over the faces across edges marked smooth.
QRV_API Result APIGetFaceVertexNormalsReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                               std::vector<std::pair<std::uint64_t, UnitVector3d>>& aNormals);

/// Appends the triangles of a face for display: three points and three shading normals each.
/// @param aUVs         appended to, one for each point, if `bIncludeUVs`
/// @param bBackSide    as seen from behind: the triangles turned over, the normals negated
/// @return `nFaceBadFacets` with the face when it cannot be triangulated
QRV_API Result APIGetRenderableFaceReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                            std::vector<Point3d>& aPoints, std::vector<UnitVector3d>& aNormals,
                                            std::vector<Point2d>& aUVs, bool bIncludeUVs, bool bBackSide);

/// The position of a vertex.
QRV_API Result APIGetVertexPoint3dReadOnly(std::uint64_t nHistoryID, std::uint64_t nVertexID, Point3d& point);

/// Whether exactly two coedges of different loops use an edge.
QRV_API Result APIIsEdgeManifoldReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, bool& bManifold);

/// Whether an edge could go and leave one flat face: its two coedges run oppositely, in one loop or in two faces of one
/// plane.
/// @param bCheckUV  the attributes of the two faces must agree too
QRV_API Result APIIsEdgeMergeableReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, bool bCheckUV,
                                          bool& bMergeable);

/// Whether an edge is a chord of a true circle that its arc stands for. Unless `bOn` is true, the other results are
/// empty.
/// @param normal  of the circle's plane
/// @param xAxis   the direction from which the circle's angles count
/// @param aEdges  appended to: all edges of the same circle
QRV_API Result APIIsEdgeOnCircleReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, double& dRadius,
                                         Point3d& center, UnitVector3d& normal, UnitVector3d& xAxis,
                                         std::vector<std::uint64_t>& aEdges, bool& bOn);

/// Whether an edge is on the outline as seen from a place: a free or boundary edge, or one between a face that is seen
/// and one that is not.
/// @param eye           where the viewer stands, for a perspective view
/// @param direction     in which the viewer looks, for a parallel view
/// @param bPerspective  which of the two counts
QRV_API Result APIIsEdgeSilhouetteReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, const Point3d& eye,
                                           const Vector3d& direction, bool bPerspective, bool& bSilhouette);

/// Appends the edges with fewer than two coedges, in order of id.
/// @param nObjectID  those below it; `INVALID_ID` for all of the History
QRV_API Result APIDetectFreeEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID,
                                          std::vector<std::uint64_t>& aEdges);

/// Appends the edges that `APIIsEdgeSilhouetteReadOnly` affirms, in order of id.
/// @param nObjectID  those below it; `INVALID_ID` for all of the History
QRV_API Result APIDetectSilhouettesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, const Point3d& eye,
                                            const Vector3d& direction, bool bPerspective,
                                            std::vector<std::uint64_t>& aEdges);

// --- Spatial queries and measures

/// Finds what a ray hits. Each hit is told by the most specific kind asked for: a vertex counts for its edges and
/// faces, an edge for its faces.
/// @param ray          runs from its point; the length of its vector is the unit of the parameters
/// @param aIDs         appended to: one for each hit in this History
/// @param dTol         how far from the ray vertices and edges count as hit: a length, not negative
/// @param dMax         the parameter at which the ray ends: up to 1e30, not negative
/// @param pPaths       if given, instances are entered: appended to, one path for each hit within them
/// @param pTransforms  if given with `pPaths`: appended to, the transform that each path's object is under
/// @param pSorted      if given: ascending parameters, each with the index of its hit in `aIDs`, or with ~index for one
///                     in `pPaths`. A face that is met more than once has an entry for each
/// @return `nBadInput` for a ray without direction, when `pSorted` comes with lists that are not empty, or when
///         `pPaths` and `pTransforms` differ in length
QRV_API Result APIRayFireReadOnly(std::uint64_t nHistoryID, const Line3d& ray, std::vector<std::uint64_t>& aIDs,
                                  double dTol, bool bVertices, bool bEdges, bool bFaces, double dMax,
                                  std::vector<GroupInstancePath>* pPaths = nullptr,
                                  std::vector<Transf3d>* pTransforms = nullptr, SortedHits* pSorted = nullptr);

/// Finds what lies in a convex volume, the common negative side of planes. No planes are all of space.
/// @param aIDs        appended to: one for each object found in this History
/// @param bWhole      only what lies in it wholly; otherwise any part suffices
/// @param dTol        how far outside still counts: a length, not negative
/// @param pLine       with `pSorted`: hits are ordered along it, and faces are found where it meets them
/// @param bInstances  without `pSorted`: instances of this History count as objects
///
/// `pPaths`, `pTransforms`, `pSorted` and the codes are those of `APIRayFireReadOnly`; here all three may be null.
QRV_API Result APIIntersectsNegativeSideOfPlanesReadOnly(std::uint64_t nHistoryID, const std::vector<Plane>& aPlanes,
                                                         std::vector<std::uint64_t>& aIDs, bool bVertices, bool bEdges,
                                                         bool bFaces, bool bWhole, double dTol, const Line3d* pLine,
                                                         std::vector<GroupInstancePath>* pPaths,
                                                         std::vector<Transf3d>* pTransforms, SortedHits* pSorted,
                                                         bool bInstances);

/// Whether a point lies on a face, boundary included and holes left out.
QRV_API Result APIFaceContainsPointReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, const Point3d& point,
                                            bool& bContains);

/// The area of all faces below an object.
/// @param pTransform  applied to the object first; null for none
QRV_API Result APIComputeAreaReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, double& dArea,
                                      const Transf3d* pTransform = nullptr);

/// The volume that the closed sheets of faces at an object enclose, voids taken off; what is not closed counts nothing.
/// Of one face of a solid it is the volume of the solid.
/// @param pTransform  applied to the object first; null for none
QRV_API Result APIComputeVolumeReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, double& dVolume,
                                        const Transf3d* pTransform = nullptr);

// --- Sketching and primitives

/// Puts a vertex at a point, or finds the one there. An edge through the point is split, and a face gains the vertex.
/// @param nVertexID  new or found
/// @return `nFailure` when none could be had
QRV_API Result APICreateVertex(std::uint64_t nHistoryID, const Point3d& pt, std::uint64_t& nVertexID);

/// Draws a line. It is cut at all that it meets: edges and vertices on it are used, edges across it are split, faces
/// that it divides are split or get a spur. Where it closes an outline in one plane a face forms, where faces close a
/// sheet a body. Objects may merge or be split: the host looks ids up again.
///
/// Points so near that they are one vertex give that vertex and no line.
QRV_API Result APIConnectPoint3ds(std::uint64_t nHistoryID, const Point3d& p0, const Point3d& p1);

/// Draws a line from a vertex, as `APIConnectPoint3ds` does.
QRV_API Result APIConnectVertexAndPoint3d(std::uint64_t nHistoryID, std::uint64_t nVertexID, const Point3d& pt);

/// Draws a line between two vertices, as `APIConnectPoint3ds` does.
QRV_API Result APIConnectVertices(std::uint64_t nHistoryID, std::uint64_t nVertex0, std::uint64_t nVertex1);

/// Draws a polyline that meets only itself: what stands in the model already is neither used nor cut.
/// @param aPoints  at least two; else `nBadInput`
/// @param nFaceID  the first face that it formed, or `INVALID_ID`
/// @param bClosed  also connects the last point to the first, if there are three or more and these two differ
QRV_API Result APICreatePolyline(std::uint64_t nHistoryID, const std::vector<Point3d>& aPoints, std::uint64_t& nFaceID,
                                 bool bClosed);

/// Draws a rectangle by its four sides, as `APIConnectPoint3ds` does, or only computes it.
/// @param p0, p1       one side; `nBadInput` when they are within 1e-12 of each other
/// @param p2           how far it reaches: the side opposite lies as far as this point, seen along the side
/// @param aCorners     replaced: p0, p1 and the two others in order round
/// @param bPointsOnly  computes the corners and leaves the model alone
QRV_API Result APICreateRectangle(std::uint64_t nHistoryID, const Point3d& p0, const Point3d& p1, const Point3d& p2,
                                  std::vector<Point3d>& aCorners, bool bPointsOnly);

/// Draws a circle or arc as a polyline of equal steps, as `APIConnectPoint3ds` does, or only computes it. The edges
/// carry the true circle, if `transform` keeps circles round.
/// @param dRadius        above 1e-6
/// @param aPoints        appended to: the points in order, under `transform`; the last repeats the first for a circle
/// @param xAxis, yAxis   of the plane of the circle, not parallel; yAxis is turned square to xAxis
/// @param dStartAngle    from xAxis towards yAxis
/// @param dEndAngle      not below `dStartAngle`, and at most a full turn from it
/// @param dAccuracy      from 0.75 up: sides to a quarter circle; below 0.2928...: height of a chord over the radius, a
///                       negative value taken by its size
/// @param bPointsOnly    computes the points and leaves the model alone
/// @param transform      applied to the points
/// @param nMinSegments   the arc gets at least so many edges
/// @return `nBadInput`, with nothing drawn, for numbers outside these bounds, an empty sweep, a circle of fewer than
///         three sides or an arc of more than 1,000,000 edges
QRV_API Result APICreateCircleOrArc(std::uint64_t nHistoryID, double dRadius, const Point3d& center,
                                    std::vector<Point3d>& aPoints, const UnitVector3d& xAxis, const UnitVector3d& yAxis,
                                    double dStartAngle, double dEndAngle, double dAccuracy, bool bPointsOnly,
                                    const Transf3d& transform, std::uint64_t nMinSegments);

/// Draws the arc from p1 through p3 to p2, or the whole circle through the three points, as `APICreateCircleOrArc`
/// does.
/// @param bFullCircle  the circle, from p1 round to p1
/// @return `nBadInput` for points in one line, `nFailure` when no centre is found
QRV_API Result APICreateCircleOrArcFromPoints(std::uint64_t nHistoryID, const Point3d& p1, const Point3d& p2,
                                              const Point3d& p3, std::vector<Point3d>& aPoints, double dAccuracy,
                                              bool bPointsOnly, const Transf3d& transform, std::uint64_t nMinSegments,
                                              bool bFullCircle);

/// Makes a body without faces.
/// @return `nOutOfMemory` when there is no memory for it
QRV_API Result APICreateEmptyBody(std::uint64_t nHistoryID, std::uint64_t& nBodyID);

/// Puts a face and all faces that hang together with it over edges into a body, in its first shell.
/// @return `nFailure`, with nothing changed, when the ids are not a face and a body, or one of the faces is in another
///         shell
QRV_API Result APIAddFaceComponentToBody(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::uint64_t nBodyID);
} // namespace QRV
