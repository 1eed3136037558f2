#include "geometry/Trigonometry.h"
#include "model/Body.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Shell.h"
#include "model/Vertex.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// Finds the oriented sheet around a face. At an edge of three or more coedges the sheet turns to the neighbour at the
/// smallest angle, so that sheets that cross come apart into components with a consistent orientation.
class SheetWalk
{
public:
    SheetWalk(std::vector<Face*>& aFaces, ObjectSet& seen, Face::Sheet& sheet)
        : m_aFaces(aFaces), m_seen(seen), m_sheet(sheet), m_nDone(aFaces.size())
    {
    }

    void Run(Face& seed)
    {
        m_pShell = seed.GetShell();
        m_sheet.bClosed = m_sheet.bNoOpenEdge = false;
        Take(&seed);
        while (true)
        {
            CrossTwoSidedEdges();
            if (m_bOpen && m_sheet.bStopWhenOpen)
            {
                m_sheet.bClosed = m_sheet.bNoOpenEdge = false;
                break;
            }
            m_sheet.bClosed = m_sheet.bClosed && !m_bOpen && m_bConsistent;
            if (m_sheet.bOnlyIfClosed && !m_sheet.bClosed)
                break;
            if (!CrossNextManySidedEdge())
                break;
        }
        if (m_sheet.bClosed)
            CheckManySidedEdges();
        m_seen.insert(m_local.begin(), m_local.end());
    }

private:
    struct Candidate
    {
        double dAngle;
        Face* pFace; ///< null for a face that stands there with its wrong side
    };

    void Take(Face* pFace)
    {
        m_aFaces.push_back(pFace);
        m_local.insert(pFace);
    }

    /// Goes over all edges that lead to one neighbour, and collects those that lead to several.
    void CrossTwoSidedEdges()
    {
        for (; m_nDone < m_aFaces.size(); ++m_nDone)
        {
            m_aCoedges.clear();
            m_aFaces[m_nDone]->GetCoedges(m_aCoedges);
            for (Coedge* pCoedge : m_aCoedges)
            {
                if (m_edges.insert(pCoedge->GetEdge()).second)
                    CrossEdge(*pCoedge);
                if (m_bOpen && m_sheet.bStopWhenOpen)
                    return;
            }
        }
        if (!m_bSettled)
        {
            m_bSettled = true;
            m_sheet.nAcrossTwoSides = m_local.size();
            m_sheet.bClosed = !m_bOpen && m_bConsistent;
            m_sheet.bNoOpenEdge = !m_bOpen;
        }
        m_sheet.bNoOpenEdge = m_sheet.bNoOpenEdge && !m_bOpen;
    }

    /// Whether the face is one of those that the caller asked to keep to.
    bool Counts(const Face* pFace) const
    {
        if (m_sheet.pAmong)
            return pFace && m_sheet.pAmong->contains(pFace);
        return !m_sheet.bWithinShell || (pFace && pFace->GetShell() == m_pShell);
    }

    /// The coedges of the edge take the place of the list, in the order of their ring, without those of faces that do
    /// not count.
    void GetChain(const Edge& edge, ShortList<Coedge*>& aChain) const
    {
        aChain.clear();
        edge.GetCoedges(aChain);
        aChain.EraseIf([this](const Coedge* pCoedge) { return !Counts(pCoedge->GetFace()); });
    }

    /// The one other coedge of the edge, null at an open edge; the coedge itself where there are several.
    const Coedge* FindPartner(const Coedge& coedge) const
    {
        const Coedge* pPartner = coedge.GetPartner();
        if (!pPartner)
            return nullptr;
        if (pPartner->GetPartner() == &coedge)
            return Counts(pPartner->GetFace()) ? pPartner : nullptr;
        if (!m_sheet.bWithinShell && !m_sheet.pAmong)
            return &coedge;
        ShortList<Coedge*> aChain;
        GetChain(*coedge.GetEdge(), aChain);
        if (aChain.size() == 2)
            return aChain[aChain[0] == &coedge];
        return aChain.size() > 2 ? &coedge : nullptr;
    }

    void CrossEdge(const Coedge& coedge)
    {
        const Coedge* pPartner = FindPartner(coedge);
        if (!pPartner)
        {
            m_bOpen = true;
            return;
        }
        if (pPartner == &coedge)
        {
            m_aManySided.push_back(coedge.GetEdge());
            return;
        }
        Face* pNeighbour = pPartner->GetFace();
        if (!pNeighbour || m_seen.contains(pNeighbour))
        {
            m_bOpen = true;
            return;
        }
        if (m_local.contains(pNeighbour))
            return;
        Take(pNeighbour);
        m_bConsistent = m_bConsistent && coedge.IsForward() != pPartner->IsForward();
    }

