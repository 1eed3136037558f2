/// Names one appearance of an object in a model of groups.
#pragma once

#include <QRV/Export.h>
#include <QRV/Ids.h>

#include <vector>

namespace QRV
{
/// The chain from the top History down to an object: each element but the last names an Instance, and the element
/// behind it lies in the History that the Instance shows. The last names the object meant, which may be an Instance
/// itself. An empty path names nothing.
class QRV_API GroupInstancePath
{
public:
    GroupInstancePath() = default;
    GroupInstancePath(std::uint64_t nHistoryID, std::uint64_t nObjectID);
    explicit GroupInstancePath(const ObjectHistoryID& id);
    explicit GroupInstancePath(const std::vector<ObjectHistoryID>& aIDs);
    explicit GroupInstancePath(std::vector<ObjectHistoryID>&& aIDs);
    /// A copy of `other` that ends in another object; of an empty path an empty one.
    GroupInstancePath(const GroupInstancePath& other, std::uint64_t nObjectID);

    bool operator==(const GroupInstancePath& other) const = default;
    /// Element by element, by history id and then by object id; a true prefix comes before the longer path.
    bool operator<(const GroupInstancePath& other) const;
    explicit operator bool() const { return IsValid(); }
    /// Not empty, and no `INVALID_ID` in it.
    bool IsValid() const;
    /// All elements stand at the front of `other`. True for an empty path and for `other` itself.
    bool IsPrefixOf(const GroupInstancePath& other) const;
    /// `other` names an object directly under the last element of this path.
    bool IsFullPathOf(const GroupInstancePath& other) const;

    const std::vector<ObjectHistoryID>& GetObjectHistoryIDs() const { return m_aIDs; }
    /// The first and the last element; `INVALID_ID` throughout when the path is empty.
    std::uint64_t GetTopHistoryID() const { return GetTopObjectHistoryID().m_nHistoryID; }
    std::uint64_t GetTopObjectID() const { return GetTopObjectHistoryID().m_nObjectID; }
    ObjectHistoryID GetTopObjectHistoryID() const;
    std::uint64_t GetFinalHistoryID() const { return GetFinalObjectHistoryID().m_nHistoryID; }
    std::uint64_t GetFinalObjectID() const { return GetFinalObjectHistoryID().m_nObjectID; }
    ObjectHistoryID GetFinalObjectHistoryID() const;

    void AppendObjectHistoryID(const ObjectHistoryID& id);
    /// Nothing for an empty path.
    void ReplaceFinalObjectID(std::uint64_t nObjectID);
    /// Nothing for an empty path.
    void pop_back();
    void clear();
    void swap(GroupInstancePath& other);
    /// Cuts the path to its first element; an empty path becomes one element without ids.
    void SetToTopObjectHistoryID();

    /// The object of the element that follows `editing`, the path of the Instance that the host edits in; `INVALID_ID`
    /// unless this path is longer than `editing` and runs through it.
    std::uint64_t GetEditingObjectID(const GroupInstancePath& editing) const;
    /// Cuts the path to that element. A path that does not run through `editing` becomes one of that length without
    /// ids.
    void SetToEditingObjectPath(const GroupInstancePath& editing);

    /// Every element but the last is an Instance, and the last is live. False for an empty path. Asks through exported
    /// read-only calls, so these may appear in the journal.
    bool IsAlive() const;

private:
    std::vector<ObjectHistoryID> m_aIDs;
};

/// Appends a path of one element for each pair of that History; pairs of other Histories are passed over. Makes paths
/// of the objects that a Result names.
QRV_API void AppendToGroupInstancePathArray(std::uint64_t nHistoryID, const std::vector<ObjectHistoryID>& aIDs,
                                            std::vector<GroupInstancePath>& aPaths);
} // namespace QRV
