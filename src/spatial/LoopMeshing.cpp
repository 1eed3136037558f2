#include "spatial/LoopMeshing.h"

#include "spatial/FacetNodes.h"
#include "spatial/PlaneMesh.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>

namespace QRV
{
namespace
{
constexpr double kTouchTolerance = 1e-6;      // a corner that is nearer to a side touches it
constexpr std::size_t kDetoursPerCorner = 16; // sides of sound loops are led through few corners

/// A part of a side, and how often the loops run along it.
struct Way
{
    std::uint32_t nFrom;
    std::uint32_t nTo;
    std::int32_t nPasses;
};

class LoopMeshing
{
public:
    LoopMeshing(const FacetNodes& nodes, std::vector<std::uint32_t>& aTriangles)
        : m_nodes(nodes), m_aTriangles(aTriangles)
    {
    }

    bool Run();

private:
    void PutOnGrid();
    void QueueSides();
    bool LayWays();
    bool LeadAround(const Way& way, std::uint32_t nBlocking);
    void Divert(const Way& way, std::uint32_t nVia);
    void CountTurns();
    bool EmitEnclosed();
    void Emit(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::int32_t nTimes);

    const FacetNodes& m_nodes;
    std::vector<std::uint32_t>& m_aTriangles;
    double m_dGridStep = 1.0;
    std::vector<std::uint32_t> m_aPlaceOf;  // for each vertex
    std::vector<std::uint32_t> m_aVertexAt; // for each place
    std::optional<PlaneMesh> m_mesh;
    std::vector<Way> m_aWays;           // a stack of those not laid yet
    std::vector<std::int32_t> m_aTurns; // for each half-edge how often the loops run around its triangle
};

bool LoopMeshing::Run()
{
    const std::size_t nBefore = m_aTriangles.size();
    PutOnGrid();
    QueueSides();
    if (LayWays())
    {
        CountTurns();
        if (EmitEnclosed())
            return true;
    }
    m_aTriangles.resize(nBefore);
    return false;
}

/// Gives every vertex a place; vertices that fall on one share it.
void LoopMeshing::PutOnGrid()
{
    const std::vector<FacetVertex>& aVertices = m_nodes.GetVertices();
    double dLargest = 0.0;
    for (const FacetVertex& vertex : aVertices)
        dLargest = std::max({dLargest, std::abs(vertex.x), std::abs(vertex.y)});
    int nExponent = 0;
    std::frexp(dLargest / static_cast<double>(PlaneMesh::kLargest), &nExponent);
    m_dGridStep = std::ldexp(1.0, nExponent);

    struct Placed
    {
        GridPlace place;
        std::uint32_t nVertex;

        auto operator<=>(const Placed&) const = default;
    };
    std::vector<Placed> aPlaced;
    for (std::uint32_t n = 0; n < aVertices.size(); ++n)
        if (aVertices[n].pPoint)
            aPlaced.push_back(
                {{std::llround(aVertices[n].x / m_dGridStep), std::llround(aVertices[n].y / m_dGridStep)}, n});
    std::sort(aPlaced.begin(), aPlaced.end());

    m_aPlaceOf.resize(aVertices.size());
    std::vector<GridPlace> aPlaces;
    for (const Placed& placed : aPlaced)
    {
        if (aPlaces.empty() || aPlaces.back() != placed.place)
        {
            aPlaces.push_back(placed.place);
            m_aVertexAt.push_back(placed.nVertex);
        }
        m_aPlaceOf[placed.nVertex] = static_cast<std::uint32_t>(aPlaces.size() - 1);
    }
    m_mesh.emplace(aPlaces);
}

void LoopMeshing::QueueSides()
{
    for (std::uint32_t nLoop = 0; nLoop < m_nodes.GetLoopCount(); ++nLoop)
    {
        const std::span<const FacetCorner> aLoop = m_nodes.GetLoop(nLoop);
        for (std::size_t i = 0; i < aLoop.size(); ++i)
        {
            const std::uint32_t nStart = aLoop[i].nVertex;
            const std::uint32_t nEnd = aLoop[i + 1 < aLoop.size() ? i + 1 : 0].nVertex;
            const Way way{m_aPlaceOf[nStart], m_aPlaceOf[nEnd], 1};
            // From vertices that share a place the side starts and ends at the one that stands for them.
            Emit(nStart, nEnd, m_aVertexAt[way.nTo], 1);
            Emit(nStart, m_aVertexAt[way.nTo], m_aVertexAt[way.nFrom], 1);
            if (way.nFrom != way.nTo)
                m_aWays.push_back(way);
        }
    }
}

/// Makes all sides edges of the mesh.
bool LoopMeshing::LayWays()
{
    PlaneMesh::Course course;
    for (std::size_t nDetours = 0; !m_aWays.empty();)
    {
        const Way way = m_aWays.back();
        m_aWays.pop_back();
        m_mesh->Trace(way.nFrom, way.nTo, course);
        if (course.nBlocking == PlaneMesh::kNone && course.nEnd == way.nTo)
        {
            if (!m_mesh->Keep(way.nFrom, course, way.nPasses))
                return false;
            continue;
        }
        if (nDetours++ > kDetoursPerCorner * m_nodes.GetCorners().size())
            return false;
        if (course.nBlocking == PlaneMesh::kNone)
            Divert(way, course.nEnd);
        else if (!LeadAround(way, course.nBlocking))
            return false;
    }
    return true;
}

/// Two sides cross: leads one of them through the end of the other that is nearest to it.
bool LoopMeshing::LeadAround(const Way& way, std::uint32_t nBlocking)
{
    const Way other{m_mesh->GetHalfEdges()[nBlocking].nStart, m_mesh->GetEnd(nBlocking), 0};
    const auto getDistance = [&](const Way& line, std::uint32_t nPlace) {
        return std::abs(m_mesh->GetDoubledArea(line.nFrom, line.nTo, nPlace)) / m_mesh->GetLength(line.nFrom, line.nTo);
    };
    const double aDistances[] = {getDistance(way, other.nFrom), getDistance(way, other.nTo),
                                 getDistance(other, way.nFrom), getDistance(other, way.nTo)};
    const auto nNearest = std::min_element(std::begin(aDistances), std::end(aDistances)) - std::begin(aDistances);
    if (aDistances[nNearest] * m_dGridStep > kTouchTolerance)
        return false;
    if (nNearest < 2)
        Divert(way, nNearest == 0 ? other.nFrom : other.nTo);
    else
    {
        m_aWays.push_back(way);
        Divert({other.nFrom, other.nTo, m_mesh->Release(nBlocking)}, nNearest == 2 ? way.nFrom : way.nTo);
    }
    return true;
}

void LoopMeshing::Divert(const Way& way, std::uint32_t nVia)
{
    Emit(m_aVertexAt[way.nFrom], m_aVertexAt[way.nTo], m_aVertexAt[nVia], way.nPasses);
    m_aWays.push_back({nVia, way.nTo, way.nPasses});
    m_aWays.push_back({way.nFrom, nVia, way.nPasses});
}

/// Spreads from the square around the loops, where nothing is enclosed.
void LoopMeshing::CountTurns()
{
    const std::vector<PlaneMesh::HalfEdge>& aEdges = m_mesh->GetHalfEdges();
    std::vector<bool> aReached(aEdges.size());
    m_aTurns.assign(aEdges.size(), 0);
    std::vector<std::uint32_t> aOpen;
    const auto reach = [&](std::uint32_t nFirst, std::int32_t nTurns)
    {
        for (std::uint32_t h = nFirst; !aReached[h]; h = aEdges[h].nNext)
        {
            aReached[h] = true;
            m_aTurns[h] = nTurns;
            aOpen.push_back(h);
        }
    };
    std::uint32_t nOutside = 0;
    while (aEdges[nOutside].nTwin != PlaneMesh::kNone)
        ++nOutside;
    reach(nOutside, 0);
    while (!aOpen.empty())
    {
        const std::uint32_t h = aOpen.back();
        aOpen.pop_back();
        if (aEdges[h].nTwin != PlaneMesh::kNone)
            reach(aEdges[h].nTwin, m_aTurns[h] - aEdges[h].nPasses);
    }
}

/// Emits each triangle as often as the loops run around it. False when that is not once for all but slivers.
bool LoopMeshing::EmitEnclosed()
{
    const std::vector<PlaneMesh::HalfEdge>& aEdges = m_mesh->GetHalfEdges();
    double dDoubledOdd = 0.0;
    double dLength = 0.0;
    for (std::uint32_t h = 0; h < aEdges.size(); ++h)
    {
        const std::uint32_t nSecond = aEdges[h].nNext;
        const std::uint32_t nThird = aEdges[nSecond].nNext;
        if (aEdges[h].nPasses > 0)
            dLength += m_mesh->GetLength(aEdges[h].nStart, aEdges[nSecond].nStart);
        if (m_aTurns[h] == 0 || h > nSecond || h > nThird)
            continue;
        const std::uint32_t a = aEdges[h].nStart;
        const std::uint32_t b = aEdges[nSecond].nStart;
        const std::uint32_t c = aEdges[nThird].nStart;
        if (m_aTurns[h] != 1)
            dDoubledOdd += m_mesh->GetDoubledArea(a, b, c);
        Emit(m_aVertexAt[a], m_aVertexAt[b], m_aVertexAt[c], m_aTurns[h]);
    }
    return dDoubledOdd * m_dGridStep <= 2.0 * kTouchTolerance * dLength;
}

/// Appends a triangle of three different vertices, turned over for a negative number of times.
void LoopMeshing::Emit(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::int32_t nTimes)
{
    if (a == b || b == c || c == a)
        return;
    for (; nTimes > 0; --nTimes)
        m_aTriangles.insert(m_aTriangles.end(), {a, b, c});
    for (; nTimes < 0; ++nTimes)
        m_aTriangles.insert(m_aTriangles.end(), {a, c, b});
}
} // namespace

bool MeshLoops(const FacetNodes& nodes, std::vector<std::uint32_t>& aTriangles)
{
    return LoopMeshing(nodes, aTriangles).Run();
}
} // namespace QRV
