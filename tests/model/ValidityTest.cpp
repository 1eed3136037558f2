#include "support/BadNumbers.h"
#include "support/PolygonModel.h"

#include "model/CircleAttribute.h"

#include <algorithm>
#include <functional>

namespace QRV
{
namespace
{
struct Damage
{
    std::vector<unsigned> aExpected; ///< ascending
    const Object& broken;
    std::function<void()> inflict;
};

void ExpectFindings(PolygonModel& model, const std::vector<Damage>& aCases)
{
    for (const Damage& test : aCases)
    {
        Step step(model, true);
        test.inflict();
        EXPECT_EQ(GetFindings(test.broken), test.aExpected) << &test - aCases.data();
    }
    ExpectSound(model.GetHistory());
}
} // namespace

TEST(Validity, NamesTheOneThingThatIsWrong)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    const Polygon square{at(0, 0), at(10, 0), at(10, 10), at(0, 10)};
    const Polygon hole{at(2, 2), at(2, 4), at(4, 4), at(4, 2)};
    Face* pFace = nullptr;
    Face* pOther = nullptr;
    Body* pBlock = nullptr;
    Body* pHollow = nullptr;
    Edge* pFinned = nullptr;
    {
        Step step(model);
        pFace = &model.AddFace(square, {hole});
        pOther = &model.AddFace({at(20, 0), at(30, 0), at(30, 20), at(20, 10)});
        pBlock = &model.AddBlock(at, Point3d(0, 0, 5), Point3d(2, 2, 7));
        pHollow = &model.AddBody({model.AddBlockFaces(at, Point3d(0, 0, 10), Point3d(9, 9, 19)),
                                  model.AddBlockFaces(at, Point3d(3, 3, 13), Point3d(6, 6, 16), true)});
        for (const double w : {-1.0, 0.0, 1.0})
            model.AddFace({at(50, 0), at(60, 0), at(60, 5, w), at(50, 5, w)});
        pFinned = &model.AddEdge(at(50, 0), at(60, 0));
    }
    ExpectSound(model.GetHistory());
    Lump& lump = *pHollow->GetLumps()[0];
    Shell& outer = *lump.GetShells()[0];
    Shell& inner = *lump.GetShells()[1];
    Loop& outline = *pFace->GetLoops()[0];
    Loop& inFace = *pFace->GetLoops()[1];
    // Moves a vertex behind the back of its faces.
    const auto shift = [&](const Point3d& from, const Point3d& to)
    { model.AddVertex(from).Transform(Transf3d(Point3d() + (to - from))); };
    const auto freshen = [&](unsigned nFlags) { pFace->Changed(nFlags); };
    // The hole grows to twice its width, and the triangles do not hear of it.
    const auto widenHole = [&] {
        inFace.SetCoedge(model.AddLoop({at(2, 2), at(2, 4), at(6, 4), at(6, 2)}).GetCoedge());
    };

    Coedge& coedge = *outline.GetCoedge();
    Coedge& inOther = *pOther->GetOuterLoop()->GetCoedge();
    Edge& edge = *coedge.GetEdge();
    Vertex& vertex = *edge.GetStartVertex();
    ShortList<Coedge*> aOfThree;
    pFinned->GetCoedges(aOfThree);

    const std::vector<Damage> aCases{
        {{Result::nFaceNoLoops}, *pOther, [&] { pOther->RemoveLoop(pOther->GetOuterLoop()); }},
        {{Result::nFaceBadBox}, *pFace, [&] { shift(at(10, 10), at(11, 11)); }},
        {{Result::nFaceLoopOwner}, *pFace, [&] { inFace.SetFace(pOther); }},
        {{Result::nLoopBadArea}, *pFace, [&] { inFace.Reverse(), freshen(nChangeFacets); }},
        {{Result::nVertexFarFromFace}, *pFace, [&] { shift(at(10, 10), at(10, 10, 0.001)), freshen(nChangeBox); }},
        {{Result::nFaceBadFacets}, *pFace, [&] { widenHole(); }},
        {{Result::nLoopNoCoedge}, outline, [&] { outline.SetCoedge(nullptr); }},
        {{Result::nLoopBadCoedges}, outline, [&] { outline.GetCoedge()->SetNext(nullptr); }},
        {{Result::nLoopBadCoedges},
         outline,
         [&] { outline.GetCoedge()->GetNext()->SetNext(outline.GetCoedge()->GetNext()); }},
        {{Result::nShellFaceOwner}, outer, [&] { (*outer.GetFaces().begin())->SetShell(&inner); }},
        {{Result::nLumpShellOwner}, lump, [&] { outer.SetLump(pBlock->GetLumps()[0]); }},
        {{Result::nBodyLumpOwner}, *pHollow, [&] { lump.SetBody(pBlock); }},
        {{Result::nBodyBadBox}, *pHollow, [&] { shift(at(9, 9, 19), at(12, 12, 22)); }},
        // Without its edge a coedge has no ends, so that its neighbours do not meet it.
        {{Result::nCoedgeNextMismatch, Result::nCoedgePreviousMismatch, Result::nCoedgeNoEdge},
         coedge,
         [&] { coedge.SetEdge(nullptr); }},
        {{Result::nCoedgePartnerEdge}, coedge, [&] { coedge.SetPartner(&inOther); }},
        {{Result::nCoedgePreviousLoop}, coedge, [&] { coedge.GetPrevious()->SetLoop(&inFace); }},
        {{Result::nCoedgePreviousMismatch}, coedge, [&] { coedge.SetPrevious(coedge.GetNext()); }},
        {{Result::nCoedgeNextLoop}, coedge, [&] { coedge.GetNext()->SetLoop(&inFace); }},
        {{Result::nCoedgeNextMismatch}, coedge, [&] { coedge.SetNext(coedge.GetPrevious()); }},
        {{Result::nLoopCoedgeMismatch}, coedge, [&] { outline.SetCoedge(&inOther); }},
        {{Result::nEdgeIncomplete}, edge, [&] { edge.SetEndVertex(nullptr, false); }},
        {{Result::nEdgeBrokenPartnerChain}, *pFinned, [&] { aOfThree.back()->SetPartner(nullptr); }},
        {{Result::nEdgeBrokenPartnerChain, Result::nEdgeBadUseCount}, edge, [&] { coedge.SetPartner(&inOther); }},
        {{Result::nEdgeBadUseCount}, edge, [&] { edge.IncrementUse(); }},
        {{Result::nVertexBadEdge}, vertex, [&] { vertex.AddEdgeToGroups(pFinned, false); }},
        {{Result::nVertexOverlappingGroups},
         vertex,
         [&] { vertex.AddEdgeToGroups(coedge.GetPrevious()->GetEdge(), false), vertex.AddEdgeToGroups(&edge, false); }},
        {{Result::nVertexBadUseCount}, vertex, [&] { vertex.IncrementUse(); }},
    };
    ExpectFindings(model, aCases);
}

