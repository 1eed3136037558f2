/// Draws Henry David Thoreau's house at Walden Pond line by line and shows what formed.
///
/// From the builder's own account (Walden; or, Life in the Woods, Boston 1854, chapter "Economy"): "I have thus a tight
/// shingled and plastered house, ten feet wide by fifteen long, and eight-feet posts, with a garret and a closet, a
/// large window on each side, two trap-doors, one door at the end, and a brick fireplace opposite", and a cellar "six
/// feet square by seven deep". So far the published figures: plan 10 by 15 ft, posts 8 ft, cellar 6 by 6 by 7 ft, and
/// where windows, door and chimney are. Assumed here, since he gives no figure: a roof of 45 degrees, walls, floors and
/// roof of 6 in, openings, chimney and flue, and the arch over the fireplace. Left out: closet and trap-doors.
///
/// Feet become metres by 0.3048, exact to ten decimals. The solids are the house as a whole, the spaces cut out of it
/// (room, garret), the cellar below and the chimney behind, which stands 2 in clear of the wall.
///
/// house [DIR]
#include "Picture.h"
#include "support/STLFile.h"
#include "support/Session.h"
#include "support/UndoCheck.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

namespace examples
{
using namespace QRV;

namespace
{
constexpr double kWidth = 10.0, kLength = 15.0, kPosts = 8.0; // feet, like all lengths below
constexpr double kRise = kWidth / 2.0;
constexpr double kThick = 0.5;
constexpr double kCellarWidth = 6.0, kCellarDepth = 7.0, kGround = -1.0;
constexpr double kChimneyGap = 2.0 / 12.0, kChimneyWidth = 5.0, kChimneyDepth = 3.0, kChimneyTop = 16.0;
constexpr double kFlueRadius = 0.75;

/// In metres, as a number of ten decimals: so the 16 digits of a journal give it back as it was.
double FromFeet(double dFeet)
{
    constexpr double kDecimals = 1e10;
    return std::round(dFeet * 0.3048 * kDecimals) / kDecimals;
}

Point3d InFeet(double x, double y, double z)
{
    return Point3d(FromFeet(x), FromFeet(y), FromFeet(z));
}

struct Expected
{
    const char* pName;
    double dCubicFeet;
};

/// An upright prism over an outline in a plane across the house.
void Prism(Session& session, const std::vector<std::pair<double, double>>& aProfile, double dFrontY, double dBackY)
{
    std::vector<Point3d> aFront, aBack;
    for (const auto& [x, z] : aProfile)
    {
        aFront.push_back(InFeet(x, dFrontY, z));
        aBack.push_back(InFeet(x, dBackY, z));
    }
    session.Outline(aFront);
    session.Outline(aBack);
    session.Uprights(aFront, aBack);
}

void Box(Session& session, double x0, double x1, double y0, double y1, double z0, double z1)
{
    std::vector<Point3d> aBottom, aTop;
    const auto rectangle = [&](double z, std::vector<Point3d>& aCorners)
    {
        Expect(APICreateRectangle(session.GetID(), InFeet(x0, y0, z), InFeet(x1, y0, z), InFeet(x1, y1, z), aCorners,
                                  false),
               "APICreateRectangle");
    };
    rectangle(z0, aBottom);
    rectangle(z1, aTop);
    session.Uprights(aBottom, aTop);
}

/// An opening on a wall: a rectangle that leaves a hole in the wall's face, with a pane in it.
void Opening(Session& session, const Point3d& lowerLeft, const Point3d& lowerRight, const Point3d& upperRight)
{
    const std::size_t nBefore = session.Count(nFaceType);
    std::vector<Point3d> aCorners;
    Expect(APICreateRectangle(session.GetID(), lowerLeft, lowerRight, upperRight, aCorners, false),
           "APICreateRectangle");
    Expect(session.Count(nFaceType) == nBefore + 1, "an opening did not give a pane");
}

void DrawHouse(Session& session)
{
    Prism(session, {{0, 0}, {kWidth, 0}, {kWidth, kPosts}, {kWidth / 2, kPosts + kRise}, {0, kPosts}}, 0, kLength);
    Box(session, kThick, kWidth - kThick, kThick, kLength - kThick, kThick, kPosts - kThick);
    // The underside of the roof, half a foot inwards of the slope, meets the garret's floor here.
    const double dInset = kThick * std::numbers::sqrt2;
    Prism(session, {{dInset, kPosts}, {kWidth - dInset, kPosts}, {kWidth / 2, kPosts + kRise - dInset}}, kThick,
          kLength - kThick);
}

void DrawOpenings(Session& session)
{
    for (const double x : {0.0, kThick, kWidth - kThick, kWidth}) // each window on both faces of its wall
        Opening(session, InFeet(x, 6, 3), InFeet(x, 9, 3), InFeet(x, 9, 6.5));
    for (const double y : {0.0, kThick})
        Opening(session, InFeet(3.5, y, 0.75), InFeet(6.5, y, 0.75), InFeet(6.5, y, 7));
}

void DrawCellar(Session& session)
{
    const double x = (kWidth - kCellarWidth) / 2.0;
    Box(session, x, x + kCellarWidth, 4, 4 + kCellarWidth, kGround - kCellarDepth, kGround);
}

/// The chimney behind the house, a flue drawn on its top as a circle, and the fireplace on its front under an arch.
void DrawChimney(Session& session)
{
    const double x = (kWidth - kChimneyWidth) / 2.0;
    const double y = kLength + kChimneyGap;
    Box(session, x, x + kChimneyWidth, y, y + kChimneyDepth, kGround, kChimneyTop);

    std::vector<Point3d> aPoints;
    const Point3d middle = InFeet(kWidth / 2, y + kChimneyDepth / 2, kChimneyTop);
    Expect(APICreateCircleOrArc(session.GetID(), InFeet(kFlueRadius, 0, 0).x, middle, aPoints, UnitVector3d::kXDir,
                                UnitVector3d::kYDir, 0.0, 2.0 * std::numbers::pi, 6.0, false, Transf3d::kIdentity, 0),
           "APICreateCircleOrArc");

    const Point3d left = InFeet(3.5, y, 3), right = InFeet(6.5, y, 3), crown = InFeet(5, y, 3.75);
    aPoints.clear();
    Expect(APICreateCircleOrArcFromPoints(session.GetID(), left, right, crown, aPoints, 6.0, false, Transf3d::kIdentity,
                                          0, false),
           "APICreateCircleOrArcFromPoints");
    const Point3d footLeft = InFeet(3.5, y, 0.5), footRight = InFeet(6.5, y, 0.5);
    session.Line(right, footRight);
    session.Line(footRight, footLeft);
    session.Line(footLeft, left);
}

/// The path to the door: lines that bound nothing.
void DrawPath(Session& session)
{
    std::uint64_t nFace = INVALID_ID;
    Expect(APICreatePolyline(session.GetID(), {InFeet(5, -1, kGround), InFeet(5, -5, kGround), InFeet(9, -9, kGround)},
                             nFace, false),
           "APICreatePolyline");
    Expect(nFace == INVALID_ID, "the path formed a face");
}

std::size_t CountBelow(const Session& session, std::uint64_t nBody, nObjectType nType)
{
    std::vector<std::uint64_t> aIDs;
    Expect(APIGetObjectsByTypeReadOnly(session.GetID(), nBody, nType, aIDs, false), "APIGetObjectsByTypeReadOnly");
    return aIDs.size();
}

double GetGarretVolume()
{
    const double dInset = kThick * std::numbers::sqrt2;
    return (kWidth / 2 - dInset) * (kRise - dInset) * (kLength - 2 * kThick);
}

/// Prints the table; the bodies stand in the order in which they were drawn.
void ExpectBodies(const Session& session)
{
    constexpr double kCubicFoot = 0.3048 * 0.3048 * 0.3048;
    const std::vector<Expected> aExpected{
        {"house", kWidth * kLength * (kPosts + kRise / 2)},
        {"room", (kWidth - 2 * kThick) * (kLength - 2 * kThick) * (kPosts - 2 * kThick)},
        {"garret", GetGarretVolume()},
        {"cellar", kCellarWidth * kCellarWidth * kCellarDepth},
        {"chimney", kChimneyWidth * kChimneyDepth * (kChimneyTop - kGround)},
    };
    const std::vector<std::uint64_t> aBodies = session.GetAll(nBodyType);
    Expect(aBodies.size() == aExpected.size(), std::to_string(aBodies.size()) + " bodies formed, not 5");
    std::printf("%-8s %6s %6s %6s %9s %12s %12s %11s\n", "body", "id", "faces", "edges", "vertices", "area m2",
                "volume m3", "open edges");
    for (std::size_t i = 0; i < aBodies.size(); ++i)
    {
        const std::uint64_t nBody = aBodies[i];
        const double dVolume = session.GetVolume(nBody);
        const std::size_t nOpen = session.CountOpenEdges(nBody);
        std::printf("%-8s %6llu %6zu %6zu %9zu %12.6f %12.6f %11zu\n", aExpected[i].pName,
                    static_cast<unsigned long long>(nBody), CountBelow(session, nBody, nFaceType),
                    CountBelow(session, nBody, nEdgeType), CountBelow(session, nBody, nVertexType),
                    session.GetArea(nBody), dVolume, nOpen);
        const double dWanted = aExpected[i].dCubicFeet * kCubicFoot;
        Expect(nOpen == 0, std::string(aExpected[i].pName) + " is not closed");
        Expect(std::abs(dVolume - dWanted) <= 1e-9 * dWanted,
               std::string(aExpected[i].pName) + " should hold " + std::to_string(dWanted) + " cubic metres");
    }
}

void ExpectSound(const Session& session)
{
    const std::vector<std::string> aFindings = session.Audit();
    std::printf("all objects %zu, arcs %zu, findings of the audit %zu\n", session.Count(nUnspecifiedType),
                session.Count(nCircleAttributeType), aFindings.size());
    Expect(aFindings.empty(), aFindings.empty() ? "" : aFindings.front());
    Expect(session.Count(nCircleAttributeType) == 2, "the flue and the arch should be two true circles");
}
} // namespace

void Run(const std::filesystem::path& out)
{
    Session session(out / "house.journal");
    DrawHouse(session);
    DrawOpenings(session);
    DrawCellar(session);
    DrawChimney(session);
    DrawPath(session);

    ExpectBodies(session);
    ExpectSound(session);
    std::printf("undo and redo of %zu steps, one by one and in one jump: everything came back\n",
                ExpectUndoRedo(session));
    double dVolume = 0.0;
    for (const std::uint64_t nBody : session.GetAll(nBodyType))
        dVolume += session.GetVolume(nBody);
    SaveSTL(session, session.GetAll(nBodyType), dVolume, out / "house.stl");
    std::printf("%zu lines seen in the picture\n", DrawPicture(session, out / "house.svg"));
}
} // namespace examples

int main(int argc, char** argv)
{
    try
    {
        examples::Expect(argc <= 2, "usage: house [DIR]");
        examples::Run(argc == 2 ? argv[1] : "out");
        return EXIT_SUCCESS;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "house: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
