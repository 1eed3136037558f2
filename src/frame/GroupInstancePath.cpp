#include <QRV/GroupInstancePath.h>

#include <QRV/API.h>

#include <algorithm>
#include <utility>

namespace QRV
{
GroupInstancePath::GroupInstancePath(std::uint64_t nHistoryID, std::uint64_t nObjectID)
    : m_aIDs{{nHistoryID, nObjectID}}
{
}

GroupInstancePath::GroupInstancePath(const ObjectHistoryID& id) : m_aIDs{id} {}

GroupInstancePath::GroupInstancePath(const std::vector<ObjectHistoryID>& aIDs) : m_aIDs(aIDs) {}

GroupInstancePath::GroupInstancePath(std::vector<ObjectHistoryID>&& aIDs) : m_aIDs(std::move(aIDs)) {}

GroupInstancePath::GroupInstancePath(const GroupInstancePath& other, std::uint64_t nObjectID) : m_aIDs(other.m_aIDs)
{
    ReplaceFinalObjectID(nObjectID);
}

bool GroupInstancePath::operator<(const GroupInstancePath& other) const
{
    return m_aIDs < other.m_aIDs;
}

bool GroupInstancePath::IsValid() const
{
    return !m_aIDs.empty() && std::none_of(m_aIDs.begin(), m_aIDs.end(),
                                           [](const ObjectHistoryID& id)
                                           { return id.m_nHistoryID == INVALID_ID || id.m_nObjectID == INVALID_ID; });
}

bool GroupInstancePath::IsPrefixOf(const GroupInstancePath& other) const
{
    return m_aIDs.size() <= other.m_aIDs.size() && std::equal(m_aIDs.begin(), m_aIDs.end(), other.m_aIDs.begin());
}

bool GroupInstancePath::IsFullPathOf(const GroupInstancePath& other) const
{
    return m_aIDs.size() + 1 == other.m_aIDs.size() && IsPrefixOf(other);
}

ObjectHistoryID GroupInstancePath::GetTopObjectHistoryID() const
{
    return m_aIDs.empty() ? ObjectHistoryID() : m_aIDs.front();
}

ObjectHistoryID GroupInstancePath::GetFinalObjectHistoryID() const
{
    return m_aIDs.empty() ? ObjectHistoryID() : m_aIDs.back();
}

void GroupInstancePath::AppendObjectHistoryID(const ObjectHistoryID& id)
{
    m_aIDs.push_back(id);
}

void GroupInstancePath::ReplaceFinalObjectID(std::uint64_t nObjectID)
{
    if (!m_aIDs.empty())
        m_aIDs.back().m_nObjectID = nObjectID;
}

void GroupInstancePath::pop_back()
{
    if (!m_aIDs.empty())
        m_aIDs.pop_back();
}

void GroupInstancePath::clear()
{
    m_aIDs.clear();
}

void GroupInstancePath::swap(GroupInstancePath& other)
{
    m_aIDs.swap(other.m_aIDs);
}

void GroupInstancePath::SetToTopObjectHistoryID()
{
    m_aIDs.resize(1);
}

std::uint64_t GroupInstancePath::GetEditingObjectID(const GroupInstancePath& editing) const
{
    const std::size_t nLength = editing.m_aIDs.size();
    return m_aIDs.size() > nLength && editing.IsPrefixOf(*this) ? m_aIDs[nLength].m_nObjectID : INVALID_ID;
}

void GroupInstancePath::SetToEditingObjectPath(const GroupInstancePath& editing)
{
    const std::size_t nLength = editing.m_aIDs.size() + 1;
    if (m_aIDs.size() < nLength || !editing.IsPrefixOf(*this))
        m_aIDs.clear();
    m_aIDs.resize(nLength);
}

bool GroupInstancePath::IsAlive() const
{
    if (m_aIDs.empty())
        return false;
    const auto isInstance = [](const ObjectHistoryID& id)
    {
        nObjectType nType = nUnspecifiedType;
        return APIGetObjectTypeReadOnly(id.m_nHistoryID, id.m_nObjectID, nType).IsGood() && nType == nInstanceType;
    };
    if (!std::all_of(m_aIDs.begin(), m_aIDs.end() - 1, isInstance))
        return false;
    bool bLive = false;
    return APIIsObjectLiveReadOnly(GetFinalHistoryID(), GetFinalObjectID(), bLive).IsGood() && bLive;
}

void AppendToGroupInstancePathArray(std::uint64_t nHistoryID, const std::vector<ObjectHistoryID>& aIDs,
                                    std::vector<GroupInstancePath>& aPaths)
{
    for (const ObjectHistoryID& id : aIDs)
        if (id.m_nHistoryID == nHistoryID)
            aPaths.emplace_back(id);
}
} // namespace QRV
