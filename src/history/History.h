/// One independent model with its undo list.
#pragma once

#include "history/ObjectHistory.h"
#include "history/ReusableIDs.h"
#include "history/SearchSets.h"
#include "history/SearchTrees.h"
#include "model/BodyBoxMemo.h"
#include "model/OuterSideMemo.h"

#include <QRV/ModelChange.h>
#include <QRV/Result.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace QRV
{
template <class T>
T* AsType(Object* pObject);

/// All objects of one model, every earlier state of them, and the Deltas that lead from the empty model to its newest
/// state. At most one Delta is open; objects are made, changed and deleted only while one is.
class History
{
public:
    History(std::uint64_t nID, bool bNonTemporary) : m_nID(nID), m_bNonTemporary(bNonTemporary) {}
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    std::uint64_t GetID() const { return m_nID; }
    bool IsNonTemporary() const { return m_bNonTemporary; }
    /// Under a fresh id, every state included.
    void SetID(std::uint64_t nID);

    // --- transactions
    /// Finds the History and opens a Delta on it; the redo branch goes. False with code 4 (no such History) or 69 (a
    /// Delta is open already). May throw after the Delta is open: `pHistory` is set by then.
    static bool BeginTransaction(std::uint64_t nID, History*& pHistory, Result& result, bool bReuseIDs = false);
    /// Commits when `result` is good, otherwise rolls back. Nothing for a null History. An exception becomes code 14.
    static void EndTransaction(History* pHistory, Result& result, const char* pName) noexcept;
    bool HasOpenDelta() const { return m_pOpenDelta != nullptr; }
    Delta* GetOpenDelta() const { return m_pOpenDelta.get(); }
    /// False, with nothing changed, when one is open.
    bool StartDelta();
    /// Adds the open Delta to the list, if anything was touched. Throws only before the Delta stands in the list, and
    /// has rolled back by then.
    bool Commit(const char* pName, bool bSilent = false);
    bool Rollback() noexcept;
    /// A modifying or history-level call is under way: any other on this History is refused.
    bool IsBusy() const { return m_bBusy; }
    void SetBusy(bool bBusy) { m_bBusy = bBusy; }

    // --- undo and redo: each sends its own notification
    void Undo(Result& result, bool bDeleteRedo, std::uint64_t nDelta, bool bNotify);
    bool Redo(std::uint64_t nDelta);
    bool CanUndo() const;
    bool CanRedo() const;
    bool CanUndoToDelta(std::uint64_t nDelta) const;
    bool CanRedoToDelta(std::uint64_t nDelta) const;
    void UndoToDelta(Result& result, std::uint64_t nDelta, bool bDeleteRedo);
    void RedoToDelta(Result& result, std::uint64_t nDelta);
    void UndoOrRedoToDelta(Result& result, std::uint64_t nDelta, bool bDeleteRedo);
    /// Removes the deltas behind the active one. False when a Delta that holds objects is open or a state resists.
    bool DeleteRedo(bool bReuseIDs);
    bool MergeDeltas(std::uint64_t nFrom, std::uint64_t nTo, bool bReuseIDs);

    // --- deltas
    const std::vector<std::unique_ptr<Delta>>& GetDeltas() const { return m_aDeltas; }
    /// Null with code 5 for 0, INVALID_ID or an unknown id.
    Delta* GetDelta(std::uint64_t nID, Result& result) const;
    /// Id of the delta so many places from the active one; INVALID_ID outside the list.
    std::uint64_t GetDeltaIDRelative(int nOffset) const;
    /// Appends the ids between two deltas, ends included, in order from `nFrom` to `nTo`. INVALID_ID is the state
    /// before the first delta and listed as itself. Nothing for an unknown id.
    void GetDeltaIDs(std::uint64_t nFrom, std::uint64_t nTo, std::vector<std::uint64_t>& aDeltas) const;

    // --- change reports: appended to the lists
    /// What the active delta did, or with `bNext` what undoing the one behind it did. False while a Delta with
    /// content is open, and without deltas.
    bool ReportActiveDelta(const ChangeLists& lists, nObjectType nType, bool bNext) const;
    /// What leads from the state after one delta to that after another; 0 and INVALID_ID are the state before the
    /// first. False, with nothing appended, for ends that are unknown or the same, and while a Delta is open.
    bool ReportDeltaRange(std::uint64_t nFrom, std::uint64_t nTo, const ChangeLists& lists,
                          const std::vector<nObjectType>& aTypes) const;
    /// How the deltas that copies of this History share stand to the list and the active index of a copy. Gives a set
    /// of nHistoryComparison.
    std::uint32_t Compare(std::uint64_t nActiveIndex, const std::vector<std::uint64_t>& aDeltaIDs) const;

    // --- objects
    /// Makes and registers an object; the only way to make one. Its id is the lowest reusable one, else the next.
    template <class T, class... Arguments>
    T& Create(Arguments&&... arguments);
    /// The active state of an object; null for an unknown id or one not alive. With a Delta the state recorded there.
    Object* GetObject(std::uint64_t nID, const Delta* pDelta = nullptr) const;
    /// As GetObject, for one class; null for an object of another.
    template <class T>
    T* Get(std::uint64_t nID) const
    {
        return AsType<T>(GetObject(nID));
    }
    Object* GetObjectRelative(std::uint64_t nID, int nOffset) const;
    /// From the oldest recorded state, so also for objects no longer alive; 0 for unused ids.
    nObjectType GetObjectType(std::uint64_t nID) const;
    /// Appends the active objects of a type (0: all) in order of id; gives their number. With `bUseMemo` from a memo.
    std::size_t GetObjectsByType(std::vector<Object*>& aObjects, nObjectType nType, bool bUseMemo);
    const ObjectTable& GetObjectTable() const { return m_objects; }
    const ReusableIDs& GetReusableIDs() const { return m_reusableIDs; }

    /// To be reached through Object::RecordChange and Object::DeleteSelf.
    bool RecordChange(Object& object);
    bool RecordDeletion(Object& object);

    // --- search
    BoxTree<Vertex>& GetVertexTree() { return m_trees.GetActive().m_vertices; }
    /// Both first let everything that moved or is new in this Delta come back into its tree.
    BoxTree<Edge>& GetEdgeTree();
    BoxTree<Face>& GetFaceTree();
    SearchTrees& GetTrees() { return m_trees; }
    const SearchTrees& GetTrees() const { return m_trees; }
    bool HasTemporaryTrees() const { return m_trees.HasTemporary(); }
    template <class T>
    void AddToTree(T* pElement)
    {
        m_trees.Insert(pElement);
    }
    template <class T>
    bool RemoveFromTree(T* pElement)
    {
        return m_trees.Remove(pElement);
    }
    /// An edge or face that left its tree, or is new, comes back at the next search or at the end of the Delta.
    void AwaitSearch(const Edge& edge);
    void AwaitSearch(const Face& face);
    void ClearTemporaryTrees() noexcept;
    /// All live objects of a class that is found by content.
    template <class T>
    auto& GetSearchSet()
    {
        return m_sets.Get<T>();
    }
    template <class T>
    const auto& GetSearchSet() const
    {
        return m_sets.Get<T>();
    }
    BodyBoxMemo& GetBodyBoxMemo() { return m_bodyBoxes; }
    OuterSideMemo& GetOuterSides() { return m_outerSides; }
    Interval3d GetBox();
    Interval3d GetBox(const Transf3d& transform);

    // --- groups in other Histories that show this one: (history id, object id), ascending
    const std::set<ObjectHistoryID>& GetReferencingGroups() const { return m_aReferencingGroups; }
    void TakeReferencingGroupsFrom(History& other) { m_aReferencingGroups.swap(other.m_aReferencingGroups); }

    // --- audit and figures
    /// This History and all that it shows; appends one Result per finding and gives their number.
    std::size_t CheckAllValidity(std::vector<Result>& aResults);
    std::size_t GetSizeInBytes(bool bActiveOnly) const;

    /// Tells the host; nothing for a temporary History or without a callback.
    void NotifyModelChanged(nModelChangeType nType, const char* pName, std::uint64_t nPrevious, std::uint64_t nCurrent);

private:
    friend class TemporaryTreesScope;
    friend class HistoryAudit;

    /// Registers a new object under its id; when it throws nothing has changed and the object stays the caller's.
    void AddObject(Object& object);
    /// Whatever the open Delta touches can leave the trees and come back without asking for memory.
    void ReserveReturnOfOneMore();
    /// The same for all that the deltas of a run touch.
    void ReserveReturns(std::uint64_t nFirst, std::uint64_t nLast);
    /// Fills the caches of all that the open Delta touched and drops from it what was made and deleted in it.
    void CompleteOpenDelta();
    void DropUnmadeObjects(std::set<std::uint64_t>& aUnmade) noexcept;
    enum class nRecords
    {
        nKeep,
        nDrop
    };
    /// Takes back what can be taken back. False when the delta lists an object that has nothing of it applied: in an
    /// open delta one that it made and deleted, in any other a fault of the model.
    bool UndoDelta(Delta& delta, nRecords nRecordsAfter) noexcept;
    void RedoDelta(Delta& delta) noexcept;
    void LeaveSearch(const Delta& delta) noexcept;
    void ReturnToSearch(const Delta& delta) noexcept;
    void ForgetDerived() noexcept;
    /// Undoes the active delta, for which room has been reserved, and steps back.
    void StepBack(Result& result, bool bNotify);
    void UndoActive(Result& result, bool bDeleteRedo, bool bNotify);
    void UndoAwayFrom(Result& result, std::uint64_t nDelta, bool bDeleteRedo, bool bNotify);
    void DropRecord(std::uint64_t nID, const Delta& delta) noexcept;
    /// The objects whose first record is of the delta at that index or of one behind it.
    std::set<std::uint64_t> GetIDsMadeFrom(std::uint64_t nIndex) const;
    /// As DeleteRedo, without asking for memory. Ids of `aFreeable` that this frees leave it.
    bool DropRedo(std::set<std::uint64_t>& aFreeable);
    void FlushAwaitingEdges();
    void FlushAwaitingFaces();
    std::uint64_t GetActiveDeltaID() const { return GetDeltaIDRelative(0); }
    /// INVALID_ID when there is none.
    std::uint64_t FindDeltaIndex(std::uint64_t nID) const;
    /// The number of deltas applied when this is the active one: 0 for 0 and INVALID_ID. False for an unknown one.
    bool FindDeltaOrStart(std::uint64_t nDelta, std::uint64_t& nPlace) const;
    std::uint64_t GetDeltaIDAt(std::uint64_t nIndex) const;

    ObjectTable m_objects;
    std::vector<std::unique_ptr<Delta>> m_aDeltas;
    ReusableIDs m_reusableIDs;
    std::uint64_t m_nID;
    bool m_bNonTemporary;
    bool m_bBusy = false;
    std::unique_ptr<Delta> m_pOpenDelta;
    std::uint64_t m_nNextDeltaID = 1;
    std::uint64_t m_nActiveDeltaIdx = INVALID_ID;
    SearchTrees m_trees;
    SearchSets m_sets;
    std::vector<std::uint64_t> m_aAwaitingEdges;
    std::vector<std::uint64_t> m_aAwaitingFaces;
    BodyBoxMemo m_bodyBoxes;
    OuterSideMemo m_outerSides;
    std::set<ObjectHistoryID> m_aReferencingGroups;
    std::map<nObjectType, std::vector<Object*>> m_mapObjectsByType;
};

template <class T, class... Arguments>
T& History::Create(Arguments&&... arguments)
{
    auto pObject = std::make_unique<T>(std::forward<Arguments>(arguments)...);
    AddObject(*pObject);
    return *pObject.release(); // from here on the object's records own it
}
} // namespace QRV
