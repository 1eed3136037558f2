#include "operations/Outlines.h"

#include "geometry/Finite.h"
#include "geometry/Trigonometry.h"
#include "history/TemporaryTreesScope.h"
#include "model/CircleAttribute.h"
#include "operations/EdgeSketch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QRV
{
namespace
{
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kMinRadius = 1e-6;
constexpr double kFullCircle = 6.283185307178586;
constexpr double kMaxSweep = 6.283185307180586;
constexpr double kCoarsestAccuracy = 0.75; ///< a triangle; from here up the value counts quarter circles
constexpr double kMaxSegments = 1e6;

Interval3d BoxOfPoints(const std::vector<Point3d>& aPoints)
{
    Interval3d box;
    for (const Point3d& p : aPoints)
        box += p;
    return box;
}

bool Refuse(Result& result)
{
    result.SetErrorCode(Result::nBadInput);
    return false;
}

/// Draws straight ways from point to point; a vertex that was merged away meanwhile is found again at its place.
class OutlinePen
{
public:
    OutlinePen(History& history, const EdgeSketchOptions& options) : m_history(history), m_options(options) {}

    void MoveTo(const Point3d& p, bool bSmooth)
    {
        m_pLast = FindOrCreateVertex(m_history, p, {.bSplitEdges = true, .bSmooth = bSmooth});
        Note(p);
    }

    void LineTo(const Point3d& p, bool bSmooth)
    {
        Vertex* pNext = FindOrCreateVertex(m_history, p, {.bSplitEdges = true, .bSmooth = bSmooth});
        Vertex* pFrom = m_history.Get<Vertex>(m_nLast);
        if (!pFrom)
            pFrom = FindOrCreateVertex(m_history, m_place, {});
        ConnectVerticesAlongLine(m_history, pFrom, pNext, m_options);
        m_pLast = pNext;
        Note(p);
    }

private:
    void Note(const Point3d& p)
    {
        m_nLast = m_pLast->GetID();
        m_place = p;
    }

    History& m_history;
    const EdgeSketchOptions& m_options;
    Vertex* m_pLast = nullptr;
    std::uint64_t m_nLast = INVALID_ID;
    Point3d m_place;
};

Face* FindLowestFace(History& history)
{
    std::vector<Face*> aFaces;
    history.GetFaceTree().GetElements(aFaces);
    const auto it = std::min_element(aFaces.begin(), aFaces.end(), ByObjectID());
    return it == aFaces.end() ? nullptr : *it;
}

double GetSweep(const ArcData& arc)
{
    return arc.dEndAngle - arc.dStartAngle;
}

bool IsFullCircle(const ArcData& arc)
{
    return GetSweep(arc) > kFullCircle;
}

bool AreAxesUsable(const UnitVector3d& x, const UnitVector3d& y)
{
    if (x.isExactNull() || y.isExactNull())
        return false;
    constexpr double kOffUnit = 1e-6; // float32 coordinates pass
    if (std::abs(x.lengthSqrd() - 1.0) > kOffUnit || std::abs(y.lengthSqrd() - 1.0) > kOffUnit)
        return false;
    return std::abs(x % y) <= kLinearTolerance || (x * y).lengthSqrd() >= kPointToleranceSqrd;
}

bool IsArcUsable(const ArcData& arc)
{
    if (!IsUsable(arc.dRadius) || !IsUsable(arc.center) || !IsUsable(arc.xAxis) || !IsUsable(arc.yAxis) ||
        !IsUsable(arc.dStartAngle) || !IsUsable(arc.dEndAngle) || !IsUsable(arc.dAccuracy) || !IsUsable(arc.transform))
        return false;
    if (arc.dRadius <= kMinRadius || !AreAxesUsable(arc.xAxis, arc.yAxis))
        return false;
    const bool bTooCoarse = arc.dAccuracy > 1.0 - std::numbers::sqrt2 / 2.0 && arc.dAccuracy < kCoarsestAccuracy;
    const double dSweep = GetSweep(arc);
    return !bTooCoarse && dSweep > kLinearTolerance && dSweep <= kMaxSweep && SideCountFromAccuracy(arc.dAccuracy) >= 3;
}

/// The second axis, at a right angle to the first in the plane of the two.
UnitVector3d SquareYAxis(const ArcData& arc)
{
    if (std::abs(arc.xAxis % arc.yAxis) <= kLinearTolerance)
        return arc.yAxis;
    return UnitVector3d((arc.xAxis * arc.yAxis) * arc.xAxis, true);
}

/// An axis at a right angle to the normal. A unit vector almost along an axis of the world is taken to be that axis,
/// which by itself would leave the two askew by 1e-8.
UnitVector3d TurnInto(const UnitVector3d& normal, const UnitVector3d& axis)
{
    if (normal.isPerpend(axis))
        return axis;
    const Vector3d inPlane = Vector3d(axis) - normal * (axis % normal);
    const double dLength = inPlane.length();
    return UnitVector3d(inPlane.x / dLength, inPlane.y / dLength, inPlane.z / dLength, false);
}

/// The true circle of an arc where its transform leaves it one; null otherwise.
CircleAttribute* CreateCircleAttribute(History& history, const ArcData& arc)
{
    const UnitVector3d y = SquareYAxis(arc);
    const UnitVector3d normal(arc.xAxis * y, true);
    if (arc.transform.isIdentity())
        return &history.Create<CircleAttribute>(arc.dRadius, arc.center, normal, TurnInto(normal, arc.xAxis));
    if (!arc.transform.isEqualScalingOrthogonal())
        return nullptr;
    const double dScale = (arc.transform * Vector3d(y)).length();
    const UnitVector3d turned = arc.transform * normal;
    return &history.Create<CircleAttribute>(arc.dRadius * dScale, arc.transform * arc.center, turned,
                                            TurnInto(turned, arc.transform * arc.xAxis));
}
} // namespace

Face* CreatePolyline(History& history, const std::vector<Point3d>& aPoints, bool bClosed, Result& result)
{
    if (aPoints.size() < 2 ||
        !std::all_of(aPoints.begin(), aPoints.end(), [](const Point3d& p) { return IsUsable(p); }))
    {
        Refuse(result);
        return nullptr;
    }
    const TemporaryTreesScope onlyThePolyline(history);
    const EdgeSketchOptions options;
    OutlinePen pen(history, options);
    pen.MoveTo(aPoints.front(), false);
    for (std::size_t i = 1; i < aPoints.size(); ++i)
        pen.LineTo(aPoints[i], false);
    if (bClosed && aPoints.size() >= 3 && aPoints.front().dist(aPoints.back()) > kLinearTolerance)
        pen.LineTo(aPoints.front(), false);
    return FindLowestFace(history);
}

bool ComputeRectangle(const Point3d& p0, const Point3d& p1, const Point3d& p2, std::vector<Point3d>& aCorners,
                      Result& result)
{
    if (!IsUsable(p0) || !IsUsable(p1) || !IsUsable(p2) || p0.dist(p1) <= kLinearTolerance)
        return Refuse(result);
    const Point3d q = Plane(p1, UnitVector3d(p1 - p0, true)).project(p2);
    const Point3d last = q - (p1 - p0);
    if (!IsUsable(q) || !IsUsable(last))
        return Refuse(result);
    aCorners = {p0, p1, q, last};
    return true;
}

bool CreateRectangle(History& history, const std::vector<Point3d>& aCorners)
{
    if (aCorners[1].dist(aCorners[2]) <= kLinearTolerance)
        return true; // flat: there is nothing to draw
    MergeObjectsInBox(history, BoxOfPoints(aCorners), &aCorners);
    EdgeSketchOptions options;
    options.bClearSmooth = true;
    OutlinePen pen(history, options);
    pen.MoveTo(aCorners.front(), false);
    for (std::size_t i = 1; i <= aCorners.size(); ++i)
        pen.LineTo(aCorners[i % aCorners.size()], false);
    return true;
}

bool ArcFromPoints(const Point3d& p1, const Point3d& p2, const Point3d& p3, bool bFullCircle, ArcData& arc,
                   Result& result)
{
    constexpr double kMeetTolerance = 1e-6;
    if (!IsUsable(p1) || !IsUsable(p2) || !IsUsable(p3))
        return Refuse(result);
    const Plane plane(p1, p3, p2);
    if (!plane.isValid())
        return Refuse(result);
    const auto bisect = [&](const Point3d& a, const Point3d& b)
    { return Line3d(a + (b - a) * 0.5, UnitVector3d(plane.normal * (b - a), true)); };
    if (!bisect(p1, p3).intersect(bisect(p3, p2), arc.center, kMeetTolerance))
    {
        result.SetErrorCode(Result::nFailure);
        return false;
    }
    arc.dRadius = arc.center.dist(p1);
    arc.xAxis = UnitVector3d(p1 - arc.center, true);
    arc.yAxis = UnitVector3d(plane.normal * arc.xAxis, true);
    arc.dStartAngle = 0.0;
    arc.dEndAngle = kTwoPi;
    if (!bFullCircle)
    {
        const Vector3d toEnd = p2 - arc.center;
        arc.dEndAngle = TurnFromTan2(toEnd % arc.yAxis, toEnd % arc.xAxis, 0.0);
    }
    return true;
}

bool ComputeArc(const ArcData& arc, std::vector<Point3d>& aPoints, Result& result)
{
    aPoints.clear();
    if (!IsArcUsable(arc))
        return Refuse(result);
    const double dSweep = GetSweep(arc);
    const double dSides = double(SideCountFromAccuracy(arc.dAccuracy));
    const double dNeeded = std::ceil(dSweep / (kTwoPi / dSides) - 1e-12);
    if (std::max(dNeeded, double(arc.nMinSegments)) > kMaxSegments)
        return Refuse(result);
    const auto nSegments = std::max<std::uint64_t>({std::uint64_t(dNeeded), arc.nMinSegments, 1});

    const UnitVector3d y = SquareYAxis(arc);
    const double dStep = dSweep / double(nSegments);
    for (std::uint64_t i = 0; i <= nSegments; ++i)
    {
        if (i == nSegments && IsFullCircle(arc))
        {
            aPoints.push_back(Point3d(aPoints.front()));
            break;
        }
        const double dAngle = arc.dStartAngle + double(i) * dStep;
        const Point3d p = arc.center + (arc.xAxis * Cos(dAngle) + y * Sin(dAngle)) * arc.dRadius;
        aPoints.push_back(arc.transform.isIdentity() ? p : arc.transform * p);
        if (!IsUsable(aPoints.back()))
            return Refuse(result);
    }
    return true;
}

bool CreateArc(History& history, const ArcData& arc, const std::vector<Point3d>& aPoints)
{
    MergeObjectsInBox(history, BoxOfPoints(aPoints), &aPoints);
    EdgeSketchOptions options;
    options.bClearSmooth = true;
    std::uint64_t nCircle = INVALID_ID;
    if (CircleAttribute* pCircle = CreateCircleAttribute(history, arc))
    {
        options.aEdgeAttributes.push_back(pCircle);
        nCircle = pCircle->GetID();
    }
    const bool bFull = IsFullCircle(arc);
    OutlinePen pen(history, options);
    pen.MoveTo(aPoints.front(), bFull);
    for (std::size_t i = 1; i < aPoints.size(); ++i)
        pen.LineTo(aPoints[i], bFull || i + 1 < aPoints.size());
    if (auto* pCircle = history.Get<CircleAttribute>(nCircle); pCircle && pCircle->IsNonOwned())
        pCircle->DeleteSelf(); // so small for its place that all points are one
    return true;
}

std::uint64_t SideCountFromAccuracy(double dAccuracy)
{
    if (!IsUsable(dAccuracy))
        return 0;
    double dCount = std::round(std::abs(4.0 * dAccuracy));
    if (dAccuracy < kCoarsestAccuracy)
    {
        const double dHalfAngle = AngleFromCosine(1.0 - std::abs(dAccuracy), kLinearTolerance);
        if (2.0 * dHalfAngle <= kLinearTolerance)
            return 0;
        dCount = std::round(kTwoPi / (2.0 * dHalfAngle));
    }
    // More sides than anybody draws: refused like none.
    return dCount > kMaxSegments ? 0 : std::uint64_t(dCount);
}
} // namespace QRV
