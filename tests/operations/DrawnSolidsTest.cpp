#include "history/History.h"
#include "model/Body.h"
#include "model/Face.h"
#include "model/Shell.h"
#include "support/TestModel.h"

#include <algorithm>
#include <array>
#include <map>
#include <numbers>

namespace QRV
{
namespace
{
void Scramble(std::vector<Segment>& aSegments, std::mt19937_64& random)
{
    std::shuffle(aSegments.begin(), aSegments.end(), random);
    for (Segment& segment : aSegments)
        if (random() % 2)
            std::swap(segment.first, segment.second);
}

/// Shells and lumps are those that follow from the faces as they stand.
void ExpectRebuildMovesNothing(TestModel& model)
{
    History& history = model.GetHistory();
    ASSERT_TRUE(history.StartDelta());
    for (const std::uint64_t nBody : model.GetIDs(nBodyType))
        EXPECT_FALSE(history.Get<Body>(nBody)->Rebuild(false));
    history.Rollback();
}
} // namespace

TEST(DrawnBox, IsOneSolidInEveryOrderOfItsEdges)
{
    std::mt19937_64 random(20240611);
    for (int nRun = 0; nRun < 1000 && !::testing::Test::HasFailure(); ++nRun)
    {
        SCOPED_TRACE(nRun);
        const Frame frame = nRun % 4 == 0 ? GetFrames()[0] : MakeRandomFrame(random, nRun % 4 == 3 ? 1e4 : 3.0);
        std::vector<Segment> aEdges = GetBoxEdges(frame, {0, 0, 0}, {1, 1, 1});
        Scramble(aEdges, random);
        TestModel model;
        model.Lines(aEdges);
        EXPECT_EQ(model.GetCounts(), (ModelCounts{1, 1, 1, 6, 12, 8}));
        ASSERT_EQ(model.Count(nBodyType), 1u);
        // Coordinates of 1e4 are rounded to 2e-12, which leaves measures of size 1 well within 1e-9.
        ExpectSolid(model, model.GetIDs(nBodyType).front(),
                    {.nFaces = 6, .nEdges = 12, .nVertices = 8, .dVolume = 1, .dArea = 6});
        ExpectUndoRedoRestores(model);
    }
}

TEST(DrawnBox, KeepsItsVolumeUnderFinsAndSheets)
{
    struct Case
    {
        const char* pName;
        std::array<std::array<double, 3>, 4> aCorners;
        std::size_t nFaces; ///< with the six of the box
        double dArea;       ///< likewise
    };
    const Case aCases[] = {
        {"fin on an edge", {{{0, 0, 1}, {1, 0, 1}, {1, 0, 2}, {0, 0, 2}}}, 7, 7},
        {"fin across the top", {{{0, 0.5, 1}, {1, 0.5, 1}, {1, 0.5, 2}, {0, 0.5, 2}}}, 8, 7},
        {"fin within the top", {{{0.2, 0.5, 1}, {0.8, 0.5, 1}, {0.8, 0.5, 2}, {0.2, 0.5, 2}}}, 7, 6.6},
        {"sheet at a corner", {{{1, 1, 1}, {2, 1, 1}, {2, 2, 2}, {1, 2, 2}}}, 7, 6 + std::numbers::sqrt2},
        {"sheet on a corner of the top", {{{1, 1, 1}, {2, 1, 1}, {2, 2, 1}, {1, 2, 1}}}, 7, 7},
        {"rectangle on the top", {{{0.2, 0.2, 1}, {0.8, 0.2, 1}, {0.8, 0.8, 1}, {0.2, 0.8, 1}}}, 7, 6},
        {"the same the other way round", {{{0.2, 0.8, 1}, {0.8, 0.8, 1}, {0.8, 0.2, 1}, {0.2, 0.2, 1}}}, 7, 6},
        {"roof over an edge", {{{0, 1, 1}, {1, 1, 1}, {1, 2, 1}, {0, 2, 1}}}, 7, 7},
        {"ground to stand on", {{{-5, -5, 0}, {5, -5, 0}, {5, 5, 0}, {-5, 5, 0}}}, 7, 105},
    };
    for (const Frame& at : GetFrames())
        for (const Case& test : aCases)
            for (const bool bBoxFirst : {true, false})
            {
                SCOPED_TRACE(std::string(at.pName) + ": " + test.pName + (bBoxFirst ? "" : ", drawn first"));
                Polygon sheet;
                for (const auto& [u, v, w] : test.aCorners)
                    sheet.push_back(at(u, v, w));
                TestModel model;
                if (bBoxFirst)
                    model.Box(at, {0, 0, 0}, {1, 1, 1});
                model.Outline(sheet);
                if (!bBoxFirst)
                    model.Box(at, {0, 0, 0}, {1, 1, 1});
                EXPECT_EQ(model.Count(nFaceType), test.nFaces);
                EXPECT_EQ(model.Count(nBodyType), 1u);
                EXPECT_NEAR(model.GetVolume(), 1.0, 1e-9);
                EXPECT_NEAR(model.GetArea(), test.dArea, 1e-7);
                ExpectUndoRedoRestores(model);
            }
}

TEST(DrawnBox, LosesNothingToOpenFacesInWhateverOrder)
{
    const Frame& at = GetFrames()[1];
    using Part = std::function<void(TestModel&)>;
    const auto outlineOf = [](const Polygon& corners) -> Part
    { return [corners](TestModel& model) { model.Outline(corners); }; };
    const Part box = [&](TestModel& model) { model.Box(at, {1, 0, 0}, {2, 1, 1}); };
    const Part back = [&](TestModel& model) { model.Lines({{at(0, 1, 0), at(1, 1, 0)}, {at(0, 1, 0), at(0, 1, 1)}}); };
    const Polygon roof{at(1, 0, 1), at(0, 0, 1), at(0, 1, 1), at(1, 1, 1)};
    const Polygon shelf{at(1, 0, 0), at(2, 0, 0), at(1.5, 0.5, 0.5)}; // within the box

    std::vector<std::vector<Part>> aCases;
    for (const Polygon& outline : {roof, Reversed(roof)})
    {
        const Part open = outlineOf(outline);
        aCases.insert(aCases.end(), {{box, open, back},
                                     {box, back, open},
                                     {open, box, back},
                                     {open, back, box},
                                     {back, box, open},
                                     {back, open, box}});
    }
    for (const Polygon& outline : {shelf, Reversed(shelf)})
        aCases.insert(aCases.end(), {{box, outlineOf(outline)}, {outlineOf(outline), box}});
    for (std::size_t nCase = 0; nCase < aCases.size(); ++nCase)
    {
        SCOPED_TRACE(nCase);
        TestModel model;
        for (const Part& draw : aCases[nCase])
            draw(model);
        ASSERT_EQ(model.Count(nBodyType), 1u);
        EXPECT_NEAR(model.GetVolume(), 1.0, 1e-9);
        std::vector<std::uint64_t> aClosed;
        for (const std::uint64_t nShell : model.GetIDs(nShellType))
            if (model.GetHistory().Get<Shell>(nShell)->GetFaces().size() == 6)
                aClosed.push_back(nShell);
        ASSERT_EQ(aClosed.size(), 1u);
        EXPECT_NEAR(model.GetVolume(aClosed.front()), 1.0, 1e-9);
        ExpectUndoRedoRestores(model);
    }
}

TEST(DrawnBox, KeepsItsVolumeOnAGroundUnderAnAnnexAndAtATube)
{
    // A box of 8 on a ground drawn before, one with another on its wall, and two with a tube between them. What is
    // drawn last is so by its outlines in both directions and its uprights, in every order.
    enum nCase
    {
        nGround,
        nAnnex,
        nTube
    };
    const Frame& at = GetFrames()[1];
    const Polygon ground = MakeRectangle(at, -2, -2, 4, 4);
    for (const nCase n : {nGround, nAnnex, nTube})
        for (int nTurn = 0; nTurn < (n == nGround ? 8 : 4); ++nTurn)
            for (std::array<int, 3> aOrder{0, 1, 2}; true;)
            {
                SCOPED_TRACE("case " + std::to_string(n) + ", turn " + std::to_string(nTurn) + ", first " +
                             std::to_string(aOrder[0]) + std::to_string(aOrder[1]));
                TestModel model;
                if (n == nGround)
                    model.Outline(nTurn & 4 ? Reversed(ground) : ground);
                else
                    model.Box(at, {0, 0, 0}, {2, 2, 2});
                if (n == nTube)
                    model.Box(at, {4, 0, 0}, {6, 2, 2});
                Polygon first;
                Polygon second;
                std::vector<Segment> aUprights;
                for (const auto& [u, v] : {std::pair(0.0, 0.0), {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}})
                {
                    const auto alongX = [&](double x) { return at(x, 0.5 + 0.5 * u, 0.5 + 0.5 * v); };
                    first.push_back(n == nGround ? at(2 * u, 2 * v, 0) : alongX(2));
                    second.push_back(n == nGround ? at(2 * u, 2 * v, 2) : alongX(n == nTube ? 4 : 3));
                    aUprights.emplace_back(first.back(), second.back());
                }
                first = nTurn & 1 ? Reversed(first) : first;
                second = nTurn & 2 ? Reversed(second) : second;
                for (const int nPart : aOrder)
                    nPart == 2 ? model.Lines(aUprights) : model.Outline(nPart ? second : first);
                EXPECT_NEAR(model.GetVolume(), n == nTube ? 16.0 : 8.0, 1e-9);
                std::size_t nSolids = 0;
                for (const std::uint64_t nShell : model.GetIDs(nShellType))
                    nSolids += std::abs(model.GetVolume(nShell) - 8.0) < 1e-9;
                EXPECT_EQ(nSolids, n == nTube ? 2u : 1u);
                ExpectRebuildMovesNothing(model);
                ExpectUndoRedoRestores(model);
                if (!std::next_permutation(aOrder.begin(), aOrder.end()))
                    break;
            }
}

TEST(DrawnBox, HangsTogetherUnderARingThatCutsThroughWhatHangsOnIt)
{
    // The ring's plane is that of a wall with a fin behind it, and a line runs out of the wall through the ring.
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        TestModel model;
        model.Outline({at(1, 8, 0), at(5, 8, 0), at(5, 11, 0), at(1, 11, 0)});
        model.Lines({{at(1, 8, 0), at(1, 8, 3)},
                     {at(5, 8, 3), at(5, 8, 0)},
                     {at(5, 11, 3), at(5, 11, 0)},
                     {at(1, 11, 0), at(1, 11, 3)}});
        model.Outline({at(1, 11, 3), at(5, 11, 3), at(5, 8, 3), at(1, 8, 3)});
        model.Lines({{at(4.5, 10.5, 3), at(4.5, 10.5, 2)},
                     {at(4.5, 10.5, 2), at(5, 10.5, 2)},
                     {at(4.5, 10.5, 3), at(5, 10.5, 3)},
                     {at(5, 10.5, 2), at(5, 10.5, 3)},
                     {at(5, 11, 2.5), at(5, 4, 2.5)}});
        model.Outline({at(5, 6, -2), at(5, 13, -2), at(5, 13, 5), at(5, 6, 5)});
        EXPECT_NEAR(model.GetVolume(), 36.0, 1e-7);
        ExpectRebuildMovesNothing(model);
        ExpectUndoRedoRestores(model);
    }
}

