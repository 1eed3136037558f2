#include "support/DressedModel.h"

#include "history/HistoryRegistry.h"

#include <map>

namespace QRV
{
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
    Delete(model.GetID(), aIDs);
}

void Delete(std::uint64_t nHistory, const std::vector<std::uint64_t>& aIDs)
{
    InStep(nHistory,
           [&](History& history)
           {
               for (const std::uint64_t nID : aIDs)
                   EXPECT_TRUE(history.GetObject(nID)->Delete());
           });
}

std::uint64_t RandomUser::Any(std::uint64_t nHistory, nObjectType nType)
{
    IDs aIDs;
    ExpectGood(APIGetAllObjectsByTypeReadOnly(nHistory, nType, aIDs));
    return aIDs.empty() ? INVALID_ID : aIDs[Pick(aIDs.size())];
}

void RandomUser::DeleteOne(std::uint64_t nHistory, const IDs& aIDs)
{
    const std::uint64_t nID = aIDs[Pick(aIDs.size())];
    if (nID != INVALID_ID)
        Delete(nHistory, {nID});
}

void RandomUser::DrawOverTheBox(std::uint64_t nHistory)
{
    const Frame& frame = GetFrames()[1];
    const double dFrom = double(Pick(9)) / 4;
    APIConnectPoint3ds(nHistory, frame(dFrom, -1, 2), frame(double(Pick(9)) / 4, 3, 2));
}

Result RandomUser::Draw(std::uint64_t h)
{
    const auto pickPoint = [&]
    {
        const double x = double(Pick(4));
        const double y = double(Pick(4));
        return Point3d(x, y, double(Pick(3)));
    };
    const Point3d p = pickPoint();
    const Point3d q = pickPoint();
    std::uint64_t nID = INVALID_ID;
    std::vector<Point3d> aPoints;
    switch (Pick(6))
    {
    case 0:
        return APICreateVertex(h, p, nID);
    case 1:
        return APICreatePolyline(h, {p, q, pickPoint()}, nID, Pick(2) == 0);
    case 2:
        return APICreateRectangle(h, p, p + Vector3d(2, 0, 0), p + Vector3d(2, 2, 0), aPoints, false);
    default:
        return APIConnectPoint3ds(h, p, q);
    }
}

void RandomUser::Dress(std::uint64_t h)
{
    std::uint64_t n = INVALID_ID;
    const std::string sName(1, char('a' + Pick(3)));
    const Color color{std::uint8_t(Pick(2)), 0, 0, 255};
    const std::array<Point3d, 4> aCorners{Point3d(double(Pick(2)), 0, 0)};
    const std::vector<char> aBytes = MakeJPEG(char(Pick(3)));
    const IDs aOnLayers{Any(h, nEdgeType), Any(h, nFaceType)};
    const LevelPairs aLevels{{sName, double(Pick(3))}, {sName, double(Pick(3))}};
    const TexturePairs aMore{{"bump", Any(h, nTextureType)}, {"gloss", Any(h, nTextureType)}};
    const std::uint64_t nTexture = Any(h, nTextureType);
    const std::uint64_t nMaterial = Any(h, nMaterialType);
    const std::uint64_t nLayer = Any(h, nLayerType);
    const std::uint64_t nFace = Any(h, nFaceType);
    const std::uint64_t nImage = Any(h, nImageType);
    const bool b = Pick(2);
    const TexturePairs* pMore = b ? &aMore : nullptr;
    IDs aMade;
    const std::function<void()> aActs[] = {
        [&] { APICreateTexture(h, aBytes, b, n, sName); },
        [&] { APISetTextureData(h, nTexture, aBytes, b, &sName); },
        [&] { APICreateMaterial(h, color, 1, 1, nTexture, n, sName, "", nullptr, nullptr); },
        [&] { APISetMaterialData(h, nMaterial, color, 1, 1, nTexture, &sName, nullptr, nullptr, pMore); },
        [&] { APISetMaterialTexture(h, nMaterial, 1, 1, INVALID_ID); },
        [&] {
            APISetObjectsMaterial(h, {nFace, Any(h, nBodyType)}, nMaterial);
        },
        [&] { APISetObjectsMaterial(h, {nFace}, INVALID_ID); },
        [&] { APISetFaceBacksideMaterial(h, {nFace}, nMaterial); },
        [&] { APICreateLayer(h, sName, b, n); },
        [&] { APISetLayerData(h, nLayer, sName, b); },
        [&] { APIAddRemoveObjectsLayers(h, {nLayer}, {Any(h, nLayerType)}, aOnLayers); },
        [&] { APICreateLevelObjects(h, aLevels, aMade); },
        [&] { APISetLevelsData(h, {Any(h, nLevelType)}, aLevels); },
        [&] {
            APISetObjectsLevels(h, {Any(h, nBodyType)}, {Any(h, nLevelType), Any(h, nLevelType)});
        },
        [&] { APICreateStringAttribute(h, sName, sName, {Any(h, nEdgeType)}, n, nCopyOwn, b); },
        [&] { APISetStringAttributeValue(h, Any(h, nStringAttributeType), sName); },
        [&] { APICreateImageObject(h, sName, nTexture, 1, true, aCorners, n); },
        [&] { APISetImageData(h, nImage, sName, b ? nTexture : INVALID_ID, 1, true, aCorners); },
        [&] {
            APISetSatelliteData(h, nImage, {1, 2}, {3, double(Pick(3))}, {4, 5});
        },
        [&] { APIMoveImage(h, nImage, int(Pick(5)) - 2); },
        [&] {
            DeleteOne(h, {nMaterial, nLayer, nImage, Any(h, nLevelType), Any(h, nStringAttributeType)});
        },
        [&] { DrawOverTheBox(h); },
    };
    aActs[Pick(std::size(aActs))]();
}
} // namespace QRV
