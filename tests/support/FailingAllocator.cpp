#include "support/FailingAllocator.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace
{
struct Countdown
{
    bool bArmed = false;
    bool bFailed = false;
    std::size_t nLeft = 0;
    std::size_t nRefusals = 0;
};
thread_local constinit Countdown g_countdown;

bool IsRefused() noexcept
{
    if (!g_countdown.bArmed || g_countdown.nRefusals == 0)
        return false;
    if (g_countdown.nLeft > 0)
    {
        --g_countdown.nLeft;
        return false;
    }
    g_countdown.bFailed = true;
    --g_countdown.nRefusals;
    return true;
}

void* Allocate(std::size_t nSize) noexcept
{
    return IsRefused() ? nullptr : std::malloc(std::max<std::size_t>(nSize, 1));
}

void* OrThrow(void* pMemory)
{
    if (!pMemory)
        throw std::bad_alloc();
    return pMemory;
}
} // namespace

namespace QRV
{
void FailingAllocator::FailAfter(std::size_t nCount, std::size_t nRefusals) noexcept
{
    g_countdown = {true, false, nCount, nRefusals};
}

void FailingAllocator::Stop() noexcept
{
    g_countdown.bArmed = false;
}

bool FailingAllocator::HasFailed() noexcept
{
    return g_countdown.bFailed;
}
} // namespace QRV

// The forms for arrays and with nothrow fall back on these in the standard library, but a sanitizer brings its own.
// Nothing asks for more than the usual alignment.
void* operator new(std::size_t n)
{
    return OrThrow(Allocate(n));
}
void* operator new[](std::size_t n)
{
    return OrThrow(Allocate(n));
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept
{
    return Allocate(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept
{
    return Allocate(n);
}
void operator delete(void* p) noexcept
{
    std::free(p);
}
void operator delete[](void* p) noexcept
{
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept
{
    std::free(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept
{
    std::free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept
{
    std::free(p);
}
