/// The body that the handles of one outcome share.
#pragma once

#include <QRV/Result.h>

#include <vector>

namespace QRV
{
class Object;

/// At most one of the two lists is filled.
class ResultImplementation
{
public:
    bool HoldsError() const { return m_nResultType != Result::nOK && !m_bWarning; }

    /// An error that names up to two objects, as the audit reports it. An error already held stays; code 0 and a
    /// second object without a first do nothing.
    void SetErrorCode(Result::nResultType nType, const Object* pFirst, const Object* pSecond);

    Result::nResultType m_nResultType = Result::nOK;
    bool m_bWarning = false;
    std::vector<std::uint64_t> m_aIDs;
    std::vector<ObjectHistoryID> m_aHistoryObjectIDs;
};
} // namespace QRV
