#include "exchange/PlacedObjects.h"
#include "support/CommaLocale.h"
#include "support/PolygonModel.h"
#include "support/TemporaryFile.h"

#include <QRV/API.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <locale>
#include <sstream>

namespace QRV
{
namespace
{
using ExcludedIDs = std::vector<ObjectHistoryID>;

Result Save(History& history, const IDs& aObjects, const std::string& strPath, double dScale = 1.0,
            const ExcludedIDs& aExcluded = {})
{
    return APISaveToFileReadOnly(history.GetID(), aObjects, strPath.c_str(), nFileTypeSTL, false, dScale, {},
                                 aExcluded);
}

struct STLFacet
{
    Vector3d normal;
    std::array<Point3d, 3> aPoints;

    Vector3d GetCross() const { return (aPoints[1] - aPoints[0]) * (aPoints[2] - aPoints[0]); }
};

/// The numbers of a file, whose words the test of a whole file looks at.
std::vector<STLFacet> ParseSTL(const std::string& strText)
{
    std::istringstream stream(strText);
    stream.imbue(std::locale::classic());
    std::vector<STLFacet> aFacets;
    std::size_t nCorner = 0;
    for (std::string strWord; stream >> strWord;)
        if (strWord == "normal")
        {
            STLFacet& facet = aFacets.emplace_back();
            stream >> facet.normal.x >> facet.normal.y >> facet.normal.z;
            nCorner = 0;
        }
        else if (strWord == "vertex")
        {
            Point3d& p = aFacets.back().aPoints.at(nCorner++);
            stream >> p.x >> p.y >> p.z;
        }
    return aFacets;
}

std::vector<STLFacet> Write(History& history, const IDs& aObjects, double dScale = 1.0,
                            const ExcludedIDs& aExcluded = {})
{
    TemporaryFile file("written.stl");
    ExpectGood(Save(history, aObjects, file.GetPath(), dScale, aExcluded));
    return ParseSTL(file.Read());
}

/// Every side of a triangle is met once in each direction, no triangle is without area, all look outward.
void ExpectClosedSolid(const std::vector<STLFacet>& aFacets, double dVolume, double dNormalTolerance = 1e-6)
{
    using Place = std::array<double, 3>;
    std::map<std::pair<Place, Place>, int> mapSides;
    const auto place = [](const Point3d& p) { return Place{p.x, p.y, p.z}; };
    double dFound = 0.0;
    for (const STLFacet& facet : aFacets)
    {
        for (std::size_t n = 0; n < 3; ++n)
        {
            const Place from = place(facet.aPoints[n]);
            const Place to = place(facet.aPoints[(n + 1) % 3]);
            EXPECT_EQ(++mapSides[std::pair(from, to)], 1);
        }
        const Vector3d cross = facet.GetCross();
        ASSERT_GT(cross.length(), 1e-9 * std::pow(std::abs(dVolume), 2.0 / 3.0)) << "no area";
        EXPECT_LT((cross / cross.length()).dist(facet.normal), dNormalTolerance);
        const Point3d& origin = aFacets.front().aPoints[0];
        dFound += (facet.aPoints[0] - origin) % ((facet.aPoints[1] - origin) * (facet.aPoints[2] - origin)) / 6.0;
    }
    for (const auto& [side, nCount] : mapSides)
        EXPECT_TRUE(mapSides.contains(std::pair(side.second, side.first))) << "open side";
    EXPECT_NEAR(dFound, dVolume, 1e-9 * dVolume);
}

/// A block of 4 x 2 x 1 with vertices on its edges, as a split leaves them: none of its faces shows a new corner there.
Body& AddBlockWithSplitEdges(PolygonModel& model, const Frame& at, int nSplits)
{
    const auto run = [&](const Point3d& from, const Point3d& to, Polygon& outline)
    {
        for (int n = 0; n < nSplits; ++n)
        {
            // From the lower end always, so that both faces of an edge find the same points.
            const bool bForward = from.x + from.y + from.z < to.x + to.y + to.z;
            const double t = double(bForward ? n : nSplits - n) / nSplits;
            const Point3d& a = bForward ? from : to;
            const Point3d& b = bForward ? to : from;
            outline.push_back(at(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t));
        }
    };
    std::vector<Face*> aFaces;
    for (const Polygon& side : GetBlockOutlines(GetFrames()[0], {0, 0, 0}, {4, 2, 1}))
    {
        Polygon outline;
        for (std::size_t n = 0; n < 4; ++n)
            run(side[n], side[(n + 1) % 4], outline);
        aFaces.push_back(&model.AddFace(outline));
    }
    return model.AddBody({aFaces});
}
} // namespace

TEST(WriteSTL, WritesTheWholeFileToTheLetter)
{
    const CommaLocale commas;
    PolygonModel model;
    const std::uint64_t nFace = model.AddFace({{0, 0, 1234.1}, {1.0 / 3.0, 0, 1234.1}, {0, -2e20, 1234.1}}).GetID();
    TemporaryFile file("triangle.stl");
    ExpectGood(Save(model.GetHistory(), {nFace}, file.GetPath()));
    EXPECT_EQ(file.Read(), "solid model\n"
                           "facet normal 0 0 -1\n"
                           "outer loop\n"
                           "vertex 0 0 1234.1\n"
                           "vertex 0.3333333333333333 0 1234.1\n"
                           "vertex 0 -2e+20 1234.1\n"
                           "endloop\n"
                           "endfacet\n"
                           "endsolid model\n"
                           "\n");
}

TEST(WriteSTL, WritesAClosedSurfaceOfABody)
{
    for (const Frame& frame : GetFrames())
        for (const double dScale : {1.0, 0.3048, 1e-6, -2.0})
        {
            SCOPED_TRACE(frame.pName + std::string(" scaled by ") + std::to_string(dScale));
            PolygonModel model;
            // A room in a block: the shell of the room looks inward.
            const Body& body = model.AddBody({model.AddBlockFaces(frame, {0, 0, 0}, {4, 3, 2}),
                                              model.AddBlockFaces(frame, {1, 1, 0.5}, {3, 2, 1.5}, true)});
            const IDs aObjects{body.GetID()};
            const auto aFacets = Write(model.GetHistory(), aObjects, dScale);
            EXPECT_EQ(aFacets.size(), 24u);
            ExpectClosedSolid(aFacets, (24 - 2) * std::pow(std::abs(dScale), 3));
        }
}

TEST(WriteSTL, WritesNoTriangleWithoutAreaWhereEdgesAreSplit)
{
    for (const Frame& frame : GetFrames())
        for (const int nSplits : {2, 3, 17})
        {
            SCOPED_TRACE(frame.pName + std::string(", parts of an edge ") + std::to_string(nSplits));
            PolygonModel model;
            const IDs aObjects{AddBlockWithSplitEdges(model, frame, nSplits).GetID()};
            ExpectSound(model.GetHistory());
            const auto aFacets = Write(model.GetHistory(), aObjects);
            EXPECT_EQ(aFacets.size(), 6u * (4 * nSplits - 2));
            // Low triangles 10 km away have the normals of their rounded corners.
            const bool bRounded = frame.origin.toVector3d().length() > 1000.0;
            ExpectClosedSolid(aFacets, 8.0, bRounded ? 0.05 : 1e-6);
        }
}

TEST(WriteSTL, GivesNarrowTrianglesTheNormalThatTheirRoundedCornersShow)
{
    // A wall 4 mm wide, 3 km away: single precision moves its corners by up to 0.1 mm.
    PolygonModel model;
    const Point3d a(3000.0001, 2000.0002, 0);
    const Point3d b(3000.0023, 2000.0036, 0);
    const std::uint64_t nFace = model.AddFace({a, b, {b.x, b.y, 9}, {a.x, a.y, 9}}).GetID();
    const auto round = [](const Point3d& p) { return Point3d(float(p.x), float(p.y), float(p.z)); };
    const auto aFacets = Write(model.GetHistory(), {nFace});
    EXPECT_EQ(aFacets.size(), 2u);
    const UnitVector3d real((b - a) * Vector3d(0, 0, 1), true);
    const UnitVector3d rounded((round(b) - round(a)) * Vector3d(0, 0, 1), true);
    ASSERT_GT(real.distSqrd(rounded), 1e-6);
    for (const STLFacet& facet : aFacets)
        EXPECT_LT(facet.normal.dist(rounded), 1e-6);
}

TEST(WriteSTL, LeavesOutWhatIsExcludedAndWritesEverythingElseOnce)
{
    PolygonModel model;
    History& history = model.GetHistory();
    IDs aFaces;
    const std::uint64_t nBody = model.AddBlock(GetFrames()[0], {0, 0, 0}, {1, 1, 1}).GetID();
    const std::uint64_t nFree = model.AddFace({{5, 0, 0}, {6, 0, 0}, {5, 1, 0}}).GetID();
    const std::uint64_t nEdge = model.AddEdge({7, 0, 0}, {8, 0, 0}).GetID();
    APIGetBodyFacesReadOnly(history.GetID(), nBody, aFaces);
    PolygonModel other; // ids of another History name nothing here
    other.AddBlock(GetFrames()[0], {0, 0, 0}, {1, 1, 1});
    const auto id = [&](std::uint64_t nObject) { return ObjectHistoryID{history.GetID(), nObject}; };
    struct Row
    {
        const char* pName;
        IDs aObjects;
        ExcludedIDs aExcluded;
        std::size_t nFacets;
    };
    for (const Row& row :
         {Row{"all", {nBody, nFree, nEdge}, {}, 13}, Row{"twice", {nFree, nFree}, {}, 1},
          Row{"a body and a face of it", {nBody, aFaces[2]}, {}, 12},
          Row{"a face before its body", {aFaces[2], nBody}, {}, 12}, Row{"a face alone", {aFaces[2]}, {}, 2},
          Row{"nothing with faces", {nEdge}, {}, 0}, Row{"without the body", {nBody, nFree}, {id(nBody)}, 1},
          Row{"without one face", {nBody, nFree}, {id(aFaces[2])}, 11},
          Row{"without the body of a face", {aFaces[2], nFree}, {id(nBody)}, 1},
          Row{"without unknown ones",
              {nBody},
              {id(1000000), id(INVALID_ID), {other.GetHistory().GetID(), nBody}, {77777, nBody}},
              12}})
        EXPECT_EQ(Write(history, row.aObjects, 1.0, row.aExcluded).size(), row.nFacets) << row.pName;
}

TEST(APISaveToFileReadOnly, RefusesWhatItCannotSaveAndTouchesNoFile)
{
    PolygonModel model;
    const std::uint64_t nHistory = model.GetHistory().GetID();
    const std::uint64_t nFace = model.AddFace({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}).GetID();
    const TemporaryFile file("refused.stl");
    const std::string strPath = file.GetPath();
    const auto save = [&](std::uint64_t nOf, const IDs& aObjects, const char* pPath, nFileType nType, double dScale)
    { return APISaveToFileReadOnly(nOf, aObjects, pPath, nType, false, dScale, {}, {}).GetErrorCode(); };
    for (const unsigned nCode : {save(INVALID_ID, {nFace}, strPath.c_str(), nFileTypeSTL, 1.0),
                                 save(nHistory, {}, strPath.c_str(), nFileTypeSTL, 1.0),
                                 save(77777, {}, strPath.c_str(), nFileTypeSTL, 1.0), // before the History is missed
                                 save(nHistory, {nFace}, nullptr, nFileTypeSTL, 1.0),
                                 save(nHistory, {nFace}, strPath.c_str(), nFileTypeSTL, 0.0),
                                 save(nHistory, {nFace}, strPath.c_str(), nFileTypeJSONMesh, 1.0),
                                 save(nHistory, {nFace}, strPath.c_str(), nFileType(0xffffffff), 1.0)})
        EXPECT_EQ(nCode, Result::nBadInput);
    EXPECT_FALSE(file.Exists());
    ExpectGood(Save(model.GetHistory(), {nFace}, strPath));
    EXPECT_TRUE(file.Exists());
}

TEST(APISaveToFileReadOnly, FailsWhereTheFileCannotBeWritten)
{
    PolygonModel model;
    // More than the stream holds back.
    const std::uint64_t nBody = AddBlockWithSplitEdges(model, GetFrames()[0], 500).GetID();
    IDs aFaces;
    APIGetBodyFacesReadOnly(model.GetHistory().GetID(), nBody, aFaces);
    const auto save = [&](const IDs& aObjects, const std::string& strPath)
    { return Save(model.GetHistory(), aObjects, strPath).GetErrorCode(); };
    for (const std::string& strPath :
         {testing::TempDir() + "/no such directory/a.stl", std::string(), testing::TempDir()})
        EXPECT_EQ(save({nBody}, strPath), Result::nFailure) << strPath;
    if (std::filesystem::exists("/dev/full"))
    {
        EXPECT_EQ(save({nBody}, "/dev/full"), Result::nFailure);
        EXPECT_EQ(save({aFaces[0]}, "/dev/full"), Result::nFailure);
    }
}

TEST(WalkPlacedObjects, StopsWhenTheVisitorSaysSo)
{
    PolygonModel model;
    Step step(model);
    std::vector<Object*> aVertices{&model.AddVertex({0, 0, 0}), &model.AddVertex({1, 0, 0}),
                                   &model.AddVertex({2, 0, 0})};
    std::vector<Object*> aVisited;
    const auto visit = [&](Object& object, const Transf3d&)
    {
        aVisited.push_back(&object);
        return aVisited.size() < 2;
    };
    EXPECT_FALSE(WalkPlacedObjects(aVertices, {}, Transf3d(), visit));
    aVertices.pop_back();
    EXPECT_EQ(aVisited, aVertices);
}
} // namespace QRV
