/// Rays at triangles by CGAL.
#pragma once

#include <QRV/Geometry.h>

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

class RayFireYardstick
{
public:
    explicit RayFireYardstick(const std::vector<std::array<QRV::Point3d, 3>>& aTriangles);
    ~RayFireYardstick();
    /// The number of triangles that the ray meets, each reported with the point.
    std::size_t Fire(const QRV::Line3d& ray);

private:
    struct Tree;
    std::unique_ptr<Tree> m_pTree;
};
