/// Long lists of objects that stored states share.
#pragma once

#include "model/Object.h"
#include "model/SharedSet.h"

namespace QRV
{
struct ObjectIDKey
{
    std::uint64_t operator()(const Object* pObject) const { return pObject->GetID(); }
};

/// Objects in order of id.
template <class T>
using SharedObjectSet = SharedSet<T*, ObjectIDKey>;
} // namespace QRV
