/// A solid, a sheet, or several of them: the top of the owning chain of faces.
#pragma once

#include "model/ObjectOf.h"

namespace QRV
{
class Edge;
class Face;
class Lump;
class RebuildScope;
class Shell;

class Body : public ObjectOf<Body, Object>
{
public:
    static constexpr nObjectType kType = nBodyType;
    static constexpr const char* kName = "Body";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("lumps", &Body::m_aLumps), Derivable("bodybbx", &Body::m_Box).Since(3));
    }

    Body() = default;

    const std::vector<Lump*>& GetLumps() const { return m_aLumps; }
    /// Cached; computed and recorded on first need.
    const Interval3d& GetBox();
    const Interval3d& GetCachedBox() const { return m_Box; }
    /// A new lump at the back.
    Lump& AddLump();
    /// A new shell in a lump of its own.
    Shell& AddShell();
    void RemoveLump(Lump* pLump);
    /// Takes over the lumps of `body`, in order, and its attributes. The caller deletes `body`.
    void TakeLumps(Body& body);
    /// Append each distinct edge, or each face, by lumps, shells and faces.
    void GetBodyEdges(std::vector<Edge*>& aEdges) const;
    void GetBodyFaces(std::vector<Face*>& aFaces) const;
    /// Puts the faces connected to `face` into the first shell, made if there is none. False, with nothing added,
    /// when one of them is in another shell.
    bool AddFaceComponent(Face& face);
    /// Re-derives shells and lumps from how the faces hang together; solids that came apart become lumps, or with
    /// `bSplitToBodies` bodies. A body left empty deletes itself. True when anything moved.
    bool Rebuild(bool bSplitToBodies);
    /// The same where faces have come, gone or turned, with the rest left as it was: of the shells of the faces and of
    /// those that hang together with them.
    bool RebuildAround(const std::vector<Face*>& aFaces);
    bool ContainsPoint(const Point3d& p, const Vector3d* pDirection = nullptr) const;

    bool IsNonOwned() const override { return true; }
    void Changed(unsigned nFlags) override;
    void CompleteCaches() override { GetBox(); }
    void AddToBox(Interval3d& box) const override;
    Object* GetTopOwner() const override { return const_cast<Body*>(this); }
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void Transform(const Transf3d& transform) override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    bool Rebuild(RebuildScope scope, bool bSplitToBodies);
    void TakeLump(Lump& lump);
    void NoteRestructured();

    Interval3d m_Box;
    std::vector<Lump*> m_aLumps;
};
extern template class ObjectOf<Body, Object>;
} // namespace QRV
