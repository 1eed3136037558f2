/// Plausible arguments for whatever an exported call takes, from a seed.
#pragma once

#include <QRV/API.h>
#include <QRV/Journaling.h>

#include <array>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tools
{
/// A source of arguments for `WithSlots`. Numbers have few enough digits to be the same when they are read from a
/// journal; ids are mostly those of live objects.
class Samples
{
public:
    Samples(unsigned nSeed, std::string strPath) : m_random(nSeed), m_strPath(std::move(strPath)) {}

    /// The History that calls are made on.
    std::uint64_t m_nHistory = QRV::INVALID_ID;

    std::size_t Below(std::size_t nEnd) { return m_random() % nEnd; }

    template <class T>
    void Read(std::string_view strName, std::optional<T>& out)
    {
        if (Below(3) > 0)
            Read(strName, out.emplace());
    }

    void Read(std::string_view strName, std::uint64_t& out)
    {
        if (strName.starts_with("nHistoryID"))
            out = m_nHistory;
        else if (const std::size_t nKind = Below(8); nKind == 0)
            out = QRV::INVALID_ID;
        else if (nKind < 3)
            out = Below(12);
        else
        {
            const QRV::QRVJournalingSuspend aside("QRV");
            std::vector<std::uint64_t> aLive;
            QRV::APIGetAllObjectsByTypeReadOnly(m_nHistory, QRV::nUnspecifiedType, aLive);
            out = aLive.empty() ? 7 : aLive[Below(aLive.size())];
        }
    }
    void Read(std::string_view, bool& out) { out = Below(2) == 0; }
    void Read(std::string_view, char& out) { out = static_cast<char>(Below(256)); }
    void Read(std::string_view, int& out) { out = static_cast<int>(Below(5)) - 2; }
    void Read(std::string_view, double& out) { out = (static_cast<double>(Below(48)) - 8.0) / 8.0; }
    void Read(std::string_view, float& out) { out = static_cast<float>(Below(9)) / 8.0f; }
    void Read(std::string_view strName, std::string& out)
    {
        static const std::array<const char*, 6> kTexts{
            "", "wall", "a \"b\" \\ c", "two\nlines\t\x01", "\xc3\xbc \xe2\x82\xac", "]}),;"};
        out = strName == "path" ? m_strPath : kTexts[Below(kTexts.size())];
    }
    void Read(std::string_view strName, QRV::Point3d& out) { ReadAll(strName, out.x, out.y, out.z); }
    void Read(std::string_view strName, QRV::Point2d& out) { ReadAll(strName, out.x, out.y); }
    void Read(std::string_view strName, QRV::Vector2d& out) { ReadAll(strName, out.x, out.y); }
    void Read(std::string_view strName, QRV::Vector3d& out) { ReadAll(strName, out.x, out.y, out.z); }
    void Read(std::string_view, QRV::UnitVector3d& out)
    {
        QRV::Vector3d axis;
        axis[static_cast<unsigned>(Below(3))] = Below(2) == 0 ? 1.0 : -1.0;
        out = QRV::UnitVector3d(axis, true);
    }
    void Read(std::string_view strName, QRV::Line3d& out) { ReadAll(strName, out.point, out.vector); }
    void Read(std::string_view strName, QRV::Plane& out)
    {
        QRV::Point3d point;
        QRV::UnitVector3d normal;
        ReadAll(strName, point, normal);
        out = QRV::Plane(point, normal);
    }
    void Read(std::string_view strName, QRV::Transf3d& out)
    {
        QRV::Vector3d move;
        Read(strName, move);
        out = QRV::Transf3d::translation(move);
    }
    void Read(std::string_view, QRV::Color& out)
    {
        for (std::uint8_t* pPart : {&out.r, &out.g, &out.b, &out.a})
            *pPart = static_cast<std::uint8_t>(Below(256));
    }
    void Read(std::string_view strName, QRV::ObjectHistoryID& out)
    {
        out.m_nHistoryID = m_nHistory;
        Read(strName, out.m_nObjectID);
    }
    template <class T>
    void Read(std::string_view strName, std::vector<T>& out)
    {
        out.resize(Below(5));
        for (T& element : out)
            Read(strName, element);
    }
    template <class T, std::size_t kCount>
    void Read(std::string_view strName, std::array<T, kCount>& out)
    {
        for (T& element : out)
            Read(strName, element);
    }
    template <class First, class Second>
    void Read(std::string_view strName, std::pair<First, Second>& out)
    {
        ReadAll(strName, out.first, out.second);
    }
    /// Enumerations by their low values; of any other type the default.
    template <class T>
    void Read(std::string_view, T& out)
    {
        if constexpr (std::is_enum_v<T>)
            out = static_cast<T>(Below(8));
    }

private:
    template <class... Parts>
    void ReadAll(std::string_view strName, Parts&... parts)
    {
        (Read(strName, parts), ...);
    }

    std::mt19937 m_random;
    std::string m_strPath;
};
} // namespace tools
