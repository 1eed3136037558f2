/// One closed cycle of coedges: the outline of a face or of a hole in it.
#pragma once

#include "model/Coedge.h"

namespace QRV
{
/// Where a point lies with respect to a loop.
enum class nLoopSide
{
    nOutside,
    nOn,
    nInside
};

class Loop : public ObjectOf<Loop, Object>
{
public:
    static constexpr nObjectType kType = nLoopType;
    static constexpr const char* kName = "Loop";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("coed0", &Loop::m_pCoedge), Derivable("pface", &Loop::m_pFace));
    }

    Loop() = default;

    Face* GetFace() const { return m_pFace; }
    Coedge* GetCoedge() const { return m_pCoedge; }
    void SetFace(Face* pFace);
    void SetCoedge(Coedge* pCoedge);

    /// Calls `visit(Coedge&)` in loop order from the first coedge; stops at null or when the cycle closes. A broken
    /// cycle that never comes back ends when a coedge is met twice.
    template <class Visit>
    void ForEachCoedge(Visit&& visit) const;
    /// Append in loop order; give the number appended.
    std::size_t GetCoedges(std::vector<Coedge*>& aCoedges) const;
    std::size_t GetEdges(std::vector<Edge*>& aEdges) const;
    std::size_t GetVertices(std::vector<Vertex*>& aVertices) const; ///< start vertices of the coedges
    /// Makes every coedge of the ring from `m_pCoedge` point here.
    void OwnCoedges();
    /// Reverses every coedge.
    void Reverse();

    /// Positive when the loop runs counter-clockwise seen from the side the plane's normal points to.
    double GetSignedArea(const Plane& plane) const;
    nConvexity GetConvexity() const;
    Interval3d GetBox() const;
    /// Side of a point in the plane of the loop; edges that the loop uses twice do not count.
    nLoopSide FindSide(const Point3d& p) const;
    /// Whether `inner`, in the same plane, lies inside this loop.
    bool ContainsLoop(const Loop& inner) const;

    double GetArea(const Transf3d* pTransform) const override;
    bool IsNonOwned() const override { return !m_pFace; }
    void Changed(unsigned nFlags) override;
    void AddToBox(Interval3d& box) const override;
    Object* GetTopOwner() const override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    Face* m_pFace = nullptr;
    Coedge* m_pCoedge = nullptr;
};
extern template class ObjectOf<Loop, Object>;

/// Loops up to this length are walked without keeping the coedges seen.
inline constexpr std::size_t kPlainLoopLength = 10000;

template <class Visit>
void Loop::ForEachCoedge(Visit&& visit) const
{
    ObjectSet seen;
    std::size_t nVisited = 0;
    for (Coedge* pCoedge = m_pCoedge; pCoedge;)
    {
        if (++nVisited > kPlainLoopLength && !seen.insert(pCoedge).second)
            return;
        Coedge* pNext = pCoedge->GetNext();
        visit(*pCoedge);
        pCoedge = pNext;
        if (pCoedge == m_pCoedge)
            return;
    }
}
} // namespace QRV
