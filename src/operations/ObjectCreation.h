/// Making the objects that calls are asked for.
#pragma once

#include "history/History.h"

#include <new>

namespace QRV
{
/// Makes an object that stands in the History's searches. Null, with the code, when there is no memory for it.
template <class T, class... Arguments>
T* TryCreate(History& history, Result& result, Result::nResultType nOutOfMemory, Arguments&&... arguments)
{
    try
    {
        T& object = history.Create<T>(std::forward<Arguments>(arguments)...);
        object.AddToSearch();
        return &object;
    }
    catch (const std::bad_alloc&)
    {
        result.SetErrorCode(nOutOfMemory);
        return nullptr;
    }
}
} // namespace QRV
