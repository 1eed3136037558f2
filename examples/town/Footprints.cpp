#include "Footprints.h"

#include "support/Session.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>

namespace examples
{
using namespace QRV;

namespace
{
Ring ReadRing(const nlohmann::json& json)
{
    Ring ring;
    for (const auto& point : json)
        ring.emplace_back(point.at(0).get<double>(), point.at(1).get<double>());
    return ring;
}

struct Extent
{
    double dLeft = 1e30, dBottom = 1e30, dRight = -1e30, dTop = -1e30;

    void Add(const Footprint& footprint)
    {
        for (const Point2d& p : footprint.outer)
        {
            dLeft = std::min(dLeft, p.x);
            dBottom = std::min(dBottom, p.y);
            dRight = std::max(dRight, p.x);
            dTop = std::max(dTop, p.y);
        }
    }
    double GetWidth() const { return dRight - dLeft; }
    double GetDepth() const { return dTop - dBottom; }
};

double ComputeArea(const Ring& ring)
{
    double dTwice = 0.0;
    for (std::size_t i = 2; i < ring.size(); ++i)
        dTwice += (ring[i - 1].x - ring[0].x) * (ring[i].y - ring[0].y) -
                  (ring[i].x - ring[0].x) * (ring[i - 1].y - ring[0].y);
    return std::abs(dTwice) / 2.0;
}

void Move(Footprint& footprint, double dX, double dY)
{
    const auto moveRing = [&](Ring& ring)
    {
        for (Point2d& p : ring)
            p = Point2d(p.x + dX, p.y + dY);
    };
    moveRing(footprint.outer);
    std::for_each(footprint.aHoles.begin(), footprint.aHoles.end(), moveRing);
}
} // namespace

std::vector<Footprint> ReadFootprints(const std::filesystem::path& path, double dDefaultHeight)
{
    std::ifstream stream(path);
    Expect(stream.good(), "cannot read " + path.string());
    const nlohmann::json json = nlohmann::json::parse(stream);
    std::vector<Footprint> aFootprints;
    for (const auto& entry : json.at("footprints"))
    {
        Footprint footprint;
        footprint.strID = entry.at("id").get<std::string>();
        footprint.outer = ReadRing(entry.at("outer"));
        for (const auto& hole : entry.at("holes"))
            footprint.aHoles.push_back(ReadRing(hole));
        footprint.dArea = entry.at("area").get<double>();
        const auto height = entry.find("height");
        footprint.dHeight = height == entry.end() || height->is_null() ? dDefaultHeight : height->get<double>();
        aFootprints.push_back(std::move(footprint));
    }
    return aFootprints;
}

double ComputeArea(const Footprint& footprint)
{
    double dArea = ComputeArea(footprint.outer);
    for (const Ring& hole : footprint.aHoles)
        dArea -= ComputeArea(hole);
    return dArea;
}

void LayOutInRows(std::vector<Footprint>& aFootprints, double dGap)
{
    double dCovered = 0.0;
    double dWidest = 0.0;
    for (const Footprint& footprint : aFootprints)
    {
        Extent box;
        box.Add(footprint);
        dCovered += (box.GetWidth() + dGap) * (box.GetDepth() + dGap);
        dWidest = std::max(dWidest, box.GetWidth());
    }
    const double dRowWidth = std::max(dWidest, std::sqrt(dCovered));

    double dX = 0.0, dY = 0.0, dRowDepth = 0.0;
    for (Footprint& footprint : aFootprints)
    {
        Extent box;
        box.Add(footprint);
        if (dX > 0.0 && dX + box.GetWidth() > dRowWidth)
        {
            dX = 0.0;
            dY += dRowDepth + dGap;
            dRowDepth = 0.0;
        }
        Move(footprint, dX - box.dLeft, dY - box.dBottom);
        dX += box.GetWidth() + dGap;
        dRowDepth = std::max(dRowDepth, box.GetDepth());
    }
}

void AppendCopies(std::vector<Footprint>& aFootprints, std::size_t nCopies, double dGap)
{
    Extent all;
    for (const Footprint& footprint : aFootprints)
        all.Add(footprint);
    const std::vector<Footprint> aOriginals = aFootprints;
    for (std::size_t i = 1; i < nCopies; ++i)
        for (Footprint copy : aOriginals)
        {
            Move(copy, double(i) * (all.GetWidth() + dGap), 0.0);
            aFootprints.push_back(std::move(copy));
        }
}

Point2d MoveToBasePoint(std::vector<Footprint>& aFootprints)
{
    Extent all;
    for (const Footprint& footprint : aFootprints)
        all.Add(footprint);
    const double dX = std::round((all.dLeft + all.dRight) / 2.0);
    const double dY = std::round((all.dBottom + all.dTop) / 2.0);
    for (Footprint& footprint : aFootprints)
        Move(footprint, -dX, -dY);
    return {dX, dY};
}
} // namespace examples
