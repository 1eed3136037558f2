/// The way round a region of line work in a plane.
#pragma once

#include "spatial/ShortList.h"

#include <QRV/Geometry.h>

namespace QRV
{
class Edge;
class OuterSideMemo;
class Vertex;

/// An edge gone along, with the region on the left.
struct SideOfEdge
{
    Edge* pEdge = nullptr;
    bool bForward = true;

    Vertex* GetStart() const;
    Vertex* GetEnd() const;
    bool operator==(const SideOfEdge& other) const { return pEdge == other.pEdge && bForward == other.bForward; }
};

/// Follows the edges of a plane round the region on the left of one of them, out along dangling edges and back.
class OutlineWalk
{
public:
    /// The plane must outlive the walk. With a memo it notes whether it comes along a side known to lie outside.
    OutlineWalk(const Plane& plane, const SideOfEdge& first, const OuterSideMemo* pMemo = nullptr);

    /// The side at a vertex behind which the direction falls. None, with a null edge, when no edge is there or one is
    /// neither clearly in the plane nor off it.
    static SideOfEdge FindSideFacing(const Plane& plane, Vertex& vertex, const Vector3d& direction);

    /// One edge onward. False when the next edge cannot be told, because one is neither clearly in the plane nor off
    /// it, and when the way has gone astray where edges lie on one another.
    bool Step();

    const SideOfEdge& GetAt() const { return m_at; }
    const SideOfEdge& GetFirst() const { return m_first; }
    bool IsBack() const { return m_nSteps > 1 && m_at == m_first; }
    bool HasSeenOuter() const { return m_bSeenOuter; }
    /// Of a walk that has come back: +1 for a region inside the outline, -1 for one outside, 0 when it is too thin to
    /// tell.
    int GetOrientation() const;

private:
    void Note();

    const Plane& m_plane;
    const OuterSideMemo* m_pMemo;
    const SideOfEdge m_first;
    SideOfEdge m_at;
    SideOfEdge m_mark{};
    const Point3d m_origin;
    double m_dArea = 0.0;   ///< twice that gone round
    double m_dExtent = 0.0; ///< squared
    std::size_t m_nSteps = 0;
    bool m_bSeenOuter = false;
    ShortList<Edge*> m_aEdgesAt;
};
} // namespace QRV
