#include "model/CircleAttribute.h"
#include "support/BadNumbers.h"
#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <algorithm>
#include <functional>

namespace QRV
{
namespace
{
const auto kGood = Result().GetErrorCode();

/// A block turned in space, an arc of three edges, and a lone vertex.
class Queries : public testing::Test
{
protected:
    Queries()
    {
        Step step(m_model);
        m_pBody = &m_model.AddBlock(m_at, Point3d(0, 0, 0), Point3d(2, 3, 4));
        m_pEdge = &m_model.AddEdge(m_at(0, 0, 0), m_at(2, 0, 0));
        m_pLone = &m_model.AddVertex(m_at(9, 9, 9));
        m_pCircle = &m_model.GetHistory().Create<CircleAttribute>(5.0, m_at(20, 0), m_at.z, m_at.x);
        const Polygon arc{m_at(25, 0), m_at(20, 5), m_at(15, 0), m_at(20, -5)};
        for (std::size_t n = 0; n < 3; ++n)
        {
            m_aArc.push_back(&m_model.AddEdge(arc[n], arc[n + 1]));
            if (n != 1)
                m_aArc.back()->AddAttribute(m_pCircle, true);
        }
    }

    std::uint64_t GetHistoryID() { return m_model.GetHistory().GetID(); }

