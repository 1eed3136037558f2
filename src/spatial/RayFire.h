/// Picking: what a ray meets, and what lies in a convex volume.
#pragma once

#include <QRV/Geometry.h>
#include <QRV/GroupInstancePath.h>
#include <QRV/ObjectTypes.h>

#include <vector>

namespace QRV
{
class History;
class Object;

/// The kinds of object that a query reports. A vertex stands for its edges and faces, an edge for its faces.
struct PickKinds
{
    bool bVertices = false;
    bool bEdges = false;
    bool bFaces = false;
};

/// Where hits go. `aIDs` gets one id per hit in the History itself; the others are optional. `pPaths` gets one path per
/// hit within an instance, `pTransforms` the place of each. `pSorted` gets one pair (parameter, index) per hit: an
/// index of 0 or more points into `aIDs`, a negative one, n, to entry ~n of `pPaths`.
struct PickResults
{
    std::vector<std::uint64_t>& aIDs;
    std::vector<GroupInstancePath>* pPaths = nullptr;
    std::vector<Transf3d>* pTransforms = nullptr;
    SortedHits* pSorted = nullptr;

    /// With sorting all lists must start empty; without, paths and transforms must be of equal length.
    bool AreListsUsable() const;
};

/// Fires a ray from `ray.point` along `ray.vector` up to parameter `dMax`. Gives the number of hits.
std::size_t RayFire(History& history, const Line3d& ray, double dTol, double dMax, PickKinds kinds,
                    PickResults results);

/// A hit of the internal form of the query.
struct RayHit
{
    double t;
    Object* pObject;
};

/// As RayFire with sorting, without ids: for operations. Sorted by parameter, vertices before edges before faces at one
/// place.
void FireRay(History& history, const Line3d& ray, double dTol, double dMax, PickKinds kinds,
             std::vector<RayHit>& aHits);

/// How a volume selects.
struct VolumeQuery
{
    const std::vector<Plane>& aPlanes; ///< the volume is the negative side of all of them
    PickKinds kinds;
    bool bWhole = false;           ///< all of an object must lie in the volume
    double dTol = 0.0;             ///< length
    const Line3d* pLine = nullptr; ///< with `pSorted`: hits are ordered along it, and faces found along it
    bool bInstances = false;
};

/// Gives the number of hits; none for an empty list of planes.
std::size_t IntersectsNegativeSideOfPlanes(History& history, const VolumeQuery& query, PickResults results);
} // namespace QRV
