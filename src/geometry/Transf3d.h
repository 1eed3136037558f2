/// Transforms of space.
#pragma once

#include <QRV/Interval3d.h>
#include <QRV/Plane.h>

#include <cstddef>
#include <cstdint>

namespace QRV
{
enum ProjectionType
{
    kParallelProjection = 0,
    kPerspectiveProjection = 1
};

/// A 4 by 4 matrix with a record of what kind of matrix it is. Columns 0 to 2 of the upper block are the images of the
/// axes, column 3 that of the origin; row 3 is (0, 0, 0, 1) unless the matrix is a perspective. Questions are answered
/// once and remembered until an element changes.
class QRV_API Transf3d
{
public:
    /// The identity.
    Transf3d() = default;
    /// A translation to `p`.
    explicit Transf3d(const Point3d& p);
    /// A rigid frame at the line's origin with its Z axis along the line; the world axes for a line without direction.
    explicit Transf3d(const Line3d& line);
    /// Columns as given, or normalised unless `bAsGiven`; no test for right angles.
    Transf3d(const Point3d& origin, const Vector3d& x, const Vector3d& y, const Vector3d& z, bool bAsGiven);
    /// A right-handed frame with X along `x` and Y in the plane of both; the identity when they are parallel.
    Transf3d(const Point3d& origin, const Vector3d& x, const Vector3d& y);
    /// A view: target at the origin, eye on the positive Z axis.
    Transf3d(ProjectionType nProjection, const Point3d& eye, const Point3d& target, const Vector3d& up = Vector3d());

    static const Transf3d kIdentity;
    static const Transf3d kFrontView, kBackView, kRightView, kLeftView, kTopView, kBottomView, kIsometricView,
        kDimetricView;

    double operator()(std::size_t nRow, std::size_t nColumn) const { return m_aMatrix[4 * nRow + nColumn]; }
    /// Ignore an index of 4 or more; an element that would not change leaves the record as it is.
    void setValue(std::size_t nRow, std::size_t nColumn, double dValue);
    void addValue(std::size_t nRow, std::size_t nColumn, double dValue);
    void setOrigin(const Point3d& p);
    Point3d origin() const { return {m_aMatrix[3], m_aMatrix[7], m_aMatrix[11]}; }
    Vector3d xDir() const { return column(0); }
    Vector3d yDir() const { return column(1); }
    Vector3d zDir() const { return column(2); }
    void getCoordSystem(Point3d& o, Vector3d& x, Vector3d& y, Vector3d& z) const;

    /// The affine map of the first three rows.
    Point3d operator*(const Point3d& p) const { return isIdentity() ? p : mapAffine(p); }
    /// The upper block alone, without the translation.
    Vector3d operator*(const Vector3d& v) const { return isIdentity() ? v : mapLinear(v); }
    /// The upper block, then normalised.
    UnitVector3d operator*(const UnitVector3d& v) const;
    Line3d operator*(const Line3d& line) const { return Line3d(*this * line.point, *this * line.vector); }
    /// The product; the right operand acts first.
    Transf3d operator*(const Transf3d& u) const;
    Transf3d& operator*=(const Transf3d& u) { return *this = *this * u; }
    /// With perspective through the homogeneous coordinate; false, with the plain map in `out`, when that is near 0.
    bool project(const Point3d& p, Point3d& out) const;

    bool isEqual(const Transf3d& other, double dTol) const;
    bool isIdentity() const
    {
        return m_nFlags & nIdentityKnown ? (m_nFlags & (nIdentityKnown << 1)) != 0 : askIsIdentity();
    }
    /// The matrix is not flat.
    bool isValid() const;
    bool isOrthogonal() const;
    bool isEqualScalingOrthogonal() const;
    bool isRigidTransform() const;
    bool isMirror() const;
    bool isPerspective() const;
    /// An axis-aligned box stays one; scaling is allowed.
    bool isRotation90DegreeMultiple() const;
    /// Answers all questions now.
    void SetAllFlags() const;
    /// The record itself: pairs of a bit "known" and a bit "true".
    std::uint64_t GetFlags() const { return m_nFlags; }

