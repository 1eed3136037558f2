/// What came, changed and went in a model, and whether two models are the same.
#pragma once

#include <QRV/Export.h>
#include <QRV/Ids.h>
#include <QRV/ObjectTypes.h>
#include <QRV/Result.h>

#include <cstdint>
#include <vector>

namespace QRV
{
/// Reports what the active delta did to the objects, in the order in which it touched them.
///
/// A model that is mirrored from reports hears of each step in `APIRegisterModelChangedCallbackReadOnly`, and asks
/// there for the range from the delta active before to the one active after.
/// @param pCreated, pChanged, pDeleted  each may be null; ids are appended
/// @param nType  only objects of this class; 0 for all
/// @param bNext  reports the next redo step as just undone: what it made is deleted, what it deleted is created
/// @return `nFailure` when the History has no deltas, or a change is under way in it
QRV_API Result APIGetCreatedChangedAndDeletedInActiveDeltaReadOnly(
    std::uint64_t nHistoryID, std::vector<std::uint64_t>* pCreated, std::vector<std::uint64_t>* pChanged,
    std::vector<std::uint64_t>* pDeleted, nObjectType nType = nUnspecifiedType, bool bNext = false);

/// Reports what leads from the state after one delta to the state after another, applied or not, forward or back.
///
/// Each object stands in one list at most; one that came and went in between, and one deleted that came back, stands in
/// none. Over a single delta ids come in the order in which it touched them, over more in ascending order.
/// @param nFrom, nTo  deltas; 0 and `INVALID_ID` are the state before the first
/// @param pCreated, pChanged, pDeleted  each may be null; ids are appended
/// @param aTypes      only objects of these classes; empty for all
/// @return `nFailure`, with nothing appended, for unknown deltas, for twice the same state, and while a change is under
///         way
QRV_API Result APIGetCreatedChangedAndDeletedInDeltaRangeReadOnly(std::uint64_t nHistoryID, std::uint64_t nFrom,
                                                                  std::uint64_t nTo,
                                                                  std::vector<std::uint64_t>* pCreated,
                                                                  std::vector<std::uint64_t>* pChanged,
                                                                  std::vector<std::uint64_t>* pDeleted,
                                                                  const std::vector<nObjectType>& aTypes = {});

/// Compares the deltas of a History with those of a copy of it elsewhere.
///
/// What copies have in common is marked by the flag 8 (`APISetDeltaFlags`): the shared prefix is the unbroken run of
/// deltas with that flag from the first on.
/// @param nActiveIndex  place of the copy's active delta in its list, from 0; `INVALID_ID` for none, which counts as
///                      behind all
/// @param aDeltaIDs     the deltas of the copy
/// @param nComparison   a set of bits of nHistoryComparison
QRV_API Result APICompareHistoryReadOnly(std::uint64_t nHistoryID, std::uint64_t nActiveIndex,
                                         const std::vector<std::uint64_t>& aDeltaIDs, nHistoryComparison& nComparison);

/// Whether two models, or two objects with all that is below them, are the same.
///
/// Models are the same when equal objects live under equal ids; the Histories that their groups show are compared in
/// the same way. Steps and dead objects do not count. Below two objects the order counts, not the ids.
/// @param nObjectID1, nObjectID2  an object of each History, or `INVALID_ID` twice for the whole models
/// @return `nBadInput` for one object alone and for an object that does not live
QRV_API Result APIIsExactMatchReadOnly(std::uint64_t nHistoryID1, std::uint64_t nHistoryID2, bool& bMatch,
                                       std::uint64_t nObjectID1 = INVALID_ID, std::uint64_t nObjectID2 = INVALID_ID);
} // namespace QRV
