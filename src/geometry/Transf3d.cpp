#include "geometry/Trigonometry.h"

#include <QRV/Geometry.h>

namespace QRV
{
namespace
{
enum : std::uint64_t
{
    nValidKnown = 0x1,
    nIdentityKnown = 0x4,
    nOrthogonalKnown = 0x10,
    nEqualScalingKnown = 0x40,
    nRigidKnown = 0x100,
    nMirrorKnown = 0x400,
    nPerspectiveKnown = 0x1000,
    nRotation90Known = 0x4000,
    nRigidProduct = 0x300,
    nReflectionFlags = 0x1df7
};
constexpr double kSingular = 1e-12;
constexpr double kSameScale = 1e-10;

std::uint64_t Pair(std::uint64_t nKnown)
{
    return nKnown | (nKnown << 1);
}

/// A unit vector read from outside, freed of noise beside an axis or a coordinate plane.
void SnapDirection(Vector3d& v)
{
    for (std::size_t i = 0; i < 3; ++i)
        if (std::abs(std::abs(v[i]) - 1.0) <= 1e-12)
        {
            const double dSign = v[i] < 0.0 ? -1.0 : 1.0;
            v.zero();
            v[i] = dSign;
            return;
        }
    if (v.x == 0.0 || v.y == 0.0 || v.z == 0.0)
        return;
    for (std::size_t i = 0; i < 3; ++i)
        if (std::abs(v[i]) < 1e-10)
        {
            v[i] = 0.0;
            v.normalize();
            return;
        }
}

double SnapToOne(double d)
{
    return std::abs(d - 1.0) <= 1e-6 ? 1.0 : d;
}
} // namespace

Transf3d::Transf3d(const Point3d& p)
{
    *this = translation(p.toVector3d());
}

Transf3d::Transf3d(const Line3d& line)
{
    const Vector3d z = line.vector.getNormalized();
    if (!z.isExactNull())
    {
        const Vector3d x = UnitVector3d(z, false).perpend();
        const Vector3d y = z * x;
        setColumn(0, x.x, x.y, x.z);
        setColumn(1, y.x, y.y, y.z);
        setColumn(2, z.x, z.y, z.z);
    }
    setColumn(3, line.point.x, line.point.y, line.point.z);
    m_nFlags = isExactIdentity() ? kIdentityFlags : kRigidFlags;
}

Transf3d::Transf3d(const Point3d& o, const Vector3d& x, const Vector3d& y, const Vector3d& z, bool bAsGiven)
{
    const Vector3d aColumns[3] = {bAsGiven ? x : x.getNormalized(), bAsGiven ? y : y.getNormalized(),
                                  bAsGiven ? z : z.getNormalized()};
    for (std::size_t i = 0; i < 3; ++i)
        setColumn(i, aColumns[i].x, aColumns[i].y, aColumns[i].z);
    setColumn(3, o.x, o.y, o.z);
    m_nFlags = isExactIdentity() ? kIdentityFlags : 0;
}

Transf3d::Transf3d(const Point3d& o, const Vector3d& x, const Vector3d& y)
{
    const Vector3d xUnit = x.getNormalized();
    const Vector3d zUnit = (xUnit * y).getNormalized();
    if (zUnit.isNull())
        return;
    *this = Transf3d(o, xUnit, zUnit * xUnit, zUnit, true);
    m_nFlags |= kRigidFlags;
}

Transf3d::Transf3d(ProjectionType nProjection, const Point3d& eye, const Point3d& target, const Vector3d& up)
{
    const Vector3d z = eye - target;
    if (z.isNull())
        return;
    Vector3d upward = up.isNull() ? Vector3d::kZDir : up;
    if (z.isParallel(upward))
        upward = z * z.perpend();
    const Vector3d x = upward * z;
    Transf3d frame(target, x, z * x, z, false);
    frame.m_nFlags |= kRigidFlags;
    *this = frame.invert();
    if (nProjection == kParallelProjection)
    {
        m_nFlags |= kRigidFlags;
        return;
    }
    Transf3d perspective;
    perspective.setValue(3, 2, -1.0 / z.length());
    *this = perspective * *this;
}

void Transf3d::setColumn(std::size_t n, double x, double y, double z)
{
    m_aMatrix[n] = x;
    m_aMatrix[4 + n] = y;
    m_aMatrix[8 + n] = z;
}

void Transf3d::setValue(std::size_t nRow, std::size_t nColumn, double dValue)
{
    if (nRow >= 4 || nColumn >= 4 || m_aMatrix[4 * nRow + nColumn] == dValue)
        return;
    m_aMatrix[4 * nRow + nColumn] = dValue;
    m_nFlags = 0;
}

void Transf3d::addValue(std::size_t nRow, std::size_t nColumn, double dValue)
{
    if (nRow < 4 && nColumn < 4 && dValue != 0.0)
        setValue(nRow, nColumn, m_aMatrix[4 * nRow + nColumn] + dValue);
}

void Transf3d::setOrigin(const Point3d& p)
{
    for (std::size_t i = 0; i < 3; ++i)
        setValue(i, 3, p[i]);
}

void Transf3d::getCoordSystem(Point3d& o, Vector3d& x, Vector3d& y, Vector3d& z) const
{
    o = origin();
    x = xDir();
    y = yDir();
    z = zDir();
}

Point3d Transf3d::operator*(const Point3d& p) const
{
    if (isIdentity())
        return p;
    const double* m = m_aMatrix;
    return {m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3], m[4] * p.x + m[5] * p.y + m[6] * p.z + m[7],
            m[8] * p.x + m[9] * p.y + m[10] * p.z + m[11]};
}

