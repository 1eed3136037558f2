#include "spatial/PlaneMesh.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace QRV
{
namespace
{
/// Wide enough for the difference of two products of coordinate differences.
__extension__ using Wide = __int128;

constexpr double kShapeError = 1e-14; // above the relative rounding error of the test of shape

Wide GetWideArea(const GridPlace& a, const GridPlace& b, const GridPlace& c)
{
    return Wide(b.x - a.x) * (c.y - a.y) - Wide(b.y - a.y) * (c.x - a.x);
}
} // namespace

PlaneMesh::PlaneMesh(std::span<const GridPlace> aPlaces) : m_aPlaces(aPlaces.begin(), aPlaces.end())
{
    constexpr std::int64_t d = 2 * kLargest;
    m_aPlaces.insert(m_aPlaces.end(), {{-d, -d}, {-d, d}, {d, -d}, {d, d}});
    m_aEdges.reserve(6 * m_aPlaces.size());
    m_aLeaving.resize(m_aPlaces.size());
    Sweep();
}

double PlaneMesh::GetDoubledArea(std::uint32_t a, std::uint32_t b, std::uint32_t c) const
{
    return static_cast<double>(GetWideArea(m_aPlaces[a], m_aPlaces[b], m_aPlaces[c]));
}

double PlaneMesh::GetLength(std::uint32_t a, std::uint32_t b) const
{
    return std::hypot(static_cast<double>(m_aPlaces[b].x - m_aPlaces[a].x),
                      static_cast<double>(m_aPlaces[b].y - m_aPlaces[a].y));
}

/// 1 if c lies left of the line from a to b, -1 if right, 0 if on it.
int PlaneMesh::GetSide(std::uint32_t a, std::uint32_t b, std::uint32_t c) const
{
    const Wide area = GetWideArea(m_aPlaces[a], m_aPlaces[b], m_aPlaces[c]);
    return (area > 0) - (area < 0);
}

/// For a place on the line: whether it lies on the side of the start to which the way goes.
bool PlaneMesh::IsAhead(std::uint32_t nFrom, std::uint32_t nTo, std::uint32_t nPlace) const
{
    const GridPlace& from = m_aPlaces[nFrom];
    const GridPlace& to = m_aPlaces[nTo];
    const GridPlace& p = m_aPlaces[nPlace];
    return Wide(to.x - from.x) * (p.x - from.x) + Wide(to.y - from.y) * (p.y - from.y) > 0;
}

/// Connects the places from left to right, each to the boundary of those before it.
void PlaneMesh::Sweep()
{
    std::vector<std::uint32_t> aOrder(m_aPlaces.size());
    std::iota(aOrder.begin(), aOrder.end(), 0u);
    std::sort(aOrder.begin(), aOrder.end(),
              [&](std::uint32_t a, std::uint32_t b) { return m_aPlaces[a] < m_aPlaces[b]; });

    // The left side of the square comes first, so the third place is in line with no two.
    m_aHull.resize(m_aPlaces.size());
    const std::uint32_t aFirst[] = {aOrder[1], aOrder[0], aOrder[2]};
    const std::uint32_t h = AddTriangle(aFirst[0], aFirst[1], aFirst[2]);
    for (std::uint32_t i = 0; i < 3; ++i)
        m_aHull[aFirst[i]] = {aFirst[(i + 2) % 3], aFirst[(i + 1) % 3], h + i};
    m_nLast = aOrder[2];
    for (std::size_t i = 3; i < aOrder.size(); ++i)
        AddPlace(aOrder[i]);
}

/// True if the boundary's edge from `nHullPlace` is seen from a place outside.
bool PlaneMesh::IsInSight(std::uint32_t nHullPlace, std::uint32_t nPlace) const
{
    return GetSide(nHullPlace, m_aHull[nHullPlace].nNext, nPlace) < 0;
}

void PlaneMesh::AddPlace(std::uint32_t nPlace)
{
    // The last place before is the nearest end of all in sight, which hang together.
    std::uint32_t nFirst = m_nLast;
    while (IsInSight(m_aHull[nFirst].nPrevious, nPlace))
        nFirst = m_aHull[nFirst].nPrevious;
    std::uint32_t nEnd = nFirst;
    std::uint32_t nArriving = kNone;
    std::uint32_t nReturning = kNone;
    while (IsInSight(nEnd, nPlace))
    {
        const std::uint32_t nNext = m_aHull[nEnd].nNext;
        const std::uint32_t h = AddTriangle(nNext, nEnd, nPlace);
        Link(h, m_aHull[nEnd].nEdge);
        if (nReturning == kNone)
            nArriving = h + 1;
        else
            Link(h + 1, nReturning);
        nReturning = h + 2;
        m_aToImprove.push_back(h);
        nEnd = nNext;
    }
    m_aHull[nFirst].nNext = nPlace;
    m_aHull[nFirst].nEdge = nArriving;
    m_aHull[nPlace] = {nFirst, nEnd, nReturning};
    m_aHull[nEnd].nPrevious = nPlace;
    m_nLast = nPlace;
    ImproveShapes();
}

/// The first of the three half-edges, which starts at a.
std::uint32_t PlaneMesh::AddTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c)
{
    const auto h = static_cast<std::uint32_t>(m_aEdges.size());
    m_aEdges.push_back({.nStart = a, .nNext = h + 1});
    m_aEdges.push_back({.nStart = b, .nNext = h + 2});
    m_aEdges.push_back({.nStart = c, .nNext = h});
    m_aLeaving[a] = h;
    m_aLeaving[b] = h + 1;
    m_aLeaving[c] = h + 2;
    return h;
}

