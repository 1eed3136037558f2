#include "history/History.h"
#include "history/HistoryRegistry.h"
#include "model/Finding.h"

#include <algorithm>
#include <array>

namespace QRV
{
/// Looks one History over for broken rules. Each finding is one Result.
class HistoryAudit
{
public:
    HistoryAudit(const History& history, std::vector<Result>& aResults) : m_history(history), m_aResults(aResults) {}

    /// `aReferences` gets the ids of the Histories that this one shows.
    std::size_t Run(std::vector<std::uint64_t>& aReferences)
    {
        CheckObjects(aReferences);
        CheckTrees();
        CheckReusableIDs();
        CheckSets();
        CheckDeltas();
        CheckDeltaOrder();
        CheckRecords();
        CheckReferencingGroups();
        // Who owns what can only be told in an otherwise sound model.
        if (m_nFindings == 0)
            CheckOwnership();
        return m_nFindings;
    }

private:
    void Report(Result::nResultType nType, const Object* pObject)
    {
        m_nFindings += AddFinding(m_aResults, nType, pObject);
    }

    void ReportHistory(Result::nResultType nType)
    {
        Result result;
        result.SetErrorCode(nType, m_history.GetID());
        m_aResults.push_back(result);
        ++m_nFindings;
    }

    void CheckObjects(std::vector<std::uint64_t>& aReferences)
    {
        for (std::uint64_t nID = 0; nID < m_history.m_objects.Size(); ++nID)
        {
            const Object* pObject = m_history.GetObject(nID);
            if (!pObject)
                continue;
            m_nFindings += pObject->CheckValidity(m_aResults);
            ++m_aCounts[pObject->GetType()];
            if (pObject->GetReferencedHistoryID() != INVALID_ID)
                aReferences.push_back(pObject->GetReferencedHistoryID());
        }
    }

    template <class T>
    void CheckTree(const BoxTree<T>& tree, std::size_t nExpected, Result::nResultType nType)
    {
        std::size_t nCount = 0;
        if (!tree.CheckValidity(nCount) || nCount != nExpected || !HoldsLiveObjectsOnce(tree))
            ReportHistory(nType);
    }

    template <class T>
    bool HoldsLiveObjectsOnce(const BoxTree<T>& tree) const
    {
        std::vector<T*> aElements;
        tree.GetElements(aElements);
        std::vector<std::uint64_t> aIDs;
        for (const T* pElement : aElements)
        {
            if (m_history.GetObject(pElement->GetID()) != pElement)
                return false;
            aIDs.push_back(pElement->GetID());
        }
        std::sort(aIDs.begin(), aIDs.end());
        return std::adjacent_find(aIDs.begin(), aIDs.end()) == aIDs.end();
    }

    void CheckTrees()
    {
        const TopologyTrees& trees = m_history.m_trees.GetMain();
        CheckTree(trees.m_faces, m_aCounts[nFaceType], Result::nHistoryBadFaceTree);
        CheckTree(trees.m_edges, m_aCounts[nEdgeType], Result::nHistoryBadEdgeTree);
        CheckTree(trees.m_vertices, m_aCounts[nVertexType], Result::nHistoryBadVertexTree);
    }

    void CheckReusableIDs()
    {
        for (const std::uint64_t nID : m_history.m_reusableIDs.Get())
            if (nID >= m_history.m_objects.Size())
                Report(Result::nBadReuseID, nullptr);
    }

    template <class T>
    void CheckSet(Result::nResultType nType)
    {
        if (m_history.GetSearchSet<T>().size() != m_aCounts[T::kType])
            ReportHistory(nType);
    }

    void CheckSets()
    {
        CheckSet<Material>(Result::nHistoryBadMaterialSet);
        CheckSet<Texture>(Result::nHistoryBadTextureSet);
        CheckSet<Level>(Result::nHistoryBadLevelSet);
        CheckSet<Layer>(Result::nHistoryBadLayerSet);
        if (m_aCounts[nGeneratedGeometryInformationType] > 1)
            ReportHistory(Result::nHistoryManyGeneratedInfo);
    }

    void CheckDeltas()
    {
        for (const auto& pDelta : m_history.m_aDeltas)
        {
            if (!pDelta)
            {
                ReportHistory(Result::nNullDelta);
                continue;
            }
            for (const std::uint64_t nID : pDelta->GetObjectIDs())
                if (nID < m_history.m_objects.Size())
                    CheckListedOnce(nID, *pDelta);
        }
    }

