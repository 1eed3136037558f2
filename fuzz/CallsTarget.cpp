// Bytes as a session: to each line a call, its name and behind a blank whatever settles its arguments. The model must
// stay sound and undo and redo must give it back, as in sessions made up at random. The arguments are made up as there,
// so that the one file that a call names is /dev/null.
#include "Target.h"

#include "proof/Session.h"

#include <sstream>

namespace
{
/// A session costs more with each object, and what two calls do to each other shows early.
constexpr int kMaxCalls = 40;

void RunSession(const std::string& strInput)
{
    std::uint64_t nHistoryID = QRV::INVALID_ID;
    QRV::APICreateHistory(nHistoryID, true);
    QRV::Session session(nHistoryID);
    std::istringstream stream(strInput);
    std::string strLine;
    for (int nCall = 0; nCall < kMaxCalls && std::getline(stream, strLine); ++nCall)
    {
        const std::size_t nBlank = std::min(strLine.find(' '), strLine.size());
        session.Make(fuzz::Choose(QRV::GetCallKinds(), strLine.substr(0, nBlank)), fuzz::Mix(strLine.substr(nBlank)));
    }
    session.UndoAndRedoAll();
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    try
    {
        RunSession(fuzz::ToText(pData, nSize));
    }
    catch (const std::runtime_error& broken)
    {
        fuzz::Fail(broken.what());
    }
    QRV::APIDisableJournaling();
    QRV::APIEnableJournalingTypes({"QRV"}, false);
    QRV::APIDeleteAllHistories();
    return 0;
}
