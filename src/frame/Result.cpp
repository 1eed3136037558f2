#include "frame/ResultImplementation.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>

namespace QRV
{
namespace
{
constexpr std::array kMessages = {
#define QRV_RESULT_CODE(name, message) message,
#include <QRV/ResultCodes.inl>
#undef QRV_RESULT_CODE
};

using Numbers = std::span<const std::uint64_t>;
using Objects = std::span<const ObjectHistoryID>;

void Fill(ResultImplementation& body, Result::nResultType nType, bool bWarning, Numbers aNumbers, Objects aObjects)
{
    body.m_aIDs.assign(aNumbers.begin(), aNumbers.end());
    body.m_aHistoryObjectIDs.assign(aObjects.begin(), aObjects.end());
    body.m_nResultType = nType;
    body.m_bWarning = bWarning;
}

/// The error for which no memory is left. One body serves all who meet it, since a held error never changes.
std::shared_ptr<ResultImplementation> GetBodyOfLastResort() noexcept
{
    static ResultImplementation body;
    body.m_nResultType = Result::nCaughtException;
    return {std::shared_ptr<void>(), &body};
}
} // namespace

Result::Result(nResultType nType) noexcept
{
    SetErrorCode(nType);
}

bool Result::IsGood() const
{
    return !m_pImplementation || !m_pImplementation->HoldsError();
}

Result::nResultType Result::GetErrorCode() const
{
    return IsGood() ? nOK : m_pImplementation->m_nResultType;
}

Result::nResultType Result::GetWarningCode() const
{
    return HasWarning() ? m_pImplementation->m_nResultType : nOK;
}

bool Result::HasWarning() const
{
    return m_pImplementation && m_pImplementation->m_bWarning;
}

std::string Result::GetErrorString() const
{
    if (!m_pImplementation)
        return kMessages[nOK];

    std::array<std::uint64_t, 4> aParameters;
    aParameters.fill(INVALID_ID);
    const auto& aObjects = m_pImplementation->m_aHistoryObjectIDs;
    const auto& aNumbers = m_pImplementation->m_aIDs;
    for (std::size_t i = 0; i < std::min<std::size_t>(aObjects.size(), 2); ++i)
    {
        aParameters[2 * i] = aObjects[i].m_nHistoryID;
        aParameters[2 * i + 1] = aObjects[i].m_nObjectID;
    }
    if (aObjects.empty())
        std::copy_n(aNumbers.begin(), std::min(aNumbers.size(), aParameters.size()), aParameters.begin());

    const std::size_t nCode = m_pImplementation->m_nResultType;
    const char* pFormat = kMessages[nCode < kMessages.size() ? nCode : static_cast<std::size_t>(nFailure)];
    std::array<char, 1024> text;
    // The placeholders are 32 bits wide, so that an absent number reads -1.
    std::snprintf(text.data(), text.size(), pFormat, static_cast<std::int32_t>(aParameters[0]),
                  static_cast<std::int32_t>(aParameters[1]), static_cast<std::int32_t>(aParameters[2]),
                  static_cast<std::int32_t>(aParameters[3]));
    return text.data();
}

bool Result::HasHistoryObjectIDs() const
{
    if (!m_pImplementation)
        return false;
    const auto& aIDs = m_pImplementation->m_aHistoryObjectIDs;
    return aIDs.size() > 1 || (aIDs.size() == 1 && aIDs.front().m_nObjectID != INVALID_ID);
}

std::uint64_t Result::GetHistoryObjectIDs(std::vector<ObjectHistoryID>& aIDs) const
{
    if (!m_pImplementation)
        return 0;
    const auto& aHeld = m_pImplementation->m_aHistoryObjectIDs;
    aIDs.insert(aIDs.end(), aHeld.begin(), aHeld.end());
    return aHeld.size();
}

void Result::SetError(nResultType nType, Numbers aNumbers, Objects aObjects) noexcept
{
    if (!IsGood())
    {
        if (nType == nOK)
            m_pImplementation.reset();
        return;
    }
    if (nType == nOK)
        return;
    try
    {
        Fill(*GetImplementation(), nType, false, aNumbers, aObjects);
    }
    catch (...)
    {
        m_pImplementation = GetBodyOfLastResort();
    }
}

void Result::SetWarning(nResultType nType, Numbers aNumbers, Objects aObjects)
{
    if (!IsGood())
        return;
    if (HasWarning())
    {
        if (nType == nOK)
            m_pImplementation.reset();
        return;
    }
    if (nType != nOK)
        Fill(*GetImplementation(), nType, true, aNumbers, aObjects);
}

void Result::SetErrorCode(nResultType nType, const std::vector<std::uint64_t>& aNumbers) noexcept
{
    SetError(nType, Numbers(aNumbers), Objects());
}

void Result::SetErrorCode(nResultType nType, std::uint64_t nNumber) noexcept
{
    SetError(nType, Numbers(&nNumber, 1), Objects());
}

void Result::SetErrorCode(nResultType nType, const std::vector<ObjectHistoryID>& aObjects) noexcept
{
    SetError(nType, Numbers(), Objects(aObjects));
}

void Result::SetWarningCode(nResultType nType, const std::vector<std::uint64_t>& aNumbers)
{
    SetWarning(nType, Numbers(aNumbers), Objects());
}

void Result::SetWarningCode(nResultType nType, std::uint64_t nNumber)
{
    SetWarning(nType, Numbers(&nNumber, 1), Objects());
}

void Result::SetWarningCode(nResultType nType, const std::vector<ObjectHistoryID>& aObjects)
{
    SetWarning(nType, Numbers(), Objects(aObjects));
}

ResultImplementation* Result::GetImplementation()
{
    if (!m_pImplementation)
        m_pImplementation = std::make_shared<ResultImplementation>();
    return m_pImplementation.get();
}
} // namespace QRV
