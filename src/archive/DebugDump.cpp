#include "archive/DebugDump.h"

#include "archive/TextFormatter.h"
#include "model/Object.h"

#include <algorithm>
#include <array>
#include <locale>

namespace QRV
{
namespace
{
/// By number: a directory also lists the classes of which there is no object.
constexpr std::array kTypeNames = {"DELETED",
                                   "Body",
                                   "Lump",
                                   "Shell",
                                   "Face",
                                   "Loop",
                                   "Coedge",
                                   "Edge",
                                   "Vertex",
                                   "MaterialAttribute",
                                   "Material",
                                   "CircleAttribute",
                                   "ObjectPropertiesAttribute",
                                   "Texture",
                                   "LevelAttribute",
                                   "Level",
                                   "SketchProperties",
                                   "SplineCurveAttribute",
                                   "CylinderSurfaceAttribute",
                                   "SphereSurfaceAttribute",
                                   "ExtrudeSurfaceAttribute",
                                   "Image",
                                   "SatelliteDataAttribute",
                                   "Group",
                                   "Instance",
                                   "LayerAttribute",
                                   "Layer",
                                   "GeneratedGeometryInformation",
                                   "FaceUVDataAttribute",
                                   "EdgeStyleAttribute",
                                   "BlendAttribute",
                                   "StringAttribute",
                                   "Mesh",
                                   "LineMesh",
                                   "PointMesh"};

class Dump
{
public:
    Dump(const Object& object, bool bDerivable, std::ostream& stream, unsigned nIndent)
        : m_object(object), m_stream(stream), m_archive(stream, bDerivable, nIndent)
    {
        m_stream.imbue(std::locale::classic());
        std::vector<Object*> aBelow;
        object.GetAllChildren(aBelow, false);
        m_aObjects.push_back(&object);
        m_aObjects.insert(m_aObjects.end(), aBelow.begin(), aBelow.end());
        for (const Object* pObject : m_aObjects)
            m_aByType[pObject->GetType()].push_back(pObject);
    }

    bool Print(const char* pTitle)
    {
        if (pTitle)
            m_stream << pTitle << '\n';
        PrintHead();
        PrintDirectory();
        PrintObjects();
        m_stream << kRule << "End of object data\n";
        return m_stream.good();
    }

private:
    static constexpr const char* kRule = "------------------------------------------------------\n";

    void PrintHead()
    {
        const auto [itMin, itMax] = std::ranges::minmax_element(m_aObjects, ByObjectID());
        m_stream << m_object.GetName() << "(ID:" << m_aObjects.back()->GetID() << ")\n"
                 << "Software version 0." << kArchiveVersion << '\n'
                 << "Derivable data " << (m_archive.SavesDerivable() ? "saved" : "not saved") << '\n'
                 << "History ID = " << m_object.GetHistoryID() << '\n'
                 << "min Object ID = " << (*itMin)->GetID() << ", max Object ID = " << (*itMax)->GetID() << "\n\n"
                 << "Number of Object types " << kTypeNames.size() << '\n';
    }

    void PrintCount(std::size_t nType)
    {
        const std::size_t nCount = m_aByType[nType].size();
        const bool bSingular = nCount % 10 == 1 && nCount % 100 != 11;
        m_stream << nCount << (bSingular ? " object" : " objects") << " of type \"" << kTypeNames[nType] << "\":\n";
    }

    void PrintDirectory()
    {
        for (std::size_t nType = 1; nType < kTypeNames.size(); ++nType)
        {
            PrintCount(nType);
            m_archive.EnterLevel();
            for (const Object* pObject : m_aByType[nType])
                m_archive.WriteID(pObject->GetID(), nullptr);
            m_archive.LeaveLevel();
        }
    }

    void PrintObjects()
    {
        for (std::size_t nType = 1; nType < kTypeNames.size(); ++nType)
        {
            if (m_aByType[nType].empty())
                continue;
            m_stream << kRule;
            PrintCount(nType);
            for (const Object* pObject : m_aByType[nType])
            {
                m_archive.WriteObject(pObject, nullptr);
                m_archive.EnterLevel();
                pObject->Save(m_archive);
                m_archive.LeaveLevel();
            }
        }
    }

    const Object& m_object;
    std::ostream& m_stream;
    TextFormatter m_archive;
    std::vector<const Object*> m_aObjects; ///< the object first, then in order of discovery
    std::array<std::vector<const Object*>, kTypeNames.size()> m_aByType;
};
} // namespace

bool DebugDump(const Object& object, const char* pTitle, bool bDerivable, std::ostream& stream, unsigned nIndent)
{
    return Dump(object, bDerivable, stream, nIndent).Print(pTitle);
}
} // namespace QRV