    static Transf3d translation(const Vector3d& v);
    static Transf3d scaling(const Point3d& fixed, const Vector3d& factors);
    static Transf3d scaling(const Point3d& fixed, double dFactor);
    /// Right-handed, in radians; the identity for no axis or an angle of at most 1e-12.
    static Transf3d rotation(const Line3d& axis, double dAngle);
    static Transf3d mirroring(const Plane& plane);
    /// Along `direction`, or along the normal when that is null or lies in the plane.
    static Transf3d projectOn(const Plane& plane, const Vector3d& direction);
    /// Along the line by the length of its vector.
    static Transf3d stretching(const Line3d& line);
    /// Carries one frame onto another.
    static Transf3d align(const Point3d& p0, const Vector3d& x0, const Vector3d& y0, const Point3d& p1,
                          const Vector3d& x1, const Vector3d& y1);
    static Transf3d align(const Point3d& a0, const Point3d& a1, const Point3d& a2, const Point3d& b0, const Point3d& b1,
                          const Point3d& b2);
    static Transf3d align(const Point3d& p0, const Vector3d& d0, const Point3d& p1, const Vector3d& d1);
    /// Cleans a transform read from outside of rounding noise.
    static Transf3d createOrthogonalSnappedTransform(const Point3d& origin, double dScale, const Vector3d& x,
                                                     const Vector3d& y, const Vector3d& z);

    /// The identity, known as such, for a singular matrix (determinant of size at most 1e-12).
    Transf3d invert() const;
    /// The map of normals: the transposed inverse of the upper block.
    Transf3d affineInverseTranspose() const;
    /// The odd column of an orthogonal matrix with two columns of equal length; zero otherwise.
    Vector3d stretchVector() const;

private:
    /// The bit that says that an answer is known. The next higher bit is the answer.
    enum nKnownFlag : std::uint64_t
    {
        nValidKnown = 0x1,
        nIdentityKnown = 0x4,
        nOrthogonalKnown = 0x10,
        nEqualScalingKnown = 0x40,
        nRigidKnown = 0x100,
        nMirrorKnown = 0x400,
        nPerspectiveKnown = 0x1000,
        nRotation90Known = 0x4000
    };
    static constexpr std::uint64_t kIdentityFlags = 0x17ff;
    static constexpr std::uint64_t kRigidFlags = 0x17f3;
    static constexpr std::uint64_t kReflectionFlags = 0x1df7;
    static constexpr double kSingular = 1e-12;  ///< a determinant of at most this size
    static constexpr double kSameScale = 1e-10; ///< how near to 1 the ratio of equal lengths is

    static constexpr std::uint64_t Pair(nKnownFlag nKnown) { return nKnown | std::uint64_t(nKnown) << 1; }

    Vector3d column(std::size_t n) const { return {m_aMatrix[n], m_aMatrix[4 + n], m_aMatrix[8 + n]}; }
    void setColumn(std::size_t n, double x, double y, double z);
    double getBlockDeterminant() const { return xDir() % (yDir() * zDir()); }
    bool isExactIdentity() const;
    bool isBlockSameScale() const;
    /// The answer remembered under `nKnown`, else that of `fnAnswer`.
    template <class Answer>
    bool ask(nKnownFlag nKnown, Answer fnAnswer) const;
    bool askIsIdentity() const;
    void setFlagsFromElements() { m_nFlags = isExactIdentity() ? kIdentityFlags : 0; }
    Point3d mapAffine(const Point3d& p) const
    {
        const double* m = m_aMatrix;
        return {m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3], m[4] * p.x + m[5] * p.y + m[6] * p.z + m[7],
                m[8] * p.x + m[9] * p.y + m[10] * p.z + m[11]};
    }
    Vector3d mapLinear(const Vector3d& v) const
    {
        const double* m = m_aMatrix;
        return {m[0] * v.x + m[1] * v.y + m[2] * v.z, m[4] * v.x + m[5] * v.y + m[6] * v.z,
                m[8] * v.x + m[9] * v.y + m[10] * v.z};
    }
    Transf3d invertRigid() const;
    Transf3d invertByCofactors() const;
    std::uint64_t flagsThatInversionKeeps() const;
    /// Row 3 becomes exactly (0, 0, 0, 1), free of what rounding left there.
    void clearPerspective()
    {
        m_aMatrix[12] = m_aMatrix[13] = m_aMatrix[14] = 0.0;
        m_aMatrix[15] = 1.0;
    }
    void setFrame(const Point3d& origin, const Vector3d& x, const Vector3d& y, const Vector3d& z);

    double m_aMatrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    mutable std::uint64_t m_nFlags = kIdentityFlags;
};

/// Scales a length by the third column.
QRV_API double& operator*=(double& d, const Transf3d& transform);
} // namespace QRV
