/// Which few of many things make something happen.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tools
{
using Lines = std::vector<std::string>;

/// Leaves out ever smaller runs of lines for as long as what is left still `fails`. Of what comes out no single line
/// can be left out. The lines keep their order.
/// @param aLines  fail
Lines Reduce(Lines aLines, const std::function<bool(const Lines&)>& fails);
} // namespace tools
