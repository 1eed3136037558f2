#include "support/PolygonModel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QRV
{
namespace
{
struct Component
{
    std::vector<Face*> aFaces; // by id
    bool bClosed;
    bool bNoOpenEdge;
};

Component GetComponent(Face& seed)
{
    Component component{};
    ObjectSet seen;
    Face::Sheet sheet;
    const std::size_t nCount = seed.GetConnectedComponent(component.aFaces, seen, sheet);
    EXPECT_EQ(nCount, component.aFaces.size());
    EXPECT_EQ(component.aFaces.front(), &seed);
    std::sort(component.aFaces.begin(), component.aFaces.end(), ByObjectID());
    component.bClosed = sheet.bClosed;
    component.bNoOpenEdge = sheet.bNoOpenEdge;
    return component;
}

/// A sheet from an edge along z outward at an angle; its normal is that of the outline, turned over if asked for.
Face& AddLeaf(PolygonModel& model, const Frame& at, double dDegrees, bool bTurnedOver)
{
    const double c = std::cos(dDegrees * std::numbers::pi / 180);
    const double s = std::sin(dDegrees * std::numbers::pi / 180);
    const Polygon leaf{at(0, 0, 0), at(c, s, 0), at(c, s, 1), at(0, 0, 1)};
    return model.AddFace(bTurnedOver ? Reversed(leaf) : leaf);
}
} // namespace

TEST(ConnectedComponent, PartsSolidsThatShareAnEdgeOrTouchInAWall)
{
    // In the wall each has a side of its own: four of the edges have four coedges.
    for (const double v : {1.0, 0.0})
        for (const Frame& at : GetFrames())
        {
            SCOPED_TRACE(at.pName);
            PolygonModel model;
            Step step(model);
            const std::vector<Face*> aFirst = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(1, 1, 1));
            const std::vector<Face*> aSecond = model.AddBlockFaces(at, Point3d(1, v, 0), Point3d(2, v + 1, 1));
            ShortList<Coedge*> aAtEdge;
            EXPECT_EQ(model.AddEdge(at(1, 1, 0), at(1, 1, 1)).GetCoedges(aAtEdge), 4u);
            for (const std::vector<Face*>& aSolid : {aFirst, aSecond})
                for (Face* pSeed : aSolid)
                {
                    const Component component = GetComponent(*pSeed);
                    EXPECT_EQ(component.aFaces, aSolid);
                    EXPECT_TRUE(component.bClosed && component.bNoOpenEdge);
                }
            EXPECT_NEAR(aFirst[0]->GetVolume(nullptr), 1.0, 1e-7);
        }
}

TEST(ConnectedComponent, TurnsToTheNextFaceThatRunsOn)
{
    // Angles about one edge; the seed stands at 0 and the others run on from it or show their wrong side.
    struct Leaf
    {
        double dDegrees;
        bool bRunsOn;
    };
    struct Case
    {
        std::vector<Leaf> aOthers;
        std::size_t nChosen; ///< the other that joins; none for the count
    };
    const Case aCases[] = {{{{90, true}, {200, true}, {300, true}}, 0},
                           {{{300, true}, {200, true}, {90, true}}, 2},
                           {{{90, false}, {200, true}, {300, true}}, 2}, // the nearest is closed off: the farthest
                           {{{200, true}, {300, false}}, 0},
                           {{{90, false}, {300, false}}, 2}};
    for (const Frame& at : {GetFrames()[0], GetFrames()[1]})
        for (const Case& test : aCases)
        {
            PolygonModel model;
            Step step(model);
            Face& seed = AddLeaf(model, at, 0, false);
            std::vector<Face*> aOthers;
            for (const Leaf& leaf : test.aOthers)
                aOthers.push_back(&AddLeaf(model, at, leaf.dDegrees, leaf.bRunsOn));
            std::vector<Face*> aExpected{&seed};
            if (test.nChosen < aOthers.size())
                aExpected.push_back(aOthers[test.nChosen]);
            const Component component = GetComponent(seed);
            EXPECT_EQ(component.aFaces, aExpected) << at.pName << ", case " << &test - aCases;
            EXPECT_FALSE(component.bClosed);
        }
}

