#pragma once

#include <QRV/API.h>

#include <gtest/gtest.h>

#include <source_location>

namespace QRV
{
/// The call went well; if not, the failure names the place of the call and its error.
inline void ExpectGood(const Result& result, std::source_location place = std::source_location::current())
{
    EXPECT_TRUE(result.IsGood()) << place.file_name() << ':' << place.line() << ": " << result.GetErrorString();
}
} // namespace QRV
