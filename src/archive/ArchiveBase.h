/// What the archive of bytes and the archive of text have in common.
#pragma once

#include "archive/IArchive.h"
#include "model/Object.h"

#include <map>
#include <set>
#include <utility>

namespace QRV
{
/// The format version that is written.
inline constexpr std::uint64_t kArchiveVersion = 23;

/// What a block of stored data is.
enum class nArchiveKind : std::uint32_t
{
    nObjects = 0,
    nDelta = 1,
    nHistory = 2,
    nNone = 3
};

/// What stands before the data: of what is read, or to be written.
struct ArchiveHeader
{
    nArchiveKind nKind = nArchiveKind::nNone;
    std::uint64_t nVersion = kArchiveVersion;
    std::uint64_t nHistoryID = INVALID_ID;
    bool bDerivable = false; ///< the data holds derivable fields
    std::uint64_t nMinObjectID = 0;
    std::uint64_t nMaxObjectID = 0;
    std::uint64_t nBaseDeltaID = INVALID_ID;
    std::uint64_t nDeltaID = INVALID_ID;
    std::uint64_t nDeltaFlags = 0;
};

/// The ids that Histories had when they were saved, and those that they have now. One load shares one map.
struct HistoryIDMap
{
    std::map<std::uint64_t, std::uint64_t> mapIDs;
    bool bTemporary = false; ///< of the Histories that a load makes
};

/// The context of one save or load, and the forms that follow from those of single values. `Formatter` derives from
/// this and adds `OpenList(size, name)` and `CloseList()`, which stand around the elements of every list.
template <class Formatter>
class ArchiveBase_T : public IArchive
{
public:
    ArchiveBase_T(const ArchiveBase_T&) = delete;
    ArchiveBase_T& operator=(const ArchiveBase_T&) = delete;

    ArchiveHeader& GetHeader() { return m_header; }
    /// Where references to objects are looked up that are not in the data itself; may be null.
    void SetHistory(const History* pHistory) { m_pHistory = pHistory; }
    /// The objects that the data read is about to fill. An object counts under the id that it has in the data, within
    /// the span of ids in the header; one that is null has no shell yet.
    void SetObjects(std::vector<std::pair<std::uint64_t, Object*>> aObjects);
    /// References that led to no object, in the order they were met.
    const std::vector<std::uint64_t>& GetUnresolvedIDs() const { return m_aUnresolvedIDs; }
    /// Without a map a History keeps the id that it had. The map is the caller's and takes in the Histories made.
    void SetHistoryIDMap(HistoryIDMap* pMap) { m_pHistoryIDMap = pMap; }
    const std::set<std::uint64_t>& GetReferencedHistories() const { return m_aReferencedHistories; }
    void SetExcludedObjects(ObjectSet aObjects) { m_aExcludedObjects = std::move(aObjects); }
    void SetVertexSubstitutes(ObjectMap map) { m_mapVertexSubstitutes = std::move(map); }
    void SetFaceSubstitutes(ObjectMap map) { m_mapFaceSubstitutes = std::move(map); }
    void SetIDList(std::vector<std::uint64_t> aIDs);
    /// What is written between these two stands one level deeper in the text.
    void EnterLevel() { ++m_nDepth; }
    void LeaveLevel() { --m_nDepth; }

    std::uint64_t GetVersion() const override { return m_header.nVersion; }
    bool WriteObjects(const std::vector<Object*>& aObjects, const char* pName) override;
    bool WriteColors(const std::vector<Color>& aColors, const char* pName) override;
    bool WriteFloats(const std::vector<float>& aNumbers, const char* pName) override;
    bool WritePoint3ds(const std::vector<Point3d>& aPoints, const char* pName) override;
    bool WritePoint2ds(const std::vector<Point2d>& aPoints, const char* pName) override;
    bool WriteTransf3ds(const std::vector<Transf3d>& aTransforms, const char* pName) override;
    bool WriteUInts(const std::vector<std::uint32_t>& aNumbers, const char* pName) override;
    bool WriteFilteredObjects(const std::vector<Object*>& aObjects, const char* pName) override;
    bool SavesDerivable() const override { return m_bSaveDerivable; }
    void AddReferencedHistory(std::uint64_t nHistoryID) override { m_aReferencedHistories.insert(nHistoryID); }
    bool NoteBitmapWritten(const BitmapReference& bitmap) override
    {
        return m_aWrittenBitmaps.insert(bitmap.GetIndex()).second;
    }
    BitmapReference GetBitmapRead(std::uint64_t nNumber) const override;
    void SetBitmapRead(std::uint64_t nNumber, const BitmapReference& bitmap) override
    {
        m_mapReadBitmaps[nNumber] = bitmap;
    }
    std::uint64_t GetHistoryID() const override { return m_header.nHistoryID; }
    bool HasDerivable() const override { return m_header.bDerivable; }
    std::uint64_t MapHistoryID(std::uint64_t nHistoryID) override;
    Object* GetVertexSubstitute(const Object* pObject) const override;
    Object* GetFaceSubstitute(const Object* pObject) const override;
    bool IsInIDList(std::uint64_t nID) const override;

protected:
    explicit ArchiveBase_T(bool bSaveDerivable) : m_bSaveDerivable(bSaveDerivable) {}

    /// The object that an id in the data means. Null, and the id noted as unresolved, for none.
    Object* FindObject(std::uint64_t nID);
    unsigned GetDepth() const { return m_nDepth; }

private:
    Formatter& Self() { return static_cast<Formatter&>(*this); }
    template <class T, class Write>
    bool WriteList(const std::vector<T>& aElements, const char* pName, Write write);

    ArchiveHeader m_header;
    const History* m_pHistory = nullptr;
    std::vector<std::pair<std::uint64_t, Object*>> m_aObjects; ///< by id
    std::vector<std::uint64_t> m_aUnresolvedIDs;
    unsigned m_nDepth = 0;
    HistoryIDMap* m_pHistoryIDMap = nullptr;
    std::set<std::uint64_t> m_aReferencedHistories;
    std::set<std::uint64_t> m_aWrittenBitmaps;
    std::map<std::uint64_t, BitmapReference> m_mapReadBitmaps;
    bool m_bSaveDerivable;
    ObjectSet m_aExcludedObjects;
    ObjectMap m_mapVertexSubstitutes;
    ObjectMap m_mapFaceSubstitutes;
    std::vector<std::uint64_t> m_aIDList; ///< ascending
};
} // namespace QRV