    const Frame& m_at = GetFrames()[1];
    PolygonModel m_model;
    Body* m_pBody = nullptr;
    Edge* m_pEdge = nullptr;
    Vertex* m_pLone = nullptr;
    CircleAttribute* m_pCircle = nullptr;
    std::vector<Edge*> m_aArc;
};

TEST_F(Queries, RefuseUnknownHistoriesAndWrongObjectsAndLeaveTheListsAlone)
{
    IDs aIDs{77};
    bool bAnswer = true;
    double dValue = 0.0;
    Point3d p, q;
    UnitVector3d n, x;
    Interval3d box;
    nConvexity convexity{};
    nEdgeFaceClass faceClass{};
    nObjectType type{};
    const char* pName = nullptr;
    std::vector<Result> aResults;
    const Vector3d down(0, 0, -1);
    using Call = std::function<Result(std::uint64_t nHistory, std::uint64_t nObject)>;
    const Call aOfEdges[] = {
        [&](auto h, auto o) { return APIGetConnectedEdgesReadOnly(h, o, aIDs, false); },
        [&](auto h, auto o) { return APIGetConvexityReadOnly(h, o, convexity); },
        [&](auto h, auto o) { return APIGetEdgeFaceClassificationReadOnly(h, o, faceClass); },
        [&](auto h, auto o) { return APIGetEdgePointsReadOnly(h, o, p, q); },
        [&](auto h, auto o) { return APIIsEdgeManifoldReadOnly(h, o, bAnswer); },
        [&](auto h, auto o) { return APIIsEdgeMergeableReadOnly(h, o, true, bAnswer); },
        [&](auto h, auto o) { return APIIsEdgeOnCircleReadOnly(h, o, dValue, p, n, x, aIDs, bAnswer); },
        [&](auto h, auto o) { return APIIsEdgeSilhouetteReadOnly(h, o, p, down, false, bAnswer); },
        [&](auto h, auto o) { return APIGetCoedgeDirectionReadOnly(h, o, bAnswer); },
        [&](auto h, auto o) { return APIFaceContainsPointReadOnly(h, o, p, bAnswer); },
    };
    const Call aOfAll[] = {
        [&](auto h, auto o) { return APIGetVertexPoint3dReadOnly(h, o, p); },
        [&](auto h, auto o) { return APIGetEdgeOrVertexMarkedSmoothReadOnly(h, o, bAnswer); },
        [&](auto h, auto o) { return APIGetObjectTypeReadOnly(h, o, type); },
        [&](auto h, auto o) { return APIGetObjectNameReadOnly(h, o, pName); },
        [&](auto h, auto o) { return APIGetObjectsByTypeReadOnly(h, o, nEdgeType, aIDs, false); },
        [&](auto h, auto o) { return APIIsNonOwnedReadOnly(h, o, bAnswer); },
        [&](auto h, auto o) { return APIGetAllConnectedNonOwnedReadOnly(h, o, aIDs); },
        [&](auto h, auto o) { return APIGetTopLevelOwnersReadOnly(h, o, aIDs); },
        [&](auto h, auto o) { return APIGetObjectAttributesReadOnly(h, o, nUnspecifiedType, aIDs); },
        [&](auto h, auto o) { return APICheckValidityReadOnly(h, o, aResults); },
        [&](auto h, auto o) { return APIComputeAreaReadOnly(h, o, dValue, nullptr); },
        [&](auto h, auto o) { return APIComputeVolumeReadOnly(h, o, dValue, nullptr); },
    };
    const auto expectRefused = [&](const Call& call, const IDs& aObjects)
    {
        EXPECT_EQ(call(GetHistoryID() + 1000, m_pEdge->GetID()).GetErrorCode(), Result::nBadHistoryID);
        EXPECT_EQ(call(INVALID_ID, m_pEdge->GetID()).GetErrorCode(), Result::nBadHistoryID);
        for (const std::uint64_t nObject : aObjects)
            EXPECT_EQ(call(GetHistoryID(), nObject).GetErrorCode(), Result::nBadInput);
    };
    for (const Call& call : aOfEdges)
        expectRefused(call, {m_pBody->GetID(), m_pLone->GetID(), 1000000, INVALID_ID});
    for (const Call& call : aOfAll)
        expectRefused(call, {1000000, INVALID_ID});
    // INVALID_ID stands for all of the History where a whole one makes sense.
    for (const Call& call :
         {Call([&](auto h, auto o) { return APIDetectFreeEdgesReadOnly(h, o, aIDs); }),
          Call([&](auto h, auto o) { return APIDetectSilhouettesReadOnly(h, o, p, down, false, aIDs); }),
          Call([&](auto h, auto o) { return APIGetBoxReadOnly(h, o, box, Transf3d()); })})
        expectRefused(call, {1000000});
    EXPECT_EQ(APIGetAllObjectsByTypeReadOnly(INVALID_ID, nEdgeType, aIDs).GetErrorCode(), Result::nBadHistoryID);
    EXPECT_EQ(APIGetAllNonOwnedReadOnly(INVALID_ID, aIDs).GetErrorCode(), Result::nBadHistoryID);
    EXPECT_EQ(aIDs, IDs{77});
    EXPECT_TRUE(aResults.empty());
    EXPECT_FALSE(bAnswer); // emptied before the work

    bAnswer = true;
    ExpectGood(APIIsObjectLiveReadOnly(INVALID_ID, 0, bAnswer));
    EXPECT_FALSE(bAnswer);
    EXPECT_EQ(APIIsObjectLiveReadOnly(GetHistoryID() + 1000, 0, bAnswer).GetErrorCode(), Result::nBadHistoryID);
    ExpectGood(APIIsObjectLiveReadOnly(GetHistoryID(), 1000000, bAnswer));
    EXPECT_FALSE(bAnswer);
}

TEST_F(Queries, RefuseNumbersThatAreNone)
{
    const std::uint64_t nHistory = GetHistoryID();
    std::vector<Object*> aFaces;
    m_pBody->GetObjectsOfType(aFaces, nFaceType, false);
    IDs aIDs;
    bool bAnswer = false;
    double dValue = 0.0;
    Interval3d box;
    const Line3d ray(m_at(0, 0, 9), Vector3d(0, 0, -1));
    const Plane plane(Point3d(), Vector3d(0, 0, 1));
    const auto fire = [&](const Line3d& line, double dTol, double dMax)
    {
        return APIRayFireReadOnly(nHistory, line, aIDs, dTol, true, true, true, dMax, nullptr, nullptr, nullptr)
            .GetErrorCode();
    };
    const auto pick = [&](const Plane& side, double dTol, const Line3d* pLine)
    {
        return APIIntersectsNegativeSideOfPlanesReadOnly(nHistory, {plane, side}, aIDs, true, true, true, false, dTol,
                                                         pLine, nullptr, nullptr, nullptr, true)
            .GetErrorCode();
    };
    for (const double d : {kNaN, kInf, -kInf, 1e30})
    {
        SCOPED_TRACE(d);
        EXPECT_EQ(fire(Line3d(Point3d(0, d, 0), Vector3d(1, 0, 0)), 0, 1), Result::nBadInput);
        EXPECT_EQ(fire(Line3d(Point3d(), Vector3d(1, d, 0)), 0, 1), Result::nBadInput);
        const Line3d line(Point3d(0, 0, d), Vector3d(1, 0, 0));
        EXPECT_EQ(pick(plane, 0, &line), Result::nBadInput);
        EXPECT_EQ(pick(Plane(UnitVector3d::kZDir, d), 0, nullptr), Result::nBadInput);
        const Point3d p(d, 0, 0);
        EXPECT_EQ(APIFaceContainsPointReadOnly(nHistory, aFaces.front()->GetID(), p, bAnswer).GetErrorCode(),
                  Result::nBadInput);
        EXPECT_EQ(
            APIIsEdgeSilhouetteReadOnly(nHistory, m_pEdge->GetID(), p, Vector3d(1, 0, 0), true, bAnswer).GetErrorCode(),
            Result::nBadInput);
        EXPECT_EQ(
            APIDetectSilhouettesReadOnly(nHistory, INVALID_ID, Point3d(), Vector3d(1, d, 0), true, aIDs).GetErrorCode(),
            Result::nBadInput);
        Transf3d transform;
        transform.setValue(1, 2, d);
        EXPECT_EQ(APIComputeAreaReadOnly(nHistory, m_pBody->GetID(), dValue, &transform).GetErrorCode(),
                  Result::nBadInput);
        EXPECT_EQ(APIComputeVolumeReadOnly(nHistory, m_pBody->GetID(), dValue, &transform).GetErrorCode(),
                  Result::nBadInput);
        EXPECT_EQ(APIGetBoxReadOnly(nHistory, INVALID_ID, box, transform).GetErrorCode(), Result::nBadInput);
    }
    for (const double d : {kNaN, kInf, -1e-9, 1e31})
    {
        SCOPED_TRACE(d);
        EXPECT_EQ(fire(ray, d, 1), Result::nBadInput);
        EXPECT_EQ(fire(ray, 0, d), Result::nBadInput);
        EXPECT_EQ(pick(plane, d, nullptr), Result::nBadInput);
    }
    EXPECT_EQ(fire(Line3d(Point3d(), Vector3d()), 0, 1), Result::nBadInput);
    const Line3d noDirection{Point3d(), Vector3d()};
    EXPECT_EQ(pick(plane, 0, &noDirection), Result::nBadInput);
    EXPECT_TRUE(aIDs.empty());
    EXPECT_EQ(fire(ray, 0, 1e30), kGood);
}

TEST_F(Queries, SortOnlyIntoEmptyListsAndPairPathsWithTransforms)
{
    const Line3d ray(m_at(1, 1, 9), Vector3d(-m_at.z));
    const std::vector<Plane> aPlanes{Plane(m_at(0, 0, 100), m_at.z)};
    const auto call = [&](bool bPick, IDs& aIDs, std::vector<GroupInstancePath>* pPaths,
                          std::vector<Transf3d>* pTransforms, SortedHits* pSorted)
    {
        return (bPick ? APIIntersectsNegativeSideOfPlanesReadOnly(GetHistoryID(), aPlanes, aIDs, true, true, true,
                                                                  false, 0, &ray, pPaths, pTransforms, pSorted, false)
                      : APIRayFireReadOnly(GetHistoryID(), ray, aIDs, 0, true, true, true, 1e30, pPaths, pTransforms,
                                           pSorted))
            .GetErrorCode();
    };
    for (const bool bPick : {false, true})
    {
        IDs aEmpty, aFull{5};
        std::vector<GroupInstancePath> aNoPaths, aPaths(1);
        std::vector<Transf3d> aNoTransforms, aTransforms(1);
        SortedHits aNoHits, aHits(1);
        EXPECT_EQ(call(bPick, aFull, nullptr, nullptr, &aNoHits), Result::nBadInput);
        EXPECT_EQ(call(bPick, aEmpty, nullptr, nullptr, &aHits), Result::nBadInput);
        EXPECT_EQ(call(bPick, aEmpty, &aPaths, nullptr, &aNoHits), Result::nBadInput);
        EXPECT_EQ(call(bPick, aEmpty, nullptr, &aTransforms, &aNoHits), Result::nBadInput);
        EXPECT_EQ(call(bPick, aEmpty, &aPaths, &aNoTransforms, nullptr), Result::nBadInput);
        EXPECT_TRUE(aEmpty.empty() && aNoHits.empty() && aNoPaths.empty());
        EXPECT_EQ(call(bPick, aFull, &aPaths, &aTransforms, nullptr), kGood);
        EXPECT_EQ(aFull.front(), 5u);
        EXPECT_GT(aFull.size(), 2u);
        EXPECT_EQ(call(bPick, aEmpty, &aNoPaths, &aNoTransforms, &aNoHits), kGood);
        EXPECT_GE(aNoHits.size(), 2u);
        for (const auto& [t, nIndex] : aNoHits)
            EXPECT_LT(std::size_t(nIndex), aEmpty.size());
    }
}

TEST_F(Queries, TellACircleAndWhatHangsTogetherOnIt)
{
    double dRadius = 0.0;
    Point3d center;
    UnitVector3d normal, xAxis;
    IDs aEdges{77};
    bool bOn = false;
    const auto ask = [&](const Edge& edge)
    { return APIIsEdgeOnCircleReadOnly(GetHistoryID(), edge.GetID(), dRadius, center, normal, xAxis, aEdges, bOn); };
    // The edge between the two carries nothing, so that each stands alone.
    ExpectGood(ask(*m_aArc[0]));
    EXPECT_TRUE(bOn);
    EXPECT_EQ(aEdges, (IDs{77, m_aArc[0]->GetID()}));
    EXPECT_EQ(dRadius, 5.0);
    EXPECT_LT(center.distSqrd(m_at(20, 0)), 1e-20);
    ExpectGood(ask(*m_aArc[1]));
    EXPECT_FALSE(bOn);
    EXPECT_EQ(dRadius, 0.0);
    EXPECT_EQ(aEdges.size(), 2u);
    Step step(m_model, true);
    m_aArc[1]->AddAttribute(m_pCircle, true);
    ExpectGood(ask(*m_aArc[2]));
    EXPECT_EQ(aEdges.size(), 2u + 3);
    m_aArc[0]->RecordChange();
    m_pCircle->RecordChange();
    bool bDeleted = false;
    m_pCircle->RemoveOwner(*m_aArc[0], bDeleted);
    EXPECT_EQ(ask(*m_aArc[0]).GetErrorCode(), Result::nAttributeBadOwner);
    EXPECT_FALSE(bOn);
    m_pCircle->AddOwner(*m_aArc[0]);
}

TEST_F(Queries, FindFreeEdgesAndSilhouettesBelowAnObjectOrOfAll)
{
    IDs aEdges{77};
    ExpectGood(APIDetectFreeEdgesReadOnly(GetHistoryID(), m_pBody->GetID(), aEdges));
    EXPECT_EQ(aEdges, IDs{77});
    ExpectGood(APIDetectFreeEdgesReadOnly(GetHistoryID(), INVALID_ID, aEdges));
    EXPECT_EQ(aEdges, (IDs{77, m_aArc[0]->GetID(), m_aArc[1]->GetID(), m_aArc[2]->GetID()}));
    // A block shows six edges of its outline to a view across all axes, and eight edges ... of a side seen from the
    // front.
    aEdges.clear();
    const Vector3d across = m_at.x * 1.0 + m_at.y * 1.0 + m_at.z * 1.0;
    ExpectGood(APIDetectSilhouettesReadOnly(GetHistoryID(), m_pBody->GetID(), Point3d(), across, false, aEdges));
    EXPECT_EQ(aEdges.size(), 6u);
    EXPECT_TRUE(std::is_sorted(aEdges.begin(), aEdges.end()));
    aEdges.clear();
    ExpectGood(
        APIDetectSilhouettesReadOnly(GetHistoryID(), m_pBody->GetID(), m_at(1, 1, 90), Vector3d(), true, aEdges));
    EXPECT_EQ(aEdges.size(), 4u);
}

TEST_F(Queries, WalkFromObjectsToTheirOwnersAndAll)
{
    const auto get = [&](const auto& call, const Object& object, auto... more)
    {
        IDs aFound;
        ExpectGood(call(GetHistoryID(), object.GetID(), more..., aFound));
        return aFound;
    };
    const auto getOfType = [](auto h, auto o, nObjectType nType, bool bOwners, IDs& aFound)
    { return APIGetObjectsByTypeReadOnly(h, o, nType, aFound, bOwners); };
    IDs aIDs;
    ExpectGood(APIGetAllNonOwnedReadOnly(GetHistoryID(), aIDs));
    EXPECT_EQ(aIDs.size(), 1u + 1 + 3); // body, lone vertex, free edges; the circle has owners
    EXPECT_EQ(get(APIGetTopLevelOwnersReadOnly, *m_pCircle), (IDs{m_aArc[0]->GetID(), m_aArc[2]->GetID()}));
    EXPECT_EQ(get(APIGetAllConnectedNonOwnedReadOnly, *m_aArc[1]),
              (IDs{m_aArc[1]->GetID(), m_aArc[0]->GetID(), m_aArc[2]->GetID()}));
    EXPECT_EQ(get(APIGetAllConnectedNonOwnedReadOnly, *m_pEdge), IDs{m_pBody->GetID()});
    EXPECT_EQ(get(getOfType, *m_pEdge, nBodyType, true), IDs{m_pBody->GetID()});
    EXPECT_EQ(get(getOfType, *m_pBody, nBodyType, false), IDs{m_pBody->GetID()}); // nothing behind one of the type
    const IDs aAll = get(getOfType, *m_pBody, nUnspecifiedType, false);
    EXPECT_EQ(aAll.size(), 1u + 1 + 1 + 6 + 6 + 24 + 12 + 8);
    EXPECT_EQ(aAll.front(), m_pBody->GetID());
    aIDs = {77};
    ExpectGood(APIGetObjectAttributesReadOnly(GetHistoryID(), m_aArc[0]->GetID(), nCircleAttributeType, aIDs));
    ExpectGood(APIGetObjectAttributesReadOnly(GetHistoryID(), m_aArc[0]->GetID(), nStringAttributeType, aIDs));
    EXPECT_EQ(aIDs, (IDs{77, m_pCircle->GetID()}));
}
} // namespace
} // namespace QRV
