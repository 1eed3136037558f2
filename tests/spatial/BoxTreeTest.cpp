#include "spatial/BoxTree.h"
#include "support/FailingAllocator.h"

#include <QRV/Transf3d.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace QRV
{
namespace
{
struct Boxed
{
    Interval3d box;
};
} // namespace

template <>
struct BoxOf<Boxed>
{
    static Interval3d Get(const Boxed& boxed) { return boxed.box; }
};

namespace
{
using Tree = BoxTree<Boxed>;

/// A source of boxes of one kind, from a seed.
struct Boxes
{
    std::string strName;
    std::function<Interval3d(std::mt19937&)> make;
};

double Pick(std::mt19937& random, double dLowest, double dHighest)
{
    return std::uniform_real_distribution<double>(dLowest, dHighest)(random);
}

Point3d PickPoint(std::mt19937& random, double dLowest, double dHighest)
{
    const double x = Pick(random, dLowest, dHighest);
    const double y = Pick(random, dLowest, dHighest);
    return {x, y, Pick(random, dLowest, dHighest)};
}

Interval3d MakeBox(const Point3d& corner, double dX, double dY, double dZ)
{
    return {corner, Point3d(corner[0] + dX, corner[1] + dY, corner[2] + dZ)};
}

Interval3d MakeCube(double x, double y, double z, double dSide)
{
    return MakeBox({x, y, z}, dSide, dSide, dSide);
}

std::vector<Boxes> AllKinds()
{
    return {
        {"small", [](auto& r) { return MakeBox(PickPoint(r, 0, 10), Pick(r, 0, 1), Pick(r, 0, 1), Pick(r, 0, 1)); }},
        {"of very different sizes",
         [](auto& r)
         {
             const double dSize = std::pow(10.0, Pick(r, -6, 1));
             return MakeBox(PickPoint(r, 0, 10), dSize, Pick(r, 0, 1) * dSize, Pick(r, 0, 1) * dSize);
         }},
        {"points", [](auto& r) { return Interval3d(PickPoint(r, 0, 10)); }},
        {"flat",
         [](auto& r) {
             return MakeBox({Pick(r, 0, 10), Pick(r, 0, 10), 5.0}, Pick(r, 0, 1), Pick(r, 0, 1), 0);
         }},
        {"identical", [](auto&) { return MakeCube(1, 2, 3, 4); }},
        {"cells that touch", [](auto& r) { return MakeCube(double(r() % 8), double(r() % 8), double(r() % 8), 1.0); }},
        {"far away", [](auto& r) { return MakeBox(PickPoint(r, 1e6, 1e6 + 10), Pick(r, 0, 1), 1, Pick(r, 0, 1)); }},
        {"reversed by less than counts",
         [](auto& r)
         {
             const Point3d p = PickPoint(r, 0, 2);
             return Interval3d(p, Point3d(p[0] + 1, p[1] - 5e-13, p[2] - 9e-13), 0);
         }},
    };
}

/// A query for each search, near the element boxes so that sides, corners and slack come into play.
struct SearchQueries
{
    SearchQueries(std::mt19937& random, const Interval3d& near)
    {
        const double aOffsets[] = {0.0, 0.0, 5e-13, -5e-13, 2e-12, 0.5, -0.5, Pick(random, -3, 3)};
        const auto Offset = [&] { return aOffsets[random() % std::size(aOffsets)]; };
        box = near;
        for (int i = 0; i < 3; ++i)
        {
            box.lower[i] += Offset();
            box.upper[i] = std::max(box.lower[i], box.upper[i] + Offset());
        }
        const Point3d corner(near.lower[0] + Offset(), near.upper[1] + Offset(), near.lower[2] + Offset());
        const double aSmall[] = {0.0, 1e-13, -1e-13, 1e-11};
        const auto Component = [&] { return random() % 3 == 0 ? aSmall[random() % 4] : Pick(random, -1, 1); };
        const Vector3d direction(Component(), Component(), 0.25 + std::abs(Component()));
        plane = Plane(corner, UnitVector3d(direction, true));
        aPlanes = {plane, Plane(near.upper, UnitVector3d(Component(), 1, Component(), true))};
        const double dBack = random() % 2 == 0 ? 0.0 : Pick(random, -2, 10);
        line = Line3d(Point3d(corner[0] - dBack * direction[0], corner[1] - dBack * direction[1],
                              corner[2] - dBack * direction[2]),
                      direction);
        dTol = random() % 2 == 0 ? 1e-6 : 1e-12;
        const double aMax[] = {1e30, 0.0, -1e-13, -1.0, Pick(random, 0, 12), Pick(random, 0, 12)};
        dMax = aMax[random() % std::size(aMax)];
    }

    Interval3d box;
    Line3d line;
    Plane plane;
    std::vector<Plane> aPlanes;
    double dTol;
    double dMax;
};

bool OverlapsWithSlackOf(const Interval3d& query, const Interval3d& box)
{
    const double dSlack = 1e-12 * std::max({1.0, query.lower.lengthRect(), query.upper.lengthRect()});
    for (int i = 0; i < 3; ++i)
        if (box.lower[i] > query.upper[i] + dSlack || box.upper[i] + dSlack < query.lower[i])
            return false;
    return true;
}

/// A tree beside the set of what is in it.
class Model
{
public:
    explicit Model(std::uint32_t nSeed) : m_random(nSeed) {}

    Boxed* Make(const Interval3d& box) { return &m_aAll.emplace_back(Boxed{box}); }
    void Insert(const Interval3d& box)
    {
        Boxed* pBoxed = Make(box);
        ASSERT_TRUE(m_tree.Insert(pBoxed));
        m_aInTree.push_back(pBoxed);
    }
    void RemoveAny()
    {
        std::swap(m_aInTree[m_random() % m_aInTree.size()], m_aInTree.back());
        ASSERT_TRUE(m_tree.Remove(m_aInTree.back()));
        m_aInTree.pop_back();
    }

    void ExpectSound() const
    {
        std::size_t nCount = 0;
        EXPECT_TRUE(m_tree.CheckValidity(nCount));
        EXPECT_EQ(nCount, m_aInTree.size());
        EXPECT_EQ(m_tree.GetCount(), m_aInTree.size());
        Interval3d box;
        for (const Boxed* pBoxed : m_aInTree)
            box += pBoxed->box;
        EXPECT_TRUE(IsSameBox(m_tree.GetBox(), box) || m_aInTree.empty());
        EXPECT_EQ(m_tree.GetBox().isNull(), m_aInTree.empty());
    }

    void ExpectSearchesAgree()
    {
        const Interval3d near =
            m_aInTree.empty() ? MakeCube(0, 0, 0, 1) : m_aInTree[m_random() % m_aInTree.size()]->box;
        const SearchQueries q(m_random, near);
        Expect(
            "touching", [&](auto& a) { return m_tree.FindTouching(q.box, a); },
            [&](const Interval3d& b) { return b & q.box; });
        Expect(
            "overlapping", [&](auto& a) { return m_tree.FindOverlapping(q.box, a); },
            [&](const Interval3d& b) { return OverlapsWithSlackOf(q.box, b); });
        Expect(
            "inside", [&](auto& a) { return m_tree.FindInside(q.box, a); },
            [&](const Interval3d& b) { return b <= q.box; });
        Expect(
            "holding", [&](auto& a) { return m_tree.FindHolding(q.box, a); },
            [&](const Interval3d& b) { return q.box <= b; });
        Expect(
            "on ray", [&](auto& a) { return m_tree.FindOnRay(q.line, a, q.dTol, q.dMax); },
            [&](const Interval3d& b) { return b.intersectsRay(q.line, q.dTol, q.dMax); });
        Expect(
            "on plane", [&](auto& a) { return m_tree.FindOnPlane(q.plane, a, q.dTol); },
            [&](const Interval3d& b) { return b.intersectsPlane(q.plane, q.dTol); });
        Expect(
            "on negative side", [&](auto& a) { return m_tree.FindOnNegativeSide(q.aPlanes, a, q.dTol); },
            [&](const Interval3d& b) { return BoxIntersectsNegativeSideOfPlanes(b, q.aPlanes, q.dTol); });
    }

    Tree m_tree;
    std::vector<Boxed*> m_aInTree;
    std::mt19937 m_random;

private:
    template <class Search, class Test>
    void Expect(const char* strWhat, const Search& search, const Test& test)
    {
        Boxed sentinel;
        std::vector<Boxed*> aFound{&sentinel};
        const std::size_t nFound = search(aFound);
        EXPECT_EQ(nFound, aFound.size() - 1) << strWhat;
        EXPECT_EQ(aFound.front(), &sentinel) << strWhat;
        std::multiset<Boxed*> expected{&sentinel};
        for (Boxed* pBoxed : m_aInTree)
            if (test(pBoxed->box))
                expected.insert(pBoxed);
        EXPECT_EQ(std::multiset<Boxed*>(aFound.begin(), aFound.end()), expected) << strWhat;
    }

    std::deque<Boxed> m_aAll;
};

class BoxTreeOfKind : public testing::TestWithParam<std::size_t>
{
};

TEST_P(BoxTreeOfKind, FindsWhatAPlainLoopFindsWhileItGrowsAndShrinks)
{
    const Boxes kind = AllKinds()[GetParam()];
    Model model(static_cast<std::uint32_t>(GetParam()) + 1);
    for (const double dShareOfInsertions : {0.9, 0.5, 0.1})
    {
        for (int nStep = 0; nStep < 500; ++nStep)
        {
            SCOPED_TRACE(kind.strName + ", step " + std::to_string(nStep));
            if (model.m_aInTree.empty() || Pick(model.m_random, 0, 1) < dShareOfInsertions)
                model.Insert(kind.make(model.m_random));
            else
                model.RemoveAny();
            model.ExpectSound();
            if (nStep % 5 == 0)
                model.ExpectSearchesAgree();
            ASSERT_FALSE(HasFailure());
        }
    }
    while (!model.m_aInTree.empty())
        model.RemoveAny();
    model.ExpectSound();
    model.ExpectSearchesAgree();
}

TEST_P(BoxTreeOfKind, PacksAnyNumberOfElements)
{
    const Boxes kind = AllKinds()[GetParam()];
    for (const std::size_t nCount : {0u, 1u, 10u, 11u, 40u, 41u, 99u, 100u, 101u, 110u, 111u, 400u, 1001u})
    {
        SCOPED_TRACE(kind.strName + ", elements " + std::to_string(nCount));
        Model model(static_cast<std::uint32_t>(nCount));
        model.Insert(MakeCube(0, 0, 0, 1));
        model.m_aInTree.clear();
        for (std::size_t n = 0; n < nCount; ++n)
            model.m_aInTree.push_back(model.Make(kind.make(model.m_random)));
        std::vector<Boxed*> aElements = model.m_aInTree;
        aElements.push_back(model.Make(Interval3d()));
        model.m_tree.BulkLoad(aElements);
        model.ExpectSound();
        model.ExpectSearchesAgree();
        model.Insert(kind.make(model.m_random));
        model.RemoveAny();
        model.ExpectSound();
    }
}

INSTANTIATE_TEST_SUITE_P(AllKinds, BoxTreeOfKind, testing::Range<std::size_t>(0, AllKinds().size()));

/// The boxes of nodes and elements that a visit of everything asks about, in turn.
std::vector<Interval3d> GetBoxesAsked(const Tree& tree)
{
    std::vector<Interval3d> aBoxes;
    const auto noteAll = [&](const Interval3d& box)
    {
        aBoxes.push_back(box);
        return true;
    };
    tree.Visit(noteAll, [](Boxed*, const Interval3d&) { return true; });
    return aBoxes;
}

TEST(BoxTree, SplitsItsRootForTheEleventhElementWhereTheGapIs)
{
    Model model(1);
    // Five at the bottom and five above a gap along z; x and y overlap everywhere.
    for (int n = 0; n < 10; ++n)
        model.Insert(MakeCube(0, 0, n % 2 * 20 + n / 2, 1));
    EXPECT_EQ(GetBoxesAsked(model.m_tree).size(), 1u + 10u);
    model.Insert(MakeCube(0, 0, 25, 1));
    const std::vector<Interval3d> aBoxes = GetBoxesAsked(model.m_tree);
    ASSERT_EQ(aBoxes.size(), 3u + 11u);
    EXPECT_TRUE(IsSameBox(aBoxes[1], MakeBox({0, 0, 0}, 1, 1, 5)));
    EXPECT_TRUE(IsSameBox(aBoxes[2], MakeBox({0, 0, 20}, 1, 1, 6)));
}

TEST(BoxTree, DescendsWhereVolumeThenSurfaceThenPerimeterGrowLeast)
{
    const Interval3d flat = MakeBox({0, 0, 0}, 4, 4, 0);
    const struct
    {
        const char* strWhy;
        std::vector<Interval3d> aChildren;
        Interval3d box;
        std::uint32_t nChosen;
    } aCases[] = {
        {"volume", {MakeCube(0, 0, 0, 4), MakeCube(10, 0, 0, 1)}, MakeCube(9, 0, 0, 1), 1},
        {"surface, as no flat box gains volume", {flat, MakeBox({6, 0, 0}, 1, 1, 0)}, Interval3d(Point3d(5, 0, 0)), 1},
        {"perimeter, as no line gains surface",
         {MakeBox({0, 0, 0}, 1, 0, 0), MakeBox({6, 0, 0}, 1, 0, 0)},
         Interval3d(Point3d(5, 0, 0)),
         1},
        {"the earlier, as both hold it", {MakeCube(0, 0, 0, 9), MakeCube(1, 1, 1, 3)}, MakeCube(2, 2, 2, 1), 0},
    };
    for (const auto& testCase : aCases)
    {
        BoxTreeInteriorNode<Boxed> node(1);
        BoxTreeLeafNode<Boxed> child(0);
        for (const Interval3d& box : testCase.aChildren)
        {
            BoxTreeLink<Boxed> link;
            link.pChild = &child;
            node.Append({box, link});
        }
        EXPECT_EQ(node.ChooseChild(testCase.box), testCase.nChosen) << testCase.strWhy;
    }
}

TEST(BoxTree, LeavesOutNullBoxes)
{
    Model model(1);
    Boxed* pNull = model.Make(Interval3d());
    for (const bool bEmpty : {true, false})
    {
        EXPECT_FALSE(model.m_tree.Insert(pNull));
        model.m_tree.InsertNoThrow(pNull);
        EXPECT_FALSE(model.m_tree.Remove(pNull));
        model.ExpectSound();
        if (bEmpty)
            model.Insert(MakeCube(0, 0, 0, 1));
    }
}

TEST(BoxTree, StopsAVisitWhenTold)
{
    Model model(1);
    for (int n = 0; n < 100; ++n)
        model.Insert(MakeCube(n, 0, 0, 0.5));
    for (const std::size_t nWanted : {1u, 7u, 100u})
    {
        std::size_t nVisited = 0;
        model.m_tree.Visit([](const Interval3d&) { return true; },
                           [&](Boxed* pBoxed, const Interval3d& box)
                           {
                               EXPECT_TRUE(IsSameBox(pBoxed->box, box));
                               return ++nVisited < nWanted;
                           });
        EXPECT_EQ(nVisited, nWanted);
    }
}

TEST(BoxTree, AuditTellsMovedAndDoubleElements)
{
    for (const bool bDouble : {false, true})
    {
        Model model(1);
        for (int n = 0; n < 30; ++n)
            model.Insert(MakeCube(n, 0, 0, 0.5));
        if (bDouble)
            model.m_tree.Insert(model.m_aInTree[7]);
        else
            model.m_aInTree[7]->box.upper[2] += 1e-9;
        std::size_t nCount = 0;
        EXPECT_FALSE(model.m_tree.CheckValidity(nCount));
        EXPECT_EQ(nCount, bDouble ? 31u : 30u);
    }
}

TEST(BoxTree, GivesTheSameOrderWhereverTheElementsStandInMemory)
{
    const auto findOrder = [](bool bBackward)
    {
        std::vector<Boxed> aElements(400);
        const auto getPlace = [&](std::ptrdiff_t n) { return bBackward ? 399 - n : n; };
        std::mt19937 random(3);
        Tree tree;
        for (int n = 0; n < 400; ++n)
        {
            Boxed& boxed = aElements[getPlace(n)];
            boxed.box = MakeCube(double(random() % 5), double(random() % 5), double(random() % 5), 1);
            tree.Insert(&boxed);
            if (n % 3 == 2)
                tree.Remove(&aElements[getPlace(n - 1)]);
        }
        std::vector<Boxed*> aFound;
        tree.GetElements(aFound);
        std::vector<std::ptrdiff_t> aOrder;
        for (const Boxed* pBoxed : aFound)
            aOrder.push_back(getPlace(pBoxed - aElements.data()));
        return aOrder;
    };
    EXPECT_EQ(findOrder(false), findOrder(true));
}

TEST(BoxTree, CloneIsATreeOfItsOwn)
{
    Model model(5);
    for (int n = 0; n < 200; ++n)
        model.Insert(MakeBox(PickPoint(model.m_random, 0, 5), 1, 1, 1));
    std::vector<Boxed*> aBefore;
    std::vector<Boxed*> aInClone;
    model.m_tree.GetElements(aBefore);
    Tree clone = model.m_tree.Clone();
    model.m_tree = Tree();
    clone.GetElements(aInClone);
    EXPECT_EQ(aInClone, aBefore);

    std::map<Boxed*, Boxed*> replacements;
    for (std::size_t n = 0; n < 100; ++n)
        replacements[aBefore[n]] = model.Make(aBefore[n]->box);
    clone.ReplaceElements(replacements);
    std::size_t nCount = 0;
    EXPECT_TRUE(clone.CheckValidity(nCount));
    for (Boxed* pBoxed : aBefore)
        EXPECT_TRUE(clone.Remove(replacements.contains(pBoxed) ? replacements[pBoxed] : pBoxed));
    EXPECT_TRUE(clone.IsEmpty());
}

TEST(BoxTree, FollowsMovedElements)
{
    for (const double dAngle : {0.0, 1.5707963267948966, 0.3})
    {
        Model model(6);
        for (int n = 0; n < 200; ++n)
            model.Insert(MakeBox(PickPoint(model.m_random, 0, 5), Pick(model.m_random, 0, 1), 0, 1));
        const Transf3d transform =
            Transf3d::rotation(Line3d(Point3d(1, 2, 3), Vector3d(0, 0, 1)), dAngle) * Transf3d(Point3d(3, 2, 1));
        for (Boxed* pBoxed : model.m_aInTree)
        {
            pBoxed->box *= transform;
            for (int i = 0; i < 3; ++i) // as a mesh would round it
            {
                pBoxed->box.lower[i] = std::round(pBoxed->box.lower[i] * 1e6) / 1e6;
                pBoxed->box.upper[i] = std::round(pBoxed->box.upper[i] * 1e6) / 1e6;
            }
        }
        model.m_tree.Transform(transform);
        std::size_t nCount = 0;
        EXPECT_TRUE(model.m_tree.CheckValidity(nCount)) << dAngle;
        for (int n = 0; n < 50; ++n)
            model.ExpectSearchesAgree();
    }
}

TEST(BoxTreeShortOfMemory, EntersTheElementOrChangesNothing)
{
    Model model(7);
    while (model.m_aInTree.size() < 1000)
    {
        Boxed* pBoxed = model.Make(MakeBox(PickPoint(model.m_random, 0, 5), Pick(model.m_random, 0, 1), 1, 0));
        for (std::size_t nGranted = 0; !SucceedsWith(nGranted, [&] { model.m_tree.Insert(pBoxed); }); ++nGranted)
            model.ExpectSound();
        model.m_aInTree.push_back(pBoxed);
        model.ExpectSound();
        ASSERT_FALSE(HasFailure());
    }
    const std::vector<Boxed*> aElements = model.m_aInTree;
    for (const bool bCopy : {true, false})
        for (std::size_t nGranted = 0;
             !SucceedsWith(nGranted, [&] { bCopy ? void(model.m_tree.Clone()) : model.m_tree.BulkLoad(aElements); });
             ++nGranted)
            model.ExpectSound();
    model.ExpectSound();
}

TEST(BoxTreeShortOfMemory, ElementsThatMustReturnWaitAndAreFound)
{
    Model model(8);
    model.m_tree.ReserveReturns(500);
    const auto insertWithoutMemory = [&]
    {
        model.m_aInTree.push_back(
            model.Make(MakeBox(PickPoint(model.m_random, 0, 5), 1, Pick(model.m_random, 0, 1), 1)));
        const FailingAllocator::Scope shortage(0);
        model.m_tree.InsertNoThrow(model.m_aInTree.back());
        return FailingAllocator::HasFailed();
    };
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        bool bOneWaits = false;
        for (int n = 0; n < 100; ++n)
            bOneWaits |= insertWithoutMemory(); // the first ones find nodes that are there already
        EXPECT_TRUE(bOneWaits);
        for (int n = 0; n < 30; ++n)
            model.RemoveAny();
        model.ExpectSound();
        model.ExpectSearchesAgree();
        std::vector<Boxed*> aElements;
        const Tree clone = model.m_tree.Clone();
        clone.GetElements(aElements);
        EXPECT_EQ(aElements.size(), model.m_aInTree.size());
        model.Insert(MakeCube(0, 0, 0, 1));
        model.ExpectSound();
        model.ExpectSearchesAgree();
        ASSERT_FALSE(HasFailure());
    }
}

TEST(BoxTreeShortOfMemory, RemovalKeepsTheRules)
{
    for (const Boxes& kind : AllKinds())
    {
        SCOPED_TRACE(kind.strName);
        Model model(9);
        for (int n = 0; n < 700; ++n)
            model.Insert(kind.make(model.m_random));
        model.m_tree = model.m_tree.Clone(); // with no spare nodes left
        while (!model.m_aInTree.empty())
        {
            EXPECT_TRUE(SucceedsWith(0, [&] { model.RemoveAny(); }));
            model.ExpectSound();
            ASSERT_FALSE(HasFailure());
        }
    }
}
} // namespace
} // namespace QRV
