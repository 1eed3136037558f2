#include "model/StringAttribute.h"

#include "model/Finding.h"
#include "model/SearchedOf.inl"

#include <tuple>

namespace QRV
{
template class ObjectOf<StringAttribute, Attribute>;
template class SearchedOf<StringAttribute, Attribute, StringAttributeOrder>;

bool StringAttributeOrder::operator()(const StringAttribute* pA, const StringAttribute* pB) const
{
    const auto getPlace = [](const StringAttribute& a)
    { return std::tuple<std::string_view, std::string_view, std::uint64_t>(a.GetKey(), a.GetValue(), a.GetID()); };
    return getPlace(*pA) < getPlace(*pB);
}

bool StringAttributeOrder::operator()(const StringAttribute* pAttribute, std::string_view sKey) const
{
    return pAttribute->GetKey() < sKey;
}

bool StringAttribute::ConflictsWith(const Attribute& other) const
{
    const auto* pOther = dynamic_cast<const StringAttribute*>(&other);
    return pOther && pOther != this && pOther->m_sKey != m_sKey;
}

Object* StringAttribute::FindEquivalent(History& history) const
{
    const All& attributes = history.GetSearchSet<StringAttribute>();
    for (auto it = attributes.GetLowerBound(std::string_view(m_sKey)); it != attributes.end(); ++it)
    {
        if ((*it)->m_sKey != m_sKey)
            return nullptr;
        if (*it != this && (*it)->m_sValue == m_sValue)
            return *it;
    }
    return nullptr;
}

bool StringAttribute::Load(IArchive& archive)
{
    return SearchedOf::Load(archive) && m_nCopyBehavior <= nCopyOwn;
}

std::size_t StringAttribute::CheckValidity(std::vector<Result>& aResults) const
{
    const std::size_t nFindings = m_sKey.empty() ? AddFinding(aResults, Result::nStringAttributeEmptyKey, this) : 0;
    return nFindings + Attribute::CheckValidity(aResults);
}
} // namespace QRV