namespace
{
struct Cell
{
    int aLower[3];
    int aSize[3];

    int GetUpper(int n) const { return aLower[n] + aSize[n]; }
    int GetVolume() const { return aSize[0] * aSize[1] * aSize[2]; }
};

Cell MakeCell(std::mt19937_64& random)
{
    Cell cell{};
    for (int n = 0; n < 3; ++n)
    {
        cell.aLower[n] = int(random() % 4);
        cell.aSize[n] = 1 + int(random() % 2);
    }
    return cell;
}

/// In how many directions the two only touch; -1 when they are apart.
int CountTouching(const Cell& a, const Cell& b)
{
    int nTouching = 0;
    for (int n = 0; n < 3; ++n)
    {
        if (a.aLower[n] > b.GetUpper(n) || b.aLower[n] > a.GetUpper(n))
            return -1;
        nTouching += a.aLower[n] == b.GetUpper(n) || b.aLower[n] == a.GetUpper(n);
    }
    return nTouching;
}

std::vector<Segment> GetEdgesOf(const Frame& at, const Cell& cell)
{
    return GetBoxEdges(at, Point3d(cell.aLower[0], cell.aLower[1], cell.aLower[2]),
                       Point3d(cell.GetUpper(0), cell.GetUpper(1), cell.GetUpper(2)));
}
} // namespace

