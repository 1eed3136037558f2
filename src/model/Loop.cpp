#include "model/Loop.h"

#include "model/Edge.h"
#include "model/Face.h"
#include "model/Finding.h"
#include "model/ObjectOf.inl"
#include "model/PointSide.h"
#include "model/Vertex.h"

#include <algorithm>

namespace QRV
{
template class ObjectOf<Loop, Object>;

namespace
{
/// Twice the area of the loop as a vector along its normal. Taken from the loop's own first corner, since products of
/// far-away positions lose all digits of a small area.
Vector3d GetDoubleAreaVector(const Loop& loop)
{
    Vector3d sum;
    const Vertex* pOrigin = nullptr;
    loop.ForEachCoedge(
        [&](const Coedge& coedge)
        {
            const Vertex* pStart = coedge.GetStartVertex();
            const Vertex* pEnd = coedge.GetEndVertex();
            if (!pStart || !pEnd)
                return;
            if (!pOrigin)
                pOrigin = pStart;
            sum += (pStart->GetPosition() - pOrigin->GetPosition()) * (pEnd->GetPosition() - pOrigin->GetPosition());
        });
    return sum;
}

UnitVector3d GetNormal(const Loop& loop)
{
    if (Face* pFace = loop.GetFace(); pFace && pFace->GetPlane().isValid())
        return pFace->GetPlane().normal;
    return UnitVector3d(GetDoubleAreaVector(loop), true);
}

/// A spur or a bridge: the loop passes the edge in both directions, so it bounds no area.
bool IsPassedTwice(const Coedge& coedge)
{
    std::uint64_t nUses = coedge.GetEdge()->GetUse();
    for (const Coedge* pOther = coedge.GetPartner(); pOther && pOther != &coedge && nUses > 0; --nUses)
    {
        if (pOther->GetLoop() == coedge.GetLoop())
            return true;
        pOther = pOther->GetPartner();
    }
    return false;
}

/// Calls `visit(a, b)` for the sides that bound area.
template <class Visit>
void ForEachBoundingSide(const Loop& loop, Visit&& visit)
{
    loop.ForEachCoedge(
        [&](const Coedge& coedge)
        {
            const Vertex* pStart = coedge.GetStartVertex();
            const Vertex* pEnd = coedge.GetEndVertex();
            if (pStart && pEnd && !IsPassedTwice(coedge))
                visit(pStart->GetPosition(), pEnd->GetPosition());
        });
}

/// The middle of the widest gap between the coordinates, which no corner is near. False when all are equal.
bool FindFreeLevel(std::vector<double>& aLevels, double& dLevel)
{
    std::sort(aLevels.begin(), aLevels.end());
    double dWidest = 0.0;
    for (std::size_t n = 1; n < aLevels.size(); ++n)
        if (const double dGap = aLevels[n] - aLevels[n - 1]; dGap > dWidest)
        {
            dWidest = dGap;
            dLevel = aLevels[n - 1] + dGap / 2;
        }
    return dWidest > 0.0;
}

/// A point within the area that the loop encloses: the middle of the longest stretch of a line across it.
bool FindEnclosedPoint(const Loop& loop, Point3d& p)
{
    const PlaneAxes axes(GetNormal(loop));
    std::vector<double> aLevels;
    ForEachBoundingSide(loop, [&](const Point3d& a, const Point3d&) { aLevels.push_back(a[axes.nV]); });
    double dLevel = 0.0;
    if (!FindFreeLevel(aLevels, dLevel))
        return false;

    std::vector<Point3d> aCrossings;
    ForEachBoundingSide(loop,
                        [&](const Point3d& a, const Point3d& b)
                        {
                            if ((a[axes.nV] > dLevel) != (b[axes.nV] > dLevel))
                                aCrossings.push_back(a + (b - a) * ((dLevel - a[axes.nV]) / (b[axes.nV] - a[axes.nV])));
                        });
    std::sort(aCrossings.begin(), aCrossings.end(),
              [&](const Point3d& a, const Point3d& b) { return a[axes.nU] < b[axes.nU]; });
    double dLongest = 0.0;
    for (std::size_t n = 1; n < aCrossings.size(); n += 2)
        if (const double dLength = aCrossings[n][axes.nU] - aCrossings[n - 1][axes.nU]; dLength > dLongest)
        {
            dLongest = dLength;
            p = aCrossings[n - 1] + (aCrossings[n] - aCrossings[n - 1]) * 0.5;
        }
    return dLongest > 0.0;
}

bool IsClosedWalk(const Loop& loop)
{
    ObjectSet seen;
    const Coedge* pCoedge = loop.GetCoedge();
    while (pCoedge && seen.insert(pCoedge).second)
        pCoedge = pCoedge->GetNext();
    return pCoedge == loop.GetCoedge();
}
} // namespace

void Loop::SetFace(Face* pFace)
{
    if (m_pFace == pFace)
        return;
    RecordChange();
    m_pFace = pFace;
}

void Loop::SetCoedge(Coedge* pCoedge)
{
    if (m_pCoedge == pCoedge)
        return;
    RecordChange();
    m_pCoedge = pCoedge;
}

std::size_t Loop::GetCoedges(std::vector<Coedge*>& aCoedges) const
{
    const std::size_t nBefore = aCoedges.size();
    ForEachCoedge([&](Coedge& coedge) { aCoedges.push_back(&coedge); });
    return aCoedges.size() - nBefore;
}

std::size_t Loop::GetEdges(std::vector<Edge*>& aEdges) const
{
    const std::size_t nBefore = aEdges.size();
    ForEachCoedge(
        [&](const Coedge& coedge)
        {
            if (coedge.GetEdge())
                aEdges.push_back(coedge.GetEdge());
        });
    return aEdges.size() - nBefore;
}

std::size_t Loop::GetVertices(std::vector<Vertex*>& aVertices) const
{
    const std::size_t nBefore = aVertices.size();
    ForEachCoedge(
        [&](const Coedge& coedge)
        {
            if (Vertex* pStart = coedge.GetStartVertex())
                aVertices.push_back(pStart);
        });
    return aVertices.size() - nBefore;
}

void Loop::OwnCoedges()
{
    ForEachCoedge([this](Coedge& coedge) { coedge.SetLoop(this); });
}

void Loop::Reverse()
{
    ForEachCoedge([](Coedge& coedge) { coedge.Reverse(); });
}

double Loop::GetSignedArea(const Plane& plane) const
{
    return GetDoubleAreaVector(*this) % plane.normal / 2;
}

nConvexity Loop::GetConvexity() const
{
    const Coedge* pPartner = m_pCoedge ? m_pCoedge->GetPartner() : nullptr;
    if (!pPartner || pPartner->GetPartner() != m_pCoedge || !m_pCoedge->GetFace() || !pPartner->GetFace())
        return nConvexityNone;
    const nConvexity nFirst = m_pCoedge->GetEdge()->GetConvexity();
    nConvexity nResult = nFirst;
    bool bSettled = false;
    ForEachCoedge(
        [&](const Coedge& coedge)
        {
            const nConvexity n = coedge.GetEdge() ? coedge.GetEdge()->GetConvexity() : nConvexityNone;
            if (bSettled || n == nFirst)
                return;
            nResult = n == nConvexityNone ? n : nConvexityMixed;
            bSettled = true;
        });
    return nResult == nConvexityNonManifold ? nConvexityNone : nResult;
}

Interval3d Loop::GetBox() const
{
    Interval3d box;
    AddToBox(box);
    return box;
}

nLoopSide Loop::FindSide(const Point3d& p) const
{
    PointSide side(p, PlaneAxes(GetNormal(*this)));
    ForEachCoedge(
        [&](const Coedge& coedge)
        {
            const Edge* pEdge = coedge.GetEdge();
            if (pEdge && pEdge->IsComplete())
                side.Pass(pEdge->GetStartVertex()->GetPosition(), pEdge->GetEndVertex()->GetPosition());
        });
    return side.Get();
}

bool Loop::ContainsLoop(const Loop& inner) const
{
    std::vector<Vertex*> aVertices;
    inner.GetVertices(aVertices);
    for (const Vertex* pVertex : aVertices)
        if (const nLoopSide nSide = FindSide(pVertex->GetPosition()); nSide != nLoopSide::nOn)
            return nSide == nLoopSide::nInside;

    const Edge* pFirst = inner.GetCoedge() ? inner.GetCoedge()->GetEdge() : nullptr;
    if (!pFirst || !pFirst->IsComplete())
        return false;
    if (const nLoopSide nSide = FindSide(pFirst->GetMidpoint()); nSide != nLoopSide::nOn)
        return nSide == nLoopSide::nInside;
    Point3d enclosed;
    return FindEnclosedPoint(inner, enclosed) && FindSide(enclosed) == nLoopSide::nInside;
}

double Loop::GetArea(const Transf3d* pTransform) const
{
    return m_pFace && !pTransform ? GetSignedArea(m_pFace->GetPlane()) : 0.0;
}

void Loop::Changed(unsigned nFlags)
{
    if ((nFlags & nChangePropagate) && m_pFace)
        m_pFace->Changed(nFlags);
}

void Loop::AddToBox(Interval3d& box) const
{
    ForEachCoedge(
        [&](const Coedge& coedge)
        {
            if (const Vertex* pStart = coedge.GetStartVertex())
                box += pStart->GetPosition();
        });
}

Object* Loop::GetTopOwner() const
{
    return m_pFace ? m_pFace->GetTopOwner() : const_cast<Loop*>(this);
}

void Loop::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    ForEachCoedge(
        [&](Coedge& coedge)
        {
            if (seen.insert(&coedge).second)
                aChildren.push_back(&coedge);
        });
    Object::GetChildren(aChildren, seen, bOwnedOnly);
}

void Loop::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    if (m_pFace && seen.insert(m_pFace).second)
        aParents.push_back(m_pFace);
}

std::size_t Loop::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    if (!m_pCoedge)
        nFindings += AddFinding(aResults, Result::nLoopNoCoedge, this);
    else if (!IsClosedWalk(*this))
        nFindings += AddFinding(aResults, Result::nLoopBadCoedges, this);
    return nFindings + Object::CheckValidity(aResults);
}
} // namespace QRV
