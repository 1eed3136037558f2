/// Making a face of a closed walk along edges.
#pragma once

#include "operations/FaceSearch.h"

namespace QRV
{
class Vertex;

/// The face of the lowest id in the plane, on either side of it, that holds all the places, boundary counted.
Face* FindFaceHolding(History& history, const std::vector<Vertex*>& aVertices, const Plane& plane);

/// Makes a face of a closed path in a plane, turned against the one neighbour that its first boundary edge has or, with
/// none, counter-clockwise along the path. Null when a face fills that side of the path already, when an edge takes no
/// further face, or for fewer than 3 edges. The face joins the shell of its neighbours.
Face* BuildFaceFromLoop(History& history, const LoopPath& path, const Plane& plane,
                        const std::vector<Attribute*>* pFaceAttributes);
} // namespace QRV
