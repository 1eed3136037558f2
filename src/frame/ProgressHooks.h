/// The host's hooks around an exported call.
#pragma once

#include <QRV/Result.h>

#include <functional>
#include <string>

namespace QRV
{
/// Called at the start and at the end of every call that is journaled as a change. All may be empty.
class ProgressHooks
{
public:
    ProgressHooks() = default;
    ProgressHooks(std::function<void(const std::string&)> start, std::function<void(float)> progress,
                  std::function<void(const Result&)> end, float fStep, float fMin, float fMax);

    /// A throw of the hook reaches the caller.
    void Start(const char* pName) const;
    /// Pushes the bar to its maximum, unless it stands there, then tells the result. A throw of either hook is
    /// dropped and the other is still called.
    void End(const Result& result) noexcept;

private:
    std::function<void(const std::string&)> m_fnStart;
    std::function<void(float)> m_fnProgress;
    std::function<void(const Result&)> m_fnEnd;
    [[maybe_unused]] float m_fStep = 1.0f;
    float m_fMin = 0.0f;
    float m_fMax = 100.0f;
    [[maybe_unused]] float m_fCurrent = m_fMin;
    float m_fLastReported = m_fMin;
};
} // namespace QRV
