/// Outlines of buildings as registers keep them.
#pragma once

#include <QRV/Geometry.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace examples
{
using Ring = std::vector<QRV::Point2d>; ///< not repeated at its end, either way round

struct Footprint
{
    std::string strID;
    Ring outer;
    std::vector<Ring> aHoles;
    double dHeight = 0.0;
    double dArea = 0.0; ///< as the file states it, without the holes
};

/// Reads `{"footprints":[{"id","height","outer":[[x,y]..],"holes":[..],"area"}..]}`.
/// @param dDefaultHeight  for a height that is null or missing
std::vector<Footprint> ReadFootprints(const std::filesystem::path& path, double dDefaultHeight);

/// The area without the holes, from the outlines: finer than the rounded figure of the file.
double ComputeArea(const Footprint& footprint);

/// Moves the footprints to rows, in their order, so that their boxes stand clear of one another.
void LayOutInRows(std::vector<Footprint>& aFootprints, double dGap);

/// Appends copies of all footprints, each as far to the right of the last as the whole is wide, and the gap.
void AppendCopies(std::vector<Footprint>& aFootprints, std::size_t nCopies, double dGap);

/// Moves all footprints as they stand, so that a whole metre in their middle becomes the origin, and gives that point.
/// Programs that read the model in single precision lose digits away from the origin.
QRV::Point2d MoveToBasePoint(std::vector<Footprint>& aFootprints);
} // namespace examples