void PlaneMesh::Link(std::uint32_t h, std::uint32_t nTwin)
{
    m_aEdges[h].nTwin = nTwin;
    m_aEdges[nTwin].nTwin = h;
}

/// True if the two triangles at the edge make a convex quadrilateral, without a flat corner at the edge's ends.
bool PlaneMesh::CanTurn(std::uint32_t h) const
{
    const std::uint32_t nLeft = GetApex(h);
    const std::uint32_t nRight = GetApex(m_aEdges[h].nTwin);
    return GetSide(nLeft, nRight, GetEnd(h)) > 0 && GetSide(nRight, nLeft, m_aEdges[h].nStart) > 0;
}

/// Makes the edge the other diagonal of its two triangles. All half-edges around them stay what they are.
void PlaneMesh::Turn(std::uint32_t h)
{
    const std::uint32_t t = m_aEdges[h].nTwin;
    const std::uint32_t hNext = m_aEdges[h].nNext;
    const std::uint32_t hPrevious = m_aEdges[hNext].nNext;
    const std::uint32_t tNext = m_aEdges[t].nNext;
    const std::uint32_t tPrevious = m_aEdges[tNext].nNext;
    m_aLeaving[m_aEdges[h].nStart] = tNext;
    m_aLeaving[m_aEdges[t].nStart] = hNext;
    m_aEdges[h].nStart = m_aEdges[hPrevious].nStart;
    m_aEdges[t].nStart = m_aEdges[tPrevious].nStart;
    const auto makeCycle = [&](std::uint32_t a, std::uint32_t b, std::uint32_t c)
    {
        m_aEdges[a].nNext = b;
        m_aEdges[b].nNext = c;
        m_aEdges[c].nNext = a;
    };
    makeCycle(h, tPrevious, hNext);
    makeCycle(t, hPrevious, tNext);
}

/// True if the corner opposite to the edge lies clearly inside the circle through its triangle.
bool PlaneMesh::IsBadlyShaped(std::uint32_t h) const
{
    const GridPlace& d = m_aPlaces[GetApex(m_aEdges[h].nTwin)];
    const auto get = [&](std::uint32_t n)
    {
        const GridPlace& p = m_aPlaces[n];
        return std::pair(static_cast<double>(p.x - d.x), static_cast<double>(p.y - d.y));
    };
    const auto [ax, ay] = get(m_aEdges[h].nStart);
    const auto [bx, by] = get(GetEnd(h));
    const auto [cx, cy] = get(GetApex(h));
    const double a = ax * ax + ay * ay;
    const double b = bx * bx + by * by;
    const double c = cx * cx + cy * cy;
    const double dInside = a * (bx * cy - by * cx) + b * (cx * ay - cy * ax) + c * (ax * by - ay * bx);
    const double dSize = a * (std::abs(bx * cy) + std::abs(by * cx)) + b * (std::abs(cx * ay) + std::abs(cy * ax)) +
                         c * (std::abs(ax * by) + std::abs(ay * bx));
    return dInside > kShapeError * dSize;
}

