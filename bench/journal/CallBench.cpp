// What the frame of an exported call costs beside its work, and what a line of the journal adds.

#include "history/History.h"
#include "model/Vertex.h"
#include "support/BenchModel.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace
{
using QRV::Point3d;

/// A call of little work: where the vertex stands.
void ReadOnlyCall(benchmark::State& state)
{
    const QRV::BenchModel model;
    model.Draw({{0.125, 2.0, 3.0}, {1.1, 2.2, 3.3}});
    const std::uint64_t nVertex = model.Get(QRV::nVertexType).front();
    Point3d place;
    for (auto _ : state)
    {
        QRV::APIGetVertexPoint3dReadOnly(model.GetID(), nVertex, place);
        benchmark::DoNotOptimize(place);
    }
}

/// The same work without the frame.
void WorkOfReadOnlyCall(benchmark::State& state)
{
    const QRV::BenchModel model;
    model.Draw({{0.125, 2.0, 3.0}, {1.1, 2.2, 3.3}});
    const std::uint64_t nVertex = model.Get(QRV::nVertexType).front();
    Point3d place;
    for (auto _ : state)
    {
        QRV::History* pHistory = QRV::HistoryRegistry::Get().GetHistory(model.GetID());
        if (const auto* pVertex = pHistory->Get<QRV::Vertex>(nVertex))
            place = pVertex->GetPosition();
        benchmark::DoNotOptimize(place);
    }
}

/// A call with two points that leaves the model as it is: the line stands there already.
void DrawLineAgain(benchmark::State& state)
{
    const bool bJournal = state.range(0) != 0;
    const QRV::BenchModel model;
    const QRV::Segment line{{0.1234567890123, 2.3456789012345, 3.0},
                            {1.1111111111111, 2.2222222222222, 3.3333333333333}};
    model.Draw(line);
    const std::string strPath = (std::filesystem::temp_directory_path() / "qrv_bench_journal.js").string();
    if (bJournal)
        QRV::Expect(QRV::APIEnableJournaling(model.GetID(), strPath).IsGood(), "a journal");
    for (auto _ : state)
        QRV::APIConnectPoint3ds(model.GetID(), line.first, line.second);
    if (bJournal)
    {
        QRV::APIDisableJournaling();
        std::filesystem::remove(strPath);
    }
}

BENCHMARK(WorkOfReadOnlyCall);
BENCHMARK(ReadOnlyCall);
BENCHMARK(DrawLineAgain)->ArgName("journal")->Arg(0)->Arg(1);
} // namespace
