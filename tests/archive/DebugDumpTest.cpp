#include "archive/DebugDump.h"
#include "support/CommaLocale.h"
#include "support/DressedModel.h"

#include <fstream>
#include <sstream>

namespace QRV
{
namespace
{
/// Every number between the texts becomes "#".
void MaskNumbers(std::string& strText, const std::string& strBefore, const std::string& strAfter)
{
    for (std::size_t n = strText.find(strBefore); n != std::string::npos; n = strText.find(strBefore, n + 1))
    {
        const std::size_t nNumber = n + strBefore.size();
        const std::size_t nEnd = std::min(strText.find_first_not_of("0123456789", nNumber), strText.size());
        if (nEnd > nNumber && strText.compare(nEnd, strAfter.size(), strAfter) == 0)
            strText.replace(nNumber, nEnd - nNumber, "#");
    }
}

std::string Dump(const TestModel& model, std::uint64_t nObject)
{
    std::string strText = "left over";
    ExpectGood(APIDebugObjectReadOnly(model.GetID(), nObject, strText));
    return strText;
}
} // namespace

TEST(DebugDump, OfASmallBodyReadsAsOnFile)
{
    const CommaLocale commas;
    TestModel model;
    const std::uint64_t nFace = model.Polyline({{0, 0, 0}, {1234.5, 0, 0}, {0, 0.1, 0}}, true);
    std::uint64_t nBody = INVALID_ID;
    ExpectGood(APICreateEmptyBody(model.GetID(), nBody));
    ExpectGood(APIAddFaceComponentToBody(model.GetID(), nFace, nBody));

    const std::uint64_t h = model.GetID();
    std::uint64_t nTexture = INVALID_ID;
    std::uint64_t nMaterial = INVALID_ID;
    std::uint64_t nKeyed = INVALID_ID;
    const StringPairs aData{{"gloss", "high"}};
    ExpectGood(APICreateTexture(h, MakeJPEG('a'), true, nTexture, "grain"));
    const TexturePairs aTextures{{"bump", nTexture}};
    ExpectGood(
        APICreateMaterial(h, {200, 100, 0, 255}, 1234.5, 0.5, nTexture, nMaterial, "oak", "m1", &aData, &aTextures));
    ExpectGood(APISetObjectsMaterial(h, {nFace}, nMaterial));
    ExpectGood(APIAddObjectsLayers(h, {MakeLayer(model, "floor")}, {nBody}));
    ExpectGood(APICreateStringAttribute(h, "fire class", "F90", {nFace}, nKeyed, nCopyShared, true));

    // Not the same everywhere: the id of the History, how much memory an object takes, and the number of a bitmap.
    std::string strText = Dump(model, nBody);
    MaskNumbers(strText, "History ID = ", "\n");
    MaskNumbers(strText, "(", " bytes in memory");
    MaskNumbers(strText, "bitmapdataindex ", "\n");
    std::ifstream stream(QRV_GOLDEN_DUMP, std::ios::binary);
    EXPECT_EQ(strText, std::string(std::istreambuf_iterator<char>(stream), {})) << strText;
}

namespace
{
/// What is printed of the object alone, which is the last of its class.
std::string GetFields(const TestModel& model, std::uint64_t nObject)
{
    const std::string strText = Dump(model, nObject);
    const char* pName = "";
    APIGetObjectNameReadOnly(model.GetID(), nObject, pName);
    const std::size_t nHead = strText.find('\n' + std::string(pName) + '-' + std::to_string(nObject) + " (");
    const std::size_t nFrom = strText.find('\n', nHead + 1) + 1;
    return strText.substr(nFrom, strText.find("\n---", nFrom) + 1 - nFrom);
}
} // namespace

TEST(DebugDump, PrintsWhatDressesAModelFieldByField)
{
    const CommaLocale commas;
    const DressedModel model;
    const std::uint64_t h = model.GetID();
    const std::array<Point3d, 4> aCorners{Point3d(1234.5, 0, 0), Point3d(1, -2, 0), Point3d(1, 2, 3), Point3d(0, 1, 0)};
    std::uint64_t nPhoto = INVALID_ID;
    ExpectGood(APICreateSatelliteImageObject(h, "photo", INVALID_ID, 0.25f, false, aCorners, {47.5, 8.25}, {1, 2},
                                             {6400, 4800}, nPhoto));
    ExpectGood(APISetLevelsData(h, {model.nLevel}, {{"roof", 1234.5}}));
    ExpectGood(APISetLocalCoordinateSystem(h, Transf3d(Point3d(1000, 2, 3))));
    ExpectGood(APISetOstrelModelInformation(h, "tower", "one", "two", ""));

    const auto get = [&](nObjectType nType) { return model.GetIDs(nType).front(); };
    const auto expect = [&](std::uint64_t nObject, const std::string& strAttributes, const std::string& strFields)
    {
        EXPECT_EQ(GetFields(model, nObject),
                  "    id " + std::to_string(nObject) + "\n    attributes " + strAttributes + "    }\n" + strFields);
    };
    const auto one = [](const std::string& strName, std::uint64_t nID)
    { return "[1] {\n        " + strName + '-' + std::to_string(nID) + '\n'; };
    const std::string strNone = "[0] {\n";
    expect(nPhoto, one("SatelliteDataAttribute", get(nSatelliteDataAttributeType)),
           "    imageName string(\"photo\")\n"
           "    texture NULL object\n"
           "    alphaValue 0.25\n"
           "    featuresVisible false\n"
           "    corner0 point3d(1234.5, 0, 0)\n"
           "    corner1 point3d(1, -2, 0)\n"
           "    corner2 point3d(1, 2, 3)\n"
           "    corner3 point3d(0, 1, 0)\n"
           "    zPosition 1\n");
    expect(get(nSatelliteDataAttributeType), strNone,
           "    latitude 47.5\n"
           "    longitud 8.25\n"
           "    latitudeSpan 1\n"
           "    longitudSpan 2\n"
           "    pixelWidth 6400\n"
           "    pixelHeight 4800\n");
    expect(model.nLevel, one("LevelAttribute", get(nLevelAttributeType)),
           "    name string(\"roof\")\n"
           "    elevation 1234.5\n");
    expect(get(nLevelAttributeType), strNone, "    level Level-" + std::to_string(model.nLevel) + '\n');
    expect(get(nSketchPropertiesType), strNone,
           "    transf3d Transf(1, 0, 0, 1000, 0, 1, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1)\n");
    expect(get(nGeneratedGeometryInformationType), strNone,
           "    generator type 1\n"
           "    name string(\"tower\")\n"
           "    field1 string(\"one\")\n"
           "    field2 string(\"two\")\n"
           "    field3 string(\"\")\n");
    expect(get(nObjectPropertiesAttributeType), strNone,
           "    reportarea true\n"
           "    objectname string(\"ridge\")\n");
}

TEST(DebugDump, CountsInGoodEnglishAndLeavesOutWhatIsDerived)
{
    PolygonModel model;
    const Step step(model);
    for (const auto& [nCount, pText] : {std::pair{1, "1 object of"}, {11, "11 objects of"}, {21, "21 object of"}})
    {
        std::vector<Face*> aFaces;
        for (int n = 0; n < nCount; ++n)
            aFaces.push_back(&model.AddFace({{0, 0, double(n)}, {1, 0, double(n)}, {0, 1, double(n)}}));
        std::ostringstream text;
        EXPECT_TRUE(DebugDump(model.AddBody({aFaces}), nullptr, false, text, 2));
        EXPECT_NE(text.str().find(std::string("\n") + pText + " type \"Face\":\n  "), std::string::npos);
        EXPECT_TRUE(text.str().starts_with("Body(ID:")) << "no title";
        EXPECT_NE(text.str().find("Derivable data not saved\n"), std::string::npos);
        EXPECT_EQ(text.str().find("pshell"), std::string::npos);
    }
}
} // namespace QRV
