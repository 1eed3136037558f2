#include "model/CircleAttribute.h"
#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <algorithm>

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

TEST_F(Queries, RefuseWhatIsNoToleranceAndNoDirection)
{
    IDs aIDs;
    const auto fire = [&](const Line3d& line, double dTol, double dMax)
    {
        return APIRayFireReadOnly(GetHistoryID(), line, aIDs, dTol, true, true, true, dMax, nullptr, nullptr, nullptr)
            .GetErrorCode();
    };
    const auto pick = [&](const Line3d& line, double dTol)
    {
        return APIIntersectsNegativeSideOfPlanesReadOnly(GetHistoryID(), {Plane(Point3d(), Vector3d::kZDir)}, aIDs,
                                                         true, true, true, false, dTol, &line, nullptr, nullptr,
                                                         nullptr, true)
            .GetErrorCode();
    };
    const Line3d ray(m_at(0, 0, 9), Vector3d(0, 0, -1));
    for (const double d : {-1e-9, 1e31})
    {
        EXPECT_EQ(fire(ray, d, 1), Result::nBadInput);
        EXPECT_EQ(fire(ray, 0, d), Result::nBadInput);
        EXPECT_EQ(pick(ray, d), Result::nBadInput);
    }
    for (const Line3d& noRay : {Line3d(m_at(0, 0, 9), Vector3d()), Line3d(Point3d(0, 1e30, 0), Vector3d(1, 0, 0))})
    {
        EXPECT_EQ(fire(noRay, 0, 1), Result::nBadInput);
        EXPECT_EQ(pick(noRay, 0), Result::nBadInput);
    }
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
