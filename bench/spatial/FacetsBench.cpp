// The triangles of one face: a star with square holes, beside CGAL's constrained Delaunay triangulation.

#include "model/Face.h"
#include "spatial/FaceFacets.h"
#include "spatial/FacetsYardstick.h"
#include "support/BenchModel.h"

#include <benchmark/benchmark.h>

namespace
{
using QRV::Point3d;
using Ring = std::vector<Point3d>;

Ring MakeStar(std::size_t nCorners)
{
    Ring ring;
    for (std::size_t n = 0; n < nCorners; ++n)
    {
        const double dTurn = 2.0 * std::acos(-1.0) * double(n) / double(nCorners);
        const double dRadius = n % 2 == 0 ? 1.0 : 0.6;
        ring.emplace_back(dRadius * std::cos(dTurn), dRadius * std::sin(dTurn), 0.0);
    }
    return ring;
}

/// The outline, then square holes on a grid of 10 by 10 about the middle.
std::vector<Ring> MakeRings(std::size_t nCorners, std::size_t nHoles)
{
    std::vector<Ring> aRings{MakeStar(nCorners)};
    constexpr double kStep = 0.07;
    constexpr double kSide = 0.04;
    for (std::size_t n = 0; n < nHoles; ++n)
    {
        const double dX = (double(n % 10) - 5.0) * kStep;
        const double dY = (double(n / 10) - 5.0) * kStep;
        aRings.push_back({{dX, dY, 0.0}, {dX, dY + kSide, 0.0}, {dX + kSide, dY + kSide, 0.0}, {dX + kSide, dY, 0.0}});
    }
    return aRings;
}

void Facets(benchmark::State& state)
{
    const auto aRings = MakeRings(std::size_t(state.range(0)), std::size_t(state.range(1)));
    const QRV::BenchModel model;
    std::uint64_t nFace = QRV::INVALID_ID;
    QRV::APICreatePolyline(model.GetID(), aRings.front(), nFace, true);
    for (std::size_t n = 1; n < aRings.size(); ++n)
        model.DrawOutline(aRings[n]);
    auto* pFace = model.GetHistory().Get<QRV::Face>(nFace);
    QRV::Expect(pFace && pFace->GetLoops().size() == aRings.size(), "a face with its holes");
    std::size_t nFacets = 0;
    for (auto _ : state)
    {
        bool bFailed = false;
        nFacets = QRV::FaceFacets::Compute(*pFace, bFailed)->GetFacets().size();
    }
    state.counters["triangles"] = double(nFacets);
}

void FacetsYardstick(benchmark::State& state)
{
    const auto aRings = MakeRings(std::size_t(state.range(0)), std::size_t(state.range(1)));
    std::size_t nFacets = 0;
    for (auto _ : state)
        nFacets = TriangulateByYardstick(aRings);
    state.counters["triangles"] = double(nFacets);
}

void ForStars(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->ArgNames({"corners", "holes"})->ArgsProduct({{100, 1'000, 10'000}, {0, 10, 100}});
    pBenchmark->Unit(benchmark::kMicrosecond);
}

BENCHMARK(Facets)->Apply(ForStars);
BENCHMARK(FacetsYardstick)->Apply(ForStars);
} // namespace
