#include "operations/CellSearch.h"

#include "geometry/Trigonometry.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Shell.h"
#include "model/Vertex.h"

#include <optional>
#include <unordered_map>

namespace QRV
{
namespace
{
/// One side of a face.
struct FaceSide
{
    Face* pFace;
    bool bFront; ///< that of the normal
};

/// Goes from side to side over the edges, always to the next face round the edge through the region.
class CellWalk
{
public:
    CellWalk(Face& face, bool bFront) : m_first{&face, bFront}, m_pShell(face.GetShell()) {}

    /// Whether the sides reached enclose a region. Faces that hang in it bound nothing and are passed by; a few only,
    /// so that a large open sheet is not taken apart face by face.
    bool Run()
    {
        constexpr std::size_t kMaxHanging = 8;
        while (const Face* pHanging = Walk())
        {
            if (pHanging == m_first.pFace || m_hanging.size() == kMaxHanging)
                return false;
            m_hanging.insert(pHanging);
        }
        return GetVolume() > kVolumeTolerance;
    }

    /// Turns the faces outward.
    std::vector<Face*> Turn() const
    {
        std::vector<Face*> aFaces;
        for (const auto& [pFace, bFront] : m_aSides)
        {
            if (bFront)
                pFace->Reverse();
            aFaces.push_back(pFace);
        }
        return aFaces;
    }

private:
    /// Reaches what it can from the first side. Stops at a face with an open edge or with both sides in the region, and
    /// gives it.
    const Face* Walk()
    {
        m_aSides.clear();
        m_taken.clear();
        Take(m_first);
        std::vector<Coedge*> aCoedges;
        for (std::size_t i = 0; i < m_aSides.size(); ++i)
        {
            aCoedges.clear();
            m_aSides[i].pFace->GetCoedges(aCoedges);
            for (const Coedge* pCoedge : aCoedges)
            {
                const std::optional<FaceSide> next = FindNext(*pCoedge, m_aSides[i].bFront);
                if (!next)
                    return m_aSides[i].pFace;
                if (!Take(*next))
                    return next->pFace;
            }
        }
        return nullptr;
    }

    /// False when the other side of the face has been taken.
    bool Take(const FaceSide& side)
    {
        const auto [it, bNew] = m_taken.emplace(side.pFace, side.bFront);
        if (bNew)
            m_aSides.push_back(side);
        return it->second == side.bFront;
    }

    /// The side that the region reaches next round the edge of the coedge; none at an open edge.
    std::optional<FaceSide> FindNext(const Coedge& coedge, bool bFront)
    {
        const UnitVector3d normal = coedge.GetFace()->GetPlane().normal;
        const Vector3d inward = coedge.GetInward();
        const Vector3d upward = bFront ? Vector3d(normal) : -Vector3d(normal);
        std::optional<FaceSide> next;
        double dNearest = 0.0;
        ShortList<Coedge*> aOnEdge;
        coedge.GetEdge()->GetCoedges(aOnEdge);
        for (const Coedge* pOther : aOnEdge)
        {
            Face* pFace = pOther->GetFace();
            if (pOther == &coedge || !pFace || !Counts(*pFace))
                continue;
            const Vector3d otherInward = pOther->GetInward();
            const double dTurn = TurnFromTan2(otherInward % upward, otherInward % inward, -kPerpendicularTolerance);
            if (next && (dTurn > dNearest + kPerpendicularTolerance ||
                         (dTurn > dNearest - kPerpendicularTolerance && pFace->GetID() > next->pFace->GetID())))
                continue;
            // Seen from the region the face is met head on.
            const Vector3d turning = upward * Cos(dTurn) - inward * Sin(dTurn);
            next = FaceSide{pFace, pFace->GetPlane().normal % turning < 0.0};
            dNearest = dTurn;
        }
        return next;
    }

    /// What closed shells of the body bound is theirs alone; of the other faces of one body all may be walls.
    bool Counts(const Face& face)
    {
        if (m_hanging.contains(&face))
            return false;
        const Shell* pShell = face.GetShell();
        if (pShell == m_pShell)
            return true;
        if (!pShell || !m_pShell || !pShell->GetBody() || pShell->GetBody() != m_pShell->GetBody())
            return false;
        const auto [it, bNew] = m_isClosed.emplace(pShell, false);
        if (bNew)
            it->second = pShell->IsClosed();
        return !it->second;
    }

    double GetVolume() const
    {
        const Point3d origin = m_aSides.front().pFace->GetOuterLoop()->GetCoedge()->GetStartVertex()->GetPosition();
        double dVolume = 0.0;
        for (const auto& [pFace, bFront] : m_aSides)
            dVolume += (bFront ? -1.0 : 1.0) * pFace->GetVolumeContribution(nullptr, origin);
        return dVolume;
    }

    const FaceSide m_first;
    const Shell* m_pShell;
    ObjectSet m_hanging;
    std::vector<FaceSide> m_aSides;
    std::unordered_map<const Face*, bool> m_taken;
    std::unordered_map<const Shell*, bool> m_isClosed; ///< of those met
};
} // namespace

std::vector<Face*> EncloseCell(Face& face, bool bFront)
{
    CellWalk walk(face, bFront);
    return walk.Run() ? walk.Turn() : std::vector<Face*>();
}
} // namespace QRV
