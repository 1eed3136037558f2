#include "spatial/Measures.h"
#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace QRV
{
namespace
{
/// A polygon of the frame's plane raised to a solid.
Body& AddPrism(PolygonModel& model, const Frame& at, const std::vector<Point2d>& outline, double dHeight)
{
    Polygon bottom, top;
    for (const Point2d& p : outline)
    {
        bottom.insert(bottom.begin(), at(p.x, p.y, 0));
        top.push_back(at(p.x, p.y, dHeight));
    }
    std::vector<Face*> aFaces{&model.AddFace(bottom), &model.AddFace(top)};
    for (std::size_t n = 0; n < outline.size(); ++n)
    {
        const Point2d& a = outline[n];
        const Point2d& b = outline[(n + 1) % outline.size()];
        aFaces.push_back(
            &model.AddFace({at(a.x, a.y, 0), at(b.x, b.y, 0), at(b.x, b.y, dHeight), at(a.x, a.y, dHeight)}));
    }
    return model.AddBody({aFaces});
}

const std::vector<Point2d> kAngle{{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 3}, {0, 3}};

/// Within the L of height 2, farther than `d` from its boundary, or outside of it as far.
bool IsInAngle(const Point3d& p, double d)
{
    const auto isInBox = [&](double x, double y)
    { return p.x > d && p.x < x - d && p.y > d && p.y < y - d && p.z > d && p.z < 2 - d; };
    return isInBox(4, 1) || isInBox(1, 3);
}

Polygon MakeStar(const Frame& at, int nCorners, const Point2d& center, double dInner, double dOuter)
{
    Polygon star;
    for (int n = 0; n < nCorners; ++n)
    {
        const double dAngle = 2 * std::numbers::pi * n / nCorners;
        const double dRadius = n % 2 == 0 ? dOuter : dInner;
        star.push_back(at(center.x + dRadius * std::cos(dAngle), center.y + dRadius * std::sin(dAngle)));
    }
    return star;
}

/// By passing all sides of all loops.
bool IsInsideAllLoops(const Face& face, const Point3d& p)
{
    const std::vector<Loop*>& aLoops = face.GetLoops();
    return aLoops.front()->FindSide(p) == nLoopSide::nInside &&
           std::all_of(aLoops.begin() + 1, aLoops.end(),
                       [&](const Loop* pHole) { return pHole->FindSide(p) == nLoopSide::nOutside; });
}
} // namespace

TEST(Measures, FollowTheTransform)
{
    const Transf3d turned = Transf3d::rotation(Line3d(Point3d(1, 2, 3), Vector3d(1, -1, 2)), 0.7);
    const Transf3d uneven = Transf3d::scaling(Point3d(), Vector3d(2, 3, 5));
    const Transf3d sheared(Point3d(), Vector3d(1, 0, 0), Vector3d(1, 1, 0), Vector3d(0, 0, 1), true);
    const Transf3d mirrored = Transf3d::mirroring(Plane(Point3d(1, 0, 0), Vector3d(1, 1, 0)));
    struct Case
    {
        const char* pName;
        Transf3d transform;
        double dVolume, dArea; // of a block of 1 x 2 x 3
    };
    const Case aCases[] = {{"identity", Transf3d(), 6.0, 22.0},
                           {"turned", turned, 6.0, 22.0},
                           {"evenly scaled and turned", turned * Transf3d::scaling(Point3d(1, 1, 1), 2.0), 48.0, 88.0},
                           {"unevenly scaled", uneven, 180.0, 2 * (2 * 6 + 6 * 15 + 15 * 2)},
                           {"sheared", sheared, 6.0, 2 * (1 * 2 + 1 * 3 + 2 * std::sqrt(2.0) * 3)},
                           {"mirrored", mirrored, -6.0, 22.0},
                           {"flattened", Transf3d::scaling(Point3d(), Vector3d(1, 1, 0)), 0.0, 4.0},
                           {"moved far away", Transf3d(Point3d(1e5, 2e5, -1e5)), 6.0, 22.0}};
    PolygonModel model;
    const std::uint64_t nBody = model.AddBlock(GetFrames()[0], Point3d(0, 0, 0), Point3d(1, 2, 3)).GetID();
    const std::uint64_t nLoop = GetAll<Loop>(model.GetHistory()).front()->GetID(); // of the bottom
    const std::uint64_t nHistory = model.GetHistory().GetID();
    for (const Case& test : aCases)
    {
        SCOPED_TRACE(test.pName);
        double dArea = 0.0;
        double dVolume = 0.0;
        ExpectGood(APIComputeAreaReadOnly(nHistory, nBody, dArea, &test.transform));
        ExpectGood(APIComputeVolumeReadOnly(nHistory, nBody, dVolume, &test.transform));
        EXPECT_NEAR(dArea, test.dArea, 1e-8);
        EXPECT_NEAR(dVolume, test.dVolume, 1e-8);
        ExpectGood(APIComputeAreaReadOnly(nHistory, nLoop, dArea, &test.transform));
        EXPECT_EQ(dArea, 0.0);

        // The box is the tight one of the moved corners, of the body as of all there is.
        Interval3d expected, box;
        for (int n = 0; n < 8; ++n)
            expected += test.transform * Point3d(n & 1 ? 1 : 0, n & 2 ? 2 : 0, n & 4 ? 3 : 0);
        for (const std::uint64_t nObject : {nBody, INVALID_ID})
        {
            ExpectGood(APIGetBoxReadOnly(nHistory, nObject, box, test.transform));
            EXPECT_TRUE(box.isEqual(expected, 1e-20));
        }
    }
    double dArea = 0.0;
    ExpectGood(APIComputeAreaReadOnly(nHistory, nLoop, dArea, nullptr));
    EXPECT_NEAR(dArea, 2.0, 1e-12);
}

TEST(Measures, KeepTheirDigitsFarFromTheOrigin)
{
    for (const Frame& at : GetFramesAndFar())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Step step(model);
        // As the places themselves are rounded there.
        const double dTol = 1e-9 + 1e-14 * at.origin.toVector3d().length() * 10;
        const Body& angle = AddPrism(model, at, kAngle, 2.0);
        EXPECT_NEAR(angle.GetVolume(nullptr), 12.0, dTol);
        EXPECT_NEAR(angle.GetArea(nullptr), 2 * 6.0 + 2 * 14.0, dTol);
        const Body& hollow = model.AddBody({model.AddBlockFaces(at, Point3d(10, 0, 0), Point3d(13, 3, 3)),
                                            model.AddBlockFaces(at, Point3d(11, 1, 1), Point3d(12, 2, 2), true)});
        EXPECT_NEAR(hollow.GetVolume(nullptr), 26.0, dTol);
        EXPECT_NEAR(hollow.GetArea(nullptr), 60.0, dTol);
        EXPECT_NEAR(hollow.GetLumps()[0]->GetShells()[1]->GetVolume(nullptr), -1.0, dTol);
        EXPECT_TRUE(hollow.ContainsPoint(at(10.5, 1.5, 1.5)));
        EXPECT_FALSE(hollow.ContainsPoint(at(11.5, 1.5, 1.5)));
        Face& face = model.AddFace({at(0, 0, 9), at(4, 0, 9), at(4, 4, 9), at(0, 4, 9)},
                                   {{at(0.5, 1, 9), at(0.5, 3, 9), at(2.5, 3, 9), at(2.5, 1, 9)}});
        Point3d centroid;
        ASSERT_TRUE(face.GetCentroid(centroid));
        EXPECT_LT(centroid.dist(at((16 * 2 - 4 * 1.5) / 12, 2, 9)), dTol);
    }
}