Vector3d Transf3d::operator*(const Vector3d& v) const
{
    if (isIdentity())
        return v;
    const double* m = m_aMatrix;
    return {m[0] * v.x + m[1] * v.y + m[2] * v.z, m[4] * v.x + m[5] * v.y + m[6] * v.z, m[8] * v.x + m[9] * v.y + m[10] * v.z};
}

UnitVector3d Transf3d::operator*(const UnitVector3d& v) const
{
    return isIdentity() ? v : UnitVector3d((*this * Vector3d(v)).getNormalized(), false);
}

Transf3d Transf3d::operator*(const Transf3d& u) const
{
    if (isIdentity())
        return u;
    if (u.isIdentity())
        return *this;
    Transf3d product;
    for (std::size_t nRow = 0; nRow < 4; ++nRow)
        for (std::size_t nColumn = 0; nColumn < 4; ++nColumn)
        {
            double dSum = 0.0;
            for (std::size_t i = 0; i < 4; ++i)
                dSum += (*this)(nRow, i) * u(i, nColumn);
            product.m_aMatrix[4 * nRow + nColumn] = dSum;
        }
    product.m_nFlags = product.isExactIdentity() ? kIdentityFlags : 0;
    const auto knowsRigid = [](const Transf3d& t) { return (t.m_nFlags & nRigidProduct) == nRigidProduct; };
    if (knowsRigid(*this) && knowsRigid(u))
        product.m_nFlags |= nRigidProduct;
    return product;
}

bool Transf3d::project(const Point3d& p, Point3d& out) const
{
    constexpr double kSmall = 1e-10;
    out = *this * p;
    if (!isPerspective())
        return true;
    const double* m = m_aMatrix + 12;
    const double w = m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3];
    if (std::abs(w) <= kSmall)
        return false;
    out /= w;
    return true;
}

template <class Answer>
bool Transf3d::ask(std::uint64_t nKnown, Answer fnAnswer) const
{
    if (!(m_nFlags & nKnown))
    {
        const bool bAnswer = fnAnswer();
        m_nFlags = (m_nFlags & ~Pair(nKnown)) | (bAnswer ? Pair(nKnown) : nKnown);
    }
    return (m_nFlags & (nKnown << 1)) != 0;
}

bool Transf3d::isEqual(const Transf3d& other, double dTol) const
{
    for (std::size_t i = 0; i < 16; ++i)
        if (!(std::abs(m_aMatrix[i] - other.m_aMatrix[i]) <= dTol))
            return false;
    return true;
}

bool Transf3d::isExactIdentity() const
{
    for (std::size_t i = 0; i < 16; ++i)
        if (m_aMatrix[i] != (i % 5 == 0 ? 1.0 : 0.0))
            return false;
    return true;
}