    void CheckListedOnce(std::uint64_t nID, const Delta& delta)
    {
        const ObjectHistory& records = m_history.m_objects.At(nID);
        if (records.GetRecordCount() == 0)
        {
            Result result;
            result.SetErrorCode(Result::nNullObjectHistory, std::vector{ObjectHistoryID{m_history.GetID(), nID}});
            m_aResults.push_back(result);
            ++m_nFindings;
            return;
        }
        std::size_t nFound = 0;
        for (std::size_t i = 0; i < records.GetRecordCount(); ++i)
            nFound += records.GetRecord(i).pDelta == &delta;
        if (nFound != 1)
            Report(Result::nObjectHistoryMissingDelta, records.GetRecord(0).pObject);
    }

    void CheckDeltaOrder()
    {
        const auto& aDeltas = m_history.m_aDeltas;
        for (std::size_t i = 1; i < aDeltas.size(); ++i)
            if (aDeltas[i - 1] && aDeltas[i] && aDeltas[i]->GetID() <= aDeltas[i - 1]->GetID())
                return ReportHistory(Result::nHistoryBadDeltaOrder);
    }

    void CheckRecords()
    {
        std::unordered_map<const Delta*, std::size_t> mapPlaces;
        for (const auto& pDelta : m_history.m_aDeltas)
            mapPlaces.emplace(pDelta.get(), mapPlaces.size());
        if (m_history.m_pOpenDelta)
            mapPlaces.emplace(m_history.m_pOpenDelta.get(), mapPlaces.size());

        for (std::uint64_t nID = 0; nID < m_history.m_objects.Size(); ++nID)
        {
            const ObjectHistory& records = m_history.m_objects.At(nID);
            std::size_t nNextPlace = 0;
            for (std::size_t i = 0; i < records.GetRecordCount(); ++i)
            {
                const auto it = mapPlaces.find(records.GetRecord(i).pDelta);
                if (it == mapPlaces.end())
                {
                    Report(Result::nDeltaNotInHistory, records.GetRecord(0).pObject);
                    continue;
                }
                if (it->second < nNextPlace)
                    Report(Result::nObjectHistoryBadOrder, records.GetRecord(0).pObject);
                nNextPlace = it->second + 1;
            }
        }
    }

    void CheckReferencingGroups()
    {
        for (const ObjectHistoryID& id : m_history.m_aReferencingGroups)
        {
            const History* pHost = HistoryRegistry::Get().GetHistory(id.m_nHistoryID);
            const Object* pGroup = pHost ? pHost->GetObject(id.m_nObjectID) : nullptr;
            if (!pGroup || pGroup->GetReferencedHistoryID() != m_history.GetID())
                ReportHistory(Result::nHistoryBadOwningGroup);
        }
    }

    void CheckOwnership()
    {
        ObjectSet reached;
        std::vector<Object*> aBelow;
        for (std::uint64_t nID = 0; nID < m_history.m_objects.Size(); ++nID)
        {
            const Object* pObject = m_history.GetObject(nID);
            if (pObject && pObject->IsNonOwned())
                pObject->GetAllChildren(aBelow, false, &reached);
        }
        for (std::uint64_t nID = 0; nID < m_history.m_objects.Size(); ++nID)
        {
            const Object* pObject = m_history.GetObject(nID);
            if (pObject && !pObject->IsNonOwned() && !reached.contains(pObject))
                return Report(Result::nObjectNotOwnerChild, pObject);
        }
    }

    const History& m_history;
    std::vector<Result>& m_aResults;
    std::size_t m_nFindings = 0;
    std::array<std::size_t, nPointMeshType + 1> m_aCounts{}; ///< live objects of each class
};

std::size_t History::CheckAllValidity(std::vector<Result>& aResults)
{
    std::size_t nFindings = 0;
    std::vector<std::uint64_t> aHistoryIDs{m_nID};
    std::set<std::uint64_t> seen{m_nID};
    for (std::size_t i = 0; i < aHistoryIDs.size(); ++i)
    {
        History* pHistory = HistoryRegistry::Get().GetHistory(aHistoryIDs[i]);
        if (!pHistory)
            continue;
        std::vector<std::uint64_t> aReferences;
        nFindings += HistoryAudit(*pHistory, aResults).Run(aReferences);
        for (const std::uint64_t nID : aReferences)
            if (seen.insert(nID).second)
                aHistoryIDs.push_back(nID);
    }
    return nFindings;
}
} // namespace QRV
