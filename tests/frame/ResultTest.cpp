#include "frame/ResultImplementation.h"

#include "support/CommaLocale.h"
#include "support/PolygonModel.h"

#include <QRV/GroupInstancePath.h>

namespace QRV
{
namespace
{
using Objects = std::vector<ObjectHistoryID>;
using Numbers = std::vector<std::uint64_t>;

Result MakeError(Result::nResultType nType, const Numbers& aNumbers)
{
    Result result;
    result.SetErrorCode(nType, aNumbers);
    return result;
}

Result MakeError(Result::nResultType nType, const Objects& aObjects)
{
    Result result;
    result.SetErrorCode(nType, aObjects);
    return result;
}
} // namespace

TEST(Result, SaysWhatWentWrongWithItsNumbers)
{
    const CommaLocale commas;
    const std::pair<Result, const char*> aRows[] = {
        {Result(), "OK"},
        {Result(Result::nBadHistoryID), "History ID is bad."},
        {MakeError(Result::nAttributeOwnerMismatch, Objects{{1, 2}}),
         "Attribute (1, 2) and owner (-1, -1) are incorrectly connected."},
        {MakeError(Result::nAttributeOwnerMismatch, Objects{{1, 2}, {3, 4}, {5, 6}}),
         "Attribute (1, 2) and owner (3, 4) are incorrectly connected."},
        {MakeError(Result::nLoadDeltaBaseMismatch, Numbers{1, 2, 3, 4, 5}),
         "Failed to load Delta-1 into History-2 as base Delta-3 in data is different from Delta-4 in History."},
        {MakeError(Result::nUndoDeltaFailed, Numbers{}), "Undo of Delta--1 failed."},
        {MakeError(Result::nObjectHistoryBadOrder, Numbers{5, 1234567}),
         "ObjectHistory of Object (5, 1234567) lists Deltas in a wrong order."},
        {Result(static_cast<Result::nResultType>(137)), "Failure, no reasons available."},
    };
    for (const auto& [result, pText] : aRows)
        EXPECT_EQ(result.GetErrorString(), pText);
    EXPECT_EQ(unsigned(Result::nObjectHistoryBadOrder), 136u) << "codes stand for good";
}

TEST(Result, KeepsTheFirstErrorAndLetsErrorsReplaceWarnings)
{
    Result result(Result::nBadInput);
    result.SetErrorCode(Result::nBadHistoryID, 4);
    result.SetWarningCode(Result::nInputIgnored);
    EXPECT_EQ(result.GetErrorCode(), Result::nBadInput);
    EXPECT_FALSE(result.HasWarning());
    result.SetWarningCode(Result::nOK);
    EXPECT_FALSE(result.IsGood());
    result.SetErrorCode(Result::nOK);
    EXPECT_TRUE(result.IsGood());
    EXPECT_EQ(result.GetErrorString(), "OK");

    result.SetWarningCode(Result::nInputIgnored, Objects{{1, 2}});
    result.SetWarningCode(Result::nFaceSplit);
    result.SetErrorCode(Result::nOK);
    EXPECT_TRUE(result.IsGood() && result.HasWarning() && result.HasHistoryObjectIDs());
    EXPECT_EQ(result.GetErrorCode(), Result::nOK);
    EXPECT_EQ(result.GetWarningCode(), Result::nInputIgnored);
    EXPECT_EQ(result.GetErrorString(), "One or more input objects was ignored.");
    Result cleared = result;
    cleared.SetWarningCode(Result::nOK);
    EXPECT_FALSE(cleared.HasWarning());
    EXPECT_TRUE(result.HasWarning()) << "clearing lets go here only";

    const Result copy = result;
    result.SetErrorCode(Result::nUndoDeltaFailed, 3);
    EXPECT_EQ(copy.GetErrorCode(), Result::nUndoDeltaFailed) << "copies share what they hold";
    EXPECT_FALSE(result.HasWarning() || result.HasHistoryObjectIDs());
    Result taken = std::move(result);
    EXPECT_TRUE(result.IsGood()); // NOLINT: a moved-from result is empty
    EXPECT_EQ(taken.GetErrorString(), "Undo of Delta-3 failed.");
}

TEST(Result, GivesItsObjects)
{
    Objects aIDs{{9, 9}};
    EXPECT_EQ(Result().GetHistoryObjectIDs(aIDs), 0u);
    const Result history = MakeError(Result::nFailure, Objects{{7, INVALID_ID}});
    EXPECT_FALSE(history.HasHistoryObjectIDs());
    EXPECT_EQ(history.GetHistoryObjectIDs(aIDs), 1u);
    const Result three = MakeError(Result::nFailure, Objects{{1, 1}, {2, 2}, {3, INVALID_ID}});
    EXPECT_TRUE(three.HasHistoryObjectIDs());
    EXPECT_EQ(three.GetHistoryObjectIDs(aIDs), 3u);
    EXPECT_EQ(aIDs, (Objects{{9, 9}, {7, INVALID_ID}, {1, 1}, {2, 2}, {3, INVALID_ID}}));
    EXPECT_FALSE(MakeError(Result::nFailure, Objects{}).HasHistoryObjectIDs());

    PolygonModel model;
    const Step step(model);
    const Vertex& vertex = model.AddVertex({0, 0, 0});
    const std::uint64_t h = model.GetHistory().GetID();
    const auto find = [&](const Object* pFirst, const Object* pSecond)
    {
        Result result;
        result.GetImplementation()->SetErrorCode(Result::nVertexBadEdge, pFirst, pSecond);
        Objects aFound;
        result.GetHistoryObjectIDs(aFound);
        return aFound;
    };
    EXPECT_EQ(find(&vertex, &vertex), (Objects{{h, vertex.GetID()}, {h, vertex.GetID()}}));
    EXPECT_EQ(find(&vertex, nullptr), (Objects{{h, vertex.GetID()}}));
    EXPECT_TRUE(find(nullptr, &vertex).empty());
}

TEST(GroupInstancePath, ComparesCutsAndExtends)
{
    const GroupInstancePath empty;
    const GroupInstancePath a(1, 2);
    const GroupInstancePath ab(Objects{{1, 2}, {3, 4}});
    const GroupInstancePath abc(Objects{{1, 2}, {3, 4}, {5, 6}});
    EXPECT_FALSE(empty.IsValid() || static_cast<bool>(empty) || empty.IsAlive());
    EXPECT_FALSE(GroupInstancePath(1, INVALID_ID).IsValid() || GroupInstancePath(INVALID_ID, 1).IsValid());
    EXPECT_TRUE(ab.IsValid());
    EXPECT_EQ(empty.GetTopObjectHistoryID(), ObjectHistoryID());
    EXPECT_EQ(empty.GetFinalHistoryID(), INVALID_ID);
    EXPECT_EQ(abc.GetTopObjectID(), 2u);
    EXPECT_EQ(abc.GetFinalObjectHistoryID(), (ObjectHistoryID{5, 6}));
    EXPECT_TRUE(empty < a && a < ab && !(ab < a) && !(a < a) && GroupInstancePath(1, 1) < a &&
                a < GroupInstancePath(2, 0));
    EXPECT_TRUE(empty.IsPrefixOf(a) && ab.IsPrefixOf(ab) && !ab.IsPrefixOf(a) &&
                !GroupInstancePath(3, 4).IsPrefixOf(ab));
    EXPECT_TRUE(a.IsFullPathOf(ab) && empty.IsFullPathOf(a) && !a.IsFullPathOf(a) && !a.IsFullPathOf(abc));
    EXPECT_EQ(abc.GetEditingObjectID(a), 4u);
    EXPECT_EQ(abc.GetEditingObjectID(empty), 2u);
    EXPECT_EQ(abc.GetEditingObjectID(abc), INVALID_ID);
    EXPECT_EQ(GroupInstancePath(ab, 9).GetFinalObjectID(), 9u);
    EXPECT_EQ(GroupInstancePath(empty, 9), empty);

    GroupInstancePath path = abc;
    path.SetToEditingObjectPath(a);
    EXPECT_EQ(path, ab);
    path.SetToEditingObjectPath(empty);
    EXPECT_EQ(path, a);
    path.SetToEditingObjectPath(ab);
    EXPECT_EQ(path, GroupInstancePath(Objects(3)));
    path = abc;
    path.SetToTopObjectHistoryID();
    EXPECT_EQ(path, a);
    path.pop_back();
    path.pop_back();
    path.ReplaceFinalObjectID(3);
    EXPECT_EQ(path, empty);
    path.SetToTopObjectHistoryID();
    EXPECT_EQ(path.GetObjectHistoryIDs(), Objects(1));
    EXPECT_FALSE(path.IsValid());

    std::vector<GroupInstancePath> aPaths{abc};
    AppendToGroupInstancePathArray(1, {{1, 7}, {2, 8}, {1, 9}}, aPaths);
    EXPECT_EQ(aPaths, (std::vector<GroupInstancePath>{abc, {1, 7}, {1, 9}}));
}
} // namespace QRV
