#include "geometry/SeededGeometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace QRV
{
namespace
{
TEST(Line3d, MeasuresAndProjectsInUnitsOfItsVector)
{
    const Line3d line(Point3d(1, 1, 0), Vector3d(0, 4, 0));
    EXPECT_EQ(line.GetParameter(Point3d(7, 3, 5)), 0.5);
    EXPECT_TRUE(line.GetPointFromParameter(0.5).isEqual(Point3d(1, 3, 0), 0));
    EXPECT_TRUE(line.project(Point3d(7, 3, 5)).isEqual(Point3d(1, 3, 0)));
    EXPECT_NEAR(line.dist(Point3d(4, 100, 4)), 5, 1e-14);

    const Line3d noDirection(Point3d(1, 0, 0), Vector3d(0, 1e-12, 0));
    EXPECT_FALSE(noDirection.isValid());
    EXPECT_TRUE(noDirection.project(Point3d(3, 3, 3)).isEqual(Point3d(1, 0, 0), 0));
    EXPECT_EQ(noDirection.dist(Point3d(1, 0, 2)), 2);
    EXPECT_EQ(Line3d::kNull.GetParameter(Point3d(1, 1, 1)), -1e30);
}

TEST(Line3d, MeetsAnotherAtTheNearestPointOfTheOther)
{
    SeededGeometry random(21);
    for (int i = 0; i < 300; ++i)
    {
        const Line3d a(random.Point(5), random.Vector(3));
        const Line3d b(random.Point(5), random.Vector(3));
        Point3d p;
        double t = 0;
        double u = 0;
        ASSERT_TRUE(a.intersectWithParameters(b, p, t, u, 1e30)) << i;
        EXPECT_NEAR(b.dist(p), 0, 1e-11) << i;
        EXPECT_LT(b.GetPointFromParameter(u).dist(p), 1e-10) << i;
        // The shortest way between two lines stands across both.
        const Vector3d across = p - a.GetPointFromParameter(t);
        EXPECT_NEAR(across % a.vector.getNormalized(), 0, 1e-9) << i;
        EXPECT_NEAR(across % b.vector.getNormalized(), 0, 1e-9) << i;
    }
}

TEST(Line3d, LeavesTheResultAloneWhereThereIsNoMeeting)
{
    const Line3d above(Point3d(3, -1, 1e-6), Vector3d(0, 2, 0));
    const Point3d before(7, 7, 7);
    Point3d p = before;
    EXPECT_FALSE(Line3d::kXAxis.intersect(above, p, 1e-6)); // strict
    EXPECT_FALSE(Line3d::kXAxis.intersect(Line3d(Point3d(0, 1, 0), Vector3d(-2, 0, 0)), p, 10));
    EXPECT_FALSE(Line3d::kXAxis.intersect(Line3d(Point3d(), Vector3d()), p, 10));
    // Not parallel to 1e-10, and yet too flat to tell where they meet.
    EXPECT_FALSE(Line3d::kXAxis.intersect(Line3d(Point3d(0, 1, 0), Vector3d(1, 5e-7, 0)), p, 10));
    EXPECT_TRUE(p.isEqual(before, 0));
    EXPECT_TRUE(Line3d::kXAxis.intersect(above, p, 1.1e-6));
}

TEST(Line3d, CoincidesWithASlackThatGrowsWithTheOrigin)
{
    const Line3d far(Point3d(1e6, 1e-7, 0), Vector3d(-3, 0, 0));
    EXPECT_TRUE(Line3d::kXAxis.isCoincident(far, false, 1e-12 * 2e5));
    EXPECT_FALSE(Line3d::kXAxis.isCoincident(far, true, 1.0));
    EXPECT_FALSE(Line3d::kXAxis.isCoincident(far, false, 1e-14));
    EXPECT_FALSE(Line3d::kXAxis.isCoincident(Line3d(Point3d(), Vector3d(1, 1e-9, 0)), false, 1.0));
    EXPECT_TRUE(Line3d::kXAxis.isEqual(Line3d(Point3d(0, 0.9e-6, 0), Vector3d(1, 0, -0.9e-6))));
    EXPECT_FALSE(Line3d::kXAxis.isEqual(Line3d(Point3d(0, 1.1e-6, 0), Vector3d(1, 0, 0))));
}

std::vector<Point3d> Placed(const Transf3d& place, std::initializer_list<Point3d> points)
{
    std::vector<Point3d> aPoints;
    for (const Point3d& p : points)
        aPoints.push_back(place * p);
    return aPoints;
}

TEST(Plane, OfAPolygonFollowsItsWinding)
{
    SeededGeometry random(22);
    const std::initializer_list<Point3d> aShapes[] = {
        {{0, 0, 0}, {2, 0, 0}, {0, 3, 0}},
        {{0, 0, 0}, {4, 0, 0}, {1, 1, 0}, {0, 4, 0}}, // a reflex corner
        {{0, 0, 0}, {3, 0, 0}, {3, 3, 0}, {2, 3, 0}, {2, 1, 0}, {1, 1, 0}, {1, 3, 0}, {0, 3, 0}},
    };
    for (const auto& shape : aShapes)
        for (const double dAway : {0.0, 1e6})
        {
            const Transf3d place = Transf3d::translation(Vector3d(dAway, -dAway, dAway)) * random.Rigid();
            std::vector<Point3d> aPoints = Placed(place, shape);
            const Vector3d expected = place.zDir();
            const Plane plane(aPoints.data(), aPoints.size());
            EXPECT_LT(Vector3d(plane.normal).dist(expected), dAway > 0 ? 3e-9 : 1e-14) << aPoints.size();
            EXPECT_NEAR(plane.dist(aPoints[1]), 0, dAway > 0 ? 1e-8 : 1e-13) << aPoints.size();
            std::reverse(aPoints.begin(), aPoints.end());
            EXPECT_LT(Vector3d(Plane(aPoints.data(), aPoints.size()).normal).dist(-expected), 3e-9) << aPoints.size();
        }
    const Point3d aTwo[] = {{0, 0, 0}, {1, 0, 0}};
    EXPECT_FALSE(Plane(aTwo, 2).isValid());
    EXPECT_FALSE(Plane(nullptr, 5).isValid());
    const Plane noNormal(aTwo, 2, Vector3d());
    EXPECT_FALSE(noNormal.isValid());
    EXPECT_EQ(noNormal.d, 0);
    EXPECT_EQ(Plane(aTwo, 2, Vector3d(3, 0, 0)).d, -0.5);
}

TEST(Plane, OfAWarpedQuadStandsAcrossBothDiagonals)
{
    const Point3d aQuad[] = {{0, 0, 1}, {2, 0, -1}, {2, 2, 1}, {0, 2, -1}};
    const Plane plane(aQuad, 4);
    EXPECT_TRUE(Vector3d(plane.normal).isEqual(Vector3d::kZDir, 0));
    EXPECT_EQ(plane.d, 0);
    EXPECT_TRUE(Plane(aQuad[0], aQuad[1], aQuad[2]).dist(aQuad[3]) != 0);
}

TEST(Plane, OfACloudNeedsWidthAndIfAskedFlatness)
{
    const std::vector<Point3d> aLine = {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {5, 5, 5}};
    EXPECT_FALSE(Plane::fromPoints(aLine.data(), 4, false).isValid());
    const std::vector<Point3d> aSpot = {{0, 0, 0}, {5e-6, 0, 0}, {0, 5e-6, 0}};
    EXPECT_FALSE(Plane::fromPoints(aSpot.data(), 3, false).isValid());
    const std::vector<Point3d> aNarrow = {{0, 0, 0}, {9, 0, 0}, {4, 0.9e-5, 0}};
    EXPECT_FALSE(Plane::fromPoints(aNarrow.data(), 3, false).isValid());
    EXPECT_FALSE(Plane::fromPoints(aNarrow.data(), 2, false).isValid());

    SeededGeometry random(23);
    std::vector<Point3d> aCloud;
    const Transf3d place = random.Rigid();
    for (int i = 0; i < 50; ++i)
        aCloud.push_back(place * Point3d(random.Number(4), random.Number(4), 0));
    const Plane plane = Plane::fromPoints(aCloud.data(), aCloud.size(), true);
    ASSERT_TRUE(plane.isValid());
    EXPECT_TRUE(plane.normal.isParallel(place.zDir(), 1e-24));
    aCloud.push_back(place * Point3d(0, 0, 1e-4));
    EXPECT_FALSE(Plane::fromPoints(aCloud.data(), aCloud.size(), true).isValid());
    EXPECT_TRUE(Plane::fromPoints(aCloud.data(), aCloud.size(), false).isValid());
}

TEST(Plane, OfThreeCornersTellsWhatItCouldNotHold)
{
    struct Row
    {
        const char* pName;
        std::vector<Point3d> aPoints;
        double dTol;
        bool bCheckAll;
        int nStatus;
        bool bValid;
    };
    const Row aRows[] = {
        {"two points", {{0, 0, 0}, {1, 0, 0}}, 1e-12, true, -1, false},
        {"a line", {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}}, 1e-12, true, -1, false},
        {"one place", {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, 1e-12, true, -1, false},
        {"corners that repeat first",
         {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}},
         1e-12,
         true,
         0,
         true},
        {"a corner off the plane", {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0.1}}, 1e-6, true, -2, true},
        {"the same, unchecked", {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0.1}}, 1e-6, false, 0, true},
    };
    for (const Row& row : aRows)
    {
        int nStatus = 7;
        const Plane plane = Plane::fromPointsUsingThreeNoncollinearPnts(row.aPoints.data(), row.aPoints.size(),
                                                                        row.bCheckAll, nStatus, row.dTol, false);
        EXPECT_EQ(nStatus, row.nStatus) << row.pName;
        EXPECT_EQ(plane.isValid(), row.bValid) << row.pName;
    }
}