    /// Lets the sheet turn at an edge of several neighbours. False when no edge is left that could lead on.
    bool CrossNextManySidedEdge()
    {
        for (; m_nManySided < m_aManySided.size(); ++m_nManySided)
        {
            ShortList<Coedge*> aChain;
            GetChain(*m_aManySided[m_nManySided], aChain);
            const auto itOwn = std::find_if(aChain.begin(), aChain.end(),
                                            [&](const Coedge* p) { return m_local.contains(p->GetFace()); });
            if (itOwn == aChain.end())
                continue;
            std::rotate(aChain.begin(), itOwn, aChain.end());
            std::vector<Candidate> aCandidates;
            std::size_t nCounted = 0;
            if (CollectCandidates(aChain, aCandidates, nCounted))
                continue;
            Face* pChoice = nCounted ? Choose(aCandidates, nCounted) : nullptr;
            if (pChoice)
            {
                Take(pChoice);
                return true;
            }
            m_sheet.bClosed = false;
            m_sheet.bNoOpenEdge = m_sheet.bNoOpenEdge && CountLocal(aChain) % 2 == 0;
            if (nCounted)
                return false;
        }
        return false;
    }

    std::size_t CountLocal(const ShortList<Coedge*>& aChain) const
    {
        return std::size_t(std::count_if(aChain.begin(), aChain.end(),
                                         [&](const Coedge* p) { return m_local.contains(p->GetFace()); }));
    }

    /// The faces to which the sheet may go on from the first coedge of the chain, with the angle to each. True when it
    /// has gone on already.
    bool CollectCandidates(const ShortList<Coedge*>& aChain, std::vector<Candidate>& aCandidates,
                           std::size_t& nCounted) const
    {
        constexpr double kNearlyPi = 3.141592653489793;
        const Coedge& own = *aChain.front();
        UnitVector3d u = own.GetEdge()->GetDirection();
        if (!own.IsForward())
            u = -u;
        const UnitVector3d n1 = own.GetFace()->GetPlane().normal;
        for (std::size_t i = 1; i < aChain.size(); ++i)
        {
            Face* pFace = aChain[i]->GetFace();
            if (!pFace || m_seen.contains(pFace))
                continue;
            const UnitVector3d n2 = pFace->GetPlane().normal;
            const double x = n1 % n2;
            const double y = (n2 * n1) % u;
            if (aChain[i]->IsForward() != own.IsForward())
            {
                if (m_local.contains(pFace))
                    return true;
                ++nCounted;
                aCandidates.push_back({ArcTan2(y, x), pFace});
            }
            else if (const double dAngle = ArcTan2(-y, -x); std::abs(dAngle) < kNearlyPi)
                aCandidates.push_back({dAngle, nullptr});
        }
        return false;
    }

    static Face* Choose(std::vector<Candidate>& aCandidates, std::size_t nCounted)
    {
        if (nCounted > 1)
            std::stable_sort(aCandidates.begin(), aCandidates.end(),
                             [](const Candidate& a, const Candidate& b)
                             {
                                 if (a.dAngle != b.dAngle)
                                     return a.dAngle < b.dAngle;
                                 return a.pFace && b.pFace ? a.pFace->GetID() < b.pFace->GetID() : a.pFace && !b.pFace;
                             });
        if (Face* pFace = ChooseAmongEqual(aCandidates.begin(), aCandidates.end()))
            return pFace;
        return ChooseAmongEqual(aCandidates.rbegin(), aCandidates.rend());
    }

    /// The face of the lowest id among the candidates that stand at the first one's angle; null when only wrong sides
    /// do.
    template <class Iterator>
    static Face* ChooseAmongEqual(Iterator itChoice, Iterator itEnd)
    {
        for (Iterator it = std::next(itChoice);
             it != itEnd && std::abs(it->dAngle - itChoice->dAngle) <= kLinearTolerance; ++it)
            if (it->pFace && (!itChoice->pFace || it->pFace->GetID() < itChoice->pFace->GetID()))
                itChoice = it;
        return itChoice->pFace;
    }

    void CheckManySidedEdges()
    {
        ShortList<Coedge*> aChain;
        for (const Edge* pEdge : m_aManySided)
        {
            GetChain(*pEdge, aChain);
            if (CountLocal(aChain) % 2 != 0)
                m_sheet.bClosed = m_sheet.bNoOpenEdge = false;
        }
    }

    std::vector<Face*>& m_aFaces;
    ObjectSet& m_seen;
    Face::Sheet& m_sheet;
    const Shell* m_pShell = nullptr; ///< that of the first face
    std::size_t m_nDone;
    bool m_bOpen = false;
    bool m_bConsistent = true;
    bool m_bSettled = false; ///< the edges of two sides have been crossed once
    ObjectSet m_local;
    ObjectSet m_edges;
    std::vector<Edge*> m_aManySided;
    std::size_t m_nManySided = 0;
    std::vector<Coedge*> m_aCoedges;
};
} // namespace

