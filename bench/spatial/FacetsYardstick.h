/// Constrained Delaunay triangulation by CGAL.
#pragma once

#include <QRV/Geometry.h>

#include <cstddef>
#include <vector>

/// Triangulates the rings, all of them constraints. Gives the number of triangles, those outside the polygon included.
std::size_t TriangulateByYardstick(const std::vector<std::vector<QRV::Point3d>>& aRings);
