/// The one process-wide object.
#pragma once

#include "appearance/BitmapStore.h"
#include "frame/ProgressHooks.h"
#include "history/History.h"
#include "journal/JournalingState.h"

namespace QRV
{
/// Owns every History and gives them their ids; holds the journal and the host's callbacks. Comes into being on first
/// use and ends at process exit.
class HistoryRegistry
{
public:
    static HistoryRegistry& Get();

    /// Null when absent.
    History* GetHistory(std::uint64_t nID) const;
    const std::map<std::uint64_t, std::unique_ptr<History>>& GetHistories() const { return m_mapHistories; }
    /// Makes a History under the wanted id, or a fresh one for INVALID_ID, and gives the id used. A live History of
    /// that id is replaced, unless a temporary one is asked for and the live one is not. Code 5 for an id from
    /// 0xFFFFFFFE up, 1 when no id is left, 69 when the one to be replaced is busy.
    History* CreateHistory(std::uint64_t& nID, bool bNonTemporary, Result& result);
    /// Code 4 for an unknown id, 69 when the History is busy.
    bool DeleteHistory(std::uint64_t nID, Result& result);
    /// 69, with nothing changed, when any is busy.
    void DeleteAllHistories(Result& result);
    /// Gives the History a fresh id.
    bool ChangeHistoryID(std::uint64_t& nID, Result& result);
    /// Appends the start and every History above or below it, breadth first, each once.
    void GetReachable(std::uint64_t nID, bool bUpward, std::vector<std::uint64_t>& aIDs) const;

    BitmapStore& GetBitmaps() { return m_bitmaps; }
    JournalingState& GetJournal() { return m_journal; }
    ProgressHooks& GetProgressHooks() { return m_progressHooks; }
    const std::function<void(const ModelChangeData&)>& GetModelChangedCallback() const
    {
        return m_modelChangedCallback;
    }
    void SetModelChangedCallback(std::function<void(const ModelChangeData&)> callback);
    /// Straight to the callback, if one is set.
    void Notify(const ModelChangeData& change) const;

private:
    HistoryRegistry() = default;
    ~HistoryRegistry();

    std::uint64_t FindFreeID() const;
    void AnnounceEnd(History& history) const;

    BitmapStore m_bitmaps; ///< outlives the Histories, whose textures release into it
    std::map<std::uint64_t, std::unique_ptr<History>> m_mapHistories;
    std::uint64_t m_nNextHistoryID = 0;
    mutable History* m_pLastFound = nullptr; ///< most calls ask for the same one again
    JournalingState m_journal;
    std::function<void(const ModelChangeData&)> m_modelChangedCallback;
    ProgressHooks m_progressHooks;
};
} // namespace QRV
