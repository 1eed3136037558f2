#include "support/PolygonModel.h"

#include "archive/TextFormatter.h"
#include "history/HistoryRegistry.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace QRV
{
namespace
{
/// Its fields, and the ids of what carries it.
void WriteContents(std::ostream& text, const Object& object)
{
    TextFormatter archive(text, true, 1);
    archive.EnterLevel(); // at the top a reference tells sizes too
    object.Save(archive);
    const auto* pAttribute = dynamic_cast<const Attribute*>(&object);
    const auto* pTexture = dynamic_cast<const Texture*>(&object);
    for (const std::uint64_t nOwner : pAttribute ? pAttribute->GetOwnerIDs()
                                      : pTexture ? pTexture->GetOwnerIDs()
                                                 : SharedIDSet())
        text << ' ' << nOwner;
}

std::size_t CountTreeEntries(History& history)
{
    const TopologyTrees& trees = history.GetTrees().GetMain();
    std::vector<Vertex*> aVertices;
    std::vector<Edge*> aEdges;
    std::vector<Face*> aFaces;
    trees.m_vertices.GetElements(aVertices);
    trees.m_edges.GetElements(aEdges);
    trees.m_faces.GetElements(aFaces);
    return aVertices.size() + aEdges.size() + aFaces.size() + history.GetSearchSet<Material>().size() +
           history.GetSearchSet<Texture>().size() + history.GetSearchSet<Layer>().size() +
           history.GetSearchSet<Level>().size() + history.GetSearchSet<StringAttribute>().size() +
           history.GetSearchSet<Image>().size();
}
} // namespace

Frame MakeFrame(const char* pName, const Point3d& origin, const Vector3d& x, const Vector3d& inPlane)
{
    const UnitVector3d xAxis(x, true);
    const UnitVector3d zAxis(Vector3d(xAxis) * inPlane, true);
    return {pName, origin, xAxis, UnitVector3d(zAxis * xAxis, true), zAxis};
}

const std::vector<Frame>& GetFrames()
{
    static const std::vector<Frame> aFrames{
        MakeFrame("as it stands", Point3d(0, 0, 0), Vector3d(1, 0, 0), Vector3d(0, 1, 0)),
        MakeFrame("turned", Point3d(0.5, -3.25, 2.0), Vector3d(1, 2, -0.5), Vector3d(-0.3, 1, 0.7)),
        MakeFrame("turned and far away", Point3d(8000, -5000, 3000), Vector3d(-0.2, 0.4, 1), Vector3d(1, 1, 0.1))};
    return aFrames;
}

std::vector<Frame> GetFramesAndFar()
{
    std::vector<Frame> aFrames = GetFrames();
    aFrames.push_back(MakeFrame("upside down", Point3d(5, 6, 7), Vector3d(1, 0, 0), Vector3d(0, -1, 0)));
    aFrames.push_back(MakeFrame("turned and very far away", Point3d(-1e6, 1e6, 5e5), Vector3d(0.7, -0.4, -0.5),
                                Vector3d(0.2, 1, 0.1)));
    return aFrames;
}

Polygon MakeRectangle(const Frame& at, double u0, double v0, double u1, double v1)
{
    return {at(u0, v0), at(u1, v0), at(u1, v1), at(u0, v1)};
}

Polygon Reversed(const Polygon& polygon)
{
    return {polygon.rbegin(), polygon.rend()};
}

std::vector<Polygon> GetBlockOutlines(const Frame& frame, const Point3d& lower, const Point3d& upper)
{
    constexpr std::array<std::array<int, 4>, 6> kSides{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {1, 3, 7, 5}, {3, 2, 6, 7}, {2, 0, 4, 6}}};
    std::vector<Polygon> aOutlines;
    for (const auto& side : kSides)
    {
        Polygon& outline = aOutlines.emplace_back();
        for (const int n : side)
            outline.push_back(
                frame((n & 1 ? upper : lower)[0], (n & 2 ? upper : lower)[1], (n & 4 ? upper : lower)[2]));
    }
    return aOutlines;
}

PolygonModel::PolygonModel()
{
    Result result;
    m_pHistory = HistoryRegistry::Get().CreateHistory(m_nHistoryID, false, result);
}

PolygonModel::~PolygonModel()
{
    Result result;
    HistoryRegistry::Get().DeleteHistory(m_nHistoryID, result);
}

std::unique_ptr<Step> PolygonModel::OpenOwnStep()
{
    return m_pHistory->GetOpenDelta() ? nullptr : std::make_unique<Step>(*this);
}

Vertex& PolygonModel::AddVertex(const Point3d& p)
{
    const Place place{p[0], p[1], p[2]};
    if (const auto it = m_mapVertexIDs.find(place); it != m_mapVertexIDs.end())
        if (auto* pVertex = m_pHistory->Get<Vertex>(it->second); pVertex && pVertex->GetPosition().distSqrd(p) == 0.0)
            return *pVertex;
    const auto pStep = OpenOwnStep();
    Vertex& vertex = m_pHistory->Create<Vertex>(p);
    vertex.AddToSearch();
    m_mapVertexIDs[place] = vertex.GetID();
    return vertex;
}

Edge& PolygonModel::AddEdge(const Point3d& a, const Point3d& b)
{
    const auto pStep = OpenOwnStep();
    Vertex& start = AddVertex(a);
    Vertex& end = AddVertex(b);
    Edge* pEdge = start.FindEdgeTo(end);
    return pEdge ? *pEdge : *Edge::Create(&start, &end, *m_pHistory, Edge::nGroupMode::nBoth);
}

