/// Work in a process of its own, with a journal of its own that can be replayed.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace QRV
{
/// Runs `work` with a new History, the only one, and a journal, in a process of its own; then replays that journal in
/// one more: the models at the end are to be the same. Gives what went wrong: what `work` threw, how its process ended,
/// how the replay differs; nothing if all is well. Of a failure the journal stays, and where is said. This process must
/// not have had bitmaps yet, for their numbers go on: one test in a process, as ctest runs them.
std::string RunIsolated(const std::function<void(std::uint64_t nHistoryID)>& work);
} // namespace QRV
