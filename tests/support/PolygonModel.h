/// Models put together by hand from polygons, without the drawing operations.
#pragma once

#include "history/History.h"
#include "model/Body.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "model/Vertex.h"
#include "support/ExpectGood.h"

#include <array>
#include <concepts>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace QRV
{
using IDs = std::vector<std::uint64_t>;

/// A place and direction in space for a shape that is easier to state near the origin.
struct Frame
{
    const char* pName;
    Point3d origin;
    UnitVector3d x;
    UnitVector3d y;
    UnitVector3d z;

    Point3d operator()(double u, double v, double w = 0.0) const { return origin + x * u + y * v + z * w; }
};

/// `inPlane` tells on which side of x the y direction lies.
Frame MakeFrame(const char* pName, const Point3d& origin, const Vector3d& x, const Vector3d& inPlane);
/// As it stands, turned about no axis of the world, and turned and far away.
const std::vector<Frame>& GetFrames();
/// And one upside down, and one turned and very far away.
std::vector<Frame> GetFramesAndFar();

using Polygon = std::vector<Point3d>;

Polygon MakeRectangle(const Frame& at, double u0, double v0, double u1, double v1);
Polygon Reversed(const Polygon& polygon);
/// The six sides of a block, counter-clockwise seen from outside.
std::vector<Polygon> GetBlockOutlines(const Frame& frame, const Point3d& lower, const Point3d& upper);

class Step;

/// One temporary History, in which every vertex of one place and every edge between two vertices exists once. What is
/// added while no step is open is a step of its own.
class PolygonModel
{
public:
    PolygonModel();
    ~PolygonModel();
    PolygonModel(const PolygonModel&) = delete;
    PolygonModel& operator=(const PolygonModel&) = delete;

    History& GetHistory() { return *m_pHistory; }
    Vertex& AddVertex(const Point3d& p);
    /// Found or made, then free.
    Edge& AddEdge(const Point3d& a, const Point3d& b);
    /// Free faces; the outline runs counter-clockwise about the normal, the holes clockwise.
    Face& AddFace(const Polygon& outline, const std::vector<Polygon>& aHoles = {});
    Loop& AddLoop(const Polygon& polygon);
    /// The six faces of a block, normals outward, or inward for `bVoid`.
    std::vector<Face*> AddBlockFaces(const Frame& frame, const Point3d& lower, const Point3d& upper,
                                     bool bVoid = false);
    /// A body with one lump that has one shell for each list.
    Body& AddBody(const std::vector<std::vector<Face*>>& aShells);
    Body& AddBlock(const Frame& frame, const Point3d& lower, const Point3d& upper);

private:
    using Place = std::array<double, 3>;

    /// Null within a step.
    std::unique_ptr<Step> OpenOwnStep();

    std::uint64_t m_nHistoryID = INVALID_ID;
    History* m_pHistory = nullptr;
    std::map<Place, std::uint64_t> m_mapVertexIDs;
};

/// While it lives a Delta is open; committed at its end, unless it was to be rolled back.
class Step
{
public:
    explicit Step(PolygonModel& model, bool bRollback = false);
    ~Step();
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

private:
    History& m_history;
    bool m_bRollback;
};

/// Blocks that share faces' edges, plates with holes, free edges and lone vertices.
void FillAtRandom(PolygonModel& model, const Frame& at, std::mt19937& random);

/// What the work returns, done in a step.
template <std::invocable Work>
decltype(auto) InStep(PolygonModel& model, Work work)
{
    const Step step(model);
    return work();
}

/// All live objects of a class.
template <class T>
std::vector<T*> GetAll(History& history)
{
    std::vector<Object*> aFound;
    history.GetObjectsByType(aFound, T::kType, true);
    std::vector<T*> aObjects;
    for (Object* pObject : aFound)
        aObjects.push_back(static_cast<T*>(pObject));
    return aObjects;
}

/// The audit of the whole History finds nothing.
void ExpectSound(History& history);
/// All live objects with their contents, equal exactly for equal models.
std::string Describe(const History& history);
/// Undo to nothing leaves nothing; on the way back every state is what it was. All are sound, the one it stands in too.
void ExpectUndoRedoRestores(History& history);
/// The codes of the findings, in ascending order.
std::vector<unsigned> GetFindings(const Object& object);

void PrintTo(const Frame& frame, std::ostream* pText);
} // namespace QRV
