/// Lets memory run short on purpose. The test program's global operator new is replaced; unless armed it is the usual
/// one.
#pragma once

#include <cstddef>
#include <new>

namespace QRV
{
class FailingAllocator
{
public:
    static constexpr std::size_t kForGood = std::size_t(-1);

    /// From now on this thread gets memory `nCount` times. Then it is refused `nRefusals` times, or till Stop().
    static void FailAfter(std::size_t nCount, std::size_t nRefusals = kForGood) noexcept;
    static void Stop() noexcept;
    /// Whether an allocation was refused since FailAfter().
    static bool HasFailed() noexcept;

    /// Memory is short in a block: armed by the constructor, back to normal at its end.
    class Scope
    {
    public:
        explicit Scope(std::size_t nCount, std::size_t nRefusals = kForGood) { FailAfter(nCount, nRefusals); }
        ~Scope() { Stop(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };
};

/// Does the work with so much memory granted. False if it threw for want of more.
template <class Work>
bool SucceedsWith(std::size_t nGranted, Work work)
{
    const FailingAllocator::Scope shortage(nGranted);
    try
    {
        work();
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}
} // namespace QRV
