#include "geometry/Finite.h"
#include "history/History.h"
#include "model/Face.h"
#include "spatial/FaceFacets.h"

#include <algorithm>

namespace QRV
{
const FaceFacets* Face::GetFacets()
{
    if (m_pFacets || m_aLoops.empty())
        return m_pFacets.get();
    bool bFailed = false;
    if (auto pFacets = FaceFacets::Compute(*this, bFailed))
        m_pFacets = std::move(pFacets);
    return m_pFacets.get();
}

bool Face::GetFacetVertices(std::vector<Vertex*>& aVertices)
{
    if (!GetFacets())
    {
        bool bFailed = false;
        if (!m_aLoops.empty())
            FaceFacets::Compute(*this, bFailed);
        return !bFailed;
    }
    for (const Facet& facet : m_pFacets->GetFacets())
        aVertices.insert(aVertices.end(), facet.aVertices.begin(), facet.aVertices.end());
    return true;
}

double Face::GetArea(const Transf3d* pTransform) const
{
    // Facets are a cache of the face: filling it changes nothing that shows.
    auto* pSelf = const_cast<Face*>(this);
    const FaceFacets* pFacets = pSelf->GetFacets();
    return pFacets ? pFacets->GetArea(pSelf->GetPlane(), pTransform) : 0.0;
}

double Face::GetVolumeContribution(const Transf3d* pTransform, const Point3d& origin)
{
    const FaceFacets* pFacets = GetFacets();
    return pFacets ? pFacets->GetVolumeContribution(pTransform, origin) : 0.0;
}

bool Face::GetCentroid(Point3d& centroid)
{
    const FaceFacets* pFacets = GetFacets();
    return pFacets && pFacets->GetCentroid(centroid, GetPlane());
}

bool Face::GetInteriorPoint(Point3d& p)
{
    const FaceFacets* pFacets = GetFacets();
    return pFacets && pFacets->GetInteriorPoint(p, GetPlane());
}

double Face::GetVariant()
{
    Point3d centroid;
    if (m_aLoops.empty() || !GetCentroid(centroid))
        return -1.0;
    double dSum = 0.0;
    double dCount = 0.0;
    for (const Loop* pLoop : m_aLoops)
        pLoop->ForEachCoedge(
            [&](const Coedge& coedge)
            {
                const Point3d& start = coedge.GetStartVertex()->GetPosition();
                dSum += centroid.dist(start) + centroid.dist(start + coedge.GetVector() * 0.5);
                dCount += 2.0;
            });
    const double dMean = dCount > 0.0 ? dSum / dCount : 0.0;
    return dMean > 0.0 ? dMean : -1.0;
}

bool Face::HitByRay(const Line3d& ray, std::vector<double>& aParameters, double dTol, double dMax)
{
    if (!GetBox().intersectsRay(ray, dTol, dMax))
        return false;
    const std::size_t nBefore = aParameters.size();
    if (const FaceFacets* pFacets = GetFacets())
        pFacets->HitByRay(ray, aParameters, dTol, dMax);
    return aParameters.size() > nBefore;
}

bool Face::IntersectsNegativeSideOfPlanes(const std::vector<Plane>& aPlanes, double dTol, bool bWhole)
{
    if (aPlanes.empty())
        return false;
    if (BoxLiesOnNegativeSideOfPlanes(GetBox(), aPlanes, dTol))
        return true;
    const FaceFacets* pFacets = GetFacets();
    return pFacets && pFacets->IntersectsNegativeSideOfPlanes(aPlanes, GetPlane(), dTol, bWhole);
}

bool Face::IsCoincident(Face& other)
{
    // The planes of equal corners far from the origin differ by more than planes that are compared as such may.
    if (!GetBox().isEqual(other.GetBox(), kPointToleranceSqrd) || GetSideIn(other.GetPlane()) == 0)
        return false;
    std::vector<Vertex*> aVertices;
    std::vector<Vertex*> aOthers;
    GetVertices(aVertices);
    other.GetVertices(aOthers);
    std::sort(aVertices.begin(), aVertices.end(), ByObjectID());
    std::sort(aOthers.begin(), aOthers.end(), ByObjectID());
    return aVertices == aOthers;
}
} // namespace QRV
