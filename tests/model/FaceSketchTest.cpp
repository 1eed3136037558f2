#include "support/PolygonModel.h"

#include <cmath>

namespace QRV
{
namespace
{
Polygon MakeRectangle(const Frame& at, double u0, double v0, double u1, double v1)
{
    return {at(u0, v0), at(u1, v0), at(u1, v1), at(u0, v1)};
}

Polygon Reversed(const Polygon& polygon)
{
    return {polygon.rbegin(), polygon.rend()};
}

double GetFaceArea(History& history)
{
    std::vector<Object*> aFaces;
    history.GetObjectsByType(aFaces, nFaceType, false);
    double dArea = 0.0;
    for (const Object* pFace : aFaces)
        dArea += pFace->GetArea(nullptr);
    return dArea;
}

bool AddSpur(PolygonModel& model, Face& face, const Point3d& near, const Point3d& far)
{
    Edge& edge = model.AddEdge(near, far);
    ObjectSet done;
    return face.AddSpurEdge(edge, edge.GetStartVertex()->GetPosition().distSqrd(near) == 0.0, done);
}

Face* Split(PolygonModel& model, Face& face, const Point3d& a, const Point3d& b)
{
    Face* pPart = nullptr;
    EXPECT_TRUE(face.SplitByEdge(model.AddEdge(a, b), &pPart, false));
    return pPart;
}
} // namespace

TEST(FaceSketch, PullsInATreeOfDanglingEdges)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Face* pFace = nullptr;
        {
            Step step(model);
            pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
        }
        {
            Step step(model);
            model.AddEdge(at(5, 5), at(7, 5));
            model.AddEdge(at(7, 5), at(8, 7));
            model.AddEdge(at(5, 8), at(5, 5));
            EXPECT_TRUE(AddSpur(model, *pFace, at(0, 0), at(5, 5)));
        }
        std::vector<Coedge*> aCoedges;
        EXPECT_EQ(pFace->GetOuterLoop()->GetCoedges(aCoedges), 4u + 2 * 4);
        EXPECT_EQ(pFace->GetLoops().size(), 1u);
        EXPECT_NEAR(pFace->GetArea(nullptr), 100.0, 1e-8);
        ExpectSound(model.GetHistory());
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(FaceSketch, RefusesSpursThatDoNotRunInTheFace)
{
    struct Case
    {
        const char* pName;
        double u0, v0, u1, v1;
    };
    const Case aCases[] = {
        {"outside", 0, 0, -1, -1},       {"into the hole", 4, 4, 5, 5}, {"on to another side", 0, 0, 10, 5},
        {"along a side", 0, 0, 5, 0},    {"across the notch", 0, 10, 5, 12}, {"from a place off the face", 1, 1, 2, 2},
    };
    for (const Frame& at : GetFrames())
    {
        PolygonModel model;
        Face* pFace = nullptr;
        {
            Step step(model);
            pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10), {Reversed(MakeRectangle(at, 4, 4, 6, 6))});
        }
        for (const Case& test : aCases)
        {
            Step step(model, true);
            Edge& edge = model.AddEdge(at(test.u0, test.v0), at(test.u1, test.v1));
            ObjectSet done;
            EXPECT_FALSE(pFace->AddSpurEdge(edge, true, done)) << at.pName << ": " << test.pName;
            EXPECT_TRUE(edge.IsFree()) << at.pName << ": " << test.pName;
        }
        ExpectSound(model.GetHistory());
    }
}

TEST(FaceSketch, FindsTheCornerThatADirectionFallsInto)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Step step(model);
        // Two triangular corners meet at (5, 5): the face passes that vertex twice.
        Face& face = model.AddFace({at(0, 0), at(10, 0), at(5, 5), at(10, 10), at(0, 10), at(5, 5)});
        const Vertex& pinch = model.AddVertex(at(5, 5));
        const auto findStart = [&](double u, double v) {
            const Coedge* pCorner = face.FindCorner(&pinch, at(u, v) - at(5, 5));
            return pCorner ? pCorner->GetStartVertex() : nullptr;
        };
        EXPECT_EQ(findStart(5, 0), &model.AddVertex(at(0, 10)) == nullptr ? nullptr : findStart(5, 1));
        EXPECT_EQ(findStart(0, 5), nullptr);
        EXPECT_EQ(findStart(10, 5), nullptr);
        EXPECT_NE(findStart(5, 0), nullptr);
        EXPECT_NE(findStart(5, 10), nullptr);
        EXPECT_NE(findStart(5, 0), findStart(5, 10));
    }
}

