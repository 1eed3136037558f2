#include "spatial/Measures.h"

#include "history/TemporaryTreesScope.h"
#include "model/Body.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "spatial/RayFire.h"

#include <cmath>

namespace QRV
{
namespace
{
/// A place on the faces, so that sums far from the origin lose nothing.
Point3d GetOrigin(const Face& face, const Transf3d* pTransform)
{
    const Loop* pLoop = face.GetOuterLoop();
    const Coedge* pCoedge = pLoop ? pLoop->GetCoedge() : nullptr;
    const Vertex* pVertex = pCoedge ? pCoedge->GetStartVertex() : nullptr;
    if (!pVertex)
        return Point3d();
    return pTransform ? *pTransform * pVertex->GetPosition() : pVertex->GetPosition();
}

bool Belongs(const Face& face, const Object& object)
{
    const Shell* pShell = face.GetShell();
    const Lump* pLump = pShell ? pShell->GetLump() : nullptr;
    return pShell && pLump && (pShell == &object || pLump == &object || pLump->GetBody() == &object);
}

/// What the first crossings of a ray say of its start.
enum class nRayVerdict
{
    nOutside,
    nInside,
    nUnclear ///< two faces are crossed at one spot
};

nRayVerdict ReadCrossings(const std::vector<RayHit>& aHits, const Object& object, const Point3d& p,
                          const Vector3d& direction, bool bDirectionGiven)
{
    constexpr double kNoCrossing = -1e30;
    double dLast = kNoCrossing;
    bool bOut = false;
    bool bIn = false;
    for (const RayHit& hit : aHits)
    {
        auto* pFace = dynamic_cast<Face*>(hit.pObject);
        if (!pFace || !Belongs(*pFace, object))
            continue;
        const double dDot = direction % pFace->GetPlane().normal;
        if (std::abs(dDot) < kLinearTolerance)
        {
            if (pFace->ContainsPoint(p, false))
                return nRayVerdict::nInside;
            continue;
        }
        if (bDirectionGiven && dLast > -1.0 && std::abs(hit.t - dLast) < kLinearTolerance)
            return nRayVerdict::nUnclear;
        if (dLast < -1.0 && std::abs(hit.t) < kLinearTolerance)
            return nRayVerdict::nInside; // on the boundary
        if (hit.t > dLast + kLinearTolerance)
        {
            if (bOut != bIn)
                return bOut ? nRayVerdict::nInside : nRayVerdict::nOutside;
            dLast = hit.t;
            bOut = bIn = false;
        }
        (dDot > 0.0 ? bOut : bIn) = true;
    }
    return bOut && !bIn ? nRayVerdict::nInside : nRayVerdict::nOutside;
}

nRayVerdict FireAndRead(const Object& object, const Point3d& p, const Vector3d* pDirection)
{
    const Vector3d direction = pDirection ? *pDirection : Vector3d(0.4642366, 0.8812325, -0.1254456);
    std::vector<RayHit> aHits;
    FireRay(*object.GetHistory(), Line3d(p, direction), kLinearTolerance, 1e30, {.bFaces = true}, aHits);
    return ReadCrossings(aHits, object, p, direction, pDirection != nullptr);
}
} // namespace

double GetSignedVolume(const std::vector<Face*>& aFaces, const Transf3d* pTransform)
{
    double dVolume = 0.0;
    if (aFaces.empty())
        return dVolume;
    const Point3d origin = GetOrigin(*aFaces.front(), pTransform);
    for (Face* pFace : aFaces)
        dVolume += pFace->GetVolumeContribution(pTransform, origin);
    return dVolume;
}

double GetClosedVolume(const std::vector<Face*>& aFaces, const Transf3d* pTransform)
{
    double dVolume = 0.0;
    ObjectSet seen;
    for (Face* pFace : aFaces)
    {
        if (seen.contains(pFace))
            continue;
        std::vector<Face*> aComponent;
        Face::Sheet sheet;
        sheet.bWithinShell = true;
        pFace->GetConnectedComponent(aComponent, seen, sheet);
        if (sheet.bClosed)
            dVolume += GetSignedVolume(aComponent, pTransform);
    }
    return dVolume;
}

bool ContainsPoint(const Object* pObject, const Point3d& p, const Vector3d* pDirection)
{
    const nObjectType nType = pObject ? pObject->GetType() : nUnspecifiedType;
    if ((nType != nBodyType && nType != nLumpType && nType != nShellType) || !pObject->GetHistory())
        return false;
    Interval3d box;
    pObject->AddToBox(box);
    if (box.isNull() || !(box & p))
        return false;
    nRayVerdict nVerdict = FireAndRead(*pObject, p, pDirection);
    if (nVerdict == nRayVerdict::nUnclear)
    {
        const TemporaryTreesScope onlyTheObject(*pObject->GetHistory(), pObject);
        nVerdict = FireAndRead(*pObject, p, nullptr);
    }
    return nVerdict == nRayVerdict::nInside;
}

Interval3d GetTransformedBox(Object& object, const Transf3d& transform)
{
    Interval3d box;
    if (transform.isIdentity())
    {
        object.AddToBox(box);
        return box;
    }
    std::vector<Object*> aVertices;
    object.GetObjectsOfType(aVertices, nVertexType, false);
    for (const Object* pVertex : aVertices)
        box += transform * static_cast<const Vertex*>(pVertex)->GetPosition();
    return box;
}
} // namespace QRV
