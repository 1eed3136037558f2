/// Models drawn through the exported calls, as a host would draw them, and what must hold of any model.
#pragma once

#include "support/PolygonModel.h"

#include <QRV/API.h>

#include <functional>
#include <iosfwd>
#include <random>

namespace QRV
{
/// How many objects of each class live.
struct ModelCounts
{
    std::size_t nBodies = 0;
    std::size_t nLumps = 0;
    std::size_t nShells = 0;
    std::size_t nFaces = 0;
    std::size_t nEdges = 0;
    std::size_t nVertices = 0;

    bool operator==(const ModelCounts&) const = default;
};
std::ostream& operator<<(std::ostream& text, const ModelCounts& counts);

using Segment = std::pair<Point3d, Point3d>;

/// One lasting History. Every call that it makes must be good.
class TestModel
{
public:
    TestModel();
    ~TestModel();
    TestModel(const TestModel&) = delete;
    TestModel& operator=(const TestModel&) = delete;

    std::uint64_t GetID() const { return m_nHistoryID; }
    /// For looking inside; change the model through calls only.
    History& GetHistory() const;

    std::uint64_t Vertex(const Point3d& p);
    void Line(const Point3d& a, const Point3d& b);
    void Lines(const std::vector<Segment>& aSegments);
    /// The closed outline through the points, a line for each side.
    void Outline(const Polygon& polygon);
    /// The twelve edges of a box in a frame.
    void Box(const Frame& frame, const Point3d& lower, const Point3d& upper);
    /// Gives the face formed, or INVALID_ID.
    std::uint64_t Polyline(const std::vector<Point3d>& aPoints, bool bClosed);
    std::vector<Point3d> Circle(const Point3d& center, double dRadius, const UnitVector3d& x, const UnitVector3d& y,
                                double dAccuracy);

    std::vector<std::uint64_t> GetIDs(nObjectType nType) const;
    std::size_t Count(nObjectType nType) const { return GetIDs(nType).size(); }
    ModelCounts GetCounts() const;
    /// Of all faces.
    double GetArea() const;
    /// Of all bodies.
    double GetVolume() const;
    double GetVolume(std::uint64_t nObjectID) const;
    double GetArea(std::uint64_t nObjectID) const;
    nEdgeFaceClass GetFaceClass(std::uint64_t nEdge) const;
    bool IsSmooth(std::uint64_t nEdgeOrVertex) const;
    /// All steps, those undone too.
    IDs GetDeltas() const;
    std::uint64_t GetActiveDelta(int nOffset = 0) const;
    /// Everything that lives, with its contents.
    std::string Describe() const;

private:
    std::uint64_t m_nHistoryID = INVALID_ID;
};

/// The twelve edges of a box in a frame.
std::vector<Segment> GetBoxEdges(const Frame& frame, const Point3d& lower, const Point3d& upper);
/// Turned at random, its origin at random so far from the world's.
Frame MakeRandomFrame(std::mt19937_64& random, double dDistance);

/// The audit of the whole History finds nothing.
void ExpectSound(const TestModel& model);
/// The History is sound as it stands, undoes to nothing, with nothing left in its trees, and redoes to what it was.
void ExpectUndoRedoRestores(const TestModel& model);
/// A call that must fail with this code and change nothing, the redo branch apart.
void ExpectRefused(const TestModel& model, unsigned nCode, const std::function<Result()>& call);

/// Works on the model itself as a call does, in a step, of which nothing stays if it is to be rolled back.
void InStep(std::uint64_t nHistory, const std::function<void(History&)>& work, bool bRollback = false);

struct SolidData
{
    std::size_t nFaces = 0;
    std::size_t nEdges = 0;
    std::size_t nVertices = 0;
    double dVolume = 0.0;
    double dArea = 0.0;
    double dTolerance = 1e-9; ///< of volume and area
};
/// One closed body of these figures, in a sound model.
void ExpectSolid(const TestModel& model, std::uint64_t nBody, const SolidData& data);
} // namespace QRV