TEST(Plane, OfThreeCornersRetriesWithThePlaneOfTheCloud)
{
    // The first corner has noise of 0.5e-6, which its short neighbours blow up at the far end.
    const std::vector<Point3d> aPoints = {{0, 0, 5e-7}, {0.01, 0, 0}, {0, 0.01, 0}, {-9, 1, 0}, {0, -9, 0}, {9, 0, 0}};
    int nStatus = 0;
    const Plane first = Plane::fromPointsUsingThreeNoncollinearPnts(aPoints.data(), 6, true, nStatus, 1e-6, false);
    EXPECT_EQ(nStatus, -2);
    const Plane fitted = Plane::fromPointsUsingThreeNoncollinearPnts(aPoints.data(), 6, true, nStatus, 1e-6, true);
    EXPECT_EQ(nStatus, 0);
    EXPECT_FALSE(fitted.isEqual(first, 1e-12, 1e-20));
    for (const Point3d& p : aPoints)
        EXPECT_NEAR(fitted.dist(p), 0, 1e-6);
}

TEST(Plane, MeetsPlanesInLinesAndLinesInPoints)
{
    SeededGeometry random(24);
    for (int i = 0; i < 200; ++i)
    {
        const Plane a(random.Point(4), random.Vector(1));
        const Plane b(random.Point(4), random.Vector(1));
        Line3d line;
        ASSERT_TRUE(a.intersectsInLine(b, line)) << i;
        EXPECT_EQ(line.point[line.vector.dominantDirection()], 0) << i;
        for (const double t : {-3.0, 0.0, 5.0})
        {
            EXPECT_NEAR(a.dist(line.GetPointFromParameter(t)), 0, 1e-10) << i;
            EXPECT_NEAR(b.dist(line.GetPointFromParameter(t)), 0, 1e-10) << i;
        }
        const Line3d ray(random.Point(4), random.Vector(2));
        Point3d p;
        double t = 0;
        ASSERT_TRUE(a.intersectsInPoint(ray, p, t)) << i;
        EXPECT_NEAR(a.dist(p), 0, 1e-11) << i;
        EXPECT_TRUE((a * ray).isEqual(p, 0)) << i;
        EXPECT_NEAR(a.dist(a.project(ray.point)), 0, 1e-13) << i;
        EXPECT_NEAR(a.project(ray.vector) % a.normal, 0, 1e-14) << i;
    }
    const Plane floor(Point3d(), UnitVector3d::kZDir);
    Line3d unused;
    Point3d p;
    double t = 5;
    EXPECT_FALSE(floor.intersectsInLine(Plane(Point3d(0, 0, 2), Vector3d(1e-13, 0, -1)), unused));
    EXPECT_TRUE((floor * -floor).isEqual(Line3d::kNull));
    EXPECT_FALSE(floor.intersectsInPoint(Line3d(Point3d(1, 1, 1), Vector3d(1, 0, 0)), p, t));
    EXPECT_EQ(t, 0);
    EXPECT_TRUE((floor * Line3d(Point3d(1, 1, 1), Vector3d(1, 0, 0))).isEqual(Point3d(1, 1, 1), 0));
    EXPECT_TRUE(floor.intersectsInPoint(Line3d(Point3d(1, 1, 0), Vector3d(1, 0, 0)), p, t));
}

