#include "support/PolygonModel.h"

namespace QRV
{
TEST(FaceDelete, LeavesAnOpenBoxAndKeepsItsBody)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Body* pBody = &model.AddBlock(at, Point3d(0, 0, 0), Point3d(1, 2, 3));
        {
            Step step(model);
            std::vector<Face*> aFaces;
            pBody->GetBodyFaces(aFaces);
            aFaces.back()->Delete();
        }
        EXPECT_EQ(GetAll<Face>(model.GetHistory()).size(), 5u);
        EXPECT_EQ(GetAll<Edge>(model.GetHistory()).size(), 12u);
        EXPECT_EQ(pBody->GetVolume(nullptr), 0.0);
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(FaceDelete, KeepsEdgesAsFreeOnesWithTheirMarks)
{
    PolygonModel model;
    std::uint64_t nSmoothEdge = INVALID_ID;
    {
        Step step(model);
        Face& face = model.AddFace(MakeRectangle(GetFrames()[0], 0, 0, 1, 1));
        Edge& edge = model.AddEdge(Point3d(0, 0, 0), Point3d(1, 0, 0));
        edge.SetSmooth(true);
        nSmoothEdge = edge.GetID();
        EXPECT_TRUE(face.Delete(true, true));
    }
    EXPECT_EQ(GetAll<Edge>(model.GetHistory()).size(), 4u);
    EXPECT_EQ(GetAll<Coedge>(model.GetHistory()).size(), 0u);
    const Edge& edge = *model.GetHistory().Get<Edge>(nSmoothEdge);
    EXPECT_TRUE(edge.IsFree());
    EXPECT_EQ(edge.GetUse(), 0u);
    EXPECT_TRUE(edge.IsSmooth());
    ShortList<Edge*> aEdges;
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
    ShortList<Edge*> aEdges;
    EXPECT_EQ(vertex.GetConnectedEdges(aEdges), 4u);
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(FaceDelete, DissolvesAVertexLeftOnAStraightRun)
{
    PolygonModel model;
    model.AddFace({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, -1, 0}, {0, -1, 0}});
    Face* pUpper = &model.AddFace({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    InStep(model, [&] { pUpper->Delete(true); });
    EXPECT_EQ(GetAll<Vertex>(model.GetHistory()).size(), 4u);
    EXPECT_EQ(GetAll<Edge>(model.GetHistory()).size(), 4u);
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(FaceDelete, RemovesOneHoleWithoutTouchingWhatFillsIt)
{
    PolygonModel model;
    const Polygon inner = MakeRectangle(GetFrames()[0], 1, 1, 2, 2);
    Face* pOuter = &model.AddFace(MakeRectangle(GetFrames()[0], 0, 0, 5, 5), {Reversed(inner)});
    model.AddFace(inner);
    InStep(model, [&] { pOuter->DeleteLoop(pOuter->GetLoops()[1]); });
    EXPECT_EQ(GetAll<Loop>(model.GetHistory()).size(), 2u);
    EXPECT_EQ(GetAll<Edge>(model.GetHistory()).size(), 8u);
    EXPECT_NEAR(pOuter->GetArea(nullptr), 25.0, 1e-12);
    ExpectUndoRedoRestores(model.GetHistory());
}
} // namespace QRV
