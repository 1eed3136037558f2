#include "support/Arrangement.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace QRV
{
namespace
{
double Cross(const Vector2d& a, const Vector2d& b)
{
    return a.x * b.y - a.y * b.x;
}

double Length(const Vector2d& v)
{
    return std::hypot(v.x, v.y);
}

class ArrangementBuilder
{
public:
    explicit ArrangementBuilder(double dTol) : m_dTol(dTol) {}

    Arrangement Run(const std::vector<PlanarSegment>& aSegments)
    {
        PlacePoints(aSegments);
        CutSegments();
        JoinPoints();
        WalkRegions();
        Arrangement result{m_aPoints.size(), m_edges.size(), m_nFaces};
        for (const std::vector<Point2d>& outline : m_aOutlines)
            if (!IsNested(outline))
                result.dArea += GetArea(outline);
        return result;
    }

private:
    std::size_t Place(const Point2d& p)
    {
        for (std::size_t n = 0; n < m_aPoints.size(); ++n)
            if (Length(p - m_aPoints[n]) <= m_dTol)
                return n;
        m_aPoints.push_back(p);
        return m_aPoints.size() - 1;
    }

    void PlacePoints(const std::vector<PlanarSegment>& aSegments)
    {
        for (const auto& [a, b] : aSegments)
        {
            Place(a);
            Place(b);
            if (Length(b - a) > m_dTol)
                m_aSegments.emplace_back(a, b);
        }
        for (std::size_t i = 0; i < m_aSegments.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
            {
                const auto& [a, b] = m_aSegments[i];
                const auto& [c, d] = m_aSegments[j];
                const double dDet = Cross(b - a, d - c);
                if (std::abs(dDet) <= 1e-12 * Length(b - a) * Length(d - c))
                    continue;
                const double t = Cross(c - a, d - c) / dDet;
                const double u = Cross(c - a, b - a) / dDet;
                const double dSlackT = m_dTol / Length(b - a);
                const double dSlackU = m_dTol / Length(d - c);
                if (t >= -dSlackT && t <= 1 + dSlackT && u >= -dSlackU && u <= 1 + dSlackU)
                    Place(Point2d(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)));
            }
    }

    void CutSegments()
    {
        for (const auto& [a, b] : m_aSegments)
        {
            const Vector2d along = b - a;
            const double dLength = Length(along);
            std::vector<std::pair<double, std::size_t>> aOnIt;
            for (std::size_t n = 0; n < m_aPoints.size(); ++n)
            {
                const Vector2d to = m_aPoints[n] - a;
                const double t = (to.x * along.x + to.y * along.y) / dLength;
                if (std::abs(Cross(along, to)) / dLength <= m_dTol && t >= -m_dTol && t <= dLength + m_dTol)
                    aOnIt.emplace_back(t, n);
            }
            std::sort(aOnIt.begin(), aOnIt.end());
            for (std::size_t n = 1; n < aOnIt.size(); ++n)
                m_edges.insert(std::minmax(aOnIt[n - 1].second, aOnIt[n].second));
        }
    }

    void JoinPoints()
    {
        m_aNeighbours.resize(m_aPoints.size());
        for (const auto& [a, b] : m_edges)
        {
            m_aNeighbours[a].push_back(b);
            m_aNeighbours[b].push_back(a);
        }
    }

    /// Goes round every region with the region to the right. Round the outside of a component that is
    /// counter-clockwise.
    void WalkRegions()
    {
        std::set<std::pair<std::size_t, std::size_t>> seen;
        const auto walk = [&](std::size_t nFrom, std::size_t nTo)
        {
            std::vector<Point2d> outline;
            while (seen.emplace(nFrom, nTo).second)
            {
                outline.push_back(m_aPoints[nFrom]);
                const std::size_t nNext = TurnFrom(nTo, m_aPoints[nFrom] - m_aPoints[nTo], m_aNeighbours[nTo]);
                nFrom = std::exchange(nTo, nNext);
            }
            const double dArea = GetArea(outline);
            m_nFaces += dArea < -kNoArea;
            if (dArea > kNoArea)
                m_aOutlines.push_back(outline);
        };
        for (const auto& [a, b] : m_edges)
        {
            walk(a, b);
            walk(b, a);
        }
    }

    /// The neighbour that comes first counter-clockwise from a direction; straight back comes last.
    std::size_t TurnFrom(std::size_t nAt, const Vector2d& from, const std::vector<std::size_t>& aNeighbours) const
    {
        std::size_t nBest = aNeighbours.front();
        double dBest = 1e9;
        for (const std::size_t nNext : aNeighbours)
        {
            const Vector2d to = m_aPoints[nNext] - m_aPoints[nAt];
            double dAngle = std::atan2(Cross(from, to), from.x * to.x + from.y * to.y);
            if (dAngle <= 1e-12)
                dAngle += 2 * 3.141592653589793;
            if (dAngle < dBest)
            {
                dBest = dAngle;
                nBest = nNext;
            }
        }
        return nBest;
    }

    static double GetArea(const std::vector<Point2d>& aOutline)
    {
        double dTwice = 0.0;
        for (std::size_t n = 0; n < aOutline.size(); ++n)
            dTwice += Cross(aOutline[n] - aOutline[0], aOutline[(n + 1) % aOutline.size()] - aOutline[0]);
        return dTwice / 2;
    }

    bool IsNested(const std::vector<Point2d>& inner) const
    {
        const Point2d& p = inner.front();
        return std::any_of(m_aOutlines.begin(), m_aOutlines.end(),
                           [&](const std::vector<Point2d>& outline)
                           {
                               bool bInside = false;
                               for (std::size_t i = 0; &outline != &inner && i < outline.size(); ++i)
                               {
                                   const Point2d& a = outline[i];
                                   const Point2d& b = outline[(i + 1) % outline.size()];
                                   if ((a.y > p.y) != (b.y > p.y) &&
                                       p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y))
                                       bInside = !bInside;
                               }
                               return bInside;
                           });
    }

    static constexpr double kNoArea = 1e-11;

    double m_dTol;
    std::vector<PlanarSegment> m_aSegments;
    std::vector<Point2d> m_aPoints;
    std::set<std::pair<std::size_t, std::size_t>> m_edges;
    std::vector<std::vector<std::size_t>> m_aNeighbours;
    std::size_t m_nFaces = 0;
    std::vector<std::vector<Point2d>> m_aOutlines; ///< of components, counter-clockwise
};
} // namespace

Arrangement ComputeArrangement(const std::vector<PlanarSegment>& aSegments, double dTol)
{
    return ArrangementBuilder(dTol).Run(aSegments);
}
} // namespace QRV
