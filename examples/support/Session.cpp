#include "Session.h"

namespace examples
{
using namespace QRV;

void Expect(bool bHolds, const std::string& strWhat)
{
    if (!bHolds)
        throw Failure(strWhat);
}

void Expect(const Result& result, const char* pCall)
{
    Expect(result.IsGood(), std::string(pCall) + ": " + result.GetErrorString());
}

Session::Session(const std::filesystem::path& journal)
{
    if (journal.has_parent_path())
        std::filesystem::create_directories(journal.parent_path());
    Expect(APICreateHistory(m_nID, true), "APICreateHistory");
    Expect(APIEnableJournaling(m_nID, journal.string()), "APIEnableJournaling");
}

Session::~Session()
{
    APIDisableJournaling();
    APIDeleteHistory(m_nID);
}

void Session::Line(const Point3d& a, const Point3d& b)
{
    Expect(APIConnectPoint3ds(m_nID, a, b), "APIConnectPoint3ds");
}

void Session::Outline(const std::vector<Point3d>& aPoints)
{
    for (std::size_t i = 0; i < aPoints.size(); ++i)
        Line(aPoints[i], aPoints[(i + 1) % aPoints.size()]);
}

void Session::Uprights(const std::vector<Point3d>& aFrom, const std::vector<Point3d>& aTo)
{
    for (std::size_t i = 0; i < aFrom.size(); ++i)
        Line(aFrom[i], aTo[i]);
}

std::vector<std::uint64_t> Session::GetAll(nObjectType nType) const
{
    std::vector<std::uint64_t> aIDs;
    Expect(APIGetAllObjectsByTypeReadOnly(m_nID, nType, aIDs), "APIGetAllObjectsByTypeReadOnly");
    return aIDs;
}

double Session::GetArea(std::uint64_t nObject) const
{
    double dArea = 0.0;
    Expect(APIComputeAreaReadOnly(m_nID, nObject, dArea), "APIComputeAreaReadOnly");
    return dArea;
}

double Session::GetVolume(std::uint64_t nObject) const
{
    double dVolume = 0.0;
    Expect(APIComputeVolumeReadOnly(m_nID, nObject, dVolume), "APIComputeVolumeReadOnly");
    return dVolume;
}

std::size_t Session::CountOpenEdges(std::uint64_t nBody) const
{
    std::vector<std::uint64_t> aOpen;
    Expect(APIDetectFreeEdgesReadOnly(m_nID, nBody, aOpen), "APIDetectFreeEdgesReadOnly");
    return aOpen.size();
}

std::vector<std::string> Session::Audit() const
{
    std::vector<Result> aFindings;
    Expect(APICheckHistoryValidityReadOnly(m_nID, aFindings), "APICheckHistoryValidityReadOnly");
    std::vector<std::string> aTexts;
    for (const Result& finding : aFindings)
        aTexts.push_back(finding.GetErrorString());
    return aTexts;
}
} // namespace examples
