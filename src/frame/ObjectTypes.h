/// The enumerations of the exported interface. Their numbers stand in stored files and in journals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace QRV
{
/// The class of an object.
enum nObjectType : std::uint32_t
{
    nUnspecifiedType = 0, ///< in queries: any class; as an answer: no such object
    nBodyType = 1,
    nLumpType = 2,
    nShellType = 3,
    nFaceType = 4,
    nLoopType = 5,
    nCoedgeType = 6,
    nEdgeType = 7,
    nVertexType = 8,
    nMaterialAttributeType = 9,
    nMaterialType = 10,
    nCircleAttributeType = 11,
    nObjectPropertiesAttributeType = 12,
    nTextureType = 13,
    nLevelAttributeType = 14,
    nLevelType = 15,
    nSketchPropertiesType = 16,
    nSplineCurveAttributeType = 17,
    nCylinderSurfaceAttributeType = 18,
    nSphereSurfaceAttributeType = 19,
    nExtrudeSurfaceAttributeType = 20,
    nImageType = 21,
    nSatelliteDataAttributeType = 22,
    nGroupType = 23,
    nInstanceType = 24,
    nLayerAttributeType = 25,
    nLayerType = 26,
    nGeneratedGeometryInformationType = 27,
    nFaceUVDataAttributeType = 28,
    nEdgeStyleAttributeType = 29,
    nBlendAttributeType = 30,
    nStringAttributeType = 31,
    nMeshType = 32,
    nLineMeshType = 33,
    nPointMeshType = 34
};

/// The format of a file. Numbers between these are no formats.
enum nFileType : std::uint32_t
{
    nFileTypeBinary = 0,
    nFileTypeSAT = 1,
    nFileTypeSTL = 2,
    nFileTypeOBJ = 3,
    nFileTypeJSONMesh = 6,
    nFileTypeSolidDef = 11
};

/// How a copy of an object treats an attribute of it.
enum nCopyBehavior : std::uint32_t
{
    nCopyNone = 0,   ///< the copy goes without it
    nCopyShared = 1, ///< all copies that one operation makes share one attribute
    nCopyOwn = 2     ///< each copy gets its own
};

/// How the faces at an edge, or the edges of an object, are bent. The values are bits, so that they serve as a mask.
enum nConvexity : std::uint64_t
{
    nConvexityNone = 0,
    nConvexityFlat = 1,
    nConvexityConcave = 2,
    nConvexityConvex = 4,
    nConvexityMixed = 8,
    nConvexityNonManifold = 16
};

/// The uses of an edge by faces.
enum nEdgeFaceClass : std::uint64_t
{
    nEdgeFree = 0,       ///< no coedge
    nEdgeBoundary = 1,   ///< one coedge
    nEdgeManifold = 2,   ///< two coedges in two faces
    nEdgeInsideFace = 3, ///< two coedges in one face: a spur or a bridge
    nEdgeNonManifold = 4 ///< three coedges or more
};

/// How a History stands to a copy of it elsewhere: a set of bits.
enum nHistoryComparison : std::uint32_t
{
    nHistoryAgrees = 0,
    nHistoryListLonger = 1,     ///< the list of the copy has more deltas than the shared prefix here
    nHistoryPrefixLonger = 2,   ///< the shared prefix here has more deltas than the list
    nHistoryHasLaterDeltas = 4, ///< there are deltas behind the shared prefix
    nHistoryActiveBelow = 8,    ///< the active delta stands before that of the copy
    nHistoryActiveAbove = 16,   ///< the active delta stands behind that of the copy
    nHistoryDeltaDiffers = 32   ///< a delta of the prefix has another id in the list
};

/// What happened to a History.
enum nModelChangeType : std::int32_t
{
    nModelUndone = -1,
    nModelCommitted = 0,
    nModelRedone = 1,
    nModelLoaded = 3,
    nModelHistoryCreated = 4,
    nModelHistoryDeleted = 5,
    nModelDeltasMerged = 6,
    nModelAllHistoriesDeleted = 7,
    nModelRedoDeleted = 8
};

/// Hits of a picking query in order: the parameter along the ray, and the index of the hit in the list of ids.
using SortedHits = std::vector<std::pair<double, std::ptrdiff_t>>;

/// Keys and values of the host's own.
using StringPairs = std::vector<std::pair<std::string, std::string>>;
/// Textures, by id, under keys of the host's own.
using TexturePairs = std::vector<std::pair<std::string, std::uint64_t>>;
} // namespace QRV
