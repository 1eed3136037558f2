/// The one road by which new straight edges enter a model.
#pragma once

#include <QRV/Geometry.h>
#include <QRV/Ids.h>

#include <vector>

namespace QRV
{
class Attribute;
class Edge;
class History;
class Vertex;

/// What travels with one insertion.
struct EdgeSketchOptions
{
    bool bInsideFacesOnly = false; ///< a closed loop becomes a face only inside an existing face
    bool bMergeBodies = false;     ///< objects that the new edge ties together are merged first
    bool bClearSmooth = false;     ///< an owned edge that is met loses its smooth mark
    bool bSmoothStart = false;     ///< a vertex newly made at that end gets the smooth mark
    bool bSmoothEnd = false;
    std::vector<Attribute*> aEdgeAttributes;             ///< given to every edge made or met
    std::vector<Attribute*> aFaceAttributes;             ///< given to every face formed
    const Plane* pPlane = nullptr;                       ///< fixes the plane of the face search
    const std::vector<Plane>* pBoundingPlanes = nullptr; ///< the face search stays on their negative side
};

struct VertexSketchOptions
{
    bool bSplitEdges = false;  ///< edges that pass through the place are split there
    bool bMergeBodies = false; ///< bodies that meet there are united
    bool bSmooth = false;      ///< a new vertex gets the smooth mark
};

/// The vertex within max(|p|, 1) * 1e-12 of `p`, found, made by splitting an edge, or new. Where several stand, the one
/// of the lowest id. `pSplitEdges` gets the ids of the edges that splitting made.
Vertex* FindOrCreateVertex(History& history, const Point3d& p, const VertexSketchOptions& options,
                           std::vector<std::uint64_t>* pSplitEdges = nullptr);

/// Draws the straight way between two places, cutting it at what lies on it. The ends are handed back.
void ConnectPoints(History& history, const Point3d& p0, const Point3d& p1, const EdgeSketchOptions& options,
                   Vertex** ppV0 = nullptr, Vertex** ppV1 = nullptr);
/// The same between two vertices; on return the pointers hold the vertices at the ends, which may be others.
void ConnectVerticesAlongLine(History& history, Vertex*& pFirst, Vertex*& pLast, const EdgeSketchOptions& options);

/// Merges what a new edge or outline ties together, where it really touches. False when nothing was merged.
bool MergeObjectsInBox(History& history, const Interval3d& box, const std::vector<Point3d>* pOutline);
} // namespace QRV
