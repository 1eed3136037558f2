/// What puts its owners on a level.
#pragma once

#include "model/JoinableOf.h"

namespace QRV
{
class Level;

class LevelAttribute : public JoinAttributeOf<LevelAttribute, Level>
{
public:
    static constexpr nObjectType kType = nLevelAttributeType;
    static constexpr const char* kName = "LevelAttribute";
    static constexpr Result::nResultType kBadTarget = Result::nLevelAttributeBadLevel;
    static constexpr auto Fields() { return std::make_tuple(Saved("level", &LevelAttribute::m_pTarget)); }

    explicit LevelAttribute(Level& level) : JoinAttributeOf(level) {}

    /// Of another level at another height.
    bool ConflictsWith(const Attribute& other) const override;
};
extern template class ObjectOf<LevelAttribute, Attribute>;
extern template class JoinAttributeOf<LevelAttribute, Level>;
} // namespace QRV