bool Transf3d::isIdentity() const
{
    return ask(nIdentityKnown, [&] { return isExactIdentity(); });
}

bool Transf3d::isValid() const
{
    constexpr double kFlat = 1e-10;
    return ask(nValidKnown, [&] {
        return std::abs(xDir().getNormalized() % (yDir().getNormalized() * zDir().getNormalized())) > kFlat;
    });
}

bool Transf3d::isOrthogonal() const
{
    return ask(nOrthogonalKnown, [&] {
        return xDir().isPerpend(yDir()) && yDir().isPerpend(zDir()) && zDir().isPerpend(xDir());
    });
}

bool Transf3d::isBlockSameScale() const
{
    const double x = xDir().length();
    const double y = yDir().length();
    const double z = zDir().length();
    return y != 0.0 && z != 0.0 && x != 0.0 && std::abs(x / y - 1.0) <= kSameScale && std::abs(y / z - 1.0) <= kSameScale &&
           std::abs(z / x - 1.0) <= kSameScale;
}

bool Transf3d::isEqualScalingOrthogonal() const
{
    return ask(nEqualScalingKnown, [&] { return isOrthogonal() && isBlockSameScale(); });
}

bool Transf3d::isRigidTransform() const
{
    const auto isUnit = [](const Vector3d& v) { return std::abs(v.lengthSqrd() - 1.0) <= 1e-12; };
    return ask(nRigidKnown, [&] {
        return isIdentity() || (!isMirror() && isOrthogonal() && !isPerspective() && isUnit(xDir()) && isUnit(yDir()) && isUnit(zDir()));
    });
}

bool Transf3d::isMirror() const
{
    return ask(nMirrorKnown, [&] { return getBlockDeterminant() < 0.0; });
}

bool Transf3d::isPerspective() const
{
    return ask(nPerspectiveKnown, [&] {
        return m_aMatrix[12] != 0.0 || m_aMatrix[13] != 0.0 || m_aMatrix[14] != 0.0 || m_aMatrix[15] != 1.0;
    });
}

bool Transf3d::isRotation90DegreeMultiple() const
{
    return ask(nRotation90Known, [&] {
        for (std::size_t nRow = 0; nRow < 3; ++nRow)
        {
            int nLarge = 0;
            for (std::size_t nColumn = 0; nColumn < 3; ++nColumn)
                nLarge += std::abs((*this)(nRow, nColumn)) > 1e-12;
            if (nLarge > 1)
                return false;
        }
        return true;
    });
}

void Transf3d::SetAllFlags() const
{
    isValid();
    isIdentity();
    isOrthogonal();
    isEqualScalingOrthogonal();
    isRigidTransform();
    isMirror();
    isPerspective();
    isRotation90DegreeMultiple();
}

Transf3d Transf3d::translation(const Vector3d& v)
{
    Transf3d t;
    t.setColumn(3, v.x, v.y, v.z);
    t.m_nFlags = t.isExactIdentity() ? kIdentityFlags : kRigidFlags;
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
    t.m_nFlags = t.isExactIdentity() ? kIdentityFlags : 0;
    return t;
}

Transf3d Transf3d::scaling(const Point3d& fixed, double dFactor)
{
    return scaling(fixed, Vector3d(dFactor, dFactor, dFactor));
}

Transf3d Transf3d::rotation(const Line3d& axis, double dAngle)
{
    if (!axis.isValid() || std::abs(dAngle) <= 1e-12)
        return {};
    const Vector3d u = axis.vector.getNormalized();
    const double c = Cos(dAngle);
    const double s = Sin(dAngle);
    const double k = 1.0 - c;
    Transf3d t;
    t.setColumn(0, u.x * u.x + (1.0 - u.x * u.x) * c, u.x * u.y * k + u.z * s, u.x * u.z * k - u.y * s);
    t.setColumn(1, u.x * u.y * k - u.z * s, u.y * u.y + (1.0 - u.y * u.y) * c, u.y * u.z * k + u.x * s);
    t.setColumn(2, u.x * u.z * k + u.y * s, u.y * u.z * k - u.x * s, u.z * u.z + (1.0 - u.z * u.z) * c);
    t.m_nFlags = 0;
    const Vector3d shift = axis.point.toVector3d() - t * axis.point.toVector3d();
    t.setColumn(3, shift.x, shift.y, shift.z);
    t.m_nFlags = t.isExactIdentity() ? kIdentityFlags : kRigidFlags;
    return t;
}

