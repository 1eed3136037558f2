#include "archive/TextFormatter.h"

#include "archive/ArchiveBase.inl"
#include "geometry/NumberText.h"

#include <cmath>

namespace QRV
{
namespace
{
std::string GetNumbersText(std::string_view form, std::initializer_list<double> aNumbers)
{
    std::string strText(form);
    const char* pSeparator = "(";
    for (const double d : aNumbers)
    {
        strText.append(pSeparator);
        AppendNumber(strText, std::abs(d) <= kLinearTolerance ? 0.0 : d);
        pSeparator = ", ";
    }
    return strText.append(")");
}

std::string GetText(const Point3d& p)
{
    return GetNumbersText("point3d", {p.x, p.y, p.z});
}

std::string GetText(double d)
{
    std::string strText;
    AppendNumber(strText, std::abs(d) <= kLinearTolerance ? 0.0 : d);
    return strText;
}
} // namespace

template class ArchiveBase_T<TextFormatter>;

bool TextFormatter::Print(std::string_view text)
{
    m_stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    return m_stream.good();
}

bool TextFormatter::PrintValue(const char* pName, std::string_view value)
{
    std::string strLine = GetIndent();
    if (pName)
        strLine.append(pName).append(" ");
    return Print(strLine.append(value).append("\n"));
}

bool TextFormatter::PrintNumbers(const char* pName, const char* pForm, std::initializer_list<double> aNumbers)
{
    return PrintValue(pName, GetNumbersText(pForm, aNumbers));
}

bool TextFormatter::OpenList(std::size_t nSize, const char* pName)
{
    return PrintValue(pName, std::to_string(nSize).insert(0, 1, '[').append("] {"));
}

bool TextFormatter::CloseList()
{
    return PrintValue(nullptr, "}");
}

bool TextFormatter::WriteUInt(std::uint32_t n, const char* pName)
{
    return PrintValue(pName, std::to_string(n));
}

bool TextFormatter::WriteObject(const Object* pObject, const char* pName)
{
    if (!pObject)
        return PrintValue(pName, "NULL object");
    std::string strText = std::string(pObject->GetName()) + "-" + std::to_string(pObject->GetID());
    if (GetDepth() == 0)
        strText += " (" + std::to_string(pObject->GetSizeInBytes(true, true)) +
                   " bytes in memory, not accounting for possible alignment; " +
                   std::to_string(pObject->GetSizeInBytes(false, SavesDerivable())) + " bytes binary serialized)";
    return PrintValue(pName, strText);
}

bool TextFormatter::WriteTransf3d(const Transf3d& t, const char* pName)
{
    return PrintNumbers(pName, "Transf",
                        {t(0, 0), t(0, 1), t(0, 2), t(0, 3), t(1, 0), t(1, 1), t(1, 2), t(1, 3), t(2, 0), t(2, 1),
                         t(2, 2), t(2, 3), t(3, 0), t(3, 1), t(3, 2), t(3, 3)});
}

bool TextFormatter::WriteVector3d(const Vector3d& v, const char* pName)
{
    return PrintNumbers(pName, "Vector", {v.x, v.y, v.z});
}

bool TextFormatter::WriteUnitVector3d(const UnitVector3d& v, const char* pName)
{
    return PrintNumbers(pName, "unitVector", {v.x, v.y, v.z});
}

bool TextFormatter::WritePoint3d(const Point3d& p, const char* pName)
{
    return PrintValue(pName, GetText(p));
}

bool TextFormatter::WritePoint2d(const Point2d& p, const char* pName)
{
    return PrintNumbers(pName, "point2d", {p.x, p.y});
}

bool TextFormatter::WriteInterval3d(const Interval3d& box, const char* pName)
{
    if (box.isNull())
        return PrintValue(pName, "interval3d(UNDEFINED)");
    return PrintValue(pName, "interval3d(" + GetText(box.lower) + ", " + GetText(box.upper) + ")");
}

bool TextFormatter::WriteColor(const Color& color, const char* pName)
{
    return PrintNumbers(pName, "color", {double(color.r), double(color.g), double(color.b), double(color.a)});
}

bool TextFormatter::WriteString(const std::string& str, const char* pName)
{
    return PrintValue(pName, std::string("string(\"").append(str).append("\")"));
}

bool TextFormatter::WriteDouble(double d, const char* pName)
{
    return PrintValue(pName, GetText(d));
}

bool TextFormatter::WriteFloat(float f, const char* pName)
{
    return WriteDouble(f, pName);
}

bool TextFormatter::WriteID(std::uint64_t nID, const char* pName)
{
    return PrintValue(pName, std::to_string(nID));
}

bool TextFormatter::WriteBool(bool b, const char* pName)
{
    return PrintValue(pName, b ? "true" : "false");
}
} // namespace QRV
