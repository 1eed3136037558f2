/// The nodes of a SharedSet.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

namespace QRV
{
/// A leaf holds up to 32 elements in order; a branch up to 32 nodes of the level below, and beside each of them the
/// first element under it. Several nodes and sets may hold one node; it may change only while a single one does.
/// The elements stand behind the node itself, in one piece of memory.
template <class T>
class SharedSetNode
{
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) == sizeof(void*), "stored as plain words");

public:
    static constexpr unsigned kCapacity = 32;

    SharedSetNode(const SharedSetNode&) = delete;
    SharedSetNode& operator=(const SharedSetNode&) = delete;

    /// An empty node with one reference.
    static SharedSetNode* Create(unsigned nLevel, unsigned nCapacity)
    {
        const std::size_t nBytes =
            sizeof(SharedSetNode) + nCapacity * (sizeof(T) + (nLevel > 0 ? sizeof(SharedSetNode*) : 0));
        return new (::operator new(nBytes)) SharedSetNode(nLevel, nCapacity, nBytes);
    }
    /// A copy with one reference, which shares the children.
    static SharedSetNode* Copy(const SharedSetNode& node, unsigned nCapacity)
    {
        SharedSetNode* pCopy = Create(node.m_nLevel, nCapacity);
        pCopy->InsertRange(0, node, 0, node.m_nCount);
        pCopy->m_nBytes += node.m_nBytes - node.GetOwnBytes();
        return pCopy;
    }
    static void Retain(SharedSetNode* pNode)
    {
        if (pNode)
            ++pNode->m_nReferences;
    }
    static void Release(SharedSetNode* pNode)
    {
        if (!pNode || --pNode->m_nReferences > 0)
            return;
        if (!pNode->IsLeaf())
            for (unsigned n = 0; n < pNode->m_nCount; ++n)
                Release(pNode->GetChild(n)); // no deeper than the tree is high
        ::operator delete(static_cast<void*>(pNode));
    }

    bool IsLeaf() const { return m_nLevel == 0; }
    bool IsShared() const { return m_nReferences > 1; }
    bool IsFull() const { return m_nCount == m_nCapacity; }
    unsigned GetCount() const { return m_nCount; }
    unsigned GetCapacity() const { return m_nCapacity; }
    std::uint32_t GetReferences() const { return m_nReferences; }
    /// Of this node and all below it.
    std::size_t GetBytes() const { return m_nBytes; }

    /// In a branch the first element under the child of that place.
    const T& GetElement(unsigned nPlace) const { return Elements()[nPlace]; }
    SharedSetNode* GetChild(unsigned nPlace) const { return Children()[nPlace]; }
    void SetElement(unsigned nPlace, const T& element) { Elements()[nPlace] = element; }
    /// Gives up the old child and takes over the caller's reference to the new one.
    void ReplaceChild(unsigned nPlace, SharedSetNode* pChild)
    {
        Release(GetChild(nPlace));
        Children()[nPlace] = pChild;
    }

    void InsertElement(unsigned nPlace, const T& element)
    {
        MakeRoom(nPlace, 1);
        Elements()[nPlace] = element;
    }
    /// Takes over the caller's reference to the child.
    void InsertChild(unsigned nPlace, SharedSetNode* pChild)
    {
        MakeRoom(nPlace, 1);
        Elements()[nPlace] = pChild->GetElement(0);
        Children()[nPlace] = pChild;
    }
    /// Takes in a range of another node of the same level, which keeps it.
    void InsertRange(unsigned nPlace, const SharedSetNode& other, unsigned nBegin, unsigned nEnd)
    {
        MakeRoom(nPlace, nEnd - nBegin);
        std::copy(other.Elements() + nBegin, other.Elements() + nEnd, Elements() + nPlace);
        if (IsLeaf())
            return;
        std::copy(other.Children() + nBegin, other.Children() + nEnd, Children() + nPlace);
        std::for_each(other.Children() + nBegin, other.Children() + nEnd, Retain);
    }
    void Remove(unsigned nBegin, unsigned nEnd)
    {
        std::copy(Elements() + nEnd, Elements() + m_nCount, Elements() + nBegin);
        if (!IsLeaf())
        {
            std::for_each(Children() + nBegin, Children() + nEnd, Release);
            std::copy(Children() + nEnd, Children() + m_nCount, Children() + nBegin);
        }
        m_nCount = std::uint8_t(m_nCount - (nEnd - nBegin));
    }
    /// To be called from the bottom up when children came or went.
    void RecountBytes()
    {
        m_nBytes = GetOwnBytes();
        if (!IsLeaf())
            for (unsigned n = 0; n < m_nCount; ++n)
                m_nBytes += GetChild(n)->m_nBytes;
    }

private:
    SharedSetNode(unsigned nLevel, unsigned nCapacity, std::size_t nBytes)
        : m_nBytes(nBytes), m_nLevel(std::uint8_t(nLevel)), m_nCapacity(std::uint8_t(nCapacity))
    {
    }

    T* Elements() { return reinterpret_cast<T*>(this + 1); }
    const T* Elements() const { return reinterpret_cast<const T*>(this + 1); }
    SharedSetNode** Children() { return reinterpret_cast<SharedSetNode**>(Elements() + m_nCapacity); }
    SharedSetNode* const* Children() const { return reinterpret_cast<SharedSetNode* const*>(Elements() + m_nCapacity); }
    std::size_t GetOwnBytes() const
    {
        return sizeof(SharedSetNode) + m_nCapacity * (sizeof(T) + (IsLeaf() ? 0 : sizeof(SharedSetNode*)));
    }
    void MakeRoom(unsigned nPlace, unsigned nEntries)
    {
        std::copy_backward(Elements() + nPlace, Elements() + m_nCount, Elements() + m_nCount + nEntries);
        if (!IsLeaf())
            std::copy_backward(Children() + nPlace, Children() + m_nCount, Children() + m_nCount + nEntries);
        m_nCount = std::uint8_t(m_nCount + nEntries);
    }

    std::size_t m_nBytes;
    std::uint32_t m_nReferences = 1;
    std::uint8_t m_nLevel;
    std::uint8_t m_nCount = 0;
    std::uint8_t m_nCapacity;
};
} // namespace QRV
