/// What line work in a plane divides it into, worked out plainly and apart from the library.
#pragma once

#include <QRV/Geometry.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace QRV
{
using PlanarSegment = std::pair<Point2d, Point2d>;

struct Arrangement
{
    std::size_t nVertices = 0;
    std::size_t nEdges = 0;
    std::size_t nFaces = 0; ///< bounded ones
    double dArea = 0.0;     ///< of all bounded faces together
};

/// Points within `dTol` are one; a segment shorter than that is a point.
Arrangement ComputeArrangement(const std::vector<PlanarSegment>& aSegments, double dTol);
} // namespace QRV