Transf3d Transf3d::mirroring(const Plane& plane)
{
    if (!plane.isValid())
        return {};
    const Transf3d frame(Line3d(Point3d() + plane.normal * -plane.d, plane.normal));
    Transf3d flip;
    flip.setValue(2, 2, -1.0);
    Transf3d t = frame * flip * frame.invert();
    t.m_nFlags |= nReflectionFlags;
    return t;
}

Transf3d Transf3d::projectOn(const Plane& plane, const Vector3d& direction)
{
    const bool bUsable = !direction.isNull() && !direction.isPerpend(plane.normal);
    const Transf3d frame(Line3d(Point3d() + plane.normal * -plane.d, plane.normal));
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

Transf3d Transf3d::align(const Point3d& p0, const Vector3d& x0, const Vector3d& y0, const Point3d& p1, const Vector3d& x1,
                         const Vector3d& y1)
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

Transf3d Transf3d::createOrthogonalSnappedTransform(const Point3d& origin, double dScale, const Vector3d& x, const Vector3d& y,
                                                    const Vector3d& z)
{
    Point3d place = origin;
    for (std::size_t i = 0; i < 3; ++i)
        if (std::abs(place[i]) < 1e-6)
            place[i] = 0.0;
    const double s = SnapToOne(dScale);
    double lx = x.length() * s;
    double ly = y.length() * s;
    double lz = z.length() * s;
    if (std::abs(lx) < 1e-12 || std::abs(ly) < 1e-12 || std::abs(lz) < 1e-12)
        return {};
    lx = SnapToOne(lx);
    ly = SnapToOne(ly);
    lz = SnapToOne(lz);
    if (std::abs(lx / ly - 1.0) <= kSameScale && std::abs(ly / lz - 1.0) <= kSameScale && std::abs(lz / lx - 1.0) <= kSameScale)
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

Transf3d Transf3d::invert() const
{
    if (isIdentity())
        return *this;
    Transf3d inverse;
    if (isRigidTransform())
    {
        for (std::size_t nRow = 0; nRow < 3; ++nRow)
            for (std::size_t nColumn = 0; nColumn < 3; ++nColumn)
                inverse.m_aMatrix[4 * nRow + nColumn] = (*this)(nColumn, nRow);
        inverse.m_nFlags = 0;
        const Vector3d shift = -(inverse * origin().toVector3d());
        inverse.setColumn(3, shift.x, shift.y, shift.z);
        inverse.m_nFlags = m_nFlags;
        return inverse;
    }
    // Cofactors by the 2 by 2 minors of the upper and the lower two rows.
    const double* m = m_aMatrix;
    const double s[6] = {m[0] * m[5] - m[4] * m[1], m[0] * m[6] - m[4] * m[2], m[0] * m[7] - m[4] * m[3],
                         m[1] * m[6] - m[5] * m[2], m[1] * m[7] - m[5] * m[3], m[2] * m[7] - m[6] * m[3]};
    const double c[6] = {m[8] * m[13] - m[12] * m[9],   m[8] * m[14] - m[12] * m[10], m[8] * m[15] - m[12] * m[11],
                         m[9] * m[14] - m[13] * m[10],  m[9] * m[15] - m[13] * m[11], m[10] * m[15] - m[14] * m[11]};
    const double dDeterminant = s[0] * c[5] - s[1] * c[4] + s[2] * c[3] + s[3] * c[2] - s[4] * c[1] + s[5] * c[0];
    if (!(std::abs(dDeterminant) > kSingular))
        return {};
    const double aAdjugate[16] = {
        m[5] * c[5] - m[6] * c[4] + m[7] * c[3],    -m[1] * c[5] + m[2] * c[4] - m[3] * c[3],
        m[13] * s[5] - m[14] * s[4] + m[15] * s[3], -m[9] * s[5] + m[10] * s[4] - m[11] * s[3],
        -m[4] * c[5] + m[6] * c[2] - m[7] * c[1],   m[0] * c[5] - m[2] * c[2] + m[3] * c[1],
        -m[12] * s[5] + m[14] * s[2] - m[15] * s[1], m[8] * s[5] - m[10] * s[2] + m[11] * s[1],
        m[4] * c[4] - m[5] * c[2] + m[7] * c[0],    -m[0] * c[4] + m[1] * c[2] - m[3] * c[0],
        m[12] * s[4] - m[13] * s[2] + m[15] * s[0], -m[8] * s[4] + m[9] * s[2] - m[11] * s[0],
        -m[4] * c[3] + m[5] * c[1] - m[6] * c[0],   m[0] * c[3] - m[1] * c[1] + m[2] * c[0],
        -m[12] * s[3] + m[13] * s[1] - m[14] * s[0], m[8] * s[3] - m[9] * s[1] + m[10] * s[0]};
    for (std::size_t i = 0; i < 16; ++i)
        inverse.m_aMatrix[i] = aAdjugate[i] / dDeterminant;
    // Right angles survive inversion only where all scales are equal.
    const bool bKeepsAngles = (m_nFlags & Pair(nEqualScalingKnown)) == Pair(nEqualScalingKnown);
    inverse.m_nFlags = bKeepsAngles ? m_nFlags : m_nFlags & ~Pair(nOrthogonalKnown);
    return inverse;
}

Transf3d Transf3d::affineInverseTranspose() const
{
    if (isIdentity())
        return *this;
    const double dDeterminant = getBlockDeterminant();
    Transf3d t;
    if (!(std::abs(dDeterminant) > kSingular))
        return t;
    const Vector3d aColumns[3] = {yDir() * zDir() / dDeterminant, zDir() * xDir() / dDeterminant, xDir() * yDir() / dDeterminant};
    for (std::size_t i = 0; i < 3; ++i)
        t.setColumn(i, aColumns[i].x, aColumns[i].y, aColumns[i].z);
    t.m_nFlags = (m_nFlags & ~Pair(nIdentityKnown) & ~Pair(nPerspectiveKnown)) | nPerspectiveKnown;
    return t;
}

Vector3d Transf3d::stretchVector() const
{
    if (!isOrthogonal())
        return {};
    const Vector3d aColumns[3] = {xDir(), yDir(), zDir()};
    const auto areSame = [&](std::size_t a, std::size_t b) {
        return std::abs(aColumns[a].length() / aColumns[b].length() - 1.0) <= kSameScale;
    };
    constexpr std::size_t aOdd[3] = {2, 0, 1};
    for (const std::size_t nOdd : aOdd)
    {
        const std::size_t a = (nOdd + 1) % 3;
        const std::size_t b = (nOdd + 2) % 3;
        if (areSame(a, b))
            return areSame(a, nOdd) ? Vector3d() : aColumns[nOdd];
    }
    return {};
}

double& operator*=(double& d, const Transf3d& transform)
{
    return d *= transform.zDir().length();
}

// All in one file, the identity first: the views are made from it.
const Transf3d Transf3d::kIdentity;
const Transf3d Transf3d::kFrontView(kParallelProjection, Point3d(1, 0, 0), Point3d());
const Transf3d Transf3d::kBackView(kParallelProjection, Point3d(-1, 0, 0), Point3d());
const Transf3d Transf3d::kRightView(kParallelProjection, Point3d(0, 1, 0), Point3d());
const Transf3d Transf3d::kLeftView(kParallelProjection, Point3d(0, -1, 0), Point3d());
const Transf3d Transf3d::kTopView(kParallelProjection, Point3d(0, 0, 1), Point3d());
const Transf3d Transf3d::kBottomView(kParallelProjection, Point3d(0, 0, -1), Point3d());
const Transf3d Transf3d::kIsometricView(kParallelProjection, Point3d(1, 1, 1), Point3d());
const Transf3d Transf3d::kDimetricView(kParallelProjection, Point3d(0.881917103688197, 1.0 / 3.0, 1.0 / 3.0), Point3d());
} // namespace QRV
