#include "frame/APICallScope.h"

#include "history/HistoryRegistry.h"

#include <utility>

namespace QRV
{
APICallScope::~APICallScope()
{
    End();
    HistoryRegistry::Get().GetProgressHooks().End(m_result);
}

void APICallScope::Start() const
{
    HistoryRegistry::Get().GetProgressHooks().Start(m_pName);
}

bool APICallScope::Occupy(std::uint64_t nHistoryID)
{
    History* pHistory = HistoryRegistry::Get().GetHistory(nHistoryID);
    if (!pHistory)
        m_result.SetErrorCode(Result::nBadHistoryID);
    else if (pHistory->IsBusy())
        m_result.SetErrorCode(Result::nHistoryOperationFailed, nHistoryID);
    if (!m_result.IsGood())
        return false;
    pHistory->SetBusy(true);
    m_pHistory = pHistory;
    return true;
}

bool APICallScope::Begin()
{
    return History::BeginTransaction(m_pHistory->GetID(), m_pTransactionHistory, m_result) && m_result.IsGood();
}

void APICallScope::End() noexcept
{
    if (History* pHistory = std::exchange(m_pTransactionHistory, nullptr))
        History::EndTransaction(pHistory, m_result, m_pName);
    if (History* pHistory = std::exchange(m_pHistory, nullptr))
        pHistory->SetBusy(false);
}
} // namespace QRV
