// Drawing line by line: crossing segments, beside CGAL's arrangements, grids of cells, boxes that share walls, and
// houses round a courtyard.

#include "operations/SketchingYardstick.h"
#include "support/BenchModel.h"

#include <benchmark/benchmark.h>

namespace
{
using QRV::Point3d;
using QRV::Segment;

/// The sides of n unit squares side by side, each side once.
std::vector<Segment> MakeCells(std::size_t n)
{
    const auto nSide = std::size_t(std::lround(std::sqrt(double(n))));
    std::vector<Segment> aLines;
    for (std::size_t y = 0; y <= nSide; ++y)
        for (std::size_t x = 0; x <= nSide; ++x)
        {
            const Point3d corner(double(x), double(y), 0.0);
            if (x < nSide)
                aLines.emplace_back(corner, Point3d(double(x + 1), double(y), 0.0));
            if (y < nSide)
                aLines.emplace_back(corner, Point3d(double(x), double(y + 1), 0.0));
        }
    return aLines;
}

/// The edges of n unit boxes one after the other, each `step` beside the last.
std::vector<Segment> MakeBoxes(std::size_t n, const QRV::Vector3d& step)
{
    std::vector<Segment> aLines;
    for (std::size_t nBox = 0; nBox < n; ++nBox)
    {
        const Point3d lower = Point3d() + step * double(nBox);
        const auto at = [&](int u, int v, int w) { return lower + QRV::Vector3d(u, v, w); };
        for (const int w : {0, 1})
            aLines.insert(aLines.end(), {{at(0, 0, w), at(1, 0, w)},
                                         {at(1, 0, w), at(1, 1, w)},
                                         {at(1, 1, w), at(0, 1, w)},
                                         {at(0, 1, w), at(0, 0, w)}});
        for (const auto& [u, v] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
            aLines.emplace_back(at(u, v, 0), at(u, v, 1));
    }
    return aLines;
}

/// A polygon of n corners on a circle about the origin.
std::vector<Point3d> MakeRound(std::size_t n, double dRadius, double dHeight, bool bClockwise)
{
    std::vector<Point3d> aPoints;
    for (std::size_t i = 0; i < n; ++i)
    {
        const double dTurn = (bClockwise ? -2.0 : 2.0) * std::acos(-1.0) * double(i) / double(n);
        aPoints.emplace_back(dRadius * std::cos(dTurn), dRadius * std::sin(dTurn), dHeight);
    }
    return aPoints;
}

/// A round house of n corners about a round court of as many, raised: of each the outline on the ground, the same
/// above, and the uprights between.
std::vector<Segment> MakeCourtyard(std::size_t n)
{
    std::vector<Segment> aLines;
    for (const bool bCourt : {false, true})
    {
        const double dRadius = bCourt ? 5.0 : 10.0;
        const std::vector<Point3d> aBottom = MakeRound(n, dRadius, 0.0, bCourt);
        const std::vector<Point3d> aTop = MakeRound(n, dRadius, 3.0, bCourt);
        for (const auto& aOutline : {aBottom, aTop})
            for (std::size_t i = 0; i < n; ++i)
                aLines.emplace_back(aOutline[i], aOutline[(i + 1) % n]);
        for (std::size_t i = 0; i < n; ++i)
            aLines.emplace_back(aBottom[i], aTop[i]);
    }
    return aLines;
}

void Draw(benchmark::State& state, const std::vector<Segment>& aSegments)
{
    std::size_t nEdges = 0;
    std::size_t nFaces = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        const auto pModel = std::make_unique<QRV::BenchModel>();
        state.ResumeTiming();
        pModel->Draw(aSegments);
        state.PauseTiming();
        nEdges = pModel->Get(QRV::nEdgeType).size();
        nFaces = pModel->Get(QRV::nFaceType).size();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(std::int64_t(aSegments.size()) * state.iterations());
    state.counters["edges"] = double(nEdges);
    state.counters["faces"] = double(nFaces);
}

void DrawRandomSegments(benchmark::State& state)
{
    Draw(state, QRV::MakeRandomSegments(std::size_t(state.range(0))));
}

void DrawCells(benchmark::State& state)
{
    Draw(state, MakeCells(std::size_t(state.range(0))));
}

void DrawRowOfBoxes(benchmark::State& state)
{
    Draw(state, MakeBoxes(std::size_t(state.range(0)), {1.0, 0.0, 0.0}));
}

void DrawStackOfBoxes(benchmark::State& state)
{
    Draw(state, MakeBoxes(std::size_t(state.range(0)), {0.0, 0.0, 1.0}));
}

void DrawCourtyard(benchmark::State& state)
{
    Draw(state, MakeCourtyard(std::size_t(state.range(0))));
}

void DrawRandomSegmentsByYardstick(benchmark::State& state)
{
    const std::vector<Segment> aSegments = QRV::MakeRandomSegments(std::size_t(state.range(0)));
    std::size_t nEdges = 0;
    for (auto _ : state)
        nEdges = ArrangeByYardstick(aSegments);
    state.counters["edges"] = double(nEdges);
}

BENCHMARK(DrawRandomSegments)
    ->Arg(1'000)
    ->Arg(3'000)
    ->Arg(10'000)
    ->Arg(30'000)
    ->Arg(100'000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(DrawRandomSegmentsByYardstick)->Arg(3'000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DrawCells)->Arg(1'000)->Arg(10'000)->Arg(30'000)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DrawRowOfBoxes)->Arg(25)->Arg(100)->Arg(400)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DrawStackOfBoxes)->Arg(25)->Arg(100)->Arg(400)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DrawCourtyard)->Arg(50)->Arg(100)->Arg(200)->Iterations(1)->Unit(benchmark::kMillisecond);
} // namespace
