#include "support/PolygonModel.h"

#include <cmath>

namespace QRV
{
namespace
{
/// An L of area 3 with a spur from its inner corner (1, 1) to (0.5, 0.5).
Polygon MakeLWithSpur(const Frame& at)
{
    return {at(0, 0), at(2, 0), at(2, 1), at(1, 1), at(0.5, 0.5), at(1, 1), at(1, 2), at(0, 2)};
}
} // namespace

TEST(Loop, AreaHasTheSignOfItsSenseAndKeepsItsDigitsFarAway)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Step step(model);
        Face& face = model.AddFace(MakeLWithSpur(at));
        Loop& loop = *face.GetOuterLoop();
        const Plane plane = face.GetPlane();
        EXPECT_NEAR(loop.GetSignedArea(plane), 3.0, 1e-11);
        EXPECT_NEAR(loop.GetArea(nullptr), 3.0, 1e-11);
        EXPECT_EQ(loop.GetArea(&Transf3d::kIdentity), 0.0);
        loop.Reverse();
        EXPECT_NEAR(loop.GetSignedArea(plane), -3.0, 1e-11);
    }
}

TEST(Loop, TellsOnWhichSideAPointLies)
{
    struct Case
    {
        double u, v;
        nLoopSide nSide;
    };
    const Case aCases[] = {
        {0.5, 1.5, nLoopSide::nInside},   {1.5, 0.5, nLoopSide::nInside},   {1.5, 1.5, nLoopSide::nOutside},
        {-0.1, 1.0, nLoopSide::nOutside}, {2.5, 1.0, nLoopSide::nOutside},  {0.0, 1.0, nLoopSide::nOn},
        {1.0, 1.0, nLoopSide::nOn},       {1.5, 1.0, nLoopSide::nOn},       {0.75, 0.75, nLoopSide::nOn},
        {0.25, 0.5, nLoopSide::nInside},  {0.75, 0.5, nLoopSide::nInside},  {0.5, 0.75, nLoopSide::nInside},
        {0.25, 1.0, nLoopSide::nInside},  {-1.0, 0.0, nLoopSide::nOutside}, {1.0, 0.5, nLoopSide::nInside},
    };
    for (const Frame& at : GetFrames())
    {
        PolygonModel model;
        Step step(model);
        const Loop& loop = *model.AddFace(MakeLWithSpur(at)).GetOuterLoop();
        for (const Case& test : aCases)
            EXPECT_EQ(loop.FindSide(at(test.u, test.v)), test.nSide) << at.pName << ' ' << test.u << ' ' << test.v;
    }
}

TEST(Loop, ContainsALoopByWhatIsNotOnIt)
{
    struct Case
    {
        const char* pName;
        std::vector<std::pair<double, double>> aCorners;
        bool bInside;
    };
    // Against the L, whose corners are (0, 0), (2, 0), (2, 1), (1, 1), (1, 2) and (0, 2).
    const Case aCases[] = {
        {"in an arm", {{0.25, 1.25}, {0.75, 1.25}, {0.75, 1.75}, {0.25, 1.75}}, true},
        {"in the notch", {{1.25, 1.25}, {1.75, 1.25}, {1.75, 1.75}, {1.25, 1.75}}, false},
        {"around it", {{-1, -1}, {3, -1}, {3, 3}, {-1, 3}}, false},
        {"all corners on it, first side over the notch", {{2, 1}, {1, 2}, {0, 0}}, false},
        {"all corners on it, sides within", {{1, 0}, {1, 1}, {0, 1}}, true},
        {"first side along it", {{0, 0}, {1, 0}, {1, 1}}, true},
        {"first side along it, in the notch", {{2, 1}, {1, 1}, {1, 2}}, false},
    };
    for (const Frame& at : GetFrames())
    {
        PolygonModel model;
        Step step(model);
        const Loop& outer = *model.AddFace(MakeLWithSpur(at)).GetOuterLoop();
        for (const Case& test : aCases)
        {
            Polygon polygon;
            for (const auto& [u, v] : test.aCorners)
                polygon.push_back(at(u, v));
            EXPECT_EQ(outer.ContainsLoop(model.AddLoop(polygon)), test.bInside) << at.pName << ": " << test.pName;
        }
    }
}

