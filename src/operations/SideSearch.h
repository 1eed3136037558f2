/// What the line work in a plane leaves for a new face on either side of an edge.
#pragma once

#include <QRV/Geometry.h>

#include <vector>

namespace QRV
{
class Edge;
class History;
struct SideOfEdge;

/// Tells, for the planes through one edge, on which side a loop of edges can run round a region without a face. An edge
/// that joins two sketches encloses nothing; one that joins a sketch to itself encloses on one side, while the outline
/// on the other runs round the outside of all. Both sides are followed in turn, so that the shorter way decides.
class SideSearch
{
public:
    SideSearch(History& history, const Edge& edge);

    /// Whether a loop may be found on this side of the edge, which is its left going from start to end, seen from where
    /// the plane's normal points to, or its right.
    bool MayEnclose(const Plane& plane, bool bLeft);
    /// A side that has a face now is done with.
    void NoteFaceFormed();
    /// To be called when all loops have been looked for: where a region was enclosed and got no face, nothing that is
    /// remembered about outer sides holds any more.
    void Finish();

private:
    enum class nFinding
    {
        nUnknown, ///< to be searched
        nEncloses,
        nNothing
    };

    struct Sides
    {
        Plane plane;
        nFinding nLeft = nFinding::nUnknown;
        nFinding nRight = nFinding::nUnknown;
    };

    const Sides& FindSides(const Plane& plane);
    void Follow(Sides& sides);
    void FollowBoth(Edge& edge, Sides& sides);
    nFinding FollowOne(const Plane& plane, const SideOfEdge& side);

    History& m_history;
    const std::uint64_t m_nEdge;
    std::vector<Sides> m_aSides; ///< for each plane asked about
};
} // namespace QRV
