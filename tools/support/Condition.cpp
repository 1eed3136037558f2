#include "support/Condition.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace tools
{
namespace
{
template <class T>
bool ReadWhole(std::string_view strText, T& out)
{
    const char* pEnd = strText.data() + strText.size();
    const auto answer = std::from_chars(strText.data(), pEnd, out);
    return answer.ec == std::errc() && answer.ptr == pEnd;
}
} // namespace

std::optional<Condition> ReadCondition(const std::string& strText)
{
    using nKind = Condition::nKind;
    constexpr std::string_view kCode = "code:";
    constexpr std::string_view kTime = "time:";
    Condition condition;
    const std::string_view strView = strText;
    if (strView == "audit")
        condition.m_nKind = nKind::nAudit;
    else if (strView == "crash")
        condition.m_nKind = nKind::nCrash;
    else if (strView.starts_with(kCode) && ReadWhole(strView.substr(kCode.size()), condition.m_nCode) &&
             condition.m_nCode != 0)
        condition.m_nKind = nKind::nCode;
    else if (strView.starts_with(kTime) && ReadWhole(strView.substr(kTime.size()), condition.m_dSeconds) &&
             std::isfinite(condition.m_dSeconds) && condition.m_dSeconds >= 0.0)
        condition.m_nKind = nKind::nTime;
    else
        return std::nullopt;
    return condition;
}
} // namespace tools
