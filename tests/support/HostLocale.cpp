// Runs every test of the program as a host in a country of decimal commas would, when the environment asks for it.

#include "support/CommaLocale.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace QRV
{
namespace
{
class HostLocale : public testing::Environment
{
public:
    void SetUp() override
    {
        if (std::getenv("QRV_TEST_COMMA_LOCALE") == nullptr)
            return;
        m_commas.emplace();
        ASSERT_STREQ(std::localeconv()->decimal_point, ",") << "the C library has no locale of decimal commas";
    }
    void TearDown() override { m_commas.reset(); }

private:
    std::optional<CommaLocale> m_commas;
};

[[maybe_unused]] const testing::Environment* const s_pHostLocale =
    testing::AddGlobalTestEnvironment(new HostLocale); // owned by the test program
} // namespace
} // namespace QRV
