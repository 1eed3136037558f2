#include "support/PolygonModel.h"

#include "model/ObjectPropertiesAttribute.h"

#include <cmath>
#include <random>

namespace QRV
{
namespace
{
std::vector<Face*> Joined(std::vector<Face*> aFaces, const std::vector<Face*>& aMore)
{
    aFaces.insert(aFaces.end(), aMore.begin(), aMore.end());
    return aFaces;
}

Interval3d GetBoxOfVertices(const Body& body)
{
    std::vector<Face*> aFaces;
    body.GetBodyFaces(aFaces);
    Interval3d box;
    for (const Face* pFace : aFaces)
        box += pFace->ComputeBox();
    return box;
}
} // namespace

TEST(Body, TakesAFaceComponentOnlyWhenNoOtherShellHasPartOfIt)
{
    const Frame& at = GetFrames().front();
    PolygonModel model;
    Step step(model);
    Body& body = model.GetHistory().Create<Body>();
    const std::vector<Face*> aFaces = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(1, 1, 1));
    EXPECT_TRUE(body.AddFaceComponent(*aFaces.front()));
    EXPECT_NEAR(body.GetVolume(nullptr), 1.0, 1e-12);
    EXPECT_FALSE(body.AddFaceComponent(*aFaces.back()));

    Face& fin = model.AddFace({at(1, 1, 1), at(1, 0, 1), at(2, 0, 1), at(2, 1, 1)});
    Body& other = model.GetHistory().Create<Body>();
    EXPECT_FALSE(other.AddFaceComponent(fin));
    EXPECT_TRUE(other.GetLumps().empty());
    EXPECT_TRUE(body.AddFaceComponent(fin));
    EXPECT_EQ(fin.GetBody(), &body);
}

TEST(Body, TakesOverTheLumpsOfAnother)
{
    PolygonModel model;
    Body* pFirst = &model.AddBlock(GetFrames()[1], Point3d(0, 0, 0), Point3d(1, 1, 1));
    Body& second = model.AddBlock(GetFrames()[1], Point3d(2, 0, 0), Point3d(4, 1, 1));
    {
        Step step(model);
        pFirst->TakeLumps(second);
        EXPECT_TRUE(second.GetLumps().empty());
        EXPECT_TRUE(second.Delete());
    }
    EXPECT_EQ(pFirst->GetLumps().size(), 2u);
    EXPECT_NEAR(pFirst->GetVolume(nullptr), 3.0, 1e-9);
    EXPECT_TRUE(pFirst->GetCachedBox().isEqual(GetBoxOfVertices(*pFirst), 0.0));
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(BodyRebuild, PartsWhatHasComeApart)
{
    for (const bool bSplitToBodies : {false, true})
    {
        PolygonModel model;
        const Frame& at = GetFrames()[1];
        {
            Step step(model);
            const std::vector<Face*> aSmall = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(1, 1, 1));
            const std::vector<Face*> aLarge = model.AddBlockFaces(at, Point3d(5, 0, 0), Point3d(7, 2, 2));
            Body& body = model.AddBody({Joined(aSmall, aLarge)});
            body.AddAttribute(&model.GetHistory().Create<ObjectPropertiesAttribute>("house", false), true);
            EXPECT_EQ(GetFindings(*body.GetLumps()[0]->GetShells()[0]),
                      (std::vector<unsigned>{Result::nShellNotConnected}));
            EXPECT_TRUE(body.Rebuild(bSplitToBodies));
            EXPECT_FALSE(body.Rebuild(bSplitToBodies));
        }
        const std::vector<Body*> aBodies = GetAll<Body>(model.GetHistory());
        EXPECT_EQ(aBodies.size(), bSplitToBodies ? 2u : 1u);
        EXPECT_EQ(GetAll<Lump>(model.GetHistory()).size(), 2u);
        for (const Body* pBody : aBodies)
        {
            std::vector<Attribute*> aAttributes;
            EXPECT_EQ(pBody->GetAttributes(aAttributes), 1u);
        }
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(BodyRebuild, GivesEachVoidToTheSmallestSolidAroundIt)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Body* pBody = nullptr;
    std::vector<Face*> aMiddle;
    std::vector<Face*> aInner;
    {
        Step step(model);
        // A ball in a shell in a box, and an open sheet, all poured into one shell.
        std::vector<Face*> aAll = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(20, 20, 20));
        aAll = Joined(aAll, model.AddBlockFaces(at, Point3d(2, 2, 2), Point3d(18, 18, 18), true));
        aMiddle = model.AddBlockFaces(at, Point3d(4, 4, 4), Point3d(16, 16, 16));
        aInner = model.AddBlockFaces(at, Point3d(6, 6, 6), Point3d(8, 8, 8), true);
        aAll = Joined(Joined(aAll, aMiddle), aInner);
        aAll.push_back(&model.AddFace({at(30, 0), at(31, 0), at(31, 1), at(30, 1)}));
        pBody = &model.AddBody({aAll});
        EXPECT_TRUE(pBody->Rebuild(false));
        EXPECT_FALSE(pBody->Rebuild(false));
    }
    EXPECT_EQ(pBody->GetLumps().size(), 3u);
    EXPECT_EQ(aInner.front()->GetShell()->GetLump(), aMiddle.front()->GetShell()->GetLump());
    EXPECT_EQ(aMiddle.front()->GetShell()->GetLump()->GetShells().front(), aMiddle.front()->GetShell());
    EXPECT_NEAR(pBody->GetVolume(nullptr), 8000.0 - 4096.0 + 1728.0 - 8.0, 1e-6);
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(BodyRebuild, JoinsShellsThatHaveBecomeOneSheetAndGivesAFinALumpOfItsOwn)
{
    PolygonModel model;
    const Frame& at = GetFrames()[2];
    Step step(model);
    const std::vector<Face*> aFaces = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(1, 1, 1));
    Face& fin = model.AddFace({at(1, 0, 1), at(2, 0, 1), at(2, 1, 1), at(1, 1, 1)});
    Body& body = model.AddBody({{aFaces[0], aFaces[3]}, {aFaces[1], aFaces[2], aFaces[4], aFaces[5], &fin}});
    EXPECT_TRUE(body.Rebuild(false));
    EXPECT_EQ(GetAll<Shell>(model.GetHistory()).size(), 2u);
    ASSERT_EQ(body.GetLumps().size(), 2u);
    EXPECT_TRUE(body.GetLumps()[0]->GetShells()[0]->IsClosed());
    EXPECT_FALSE(body.GetLumps()[1]->GetShells()[0]->IsClosed());
    EXPECT_NEAR(body.GetVolume(nullptr), 1.0, 1e-9);
    ExpectSound(model.GetHistory());
}

