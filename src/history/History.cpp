#include "history/History.h"

#include "history/HistoryRegistry.h"

#include <algorithm>
#include <stdexcept>

namespace QRV
{
History::~History() = default;

void History::SetID(std::uint64_t nID)
{
    m_nID = nID;
    for (std::size_t i = 0; i < m_objects.Size(); ++i)
        m_objects.At(i).SetHistoryID(nID);
}

Object* History::GetObject(std::uint64_t nID, const Delta* pDelta) const
{
    return nID < m_objects.Size() ? m_objects.At(nID).GetObject(pDelta) : nullptr;
}

Object* History::GetObjectRelative(std::uint64_t nID, int nOffset) const
{
    return nID < m_objects.Size() ? m_objects.At(nID).GetObjectRelative(nOffset) : nullptr;
}

nObjectType History::GetObjectType(std::uint64_t nID) const
{
    return nID < m_objects.Size() ? m_objects.At(nID).GetType() : nUnspecifiedType;
}

std::size_t History::GetObjectsByType(std::vector<Object*>& aObjects, nObjectType nType, bool bUseMemo)
{
    const std::size_t nBefore = aObjects.size();
    const auto itMemo = bUseMemo ? m_mapObjectsByType.find(nType) : m_mapObjectsByType.end();
    if (itMemo != m_mapObjectsByType.end())
    {
        aObjects.insert(aObjects.end(), itMemo->second.begin(), itMemo->second.end());
        return aObjects.size() - nBefore;
    }
    for (std::size_t i = 0; i < m_objects.Size(); ++i)
    {
        Object* pObject = m_objects.At(i).GetObject();
        if (pObject && (nType == nUnspecifiedType || pObject->GetType() == nType))
            aObjects.push_back(pObject);
    }
    if (bUseMemo)
        m_mapObjectsByType.emplace(nType,
                                   std::vector<Object*>(aObjects.begin() + std::ptrdiff_t(nBefore), aObjects.end()));
    return aObjects.size() - nBefore;
}

void History::AddObject(Object& object)
{
    if (!m_pOpenDelta)
        throw std::logic_error("an object is made while no Delta is open");
    ReserveReturnOfOneMore();
    m_mapObjectsByType.clear();
    std::uint64_t nID = m_objects.Size();
    if (!m_reusableIDs.IsEmpty())
    {
        nID = m_reusableIDs.GetSmallest();
        m_reusableIDs.PrepareToTake();
    }
    else
        m_objects.Grow();

    object.m_nID = nID;
    object.m_nHistoryID = m_nID;
    try
    {
        m_objects.At(nID).Append(*m_pOpenDelta, &object);
    }
    catch (...)
    {
        if (m_reusableIDs.IsEmpty())
            m_objects.Shrink();
        throw;
    }
    if (!m_reusableIDs.IsEmpty())
        m_reusableIDs.TakeSmallest();
}

void History::ReserveReturnOfOneMore()
{
    m_trees.ReserveReturns(m_pOpenDelta->GetObjectIDs().size() + 1);
}

bool History::RecordChange(Object& object)
{
    if (!m_pOpenDelta || object.GetID() >= m_objects.Size())
        return false;
    ObjectHistory& records = m_objects.At(object.GetID());
    if (records.GetLastDelta() == m_pOpenDelta.get())
        return false;
    ReserveReturnOfOneMore();
    return records.RecordChange(*m_pOpenDelta);
}

bool History::RecordDeletion(Object& object)
{
    if (!m_pOpenDelta)
        throw std::logic_error("an object dies while no Delta is open");
    if (object.GetID() >= m_objects.Size())
        return false;
    ReserveReturnOfOneMore();
    m_mapObjectsByType.clear();
    if (object.GetType() == nFaceType)
        m_outerSides.NoteFaceDies();
    else if (object.GetType() == nEdgeType)
        m_outerSides.Forget(object.GetID());
    return m_objects.At(object.GetID()).RecordDeletion(*m_pOpenDelta);
}

BoxTree<Edge>& History::GetEdgeTree()
{
    FlushAwaitingEdges();
    return m_trees.GetActive().m_edges;
}

BoxTree<Face>& History::GetFaceTree()
{
    FlushAwaitingFaces();
    return m_trees.GetActive().m_faces;
}

void History::AwaitSearch(const Edge& edge)
{
    if (m_pOpenDelta)
        m_aAwaitingEdges.push_back(edge.GetID());
}

void History::AwaitSearch(const Face& face)
{
    if (m_pOpenDelta)
        m_aAwaitingFaces.push_back(face.GetID());
}

void History::FlushAwaitingEdges()
{
    while (!m_aAwaitingEdges.empty())
    {
        if (auto* pEdge = Get<Edge>(m_aAwaitingEdges.back()))
            pEdge->EnterSearch();
        m_aAwaitingEdges.pop_back();
    }
}

void History::FlushAwaitingFaces()
{
    std::vector<std::uint64_t> aWaitingOn; // faces that have no outline yet
    while (!m_aAwaitingFaces.empty())
    {
        auto* pFace = Get<Face>(m_aAwaitingFaces.back());
        if (pFace && pFace->GetLoops().empty())
            aWaitingOn.push_back(pFace->GetID());
        else if (pFace)
            pFace->GetBox();
        m_aAwaitingFaces.pop_back();
    }
    m_aAwaitingFaces.swap(aWaitingOn);
}

void History::ClearTemporaryTrees() noexcept
{
    m_trees.ClearTemporary();
    m_mapObjectsByType.clear();
}

Interval3d History::GetBox()
{
    return GetVertexTree().GetBox();
}

Interval3d History::GetBox(const Transf3d& transform)
{
    if (transform.isIdentity() || transform.isRotation90DegreeMultiple())
        return GetBox() * transform;
    Interval3d box;
    std::vector<Vertex*> aVertices;
    GetVertexTree().GetElements(aVertices);
    for (const Vertex* pVertex : aVertices)
        box += transform * pVertex->GetPosition();
    return box;
}

std::size_t History::GetSizeInBytes(bool bActiveOnly) const
{
    constexpr std::size_t kHistorySize = 384;
    constexpr std::size_t kDeltaSize = 40;
    constexpr std::size_t kRecordSize = 16;
    const TopologyTrees& trees = m_trees.GetMain();
    std::size_t nSize = kHistorySize + 3 * sizeof(void*) + trees.m_vertices.GetSizeInBytes() +
                        trees.m_edges.GetSizeInBytes() + trees.m_faces.GetSizeInBytes() +
                        m_objects.GetCapacity() * sizeof(void*);
    for (std::size_t i = 0; i < m_objects.Size(); ++i)
    {
        const ObjectHistory& records = m_objects.At(i);
        if (bActiveOnly)
        {
            const Object* pObject = records.GetObject();
            nSize += (2 + std::min<std::size_t>(records.GetRecordCount(), 1)) * kRecordSize +
                     (pObject ? pObject->GetSizeInBytes(true, true) : 0);
            continue;
        }
        nSize += (2 + records.GetRecordCount()) * kRecordSize;
        for (std::size_t n = 0; n < records.GetRecordCount(); ++n)
            if (const Object* pState = records.GetRecord(n).pObject)
                nSize += pState->GetSizeInBytes(true, true);
    }
    if (bActiveOnly)
        return nSize;
    nSize += m_aDeltas.capacity() * sizeof(m_aDeltas[0]) + m_reusableIDs.GetCount() * sizeof(std::uint64_t);
    for (const auto& pDelta : m_aDeltas)
        nSize += kDeltaSize + pDelta->GetObjectIDs().capacity() * sizeof(std::uint64_t);
    return nSize;
}

void History::NotifyModelChanged(nModelChangeType nType, const char* pName, std::uint64_t nPrevious,
                                 std::uint64_t nCurrent)
{
    HistoryRegistry& registry = HistoryRegistry::Get();
    if (!m_bNonTemporary || !registry.GetModelChangedCallback())
        return;
    ModelChangeData change;
    change.historyID = m_nID;
    change.type = nType;
    change.name = pName;
    change.previousDelta = nPrevious;
    change.currentDelta = nCurrent;
    registry.Notify(change);
}
} // namespace QRV
