#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "geometry/Finite.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "operations/EdgeSketch.h"
#include "operations/Outlines.h"

#include <QRV/API.h>

namespace QRV
{
namespace
{
/// How lines that a host draws one by one are inserted.
EdgeSketchOptions GetLineOptions()
{
    EdgeSketchOptions options;
    options.bMergeBodies = true;
    options.bClearSmooth = true;
    return options;
}

bool AreUsable(std::initializer_list<Point3d> aPoints, Result& result)
{
    for (const Point3d& p : aPoints)
        if (!IsUsable(p))
        {
            result.SetErrorCode(Result::nBadInput);
            return false;
        }
    return true;
}
} // namespace

Result APICreateVertex(std::uint64_t nHistoryID, const Point3d& pt, std::uint64_t& nVertexID)
{
    return ModifyingCall("APICreateVertex", nHistoryID, pt, Out{nVertexID})
        .Run(
            [&](History& history, Result& result) {
                return AreUsable({pt}, result) &&
                       GiveID(FindOrCreateVertex(history, pt, {.bSplitEdges = true}), nVertexID);
            });
}

Result APIConnectPoint3ds(std::uint64_t nHistoryID, const Point3d& p0, const Point3d& p1)
{
    return ModifyingCall("APIConnectPoint3ds", nHistoryID, p0, p1)
        .Run(
            [&](History& history, Result& result)
            {
                if (AreUsable({p0, p1}, result))
                    ConnectPoints(history, p0, p1, GetLineOptions());
            });
}

Result APIConnectVertexAndPoint3d(std::uint64_t nHistoryID, std::uint64_t nVertexID, const Point3d& pt)
{
    return ModifyingCall("APIConnectVertexAndPoint3d", nHistoryID, nVertexID, pt)
        .Run(
            [&](History& history, Result& result)
            {
                if (!AreUsable({pt}, result) || !FindArgument<Vertex>(history, nVertexID, result))
                    return;
                Vertex* pLast = FindOrCreateVertex(history, pt, {.bSplitEdges = true, .bMergeBodies = true});
                auto* pFirst = history.Get<Vertex>(nVertexID);
                ConnectVerticesAlongLine(history, pFirst, pLast, GetLineOptions());
            });
}

Result APIConnectVertices(std::uint64_t nHistoryID, std::uint64_t nVertex0, std::uint64_t nVertex1)
{
    return ModifyingCall("APIConnectVertices", nHistoryID, nVertex0, nVertex1)
        .Run(
            [&](History& history, Result& result)
            {
                auto* pFirst = FindArgument<Vertex>(history, nVertex0, result);
                auto* pLast = FindArgument<Vertex>(history, nVertex1, result);
                if (pFirst && pLast)
                    ConnectVerticesAlongLine(history, pFirst, pLast, GetLineOptions());
            });
}

Result APICreatePolyline(std::uint64_t nHistoryID, const std::vector<Point3d>& aPoints, std::uint64_t& nFaceID,
                         bool bClosed)
{
    return ModifyingCall("APICreatePolyline", nHistoryID, aPoints, Out{nFaceID}, bClosed)
        .Run(
            [&](History& history, Result& result)
            {
                // No face is no failure: the polyline may be open, or not flat.
                GiveID(CreatePolyline(history, aPoints, bClosed, result), nFaceID);
            });
}

Result APICreateRectangle(std::uint64_t nHistoryID, const Point3d& p0, const Point3d& p1, const Point3d& p2,
                          std::vector<Point3d>& aCorners, bool bPointsOnly)
{
    return ModifyOrComputeCall(bPointsOnly, "APICreateRectangle", nHistoryID, p0, p1, p2, Append{aCorners}, bPointsOnly)
        .Run([&](Result& result) { return ComputeRectangle(p0, p1, p2, aCorners, result); },
             [&](History& history, Result&) { return CreateRectangle(history, aCorners); });
}

Result APICreateCircleOrArc(std::uint64_t nHistoryID, double dRadius, const Point3d& center,
                            std::vector<Point3d>& aPoints, const UnitVector3d& xAxis, const UnitVector3d& yAxis,
                            double dStartAngle, double dEndAngle, double dAccuracy, bool bPointsOnly,
                            const Transf3d& transform, std::uint64_t nMinSegments)
{
    const ArcData arc{dRadius, center, xAxis, yAxis, dStartAngle, dEndAngle, dAccuracy, transform, nMinSegments};
    std::vector<Point3d> aArc;
    return ModifyOrComputeCall(bPointsOnly, "APICreateCircleOrArc", nHistoryID, dRadius, center, Append{aPoints}, xAxis,
                               yAxis, dStartAngle, dEndAngle, dAccuracy, bPointsOnly, transform, nMinSegments)
        .Run(
            [&](Result& result)
            {
                if (!ComputeArc(arc, aArc, result))
                    return false;
                aPoints.insert(aPoints.end(), aArc.begin(), aArc.end());
                return true;
            },
            [&](History& history, Result&) { return CreateArc(history, arc, aArc); });
}

Result APICreateCircleOrArcFromPoints(std::uint64_t nHistoryID, const Point3d& p1, const Point3d& p2, const Point3d& p3,
                                      std::vector<Point3d>& aPoints, double dAccuracy, bool bPointsOnly,
                                      const Transf3d& transform, std::uint64_t nMinSegments, bool bFullCircle)
{
    ArcData arc;
    arc.dAccuracy = dAccuracy;
    arc.transform = transform;
    arc.nMinSegments = nMinSegments;
    std::vector<Point3d> aArc;
    return ModifyOrComputeCall(bPointsOnly, "APICreateCircleOrArcFromPoints", nHistoryID, p1, p2, p3, Append{aPoints},
                               dAccuracy, bPointsOnly, transform, nMinSegments, bFullCircle)
        .Run(
            [&](Result& result)
            {
                if (!ArcFromPoints(p1, p2, p3, bFullCircle, arc, result) || !ComputeArc(arc, aArc, result))
                    return false;
                aPoints.insert(aPoints.end(), aArc.begin(), aArc.end());
                return true;
            },
            [&](History& history, Result&) { return CreateArc(history, arc, aArc); });
}
} // namespace QRV
