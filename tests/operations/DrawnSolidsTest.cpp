#include "support/TestModel.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// Where a box drawn in a random frame has its centre.
Point3d GetMiddle(const Frame& frame, const Point3d& lower, const Point3d& upper)
{
    return frame((lower[0] + upper[0]) / 2, (lower[1] + upper[1]) / 2, (lower[2] + upper[2]) / 2);
}

void Scramble(std::vector<Segment>& aSegments, std::mt19937_64& random)
{
    std::shuffle(aSegments.begin(), aSegments.end(), random);
    for (Segment& segment : aSegments)
        if (random() % 2)
            std::swap(segment.first, segment.second);
}

void ExpectNormalsLeave(const TestModel& model, const Point3d& middle)
{
    for (const std::uint64_t nFace : model.GetIDs(nFaceType))
    {
        Plane plane;
        ASSERT_TRUE(APIGetFacePlaneReadOnly(model.GetID(), nFace, plane).IsGood());
        EXPECT_LT(plane.dist(middle), -0.1);
    }
}
} // namespace

TEST(DrawnBox, IsOneSolidInEveryOrderOfItsEdges)
{
    std::mt19937_64 random(20240611);
    const Point3d lower(0, 0, 0);
    const Point3d upper(1, 1, 1);
    for (int nRun = 0; nRun < 1000 && !::testing::Test::HasFailure(); ++nRun)
    {
        SCOPED_TRACE(nRun);
        const Frame frame = nRun % 4 == 0 ? GetFrames()[0] : MakeRandomFrame(random, nRun % 4 == 3 ? 1e4 : 3.0);
        std::vector<Segment> aEdges = GetBoxEdges(frame, lower, upper);
        Scramble(aEdges, random);
        TestModel model;
        model.Lines(aEdges);
        EXPECT_EQ(model.GetCounts(), (ModelCounts{1, 1, 1, 6, 12, 8}));
        ASSERT_EQ(model.Count(nBodyType), 1u);
        // Coordinates of 1e4 are rounded to 2e-12, which leaves measures of size 1 well within 1e-9.
        ExpectSolid(model, model.GetIDs(nBodyType).front(),
                    {.nFaces = 6, .nEdges = 12, .nVertices = 8, .dVolume = 1, .dArea = 6});
        ExpectNormalsLeave(model, GetMiddle(frame, lower, upper));
        ExpectUndoRedoRestores(model);
    }
}
} // namespace QRV
