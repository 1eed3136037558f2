#include "spatial/OutlineSide.h"

#include "geometry/Finite.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
namespace
{
/// Where the ends of another side lie, seen along a side: how far to its left, and where beside it.
class SideFrame
{
public:
    SideFrame(const OutlineSide& side, const UnitVector3d& normal)
        : m_start(*side.pStart), m_way(*side.pEnd - *side.pStart), m_dLength(m_way.length()), m_left(normal * m_way),
          m_dNear(std::max(ScaledTolerance(*side.pStart), ScaledTolerance(*side.pEnd)))
    {
    }

    /// 1 to the left, -1 to the right, 0 on the line.
    int GetSide(const Point3d& p) const
    {
        const double d = m_left % (p - m_start);
        const double dNear = m_dNear * m_dLength;
        return d > dNear ? 1 : d < -dNear ? -1 : 0;
    }
    /// Of a point on the line: between the ends and clear of them.
    bool IsBetween(const Point3d& p) const
    {
        const double d = m_way % (p - m_start);
        return d > m_dNear * m_dLength && d < (m_dLength - m_dNear) * m_dLength;
    }

private:
    Point3d m_start;
    Vector3d m_way;
    double m_dLength;
    Vector3d m_left;
    double m_dNear;
};

/// Two corners in one place: there the sides are not cut either.
bool HaveTwinEnds(const OutlineSide& a, const OutlineSide& b)
{
    for (const Point3d* p : {a.pStart, a.pEnd})
        for (const Point3d* q : {b.pStart, b.pEnd})
            if (p != q && p->dist(*q) <= ScaledTolerance(*p))
                return true;
    return false;
}
} // namespace

bool RunThrough(const OutlineSide& a, const OutlineSide& b, const UnitVector3d& normal)
{
    if (HaveTwinEnds(a, b))
        return true;
    const SideFrame onA(a, normal);
    const int nStartB = onA.GetSide(*b.pStart);
    const int nEndB = onA.GetSide(*b.pEnd);
    if (nStartB * nEndB > 0)
        return false;
    const SideFrame onB(b, normal);
    const int nStartA = onB.GetSide(*a.pStart);
    const int nEndA = onB.GetSide(*a.pEnd);
    if (nStartB * nEndB < 0 && nStartA * nEndA < 0)
        return true;
    return (nStartB == 0 && onA.IsBetween(*b.pStart)) || (nEndB == 0 && onA.IsBetween(*b.pEnd)) ||
           (nStartA == 0 && onB.IsBetween(*a.pStart)) || (nEndA == 0 && onB.IsBetween(*a.pEnd));
}

bool CrossesItself(const std::vector<const Point3d*>& aCorners, const UnitVector3d& normal)
{
    if (aCorners.size() < 4)
        return false;
    Interval3d box;
    for (const Point3d* p : aCorners)
        box += *p;
    const Vector3d size = box.upper - box.lower;
    const int nAxis = size.x >= size.y && size.x >= size.z ? 0 : size.y >= size.z ? 1 : 2;

    struct Stretch
    {
        OutlineSide side;
        double dFrom, dTo; ///< along the axis on which the outline is longest
    };
    std::vector<Stretch> aSides;
    aSides.reserve(aCorners.size());
    for (std::size_t i = 0; i < aCorners.size(); ++i)
    {
        const OutlineSide side{aCorners[i], aCorners[i + 1 < aCorners.size() ? i + 1 : 0]};
        const auto [dFrom, dTo] = std::minmax({(*side.pStart)[nAxis], (*side.pEnd)[nAxis]});
        aSides.push_back({side, dFrom, dTo});
    }
    // Side by side along the axis, each against those that have begun and not ended.
    std::sort(aSides.begin(), aSides.end(), [](const Stretch& a, const Stretch& b) { return a.dFrom < b.dFrom; });
    std::vector<const Stretch*> aOpen;
    for (const Stretch& stretch : aSides)
    {
        std::erase_if(aOpen, [&](const Stretch* pOpen) { return pOpen->dTo < stretch.dFrom; });
        for (const Stretch* pOpen : aOpen)
            if (RunThrough(pOpen->side, stretch.side, normal))
                return true;
        aOpen.push_back(&stretch);
    }
    return false;
}
} // namespace QRV
