#include "support/TestModel.h"

#include "history/HistoryRegistry.h"

#include <numbers>
#include <ostream>

namespace QRV
{
namespace
{
std::vector<std::uint64_t> GetBelow(const TestModel& model, std::uint64_t nObject, nObjectType nType)
{
    std::vector<std::uint64_t> aIDs;
    ExpectGood(APIGetObjectsByTypeReadOnly(model.GetID(), nObject, nType, aIDs, false));
    return aIDs;
}
} // namespace

std::ostream& operator<<(std::ostream& text, const ModelCounts& counts)
{
    return text << counts.nBodies << " bodies, " << counts.nLumps << " lumps, " << counts.nShells << " shells, "
                << counts.nFaces << " faces, " << counts.nEdges << " edges, " << counts.nVertices << " vertices";
}

TestModel::TestModel()
{
    ExpectGood(APICreateHistory(m_nHistoryID, true));
}

TestModel::~TestModel()
{
    ExpectGood(APIDeleteHistory(m_nHistoryID));
}

History& TestModel::GetHistory() const
{
    return *HistoryRegistry::Get().GetHistory(m_nHistoryID);
}

std::uint64_t TestModel::Vertex(const Point3d& p)
{
    std::uint64_t nVertex = INVALID_ID;
    ExpectGood(APICreateVertex(m_nHistoryID, p, nVertex));
    return nVertex;
}

void TestModel::Line(const Point3d& a, const Point3d& b)
{
    ExpectGood(APIConnectPoint3ds(m_nHistoryID, a, b));
}

void TestModel::Lines(const std::vector<Segment>& aSegments)
{
    for (const auto& [a, b] : aSegments)
        Line(a, b);
}

void TestModel::Outline(const Polygon& polygon)
{
    for (std::size_t n = 0; n < polygon.size(); ++n)
        Line(polygon[n], polygon[(n + 1) % polygon.size()]);
}

void TestModel::Box(const Frame& frame, const Point3d& lower, const Point3d& upper)
{
    Lines(GetBoxEdges(frame, lower, upper));
}

std::uint64_t TestModel::Polyline(const std::vector<Point3d>& aPoints, bool bClosed)
{
    std::uint64_t nFace = INVALID_ID;
    ExpectGood(APICreatePolyline(m_nHistoryID, aPoints, nFace, bClosed));
    return nFace;
}

std::vector<Point3d> TestModel::Circle(const Point3d& center, double dRadius, const UnitVector3d& x,
                                       const UnitVector3d& y, double dAccuracy)
{
    std::vector<Point3d> aPoints;
    ExpectGood(APICreateCircleOrArc(m_nHistoryID, dRadius, center, aPoints, x, y, 0.0, 2 * std::numbers::pi, dAccuracy,
                                    false, Transf3d(), 0));
    return aPoints;
}

std::vector<std::uint64_t> TestModel::GetIDs(nObjectType nType) const
{
    std::vector<std::uint64_t> aIDs;
    ExpectGood(APIGetAllObjectsByTypeReadOnly(m_nHistoryID, nType, aIDs));
    return aIDs;
}

ModelCounts TestModel::GetCounts() const
{
    return {Count(nBodyType), Count(nLumpType), Count(nShellType),
            Count(nFaceType), Count(nEdgeType), Count(nVertexType)};
}

double TestModel::GetArea() const
{
    double dArea = 0.0;
    for (const std::uint64_t nFace : GetIDs(nFaceType))
        dArea += GetArea(nFace);
    return dArea;
}

double TestModel::GetVolume() const
{
    double dVolume = 0.0;
    for (const std::uint64_t nBody : GetIDs(nBodyType))
        dVolume += GetVolume(nBody);
    return dVolume;
}

double TestModel::GetVolume(std::uint64_t nObjectID) const
{
    double dVolume = 0.0;
    ExpectGood(APIComputeVolumeReadOnly(m_nHistoryID, nObjectID, dVolume));
    return dVolume;
}

double TestModel::GetArea(std::uint64_t nObjectID) const
{
    double dArea = 0.0;
    ExpectGood(APIComputeAreaReadOnly(m_nHistoryID, nObjectID, dArea));
    return dArea;
}

nEdgeFaceClass TestModel::GetFaceClass(std::uint64_t nEdge) const
{
    nEdgeFaceClass nClass = nEdgeFree;
    ExpectGood(APIGetEdgeFaceClassificationReadOnly(m_nHistoryID, nEdge, nClass));
    return nClass;
}

bool TestModel::IsSmooth(std::uint64_t nEdgeOrVertex) const
{
    bool bSmooth = false;
    ExpectGood(APIGetEdgeOrVertexMarkedSmoothReadOnly(m_nHistoryID, nEdgeOrVertex, bSmooth));
    return bSmooth;
}

IDs TestModel::GetDeltas() const
{
    IDs aIDs;
    ExpectGood(APIGetAllHistoryDeltasReadOnly(m_nHistoryID, aIDs));
    return aIDs;
}

std::uint64_t TestModel::GetActiveDelta(int nOffset) const
{
    std::uint64_t nID = 0;
    ExpectGood(APIGetIdOfActiveDeltaReadOnly(m_nHistoryID, nID, nOffset));
    return nID;
}

std::string TestModel::Describe() const
{
    return QRV::Describe(GetHistory());
}

std::vector<Segment> GetBoxEdges(const Frame& frame, const Point3d& lower, const Point3d& upper)
{
    const auto corner = [&](unsigned n)
    { return frame((n & 1 ? upper : lower)[0], (n & 2 ? upper : lower)[1], (n & 4 ? upper : lower)[2]); };
    std::vector<Segment> aEdges;
    for (unsigned n = 0; n < 8; ++n)
        for (const unsigned nAxis : {1u, 2u, 4u})
            if (!(n & nAxis))
                aEdges.emplace_back(corner(n), corner(n | nAxis));
    return aEdges;
}

Frame MakeRandomFrame(std::mt19937_64& random, double dDistance)
{
    std::normal_distribution<double> number;
    const auto direction = [&]
    {
        const double x = number(random);
        const double y = number(random);
        return UnitVector3d(Vector3d(x, y, number(random)), true);
    };
    const UnitVector3d x = direction();
    const UnitVector3d inPlane = direction();
    return MakeFrame("random", Point3d() + direction() * dDistance, x, inPlane);
}

void ExpectSound(const TestModel& model)
{
    std::vector<Result> aFindings;
    ExpectGood(APICheckHistoryValidityReadOnly(model.GetID(), aFindings));
    for (const Result& finding : aFindings)
        ADD_FAILURE() << finding.GetErrorString();
}

void ExpectUndoRedoRestores(const TestModel& model)
{
    ExpectUndoRedoRestores(model.GetHistory());
}

void ExpectRefused(const TestModel& model, unsigned nCode, const std::function<Result()>& call)
{
    const std::string strBefore = model.Describe();
    const IDs aDeltas = model.GetDeltas();
    EXPECT_EQ(call().GetErrorCode(), nCode);
    EXPECT_EQ(model.Describe(), strBefore);
    EXPECT_EQ(model.GetDeltas(), aDeltas);
}

void InStep(std::uint64_t nHistory, const std::function<void(History&)>& work, bool bRollback)
{
    History* pHistory = nullptr;
    Result result;
    ASSERT_TRUE(History::BeginTransaction(nHistory, pHistory, result));
    work(*pHistory);
    if (bRollback)
        result.SetErrorCode(Result::nFailure);
    History::EndTransaction(pHistory, result, "Test");
}

void ExpectSolid(const TestModel& model, std::uint64_t nBody, const SolidData& data)
{
    const std::vector<std::uint64_t> aEdges = GetBelow(model, nBody, nEdgeType);
    EXPECT_EQ(GetBelow(model, nBody, nFaceType).size(), data.nFaces);
    EXPECT_EQ(aEdges.size(), data.nEdges);
    EXPECT_EQ(GetBelow(model, nBody, nVertexType).size(), data.nVertices);
    EXPECT_NEAR(model.GetVolume(nBody), data.dVolume, data.dTolerance);
    EXPECT_NEAR(model.GetArea(nBody), data.dArea, data.dTolerance);
    for (const std::uint64_t nEdge : aEdges)
        EXPECT_NE(model.GetFaceClass(nEdge), nEdgeBoundary) << "edge " << nEdge;
    ExpectSound(model);
}
} // namespace QRV
