#include <QRV/Geometry.h>

namespace QRV
{
Transf3d::Transf3d(const Point3d& p)
{
    *this = translation(p.toVector3d());
}

Transf3d::Transf3d(const Line3d& line)
{
    const UnitVector3d z(line.vector, true);
    const UnitVector3d x = z.perpend();
    if (z.isExactNull())
        setFrame(line.point, xDir(), yDir(), zDir());
    else
        setFrame(line.point, x, z * x, z);
    m_nFlags |= kRigidFlags;
}

Transf3d::Transf3d(const Point3d& o, const Vector3d& x, const Vector3d& y, const Vector3d& z, bool bAsGiven)
{
    if (bAsGiven)
        setFrame(o, x, y, z);
    else
        setFrame(o, x.getNormalized(), y.getNormalized(), z.getNormalized());
}

Transf3d::Transf3d(const Point3d& o, const Vector3d& x, const Vector3d& y)
{
    const Vector3d xUnit = x.getNormalized();
    const Vector3d zUnit = (xUnit * y).getNormalized();
    if (zUnit.isNull())
        return;
    setFrame(o, xUnit, zUnit * xUnit, zUnit);
    m_nFlags |= kRigidFlags;
}

Transf3d::Transf3d(ProjectionType nProjection, const Point3d& eye, const Point3d& target, const Vector3d& up)
{
    const Vector3d fromTarget = eye - target;
    if (fromTarget.isNull())
        return;
    // Units from the start: the product of two short vectors would count as null.
    const Vector3d z = fromTarget.getNormalized();
    Vector3d upward = up.isNull() ? Vector3d::kZDir : up.getNormalized();
    if (z.isParallel(upward))
        upward = z * z.perpend();
    const Vector3d x = (upward * z).getNormalized();
    Transf3d frame(target, x, z * x, z, false);
    frame.m_nFlags |= kRigidFlags;
    *this = frame.invert();
    if (nProjection == kParallelProjection)
        return;
    Transf3d perspective;
    perspective.setValue(3, 2, -1.0 / fromTarget.length());
    *this = perspective * *this;
}

void Transf3d::setFrame(const Point3d& o, const Vector3d& x, const Vector3d& y, const Vector3d& z)
{
    setColumn(0, x.x, x.y, x.z);
    setColumn(1, y.x, y.y, y.z);
    setColumn(2, z.x, z.y, z.z);
    setColumn(3, o.x, o.y, o.z);
    setFlagsFromElements();
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

UnitVector3d Transf3d::operator*(const UnitVector3d& v) const
{
    return isIdentity() ? v : UnitVector3d(mapLinear(v).getNormalized(), false);
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
    product.setFlagsFromElements();
    if ((m_nFlags & u.m_nFlags & Pair(nRigidKnown)) == Pair(nRigidKnown))
        product.m_nFlags |= Pair(nRigidKnown);
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
bool Transf3d::ask(nKnownFlag nKnown, Answer fnAnswer) const
{
    if (!(m_nFlags & nKnown))
    {
        const bool bAnswer = fnAnswer();
        m_nFlags = (m_nFlags & ~Pair(nKnown)) | (bAnswer ? Pair(nKnown) : std::uint64_t(nKnown));
    }
    return (m_nFlags & (std::uint64_t(nKnown) << 1)) != 0;
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

bool Transf3d::askIsIdentity() const
{
    return ask(nIdentityKnown, [&] { return isExactIdentity(); });
}

bool Transf3d::isValid() const
{
    constexpr double kFlat = 1e-10;
    return ask(
        nValidKnown,
        [&] { return std::abs(xDir().getNormalized() % (yDir().getNormalized() * zDir().getNormalized())) > kFlat; });
}

bool Transf3d::isOrthogonal() const
{
    return ask(nOrthogonalKnown,
               [&] { return xDir().isPerpend(yDir()) && yDir().isPerpend(zDir()) && zDir().isPerpend(xDir()); });
}

bool Transf3d::isBlockSameScale() const
{
    const double x = xDir().length();
    const double y = yDir().length();
    const double z = zDir().length();
    return y != 0.0 && z != 0.0 && x != 0.0 && std::abs(x / y - 1.0) <= kSameScale &&
           std::abs(y / z - 1.0) <= kSameScale && std::abs(z / x - 1.0) <= kSameScale;
}

bool Transf3d::isEqualScalingOrthogonal() const
{
    return ask(nEqualScalingKnown, [&] { return isOrthogonal() && isBlockSameScale(); });
}

bool Transf3d::isRigidTransform() const
{
    const auto isUnit = [](const Vector3d& v) { return std::abs(v.lengthSqrd() - 1.0) <= 1e-12; };
    return ask(nRigidKnown,
               [&]
               {
                   return isIdentity() || (!isMirror() && isOrthogonal() && !isPerspective() && isUnit(xDir()) &&
                                           isUnit(yDir()) && isUnit(zDir()));
               });
}

bool Transf3d::isMirror() const
{
    return ask(nMirrorKnown, [&] { return getBlockDeterminant() < 0.0; });
}

bool Transf3d::isPerspective() const
{
    return ask(
        nPerspectiveKnown,
        [&] { return m_aMatrix[12] != 0.0 || m_aMatrix[13] != 0.0 || m_aMatrix[14] != 0.0 || m_aMatrix[15] != 1.0; });
}

bool Transf3d::isRotation90DegreeMultiple() const
{
    return ask(nRotation90Known,
               [&]
               {
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

double& operator*=(double& d, const Transf3d& transform)
{
    return d *= transform.zDir().length();
}
} // namespace QRV
