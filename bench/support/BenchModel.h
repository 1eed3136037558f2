/// A model that a benchmark draws through the exported calls.
#pragma once

#include "history/HistoryRegistry.h"

#include <QRV/API.h>

#include <malloc.h>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <random>
#include <utility>
#include <vector>

namespace QRV
{
inline void Expect(bool bGood, const char* pWhat)
{
    if (bGood)
        return;
    std::cerr << "benchmark model is not as expected: " << pWhat << '\n';
    std::abort();
}

using Segment = std::pair<Point3d, Point3d>;

/// One History for as long as it lives.
class BenchModel
{
public:
    BenchModel() { Expect(APICreateHistory(m_nID, true).IsGood(), "a History"); }
    ~BenchModel() { APIDeleteHistory(m_nID); }
    BenchModel(const BenchModel&) = delete;
    BenchModel& operator=(const BenchModel&) = delete;

    std::uint64_t GetID() const { return m_nID; }
    History& GetHistory() const { return *HistoryRegistry::Get().GetHistory(m_nID); }

    void Draw(const Segment& segment) const
    {
        Expect(APIConnectPoint3ds(m_nID, segment.first, segment.second).IsGood(), "a line");
    }
    void Draw(const std::vector<Segment>& aSegments) const
    {
        for (const Segment& segment : aSegments)
            Draw(segment);
    }
    void DrawOutline(const std::vector<Point3d>& aPoints) const
    {
        for (std::size_t n = 0; n < aPoints.size(); ++n)
            Draw({aPoints[n], aPoints[(n + 1) % aPoints.size()]});
    }

    std::vector<std::uint64_t> Get(nObjectType nType) const
    {
        std::vector<std::uint64_t> aIDs;
        APIGetAllObjectsByTypeReadOnly(m_nID, nType, aIDs);
        return aIDs;
    }
    std::size_t GetMemorySize() const
    {
        std::uint64_t nBytes = 0;
        APIGetMemorySizeReadOnly(m_nID, nBytes, false);
        return nBytes;
    }

private:
    std::uint64_t m_nID = INVALID_ID;
};

/// Bytes that the program holds on the heap.
inline std::size_t GetHeapSize()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Segments of length about 3 / sqrt(n) in the unit square: each crosses two or three others.
inline std::vector<Segment> MakeRandomSegments(std::size_t n)
{
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> place(0.0, 1.0);
    std::uniform_real_distribution<double> turn(0.0, 2.0 * std::acos(-1.0));
    std::uniform_real_distribution<double> size(0.9, 1.1);
    std::vector<Segment> aSegments;
    while (aSegments.size() < n)
    {
        const Point3d from(place(random), place(random), 0.0);
        const double dTurn = turn(random);
        const double dLength = size(random) * 3.0 / std::sqrt(double(n));
        const Point3d to(from[0] + dLength * std::cos(dTurn), from[1] + dLength * std::sin(dTurn), 0.0);
        if (to[0] >= 0.0 && to[0] <= 1.0 && to[1] >= 0.0 && to[1] <= 1.0)
            aSegments.emplace_back(from, to);
    }
    return aSegments;
}
} // namespace QRV