TEST(Validity, TellsWhatIsNoVoidAndNoHole)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    struct Inner
    {
        Point3d lower; ///< of a block of side 1, within one of side 9 or beside it
        bool bVoid;
        std::vector<unsigned> aExpected;
    };
    Step step(model);
    double w = 0.0;
    for (const auto& [lower, bVoid, aExpected] : {Inner{{3, 3, 3}, true, {}},
                                                  {{3, 3, 3}, false, {Result::nBadInnerShell}},
                                                  {{30, 3, 3}, true, {Result::nBadInnerShell}}})
    {
        const Vector3d up(0, 0, w += 100);
        const Body& body = model.AddBody({model.AddBlockFaces(at, Point3d() + up, Point3d(9, 9, 9) + up),
                                          model.AddBlockFaces(at, lower + up, lower + Vector3d(1, 1, 1) + up, bVoid)});
        EXPECT_EQ(GetFindings(*body.GetLumps()[0]), aExpected) << w;
    }
    const Face& face = model.AddFace(MakeRectangle(at, 0, 0, 5, 5), {Reversed(MakeRectangle(at, 7, 1, 8, 2))});
    const std::vector<unsigned> aFindings = GetFindings(face);
    EXPECT_TRUE(std::find(aFindings.begin(), aFindings.end(), unsigned(Result::nBadInnerLoop)) != aFindings.end());
}

TEST(Validity, OfACircleAllowsCutChordsOnly)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    const Polygon corners{at(5, 0), at(0, 5), at(-5, 0), at(0, -5)};
    CircleAttribute* pCircle = nullptr;
    {
        Step step(model);
        pCircle = &model.GetHistory().Create<CircleAttribute>(5.0, at.origin, at.z, at.x);
        for (int n = 0; n < 3; ++n)
            model.AddEdge(corners[n], corners[n + 1]).AddAttribute(pCircle, true);
        model.AddEdge(corners[3], corners[0]);
    }
    ExpectSound(model.GetHistory());
    Edge& closing = model.AddEdge(corners[3], corners[0]);
    Vertex& corner = model.AddVertex(corners[1]);
    const auto moveCorner = [&](const Point3d& to)
    { corner.Transform(Transf3d(Point3d() + (to - corner.GetPosition()))); };

    const std::vector<Damage> aCases{
        {{}, *pCircle, [&] { moveCorner(at(1, 2)); }}, // where a chord was cut
        {{Result::nCircleAttributeBadEdge, Result::nCircleAttributeBadEdge},
         *pCircle,
         [&] { moveCorner(at(0, 5.001)); }},
        {{Result::nCircleAttributeBadEdge, Result::nCircleAttributeBadEdge},
         *pCircle,
         [&] { moveCorner(at(0, 4, 0.001)); }},
        {{Result::nCircleAttributeBadEdge}, *pCircle, [&] { corner.AddAttribute(pCircle, true); }},
        {{Result::nCircleAttributeBadEdge},
         *pCircle,
         [&] { closing.AddAttribute(pCircle, true), closing.SetEndVertex(nullptr, false); }},
        {{Result::nAttributeOwnerMismatch}, *pCircle, [&] { pCircle->AddOwner(closing); }},
        {{Result::nAttributeOwnerMismatch},
         closing,
         [&] { closing.RecordChange(), closing.AddAttribute(pCircle, false); }},
        {{Result::nAttributeBadOwner},
         *pCircle,
         [&]
         {
             Vertex& gone = model.GetHistory().Create<Vertex>(at(9, 9));
             gone.AddToSearch();
             pCircle->AddOwner(gone);
             gone.DeleteSelf();
         }},
    };
    ExpectFindings(model, aCases);

    const CircleAttribute aBad[] = {{0.0, Point3d(), at.z, at.x},           {-1.0, Point3d(), at.z, at.x},
                                    {kNaN, Point3d(), at.z, at.x},          {1.0, Point3d(), UnitVector3d(), at.x},
                                    {1.0, Point3d(), at.z, UnitVector3d()}, {1.0, Point3d(), at.z, at.z}};
    Step step(model, true);
    for (const CircleAttribute& bad : aBad)
        EXPECT_EQ(GetFindings(model.GetHistory().Create<CircleAttribute>(bad.GetRadius(), bad.GetCenter(),
                                                                         bad.GetNormal(), bad.GetXAxis())),
                  std::vector<unsigned>{Result::nCircleAttributeBadData});
}
} // namespace QRV
