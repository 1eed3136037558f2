#include "support/TestModel.h"

#include <cmath>
#include <numbers>

namespace QRV
{
namespace
{
constexpr double kTwoPi = 2 * std::numbers::pi;

/// As it stands: zero stays zero.
UnitVector3d Direction(double x, double y, double z)
{
    return UnitVector3d(Vector3d(x, y, z), false);
}

/// The arguments of APICreateCircleOrArc, with good defaults.
struct ArcCall
{
    double dRadius = 2.0;
    Point3d center{1, 2, 3};
    UnitVector3d x = Direction(1, 0, 0);
    UnitVector3d y = Direction(0, 1, 0);
    double dStart = 0.0;
    double dEnd = kTwoPi;
    double dAccuracy = 6.0;
    bool bPointsOnly = false;
    Transf3d transform{};
    std::uint64_t nMinSegments = 0;

    Result Run(std::uint64_t nHistory, std::vector<Point3d>& aPoints) const
    {
        return APICreateCircleOrArc(nHistory, dRadius, center, aPoints, x, y, dStart, dEnd, dAccuracy, bPointsOnly,
                                    transform, nMinSegments);
    }
};

/// All edges, or none, carry one and the same true circle.
void ExpectCircle(const TestModel& model, bool bOnCircle, const Point3d& center = {}, double dRadius = 0.0)
{
    EXPECT_EQ(model.Count(nCircleAttributeType), bOnCircle ? 1u : 0u);
    for (const std::uint64_t nEdge : model.GetIDs(nEdgeType))
    {
        double dFound = 0.0;
        Point3d foundCenter;
        UnitVector3d normal;
        UnitVector3d x;
        std::vector<std::uint64_t> aEdges;
        bool bOn = !bOnCircle;
        ASSERT_TRUE(
            APIIsEdgeOnCircleReadOnly(model.GetID(), nEdge, dFound, foundCenter, normal, x, aEdges, bOn).IsGood());
        EXPECT_EQ(bOn, bOnCircle);
        if (!bOn || !bOnCircle)
            continue;
        EXPECT_NEAR(dFound, dRadius, 1e-8);
        EXPECT_NEAR(foundCenter.dist(center), 0.0, 1e-8);
        EXPECT_EQ(aEdges.size(), model.Count(nEdgeType));
    }
}

std::size_t CountSmoothVertices(const TestModel& model)
{
    std::size_t nSmooth = 0;
    for (const std::uint64_t nVertex : model.GetIDs(nVertexType))
        nSmooth += model.IsSmooth(nVertex);
    return nSmooth;
}
} // namespace

TEST(CreateCircleOrArc, HasAsManySegmentsAsItsAccuracyAsksFor)
{
    struct Case
    {
        double dAccuracy;
        double dSweep;
        std::uint64_t nMinSegments;
        std::size_t nSegments;
    };
    const Case aCases[] = {
        {0.75, kTwoPi, 0, 3},
        {6.0, kTwoPi, 0, 24},
        {0.25, kTwoPi, 0, 4}, // pi / acos(0.75) is 4.35
        {-0.25, kTwoPi, 0, 4},
        {0.01, kTwoPi, 0, 22},
        {6.0, kTwoPi / 4, 0, 6},
        {6.0, kTwoPi / 5, 0, 5},
        {6.0, 0.01, 0, 1},
        {6.0, kTwoPi, 30, 30},
        {6.0, kTwoPi / 4, 7, 7},
        {6.0, kTwoPi - 1e-13, 0, 24},
        {250000, kTwoPi / 1000, 0, 1000},
    };
    for (const Case& test : aCases)
    {
        SCOPED_TRACE(::testing::Message() << test.dAccuracy << ", " << test.dSweep);
        const bool bCircle = test.dSweep > 6.28;
        const ArcCall call{.dEnd = test.dSweep, .dAccuracy = test.dAccuracy, .nMinSegments = test.nMinSegments};
        TestModel model;
        std::vector<Point3d> aPoints{Point3d(9, 9, 9)};
        ASSERT_TRUE(call.Run(model.GetID(), aPoints).IsGood());
        ASSERT_EQ(aPoints.size(), test.nSegments + 2); // appended
        for (std::size_t n = 1; n < aPoints.size(); ++n)
            EXPECT_NEAR(aPoints[n].dist(call.center), call.dRadius, 1e-12);
        EXPECT_EQ(model.GetCounts(),
                  (ModelCounts{0, 0, 0, bCircle ? 1u : 0u, test.nSegments, test.nSegments + !bCircle}));
        EXPECT_EQ(CountSmoothVertices(model), bCircle ? test.nSegments : test.nSegments - 1);
        ExpectCircle(model, true, call.center, call.dRadius);
        const double dSides = double(test.nSegments);
        EXPECT_NEAR(model.GetArea(), bCircle ? dSides / 2 * 4 * std::sin(kTwoPi / dSides) : 0.0, 1e-9);
        ExpectUndoRedoRestores(model);
    }
}

TEST(CreateCircleOrArc, RefusesBadInputAndChangesNothing)
{
    const std::pair<const char*, ArcCall> aCases[] = {
        {"no radius", {.dRadius = 1e-6}},
        {"negative radius", {.dRadius = -1}},
        {"accuracy between the meanings", {.dAccuracy = 0.5}},
        {"accuracy just below a triangle", {.dAccuracy = 0.7499}},
        {"accuracy just above half a square", {.dAccuracy = 0.293}},
        {"accuracy 0", {.dAccuracy = 0}},
        {"two sides", {.dAccuracy = -1}},
        {"too fine", {.dAccuracy = 1e9}},
        {"too fine by the chord", {.dAccuracy = 1e-13}},
        {"zero axis", {.x = Direction(0, 0, 0)}},
        {"zero second axis", {.y = Direction(0, 0, 0)}},
        {"parallel axes", {.y = Direction(1, 0, 0)}},
        {"an axis twice too long", {.x = Direction(2, 0, 0)}},
        {"a second axis too short", {.y = Direction(0, 0.5, 0)}},
        {"backward", {.dStart = 1, .dEnd = 0.5}},
        {"no sweep", {.dStart = 1, .dEnd = 1}},
        {"more than a turn", {.dEnd = 6.2831853072}},
        {"too many segments", {.nMinSegments = 1000001}},
        {"endlessly many segments", {.nMinSegments = ~std::uint64_t(0)}},
        {"beyond the numbers", {.dRadius = 9e29, .center = Point3d(9e29, 0, 0)}},
        {"moved beyond the numbers", {.transform = Transf3d::scaling(Point3d(), Vector3d(9e29, 9e29, 9e29))}},
    };
    const TestModel model;
    for (const auto& [pName, call] : aCases)
    {
        SCOPED_TRACE(pName);
        std::vector<Point3d> aPoints{Point3d(1, 1, 1)};
        ExpectRefused(model, Result::nBadInput, [&, &arc = call] { return arc.Run(model.GetID(), aPoints); });
        EXPECT_EQ(aPoints.size(), 1u);
    }
}

TEST(CreateCircleOrArc, CarriesTheCircleOnlyWhereTheTransformLeavesOne)
{
    const Transf3d turned = Transf3d::rotation(Line3d(Point3d(1, 0, 2), Vector3d(1, 2, 3)), 0.7) *
                            Transf3d::scaling(Point3d(), Vector3d(3, 3, 3));
    const Transf3d mirrored = Transf3d::scaling(Point3d(), Vector3d(-2, 2, 2));
    const Transf3d uneven = Transf3d::scaling(Point3d(), Vector3d(1, 2, 3));
    struct Case
    {
        const char* pName;
        Transf3d transform;
        bool bCircle;
        double dScale;
    };
    for (const Case& test :
         {Case{"turned", turned, true, 3}, Case{"mirrored", mirrored, true, 2}, Case{"uneven", uneven, false, 0}})
    {
        SCOPED_TRACE(test.pName);
        const ArcCall call{.transform = test.transform};
        TestModel model;
        std::vector<Point3d> aPoints;
        ASSERT_TRUE(call.Run(model.GetID(), aPoints).IsGood());
        EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 1, 24, 24}));
        ExpectCircle(model, test.bCircle, test.transform * call.center, call.dRadius * test.dScale);
        ExpectUndoRedoRestores(model);
    }
}

