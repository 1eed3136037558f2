#include "support/PolygonModel.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <set>

namespace QRV
{
namespace
{
double GetFaceArea(History& history)
{
    double dArea = 0.0;
    for (const Face* pFace : GetAll<Face>(history))
        dArea += pFace->GetArea(nullptr);
    return dArea;
}

bool AddSpur(PolygonModel& model, Face& face, const Point3d& from, const Point3d& to)
{
    Edge& edge = model.AddEdge(from, to);
    ObjectSet done;
    return face.AddSpurEdge(edge, edge.GetStartVertex()->GetPosition().distSqrd(from) == 0.0, done);
}

Face* Split(PolygonModel& model, Face& face, const Point3d& a, const Point3d& b)
{
    Face* pPart = nullptr;
    EXPECT_TRUE(face.SplitByEdge(model.AddEdge(a, b), &pPart, false));
    return pPart;
}

using FaceSketchInFrame = InFrame<PolygonModel>;
INSTANTIATE_TEST_SUITE_P(AllFrames, FaceSketchInFrame, testing::ValuesIn(GetFrames()));
} // namespace

TEST_P(FaceSketchInFrame, PullsInATreeOfDanglingEdges)
{
    Face* pFace = &m_model.AddFace(MakeRectangle(m_at, 0, 0, 10, 10));
    {
        Step step(m_model);
        m_model.AddEdge(m_at(5, 5), m_at(7, 5));
        m_model.AddEdge(m_at(7, 5), m_at(8, 7));
        m_model.AddEdge(m_at(5, 8), m_at(5, 5));
        EXPECT_TRUE(AddSpur(m_model, *pFace, m_at(0, 0), m_at(5, 5)));
    }
    std::vector<Coedge*> aCoedges;
    EXPECT_EQ(pFace->GetOuterLoop()->GetCoedges(aCoedges), 4u + 2 * 4);
    EXPECT_EQ(pFace->GetLoops().size(), 1u);
    EXPECT_NEAR(pFace->GetArea(nullptr), 100.0, 1e-8);
    ExpectUndoRedoRestores(m_model.GetHistory());
}

TEST(FaceSketch, RefusesSpursThatDoNotRunInTheFace)
{
    struct Case
    {
        const char* pName;
        double u0, v0, u1, v1;
    };
    const Case aCases[] = {
        {"outside", 0, 0, -1, -1},    {"into the hole", 4, 4, 5, 5},      {"on to another side", 0, 0, 10, 5},
        {"along a side", 0, 0, 5, 0}, {"across the notch", 0, 10, 5, 12}, {"from a place off the face", 1, 1, 2, 2},
    };
    for (const Frame& at : GetFrames())
    {
        PolygonModel model;
        Face* pFace = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10), {Reversed(MakeRectangle(at, 4, 4, 6, 6))});
        for (const Case& test : aCases)
        {
            Step step(model, true);
            Edge& edge = model.AddEdge(at(test.u0, test.v0), at(test.u1, test.v1));
            ObjectSet done;
            EXPECT_FALSE(pFace->AddSpurEdge(edge, true, done)) << at.pName << ": " << test.pName;
            EXPECT_TRUE(edge.IsFree()) << at.pName << ": " << test.pName;
        }
        ExpectSound(model.GetHistory());
    }
}

