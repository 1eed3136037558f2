/// One edge-connected set of faces.
#pragma once

#include "model/ObjectOf.h"
#include "model/SharedObjectSet.h"

namespace QRV
{
class Body;
class Face;
class Lump;

/// A shell of a smaller volume encloses nothing: it is an open sheet.
inline constexpr double kVolumeTolerance = 1e-12;

/// Bounds a region of space when closed; a sheet otherwise. Whether a face belongs here is asked of the face.
class Shell : public ObjectOf<Shell, Object>
{
public:
    static constexpr nObjectType kType = nShellType;
    static constexpr const char* kName = "Shell";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("faces", &Shell::m_aFaces), Derivable("plump", &Shell::m_pLump));
    }

    Shell() = default;

    Lump* GetLump() const { return m_pLump; }
    Body* GetBody() const;
    /// In order of id; stored states share what did not change.
    const SharedObjectSet<Face>& GetFaces() const { return m_aFaces; }
    void SetLump(Lump* pLump);

    /// Takes in the faces that have no shell; those of this or another shell are passed over.
    void AddFaces(const std::vector<Face*>& aFaces);
    void RemoveFace(Face* pFace);
    /// Takes over the faces, from other shells too. Whether any was not here yet.
    bool TakeFaces(const std::vector<Face*>& aFaces);
    bool IsClosed() const;
    /// Where faces that come to hang on those of this shell are to stand: here, or where it is closed in a body in a
    /// new shell and lump, for then they bound nothing together.
    Shell& ChooseForOutside();
    bool GetSamplePoint(Point3d& p) const;
    bool ContainsPoint(const Point3d& p, const Vector3d* pDirection = nullptr) const;

    bool IsNonOwned() const override { return !m_pLump; }
    void Changed(unsigned nFlags) override;
    void AddToBox(Interval3d& box) const override;
    Object* GetTopOwner() const override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    Lump* m_pLump = nullptr;
    SharedObjectSet<Face> m_aFaces;
};
extern template class ObjectOf<Shell, Object>;
} // namespace QRV
