#include "model/CircleAttribute.h"

#include "history/History.h"
#include "model/Edge.h"
#include "model/Finding.h"
#include "model/ObjectOf.inl"
#include "model/Vertex.h"

#include <algorithm>

namespace QRV
{
template class ObjectOf<CircleAttribute, Attribute>;

namespace
{
constexpr double kMinRadius = 1e-12;
} // namespace

void CircleAttribute::GetConnectedOwners(Edge& edge, std::vector<Edge*>& aEdges) const
{
    std::vector<Edge*> aFound{&edge};
    ObjectSet seen{&edge};
    for (std::size_t i = 0; i < aFound.size(); ++i)
        for (const Vertex* pVertex : {aFound[i]->GetStartVertex(), aFound[i]->GetEndVertex()})
        {
            ShortList<Edge*> aAtVertex;
            pVertex->GetConnectedEdges(aAtVertex);
            for (Edge* pEdge : aAtVertex)
                if (HasOwner(*pEdge) && seen.insert(pEdge).second)
                    aFound.push_back(pEdge);
        }
    std::sort(aFound.begin(), aFound.end(), ByObjectID());
    aEdges.insert(aEdges.end(), aFound.begin(), aFound.end());
}

void CircleAttribute::Transform(const Transf3d& transform)
{
    RecordChange();
    m_dRadius *= (transform * Vector3d(m_xAxis)).length();
    m_center *= transform;
    m_normal *= transform;
    m_xAxis *= transform;
}

std::size_t CircleAttribute::CheckValidity(std::vector<Result>& aResults) const
{
    constexpr double kOffCircle = 1e-6;
    std::size_t nFindings = 0;
    if (m_normal.isExactNull() || m_xAxis.isExactNull() || !(m_dRadius >= kMinRadius) || !m_normal.isPerpend(m_xAxis))
        nFindings += AddFinding(aResults, Result::nCircleAttributeBadData, this);
    const double dTol = std::max(m_dRadius, 1.0) * kOffCircle;
    const Plane plane(m_center, m_normal);
    // Nearer to the centre than the circle is where a chord was cut.
    const auto isOff = [&](const Vertex* pVertex)
    {
        return !pVertex || std::abs(plane.dist(pVertex->GetPosition())) > dTol ||
               m_center.dist(pVertex->GetPosition()) > m_dRadius + dTol;
    };
    for (const std::uint64_t nOwner : m_aOwnerIDs)
    {
        const Object* pOwner = GetHistory()->GetObject(nOwner);
        const auto* pEdge = dynamic_cast<const Edge*>(pOwner);
        if (pOwner && (!pEdge || isOff(pEdge->GetStartVertex()) || isOff(pEdge->GetEndVertex())))
            nFindings += AddFinding(aResults, Result::nCircleAttributeBadEdge, this, pOwner);
    }
    return nFindings + Attribute::CheckValidity(aResults);
}
} // namespace QRV
