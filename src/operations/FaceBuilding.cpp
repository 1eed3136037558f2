#include "operations/FaceBuilding.h"

#include "geometry/Finite.h"
#include "geometry/Trigonometry.h"
#include "history/History.h"
#include "model/Body.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "spatial/OutlineSide.h"

#include <algorithm>

namespace QRV
{
namespace
{
constexpr std::uint64_t kMaxUse = 255;

Vertex* GetStart(const LoopPath::value_type& step)
{
    return step.second ? step.first->GetStartVertex() : step.first->GetEndVertex();
}

Vertex* GetEnd(const LoopPath::value_type& step)
{
    return step.second ? step.first->GetEndVertex() : step.first->GetStartVertex();
}

/// Whether the faces of the shell run along each edge as often one way as the other. One plain pass, for a shell may be
/// large.
bool HasNoOpenEdge(const Shell& shell)
{
    std::vector<Coedge*> aCoedges;
    ShortList<Coedge*> aOnEdge;
    const auto isOpen = [&](const Coedge* pCoedge)
    {
        aOnEdge.clear();
        pCoedge->GetEdge()->GetCoedges(aOnEdge);
        std::ptrdiff_t nSurplus = 0;
        for (const Coedge* pOther : aOnEdge)
            if (pOther->GetFace() && pOther->GetFace()->GetShell() == &shell)
                nSurplus += pOther->IsForward() ? 1 : -1;
        return nSurplus != 0;
    };
    for (const Face* pFace : shell.GetFaces())
    {
        aCoedges.clear();
        pFace->GetCoedges(aCoedges);
        if (std::any_of(aCoedges.begin(), aCoedges.end(), isOpen))
            return false;
    }
    return true;
}

/// Builds one face; the steps share what they learn about the neighbours.
class FaceBuilder
{
public:
    FaceBuilder(History& history, const LoopPath& path, const Plane& plane)
        : m_history(history), m_path(path), m_plane(plane)
    {
    }

    Face* Run(const std::vector<Attribute*>* pFaceAttributes)
    {
        if (m_path.size() < 3 || !m_plane.isValid() || IsSomeEdgeFull())
            return nullptr;
        m_bClockwise = IsClockwise();
        if (IsSideFilled() || DividesSolids() || CrossesItself())
            return nullptr;
        if (!m_pShell)
            NoteShellsAtVertices();
        const bool bAgainstPath = MustRunAgainstPath();
        Face& face = MakeFace(m_bClockwise != bAgainstPath ? -m_plane : m_plane, pFaceAttributes);
        if (bAgainstPath)
            face.GetOuterLoop()->Reverse();
        RebuildGroups(face);
        face.GetBox();
        if (m_pShell)
            JoinShell(face);
        return &face;
    }

private:
    bool IsSomeEdgeFull() const
    {
        return std::any_of(m_path.begin(), m_path.end(),
                           [](const auto& step) { return step.first->GetUse() >= kMaxUse; });
    }

    /// Whether sides run through one another: lines that were drawn without a look at the model may do so and stay
    /// uncut. Such a path bounds nothing.
    bool CrossesItself() const
    {
        std::vector<const Point3d*> aCorners;
        aCorners.reserve(m_path.size());
        for (const auto& step : m_path)
            aCorners.push_back(&GetStart(step)->GetPosition());
        return QRV::CrossesItself(aCorners, m_plane.normal);
    }

    bool IsClockwise() const
    {
        const Point3d& origin = GetStart(m_path.front())->GetPosition();
        Vector3d sum;
        for (const auto& step : m_path)
            sum += (GetStart(step)->GetPosition() - origin) * (GetEnd(step)->GetPosition() - origin);
        return sum % m_plane.normal < 0.0;
    }

    void NoteShell(const Face& face)
    {
        Shell* pShell = face.GetShell();
        if (!pShell || pShell == m_pShell)
            return;
        if (!m_pShell)
            m_pShell = pShell;
        else if (pShell->GetBody())
            m_bSeveralShells = true;
    }

    /// Whether a face in the plane has a coedge that runs as the new face's would. Notes the shells met.
    bool IsSideFilled()
    {
        ShortList<Coedge*> aCoedges;
        for (const auto& [pEdge, bForward] : m_path)
        {
            aCoedges.clear();
            pEdge->GetCoedges(aCoedges);
            m_bSeveralFacesOnEdge = m_bSeveralFacesOnEdge || aCoedges.size() >= 2;
            for (const Coedge* pCoedge : aCoedges)
            {
                Face* pFace = pCoedge->GetFace();
                if (!pFace)
                    continue;
                NoteShell(*pFace);
                const int nSide = CompareWith(*pFace);
                if (nSide != 0 && (pCoedge->IsForward() != (nSide < 0)) == (bForward != m_bClockwise))
                    return true;
            }
        }
        return false;
    }

    /// As Face::GetSideIn; here the path may also lie in the plane of the face.
    int CompareWith(Face& face) const
    {
        const int nSide = face.GetSideIn(m_plane);
        if (nSide != 0)
            return nSide;
        const Plane& other = face.GetPlane();
        const auto isOnIt = [&](const auto& step) { return IsOnPlane(GetStart(step)->GetPosition(), other); };
        if (!std::all_of(m_path.begin(), m_path.end(), isOnIt))
            return 0;
        return m_plane.normal % other.normal > 0.0 ? 1 : -1;
    }

