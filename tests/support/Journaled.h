/// A journal in a file of its own, and what it says.
#pragma once

#include <QRV/API.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace QRV
{
/// Journals while it lives; the types that are written are those of a fresh process again at its end.
class Journaled
{
public:
    explicit Journaled(std::uint64_t nMainHistoryID, const char* pName = "session.js")
        : m_strPath(testing::TempDir() + "qrv_" + testing::UnitTest::GetInstance()->current_test_info()->name() + "_" +
                    pName)
    {
        EXPECT_TRUE(APIEnableJournaling(nMainHistoryID, m_strPath).IsGood());
    }
    ~Journaled()
    {
        APIDisableJournaling();
        APIEnableJournalingTypes({"QRV"}, false);
        std::remove(m_strPath.c_str());
    }
    Journaled(const Journaled&) = delete;
    Journaled& operator=(const Journaled&) = delete;

    std::string Read() const
    {
        std::ifstream stream(m_strPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// What was added since the last look.
    std::string ReadOn()
    {
        const std::string strAll = Read();
        const std::string strNew = strAll.substr(std::min(m_nRead, strAll.size()));
        m_nRead = strAll.size();
        return strNew;
    }

private:
    std::string m_strPath;
    std::size_t m_nRead = 0;
};
} // namespace QRV
