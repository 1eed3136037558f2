#include "support/PolygonModel.h"

#include <cmath>
#include <numbers>

namespace QRV
{
namespace
{
/// A strip of quads along a bent line, each turned against the one before by the angle given.
std::vector<Face*> AddStrip(PolygonModel& model, const Frame& at, const std::vector<double>& aTurns)
{
    std::vector<Face*> aFaces;
    double u = 0.0;
    double w = 0.0;
    double dAngle = 0.0;
    for (const double dTurn : aTurns)
    {
        dAngle += dTurn;
        const double uNext = u + std::cos(dAngle);
        const double wNext = w + std::sin(dAngle);
        aFaces.push_back(&model.AddFace({at(u, 0, w), at(uNext, 0, wNext), at(uNext, 1, wNext), at(u, 1, w)}));
        u = uNext;
        w = wNext;
    }
    return aFaces;
}

Edge& GetSharedEdge(const Face& a, const Face& b)
{
    std::vector<Edge*> aEdges;
    a.GetEdges(aEdges);
    for (Edge* pEdge : aEdges)
        if (b.HasEdge(*pEdge))
            return *pEdge;
    throw std::logic_error("no shared edge");
}
} // namespace

TEST(VertexNormal, IsTheMeanOverSmoothEdgesOnly)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Step step(model);
        const std::vector<Face*> aFaces = AddStrip(model, at, {0.0, 0.3, 0.4});
        GetSharedEdge(*aFaces[0], *aFaces[1]).SetSmooth(true);
        Edge& sharp = GetSharedEdge(*aFaces[1], *aFaces[2]);

        const Vertex* pSmoothEnd = GetSharedEdge(*aFaces[0], *aFaces[1]).GetStartVertex();
        const UnitVector3d mean(aFaces[0]->GetPlane().normal + aFaces[1]->GetPlane().normal, true);
        for (Face* pFace : {aFaces[0], aFaces[1]})
            EXPECT_LT(pFace->GetVertexNormal(pSmoothEnd, nullptr).distSqrd(mean), 1e-20);
        EXPECT_LT(aFaces[1]->GetVertexNormal(sharp.GetStartVertex(), nullptr).distSqrd(aFaces[1]->GetPlane().normal),
                  1e-20);
    }
}

TEST(VertexNormal, OfAFullFanCountsEachFaceOnceWhateverItsSize)
{
    PolygonModel model;
    Step step(model);
    const Point3d apex(0, 0, 1);
    const Point3d aRim[] = {Point3d(1, 0, 0), Point3d(0, 5, 0), Point3d(-3, 0, 0), Point3d(0, -1, 0)};
    std::vector<Face*> aFaces;
    Vector3d sum;
    for (int n = 0; n < 4; ++n)
    {
        aFaces.push_back(&model.AddFace({apex, aRim[n], aRim[(n + 1) % 4]}));
        model.AddEdge(apex, aRim[n]).SetSmooth(true);
        sum += aFaces.back()->GetPlane().normal;
    }
    for (Face* pFace : aFaces)
    {
        std::vector<std::pair<std::uint64_t, UnitVector3d>> aNormals;
        pFace->GetVertexNormals(aNormals);
        ASSERT_EQ(aNormals.size(), 3u);
        EXPECT_EQ(aNormals[0].first, model.AddVertex(apex).GetID());
        EXPECT_LT(aNormals[0].second.distSqrd(UnitVector3d(sum, true)), 1e-20);
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
