#include "exchange/NeedleFacets.h"

#include "model/Edge.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <unordered_map>

namespace QRV
{
namespace
{
/// Single precision rounds a coordinate by up to 2^-24 of its size, and the usual checks of a normal allow 2^-10.
/// Lower than this share of the coordinates' size, a triangle can tilt by more; two bits are for three corners that
/// are all rounded.
constexpr double kNeedleHeight = 1.0 / 4096;
constexpr double kWorthwhile = 2.0; ///< turning a side must make the lower of both triangles so many times higher

using Side = std::pair<const Vertex*, const Vertex*>;

struct SideHash
{
    std::size_t operator()(const Side& side) const
    {
        const std::hash<const Vertex*> hash;
        return hash(side.first) * 31 + hash(side.second);
    }
};

/// The triangles of one face while their sides are turned.
class FacetTurning
{
public:
    FacetTurning(std::vector<Facet> aFacets, const UnitVector3d& normal, const Transf3d& transform)
        : m_aFacets(std::move(aFacets)), m_transform(transform),
          m_facing(transform * normal * (transform.isMirror() ? -1.0 : 1.0))
    {
    }

    std::vector<Facet> Run()
    {
        CollectNeedles();
        if (!m_aNeedles.empty())
            NoteSides();
        while (!m_aNeedles.empty())
        {
            const std::size_t nFacet = m_aNeedles.back();
            m_aNeedles.pop_back();
            if (const auto turn = FindBestTurn(nFacet))
                Apply(nFacet, *turn);
        }
        return std::move(m_aFacets);
    }

private:
    /// The triangles that take the place of a triangle and of its neighbour.
    struct Turn
    {
        Side side;
        std::size_t nNeighbour = 0;
        Facet first{};
        Facet second{};
        double dHeight = 0.0; ///< of the lower one
    };

    Point3d GetPoint(const Vertex* pVertex) const { return m_transform * pVertex->GetPosition(); }

    /// Over the longest side; negative for the wrong winding.
    double GetHeight(const Facet& facet) const
    {
        const Point3d a = GetPoint(facet.aVertices[0]);
        const Point3d b = GetPoint(facet.aVertices[1]);
        const Point3d c = GetPoint(facet.aVertices[2]);
        const double dLongest = std::sqrt(std::max({a.distSqrd(b), b.distSqrd(c), c.distSqrd(a)}));
        const double dDoubleArea = ((b - a) * (c - a)) % m_facing;
        return dLongest > 0.0 ? dDoubleArea / dLongest : 0.0;
    }

    bool IsNeedle(const Facet& facet) const
    {
        double dSize = 0.0;
        for (const Vertex* pVertex : facet.aVertices)
            for (std::size_t n = 0; n < 3; ++n)
                dSize = std::max(dSize, std::abs(GetPoint(pVertex)[n]));
        return GetHeight(facet) <= kNeedleHeight * dSize;
    }

    void CollectNeedles()
    {
        for (std::size_t n = 0; n < m_aFacets.size(); ++n)
            if (IsNeedle(m_aFacets[n]))
                m_aNeedles.push_back(n);
    }

    void NoteSides(std::size_t nFacet)
    {
        const auto& aVertices = m_aFacets[nFacet].aVertices;
        for (std::size_t n = 0; n < 3; ++n)
            m_mapSides[{aVertices[n], aVertices[(n + 1) % 3]}] = nFacet;
    }

    void NoteSides()
    {
        for (std::size_t n = 0; n < m_aFacets.size(); ++n)
            NoteSides(n);
    }

    /// The turn of the side that starts at corner `nCorner`, unless it is an edge of the model.
    std::optional<Turn> GetTurn(std::size_t nFacet, std::size_t nCorner) const
    {
        const auto& aVertices = m_aFacets[nFacet].aVertices;
        Vertex* pStart = aVertices[nCorner];
        Vertex* pEnd = aVertices[(nCorner + 1) % 3];
        Vertex* pApex = aVertices[(nCorner + 2) % 3];
        const auto it = m_mapSides.find({pEnd, pStart});
        if (it == m_mapSides.end() || it->second == nFacet || pStart->FindEdgeTo(*pEnd))
            return {};
        const auto& aOthers = m_aFacets[it->second].aVertices;
        const auto itOpposite =
            std::ranges::find_if(aOthers, [&](const Vertex* pVertex) { return pVertex != pStart && pVertex != pEnd; });
        if (itOpposite == aOthers.end() || *itOpposite == pApex)
            return {};
        Turn turn{{pStart, pEnd}, it->second, Facet{{pApex, pStart, *itOpposite}}, Facet{{*itOpposite, pEnd, pApex}}};
        turn.dHeight = std::min(GetHeight(turn.first), GetHeight(turn.second));
        const double dBefore = std::min(GetHeight(m_aFacets[nFacet]), GetHeight(m_aFacets[turn.nNeighbour]));
        return turn.dHeight > kLinearTolerance && turn.dHeight > kWorthwhile * dBefore ? std::optional(turn)
                                                                                       : std::nullopt;
    }

    std::optional<Turn> FindBestTurn(std::size_t nFacet) const
    {
        std::optional<Turn> best;
        for (std::size_t nCorner = 0; nCorner < 3; ++nCorner)
            if (const auto turn = GetTurn(nFacet, nCorner); turn && (!best || turn->dHeight > best->dHeight))
                best = turn;
        return best;
    }

    /// A turn may open the way for the needles around it.
    void Apply(std::size_t nFacet, const Turn& turn)
    {
        m_mapSides.erase(turn.side);
        m_mapSides.erase({turn.side.second, turn.side.first});
        m_aFacets[nFacet] = turn.first;
        m_aFacets[turn.nNeighbour] = turn.second;
        for (const std::size_t nChanged : {nFacet, turn.nNeighbour})
        {
            NoteSides(nChanged);
            if (IsNeedle(m_aFacets[nChanged]))
                m_aNeedles.push_back(nChanged);
        }
        for (const std::size_t nChanged : {nFacet, turn.nNeighbour})
            for (std::size_t n = 0; n < 3; ++n)
            {
                const auto& aVertices = m_aFacets[nChanged].aVertices;
                const auto it = m_mapSides.find({aVertices[(n + 1) % 3], aVertices[n]});
                if (it != m_mapSides.end() && IsNeedle(m_aFacets[it->second]))
                    m_aNeedles.push_back(it->second);
            }
    }

    std::vector<Facet> m_aFacets;
    const Transf3d& m_transform;
    Vector3d m_facing;                   ///< the side on which the transformed triangles run counter-clockwise
    std::vector<std::size_t> m_aNeedles; ///< to be looked at
    std::unordered_map<Side, std::size_t, SideHash> m_mapSides; ///< to the triangle that runs along it
};
} // namespace

std::vector<Facet> TurnNeedles(std::vector<Facet> aFacets, const UnitVector3d& normal, const Transf3d& transform)
{
    return FacetTurning(std::move(aFacets), normal, transform).Run();
}
} // namespace QRV
