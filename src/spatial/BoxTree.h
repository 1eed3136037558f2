/// All spatial search goes through this R*-tree over axis-aligned boxes.
#pragma once

#include "spatial/BoxQueryTests.h"
#include "spatial/BoxTreeNode.h"
#include "spatial/RayBoxTest.h"
#include "spatial/ShortList.h"

#include <type_traits>
#include <vector>

namespace QRV
{
class Transf3d;

/// How a tree learns the box of its elements. A specialisation has `static Interval3d Get(const T&)`, which must not
/// throw. It is asked when an element enters, leaves or is audited, and never in a search.
template <class T>
struct BoxOf;

/// An R*-tree over elements that it borrows.
///
/// It owns its nodes and can be moved; a copy is made with Clone(). An element must leave before its box changes and
/// comes back when the new one is there. Elements with a null box are in no tree. An element may stand in a tree once.
///
/// All searches append to their list (a std::vector, or a ShortList where few are expected) and give the number
/// appended. An element is found when its own box passes the test told there; the order is that of the tree, which
/// depends on the history of insertions and removals and on nothing else. A search may throw std::bad_alloc for its
/// list; the tree stays as it was.
template <class T>
class BoxTree
{
public:
    BoxTree() = default;
    BoxTree(BoxTree&& other) noexcept { Swap(other); }
    BoxTree& operator=(BoxTree&& other) noexcept;
    ~BoxTree() { Clear(); }

    /// False for a null box, which enters nothing. Throws std::bad_alloc with nothing changed.
    bool Insert(T* pElement);
    /// As Insert; if memory is short the element goes to the waiting list, for which ReserveReturns must have made
    /// room. Searches, GetBox and all else look through that list too, and it empties into the tree as soon as memory
    /// allows.
    void InsertNoThrow(T* pElement) noexcept;
    /// Searches with the element's present box, which must be that of its insertion. False for a null box and for an
    /// element that isn't there; the latter is a defect of the caller and stops a debug build.
    bool Remove(T* pElement) noexcept;
    /// The same for an element that may not be there.
    bool RemoveIfThere(T* pElement) noexcept;
    /// Makes room in the waiting list for this many more elements. Throws std::bad_alloc with nothing changed.
    void ReserveReturns(std::size_t nCount);
    /// Gives back room that a large change has left.
    void TrimReturns() noexcept;
    /// Takes the place of whatever the tree held: packs the elements at once, faster and tighter than by insertion.
    /// Elements with a null box are left out. Throws std::bad_alloc with nothing changed.
    void BulkLoad(const std::vector<T*>& aElements);
    void Clear() noexcept;

    /// Boxes that overlap or touch `box`: `operator&`, with its fixed slack of 1e-12.
    template <class List>
    std::size_t FindTouching(const Interval3d& box, List& aFound) const;
    /// Boxes that overlap `box` with a slack of 1e-12 times the largest of 1 and the rectangular lengths of its
    /// corners.
    std::size_t FindOverlapping(const Interval3d& box, std::vector<T*>& aFound) const;
    /// Boxes that lie inside `box`: `operator<=`.
    std::size_t FindInside(const Interval3d& box, std::vector<T*>& aFound) const;
    /// Boxes that `box` lies inside of: `operator<=` the other way round. A null `box` lies in all of them.
    std::size_t FindHolding(const Interval3d& box, std::vector<T*>& aFound) const;
    /// Boxes that pass Interval3d::intersectsRay(line, dTol, dMax).
    std::size_t FindOnRay(const Line3d& line, std::vector<T*>& aFound, double dTol, double dMax) const;
    /// Boxes that pass Interval3d::intersectsPlane(plane, dTol).
    std::size_t FindOnPlane(const Plane& plane, std::vector<T*>& aFound, double dTol) const;
    /// Boxes that pass BoxIntersectsNegativeSideOfPlanes(box, aPlanes, dTol); all of them without planes.
    std::size_t FindOnNegativeSide(const std::vector<Plane>& aPlanes, std::vector<T*>& aFound, double dTol) const;

    /// Calls `visit(T*, const Interval3d& box)` for each element whose box passes `boxTest(const Interval3d&)`, until
    /// it gives false. The test is asked of nodes too, so it must pass a box around any box that passes. `visit` must
    /// not change the tree.
    template <class BoxTest, class Visitor>
    void Visit(BoxTest&& boxTest, Visitor&& visit) const;

