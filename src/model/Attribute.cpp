#include "model/Attribute.h"

#include "history/History.h"
#include "model/Finding.h"

#include <algorithm>

namespace QRV
{
namespace
{
std::vector<std::uint64_t> GetIDs(const SharedIDSet& ids)
{
    return std::vector<std::uint64_t>(ids.begin(), ids.end());
}
} // namespace

// --- the owner's side

bool Object::HasAttribute(const Attribute* pAttribute) const
{
    if (!m_pAttributes)
        return false;
    const auto it = m_pAttributes->m_aByType.find(pAttribute->GetType());
    return it != m_pAttributes->m_aByType.end() &&
           std::find(it->second.begin(), it->second.end(), pAttribute) != it->second.end();
}

bool Object::AddAttribute(Attribute* pAttribute, bool bLink)
{
    if (HasAttribute(pAttribute) || (bLink && !AcceptsAttribute(*pAttribute)))
        return false;
    if (bLink)
        RecordChange();
    if (!m_pAttributes)
        m_pAttributes = std::make_unique<AttributeTable>();
    m_pAttributes->m_aByType[pAttribute->GetType()].push_back(pAttribute);
    if (bLink)
        pAttribute->AddOwner(*this);
    return true;
}

bool Object::RemoveAttribute(Attribute* pAttribute, bool& bDeleted)
{
    bDeleted = false;
    if (!HasAttribute(pAttribute))
        return false;
    RecordChange();
    const auto it = m_pAttributes->m_aByType.find(pAttribute->GetType());
    std::erase(it->second, pAttribute);
    if (it->second.empty())
        m_pAttributes->m_aByType.erase(it);
    pAttribute->RemoveOwner(*this, bDeleted);
    return true;
}

std::size_t Object::GetAttributes(std::vector<Attribute*>& aAttributes) const
{
    if (!m_pAttributes)
        return 0;
    const std::size_t nBefore = aAttributes.size();
    for (const auto& [nType, aOfType] : m_pAttributes->m_aByType)
        aAttributes.insert(aAttributes.end(), aOfType.begin(), aOfType.end());
    return aAttributes.size() - nBefore;
}

std::size_t Object::GetAttributesOfType(nObjectType nType, std::vector<Attribute*>& aAttributes) const
{
    if (!m_pAttributes)
        return 0;
    const auto it = m_pAttributes->m_aByType.find(nType);
    if (it == m_pAttributes->m_aByType.end())
        return 0;
    aAttributes.insert(aAttributes.end(), it->second.begin(), it->second.end());
    return it->second.size();
}

void Object::ReplaceAttributeReferences(const ObjectMap& map)
{
    if (!m_pAttributes)
        return;
    for (auto& [nType, aOfType] : m_pAttributes->m_aByType)
        for (Attribute*& pAttribute : aOfType)
        {
            const auto it = map.find(pAttribute);
            if (it != map.end())
            {
                RecordChange();
                bool bDeleted = false;
                if (pAttribute->GetHistoryID() == m_nHistoryID)
                    pAttribute->RemoveOwner(*this, bDeleted);
                pAttribute = dynamic_cast<Attribute*>(it->second);
            }
            if (pAttribute)
                pAttribute->AddOwner(*this);
        }
}

// --- the attribute's side

bool Attribute::AddOwner(const Object& owner)
{
    if (HasOwner(owner))
        return false;
    RecordChange();
    return m_aOwnerIDs.Insert(owner.GetID());
}

bool Attribute::RemoveOwner(const Object& owner, bool& bDeleted)
{
    bDeleted = false;
    if (!HasOwner(owner))
        return false;
    RecordChange();
    m_aOwnerIDs.Erase(owner.GetID());
    if (m_aOwnerIDs.empty())
        bDeleted = Delete();
    return true;
}

bool Attribute::Delete()
{
    bool bDeleted = false;
    History* pHistory = GetHistory();
    for (const std::uint64_t nOwner : GetIDs(m_aOwnerIDs))
        if (Object* pOwner = pHistory->GetObject(nOwner))
            if (pOwner->RemoveAttribute(this, bDeleted) && bDeleted)
                return true;
    if (!m_aOwnerIDs.empty())
    {
        RecordChange();
        m_aOwnerIDs.clear();
    }
    return Object::Delete();
}

void Attribute::Changed(unsigned nFlags)
{
    History* pHistory = GetHistory();
    for (const std::uint64_t nOwner : GetIDs(m_aOwnerIDs))
        if (Object* pOwner = pHistory ? pHistory->GetObject(nOwner) : nullptr)
            pOwner->Changed(nFlags);
}

std::size_t Attribute::GetTopOwners(std::vector<Object*>& aOwners) const
{
    if (m_aOwnerIDs.empty())
    {
        aOwners.push_back(const_cast<Attribute*>(this));
        return 1;
    }
    const std::size_t nBefore = aOwners.size();
    for (const std::uint64_t nOwner : m_aOwnerIDs)
    {
        std::vector<Object*> aOfOne;
        if (const Object* pOwner = GetHistory()->GetObject(nOwner))
            pOwner->GetTopOwners(aOfOne);
        for (Object* pTop : aOfOne)
            if (std::find(aOwners.begin() + std::ptrdiff_t(nBefore), aOwners.end(), pTop) == aOwners.end())
                aOwners.push_back(pTop);
    }
    return aOwners.size() - nBefore;
}

void Attribute::GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const
{
    const History* pHistory = GetHistory();
    for (const std::uint64_t nOwner : m_aOwnerIDs)
        if (Object* pOwner = pHistory->GetObject(nOwner); pOwner && seen.insert(pOwner).second)
            aParents.push_back(pOwner);
}

std::size_t Attribute::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    const History* pHistory = GetHistory();
    for (const std::uint64_t nOwner : m_aOwnerIDs)
    {
        const Object* pOwner = pHistory ? pHistory->GetObject(nOwner) : nullptr;
        if (!pOwner)
            nFindings += AddFinding(aResults, Result::nAttributeBadOwner, this);
        else if (!pOwner->HasAttribute(this))
            nFindings += AddFinding(aResults, Result::nAttributeOwnerMismatch, this, pOwner);
    }
    return nFindings + Object::CheckValidity(aResults);
}

