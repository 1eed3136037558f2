// Polylines look at themselves alone, so that lines may run through one another uncut. What is drawn among them later
// must not make faces of what bounds nothing.

#include "support/TestModel.h"

namespace QRV
{
namespace
{
struct Sketch
{
    const char* pName;
    std::function<void(TestModel&)> draw;
    std::size_t nFaces;
};

TEST(UncutLines, BoundNoFaceWhereTheyRunThroughOneAnother)
{
    const Sketch aSketches[] = {
        {"the closing line makes a bow tie",
         [](TestModel& model)
         {
             model.Line({0, 1, 0}, {3, 0, 0});
             model.Polyline({{3, 1, 0}, {1, 0, 0}}, false);
             model.Line({0, 1, 0}, {1, 0, 0});
             model.Line({3, 1, 0}, {3, 0, 0});
         },
         0},
        {"a corner lies on another side",
         [](TestModel& model)
         {
             model.Line({0, 0, 0}, {2, 0, 0});
             model.Polyline({{1, 0, 0}, {2, 1, 0}, {0, 1, 0}}, false);
             model.Line({0, 1, 0}, {0, 0, 0});
             model.Line({1, 0, 0}, {2, -1, 0});
             model.Line({2, -1, 0}, {2, 0, 0});
         },
         1},
        {"two corners stand in one place",
         [](TestModel& model)
         {
             model.Line({0, 2, 0}, {1, 1, 0});
             model.Polyline({{2, 2, 0}, {1, 1, 0}, {0, 0, 0}}, false);
             model.Polyline({{0, 2, 0}, {2, 2, 0}}, false);
             model.Line({0, 2, 0}, {0, 0, 0});
         },
         0},
    };
    for (const Sketch& sketch : aSketches)
    {
        SCOPED_TRACE(sketch.pName);
        TestModel model;
        sketch.draw(model);
        EXPECT_EQ(model.Count(nFaceType), sketch.nFaces);
        ExpectUndoRedoRestores(model);
    }
}

TEST(UncutLines, StayOutOfAFaceThatFormsAroundThem)
{
    TestModel model;
    model.Polyline({{1, 1, 0}, {3, 3, 0}}, false);
    model.Polyline({{0, 2, 0}, {3, 2, 0}}, false); // through the first, from what becomes a corner
    model.Outline({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 2, 0}});
    EXPECT_EQ(model.Count(nFaceType), 1u);
    EXPECT_DOUBLE_EQ(model.GetArea(), 16.0);
    ExpectSound(model);
    // A line through both cuts them, and what it makes is drawn in.
    model.Line({0, 4, 0}, {4, 0, 0});
    EXPECT_EQ(model.Count(nFaceType), 2u);
    EXPECT_DOUBLE_EQ(model.GetArea(), 16.0);
    ExpectUndoRedoRestores(model);
}

TEST(UncutLines, OfTwoSheetsAddedToABodyEachIsAShell)
{
    TestModel model;
    std::uint64_t nBody = INVALID_ID;
    ExpectGood(APICreateEmptyBody(model.GetID(), nBody));
    // Three squares at one edge, and one apart from them.
    for (const Point3d& way : {Point3d(0, 1, 0), Point3d(0, 0, 1), Point3d(0, -1, 0)})
        model.Outline({{0, 0, 0}, {1, 0, 0}, Point3d(1, way.y, way.z), way});
    const std::uint64_t nFirst = model.GetIDs(nFaceType).front();
    model.Outline({{5, 0, 0}, {6, 0, 0}, {6, 1, 0}});
    ExpectGood(APIAddFaceComponentToBody(model.GetID(), nFirst, nBody));
    ExpectSound(model);
    ExpectGood(APIAddFaceComponentToBody(model.GetID(), model.GetIDs(nFaceType).back(), nBody));
    EXPECT_EQ(model.Count(nFaceType), 4u);
    EXPECT_EQ(model.Count(nShellType), 3u);
    ExpectUndoRedoRestores(model);
}
} // namespace
} // namespace QRV
