#include "support/DressedModel.h"

#include <algorithm>

namespace QRV
{
namespace
{
std::size_t CountDeltas(const TestModel& model)
{
    return model.GetHistory().GetDeltas().size();
}

IDs GetLayerObjects(const TestModel& model, std::uint64_t nLayer)
{
    std::string sName;
    bool bDisplayed = false;
    IDs aObjects;
    ExpectGood(APIGetLayerDataReadOnly(model.GetID(), nLayer, sName, bDisplayed, &aObjects));
    return aObjects;
}

struct ImageState
{
    std::string sName;
    std::uint64_t nTexture = 0;
    std::uint64_t nZPosition = 0;
    float fAlpha = 0;
    bool bFeatures = false;
    std::array<Point3d, 4> aCorners;
    bool bSatellite = false;
};

ImageState GetImage(const TestModel& model, std::uint64_t nImage)
{
    ImageState s;
    ExpectGood(APIGetImageDataReadOnly(model.GetID(), nImage, s.sName, s.nTexture, s.nZPosition, s.fAlpha, s.bFeatures,
                                       s.aCorners, s.bSatellite));
    return s;
}
} // namespace

TEST(DressCalls, GiveBackWhatTheyTook)
{
    DressedModel model;
    const std::uint64_t h = model.GetID();
    const StringPairs aData{{"gloss", "high"}};
    const TexturePairs aTextures{{"bump", model.nTexture}};
    const std::string sName = "oak";
    ExpectGood(
        APISetMaterialData(h, model.nPaint, {1, 2, 3, 4}, 5, 6, model.nTexture, &sName, nullptr, &aData, &aTextures));
    Color color;
    double dH = 0;
    double dV = 0;
    std::uint64_t nTexture = INVALID_ID;
    std::string sGot;
    std::string sIdentifier;
    StringPairs aGot;
    TexturePairs aGotTextures;
    ExpectGood(APIGetMaterialDataReadOnly(h, model.nPaint, color, dH, dV, nTexture, &sGot, &sIdentifier, &aGot,
                                          &aGotTextures));
    EXPECT_EQ(std::tie(dH, dV, nTexture, sGot, aGot, aGotTextures),
              std::tuple(5.0, 6.0, model.nTexture, sName, aData, aTextures));
    EXPECT_EQ(color, (Color{1, 2, 3, 4}));
    EXPECT_EQ(sIdentifier, "id"); // left alone
    std::vector<char> aBytes;
    bool bFlag = false;
    ExpectGood(APIGetTextureDataReadOnly(h, model.nTexture, aBytes, bFlag, &sGot));
    EXPECT_EQ(std::tie(aBytes, bFlag, sGot), std::tuple(MakeJPEG('a'), true, "stripes"));

    EXPECT_EQ(GetMaterial(model, model.aFaces[0]), model.nPaint);
    EXPECT_EQ(GetMaterial(model, model.aFaces[0], true), model.nWallpaper);
    EXPECT_EQ(GetMaterial(model, model.aFaces[1], true), INVALID_ID);
    IDs aOnLayer{model.nBody, model.aFaces[0]};
    std::ranges::sort(aOnLayer);
    EXPECT_EQ(GetLayerObjects(model, model.nLayer), aOnLayer);
    IDs aLevels;
    double dElevation = 1;
    APIGetObjectLevelsReadOnly(h, model.nBody, aLevels);
    EXPECT_EQ(aLevels, IDs{model.nLevel});
    APISetLevelsData(h, aLevels, {{"first", 3.5}});
    APIGetLevelDataReadOnly(h, model.nLevel, sGot, dElevation);
    EXPECT_EQ(std::tie(sGot, dElevation), std::tuple("first", 3.5));
    APIGetObjectPropertiesReadOnly(h, model.GetIDs(nEdgeType).front(), sGot, bFlag);
    EXPECT_EQ(std::tie(sGot, bFlag), std::tuple("ridge", true));
    APIGetObjectPropertiesReadOnly(h, model.nBody, sGot, bFlag);
    EXPECT_EQ(std::tie(sGot, bFlag), std::tuple("", false));

    APISetStringAttributeValue(h, model.nKeyed, "F30");
    for (const std::uint64_t nObject : {model.aFaces[1], INVALID_ID})
    {
        IDs aKeyed;
        IDs aOwners;
        std::string sKey;
        APIGetStringAttributesByKeyReadOnly(h, nObject, "fire class", aKeyed);
        ASSERT_EQ(aKeyed, IDs{model.nKeyed});
        APIGetStringAttributeKeyValueReadOnly(h, aKeyed.front(), sKey, sGot, aOwners);
        EXPECT_EQ(std::tie(sKey, sGot), std::tuple("fire class", "F30"));
        EXPECT_EQ(aOwners, (IDs{model.aFaces[0], model.aFaces[1]}));
    }
    std::uint64_t nLone = INVALID_ID;
    IDs aKeyed;
    APICreateStringAttribute(h, "lone", "", {}, nLone, nCopyOwn, false);
    APIGetStringAttributesByKeyReadOnly(h, INVALID_ID, "lone", aKeyed);
    EXPECT_EQ(aKeyed, IDs{nLone});
    ExpectSound(model);
}

TEST(DressCalls, MakeNoStepWhenNothingChanges)
{
    const DressedModel model;
    const std::uint64_t h = model.GetID();
    const std::size_t nSteps = CountDeltas(model);
    const std::string sName = "name";
    const ImageState image = GetImage(model, model.nImage);
    auto aTurned = image.aCorners;
    std::ranges::rotate(aTurned, aTurned.begin() + 1);
    const std::uint64_t nEdge = model.GetIDs(nEdgeType).front();
    IDs aNone;
    const Result aResults[] = {
        APISetMaterialColor(h, model.nPaint, {200, 0, 0, 255}),
        APISetMaterialData(h, model.nPaint, {200, 0, 0, 255}, 1, 1, INVALID_ID, &sName, nullptr, nullptr, nullptr),
        APISetTextureData(h, model.nTexture, MakeJPEG('a'), true, nullptr),
        APISetObjectsMaterial(h, model.aFaces, model.nPaint),
        APISetLayerData(h, model.nLayer, "walls", true),
        APISetLayersDisplayed(h, {model.nLayer, model.nLayer}, true),
        APIAddObjectsLayers(h, {model.nLayer}, {model.nBody}),
        APIRemoveObjectsLayers(h, {model.nLayer}, {nEdge}),
        APICreateLevelObjects(h, {}, aNone),
        APISetLevelsData(h, {model.nLevel}, {{"ground", 0.0}}),
        APISetObjectsLevels(h, {}, {model.nLevel}),
        APISetObjectProperties(h, nEdge, "ridge", true),
        APISetStringAttributeValue(h, model.nKeyed, "F90"),
        APISetImageData(h, model.nImage, image.sName, image.nTexture, image.fAlpha, image.bFeatures, aTurned),
        APIMoveImage(h, model.nImage, -5),
        APISetEdgesOrVerticesMarkedSmooth(h, {nEdge, model.nBody}, false),
    };
    for (const Result& result : aResults)
        EXPECT_TRUE(result.IsGood()) << result.GetErrorString();
    EXPECT_EQ(CountDeltas(model), nSteps);
}

TEST(DressCalls, TellWhetherAMaterialIsUsedTillTheLastObjectLetsGo)
{
    const DressedModel model;
    const std::uint64_t h = model.GetID();
    const auto isUsed = [&](std::uint64_t nMaterial)
    {
        bool bUsed = false;
        ExpectGood(APIIsMaterialUsedReadOnly(h, nMaterial, bUsed));
        return bUsed;
    };
    EXPECT_TRUE(isUsed(model.nPaint));
    EXPECT_FALSE(isUsed(MakeMaterial(model, {})));
    APISetObjectsMaterial(h, {model.nBody}, INVALID_ID);
    EXPECT_TRUE(isUsed(model.nWallpaper)); // on a back
    APISetFaceBacksideMaterial(h, model.aFaces, INVALID_ID);
    EXPECT_FALSE(isUsed(model.nWallpaper));
    Delete(model, {model.nPaint});
    EXPECT_EQ(GetMaterial(model, model.aFaces[0]), INVALID_ID);
    ExpectUndoRedoRestores(model);
}

TEST(DressCalls, PutObjectsOnLayersAndTakeThemOff)
{
    const DressedModel model;
    const std::uint64_t h = model.GetID();
    const std::uint64_t nFirst = MakeLayer(model, "a");
    const std::uint64_t nSecond = MakeLayer(model, "a", false);
    ExpectGood(APIRemoveObjectsLayers(h, {nSecond}, model.aFaces));
    EXPECT_EQ(model.Count(nLayerAttributeType), 2u); // made all the same
    ExpectGood(APIAddObjectsLayers(h, {nSecond, nFirst, nFirst}, {model.aFaces[1], model.aFaces[2]}));
    EXPECT_EQ(GetLayers(model, model.aFaces[1]), (IDs{nFirst, nSecond}));
    ExpectGood(APIAddRemoveObjectsLayers(h, {nFirst, model.nLayer}, {nFirst}, {model.aFaces[2]}));
    EXPECT_EQ(GetLayers(model, model.aFaces[2]), (IDs{nSecond, model.nLayer}));
    Delete(model, {nSecond});
    EXPECT_EQ(GetLayers(model, model.aFaces[2]), IDs{model.nLayer});
    ExpectUndoRedoRestores(model);
}

TEST(DressCalls, KeepImagesInOrder)
{
    const TestModel model;
    const std::uint64_t h = model.GetID();
    IDs aImages(4);
    for (std::uint64_t& nImage : aImages)
        APICreateImageObject(h, "plan", INVALID_ID, 1, true, {}, nImage);
    const auto getOrder = [&]
    {
        std::vector<std::uint64_t> aPlaces;
        for (const std::uint64_t nImage : model.GetIDs(nImageType))
            aPlaces.push_back(GetImage(model, nImage).nZPosition);
        return aPlaces;
    };
    EXPECT_EQ(getOrder(), (IDs{0, 1, 2, 3}));
    APIMoveImage(h, aImages[0], 100);
    EXPECT_EQ(getOrder(), (IDs{3, 0, 1, 2}));
    APIMoveImage(h, aImages[3], -1);
    EXPECT_EQ(getOrder(), (IDs{3, 0, 2, 1}));
    APIMoveImage(h, aImages[2], std::numeric_limits<int>::min());
    EXPECT_EQ(getOrder(), (IDs{3, 1, 0, 2}));
    Delete(model, {aImages[1]});
    EXPECT_EQ(getOrder(), (IDs{2, 0, 1}));

    Vector2d location;
    Vector2d span;
    std::array<std::uint64_t, 2> pixels{};
    ExpectGood(APISetSatelliteData(h, aImages[0], {47, 8}, {0.5, 0.25}, {640, 480}));
    ExpectGood(APISetSatelliteData(h, aImages[0], {48, 8}, {0.5, 0.25}, {640, 480}));
    EXPECT_EQ(model.Count(nSatelliteDataAttributeType), 1u);
    ExpectGood(APIGetSatelliteDataReadOnly(h, aImages[0], location, span, pixels));
    EXPECT_EQ(std::tie(location.x, location.y, span.x, span.y, pixels[1]), std::tuple(48.0, 8.0, 0.5, 0.25, 480u));
    EXPECT_TRUE(GetImage(model, aImages[0]).bSatellite);
    ExpectGood(APIRemoveSatelliteData(h, aImages[0]));
    EXPECT_FALSE(GetImage(model, aImages[0]).bSatellite);
    ExpectUndoRedoRestores(model);
}

TEST(DressCalls, KeepOneRecordOfWhereAHistoryComesFrom)
{
    const TestModel model;
    const std::uint64_t h = model.GetID();
    std::string s[4];
    EXPECT_EQ(APIGetOstrelModelInformationReadOnly(h, s[0], s[1], s[2], s[3]).GetErrorCode(),
              Result::nHistoryNoOstrelInfo);
    EXPECT_EQ(APIGetHalyxFamilyInformationReadOnly(h, s[0], s[1], s[2], s[3]).GetWarningCode(),
              Result::nHistoryNoHalyxInfo);
    ExpectGood(APISetOstrelModelInformation(h, "n", "1", "2", "3"));
    ExpectGood(APIGetOstrelModelInformationReadOnly(h, s[0], s[1], s[2], s[3]));
    EXPECT_EQ(s[0] + s[1] + s[2] + s[3], "n123");
    ExpectGood(APISetHalyxFamilyInformation(h, "m", "1", "2", "4"));
    EXPECT_FALSE(APIGetOstrelModelInformationReadOnly(h, s[0], s[1], s[2], s[3]).IsGood());
    EXPECT_FALSE(APIGetHalyxFamilyInformationReadOnly(h, s[0], s[1], s[2], s[3]).HasWarning());
    EXPECT_EQ(s[0] + s[1] + s[2] + s[3], "m124");
    EXPECT_EQ(model.Count(nGeneratedGeometryInformationType), 1u);

    const Transf3d frame(Point3d(1, 2, 3));
    Transf3d got(Point3d(9, 9, 9));
    ExpectGood(APIGetLocalCoordinateSystemReadOnly(h, got));
    EXPECT_TRUE(got.isIdentity());
    ExpectGood(APISetLocalCoordinateSystem(h, frame));
    const std::size_t nSteps = CountDeltas(model);
    ExpectGood(APISetLocalCoordinateSystem(h, frame));
    EXPECT_EQ(CountDeltas(model), nSteps);
    APIGetLocalCoordinateSystemReadOnly(h, got);
    EXPECT_TRUE(got.isEqual(frame, 0.0));
    ExpectUndoRedoRestores(model);
}

TEST(DressCalls, MarkEdgesAndVerticesAndPassOverTheRest)
{
    const DressedModel model;
    const std::uint64_t h = model.GetID();
    const std::uint64_t nEdge = model.GetIDs(nEdgeType).front();
    const std::uint64_t nVertex = model.GetIDs(nVertexType).front();
    ExpectGood(APISetEdgesOrVerticesMarkedSmooth(h, {nEdge, model.nLayer, nVertex}, true));
    for (const std::uint64_t nMarked : {nEdge, nVertex})
        EXPECT_TRUE(model.IsSmooth(nMarked));
    ExpectUndoRedoRestores(model);
}
} // namespace QRV
