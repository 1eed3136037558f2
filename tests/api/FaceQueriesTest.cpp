#include "support/PolygonModel.h"

#include <QRV/API.h>

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

TEST_F(FaceQueries, WalkOverEdgesOrVerticesBehindWhatTheHostHasAlready)
{
    IDs aIDs{77};
    ExpectGood(APIGetFaceConnectedComponentReadOnly(GetHistoryID(), m_nFree, false, false, aIDs));
    EXPECT_EQ(aIDs, (IDs{77, m_nFree}));
    ExpectGood(APIGetFaceConnectedComponentReadOnly(GetHistoryID(), m_nFree, true, false, aIDs));
    EXPECT_EQ(aIDs.size(), 2u + 7);
    const auto walk = [&](std::uint64_t nMask)
    { return APIGetConvexityConnectedComponentReadOnly(GetHistoryID(), GetFaces()[2], nMask, aIDs).GetErrorCode(); };
    EXPECT_EQ(walk(nConvexityConvex | nConvexityNonManifold), Result::nOK);
    EXPECT_EQ(aIDs.size(), 2u + 7 + 6);
    for (const std::uint64_t nMask : {0, 8, 12})
        EXPECT_EQ(walk(nMask), Result::nBadInput);
    ExpectGood(APIGetBodyEdgesReadOnly(GetHistoryID(), m_nBody, aIDs));
    EXPECT_EQ(aIDs.size(), 2u + 7 + 6 + 12);
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
