#include "Picture.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <locale>

namespace examples
{
using namespace QRV;

namespace
{
/// The plane of the picture: from the front right and above, all three axes shortened alike.
struct View
{
    Vector3d right = Vector3d(1.0, 1.0, 0.0) / std::sqrt(2.0);
    Vector3d up = Vector3d(-1.0, 1.0, 2.0) / std::sqrt(6.0);
    Vector3d toViewer = Vector3d(1.0, -1.0, 1.0) / std::sqrt(3.0);

    Point2d Flatten(const Point3d& p) const { return Point2d(p.toVector3d() % right, p.toVector3d() % up); }
};

struct Segment
{
    Point3d a, b;
    Point2d flatA, flatB;
};

Segment GetSegment(const Session& session, std::uint64_t nEdge, const View& view)
{
    Segment segment;
    Expect(APIGetEdgePointsReadOnly(session.GetID(), nEdge, segment.a, segment.b), "APIGetEdgePointsReadOnly");
    segment.flatA = view.Flatten(segment.a);
    segment.flatB = view.Flatten(segment.b);
    return segment;
}

double Cross(const Vector2d& a, const Vector2d& b)
{
    return a.x * b.y - a.y * b.x;
}

/// Where along the segment, from 0 to 1, it crosses another in the picture.
void AddCrossing(const Segment& segment, const Segment& other, std::vector<double>& aCuts)
{
    const Vector2d along(segment.flatB.x - segment.flatA.x, segment.flatB.y - segment.flatA.y);
    const Vector2d across(other.flatB.x - other.flatA.x, other.flatB.y - other.flatA.y);
    const Vector2d between(other.flatA.x - segment.flatA.x, other.flatA.y - segment.flatA.y);
    const double dDivisor = Cross(along, across);
    if (std::abs(dDivisor) < 1e-12)
        return;
    const double t = Cross(between, across) / dDivisor;
    const double u = Cross(between, along) / dDivisor;
    if (t > 0.0 && t < 1.0 && u > -1e-9 && u < 1.0 + 1e-9)
        aCuts.push_back(t);
}

bool IsSeen(const Session& session, const Point3d& p, const View& view)
{
    constexpr double kAtThePoint = 1e-6; // the faces at the edge itself are hit here
    std::vector<std::uint64_t> aHits;
    SortedHits aSorted;
    Expect(APIRayFireReadOnly(session.GetID(), Line3d(p, view.toViewer), aHits, 1e-9, false, false, true, 1e6, nullptr,
                              nullptr, &aSorted),
           "APIRayFireReadOnly");
    return aSorted.empty() || aSorted.back().first < kAtThePoint;
}

void WriteLine(std::ofstream& stream, const Point2d& a, const Point2d& b, bool bOutline)
{
    stream << "<line x1=\"" << a.x << "\" y1=\"" << -a.y << "\" x2=\"" << b.x << "\" y2=\"" << -b.y << "\" class=\""
           << (bOutline ? "outline" : "inner") << "\"/>\n";
}

void WriteHead(std::ofstream& stream, const std::vector<Segment>& aSegments)
{
    constexpr double kMargin = 0.3;
    Point2d lower(1e30, 1e30);
    Point2d upper(-1e30, -1e30);
    for (const Segment& segment : aSegments)
        for (const Point2d& p : {segment.flatA, segment.flatB})
        {
            lower = Point2d(std::min(lower.x, p.x), std::min(lower.y, p.y));
            upper = Point2d(std::max(upper.x, p.x), std::max(upper.y, p.y));
        }
    stream << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" << lower.x - kMargin << ' ' << -upper.y - kMargin
           << ' ' << upper.x - lower.x + 2.0 * kMargin << ' ' << upper.y - lower.y + 2.0 * kMargin << "\">\n"
           << "<style>line { stroke: black; stroke-linecap: round } .outline { stroke-width: 0.03 } "
              ".inner { stroke-width: 0.012 }</style>\n";
}
} // namespace

std::size_t DrawPicture(const Session& session, const std::filesystem::path& path)
{
    const View view;
    const Vector3d look = -view.toViewer;
    std::vector<std::uint64_t> aSilhouettes;
    Expect(APIDetectSilhouettesReadOnly(session.GetID(), INVALID_ID, Point3d(), look, false, aSilhouettes),
           "APIDetectSilhouettesReadOnly");
    std::vector<Segment> aOutlines;
    for (const std::uint64_t nEdge : aSilhouettes)
        aOutlines.push_back(GetSegment(session, nEdge, view));
    const std::vector<std::uint64_t> aEdges = session.GetAll(nEdgeType);
    std::vector<Segment> aSegments;
    for (const std::uint64_t nEdge : aEdges)
        aSegments.push_back(GetSegment(session, nEdge, view));

    std::ofstream stream(path, std::ios::binary);
    stream.imbue(std::locale::classic());
    WriteHead(stream, aSegments);
    std::size_t nSeen = 0;
    for (std::size_t i = 0; i < aEdges.size(); ++i)
    {
        const Segment& segment = aSegments[i];
        bool bOutline = false;
        Expect(APIIsEdgeSilhouetteReadOnly(session.GetID(), aEdges[i], Point3d(), look, false, bOutline),
               "APIIsEdgeSilhouetteReadOnly");
        std::vector<double> aCuts{0.0, 1.0};
        for (const Segment& outline : aOutlines)
            AddCrossing(segment, outline, aCuts);
        std::sort(aCuts.begin(), aCuts.end());
        const Line3d line(segment.a, segment.b);
        for (std::size_t j = 1; j < aCuts.size(); ++j)
        {
            const double dFrom = aCuts[j - 1];
            const double dTo = aCuts[j];
            if (dTo - dFrom < 1e-9 || !IsSeen(session, line.GetPointFromParameter((dFrom + dTo) / 2.0), view))
                continue;
            WriteLine(stream, view.Flatten(line.GetPointFromParameter(dFrom)),
                      view.Flatten(line.GetPointFromParameter(dTo)), bOutline);
            ++nSeen;
        }
    }
    stream << "</svg>\n";
    stream.close();
    Expect(stream.good(), "cannot write " + path.string());
    return nSeen;
}
} // namespace examples