TEST(BodyRebuild, EndsABodyThatHasLostAllItsFaces)
{
    PolygonModel model;
    Body* pBody = &model.AddBlock(GetFrames().front(), Point3d(0, 0, 0), Point3d(1, 1, 1));
    {
        Step step(model);
        std::vector<Face*> aFaces;
        pBody->GetBodyFaces(aFaces);
        for (Face* pFace : aFaces)
            pFace->Delete();
        EXPECT_TRUE(pBody->Rebuild(false));
    }
    EXPECT_EQ(Describe(model.GetHistory()), "");
    ExpectUndoRedoRestores(model.GetHistory());

    // One that was made empty waits for faces.
    Step step(model, true);
    EXPECT_FALSE(model.GetHistory().Create<Body>().Rebuild(false));
    EXPECT_NE(Describe(model.GetHistory()), "");
}

TEST(BodyBox, FollowsWhateverHappensToItsFaces)
{
    for (unsigned nSeed = 0; nSeed < 20; ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        const auto pick = [&](std::size_t nCount) { return random() % nCount; };
        PolygonModel model;
        Body* pBody = nullptr;
        {
            Step step(model);
            std::vector<std::vector<Face*>> aShells;
            for (int n = 0; n < 8; ++n)
                aShells.push_back(model.AddBlockFaces(GetFrames().front(), Point3d(3 * n, n % 3, -n),
                                                      Point3d(3 * n + 1, n % 3 + 1, 2 - n)));
            pBody = &model.AddBody(aShells);
        }
        for (int nStep = 0; nStep < 8; ++nStep)
        {
            Step step(model, pick(4) == 0);
            for (std::size_t nEdit = pick(3) + 1; nEdit > 0; --nEdit)
            {
                std::vector<Face*> aFaces;
                pBody->GetBodyFaces(aFaces);
                Face& face = *aFaces[pick(aFaces.size())];
                std::vector<Vertex*> aVertices;
                face.GetVertices(aVertices);
                switch (pick(4))
                {
                case 0:
                    face.Delete(false);
                    break;
                case 1:
                    face.GetShell()->RemoveFace(&face);
                    break;
                case 2:
                    aVertices[0]->SetPosition(aVertices[0]->GetPosition() +
                                              Vector3d(int(pick(5)) - 2, int(pick(5)) - 2, int(pick(5)) - 2));
                    break;
                default:
                    EXPECT_TRUE(pBody->GetBox().isEqual(GetBoxOfVertices(*pBody), 0.0));
                }
            }
            EXPECT_TRUE(pBody->GetBox().isEqual(GetBoxOfVertices(*pBody), 0.0));
        }
        EXPECT_TRUE(pBody->GetCachedBox().isEqual(GetBoxOfVertices(*pBody), 0.0));
    }
}
} // namespace QRV