bool Face::SeesOpenEdge() const
{
    constexpr std::size_t kCoedgesToLookAt = 1000;
    const Vector3d towards = m_Plane.normal.perpend();
    using Reached = std::pair<double, const Face*>;
    const auto isNearer = [](const Reached& a, const Reached& b) { return a.first < b.first; };
    std::vector<Reached> aReached{{0.0, this}}; // a heap, the farthest on top
    ObjectSet seen{this};
    std::size_t nLookedAt = 0;
    bool bOpen = false;
    while (!bOpen && !aReached.empty() && nLookedAt < kCoedgesToLookAt)
    {
        std::pop_heap(aReached.begin(), aReached.end(), isNearer);
        const Face* pFace = aReached.back().second;
        aReached.pop_back();
        for (const Loop* pLoop : pFace->GetLoops())
            pLoop->ForEachCoedge(
                [&](const Coedge& coedge)
                {
                    ++nLookedAt;
                    const Coedge* pPartner = coedge.GetPartner();
                    bOpen = bOpen || !pPartner;
                    if (!pPartner || pPartner->GetPartner() != &coedge)
                        return;
                    const Face* pNeighbour = pPartner->GetFace();
                    if (!pNeighbour || (m_pShell && pNeighbour->GetShell() != m_pShell) ||
                        !seen.insert(pNeighbour).second)
                        return;
                    aReached.emplace_back(coedge.GetStartVertex()->GetPosition() % towards, pNeighbour);
                    std::push_heap(aReached.begin(), aReached.end(), isNearer);
                });
    }
    return bOpen;
}

bool Face::IsAtBranch() const
{
    bool bBranches = false;
    for (const Loop* pLoop : m_aLoops)
        pLoop->ForEachCoedge([&](const Coedge& coedge) { bBranches = bBranches || coedge.GetEdge()->GetUse() > 2; });
    return bBranches;
}

std::vector<Face*> Face::GetShelllessAround()
{
    std::vector<Face*> aFaces{this};
    ObjectSet seen{this};
    std::vector<Edge*> aEdges;
    ShortList<Face*> aNeighbours;
    for (std::size_t i = 0; i < aFaces.size(); ++i)
    {
        aEdges.clear();
        aFaces[i]->GetEdges(aEdges);
        for (const Edge* pEdge : aEdges)
        {
            aNeighbours.clear();
            pEdge->GetFaces(aNeighbours);
            for (Face* pNeighbour : aNeighbours)
                if (!pNeighbour->GetShell() && seen.insert(pNeighbour).second)
                    aFaces.push_back(pNeighbour);
        }
    }
    return aFaces;
}

std::size_t Face::GetConnectedComponent(std::vector<Face*>& aFaces, ObjectSet& seen, Sheet& sheet)
{
    const std::size_t nBefore = aFaces.size();
    SheetWalk(aFaces, seen, sheet).Run(*this);
    return aFaces.size() - nBefore;
}

std::size_t Face::GetNeighbourComponent(std::vector<Face*>& aFaces, bool bThroughVertices, const Shell* pExcluded,
                                        bool bSmoothEdgesOnly)
{
    const std::size_t nBefore = aFaces.size();
    aFaces.push_back(this);
    ObjectSet seen{this};
    const auto reach = [&](const ShortList<Face*>& aNeighbours)
    {
        for (Face* pNeighbour : aNeighbours)
            if (seen.insert(pNeighbour).second && !(pExcluded && pNeighbour->GetShell() == pExcluded))
                aFaces.push_back(pNeighbour);
    };
    ShortList<Face*> aNeighbours;
    for (std::size_t i = nBefore; i < aFaces.size(); ++i)
    {
        std::vector<Edge*> aEdges;
        std::vector<Vertex*> aVertices;
        if (bThroughVertices)
            aFaces[i]->GetVertices(aVertices);
        else
            aFaces[i]->GetEdges(aEdges);
        for (const Edge* pEdge : aEdges)
        {
            if (!seen.insert(pEdge).second || (bSmoothEdgesOnly && !pEdge->IsSmooth()))
                continue;
            aNeighbours.clear();
            pEdge->GetFaces(aNeighbours);
            reach(aNeighbours);
        }
        for (const Vertex* pVertex : aVertices)
        {
            if (!seen.insert(pVertex).second)
                continue;
            aNeighbours.clear();
            pVertex->GetFaces(aNeighbours);
            reach(aNeighbours);
        }
    }
    return aFaces.size() - nBefore;
}
} // namespace QRV