TEST(CreateCircleOrArc, SquaresSkewAxesAndLeavesNoCircleWithoutEdges)
{
    TestModel model;
    std::vector<Point3d> aPoints;
    const ArcCall skew{.y = UnitVector3d(Vector3d(1, 1, 0), true), .dEnd = kTwoPi / 4};
    ASSERT_TRUE(skew.Run(model.GetID(), aPoints).IsGood());
    EXPECT_NEAR(aPoints.back().dist(Point3d(1, 4, 3)), 0.0, 1e-12);
    // At 1e9 places within 1e-3 are one.
    TestModel far;
    ASSERT_TRUE((ArcCall{.dRadius = 1e-5, .center = Point3d(1e9, 0, 0)}).Run(far.GetID(), aPoints).IsGood());
    EXPECT_EQ(far.Count(nCircleAttributeType), 0u);
    EXPECT_EQ(far.GetCounts(), (ModelCounts{0, 0, 0, 0, 0, 1}));
    ExpectUndoRedoRestores(far);
}

TEST(CreateCircleOrArc, StaysSoundAlmostInAPlaneOfTheWorld)
{
    for (const double dTilt : {1e-10, 1e-9, 5e-9, 9e-9, 2e-8, 1e-7})
    {
        SCOPED_TRACE(dTilt);
        std::vector<Point3d> aPoints;
        TestModel byPoints;
        ASSERT_TRUE(APICreateCircleOrArcFromPoints(byPoints.GetID(), {1, 2, 0.5}, {0.5, 1, 0.5 + dTilt},
                                                   {0.5, 1.5, 0.5}, aPoints, 0.1, false, Transf3d(), 0, true)
                        .IsGood());
        EXPECT_EQ(byPoints.Count(nCircleAttributeType), 1u);
        ExpectUndoRedoRestores(byPoints);
        for (const bool bTurned : {false, true})
        {
            TestModel model;
            ArcCall call{.x = UnitVector3d(Vector3d(dTilt, 1, 1), true), .y = Direction(0, 1, 0)};
            if (bTurned)
                call.transform = Transf3d::rotation(Line3d(Point3d(), Vector3d(0, 0, 1)), dTilt);
            ASSERT_TRUE(call.Run(model.GetID(), aPoints).IsGood());
            ExpectUndoRedoRestores(model);
        }
    }
}

