#include "journal/JournalText.h"

#include "geometry/NumberText.h"

#include <QRV/JSONConversion.h>
#include <QRV/ObjectTypes.h>

#include <initializer_list>

namespace QRV
{
namespace
{
std::string Dump(const nlohmann::json& json)
{
    return json.dump(-1, ' ', false);
}

std::string CallText(const char* pName, std::initializer_list<double> aNumbers)
{
    std::string strText;
    strText.reserve(96);
    strText.append("QRV.Geom.").append(pName);
    const char* pSeparator = "(";
    for (const double dNumber : aNumbers)
    {
        strText.append(pSeparator);
        AppendNumber(strText, dNumber);
        pSeparator = ", ";
    }
    return strText.append(")");
}
} // namespace

std::string JournalIDText(std::uint64_t nID)
{
    return nID == INVALID_ID || nID == kInvalidIDInJSON ? "QRV.INVALID_ID" : std::to_string(nID);
}

std::string JournalText(double dValue)
{
    return Dump(dValue);
}

std::string JournalText(const std::string& strValue)
{
    return Dump(strValue);
}

std::string JournalText(const char* pValue)
{
    return pValue ? JournalText(std::string(pValue)) : "undefined";
}

std::string JournalText(const Point3d& value)
{
    return CallText("Point3d", {value[0], value[1], value[2]});
}

std::string JournalText(const Vector3d& value)
{
    return CallText("Vector3d", {value[0], value[1], value[2]});
}

std::string JournalText(const UnitVector3d& value)
{
    return CallText("UnitVector3d", {value[0], value[1], value[2]});
}

std::string JournalText(const Vector2d& value)
{
    return CallText("Vector2d", {value[0], value[1]});
}

std::string JournalText(const Line3d& value)
{
    return "QRV.Geom.Line3d(" + JournalText(value.point) + ", " + JournalText(value.vector) + ")";
}

std::string JournalText(const Plane& value)
{
    return "QRV.Geom.Plane(" + JournalText(value.project(Point3d())) + ", " + JournalText(value.normal) + ")";
}

std::string JournalText(const Transf3d& value)
{
    return "QRV.Geom.MakeRigidTransform(" + JournalText(value.origin()) + ", " + JournalText(value.xDir()) + ", " +
           JournalText(value.yDir()) + ", " + JournalText(value.zDir()) + ")";
}

std::string JournalText(const Point2d& value)
{
    return Dump(to_json_impl<Point2d>::f(value));
}

std::string JournalText(const Interval3d& value)
{
    return Dump(to_json_impl<Interval3d>::f(value));
}

std::string JournalText(const ObjectHistoryID& value)
{
    return Dump(to_json_impl<ObjectHistoryID>::f(value));
}

std::string JournalText(const GroupInstancePath& value)
{
    return Dump(to_json_impl<GroupInstancePath>::f(value));
}

std::string JournalText(const Color& value)
{
    return Dump(to_json_impl<Color>::f(value));
}

template <class T>
std::string JournalText(const std::vector<T>& aValues)
{
    return Dump(to_json_impl<std::vector<T>>::f(aValues));
}

template std::string JournalText(const std::vector<std::uint64_t>&);
template std::string JournalText(const std::vector<nObjectType>&);
template std::string JournalText(const std::vector<ObjectHistoryID>&);
template std::string JournalText(const std::vector<Point3d>&);
template std::string JournalText(const std::vector<Plane>&);
template std::string JournalText(const std::vector<char>&);
template std::string JournalText(const StringPairs&);
template std::string JournalText(const TexturePairs&);
template std::string JournalText(const std::vector<std::pair<std::string, double>>&);

template <class T, std::size_t kCount>
std::string JournalText(const std::array<T, kCount>& aValues)
{
    return Dump(to_json_impl<std::array<T, kCount>>::f(aValues));
}

template std::string JournalText(const std::array<Point3d, 4>&);
template std::string JournalText(const std::array<std::uint64_t, 2>&);
} // namespace QRV