TEST(DrawnBoxes, KeepTheirVolumesWhereTheyTouchInEdgesAndCorners)
{
    int nTouching = 0;
    for (std::uint64_t nSeed = 0; nSeed < 400 && !::testing::Test::HasFailure(); ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        std::mt19937_64 random(nSeed);
        const Cell first = MakeCell(random);
        const Cell second = MakeCell(random);
        const int nWays = CountTouching(first, second);
        if (nWays == 0 || nWays == 1)
            continue; // they overlap or share a part of a face
        nTouching += nWays > 0;
        const Frame at = nSeed % 2 ? MakeRandomFrame(random, 10.0) : GetFrames()[0];
        std::vector<Segment> aEdges = GetEdgesOf(at, first);
        const std::vector<Segment> aMore = GetEdgesOf(at, second);
        aEdges.insert(aEdges.end(), aMore.begin(), aMore.end());
        Scramble(aEdges, random);
        TestModel model;
        model.Lines(aEdges);
        EXPECT_NEAR(model.GetVolume(), first.GetVolume() + second.GetVolume(), 1e-8);
        EXPECT_EQ(model.Count(nFaceType), 12u);
        ExpectUndoRedoRestores(model);
    }
    EXPECT_GT(nTouching, 50);
}

namespace
{
/// Draws line by line. Lines that only add leave each solid, or the better part where a wall has come to stand right
/// across it, and make none that is inside out or larger than the cells together.
void DrawCells(TestModel& model, const std::vector<Segment>& aLines, double dSpace)
{
    std::map<std::uint64_t, double> before;
    for (std::size_t nLine = 0; nLine < aLines.size(); ++nLine)
    {
        SCOPED_TRACE("line " + std::to_string(nLine));
        model.Line(aLines[nLine].first, aLines[nLine].second);
        std::map<std::uint64_t, double> after;
        double dSum = 0.0;
        for (const std::uint64_t nBody : model.GetIDs(nBodyType))
        {
            after[nBody] = model.GetVolume(nBody);
            EXPECT_GE(after[nBody], 0.5 * before[nBody] - 1e-7);
            dSum += after[nBody];
        }
        EXPECT_LE(dSum, dSpace + 1e-7);
        for (const auto& [nBody, dVolume] : before)
            EXPECT_TRUE(after.contains(nBody));
        for (const std::uint64_t nShell : model.GetIDs(nShellType))
            EXPECT_GE(model.GetVolume(nShell), -1e-7);
        before = std::move(after);
    }
}

} // namespace

