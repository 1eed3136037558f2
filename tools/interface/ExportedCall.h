/// The words in which the list of exported calls is written, which is made when the library is built: for each function
/// a struct `...Call` with a pointer to it and what is known of it, and `ExportedCalls`, the list of all.
#pragma once

#include <array>
#include <string_view>

namespace tools
{
/// The frame of a call, which says what it may change.
enum class nFamily
{
    nModifying,
    nHistoryLevel,
    nReadOnly,
    nBothWay, ///< computes or modifies, as an argument says
    nUnjournaled
};

enum class nDirection
{
    nIn,
    nOut,
    nInOut
};

/// What a result holds when the work begins, and still does when it fails.
enum class nBefore
{
    nEmptied,
    nZeroed,
    nKept,  ///< what the host passed
    nUnsaid ///< the call settles it; so for what is no result
};

struct Parameter
{
    std::string_view strName;
    nDirection nWay;
    nBefore before;
};

/// Runs `visit.template operator()<Call>()` for each call in turn.
template <class... Calls>
struct CallList
{
    template <class Visitor>
    static void ForEach(Visitor&& visit)
    {
        (visit.template operator()<Calls>(), ...);
    }
};
} // namespace tools
