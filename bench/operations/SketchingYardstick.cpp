#include "operations/SketchingYardstick.h"

#include <CGAL/Arr_segment_traits_2.h>
#include <CGAL/Arrangement_2.h>
#include <CGAL/Exact_predicates_exact_constructions_kernel.h>

std::size_t ArrangeByYardstick(const std::vector<std::pair<QRV::Point3d, QRV::Point3d>>& aSegments)
{
    using Kernel = CGAL::Exact_predicates_exact_constructions_kernel;
    using Traits = CGAL::Arr_segment_traits_2<Kernel>;
    CGAL::Arrangement_2<Traits> arrangement;
    for (const auto& [from, to] : aSegments)
        CGAL::insert(arrangement,
                     Traits::X_monotone_curve_2(Kernel::Point_2(from[0], from[1]), Kernel::Point_2(to[0], to[1])));
    return arrangement.number_of_edges();
}