TEST(FaceSketch, TurnsASpurIntoAChord)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Face* pFace = nullptr;
        {
            Step step(model);
            pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
        }
        {
            Step step(model);
            ASSERT_TRUE(AddSpur(model, *pFace, at(0, 0), at(4, 6)));
        }
        ExpectSound(model.GetHistory());
        {
            Step step(model);
            const Face* pPart = Split(model, *pFace, at(4, 6), at(10, 10));
            ASSERT_NE(pPart, nullptr);
            EXPECT_EQ(pPart->GetLoops().size(), 1u);
        }
        EXPECT_NEAR(GetFaceArea(model.GetHistory()), 100.0, 1e-8);
        EXPECT_NEAR(std::abs(pFace->GetArea(nullptr) - 50.0), 10.0, 1e-8);
        ExpectSound(model.GetHistory());
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(FaceSketch, BridgesToAHoleAndCutsThroughItWithASecondEdge)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Face* pFace = nullptr;
        {
            Step step(model);
            pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10), {Reversed(MakeRectangle(at, 4, 4, 6, 6))});
        }
        {
            Step step(model);
            EXPECT_EQ(Split(model, *pFace, at(4, 4), at(0, 0)), nullptr);
        }
        EXPECT_EQ(pFace->GetLoops().size(), 1u);
        EXPECT_NEAR(pFace->GetArea(nullptr), 96.0, 1e-8);
        ExpectSound(model.GetHistory());
        {
            Step step(model);
            const Face* pPart = Split(model, *pFace, at(6, 6), at(10, 10));
            ASSERT_NE(pPart, nullptr);
            EXPECT_NEAR(pPart->GetArea(nullptr), 48.0, 1e-8);
        }
        EXPECT_NEAR(pFace->GetArea(nullptr), 48.0, 1e-8);
        ExpectSound(model.GetHistory());
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(FaceSketch, CutsThePocketOfAHoleOff)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        // The hole is an L; the edge across its notch leaves a triangle of face between them.
        const Polygon hole{at(4, 4), at(6, 4), at(6, 5), at(5, 5), at(5, 6), at(4, 6)};
        Face* pFace = nullptr;
        {
            Step step(model);
            pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10), {Reversed(hole)});
        }
        {
            Step step(model);
            const Face* pPart = Split(model, *pFace, at(6, 5), at(5, 6));
            ASSERT_NE(pPart, nullptr);
            EXPECT_NEAR(pPart->GetArea(nullptr), 0.5, 1e-8);
        }
        EXPECT_EQ(pFace->GetLoops().size(), 2u);
        EXPECT_NEAR(pFace->GetArea(nullptr), 96.5, 1e-8);
        ExpectSound(model.GetHistory());
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(FaceSketch, HandsEachHoleToThePartThatItLiesIn)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Face* pFace = nullptr;
        Face* pPart = nullptr;
        {
            Step step(model);
            std::vector<Polygon> aHoles;
            for (const double u : {1.0, 2.5, 6.0, 7.5, 9.0})
                aHoles.push_back(Reversed(MakeRectangle(at, u, 4, u + 0.5, 5)));
            pFace = &model.AddFace({at(0, 0), at(5, 0), at(10, 0), at(10, 10), at(5, 10), at(0, 10)}, aHoles);
            pPart = Split(model, *pFace, at(5, 0), at(5, 10));
        }
        ASSERT_NE(pPart, nullptr);
        const std::size_t nLeft = pFace->GetBox().lower.distSqrd(at(0, 0)) < pPart->GetBox().lower.distSqrd(at(0, 0)) ? 0 : 1;
        EXPECT_EQ(pFace->GetLoops().size() + pPart->GetLoops().size(), 7u) << nLeft;
        EXPECT_NEAR(pFace->GetArea(nullptr) + pPart->GetArea(nullptr), 97.5, 1e-8);
        EXPECT_NEAR(std::abs(pFace->GetArea(nullptr) - pPart->GetArea(nullptr)), 0.5, 1e-8);
        ExpectSound(model.GetHistory());
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(FaceSketch, RefusesChordsThatLeaveTheFace)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Face* pFace = nullptr;
    {
        Step step(model);
        pFace = &model.AddFace({at(0, 0), at(4, 0), at(4, 4), at(2, 1), at(0, 4)}, {Reversed(MakeRectangle(at, 1, 0.5, 3, 0.75))});
    }
    const std::pair<Point3d, Point3d> aEdges[] = {
        {at(0, 4), at(4, 4)},       // over the notch
        {at(1, 0.5), at(3, 0.75)},  // through the hole
        {at(0, 0), at(5, 5)},       // to no corner
        {at(0, 0), at(4, 0)},       // a side of the face
    };
    for (const auto& [a, b] : aEdges)
    {
        Step step(model, true);
        Edge& edge = model.AddEdge(a, b);
        const std::uint64_t nUse = edge.GetUse();
        Face* pPart = nullptr;
        EXPECT_FALSE(pFace->SplitByEdge(edge, &pPart, false));
        EXPECT_EQ(edge.GetUse(), nUse);
    }
    ExpectSound(model.GetHistory());
}

