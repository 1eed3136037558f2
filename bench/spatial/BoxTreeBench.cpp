// The box tree beside Boost.Geometry's R*-tree, over the same boxes and in the same order of calls.

#include "spatial/BoxTree.h"

#include <benchmark/benchmark.h>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point.hpp>
#include <boost/geometry/index/rtree.hpp>

#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace
{
struct Item
{
    QRV::Interval3d box;
};
} // namespace

template <>
struct QRV::BoxOf<Item>
{
    static const Interval3d& Get(const Item& item) { return item.box; }
};

namespace
{
using QRV::Interval3d;
using QRV::Point3d;
namespace bg = boost::geometry;
using BoostPoint = bg::model::point<double, 3, bg::cs::cartesian>;
using BoostBox = bg::model::box<BoostPoint>;
using BoostValue = std::pair<BoostBox, Item*>;

BoostBox ToBoost(const Interval3d& box)
{
    return {{box.lower[0], box.lower[1], box.lower[2]}, {box.upper[0], box.upper[1], box.upper[2]}};
}

/// n cubes in the unit cube, small enough that few overlap; a query of GetQuerySize(n) meets about 16 of them.
std::vector<Item> MakeItems(std::size_t n)
{
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> place(0.0, 1.0);
    const double dSide = 0.5 / std::cbrt(static_cast<double>(n));
    std::uniform_real_distribution<double> size(0.0, dSide);
    std::vector<Item> aItems(n);
    for (Item& item : aItems)
    {
        const Point3d corner{place(random), place(random), place(random)};
        item.box = {corner, {corner[0] + size(random), corner[1] + size(random), corner[2] + size(random)}};
    }
    return aItems;
}

std::vector<Interval3d> MakeQueries(std::size_t nItems, std::size_t nQueries)
{
    std::mt19937_64 random(7);
    const double dSide = 2.29 / std::cbrt(static_cast<double>(nItems));
    std::uniform_real_distribution<double> place(0.0, 1.0 - dSide);
    std::vector<Interval3d> aQueries;
    for (std::size_t n = 0; n < nQueries; ++n)
    {
        const Point3d corner{place(random), place(random), place(random)};
        aQueries.push_back({corner, {corner[0] + dSide, corner[1] + dSide, corner[2] + dSide}});
    }
    return aQueries;
}

struct OurTree
{
    void Insert(Item& item) { m_tree.Insert(&item); }
    void Remove(Item& item) { m_tree.Remove(&item); }
    std::size_t Query(const Interval3d& box)
    {
        m_aFound.clear();
        return m_tree.FindTouching(box, m_aFound);
    }
    QRV::BoxTree<Item> m_tree;
    std::vector<Item*> m_aFound;
};

struct YardstickTree
{
    void Insert(Item& item) { m_tree.insert({ToBoost(item.box), &item}); }
    void Remove(Item& item) { m_tree.remove({ToBoost(item.box), &item}); }
    std::size_t Query(const Interval3d& box)
    {
        m_aFound.clear();
        return m_tree.query(bg::index::intersects(ToBoost(box)), std::back_inserter(m_aFound));
    }
    struct IsSame
    {
        bool operator()(const BoostValue& a, const BoostValue& b) const { return a.second == b.second; }
    };
    bg::index::rtree<BoostValue, bg::index::rstar<10>, bg::index::indexable<BoostValue>, IsSame> m_tree;
    std::vector<BoostValue> m_aFound;
};

template <class Tree>
void Fill(Tree& tree, std::vector<Item>& aItems)
{
    for (Item& item : aItems)
        tree.Insert(item);
}

void CountItems(benchmark::State& state, std::size_t nItems)
{
    state.SetItemsProcessed(static_cast<std::int64_t>(nItems) * state.iterations());
}

template <class Tree>
void InsertAll(benchmark::State& state)
{
    std::vector<Item> aItems = MakeItems(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
    {
        state.PauseTiming();
        auto pTree = std::make_unique<Tree>();
        state.ResumeTiming();
        Fill(*pTree, aItems);
        state.PauseTiming();
        pTree.reset();
        state.ResumeTiming();
    }
    CountItems(state, aItems.size());
}

template <class Tree>
void QueryBoxes(benchmark::State& state)
{
    std::vector<Item> aItems = MakeItems(static_cast<std::size_t>(state.range(0)));
    const std::vector<Interval3d> aQueries = MakeQueries(aItems.size(), 100'000);
    Tree tree;
    Fill(tree, aItems);
    std::size_t nFound = 0;
    for (auto _ : state)
        for (const Interval3d& query : aQueries)
            nFound += tree.Query(query);
    CountItems(state, aQueries.size());
    state.counters["hits"] = static_cast<double>(nFound) / static_cast<double>(aQueries.size() * state.iterations());
}

template <class Tree>
void RemoveHalf(benchmark::State& state)
{
    std::vector<Item> aItems = MakeItems(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
    {
        state.PauseTiming();
        auto pTree = std::make_unique<Tree>();
        Fill(*pTree, aItems);
        state.ResumeTiming();
        for (std::size_t n = 0; n < aItems.size(); n += 2)
            pTree->Remove(aItems[n]);
        state.PauseTiming();
        pTree.reset();
        state.ResumeTiming();
    }
    CountItems(state, aItems.size() / 2);
}

void ForSizes(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(InsertAll<OurTree>)->Apply(ForSizes);
BENCHMARK(InsertAll<YardstickTree>)->Apply(ForSizes);
BENCHMARK(QueryBoxes<OurTree>)->Apply(ForSizes);
BENCHMARK(QueryBoxes<YardstickTree>)->Apply(ForSizes);
BENCHMARK(RemoveHalf<OurTree>)->Apply(ForSizes);
BENCHMARK(RemoveHalf<YardstickTree>)->Apply(ForSizes);
} // namespace
