/// How a host hears of what the library does.
#pragma once

#include <QRV/Export.h>
#include <QRV/ModelChange.h>
#include <QRV/Result.h>

#include <functional>
#include <string>

namespace QRV
{
// Callbacks run on the thread of the call that they tell of, before it returns. They may call the library; but the
// History that the call is at work on refuses changes, its deletion too, until the end hook runs. What they throw is
// caught: the call then gives `nCaughtException`, except that what is thrown at the end of a call is dropped.

/// Sets what is told of each step of a lasting History: that it was made, undone, redone, merged or loaded, that redo
/// steps were deleted or a History ended. One for the process: it replaces the one before, and an empty one ends it.
///
/// The step stands when the callback hears of it, also when that throws. Calls for change reports may be made from
/// within it.
QRV_API Result APIRegisterModelChangedCallbackReadOnly(const std::function<void(const ModelChangeData&)>& callback);

/// Sets what is told at the start and the end of each call that changes models or Histories; queries are not told of.
/// One set for the process: it replaces the one before wholly, so that a function left empty is no longer called.
/// @param start     gets the name of the call. When it throws the call does nothing
/// @param progress  gets `fMax` at the end of a call, if its last value was below that
/// @param end       gets the result, after all notifications of the call
/// @param fStep     kept, not used
/// @param fMin      where progress starts
QRV_API Result APIRegisterProgressCallbacksReadOnly(const std::function<void(const std::string&)>& start,
                                                    const std::function<void(float)>& progress,
                                                    const std::function<void(const Result&)>& end, float fStep = 1.0f,
                                                    float fMin = 0.0f, float fMax = 100.0f);
} // namespace QRV
