/// All states of one object, and the table of them.
#pragma once

#include "history/Delta.h"

#include <QRV/ObjectTypes.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace QRV
{
class Object;

/// The whole states of one object id, one per Delta that touched it, in Delta order.
///
/// The record at `m_nActiveCount - 1` is the active one; its object, if any, is the live object, whose address the rest
/// of the model holds. Every other object is a stored state: an unregistered clone owned by its record. A record
/// without an object is a tombstone; the record before it keeps the live object's memory. Operations that may fail
/// for want of memory change nothing when they throw.
class ObjectHistory
{
public:
    struct Record
    {
        Delta* pDelta = nullptr;
        Object* pObject = nullptr;
    };

    ObjectHistory() = default;
    ~ObjectHistory();
    ObjectHistory(const ObjectHistory&) = delete;
    ObjectHistory& operator=(const ObjectHistory&) = delete;

    std::size_t GetRecordCount() const { return m_nRecordCount; }
    const Record& GetRecord(std::size_t nIndex) const { return Records()[nIndex]; }

    /// The live object, or the state recorded for a Delta; null when there is none.
    Object* GetObject(const Delta* pDelta = nullptr) const;
    /// The state so many records from the active one; null outside the list.
    Object* GetObjectRelative(int nOffset) const;
    /// Type of the first record's object; 0 without one.
    nObjectType GetType() const;
    Delta* GetActiveDelta() const;
    Delta* GetLastDelta() const;
    bool IsCreatedIn(const Delta* pDelta) const;
    bool IsDeletedIn(const Delta* pDelta) const;

    /// Changes of the open Delta. Each gives whether it acted; the object's id enters the Delta's list as needed.
    void Append(Delta& delta, Object* pObject);
    bool RecordChange(Delta& delta);
    bool RecordDeletion(Delta& delta);
    bool Undo(const Delta& delta) noexcept;
    bool Redo(const Delta& delta) noexcept;
    /// Frees the state of the last record, which must be `delta`'s and not applied, and removes the record.
    bool PopLastRecord(const Delta& delta) noexcept;
    /// Whether MergeRecords would succeed.
    bool CanMergeRecords(const Delta& first, const Delta& last) const;
    /// Joins the records of a run of Deltas into one of `last`. `bRemoved`: the object lived within the run only.
    void MergeRecords(const Delta& first, Delta& last, bool& bRemoved) noexcept;

    void SetHistoryID(std::uint64_t nHistoryID);
    /// Makes the list ready for so many more records without failing; may throw.
    void ReserveRecords(std::size_t nMore);

private:
    Record* Records() { return m_nCapacity ? m_pRecords : &m_record; }
    const Record* Records() const { return m_nCapacity ? m_pRecords : &m_record; }

    std::uint32_t m_nActiveCount = 0;
    std::uint32_t m_nRecordCount = 0;
    std::uint32_t m_nCapacity = 0; ///< 0: the one record stands inline
    union
    {
        Record m_record{};
        Record* m_pRecords;
    };
};

/// The object histories by object id. Grows and shrinks at its end; entries never move.
class ObjectTable
{
public:
    std::size_t Size() const { return m_nSize; }
    ObjectHistory& At(std::uint64_t nID) { return m_aChunks[nID / kChunk][nID % kChunk]; }
    const ObjectHistory& At(std::uint64_t nID) const { return m_aChunks[nID / kChunk][nID % kChunk]; }
    /// A new entry at the end, without records; may throw, then nothing has changed.
    ObjectHistory& Grow();
    void Shrink() noexcept;
    std::size_t GetCapacity() const { return m_aChunks.size() * kChunk; }

private:
    static constexpr std::size_t kChunk = 256;

    std::vector<std::unique_ptr<ObjectHistory[]>> m_aChunks;
    std::size_t m_nSize = 0;
};
} // namespace QRV