TEST(DrawnBoxes, StaySoundAsStacksInEveryOrder)
{
    std::vector<std::uint64_t> aSeeds{1988}; // a face without a branch makes its shell hang together in another way
    for (std::uint64_t nSeed = 0; nSeed < 150; ++nSeed)
        aSeeds.push_back(nSeed);
    for (const std::uint64_t nSeed : aSeeds)
    {
        SCOPED_TRACE(nSeed);
        std::mt19937_64 random(nSeed);
        const Frame at = nSeed % 2 ? MakeRandomFrame(random, nSeed % 4 == 1 ? 10.0 : 1e4) : GetFrames()[0];
        std::vector<Cell> aCells;
        std::vector<Segment> aEdges;
        for (int nTry = 0; nTry < 12 && aCells.size() < 4; ++nTry)
        {
            const Cell cell = MakeCell(random);
            if (std::any_of(aCells.begin(), aCells.end(),
                            [&](const Cell& other) { return CountTouching(cell, other) == 0; }))
                continue;
            aCells.push_back(cell);
            const std::vector<Segment> aMore = GetEdgesOf(at, cell);
            aEdges.insert(aEdges.end(), aMore.begin(), aMore.end());
        }
        if (nSeed % 3 != 0)
            Scramble(aEdges, random);
        double dSpace = 0.0;
        for (const Cell& cell : aCells)
            dSpace += cell.GetVolume();
        TestModel model;
        if (nSeed % 5 == 0)
            DrawCells(model, aEdges, dSpace);
        else
            model.Lines(aEdges);
        ExpectSound(model);
        EXPECT_GE(model.Count(nBodyType), 1u);
        ExpectRebuildMovesNothing(model);
        ExpectUndoRedoRestores(model);
    }
}

