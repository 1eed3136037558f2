/// A journal in a file of its own, and what it says.
#pragma once

#include "support/TemporaryFile.h"

#include <QRV/API.h>

#include <algorithm>
#include <string>

namespace QRV
{
/// What a journal has before and behind its calls.
inline const std::string kJournalHead = "function runtest() \n{\n    var result = true; \n"
                                        "    var mainHistID = QRV.APIGetActiveHistory();\n";
inline const std::string kJournalTail = "    return result; \n}";

/// Journals while it lives; the types that are written are those of a fresh process again at its end.
class Journaled
{
public:
    explicit Journaled(std::uint64_t nMainHistoryID, const char* pName = "session.js") : m_file(pName)
    {
        EXPECT_TRUE(APIEnableJournaling(nMainHistoryID, m_file.GetPath()).IsGood());
    }
    ~Journaled()
    {
        APIDisableJournaling();
        APIEnableJournalingTypes({"QRV"}, false);
    }
    Journaled(const Journaled&) = delete;
    Journaled& operator=(const Journaled&) = delete;

    std::string Read() const { return m_file.Read(); }
    /// What was added since the last look.
    std::string ReadOn()
    {
        const std::string strAll = Read();
        const std::string strNew = strAll.substr(std::min(m_nRead, strAll.size()));
        m_nRead = strAll.size();
        return strNew;
    }

private:
    TemporaryFile m_file;
    std::size_t m_nRead = 0;
};
} // namespace QRV