TEST(CreateCircleOrArc, StaysSoundWhenLinesCutIt)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Circle(at(0, 0), 1.0, at.x, at.y, 6.0);
        const double dArea = model.GetArea();
        model.Line(at(-2, 0.3), at(2, 0.3)); // through chords
        model.Line(at(0, -2), at(0, 2));     // through corners
        EXPECT_EQ(model.Count(nFaceType), 4u);
        EXPECT_NEAR(model.GetArea(), dArea, 1e-8);
        EXPECT_EQ(model.Count(nCircleAttributeType), 1u);
        ExpectUndoRedoRestores(model);
    }
}

TEST(CreateCircleOrArcFromPoints, RunsThroughTheThirdPointToTheSecond)
{
    for (const Frame& at : GetFrames())
        for (const double dThird : {0.3, 2.0, 4.5, 6.0})
        {
            SCOPED_TRACE(::testing::Message() << at.pName << ", " << dThird);
            const auto place = [&](double dAngle) { return at(2 * std::cos(dAngle), 2 * std::sin(dAngle)); };
            const double dSecond = 3.0;
            std::vector<Point3d> aPoints;
            TestModel model;
            ASSERT_TRUE(APICreateCircleOrArcFromPoints(model.GetID(), place(0), place(dSecond), place(dThird), aPoints,
                                                       90.0, false, Transf3d(), 0, false)
                            .IsGood());
            EXPECT_NEAR(aPoints.front().dist(place(0)), 0.0, 1e-8);
            EXPECT_NEAR(aPoints.back().dist(place(dSecond)), 0.0, 1e-8);
            double dNearest = 1.0;
            for (const Point3d& p : aPoints)
                dNearest = std::min(dNearest, p.dist(place(dThird)));
            EXPECT_LT(dNearest, 2 * kTwoPi / 360);
            EXPECT_EQ(model.Count(nFaceType), 0u);
            ExpectCircle(model, model.Count(nCircleAttributeType) == 1, at(0, 0), 2.0);
            ExpectUndoRedoRestores(model);
        }
}