TEST(DrawnBoxes, StandAsBlocksOfCellsInEveryOrder)
{
    struct Block
    {
        std::array<int, 3> aCells;
        std::uint64_t nOrders;
    };
    const Block aBlocks[] = {{{2, 1, 1}, 20}, {{3, 1, 1}, 20}, {{2, 2, 1}, 30}, {{2, 2, 2}, 10}};
    for (const Block& block : aBlocks)
        for (std::uint64_t nSeed = 0; nSeed < block.nOrders && !::testing::Test::HasFailure(); ++nSeed)
        {
            SCOPED_TRACE(std::to_string(block.aCells[0]) + std::to_string(block.aCells[1]) +
                         std::to_string(block.aCells[2]) + ", order " + std::to_string(nSeed));
            std::mt19937_64 random(nSeed);
            const Frame at = nSeed % 2 ? MakeRandomFrame(random, 10.0) : GetFrames()[0];
            std::vector<Segment> aEdges;
            for (int x = 0; x <= block.aCells[0]; ++x)
                for (int y = 0; y <= block.aCells[1]; ++y)
                    for (int z = 0; z <= block.aCells[2]; ++z)
                        for (const auto& [dx, dy, dz] : {std::array{1, 0, 0}, std::array{0, 1, 0}, std::array{0, 0, 1}})
                            if (x + dx <= block.aCells[0] && y + dy <= block.aCells[1] && z + dz <= block.aCells[2])
                                aEdges.emplace_back(at(x, y, z), at(x + dx, y + dy, z + dz));
            Scramble(aEdges, random);
            TestModel model;
            DrawCells(model, aEdges, block.aCells[0] * block.aCells[1] * block.aCells[2]);
            EXPECT_GE(model.GetVolume(), 1.0 - 1e-7); // a wall bounds one cell, and others may lack it
            ExpectRebuildMovesNothing(model);
            ExpectUndoRedoRestores(model);
        }
}

namespace
{
/// Lines between corners of cells, of which the digits x, y and z are given: "100-200 ".
std::vector<Segment> ReadLines(const Frame& frame, const std::string& strLines)
{
    std::vector<Segment> aLines;
    for (std::size_t n = 0; n + 7 < strLines.size(); n += 8)
    {
        const auto at = [&](std::size_t nAt)
        { return frame(strLines[nAt] - '0', strLines[nAt + 1] - '0', strLines[nAt + 2] - '0'); };
        aLines.emplace_back(at(n), at(n + 4));
    }
    return aLines;
}
} // namespace

TEST(DrawnBoxes, CloseAmongOpenFacesWhicheverWayTheirFacesTurn)
{
    // Lines of 2 x 2 cells. The walls that close a cell were turned by open faces.
    const std::vector<Segment> aLines =
        ReadLines(GetFrames()[0], "100-200 210-211 111-121 001-011 110-120 100-110 010-020 020-120 000-010 201-211 "
                                  "101-201 010-011 200-201 111-211 220-221 200-210 110-111 010-110 120-121 210-220 "
                                  "110-210 001-101 211-221 020-021 121-221 011-111 000-100 120-220 000-001 021-121 "
                                  "101-111 ");
    ASSERT_EQ(aLines.size(), 31u);
    TestModel model;
    DrawCells(model, aLines, 4.0);
    EXPECT_EQ(model.Count(nFaceType), 16u);
    EXPECT_GE(model.Count(nBodyType), 1u);
    EXPECT_GE(model.GetVolume(), 1.0 - 1e-9);
    ExpectRebuildMovesNothing(model);
    ExpectUndoRedoRestores(model);
}

TEST(DrawnBoxes, CloseRoundAStubOfAWall)
{
    // A room of 2 x 2 with half a wall in it, and outside three walls and the floor of another; its ceiling comes last.
    for (const Frame& frame : GetFrames())
    {
        SCOPED_TRACE(frame.pName);
        TestModel model;
        DrawCells(model,
                  ReadLines(frame, "300-301 301-321 320-300 000-010 000-100 000-001 001-011 001-101 010-110 011-111 "
                                   "210-211 320-321 110-310 111-311 110-111 120-320 121-321 120-121 100-120 100-300 "
                                   "100-101 101-121 101-301 "),
                  4.0);
        EXPECT_EQ(model.Count(nBodyType), 1u);
        EXPECT_NEAR(model.GetVolume(), 4.0, 1e-8);
        ExpectRebuildMovesNothing(model);
        ExpectUndoRedoRestores(model);
    }
}

