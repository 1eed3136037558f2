// What one free edge costs on the heap: with its vertices, all records, its step and its places in the trees.

#include "support/BenchModel.h"

#include <benchmark/benchmark.h>

namespace
{
using QRV::Point3d;

void FreeEdgeMemory(benchmark::State& state)
{
    const auto nEdges = std::size_t(state.range(0));
    std::size_t nHeap = 0;
    std::size_t nOwnFigure = 0;
    for (auto _ : state)
    {
        const QRV::BenchModel model;
        const std::size_t nBefore = QRV::GetHeapSize();
        for (std::size_t n = 0; n < nEdges; ++n)
        {
            const Point3d start(double(n % 300), double(n / 300), 0.0);
            model.Draw({start, Point3d(start[0] + 0.5, start[1] + 0.3, 0.2)});
        }
        nHeap = QRV::GetHeapSize() - nBefore;
        nOwnFigure = model.GetMemorySize();
    }
    state.counters["heapPerEdge"] = double(nHeap) / double(nEdges);
    state.counters["ownFigurePerEdge"] = double(nOwnFigure) / double(nEdges);
}

BENCHMARK(FreeEdgeMemory)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);
} // namespace
