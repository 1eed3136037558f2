// Rays at a height field of triangular faces, beside CGAL's tree of boxes.

#include "spatial/RayFireYardstick.h"
#include "support/BenchModel.h"

#include <benchmark/benchmark.h>

namespace
{
using QRV::Line3d;
using QRV::Point3d;
constexpr std::size_t kSide = 224; // 2 * 224 * 224 triangles
constexpr std::size_t kRays = 100'000;

/// A field of heights over the unit square, drawn line by line.
class HeightField
{
public:
    HeightField()
    {
        std::mt19937_64 random(42);
        std::uniform_real_distribution<double> height(0.0, 0.02);
        for (std::size_t n = 0; n < (kSide + 1) * (kSide + 1); ++n)
            m_aCorners.emplace_back(double(n % (kSide + 1)) / kSide, double(n / (kSide + 1)) / kSide, height(random));
    }

    std::vector<QRV::Segment> GetLines() const
    {
        std::vector<QRV::Segment> aLines;
        for (std::size_t y = 0; y <= kSide; ++y)
            for (std::size_t x = 0; x <= kSide; ++x)
            {
                if (x < kSide)
                    aLines.emplace_back(At(x, y), At(x + 1, y));
                if (y < kSide)
                    aLines.emplace_back(At(x, y), At(x, y + 1));
                if (x < kSide && y < kSide)
                    aLines.emplace_back(At(x, y), At(x + 1, y + 1));
            }
        return aLines;
    }

    std::vector<std::array<Point3d, 3>> GetTriangles() const
    {
        std::vector<std::array<Point3d, 3>> aTriangles;
        for (std::size_t y = 0; y < kSide; ++y)
            for (std::size_t x = 0; x < kSide; ++x)
            {
                aTriangles.push_back({At(x, y), At(x + 1, y), At(x + 1, y + 1)});
                aTriangles.push_back({At(x, y), At(x + 1, y + 1), At(x, y + 1)});
            }
        return aTriangles;
    }

private:
    const Point3d& At(std::size_t x, std::size_t y) const { return m_aCorners[y * (kSide + 1) + x]; }

    std::vector<Point3d> m_aCorners;
};

/// From a random place above the field to one below it.
std::vector<Line3d> MakeRays()
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> place(0.0, 1.0);
    std::vector<Line3d> aRays;
    while (aRays.size() < kRays)
    {
        const Point3d above(place(random), place(random), 0.5);
        const Point3d below(place(random), place(random), -0.5);
        aRays.emplace_back(above, below - above);
    }
    return aRays;
}

const QRV::BenchModel& GetDrawnField()
{
    static const auto pModel = []
    {
        auto pDrawn = std::make_unique<QRV::BenchModel>();
        pDrawn->Draw(HeightField().GetLines());
        QRV::Expect(pDrawn->Get(QRV::nFaceType).size() == 2 * kSide * kSide, "all triangles of the field");
        return pDrawn;
    }();
    return *pModel;
}

void RayFire(benchmark::State& state)
{
    const QRV::BenchModel& model = GetDrawnField();
    const std::vector<Line3d> aRays = MakeRays();
    std::size_t nHits = 0;
    std::vector<std::uint64_t> aIDs;
    QRV::SortedHits aSorted;
    for (auto _ : state)
        for (const Line3d& ray : aRays)
        {
            aIDs.clear();
            aSorted.clear();
            QRV::APIRayFireReadOnly(model.GetID(), ray, aIDs, 1e-9, false, false, true, 1e30, nullptr, nullptr,
                                    &aSorted);
            nHits += aSorted.size();
        }
    state.SetItemsProcessed(std::int64_t(kRays) * state.iterations());
    state.counters["hits"] = double(nHits) / double(kRays * state.iterations());
}

void RayFireByYardstick(benchmark::State& state)
{
    RayFireYardstick yardstick(HeightField().GetTriangles());
    const std::vector<Line3d> aRays = MakeRays();
    std::size_t nHits = 0;
    for (auto _ : state)
        for (const Line3d& ray : aRays)
            nHits += yardstick.Fire(ray);
    state.SetItemsProcessed(std::int64_t(kRays) * state.iterations());
    state.counters["hits"] = double(nHits) / double(kRays * state.iterations());
}

BENCHMARK(RayFire)->Unit(benchmark::kMillisecond);
BENCHMARK(RayFireByYardstick)->Unit(benchmark::kMillisecond);
} // namespace