    void GetElements(std::vector<T*>& aElements) const;
    std::size_t GetCount() const { return m_nCount + m_aWaiting.size(); }
    bool IsEmpty() const { return GetCount() == 0; }
    /// The box of all elements, null without any.
    Interval3d GetBox() const;
    std::size_t GetSizeInBytes() const;
    /// The rules of the structure; that the box kept for each element is its present box; and that no element is met
    /// twice. `nCount` is the number of elements met, also when the answer is false.
    bool CheckValidity(std::size_t& nCount) const;

    /// A tree of the same structure over the same elements. Throws std::bad_alloc.
    BoxTree Clone() const;
    /// Puts the mapped elements in the place of those found in `replacements` (any map from T* to T*). The boxes of
    /// both must be the same.
    template <class Map>
    void ReplaceElements(const Map& replacements);
    /// Follows elements that have all been moved by `transform` already: the structure stays, node boxes are
    /// transformed and entries get the elements' present boxes.
    void Transform(const Transf3d& transform);

private:
    using Node = BoxTreeNode<T>;
    using Leaf = BoxTreeLeafNode<T>;
    using Interior = BoxTreeInteriorNode<T>;
    using Entry = BoxTreeEntry<T>;
    class LevelSet;
    class Split;
    class Packing;
    static constexpr std::uint32_t kSlots = kBoxTreeMaxEntries + 1;

    BoxTree(const BoxTree&) = delete;
    BoxTree& operator=(const BoxTree&) = delete;
    void Swap(BoxTree& other) noexcept;

    static Entry EntryOf(T* pElement, const Interval3d& box);
    static Entry EntryOf(Node* pChild, const Interval3d& box);
    static Interval3d BoxOfElement(const T& element) { return BoxOf<std::remove_const_t<T>>::Get(element); }
    static std::size_t GetNodesForPlacing(std::size_t nLevelsBelowRoot);
    std::size_t GetNodesForInsertion() const { return m_pRoot ? GetNodesForPlacing(m_pRoot->m_nLevel) : 1; }
    std::size_t GetNodesForDissolving(const Node& node) const;
    std::size_t GetSparesKept() const;
    Node* CreateNode(std::uint32_t nLevel) noexcept;
    void DeleteNode(Node* pNode) noexcept;
    void DeleteBelow(Node* pNode) noexcept;

    void AdmitWaiting() noexcept;
    bool RemoveWaiting(const T* pElement) noexcept;
    void Enter(T* pElement, const Interval3d& box) noexcept;
    void Place(const Entry& entry, std::uint32_t nLevel, LevelSet& reinserted) noexcept;
    Node* ChooseNode(const Interval3d& box, std::uint32_t nLevel) noexcept;
    void TreatOverflow(Node* pNode, LevelSet& reinserted) noexcept;
    void Reinsert(Node* pNode, LevelSet& reinserted) noexcept;
    Node* SplitOff(Node& node) noexcept;
    void GrowRoot(Node* pSibling) noexcept;

    Leaf* FindLeafWith(const T* pElement, const Interval3d& box) const noexcept;
    void Condense(Node* pNode) noexcept;
    void Dissolve(Node* pNode) noexcept;
    void FillFromSibling(Node* pNode) noexcept;
    void LowerRoot() noexcept;
    void RecomputeUpward(Node* pNode) noexcept;
    /// The box kept for a node.
    Interval3d& BoxOfNode(const Node& node) noexcept;

    /// Calls `visit(const Leaf&)` in tree order for the leaves reached through boxes that pass, until it gives false.
    template <class NodeTest, class LeafVisitor>
    void VisitLeaves(const NodeTest& nodeTest, LeafVisitor&& visit) const;
    template <class Test, class List>
    std::size_t Find(const Test& test, List& aFound) const;
    bool CheckBelow(const Node& node, const Interval3d& nodeBox, std::vector<T*>& aElements) const;
    Node* CloneBelow(const Node& node) noexcept;
    static void TransformBelow(Node& node, Interval3d& nodeBox, const Transf3d& transform);

    Node* m_pRoot = nullptr;
    Interval3d m_rootBox;
    std::size_t m_nCount = 0; ///< elements in the nodes
    std::size_t m_nNodes = 0;
    BoxTreeSpareNodes<T> m_spareNodes;
    std::vector<T*> m_aWaiting;
};
} // namespace QRV

#include "spatial/BoxTree.inl"
#include "spatial/BoxTreeInsert.inl"
#include "spatial/BoxTreeQuery.inl"
#include "spatial/BoxTreeRemove.inl"
