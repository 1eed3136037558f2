/// Raises a town from the outlines of its buildings by drawing lines alone: of each footprint the outline on the
/// ground, the same at its height, and the uprights between. Faces and bodies form by themselves.
///
/// town FILE [--in-place] [--copies N] [--out DIR]
#include "Footprints.h"
#include "Solids.h"
#include "support/STLFile.h"
#include "support/Session.h"
#include "support/UndoCheck.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace examples
{
using namespace QRV;

namespace
{
constexpr double kStoreyHeights = 9.0; ///< metres, of a building whose height is not recorded
constexpr double kGap = 2.0;           ///< metres between the boxes of buildings laid out, and between copies

struct Options
{
    std::filesystem::path file;
    std::filesystem::path out = "out";
    std::size_t nCopies = 1;
    bool bInPlace = false;
};

Options ReadOptions(int argc, char** argv)
{
    const char* pUsage = "usage: town FILE [--in-place] [--copies N] [--out DIR]";
    Options options;
    for (int i = 1; i < argc; ++i)
    {
        const std::string strArgument = argv[i];
        const bool bHasValue = i + 1 < argc;
        if (strArgument == "--in-place")
            options.bInPlace = true;
        else if (strArgument == "--copies" && bHasValue)
            options.nCopies = std::strtoul(argv[++i], nullptr, 10);
        else if (strArgument == "--out" && bHasValue)
            options.out = argv[++i];
        else if (options.file.empty() && strArgument.rfind("--", 0) != 0)
            options.file = strArgument;
        else
            throw Failure(pUsage);
    }
    Expect(!options.file.empty() && options.nCopies > 0, pUsage);
    return options;
}

std::vector<Point3d> AtHeight(const Ring& ring, double dHeight)
{
    std::vector<Point3d> aPoints;
    for (const Point2d& p : ring)
        aPoints.emplace_back(p.x, p.y, dHeight);
    return aPoints;
}

void Raise(Session& session, const Ring& ring, double dHeight)
{
    const std::vector<Point3d> aBottom = AtHeight(ring, 0.0);
    const std::vector<Point3d> aTop = AtHeight(ring, dHeight);
    session.Outline(aBottom);
    session.Outline(aTop);
    session.Uprights(aBottom, aTop);
}

void Raise(Session& session, const Footprint& footprint)
{
    Raise(session, footprint.outer, footprint.dHeight);
    for (const Ring& hole : footprint.aHoles)
        Raise(session, hole, footprint.dHeight);
}

/// Processor time and lines of each thousand footprints, so that a growth of the cost with the size of the model shows.
class Stopwatch
{
public:
    void Note(const Footprint& footprint, bool bLast)
    {
        ++m_nFootprints;
        m_nLines += 3 * footprint.outer.size();
        for (const Ring& hole : footprint.aHoles)
            m_nLines += 3 * hole.size();
        if (m_nFootprints % 1000 == 0 || bLast)
            Print();
    }

private:
    void Print()
    {
        const std::clock_t now = std::clock();
        const double dMicroseconds = double(now - m_start) * 1e6 / CLOCKS_PER_SEC;
        std::printf("  %7zu footprints  %9zu lines  %9.1f ms  %8.2f us a line\n", m_nFootprints, m_nLines,
                    dMicroseconds / 1e3, dMicroseconds / double(m_nLines));
        std::fflush(stdout);
        m_nLines = 0;
        m_start = now;
    }

    std::clock_t m_start = std::clock();
    std::size_t m_nFootprints = 0;
    std::size_t m_nLines = 0;
};

void RaiseAll(Session& session, const std::vector<Footprint>& aFootprints)
{
    Stopwatch stopwatch;
    for (std::size_t i = 0; i < aFootprints.size(); ++i)
    {
        Raise(session, aFootprints[i]);
        stopwatch.Note(aFootprints[i], i + 1 == aFootprints.size());
    }
}

void PrintTable(const Session& session)
{
    double dArea = 0.0;
    double dVolume = 0.0;
    const std::vector<std::uint64_t> aBodies = session.GetAll(nBodyType);
    for (const std::uint64_t nBody : aBodies)
    {
        dArea += session.GetArea(nBody);
        dVolume += session.GetVolume(nBody);
    }
    std::printf("%zu bodies, %zu faces, %zu edges, %zu vertices; area %.6f, volume %.6f\n", aBodies.size(),
                session.Count(nFaceType), session.Count(nEdgeType), session.Count(nVertexType), dArea, dVolume);
}

void ExpectSound(const Session& session)
{
    const std::vector<std::string> aFindings = session.Audit();
    for (const std::string& strFinding : aFindings)
        std::printf("  finding: %s\n", strFinding.c_str());
    Expect(aFindings.empty(), std::to_string(aFindings.size()) + " findings of the audit");
}

bool IsNear(double d, double dWanted)
{
    constexpr double kRelativeError = 1e-9;
    return std::abs(d - dWanted) <= kRelativeError * std::abs(dWanted);
}

bool StandsOn(const Interval3d& body, const Footprint& footprint)
{
    Interval3d box;
    for (const Point2d& p : footprint.outer)
        box += Point3d(p.x, p.y, 0.0);
    const Point3d middle = body.lower + (body.upper - body.lower) * 0.5;
    return box.lower.x < middle.x && middle.x < box.upper.x && box.lower.y < middle.y && middle.y < box.upper.y;
}

/// The bodies that stand on each footprint. Bodies come in the order of the footprints, which stand clear of one
/// another.
std::vector<std::vector<std::uint64_t>> AssignBodies(const Session& session, const std::vector<Footprint>& aFootprints)
{
    std::vector<std::vector<std::uint64_t>> aAssigned(aFootprints.size());
    std::size_t nAt = 0;
    for (const std::uint64_t nBody : session.GetAll(nBodyType))
    {
        Interval3d box;
        Expect(APIGetBoxReadOnly(session.GetID(), nBody, box, Transf3d::kIdentity), "APIGetBoxReadOnly");
        while (nAt < aFootprints.size() && !StandsOn(box, aFootprints[nAt]))
            ++nAt;
        Expect(nAt < aFootprints.size(), "body " + std::to_string(nBody) + " stands on no footprint");
        aAssigned[nAt].push_back(nBody);
    }
    return aAssigned;
}

/// One closed body for each footprint, of the volume that the file tells.
void ExpectBodies(const Session& session, const std::vector<Footprint>& aFootprints)
{
    const std::vector<std::vector<std::uint64_t>> aBodies = AssignBodies(session, aFootprints);
    double dVolume = 0.0;
    double dWanted = 0.0;
    std::size_t nWrong = 0;
    for (std::size_t i = 0; i < aFootprints.size(); ++i)
    {
        const Footprint& footprint = aFootprints[i];
        std::size_t nOpenEdges = 0;
        double dOwn = 0.0;
        for (const std::uint64_t nBody : aBodies[i])
        {
            dOwn += session.GetVolume(nBody);
            nOpenEdges += session.CountOpenEdges(nBody);
        }
        dVolume += dOwn;
        dWanted += footprint.dArea * footprint.dHeight;
        const double dOwnWanted = ComputeArea(footprint) * footprint.dHeight;
        if (aBodies[i].size() == 1 && nOpenEdges == 0 && IsNear(dOwn, dOwnWanted))
            continue;
        ++nWrong;
        std::printf("  %s: %zu holes, %zu bodies, %zu open edges, volume %.9f instead of %.9f\n",
                    footprint.strID.c_str(), footprint.aHoles.size(), aBodies[i].size(), nOpenEdges, dOwn, dOwnWanted);
    }
    std::printf("volume %.9f, area times height %.9f, relative difference %.3g\n", dVolume, dWanted,
                std::abs(dVolume - dWanted) / dWanted);
    Expect(nWrong == 0, std::to_string(nWrong) + " footprints did not become one closed body of the right volume");
    Expect(IsNear(dVolume, dWanted), "the volumes do not add up to area times height");
}

void SaveSolids(const Session& session, const std::vector<Solid>& aSolids, const std::filesystem::path& path)
{
    std::vector<std::uint64_t> aObjects;
    double dVolume = 0.0;
    for (const Solid& solid : aSolids)
    {
        aObjects.insert(aObjects.end(), solid.aObjects.begin(), solid.aObjects.end());
        dVolume += session.GetVolume(solid.nBody);
    }
    if (!aSolids.empty())
        SaveSTL(session, aObjects, dVolume, path);
}

/// The houses that are solids as they stand in one file, those with a courtyard in another.
void SaveSolids(const Session& session, const Options& options)
{
    const auto [aWhole, aUnderSheets] = FindSolids(session, !options.bInPlace);
    std::printf(
        "%zu bodies are solids, %zu more when the faces over their courtyards are taken away; %zu share walls or "
        "edges with others\n",
        aWhole.size(), aUnderSheets.size(), session.Count(nBodyType) - aWhole.size() - aUnderSheets.size());
    SaveSolids(session, aWhole, options.out / "town.stl");
    SaveSolids(session, aUnderSheets, options.out / "courtyards.stl");
}
} // namespace

void Run(const Options& options)
{
    std::vector<Footprint> aFootprints = ReadFootprints(options.file, kStoreyHeights);
    AppendCopies(aFootprints, options.nCopies, kGap);
    if (options.bInPlace)
    {
        const Point2d base = MoveToBasePoint(aFootprints);
        std::printf("origin of the model: %.0f, %.0f\n", base.x, base.y);
    }
    else
        LayOutInRows(aFootprints, kGap);

    Session session(options.out / "town.journal");
    RaiseAll(session, aFootprints);
    PrintTable(session);
    ExpectSound(session);
    if (!options.bInPlace)
        ExpectBodies(session, aFootprints);
    std::printf("undo and redo of %zu steps, one by one and in one jump: everything came back\n",
                ExpectUndoRedo(session));
    SaveSolids(session, options);
}
} // namespace examples

int main(int argc, char** argv)
{
    try
    {
        examples::Run(examples::ReadOptions(argc, argv));
        return EXIT_SUCCESS;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "town: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