/// Turns edges until none of those that were touched is badly shaped.
void PlaneMesh::ImproveShapes()
{
    while (!m_aToImprove.empty())
    {
        const std::uint32_t h = m_aToImprove.back();
        m_aToImprove.pop_back();
        if (m_aEdges[h].nTwin == kNone || !IsBadlyShaped(h) || !CanTurn(h))
            continue;
        const std::uint32_t t = m_aEdges[h].nTwin;
        m_aToImprove.insert(m_aToImprove.end(), {m_aEdges[h].nNext, GetPrevious(h), m_aEdges[t].nNext, GetPrevious(t)});
        Turn(h);
    }
}

void PlaneMesh::Trace(std::uint32_t nFrom, std::uint32_t nTo, Course& course) const
{
    course.nBlocking = kNone;
    course.aCrossed.clear();
    std::uint32_t h = m_aLeaving[nFrom];
    for (;; h = m_aEdges[GetPrevious(h)].nTwin)
    {
        const int nSide = GetSide(nFrom, nTo, GetEnd(h));
        if (nSide == 0 && IsAhead(nFrom, nTo, GetEnd(h)))
        {
            course.nEnd = GetEnd(h);
            return;
        }
        if (nSide < 0 && GetSide(nFrom, nTo, GetApex(h)) > 0)
            break;
    }
    h = m_aEdges[h].nNext;
    for (;;)
    {
        course.aCrossed.push_back(h);
        if (m_aEdges[h].bKept)
        {
            course.nBlocking = h;
            return;
        }
        const std::uint32_t t = m_aEdges[h].nTwin;
        const int nSide = GetSide(nFrom, nTo, GetApex(t));
        if (nSide == 0)
        {
            course.nEnd = GetApex(t);
            return;
        }
        // The twin runs from left to right; the way leaves its triangle on the side where the apex is not.
        h = nSide > 0 ? m_aEdges[t].nNext : GetPrevious(t);
    }
}

bool PlaneMesh::Keep(std::uint32_t nFrom, const Course& course, std::int32_t nPasses)
{
    std::vector<std::uint32_t> aCrossing = course.aCrossed;
    const std::size_t nMost = 16 * (aCrossing.size() + 1) * (aCrossing.size() + 1);
    for (std::size_t i = 0; i < aCrossing.size(); ++i)
    {
        const std::uint32_t h = aCrossing[i];
        if (i > nMost)
            return false;
        const bool bTurned = CanTurn(h);
        if (bTurned)
            Turn(h);
        const int nStartSide = GetSide(nFrom, course.nEnd, m_aEdges[h].nStart);
        const int nEndSide = GetSide(nFrom, course.nEnd, GetEnd(h));
        if (!bTurned || nStartSide * nEndSide < 0)
            aCrossing.push_back(h);
    }
    const std::uint32_t h = FindEdge(nFrom, course.nEnd);
    if (h == kNone)
        return false;
    HalfEdge& twin = m_aEdges[m_aEdges[h].nTwin];
    m_aEdges[h].nPasses += nPasses;
    twin.nPasses -= nPasses;
    m_aEdges[h].bKept = twin.bKept = true;
    return true;
}

std::int32_t PlaneMesh::Release(std::uint32_t h)
{
    HalfEdge& twin = m_aEdges[m_aEdges[h].nTwin];
    const std::int32_t nPasses = m_aEdges[h].nPasses;
    m_aEdges[h].nPasses = twin.nPasses = 0;
    m_aEdges[h].bKept = twin.bKept = false;
    return nPasses;
}

/// The half-edge between two places, or `kNone`.
std::uint32_t PlaneMesh::FindEdge(std::uint32_t nFrom, std::uint32_t nTo) const
{
    std::uint32_t h = m_aLeaving[nFrom];
    do
    {
        if (GetEnd(h) == nTo)
            return h;
        h = m_aEdges[GetPrevious(h)].nTwin;
    } while (h != m_aLeaving[nFrom]);
    return kNone;
}
} // namespace QRV
