#include "model/Face.h"

#include "geometry/Finite.h"
#include "history/History.h"
#include "model/Edge.h"
#include "model/ObjectOf.inl"
#include "model/Shell.h"
#include "model/SideWalk.h"
#include "model/Vertex.h"
#include "spatial/FaceFacets.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
template class ObjectOf<Face, Object>;

namespace
{
/// Planes that open wider than this are not taken for one, however small the face.
constexpr double kRoughlyParallelCosine = 0.5;

/// What the exact fit says when it found a plane that not all points lie on.
constexpr int kNotAllOnPlane = -2;

double GetLargestDistance(const std::vector<Point3d>& aPoints, const Plane& plane)
{
    double dLargest = 0.0;
    for (const Point3d& p : aPoints)
        dLargest = std::max(dLargest, std::abs(plane.dist(p)));
    return dLargest;
}

/// The plane of an outline. Three corners that are nearly in line may satisfy the exact fit and still give a useless
/// direction, so where some corner lies off it the fits over all corners compete.
Plane FitPlane(const std::vector<Point3d>& aPoints)
{
    int nStatus = 0;
    Plane best = Plane::fromPointsUsingThreeNoncollinearPnts(aPoints.data(), aPoints.size(), true, nStatus,
                                                             kLinearTolerance, true);
    if (nStatus != kNotAllOnPlane)
        return best;
    for (const Plane& other :
         {Plane::fromPoints(aPoints.data(), aPoints.size(), false), Plane(aPoints.data(), aPoints.size())})
        if (other.isValid() && GetLargestDistance(aPoints, other) < GetLargestDistance(aPoints, best))
            best = other;
    return best;
}

/// A face with more sides than this gets its facets when somebody asks for them. While lines are drawn in a large
/// ragged face, each would have to pay for all of it.
constexpr std::size_t kMaxSidesForFacetsAtOnce = 64;

/// Appends what `get` gives for each coedge of the face, each object once.
template <class T, class Get>
void CollectDistinct(const Face& face, std::vector<T*>& aObjects, Get&& get)
{
    ObjectSet seen;
    for (const Loop* pLoop : face.GetLoops())
        pLoop->ForEachCoedge(
            [&](const Coedge& coedge)
            {
                T* pObject = get(coedge);
                if (pObject && seen.insert(pObject).second)
                    aObjects.push_back(pObject);
            });
}
} // namespace

Face& Face::Create(History& history, const Plane& plane, Shell* pShell)
{
    Face& face = history.Create<Face>(plane);
    history.AwaitSearch(face);
    if (pShell)
        pShell->AddFaces({&face});
    return face;
}

Body* Face::GetBody() const
{
    return m_pShell ? m_pShell->GetBody() : nullptr;
}

void Face::SetShell(Shell* pShell)
{
    if (m_pShell == pShell)
        return;
    RecordChange();
    m_pShell = pShell;
}

const Plane& Face::GetPlane()
{
    Plane plane;
    if (!m_Plane.isValid() && ComputePlane(plane))
    {
        RecordChange();
        m_Plane = plane;
    }
    return m_Plane;
}

const Interval3d& Face::GetBox()
{
    if (!m_Box.isNull())
        return m_Box;
    const Interval3d box = ComputeBox();
    if (box.isNull())
        return m_Box;
    RecordChange();
    m_Box = box;
    try
    {
        AddToSearch();
    }
    catch (...)
    {
        m_Box = Interval3d(); // a box says that the face stands in the tree
        throw;
    }
    return m_Box;
}

bool Face::ComputePlane(Plane& plane) const
{
    const Loop* pOuter = GetOuterLoop();
    if (!pOuter)
        return false;
    std::vector<Vertex*> aVertices;
    pOuter->GetVertices(aVertices);
    std::vector<Point3d> aPoints;
    aPoints.reserve(aVertices.size());
    for (const Vertex* pVertex : aVertices)
        aPoints.push_back(pVertex->GetPosition());

    plane = FitPlane(aPoints);
    if (!plane.isValid())
        return false;
    if (pOuter->GetSignedArea(plane) < -kLinearTolerance)
        plane.negate();
    return true;
}

Interval3d Face::ComputeBox() const
{
    Interval3d box;
    for (const Loop* pLoop : m_aLoops)
        pLoop->AddToBox(box);
    return box;
}

bool Face::HasEdge(const Edge& edge) const
{
    return edge.GetUseBy(*this) > 0;
}

