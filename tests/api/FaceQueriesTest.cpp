#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <functional>

namespace QRV
{
namespace
{
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
        ExpectGood(APIGetBodyFacesReadOnly(GetHistoryID(), m_nBody, aFaces));
        return aFaces;
    }

    const Frame& m_at = GetFrames()[1];
    PolygonModel m_model;
    std::uint64_t m_nBody = INVALID_ID;
    std::uint64_t m_nFree = INVALID_ID;
};

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
    ExpectGood(APIGetBodyFacesReadOnly(GetHistoryID(), m_nBody, aIDs));
    EXPECT_EQ(aIDs.size(), 1u + 6);
    ExpectGood(APIGetBodyEdgesReadOnly(GetHistoryID(), m_nBody, aIDs));
    EXPECT_EQ(aIDs.size(), 1u + 6 + 12);
    EXPECT_EQ(aIDs.front(), 77u);
}

TEST_F(FaceQueries, MeasureOneFace)
{
    // The bottom: 2 by 3, seen from below.
    const std::uint64_t nBottom = GetFaces().front();
    Plane plane;
    ExpectGood(APIGetFacePlaneReadOnly(GetHistoryID(), nBottom, plane));
    EXPECT_LT(plane.normal.distSqrd(-m_at.z), 1e-20);
    Point3d centroid;
    ExpectGood(APIGetFaceCentroidPoint3dReadOnly(GetHistoryID(), nBottom, centroid));
    EXPECT_LT(centroid.distSqrd(m_at(1, 1.5, 0)), 1e-20);
    double dVariant = 0.0;
    ExpectGood(APIGetFaceVariantReadOnly(GetHistoryID(), nBottom, dVariant));
    EXPECT_NEAR(dVariant, (4 * std::sqrt(1 + 2.25) + 2 * 1.0 + 2 * 1.5) / 8, 1e-9);
    std::vector<Point3d> aPoints;
    ExpectGood(APIGetFaceFacetsReadOnly(GetHistoryID(), nBottom, aPoints));
    EXPECT_EQ(aPoints.size(), 6u);
    std::vector<Point3d> aCorners;
    std::vector<UnitVector3d> aNormals;
    std::vector<Point2d> aUVs;
    ExpectGood(APIGetRenderableFaceReadOnly(GetHistoryID(), nBottom, aCorners, aNormals, aUVs, true, false));
    EXPECT_EQ(aCorners.size(), 6u);
    EXPECT_EQ(aNormals.size(), 6u);
    EXPECT_TRUE(aUVs.empty());
}

TEST_F(FaceQueries, WalkOverEdgesOrVertices)
{
    for (const bool bThroughVertices : {false, true})
    {
        IDs aIDs;
        ExpectGood(APIGetFaceConnectedComponentReadOnly(GetHistoryID(), m_nFree, bThroughVertices, false, aIDs));
        EXPECT_EQ(aIDs.size(), bThroughVertices ? 7u : 1u);
        EXPECT_EQ(aIDs.front(), m_nFree);
    }
    for (const auto& [nMask, nExpected] : std::vector<std::pair<std::uint64_t, std::size_t>>{
             {nConvexityConvex, 6}, {nConvexityConvex | nConvexityNonManifold, 6}, {nConvexityFlat, 0}})
    {
        IDs aIDs;
        ExpectGood(APIGetConvexityConnectedComponentReadOnly(GetHistoryID(), GetFaces()[2], nMask, aIDs));
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
    ExpectGood(APICreateEmptyBody(GetHistoryID(), nEmpty));
    const std::string strBefore = Describe(m_model.GetHistory());
    const std::pair<std::uint64_t, std::uint64_t> aRefused[] = {
        {GetFaces()[0], nEmpty}, {m_nFree, m_nFree}, {nEmpty, nEmpty}, {m_nFree, INVALID_ID}};
    for (const auto& [nFace, nBody] : aRefused)
        EXPECT_EQ(APIAddFaceComponentToBody(GetHistoryID(), nFace, nBody).GetErrorCode(), Result::nFailure);
    EXPECT_EQ(Describe(m_model.GetHistory()), strBefore);

    ExpectGood(APIAddFaceComponentToBody(GetHistoryID(), m_nFree, nEmpty));
    IDs aIDs;
    ExpectGood(APIGetBodyFacesReadOnly(GetHistoryID(), nEmpty, aIDs));
    EXPECT_EQ(aIDs, IDs{m_nFree});
    EXPECT_EQ(APIAddFaceComponentToBody(GetHistoryID(), m_nFree, nEmpty).GetErrorCode(), Result::nFailure);
    ExpectUndoRedoRestores(m_model.GetHistory());
}
} // namespace
} // namespace QRV
