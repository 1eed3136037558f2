#include "spatial/FacetsYardstick.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>

#include <utility>

namespace
{
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Triangulation =
    CGAL::Constrained_Delaunay_triangulation_2<Kernel, CGAL::Default, CGAL::No_constraint_intersection_tag>;
} // namespace

std::size_t TriangulateByYardstick(const std::vector<std::vector<QRV::Point3d>>& aRings)
{
    std::vector<Kernel::Point_2> aPoints;
    std::vector<std::pair<std::size_t, std::size_t>> aSides;
    for (const auto& ring : aRings)
    {
        const std::size_t nFirst = aPoints.size();
        for (std::size_t n = 0; n < ring.size(); ++n)
        {
            aPoints.emplace_back(ring[n][0], ring[n][1]);
            aSides.emplace_back(nFirst + n, nFirst + (n + 1) % ring.size());
        }
    }
    Triangulation triangulation;
    triangulation.insert_constraints(aPoints.begin(), aPoints.end(), aSides.begin(), aSides.end());
    return triangulation.number_of_faces();
}
