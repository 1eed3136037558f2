/// The true circle behind straight edges.
#pragma once

#include "model/Attribute.h"

namespace QRV
{
class Edge;

/// Carried by the segments of one arc or circle. `normal` and `xaxis` are perpendicular within 1e-10, the radius is at
/// least 1e-12.
class CircleAttribute : public ObjectOf<CircleAttribute, Attribute>
{
public:
    static constexpr nObjectType kType = nCircleAttributeType;
    static constexpr const char* kName = "CircleAttribute";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("radius", &CircleAttribute::m_dRadius),
                               Saved("center", &CircleAttribute::m_center), Saved("normal", &CircleAttribute::m_normal),
                               Saved("xaxis", &CircleAttribute::m_xAxis));
    }

    CircleAttribute(double dRadius, const Point3d& center, const UnitVector3d& normal, const UnitVector3d& xAxis)
        : m_dRadius(dRadius), m_center(center), m_normal(normal), m_xAxis(xAxis)
    {
    }

    double GetRadius() const { return m_dRadius; }
    const Point3d& GetCenter() const { return m_center; }
    const UnitVector3d& GetNormal() const { return m_normal; }
    const UnitVector3d& GetXAxis() const { return m_xAxis; }
    /// Appends the owners that hang together with `edge` through shared vertices, in order of id.
    void GetConnectedOwners(Edge& edge, std::vector<Edge*>& aEdges) const;

    bool IsAnalytic() const override { return true; }
    bool CanMerge(const Object&, const Object&) const override { return false; }
    nCopyBehavior GetCopyRule() const override { return nCopyOwn; }
    void Transform(const Transf3d& transform) override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    double m_dRadius;
    Point3d m_center;
    UnitVector3d m_normal;
    UnitVector3d m_xAxis;
};
extern template class ObjectOf<CircleAttribute, Attribute>;
} // namespace QRV
