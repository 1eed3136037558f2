/// The base of all that a History stores.
#pragma once

#include <QRV/Geometry.h>
#include <QRV/Ids.h>
#include <QRV/ObjectTypes.h>
#include <QRV/Result.h>

#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace QRV
{
class Attribute;
class AttributeTable;
class History;
class IArchive;
class Object;
class ObjectPairing;

/// Membership only: never walked, since its order is that of addresses.
using ObjectSet = std::unordered_set<const Object*>;
/// Old object to new one. Looked up only, never walked.
using ObjectMap = std::unordered_map<const Object*, Object*>;

/// What `Object::Changed` tells an object about the things that it depends on. A set of bits.
enum nChange : unsigned
{
    nChangePropagate = 1, ///< goes on to the dependants
    nChangeBox = 2,       ///< boxes are void; what stands in a tree leaves it
    nChangePlane = 4,     ///< the plane of a face is void
    nChangeFacets = 8,    ///< the facets of a face are void
    nChangeSmooth = 16,   ///< with plane: smooth marks of the face's edges go
    nChangeAnalytic = 32, ///< with plane: attributes that describe a curved shape go

    nBoxChanged = nChangePropagate | nChangeBox,
    nBoundaryChanged = nChangePropagate | nChangeFacets,
    nShapeChanged = nBoxChanged | nChangeFacets,
    nMovedInBulk = nShapeChanged | nChangePlane,
    nMoved = nMovedInBulk | nChangeAnalytic
};

/// One thing of the model, with its identity and the attributes that it carries.
///
/// A registered object never moves in memory while any record of it exists. Before a member of a live object
/// changes, `RecordChange()` leaves a clone of the whole state with the History; undo exchanges contents by
/// `Swap`, so that pointers between objects stay good. Objects are made by `History::Create` and freed by the
/// History alone.
class Object
{
public:
    virtual ~Object();
    Object& operator=(const Object&) = delete;

    std::uint64_t GetID() const { return m_nID; }
    std::uint64_t GetHistoryID() const { return m_nHistoryID; }
    /// Null when the object belongs to no History.
    History* GetHistory() const;

    // --- identity of the class
    virtual const char* GetName() const = 0; ///< class name
    virtual nObjectType GetType() const = 0;

    // --- life
    /// Removes this object from the model with what it alone owns. The base acts on non-owned objects only.
    virtual bool Delete();
    /// Unlinks this one object and tells the History of its death. `this` may be freed on return.
    virtual void DeleteSelf();
    /// Whole copy under the same id, not registered: a stored state.
    virtual std::unique_ptr<Object> Clone() const = 0;
    /// Exchanges all contents but id and History with an object of the same class; otherwise does nothing.
    virtual void Swap(Object& other) noexcept = 0;
    /// True when nothing above this object owns it.
    virtual bool IsNonOwned() const = 0;

    // --- persistence and figures
    virtual std::size_t GetSizeInBytes(bool bInMemory, bool bDerivable) const = 0;
    virtual bool Save(IArchive& archive) const = 0;
    virtual bool Load(IArchive& archive) = 0;

    // --- change
    /// To be called before any member changes. True when this was the first change in the open Delta. With no
    /// Delta open it does nothing: only caches may be filled then.
    bool RecordChange();
    /// Drops caches as the bits of `nFlags` (nChange) say and passes the word on to the dependants.
    virtual void Changed(unsigned nFlags) = 0;
    /// Fills every cache, so that stored states carry them. Called at the end of each Delta for what it touched.
    virtual void CompleteCaches() {}

    // --- search: trees and sets of the History
    /// Enters or leaves the History's tree of the class. Neither records anything, so undo may call them on any state.
    virtual bool AddToSearch() { return false; }
    virtual bool RemoveFromSearch() { return false; }
    virtual void RemoveFromSearchOnDelete() { RemoveFromSearch(); }

    // --- measures; the transform may be null
    virtual double GetArea(const Transf3d* pTransform) const;
    virtual double GetVolume(const Transf3d* pTransform) const;
    virtual void AddToBox(Interval3d&) const {}

    // --- structure
    /// Replaces every pointer to a key of the map by its value, recording first, and links attributes to this owner.
    virtual void ReplaceReferences(const ObjectMap& map) = 0;
    /// The object at the top of the owning chain; null when there is no single one.
    virtual Object* GetTopOwner() const { return nullptr; }
    /// Appends every top object once; gives the number appended.
    virtual std::size_t GetTopOwners(std::vector<Object*>& aOwners) const;
    /// Appends the direct children not yet in `seen` and enters them. With `bOwnedOnly` without what is merely
    /// referred to (vertices of an edge, the edge of a coedge, attributes).
    virtual void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const;
    virtual void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const;
    /// Applies a transform to this object alone.
    virtual void Transform(const Transf3d&) {}
    /// Compares the members of the class; references through the pairing under way.
    virtual bool IsEquivalent(const Object& other, ObjectPairing& pairing) const = 0;
    /// The History whose content this object places in its own; INVALID_ID for all but groups.
    virtual std::uint64_t GetReferencedHistoryID() const { return INVALID_ID; }
    virtual nCopyBehavior GetCopyRule() const { return nCopyOwn; }
    /// The object in a History that counts as the same, for what crosses Histories; null when there is none. May make
    /// what only has to be made on demand.
    virtual Object* FindEquivalent(History&) const { return nullptr; }

    // --- audit
    /// Appends one Result per broken rule of the class; gives their number.
    virtual std::size_t CheckValidity(std::vector<Result>& aResults) const;
    std::size_t CheckValidityRecursive(std::vector<Result>& aResults) const;

    // --- walks
    /// With type 0 this object and all that it reaches; with a type the nearest objects of it, not looking behind one.
    /// First in, first out. Gives the number appended.
    std::size_t GetObjectsOfType(std::vector<Object*>& aObjects, nObjectType nType, bool bUpward) const;
    /// Closure of GetChildren, breadth first. Gives the number appended.
    std::size_t GetAllChildren(std::vector<Object*>& aChildren, bool bOwnedOnly, ObjectSet* pSeen = nullptr) const;
    bool IsEquivalentWithChildren(const Object& other, bool bStrict) const;

    // --- attributes
    /// False when the attribute is already here. With `bLink` both sides record and know one another, and what the
    /// class does not accept is refused too.
    bool AddAttribute(Attribute* pAttribute, bool bLink);
    virtual bool AcceptsAttribute(const Attribute&) const { return true; }
    /// False when this object does not carry it. `bDeleted`: it was the last owner and the attribute died.
    bool RemoveAttribute(Attribute* pAttribute, bool& bDeleted);
    bool HasAttribute(const Attribute* pAttribute) const;
    std::size_t GetAttributes(std::vector<Attribute*>& aAttributes) const;
    std::size_t GetAttributesOfType(nObjectType nType, std::vector<Attribute*>& aAttributes) const;
    const AttributeTable* GetAttributeTable() const { return m_pAttributes.get(); }

protected:
    Object();
    /// For Clone: same id, same History, a copy of the attribute table.
    Object(const Object& other);

    void SwapBase(Object& other) noexcept;
    bool SaveBase(IArchive& archive) const;
    bool LoadBase(IArchive& archive);
    std::size_t GetBaseSizeInBytes(bool bInMemory) const;
    void ReplaceAttributeReferences(const ObjectMap& map);
    /// Gives a member of this object a value, recording first; nothing for an equal one. Gives whether it changed.
    template <class Value>
    bool Assign(Value& member, const Value& value)
    {
        if (member == value)
            return false;
        Value copy(value); // a copy that fails leaves no change to record
        RecordChange();
        std::swap(member, copy);
        return true;
    }

private:
    friend class History;
    friend class ObjectHistory;

    std::uint64_t m_nID = INVALID_ID;
    std::uint64_t m_nHistoryID = INVALID_ID;
    std::unique_ptr<AttributeTable> m_pAttributes;
};

/// The object as one of class T; null for none and for one of another class.
template <class T>
T* AsType(Object* pObject)
{
    if constexpr (requires { T::kType; }) // nothing is derived from a class with a type of its own
        return pObject && pObject->GetType() == T::kType ? static_cast<T*>(pObject) : nullptr;
    else
        return dynamic_cast<T*>(pObject);
}

/// Orders objects for every list whose order shows.
struct ByObjectID
{
    bool operator()(const Object* pA, const Object* pB) const { return pA->GetID() < pB->GetID(); }
};

/// Gives `dest` what `src` carries when the two become one: equal and non-conflicting attributes are not added twice.
/// With `bMerging` analytic attributes that the merged object cannot keep are dropped or passed over.
void MergeAttributesFrom(Object& dest, Object& src, bool bMerging);
/// Gives `dest`, split off `src`, the attributes that parts inherit.
void InheritAttributes(Object& src, Object& dest);
} // namespace QRV
