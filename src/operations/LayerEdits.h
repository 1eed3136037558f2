/// Putting objects on layers and levels.
#pragma once

#include "model/Layer.h"
#include "model/Level.h"

namespace QRV
{
/// Name and elevation.
using LevelSettings = std::pair<std::string, double>;

/// Null with `nOutOfMemory`.
Layer* CreateLayer(History& history, const std::string& sName, bool bDisplayed, Result& result);
/// Every object on every layer.
void AddToLayers(const std::vector<Layer*>& aLayers, const std::vector<Object*>& aObjects);
/// Every object off every layer; what was not there stays as it is.
void RemoveFromLayers(const std::vector<Layer*>& aLayers, const std::vector<Object*>& aObjects);

/// One for each pair, their ids in order. `nBadInput` for an elevation that is no number, and when memory runs out.
void CreateLevels(History& history, const std::vector<LevelSettings>& aSettings, std::vector<std::uint64_t>& aLevels,
                  Result& result);
/// Each level gets the settings at its place. `nBadInput` for an id that names no level and an elevation that is no
/// number; throws where there are more levels than settings.
void SetLevels(const History& history, const std::vector<std::uint64_t>& aLevels,
               const std::vector<LevelSettings>& aSettings, Result& result);
/// Each object is on these levels and no others. `nBadInput` for what is no body, instance or mesh.
void SetLevelsOf(const std::vector<Object*>& aObjects, const std::vector<Level*>& aLevels, Result& result);
} // namespace QRV