// --- merging and splitting owners

namespace
{
/// Whether `owner` carries the attribute itself or one that says the same.
bool CarriesEqual(const Object& owner, const Attribute& attribute)
{
    if (owner.HasAttribute(&attribute))
        return true;
    std::vector<Attribute*> aOfType;
    owner.GetAttributesOfType(attribute.GetType(), aOfType);
    return std::any_of(aOfType.begin(), aOfType.end(),
                       [&](const Attribute* pOther) { return pOther->IsEquivalentWithChildren(attribute, true); });
}

void DropWhatCannotMerge(Object& dest, const Object& src)
{
    std::vector<Attribute*> aAttributes;
    dest.GetAttributes(aAttributes);
    bool bDeleted = false;
    for (Attribute* pAttribute : aAttributes)
        if (pAttribute->IsAnalytic() && !CarriesEqual(src, *pAttribute) && !pAttribute->CanMerge(dest, src))
            dest.RemoveAttribute(pAttribute, bDeleted);
}

bool IsWanted(const Attribute& attribute, const Object& dest, const Object& src, bool bMerging)
{
    if (attribute.HasOwner(dest))
        return false;
    std::vector<Attribute*> aOfType;
    dest.GetAttributesOfType(attribute.GetType(), aOfType);
    for (const Attribute* pOther : aOfType)
        if (pOther->IsEquivalentWithChildren(attribute, true) || !attribute.ConflictsWith(*pOther))
            return false;
    return !bMerging || !attribute.IsAnalytic() || attribute.CanMerge(src, dest);
}
} // namespace

void MergeAttributesFrom(Object& dest, Object& src, bool bMerging)
{
    if (!src.GetAttributeTable() && !dest.GetAttributeTable())
        return;
    if (bMerging)
        DropWhatCannotMerge(dest, src);
    std::vector<Attribute*> aAttributes;
    src.GetAttributes(aAttributes);
    for (Attribute* pAttribute : aAttributes)
        if (IsWanted(*pAttribute, dest, src, bMerging))
            dest.AddAttribute(pAttribute, true);
}

void InheritAttributes(Object& src, Object& dest)
{
    std::vector<Attribute*> aAttributes;
    src.GetAttributes(aAttributes);
    for (Attribute* pAttribute : aAttributes)
        if (pAttribute->IsInherited())
            dest.AddAttribute(pAttribute, true);
}
} // namespace QRV
