#include "model/Level.h"

#include "model/JoinableOf.inl"

#include <algorithm>
#include <cmath>

namespace QRV
{
template class ObjectOf<Level, Object>;
template class SearchedOf<Level, Object>;
template class NamedObjectOf<Level>;
template class JoinableOf<Level, LevelAttribute>;

bool Level::CountsAs(const Level& other) const
{
    constexpr double kSameHeight = 1e-6;
    return std::abs(m_dElevation - other.m_dElevation) <= kSameHeight;
}

bool Level::IsEquivalent(const Object& other, ObjectPairing&) const
{
    const auto* pOther = dynamic_cast<const Level*>(&other);
    return pOther && m_sName == pOther->m_sName &&
           std::abs(m_dElevation - pOther->m_dElevation) <= kLinearTolerance * std::max(1.0, std::abs(m_dElevation));
}
} // namespace QRV
