#include "operations/FaceSearch.h"

#include "geometry/Finite.h"
#include "geometry/Trigonometry.h"
#include "history/History.h"
#include "model/Face.h"
#include "operations/FaceBuilding.h"
#include "operations/SideSearch.h"
#include "spatial/ShortList.h"

#include <algorithm>
#include <optional>

namespace QRV
{
namespace
{
/// `w` continues the line from `u` to `v`, too near to it to tell a plane.
bool AreCollinear(const Point3d& u, const Point3d& v, const Point3d& w)
{
    constexpr double kNearLine = 1e-11;
    constexpr double kNearLinePerLength = 1e-8;
    const double dBound = std::max(ScaledTolerance(w, kNearLine), w.dist(v) * kNearLinePerLength);
    return Line3d(u, v).dist(w) <= dBound;
}

/// The edge has coedges of two faces that lie in the plane, on whichever side.
bool IsFilledInPlane(const Edge& edge, const Plane& plane)
{
    int nInPlane = 0;
    const Coedge* pCoedge = edge.GetCoedge();
    for (std::uint64_t nLeft = edge.GetUse(); pCoedge && nLeft + std::uint64_t(nInPlane) >= 2 && nInPlane < 2; --nLeft)
    {
        Face* pFace = pCoedge->GetFace();
        nInPlane += pFace && pFace->GetSideIn(plane) != 0;
        pCoedge = pCoedge->GetPartner();
    }
    return nInPlane >= 2;
}

bool HasOtherEdge(const Vertex& vertex)
{
    ShortList<Edge*> aEdges;
    return vertex.GetConnectedEdges(aEdges) > 1;
}

/// On which side of the first edge a walk looks for its face.
enum class nWalkSide
{
    nLeft,
    nRight
};

/// A walk in depth from the end of one edge back to its start. It keeps to one plane once the first bend has shown
/// one, and turns as far to its side as it can, so that it goes round the region on that side.
class LoopWalk
{
public:
    LoopWalk(History& history, const FaceSearchOptions& options, nWalkSide nSide, SideSearch& sides,
             std::vector<std::uint64_t>& aFormed)
        : m_history(history), m_options(options), m_nSide(nSide), m_sides(sides), m_aFormed(aFormed)
    {
    }

    void Run(Edge& first, bool bForward)
    {
        ReserveFew(m_path);
        ReserveFew(m_aLevels);
        m_path.assign(1, {&first, bForward});
        m_pStart = bForward ? first.GetStartVertex() : first.GetEndVertex();
        m_visited = {GetEnd(0)};
        if (m_options.pPlane)
            m_plane = *m_options.pPlane;
        m_aLevels.clear();
        PushLevel();
        while (!m_aLevels.empty())
            Advance();
    }

private:
    struct Candidate
    {
        Edge* pEdge;
        Vertex* pFar;
        double dKey; ///< what the candidates of a level are ordered by, ascending
    };

    struct Level
    {
        std::size_t nPathLength;
        std::vector<Candidate> aCandidates;
        std::size_t nNext = 0;
    };

    Vertex* GetStart(std::size_t n) const
    {
        return m_path[n].second ? m_path[n].first->GetStartVertex() : m_path[n].first->GetEndVertex();
    }
    Vertex* GetEnd(std::size_t n) const
    {
        return m_path[n].second ? m_path[n].first->GetEndVertex() : m_path[n].first->GetStartVertex();
    }
    bool IsClosed() const { return m_visited.contains(m_pStart); }

    /// One step: tries the next candidate of the deepest level, or leaves that level.
    void Advance()
    {
        Level& level = m_aLevels.back();
        const bool bCameBack = m_path.size() > level.nPathLength;
        m_path.resize(level.nPathLength);
        if (bCameBack && m_plane && !m_options.pPlane && m_path.size() < m_nPlaneDepth)
            ForgetPlane();
        if (IsClosed() || level.nNext == level.aCandidates.size())
        {
            m_aLevels.pop_back();
            return;
        }
        Try(level.aCandidates[level.nNext++]);
    }

