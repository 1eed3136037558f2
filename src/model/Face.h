/// A planar polygon with holes.
#pragma once

#include "model/Loop.h"

namespace QRV
{
class Body;
class FaceFacets;
class Shell;

/// A face: its first loop is the outline, counter-clockwise seen from the side its normal points to, the others are
/// holes, clockwise. Box, plane and facets are caches. A face stands in the History's tree exactly while its box is
/// not null.
class Face : public ObjectOf<Face, Object>
{
public:
    static constexpr nObjectType kType = nFaceType;
    static constexpr const char* kName = "Face";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("plane", &Face::m_Plane), Saved("loops", &Face::m_aLoops),
                               Derivable("facebbox", &Face::m_Box), Derivable("pshell", &Face::m_pShell),
                               Cached(&Face::m_pFacets));
    }

    explicit Face(const Plane& plane) : m_Plane(plane) {}

    /// New face with its plane cached and no loops, in `pShell` when that is given.
    static Face& Create(History& history, const Plane& plane, Shell* pShell);

    Shell* GetShell() const { return m_pShell; }
    Body* GetBody() const;
    const std::vector<Loop*>& GetLoops() const { return m_aLoops; }
    Loop* GetOuterLoop() const { return m_aLoops.empty() ? nullptr : m_aLoops.front(); }
    /// Plain link; the shell keeps the list (Shell::AddFaces, Shell::RemoveFace).
    void SetShell(Shell* pShell);

    // --- caches: computed on first need. Plane and box are recorded when a Delta is open. Facets are not: whatever
    // makes them void records the face, so that a state from before finds none or its own.
    const Plane& GetPlane();
    const Interval3d& GetBox(); ///< also enters the tree
    /// The facets; null when the face cannot be triangulated, has no loops or fewer than 3 corners.
    const FaceFacets* GetFacets();
    const Interval3d& GetCachedBox() const { return m_Box; }
    const Plane& GetCachedPlane() const { return m_Plane; }
    const FaceFacets* GetCachedFacets() const { return m_pFacets.get(); }
    /// Fits a plane to the outer loop, turned so that the loop runs counter-clockwise. False for none.
    bool ComputePlane(Plane& plane) const;
    /// Box of the vertices of all loops.
    Interval3d ComputeBox() const;
    /// Triples of vertices in the winding of the face. True and empty for a face without loops; false on failure.
    bool GetFacetVertices(std::vector<Vertex*>& aVertices);

    // --- loops
    /// Adds a loop without a face, at the front or the back. True also when it is here already; false for another
    /// face's.
    bool AddLoop(Loop* pLoop, bool bFront);
    /// Takes a loop off the face. False when it is not here.
    bool RemoveLoop(Loop* pLoop);
    /// Brings the first loop of positive area to the front if the first has none. Gives whether it swapped.
    bool ChooseOuterLoop();
    /// Deletes a loop with its coedges, keeping the vertices' groups right; edges fall with their last use.
    void DeleteLoop(Loop* pLoop);
    /// Makes `inner`, a face in this one's plane that lies inside it, fill a new hole of this face. False, with nothing
    /// changed, when it does not fit.
    bool AddInnerFace(Face* pInner);
    /// Adds a hole round what `inner` belongs to: edges and whether they are gone along forward, with this face on the
    /// left.
    void AddHole(const std::vector<std::pair<Edge*, bool>>& aWay, Face& inner);
    /// Moves the holes that lie inside `other`, split off this face, to it. `parted`, the loop that its outline comes
    /// from, stays: it runs round the outline or beside it.
    void HandOverInnerLoops(Face& other, const Loop& parted);
    void Reverse();

    // --- sketching in the face
    /// The corner at `pVertex` into which `direction` falls: its coedge ends at the vertex. Null if none.
    Coedge* FindCorner(const Vertex* pVertex, const Vector3d& direction);
    /// Pulls a dangling edge, and the tree of edges behind it, into the face. The near vertex is the edge's start or
    /// end as told. False, with nothing changed, when the far vertex does not lie in the face.
    bool AddSpurEdge(Edge& edge, bool bStartIsOnFace, ObjectSet& done);
    /// Cuts the face, or joins two of its loops, by an edge between two of its corners. `*ppNewFace` gets the part
    /// split off. False, with nothing changed, when the edge does not run in the face.
    bool SplitByEdge(Edge& edge, Face** ppNewFace, bool bSkipMidpointTest);

    // --- measures and tests
    /// The boundary counts. With `bWide` in a wide band about the facets. Without that, facets are used where they
    /// stand and otherwise not made: the sides tell as well, and a sketch that grows would make them anew for each
    /// line.
    bool ContainsPoint(const Point3d& p, bool bWide);
    /// As ContainsPoint, without the boundary.
    bool ContainsPointInside(const Point3d& p);
    bool GetCentroid(Point3d& centroid);
    bool GetInteriorPoint(Point3d& p);
    /// Mean distance of corners and edge midpoints from the centroid; -1 without facets.
    double GetVariant();
    double GetVolumeContribution(const Transf3d* pTransform, const Point3d& origin);
    /// Appends the parameters at which the ray meets the face. Gives whether there are any.
    bool HitByRay(const Line3d& ray, std::vector<double>& aParameters, double dTol, double dMax);
    bool IntersectsNegativeSideOfPlanes(const std::vector<Plane>& aPlanes, double dTol, bool bWhole);
    /// Whether the face lies in a plane: +1 with the plane's normal, -1 with the opposite one, 0 when it does not. A
    /// plane through few and near corners has a direction known only roughly, so the places of the corners count too.
    int GetSideIn(const Plane& plane);
    bool HasEdge(const Edge& edge) const;

    /// What the oriented sheet around a face turned out to be.
    struct Sheet
    {
        bool bStopWhenOpen = false; ///< asked by the caller: the first open edge ends the walk
        bool bOnlyIfClosed = false; ///< asked by the caller: the walk ends once the sheet cannot be closed any more
        /// Asked by the caller: only faces of the first one's shell count, and of a face without a shell only such, as
        /// if there were no others at their edges.
        bool bWithinShell = false;
        const ObjectSet* pAmong = nullptr; ///< asked by the caller: the same, with the faces themselves
        bool bClosed = false;              ///< no open edge, consistent orientation
        bool bNoOpenEdge = false;          ///< closed but for the orientation
        std::size_t nAcrossTwoSides = 0;   ///< how many of the first faces found hang together over edges of two sides
    };
    /// A glance for an edge of one side only, over edges of two sides and towards one end of the sheet, so that a large
    /// open sheet need not be walked to see that it is open. False tells nothing.
    bool SeesOpenEdge() const;
    /// Appends the oriented sheet around this face to `aFaces` and enters it in `seen`, faces of which are not taken
    /// again. Gives the number appended.
    std::size_t GetConnectedComponent(std::vector<Face*>& aFaces, ObjectSet& seen, Sheet& sheet);
    /// Whether an edge of the face has three or more coedges, where a sheet may go one way or another.
    bool IsAtBranch() const;
    /// This face, with a shell or without, and all that hang on it over edges and over one another and have no shell.
    std::vector<Face*> GetShelllessAround();
    /// Whether `other` covers the same polygon: equal boxes, one plane, the same vertices.
    bool IsCoincident(Face& other);
    /// Appends the faces reached over edges or vertices, this one first; faces of `pExcluded` are not entered.
    std::size_t GetNeighbourComponent(std::vector<Face*>& aFaces, bool bThroughVertices, const Shell* pExcluded,
                                      bool bSmoothEdgesOnly);
    std::size_t GetConvexityConnectedComponent(std::vector<Face*>& aFaces, std::uint64_t nMask);

    // --- for viewers
    /// Shading normal at a vertex: the mean over the faces reached across smooth edges. `pCoedge` may be null.
    UnitVector3d GetVertexNormal(const Vertex* pVertex, const Coedge* pCoedge);
    /// Vertex id and normal, each vertex once, in loop order.
    void GetVertexNormals(std::vector<std::pair<std::uint64_t, UnitVector3d>>& aNormals);
    /// Three points and normals per triangle, appended. False when there are no facets.
    bool GetRenderableFace(std::vector<Point3d>& aPoints, std::vector<UnitVector3d>& aNormals, bool bBackSide);

    /// Append all edges or vertices of the loops, each once, or all coedges.
    void GetEdges(std::vector<Edge*>& aEdges) const;
    void GetVertices(std::vector<Vertex*>& aVertices) const;
    void GetCoedges(std::vector<Coedge*>& aCoedges) const;

    bool Delete() override { return Delete(true); }
    /// Deletes the face. Edges that only it used die with it, unless `bKeepEdges`: then they stay as free edges. With
    /// `bVertexCleanup` vertices left on a straight run are dissolved. Shell and body are put right by the caller.
    bool Delete(bool bVertexCleanup, bool bKeepEdges = false);
    bool IsNonOwned() const override { return !m_pShell; }
    void Changed(unsigned nFlags) override;
    void CompleteCaches() override;
    bool AddToSearch() override;
    bool RemoveFromSearch() override;
    double GetArea(const Transf3d* pTransform) const override;
    void AddToBox(Interval3d& box) const override;
    Object* GetTopOwner() const override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    void Transform(const Transf3d& transform) override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    nLoopSide FindSide(const Point3d& p);
    nLoopSide FindSideInPlane(const Point3d& p);
    void LeaveSearch();
    bool JoinTouchingLoops(Loop& first, Loop& last);
    Loop& JoinLoops(Loop& first, Loop& second);
    Face& SplitOff(Loop& loop, Coedge& oneRing, Coedge& otherRing);

    Interval3d m_Box;
    Plane m_Plane;
    Shell* m_pShell = nullptr;
    std::vector<Loop*> m_aLoops;
    std::shared_ptr<const FaceFacets> m_pFacets; ///< never changed once made, so stored states share it
};
extern template class ObjectOf<Face, Object>;

/// How far, squared, a cached box may be from what it was made of.
inline constexpr double kCachedBoxToleranceSqrd = 1e-12;

/// Whether two planes are the same as sets of points within 1e-6; gives +1 for the same direction, -1 for opposite
/// ones, 0 when they differ.
int ComparePlanes(const Plane& a, const Plane& b);
} // namespace QRV
