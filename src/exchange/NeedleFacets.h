/// Triangles fit for programs that hold coordinates in single precision.
#pragma once

#include "spatial/FaceFacets.h"

namespace QRV
{
/// Turns the sides between triangles of a face so that as few as possible are needles: triangles so low that their own
/// corners, rounded to single precision, don't show which way the face looks.
///
/// Where an edge is split, a triangulation may hold triangles whose corners lie in one line. They can't be left out:
/// the faces on the other side of the edge have its middle vertex, and the surface would be open there. Turning the
/// side that such a triangle shares with its neighbour makes two good triangles of the two. Sides that are edges of
/// the model stay, so a face that is a needle itself keeps its triangles.
/// @param normal     of the face, in the coordinates of the model
/// @param transform  to the coordinates in which the triangles will be read
std::vector<Facet> TurnNeedles(std::vector<Facet> aFacets, const UnitVector3d& normal, const Transf3d& transform);
} // namespace QRV
