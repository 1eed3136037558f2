/// A look at the sides of a face that stops where there are many.
#pragma once

#include "model/Coedge.h"
#include "model/Face.h"

#include <cstddef>

namespace QRV
{
/// Calls `visit(const Coedge&)` along all loops. False, with the first `nMost` visited, when there are more.
template <class Visit>
bool VisitSidesUpTo(const Face& face, std::size_t nMost, Visit&& visit)
{
    std::size_t nSides = 0;
    for (const Loop* pLoop : face.GetLoops())
        for (const Coedge* pCoedge = pLoop->GetCoedge(); pCoedge;)
        {
            if (++nSides > nMost)
                return false;
            visit(*pCoedge);
            pCoedge = pCoedge->GetNext() == pLoop->GetCoedge() ? nullptr : pCoedge->GetNext();
        }
    return true;
}
} // namespace QRV