TEST(FaceSketch, SplitsAFaceOfALargeBodyAsCheaplyAsOneOfASmallOne)
{
    // What a step touches is what it costs in time and memory.
    std::vector<std::size_t> aTouched;
    for (const int nCells : {3, 12})
    {
        PolygonModel model;
        Face* pCell = nullptr;
        {
            Step step(model);
            std::vector<Face*> aFaces = model.AddBlockFaces(GetFrames().front(), Point3d(0, 0, -1), Point3d(nCells, nCells, 0));
            aFaces[1]->Delete(false);
            aFaces.erase(aFaces.begin() + 1);
            for (int u = 0; u < nCells; ++u)
                for (int v = 0; v < nCells; ++v)
                    aFaces.push_back(&model.AddFace(MakeRectangle(GetFrames().front(), u, v, u + 1, v + 1)));
            pCell = aFaces.back();
            model.AddBody({aFaces});
        }
        const Body& body = *pCell->GetBody();
        const Interval3d before = body.GetCachedBox();
        {
            Step step(model);
            Split(model, *pCell, Point3d(nCells - 1, nCells - 1, 0), Point3d(nCells, nCells, 0));
        }
        EXPECT_TRUE(body.GetCachedBox().isEqual(before, 0.0));
        aTouched.push_back(model.GetHistory().GetDeltas().back()->GetObjectIDs().size());
    }
    EXPECT_EQ(aTouched[0], aTouched[1]);
}

TEST(AddInnerFace, MakesAHoleThatTheInnerFaceFills)
{
    for (const Frame& at : GetFrames())
        for (const bool bOpposite : {false, true})
        {
            SCOPED_TRACE(at.pName);
            PolygonModel model;
            Face* pOuter = nullptr;
            Face* pInner = nullptr;
            {
                Step step(model);
                pOuter = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
                const Polygon rectangle = MakeRectangle(at, 2, 2, 5, 6);
                pInner = &model.AddFace(bOpposite ? Reversed(rectangle) : rectangle);
            }
            {
                Step step(model);
                EXPECT_TRUE(pOuter->AddInnerFace(pInner));
            }
            EXPECT_NEAR(pOuter->GetArea(nullptr), 88.0, 1e-8);
            EXPECT_NEAR(pInner->GetArea(nullptr), 12.0, 1e-8);
            const Coedge& coedge = *pInner->GetOuterLoop()->GetCoedge();
            EXPECT_EQ(coedge.GetPartner()->GetFace(), pOuter);
            EXPECT_EQ(coedge.GetPartner()->IsForward() == coedge.IsForward(), bOpposite);
            ExpectSound(model.GetHistory());
            ExpectUndoRedoRestores(model.GetHistory());
        }
}

