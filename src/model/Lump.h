/// One connected region of space in a body.
#pragma once

#include "model/ObjectOf.h"

namespace QRV
{
class Body;
class Shell;

/// The first shell bounds the region from outside; the others are voids in it.
class Lump : public ObjectOf<Lump, Object>
{
public:
    static constexpr nObjectType kType = nLumpType;
    static constexpr const char* kName = "Lump";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("shells", &Lump::m_aShells), Derivable("pbody", &Lump::m_pBody));
    }

    Lump() = default;

    Body* GetBody() const { return m_pBody; }
    const std::vector<Shell*>& GetShells() const { return m_aShells; }
    void SetBody(Body* pBody);
    /// Appends the shell and owns it; with `bUpdateOld` it leaves its old lump first.
    void AddShell(Shell* pShell, bool bUpdateOld);
    void RemoveShell(Shell* pShell);
    bool ContainsPoint(const Point3d& p, const Vector3d* pDirection = nullptr) const;

    bool IsNonOwned() const override { return !m_pBody; }
    void Changed(unsigned nFlags) override;
    void AddToBox(Interval3d& box) const override;
    Object* GetTopOwner() const override;
    void GetChildren(std::vector<Object*>& aChildren, ObjectSet& seen, bool bOwnedOnly) const override;
    void GetParents(std::vector<Object*>& aParents, ObjectSet& seen) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    void NoteRestructured();

    Body* m_pBody = nullptr;
    std::vector<Shell*> m_aShells;
};
extern template class ObjectOf<Lump, Object>;
} // namespace QRV
