#include "geometry/Trigonometry.h"

#include <QRV/Geometry.h>

namespace QRV
{
namespace
{
constexpr double kSnapDistance = 1e-6;

/// A frame in the plane, at the foot of the origin, with its Z axis along the normal.
Transf3d FrameOnPlane(const Plane& plane)
{
    return Transf3d(Line3d(plane.project(Point3d()), plane.normal));
}

/// A unit vector read from outside, freed of noise beside an axis or a coordinate plane.
void SnapDirection(Vector3d& v)
{
    constexpr double kOnAxis = 1e-12;
    constexpr double kNoise = 1e-10;
    for (std::size_t i = 0; i < 3; ++i)
        if (std::abs(std::abs(v[i]) - 1.0) <= kOnAxis)
        {
            const double dSign = v[i] < 0.0 ? -1.0 : 1.0;
            v.zero();
            v[i] = dSign;
            return;
        }
    if (v.x == 0.0 || v.y == 0.0 || v.z == 0.0)
        return;
    for (std::size_t i = 0; i < 3; ++i)
        if (std::abs(v[i]) < kNoise)
        {
            v[i] = 0.0;
            v.normalize();
            return;
        }
}

double SnapToOne(double d)
{
    return std::abs(d - 1.0) <= kSnapDistance ? 1.0 : d;
}
} // namespace

Transf3d Transf3d::translation(const Vector3d& v)
{
    Transf3d t;
    t.setColumn(3, v.x, v.y, v.z);
    t.setFlagsFromElements();
    t.m_nFlags |= kRigidFlags;
    return t;
}

Transf3d Transf3d::scaling(const Point3d& fixed, const Vector3d& factors)
{
    Transf3d t;
    for (std::size_t i = 0; i < 3; ++i)
    {
        t.m_aMatrix[5 * i] = factors[i];
        t.m_aMatrix[4 * i + 3] = (1.0 - factors[i]) * fixed[i];
    }
    t.setFlagsFromElements();
    return t;
}

Transf3d Transf3d::scaling(const Point3d& fixed, double dFactor)
{
    return scaling(fixed, Vector3d(dFactor, dFactor, dFactor));
}

Transf3d Transf3d::rotation(const Line3d& axis, double dAngle)
{
    constexpr double kNoTurn = 1e-12;
    if (!axis.isValid() || std::abs(dAngle) <= kNoTurn)
        return {};
    const Vector3d u = axis.vector.getNormalized();
    const double c = Cos(dAngle);
    const double s = Sin(dAngle);
    const double k = 1.0 - c;
    Transf3d t;
    t.setColumn(0, u.x * u.x + (1.0 - u.x * u.x) * c, u.x * u.y * k + u.z * s, u.x * u.z * k - u.y * s);
    t.setColumn(1, u.x * u.y * k - u.z * s, u.y * u.y + (1.0 - u.y * u.y) * c, u.y * u.z * k + u.x * s);
    t.setColumn(2, u.x * u.z * k + u.y * s, u.y * u.z * k - u.x * s, u.z * u.z + (1.0 - u.z * u.z) * c);
    const Vector3d shift = axis.point.toVector3d() - t.mapLinear(axis.point.toVector3d());
    t.setColumn(3, shift.x, shift.y, shift.z);
    t.setFlagsFromElements();
    t.m_nFlags |= kRigidFlags;
    return t;
}

Transf3d Transf3d::mirroring(const Plane& plane)
{
    if (!plane.isValid())
        return {};
    const Transf3d frame = FrameOnPlane(plane);
    Transf3d flip;
    flip.setValue(2, 2, -1.0);
    Transf3d t = frame * flip * frame.invert();
    t.m_nFlags |= kReflectionFlags;
    return t;
}

Transf3d Transf3d::projectOn(const Plane& plane, const Vector3d& direction)
{
    if (!plane.isValid())
        return {};
    const bool bUsable = !direction.isNull() && !direction.isPerpend(plane.normal);
    const Transf3d frame = FrameOnPlane(plane);
    const Transf3d back = frame.invert();
    const Vector3d along = back * (bUsable ? direction : Vector3d(plane.normal));
    Transf3d shear;
    shear.setValue(0, 2, -along.x / along.z);
    shear.setValue(1, 2, -along.y / along.z);
    shear.setValue(2, 2, 0.0);
    return frame * shear * back;
}

Transf3d Transf3d::stretching(const Line3d& line)
{
    if (!line.isValid())
        return {};
    const Transf3d frame(line);
    return frame * scaling(Point3d(), Vector3d(1.0, 1.0, line.vector.length())) * frame.invert();
}

Transf3d Transf3d::align(const Point3d& p0, const Vector3d& x0, const Vector3d& y0, const Point3d& p1,
                         const Vector3d& x1, const Vector3d& y1)
{
    return Transf3d(p1, x1, y1) * Transf3d(p0, x0, y0).invert();
}

Transf3d Transf3d::align(const Point3d& a0, const Point3d& a1, const Point3d& a2, const Point3d& b0, const Point3d& b1,
                         const Point3d& b2)
{
    return align(a0, a1 - a0, a2 - a0, b0, b1 - b0, b2 - b0);
}

Transf3d Transf3d::align(const Point3d& p0, const Vector3d& d0, const Point3d& p1, const Vector3d& d1)
{
    Vector3d n = (d0 * d1).getNormalized();
    if (n.isNull())
        n = d0.perpend();
    return align(p0, d0, n, p1, d1, n);
}

Transf3d Transf3d::createOrthogonalSnappedTransform(const Point3d& origin, double dScale, const Vector3d& x,
                                                    const Vector3d& y, const Vector3d& z)
{
    Point3d place = origin;
    for (std::size_t i = 0; i < 3; ++i)
        if (std::abs(place[i]) < kSnapDistance)
            place[i] = 0.0;
    const double s = SnapToOne(dScale);
    double lx = x.length() * s;
    double ly = y.length() * s;
    double lz = z.length() * s;
    if (std::abs(lx) < kLinearTolerance || std::abs(ly) < kLinearTolerance || std::abs(lz) < kLinearTolerance)
        return {};
    lx = SnapToOne(lx);
    ly = SnapToOne(ly);
    lz = SnapToOne(lz);
    if (std::abs(lx / ly - 1.0) <= kSameScale && std::abs(ly / lz - 1.0) <= kSameScale &&
        std::abs(lz / lx - 1.0) <= kSameScale)
        ly = lz = lx;
    Vector3d u = x.getNormalized();
    Vector3d v = y.getNormalized();
    SnapDirection(u);
    SnapDirection(v);
    const Vector3d w = (u * v).getNormalized();
    Vector3d yColumn = (w * u) * ly;
    if (yColumn % y < 0.0)
        yColumn.negate();
    Vector3d zColumn = w * lz;
    if (zColumn % z < 0.0)
        zColumn.negate();
    return Transf3d(place, u * lx, yColumn, zColumn, true);
}
} // namespace QRV
