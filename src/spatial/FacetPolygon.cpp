#include "spatial/FacetPolygon.h"

#include "spatial/EarClipping.h"
#include "spatial/FacetNodes.h"
#include "spatial/HoleBridging.h"
#include "spatial/LoopMeshing.h"

#include <QRV/Plane.h>

#include <cmath>

namespace QRV
{
namespace
{
constexpr double kTurnTolerance = 1e-12; // the sine of a turn that counts as straight on or straight back

bool IsReflex(const UnitVector3d& in, const UnitVector3d& out, const UnitVector3d& normal)
{
    const double dSine = (in * out) % normal;
    const bool bTurnsBack = std::abs(dSine) <= kTurnTolerance && in % out < 0.0;
    return dSine < -kTurnTolerance || bTurnsBack;
}

/// The reflex corners of a loop as far as they decide whether it can be fanned.
struct ReflexCorners
{
    std::size_t nCount = 0; ///< 0, 1, or 2 for more
    std::size_t nFirst = 0;
};

ReflexCorners FindReflexCorners(std::span<const FacetCorner> aLoop, const UnitVector3d& normal)
{
    ReflexCorners reflex;
    if (aLoop.size() <= 3)
        return reflex;
    UnitVector3d in(*aLoop.front().pPoint - *aLoop.back().pPoint, true);
    for (std::size_t i = 0; i < aLoop.size() && reflex.nCount < 2; ++i)
    {
        const Point3d& next = *aLoop[i + 1 < aLoop.size() ? i + 1 : 0].pPoint;
        const UnitVector3d out(next - *aLoop[i].pPoint, true);
        if (IsReflex(in, out, normal) && reflex.nCount++ == 0)
            reflex.nFirst = i;
        in = out;
    }
    return reflex;
}

/// Triangles from one corner to all others; from a single reflex corner all of the polygon is in sight.
void AppendFan(std::span<const FacetCorner> aLoop, std::size_t nApex, std::vector<std::uint32_t>& aTriangles)
{
    const auto getVertex = [&](std::size_t i) { return aLoop[(nApex + i) % aLoop.size()].nVertex; };
    for (std::size_t i = 1; i + 1 < aLoop.size(); ++i)
        aTriangles.insert(aTriangles.end(), {getVertex(0), getVertex(i), getVertex(i + 1)});
}
} // namespace

bool TriangulateLoops(std::span<const FacetCorner> aCorners, std::span<const std::uint32_t> aLoopEnds,
                      const Plane& plane, std::vector<std::uint32_t>& aTriangles)
{
    if (aLoopEnds.empty() || aLoopEnds.front() < 3)
        return true;

    const bool bHoles = aLoopEnds.back() > aLoopEnds.front();
    const std::span<const FacetCorner> aOuter = aCorners.first(aLoopEnds.front());
    const ReflexCorners reflex = bHoles ? ReflexCorners() : FindReflexCorners(aOuter, plane.normal);
    if (!bHoles && reflex.nCount < 2)
    {
        AppendFan(aOuter, reflex.nFirst, aTriangles);
        return true;
    }

    FacetNodes nodes(aCorners, aLoopEnds, plane);
    if (bHoles)
        BridgeHoles(nodes);
    const std::size_t nBefore = aTriangles.size();
    if (ClipEars(nodes, false, aTriangles))
        return true;
    aTriangles.resize(nBefore);
    nodes.Relink();
    if (ClipEars(nodes, true, aTriangles))
        return true;
    aTriangles.resize(nBefore);
    return MeshLoops(nodes, aTriangles);
}
} // namespace QRV