TEST(Plane, IsEquivalentToItsOtherSideAndMovesAlongItsNormal)
{
    Plane plane(Point3d(0, 0, 3), Vector3d(1, 2, 2));
    EXPECT_TRUE(plane.isEquivalent(-plane, 1e-12, 1e-20));
    EXPECT_FALSE(plane.isEqual(-plane, 1e-12, 1e-20));
    Plane moved = plane;
    moved.OffsetByDistance(1.5);
    EXPECT_NEAR(moved.dist(Point3d(0, 0, 3)), -1.5, 1e-15);
    EXPECT_FALSE(moved.isEquivalent(plane, 1e-6, 1e-20));
    // The slack of d grows with d.
    EXPECT_TRUE(Plane(UnitVector3d::kXDir, 1e6).isEqual(Plane(UnitVector3d::kXDir, 1e6 + 0.5), 1e-6, 1e-20));
    EXPECT_FALSE(Plane(UnitVector3d::kXDir, 0).isEqual(Plane(UnitVector3d::kXDir, 0.5), 1e-6, 1e-20));
}

TEST(ConvexSet, HoldsASegmentInsideByItsEndsOnly)
{
    const std::vector<Plane> aSlab{Plane(Point3d(2, 2, 2), UnitVector3d::kXDir),
                                   Plane(Point3d(), -UnitVector3d::kXDir)};
    const Point3d a(0.5, 0.5, 0.5);
    const Point3d b(1, 1, 1);
    for (const std::vector<Plane>& aPlanes : {aSlab, {}})
    {
        EXPECT_TRUE(SegmentIntersectsNegativeSideOfPlanes(a, b, aPlanes, 1e-9, true));
        EXPECT_FALSE(SegmentIntersectsNegativeSideOfPlanes(a, b, aPlanes, 1e-9, false));
    }
    EXPECT_TRUE(SegmentIntersectsNegativeSideOfPlanes(a, b + Vector3d(2, 0, 0), aSlab, 1e-9, false));
}
} // namespace
} // namespace QRV
