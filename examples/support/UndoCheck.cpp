#include "UndoCheck.h"

namespace examples
{
using namespace QRV;

namespace
{
void ExpectEmpty(const Session& session, const char* pWay)
{
    Expect(GetState(session).aIDs.empty(), std::string(pWay) + " leaves objects behind");
    Expect(session.Audit().empty(), std::string(pWay) + " leaves findings behind");
}

void ExpectRestored(const Session& session, const ModelState& before, const char* pWay)
{
    Expect(GetState(session) == before, std::string(pWay) + " does not bring back the same ids, areas and volumes");
    Expect(session.Audit().empty(), std::string(pWay) + " gives findings");
}
} // namespace

ModelState GetState(const Session& session)
{
    ModelState state;
    state.aIDs = session.GetAll(nUnspecifiedType);
    for (const std::uint64_t nBody : session.GetAll(nBodyType))
    {
        state.aAreas.push_back(session.GetArea(nBody));
        state.aVolumes.push_back(session.GetVolume(nBody));
    }
    return state;
}

std::size_t ExpectUndoRedo(const Session& session)
{
    const std::uint64_t nHistory = session.GetID();
    const ModelState before = GetState(session);
    std::uint64_t nLast = INVALID_ID;
    Expect(APIGetIdOfActiveDeltaReadOnly(nHistory, nLast), "APIGetIdOfActiveDeltaReadOnly");

    std::size_t nSteps = 0;
    bool bMore = true;
    while (APICanUndoHistoryReadOnly(nHistory, bMore).IsGood() && bMore)
    {
        Expect(APIUndoHistory(nHistory), "APIUndoHistory");
        ++nSteps;
    }
    ExpectEmpty(session, "undoing step by step");
    while (APICanRedoHistoryReadOnly(nHistory, bMore).IsGood() && bMore)
        Expect(APIRedoHistory(nHistory), "APIRedoHistory");
    ExpectRestored(session, before, "redoing step by step");

    Expect(APIUndoHistoryToDelta(nHistory, INVALID_ID), "APIUndoHistoryToDelta");
    ExpectEmpty(session, "undoing in one jump");
    Expect(APIRedoHistoryToDelta(nHistory, nLast), "APIRedoHistoryToDelta");
    ExpectRestored(session, before, "redoing in one jump");
    return nSteps;
}
} // namespace examples
