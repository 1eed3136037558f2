// What one small step costs in a solid of many faces.

#include "history/History.h"
#include "model/Edge.h"
#include "support/BenchModel.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <vector>

namespace
{
using QRV::BenchModel;
using QRV::Point3d;

/// A unit cube, its sides ruled into m by m cells.
std::unique_ptr<BenchModel> DrawRuledCube(int m)
{
    auto pModel = std::make_unique<BenchModel>();
    const auto place = [](int nAxis, double dAlong, double u, double v)
    {
        Point3d p;
        p[nAxis] = dAlong;
        p[(nAxis + 1) % 3] = u;
        p[(nAxis + 2) % 3] = v;
        return p;
    };
    for (int nAxis = 0; nAxis < 3; ++nAxis)
        for (const auto& [u, v] : {std::pair{0.0, 0.0}, {0.0, 1.0}, {1.0, 0.0}, {1.0, 1.0}})
            pModel->Draw({place(nAxis, 0.0, u, v), place(nAxis, 1.0, u, v)});
    for (int nAxis = 0; nAxis < 3; ++nAxis)
        for (const double dSide : {0.0, 1.0})
            for (int n = 1; n < m; ++n)
            {
                const double d = double(n) / m;
                pModel->Draw({place(nAxis, dSide, d, 0.0), place(nAxis, dSide, d, 1.0)});
                pModel->Draw({place(nAxis, dSide, 0.0, d), place(nAxis, dSide, 1.0, d)});
            }
    QRV::Expect(pModel->Get(QRV::nFaceType).size() == std::size_t(6 * m * m), "all cells of the cube");
    QRV::Expect(pModel->Get(QRV::nBodyType).size() == 1, "one body");
    return pModel;
}

const BenchModel& GetRuledCube(int m)
{
    static std::map<int, std::unique_ptr<BenchModel>> mapCubes;
    auto& pModel = mapCubes[m];
    if (!pModel)
        pModel = DrawRuledCube(m);
    return *pModel;
}

/// A diagonal of a cell on the top side, the cells counted from 0.
QRV::Segment GetDiagonal(int m, int nX, int nY)
{
    return {{double(nX) / m, double(nY) / m, 1.0}, {double(nX + 1) / m, double(nY + 1) / m, 1.0}};
}

/// Splits a cell in the middle of the top side.
void DrawDiagonal(const BenchModel& model, int m)
{
    model.Draw(GetDiagonal(m, m / 2, m / 2));
}

/// A rectangle within a cell in the middle of the top side: it leaves a hole there, and a face in the hole.
void DrawWindow(const BenchModel& model, int m)
{
    const auto at = [m](double x, double y) { return Point3d((m / 2 + x) / m, (m / 2 + y) / m, 1.0); };
    std::vector<Point3d> aCorners;
    QRV::Expect(QRV::APICreateRectangle(model.GetID(), at(0.25, 0.25), at(0.75, 0.25), at(0.75, 0.75), aCorners, false)
                    .IsGood(),
                "a window");
}

/// Draws something in a cell by one call, takes that back and does it again; gives the time of each.
class StepInCell
{
public:
    using Drawing = void (*)(const BenchModel& model, int m);

    StepInCell(int m, Drawing draw) : m_model(GetRuledCube(m)), m_nCells(m), m_draw(draw)
    {
        m_draw(m_model, m_nCells);
        QRV::Expect(m_model.Get(QRV::nFaceType).size() == std::size_t(6 * m * m) + 1, "one face more");
        QRV::APIUndoHistory(m_model.GetID(), true);
    }

    enum nPhase
    {
        nCall,
        nUndo,
        nRedo
    };

    std::array<double, 3> Run()
    {
        const double dCall = Time([&] { m_draw(m_model, m_nCells); });
        const double dUndo = Time([&] { QRV::APIUndoHistory(m_model.GetID()); });
        const double dRedo = Time([&] { QRV::APIRedoHistory(m_model.GetID()); });
        QRV::APIUndoHistory(m_model.GetID(), true);
        return {dCall, dUndo, dRedo};
    }

private:
    template <class Work>
    static double Time(Work work)
    {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

    const BenchModel& m_model;
    int m_nCells;
    Drawing m_draw;
};

void RunPhase(benchmark::State& state, StepInCell::Drawing draw, StepInCell::nPhase nPhase)
{
    StepInCell step(int(state.range(0)), draw);
    for (auto _ : state)
        state.SetIterationTime(step.Run()[nPhase]);
}

void SplitFaceOfSolid(benchmark::State& state)
{
    RunPhase(state, DrawDiagonal, StepInCell::nCall);
}

void UndoSplitFaceOfSolid(benchmark::State& state)
{
    RunPhase(state, DrawDiagonal, StepInCell::nUndo);
}

void RedoSplitFaceOfSolid(benchmark::State& state)
{
    RunPhase(state, DrawDiagonal, StepInCell::nRedo);
}

void WindowInSolid(benchmark::State& state)
{
    RunPhase(state, DrawWindow, StepInCell::nCall);
}

void UndoWindowInSolid(benchmark::State& state)
{
    RunPhase(state, DrawWindow, StepInCell::nUndo);
}

void RedoWindowInSolid(benchmark::State& state)
{
    RunPhase(state, DrawWindow, StepInCell::nRedo);
}

/// What a step adds to the heap, as the mean over many.
void SplitFaceOfSolidMemory(benchmark::State& state)
{
    const auto m = int(state.range(0));
    const BenchModel& model = GetRuledCube(m);
    constexpr int kSide = 10;
    const std::size_t nBefore = QRV::GetHeapSize();
    for (auto _ : state)
        for (int n = 0; n < kSide * kSide; ++n)
            model.Draw(GetDiagonal(m, 1 + n % kSide, 1 + n / kSide));
    state.counters["bytes"] = double(QRV::GetHeapSize() - nBefore) / (kSide * kSide);
    for (int n = 0; n < kSide * kSide; ++n)
        QRV::APIUndoHistory(model.GetID(), true);
}

void ForCubes(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->ArgName("m")->Arg(13)->Arg(130)->UseManualTime()->Iterations(2'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(SplitFaceOfSolid)->Apply(ForCubes);
BENCHMARK(UndoSplitFaceOfSolid)->Apply(ForCubes);
BENCHMARK(RedoSplitFaceOfSolid)->Apply(ForCubes);
BENCHMARK(WindowInSolid)->Apply(ForCubes);
BENCHMARK(UndoWindowInSolid)->Apply(ForCubes);
BENCHMARK(RedoWindowInSolid)->Apply(ForCubes);
BENCHMARK(SplitFaceOfSolidMemory)->ArgName("m")->Arg(13)->Arg(130)->Iterations(1)->Unit(benchmark::kMicrosecond);
} // namespace
