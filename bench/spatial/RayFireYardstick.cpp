#include "spatial/RayFireYardstick.h"

#include <CGAL/AABB_traits.h>
#include <CGAL/AABB_tree.h>
#include <CGAL/AABB_triangle_primitive.h>
#include <CGAL/Simple_cartesian.h>

#include <iterator>

namespace
{
using Kernel = CGAL::Simple_cartesian<double>;
using Triangles = std::vector<Kernel::Triangle_3>;
using Primitive = CGAL::AABB_triangle_primitive<Kernel, Triangles::const_iterator>;
using AABBTree = CGAL::AABB_tree<CGAL::AABB_traits<Kernel, Primitive>>;
using Intersection = AABBTree::Intersection_and_primitive_id<Kernel::Ray_3>::Type;

Kernel::Point_3 ToYardstick(const QRV::Point3d& p)
{
    return {p[0], p[1], p[2]};
}
} // namespace

struct RayFireYardstick::Tree
{
    Triangles aTriangles;
    AABBTree tree;
    std::vector<Intersection> aHits;
};

RayFireYardstick::RayFireYardstick(const std::vector<std::array<QRV::Point3d, 3>>& aTriangles)
    : m_pTree(std::make_unique<Tree>())
{
    for (const auto& corners : aTriangles)
        m_pTree->aTriangles.emplace_back(ToYardstick(corners[0]), ToYardstick(corners[1]), ToYardstick(corners[2]));
    m_pTree->tree.insert(m_pTree->aTriangles.begin(), m_pTree->aTriangles.end());
    m_pTree->tree.build();
}

RayFireYardstick::~RayFireYardstick() = default;

std::size_t RayFireYardstick::Fire(const QRV::Line3d& ray)
{
    m_pTree->aHits.clear();
    const Kernel::Vector_3 direction(ray.vector[0], ray.vector[1], ray.vector[2]);
    m_pTree->tree.all_intersections(Kernel::Ray_3(ToYardstick(ray.point), direction),
                                    std::back_inserter(m_pTree->aHits));
    return m_pTree->aHits.size();
}
