#include "support/TestModel.h"

#include <gtest/gtest.h>

namespace QRV
{
namespace
{
constexpr double kHeight = 9.0;

using FloorPlan = std::vector<std::pair<double, double>>;

/// Draws a building as its outline below and above and its uprights. The audit is asked after each line.
void Raise(TestModel& model, const FloorPlan& plan)
{
    std::vector<Segment> aLines;
    const auto at = [&](std::size_t i, double z)
    { return Point3d(plan[i % plan.size()].first, plan[i % plan.size()].second, z); };
    for (const double z : {0.0, kHeight})
        for (std::size_t i = 0; i < plan.size(); ++i)
            aLines.emplace_back(at(i, z), at(i + 1, z));
    for (std::size_t i = 0; i < plan.size(); ++i)
        aLines.emplace_back(at(i, 0.0), at(i, kHeight));
    for (const Segment& line : aLines)
    {
        model.Line(line.first, line.second);
        ExpectSound(model);
    }
}
} // namespace

TEST(SharedWall, BoundsTheSolidThatHadItFirst)
{
    TestModel model;
    Raise(model, {{0, 0}, {4, 0}, {4, 3}, {0, 3}});
    const std::uint64_t nFirst = model.GetIDs(nBodyType).front();
    Raise(model, {{4, 0}, {7, 0}, {7, 3}, {4, 3}});
    EXPECT_NEAR(model.GetVolume(nFirst), 4 * 3 * kHeight, 1e-9);
    EXPECT_EQ(model.Count(nFaceType), 11u);
    ExpectUndoRedoRestores(model);
}

/// Real pairs and groups of houses, cut down: walls shared, overlapping by millimetres, running on past one another.
TEST(SharedWall, LeavesASoundModelHoweverTheBuildingsMeet)
{
    const std::vector<std::vector<FloorPlan>> aGroups{
        {{{1113.066, 964.744}, {1111.099, 974.574}, {1114.877, 965.107}},
         {{1113.066, 964.744}, {1110.659, 975.675}, {1111.099, 974.574}}},
        {{{234.915, 1398.272}, {238.986, 1395.995}, {232.539, 1403.661}},
         {{226.282, 1392.79}, {234.562, 1388.147}, {238.986, 1395.995}, {234.915, 1398.272}},
         {{227.524, 1385.204}, {227.198, 1375.082}, {230.134, 1380.291}},
         {{226.049, 1382.592}, {236.889, 1386.777}, {234.562, 1388.147}, {226.282, 1392.79}}},
        {{{561.989, 1607.539}, {559.904, 1602.569}, {573.804, 1610.711}},
         {{554.209, 1597.323}, {557.171, 1596.095}, {559.904, 1602.569}, {562.001, 1607.534}, {561.989, 1607.539}}},
        {{{607.098, 1562.405}, {607.546, 1563.485}, {600.019, 1571.447}},
         {{608.362, 1565.453}, {607.098, 1562.405}, {610.81, 1564.437}}},
    };
    for (std::size_t i = 0; i < aGroups.size(); ++i)
    {
        SCOPED_TRACE(i);
        TestModel model;
        for (const FloorPlan& plan : aGroups[i])
            Raise(model, plan);
        ExpectUndoRedoRestores(model);
    }
}
} // namespace QRV