TEST(PointInSolid, AgreesWithTheShape)
{
    for (const Frame& at : GetFramesAndFar())
    {
        SCOPED_TRACE(at.pName);
        PolygonModel model;
        Step step(model);
        const Body& angle = AddPrism(model, at, kAngle, 2.0);
        model.AddBlock(at, Point3d(0.25, 0.25, 0.5), Point3d(0.75, 0.75, 1.5)); // another body does not matter
        std::mt19937 random(3);
        std::uniform_real_distribution<double> x(-0.5, 4.5), y(-0.5, 3.5), z(-0.5, 2.5), any(-1, 1);
        for (int n = 0; n < 2000; ++n)
        {
            const Point3d p(x(random), y(random), z(random));
            if (IsInAngle(p, 1e-6) != IsInAngle(p, -1e-6))
                continue;
            const Vector3d direction(any(random), any(random), any(random));
            EXPECT_EQ(angle.ContainsPoint(at(p.x, p.y, p.z)), IsInAngle(p, 0)) << p.x << ' ' << p.y << ' ' << p.z;
            EXPECT_EQ(ContainsPoint(angle.GetLumps()[0], at(p.x, p.y, p.z), &direction), IsInAngle(p, 0));
        }
    }
}

TEST(PointInSolid, CountsTheBoundaryAndSurvivesRaysThroughEdges)
{
    PolygonModel model;
    Step step(model);
    const Frame& at = GetFrames()[0];
    const Body& angle = AddPrism(model, at, kAngle, 2.0);
    const Point3d aOn[] = {at(2, 0, 1), at(0, 0, 0), at(4, 1, 1), at(1, 1, 1), at(0.5, 0.5, 2), at(1, 2, 0.5)};
    for (const Point3d& p : aOn)
        EXPECT_TRUE(angle.ContainsPoint(p)) << p.x << ' ' << p.y << ' ' << p.z;

    // Through edges, corners and along faces: out of the solid, out of the notch, past the inner edge.
    struct Case
    {
        Point3d p;
        Vector3d direction;
        bool bIn;
    };
    const Case aCases[] = {{at(3, 0.5, 1), {1, 0.5, 0}, true}, {at(2, 0.5, 1), {2, 0.5, 1}, true},
                           {at(0.5, 0.5, 1), {1, 1, 0}, true}, {at(3, 2, 1), {-2, -1, 0}, false},
                           {at(2, 2, 1), {-1, -1, 0}, false},  {at(3, 1.5, 1), {0, -1, 0}, false},
                           {at(3, 0.5, 1), {-1, 0, 0}, true},  {at(2, 1.5, 1), {-1, 0, 0}, false},
                           {at(0.5, 2, 1), {0, 0, 1}, true},   {at(2, 2, 1), {-1, 0.5, 1}, false}};
    for (const Case& test : aCases)
        EXPECT_EQ(angle.ContainsPoint(test.p, &test.direction), test.bIn) << &test - aCases;
    EXPECT_FALSE(ContainsPoint(nullptr, at(1, 1, 1), nullptr));
    std::vector<Face*> aFaces;
    angle.GetBodyFaces(aFaces);
    EXPECT_FALSE(ContainsPoint(aFaces.front(), at(2, 0.5, 0), nullptr));
}

