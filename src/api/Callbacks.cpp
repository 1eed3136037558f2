#include "frame/APICall.h"

#include <QRV/Callbacks.h>

namespace QRV
{
Result APIRegisterModelChangedCallbackReadOnly(const std::function<void(const ModelChangeData&)>& callback)
{
    return UnjournaledCall(NoHistory{}).Run([&](Result&) { HistoryRegistry::Get().SetModelChangedCallback(callback); });
}

Result APIRegisterProgressCallbacksReadOnly(const std::function<void(const std::string&)>& start,
                                            const std::function<void(float)>& progress,
                                            const std::function<void(const Result&)>& end, float fStep, float fMin,
                                            float fMax)
{
    return UnjournaledCall(NoHistory{})
        .Run([&](Result&)
             { HistoryRegistry::Get().GetProgressHooks() = ProgressHooks(start, progress, end, fStep, fMin, fMax); });
}
} // namespace QRV
