#include "api/ObjectArguments.h"
#include "frame/APICall.h"
#include "geometry/Finite.h"
#include "model/CircleAttribute.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Vertex.h"

#include <QRV/API.h>

#include <algorithm>

namespace QRV
{
namespace
{
/// The edges below an object, or of the whole History for INVALID_ID, that pass a test, in order of id.
template <class Test>
void CollectEdges(History& history, std::uint64_t nObjectID, std::vector<std::uint64_t>& aEdges, Result& result,
                  Test test)
{
    std::vector<Object*> aFound;
    if (nObjectID == INVALID_ID)
        history.GetObjectsByType(aFound, nEdgeType, true);
    else if (const Object* pObject = FindArgument<Object>(history, nObjectID, result))
        pObject->GetObjectsOfType(aFound, nEdgeType, false);
    std::erase_if(aFound, [&](const Object* pEdge) { return !test(static_cast<const Edge&>(*pEdge)); });
    std::sort(aFound.begin(), aFound.end(), ByObjectID());
    AppendIDs(aFound, aEdges);
}

/// Asks one question of one edge.
template <class Answer, class Question>
auto AskEdge(std::uint64_t nEdgeID, Answer& answer, Question question)
{
    return [nEdgeID, &answer, question](History& history, Result& result)
    {
        if (Edge* pEdge = FindArgument<Edge>(history, nEdgeID, result))
            answer = question(*pEdge);
    };
}
} // namespace

Result APIGetConnectedEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, std::vector<std::uint64_t>& aEdges,
                                    bool bSmoothVerticesOnly)
{
    return ReadOnlyCall("APIGetConnectedEdgesReadOnly", nHistoryID, nEdgeID, Append{aEdges}, bSmoothVerticesOnly)
        .Run(
            [&](History& history, Result& result)
            {
                std::vector<Edge*> aChain;
                if (Edge* pEdge = FindArgument<Edge>(history, nEdgeID, result))
                    pEdge->GetEdgeChain(aChain, bSmoothVerticesOnly);
                AppendIDs(aChain, aEdges);
            });
}

Result APIGetCoedgeDirectionReadOnly(std::uint64_t nHistoryID, std::uint64_t nCoedgeID, bool& bForward)
{
    return ReadOnlyCall("APIGetCoedgeDirectionReadOnly", nHistoryID, nCoedgeID, Out{bForward})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Coedge* pCoedge = FindArgument<Coedge>(history, nCoedgeID, result))
                    bForward = pCoedge->IsForward();
            });
}

Result APIGetConvexityReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, nConvexity& convexity)
{
    return ReadOnlyCall("APIGetConvexityReadOnly", nHistoryID, nObjectID, Out{convexity})
        .Run(
            [&](History& history, Result& result)
            {
                if (const auto* pLoop = history.Get<Loop>(nObjectID))
                    convexity = pLoop->GetConvexity();
                else if (const auto* pEdge = FindArgument<Edge>(history, nObjectID, result))
                    convexity = pEdge->GetConvexity();
            });
}

Result APIGetEdgeFaceClassificationReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, nEdgeFaceClass& nClass)
{
    return ReadOnlyCall("APIGetEdgeFaceClassificationReadOnly", nHistoryID, nEdgeID, Out{nClass})
        .Run(AskEdge(nEdgeID, nClass, [](const Edge& edge) { return edge.GetFaceClass(); }));
}

Result APIGetEdgeOrVertexMarkedSmoothReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, bool& bSmooth)
{
    return ReadOnlyCall("APIGetEdgeOrVertexMarkedSmoothReadOnly", nHistoryID, nObjectID, Out{bSmooth})
        .Run(
            [&](History& history, Result& result)
            {
                if (const auto* pVertex = history.Get<Vertex>(nObjectID))
                    bSmooth = pVertex->IsSmooth();
                else if (const auto* pEdge = FindArgument<Edge>(history, nObjectID, result))
                    bSmooth = pEdge->IsSmooth();
            });
}

Result APIGetEdgePointsReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, Point3d& start, Point3d& end)
{
    return ReadOnlyCall("APIGetEdgePointsReadOnly", nHistoryID, nEdgeID, Out{start}, Out{end})
        .Run(
            [&](History& history, Result& result)
            {
                const Edge* pEdge = FindArgument<Edge>(history, nEdgeID, result);
                if (!pEdge)
                    return;
                start = pEdge->GetStartVertex()->GetPosition();
                end = pEdge->GetEndVertex()->GetPosition();
            });
}

