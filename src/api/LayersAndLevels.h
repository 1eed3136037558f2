/// The exported operations on layers and levels. What holds for all calls stands in API.h.
#pragma once

#include <QRV/Export.h>
#include <QRV/Ids.h>
#include <QRV/Result.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace QRV
{
// --- Layers: named sets of objects, shown or hidden. An object may be on any number of them

/// Makes a layer. Several may have one name.
/// @return `nOutOfMemory` when there is no memory for it
QRV_API Result APICreateLayer(std::uint64_t nHistoryID, const std::string& name, bool displayed, std::uint64_t& layer);

/// Renames, shows or hides a layer.
QRV_API Result APISetLayerData(std::uint64_t nHistoryID, std::uint64_t layer, const std::string& name, bool displayed);

/// Shows or hides layers.
QRV_API Result APISetLayersDisplayed(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layers,
                                     bool displayed);

/// What a layer holds.
/// @param objects  may be null; appended to: what is on the layer, ascending
QRV_API Result APIGetLayerDataReadOnly(std::uint64_t nHistoryID, std::uint64_t layer, std::string& name,
                                       bool& displayed, std::vector<std::uint64_t>* objects = nullptr);

/// Puts every object on every layer.
/// @param objects  of any class but layers and attributes
QRV_API Result APIAddObjectsLayers(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layers,
                                   const std::vector<std::uint64_t>& objects);

/// Takes every object off every layer; one that was not there stays as it is.
/// @param objects  as above
QRV_API Result APIRemoveObjectsLayers(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layers,
                                      const std::vector<std::uint64_t>& objects);

/// First adds, then removes: objects are off a layer that is in both lists.
/// @param objects  as above
QRV_API Result APIAddRemoveObjectsLayers(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& layersToAdd,
                                         const std::vector<std::uint64_t>& layersToRemove,
                                         const std::vector<std::uint64_t>& objects);

/// Appends the layers of an object, in the order in which it came on them.
QRV_API Result APIGetObjectLayersReadOnly(std::uint64_t nHistoryID, std::uint64_t object,
                                          std::vector<std::uint64_t>& layers);

// --- Levels: named heights for bodies, instances and meshes

/// Makes a level for each pair of name and elevation.
/// @param levels  appended to: their ids in order, none when the call fails
/// @return `nBadInput` also when memory runs out
QRV_API Result APICreateLevelObjects(std::uint64_t nHistoryID, const std::vector<std::pair<std::string, double>>& data,
                                     std::vector<std::uint64_t>& levels);

/// Gives each level the name and elevation at its place in the list. Not journaled.
/// @return `nCaughtException` when there are fewer pairs than levels
QRV_API Result APISetLevelsData(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& levels,
                                const std::vector<std::pair<std::string, double>>& data);

/// Puts each object on these levels and on no others.
/// @param objects  bodies, instances or meshes; else `nBadInput`
QRV_API Result APISetObjectsLevels(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                                   const std::vector<std::uint64_t>& levels);

/// The name and height of a level.
QRV_API Result APIGetLevelDataReadOnly(std::uint64_t nHistoryID, std::uint64_t level, std::string& name,
                                       double& elevation);

/// Appends the levels of an object, in the order in which it came on them.
QRV_API Result APIGetObjectLevelsReadOnly(std::uint64_t nHistoryID, std::uint64_t object,
                                          std::vector<std::uint64_t>& levels);
} // namespace QRV