    void ForgetPlane()
    {
        m_plane.reset();
        m_visited.clear();
        for (std::size_t i = 0; i < m_path.size(); ++i)
            m_visited.insert(GetEnd(i));
    }

    void PushLevel()
    {
        Level level;
        level.nPathLength = m_path.size();
        CollectCandidates(level.aCandidates);
        m_aLevels.push_back(std::move(level));
    }

    void CollectCandidates(std::vector<Candidate>& aCandidates)
    {
        const Edge* pLast = m_path.back().first;
        Vertex* pAt = GetEnd(m_path.size() - 1);
        m_aEdgesAt.clear();
        pAt->GetConnectedEdges(m_aEdgesAt);
        aCandidates.reserve(m_aEdgesAt.size());
        const UnitVector3d travel(pAt->GetPosition() - GetStart(m_path.size() - 1)->GetPosition(), true);
        for (Edge* pEdge : m_aEdgesAt)
        {
            Vertex* pFar = pEdge->GetOtherVertex(pAt);
            if (pEdge == pLast || m_visited.contains(pFar))
                continue;
            if (m_plane && (!CanReach(pFar->GetPosition()) || IsFilledInPlane(*pEdge, *m_plane)))
                continue;
            if (m_options.pBoundingPlanes &&
                !PointIntersectsNegativeSideOfPlanes(pFar->GetPosition(), *m_options.pBoundingPlanes, kLinearTolerance))
                continue;
            const UnitVector3d onward(pFar->GetPosition() - pAt->GetPosition(), true);
            aCandidates.push_back({pEdge, pFar, GetKey(travel, onward)});
        }
        // Sharpest turns first; ids settle ties.
        std::sort(aCandidates.begin(), aCandidates.end(),
                  [](const Candidate& a, const Candidate& b)
                  { return a.dKey != b.dKey ? a.dKey < b.dKey : a.pEdge->GetID() < b.pEdge->GetID(); });
    }

    double GetKey(const UnitVector3d& travel, const UnitVector3d& onward) const
    {
        if (!m_plane)
            return travel % onward;
        const double dTurn = ArcTan2(m_plane->normal % (travel * onward), travel % onward);
        return m_nSide == nWalkSide::nLeft ? -dTurn : dTurn;
    }

    void Try(const Candidate& candidate)
    {
        if (m_visited.contains(candidate.pFar)) // an earlier candidate of the level led there to no end
            return;
        const std::size_t nLast = m_path.size() - 1;
        const Point3d& u = GetStart(nLast)->GetPosition();
        const Point3d& v = GetEnd(nLast)->GetPosition();
        const Point3d& w = candidate.pFar->GetPosition();
        if (m_plane && !IsOnPlane(w, *m_plane))
            m_plane = FindBetterPlane(w);
        const bool bFindsPlane = !m_plane && !AreCollinear(u, v, w);
        if (bFindsPlane)
        {
            const Plane plane = FindPlane(u, v, w, *candidate.pEdge);
            if (IsFilledInPlane(*candidate.pEdge, plane))
                return;
            if (!MayEnclose(plane))
                return ForgetPlane(); // as after a walk for nothing
            m_plane = plane;
            m_nPlaneDepth = m_path.size() + 1;
        }
        m_path.emplace_back(candidate.pEdge,
                            candidate.pEdge->GetOtherVertex(candidate.pFar) == candidate.pEdge->GetStartVertex());
        m_visited.insert(candidate.pFar);
        if (candidate.pFar == m_pStart)
            Close();
        else if (!m_options.bInsideFacesOnly || !m_plane || FindFaceHolding(m_history, GetPathVertices(), *m_plane))
            PushLevel();
    }

    bool CanReach(const Point3d& p) const { return IsOnPlane(p, *m_plane) || FindBetterPlane(p); }

