#include "support/DressedModel.h"

#include "history/HistoryRegistry.h"

#include <map>

namespace QRV
{
namespace
{
void ExpectGood(const Result& result)
{
    EXPECT_TRUE(result.IsGood()) << result.GetErrorString();
}
} // namespace

std::vector<char> MakeJPEG(char c)
{
    return {'\xFF', '\xD8', c, 0, 1, 2, 3, 4};
}

void ExpectBitmapsCounted()
{
    std::map<std::uint64_t, std::uint64_t> mapStates;
    for (const auto& [nHistory, pHistory] : HistoryRegistry::Get().GetHistories())
        for (std::uint64_t nID = 0; nID < pHistory->GetObjectTable().Size(); ++nID)
        {
            const ObjectHistory& records = pHistory->GetObjectTable().At(nID);
            for (std::size_t n = 0; n < records.GetRecordCount(); ++n)
                if (const auto* pTexture = dynamic_cast<const Texture*>(records.GetRecord(n).pObject))
                    ++mapStates[pTexture->GetBitmap().GetIndex()];
        }
    BitmapStore& store = HistoryRegistry::Get().GetBitmaps();
    EXPECT_EQ(store.GetBitmapCount(), mapStates.size());
    for (const auto& [nIndex, nStates] : mapStates)
        EXPECT_EQ(store.GetReferenceCount(nIndex), nStates) << "bitmap " << nIndex;
}

Dress DressBox(TestModel& model)
{
    Dress dress;
    const std::uint64_t h = model.GetID();
    model.Box(GetFrames()[1], Point3d(0, 0, 0), Point3d(2, 2, 2));
    dress.nBody = model.GetIDs(nBodyType).front();
    dress.aFaces = model.GetIDs(nFaceType);
    ExpectGood(APICreateTexture(h, MakeJPEG('a'), true, dress.nTexture, "stripes"));
    dress.nPaint = MakeMaterial(model, {200, 0, 0, 255});
    dress.nWallpaper = MakeMaterial(model, {255, 255, 255, 255}, dress.nTexture);
    ExpectGood(APISetObjectsMaterial(h, dress.aFaces, dress.nPaint));
    ExpectGood(APISetObjectsMaterial(h, {dress.nBody}, dress.nWallpaper));
    ExpectGood(APISetFaceBacksideMaterial(h, {dress.aFaces.front()}, dress.nWallpaper));
    dress.nLayer = MakeLayer(model, "walls");
    ExpectGood(APIAddObjectsLayers(h, {dress.nLayer}, {dress.nBody, dress.aFaces.front()}));
    std::vector<std::uint64_t> aLevels;
    ExpectGood(APICreateLevelObjects(h, {{"ground", 0.0}}, aLevels));
    dress.nLevel = aLevels.front();
    ExpectGood(APISetObjectsLevels(h, {dress.nBody}, aLevels));
    ExpectGood(APISetObjectProperties(h, model.GetIDs(nEdgeType).front(), "ridge", true));
    ExpectGood(APICreateStringAttribute(h, "fire class", "F90", {dress.aFaces[0], dress.aFaces[1]}, dress.nKeyed,
                                        nCopyShared, true));
    const std::array<Point3d, 4> aCorners{Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(1, 1, 0), Point3d(0, 1, 0)};
    ExpectGood(APICreateImageObject(h, "plan", dress.nTexture, 0.5f, true, aCorners, dress.nImage));
    return dress;
}

std::uint64_t MakeMaterial(const TestModel& model, const Color& color, std::uint64_t nTexture)
{
    std::uint64_t nMaterial = INVALID_ID;
    ExpectGood(APICreateMaterial(model.GetID(), color, 1, 1, nTexture, nMaterial, "name", "id", nullptr, nullptr));
    return nMaterial;
}

std::uint64_t MakeLayer(const TestModel& model, const std::string& sName, bool bDisplayed)
{
    std::uint64_t nLayer = INVALID_ID;
    ExpectGood(APICreateLayer(model.GetID(), sName, bDisplayed, nLayer));
    return nLayer;
}

std::uint64_t GetMaterial(const TestModel& model, std::uint64_t nObject, bool bBack)
{
    std::uint64_t nMaterial = 0;
    ExpectGood(bBack ? APIGetFaceBacksideMaterialReadOnly(model.GetID(), nObject, nMaterial)
                     : APIGetObjectMaterialReadOnly(model.GetID(), nObject, nMaterial));
    return nMaterial;
}

std::vector<std::uint64_t> GetLayers(const TestModel& model, std::uint64_t nObject)
{
    std::vector<std::uint64_t> aLayers;
    ExpectGood(APIGetObjectLayersReadOnly(model.GetID(), nObject, aLayers));
    return aLayers;
}

void Delete(const TestModel& model, const std::vector<std::uint64_t>& aIDs)
{
    History* pHistory = nullptr;
    Result result;
    ASSERT_TRUE(History::BeginTransaction(model.GetID(), pHistory, result));
    for (const std::uint64_t nID : aIDs)
        EXPECT_TRUE(pHistory->GetObject(nID)->Delete());
    History::EndTransaction(pHistory, result, "Delete");
}
} // namespace QRV