TEST(AddInnerFace, TakesTheHolesWithinTheInnerFaceAlong)
{
    for (const bool bOpposite : {false, true})
    {
        PolygonModel model;
        const Frame& at = GetFrames()[1];
        Face* pOuter = nullptr;
        Face* pMiddle = nullptr;
        {
            Step step(model);
            pOuter = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
            EXPECT_TRUE(pOuter->AddInnerFace(&model.AddFace(MakeRectangle(at, 3, 3, 4, 4))));
            EXPECT_TRUE(pOuter->AddInnerFace(&model.AddFace(MakeRectangle(at, 8, 8, 9, 9))));
            const Polygon rectangle = MakeRectangle(at, 2, 2, 5, 5);
            pMiddle = &model.AddFace(bOpposite ? Reversed(rectangle) : rectangle);
            EXPECT_TRUE(pOuter->AddInnerFace(pMiddle));
        }
        EXPECT_NEAR(pOuter->GetArea(nullptr), 100.0 - 9.0 - 1.0, 1e-9);
        EXPECT_NEAR(pMiddle->GetArea(nullptr), 9.0 - 1.0, 1e-9);
        EXPECT_NEAR(GetFaceArea(model.GetHistory()), 100.0, 1e-9);
        ExpectSound(model.GetHistory());
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(AddInnerFace, LeavesSpursAndBridgesOfTheInnerFaceToIt)
{
    PolygonModel model;
    const Frame& at = GetFrames()[2];
    Face* pOuter = nullptr;
    Face* pInner = nullptr;
    {
        Step step(model);
        pInner = &model.AddFace(MakeRectangle(at, 2, 2, 8, 8), {Reversed(MakeRectangle(at, 4, 4, 6, 6))});
        EXPECT_TRUE(AddSpur(model, *pInner, at(8, 8), at(7, 7)));
        EXPECT_EQ(Split(model, *pInner, at(2, 2), at(4, 4)), nullptr);
        pOuter = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
        EXPECT_TRUE(pOuter->AddInnerFace(pInner));
    }
    std::vector<Coedge*> aCoedges;
    EXPECT_EQ(pOuter->GetLoops()[1]->GetCoedges(aCoedges), 4u);
    EXPECT_NEAR(pOuter->GetArea(nullptr), 64.0, 1e-7);
    ExpectSound(model.GetHistory());
}

TEST(AddInnerFace, RefusesWhatDoesNotFit)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Face* pOuter = nullptr;
    {
        Step step(model);
        pOuter = &model.AddFace({at(0, 0), at(10, 0), at(10, 10), at(0, 10), at(0, 5)}, {Reversed(MakeRectangle(at, 6, 6, 8, 8))});
    }
    const Polygon aPolygons[] = {
        {at(1, 1, 0.1), at(2, 1, 0.1), at(2, 2, 0.1)},              // beside the plane
        {at(1, 1), at(2, 1), at(2, 2, 0.5)},                        // through the plane
        MakeRectangle(at, 8, 8, 12, 12),                            // over the border
        MakeRectangle(at, 6.5, 6.5, 7.5, 7.5),                      // in the hole
        MakeRectangle(at, 5, 5, 9, 9),                              // around the hole is well, see below
        {at(0, 0), at(3, 3), at(0, 5)},                             // along a side that the face has
    };
    const bool aFits[] = {false, false, false, false, true, false};
    for (std::size_t n = 0; n < std::size(aPolygons); ++n)
    {
        Step step(model, true);
        EXPECT_EQ(pOuter->AddInnerFace(&model.AddFace(aPolygons[n])), aFits[n]) << n;
    }
    EXPECT_FALSE(pOuter->AddInnerFace(pOuter));
    EXPECT_FALSE(pOuter->AddInnerFace(nullptr));
    ExpectSound(model.GetHistory());
}

TEST(AddInnerFace, BringsLooseFacesIntoTheShell)
{
    PolygonModel model;
    const Frame& at = GetFrames().front();
    Step step(model);
    Face& outer = model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
    const Body& body = model.AddBody({{&outer}});
    Face& inner = model.AddFace(MakeRectangle(at, 2, 2, 5, 5));
    Face& wall = model.AddFace({at(2, 2), at(5, 2), at(5, 2, 3), at(2, 2, 3)});
    EXPECT_TRUE(outer.AddInnerFace(&inner));
    EXPECT_EQ(inner.GetBody(), &body);
    EXPECT_EQ(wall.GetShell(), outer.GetShell());
}
} // namespace QRV