    /// A plane that holds the path and a place slightly off the present plane, which came from a bend of short or
    /// nearly straight edges and tells a direction only roughly. None for a plane that was given.
    std::optional<Plane> FindBetterPlane(const Point3d& p) const
    {
        constexpr double kSlightly = 1e-3;
        const Point3d& start = m_pStart->GetPosition();
        if (m_options.pPlane || std::abs(m_plane->dist(p)) > kSlightly * p.dist(start))
            return std::nullopt;
        std::vector<Point3d> aPoints{start, p};
        for (std::size_t i = 0; i < m_path.size(); ++i)
            aPoints.push_back(GetEnd(i)->GetPosition());
        const auto farthest = [&](const auto& getDistance)
        {
            return *std::max_element(aPoints.begin(), aPoints.end(),
                                     [&](const Point3d& a, const Point3d& b)
                                     { return getDistance(a) < getDistance(b); });
        };
        const Point3d end = farthest([&](const Point3d& q) { return q.distSqrd(start); });
        const Line3d line(start, end);
        const Point3d side = farthest([&](const Point3d& q) { return line.dist(q); });
        const Plane plane(start, UnitVector3d((end - start) * (side - start), true));
        if (!plane.isValid() ||
            !std::all_of(aPoints.begin(), aPoints.end(), [&](const Point3d& q) { return IsOnPlane(q, plane); }))
            return std::nullopt;
        return plane.normal % m_plane->normal < 0.0 ? -plane : plane;
    }

    /// The plane in which the bend u, v, w turns left: that of a face at it where one fits, since three near points
    /// tell a direction only roughly.
    Plane FindPlane(const Point3d& u, const Point3d& v, const Point3d& w, const Edge& onward) const
    {
        const Plane bend(v, UnitVector3d((v - u) * (w - v), true));
        ShortList<Face*> aFaces;
        m_path.back().first->GetFaces(aFaces);
        onward.GetFaces(aFaces);
        for (Face* pFace : aFaces)
        {
            const Plane& plane = pFace->GetPlane();
            if (IsOnPlane(u, plane) && IsOnPlane(v, plane) && IsOnPlane(w, plane))
                return bend.normal % plane.normal < 0.0 ? -plane : plane;
        }
        return bend;
    }

    /// Whether a loop can be found on this walk's side of the first edge. Spares the walk round the outside of large
    /// sketches, from one sketch to another, and round faces that stand on both sides already.
    bool MayEnclose(const Plane& plane)
    {
        return m_sides.MayEnclose(plane, m_path.front().second == (m_nSide == nWalkSide::nLeft));
    }

    std::vector<Vertex*> GetPathVertices() const
    {
        std::vector<Vertex*> aVertices{m_pStart};
        for (std::size_t i = 0; i < m_path.size(); ++i)
            if (GetEnd(i) != m_pStart)
                aVertices.push_back(GetEnd(i));
        return aVertices;
    }

    void Close()
    {
        if (!m_plane)
            return;
        Face* pHolding = nullptr;
        if (m_options.bInsideFacesOnly)
        {
            pHolding = FindFaceHolding(m_history, GetPathVertices(), *m_plane);
            if (!pHolding)
                return;
        }
        Face* pFace = BuildFaceFromLoop(m_history, m_path, *m_plane, m_options.pFaceAttributes);
        if (!pFace)
            return;
        if (pHolding && pHolding->GetPlane().normal % pFace->GetPlane().normal < -kLinearTolerance)
            pFace->Reverse();
        const std::uint64_t nFace = pFace->GetID();
        const bool bMayClose = SettleNewFace(*pFace, false, pHolding, nullptr);
        m_aFormed.push_back(nFace);
        if (!m_options.bInsideFacesOnly)
            FinishFormed(nFace, bMayClose);
        m_sides.NoteFaceFormed();
    }

    void FinishFormed(std::uint64_t nFace, bool bMayClose);