TEST(Face, FindsItsPlaneAgainWithTheSideOfItsOutline)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Step step(model);
        Face& face = model.AddFace(Reversed(MakeLWithSpur(at)));
        const Plane before = face.GetPlane();
        face.Changed(nChangePlane);
        EXPECT_FALSE(face.GetCachedPlane().isValid());
        EXPECT_TRUE(face.GetPlane().isEqual(before, 1e-9, 1e-18));
        EXPECT_LT(face.GetPlane().normal % at.z, 0.0);
    }
}

TEST(Face, IsNotMisledByCornersNearlyInLine)
{
    PolygonModel model;
    Step step(model);
    // The first three corners leave a line by 1e-11 only, and out of the plane at that.
    Face& face =
        model.AddFace({Point3d(0, 0, 0), Point3d(1, 0, 1e-11), Point3d(2, 0, 0), Point3d(2, 2, 0), Point3d(0, 2, 0)});
    face.Changed(nChangePlane);
    for (const double y : {0.0, 2.0})
        EXPECT_NEAR(face.GetPlane().dist(Point3d(0, y, 0)), 0.0, 1e-10);
    EXPECT_GT(face.GetPlane().normal[2], 0.999);
}

TEST(Face, BringsTheOutlineToTheFrontOnlyWhenTheFirstLoopIsNone)
{
    PolygonModel model;
    Step step(model);
    const Frame& at = GetFrames().front();
    Face& face = model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
    Loop* pOutline = face.GetOuterLoop();
    Loop& hole = model.AddLoop(Reversed(MakeRectangle(at, 4, 4, 5, 5)));
    face.AddLoop(&hole, true);
    EXPECT_TRUE(face.ChooseOuterLoop());
    EXPECT_EQ(face.GetLoops(), (std::vector<Loop*>{pOutline, &hole}));
    EXPECT_FALSE(face.ChooseOuterLoop());

    Loop& larger = model.AddLoop(MakeRectangle(at, -5, -5, 20, 20));
    face.AddLoop(&larger, false);
    EXPECT_FALSE(face.ChooseOuterLoop());
    EXPECT_EQ(face.GetOuterLoop(), pOutline);
}

TEST(Face, AddsOnlyLoopsThatNoOtherFaceHas)
{
    PolygonModel model;
    const Frame& at = GetFrames().front();
    Face* pFace = nullptr;
    {
        Step step(model);
        pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10), {Reversed(MakeRectangle(at, 4, 4, 5, 5))});
        Face& other = model.AddFace(MakeRectangle(at, 20, 20, 30, 30));
        EXPECT_FALSE(other.AddLoop(pFace->GetLoops()[1], false));
        EXPECT_EQ(other.GetLoops().size(), 1u);
    }
    Step step(model);
    EXPECT_TRUE(pFace->AddLoop(pFace->GetLoops()[1], true));
    EXPECT_EQ(pFace->GetLoops().size(), 2u);
    EXPECT_TRUE(model.GetHistory().GetOpenDelta()->GetObjectIDs().empty());
}

TEST(Face, ReversedTwiceIsTheSame)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Face* pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10), {Reversed(MakeRectangle(at, 4, 4, 5, 5))});
    const std::string strBefore = Describe(model.GetHistory());
    {
        Step step(model);
        pFace->Reverse();
        EXPECT_GT(pFace->GetPlane().normal % -at.z, 0.999);
        EXPECT_NEAR(pFace->GetArea(nullptr), 99.0, 1e-9);
    }
    ExpectSound(model.GetHistory());
    EXPECT_NE(Describe(model.GetHistory()), strBefore);
    InStep(model, [&] { pFace->Reverse(); });
    EXPECT_EQ(Describe(model.GetHistory()), strBefore);
}
} // namespace QRV