    /// Whether the path runs round on solids and the face would stand inside them: what a solid encloses is filled
    /// already, and a face across it would take the solid apart.
    bool DividesSolids() const
    {
        std::vector<const Shell*> aShells;
        for (const auto& step : m_path)
        {
            const Shell* pShell = step.first->FindShellAround(GetInward(step));
            if (!pShell)
                return false;
            if (std::find(aShells.begin(), aShells.end(), pShell) == aShells.end())
                aShells.push_back(pShell);
        }
        return std::all_of(aShells.begin(), aShells.end(), [](const Shell* pShell) { return HasNoOpenEdge(*pShell); });
    }

    /// From the edge into the face to be made.
    Vector3d GetInward(const LoopPath::value_type& step) const
    {
        const Vector3d left = m_plane.normal * (GetEnd(step)->GetPosition() - GetStart(step)->GetPosition());
        return m_bClockwise ? -left : left;
    }

    void NoteShellsAtVertices()
    {
        ShortList<Face*> aFaces;
        for (const auto& step : m_path)
        {
            aFaces.clear();
            GetStart(step)->GetFaces(aFaces);
            for (const Face* pFace : aFaces)
                NoteShell(*pFace);
        }
        m_bShellByVertices = m_pShell != nullptr;
    }

    /// The first edge with one face on it decides: the new face runs against that one's coedge.
    bool MustRunAgainstPath() const
    {
        for (const auto& [pEdge, bForward] : m_path)
            if (pEdge->GetUse() == 1)
                return pEdge->GetCoedge()->IsForward() == bForward;
        return false;
    }

    Face& MakeFace(const Plane& plane, const std::vector<Attribute*>* pFaceAttributes)
    {
        Face& face = Face::Create(m_history, plane, nullptr);
        if (pFaceAttributes)
            for (Attribute* pAttribute : *pFaceAttributes)
                face.AddAttribute(pAttribute, true);
        Loop& loop = m_history.Create<Loop>();
        std::vector<Coedge*> aCoedges;
        for (const auto& [pEdge, bForward] : m_path)
        {
            Coedge& coedge = m_history.Create<Coedge>(bForward);
            coedge.SetLoop(&loop);
            pEdge->AddCoedge(coedge);
            pEdge->SetSmooth(false);
            aCoedges.push_back(&coedge);
        }
        LinkLoop(aCoedges);
        loop.SetCoedge(aCoedges.front());
        face.AddLoop(&loop, true);
        return face;
    }

    void RebuildGroups(const Face& face)
    {
        std::vector<Vertex*> aVertices;
        face.GetVertices(aVertices);
        for (Vertex* pVertex : aVertices)
            pVertex->RebuildGroups(false);
    }

    void JoinShell(Face& face)
    {
        Body* pBody = m_pShell->GetBody();
        const std::vector<Face*> aJoining = m_bSeveralShells ? std::vector<Face*>{&face} : face.GetShelllessAround();
        const bool bRebuild = pBody && (m_bSeveralShells || m_bShellByVertices || m_bSeveralFacesOnEdge);
        Shell& shell = bRebuild ? m_pShell->ChooseForOutside() : *m_pShell;
        shell.AddFaces(aJoining);
        if (bRebuild)
            pBody->RebuildAround(aJoining);
        if (aJoining.size() > 1)
            RebuildBranchedBodies({face.GetShell()->GetFaces().begin(), face.GetShell()->GetFaces().end()});
    }

    History& m_history;
    const LoopPath& m_path;
    const Plane m_plane;
    bool m_bClockwise = false;
    Shell* m_pShell = nullptr;
    bool m_bSeveralShells = false;
    bool m_bShellByVertices = false;
    bool m_bSeveralFacesOnEdge = false; ///< with the new face an edge has three or more
};
} // namespace

Face* FindFaceHolding(History& history, const std::vector<Vertex*>& aVertices, const Plane& plane)
{
    Interval3d box;
    for (const Vertex* pVertex : aVertices)
        box += pVertex->GetPosition();
    std::vector<Face*> aFaces;
    history.GetFaceTree().FindHolding(box, aFaces);
    std::sort(aFaces.begin(), aFaces.end(), ByObjectID());
    const auto holdsAll = [&](Face* pFace)
    {
        return pFace->GetSideIn(plane) != 0 &&
               std::all_of(aVertices.begin(), aVertices.end(),
                           [&](const Vertex* pVertex) { return pFace->ContainsPoint(pVertex->GetPosition(), false); });
    };
    const auto it = std::find_if(aFaces.begin(), aFaces.end(), holdsAll);
    return it == aFaces.end() ? nullptr : *it;
}

Face* BuildFaceFromLoop(History& history, const LoopPath& path, const Plane& plane,
                        const std::vector<Attribute*>* pFaceAttributes)
{
    return FaceBuilder(history, path, plane).Run(pFaceAttributes);
}
} // namespace QRV