TEST_P(FaceSketchInFrame, FindsTheCornerThatADirectionFallsInto)
{
    Step step(m_model);
    // Three spurs meet at (5, 5) and make three corners of it.
    Face& face = m_model.AddFace(MakeRectangle(m_at, 0, 0, 10, 10));
    m_model.AddEdge(m_at(5, 5), m_at(8, 5));
    m_model.AddEdge(m_at(5, 5), m_at(5, 8));
    ASSERT_TRUE(AddSpur(m_model, face, m_at(0, 0), m_at(5, 5)));
    const Vertex& hub = m_model.AddVertex(m_at(5, 5));
    const auto findStart = [&](double u, double v)
    {
        const Coedge* pCorner = face.FindCorner(&hub, m_at(u, v) - m_at(0, 0));
        return pCorner ? pCorner->GetStartVertex() : nullptr;
    };
    EXPECT_EQ(findStart(1, -1), &m_model.AddVertex(m_at(8, 5)));
    EXPECT_EQ(findStart(1, 1), &m_model.AddVertex(m_at(5, 8)));
    EXPECT_EQ(findStart(-1, 1), &m_model.AddVertex(m_at(0, 0)));
    // Along a spur: the corner on whose other side it lies.
    EXPECT_EQ(findStart(1, 0), &m_model.AddVertex(m_at(5, 8)));
    EXPECT_EQ(findStart(0, 1), &m_model.AddVertex(m_at(0, 0)));

    const Vertex& square = m_model.AddVertex(m_at(10, 0));
    EXPECT_NE(face.FindCorner(&square, m_at(-1, 1) - m_at(0, 0)), nullptr);
    EXPECT_EQ(face.FindCorner(&square, m_at(1, 1) - m_at(0, 0)), nullptr);
    EXPECT_EQ(face.FindCorner(&m_model.AddVertex(m_at(3, 3)), m_at(1, 1) - m_at(0, 0)), nullptr);
}

TEST_P(FaceSketchInFrame, TurnsASpurIntoAChord)
{
    Face* pFace = &m_model.AddFace(MakeRectangle(m_at, 0, 0, 10, 10));
    InStep(m_model, [&] { ASSERT_TRUE(AddSpur(m_model, *pFace, m_at(0, 0), m_at(4, 6))); });
    ExpectSound(m_model.GetHistory());
    {
        Step step(m_model);
        const Face* pPart = Split(m_model, *pFace, m_at(4, 6), m_at(10, 10));
        ASSERT_NE(pPart, nullptr);
        EXPECT_EQ(pPart->GetLoops().size(), 1u);
    }
    EXPECT_NEAR(GetFaceArea(m_model.GetHistory()), 100.0, 1e-8);
    EXPECT_NEAR(std::abs(pFace->GetArea(nullptr) - 50.0), 10.0, 1e-8);
    ExpectUndoRedoRestores(m_model.GetHistory());
}

TEST_P(FaceSketchInFrame, BridgesToAHoleAndCutsThroughItWithASecondEdge)
{
    Face* pFace = &m_model.AddFace(MakeRectangle(m_at, 0, 0, 10, 10), {Reversed(MakeRectangle(m_at, 4, 4, 6, 6))});
    InStep(m_model, [&] { EXPECT_EQ(Split(m_model, *pFace, m_at(4, 4), m_at(0, 0)), nullptr); });
    EXPECT_EQ(pFace->GetLoops().size(), 1u);
    EXPECT_NEAR(pFace->GetArea(nullptr), 96.0, 1e-8);
    ExpectSound(m_model.GetHistory());
    {
        Step step(m_model);
        const Face* pPart = Split(m_model, *pFace, m_at(6, 6), m_at(10, 10));
        ASSERT_NE(pPart, nullptr);
        EXPECT_NEAR(pPart->GetArea(nullptr), 48.0, 1e-8);
    }
    EXPECT_NEAR(pFace->GetArea(nullptr), 48.0, 1e-8);
    ExpectUndoRedoRestores(m_model.GetHistory());
}

TEST_P(FaceSketchInFrame, CutsThePocketOfAHoleOff)
{
    // The hole is an L; the edge across its notch leaves a triangle of face between them.
    const Polygon hole{m_at(4, 4), m_at(6, 4), m_at(6, 5), m_at(5, 5), m_at(5, 6), m_at(4, 6)};
    Face* pFace = &m_model.AddFace(MakeRectangle(m_at, 0, 0, 10, 10), {Reversed(hole)});
    {
        Step step(m_model);
        const Face* pPart = Split(m_model, *pFace, m_at(6, 5), m_at(5, 6));
        ASSERT_NE(pPart, nullptr);
        EXPECT_NEAR(pPart->GetArea(nullptr), 0.5, 1e-8);
    }
    EXPECT_EQ(pFace->GetLoops().size(), 2u);
    EXPECT_NEAR(pFace->GetArea(nullptr), 96.5, 1e-8);
    ExpectUndoRedoRestores(m_model.GetHistory());
}

