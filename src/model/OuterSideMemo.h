/// Which sides of edges lie on the outside of a sketch.
#pragma once

#include <QRV/Geometry.h>
#include <QRV/Ids.h>

#include <unordered_map>

namespace QRV
{
/// Remembers sides of edges, left or right in a plane, along which the outline runs round the outside of what hangs
/// together there. An edge that joins such an outline to itself cuts off one region, which gets a face, and leaves the
/// rest outside; one that joins two such outlines leaves them one. So a mark holds until its edge dies, unless a face
/// dies, the model steps back or forward, something moves, an outline is joined that runs round the inside of an empty
/// region, or edges come without their faces being looked for: then all are forgotten. Nothing is ever listed from
/// here, so the order by hash does not show.
class OuterSideMemo
{
public:
    /// `bLeft`: the left side of the edge, going from start to end, seen from where the normal points to.
    void Mark(std::uint64_t nEdge, bool bLeft, const UnitVector3d& normal);
    bool IsMarked(std::uint64_t nEdge, bool bLeft, const UnitVector3d& normal) const;
    void Forget(std::uint64_t nEdge) noexcept { m_mapSides.erase(nEdge); }
    void Clear() noexcept { m_mapSides.clear(); }

    /// While it lives, faces die whose place others have taken.
    class ReplacingFaces
    {
    public:
        explicit ReplacingFaces(OuterSideMemo& memo) : m_memo(memo) { ++memo.m_nReplacing; }
        ~ReplacingFaces() { --m_memo.m_nReplacing; }
        ReplacingFaces(const ReplacingFaces&) = delete;
        ReplacingFaces& operator=(const ReplacingFaces&) = delete;

    private:
        OuterSideMemo& m_memo;
    };
    void NoteFaceDies() noexcept
    {
        if (m_nReplacing == 0)
            Clear();
    }

    /// An edge comes into the model. Unless faces are looked for at each, all is forgotten.
    void NoteEdgeMade(std::uint64_t nEdge) noexcept;
    /// Faces were looked for on both sides of the edge, or it is a part of an edge of before.
    void NoteFacesSought(std::uint64_t nEdge) noexcept;

private:
    struct Sides
    {
        UnitVector3d normal;
        bool bLeft = false;
        bool bRight = false;
    };

    std::unordered_map<std::uint64_t, Sides> m_mapSides; ///< by edge id, in the plane last asked for
    int m_nReplacing = 0;
    std::uint64_t m_nEdgeMade = INVALID_ID; ///< for which no faces have been looked for yet
};
} // namespace QRV
