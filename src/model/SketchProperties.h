/// The frame in which a host sketches.
#pragma once

#include "model/SearchedOf.h"

namespace QRV
{
/// The local coordinate system of a History; at most one is in use.
class SketchProperties : public SearchedOf<SketchProperties, Object>
{
public:
    static constexpr nObjectType kType = nSketchPropertiesType;
    static constexpr const char* kName = "SketchProperties";
    static constexpr auto Fields() { return std::make_tuple(Saved("transf3d", &SketchProperties::m_transform)); }

    /// That of the History, the one of lowest id; null for none.
    static SketchProperties* Find(const History& history);
    /// Makes it when there is none.
    static void SetTransform(History& history, const Transf3d& transform);
    const Transf3d& GetTransform() const { return m_transform; }

    bool IsNonOwned() const override { return true; }
    void Changed(unsigned /*nFlags*/) override {}

private:
    Transf3d m_transform;
};
extern template class ObjectOf<SketchProperties, Object>;
extern template class SearchedOf<SketchProperties, Object>;
} // namespace QRV