TEST_P(FaceSketchInFrame, HandsEachHoleToThePartThatItLiesIn)
{
    Face* pFace = nullptr;
    Face* pPart = nullptr;
    {
        Step step(m_model);
        std::vector<Polygon> aHoles;
        for (const double u : {1.0, 2.5, 6.0, 7.5, 9.0})
            aHoles.push_back(Reversed(MakeRectangle(m_at, u, 4, u + 0.5, 5)));
        pFace = &m_model.AddFace({m_at(0, 0), m_at(5, 0), m_at(10, 0), m_at(10, 10), m_at(5, 10), m_at(0, 10)}, aHoles);
        pPart = Split(m_model, *pFace, m_at(5, 0), m_at(5, 10));
    }
    ASSERT_NE(pPart, nullptr);
    EXPECT_EQ(pFace->GetLoops().size() + pPart->GetLoops().size(), 7u);
    EXPECT_NEAR(pFace->GetArea(nullptr) + pPart->GetArea(nullptr), 97.5, 1e-8);
    EXPECT_NEAR(std::abs(pFace->GetArea(nullptr) - pPart->GetArea(nullptr)), 0.5, 1e-8);
    ExpectUndoRedoRestores(m_model.GetHistory());
}

TEST(FaceSketch, RefusesChordsThatLeaveTheFace)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Face* pFace = &model.AddFace({at(0, 0), at(4, 0), at(4, 4), at(2, 1), at(0, 4)},
                                 {Reversed(MakeRectangle(at, 1, 0.5, 3, 0.75))});
    const std::pair<Point3d, Point3d> aEdges[] = {
        {at(0, 4), at(4, 4)},      // over the notch
        {at(1, 0.5), at(3, 0.75)}, // through the hole
        {at(0, 0), at(5, 5)},      // to no corner
        {at(0, 0), at(4, 0)},      // a side of the face
    };
    for (const auto& [a, b] : aEdges)
    {
        Step step(model, true);
        Edge& edge = model.AddEdge(a, b);
        const std::uint64_t nUse = edge.GetUse();
        Face* pPart = nullptr;
        EXPECT_FALSE(pFace->SplitByEdge(edge, &pPart, false));
        EXPECT_EQ(edge.GetUse(), nUse);
    }
    ExpectSound(model.GetHistory());
}

TEST(FaceSketch, SplitsAFaceOfALargeBodyAsCheaplyAsOneOfASmallOne)
{
    // What a step touches is what it costs in time and memory.
    std::vector<std::size_t> aTouched;
    for (const int nCells : {3, 12})
    {
        PolygonModel model;
        Face* pCell = nullptr;
        {
            Step step(model);
            std::vector<Face*> aFaces =
                model.AddBlockFaces(GetFrames().front(), Point3d(0, 0, -1), Point3d(nCells, nCells, 0));
            aFaces[1]->Delete(false);
            aFaces.erase(aFaces.begin() + 1);
            for (int u = 0; u < nCells; ++u)
                for (int v = 0; v < nCells; ++v)
                    aFaces.push_back(&model.AddFace(MakeRectangle(GetFrames().front(), u, v, u + 1, v + 1)));
            pCell = aFaces.back();
            model.AddBody({aFaces});
        }
        const Body& body = *pCell->GetBody();
        const Interval3d before = body.GetCachedBox();
        InStep(model, [&] { Split(model, *pCell, Point3d(nCells - 1, nCells - 1, 0), Point3d(nCells, nCells, 0)); });
        EXPECT_TRUE(body.GetCachedBox().isEqual(before, 0.0));
        aTouched.push_back(model.GetHistory().GetDeltas().back()->GetObjectIDs().size());
    }
    EXPECT_EQ(aTouched[0], aTouched[1]);
}

namespace
{
struct GridPoint
{
    int u;
    int v;

