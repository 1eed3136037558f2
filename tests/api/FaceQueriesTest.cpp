#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <functional>

namespace QRV
{
namespace
{
using IDs = std::vector<std::uint64_t>;

/// A block of 2 x 3 x 4 turned in space, and a free triangle that touches it in one corner.
class FaceQueries : public testing::Test
{
protected:
    FaceQueries()
    {
        Step step(m_model);
        m_nBody = m_model.AddBlock(m_at, Point3d(0, 0, 0), Point3d(2, 3, 4)).GetID();
        m_nFree = m_model.AddFace({m_at(0, 0, 0), m_at(-1, 0, 0), m_at(0, -1, 0)}).GetID();
    }

    std::uint64_t GetHistoryID() { return m_model.GetHistory().GetID(); }
    std::uint64_t GetVertexID() { return m_model.AddVertex(m_at(0, 0, 0)).GetID(); }
    IDs GetFaces()
    {
        IDs aFaces;
        EXPECT_TRUE(APIGetBodyFacesReadOnly(GetHistoryID(), m_nBody, aFaces).IsGood());
        return aFaces;
    }

    const Frame& m_at = GetFrames()[1];
    PolygonModel m_model;
    std::uint64_t m_nBody = INVALID_ID;
    std::uint64_t m_nFree = INVALID_ID;
};
} // namespace

TEST_F(FaceQueries, RefuseWhatIsNoFaceOrBodyAndLeaveTheListsAlone)
{
    IDs aIDs{77};
    std::vector<Point3d> aPoints(1);
    std::vector<UnitVector3d> aNormals(1);
    std::vector<std::pair<std::uint64_t, UnitVector3d>> aVertexNormals(1);
    std::vector<Point2d> aUVs(1);
    Plane plane;
    Point3d point;
    double dValue = 0.0;
    using Call = std::function<Result(std::uint64_t nHistory, std::uint64_t nObject)>;
    const Call aCalls[] = {
        [&](auto h, auto o) { return APIGetBodyFacesReadOnly(h, o, aIDs); },
        [&](auto h, auto o) { return APIGetBodyEdgesReadOnly(h, o, aIDs); },
        [&](auto h, auto o) { return APIGetFacePlaneReadOnly(h, o, plane); },
        [&](auto h, auto o) { return APIGetFaceCentroidPoint3dReadOnly(h, o, point); },
        [&](auto h, auto o) { return APIGetFaceVariantReadOnly(h, o, dValue); },
        [&](auto h, auto o) { return APIGetFaceVertexNormalsReadOnly(h, o, aVertexNormals); },
        [&](auto h, auto o) { return APIGetRenderableFaceReadOnly(h, o, aPoints, aNormals, aUVs, true, false); },
        [&](auto h, auto o) { return APIGetFaceConnectedComponentReadOnly(h, o, true, false, aIDs); },
        [&](auto h, auto o) { return APIGetConvexityConnectedComponentReadOnly(h, o, nConvexityConvex, aIDs); },
        [&](auto h, auto o) { return APIGetFaceFacetsReadOnly(h, o, aPoints); },
    };
    for (const Call& call : aCalls)
    {
        EXPECT_EQ(call(GetHistoryID() + 1000, m_nFree).GetErrorCode(), Result::nBadHistoryID);
        for (const std::uint64_t nObject : {GetVertexID(), std::uint64_t(1000000), INVALID_ID})
            EXPECT_EQ(call(GetHistoryID(), nObject).GetErrorCode(), Result::nBadInput);
    }
    EXPECT_EQ(aIDs, IDs{77});
    EXPECT_EQ(aPoints.size() + aNormals.size() + aVertexNormals.size() + aUVs.size(), 4u);
}

TEST_F(FaceQueries, ListABodyBehindWhatTheHostHasAlready)
{
    IDs aIDs{77};
    EXPECT_TRUE(APIGetBodyFacesReadOnly(GetHistoryID(), m_nBody, aIDs).IsGood());
    EXPECT_EQ(aIDs.size(), 1u + 6);
    EXPECT_TRUE(APIGetBodyEdgesReadOnly(GetHistoryID(), m_nBody, aIDs).IsGood());
    EXPECT_EQ(aIDs.size(), 1u + 6 + 12);
    EXPECT_EQ(aIDs.front(), 77u);
}

TEST_F(FaceQueries, MeasureOneFace)
{
    // The bottom: 2 by 3, seen from below.
    const std::uint64_t nBottom = GetFaces().front();
    Plane plane;
    EXPECT_TRUE(APIGetFacePlaneReadOnly(GetHistoryID(), nBottom, plane).IsGood());
    EXPECT_LT(plane.normal.distSqrd(-m_at.z), 1e-20);
    Point3d centroid;
    EXPECT_TRUE(APIGetFaceCentroidPoint3dReadOnly(GetHistoryID(), nBottom, centroid).IsGood());
    EXPECT_LT(centroid.distSqrd(m_at(1, 1.5, 0)), 1e-20);
    double dVariant = 0.0;
    EXPECT_TRUE(APIGetFaceVariantReadOnly(GetHistoryID(), nBottom, dVariant).IsGood());
    EXPECT_NEAR(dVariant, (4 * std::sqrt(1 + 2.25) + 2 * 1.0 + 2 * 1.5) / 8, 1e-9);
    std::vector<Point3d> aPoints;
    EXPECT_TRUE(APIGetFaceFacetsReadOnly(GetHistoryID(), nBottom, aPoints).IsGood());
    EXPECT_EQ(aPoints.size(), 6u);
    std::vector<Point3d> aCorners;
    std::vector<UnitVector3d> aNormals;
    std::vector<Point2d> aUVs;
    EXPECT_TRUE(APIGetRenderableFaceReadOnly(GetHistoryID(), nBottom, aCorners, aNormals, aUVs, true, false).IsGood());
    EXPECT_EQ(aCorners.size(), 6u);
    EXPECT_EQ(aNormals.size(), 6u);
    EXPECT_TRUE(aUVs.empty());
}

TEST_F(FaceQueries, WalkOverEdgesOrVertices)
{
    for (const bool bThroughVertices : {false, true})
    {
        IDs aIDs;
        EXPECT_TRUE(
            APIGetFaceConnectedComponentReadOnly(GetHistoryID(), m_nFree, bThroughVertices, false, aIDs).IsGood());
        EXPECT_EQ(aIDs.size(), bThroughVertices ? 7u : 1u);
        EXPECT_EQ(aIDs.front(), m_nFree);
    }
    for (const auto& [nMask, nExpected] : std::vector<std::pair<std::uint64_t, std::size_t>>{
             {nConvexityConvex, 6}, {nConvexityConvex | nConvexityNonManifold, 6}, {nConvexityFlat, 0}})
    {
        IDs aIDs;
        EXPECT_TRUE(APIGetConvexityConnectedComponentReadOnly(GetHistoryID(), GetFaces()[2], nMask, aIDs).IsGood());
        EXPECT_EQ(aIDs.size(), nExpected);
    }
    for (const std::uint64_t nMask : {0, 8, 12})
    {
        IDs aIDs;
        EXPECT_EQ(APIGetConvexityConnectedComponentReadOnly(GetHistoryID(), GetFaces()[2], nMask, aIDs).GetErrorCode(),
                  Result::nBadInput);
    }
}

TEST_F(FaceQueries, FillAnEmptyBodyInOneStepOrNotAtAll)
{
    std::uint64_t nEmpty = INVALID_ID;
    EXPECT_TRUE(APICreateEmptyBody(GetHistoryID(), nEmpty).IsGood());
    const std::string strBefore = Describe(m_model.GetHistory());
    const std::pair<std::uint64_t, std::uint64_t> aRefused[] = {
        {GetFaces()[0], nEmpty}, {m_nFree, m_nFree}, {nEmpty, nEmpty}, {m_nFree, INVALID_ID}};
    for (const auto& [nFace, nBody] : aRefused)
        EXPECT_EQ(APIAddFaceComponentToBody(GetHistoryID(), nFace, nBody).GetErrorCode(), Result::nFailure);
    EXPECT_EQ(Describe(m_model.GetHistory()), strBefore);

    EXPECT_TRUE(APIAddFaceComponentToBody(GetHistoryID(), m_nFree, nEmpty).IsGood());
    IDs aIDs;
    EXPECT_TRUE(APIGetBodyFacesReadOnly(GetHistoryID(), nEmpty, aIDs).IsGood());
    EXPECT_EQ(aIDs, IDs{m_nFree});
    EXPECT_EQ(APIAddFaceComponentToBody(GetHistoryID(), m_nFree, nEmpty).GetErrorCode(), Result::nFailure);
    ExpectUndoRedoRestores(m_model.GetHistory());
}
} // namespace QRV
