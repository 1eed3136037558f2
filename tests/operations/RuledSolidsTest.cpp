#include "support/TestModel.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// The four lines of the ring around a cube of side m where its coordinate `nAxis` is k.
std::vector<Segment> GetRing(const Frame& at, int m, int nAxis, int k)
{
    const auto corner = [&](int n)
    {
        double aPlace[3];
        aPlace[nAxis] = k;
        aPlace[(nAxis + 1) % 3] = n == 1 || n == 2 ? m : 0;
        aPlace[(nAxis + 2) % 3] = n == 2 || n == 3 ? m : 0;
        return at(aPlace[0], aPlace[1], aPlace[2]);
    };
    std::vector<Segment> aLines;
    for (int n = 0; n < 4; ++n)
        aLines.emplace_back(corner(n), corner((n + 1) % 4));
    return aLines;
}

enum class nOrder
{
    nRings,    ///< ring by ring, along one axis after the other
    nLines,    ///< the lines of all rings in any order
    nWithCube, ///< the edges of the cube among them
};

std::vector<Segment> GetRuledCube(const Frame& at, int m, nOrder nHow, std::mt19937_64& random)
{
    std::vector<Segment> aCube = GetBoxEdges(at, Point3d(0, 0, 0), Point3d(m, m, m));
    std::vector<Segment> aLines;
    for (int nAxis = 0; nAxis < 3; ++nAxis)
        for (int k = 1; k < m; ++k)
        {
            const std::vector<Segment> aRing = GetRing(at, m, nAxis, k);
            aLines.insert(aLines.end(), aRing.begin(), aRing.end());
        }
    if (nHow == nOrder::nLines)
        std::shuffle(aLines.begin(), aLines.end(), random);
    aCube.insert(aCube.end(), aLines.begin(), aLines.end());
    if (nHow == nOrder::nWithCube)
        std::shuffle(aCube.begin(), aCube.end(), random);
    return aCube;
}
} // namespace

/// A face across the inside would take the solid apart. Rings drawn before the cube are faces, and stay.
TEST(RuledCube, StaysOneSolidUnderRingsOfLines)
{
    for (int m = 2; m <= 6; ++m)
        for (std::uint64_t nSeed = 0; nSeed < 4; ++nSeed)
            for (const nOrder nHow : {nOrder::nRings, nOrder::nLines, nOrder::nWithCube})
            {
                SCOPED_TRACE(std::to_string(m) + " cells, seed " + std::to_string(nSeed) + ", order " +
                             std::to_string(int(nHow)));
                std::mt19937_64 random(nSeed);
                const Frame at = nSeed == 0 ? GetFrames()[0] : MakeRandomFrame(random, nSeed % 2 ? 3.0 : 1e3);
                TestModel model;
                for (const Segment& line : GetRuledCube(at, m, nHow, random))
                {
                    model.Line(line.first, line.second);
                    ExpectSound(model);
                }
                ExpectUndoRedoRestores(model);
                if (nHow == nOrder::nWithCube)
                    continue;
                ASSERT_EQ(model.Count(nBodyType), 1u);
                const std::size_t nCells = std::size_t(6 * m * m);
                ExpectSolid(model, model.GetIDs(nBodyType).front(),
                            {.nFaces = nCells,
                             .nEdges = 2 * nCells,
                             .nVertices = nCells + 2,
                             .dVolume = double(m * m * m),
                             .dArea = double(nCells),
                             .dTolerance = 1e-7});
            }
}

/// A house of two wings, the yard between them closed by a pane, so that its floors bound nothing of their own.
TEST(RuledHouse, GetsAFloorAcrossItsYardButNoneAcrossAWing)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        const std::vector<std::pair<double, double>> aPlan{{0, 0}, {3, 0}, {3, 3}, {2, 3},
                                                           {2, 1}, {1, 1}, {1, 3}, {0, 3}};
        TestModel model;
        for (const double w : {0.0, 2.0})
        {
            Polygon outline;
            for (const auto& [u, v] : aPlan)
                outline.push_back(at(u, v, w));
            model.Outline(outline);
        }
        for (const auto& [u, v] : aPlan)
            model.Line(at(u, v, 0), at(u, v, 2));
        const std::size_t nHouse = 10;
        EXPECT_EQ(model.Count(nFaceType), nHouse);

        model.Outline({at(1, 3, 0), at(2, 3, 0), at(2, 3, 2), at(1, 3, 2)});
        const std::size_t nWithYard = nHouse + 3;
        EXPECT_EQ(model.Count(nFaceType), nWithYard);

        model.Outline({at(1, 1, 1), at(2, 1, 1), at(2, 3, 1), at(1, 3, 1)});
        const std::size_t nWithFloor = nWithYard + 4 + 1;
        EXPECT_EQ(model.Count(nFaceType), nWithFloor);

        model.Outline({at(0, 2, 0), at(1, 2, 0), at(1, 2, 2), at(0, 2, 2)});
        EXPECT_EQ(model.Count(nFaceType), nWithFloor + 5); // its four sides, one of them in two halves
        EXPECT_EQ(model.Count(nBodyType), 1u);
        EXPECT_NEAR(model.GetVolume(), 14.0, 1e-7);
        ExpectUndoRedoRestores(model);
    }
}

/// The walls of the tower are sheets on the roof of a solid, and no plane goes through their tops.
TEST(RuledTower, GetsAFloorWhileItIsOpenAbove)
{
    for (const Frame& at : GetFrames())
    {
        SCOPED_TRACE(at.pName);
        const auto square = [&](double w, double wFirst) {
            return Polygon{at(1, 1, wFirst), at(2, 1, w), at(2, 2, w), at(1, 2, w)};
        };
        TestModel model;
        model.Box(at, {0, 0, 0}, {3, 3, 1});
        model.Outline(square(1, 1));
        model.Outline(square(3, 4));
        for (std::size_t i = 0; i < 4; ++i)
            model.Line(square(1, 1)[i], square(3, 4)[i]);
        EXPECT_EQ(model.Count(nFaceType), 7u + 4);
        model.Outline(square(2, 2));
        EXPECT_EQ(model.Count(nFaceType), 7u + 8 + 1);
        EXPECT_NEAR(model.GetVolume(), 9.0, 1e-7);
        ExpectUndoRedoRestores(model);
    }
}
} // namespace QRV
