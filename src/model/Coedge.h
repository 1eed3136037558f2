/// One use of an edge in one direction.
#pragma once

#include "model/Edge.h"
#include "model/ObjectOf.h"

#include <span>

namespace QRV
{
class Face;
class Loop;
class Vertex;

/// One side of a loop. `m_pNext` and `m_pPrevious` form a closed cycle in which the end vertex of each is the start
/// vertex of the next. `m_pPartner` leads round the coedges of the edge: null for one, each other for two, a cycle in
/// no meaningful order for more.
class Coedge : public ObjectOf<Coedge, Object>
{
public:
    static constexpr nObjectType kType = nCoedgeType;
    static constexpr const char* kName = "Coedge";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("cforw", &Coedge::m_bForward), Saved("edge", &Coedge::m_pEdge),
                               Saved("cpartn", &Coedge::m_pPartner), Saved("nextc", &Coedge::m_pNext),
                               Derivable("ploop", &Coedge::m_pLoop), Derivable("prevc", &Coedge::m_pPrevious));
    }

    explicit Coedge(bool bForward) : m_bForward(bForward) {}

    bool IsForward() const { return m_bForward; }
    Loop* GetLoop() const { return m_pLoop; }
    Edge* GetEdge() const { return m_pEdge; }
    Coedge* GetPartner() const { return m_pPartner; }
    Coedge* GetNext() const { return m_pNext; }
    Coedge* GetPrevious() const { return m_pPrevious; }
    Vertex* GetStartVertex() const
    {
        if (!m_pEdge)
            return nullptr;
        return m_bForward ? m_pEdge->GetStartVertex() : m_pEdge->GetEndVertex();
    }
    Vertex* GetEndVertex() const
    {
        if (!m_pEdge)
            return nullptr;
        return m_bForward ? m_pEdge->GetEndVertex() : m_pEdge->GetStartVertex();
    }
    Face* GetFace() const;
    /// From start to end vertex of the coedge, not normalised; null for a missing vertex.
    Vector3d GetVector() const;
    /// Away from the edge into the face, of length 1.
    Vector3d GetInward() const;
    /// The next coedge at the far end of `pVertex`'s corner: previous when this starts there, next otherwise.
    Coedge* GetNeighbourAt(const Vertex* pVertex) const;

    void SetForward(bool bForward);
    void SetLoop(Loop* pLoop);
    /// Plain change of the edge with its use counts: the old one may die, the new one counts up.
    void SetEdge(Edge* pEdge);
    void SetPartner(Coedge* pPartner);
    void SetNext(Coedge* pNext);
    void SetPrevious(Coedge* pPrevious);
    /// Links `a` and `b` one behind the other.
    static void Link(Coedge& a, Coedge& b);
    /// Sense inverted, next and previous exchanged.
    void Reverse();
    /// Takes this coedge out of its loop: the neighbours are linked, the loop's first coedge moves on. Not deleted.
    void Unlink();

    void DeleteSelf() override;
    bool IsNonOwned() const override { return !m_pLoop; }
    void Changed(unsigned nFlags) override;
    void AddToBox(Interval3d& box) const override;
    Object* GetTopOwner() const override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    bool IsOnWalkOfLoop() const;

    bool m_bForward;
    Loop* m_pLoop = nullptr;
    Edge* m_pEdge = nullptr;
    Coedge* m_pPartner = nullptr;
    Coedge* m_pNext = nullptr;
    Coedge* m_pPrevious = nullptr;
};
extern template class ObjectOf<Coedge, Object>;

/// Links the coedges of one edge cyclically; one alone gets null.
void SetPartnerChain(std::span<Coedge* const> aCoedges);
/// Links each coedge to the next and the last to the first, where end and start vertices agree.
void LinkLoop(const std::vector<Coedge*>& aCoedges);
} // namespace QRV
