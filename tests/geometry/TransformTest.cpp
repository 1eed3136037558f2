#include "geometry/SeededGeometry.h"

#include <gtest/gtest.h>

#include <numbers>
#include <tuple>

namespace QRV
{
namespace
{
constexpr double kPi = std::numbers::pi;

const Point3d kProbes[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {2, -3, 5}};

void ExpectSameMap(const Transf3d& a, const Transf3d& b, double dTol)
{
    for (const Point3d& p : kProbes)
        EXPECT_LT((a * p).dist(b * p), dTol);
}

/// What a transform says of itself.
std::vector<bool> GetAnswers(const Transf3d& t)
{
    return {t.isValid(),          t.isOrthogonal(), t.isEqualScalingOrthogonal(),
            t.isRigidTransform(), t.isMirror(),     t.isRotation90DegreeMultiple()};
}

/// What is remembered agrees with what a copy without memory finds out.
void ExpectTrueMemory(const Transf3d& t)
{
    Transf3d fresh = t;
    fresh.addValue(0, 0, 1);
    fresh.setValue(0, 0, t(0, 0));
    EXPECT_EQ(GetAnswers(t), GetAnswers(fresh));
    EXPECT_EQ(t.isIdentity(), fresh.isIdentity());
    EXPECT_EQ(t.isPerspective(), fresh.isPerspective());
}

TEST(Transf3d, WhatItRemembersIsTrue)
{
    SeededGeometry random(41);
    for (int i = 0; i < 50; ++i)
    {
        SCOPED_TRACE(i);
        const Plane plane(random.Point(4), random.Vector(1));
        const Line3d line(random.Point(3), random.Vector(2));
        const Vector3d x = random.Vector(1);
        const Transf3d aMade[] = {random.Rigid(),
                                  random.Affine(),
                                  Transf3d::mirroring(plane),
                                  Transf3d::projectOn(plane, random.Vector(1)),
                                  Transf3d::stretching(line),
                                  Transf3d::scaling(random.Point(2), -2),
                                  Transf3d(line),
                                  Transf3d(line.point, x, line.vector),
                                  Transf3d(kPerspectiveProjection, random.Point(3), random.Point(3), x),
                                  Transf3d(kParallelProjection, random.Point(3), random.Point(3), x)};
        for (const Transf3d& t : aMade)
        {
            ExpectTrueMemory(t);
            t.SetAllFlags(); // the answers that the inverse takes over
            if (t.isValid())
                ExpectTrueMemory(t.invert());
            ExpectTrueMemory(t.affineInverseTranspose());
            ExpectTrueMemory(t * random.Rigid());
        }
    }
}

TEST(Transf3d, KeepsItsFlagWordWhileNoElementChanges)
{
    constexpr std::uint64_t kIdentityWord = 0x17ff;
    constexpr std::uint64_t kRigidWord = 0x17f3;
    EXPECT_EQ(Transf3d().GetFlags(), kIdentityWord);
    EXPECT_EQ(Transf3d(Line3d::kNull).GetFlags(), kIdentityWord);
    EXPECT_EQ(Transf3d::translation(Vector3d()).GetFlags(), kIdentityWord);
    EXPECT_EQ(Transf3d::translation(Vector3d(1, 0, 0)).GetFlags(), kRigidWord);
    EXPECT_EQ(Transf3d::rotation(Line3d::kZAxis, 1).GetFlags(), kRigidWord);
    EXPECT_EQ(Transf3d::rotation(Line3d::kZAxis, 1e-13).GetFlags(), kIdentityWord);
    EXPECT_EQ(Transf3d::scaling(Point3d(1, 2, 3), 1).GetFlags(), kIdentityWord);
    EXPECT_EQ(Transf3d::scaling(Point3d(1, 2, 3), 2).GetFlags(), 0u);
    EXPECT_EQ(Transf3d::mirroring(Plane(Point3d(), Vector3d(1, 2, 3))).GetFlags(), 0x1df7u);

    Transf3d t;
    t.setValue(0, 0, 1);
    t.setValue(4, 0, 5);
    t.setValue(0, 4, 5);
    t.addValue(2, 2, 0);
    t.setOrigin(Point3d());
    EXPECT_EQ(t.GetFlags(), kIdentityWord);
    t.addValue(2, 3, 1);
    EXPECT_EQ(t.GetFlags(), 0u);
    t.setOrigin(Point3d());
    EXPECT_TRUE(t.isIdentity());

    const Transf3d turn = Transf3d::rotation(Line3d::kXAxis, 0.5);
    for (const Transf3d& product : {turn * Transf3d::kIdentity, Transf3d::kIdentity * turn})
        EXPECT_EQ(product.GetFlags() & kRigidWord, kRigidWord);
    EXPECT_EQ((turn * turn).GetFlags(), 0x300u);
    const Transf3d half = Transf3d::scaling(Point3d(), 0.5);
    EXPECT_EQ((half * Transf3d::scaling(Point3d(), 2)).GetFlags(), kIdentityWord);
}

TEST(Transf3d, AnswersByTheMatrixAlone)
{
    Transf3d shear;
    shear.setValue(0, 1, 0.5);
    const Transf3d flat = Transf3d::scaling(Point3d(), Vector3d(1, 1, 0));
    const std::tuple<const char*, Transf3d, std::vector<bool>> aRows[] = {
        // valid, orthogonal, scaled equally, rigid, mirror, by right angles
        {"scaling by 3", Transf3d::scaling(Point3d(1, 1, 1), 3), {true, true, true, false, false, true}},
        {"scaling by -1", Transf3d::scaling(Point3d(), -1), {true, true, true, false, true, true}},
        {"uneven scaling", Transf3d::scaling(Point3d(), Vector3d(1, 2, 3)), {true, true, false, false, false, true}},
        {"45 degrees", Transf3d::rotation(Line3d::kZAxis, kPi / 4), {true, true, true, true, false, false}},
        {"90 degrees", Transf3d::rotation(Line3d::kZAxis, kPi / 2), {true, true, true, true, false, true}},
        {"shear", shear, {true, false, false, false, false, false}},
        {"flat", flat, {false, false, false, false, false, true}},
        {"zero", Transf3d::scaling(Point3d(), 0), {false, false, false, false, false, true}},
    };
    for (const auto& [pName, t, aExpected] : aRows)
        EXPECT_EQ(GetAnswers(t), aExpected) << pName;
}

TEST(Transf3d, ProductAppliesTheRightFactorFirst)
{
    SeededGeometry random(42);
    for (int i = 0; i < 100; ++i)
    {
        const Transf3d a = random.Affine();
        const Transf3d b = random.Rigid();
        const Transf3d c = random.Affine();
        const Line3d line(random.Point(4), random.Vector(2));
        EXPECT_LT(((a * b) * line.point).dist(a * (b * line.point)), 1e-12) << i;
        EXPECT_LT(((a * b) * line.vector).dist(a * (b * line.vector)), 1e-12) << i;
        EXPECT_TRUE(((a * b) * c).isEqual(a * (b * c), 1e-11)) << i;
        // A vector is what the ends of a segment do.
        EXPECT_LT(((a * line).GetPointFromParameter(1)).dist(a * line.GetPointFromParameter(1)), 1e-12) << i;
        EXPECT_NEAR((a * UnitVector3d(line.vector, true)).length(), 1, 1e-14) << i;
    }
    double d = 3;
    d *= Transf3d::scaling(Point3d(), Vector3d(7, 8, 2));
    EXPECT_EQ(d, 6);
}

TEST(Transf3d, InverseUndoesWhatTheTransformDid)
{
    SeededGeometry random(43);
    for (int i = 0; i < 200; ++i)
    {
        const Transf3d view(kPerspectiveProjection, random.Point(9), random.Point(9), random.Vector(1));
        const Transf3d mirror = Transf3d::mirroring(Plane(random.Point(4), random.Vector(1)));
        for (const Transf3d& t : {random.Rigid(), random.Affine(), mirror, view, mirror * random.Affine()})
        {
            EXPECT_TRUE((t * t.invert()).isEqual(Transf3d::kIdentity, 1e-10)) << i;
            EXPECT_TRUE((t.invert() * t).isEqual(Transf3d::kIdentity, 1e-10)) << i;
        }
    }
    EXPECT_EQ(Transf3d::scaling(Point3d(), 2).invert()(1, 1), 0.5);
    // A singular matrix has none, and the identity given for it says nothing of its source.
    const Transf3d flat = Transf3d::scaling(Point3d(), 0);
    flat.SetAllFlags();
    EXPECT_EQ(flat.invert().GetFlags(), 0x17ffu);
    EXPECT_TRUE(flat.invert().isValid());
    EXPECT_TRUE(flat.affineInverseTranspose().isIdentity());
    // The inverse of a turned uneven scaling has no right angles, though the scaling itself has.
    const Transf3d turn = Transf3d::rotation(Line3d(Point3d(), Vector3d(1, 1, 0)), 0.5);
    const Transf3d uneven = turn * Transf3d::scaling(Point3d(), Vector3d(1, 2, 3));
    EXPECT_TRUE(uneven.isOrthogonal());
    EXPECT_FALSE(uneven.invert().isOrthogonal());
}

TEST(Transf3d, CarriesPlanesWithTheirPointsAndSides)
{
    SeededGeometry random(44);
    for (int i = 0; i < 100; ++i)
    {
        const Plane source(random.Point(5), random.Vector(1));
        const Plane wall(random.Point(4), random.Vector(1));
        for (const Transf3d& t :
             {random.Rigid(), random.Affine(), Transf3d::mirroring(wall), Transf3d::scaling(random.Point(3), -2)})
        {
            Plane plane = source;
            plane *= t;
            const Point3d foot = source.project(random.Point(5));
            EXPECT_NEAR(plane.dist(t * foot), 0, 1e-12) << i;
            EXPECT_NEAR(plane.normal.length(), 1, 1e-14) << i;
            EXPECT_NEAR(plane.dist(t * (foot + source.project(random.Vector(3)))), 0, 1e-12) << i;
        }
    }
}

TEST(Transf3d, BuildersKeepWhatTheyFix)
{
    SeededGeometry random(45);
    for (int i = 0; i < 100; ++i)
    {
        SCOPED_TRACE(i);
        const Line3d axis(random.Point(4), random.Vector(2));
        const Plane plane(random.Point(4), random.Vector(1));
        const Point3d p = random.Point(5);
        const double dAngle = random.Number(3);

        const Transf3d turn = Transf3d::rotation(axis, dAngle);
        EXPECT_LT((turn * axis.GetPointFromParameter(2)).dist(axis.GetPointFromParameter(2)), 1e-12);
        EXPECT_NEAR(axis.dist(turn * p), axis.dist(p), 1e-12);
        const Vector3d from = p - axis.project(p);
        const Vector3d to = turn * p - axis.project(p);
        EXPECT_NEAR((from * to) % axis.vector.getNormalized(), from.lengthSqrd() * std::sin(dAngle), 1e-11);
        EXPECT_NEAR(from % to, from.lengthSqrd() * std::cos(dAngle), 1e-11);

        const Transf3d mirror = Transf3d::mirroring(plane);
        EXPECT_NEAR(plane.dist(mirror * p), -plane.dist(p), 1e-12);
        EXPECT_LT(plane.project(mirror * p).dist(plane.project(p)), 1e-12);

        const Vector3d along = random.Vector(1);
        const Transf3d flat = Transf3d::projectOn(plane, along);
        EXPECT_NEAR(plane.dist(flat * p), 0, 1e-10 / std::abs(plane.normal % along.getNormalized()));
        EXPECT_TRUE((flat * (flat * p)).isEqual(flat * p, 1e-16));
        EXPECT_LT((along * (flat * p - p)).length(), 1e-9 * (1 + (flat * p).dist(p)));

        const Transf3d stretch = Transf3d::stretching(axis);
        const Plane across(axis.point, axis.vector);
        EXPECT_NEAR(across.dist(stretch * p), across.dist(p) * axis.vector.length(), 1e-11);
        EXPECT_LT(across.project(stretch * p).dist(across.project(p)), 1e-11);
    }
    const Plane floor(Point3d(), Vector3d::kZDir);
    EXPECT_TRUE((Transf3d::mirroring(floor) * Point3d(1, 2, 3)).isEqual(Point3d(1, 2, -3), 0));
    for (const Vector3d& sideways : {Vector3d(), Vector3d(1, 0, 1e-11)})
        EXPECT_TRUE((Transf3d::projectOn(floor, sideways) * Point3d(1, 2, 3)).isEqual(Point3d(1, 2, 0), 0));
    EXPECT_TRUE(Transf3d::mirroring(Plane()).isIdentity());
    EXPECT_TRUE(Transf3d::projectOn(Plane(), Vector3d()).isIdentity());
    EXPECT_TRUE(Transf3d::stretching(Line3d::kNull).isIdentity());
    EXPECT_TRUE(Transf3d::rotation(Line3d::kNull, 1).isIdentity());
    EXPECT_TRUE(Transf3d(Point3d(1, 1, 1), Vector3d(1, 1, 0), Vector3d(-2, -2, 0)).isIdentity());
}

TEST(Transf3d, AlignCarriesOneFrameOntoTheOther)
{
    SeededGeometry random(46);
    for (int i = 0; i < 100; ++i)
    {
        SCOPED_TRACE(i);
        const Point3d a = random.Point(4);
        const Point3d b = random.Point(4);
        const Vector3d x = random.Vector(2);
        const Vector3d y = random.Vector(2);
        // Whatever rigid motion carried the frame is found again.
        const Transf3d motion = random.Rigid();
        ExpectSameMap(Transf3d::align(a, x, y, motion * a, motion * x, motion * y), motion, 1e-11);
        ExpectSameMap(Transf3d::align(a, a + x, a + y, motion * a, motion * (a + x), motion * (a + y)), motion, 1e-11);
        for (const Vector3d& to : {y, x, -x})
        {
            const Transf3d t = Transf3d::align(a, x, b, to);
            EXPECT_TRUE(t.isRigidTransform());
            EXPECT_LT((t * a).dist(b), 1e-12);
            EXPECT_LT((t * x).getNormalized().dist(to.getNormalized()), 1e-12);
        }
    }
}

TEST(Transf3d, ViewsPutTheTargetAtTheOriginAndTheEyeOnTheZAxis)
{
    SeededGeometry random(47);
    for (const double dDistance : {1e-9, 1.0, 1e5})
        for (int i = 0; i < 20; ++i)
        {
            const Point3d target = random.Point(1e-6);
            const Point3d eye = target + random.Direction() * dDistance;
            const Transf3d view(kParallelProjection, eye, target, i % 2 ? Vector3d() : random.Vector(5));
            EXPECT_TRUE(view.isValid()) << dDistance;
            EXPECT_LT((view * target).toVector3d().length(), 1e-14) << dDistance;
            EXPECT_NEAR((view * eye).z / dDistance, 1, 1e-6) << dDistance;
            EXPECT_NEAR((view * (eye - target)).x / dDistance, 0, 1e-14) << dDistance;
            const bool bUpGiven = i % 2 == 0;
            EXPECT_TRUE(bUpGiven || (view * Vector3d::kZDir).y >= 0) << dDistance; // Z looks up
        }
    EXPECT_TRUE(Transf3d(kParallelProjection, Point3d(1, 1, 1), Point3d(1, 1, 1)).isIdentity());
    EXPECT_TRUE(Transf3d::kTopView.isIdentity());
    ExpectSameMap(Transf3d::kFrontView, Transf3d(Point3d(), Vector3d(0, 0, 1), Vector3d(1, 0, 0)), 1e-15);
    EXPECT_NEAR((Transf3d::kIsometricView * Point3d(1, 1, 1)).z, std::sqrt(3.0), 1e-15);
    EXPECT_TRUE(Transf3d::kDimetricView.isRigidTransform());
}

TEST(Transf3d, PerspectiveShrinksWhatIsFarAndRefusesTheEyesPlane)
{
    const Transf3d view(kPerspectiveProjection, Point3d(0, 0, 10), Point3d(), Vector3d::kYDir);
    ASSERT_TRUE(view.isPerspective());
    Point3d p;
    EXPECT_TRUE(view.project(Point3d(1, 0, 0), p));
    EXPECT_NEAR(p.x, 1, 1e-15);
    EXPECT_TRUE(view.project(Point3d(1, 0, -10), p));
    EXPECT_NEAR(p.x, 0.5, 1e-15);
    EXPECT_TRUE(Point3d(1, 0, -10).project(view).isEqual(p, 1e-30));
    EXPECT_FALSE(view.project(Point3d(1, 0, 10), p));
    EXPECT_TRUE(p.isEqual(view * Point3d(1, 0, 10), 0));
    // The same through a perspective product: the division happens once, at the end.
    const Transf3d moved = view * Transf3d::translation(Vector3d(0, 0, -10));
    EXPECT_NEAR(Point3d(1, 0, 0).project(moved).x, 0.5, 1e-15);
}

TEST(Transf3d, StretchVectorIsTheOddColumn)
{
    const Transf3d turn = Transf3d::rotation(Line3d(Point3d(), Vector3d(1, 2, 3)), 0.7);
    for (std::size_t nOdd = 0; nOdd < 3; ++nOdd)
    {
        Vector3d factors(2, 2, 2);
        factors[nOdd] = 5;
        Vector3d axis;
        axis[nOdd] = 5;
        EXPECT_LT((turn * Transf3d::scaling(Point3d(), factors)).stretchVector().dist(turn * axis), 1e-14) << nOdd;
    }
    EXPECT_TRUE(turn.stretchVector().isExactNull());
    EXPECT_TRUE(Transf3d::scaling(Point3d(), Vector3d(1, 2, 3)).stretchVector().isExactNull());
    Transf3d shear;
    shear.setValue(0, 1, 0.5);
    EXPECT_TRUE(shear.stretchVector().isExactNull());
}

TEST(Transf3d, SnappedTransformIsFreeOfNoise)
{
    const auto snapped = [](const Vector3d& x, const Vector3d& y, const Vector3d& z, double dScale)
    { return Transf3d::createOrthogonalSnappedTransform(Point3d(1e-7, -3, 5e-7), dScale, x, y, z); };
    const Transf3d clean = snapped({1, 1e-11, 0}, {-1e-11, 1, 0}, {0, 1e-13, 1 + 1e-7}, 1 + 1e-7);
    EXPECT_TRUE(clean.origin().isEqual(Point3d(0, -3, 0), 0));
    EXPECT_TRUE(clean.xDir().isEqual(Vector3d::kXDir, 0));
    EXPECT_TRUE(clean.yDir().isEqual(Vector3d::kYDir, 0));
    EXPECT_TRUE(clean.zDir().isEqual(Vector3d::kZDir, 0));
    // Scale, unequal lengths and a left-handed frame stay.
    const Transf3d kept = snapped({1, 0, 0}, {0, 2, 0}, {0, 0, -3}, 2);
    EXPECT_TRUE(kept.xDir().isEqual(Vector3d(2, 0, 0), 0));
    EXPECT_TRUE(kept.yDir().isEqual(Vector3d(0, 4, 0), 0));
    EXPECT_TRUE(kept.zDir().isEqual(Vector3d(0, 0, -6), 0));
    EXPECT_TRUE(kept.isMirror());
    EXPECT_TRUE(snapped({1, 0, 0}, {0, 1e-13, 0}, {0, 0, 1}, 1).isIdentity());
    // A slight skew is squared, and one small component of an oblique direction dropped.
    const Transf3d skew = snapped({0.6, 0.8, 5e-11}, {-0.8, 0.6000001, 0}, {0, 0, 1}, 1);
    EXPECT_TRUE(skew.isRigidTransform());
    EXPECT_EQ(skew.xDir().z, 0);
}
} // namespace
} // namespace QRV
