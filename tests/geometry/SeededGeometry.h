/// Random geometry that is the same on every run.
#pragma once

#include <QRV/Geometry.h>

#include <cmath>
#include <random>

namespace QRV
{
class SeededGeometry
{
public:
    explicit SeededGeometry(std::uint64_t nSeed) : m_engine(nSeed) {}

    double Number(double dSize) { return std::uniform_real_distribution<double>(-dSize, dSize)(m_engine); }
    Vector3d Vector(double dSize)
    {
        const double x = Number(dSize);
        const double y = Number(dSize);
        return {x, y, Number(dSize)};
    }
    Point3d Point(double dSize) { return Point3d() + Vector(dSize); }
    UnitVector3d Direction() { return UnitVector3d(Vector(1), true); }
    Interval3d Box(double dSize)
    {
        const Point3d corner = Point(dSize);
        return Interval3d(corner, Point(dSize));
    }
    Transf3d Rigid()
    {
        const Transf3d turn = Transf3d::rotation(Line3d(Point(5), Vector(1)), Number(3));
        return turn * Transf3d::translation(Vector(9));
    }
    /// Neither rigid nor with right angles.
    Transf3d Affine()
    {
        const Transf3d first = Rigid();
        const Transf3d stretch = Transf3d::scaling(Point(3), Vector3d(1 + std::abs(Number(2)), 0.5, 2));
        return first * stretch * Rigid();
    }

private:
    std::mt19937_64 m_engine;
};
} // namespace QRV
