#include "exchange/NeedleFacets.h"
#include "exchange/PlacedObjects.h"
#include "exchange/STL.h"
#include "geometry/Finite.h"
#include "geometry/NumberText.h"
#include "model/Face.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <locale>
#include <string>

namespace QRV
{
namespace
{
constexpr std::uint64_t kMostFacets = 100000000;
constexpr std::size_t kFlushedSize = 1 << 16;
constexpr double kNormalAgrees = 1.0 / 2048; ///< in each component; programs that check normals allow about 1 / 1000

using Triangle = std::array<Point3d, 3>;

/// The normal that a program of single precision works out from the corners; zero when it sees no area.
UnitVector3d GetSinglePrecisionNormal(const Triangle& triangle)
{
    std::array<std::array<float, 3>, 2> sides;
    for (std::size_t i = 0; i < 2; ++i)
        for (std::size_t n = 0; n < 3; ++n)
            sides[i][n] = static_cast<float>(triangle[i + 1][n]) - static_cast<float>(triangle[0][n]);
    const auto& [u, v] = sides;
    const float x = u[1] * v[2] - u[2] * v[1];
    const float y = u[2] * v[0] - u[0] * v[2];
    const float z = u[0] * v[1] - u[1] * v[0];
    const float largest = std::max({std::abs(x), std::abs(y), std::abs(z)});
    if (largest == 0.0f)
        return {};
    return UnitVector3d(x / largest, y / largest, z / largest, true); // small triangles have normals too
}

/// The normal of the face, unless the triangle is so narrow, for its distance from the origin, that programs would find
/// it to contradict the corners that they have read.
UnitVector3d GetWrittenNormal(const Triangle& triangle, const UnitVector3d& normal)
{
    const UnitVector3d seen = GetSinglePrecisionNormal(triangle);
    const bool bAgrees = std::max({std::abs(seen.x - normal.x), std::abs(seen.y - normal.y),
                                   std::abs(seen.z - normal.z)}) <= kNormalAgrees;
    return bAgrees || !IsUsable(seen) ? normal : seen;
}

class STLWriter
{
public:
    explicit STLWriter(const char* pPath)
    {
        m_stream.imbue(std::locale::classic());
        m_stream.open(pPath, std::ios::out | std::ios::trunc | std::ios::binary);
    }

    bool Write(const std::vector<Object*>& aObjects, const Transf3d& transform, const ObjectSet& excluded)
    {
        if (!m_stream.is_open())
            return false;
        m_strText = "solid model\n";
        const bool bGood = WalkPlacedObjects(aObjects, excluded, transform,
                                             [&](Object& object, const Transf3d& placement)
                                             { return WriteFaces(object, placement, excluded); });
        m_strText += "endsolid model\n\n";
        Flush();
        m_stream.close();
        return bGood && !m_bFaceFailed && m_stream.good();
    }

private:
    bool WriteFaces(const Object& object, const Transf3d& transform, const ObjectSet& excluded)
    {
        std::vector<Object*> aFaces;
        object.GetObjectsOfType(aFaces, nFaceType, false);
        for (Object* pFace : aFaces)
            if (!IsPartOfAny(*pFace, excluded) && !WriteFace(static_cast<Face&>(*pFace), transform))
                return false;
        return true;
    }

    bool WriteFace(Face& face, const Transf3d& transform)
    {
        const FaceFacets* pFacets = face.GetFacets();
        if (!pFacets)
        {
            std::vector<Vertex*> aVertices;
            m_bFaceFailed = !face.GetFacetVertices(aVertices) || m_bFaceFailed;
            return true;
        }
        m_nFacets += pFacets->GetFacets().size();
        if (m_nFacets > kMostFacets)
            return false;
        const UnitVector3d normal = face.GetPlane().normal;
        const bool bMirror = transform.isMirror();
        for (const Facet& facet : TurnNeedles(pFacets->GetFacets(), normal, transform))
            WriteFacet(facet, transform * normal, transform, bMirror);
        return true;
    }

    /// A mirrored triangle is run through the other way round, so that it is counter-clockwise from outside again.
    void WriteFacet(const Facet& facet, const UnitVector3d& normal, const Transf3d& transform, bool bMirror)
    {
        const Triangle triangle{transform * facet.GetPoint(0), transform * facet.GetPoint(bMirror ? 2 : 1),
                                transform * facet.GetPoint(bMirror ? 1 : 2)};
        const UnitVector3d written = GetWrittenNormal(triangle, normal);
        AppendLine("facet normal", written.x, written.y, written.z);
        m_strText += "outer loop\n";
        for (const Point3d& p : triangle)
            AppendLine("vertex", p.x, p.y, p.z);
        m_strText += "endloop\nendfacet\n";
        if (m_strText.size() > kFlushedSize)
            Flush();
    }

    void AppendLine(const char* pKeyword, double x, double y, double z)
    {
        m_strText += pKeyword;
        for (const double d : {x, y, z})
        {
            m_strText += ' ';
            AppendNumber(m_strText, d + 0.0); // a negative zero becomes plain
        }
        m_strText += '\n';
    }

    void Flush()
    {
        m_stream.write(m_strText.data(), static_cast<std::streamsize>(m_strText.size()));
        m_strText.clear();
    }

    std::ofstream m_stream;
    std::string m_strText; ///< not yet in the file
    std::uint64_t m_nFacets = 0;
    bool m_bFaceFailed = false;
};
} // namespace

bool WriteSTL(const std::vector<Object*>& aObjects, const char* pPath, double dScale, const ObjectSet& excluded)
{
    return STLWriter(pPath).Write(aObjects, Transf3d::scaling(Point3d(), dScale), excluded);
}
} // namespace QRV
