/// Splitting an edge.
#pragma once

#include <QRV/Geometry.h>

namespace QRV
{
class Edge;
class Vertex;

/// How far from an edge and its ends the split point may be.
struct EdgeSplitOptions
{
    bool bCheck = true;             ///< test the point against the edge first
    Vertex* pAtVertex = nullptr;    ///< split at this vertex instead of a new one
    double dTol = kLinearTolerance; ///< a length, scaled by the size of the point
};

/// Splits `edge` at `p` and gives the vertex there.
///
/// `edge` keeps its id and start vertex; a new edge, handed back in `ppNewEdge`, runs on to the old end and gets the
/// inherited attributes, and for each coedge of `edge` a coedge with the same sense in the same loop.
/// @return null, with nothing changed, when `p` does not lie on the open edge or the edge is below 1e-6 long.
Vertex* SplitEdgeAtPoint(Edge& edge, const Point3d& p, const EdgeSplitOptions& options, Edge** ppNewEdge = nullptr);
} // namespace QRV
