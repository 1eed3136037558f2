#include "history/History.h"
#include "model/Body.h"
#include "model/Coedge.h"
#include "model/Edge.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/RebuildScope.h"
#include "model/Shell.h"
#include "model/Vertex.h"
#include "spatial/BoxTree.h"
#include "spatial/Measures.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace QRV
{
namespace
{
struct ShellRecord
{
    Shell* pShell;
    Interval3d box;
    double dVolume;  ///< positive for a solid, negative for a void, 0 for a sheet
    bool bWasClosed; ///< before the rebuild

    bool IsVoid() const { return dVolume <= -kVolumeTolerance; }
    bool IsSolid() const { return dVolume > kVolumeTolerance; }
};
} // namespace

template <>
struct BoxOf<ShellRecord>
{
    static Interval3d Get(const ShellRecord& record) { return record.box; }
};

namespace
{
bool IsLarger(const ShellRecord* pA, const ShellRecord* pB)
{
    return pA->dVolume != pB->dVolume ? pA->dVolume > pB->dVolume : pA->pShell->GetID() < pB->pShell->GetID();
}

bool IsFirstInLump(const Shell& shell)
{
    return shell.GetLump() && shell.GetLump()->GetShells().front() == &shell;
}

/// Derives the shells and lumps of one body anew.
class BodyRebuild
{
public:
    BodyRebuild(Body& body, RebuildScope scope, bool bSplitToBodies)
        : m_body(body), m_history(*body.GetHistory()), m_scope(std::move(scope)), m_bSplitToBodies(bSplitToBodies)
    {
    }

    bool Run()
    {
        GatherShells();
        if (std::any_of(m_aRecords.begin(), m_aRecords.end(),
                        [](const ShellRecord& record) { return record.IsVoid(); }))
            GatherOthers();
        RemoveEmpty();
        FillTree();
        PlaceSolids();
        TurnOutward();
        PlaceVoids();
        RemoveEmpty();
        return m_bMoved;
    }

private:
    /// One shell for each sheet of faces that hang together. Closed shells come first, and keep what they bound
    /// whatever has come to stand outside at their edges. Of the rest each sheet takes the shell of its first face,
    /// unless another has it already.
    void GatherShells()
    {
        ObjectSet taken;
        for (Shell* pShell : m_scope.GetShells())
            if (const double dVolume = m_scope.GetVolume(*pShell); IsVolume(dVolume))
            {
                m_aRecords.push_back({pShell, Interval3d(), dVolume, true});
                taken.insert(pShell);
            }
            else
                m_aLoose.insert(m_aLoose.end(), pShell->GetFaces().begin(), pShell->GetFaces().end());
        for (ShellRecord& record : m_aRecords)
            Divide(record);
        for (const std::vector<Face*>& aSheet : FindSheets(m_aLoose))
        {
            Shell* pShell = aSheet.front()->GetShell();
            if (taken.contains(pShell))
                pShell = &m_history.Create<Shell>();
            taken.insert(pShell);
            MoveFaces(aSheet, *pShell);
            m_aRecords.push_back({pShell, Interval3d(), 0.0, false});
        }
        for (ShellRecord& record : m_aRecords)
        {
            record.pShell->AddToBox(record.box);
            if (!record.bWasClosed)
                record.dVolume = GetEnclosedVolume(*record.pShell);
        }
    }

    /// Solids out of scope may have in them what closed just now.
    void GatherOthers()
    {
        ObjectSet known;
        for (const ShellRecord& record : m_aRecords)
            known.insert(record.pShell);
        for (const Lump* pLump : m_body.GetLumps())
            for (Shell* pShell : pLump->GetShells())
                if (!known.contains(pShell) && pShell->GetFaces().size() > 0)
                {
                    m_aRecords.push_back({pShell, Interval3d(), m_scope.GetVolume(*pShell), true});
                    pShell->AddToBox(m_aRecords.back().box);
                }
    }

    /// Where loose faces stand right across the solid within a closed shell, it bounds from now on one of the parts,
    /// and what it leaves is loose. Else it stays as it is.
    void Divide(ShellRecord& record)
    {
        if (m_aLoose.empty() || !m_scope.HasOpenInside(*record.pShell))
            return;
        const SharedObjectSet<Face>& faces = record.pShell->GetFaces();
        const std::vector<Face*> aOwn(faces.begin(), faces.end());
        std::vector<Face*> aAll = aOwn;
        aAll.insert(aAll.end(), m_aLoose.begin(), m_aLoose.end());
        const ObjectSet core = GetWithoutOpen(aAll, {aAll.begin(), aAll.end()});
        if (core.size() == aOwn.size())
            return;
        const Part part = FindPart(*record.pShell, aOwn, core);
        if (part.aFaces.empty())
            return;
        MoveFaces(part.aFaces, *record.pShell);
        record.dVolume = part.dVolume;
        const ObjectSet taken(part.aFaces.begin(), part.aFaces.end());
        std::erase_if(aAll, [&](const Face* pFace) { return taken.contains(pFace); });
        m_aLoose = std::move(aAll);
    }

    struct Part
    {
        std::vector<Face*> aFaces;
        std::vector<std::uint64_t> aCorners; ///< ids, each once, ascending
        double dVolume = 0.0;

        Part() = default;
        /// All corners count, or those of the whole.
        explicit Part(std::vector<Face*> aFacesOfIt, const Part* pWhole = nullptr)
            : aFaces(std::move(aFacesOfIt)), dVolume(GetSignedVolume(aFaces))
        {
            std::vector<Vertex*> aVertices;
            for (const Face* pFace : aFaces)
                pFace->GetVertices(aVertices);
            for (const Vertex* pVertex : aVertices)
                if (const std::uint64_t nID = pVertex->GetID(); !pWhole || pWhole->HasCorner(nID))
                    aCorners.push_back(nID);
            std::sort(aCorners.begin(), aCorners.end());
            aCorners.erase(std::unique(aCorners.begin(), aCorners.end()), aCorners.end());
        }
        bool HasCorner(std::uint64_t nID) const { return std::binary_search(aCorners.begin(), aCorners.end(), nID); }
        bool HasCornersOf(const Part& other) const
        {
            return std::includes(aCorners.begin(), aCorners.end(), other.aCorners.begin(), other.aCorners.end());
        }
        /// Of a solid around a court and what fills the court, the one around; of such side by side the larger.
        bool IsPreferredTo(const Part& other) const
        {
            const bool bAround = HasCornersOf(other);
            const bool bWithin = other.HasCornersOf(*this);
            return bAround != bWithin ? bAround : std::abs(dVolume) > std::abs(other.dVolume);
        }
        /// Whether it can stand for the whole: around a court it has all corners, else it is not less than half. Where
        /// only a lesser part is closed, the faces across have yet to be joined by others.
        bool StandsFor(const Part& whole) const
        {
            constexpr double kRounding = 1e-9;
            const double dShare = dVolume / whole.dVolume;
            return IsVolume(dVolume) && dShare > 0.0 && dShare < 1.0 + kRounding &&
                   (HasCornersOf(whole) || dShare > 0.5 * (1.0 - kRounding));
        }
        /// Whether what the shell does not bound itself stands inside it.
        bool LiesIn(const Shell& shell) const
        {
            return std::all_of(aFaces.begin(), aFaces.end(),
                               [&](Face* pFace)
                               {
                                   Point3d p;
                                   return pFace->GetShell() == &shell ||
                                          (pFace->GetInteriorPoint(p) && shell.ContainsPoint(p));
                               });
        }
    };

    /// Of the closed sheets through faces of a shell, as those bound it or turned into the solid. No faces for none.
    static Part FindPart(const Shell& shell, const std::vector<Face*>& aOwn, const ObjectSet& core)
    {
        const Part whole(aOwn);
        Part best;
        FindClosedSheet(aOwn, core,
                        [&](const std::vector<Face*>& aSheet)
                        {
                            Part part(aSheet, &whole);
                            if (part.StandsFor(whole) && part.LiesIn(shell) &&
                                (best.aFaces.empty() || part.IsPreferredTo(best)))
                                best = std::move(part);
                            return false;
                        });
        return best;
    }

    /// Closed sheets first, or an open one that reaches an edge of theirs would go on into them. In order of id, and
    /// each sheet from its lowest, so that the result depends on the faces alone and a second run moves nothing.
    static std::vector<std::vector<Face*>> FindSheets(std::vector<Face*> aFaces)
    {
        std::sort(aFaces.begin(), aFaces.end(), ByObjectID());
        std::vector<std::vector<Face*>> aSheets;
        ObjectSet left(aFaces.begin(), aFaces.end());
        const auto takeSolid = [&](const std::vector<Face*>& aSheet)
        {
            if (!IsVolume(GetSignedVolume(aSheet)))
                return false;
            for (const Face* pFace : aSheet)
                left.erase(pFace);
            aSheets.push_back(aSheet);
            return true;
        };
        while (FindClosedSheet(aFaces, GetWithoutOpen(aFaces, left), takeSolid))
            ;
        ObjectSet seen;
        for (Face* pSeed : aFaces)
        {
            if (!left.contains(pSeed) || seen.contains(pSeed))
                continue;
            std::vector<Face*> aSheet;
            Face::Sheet sheet;
            sheet.pAmong = &left;
            pSeed->GetConnectedComponent(aSheet, seen, sheet);
            AddCoherent(std::move(aSheet), aSheets);
        }
        return aSheets;
    }

    /// Offers the closed sheets among the faces `core` to `take`, from seeds in their order, until it takes one: then
    /// true. Each in order of id. Of faces that hang together over edges of two sides one stands for all.
    template <class Take>
    static bool FindClosedSheet(const std::vector<Face*>& aSeeds, const ObjectSet& core, Take take)
    {
        std::vector<Face*> aSheet;
        std::vector<Face*> aLast;
        ObjectSet tried;
        for (Face* pSeed : aSeeds)
        {
            if (!core.contains(pSeed) || tried.contains(pSeed))
                continue;
            const Face::Sheet sheet = FindSheetAt(*pSeed, core, aSheet, true);
            tried.insert(aSheet.begin(), aSheet.begin() + std::ptrdiff_t(sheet.nAcrossTwoSides));
            if (!sheet.bClosed)
                continue;
            std::sort(aSheet.begin(), aSheet.end(), ByObjectID());
            const bool bKnown = aSheet == aLast; // reached from another of its faces
            if (!bKnown && IsClosedAlone(aSheet) && take(aSheet))
                return true;
            aLast.swap(aSheet);
        }
        return false;
    }

    /// The sheet replaces the contents of `aSheet`.
    static Face::Sheet FindSheetAt(Face& seed, const ObjectSet& among, std::vector<Face*>& aSheet,
                                   bool bOnlyIfClosed = false)
    {
        aSheet.clear();
        ObjectSet seen;
        Face::Sheet sheet;
        sheet.pAmong = &among;
        sheet.bOnlyIfClosed = bOnlyIfClosed;
        seed.GetConnectedComponent(aSheet, seen, sheet);
        sheet.pAmong = nullptr; // it may not outlive the call
        return sheet;
    }

    /// Whether the faces, in order of id, still make one closed sheet from the first when there are no others.
    static bool IsClosedAlone(const std::vector<Face*>& aFaces)
    {
        std::vector<Face*> aReached;
        return FindSheetAt(*aFaces.front(), {aFaces.begin(), aFaces.end()}, aReached).bClosed &&
               aReached.size() == aFaces.size();
    }

    /// The faces left without those that hang out into the open: that have an edge for themselves alone, and so on
    /// until none has.
    static ObjectSet GetWithoutOpen(const std::vector<Face*>& aFaces, const ObjectSet& left)
    {
        ObjectSet core = left;
        std::unordered_map<const Edge*, std::size_t> uses; // by the faces of the core
        std::vector<Coedge*> aCoedges;
        const auto forEachEdge = [&](const Face& face, auto visit)
        {
            aCoedges.clear();
            face.GetCoedges(aCoedges);
            for (const Coedge* pCoedge : aCoedges)
                visit(*pCoedge->GetEdge(), uses[pCoedge->GetEdge()]);
        };
        for (const Face* pFace : aFaces)
            if (core.contains(pFace))
                forEachEdge(*pFace, [](const Edge&, std::size_t& nUses) { ++nUses; });
        std::vector<const Face*> aOpen;
        for (const Face* pFace : aFaces)
            if (core.contains(pFace))
                forEachEdge(*pFace,
                            [&](const Edge&, std::size_t nUses)
                            {
                                if (nUses == 1)
                                    aOpen.push_back(pFace);
                            });
        ShortList<Face*> aOnEdge;
        while (!aOpen.empty())
        {
            const Face* pFace = aOpen.back();
            aOpen.pop_back();
            if (core.erase(pFace) == 0)
                continue;
            forEachEdge(*pFace,
                        [&](const Edge& edge, std::size_t& nUses)
                        {
                            if (--nUses != 1)
                                return;
                            aOnEdge.clear();
                            edge.GetFaces(aOnEdge);
                            for (const Face* pOther : aOnEdge)
                                if (core.contains(pOther))
                                    aOpen.push_back(pOther);
                        });
        }
        return core;
    }

    /// Where many faces meet at an edge a sheet can depend on faces that went to another; without them it falls apart.
    static void AddCoherent(std::vector<Face*> aSheet, std::vector<std::vector<Face*>>& aSheets)
    {
        std::vector<std::vector<Face*>> aToDo{std::move(aSheet)};
        while (!aToDo.empty())
        {
            std::vector<Face*> aFaces = std::move(aToDo.back());
            aToDo.pop_back();
            std::sort(aFaces.begin(), aFaces.end(), ByObjectID());
            std::vector<Face*> aCoherent;
            FindSheetAt(*aFaces.front(), {aFaces.begin(), aFaces.end()}, aCoherent);
            if (aCoherent.size() == aFaces.size())
            {
                aSheets.push_back(std::move(aFaces));
                continue;
            }
            const ObjectSet coherent(aCoherent.begin(), aCoherent.end());
            std::erase_if(aFaces, [&](const Face* pFace) { return coherent.contains(pFace); });
            aToDo.push_back(std::move(aFaces));
            aToDo.push_back(std::move(aCoherent));
        }
    }

    void MoveFaces(const std::vector<Face*>& aFaces, Shell& shell) { m_bMoved = shell.TakeFaces(aFaces) || m_bMoved; }

    void RemoveEmpty()
    {
        const std::vector<Lump*> aLumps = m_body.GetLumps();
        for (Lump* pLump : aLumps)
        {
            const std::vector<Shell*> aShells = pLump->GetShells();
            for (Shell* pShell : aShells)
                if (pShell->GetFaces().size() == 0)
                {
                    pLump->RemoveShell(pShell);
                    pShell->DeleteSelf();
                    m_bMoved = true;
                }
            if (!pLump->GetShells().empty())
                continue;
            m_body.RemoveLump(pLump);
            pLump->DeleteSelf();
            m_bMoved = true;
        }
    }

    void FillTree()
    {
        for (ShellRecord& record : m_aRecords)
            m_tree.Insert(&record);
    }

    /// Solids and sheets that bound no lump yet get one.
    void PlaceSolids()
    {
        std::vector<const ShellRecord*> aHomeless;
        for (const ShellRecord& record : m_aRecords)
            if (!record.IsVoid() && !IsFirstInLump(*record.pShell))
                aHomeless.push_back(&record);
        std::sort(aHomeless.begin(), aHomeless.end(), IsLarger);
        for (const ShellRecord* pRecord : aHomeless)
            MoveToOwnLump(*pRecord->pShell);
    }

    /// A sheet that has just closed with no solid around it bounds one itself.
    void TurnOutward()
    {
        std::vector<ShellRecord*> aInsideOut;
        for (ShellRecord& record : m_aRecords)
            if (record.IsVoid() && !record.bWasClosed)
                aInsideOut.push_back(&record);
        std::sort(aInsideOut.begin(), aInsideOut.end(),
                  [](const ShellRecord* pA, const ShellRecord* pB) { return IsLarger(pB, pA); });
        for (ShellRecord* pRecord : aInsideOut)
        {
            if (FindSolidAround(*pRecord))
                continue;
            const SharedObjectSet<Face>& faces = pRecord->pShell->GetFaces();
            const std::vector<Face*> aFaces(faces.begin(), faces.end());
            for (Face* pFace : aFaces)
                pFace->Reverse();
            pRecord->dVolume = -pRecord->dVolume;
            m_bMoved = true;
            if (!IsFirstInLump(*pRecord->pShell))
                MoveToOwnLump(*pRecord->pShell);
        }
    }

    /// Each void goes into the smallest solid around it.
    void PlaceVoids()
    {
        std::vector<const ShellRecord*> aVoids;
        for (const ShellRecord& record : m_aRecords)
            if (record.IsVoid())
                aVoids.push_back(&record);
        std::sort(aVoids.begin(), aVoids.end(),
                  [](const ShellRecord* pA, const ShellRecord* pB)
                  { return pA->pShell->GetID() < pB->pShell->GetID(); });
        for (const ShellRecord* pVoid : aVoids)
        {
            Shell& shell = *pVoid->pShell;
            if (const ShellRecord* pSolid = FindSolidAround(*pVoid))
                MoveToLump(shell, *pSolid->pShell->GetLump());
            else if (!IsFirstInLump(shell))
                MoveToOwnLump(shell);
        }
    }

    const ShellRecord* FindSolidAround(const ShellRecord& inner)
    {
        Point3d sample;
        if (!inner.pShell->GetSamplePoint(sample))
            return nullptr;
        std::vector<ShellRecord*> aAround;
        m_tree.FindHolding(inner.box, aAround);
        std::sort(aAround.begin(), aAround.end(),
                  [](const ShellRecord* pA, const ShellRecord* pB) { return IsSmallerSolid(*pA, *pB); });
        const auto itSolid = std::find_if(aAround.begin(), aAround.end(),
                                          [&](const ShellRecord* pRecord)
                                          { return pRecord->IsSolid() && pRecord->pShell->ContainsPoint(sample); });
        return itSolid == aAround.end() ? nullptr : *itSolid;
    }

    static bool IsSmallerSolid(const ShellRecord& a, const ShellRecord& b)
    {
        return a.dVolume != b.dVolume ? a.dVolume < b.dVolume : a.pShell->GetID() < b.pShell->GetID();
    }

    void MoveToLump(Shell& shell, Lump& lump)
    {
        if (shell.GetLump() == &lump)
            return;
        lump.AddShell(&shell, true);
        m_bMoved = true;
    }

    void MoveToOwnLump(Shell& shell)
    {
        Body* pBody = &m_body;
        if (m_bSplitToBodies)
        {
            m_body.Changed(nShapeChanged);
            pBody = &m_history.Create<Body>();
            InheritAttributes(m_body, *pBody);
        }
        MoveToLump(shell, pBody->AddLump());
    }

    Body& m_body;
    History& m_history;
    RebuildScope m_scope;
    bool m_bSplitToBodies;
    bool m_bMoved = false;
    std::vector<ShellRecord> m_aRecords;
    std::vector<Face*> m_aLoose; ///< in no closed shell
    BoxTree<ShellRecord> m_tree;
};
} // namespace

bool Body::Rebuild(bool bSplitToBodies)
{
    return Rebuild(RebuildScope(*this), bSplitToBodies);
}

bool Body::RebuildAround(const std::vector<Face*>& aFaces)
{
    return Rebuild(RebuildScope(*this, aFaces), false);
}

bool Body::Rebuild(RebuildScope scope, bool bSplitToBodies)
{
    if (m_aLumps.empty())
        return false; // made empty, and to be filled yet
    const bool bMoved = BodyRebuild(*this, std::move(scope), bSplitToBodies).Run();
    if (!m_aLumps.empty())
        return bMoved;
    Delete();
    return true;
}
} // namespace QRV
