#include "archive/DebugDump.h"
#include "support/CommaLocale.h"
#include "support/TestModel.h"

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
    EXPECT_TRUE(APIDebugObjectReadOnly(model.GetID(), nObject, strText).IsGood());
    return strText;
}

std::size_t Count(const std::string& strText, const std::string& strPart)
{
    std::size_t nCount = 0;
    for (std::size_t n = strText.find(strPart); n != std::string::npos; n = strText.find(strPart, n + 1))
        ++nCount;
    return nCount;
}
} // namespace

TEST(DebugDump, OfASmallBodyReadsAsOnFile)
{
    const CommaLocale commas;
    TestModel model;
    const std::uint64_t nFace = model.Polyline({{0, 0, 0}, {1234.5, 0, 0}, {0, 0.1, 0}}, true);
    std::uint64_t nBody = INVALID_ID;
    EXPECT_TRUE(APICreateEmptyBody(model.GetID(), nBody).IsGood());
    EXPECT_TRUE(APIAddFaceComponentToBody(model.GetID(), nFace, nBody).IsGood());

    // Not the same everywhere: the id of the History, and how much memory an object takes.
    std::string strText = Dump(model, nBody);
    MaskNumbers(strText, "History ID = ", "\n");
    MaskNumbers(strText, "(", " bytes in memory");
    std::ifstream stream(QRV_GOLDEN_DUMP, std::ios::binary);
    EXPECT_EQ(strText, std::string(std::istreambuf_iterator<char>(stream), {})) << strText;
}

TEST(DebugDump, ListsWhatAnObjectReachesBelowByClass)
{
    TestModel model;
    model.Box(GetFrames().front(), {0, 0, 0}, {1, 1, 1});
    const std::string strVertex = Dump(model, model.GetIDs(nVertexType).front());
    EXPECT_NE(strVertex.find("1 object of type \"Vertex\":\n    0\n"), std::string::npos);
    EXPECT_EQ(Count(strVertex, " bytes in memory"), 1u);

    const std::string strBody = Dump(model, model.GetIDs(nBodyType).front());
    std::size_t nAt = 0;
    for (const char* pLine : {"1 object of type \"Body\":", "1 object of type \"Lump\":", "1 object of type \"Shell\":",
                              "6 objects of type \"Face\":", "6 objects of type \"Loop\":",
                              "24 objects of type \"Coedge\":", "12 objects of type \"Edge\":",
                              "8 objects of type \"Vertex\":"})
    {
        nAt = strBody.find(std::string(54, '-') + '\n' + pLine, nAt);
        EXPECT_NE(nAt, std::string::npos) << pLine;
    }
    // Each class that lives is listed under the name that its objects give.
    for (const std::uint64_t nID : model.GetIDs(nUnspecifiedType))
    {
        const char* pName = nullptr;
        EXPECT_TRUE(APIGetObjectNameReadOnly(model.GetID(), nID, pName).IsGood());
        EXPECT_EQ(Count(strBody, '\n' + std::string(pName) + '-' + std::to_string(nID) + " ("), 1u);
        EXPECT_NE(strBody.find(std::string("of type \"") + pName + '"'), std::string::npos);
    }

    std::string strText = "left over";
    EXPECT_EQ(APIDebugObjectReadOnly(model.GetID(), 12345, strText).GetErrorCode(), Result::nBadInput);
    EXPECT_EQ(strText, "");
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
