/// The exported operations on what a History holds about itself. What holds for all calls stands in API.h.
#pragma once

#include <QRV/Export.h>
#include <QRV/Geometry.h>
#include <QRV/Ids.h>
#include <QRV/Result.h>

#include <cstdint>
#include <string>

namespace QRV
{
/// The frame in which the host sketches; the identity when none was set.
QRV_API Result APIGetLocalCoordinateSystemReadOnly(std::uint64_t nHistoryID, Transf3d& transform);

/// Sets that frame.
/// @return `nBadInput` for a transform that flattens space
QRV_API Result APISetLocalCoordinateSystem(std::uint64_t nHistoryID, const Transf3d& transform);

// Where the geometry comes from: an Ostrel model or a Halyx family. A History has one such record, and setting one
// writes over the other.

/// What was set for an Ostrel model.
/// @return `nHistoryNoOstrelInfo`, an error, when there is none
QRV_API Result APIGetOstrelModelInformationReadOnly(std::uint64_t nHistoryID, std::string& name, std::string& field1,
                                                    std::string& field2, std::string& field3);

/// Says that an Ostrel model is the origin.
QRV_API Result APISetOstrelModelInformation(std::uint64_t nHistoryID, const std::string& name,
                                            const std::string& field1, const std::string& field2,
                                            const std::string& field3);

/// What was set for a Halyx family.
/// @return `nHistoryNoHalyxInfo`, a warning, when there is none
QRV_API Result APIGetHalyxFamilyInformationReadOnly(std::uint64_t nHistoryID, std::string& name, std::string& field1,
                                                    std::string& field2, std::string& field3);

/// Says that a Halyx family is the origin.
QRV_API Result APISetHalyxFamilyInformation(std::uint64_t nHistoryID, const std::string& name,
                                            const std::string& field1, const std::string& field2,
                                            const std::string& field3);
} // namespace QRV
