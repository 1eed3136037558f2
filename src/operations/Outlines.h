/// Polylines, rectangles, circles and arcs.
#pragma once

#include <QRV/Geometry.h>
#include <QRV/Ids.h>
#include <QRV/Result.h>

#include <vector>

namespace QRV
{
class Face;
class History;

/// Draws a polyline that takes no part with what stands in the model already. Gives the face that it formed, of the
/// lowest id, or null; with an unusable or missing point `result` gets nBadInput.
Face* CreatePolyline(History& history, const std::vector<Point3d>& aPoints, bool bClosed, Result& result);

/// The four corners of the rectangle on the side p0 p1 that reaches as far as p2. False, with nBadInput and nothing
/// set, for unusable points and when p0 and p1 coincide.
bool ComputeRectangle(const Point3d& p0, const Point3d& p1, const Point3d& p2, std::vector<Point3d>& aCorners,
                      Result& result);
bool CreateRectangle(History& history, const std::vector<Point3d>& aCorners);

/// A circle or arc as the exported calls describe it.
struct ArcData
{
    double dRadius = 0.0;
    Point3d center;
    UnitVector3d xAxis;
    UnitVector3d yAxis;
    double dStartAngle = 0.0; ///< radians
    double dEndAngle = 0.0;
    double dAccuracy = 0.0; ///< see SideCountFromAccuracy
    Transf3d transform;
    std::uint64_t nMinSegments = 0;
};

/// The arc from p1 through p3 to p2, or the whole circle. False with a code when the points give none.
bool ArcFromPoints(const Point3d& p1, const Point3d& p2, const Point3d& p3, bool bFullCircle, ArcData& arc,
                   Result& result);
/// The points of the arc. False, with nBadInput, for unusable data.
bool ComputeArc(const ArcData& arc, std::vector<Point3d>& aPoints, Result& result);
/// Draws the arc through the points that ComputeArc gave.
bool CreateArc(History& history, const ArcData& arc, const std::vector<Point3d>& aPoints);

/// Number of sides of a circle: from 0.75 up the value counts quarter circles, below it is the height of a chord over
/// the radius. 0 when the value gives no circle.
std::uint64_t SideCountFromAccuracy(double dAccuracy);
} // namespace QRV
