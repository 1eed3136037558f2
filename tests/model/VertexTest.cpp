#include "support/PolygonModel.h"

#include <random>

namespace QRV
{
namespace
{
std::vector<Vertex*> FindVerticesAt(History& history, const Point3d& p)
{
    std::vector<Vertex*> aVertices;
    history.GetVertexTree().FindTouching(Interval3d(p, 1e-6), aVertices);
    return aVertices;
}
} // namespace

TEST(Vertex, TakesEdgesFacesAndTreesAlongAndBackAgain)
{
    for (const double dFar : {0.0, 1e5, 1e7})
    {
        SCOPED_TRACE(dFar);
        PolygonModel model;
        History& history = model.GetHistory();
        Frame at = GetFrames()[1];
        at.origin += Vector3d(dFar, -dFar, dFar / 3);
        const Point3d apex = at(1, 1, 3);
        std::vector<Point3d> aPlaces{apex};
        {
            Step step(model);
            const Polygon base{at(0, 0), at(0, 2), at(2, 2), at(2, 0)};
            std::vector<Face*> aFaces{&model.AddFace(base)};
            for (std::size_t n = 0; n < 4; ++n)
                aFaces.push_back(&model.AddFace({base[(n + 1) % 4], base[n], apex}));
            model.AddBody({aFaces});
        }
        Vertex& vertex = model.AddVertex(apex);
        std::mt19937 random(1);
        std::uniform_real_distribution<double> part(0.1, 0.9);
        for (int n = 0; n < 40; ++n)
        {
            Step step(model, n % 5 == 4);
            const Point3d place = at(2 * part(random), 2 * part(random), 1 + 4 * part(random));
            vertex.SetPosition(place);
            EXPECT_EQ(vertex.GetPosition().distSqrd(place), 0.0);
            if (n % 5 != 4)
                aPlaces.push_back(place);
        }
        const auto expectStandsAt = [&](const Point3d& place)
        {
            EXPECT_EQ(vertex.GetPosition().distSqrd(place), 0.0);
            EXPECT_EQ(FindVerticesAt(history, place), std::vector<Vertex*>{&vertex});
            ExpectSound(history);
        };
        expectStandsAt(aPlaces.back());
        Result result;
        for (std::size_t n = aPlaces.size() - 1; n > 0; --n)
        {
            history.Undo(result, false, INVALID_ID, false);
            expectStandsAt(aPlaces[n - 1]);
        }
        while (history.Redo(INVALID_ID))
            ExpectSound(history);
        expectStandsAt(aPlaces.back());
    }
}

TEST(Vertex, StaysForAWayThatIsNone)
{
    PolygonModel model;
    model.AddVertex(Point3d(1, 2, 3));
    const std::size_t nDeltas = model.GetHistory().GetDeltas().size();
    InStep(model, [&] { model.AddVertex(Point3d(1, 2, 3)).SetPosition(Point3d(1 + 9e-13, 2, 3)); });
    EXPECT_EQ(model.GetHistory().GetDeltas().size(), nDeltas);
}

TEST(Vertex, WhereSolidsTouchFallsIntoOneForEach)
{
    PolygonModel model;
    const Point3d apex(0, 0, 0);
    {
        Step step(model);
        for (const double w : {-1.0, 1.0})
        {
            const Polygon base{{-1, -1, w}, {1, -1, w}, {0, 1, w}};
            std::vector<Face*> aFaces{&model.AddFace(w > 0 ? base : Reversed(base))};
            for (std::size_t n = 0; n < 3; ++n)
                aFaces.push_back(&model.AddFace(w > 0 ? Polygon{base[(n + 1) % 3], base[n], apex}
                                                      : Polygon{base[n], base[(n + 1) % 3], apex}));
            model.AddBody({aFaces});
        }
        model.AddEdge(apex, Point3d(5, 0, 0));
    }
    ExpectSound(model.GetHistory());
    Vertex& shared = model.AddVertex(apex);
    EXPECT_EQ(shared.GetEdgesPerGroup().size(), 3u);
    std::vector<Object*> aOwners;
    EXPECT_EQ(shared.GetTopOwners(aOwners), 3u);
    std::vector<Vertex*> aNew;
    InStep(model, [&] { EXPECT_TRUE(shared.SplitIntoGroups(aNew)); });
    ASSERT_EQ(aNew.size(), 2u);
    ExpectSound(model.GetHistory());
    for (const Vertex* pVertex : {&shared, aNew[0], aNew[1]})
    {
        ShortList<Edge*> aEdges;
        aOwners.clear();
        EXPECT_EQ(pVertex->GetTopOwners(aOwners), 1u);
        EXPECT_EQ(pVertex->GetConnectedEdges(aEdges), pVertex->GetUse());
        EXPECT_EQ(pVertex->GetEdgesPerGroup().size(), 1u);
    }
    EXPECT_FALSE(aNew[0]->SplitIntoGroups(aNew));
    ExpectUndoRedoRestores(model.GetHistory());
}

TEST(Vertex, GoesOnlyFromAStraightRunOfTwoEdges)
{
    struct Case
    {
        const char* pName;
        Point3d middle;
        bool bGoes;
    };
    const Case aCases[] = {
        {"straight", {0.4, 0, 0}, true}, {"bent", {0.5, 1e-5, 0}, false}, {"beyond an end", {1.5, 0, 0}, false}};
    for (const Case& test : aCases)
        for (const Frame& at : GetFrames())
        {
            SCOPED_TRACE(testing::Message() << test.pName << ", " << at.pName);
            PolygonModel model;
            const auto place = [&](const Point3d& p) { return at(p.x, p.y, p.z); };
            InStep(model, [&] { model.AddEdge(at(0, 0), place(test.middle)).SetSmooth(true); });
            model.AddEdge(at(1, 0), place(test.middle));
            InStep(model, [&] { EXPECT_EQ(model.AddVertex(place(test.middle)).RemoveIfRedundant(), test.bGoes); });
            EXPECT_EQ(GetAll<Edge>(model.GetHistory()).size(), test.bGoes ? 1u : 2u);
            ExpectUndoRedoRestores(model.GetHistory());
        }

    // A third edge, a spike of a face, and a ring of two edges hold their vertices.
    PolygonModel model;
    Step step(model);
    const Point3d aEnds[] = {{0, 0, 0}, {2, 0, 0}, {1, 1, 0}};
    for (const Point3d& end : aEnds)
        model.AddEdge(Point3d(1, 0, 0), end);
    EXPECT_FALSE(model.AddVertex(Point3d(1, 0, 0)).RemoveIfRedundant());
    model.AddFace({{10, 0, 0}, {15, 0, 0}, {15, 5, 0}, {10, 5, 0}, {10, 3, 0}, {12, 3, 0}, {10, 3, 0}});
    EXPECT_FALSE(model.AddVertex(Point3d(12, 3, 0)).RemoveIfRedundant());
    Vertex& a = model.AddVertex(Point3d(20, 0, 0));
    Vertex& b = model.AddVertex(Point3d(21, 0, 0));
    for (int n = 0; n < 2; ++n)
        Edge::Create(&a, &b, model.GetHistory(), Edge::nGroupMode::nBoth);
    EXPECT_FALSE(a.RemoveIfRedundant());
}
} // namespace QRV
