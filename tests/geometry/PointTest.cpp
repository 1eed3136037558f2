#include "geometry/Finite.h"
#include "geometry/SeededGeometry.h"
#include "geometry/Trigonometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>

namespace QRV
{
namespace
{
TEST(UnitVector3d, IsNormalisedWithoutRoundingAlongTheAxes)
{
    struct Row
    {
        Vector3d given;
        Vector3d expected;
    };
    const Row aRows[] = {
        {{2, 0, 0}, {1, 0, 0}},
        {{-2, 1e-200, 0}, {-1, 0, 0}},
        {{1e-12, -7, 1e-12}, {0, -1, 0}},
        {{0, 0, 1e-11}, {0, 0, 1}},
        {{1e-13, 0, 0}, {0, 0, 0}},
        {{1e-12, 0, 0}, {0, 0, 0}},
        {{0, 3, 4}, {0, 3.0 / 5, 4.0 / 5}},
        {{-2, -4, 4}, {-2.0 / 6, -4.0 / 6, 4.0 / 6}},
    };
    for (const Row& row : aRows)
    {
        const UnitVector3d u(row.given, true);
        EXPECT_TRUE(Vector3d(u).isEqual(row.expected, 0)) << row.given.x << ' ' << row.given.y << ' ' << row.given.z;
    }
    EXPECT_TRUE(UnitVector3d(std::numeric_limits<double>::quiet_NaN(), 0, 0, true).isExactNull());
    EXPECT_EQ(UnitVector3d(3, 0, 0, false).x, 3);
    EXPECT_TRUE(Vector3d(1e-12, 0, 0).getNormalized().isExactNull());
    EXPECT_EQ(Vector3d(2e-12, 0, 0).getNormalized().x, 1);
}

TEST(Comparisons, HoldOnTheirLimitAsTheyPromise)
{
    EXPECT_TRUE(Point3d(0, 3, 4).isEqual(Point3d(), 25));
    EXPECT_FALSE(Point3d(0, 3, 4).isEqual(Point3d(), 24.999));
    EXPECT_TRUE(Point3d(0, -3, 4).isEqualRect(Point3d(), 7));
    EXPECT_FALSE(Point3d(0, -3, 4).isEqualRect(Point3d(), 6.999));
    EXPECT_TRUE(Vector2d(3, 4).isNull(25));

    const UnitVector3d tilted(0.5, std::sqrt(0.75), 0, false);
    EXPECT_FALSE(tilted.isPerpend(UnitVector3d::kXDir, 0.5)); // strict: the dot product is 0.5 exactly
    EXPECT_TRUE(tilted.isPerpend(UnitVector3d::kXDir, 0.5000001));

    EXPECT_TRUE(Point3d(9.99e29, 0, 0).isValid());
    EXPECT_FALSE(Point3d(0, 0, -1e30).isValid());
    EXPECT_FALSE(Point2d(1e30, 0).isValid());
}

TEST(Directions, AreParallelEitherWayAndNeverWithoutLength)
{
    const UnitVector3d x = UnitVector3d::kXDir;
    EXPECT_TRUE(x.isParallel(-x));
    EXPECT_TRUE(x.isParallel(Vector3d(-1e-9, 0, 0)));
    EXPECT_TRUE(x.isParallel(UnitVector3d(1, 0.9e-10, 0, false)));
    EXPECT_FALSE(x.isParallel(UnitVector3d(1, 1.1e-10, 0, false)));
    EXPECT_TRUE(Vector3d(5, 5, 5).isParallel(Vector3d(-2, -2, -2)));
    EXPECT_TRUE(Vector2d(0, 5).isParallel(Vector2d(0, -1)));

    for (const Vector3d& v : {Vector3d(), Vector3d::kXDir, Vector3d(0, 1e-13, 0)})
    {
        EXPECT_FALSE(UnitVector3d().isParallel(v));
        EXPECT_FALSE(Vector3d().isParallel(v));
        EXPECT_FALSE(Vector3d().isParallelNorm(v, kParallelToleranceSqrd));
        EXPECT_FALSE(v.isPerpend(UnitVector3d()));
        EXPECT_FALSE(v.isPerpend(Vector3d()));
        EXPECT_EQ(Vector3d().angle(v), 0);
    }
    EXPECT_FALSE(Vector2d().isParallel(Vector2d::kXDir) || Vector2d().isPerpend(Vector2d::kXDir));
}

TEST(Directions, PerpendicularsStandAcrossAndHaveLengthOne)
{
    SeededGeometry random(11);
    for (int i = 0; i < 500; ++i)
    {
        // Every third lies near the Z axis, where the helper axis changes.
        const Vector3d v = random.Vector(1).getScaled(i % 3 ? Vector3d(4, 4, 4) : Vector3d(0.03, 0.03, 1));
        const UnitVector3d u(v, true);
        for (const Vector3d& across :
             {Vector3d(u.perpend()), v.perpend(), Vector3d(u.CreateArbitraryPerpendicularVector3D())})
        {
            EXPECT_NEAR(across.length(), 1, 1e-14) << i;
            EXPECT_NEAR(across % u, 0, 1e-15) << i;
        }
        EXPECT_GE(u.CreateArbitraryPerpendicularVector3D() % UnitVector3d::kXDir, 0) << i;
    }
    const UnitVector3d y = UnitVector3d::kYDir;
    EXPECT_EQ(y.perpend().x, -1);
    EXPECT_EQ(y.CreateArbitraryPerpendicularVector3D().x, 1);
    EXPECT_EQ(UnitVector3d::kXDir.CreateArbitraryPerpendicularVector3D().y, 1);
    EXPECT_EQ(UnitVector3d(0.0156, 0, 1, true).perpend().y, 0);
    EXPECT_EQ(UnitVector3d(0.0157, 0, 1, true).perpend().y, 1);
    EXPECT_TRUE(Vector3d().perpend().isExactNull());
    EXPECT_TRUE(UnitVector3d().perpend().isExactNull());
    EXPECT_TRUE(UnitVector3d().CreateArbitraryPerpendicularVector3D().isExactNull());
}

TEST(Directions, DominantAxisPrefersTheLowerIndex)
{
    EXPECT_EQ(Vector3d(1, 1, 1).dominantDirection(), 0u);
    EXPECT_EQ(Vector3d(1, -2, 2).dominantDirection(), 1u);
    EXPECT_EQ(Vector3d(-2, 1, 2).dominantDirection(), 0u);
    EXPECT_EQ(UnitVector3d(0, 0.6, -0.8, false).dominantDirection(), 2u);
}

TEST(Angles, SnapAtTheEndsAndTakeCosinesBeyondThem)
{
    constexpr double kPi = std::numbers::pi;
    EXPECT_EQ(AngleFromCosine(1 - 1e-11, 1e-10), 0);
    EXPECT_EQ(AngleFromCosine(-1 + 1e-11, 1e-10), kPi);
    EXPECT_EQ(AngleFromCosine(1.5, 0), 0);
    EXPECT_EQ(AngleFromCosine(-1.5, 0), kPi);
    EXPECT_NEAR(AngleFromCosine(0.5, 1e-10), kPi / 3, 1e-15);
    EXPECT_GT(AngleFromCosine(1 - 1e-9, 1e-10), 4e-5);

    EXPECT_NEAR(Vector3d(3, 0, 0).angle(Vector3d(-2, 2, 0)), 3 * kPi / 4, 1e-15);
    EXPECT_NEAR(UnitVector3d::kZDir.angle(UnitVector3d::kYDir), kPi / 2, 1e-15);
    EXPECT_NEAR(Vector2d(3, 0).angle(Vector2d(0, -2), 1e-10), kPi / 2, 1e-15);

    Point2d p(2, 1);
    p.rotate(kPi / 2);
    EXPECT_TRUE(p.isEqual(Point2d(-1, 2), 1e-30));
    EXPECT_GT(Vector2d(2, 1) % Vector2d(2, 1).perpend().perpend() * -1, 0);
}

TEST(Point3d, IsBetweenWhereTheEndsAreSeenUnderAnObtuseAngle)
{
    const Point3d a(0, 0, 0);
    const Point3d b(2, 0, 0);
    EXPECT_TRUE(Point3d(1, 0, 0).isBetween(a, b));
    EXPECT_TRUE(Point3d(1, 0.99, 0).isBetween(a, b));
    EXPECT_FALSE(Point3d(1, 1.01, 0).isBetween(a, b));
    EXPECT_TRUE(Point3d(-0.9e-6, 0, 0).isBetween(a, b));
    EXPECT_FALSE(Point3d(-1.1e-6, 0, 0).isBetween(a, b));
    EXPECT_TRUE(Point3d(2, 0.9e-6, 0).isBetween(a, b));
}

TEST(Point2d, ProjectsOnALineOfAnyDirection)
{
    SeededGeometry random(13);
    for (int i = 0; i < 100; ++i)
    {
        const Point2d p(random.Number(5), random.Number(5));
        const Point2d origin(random.Number(5), random.Number(5));
        const Vector2d direction(1 + std::abs(random.Number(5)), random.Number(5));
        const Point2d foot = projectPointOnLine(p, origin, direction);
        EXPECT_NEAR((p - foot) % direction, 0, 1e-12) << i;
        EXPECT_NEAR((foot - origin) % direction.perpend(), 0, 1e-12) << i;
    }
}

TEST(IsUsable, RefusesWhatIsNoNumberOrTooLarge)
{
    const Transf3d move = Transf3d::translation(Vector3d(1, 2, 3));
    for (const double d : {std::nan(""), std::numeric_limits<double>::infinity(), -1e30, 1e30})
    {
        EXPECT_FALSE(IsUsable(d));
        for (std::size_t i = 0; i < 3; ++i)
        {
            Point3d p;
            p[i] = d;
            EXPECT_FALSE(IsUsable(p)) << i;
            EXPECT_FALSE(IsUsable(p.toVector3d())) << i;
            EXPECT_FALSE(IsUsable(UnitVector3d(p.toVector3d(), false))) << i;
            EXPECT_FALSE(IsUsable(Line3d(p, Vector3d::kXDir))) << i;
            EXPECT_FALSE(IsUsable(Line3d(Point3d(), p.toVector3d()))) << i;
        }
        EXPECT_FALSE(IsUsable(Plane(UnitVector3d::kXDir, d)));
        for (std::size_t i = 0; i < 16; ++i)
        {
            Transf3d t = move;
            t.setValue(i / 4, i % 4, d);
            EXPECT_FALSE(IsUsable(t)) << i;
        }
    }
    EXPECT_TRUE(IsUsable(-9.9e29));
    EXPECT_TRUE(IsUsable(move));
    EXPECT_EQ(ScaledTolerance(Point3d(0, 0.3, 0.4)), 1e-12);
    EXPECT_EQ(ScaledTolerance(Point3d(0, 30, 40), 0.5), 25);
}

// Host code may use the constants in constant expressions, and before main.
static_assert(Vector3d::kXDir.x == 1 && UnitVector3d::kZDir.z == 1 && Point3d::kNull.z == 0);
static_assert(Line3d::kYAxis.vector.y == 1 && Interval3d::kNull.lower.x == 1e30 && Interval2d::kNull.upper.y == -1e30);
} // namespace
} // namespace QRV