TEST(PointInFace, AgreesWithAWalkAlongAllSidesAndCountsTheBoundary)
{
    // Many sides are not walked one by one.
    for (const int nCorners : {12, 120})
        for (const Frame& at : GetFramesAndFar())
        {
            SCOPED_TRACE(testing::Message() << at.pName << ", corners " << nCorners);
            PolygonModel model;
            Step step(model);
            const Polygon hole = Reversed(MakeStar(at, nCorners, {0.4, 0.2}, 0.3, 0.45));
            Face& face = model.AddFace(MakeStar(at, nCorners, {0.0, 0.0}, 1.0, 3.0),
                                       {hole, {at(-0.6, 0), at(-0.6, 0.5), at(-0.1, 0)}});
            std::vector<Vertex*> aVertices;
            face.GetVertices(aVertices);
            std::mt19937 random(6);
            std::uniform_real_distribution<double> place(-3.2, 3.2);
            for (const bool bReversed : {false, true})
            {
                for (int n = 0; n < 1000; ++n)
                {
                    // Some at the height of a corner, which the way out then passes.
                    const double y = n % 3 == 0 ? std::sin(2 * std::numbers::pi * n / nCorners) : place(random);
                    const Point3d p = at(place(random), y);
                    EXPECT_EQ(face.ContainsPointInside(p), IsInsideAllLoops(face, p)) << n << ' ' << bReversed;
                }
                for (const Vertex* pVertex : aVertices)
                {
                    EXPECT_TRUE(face.ContainsPoint(pVertex->GetPosition(), false));
                    EXPECT_FALSE(face.ContainsPointInside(pVertex->GetPosition()));
                }
                EXPECT_TRUE(face.ContainsPoint(at(-0.1, -0.1), false));
                EXPECT_FALSE(face.ContainsPoint(at(-0.1, -0.1, 1e-3), false));
                face.Reverse();
            }
        }
}
} // namespace QRV
