/// Named heights, as of the storeys of a building.
#pragma once

#include "model/LevelAttribute.h"

namespace QRV
{
/// The objects on the level are the owners of its attribute but for the level itself. It owns none of them.
class Level : public JoinableOf<Level, LevelAttribute>
{
public:
    static constexpr nObjectType kType = nLevelType;
    static constexpr const char* kName = "Level";
    static constexpr Result::nResultType kNotInSet = Result::nLevelNotInSet;
    static constexpr Result::nResultType kManyAttributes = Result::nLevelManyAttributes;
    static constexpr Result::nResultType kBadAttribute = Result::nLevelBadAttribute;
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("name", &Level::m_sName), Saved("elevation", &Level::m_dElevation));
    }

    Level(const std::string& sName, double dElevation) : JoinableOf(sName), m_dElevation(dElevation) {}

    double GetElevation() const { return m_dElevation; }
    void SetElevation(double dElevation) { Assign(m_dElevation, dElevation); }

    /// At the same height, within 1e-6, whatever the names.
    bool CountsAs(const Level& other) const;
    bool IsEquivalent(const Object& other, ObjectPairing& pairing) const override;

private:
    double m_dElevation;
};
extern template class ObjectOf<Level, Object>;
extern template class SearchedOf<Level, Object>;
extern template class NamedObjectOf<Level>;
extern template class JoinableOf<Level, LevelAttribute>;
} // namespace QRV
