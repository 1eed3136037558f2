// Bytes as JSON: the first line names a type, the rest is read as that. What can be read must come back the same when
// it is written, as a value and as text.
#include "Target.h"

#include <QRV/JSONConversion.h>
#include <QRV/ObjectTypes.h>

#include <algorithm>
#include <array>

namespace
{
using namespace QRV;
using nlohmann::json;

/// What a value becomes when it is written and read again.
template <class T>
json ReadBack(const json& written)
{
    T value{};
    if (!from_json_impl<T>::f(written, "", value, false))
        fuzz::Fail("what was written cannot be read: " + written.dump());
    return to_json_impl<T>::f(value);
}

template <class T>
void ExpectRoundTrip(const T& value)
{
    const json written = to_json_impl<T>::f(value);
    const std::string strText = written.dump();
    if (ReadBack<T>(written) != written || ReadBack<T>(json::parse(strText)) != written)
        fuzz::Fail("read again it is not the same: " + strText);
}

/// The foot of the origin is computed, so that only the normal comes back to the bit.
void ExpectRoundTrip(const Plane& value)
{
    if (ReadBack<Plane>(to_json_impl<Plane>::f(value))["normal"] != to_json_impl<UnitVector3d>::f(value.normal))
        fuzz::Fail("the normal of a plane changes");
}

/// Reads the document itself, and what it holds under "key", where a record may stand as text.
template <class T>
void Read(const json& document)
{
    for (const char* pKey : {"", "key"})
        for (const bool bOptional : {false, true})
            try
            {
                T value{};
                if (from_json_impl<T>::f(document, pKey, value, bOptional) && !bOptional)
                    ExpectRoundTrip(value);
            }
            catch (const json::exception&)
            {
            }
}

struct ReadableType
{
    std::string_view strName;
    void (*read)(const json&);
};

constexpr std::array kTypes{
    ReadableType{"bool", Read<bool>},
    ReadableType{"int", Read<int>},
    ReadableType{"id", Read<std::uint64_t>},
    ReadableType{"double", Read<double>},
    ReadableType{"float", Read<float>},
    ReadableType{"text", Read<std::string>},
    ReadableType{"byte", Read<char>},
    ReadableType{"Point2d", Read<Point2d>},
    ReadableType{"Vector2d", Read<Vector2d>},
    ReadableType{"Point3d", Read<Point3d>},
    ReadableType{"Vector3d", Read<Vector3d>},
    ReadableType{"UnitVector3d", Read<UnitVector3d>},
    ReadableType{"Line3d", Read<Line3d>},
    ReadableType{"Plane", Read<Plane>},
    ReadableType{"Interval3d", Read<Interval3d>},
    ReadableType{"Transf3d", Read<Transf3d>},
    ReadableType{"Color", Read<Color>},
    ReadableType{"ObjectHistoryID", Read<ObjectHistoryID>},
    ReadableType{"GroupInstancePath", Read<GroupInstancePath>},
    ReadableType{"Result", Read<Result>},
    ReadableType{"any", Read<utils::any>},
    ReadableType{"anys", Read<std::map<std::string, utils::any>>},
    ReadableType{"nObjectType", Read<nObjectType>},
    ReadableType{"nConvexity", Read<nConvexity>},
    ReadableType{"nModelChangeType", Read<nModelChangeType>},
    ReadableType{"ids", Read<std::vector<std::uint64_t>>},
    ReadableType{"bools", Read<std::vector<bool>>},
    ReadableType{"texts", Read<std::vector<std::string>>},
    ReadableType{"bytes", Read<std::vector<char>>},
    ReadableType{"lists", Read<std::vector<std::vector<Point3d>>>},
    ReadableType{"corners", Read<std::array<Point3d, 4>>},
    ReadableType{"pairs", Read<std::vector<std::pair<std::string, double>>>},
    ReadableType{"TextureData", Read<TextureData>},
    ReadableType{"MaterialData", Read<MaterialData>},
    ReadableType{"LayerData", Read<LayerData>},
    ReadableType{"InstanceData", Read<InstanceData>},
    ReadableType{"LoopData", Read<LoopData>},
    ReadableType{"FaceData", Read<FaceData>},
    ReadableType{"EdgeData", Read<EdgeData>},
    ReadableType{"CurveData", Read<CurveData>},
    ReadableType{"ImageData", Read<ImageData>},
    ReadableType{"FacetsBodyData", Read<FacetsBodyData>},
    ReadableType{"ModelChangeData", Read<ModelChangeData>},
};
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::uint8_t* const pEnd = pData + nSize;
    const std::uint8_t* const pLineEnd = std::find(pData, pEnd, '\n');
    const json document = json::parse(pLineEnd, pEnd, nullptr, false); // discarded where the text is no JSON
    if (!document.is_discarded())
        fuzz::Choose(kTypes, fuzz::ToText(pData, static_cast<std::size_t>(pLineEnd - pData))).read(document);
    return 0;
}