Loop& PolygonModel::AddLoop(const Polygon& polygon)
{
    const auto pStep = OpenOwnStep();
    Loop& loop = m_pHistory->Create<Loop>();
    std::vector<Coedge*> aCoedges;
    for (std::size_t n = 0; n < polygon.size(); ++n)
    {
        Edge& edge = AddEdge(polygon[n], polygon[(n + 1) % polygon.size()]);
        const bool bForward = edge.GetStartVertex() == &AddVertex(polygon[n]);
        aCoedges.push_back(&m_pHistory->Create<Coedge>(bForward));
        edge.AddCoedge(*aCoedges.back());
    }
    LinkLoop(aCoedges);
    loop.SetCoedge(aCoedges.front());
    loop.OwnCoedges();
    for (const Coedge* pCoedge : aCoedges)
        pCoedge->GetStartVertex()->RebuildGroups(false);
    return loop;
}

Face& PolygonModel::AddFace(const Polygon& outline, const std::vector<Polygon>& aHoles)
{
    const auto pStep = OpenOwnStep();
    Face& face = Face::Create(*m_pHistory, Plane(outline.data(), outline.size()), nullptr);
    face.AddLoop(&AddLoop(outline), true);
    for (const Polygon& hole : aHoles)
        face.AddLoop(&AddLoop(hole), false);
    return face;
}

std::vector<Face*> PolygonModel::AddBlockFaces(const Frame& frame, const Point3d& lower, const Point3d& upper,
                                               bool bVoid)
{
    const auto pStep = OpenOwnStep();
    std::vector<Face*> aFaces;
    for (const Polygon& outline : GetBlockOutlines(frame, lower, upper))
        aFaces.push_back(&AddFace(bVoid ? Reversed(outline) : outline));
    return aFaces;
}

Body& PolygonModel::AddBody(const std::vector<std::vector<Face*>>& aShells)
{
    const auto pStep = OpenOwnStep();
    Body& body = m_pHistory->Create<Body>();
    Lump& lump = body.AddLump();
    for (const std::vector<Face*>& aFaces : aShells)
    {
        Shell& shell = m_pHistory->Create<Shell>();
        shell.AddFaces(aFaces);
        lump.AddShell(&shell, false);
    }
    return body;
}

Body& PolygonModel::AddBlock(const Frame& frame, const Point3d& lower, const Point3d& upper)
{
    const auto pStep = OpenOwnStep();
    return AddBody({AddBlockFaces(frame, lower, upper)});
}

Step::Step(PolygonModel& model, bool bRollback) : m_history(model.GetHistory()), m_bRollback(bRollback)
{
    EXPECT_TRUE(m_history.StartDelta());
}

Step::~Step()
{
    if (m_bRollback)
        m_history.Rollback();
    else
        m_history.Commit("Test");
}

void FillAtRandom(PolygonModel& model, const Frame& at, std::mt19937& random)
{
    Step step(model);
    const auto pick = [&](int nCount) { return double(random() % unsigned(nCount)); };
    for (int n = 0; n < 4; ++n)
    {
        const Point3d lower(2 * n, pick(4), pick(4));
        model.AddBlock(at, lower, lower + Vector3d(2, 1 + pick(3), 1 + pick(3)));
    }
    for (int n = 0; n < 3; ++n)
    {
        const double w = 5.0 + n;
        model.AddFace({at(0, 0, w), at(6, 0, w + 1), at(6, 6, w + 1), at(0, 6, w)},
                      {{at(2, 2, w + 1.0 / 3), at(2, 4, w + 1.0 / 3), at(4, 4, w + 2.0 / 3), at(4, 2, w + 2.0 / 3)}});
    }
    for (int n = 0; n < 8; ++n)
    {
        model.AddVertex(at(pick(9), pick(9), pick(9)));
        const Point3d start = at(pick(9), pick(9), pick(9));
        model.AddEdge(start, start + at.x * (1 + pick(3)) + at.z * pick(2));
    }
}

void ExpectSound(History& history)
{
    std::vector<Result> aResults;
    history.CheckAllValidity(aResults);
    for (const Result& result : aResults)
        ADD_FAILURE() << result.GetErrorString();
}

std::string Describe(const History& history)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    for (std::uint64_t nID = 0; nID < history.GetObjectTable().Size(); ++nID)
        if (const Object* pObject = history.GetObject(nID))
        {
            text << pObject->GetName() << '\n';
            WriteContents(text, *pObject);
            text << '\n';
        }
    return text.str();
}

void ExpectUndoRedoRestores(History& history)
{
    ExpectSound(history);
    std::vector<std::string> aStates;
    while (history.CanUndo())
    {
        aStates.push_back(Describe(history));
        Result result;
        history.Undo(result, false, INVALID_ID, false);
        ASSERT_TRUE(result.IsGood());
        ExpectSound(history);
    }
    EXPECT_EQ(Describe(history), "");
    EXPECT_EQ(CountTreeEntries(history), 0u);
    for (auto itState = aStates.rbegin(); itState != aStates.rend(); ++itState)
    {
        ASSERT_TRUE(history.Redo(INVALID_ID));
        EXPECT_EQ(Describe(history), *itState);
        ExpectSound(history);
    }
}

void PrintTo(const Frame& frame, std::ostream* pText)
{
    *pText << frame.pName;
}

std::vector<unsigned> GetFindings(const Object& object)
{
    std::vector<Result> aResults;
    const std::size_t nFindings = object.CheckValidity(aResults);
    EXPECT_EQ(nFindings, aResults.size());
    std::vector<unsigned> aCodes;
    for (const Result& result : aResults)
        aCodes.push_back(result.GetErrorCode());
    std::sort(aCodes.begin(), aCodes.end());
    return aCodes;
}
} // namespace QRV