TEST(ConnectedComponent, PrefersTheLowestIdAmongFacesInOnePlace)
{
    // Made in either order, the two differ in size, so that they share no more than the edge.
    for (const bool bLongFirst : {false, true})
    {
        PolygonModel model;
        Step step(model);
        const Frame& at = GetFrames()[0];
        Face& seed = AddLeaf(model, at, 0, false);
        const auto addUpright = [&](double dLength) -> Face& {
            return model.AddFace({at(0, 0, 1), at(0, dLength, 1), at(0, dLength, 0), at(0, 0, 0)});
        };
        Face& lower = addUpright(bLongFirst ? 2 : 1);
        Face& upper = addUpright(bLongFirst ? 1 : 2);
        ASSERT_LT(lower.GetID(), upper.GetID());
        EXPECT_EQ(GetComponent(seed).aFaces, (std::vector<Face*>{&seed, &lower}));
    }
}

TEST(ConnectedComponent, IsOpenWithAHoleAndNotClosedWithAFaceTurnedOver)
{
    PolygonModel model;
    Step step(model);
    const std::vector<Face*> aOpen = model.AddBlockFaces(GetFrames()[1], Point3d(0, 0, 0), Point3d(1, 1, 1));
    aOpen.back()->Delete(false);
    const Component open = GetComponent(*aOpen.front());
    EXPECT_EQ(open.aFaces.size(), 5u);
    EXPECT_FALSE(open.bClosed || open.bNoOpenEdge);
    EXPECT_EQ(aOpen.front()->GetVolume(nullptr), 0.0);

    const std::vector<Face*> aTurned = model.AddBlockFaces(GetFrames()[1], Point3d(5, 0, 0), Point3d(6, 1, 1));
    aTurned.back()->Reverse();
    const Component turned = GetComponent(*aTurned.front());
    EXPECT_EQ(turned.aFaces.size(), 6u);
    EXPECT_FALSE(turned.bClosed);
    EXPECT_TRUE(turned.bNoOpenEdge);
}

TEST(ConnectedComponent, LeavesOutWhatAnEarlierComponentHas)
{
    PolygonModel model;
    Step step(model);
    const std::vector<Face*> aBlock = model.AddBlockFaces(GetFrames()[0], Point3d(0, 0, 0), Point3d(1, 1, 1));
    ObjectSet seen{aBlock[1]};
    std::vector<Face*> aFaces;
    Face::Sheet sheet;
    EXPECT_EQ(aBlock[0]->GetConnectedComponent(aFaces, seen, sheet), 5u);
    EXPECT_FALSE(sheet.bClosed);
    EXPECT_EQ(seen.size(), 6u);
}

TEST(NeighbourComponent, CrossesWhatItIsToldTo)
{
    PolygonModel model;
    Step step(model);
    const Frame& at = GetFrames()[1];
    const std::vector<Face*> aFirst = model.AddBlockFaces(at, Point3d(0, 0, 0), Point3d(1, 1, 1));
    const std::vector<Face*> aSecond = model.AddBlockFaces(at, Point3d(1, 1, 1), Point3d(2, 2, 2));
    const std::vector<Face*> aThird = model.AddBlockFaces(at, Point3d(2, 2, 1), Point3d(3, 3, 2)); // at an edge
    Shell& third = *model.AddBody({aThird}).GetLumps()[0]->GetShells()[0];
    std::vector<Face*> aFaces{aThird[0]}; // what stands there already is neither walked nor counted
    EXPECT_EQ(aFirst[0]->GetNeighbourComponent(aFaces, false, nullptr, false), 6u);
    EXPECT_EQ(aFaces.size(), 7u);
    const auto count = [](Face& face, bool bThroughVertices, const Shell* pApart, bool bSmoothOnly)
    {
        std::vector<Face*> aFound;
        return face.GetNeighbourComponent(aFound, bThroughVertices, pApart, bSmoothOnly);
    };
    EXPECT_EQ(count(*aFirst[0], true, nullptr, false), 18u);
    EXPECT_EQ(count(*aSecond[0], false, nullptr, false), 12u);
    EXPECT_EQ(count(*aSecond[0], false, &third, false), 6u);
    EXPECT_EQ(count(*aSecond[0], true, &third, false), 12u);
    EXPECT_EQ(count(*aFirst[0], false, nullptr, true), 1u);
    model.AddEdge(at(0, 0, 0), at(1, 0, 0)).SetSmooth(true);
    EXPECT_EQ(count(*aFirst[0], false, nullptr, true), 2u);
}
} // namespace QRV