Result APIGetVertexPoint3dReadOnly(std::uint64_t nHistoryID, std::uint64_t nVertexID, Point3d& point)
{
    return ReadOnlyCall("APIGetVertexPoint3dReadOnly", nHistoryID, nVertexID, Out{point})
        .Run(
            [&](History& history, Result& result)
            {
                if (const Vertex* pVertex = FindArgument<Vertex>(history, nVertexID, result))
                    point = pVertex->GetPosition();
            });
}

Result APIIsEdgeManifoldReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, bool& bManifold)
{
    return ReadOnlyCall("APIIsEdgeManifoldReadOnly", nHistoryID, nEdgeID, Out{bManifold})
        .Run(AskEdge(nEdgeID, bManifold, [](const Edge& edge) { return edge.IsManifold(); }));
}

Result APIIsEdgeMergeableReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, bool bCheckUV, bool& bMergeable)
{
    return ReadOnlyCall("APIIsEdgeMergeableReadOnly", nHistoryID, nEdgeID, bCheckUV, Out{bMergeable})
        .Run(AskEdge(nEdgeID, bMergeable, [bCheckUV](const Edge& edge) { return edge.IsMergeable(bCheckUV); }));
}

Result APIIsEdgeOnCircleReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, double& dRadius, Point3d& center,
                                 UnitVector3d& normal, UnitVector3d& xAxis, std::vector<std::uint64_t>& aEdges,
                                 bool& bOn)
{
    return ReadOnlyCall("APIIsEdgeOnCircleReadOnly", nHistoryID, nEdgeID, Out{dRadius}, Out{center}, Out{normal},
                        Out{xAxis}, Append{aEdges}, Out{bOn})
        .Run(
            [&](History& history, Result& result)
            {
                Edge* pEdge = FindArgument<Edge>(history, nEdgeID, result);
                std::vector<Attribute*> aCircles;
                if (!pEdge || !pEdge->GetAttributesOfType(nCircleAttributeType, aCircles))
                    return;
                const auto* pCircle = dynamic_cast<const CircleAttribute*>(aCircles.front());
                if (!pCircle || !pCircle->HasOwner(*pEdge))
                    return result.SetErrorCode(Result::nAttributeBadOwner,
                                               std::vector{ObjectHistoryID{nHistoryID, aCircles.front()->GetID()}});
                bOn = true;
                dRadius = pCircle->GetRadius();
                center = pCircle->GetCenter();
                normal = pCircle->GetNormal();
                xAxis = pCircle->GetXAxis();
                std::vector<Edge*> aOwners;
                pCircle->GetConnectedOwners(*pEdge, aOwners);
                AppendIDs(aOwners, aEdges);
            });
}

Result APIIsEdgeSilhouetteReadOnly(std::uint64_t nHistoryID, std::uint64_t nEdgeID, const Point3d& eye,
                                   const Vector3d& direction, bool bPerspective, bool& bSilhouette)
{
    return ReadOnlyCall("APIIsEdgeSilhouetteReadOnly", nHistoryID, nEdgeID, eye, direction, bPerspective,
                        Out{bSilhouette})
        .Run(
            [&](History& history, Result& result)
            {
                if (!IsUsable(eye) || !IsUsable(direction))
                    return result.SetErrorCode(Result::nBadInput);
                if (const Edge* pEdge = FindArgument<Edge>(history, nEdgeID, result))
                    bSilhouette = pEdge->IsSilhouette(eye, direction, bPerspective);
            });
}

Result APIDetectFreeEdgesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, std::vector<std::uint64_t>& aEdges)
{
    return ReadOnlyCall(CallName("APIDetectFreeEdgesReadOnly").JournaledAs("APIDetectFreeEdges"), nHistoryID, nObjectID,
                        Append{aEdges})
        .Run([&](History& history, Result& result)
             { CollectEdges(history, nObjectID, aEdges, result, [](const Edge& edge) { return edge.GetUse() < 2; }); });
}

Result APIDetectSilhouettesReadOnly(std::uint64_t nHistoryID, std::uint64_t nObjectID, const Point3d& eye,
                                    const Vector3d& direction, bool bPerspective, std::vector<std::uint64_t>& aEdges)
{
    return ReadOnlyCall(CallName("APIDetectSilhouettesReadOnly").JournaledAs("APIIsEdgeSilhouetteReadOnly"), nHistoryID,
                        nObjectID, eye, direction, bPerspective, Append{aEdges})
        .Run(
            [&](History& history, Result& result)
            {
                if (!IsUsable(eye) || !IsUsable(direction))
                    return result.SetErrorCode(Result::nBadInput);
                CollectEdges(history, nObjectID, aEdges, result,
                             [&](const Edge& edge) { return edge.IsSilhouette(eye, direction, bPerspective); });
            });
}
} // namespace QRV
