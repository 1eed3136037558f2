/// Which shells of a body are derived anew.
#pragma once

#include "model/Object.h"

#include <unordered_map>
#include <vector>

namespace QRV
{
class Body;
class Face;
class Shell;

/// 0 for an open shell.
double GetEnclosedVolume(const Shell& shell);
/// Whether what a shell encloses is more than rounding.
bool IsVolume(double dVolume);

/// The shells of one body that a change can have made hang together in another way.
class RebuildScope
{
public:
    /// All shells.
    explicit RebuildScope(const Body& body);
    /// Those of the faces, and from there on the ones at the edges of each that is open or that others stand in. All
    /// where solids have voids, which may have to move.
    RebuildScope(const Body& body, const std::vector<Face*>& aFaces);

    /// In order of the lumps.
    const std::vector<Shell*>& GetShells() const { return m_aShells; }
    /// What the shell enclosed when first asked for.
    double GetVolume(const Shell& shell);
    /// Whether a face of another shell of the body goes from an edge of this one into what it bounds.
    bool HasOthersInside(const Shell& shell) const;

private:
    void Reach(const Face* pFace);
    void ReachNeighbours(const Shell& shell);
    bool IsOther(const Face* pFace, const Shell& shell) const;

    const Body& m_body;
    std::vector<Shell*> m_aShells;
    ObjectSet m_reached;
    std::unordered_map<const Shell*, double> m_volumes;
};
} // namespace QRV
