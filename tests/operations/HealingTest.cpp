#include "operations/Healing.h"

#include "support/PolygonModel.h"

#include <gtest/gtest.h>

namespace QRV
{
/// Two triangles that meet in a corner, as one outline, with dangling ends that start there.
TEST(Healing, PartsAnOutlineThatPassesAVertexTwiceAndKeepsTheDanglingEndThere)
{
    struct Case
    {
        const char* pName;
        std::vector<std::pair<double, double>> aSpike; // from the corner to its tip
        std::size_t nRightCorners;
    };
    const Case aCases[] = {
        {"none", {}, 3},
        {"one edge", {{1, 0}}, 5},
        {"two edges", {{1, 0}, {1.5, 0.5}}, 7},
    };
    for (const Frame& at : GetFrames())
        for (const Case& test : aCases)
            for (const bool bBetween : {false, true})
            {
                SCOPED_TRACE(::testing::Message() << at.pName << ", " << test.pName << ", " << bBetween);
                Polygon spike{at(0, 0)};
                for (const auto& [u, v] : test.aSpike)
                    spike.push_back(at(u, v));
                spike.insert(spike.end(), spike.rbegin() + 1, spike.rend());
                spike.pop_back();
                const Polygon right{at(0, 0), at(2, -1), at(2, 1)};
                const Polygon left{at(0, 0), at(-2, 1), at(-2, -1)};
                Polygon outline = test.aSpike.empty() ? Polygon() : spike;
                outline.insert(bBetween ? outline.begin() : outline.end(), right.begin(), right.end());
                outline.insert(outline.end(), left.begin(), left.end());

                PolygonModel model;
                Face* pFace = &model.AddFace(outline);
                const std::uint64_t nVertex = model.AddVertex(at(0, 0)).GetID();
                std::vector<std::uint64_t> aNewFaces;
                EXPECT_TRUE(InStep(model, [&]
                                   { return HealLoopsAtVertices(model.GetHistory(), {nVertex}, pFace, &aNewFaces); }));
                ASSERT_EQ(aNewFaces.size(), 1u);
                Face* pRight = pFace;
                Face* pLeft = model.GetHistory().Get<Face>(aNewFaces.front());
                if (pRight->GetOuterLoop()->FindSide(at(1.7, 0)) != nLoopSide::nInside)
                    std::swap(pRight, pLeft);
                std::vector<Coedge*> aCoedges;
                EXPECT_EQ(pRight->GetOuterLoop()->GetCoedges(aCoedges), test.nRightCorners);
                EXPECT_EQ(pLeft->GetOuterLoop()->GetCoedges(aCoedges), 3u);
                EXPECT_EQ(GetAll<Edge>(model.GetHistory()).size(), 6 + test.aSpike.size());
                for (const Edge* pEdge : GetAll<Edge>(model.GetHistory()))
                    EXPECT_FALSE(pEdge->IsFree());
                ExpectSound(model.GetHistory());
                EXPECT_FALSE(InStep(model, [&]
                                    { return HealLoopsAtVertices(model.GetHistory(), {nVertex}, nullptr, nullptr); }));
            }
}

TEST(Healing, LeavesDanglingEndsThatBranchAlone)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    const Point3d hub = at(1, 1);
    Face& face = model.AddFace({at(0, 0), hub, at(2, 1), hub, at(1, 2), hub, at(0, 0), at(4, 0), at(4, 4), at(0, 4)});
    const std::uint64_t nHub = model.AddVertex(hub).GetID();
    const std::string strBefore = Describe(model.GetHistory());
    EXPECT_FALSE(InStep(model, [&] { return HealLoopsAtVertices(model.GetHistory(), {nHub}, &face, nullptr); }));
    EXPECT_EQ(Describe(model.GetHistory()), strBefore);
    ExpectSound(model.GetHistory());
}
} // namespace QRV
