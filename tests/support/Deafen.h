#pragma once

#include <QRV/API.h>

namespace QRV
{
/// The host hears of nothing any more.
inline void Deafen()
{
    APIRegisterProgressCallbacksReadOnly({}, {}, {});
    APIRegisterModelChangedCallbackReadOnly({});
}
} // namespace QRV
