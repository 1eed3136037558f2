#include "journal/JSONRecordReader.h"

#include <QRV/JSONDataRecords.h>

namespace QRV
{
using nlohmann::json;

template <>
struct RecordForm<TextureData>
{
    static constexpr const char* kName = "TextureData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Required("name", &TextureData::name), Required("texture", &TextureData::texture));
    }
};

template <>
struct RecordForm<MaterialData>
{
    static constexpr const char* kName = "MaterialData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Required("name", &MaterialData::name), Optional("color", &MaterialData::color),
                               Optional("h_scale", &MaterialData::h_scale), Optional("v_scale", &MaterialData::v_scale),
                               Optional("texture", &MaterialData::texture));
    }
};

template <>
struct RecordForm<LayerData>
{
    static constexpr const char* kName = "LayerData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Required("name", &LayerData::name), Required("displayed", &LayerData::displayed),
                               Optional("material", &LayerData::material));
    }
};

template <>
struct RecordForm<InstanceData>
{
    static constexpr const char* kName = "InstanceData";
    static constexpr auto Fields()
    {
        return std::make_tuple(
            Required("name", &InstanceData::name), Optional("layer", &InstanceData::layer),
            Required("history", &InstanceData::history), Optional("material", &InstanceData::material),
            Optional("transform", &InstanceData::transform), Optional("hidden", &InstanceData::hidden));
    }
};

template <>
struct RecordForm<LoopData>
{
    static constexpr const char* kName = "LoopData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Required("vertices", &LoopData::vertices),
                               Optional("vertices_smooth", &LoopData::vertices_smooth),
                               Optional("edges_smooth", &LoopData::edges_smooth), Optional("is_arc", &LoopData::is_arc),
                               Optional("front_uv", &LoopData::front_uv), Optional("back_uv", &LoopData::back_uv));
    }
};

template <>
struct RecordForm<FaceData>
{
    static constexpr const char* kName = "FaceData";
    static constexpr auto Fields()
    {
        return std::make_tuple(
            Optional("layer", &FaceData::layer), Required("normal", &FaceData::normal),
            Required("outer_loop", &FaceData::outer_loop), Optional("inner_loops", &FaceData::inner_loops),
            Optional("openings", &FaceData::openings), Optional("front_material", &FaceData::front_material),
            Optional("back_material", &FaceData::back_material), Optional("hidden", &FaceData::hidden));
    }
};

template <>
struct RecordForm<EdgeData>
{
    static constexpr const char* kName = "EdgeData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Optional("layer", &EdgeData::layer), Optional("color", &EdgeData::color),
                               Required("start_pt", &EdgeData::start_pt), Required("end_pt", &EdgeData::end_pt),
                               Optional("smooth", &EdgeData::smooth), Optional("hidden", &EdgeData::hidden));
    }
};

template <>
struct RecordForm<CurveData>
{
    static constexpr const char* kName = "CurveData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Optional("layer", &CurveData::layer), Optional("color", &CurveData::color),
                               Optional("is_arc", &CurveData::is_arc), Required("points", &CurveData::points),
                               Optional("hidden", &CurveData::hidden));
    }
};

template <>
struct RecordForm<ImageData>
{
    static constexpr const char* kName = "ImageData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Optional("name", &ImageData::name), Optional("layer", &ImageData::layer),
                               Required("texture", &ImageData::texture), Required("width", &ImageData::width),
                               Required("height", &ImageData::height), Optional("transform", &ImageData::transform),
                               Optional("hidden", &ImageData::hidden));
    }
};

template <>
struct RecordForm<FacetsBodyData>
{
    static constexpr const char* kName = "FacetsBodyData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Required("m_points", &FacetsBodyData::m_points),
                               Required("m_polygonIndices", &FacetsBodyData::m_polygonIndices),
                               Required("m_polygonSmoothingIds", &FacetsBodyData::m_polygonSmoothingIds),
                               Optional("m_colors", &FacetsBodyData::m_colors),
                               Optional("m_polygonColorIndices", &FacetsBodyData::m_polygonColorIndices),
                               Optional("m_pointColors", &FacetsBodyData::m_pointColors));
    }
};

template <>
struct RecordForm<ModelChangeData>
{
    static constexpr const char* kName = "ModelChangeData";
    static constexpr auto Fields()
    {
        return std::make_tuple(Required("historyID", &ModelChangeData::historyID),
                               Required("type", &ModelChangeData::type), Required("name", &ModelChangeData::name),
                               Required("previousDelta", &ModelChangeData::previousDelta),
                               Required("currentDelta", &ModelChangeData::currentDelta));
    }
};

json ToJSON(const TextureData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, TextureData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const MaterialData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, MaterialData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const LayerData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, LayerData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const InstanceData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, InstanceData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const LoopData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, LoopData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const FaceData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, FaceData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const EdgeData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, EdgeData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const CurveData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, CurveData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const ImageData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, ImageData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const FacetsBodyData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, FacetsBodyData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}

json ToJSON(const ModelChangeData& value)
{
    return WriteRecord(value);
}

bool FromJSON(const json& source, const std::string& key, ModelChangeData& out, bool optional)
{
    return ReadRecord(source, key, out, optional);
}
} // namespace QRV
