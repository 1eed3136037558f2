#include "model/Edge.h"
#include "model/Face.h"
#include "model/Finding.h"
#include "model/Vertex.h"
#include "spatial/FaceFacets.h"

#include <algorithm>
#include <cmath>

namespace QRV
{
namespace
{
constexpr double kFlatnessTolerance = 1e-6;
constexpr double kFacetAreaTolerance = 1e-9;

std::size_t CheckBox(const Face& face, std::vector<Result>& aResults)
{
    const Interval3d& box = face.GetCachedBox();
    if (box.isNull() || box.isEqual(face.ComputeBox(), kCachedBoxToleranceSqrd))
        return 0;
    return AddFinding(aResults, Result::nFaceBadBox, &face);
}

std::size_t CheckLoopOwners(const Face& face, std::vector<Result>& aResults)
{
    std::size_t nFindings = 0;
    for (const Loop* pLoop : face.GetLoops())
        if (pLoop && pLoop->GetFace() != &face)
            nFindings += AddFinding(aResults, Result::nFaceLoopOwner, &face, pLoop);
    return nFindings;
}

std::size_t CheckAreas(const Face& face, const Plane& plane, std::vector<Result>& aResults)
{
    std::size_t nFindings = 0;
    for (const Loop* pLoop : face.GetLoops())
    {
        const double dSign = pLoop == face.GetOuterLoop() ? 1.0 : -1.0;
        if (dSign * pLoop->GetSignedArea(plane) < -kLinearTolerance)
            nFindings += AddFinding(aResults, Result::nLoopBadArea, pLoop);
    }
    return nFindings;
}

std::size_t CheckHoles(const Face& face, std::vector<Result>& aResults)
{
    std::size_t nFindings = 0;
    const Loop* pOuter = face.GetOuterLoop();
    for (const Loop* pLoop : face.GetLoops())
        if (pLoop != pOuter && pLoop->GetCoedge() && !pOuter->ContainsLoop(*pLoop))
            nFindings += AddFinding(aResults, Result::nBadInnerLoop, pOuter, pLoop);
    return nFindings;
}

std::size_t CheckFlatness(const Face& face, const Plane& plane, std::vector<Result>& aResults)
{
    std::size_t nFindings = 0;
    std::vector<Vertex*> aVertices;
    face.GetVertices(aVertices);
    for (const Vertex* pVertex : aVertices)
    {
        const Point3d& p = pVertex->GetPosition();
        if (std::abs(plane.dist(p)) > std::max(1.0, p.length()) * kFlatnessTolerance)
            nFindings += AddFinding(aResults, Result::nVertexFarFromFace, pVertex, &face);
    }
    return nFindings;
}

/// The triangles must cover what the loops enclose.
std::size_t CheckFacets(Face& face, const Plane& plane, std::vector<Result>& aResults)
{
    double dLoopArea = 0.0;
    double dLoopSizes = 0.0;
    for (const Loop* pLoop : face.GetLoops())
    {
        const double dArea = pLoop->GetSignedArea(plane);
        dLoopArea += dArea;
        dLoopSizes += std::abs(dArea);
    }
    const FaceFacets* pFacets = face.GetFacets();
    const double dFacetArea = pFacets ? pFacets->GetArea(plane, nullptr) : 0.0;
    const double dTol = kFacetAreaTolerance * std::max({1.0, dLoopSizes, face.ComputeBox().lengthSqrd()});
    std::vector<Vertex*> aTriangles;
    if (face.GetFacetVertices(aTriangles) && std::abs(dFacetArea - dLoopArea) <= dTol)
        return 0;
    return AddFinding(aResults, Result::nFaceBadFacets, &face);
}
} // namespace

std::size_t Face::CheckValidity(std::vector<Result>& aResults) const
{
    if (m_aLoops.empty())
        return AddFinding(aResults, Result::nFaceNoLoops, this) + Object::CheckValidity(aResults);
    Face& self = const_cast<Face&>(*this); // fills caches only
    const Plane plane = self.GetPlane();
    return CheckBox(*this, aResults) + CheckLoopOwners(*this, aResults) + CheckAreas(*this, plane, aResults) +
           CheckHoles(*this, aResults) + CheckFlatness(*this, plane, aResults) + CheckFacets(self, plane, aResults) +
           Object::CheckValidity(aResults);
}
} // namespace QRV