TEST(DrawnBoxes, HangTogetherWithAFaceOverTheSpurDrawnIntoIt)
{
    // The last line makes a roof into which the top of a wall runs as a spur.
    TestModel model;
    model.Lines(ReadLines(GetFrames()[0],
                          "411-401 101-401 131-431 320-310 321-421 320-321 210-211 420-320 311-310 411-211 "
                          "301-311 421-411 411-410 421-420 410-210 300-310 321-331 311-321 410-420 300-301 "
                          "131-101 "));
    EXPECT_NEAR(model.GetVolume(), 1.0, 1e-9);
    ExpectRebuildMovesNothing(model);
    ExpectUndoRedoRestores(model);
}

TEST(DrawnBoxes, LoseNothingToOtherSheetsThroughTheirWallsHoweverTheyStand)
{
    const std::pair<std::string, double> aCases[] = {
        // Three cells. The last line makes faces through which a sheet of 12 runs as wide as they and inside out round
        // a cell beside them.
        {"000-100 030-230 120-121 230-231 231-131 101-001 021-020 111-011 131-130 020-220 110-210 231-201 121-111 "
         "211-210 211-111 130-100 101-100 031-001 131-031 230-200 030-000 010-011 101-111 021-121 121-131 010-110 "
         "001-000 ",
         3.0},
        // Half a cell, along its diagonal. The last line makes a corner of it, as wide as the half.
        {"101-211 011-001 010-110 011-000 111-000 011-010 111-100 101-111 011-111 211-201 201-101 000-001 100-110 "
         "010-000 111-110 201-100 101-100 000-100 111-001 101-000 010-111 ",
         0.5}};
    for (const Frame& frame : GetFrames())
        for (const auto& [strLines, dVolume] : aCases)
        {
            SCOPED_TRACE(std::string(frame.pName) + ", " + std::to_string(dVolume));
            std::vector<Segment> aLines = ReadLines(frame, strLines);
            const Segment last = aLines.back();
            aLines.pop_back();
            TestModel model;
            model.Lines(aLines);
            EXPECT_NEAR(model.GetVolume(), dVolume, 1e-8);
            model.Line(last.first, last.second);
            EXPECT_NEAR(model.GetVolume(), dVolume, 1e-8);
            ExpectUndoRedoRestores(model);
        }
}

TEST(DrawnBoxes, AreSolidsInTurnInARowAndAStack)
{
    // A wall between two bounds one of them.
    for (const bool bStack : {false, true})
    {
        SCOPED_TRACE(bStack);
        TestModel model;
        for (int n = 0; n < 5; ++n)
            bStack ? model.Box(GetFrames()[1], Point3d(0, 0, n), Point3d(1, 1, n + 1))
                   : model.Box(GetFrames()[1], Point3d(n, 0, 0), Point3d(n + 1, 1, 1));
        EXPECT_EQ(model.Count(nBodyType), 1u);
        std::size_t nSolids = 0;
        for (const std::uint64_t nShell : model.GetIDs(nShellType))
            nSolids += std::abs(model.GetVolume(nShell) - 1.0) < 1e-9;
        EXPECT_EQ(nSolids, 3u);
        EXPECT_NEAR(model.GetVolume(), 3.0, 1e-9);
        ExpectRebuildMovesNothing(model);
        ExpectUndoRedoRestores(model);
    }
}

TEST(DrawnBoxes, GetTheSameIDsFromTheSameCalls)
{
    std::mt19937_64 random(99);
    std::vector<Segment> aEdges;
    for (int n = 0; n < 5; ++n)
    {
        const std::vector<Segment> aMore = GetEdgesOf(GetFrames()[1], MakeCell(random));
        aEdges.insert(aEdges.end(), aMore.begin(), aMore.end());
    }
    Scramble(aEdges, random);
    std::string strFirst;
    for (int nRun = 0; nRun < 3; ++nRun)
    {
        const TestModel elsewhere; // so that addresses differ
        std::vector<std::vector<char>> aClutter;
        for (int n = 0; n < 100 * nRun; ++n)
            aClutter.emplace_back(64 + random() % 200);
        TestModel model;
        model.Lines(aEdges);
        if (nRun == 0)
            strFirst = model.Describe();
        EXPECT_EQ(model.Describe(), strFirst);
    }
}
} // namespace QRV
