#include "history/ObjectHistory.h"

#include "model/Object.h"

#include <algorithm>
#include <utility>

namespace QRV
{
namespace
{
/// Room for one more id, so that the push after it cannot fail.
void ReserveOne(std::vector<std::uint64_t>& aIDs)
{
    constexpr std::size_t kSmallStep = 3; // an edge and its ends: the commonest, and there are as many as steps
    if (aIDs.size() == aIDs.capacity())
        aIDs.reserve(std::max(kSmallStep, 2 * aIDs.capacity()));
}
} // namespace

ObjectHistory::~ObjectHistory()
{
    for (std::size_t i = 0; i < m_nRecordCount; ++i)
        delete Records()[i].pObject;
    if (m_nCapacity)
        delete[] m_pRecords;
}

Object* ObjectHistory::GetObject(const Delta* pDelta) const
{
    if (!pDelta)
        return m_nActiveCount ? Records()[m_nActiveCount - 1].pObject : nullptr;
    for (std::size_t i = 0; i < m_nRecordCount; ++i)
        if (Records()[i].pDelta == pDelta)
            return Records()[i].pObject;
    return nullptr;
}

Object* ObjectHistory::GetObjectRelative(int nOffset) const
{
    const std::int64_t nIndex = std::int64_t(m_nActiveCount) - 1 + nOffset;
    return nIndex >= 0 && nIndex < std::int64_t(m_nRecordCount) ? Records()[nIndex].pObject : nullptr;
}

nObjectType ObjectHistory::GetType() const
{
    return m_nRecordCount && Records()[0].pObject ? Records()[0].pObject->GetType() : nUnspecifiedType;
}

Delta* ObjectHistory::GetActiveDelta() const
{
    return m_nActiveCount ? Records()[m_nActiveCount - 1].pDelta : nullptr;
}

Delta* ObjectHistory::GetLastDelta() const
{
    return m_nRecordCount ? Records()[m_nRecordCount - 1].pDelta : nullptr;
}

bool ObjectHistory::IsCreatedIn(const Delta* pDelta) const
{
    return pDelta && m_nRecordCount && Records()[0].pDelta == pDelta;
}

bool ObjectHistory::IsDeletedIn(const Delta* pDelta) const
{
    if (m_nRecordCount < 2)
        return false;
    const Record& last = Records()[m_nRecordCount - 1];
    return last.pDelta == pDelta && !last.pObject;
}

void ObjectHistory::ReserveRecords(std::size_t nMore)
{
    const std::size_t nNeeded = m_nRecordCount + nMore;
    const std::size_t nRoom = m_nCapacity ? m_nCapacity : 1;
    if (nNeeded <= nRoom)
        return;
    const std::size_t nCapacity = std::max(nNeeded, 2 * nRoom);
    auto* pRecords = new Record[nCapacity];
    std::copy_n(Records(), m_nRecordCount, pRecords);
    if (m_nCapacity)
        delete[] m_pRecords;
    m_pRecords = pRecords;
    m_nCapacity = std::uint32_t(nCapacity);
}

void ObjectHistory::Append(Delta& delta, Object* pObject)
{
    ReserveRecords(1);
    ReserveOne(delta.m_aObjectIDs);
    Records()[m_nRecordCount++] = {&delta, pObject};
    m_nActiveCount = m_nRecordCount;
    delta.m_aObjectIDs.push_back(pObject->GetID());
}

bool ObjectHistory::RecordChange(Delta& delta)
{
    if (m_nRecordCount == 0 || m_nActiveCount != m_nRecordCount)
        return false;
    Record* pLast = &Records()[m_nRecordCount - 1];
    if (!pLast->pObject || pLast->pDelta == &delta)
        return false;

    ReserveRecords(1);
    ReserveOne(delta.m_aObjectIDs);
    pLast = &Records()[m_nRecordCount - 1];
    Object* pLive = pLast->pObject;
    pLast->pObject = pLive->Clone().release();
    Records()[m_nRecordCount++] = {&delta, pLive};
    m_nActiveCount = m_nRecordCount;
    delta.m_aObjectIDs.push_back(pLive->GetID());
    return true;
}

bool ObjectHistory::RecordDeletion(Delta& delta)
{
    if (m_nRecordCount == 0 || m_nActiveCount != m_nRecordCount || !Records()[m_nRecordCount - 1].pObject)
        return false;
    ReserveRecords(1);
    ReserveOne(delta.m_aObjectIDs);
    Record& last = Records()[m_nRecordCount - 1];
    Object* pLive = last.pObject;
    pLive->RemoveFromSearchOnDelete();

    if (last.pDelta != &delta)
    {
        delta.m_aObjectIDs.push_back(pLive->GetID());
        Records()[m_nRecordCount++] = {&delta, nullptr};
        m_nActiveCount = m_nRecordCount;
        return true;
    }
    Record* pBefore = m_nRecordCount > 1 ? &Records()[m_nRecordCount - 2] : nullptr;
    if (pBefore && pBefore->pObject)
    {
        // Changed in this Delta and now dead in it: the live object takes back the state from before.
        pLive->Swap(*pBefore->pObject);
        delete pBefore->pObject;
        pBefore->pObject = pLive;
        last.pObject = nullptr;
        return true;
    }
    // Made in this Delta: it leaves no trace but its id in the Delta's list, which the end of the Delta takes out.
    delete pLive;
    --m_nRecordCount;
    m_nActiveCount = m_nRecordCount;
    return true;
}

bool ObjectHistory::Undo(const Delta& delta) noexcept
{
    if (m_nActiveCount == 0 || m_nActiveCount > m_nRecordCount || Records()[m_nActiveCount - 1].pDelta != &delta)
        return false;
    if (m_nActiveCount > 1)
    {
        Record& active = Records()[m_nActiveCount - 1];
        Record& before = Records()[m_nActiveCount - 2];
        if (active.pObject && before.pObject)
        {
            active.pObject->Swap(*before.pObject);
            std::swap(active.pObject, before.pObject);
        }
    }
    --m_nActiveCount;
    return true;
}

bool ObjectHistory::Redo(const Delta& delta) noexcept
{
    if (m_nActiveCount >= m_nRecordCount || Records()[m_nActiveCount].pDelta != &delta)
        return false;
    if (m_nActiveCount > 0)
    {
        Record& active = Records()[m_nActiveCount - 1];
        Record& next = Records()[m_nActiveCount];
        if (active.pObject && next.pObject)
        {
            active.pObject->Swap(*next.pObject);
            std::swap(active.pObject, next.pObject);
        }
    }
    ++m_nActiveCount;
    return true;
}

bool ObjectHistory::PopLastRecord(const Delta& delta) noexcept
{
    if (m_nRecordCount == 0 || m_nActiveCount == m_nRecordCount || Records()[m_nRecordCount - 1].pDelta != &delta)
        return false;
    delete Records()[--m_nRecordCount].pObject;
    return true;
}

bool ObjectHistory::CanMergeRecords(const Delta& first, const Delta& last) const
{
    if (m_nRecordCount == 0)
        return true;
    for (std::size_t i = 0; i < m_nActiveCount; ++i)
        if (Records()[i].pDelta->GetID() >= first.GetID())
            return Records()[i].pDelta->GetID() <= last.GetID();
    return false;
}

void ObjectHistory::MergeRecords(const Delta& first, Delta& last, bool& bRemoved) noexcept
{
    bRemoved = false;
    Record* p = Records();
    std::size_t a = 0;
    while (a < m_nActiveCount && p[a].pDelta->GetID() < first.GetID())
        ++a;
    if (a == m_nActiveCount)
        return;
    std::size_t b = a;
    while (b + 1 < m_nActiveCount && p[b + 1].pDelta->GetID() <= last.GetID())
        ++b;

    p[b].pDelta = &last;
    if (a == b)
        return;
    const auto isTombstone = [](const Record& record) { return !record.pObject; };
    const bool bAliveBefore = a > 0 && p[a - 1].pObject;
    Record* pDeath = std::find_if(p + a, p + b + 1, isTombstone);
    if (bAliveBefore && pDeath != p + b + 1 && pDeath != p + a)
    {
        // The address that the model knows goes back to the last state that outlives the run.
        Record& live = *(pDeath - 1);
        live.pObject->Swap(*p[a - 1].pObject);
        std::swap(live.pObject, p[a - 1].pObject);
    }
    bRemoved = isTombstone(p[b]) && !bAliveBefore;
    const std::size_t nRemoved = b - a + (bRemoved ? 1 : 0);
    for (std::size_t i = a; i < a + nRemoved; ++i)
        delete p[i].pObject;
    std::copy(p + a + nRemoved, p + m_nRecordCount, p + a);
    m_nRecordCount -= std::uint32_t(nRemoved);
    m_nActiveCount -= std::uint32_t(nRemoved);
}

void ObjectHistory::SetHistoryID(std::uint64_t nHistoryID)
{
    for (std::size_t i = 0; i < m_nRecordCount; ++i)
        if (Records()[i].pObject)
            Records()[i].pObject->m_nHistoryID = nHistoryID;
}

ObjectHistory& ObjectTable::Grow()
{
    if (m_nSize == m_aChunks.size() * kChunk)
        m_aChunks.push_back(std::make_unique<ObjectHistory[]>(kChunk));
    return At(m_nSize++);
}

void ObjectTable::Shrink() noexcept
{
    --m_nSize;
    // One empty chunk is kept, so that an object drawn and taken back at a chunk's end costs no memory each time.
    if (m_aChunks.size() * kChunk >= m_nSize + 2 * kChunk)
        m_aChunks.pop_back();
}
} // namespace QRV
