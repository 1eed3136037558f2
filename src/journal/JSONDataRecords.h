/// The plain records that hosts hand over and are told, as JSON. Their fields are also their keys, and all are written.
/// Keys that are absent leave the field as it is, where it may be left out.
#pragma once

#include <QRV/DataRecords.h>
#include <QRV/Export.h>
#include <QRV/ModelChange.h>

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace QRV
{
QRV_API nlohmann::json ToJSON(const TextureData& value);
QRV_API nlohmann::json ToJSON(const MaterialData& value);
QRV_API nlohmann::json ToJSON(const LayerData& value);
QRV_API nlohmann::json ToJSON(const InstanceData& value);
QRV_API nlohmann::json ToJSON(const LoopData& value);
QRV_API nlohmann::json ToJSON(const FaceData& value);
QRV_API nlohmann::json ToJSON(const EdgeData& value);
QRV_API nlohmann::json ToJSON(const CurveData& value);
QRV_API nlohmann::json ToJSON(const ImageData& value);
QRV_API nlohmann::json ToJSON(const FacetsBodyData& value);
QRV_API nlohmann::json ToJSON(const ModelChangeData& value);

QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, TextureData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, MaterialData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, LayerData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, InstanceData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, LoopData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, FaceData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, EdgeData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, CurveData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, ImageData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, FacetsBodyData& out, bool optional);
QRV_API bool FromJSON(const nlohmann::json& source, const std::string& key, ModelChangeData& out, bool optional);
} // namespace QRV
