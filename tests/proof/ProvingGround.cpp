#include "proof/ProvingGround.h"

#include "history/HistoryRegistry.h"
#include "proof/Session.h"

namespace QRV
{
namespace
{
/// The next new objects get the free ids, then those behind the table; a free id at the table's end is one of these.
std::string DescribeNextIDs(const History& history)
{
    std::set<std::uint64_t> free = history.GetReusableIDs().Get();
    std::uint64_t nBehind = history.GetObjectTable().Size();
    while (!free.empty() && *free.rbegin() + 1 == nBehind)
        free.erase(--nBehind);
    std::string strIDs;
    for (const std::uint64_t nID : free)
        strIDs += std::to_string(nID) + ' ';
    return strIDs + std::to_string(nBehind);
}
} // namespace

ModelState Look(std::uint64_t nHistoryID)
{
    ModelState state;
    state.strModel = DumpObjects(nHistoryID);
    state.strSteps = DescribeSteps(nHistoryID);
    if (const History* pHistory = HistoryRegistry::Get().GetHistory(nHistoryID))
        state.strNextIDs = DescribeNextIDs(*pHistory);
    return state;
}

std::vector<const CallKind*> SelectKinds(bool (*isWanted)(const CallKind&))
{
    std::vector<const CallKind*> aKinds;
    for (const CallKind& kind : GetCallKinds())
        if (isWanted(kind))
            aKinds.push_back(&kind);
    return aKinds;
}

std::string NameOfKind(const testing::TestParamInfo<const CallKind*>& kind)
{
    return std::string(kind.param->strName);
}

std::string GetDone(const std::string& strSteps)
{
    return strSteps.substr(0, strSteps.find('|'));
}

ProvingGround::~ProvingGround()
{
    Clear();
}

/// A call may have ended the Histories, and others stand where they were.
void ProvingGround::Clear()
{
    APIDeleteAllHistories();
    for (std::optional<RichModel>* pModel : {&m_model, &m_other})
        if (pModel->has_value())
        {
            std::uint64_t nID = (*pModel)->GetID();
            APICreateHistory(nID, true);
            pModel->reset();
        }
    APIDeleteAllHistories(); // ids start at 0 again
}

void ProvingGround::Rebuild()
{
    Clear();
    m_other.emplace();
    m_model.emplace();
    // More objects there than here, so that the last id names nothing here.
    for (int i = 0; i < 3; ++i)
        m_nForeignID = m_other->Vertex({9, 9, double(i)});
    m_state = Look();
}

ArgumentSource ProvingGround::GetSource(std::uint64_t nSeed) const
{
    ArgumentSource source({GetID(), m_model->GetDeadIDs(), GetOtherID(), m_nForeignID}, nSeed);
    source.BePlain();
    return source;
}

ModelState ProvingGround::Look() const
{
    ModelState state = QRV::Look(GetID());
    APIGetAllHistoriesReadOnly(state.aHistories, true);
    state.strOtherSteps = DescribeSteps(GetOtherID());
    return state;
}

void ProvingGround::Restore()
{
    ModelState now = Look();
    if (now.strModel != m_state.strModel && now.aHistories == m_state.aHistories)
    {
        APIUndoHistory(GetID());
        now = Look();
    }
    if (now.strModel != m_state.strModel || GetDone(now.strSteps) != GetDone(m_state.strSteps) ||
        now.aHistories != m_state.aHistories || now.strOtherSteps != m_state.strOtherSteps)
        Rebuild();
    else
        m_model->EnsureRedo();
}

std::vector<std::uint64_t> ProvingGround::FindGoodSeeds(const CallKind& kind)
{
    constexpr std::uint64_t kTries = 2000;
    constexpr std::uint64_t kTriesForBoth = 100;
    std::optional<std::uint64_t> nChanging;
    std::optional<std::uint64_t> nOther;
    const bool bMayChange = !kind.IsReadOnly();
    for (std::uint64_t nSeed = 0; nSeed < kTries; ++nSeed)
    {
        if ((nOther && (nChanging || !bMayChange)) || ((nOther || nChanging) && nSeed >= kTriesForBoth))
            break;
        ArgumentSource source = GetSource(nSeed);
        const std::unique_ptr<PreparedCall> call = kind.prepare(source);
        const std::string strBefore = DescribeSteps(GetID());
        if (!call->Run().IsGood())
            continue;
        const std::string strAfter = DescribeSteps(GetID());
        const bool bChanged = kind.Changes() ? GetDone(strAfter) != GetDone(strBefore) : strAfter != strBefore;
        std::optional<std::uint64_t>& nFound = bChanged ? nChanging : nOther;
        nFound = nFound.value_or(nSeed);
        if (bMayChange)
            Restore();
    }
    std::vector<std::uint64_t> aSeeds;
    for (const std::optional<std::uint64_t>& nFound : {nChanging, nOther})
        if (nFound)
            aSeeds.push_back(*nFound);
    return aSeeds;
}
} // namespace QRV
