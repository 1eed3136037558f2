/// Plain records in which hosts hand over whole models. Their fields are also their JSON keys.
#pragma once

#include <QRV/Color.h>
#include <QRV/Geometry.h>
#include <QRV/Ids.h>

#include <string>
#include <vector>

namespace QRV
{
// Where a field names a layer, material or texture, it is the place in the list of the same call, `INVALID_ID` for
// none.

struct TextureData
{
    std::string name;
    std::vector<char> texture; ///< the encoded image
};

struct MaterialData
{
    std::string name;
    Color color;
    double h_scale = 10.0;
    double v_scale = 10.0;
    std::uint64_t texture = INVALID_ID;
};

struct LayerData
{
    std::string name;
    bool displayed = true;
    std::uint64_t material = INVALID_ID;
};

struct InstanceData
{
    std::string name;
    std::uint64_t layer = INVALID_ID;
    std::uint64_t history = INVALID_ID; ///< the id of the History that it shows
    std::uint64_t material = INVALID_ID;
    Transf3d transform;
    bool hidden = false;
};

struct LoopData
{
    std::vector<Point3d> vertices;
    std::vector<bool> vertices_smooth; ///< one for each vertex, or none
    std::vector<bool> edges_smooth;
    bool is_arc = false;
    std::vector<Point2d> front_uv;
    std::vector<Point2d> back_uv;
};

struct FaceData
{
    std::uint64_t layer = INVALID_ID;
    UnitVector3d normal;
    LoopData outer_loop;
    std::vector<LoopData> inner_loops;
    std::vector<std::vector<Point3d>> openings;
    std::uint64_t front_material = INVALID_ID;
    std::uint64_t back_material = INVALID_ID;
    bool hidden = false;
};

/// A colour of four zeros means no style.
struct EdgeData
{
    std::uint64_t layer = INVALID_ID;
    Color color{0, 0, 0, 0};
    Point3d start_pt;
    Point3d end_pt;
    bool smooth = false;
    bool hidden = false;
};

/// A colour of four zeros means no style.
struct CurveData
{
    std::uint64_t layer = INVALID_ID;
    Color color{0, 0, 0, 0};
    bool is_arc = false;
    std::vector<Point3d> points;
    bool hidden = false;
};

struct ImageData
{
    std::string name;
    std::uint64_t layer = INVALID_ID;
    std::uint64_t texture = INVALID_ID;
    double width = 0.0;
    double height = 0.0;
    Transf3d transform;
    bool hidden = false;
};

struct FacetsBodyData
{
    std::vector<Point3d> m_points;
    std::vector<std::vector<std::uint64_t>> m_polygonIndices;
    std::vector<std::uint64_t> m_polygonSmoothingIds;
    std::vector<Color> m_colors;
    std::vector<std::uint64_t> m_polygonColorIndices;
    std::vector<Color> m_pointColors;
};
} // namespace QRV
