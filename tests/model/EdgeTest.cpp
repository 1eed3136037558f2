#include "support/PolygonModel.h"

#include <cmath>
#include <numbers>

namespace QRV
{
namespace
{
constexpr double kDegree = std::numbers::pi / 180;

/// Two unit squares at an edge, the second turned up by an angle, or down by a negative one.
Edge& AddRoof(PolygonModel& model, const Frame& at, double dAngle, bool bSecondTurnedOver = false)
{
    const double c = std::cos(dAngle);
    const double s = std::sin(dAngle);
    model.AddFace(MakeRectangle(at, 0, 0, 1, 1));
    const Polygon second{at(1, 0), at(1 + c, 0, s), at(1 + c, 1, s), at(1, 1)};
    model.AddFace(bSecondTurnedOver ? Reversed(second) : second);
    return model.AddEdge(at(1, 0), at(1, 1));
}
} // namespace

TEST(Edge, IsFlatBelowHalfADegreeAndBendsBeyond)
{
    const std::pair<double, nConvexity> aCases[] = {
        {0.0, nConvexityFlat},     {0.4, nConvexityFlat},      {-0.4, nConvexityFlat},   {0.6, nConvexityConcave},
        {90.0, nConvexityConcave}, {170.0, nConvexityConcave}, {-1.0, nConvexityConvex}, {-179.0, nConvexityConvex}};
    for (const Frame& at : GetFrames())
        for (const auto& [dDegrees, nExpected] : aCases)
        {
            SCOPED_TRACE(testing::Message() << at.pName << ", " << dDegrees);
            PolygonModel model;
            Step step(model);
            EXPECT_EQ(AddRoof(model, at, dDegrees * kDegree).GetConvexity(), nExpected);
            EXPECT_EQ(model.AddEdge(at(0, 0), at(1, 0)).GetConvexity(), nConvexityNone);
        }
}

TEST(Edge, IsASilhouetteWhereOneFaceIsSeenAndTheOtherNot)
{
    PolygonModel model;
    Step step(model);
    const Frame& at = GetFrames()[1];
    Edge& ridge = AddRoof(model, at, -60 * kDegree);
    const auto isAlong = [&](double u, double w) { return ridge.IsSilhouette(Point3d(), at.x * u + at.z * w, false); };
    EXPECT_FALSE(isAlong(0, -1)); // both seen from above
    EXPECT_FALSE(isAlong(0, 1));
    EXPECT_TRUE(isAlong(1, -0.1)); // the second lies in the shade of the first
    const auto isFrom = [&](double u, double w) { return ridge.IsSilhouette(at(u, 0, w), Vector3d(), true); };
    EXPECT_FALSE(isFrom(1, 5));
    EXPECT_TRUE(isFrom(-5, 1));
    EXPECT_TRUE(model.AddEdge(at(0, 0), at(1, 0)).IsSilhouette(at(1, 0, 5), Vector3d(), true)); // a rim

    Edge& turnedOver = AddRoof(model, GetFrames()[0], -60 * kDegree, true);
    EXPECT_FALSE(turnedOver.IsSilhouette(Point3d(), Vector3d(0, 0, -1), false));
    EXPECT_TRUE(turnedOver.IsSilhouette(Point3d(), Vector3d(1, 0, -0.1), false));

    // In one face, and at three faces.
    model.AddFace({at(20, 0), at(25, 0), at(25, 5), at(20, 5), at(20, 3), at(22, 3), at(20, 3)});
    EXPECT_FALSE(model.AddEdge(at(20, 3), at(22, 3)).IsSilhouette(at(0, 0, 5), Vector3d(), true));
    model.AddFace({at(1, 0), at(1, 1), at(1, 1, 9), at(1, 0, 9)});
    EXPECT_FALSE(ridge.IsSilhouette(at(-5, 0, 1), Vector3d(), true));
}

TEST(Edge, WithAThirdFaceIsNeitherManifoldNorMergeableNorSmooth)
{
    PolygonModel model;
    Step step(model);
    const Frame& at = GetFrames()[1];
    Edge& edge = AddRoof(model, at, 0.0);
    EXPECT_TRUE(edge.IsManifold());
    EXPECT_TRUE(edge.IsMergeable(false));
    EXPECT_EQ(edge.GetFaceClass(), nEdgeManifold);
    edge.SetSmooth(true);
    model.AddFace({at(1, 0), at(1, 1), at(1, 1, 1), at(1, 0, 1)});
    EXPECT_FALSE(edge.IsSmooth());
    EXPECT_FALSE(edge.IsManifold());
    EXPECT_FALSE(edge.IsMergeable(false));
    EXPECT_EQ(edge.GetConvexity(), nConvexityNonManifold);
    EXPECT_EQ(edge.GetFaceClass(), nEdgeNonManifold);
    EXPECT_FALSE(AddRoof(model, GetFrames()[0], 0.01).IsMergeable(false));
    EXPECT_EQ(Edge::Create(edge.GetStartVertex(), edge.GetStartVertex(), model.GetHistory(), Edge::nGroupMode::nBoth),
              nullptr);
}

TEST(Edge, TakesNoMoreThan255Faces)
{
    PolygonModel model;
    Step step(model);
    Edge& edge = model.AddEdge(Point3d(0, 0, 0), Point3d(1, 0, 0));
    for (int n = 0; n < 255; ++n)
        ASSERT_TRUE(edge.AddCoedge(model.GetHistory().Create<Coedge>(true)));
    Coedge& oneTooMany = model.GetHistory().Create<Coedge>(true);
    EXPECT_FALSE(edge.AddCoedge(oneTooMany));
    EXPECT_EQ(oneTooMany.GetEdge(), nullptr);
    EXPECT_TRUE(edge.IsInSearch());
    EXPECT_EQ(edge.GetUse(), 255u);
    EXPECT_EQ(GetFindings(edge), std::vector<unsigned>{});
}

TEST(EdgeChain, EndsWhereMoreThanTwoUnmarkedEdgesMeet)
{
    PolygonModel model;
    Step step(model);
    const auto chain = [&](const Point3d& a, const Point3d& b, bool bSmoothOnly)
    {
        std::vector<Edge*> aEdges;
        const std::size_t nCount = model.AddEdge(a, b).GetEdgeChain(aEdges, bSmoothOnly);
        EXPECT_EQ(nCount, aEdges.size());
        return aEdges;
    };
    const Point3d a(0, 0, 0), b(1, 0, 0), c(2, 0.1, 0), d(3, 0, 0), e(3, 1, 0);
    for (const auto& [from, to] : {std::pair(a, b), {b, c}, {d, c}, {d, e}}) // one against the others
        model.AddEdge(from, to);
    // From the middle: first through its start, then through its end.
    EXPECT_EQ(chain(b, c, false), (std::vector<Edge*>{&model.AddEdge(b, c), &model.AddEdge(a, b), &model.AddEdge(c, d),
                                                      &model.AddEdge(d, e)}));
    EXPECT_EQ(chain(b, c, true).size(), 1u);
    for (const Point3d& p : {b, c, d})
        model.AddVertex(p).SetSmooth(true);
    EXPECT_EQ(chain(b, c, true).size(), 3u); // the corner at d is too sharp
    Edge& branch = model.AddEdge(c, Point3d(2, 5, 0));
    EXPECT_EQ(chain(a, b, false).size(), 2u);
    branch.SetSmooth(true);
    EXPECT_EQ(chain(a, b, false).size(), 4u);
    EXPECT_TRUE(chain(c, Point3d(2, 5, 0), false).empty());

    const Point3d x(0, 0, 9), y(1, 0, 9), z(0, 1, 9);
    for (const auto& [from, to] : {std::pair(x, y), {y, z}, {z, x}})
        model.AddEdge(from, to);
    for (const auto& [from, to] : {std::pair(x, y), {y, z}, {z, x}})
        EXPECT_EQ(chain(from, to, false).size(), 3u);
}

TEST(EdgeDelete, JoinsTheFacesInOnePlaneAndElseTakesThemAndLeavesTheirOtherEdges)
{
    for (const Frame& at : GetFrames())
        for (const double dAngle : {0.0, 1e-3, -90 * kDegree})
        {
            SCOPED_TRACE(testing::Message() << at.pName << ", " << dAngle);
            PolygonModel model;
            Edge& edge = AddRoof(model, at, dAngle);
            InStep(model, [&] { EXPECT_TRUE(edge.Delete(false)); });
            EXPECT_EQ(GetAll<Face>(model.GetHistory()).size(), dAngle == 0.0 ? 1u : 0u);
            // Where the faces are joined both ends lie on straight runs.
            EXPECT_EQ(GetAll<Edge>(model.GetHistory()).size(), dAngle == 0.0 ? 4u : 6u);
            ExpectUndoRedoRestores(model.GetHistory());
        }
}

TEST(EdgeDelete, TakesAHalfOfASideAndNotAllOfIt)
{
    // The side of the square is in two pieces; whichever goes, the other stays.
    for (const int nPiece : {0, 1})
    {
        PolygonModel model;
        const Polygon square{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
        model.AddFace(square);
        InStep(model, [&] { EXPECT_TRUE(model.AddEdge(square[nPiece], square[nPiece + 1]).Delete(false)); });
        EXPECT_EQ(GetAll<Face>(model.GetHistory()).size(), 0u);
        const std::vector<Edge*> aEdges = GetAll<Edge>(model.GetHistory());
        double dLength = 0.0;
        for (const Edge* pEdge : aEdges)
            dLength += pEdge->GetLength();
        EXPECT_EQ(aEdges.size(), 4u);
        EXPECT_NEAR(dLength, 7.0, 1e-12);
        ExpectUndoRedoRestores(model.GetHistory());
    }
}
} // namespace QRV
