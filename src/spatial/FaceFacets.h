/// The triangles of a face.
#pragma once

#include "model/Vertex.h"
#include "spatial/BoxTree.h"

#include <array>
#include <memory>

namespace QRV
{
class Face;

/// One triangle, in the winding of the face.
struct Facet
{
    std::array<Vertex*, 3> aVertices;

    const Point3d& GetPoint(std::size_t n) const { return aVertices[n]->GetPosition(); }
    Interval3d GetBox() const;
    /// Whether the point lies in the triangle, boundary counted. With a plane the point is taken to lie in it; without,
    /// it must lie within 1e-12 of the triangle's own plane, and a triangle without area contains nothing. `dRounding`
    /// is how far rounding may have moved the point.
    bool ContainsPoint(const Point3d& p, const Plane* pPlane, bool bBoxFirst, double dRounding = 0.0) const;
    /// Area against a direction: negative for the opposite winding.
    double GetSignedArea(const UnitVector3d& normal) const;
};

template <>
struct BoxOf<Facet>
{
    static Interval3d Get(const Facet& facet) { return facet.GetBox(); }
};

/// The triangulation of one face: made once, never changed, shared by the face and its stored states. Its vertices are
/// those of the face; no point is added.
class FaceFacets
{
public:
    /// Null when the face has no loops, fewer than 3 corners, or cannot be triangulated; `bFailed` tells the last.
    static std::shared_ptr<const FaceFacets> Compute(Face& face, bool& bFailed);

    const std::vector<Facet>& GetFacets() const { return m_aFacets; }
    /// Signed against the plane; with a transform the plain areas of the transformed triangles.
    double GetArea(const Plane& plane, const Transf3d* pTransform) const;
    /// False for a total area of at most 1e-12.
    bool GetCentroid(Point3d& centroid, const Plane& plane) const;
    bool GetInteriorPoint(Point3d& p, const Plane& plane) const;
    /// Signed volume of the tetrahedra between the triangles and `origin`.
    double GetVolumeContribution(const Transf3d* pTransform, const Point3d& origin) const;
    bool ContainsPoint(const Point3d& p, const Plane& plane, bool bWide) const;
    /// Appends the parameter of each crossing, once also where two triangles meet.
    void HitByRay(const Line3d& ray, std::vector<double>& aParameters, double dTol, double dMax) const;
    bool IntersectsNegativeSideOfPlanes(const std::vector<Plane>& aPlanes, const Plane& plane, double dTol,
                                        bool bWhole) const;
    std::size_t GetSizeInBytes() const;

private:
    /// Calls `visit(const Facet&)` for the triangles whose box passes; small sets are looked through without a tree.
    template <class BoxTest, class Visit>
    void ForEachCandidate(BoxTest&& test, Visit&& visit) const;

    std::vector<Facet> m_aFacets;
    mutable std::unique_ptr<BoxTree<const Facet>> m_pTree; ///< built on the first search of a large set
    double m_dTolerance = kLinearTolerance; ///< the largest distance of a vertex from the face's plane, if larger
};
} // namespace QRV
