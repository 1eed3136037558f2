#include "frame/ProgressHooks.h"

#include <utility>

namespace QRV
{
ProgressHooks::ProgressHooks(std::function<void(const std::string&)> start, std::function<void(float)> progress,
                             std::function<void(const Result&)> end, float fStep, float fMin, float fMax)
    : m_fnStart(std::move(start)), m_fnProgress(std::move(progress)), m_fnEnd(std::move(end)), m_fStep(fStep),
      m_fMin(fMin), m_fMax(fMax)
{
}

// Each hook is copied before it is called, since the host may register others from within.

void ProgressHooks::Start(const char* pName) const
{
    if (const auto fnStart = m_fnStart)
        fnStart(pName);
}

void ProgressHooks::End(const Result& result) noexcept
{
    try
    {
        if (m_fMax > m_fLastReported)
            if (const auto fnProgress = m_fnProgress)
            {
                m_fLastReported = m_fMax;
                fnProgress(m_fMax);
            }
    }
    catch (...)
    {
    }
    try
    {
        if (const auto fnEnd = m_fnEnd)
            fnEnd(result);
    }
    catch (...)
    {
    }
}
} // namespace QRV