    History& m_history;
    const FaceSearchOptions m_options;
    const nWalkSide m_nSide;
    SideSearch& m_sides;
    std::vector<std::uint64_t>& m_aFormed;
    LoopPath m_path;
    Vertex* m_pStart = nullptr;
    std::optional<Plane> m_plane;
    std::size_t m_nPlaneDepth = 0; ///< length of the path with which the plane was found
    ObjectSet m_visited;           ///< ends of what was walked; the start only once the loop is closed
    std::vector<Level> m_aLevels;
    ShortList<Edge*> m_aEdgesAt;
};

/// Makes faces of the closed sketches inside a new face, and inside those.
void PullEdgesIntoFaces(History& history, std::vector<std::uint64_t> aFaceIDs)
{
    for (std::size_t i = 0; i < aFaceIDs.size(); ++i)
    {
        auto* pFace = history.Get<Face>(aFaceIDs[i]);
        if (!pFace)
            continue;
        std::vector<Edge*> aInside;
        history.GetEdgeTree().FindInside(pFace->GetBox(), aInside);
        std::vector<std::uint64_t> aEdgeIDs;
        for (const Edge* pEdge : aInside)
            aEdgeIDs.push_back(pEdge->GetID());
        std::sort(aEdgeIDs.begin(), aEdgeIDs.end());

        std::vector<Vertex*> aCorners;
        pFace->GetVertices(aCorners);
        const ObjectSet corners(aCorners.begin(), aCorners.end());
        for (const std::uint64_t nEdge : aEdgeIDs)
        {
            auto* pEdge = history.Get<Edge>(nEdge);
            pFace = history.Get<Face>(aFaceIDs[i]);
            if (!pEdge || !pFace || corners.contains(pEdge->GetStartVertex()) ||
                corners.contains(pEdge->GetEndVertex()))
                continue;
            if (IsFilledInPlane(*pEdge, pFace->GetPlane()))
                continue; // of the many edges in the box of a large face, most have their faces
            if (pFace->HasEdge(*pEdge) || !pFace->ContainsPoint(pEdge->GetStartVertex()->GetPosition(), false) ||
                !pFace->ContainsPoint(pEdge->GetEndVertex()->GetPosition(), false))
                continue;
            const Plane plane = pFace->GetPlane();
            FaceSearchOptions options;
            options.bInsideFacesOnly = true;
            options.pPlane = &plane;
            SideSearch sides(history, *pEdge);
            LoopWalk(history, options, nWalkSide::nLeft, sides, aFaceIDs).Run(*pEdge, true);
        }
    }
}

void LoopWalk::FinishFormed(std::uint64_t nFace, bool bMayClose)
{
    PullEdgesIntoFaces(m_history, {nFace});
    if (auto* pFace = m_history.Get<Face>(nFace); pFace && bMayClose)
        CloseFaceComponent(*pFace);
}
} // namespace

void FormFacesFromEdge(Edge& edge, const FaceSearchOptions& options)
{
    if (!edge.IsComplete())
        return;
    History& history = *edge.GetHistory();
    if (!options.bInsideFacesOnly && !options.pPlane && !options.pBoundingPlanes)
        history.GetOuterSides().NoteFacesSought(edge.GetID());
    if (edge.IsFree() && (!HasOtherEdge(*edge.GetStartVertex()) || !HasOtherEdge(*edge.GetEndVertex())))
        return; // a dangling edge closes nothing
    std::vector<std::uint64_t> aFormed;
    const std::uint64_t nEdge = edge.GetID();
    SideSearch sides(history, edge);
    for (const nWalkSide nSide : {nWalkSide::nLeft, nWalkSide::nRight})
        if (auto* pEdge = history.Get<Edge>(nEdge))
            LoopWalk(history, options, nSide, sides, aFormed).Run(*pEdge, true);
    sides.Finish();
    if (options.bInsideFacesOnly)
        PullEdgesIntoFaces(history, aFormed);
}
} // namespace QRV
