/// A triangulation of places in a plane into which ways between them are forced.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace QRV
{
/// A place with whole coordinates, so that the side of a line on which it lies is told without rounding.
struct GridPlace
{
    std::int64_t x = 0;
    std::int64_t y = 0;

    auto operator<=>(const GridPlace&) const = default;
};

/// The triangles of a set of places and of a wide square around them, as half-edges: each triangle is a cycle of three,
/// counter-clockwise, and a half-edge has the triangle on its left.
///
/// Places are known by their number. Only half-edges on the square have no twin.
class PlaneMesh
{
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    static constexpr std::int64_t kLargest = std::int64_t{1} << 50; ///< a coordinate lies between this and its negative

    struct HalfEdge
    {
        std::uint32_t nStart;
        std::uint32_t nTwin = kNone;
        std::uint32_t nNext;
        std::int32_t nPasses = 0; ///< ways that run along it, less those against it
        bool bKept = false;       ///< a way runs along the edge in either direction
    };

    /// Connects the places, no two of which are equal.
    explicit PlaneMesh(std::span<const GridPlace> aPlaces);

    const std::vector<HalfEdge>& GetHalfEdges() const { return m_aEdges; }
    std::uint32_t GetEnd(std::uint32_t h) const { return m_aEdges[m_aEdges[h].nNext].nStart; }
    /// The corner opposite to the half-edge.
    std::uint32_t GetApex(std::uint32_t h) const { return m_aEdges[GetPrevious(h)].nStart; }
    /// Twice the signed area of a triangle of three places, in squares of the grid.
    double GetDoubledArea(std::uint32_t a, std::uint32_t b, std::uint32_t c) const;
    double GetLength(std::uint32_t a, std::uint32_t b) const;

    /// What lies in the way from one place to another.
    struct Course
    {
        std::uint32_t nEnd;                  ///< the first place on the way
        std::uint32_t nBlocking = kNone;     ///< a kept half-edge that crosses the way before that
        std::vector<std::uint32_t> aCrossed; ///< the half-edges that cross it, in order, each from right to left
    };
    void Trace(std::uint32_t nFrom, std::uint32_t nTo, Course& course) const;

    /// Makes the unblocked course an edge and keeps it. `nPasses` ways run along it, a negative number against it.
    /// @return false when the crossing edges couldn't be turned out of the way.
    bool Keep(std::uint32_t nFrom, const Course& course, std::int32_t nPasses);
    /// Gives a kept edge free again.
    /// @return the passes of the half-edge
    std::int32_t Release(std::uint32_t h);

private:
    std::uint32_t GetPrevious(std::uint32_t h) const { return m_aEdges[m_aEdges[h].nNext].nNext; }
    int GetSide(std::uint32_t a, std::uint32_t b, std::uint32_t c) const;
    bool IsAhead(std::uint32_t nFrom, std::uint32_t nTo, std::uint32_t nPlace) const;
    void Sweep();
    bool IsInSight(std::uint32_t nHullPlace, std::uint32_t nPlace) const;
    void AddPlace(std::uint32_t nPlace);
    std::uint32_t AddTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c);
    void Link(std::uint32_t h, std::uint32_t nTwin);
    bool CanTurn(std::uint32_t h) const;
    void Turn(std::uint32_t h);
    bool IsBadlyShaped(std::uint32_t h) const;
    void ImproveShapes();
    std::uint32_t FindEdge(std::uint32_t nFrom, std::uint32_t nTo) const;

    std::vector<GridPlace> m_aPlaces; // behind the given ones the corners of the square
    std::vector<HalfEdge> m_aEdges;
    std::vector<std::uint32_t> m_aLeaving; // for each place a half-edge that starts there

    /// The boundary of what the sweep has connected so far, counter-clockwise.
    struct HullPlace
    {
        std::uint32_t nPrevious = kNone;
        std::uint32_t nNext = kNone;
        std::uint32_t nEdge = kNone; // to the next
    };
    std::vector<HullPlace> m_aHull;
    std::uint32_t m_nLast = kNone;           // the place that was connected last
    std::vector<std::uint32_t> m_aToImprove; // a stack of half-edges
};
} // namespace QRV
