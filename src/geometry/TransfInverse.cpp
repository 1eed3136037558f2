#include <QRV/Geometry.h>

namespace QRV
{
Transf3d Transf3d::invert() const
{
    if (isIdentity())
        return *this;
    return isRigidTransform() ? invertRigid() : invertByCofactors();
}

Transf3d Transf3d::invertRigid() const
{
    Transf3d inverse;
    for (std::size_t nRow = 0; nRow < 3; ++nRow)
        for (std::size_t nColumn = 0; nColumn < 3; ++nColumn)
            inverse.m_aMatrix[4 * nRow + nColumn] = (*this)(nColumn, nRow);
    // Subtracted from zero rather than negated, so that no translation stays +0.
    const Vector3d shift = Vector3d::kNull - inverse.mapLinear(origin().toVector3d());
    inverse.setColumn(3, shift.x, shift.y, shift.z);
    inverse.m_nFlags = m_nFlags;
    return inverse;
}

Transf3d Transf3d::invertByCofactors() const
{
    // Cofactors by the 2 by 2 minors of the upper and the lower two rows.
    const double* m = m_aMatrix;
    const double s[6] = {m[0] * m[5] - m[4] * m[1], m[0] * m[6] - m[4] * m[2], m[0] * m[7] - m[4] * m[3],
                         m[1] * m[6] - m[5] * m[2], m[1] * m[7] - m[5] * m[3], m[2] * m[7] - m[6] * m[3]};
    const double c[6] = {m[8] * m[13] - m[12] * m[9],  m[8] * m[14] - m[12] * m[10], m[8] * m[15] - m[12] * m[11],
                         m[9] * m[14] - m[13] * m[10], m[9] * m[15] - m[13] * m[11], m[10] * m[15] - m[14] * m[11]};
    const double dDeterminant = s[0] * c[5] - s[1] * c[4] + s[2] * c[3] + s[3] * c[2] - s[4] * c[1] + s[5] * c[0];
    Transf3d inverse;
    if (!(std::abs(dDeterminant) > kSingular))
        return inverse;
    const double aAdjugate[16] = {
        m[5] * c[5] - m[6] * c[4] + m[7] * c[3],     -m[1] * c[5] + m[2] * c[4] - m[3] * c[3],
        m[13] * s[5] - m[14] * s[4] + m[15] * s[3],  -m[9] * s[5] + m[10] * s[4] - m[11] * s[3],
        -m[4] * c[5] + m[6] * c[2] - m[7] * c[1],    m[0] * c[5] - m[2] * c[2] + m[3] * c[1],
        -m[12] * s[5] + m[14] * s[2] - m[15] * s[1], m[8] * s[5] - m[10] * s[2] + m[11] * s[1],
        m[4] * c[4] - m[5] * c[2] + m[7] * c[0],     -m[0] * c[4] + m[1] * c[2] - m[3] * c[0],
        m[12] * s[4] - m[13] * s[2] + m[15] * s[0],  -m[8] * s[4] + m[9] * s[2] - m[11] * s[0],
        -m[4] * c[3] + m[5] * c[1] - m[6] * c[0],    m[0] * c[3] - m[1] * c[1] + m[2] * c[0],
        -m[12] * s[3] + m[13] * s[1] - m[14] * s[0], m[8] * s[3] - m[9] * s[1] + m[10] * s[0]};
    for (std::size_t i = 0; i < 16; ++i)
        inverse.m_aMatrix[i] = aAdjugate[i] / dDeterminant;
    if (!isPerspective())
        inverse.clearPerspective();
    inverse.m_nFlags = m_nFlags & flagsThatInversionKeeps();
    return inverse;
}

// Right angles survive inversion only where all scales are equal. A perspective leaves nothing of the upper block.
std::uint64_t Transf3d::flagsThatInversionKeeps() const
{
    if (isPerspective())
        return Pair(nIdentityKnown) | Pair(nPerspectiveKnown) | Pair(nRigidKnown);
    const bool bEqualScaling = (m_nFlags & Pair(nEqualScalingKnown)) == Pair(nEqualScalingKnown);
    return bEqualScaling ? ~std::uint64_t(0) : ~Pair(nOrthogonalKnown);
}

Transf3d Transf3d::affineInverseTranspose() const
{
    if (isIdentity())
        return *this;
    const double dDeterminant = getBlockDeterminant();
    Transf3d t;
    if (!(std::abs(dDeterminant) > kSingular))
        return t;
    const Vector3d aColumns[3] = {yDir() * zDir() / dDeterminant, zDir() * xDir() / dDeterminant,
                                  xDir() * yDir() / dDeterminant};
    for (std::size_t i = 0; i < 3; ++i)
        t.setColumn(i, aColumns[i].x, aColumns[i].y, aColumns[i].z);
    t.m_nFlags = (m_nFlags & ~Pair(nIdentityKnown) & ~Pair(nPerspectiveKnown)) | nPerspectiveKnown;
    if (isPerspective())
        t.m_nFlags &= ~Pair(nRigidKnown); // the block alone may well be rigid
    return t;
}

Vector3d Transf3d::stretchVector() const
{
    if (!isOrthogonal())
        return {};
    const Vector3d aColumns[3] = {xDir(), yDir(), zDir()};
    const auto areSame = [&](std::size_t a, std::size_t b)
    { return std::abs(aColumns[a].length() / aColumns[b].length() - 1.0) <= kSameScale; };
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
} // namespace QRV
