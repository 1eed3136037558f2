#include "support/PolygonModel.h"

namespace QRV
{
TEST(VertexNormal, IsTheMeanOfTheFacesRoundSmoothEdgesWhateverTheirSize)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Step step(model);
        const Point3d apex = at(0, 0, 1);
        const Point3d aRim[] = {at(1, 0), at(0, 5), at(-3, 0), at(0, -1)};
        std::vector<Face*> aFan;
        for (int n = 0; n < 4; ++n)
            aFan.push_back(&model.AddFace({apex, aRim[n], aRim[(n + 1) % 4]}));
        const auto expectMean = [&](const std::vector<int>& aGroup)
        {
            Vector3d sum;
            for (const int n : aGroup)
                sum += aFan[n]->GetPlane().normal;
            for (const int n : aGroup)
            {
                std::vector<std::pair<std::uint64_t, UnitVector3d>> aNormals;
                aFan[n]->GetVertexNormals(aNormals);
                ASSERT_EQ(aNormals.size(), 3u);
                EXPECT_EQ(aNormals[0].first, model.AddVertex(apex).GetID());
                EXPECT_LT(aNormals[0].second.distSqrd(UnitVector3d(sum, true)), 1e-20);
            }
        };
        const auto smoothen = [&](int nEdge) { model.AddEdge(apex, aRim[nEdge]).SetSmooth(true); };
        expectMean({0});
        smoothen(1);
        smoothen(3);
        expectMean({0, 1});
        expectMean({2, 3});
        smoothen(0);
        smoothen(2);
        expectMean({0, 1, 2, 3});
    }
}

TEST(RenderableFace, ShowsTheBackWithTurnedTriangles)
{
    PolygonModel model;
    Step step(model);
    const Frame& at = GetFrames()[1];
    Face& face = model.AddFace({at(0, 0), at(4, 0), at(4, 4), at(2, 1), at(0, 4)});
    for (const bool bBack : {false, true})
    {
        std::vector<Point3d> aPoints;
        std::vector<UnitVector3d> aNormals;
        ASSERT_TRUE(face.GetRenderableFace(aPoints, aNormals, bBack));
        ASSERT_EQ(aPoints.size(), 9u);
        ASSERT_EQ(aNormals.size(), 9u);
        const UnitVector3d seen = bBack ? -at.z : at.z;
        double dArea = 0.0;
        for (std::size_t n = 0; n < 9; n += 3)
        {
            dArea += ((aPoints[n + 1] - aPoints[n]) * (aPoints[n + 2] - aPoints[n])) % seen / 2;
            EXPECT_LT(aNormals[n].distSqrd(seen), 1e-20);
        }
        EXPECT_NEAR(dArea, 10.0, 1e-9);
    }
}

TEST(Convexity, OfALoopIsThatOfAllItsEdgesOrMixed)
{
    PolygonModel model;
    Step step(model);
    const Frame& at = GetFrames()[1];
    const auto getConvexity = [](const Face* pFace) { return pFace->GetOuterLoop()->GetConvexity(); };
    for (const Face* pFace : model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(1, 1, 1)))
        EXPECT_EQ(getConvexity(pFace), nConvexityConvex);
    for (const Face* pFace : model.AddBlockFaces(at, Point3d(0, 0, 5), Point3d(1, 1, 6), true))
        EXPECT_EQ(getConvexity(pFace), nConvexityConcave);
    EXPECT_EQ(getConvexity(&model.AddFace({at(8, 0), at(9, 0), at(9, 1)})), nConvexityNone);

    // One side of a block pushed in: the faces beside it bend both ways.
    const std::vector<Face*> aBlock = model.AddBlockFaces(at, Point3d(20, 0, 0), Point3d(21, 1, 1));
    aBlock[1]->Delete(false);
    const Point3d tip = at(20.5, 0.5, 0.5);
    const Polygon rim{at(20, 0, 1), at(21, 0, 1), at(21, 1, 1), at(20, 1, 1)};
    std::vector<Face*> aDent;
    for (int n = 0; n < 4; ++n)
        aDent.push_back(&model.AddFace({rim[n], rim[(n + 1) % 4], tip}));
    for (const Face* pFace : aDent)
        EXPECT_EQ(getConvexity(pFace), nConvexityMixed);
}
} // namespace QRV
