// The records of the geometry and id types.

#include "journal/JSONRecordReader.h"

namespace QRV
{
using nlohmann::json;

namespace
{
constexpr const char* kCoordinateKeys[] = {"x", "y", "z"};

json NewRecord(const char* pName)
{
    return {{kObjectName, pName}};
}

template <class T>
json WriteCoordinates(const char* pName, const T& value, std::size_t nDimensions)
{
    json record = NewRecord(pName);
    for (std::size_t i = 0; i < nDimensions; ++i)
        record[kCoordinateKeys[i]] = value[i];
    return record;
}

template <class T>
bool ReadCoordinates(const RecordReader& reader, T& out, std::size_t nDimensions)
{
    if (reader.IsBad())
        return reader.GetResultIfBad();
    for (std::size_t i = 0; i < nDimensions; ++i)
        if (!reader.Read(kCoordinateKeys[i], out[i]))
            return false;
    return true;
}

bool ReadByte(const json& record, const char* pKey, std::uint8_t& out)
{
    const json* pValue = FindJSONValue(record, pKey);
    std::int64_t nValue = 0;
    if (!pValue || !ReadJSONInteger(*pValue, 0, 255, nValue))
        return false;
    out = static_cast<std::uint8_t>(nValue);
    return true;
}
} // namespace

json ToJSON(const Point2d& value)
{
    return WriteCoordinates("Point2d", value, 2);
}

bool FromJSON(const json& source, const std::string& key, Point2d& out, bool optional)
{
    return ReadCoordinates(RecordReader(source, key, optional, "Point2d"), out, 2);
}

json ToJSON(const Vector2d& value)
{
    return WriteCoordinates("Vector2d", value, 2);
}

bool FromJSON(const json& source, const std::string& key, Vector2d& out, bool optional)
{
    return ReadCoordinates(RecordReader(source, key, optional, "Vector2d"), out, 2);
}

json ToJSON(const Point3d& value)
{
    return WriteCoordinates("Point3d", value, 3);
}

bool FromJSON(const json& source, const std::string& key, Point3d& out, bool optional)
{
    return ReadCoordinates(RecordReader(source, key, optional, "Point3d"), out, 3);
}

json ToJSON(const Vector3d& value)
{
    return WriteCoordinates("Vector3d", value, 3);
}

bool FromJSON(const json& source, const std::string& key, Vector3d& out, bool optional)
{
    return ReadCoordinates(RecordReader(source, key, optional, "Vector3d", "UnitVector3d"), out, 3);
}

json ToJSON(const UnitVector3d& value)
{
    return WriteCoordinates("UnitVector3d", value, 3);
}

bool FromJSON(const json& source, const std::string& key, UnitVector3d& out, bool optional)
{
    return ReadCoordinates(RecordReader(source, key, optional, "UnitVector3d", "Vector3d"), out, 3);
}

json ToJSON(const Line3d& value)
{
    json record = NewRecord("Line3d");
    record["point"] = ToJSON(value.point);
    record["vector"] = ToJSON(value.vector);
    return record;
}

bool FromJSON(const json& source, const std::string& key, Line3d& out, bool optional)
{
    const RecordReader reader(source, key, optional, "Line3d");
    if (reader.IsBad())
        return reader.GetResultIfBad();
    return reader.Read("point", out.point) && reader.Read("vector", out.vector);
}

json ToJSON(const Plane& value)
{
    json record = NewRecord("Plane");
    record["point"] = ToJSON(value.project(Point3d()));
    record["normal"] = ToJSON(value.normal);
    return record;
}

bool FromJSON(const json& source, const std::string& key, Plane& out, bool optional)
{
    const RecordReader reader(source, key, optional, "Plane");
    if (reader.IsBad())
        return reader.GetResultIfBad();
    Point3d point;
    UnitVector3d normal;
    if (!reader.Read("point", point) || !reader.Read("normal", normal))
        return false;
    out = Plane(point, normal);
    return true;
}

json ToJSON(const Interval3d& value)
{
    json record = NewRecord("Interval3d");
    record["lower"] = ToJSON(value.lower);
    record["upper"] = ToJSON(value.upper);
    return record;
}

bool FromJSON(const json& source, const std::string& key, Interval3d& out, bool optional)
{
    const RecordReader reader(source, key, optional, "Interval3d");
    if (reader.IsBad())
        return reader.GetResultIfBad();
    return reader.Read("lower", out.lower) && reader.Read("upper", out.upper);
}

json ToJSON(const Transf3d& value)
{
    json record = NewRecord("Transf3d");
    json& data = record["data"] = json::array();
    for (unsigned nRow = 0; nRow < 4; ++nRow)
        for (unsigned nColumn = 0; nColumn < 4; ++nColumn)
            data.push_back(value(nRow, nColumn));
    return record;
}

bool FromJSON(const json& source, const std::string& key, Transf3d& out, bool optional)
{
    const RecordReader reader(source, key, optional, "Transf3d");
    if (reader.IsBad())
        return reader.GetResultIfBad();
    std::vector<double> aElements;
    if (!reader.Read("data", aElements) || aElements.size() != 16)
        return false;
    for (unsigned i = 0; i < 16; ++i)
        out.setValue(i / 4, i % 4, aElements[i]);
    return true;
}

json ToJSON(const Color& value)
{
    json record = NewRecord("Color");
    record["r"] = value.r;
    record["g"] = value.g;
    record["b"] = value.b;
    record["a"] = value.a;
    return record;
}

bool FromJSON(const json& source, const std::string& key, Color& out, bool optional)
{
    const RecordReader reader(source, key, optional, "Color");
    if (reader.IsBad())
        return reader.GetResultIfBad();
    const json& record = reader.GetValue();
    return ReadByte(record, "r", out.r) && ReadByte(record, "g", out.g) && ReadByte(record, "b", out.b) &&
           ReadByte(record, "a", out.a);
}

json ToJSON(const ObjectHistoryID& value)
{
    json record = NewRecord("ObjectHistoryID");
    record["History"] = ToJSON(value.m_nHistoryID);
    record["Object"] = ToJSON(value.m_nObjectID);
    return record;
}

bool FromJSON(const json& source, const std::string& key, ObjectHistoryID& out, bool optional)
{
    const RecordReader reader(source, key, optional, "ObjectHistoryID", nullptr, nJSONArray::nAllowed);
    if (reader.IsBad())
        return reader.GetResultIfBad();
    if (!reader.GetValue().is_array())
        return reader.Read("History", out.m_nHistoryID) && reader.Read("Object", out.m_nObjectID);
    const json& ids = reader.GetValue();
    return ids.size() == 2 && FromJSON(ids[0], std::string(), out.m_nHistoryID, false) &&
           FromJSON(ids[1], std::string(), out.m_nObjectID, false);
}

json ToJSON(const GroupInstancePath& value)
{
    json record = NewRecord("GroupInstancePath");
    record["ids"] = to_json_impl<std::vector<ObjectHistoryID>>::f(value.GetObjectHistoryIDs());
    return record;
}

bool FromJSON(const json& source, const std::string& key, GroupInstancePath& out, bool optional)
{
    const RecordReader reader(source, key, optional, "GroupInstancePath", nullptr, nJSONArray::nAllowed);
    if (reader.IsBad())
        return reader.GetResultIfBad();
    std::vector<ObjectHistoryID> aIDs;
    const std::string strKey = reader.GetValue().is_array() ? "" : "ids";
    if (!from_json_impl<std::vector<ObjectHistoryID>>::f(reader.GetValue(), strKey, aIDs, false))
        return false;
    out = GroupInstancePath(std::move(aIDs));
    return true;
}

json ToJSON(const Result& value)
{
    json record = NewRecord("QRV::Result");
    record["good"] = value.IsGood();
    record["error"] = static_cast<std::int64_t>(value.GetErrorCode());
    return record;
}

bool FromJSON(const json& source, const std::string& key, Result& out, bool optional)
{
    const RecordReader reader(source, key, optional, "QRV::Result");
    if (reader.IsBad())
        return reader.GetResultIfBad();
    Result::nResultType nType = Result::nOK;
    if (!reader.Read("error", nType))
        return false;
    out = Result(nType);
    return true;
}
} // namespace QRV