    bool operator==(const GridPoint&) const = default;
};

int Turn(const GridPoint& a, const GridPoint& b, const GridPoint& c)
{
    const int n = (b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u);
    return (n > 0) - (n < 0);
}

bool IsOnSegment(const GridPoint& a, const GridPoint& b, const GridPoint& c)
{
    return Turn(a, b, c) == 0 && (a.u - c.u) * (b.u - c.u) + (a.v - c.v) * (b.v - c.v) <= 0;
}

using GridSegment = std::pair<GridPoint, GridPoint>;

/// The segments have at most an end in common.
bool AreApart(const GridSegment& s, const GridSegment& t)
{
    const auto& [a, b] = s;
    const auto& [c, d] = t;
    const bool bCross = Turn(a, b, c) * Turn(a, b, d) < 0 && Turn(c, d, a) * Turn(c, d, b) < 0;
    const auto isInner = [](const GridPoint& p, const GridSegment& of)
    { return p != of.first && p != of.second && IsOnSegment(of.first, of.second, p); };
    const bool bSame = (a == c && b == d) || (a == d && b == c);
    return !bSame && !bCross && !isInner(a, t) && !isInner(b, t) && !isInner(c, s) && !isInner(d, s);
}

/// Draws random segments between the points of a grid in a square, as long as they cross nothing, and brings each into
/// the faces at its ends.
class RandomDrawing
{
public:
    RandomDrawing(const Frame& at, unsigned nSeed) : m_at(at), m_random(nSeed), m_aTreeOf((kSide + 1) * (kSide + 1))
    {
        std::iota(m_aTreeOf.begin(), m_aTreeOf.end(), 0);
        std::vector<GridPoint> aBorder;
        for (int n = 0; n < kSide; ++n)
            aBorder.push_back({n, 0});
        for (int n = 0; n < kSide; ++n)
            aBorder.push_back({kSide, n});
        for (int n = 0; n < kSide; ++n)
            aBorder.push_back({kSide - n, kSide});
        for (int n = 0; n < kSide; ++n)
            aBorder.push_back({0, kSide - n});
        Polygon polygon;
        for (std::size_t n = 0; n < aBorder.size(); ++n)
        {
            polygon.push_back(GetPoint(aBorder[n]));
            Note({aBorder[n], aBorder[(n + 1) % aBorder.size()]});
        }
        Step step(m_model);
        m_model.AddFace(polygon);
    }

    void Draw(int nTries)
    {
        for (int n = 0; n < nTries; ++n)
        {
            const GridSegment segment{PickPoint(), PickPoint()};
            if (segment.first == segment.second || ClosesALooseTree(segment) ||
                !std::all_of(m_aSegments.begin(), m_aSegments.end(),
                             [&](const GridSegment& s) { return AreApart(s, segment); }))
                continue;
            Note(segment);
            Step step(m_model);
            Insert(m_model.AddEdge(GetPoint(segment.first), GetPoint(segment.second)));
        }
    }

    /// All that hangs together with the border parts the square: each inner edge has a face on either side, and Euler's
    /// formula holds.
    void ExpectSubdivision()
    {
        ExpectSound(m_model.GetHistory());
        EXPECT_NEAR(GetFaceArea(m_model.GetHistory()), double(kSide * kSide), 1e-7);
        int nEdges = 0;
        std::set<int> aVertices;
        for (const auto& [a, b] : m_aSegments)
        {
            if (FindTree(a) != FindTree({0, 0}))
                continue;
            ++nEdges;
            aVertices.insert({GetIndex(a), GetIndex(b)});
            const bool bOnBorder = nEdges <= 4 * kSide;
            const Edge& edge = m_model.AddEdge(GetPoint(a), GetPoint(b));
            ASSERT_EQ(edge.GetUse(), bOnBorder ? 1u : 2u);
            EXPECT_TRUE(bOnBorder || edge.GetCoedge()->IsForward() != edge.GetCoedge()->GetPartner()->IsForward());
        }
        EXPECT_EQ(int(aVertices.size()) - nEdges + int(GetAll<Face>(m_model.GetHistory()).size()), 1);
    }

