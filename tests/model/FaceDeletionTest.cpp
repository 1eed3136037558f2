#include "support/PolygonModel.h"

namespace QRV
{
namespace
{
std::size_t Count(History& history, nObjectType nType)
{
    std::vector<Object*> aObjects;
    return history.GetObjectsByType(aObjects, nType, false);
}
} // namespace

TEST(FaceDelete, TakesWhatOnlyTheFaceUsed)
{
    PolygonModel model;
    Face* pFace = nullptr;
    {
        Step step(model);
        pFace = &model.AddFace({Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(1, 1, 0), Point3d(0, 1, 0)});
    }
    {
        Step step(model);
        EXPECT_TRUE(pFace->Delete());
    }
    EXPECT_EQ(Describe(model.GetHistory()), "");
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(FaceDelete, LeavesAnOpenBoxAndKeepsItsBody)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Body* pBody = nullptr;
        {
            Step step(model);
            pBody = &model.AddBlock(at, Point3d(0, 0, 0), Point3d(1, 2, 3));
        }
        {
            Step step(model);
            std::vector<Face*> aFaces;
            pBody->GetBodyFaces(aFaces);
            aFaces.back()->Delete();
        }
        EXPECT_EQ(Count(model.GetHistory(), nFaceType), 5u);
        EXPECT_EQ(Count(model.GetHistory(), nEdgeType), 12u);
        EXPECT_EQ(pBody->GetVolume(nullptr), 0.0);
        ExpectSound(model.GetHistory());
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(FaceDelete, KeepsEdgesAsFreeOnesWithTheirMarks)
{
    PolygonModel model;
    std::uint64_t nSmoothEdge = INVALID_ID;
    {
        Step step(model);
        Face& face = model.AddFace({Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(1, 1, 0), Point3d(0, 1, 0)});
        Edge& edge = model.AddEdge(Point3d(0, 0, 0), Point3d(1, 0, 0));
        edge.SetSmooth(true);
        nSmoothEdge = edge.GetID();
        EXPECT_TRUE(face.Delete(true, true));
    }
    EXPECT_EQ(Count(model.GetHistory(), nEdgeType), 4u);
    EXPECT_EQ(Count(model.GetHistory(), nCoedgeType), 0u);
    const Edge& edge = *model.GetHistory().Get<Edge>(nSmoothEdge);
    EXPECT_TRUE(edge.IsFree());
    EXPECT_EQ(edge.GetUse(), 0u);
    EXPECT_TRUE(edge.IsSmooth());
    std::vector<Edge*> aEdges;
    edge.GetStartVertex()->GetConnectedEdges(aEdges);
    EXPECT_EQ(aEdges.size(), 2u);
    ExpectSound(model.GetHistory());
}

TEST(FaceDelete, KeepsBothHalvesOfAFanKnownAtItsVertex)
{
    PolygonModel model;
    const Point3d hub(0, 0, 0);
    const Point3d aRim[] = {Point3d(2, 0, 0), Point3d(1, 2, 0), Point3d(-1, 2, 0), Point3d(-2, 0, 0)};
    {
        Step step(model);
        std::vector<Face*> aFan;
        for (int n = 0; n < 3; ++n)
            aFan.push_back(&model.AddFace({hub, aRim[n], aRim[n + 1]}));
        EXPECT_EQ(model.AddVertex(hub).GetEdgesPerGroup().size(), 1u);
        aFan[1]->Delete();
    }
    const Vertex& vertex = model.AddVertex(hub);
    EXPECT_EQ(vertex.GetEdgesPerGroup().size(), 2u);
    std::vector<Edge*> aEdges;
    EXPECT_EQ(vertex.GetConnectedEdges(aEdges), 4u);
    ExpectSound(model.GetHistory());
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(FaceDelete, DissolvesAVertexLeftOnAStraightRun)
{
    PolygonModel model;
    Face* pUpper = nullptr;
    {
        Step step(model);
        model.AddFace({Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(2, 0, 0), Point3d(2, -1, 0), Point3d(0, -1, 0)});
        pUpper = &model.AddFace({Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(0, 1, 0)});
    }
    {
        Step step(model);
        pUpper->Delete(true);
    }
    EXPECT_EQ(Count(model.GetHistory(), nVertexType), 4u);
    EXPECT_EQ(Count(model.GetHistory(), nEdgeType), 4u);
    ExpectSound(model.GetHistory());
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(FaceDelete, RemovesOneHoleWithoutTouchingWhatFillsIt)
{
    PolygonModel model;
    const Polygon hole{Point3d(1, 1, 0), Point3d(1, 2, 0), Point3d(2, 2, 0), Point3d(2, 1, 0)};
    Face* pOuter = nullptr;
    {
        Step step(model);
        pOuter = &model.AddFace({Point3d(0, 0, 0), Point3d(5, 0, 0), Point3d(5, 5, 0), Point3d(0, 5, 0)}, {hole});
        model.AddFace({hole.rbegin(), hole.rend()});
    }
    {
        Step step(model);
        pOuter->DeleteLoop(pOuter->GetLoops()[1]);
    }
    EXPECT_EQ(Count(model.GetHistory(), nLoopType), 2u);
    EXPECT_EQ(Count(model.GetHistory(), nEdgeType), 8u);
    EXPECT_NEAR(pOuter->GetArea(nullptr), 25.0, 1e-12);
    ExpectSound(model.GetHistory());
    ExpectUndoRedoRestores(model.GetHistory());
}
} // namespace QRV
