#include "history/History.h"
#include "model/Body.h"
#include "model/Face.h"
#include "model/Lump.h"
#include "model/Shell.h"
#include "spatial/BoxTree.h"
#include "spatial/Measures.h"

#include <algorithm>

namespace QRV
{
namespace
{
struct ShellRecord
{
    Shell* pShell;
    Interval3d box;
    double dVolume; ///< positive for a solid, negative for a void, 0 for a sheet

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
    BodyRebuild(Body& body, bool bSplitToBodies)
        : m_body(body), m_history(*body.GetHistory()), m_bSplitToBodies(bSplitToBodies)
    {
    }

    bool Run()
    {
        GatherShells();
        RecordShells();
        RemoveEmpty();
        FillTree();
        PlaceSolids();
        PlaceVoids();
        RemoveEmpty();
        return m_bMoved;
    }

private:
    /// One shell for each sheet of faces that hang together: that of its first face, unless another sheet has it
    /// already.
    void GatherShells()
    {
        ObjectSet taken;
        for (const std::vector<Face*>& aSheet : FindSheets())
        {
            Shell* pShell = aSheet.front()->GetShell();
            if (taken.contains(pShell))
                pShell = &m_history.Create<Shell>();
            taken.insert(pShell);
            MoveFaces(aSheet, *pShell);
            m_aShells.push_back(pShell);
        }
    }

    /// In order of id, and each sheet from its lowest, so that the result depends on the faces alone and a second run
    /// moves nothing.
    std::vector<std::vector<Face*>> FindSheets() const
    {
        std::vector<Face*> aFaces;
        m_body.GetBodyFaces(aFaces);
        std::sort(aFaces.begin(), aFaces.end(), ByObjectID());
        std::vector<std::vector<Face*>> aSheets;
        ObjectSet seen;
        for (Face* pSeed : aFaces)
        {
            if (seen.contains(pSeed))
                continue;
            std::vector<Face*> aSheet;
            Face::Sheet sheet;
            sheet.pWithin = &m_body;
            pSeed->GetConnectedComponent(aSheet, seen, sheet);
            AddCoherent(std::move(aSheet), aSheets);
        }
        return aSheets;
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
            const ObjectSet among(aFaces.begin(), aFaces.end());
            std::vector<Face*> aCoherent;
            ObjectSet seen;
            Face::Sheet sheet;
            sheet.pAmong = &among;
            aFaces.front()->GetConnectedComponent(aCoherent, seen, sheet);
            if (aCoherent.size() == aFaces.size())
            {
                aSheets.push_back(std::move(aFaces));
                continue;
            }
            std::erase_if(aFaces, [&](const Face* pFace) { return seen.contains(pFace); });
            aToDo.push_back(std::move(aFaces));
            aToDo.push_back(std::move(aCoherent));
        }
    }

    void RecordShells()
    {
        for (Shell* pShell : m_aShells)
        {
            ShellRecord record{pShell, Interval3d(), 0.0};
            pShell->AddToBox(record.box);
            const SharedObjectSet<Face>& faces = pShell->GetFaces();
            if (pShell->IsClosed())
                record.dVolume = GetSignedVolume({faces.begin(), faces.end()});
            m_aRecords.push_back(record);
        }
    }

    void MoveFaces(const std::vector<Face*>& aComponent, Shell& shell)
    {
        std::vector<Face*> aMoving;
        for (Face* pFace : aComponent)
            if (pFace->GetShell() != &shell)
                aMoving.push_back(pFace);
        for (Face* pFace : aMoving)
            pFace->GetShell()->RemoveFace(pFace);
        shell.AddFaces(aMoving);
        m_bMoved = m_bMoved || !aMoving.empty();
    }

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
    bool m_bSplitToBodies;
    bool m_bMoved = false;
    std::vector<Shell*> m_aShells;
    std::vector<ShellRecord> m_aRecords;
    BoxTree<ShellRecord> m_tree;
};
} // namespace

bool Body::Rebuild(bool bSplitToBodies)
{
    if (m_aLumps.empty())
        return false; // made empty, and to be filled yet
    const bool bMoved = BodyRebuild(*this, bSplitToBodies).Run();
    if (!m_aLumps.empty())
        return bMoved;
    Delete();
    return true;
}
} // namespace QRV
