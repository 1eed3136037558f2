#include "support/PolygonModel.h"

namespace QRV
{
namespace
{
Face* Split(PolygonModel& model, Face& face, const Point3d& a, const Point3d& b)
{
    Face* pPart = nullptr;
    EXPECT_TRUE(face.SplitByEdge(model.AddEdge(a, b), &pPart, false));
    return pPart;
}
} // namespace

TEST(FaceSketch, RefusesSpursThatDoNotRunInTheFace)
{
    struct Case
    {
        const char* pName;
        double u0, v0, u1, v1;
    };
    const Case aCases[] = {
        {"outside", 0, 0, -1, -1},    {"into the hole", 4, 4, 5, 5},      {"on to another side", 0, 0, 10, 5},
        {"along a side", 0, 0, 5, 0}, {"across the notch", 0, 10, 5, 12}, {"from a place off the face", 1, 1, 2, 2},
    };
    for (const Frame& at : GetFrames())
    {
        PolygonModel model;
        Face* pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10), {Reversed(MakeRectangle(at, 4, 4, 6, 6))});
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
        // Three spurs meet at (5, 5) and make three corners of it.
        Face& face = model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
        model.AddEdge(at(5, 5), at(8, 5));
        model.AddEdge(at(5, 5), at(5, 8));
        ObjectSet done;
        ASSERT_TRUE(face.AddSpurEdge(model.AddEdge(at(0, 0), at(5, 5)), true, done));
        const Point3d a = at(8, 5);
        const Point3d b = at(5, 8);
        const auto expectCorner = [&](const Point3d& tip, double u, double v, const Point3d& from)
        {
            const Coedge* pCorner = face.FindCorner(&model.AddVertex(tip), at.x * u + at.y * v);
            ASSERT_TRUE(pCorner) << u << ' ' << v;
            EXPECT_EQ(pCorner->GetStartVertex(), &model.AddVertex(from)) << u << ' ' << v;
        };
        expectCorner(at(5, 5), 1, -1, a);
        expectCorner(at(5, 5), 1, 1, b);
        expectCorner(at(5, 5), -1, 1, at(0, 0));
        // Along a spur: the corner on whose other side it lies.
        expectCorner(at(5, 5), 1, 0, b);
        expectCorner(at(5, 5), 0, 1, at(0, 0));
        expectCorner(at(10, 0), -1, 1, at(0, 0));
        EXPECT_EQ(face.FindCorner(&model.AddVertex(at(10, 0)), at.x + at.y), nullptr);
    }
}

TEST(FaceSketch, RefusesChordsThatLeaveTheFace)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Face* pFace = &model.AddFace({at(0, 0), at(4, 0), at(4, 4), at(2, 1), at(0, 4)},
                                 {Reversed(MakeRectangle(at, 1, 0.5, 3, 0.75))});
    const std::pair<Point3d, Point3d> aEdges[] = {
        {at(0, 4), at(4, 4)},      // over the notch
        {at(1, 0.5), at(3, 0.75)}, // through the hole
        {at(0, 0), at(5, 5)},      // to no corner
        {at(0, 0), at(4, 0)},      // a side of the face
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
            std::vector<Face*> aFaces =
                model.AddBlockFaces(GetFrames().front(), Point3d(0, 0, -1), Point3d(nCells, nCells, 0));
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
        InStep(model, [&] { Split(model, *pCell, Point3d(nCells - 1, nCells - 1, 0), Point3d(nCells, nCells, 0)); });
        EXPECT_TRUE(body.GetCachedBox().isEqual(before, 0.0));
        aTouched.push_back(model.GetHistory().GetDeltas().back()->GetObjectIDs().size());
    }
    EXPECT_EQ(aTouched[0], aTouched[1]);
}

TEST(AddInnerFace, TakesTheHolesWithinTheInnerFaceAlong)
{
    for (const bool bOpposite : {false, true})
    {
        PolygonModel model;
        const Frame& at = GetFrames()[1];
        Face& outer = model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
        const Polygon middle = MakeRectangle(at, 2, 2, 5, 5);
        Face* pMiddle = nullptr;
        for (const Polygon& inner :
             {MakeRectangle(at, 3, 3, 4, 4), MakeRectangle(at, 8, 8, 9, 9), bOpposite ? Reversed(middle) : middle})
        {
            Step step(model);
            pMiddle = &model.AddFace(inner);
            EXPECT_TRUE(outer.AddInnerFace(pMiddle));
        }
        EXPECT_NEAR(outer.GetArea(nullptr), 100.0 - 9.0 - 1.0, 1e-9);
        EXPECT_NEAR(pMiddle->GetArea(nullptr), 9.0 - 1.0, 1e-9);
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(AddInnerFace, LeavesSpursAndBridgesOfTheInnerFaceToIt)
{
    PolygonModel model;
    const Frame& at = GetFrames()[2];
    Step step(model);
    Face* pInner = &model.AddFace(MakeRectangle(at, 2, 2, 8, 8), {Reversed(MakeRectangle(at, 4, 4, 6, 6))});
    ObjectSet done;
    EXPECT_TRUE(pInner->AddSpurEdge(model.AddEdge(at(8, 8), at(7, 7)), true, done));
    EXPECT_EQ(Split(model, *pInner, at(2, 2), at(4, 4)), nullptr);
    Face* pOuter = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
    EXPECT_TRUE(pOuter->AddInnerFace(pInner));
    std::vector<Coedge*> aCoedges;
    EXPECT_EQ(pOuter->GetLoops()[1]->GetCoedges(aCoedges), 4u);
    EXPECT_NEAR(pOuter->GetArea(nullptr), 64.0, 1e-7);
    ExpectSound(model.GetHistory());
}

TEST(AddInnerFace, RefusesWhatDoesNotFit)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Face* pOuter = &model.AddFace({at(0, 0), at(10, 0), at(10, 10), at(0, 10), at(0, 5)},
                                  {Reversed(MakeRectangle(at, 6, 6, 8, 8))});
    const Polygon aPolygons[] = {
        {at(1, 1, 0.1), at(2, 1, 0.1), at(2, 2, 0.1)}, // beside the plane
        {at(1, 1), at(2, 1), at(2, 2, 0.5)},           // through the plane
        MakeRectangle(at, 8, 8, 12, 12),               // over the border
        MakeRectangle(at, 6.5, 6.5, 7.5, 7.5),         // in the hole
        MakeRectangle(at, 5, 5, 9, 9),                 // around the hole is well, see below
        {at(0, 0), at(3, 3), at(0, 5)},                // along a side that the face has
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
