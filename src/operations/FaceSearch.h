/// Faces that form by themselves when edges close a loop.
#pragma once

#include <QRV/Geometry.h>

#include <utility>
#include <vector>

namespace QRV
{
class Attribute;
class Edge;
class Face;
class History;

/// A walk along edges; true where it runs from an edge's start to its end.
using LoopPath = std::vector<std::pair<Edge*, bool>>;

struct FaceSearchOptions
{
    bool bInsideFacesOnly = false;
    const std::vector<Attribute*>* pFaceAttributes = nullptr;
    const Plane* pPlane = nullptr;
    const std::vector<Plane>* pBoundingPlanes = nullptr;
};

/// Forms the faces, at most one on each side, whose outline the edge closes, and settles them in the model.
void FormFacesFromEdge(Edge& edge, const FaceSearchOptions& options);

/// Makes a new face at home: a hole of a face around it, with holes where it surrounds faces, turned to agree with its
/// neighbours, with the dangling edges at its corners drawn in. `pHolding`, when given, is the face around it.
/// Faces that a chord split off are appended to `pNewFaces`, or settled in turn when that is null. False when all that
/// it does is to fill the hole cut for it: then no sheet closes that was open before.
bool SettleNewFace(Face& face, bool bKeepOrientation, Face* pHolding, std::vector<Face*>* pNewFaces);

/// Derives anew the shells of all bodies at edges of three or more sides of these faces: what hangs together across
/// such an edge depends on which faces stand there, on how they are turned and on how else they hang together.
void RebuildBranchedBodies(const std::vector<Face*>& aFaces);

/// When the sheet around the face is closed, gives it a body, unless it has one, and turns its normals outward.
void CloseFaceComponent(Face& face);
} // namespace QRV
