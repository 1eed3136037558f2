#include "frame/ResultImplementation.h"

#include "model/Object.h"

namespace QRV
{
void ResultImplementation::SetErrorCode(Result::nResultType nType, const Object* pFirst, const Object* pSecond)
{
    if (HoldsError() || nType == Result::nOK)
        return;
    m_nResultType = nType;
    m_bWarning = false;
    m_aIDs.clear();
    m_aHistoryObjectIDs.clear();
    if (!pFirst)
        return;
    m_aHistoryObjectIDs.push_back({pFirst->GetHistoryID(), pFirst->GetID()});
    if (pSecond)
        m_aHistoryObjectIDs.push_back({pSecond->GetHistoryID(), pSecond->GetID()});
}
} // namespace QRV
