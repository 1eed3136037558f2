#include "geometry/SeededGeometry.h"

#include <gtest/gtest.h>

namespace QRV
{
namespace
{
const Interval3d kUnitBox(Point3d(0, 0, 0), Point3d(1, 1, 1));

TEST(Interval3d, NullBoxesKeepTheirRules)
{
    const Interval3d null;
    EXPECT_TRUE(null <= kUnitBox);
    EXPECT_TRUE(null <= null);
    EXPECT_FALSE(kUnitBox <= null);
    EXPECT_FALSE(null & kUnitBox);
    EXPECT_FALSE(null & Point3d());
    EXPECT_TRUE((null + kUnitBox).isEqual(kUnitBox, 0));
    EXPECT_TRUE((kUnitBox + null).isEqual(kUnitBox, 0));
    EXPECT_TRUE((null * Transf3d::rotation(Line3d::kZAxis, 1)).isNull());
    EXPECT_TRUE(null.isEqual(Interval3d(Point3d(5, 5, 5), Point3d(4, 4, 4), 0)));
    EXPECT_FALSE(null.isEqual(kUnitBox));
    EXPECT_FALSE(null.boundariesTouch(kUnitBox, 1));
    EXPECT_FALSE(null.getBoundsPoints().first);
    EXPECT_EQ(null.getBoundsPoints().second[5].y, 1e30);
    EXPECT_FALSE(null.intersectsPlane(Plane(Point3d(), Vector3d::kXDir), 1));

    // Emptiness need not come from the constructor; a box reversed on one axis is as empty.
    Interval3d reversed(Point3d(0, 0, 0), Point3d(5, -1, 5), 0);
    for (const double d : {reversed.length(), reversed.lengthSqrd(), reversed.length(0), reversed.area(),
                           reversed.perimeter(), reversed.volume()})
        EXPECT_EQ(d, 0);
    EXPECT_TRUE((kUnitBox + reversed).isEqual(kUnitBox, 0));
    EXPECT_TRUE((reversed + kUnitBox).isEqual(kUnitBox, 0));
    reversed.enlarge(10);
    EXPECT_TRUE(reversed.isNull());
    reversed += Point3d(7, 8, 9);
    EXPECT_TRUE(reversed.isEqual(Interval3d(Point3d(7, 8, 9)), 0));
}

TEST(Interval3d, IsNullOnlyBeyondTheSlack)
{
    for (std::size_t i = 0; i < 3; ++i)
    {
        Interval3d box = kUnitBox;
        box.lower[i] = 1;
        box.upper[i] = 1 - 1e-13;
        EXPECT_FALSE(box.isNull()) << i;
        box.upper[i] = 1 - 1e-11;
        EXPECT_TRUE(box.isNull()) << i;
    }
}

TEST(Interval3d, TouchesAndHoldsWithinItsSlackOnEveryAxisAndSide)
{
    for (std::size_t i = 0; i < 3; ++i)
        for (const double dSide : {-1.0, 1.0})
        {
            Vector3d step;
            step[i] = dSide;
            const auto moved = [&](double d)
            { return Interval3d(Point3d() + step * d, Point3d(1, 1, 1) + step * d, 0); };
            EXPECT_TRUE(kUnitBox & moved(1 + 5e-13)) << i << dSide;
            EXPECT_FALSE(kUnitBox & moved(1 + 3e-12)) << i << dSide;
            EXPECT_TRUE(moved(2e-12) <= kUnitBox)
                << i << dSide; // the slack is 3e-12 for corners of rectangular length 3
            EXPECT_FALSE(moved(4e-12) <= kUnitBox) << i << dSide;
            Point3d p(0.5, 0.5, 0.5);
            p[i] += dSide * (0.5 + 2e-12);
            EXPECT_TRUE(kUnitBox & p) << i << dSide;
            p[i] += dSide * 2e-12;
            EXPECT_FALSE(kUnitBox & p) << i << dSide;
            EXPECT_TRUE(kUnitBox.boundariesTouch(moved(1), 1e-9)) << i << dSide;
        }
    EXPECT_FALSE(kUnitBox.boundariesTouch(Interval3d(Point3d(0.1, 0.1, 0.1), Point3d(0.9, 0.9, 0.9)), 0.05));
    // The relative slack lets noise of large coordinates through.
    EXPECT_TRUE(Interval3d(Point3d(1e6, 0, 0), Point3d(1e6 + 1, 1, 1)) & Point3d(1e6 + 1 + 5e-7, 0.5, 0.5));
}

TEST(Interval3d, MeasuresWhatItSpans)
{
    const Interval3d box(Point3d(1, 5, 4), Point3d(3, 2, 0));
    EXPECT_TRUE(box.lower.isEqual(Point3d(1, 2, 0), 0));
    EXPECT_EQ(box.volume(), 24);
    EXPECT_EQ(box.area(), 52);
    EXPECT_EQ(box.perimeter(), 36);
    EXPECT_EQ(box.length(1), 3);
    EXPECT_EQ(box.lengthSqrd(), 29);
    EXPECT_TRUE(box.mid().isEqual(Point3d(2, 3.5, 2), 0));
    EXPECT_TRUE(
        Interval3d(Point3d(1, 1, 1), 0.5).isEqual(Interval3d(Point3d(0.5, 0.5, 0.5), Point3d(1.5, 1.5, 1.5)), 0));
    EXPECT_EQ(Interval3d(0).upper.x, 0);
    EXPECT_FALSE((box * Interval3d(Point3d(), Point3d(2, 3, 1))).isEqual(box));
    EXPECT_TRUE((box * Interval3d(Point3d(), Point3d(0.5, 3, 1))).isNull());
}

TEST(Interval3d, ExtremeCornersBoundAllCorners)
{
    SeededGeometry random(31);
    for (int i = 0; i < 200; ++i)
    {
        const Interval3d box = random.Box(3);
        const Vector3d direction = random.Vector(1);
        const Plane plane(random.Point(3), random.Vector(1));
        bool bAbove = false;
        bool bBelow = false;
        for (const Point3d& corner : box.getBoundsPoints().second)
        {
            EXPECT_LE(box.lowerInDirection(direction) % direction, corner % direction) << i;
            EXPECT_GE(box.upperInDirection(direction) % direction, corner % direction) << i;
            bAbove |= plane.dist(corner) >= 0;
            bBelow |= plane.dist(corner) <= 0;
        }
        EXPECT_EQ(box.intersectsPlane(plane, 1e-12), bAbove && bBelow) << i;
    }
    EXPECT_TRUE(kUnitBox.lowerInDirection(Vector3d(-0.0, 0, -0.0)).isEqual(kUnitBox.lower, 0));
    EXPECT_TRUE(kUnitBox.upperInDirection(Vector3d(0, -0.0, 0)).isEqual(kUnitBox.upper, 0));
    EXPECT_TRUE(kUnitBox.intersectsPlane(Plane(Point3d(1 + 1e-9, 0, 0), Vector3d::kXDir), 1e-8));
    EXPECT_TRUE(kUnitBox.intersectsPlane(Plane(Point3d(1 + 1e-9, 0, 0), -Vector3d::kXDir), 1e-8));
    EXPECT_FALSE(kUnitBox.intersectsPlane(Plane(Point3d(1 + 1e-9, 0, 0), -Vector3d::kXDir), 1e-10));
}

TEST(Interval3d, TransformedHoldsWhatItHeld)
{
    SeededGeometry random(32);
    for (int i = 0; i < 200; ++i)
    {
        const Interval3d box = random.Box(3);
        const Transf3d t = random.Affine();
        const Interval3d around = box * t;
        const Vector3d inside(std::abs(random.Number(1)), std::abs(random.Number(1)), std::abs(random.Number(1)));
        EXPECT_TRUE(around & (t * (box.lower + (box.upper - box.lower).getScaled(inside)))) << i;
        // No smaller box does: each side carries a corner.
        Interval3d corners;
        for (const Point3d& corner : box.getBoundsPoints().second)
            corners += t * corner;
        EXPECT_TRUE(around.isEqual(corners, 1e-28)) << i;
    }
}

TEST(Interval3d, RaysAlongAnAxisAndOnASideAreSeen)
{
    struct Row
    {
        const char* pName;
        Line3d ray;
        double dTol;
        double tMax;
        bool bHit;
    };
    const Row aRows[] = {
        {"along x", {Point3d(-1, 0.5, 0.5), Vector3d::kXDir}, 0, 1e30, true},
        {"along x, too short", {Point3d(-1, 0.5, 0.5), Vector3d::kXDir}, 0, 0.9, false},
        {"away", {Point3d(2, 0.5, 0.5), Vector3d::kXDir}, 0, 1e30, false},
        {"away within the tolerance", {Point3d(1.05, 0.5, 0.5), Vector3d::kXDir}, 0.1, 1e30, true},
        {"in a side", {Point3d(-1, 1, 0.5), Vector3d::kXDir}, 0, 1e30, true},
        {"in a side but for noise", {Point3d(-1, -5e-13, 0.5), Vector3d::kXDir}, 0, 1e30, true},
        {"beside a side", {Point3d(-1, 1 + 1e-9, 0.5), Vector3d::kXDir}, 0, 1e30, false},
        {"beside within the tolerance", {Point3d(-1, 1 + 1e-9, 0.5), Vector3d::kXDir}, 1e-8, 1e30, true},
        {"past a corner within the tolerance", {Point3d(0.95, -1, 0.5), Vector3d(0.1, 1, 0)}, 0.1, 1e30, true},
        {"past a corner", {Point3d(0.95, -1, 0.5), Vector3d(0.1, 1, 0)}, 0.01, 1e30, false},
        {"from inside", {Point3d(0.5, 0.5, 0.5), -Vector3d::kZDir}, 0, 1e30, true},
        {"no direction", {Point3d(0.5, 0.5, 0.5), Vector3d()}, 0, 1e30, false},
    };
    for (const Row& row : aRows)
        EXPECT_EQ(kUnitBox.intersectsRay(row.ray, row.dTol, row.tMax), row.bHit) << row.pName;

    double t0 = 1e30;
    double t1 = -1e30;
    const Line3d beside(Point3d(-1, 1 + 1e-6, 0.5), Vector3d(2, 0, 0));
    EXPECT_FALSE(kUnitBox.boundsLine(beside, t0, t1, 0));
    EXPECT_EQ(t0, 1e30);
    ASSERT_TRUE(kUnitBox.boundsLine(beside, t0, t1, 1e-6));
    EXPECT_NEAR(t0, 0.5, 1e-5);
    EXPECT_NEAR(t1, 1, 1e-5);
    EXPECT_FALSE(kUnitBox.boundsLine(Line3d::kNull, t0, t1, 0));
}

TEST(Interval2d, UnitesAndHoldsByPlainComparison)
{
    const Interval2d box(Point2d(1, 0), Point2d(0, 2));
    const Interval2d null;
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(null <= box);
    EXPECT_FALSE(null & box);
    EXPECT_TRUE((null + box) <= box && box <= (box + null));
    Interval2d grown = null;
    grown += Point2d(3, 4);
    EXPECT_TRUE(grown & Point2d(3, 4));
    EXPECT_EQ(grown.length(), 0);
    grown += box;
    EXPECT_EQ(grown.length(), 5);
    EXPECT_EQ(grown.length(1), 4);
    EXPECT_FALSE(grown <= box);
    EXPECT_TRUE(Interval2d(Point2d(1 + 5e-13, 2), Point2d(2, 3)) & box);
    EXPECT_FALSE(Interval2d(Point2d(1 + 3e-12, 2), Point2d(2, 3)) & box);
    EXPECT_TRUE((box * Interval2d(Point2d(2, 2), Point2d(3, 3))).isNull());
    grown.enlarge(1);
    EXPECT_TRUE(grown.mid().isEqual(Point2d(1.5, 2)));
    EXPECT_EQ(grown.upper.y, 5);
}
} // namespace
} // namespace QRV
