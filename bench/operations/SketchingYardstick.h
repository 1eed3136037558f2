/// Crossing segments by CGAL.
#pragma once

#include <QRV/Geometry.h>

#include <cstddef>
#include <utility>
#include <vector>

/// Inserts the segments one by one into an arrangement with exact constructions. Gives its number of edges.
std::size_t ArrangeByYardstick(const std::vector<std::pair<QRV::Point3d, QRV::Point3d>>& aSegments);
