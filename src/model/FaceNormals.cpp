#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"
#include "spatial/FaceFacets.h"

#include <unordered_map>

namespace QRV
{
namespace
{
/// Longer walks around a vertex go round in a broken ring.
constexpr unsigned kMaxFanSteps = 500000;

/// The coedge of the face that ends at the vertex, `pHint` or the one before it where it belongs to that corner.
const Coedge* FindCoedgeEndingAt(const Face& face, const Vertex* pVertex, const Coedge* pHint)
{
    if (pHint && pHint->GetFace() == &face)
    {
        if (pHint->GetEndVertex() == pVertex)
            return pHint;
        if (pHint->GetStartVertex() == pVertex)
            return pHint->GetPrevious();
    }
    ShortList<Coedge*> aCoedges;
    pVertex->GetCoedges(aCoedges, &face);
    for (const Coedge* pCoedge : aCoedges)
        if (pCoedge->GetEndVertex() == pVertex)
            return pCoedge;
    return nullptr;
}

/// The mean of the normals of the faces that one meets on the way around a vertex across smooth edges.
class NormalFan
{
public:
    NormalFan(const Face& face, const UnitVector3d& normal) : m_face(face), m_sum(normal) {}

    /// Walks from the coedge, on across its partner and the coedge that `step` gives behind that. False where the
    /// topology is incomplete: then the mean means nothing.
    template <class Step>
    bool Walk(const Coedge* pCoedge, Step&& step)
    {
        for (unsigned nSteps = 0; nSteps < kMaxFanSteps; ++nSteps)
        {
            if (!pCoedge || !pCoedge->GetEdge())
                return false;
            const Coedge* pPartner = pCoedge->GetPartner();
            if (!pCoedge->GetEdge()->IsSmooth() || !pPartner || pPartner->GetPartner() != pCoedge ||
                pPartner->IsForward() == pCoedge->IsForward())
                return true;
            pCoedge = step(*pPartner);
            if (!pCoedge || !pCoedge->GetFace())
                return false;
            if (pCoedge->GetFace() != &m_face)
            {
                m_sum += pCoedge->GetFace()->GetPlane().normal;
                ++m_nCount;
            }
            m_bClosed = pCoedge->GetEdge() == m_pFirstEdge;
            if (m_bClosed)
                return true;
        }
        return true;
    }

    void SetFirstEdge(const Edge* pEdge) { m_pFirstEdge = pEdge; }
    bool IsClosed() const { return m_bClosed; }
    UnitVector3d GetMean() const { return UnitVector3d(m_nCount < 2 ? m_sum : m_sum / m_nCount, true); }

private:
    const Face& m_face;
    Vector3d m_sum;
    unsigned m_nCount = 1;
    const Edge* m_pFirstEdge = nullptr;
    bool m_bClosed = false;
};
} // namespace

UnitVector3d Face::GetVertexNormal(const Vertex* pVertex, const Coedge* pCoedge)
{
    const UnitVector3d plain = GetPlane().normal;
    const Coedge* pFirst = FindCoedgeEndingAt(*this, pVertex, pCoedge);
    if (!pFirst)
        return plain;

    NormalFan fan(*this, plain);
    fan.SetFirstEdge(pFirst->GetEdge());
    if (!fan.Walk(pFirst, [](const Coedge& partner) { return partner.GetPrevious(); }))
        return plain;
    if (!fan.IsClosed() && !fan.Walk(pFirst->GetNext(), [](const Coedge& partner) { return partner.GetNext(); }))
        return plain;
    return fan.GetMean();
}

void Face::GetVertexNormals(std::vector<std::pair<std::uint64_t, UnitVector3d>>& aNormals)
{
    ObjectSet seen;
    std::vector<Coedge*> aCoedges;
    GetCoedges(aCoedges);
    for (const Coedge* pCoedge : aCoedges)
        if (const Vertex* pVertex = pCoedge->GetStartVertex(); pVertex && seen.insert(pVertex).second)
            aNormals.emplace_back(pVertex->GetID(), GetVertexNormal(pVertex, pCoedge));
}

bool Face::GetRenderableFace(std::vector<Point3d>& aPoints, std::vector<UnitVector3d>& aNormals, bool bBackSide)
{
    const FaceFacets* pFacets = GetFacets();
    if (!pFacets)
        return false;
    std::vector<std::pair<std::uint64_t, UnitVector3d>> aVertexNormals;
    GetVertexNormals(aVertexNormals);
    const std::unordered_map<std::uint64_t, UnitVector3d> mapNormals(aVertexNormals.begin(), aVertexNormals.end());

    const std::array<std::size_t, 3> aOrder =
        bBackSide ? std::array<std::size_t, 3>{0, 2, 1} : std::array<std::size_t, 3>{0, 1, 2};
    for (const Facet& facet : pFacets->GetFacets())
        for (const std::size_t nCorner : aOrder)
        {
            const UnitVector3d& normal = mapNormals.at(facet.aVertices[nCorner]->GetID());
            aPoints.push_back(facet.GetPoint(nCorner));
            aNormals.push_back(bBackSide ? -normal : normal);
        }
    return true;
}
} // namespace QRV