    History& GetHistory() { return m_model.GetHistory(); }

private:
    static constexpr int kSide = 6;

    GridPoint PickPoint() { return {int(m_random() % (kSide + 1)), int(m_random() % (kSide + 1))}; }
    Point3d GetPoint(const GridPoint& cell) const { return m_at(cell.u, cell.v); }
    static int GetIndex(const GridPoint& cell) { return cell.v * (kSide + 1) + cell.u; }

    int FindTree(const GridPoint& cell) const
    {
        int n = GetIndex(cell);
        while (m_aTreeOf[n] != n)
            n = m_aTreeOf[n];
        return n;
    }

    void Note(const GridSegment& segment)
    {
        m_aSegments.push_back(segment);
        m_aTreeOf[FindTree(segment.first)] = FindTree(segment.second);
    }

    /// A loop off the border would be a face of its own.
    bool ClosesALooseTree(const GridSegment& segment) const
    {
        return FindTree(segment.first) == FindTree(segment.second) && FindTree(segment.first) != FindTree({0, 0});
    }

    static void Insert(Edge& edge)
    {
        std::vector<Face*> aAtStart;
        std::vector<Face*> aAtEnd;
        edge.GetStartVertex()->GetFaces(aAtStart);
        edge.GetEndVertex()->GetFaces(aAtEnd);
        const auto holds = [](const std::vector<Face*>& aFaces, Face* pFace)
        { return std::find(aFaces.begin(), aFaces.end(), pFace) != aFaces.end(); };
        ObjectSet done;
        for (Face* pFace : aAtStart)
        {
            if (!holds(aAtEnd, pFace))
                pFace->AddSpurEdge(edge, true, done);
            else if (!pFace->HasEdge(edge))
                pFace->SplitByEdge(edge, nullptr, false);
        }
        for (Face* pFace : aAtEnd)
            if (!holds(aAtStart, pFace))
                pFace->AddSpurEdge(edge, false, done);
    }

    const Frame& m_at;
    std::mt19937 m_random;
    std::vector<int> m_aTreeOf;
    std::vector<GridSegment> m_aSegments;
    PolygonModel m_model;
};
} // namespace

TEST(FaceSketch, MakesAPlanarSubdivisionOfWhateverIsDrawn)
{
    for (const Frame& at : GetFrames())
        for (unsigned nSeed = 0; nSeed < 25; ++nSeed)
        {
            SCOPED_TRACE(at.pName);
            SCOPED_TRACE(nSeed);
            RandomDrawing drawing(at, nSeed);
            drawing.Draw(120);
            drawing.ExpectSubdivision();
            if (HasFailure())
                return;
            if (nSeed < 3)
                ExpectUndoRedoRestores(drawing.GetHistory());
        }
}

