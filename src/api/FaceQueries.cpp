#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "model/Body.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"

#include <QRV/API.h>

namespace QRV
{
namespace
{
/// The triangles of the face by their vertices. False with `nFaceBadFacets` when there is no triangulation.
bool GetTriangles(Face& face, std::vector<Vertex*>& aVertices, Result& result)
{
    if (face.GetFacetVertices(aVertices))
        return true;
    result.SetErrorCode(Result::nFaceBadFacets, std::vector{ObjectHistoryID{face.GetHistoryID(), face.GetID()}});
    return false;
}
} // namespace

Result APIGetBodyFacesReadOnly(std::uint64_t nHistoryID, std::uint64_t nBodyID, std::vector<std::uint64_t>& aFaces)
{
    return ReadOnlyCall("APIGetBodyFacesReadOnly", nHistoryID, nBodyID, Append{aFaces})
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Face*> aFound;
                if (const Body* pBody = FindArgument<Body>(history, nBodyID, result))
                    pBody->GetBodyFaces(aFound);
                AppendIDs(aFound, aFaces);
            });
}

Result APIGetBodyEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nBodyID, std::vector<std::uint64_t>& aEdges)
{
    return ReadOnlyCall("APIGetBodyEdgesReadOnly", nHistoryID, nBodyID, Append{aEdges})
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Edge*> aFound;
                if (const Body* pBody = FindArgument<Body>(history, nBodyID, result))
                    pBody->GetBodyEdges(aFound);
                AppendIDs(aFound, aEdges);
            });
}

Result APIGetFacePlaneReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, Plane& plane)
{
    return ReadOnlyCall("APIGetFacePlaneReadOnly", nHistoryID, nFaceID, Out{plane})
        .Run(
            [&](History& history, Result& result)
            {
                if (Face* pFace = FindArgument<Face>(history, nFaceID, result))
                    plane = pFace->GetPlane();
            });
}

Result APIGetFaceCentroidPoint3dReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, Point3d& centroid)
{
    return ReadOnlyCall("APIGetFaceCentroidPoint3dReadOnly", nHistoryID, nFaceID, Out{centroid})
        .Run(
            [&](History& history, Result& result)
            {
                Face* pFace = FindArgument<Face>(history, nFaceID, result);
                return pFace && pFace->GetCentroid(centroid);
            });
}

Result APIGetFaceVariantReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, double& dVariant)
{
    return ReadOnlyCall("APIGetFaceVariantReadOnly", nHistoryID, nFaceID, Out{dVariant})
        .Run(
            [&](History& history, Result& result)
            {
                if (Face* pFace = FindArgument<Face>(history, nFaceID, result))
                    dVariant = pFace->GetVariant();
            });
}

Result APIGetFaceVertexNormalsReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID,
                                       std::vector<std::pair<std::uint64_t, UnitVector3d>>& aNormals)
{
    return ReadOnlyCall("APIGetFaceVertexNormalsReadOnly", nHistoryID, nFaceID, Append{aNormals})
        .Run(
            [&](History& history, Result& result)
            {
                if (Face* pFace = FindArgument<Face>(history, nFaceID, result))
                    pFace->GetVertexNormals(aNormals);
            });
}

// Texture coordinates belong to a textured material; a face without one has none.
Result APIGetRenderableFaceReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::vector<Point3d>& aPoints,
                                    std::vector<UnitVector3d>& aNormals, std::vector<Point2d>& aUVs, bool bIncludeUVs,
                                    bool bBackSide)
{
    return ReadOnlyCall("APIGetRenderableFaceReadOnly", nHistoryID, nFaceID, Append{aPoints}, Append{aNormals},
                        Append{aUVs}, bIncludeUVs, bBackSide)
        .Run(
            [&](History& history, Result& result)
            {
                Face* pFace = FindArgument<Face>(history, nFaceID, result);
                std::vector<Vertex*> aTriangles;
                if (pFace && GetTriangles(*pFace, aTriangles, result))
                    pFace->GetRenderableFace(aPoints, aNormals, bBackSide);
            });
}

Result APIGetFaceConnectedComponentReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, bool bThroughVertices,
                                            bool bSmoothEdgesOnly, std::vector<std::uint64_t>& aFaces)
{
    return ReadOnlyCall("APIGetFaceConnectedComponentReadOnly", nHistoryID, nFaceID, bThroughVertices, bSmoothEdgesOnly,
                        Append{aFaces})
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Face*> aFound;
                if (Face* pFace = FindArgument<Face>(history, nFaceID, result))
                    pFace->GetNeighbourComponent(aFound, bThroughVertices, nullptr, bSmoothEdgesOnly);
                AppendIDs(aFound, aFaces);
            });
}

Result APIGetConvexityConnectedComponentReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::uint64_t nMask,
                                                 std::vector<std::uint64_t>& aFaces)
{
    return ReadOnlyCall("APIGetConvexityConnectedComponentReadOnly", nHistoryID, nFaceID, nMask, Append{aFaces})
        .Run(
            [&](History& history, Result& result)
            {
                constexpr std::uint64_t kBends = nConvexityFlat | nConvexityConcave | nConvexityConvex;
                std::vector<Face*> aFound;
                if (nMask == 0 || (nMask & nConvexityMixed))
                    result.SetErrorCode(Result::nBadInput);
                else if (Face* pFace = FindArgument<Face>(history, nFaceID, result))
                    pFace->GetConvexityConnectedComponent(aFound, nMask & kBends);
                AppendIDs(aFound, aFaces);
            });
}

Result APIGetFaceFacetsReadOnly(std::uint64_t nHistoryID, std::uint64_t nFaceID, std::vector<Point3d>& aPoints)
{
    return ReadOnlyCall("APIGetFaceFacetsReadOnly", nHistoryID, nFaceID, Append{aPoints})
        .Run(
            [&](History& history, Result& result)
            {
                Face* pFace = FindArgument<Face>(history, nFaceID, result);
                std::vector<Vertex*> aTriangles;
                if (pFace && GetTriangles(*pFace, aTriangles, result))
                    for (const Vertex* pVertex : aTriangles)
                        aPoints.push_back(pVertex->GetPosition());
            });
}
} // namespace QRV
