/// Local repairs where vertices, edges and loops have come to coincide.
#pragma once

#include <QRV/Geometry.h>
#include <QRV/Ids.h>

#include <vector>

namespace QRV
{
class Face;
class History;
class Object;
class Vertex;

/// Merges the vertices that stand within max(|v|, 1) * dTol of one of the list (all of `pObject`'s when it is empty)
/// into that one, and with `bSplitEdges` splits the edges that pass through. `pChanged` gets the ids of the vertices
/// that took others over or split edges. True when anything changed.
bool MergeCoincidentVertices(History& history, Object* pObject, const std::vector<std::uint64_t>& aVertexIDs,
                             bool bSplitEdges, double dTol, std::vector<std::uint64_t>* pChanged);

/// Merges edges between the same two vertices and removes edges that start where they end, around the vertices given.
/// `aRemovedEdges` gets the ids of the edges that took others over. True when anything changed.
bool MergeDoubleEdges(History& history, const std::vector<std::uint64_t>& aVertexIDs, bool& bRemovedZeroEdges,
                      std::vector<std::uint64_t>& aRemovedEdges);

/// Splits loops that pass a vertex more than once, spurs apart; rings of area become faces. `pNewFaces` gets the ids of
/// new faces. True when anything changed.
bool HealLoopsAtVertices(History& history, const std::vector<std::uint64_t>& aVertexIDs, const Face* pOnlyFace,
                         std::vector<std::uint64_t>* pNewFaces);
} // namespace QRV