TEST(CreateCircleOrArcFromPoints, RefusesPointsThatGiveNoCircle)
{
    TestModel model;
    const Point3d a(1, 0, 0);
    const Point3d b(2, 0, 0);
    std::vector<Point3d> aPoints;
    const auto draw = [&](const Point3d& p1, const Point3d& p2, const Point3d& p3, bool bFull)
    { return APICreateCircleOrArcFromPoints(model.GetID(), p1, p2, p3, aPoints, 6.0, false, Transf3d(), 0, bFull); };
    for (const bool bFull : {false, true})
    {
        ExpectRefused(model, Result::nBadInput, [&] { return draw(a, b, Point3d(4, 0, 0), bFull); });
        ExpectRefused(model, Result::nBadInput, [&] { return draw(a, a, Point3d(0, 1, 0), bFull); });
    }
    EXPECT_TRUE(aPoints.empty());
    ExpectGood(draw(a, b, Point3d(0, 1, 0), true));
    EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 1, 24, 24}));
    ExpectSound(model);
}

TEST(CreateRectangle, TakesTheReachOfTheThirdPoint)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        std::vector<Point3d> aCorners{Point3d(7, 7, 7)};
        ASSERT_TRUE(APICreateRectangle(model.GetID(), at(0, 0), at(3, 0), at(1, 2), aCorners, false).IsGood());
        ASSERT_EQ(aCorners.size(), 4u);
        const Polygon expected{at(0, 0), at(3, 0), at(3, 2), at(0, 2)};
        for (std::size_t n = 0; n < 4; ++n)
            EXPECT_NEAR(aCorners[n].dist(expected[n]), 0.0, 1e-8);
        EXPECT_EQ(model.GetCounts(), (ModelCounts{0, 0, 0, 1, 4, 4}));
        EXPECT_NEAR(model.GetArea(), 6.0, 1e-7);
        ExpectUndoRedoRestores(model);
    }
}

TEST(CreateRectangle, RefusesBadInputAndDrawsNothingFlat)
{
    TestModel model;
    std::vector<Point3d> aCorners;
    const auto draw = [&](const Point3d& p0, const Point3d& p1, const Point3d& p2)
    { return APICreateRectangle(model.GetID(), p0, p1, p2, aCorners, false); };
    const Point3d o(0, 0, 0);
    const Point3d x(1, 0, 0);
    ExpectRefused(model, Result::nBadInput, [&] { return draw(o, o, x); });
    ExpectRefused(model, Result::nBadInput, [&] { return draw(x, Point3d(1, 5e-13, 0), o); });
    ExpectRefused(model, Result::nBadInput,
                  [&] { return draw(Point3d(9e29, 0, 0), Point3d(0, 9e29, 0), Point3d(9e29, 9e29, 0)); });
    EXPECT_TRUE(aCorners.empty());
    ExpectGood(draw(o, x, Point3d(5, 0, 0)));
    EXPECT_EQ(aCorners.size(), 4u);
    EXPECT_EQ(model.GetCounts(), ModelCounts());
}

TEST(DrawnPoints, MustBeEnoughAndBelowTheLimitOfNumbers)
{
    const TestModel model;
    std::uint64_t nID = 5;
    for (const std::vector<Point3d>& aPoints :
         {std::vector<Point3d>{}, {Point3d()}, {Point3d(), Point3d(0, 1e30, 0)}, {Point3d(), Point3d(0, 0, -1e300)}})
        ExpectRefused(model, Result::nBadInput, [&] { return APICreatePolyline(model.GetID(), aPoints, nID, true); });
    EXPECT_EQ(nID, INVALID_ID);
}

TEST(DrawnPoints, ComputedOnlyLeaveTheRedoBranch)
{
    TestModel model;
    model.Outline({Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(0, 1, 0)});
    ExpectGood(APIUndoHistory(model.GetID()));
    std::vector<Point3d> aPoints;
    EXPECT_TRUE((ArcCall{.bPointsOnly = true}).Run(model.GetID(), aPoints).IsGood());
    EXPECT_EQ(aPoints.size(), 25u);
    ExpectGood(APICreateCircleOrArcFromPoints(model.GetID(), Point3d(1, 0, 0), Point3d(0, 1, 0), Point3d(-1, 0, 0),
                                              aPoints, 6.0, true, Transf3d(), 0, true));
    ExpectGood(APICreateRectangle(model.GetID(), Point3d(), Point3d(1, 0, 0), Point3d(1, 1, 0), aPoints, true));
    ExpectGood(APIRedoHistory(model.GetID()));
    EXPECT_EQ(model.Count(nFaceType), 1u);
}
} // namespace QRV
