// One small step undone and redone, in small and large models with short and long lists of steps.

#include "history/History.h"
#include "support/BenchModel.h"

#include <benchmark/benchmark.h>

namespace
{
using QRV::BenchModel;
using QRV::Point3d;

/// Free edges in one zigzag, drawn in one step.
void DrawZigzag(const BenchModel& model, std::size_t nEdges)
{
    constexpr std::size_t kRow = 300;
    std::vector<Point3d> aPoints;
    for (std::size_t n = 0; n <= nEdges; ++n)
    {
        const std::size_t nRow = n / kRow;
        const std::size_t nPlace = nRow % 2 == 0 ? n % kRow : kRow - 1 - n % kRow;
        aPoints.emplace_back(double(nPlace), double(nRow), n % 2 == 0 ? 0.0 : 0.3);
    }
    std::uint64_t nFace = QRV::INVALID_ID;
    QRV::Expect(QRV::APICreatePolyline(model.GetID(), aPoints, nFace, false).IsGood(), "a zigzag");
}

void MoveVertex(const BenchModel& model, std::uint64_t nVertex, double dHeight)
{
    QRV::History& history = model.GetHistory();
    history.StartDelta();
    auto* pVertex = history.Get<QRV::Vertex>(nVertex);
    const Point3d& place = pVertex->GetPosition();
    pVertex->SetPosition(Point3d(place[0], place[1], dHeight));
    history.Commit("MoveVertex");
}

void UndoAndRedo(benchmark::State& state, const BenchModel& model)
{
    for (auto _ : state)
    {
        QRV::APIUndoHistory(model.GetID());
        QRV::APIRedoHistory(model.GetID());
    }
    // Two steps an iteration: the rate is that of single ones.
    state.SetItemsProcessed(2 * state.iterations());
}

void PrepareModel(const BenchModel& model, benchmark::State& state)
{
    DrawZigzag(model, std::size_t(state.range(0)));
    const std::vector<std::uint64_t> aVertices = model.Get(QRV::nVertexType);
    for (std::int64_t n = 0; n + 2 < state.range(1); ++n)
        MoveVertex(model, aVertices[std::size_t(n * 7919) % aVertices.size()], 0.4 + 1e-6 * double(n));
}

void UndoMovedVertex(benchmark::State& state)
{
    const BenchModel model;
    PrepareModel(model, state);
    MoveVertex(model, model.Get(QRV::nVertexType)[500], 0.7);
    UndoAndRedo(state, model);
}

void UndoMadeEdge(benchmark::State& state)
{
    const BenchModel model;
    PrepareModel(model, state);
    model.Draw({{0.5, 0.5, 5.0}, {1.5, 0.5, 5.0}});
    UndoAndRedo(state, model);
}

void ForModels(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->ArgNames({"edges", "steps"})->ArgsProduct({{1'000, 100'000}, {10, 30'000}});
    pBenchmark->Unit(benchmark::kMicrosecond);
}

BENCHMARK(UndoMovedVertex)->Apply(ForModels);
BENCHMARK(UndoMadeEdge)->Apply(ForModels);
} // namespace
