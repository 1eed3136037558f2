#include "Solids.h"

#include <algorithm>
#include <map>
#include <set>

namespace examples
{
using namespace QRV;

namespace
{
std::vector<std::uint64_t> GetBelow(const Session& session, std::uint64_t nObject, nObjectType nType)
{
    std::vector<std::uint64_t> aIDs;
    Expect(APIGetObjectsByTypeReadOnly(session.GetID(), nObject, nType, aIDs, false), "APIGetObjectsByTypeReadOnly");
    return aIDs;
}

bool RunsForward(const Session& session, std::uint64_t nCoedge)
{
    bool bForward = false;
    Expect(APIGetCoedgeDirectionReadOnly(session.GetID(), nCoedge, bForward), "APIGetCoedgeDirectionReadOnly");
    return bForward;
}

/// One side of an edge, and the face that it belongs to.
struct Side
{
    std::uint64_t nFace = INVALID_ID;
    bool bForward = false;
};

/// The faces of a body by their edges. An edge that a face has on both sides counts twice.
class FacesOfBody
{
public:
    FacesOfBody(const Session& session, std::uint64_t nBody)
    {
        for (const std::uint64_t nFace : GetBelow(session, nBody, nFaceType))
            for (const std::uint64_t nCoedge : GetBelow(session, nFace, nCoedgeType))
            {
                const std::uint64_t nEdge = GetBelow(session, nCoedge, nEdgeType).at(0);
                m_edgesOfFaces[nFace].push_back(nEdge);
                m_sidesOfEdges[nEdge].push_back({nFace, RunsForward(session, nCoedge)});
            }
    }

    /// Takes away, as long as there are such, faces with an edge that no other face has, and faces whose every edge
    /// closes without them.
    void TakeSheetsAway()
    {
        std::set<std::uint64_t> toLookAt;
        for (const auto& [nFace, aEdges] : m_edgesOfFaces)
            toLookAt.insert(nFace);
        while (!toLookAt.empty())
        {
            const std::uint64_t nFace = toLookAt.extract(toLookAt.begin()).value();
            if (IsSheet(nFace))
                TakeAway(nFace, toLookAt);
        }
    }

    /// Whether each edge has two faces that agree where outside is.
    bool IsClosed() const
    {
        const auto closes = [](const auto& edge)
        {
            const std::vector<Side>& aSides = edge.second;
            return aSides.size() == 2 && aSides[0].bForward != aSides[1].bForward;
        };
        return !m_sidesOfEdges.empty() && std::all_of(m_sidesOfEdges.begin(), m_sidesOfEdges.end(), closes);
    }

    /// Those that are left.
    std::vector<std::uint64_t> GetFaces() const
    {
        std::vector<std::uint64_t> aFaces;
        for (const auto& [nFace, aEdges] : m_edgesOfFaces)
            aFaces.push_back(nFace);
        return aFaces;
    }

private:
    bool IsSheet(std::uint64_t nFace) const
    {
        bool bOpen = false;
        bool bClosesWithout = true;
        for (const std::uint64_t nEdge : m_edgesOfFaces.at(nFace))
        {
            bOpen = bOpen || m_sidesOfEdges.at(nEdge).size() == 1;
            bClosesWithout = bClosesWithout && m_sidesOfEdges.at(nEdge).size() > 2;
        }
        return bOpen || bClosesWithout;
    }

    void TakeAway(std::uint64_t nFace, std::set<std::uint64_t>& toLookAt)
    {
        const auto face = m_edgesOfFaces.extract(nFace);
        for (const std::uint64_t nEdge : face.mapped())
        {
            const auto edge = m_sidesOfEdges.find(nEdge);
            if (edge == m_sidesOfEdges.end())
                continue;
            std::erase_if(edge->second, [nFace](const Side& side) { return side.nFace == nFace; });
            for (const Side& side : edge->second)
                toLookAt.insert(side.nFace);
            if (edge->second.empty())
                m_sidesOfEdges.erase(edge);
        }
    }

    std::map<std::uint64_t, std::vector<std::uint64_t>> m_edgesOfFaces;
    std::map<std::uint64_t, std::vector<Side>> m_sidesOfEdges;
};

bool IsManifold(const Session& session, std::uint64_t nBody)
{
    std::vector<std::uint64_t> aEdges;
    Expect(APIGetBodyEdgesReadOnly(session.GetID(), nBody, aEdges), "APIGetBodyEdgesReadOnly");
    for (const std::uint64_t nEdge : aEdges)
    {
        bool bManifold = false;
        Expect(APIIsEdgeManifoldReadOnly(session.GetID(), nEdge, bManifold), "APIIsEdgeManifoldReadOnly");
        if (!bManifold)
            return false;
    }
    return true;
}
} // namespace

Solids FindSolids(const Session& session, bool bTakeSheetsAway)
{
    Solids solids;
    for (const std::uint64_t nBody : session.GetAll(nBodyType))
    {
        if (IsManifold(session, nBody))
            solids.aWhole.push_back({nBody, {nBody}});
        else if (bTakeSheetsAway)
        {
            FacesOfBody faces(session, nBody);
            faces.TakeSheetsAway();
            if (faces.IsClosed())
                solids.aUnderSheets.push_back({nBody, faces.GetFaces()});
        }
    }
    return solids;
}
} // namespace examples
