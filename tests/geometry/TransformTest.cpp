#include <QRV/Geometry.h>

#include <gtest/gtest.h>

#include <random>

namespace QRV
{
namespace
{
class SeededTransforms
{
public:
    double Number(double dSize) { return std::uniform_real_distribution<double>(-dSize, dSize)(m_engine); }
    Vector3d Vector(double dSize) { return {Number(dSize), Number(dSize), Number(dSize)}; }
    Point3d Point(double dSize) { return Point3d() + Vector(dSize); }
    Transf3d Rigid() { return Transf3d::rotation(Line3d(Point(5.0), Vector(1.0)), Number(3.0)) * Transf3d::translation(Vector(9.0)); }
    Transf3d Any() { return Rigid() * Transf3d::scaling(Point(3.0), Vector3d(1.0 + std::abs(Number(2.0)), 0.5, 2.0)) * Rigid(); }

private:
    std::mt19937_64 m_engine{20240607};
};

TEST(Transf3d, InverseUndoesWhatTheTransformDid)
{
    SeededTransforms random;
    for (int i = 0; i < 200; ++i)
        for (const Transf3d& t : {random.Rigid(), random.Any(), Transf3d::mirroring(Plane(random.Point(4.0), random.Vector(1.0)))})
        {
            const Point3d p = random.Point(10.0);
            EXPECT_LT((t.invert() * (t * p)).dist(p), 1e-11) << "step " << i;
            EXPECT_EQ(t.invert().isMirror(), t.isMirror());
        }
    EXPECT_TRUE(Transf3d::scaling(Point3d(), 0.0).invert().isIdentity());
}

TEST(Transf3d, RemembersWhatItKnowsOnlyWhileItHolds)
{
    Transf3d t = Transf3d::rotation(Line3d::kZAxis, 0.3);
    EXPECT_TRUE(t.isRigidTransform());
    EXPECT_FALSE(t.isRotation90DegreeMultiple());
    t.setValue(4, 0, 1.0);
    EXPECT_TRUE(t.isRigidTransform());
    t.setValue(2, 2, 2.0);
    EXPECT_FALSE(t.isRigidTransform());
    EXPECT_TRUE(t.isOrthogonal());
    // The inverse of a turned uneven scaling has no right angles, though the scaling itself has.
    const Transf3d uneven = Transf3d::rotation(Line3d(Point3d(), Vector3d(1, 1, 0)), 0.5) * Transf3d::scaling(Point3d(), Vector3d(1, 2, 3));
    EXPECT_TRUE(uneven.isOrthogonal());
    EXPECT_FALSE(uneven.invert().isOrthogonal());
}

TEST(Transf3d, NormalsStayAtRightAnglesToTheirPlanes)
{
    SeededTransforms random;
    for (int i = 0; i < 100; ++i)
    {
        const Transf3d t = random.Any();
        const Point3d a = random.Point(5.0), b = random.Point(5.0), c = random.Point(5.0);
        Plane plane(a, b, c);
        plane *= t;
        for (const Point3d& p : {a, b, c})
            EXPECT_NEAR(plane.dist(t * p), 0.0, 1e-9);
    }
}

TEST(Transf3d, ViewsPutTheEyeOnTheZAxis)
{
    const Point3d eye = Transf3d::kIsometricView * Point3d(1, 1, 1);
    EXPECT_NEAR(eye.x, 0.0, 1e-15);
    EXPECT_NEAR(eye.y, 0.0, 1e-15);
    EXPECT_NEAR(eye.z, std::sqrt(3.0), 1e-15);
    EXPECT_TRUE(Transf3d::kTopView.isRigidTransform());
    EXPECT_LT((Transf3d::mirroring(Plane(Point3d(), Vector3d::kZDir)) * Point3d(1, 2, 3)).dist(Point3d(1, 2, -3)), 1e-15);
}

TEST(UnitVector3d, GivesExactAxesAndNoDirectionForNoLength)
{
    const UnitVector3d x(-2.0, 1e-200, 0.0, true);
    EXPECT_EQ(x.x, -1.0);
    EXPECT_EQ(x.y, 0.0);
    EXPECT_TRUE(UnitVector3d(1e-13, 0.0, 0.0, true).isExactNull());
    EXPECT_TRUE(x.isParallel(UnitVector3d::kXDir));
    EXPECT_FALSE(UnitVector3d().isParallel(UnitVector3d::kXDir));
}

TEST(Interval3d, RayTestAgreesWithSampling)
{
    SeededTransforms random;
    int nHits = 0;
    for (int i = 0; i < 3000; ++i)
    {
        const Interval3d box(random.Point(2.0), random.Point(2.0));
        const Line3d ray(random.Point(4.0), random.Vector(1.0));
        bool bSampled = false;
        for (double t = 0.0; t <= 6.0 && !bSampled; t += 0.002)
            bSampled = box & ray.GetPointFromParameter(t);
        const bool bHit = box.intersectsRay(ray, 0.0, 6.0);
        nHits += bHit;
        EXPECT_TRUE(bHit || !bSampled) << "ray " << i;
        // What sampling misses can only be a corner cut.
        Interval3d larger = box;
        larger.enlarge(0.01);
        bool bNear = bSampled;
        for (double t = 0.0; t <= 6.0 && !bNear; t += 0.002)
            bNear = larger & ray.GetPointFromParameter(t);
        EXPECT_TRUE(bNear || !bHit) << "ray " << i;
    }
    EXPECT_GT(nHits, 50);
}

TEST(Interval3d, NullBoxesKeepTheirRules)
{
    const Interval3d box(Point3d(), Point3d(1, 1, 1));
    EXPECT_TRUE(Interval3d() <= box);
    EXPECT_FALSE(Interval3d() & box);
    EXPECT_TRUE((Interval3d() + box).isEqual(box, 0.0));
    EXPECT_TRUE((box + Interval3d()).isEqual(box, 0.0));
    EXPECT_FALSE(Interval3d(Point3d(1, 0, 0), Point3d(1 - 1e-13, 1, 1), 0).isNull());
    EXPECT_TRUE(Interval3d(Point3d(1, 0, 0), Point3d(1 - 1e-11, 1, 1), 0).isNull());
    EXPECT_EQ(Interval3d().volume(), 0.0);
}

TEST(Plane, OfPointsFollowsTheirOrder)
{
    const Point3d aSquare[] = {{0, 0, 1}, {2, 0, 1}, {2, 2, 1}, {0, 2, 1}, {0, 1, 1}};
    EXPECT_NEAR(Plane(aSquare, 5).normal.z, 1.0, 1e-15);
    EXPECT_NEAR(Plane(aSquare, 5).d, -1.0, 1e-15);
    EXPECT_FALSE(Plane(nullptr, 5).isValid());
    const Point3d aLine[] = {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}};
    int nStatus = 0;
    EXPECT_FALSE(Plane::fromPointsUsingThreeNoncollinearPnts(aLine, 3, true, nStatus, 1e-12, true).isValid());
    EXPECT_EQ(nStatus, -1);
    EXPECT_FALSE(Plane::fromPoints(aLine, 3, false).isValid());
    const Plane plane(aSquare, 4);
    EXPECT_TRUE(plane.isEquivalent(-plane, 1e-12, 1e-20));
    EXPECT_FALSE(plane.isEqual(-plane, 1e-12, 1e-20));
}

TEST(Line3d, MeetsAnotherOnlyWithinTheTolerance)
{
    const Line3d x = Line3d::kXAxis;
    const Line3d above(Point3d(3, -1, 1e-6), Vector3d(0, 2, 0));
    Point3d p;
    double t = 0.0, u = 0.0;
    EXPECT_FALSE(x.intersect(above, p, 1e-7));
    ASSERT_TRUE(x.intersectWithParameters(above, p, t, u, 1e-5));
    EXPECT_NEAR(t, 3.0, 1e-15);
    EXPECT_NEAR(u, 0.5, 1e-15);
    EXPECT_FALSE(x.intersect(Line3d(Point3d(0, 1, 0), Vector3d(1, 0, 0)), p, 10.0));
}
} // namespace
} // namespace QRV