TEST_P(FaceSketchInFrame, MakesAHoleThatTheInnerFaceFills)
{
    for (const bool bOpposite : {false, true})
    {
        PolygonModel model;
        Face* pOuter = &model.AddFace(MakeRectangle(m_at, 0, 0, 10, 10));
        const Polygon rectangle = MakeRectangle(m_at, 2, 2, 5, 6);
        Face* pInner = &model.AddFace(bOpposite ? Reversed(rectangle) : rectangle);
        InStep(model, [&] { EXPECT_TRUE(pOuter->AddInnerFace(pInner)); });
        EXPECT_NEAR(pOuter->GetArea(nullptr), 88.0, 1e-8);
        EXPECT_NEAR(pInner->GetArea(nullptr), 12.0, 1e-8);
        const Coedge& coedge = *pInner->GetOuterLoop()->GetCoedge();
        EXPECT_EQ(coedge.GetPartner()->GetFace(), pOuter);
        EXPECT_EQ(coedge.GetPartner()->IsForward() == coedge.IsForward(), bOpposite);
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(AddInnerFace, TakesTheHolesWithinTheInnerFaceAlong)
{
    for (const bool bOpposite : {false, true})
    {
        PolygonModel model;
        const Frame& at = GetFrames()[1];
        Face* pOuter = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
        const Polygon middle = MakeRectangle(at, 2, 2, 5, 5);
        Face* pMiddle = nullptr;
        for (const Polygon& inner :
             {MakeRectangle(at, 3, 3, 4, 4), MakeRectangle(at, 8, 8, 9, 9), bOpposite ? Reversed(middle) : middle})
        {
            Step step(model);
            pMiddle = &model.AddFace(inner);
            EXPECT_TRUE(pOuter->AddInnerFace(pMiddle));
        }
        EXPECT_NEAR(pOuter->GetArea(nullptr), 100.0 - 9.0 - 1.0, 1e-9);
        EXPECT_NEAR(pMiddle->GetArea(nullptr), 9.0 - 1.0, 1e-9);
        EXPECT_NEAR(GetFaceArea(model.GetHistory()), 100.0, 1e-9);
        ExpectUndoRedoRestores(model.GetHistory());
    }
}

TEST(AddInnerFace, LeavesSpursAndBridgesOfTheInnerFaceToIt)
{
    PolygonModel model;
    const Frame& at = GetFrames()[2];
    Step step(model);
    Face* pInner = &model.AddFace(MakeRectangle(at, 2, 2, 8, 8), {Reversed(MakeRectangle(at, 4, 4, 6, 6))});
    EXPECT_TRUE(AddSpur(model, *pInner, at(8, 8), at(7, 7)));
    EXPECT_EQ(Split(model, *pInner, at(2, 2), at(4, 4)), nullptr);
    Face* pOuter = &model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
    EXPECT_TRUE(pOuter->AddInnerFace(pInner));
    std::vector<Coedge*> aCoedges;
    EXPECT_EQ(pOuter->GetLoops()[1]->GetCoedges(aCoedges), 4u);
    EXPECT_NEAR(pOuter->GetArea(nullptr), 64.0, 1e-7);
    ExpectSound(model.GetHistory());
}

TEST(AddInnerFace, RefusesWhatDoesNotFit)
{
    PolygonModel model;
    const Frame& at = GetFrames()[1];
    Face* pOuter = &model.AddFace({at(0, 0), at(10, 0), at(10, 10), at(0, 10), at(0, 5)},
                                  {Reversed(MakeRectangle(at, 6, 6, 8, 8))});
    const Polygon aPolygons[] = {
        {at(1, 1, 0.1), at(2, 1, 0.1), at(2, 2, 0.1)}, // beside the plane
        {at(1, 1), at(2, 1), at(2, 2, 0.5)},           // through the plane
        MakeRectangle(at, 8, 8, 12, 12),               // over the border
        MakeRectangle(at, 6.5, 6.5, 7.5, 7.5),         // in the hole
        MakeRectangle(at, 5, 5, 9, 9),                 // around the hole is well, see below
        {at(0, 0), at(3, 3), at(0, 5)},                // along a side that the face has
    };
    const bool aFits[] = {false, false, false, false, true, false};
    for (std::size_t n = 0; n < std::size(aPolygons); ++n)
    {
        Step step(model, true);
        EXPECT_EQ(pOuter->AddInnerFace(&model.AddFace(aPolygons[n])), aFits[n]) << n;
    }
    EXPECT_FALSE(pOuter->AddInnerFace(pOuter));
    EXPECT_FALSE(pOuter->AddInnerFace(nullptr));
    ExpectSound(model.GetHistory());
}

TEST(AddInnerFace, BringsLooseFacesIntoTheShell)
{
    PolygonModel model;
    const Frame& at = GetFrames().front();
    Step step(model);
    Face& outer = model.AddFace(MakeRectangle(at, 0, 0, 10, 10));
    const Body& body = model.AddBody({{&outer}});
    Face& inner = model.AddFace(MakeRectangle(at, 2, 2, 5, 5));
    Face& wall = model.AddFace({at(2, 2), at(5, 2), at(5, 2, 3), at(2, 2, 3)});
    EXPECT_TRUE(outer.AddInnerFace(&inner));
    EXPECT_EQ(inner.GetBody(), &body);
    EXPECT_EQ(wall.GetShell(), outer.GetShell());
}
} // namespace QRV