void Face::GetEdges(std::vector<Edge*>& aEdges) const
{
    CollectDistinct(*this, aEdges, [](const Coedge& coedge) { return coedge.GetEdge(); });
}

void Face::GetVertices(std::vector<Vertex*>& aVertices) const
{
    CollectDistinct(*this, aVertices, [](const Coedge& coedge) { return coedge.GetStartVertex(); });
}

void Face::GetCoedges(std::vector<Coedge*>& aCoedges) const
{
    for (const Loop* pLoop : m_aLoops)
        pLoop->GetCoedges(aCoedges);
}

void Face::Changed(unsigned nFlags)
{
    // Upward first: the body notes its present box before it hears which part of it is in doubt.
    if ((nFlags & nBoxChanged) == nBoxChanged && m_pShell)
        m_pShell->Changed(nFlags);
    if ((nFlags & nChangeBox) && !m_Box.isNull())
        LeaveSearch();
    if ((nFlags & nChangePlane) && m_Plane.isValid())
    {
        RecordChange();
        m_Plane = Plane();
    }
    if (nFlags & nChangeFacets)
    {
        RecordChange(); // with no facets too: they may be filled in, unrecorded, before the Delta ends
        m_pFacets.reset();
    }
    if ((nFlags & nChangeSmooth) && (nFlags & nChangePlane))
    {
        std::vector<Edge*> aEdges;
        GetEdges(aEdges);
        for (Edge* pEdge : aEdges)
            pEdge->SetSmooth(false);
    }
}

void Face::LeaveSearch()
{
    History& history = *GetHistory();
    RecordChange();
    if (const Body* pBody = GetBody())
    {
        history.GetBodyBoxMemo().NoteFaceLeft(*pBody, m_Box);
        history.GetBodyBoxMemo().NoteFaceTouched(*pBody, *this);
    }
    history.AwaitSearch(*this);
    RemoveFromSearch();
    m_Box = Interval3d(); // last, and nothing that may fail in between: a box says that the face stands in the tree
}

void Face::CompleteCaches()
{
    GetPlane();
    GetBox();
    if (VisitSidesUpTo(*this, kMaxSidesForFacetsAtOnce, [](const Coedge&) {}))
        GetFacets();
}

bool Face::AddToSearch()
{
    History* pHistory = GetHistory();
    if (m_Box.isNull() || !pHistory)
        return false;
    pHistory->AddToTree(this);
    return true;
}

bool Face::RemoveFromSearch()
{
    History* pHistory = GetHistory();
    return !m_Box.isNull() && pHistory && pHistory->RemoveFromTree(this);
}

void Face::AddToBox(Interval3d& box) const
{
    box += const_cast<Face*>(this)->GetBox();
}

Object* Face::GetTopOwner() const
{
    return m_pShell ? m_pShell->GetTopOwner() : const_cast<Face*>(this);
}

void Face::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    for (Loop* pLoop : m_aLoops)
        if (pLoop && seen.insert(pLoop).second)
            aChildren.push_back(pLoop);
    Object::GetChildren(aChildren, seen, bOwnedOnly);
}

void Face::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    if (m_pShell && seen.insert(m_pShell).second)
        aParents.push_back(m_pShell);
}

void Face::Transform(const Transf3d& transform)
{
    if (!transform.isIdentity())
        Changed(nMovedInBulk); // plane, box and facets follow from the vertices
}

int Face::GetSideIn(const Plane& plane)
{
    const int nSide = ComparePlanes(plane, GetPlane());
    const double dCosine = plane.normal % GetPlane().normal;
    if (nSide != 0 || std::abs(dCosine) < kRoughlyParallelCosine || !m_Plane.isValid())
        return nSide;
    bool bIn = true;
    GetOuterLoop()->ForEachCoedge([&](const Coedge& coedge)
                                  { bIn = bIn && IsOnPlane(coedge.GetStartVertex()->GetPosition(), plane); });
    return !bIn ? 0 : dCosine > 0.0 ? 1 : -1;
}

int ComparePlanes(const Plane& a, const Plane& b)
{
    if (a.isEqual(b, kPlaneDistanceTolerance, kParallelToleranceSqrd))
        return 1;
    return a.isEqual(-b, kPlaneDistanceTolerance, kParallelToleranceSqrd) ? -1 : 0;
}
} // namespace QRV
