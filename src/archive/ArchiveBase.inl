/// The bodies of ArchiveBase_T, for the source of each formatter.
#pragma once

#include "archive/ArchiveBase.h"
#include "history/HistoryRegistry.h"

#include <algorithm>

namespace QRV
{
template <class Formatter>
void ArchiveBase_T<Formatter>::SetObjects(std::vector<std::pair<std::uint64_t, Object*>> aObjects)
{
    m_aObjects = std::move(aObjects);
    std::ranges::sort(m_aObjects, {}, &std::pair<std::uint64_t, Object*>::first);
}

template <class Formatter>
void ArchiveBase_T<Formatter>::SetIDList(std::vector<std::uint64_t> aIDs)
{
    m_aIDList = std::move(aIDs);
    std::ranges::sort(m_aIDList);
}

template <class Formatter>
template <class T, class Write>
bool ArchiveBase_T<Formatter>::WriteList(const std::vector<T>& aElements, const char* pName, Write write)
{
    if (!Self().OpenList(aElements.size(), pName))
        return false;
    EnterLevel();
    const bool bGood = std::ranges::all_of(aElements, write);
    LeaveLevel();
    return Self().CloseList() && bGood;
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WriteObjects(const std::vector<Object*>& aObjects, const char* pName)
{
    return WriteList(aObjects, pName, [&](const Object* pObject) { return Self().WriteObject(pObject, nullptr); });
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WriteFilteredObjects(const std::vector<Object*>& aObjects, const char* pName)
{
    return WriteList(aObjects, pName,
                     [&](const Object* pObject)
                     { return Self().WriteObject(m_aExcludedObjects.contains(pObject) ? nullptr : pObject, nullptr); });
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WriteColors(const std::vector<Color>& aColors, const char* pName)
{
    return WriteList(aColors, pName, [&](const Color& color) { return Self().WriteColor(color, nullptr); });
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WriteUInts(const std::vector<std::uint32_t>& aNumbers, const char* pName)
{
    return WriteList(aNumbers, pName, [&](std::uint32_t nNumber) { return Self().WriteUInt(nNumber, nullptr); });
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WriteFloats(const std::vector<float>& aNumbers, const char* pName)
{
    return WriteList(aNumbers, pName, [&](float f) { return Self().WriteFloat(f, nullptr); });
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WritePoint3ds(const std::vector<Point3d>& aPoints, const char* pName)
{
    return WriteList(aPoints, pName, [&](const Point3d& p) { return Self().WritePoint3d(p, nullptr); });
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WritePoint2ds(const std::vector<Point2d>& aPoints, const char* pName)
{
    return WriteList(aPoints, pName, [&](const Point2d& p) { return Self().WritePoint2d(p, nullptr); });
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::WriteTransf3ds(const std::vector<Transf3d>& aTransforms, const char* pName)
{
    return WriteList(aTransforms, pName, [&](const Transf3d& t) { return Self().WriteTransf3d(t, nullptr); });
}

template <class Formatter>
std::uint64_t ArchiveBase_T<Formatter>::MapHistoryID(std::uint64_t nHistoryID)
{
    if (!m_pHistoryIDMap || nHistoryID == INVALID_ID)
        return nHistoryID;
    const auto it = m_pHistoryIDMap->mapIDs.find(nHistoryID);
    if (it != m_pHistoryIDMap->mapIDs.end())
        return it->second;
    HistoryRegistry& registry = HistoryRegistry::Get();
    std::uint64_t nNewID = registry.GetHistory(nHistoryID) ? INVALID_ID : nHistoryID;
    Result result;
    if (!registry.CreateHistory(nNewID, !m_pHistoryIDMap->bTemporary, result))
        return INVALID_ID;
    m_pHistoryIDMap->mapIDs.emplace(nHistoryID, nNewID);
    return nNewID;
}

template <class Formatter>
BitmapReference ArchiveBase_T<Formatter>::GetBitmapRead(std::uint64_t nNumber) const
{
    const auto it = m_mapReadBitmaps.find(nNumber);
    return it == m_mapReadBitmaps.end() ? BitmapReference() : it->second;
}

inline Object* FindSubstitute(const ObjectMap& map, const Object* pObject)
{
    const auto it = map.find(pObject);
    return it == map.end() ? nullptr : it->second;
}

template <class Formatter>
Object* ArchiveBase_T<Formatter>::GetVertexSubstitute(const Object* pObject) const
{
    return FindSubstitute(m_mapVertexSubstitutes, pObject);
}

template <class Formatter>
Object* ArchiveBase_T<Formatter>::GetFaceSubstitute(const Object* pObject) const
{
    return FindSubstitute(m_mapFaceSubstitutes, pObject);
}

template <class Formatter>
bool ArchiveBase_T<Formatter>::IsInIDList(std::uint64_t nID) const
{
    return nID != 0 && std::ranges::binary_search(m_aIDList, nID);
}

template <class Formatter>
Object* ArchiveBase_T<Formatter>::FindObject(std::uint64_t nID)
{
    Object* pObject = nullptr;
    if (nID >= m_header.nMinObjectID && nID <= m_header.nMaxObjectID)
    {
        const auto it = std::ranges::lower_bound(m_aObjects, nID, {}, &std::pair<std::uint64_t, Object*>::first);
        if (it != m_aObjects.end() && it->first == nID)
            pObject = it->second;
    }
    if (!pObject && m_pHistory)
        pObject = m_pHistory->GetObject(nID);
    if (!pObject)
        m_aUnresolvedIDs.push_back(nID);
    return pObject;
}
} // namespace QRV
