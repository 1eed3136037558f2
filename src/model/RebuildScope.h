/// Which shells of a body are derived anew.
#pragma once

#include "model/Shell.h"

#include <unordered_map>
#include <vector>

namespace QRV
{
class Body;
class Face;

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
    /// Those of the faces, and from there on the ones at the edges of each that is open or in which open ones stand.
    /// All where solids have voids, which may have to move.
    RebuildScope(const Body& body, const std::vector<Face*>& aFaces);

    /// In order of the lumps.
    const std::vector<Shell*>& GetShells() const { return m_aShells; }
    /// What the shell enclosed when first asked for.
    double GetVolume(const Shell& shell);
    /// Whether a face of an open shell goes from an edge of this one into what it bounds.
    bool HasOpenInside(const Shell& shell) const { return m_withOpenInside.contains(&shell); }

private:
    void ReachAll();
    void Reach(Shell* pShell);
    void Spread();
    void ReachFromOpen(const Shell& shell);
    void ReachNeighbours(const Shell& shell);

    const Body& m_body;
    std::vector<Shell*> m_aShells;
    ObjectSet m_reached;
    ObjectSet m_withOpenInside;
    std::unordered_map<const Shell*, double> m_volumes;
};
} // namespace QRV
