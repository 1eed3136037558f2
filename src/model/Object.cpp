#include "model/Object.h"

#include "archive/IArchive.h"
#include "history/HistoryRegistry.h"
#include "model/Attribute.h"
#include "model/Finding.h"
#include "spatial/Measures.h"

#include <algorithm>

namespace QRV
{
Object::Object() = default;
Object::~Object() = default;

Object::Object(const Object& other)
    : m_nID(other.m_nID), m_nHistoryID(other.m_nHistoryID),
      m_pAttributes(other.m_pAttributes ? std::make_unique<AttributeTable>(*other.m_pAttributes) : nullptr)
{
}

History* Object::GetHistory() const
{
    return HistoryRegistry::Get().GetHistory(m_nHistoryID);
}

bool Object::RecordChange()
{
    History* pHistory = GetHistory();
    return pHistory && pHistory->RecordChange(*this);
}

bool Object::Delete()
{
    if (!IsNonOwned())
        return false;
    History* pHistory = GetHistory();
    std::vector<Object*> aOwned;
    GetAllChildren(aOwned, true);
    std::vector<std::uint64_t> aIDs; // one death may bring another
    for (const Object* pOwned : aOwned)
        aIDs.push_back(pOwned->GetID());
    const std::uint64_t nSelf = GetID();
    for (const std::uint64_t nID : aIDs)
        if (Object* pOwned = pHistory->GetObject(nID))
            pOwned->DeleteSelf();
    if (Object* pSelf = pHistory->GetObject(nSelf))
        pSelf->DeleteSelf();
    return true;
}

void Object::DeleteSelf()
{
    std::vector<Attribute*> aAttributes;
    GetAttributes(aAttributes);
    bool bDeleted = false;
    // The table stays as it is: undo brings this object back with it.
    for (Attribute* pAttribute : aAttributes)
        pAttribute->RemoveOwner(*this, bDeleted);
    if (History* pHistory = GetHistory())
        pHistory->RecordDeletion(*this);
}

void Object::SwapBase(Object& other) noexcept
{
    m_pAttributes.swap(other.m_pAttributes);
}

bool Object::SaveBase(IArchive& archive) const
{
    std::vector<Attribute*> aAttributes;
    GetAttributes(aAttributes);
    return archive.WriteID(m_nID, "id") &&
           archive.WriteObjects(std::vector<Object*>(aAttributes.begin(), aAttributes.end()), "attributes");
}

bool Object::LoadBase(IArchive& archive)
{
    constexpr std::uint64_t kFirstVersionWithAttributes = 2;
    m_pAttributes.reset();
    std::uint64_t nID = INVALID_ID;
    if (!archive.ReadID(nID))
        return false;
    if (m_nHistoryID == INVALID_ID)
    {
        m_nID = nID;
        m_nHistoryID = archive.GetHistoryID();
    }
    if (archive.GetVersion() < kFirstVersionWithAttributes)
        return true;
    std::vector<Object*> aAttributes;
    const bool bGood = archive.ReadObjects(aAttributes);
    for (Object* pObject : aAttributes)
        if (auto* pAttribute = dynamic_cast<Attribute*>(pObject))
            AddAttribute(pAttribute, false);
    return bGood;
}

std::size_t Object::GetBaseSizeInBytes(bool bInMemory) const
{
    constexpr std::size_t kSavedSize = 8;
    std::vector<Attribute*> aAttributes;
    GetAttributes(aAttributes);
    if (!bInMemory)
        return kSavedSize + 4 * aAttributes.size();
    std::size_t nSize = sizeof(Object);
    if (m_pAttributes)
    {
        nSize += sizeof(AttributeTable);
        for (const auto& [nType, aOfType] : m_pAttributes->m_aByType)
            nSize += sizeof(aOfType) + aOfType.capacity() * sizeof(Attribute*);
    }
    return nSize;
}

double Object::GetArea(const Transf3d* pTransform) const
{
    std::vector<Object*> aFaces;
    GetObjectsOfType(aFaces, nFaceType, false);
    double dArea = 0.0;
    for (const Object* pFace : aFaces)
        dArea += pFace->GetArea(pTransform);
    return dArea;
}

double Object::GetVolume(const Transf3d* pTransform) const
{
    std::vector<Object*> aFound;
    GetObjectsOfType(aFound, nFaceType, false);
    std::vector<Face*> aFaces;
    for (Object* pFace : aFound)
        aFaces.push_back(static_cast<Face*>(pFace));
    return GetClosedVolume(aFaces, pTransform);
}

std::size_t Object::GetTopOwners(std::vector<Object*>& aOwners) const
{
    Object* pTop = GetTopOwner();
    if (pTop)
        aOwners.push_back(pTop);
    return pTop ? 1 : 0;
}

void Object::GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const
{
    if (bOwnedOnly || !m_pAttributes)
        return;
    for (const auto& [nType, aOfType] : m_pAttributes->m_aByType)
        for (Attribute* pAttribute : aOfType)
            if (pAttribute && seen.insert(pAttribute).second)
                aChildren.push_back(pAttribute);
}

void Object::GetParents(std::vector<Object*>&, ObjectSet&) const {}

std::size_t Object::CheckValidity(std::vector<Result>& aResults) const
{
    std::size_t nFindings = 0;
    std::vector<Attribute*> aAttributes;
    GetAttributes(aAttributes);
    for (const Attribute* pAttribute : aAttributes)
        if (pAttribute->GetHistoryID() == m_nHistoryID && !pAttribute->HasOwner(*this))
            nFindings += AddFinding(aResults, Result::nAttributeOwnerMismatch, pAttribute, this);
    if (ObjectSet(aAttributes.begin(), aAttributes.end()).size() != aAttributes.size())
        nFindings += AddFinding(aResults, Result::nDuplicateAttributes, this);
    if (!GetHistory())
        nFindings += AddFinding(aResults, Result::nBadHistoryID, this);
    return nFindings;
}

std::size_t Object::CheckValidityRecursive(std::vector<Result>& aResults) const
{
    std::vector<Object*> aBelow;
    GetAllChildren(aBelow, false);
    std::size_t nFindings = CheckValidity(aResults);
    for (const Object* pObject : aBelow)
        nFindings += pObject->CheckValidity(aResults);
    return nFindings;
}

std::size_t Object::GetObjectsOfType(std::vector<Object*>& aObjects, nObjectType nType, bool bUpward) const
{
    const std::size_t nBefore = aObjects.size();
    auto* pSelf = const_cast<Object*>(this);
    const bool bAll = nType == nUnspecifiedType;
    if (bAll || GetType() == nType)
        aObjects.push_back(pSelf);
    if (!bAll && GetType() == nType)
        return 1;
    ObjectSet seen{this};
    std::vector<Object*> aQueue{pSelf};
    for (std::size_t i = 0; i < aQueue.size(); ++i)
    {
        const std::size_t nKnown = aQueue.size();
        if (bUpward)
            aQueue[i]->GetParents(aQueue, seen);
        else
            aQueue[i]->GetChildren(aQueue, seen, false);
        // An object of the type is found; what lies behind it is not looked at.
        const auto isFound = [&](Object* pObject)
        {
            const bool bFound = bAll || pObject->GetType() == nType;
            if (bFound)
                aObjects.push_back(pObject);
            return bFound && !bAll;
        };
        aQueue.erase(std::remove_if(aQueue.begin() + std::ptrdiff_t(nKnown), aQueue.end(), isFound), aQueue.end());
    }
    return aObjects.size() - nBefore;
}

std::size_t Object::GetAllChildren(std::vector<Object*>& aChildren, bool bOwnedOnly, ObjectSet* pSeen) const
{
    ObjectSet seenHere;
    ObjectSet& seen = pSeen ? *pSeen : seenHere;
    seen.insert(this);
    const std::size_t nBefore = aChildren.size();
    GetChildren(aChildren, seen, bOwnedOnly);
    for (std::size_t i = nBefore; i < aChildren.size(); ++i)
        aChildren[i]->GetChildren(aChildren, seen, bOwnedOnly);
    return aChildren.size() - nBefore;
}
} // namespace QRV
