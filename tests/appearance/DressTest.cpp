// What holds for materials, layers, levels, images and values alike: undo, redo and the end of a History leave nothing
// behind and lose nothing.

#include "support/BadNumbers.h"
#include "support/DressedModel.h"

#include "history/HistoryRegistry.h"

namespace QRV
{
namespace
{

/// The sets of the History hold just what lives, in order, and each object finds its like as a plain loop does.
template <class T>
void ExpectSearchAgrees(History& history)
{
    std::vector<Object*> aLive;
    history.GetObjectsByType(aLive, T::kType, false);
    const auto& set = history.GetSearchSet<T>();
    EXPECT_EQ(std::set<Object*>(set.begin(), set.end()), std::set<Object*>(aLive.begin(), aLive.end())) << T::kName;
    for (const Object* pObject : aLive)
    {
        const auto& object = static_cast<const T&>(*pObject);
        const auto isLike = [&](const Object* pOther)
        {
            if constexpr (requires(const T& t) { t.CountsAs(t); })
                return pOther != pObject && object.CountsAs(static_cast<const T&>(*pOther));
            else
                return pOther != pObject && object.GetKey() == static_cast<const T&>(*pOther).GetKey() &&
                       object.GetValue() == static_cast<const T&>(*pOther).GetValue();
        };
        const auto itLike = std::ranges::find_if(aLive, isLike);
        EXPECT_EQ(object.FindEquivalent(history), itLike == aLive.end() ? nullptr : *itLike) << T::kName;
    }
}

void ExpectSearchesAgree(History& history)
{
    ExpectSearchAgrees<Material>(history);
    ExpectSearchAgrees<Texture>(history);
    ExpectSearchAgrees<Layer>(history);
    ExpectSearchAgrees<Level>(history);
    ExpectSearchAgrees<StringAttribute>(history);
}
} // namespace

TEST(Dress, IsRestoredByUndoAndRedo)
{
    const DressedModel model;
    ExpectUndoRedoRestores(model);
    ExpectBitmapsCounted();
}

TEST(Dress, StaysSoundAndCountedThroughRandomCallsUndoAndRedo)
{
    for (std::uint64_t nSeed = 0; nSeed < 40; ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        DressedModel model;
        const std::uint64_t h = model.GetID();
        RandomDresser dresser(nSeed);
        for (int nStep = 0; nStep < 40; ++nStep)
        {
            const std::function<void()> aSteps[] = {[&] { APIUndoHistory(h, dresser.Pick(2)); },
                                                    [&] { APIRedoHistory(h); },
                                                    [&] { APIDeleteAllRedoHistory(h, true); }};
            const std::uint64_t nAct = dresser.Pick(8);
            nAct < std::size(aSteps) ? aSteps[nAct]() : dresser.Act(h);
            ExpectSound(model);
            ExpectBitmapsCounted();
            ExpectSearchesAgree(model.GetHistory());
            if (HasFailure())
                return;
        }
        APIMergeDeltas(h, INVALID_ID, INVALID_ID, true);
        ExpectBitmapsCounted();
        ExpectUndoRedoRestores(model);
    }
    ExpectBitmapsCounted();
    EXPECT_EQ(HistoryRegistry::Get().GetBitmaps().GetBitmapCount(), 0u);
}

TEST(Dress, KeepsABitmapOnceForAllHistoriesTillTheLastStateGoes)
{
    const BitmapStore& store = HistoryRegistry::Get().GetBitmaps();
    {
        const TestModel other;
        TestModel model;
        std::uint64_t nOther = INVALID_ID;
        std::uint64_t nTexture = INVALID_ID;
        APICreateTexture(other.GetID(), MakeJPEG('a'), true, nOther, "");
        APICreateTexture(model.GetID(), MakeJPEG('a'), true, nTexture, "");
        const std::uint64_t nBitmap = model.GetHistory().Get<Texture>(nTexture)->GetBitmap().GetIndex();
        EXPECT_EQ(store.GetReferenceCount(nBitmap), 2u);
        APISetTextureData(model.GetID(), nTexture, MakeJPEG('b'), true, nullptr);
        EXPECT_EQ(store.GetReferenceCount(nBitmap), 2u); // of the state before
        APIUndoHistory(model.GetID());
        EXPECT_EQ(store.GetBitmapCount(), 2u); // of the state that redo brings
        APIDeleteAllRedoHistory(model.GetID());
        EXPECT_EQ(store.GetBitmapCount(), 1u);
        APIUndoHistory(model.GetID(), true);
        EXPECT_EQ(store.GetReferenceCount(nBitmap), 1u);
        EXPECT_EQ(store.GetData(nBitmap), std::string(MakeJPEG('a').data(), 8));
    }
    EXPECT_EQ(store.GetBitmapCount(), 0u);
}

TEST(Dress, OutlivesAllHistoriesNowhere)
{
    std::uint64_t h = INVALID_ID;
    std::uint64_t nTexture = INVALID_ID;
    APICreateHistory(h, true);
    APICreateTexture(h, MakeJPEG('a'), true, nTexture, "");
    APIDeleteAllHistories();
    EXPECT_EQ(HistoryRegistry::Get().GetBitmaps().GetBitmapCount(), 0u);
    APICreateHistory(h, true);
    APICreateTexture(h, MakeJPEG('a'), true, nTexture, "");
    ExpectBitmapsCounted();
    APIDeleteHistory(h);
}

TEST(Dress, IsRefusedWhereAnIDOrANumberIsBad)
{
    const DressedModel model;
    const std::uint64_t h = model.GetID();
    const std::uint64_t nFace = model.aFaces.front();
    const std::uint64_t nGone = 9999;
    const std::uint64_t nAttribute = model.GetIDs(nLayerAttributeType).front();
    const Color color;
    const std::string s = "s";
    const IDs aFace{nFace};
    const IDs aTwoFaces{model.aFaces[2], nFace};
    const IDs aFaceAndGone{nFace, nGone};
    const IDs aBodyAndFace{model.nBody, nFace};
    const IDs aLevelAndFace{model.nLevel, nFace};
    const IDs aLayerAndFace{model.nLayer, nFace};
    const LevelPairs aTwoLevels{{"x", 5.0}, {"y", 6.0}};
    const LevelPairs aGoodAndBad{{"good", 1.0}, {"bad", kNaN}};
    const Transf3d flat = Transf3d::projectOn(Plane(Point3d(), UnitVector3d::kZDir), Vector3d());
    const std::array<Point3d, 4> aCorners{};
    const std::array<Point3d, 4> aFar{Point3d(kNaN, 0, 0)};
    const TexturePairs aNoTexture{{"k", nFace}};
    std::uint64_t n = 0;
    IDs a;
    const std::function<Result()> aCalls[] = {
        [&] { return APICreateMaterial(h, color, 1, 1, nFace, n, s, s, nullptr, nullptr); },
        [&] { return APICreateMaterial(h, color, kNaN, 1, INVALID_ID, n, s, s, nullptr, nullptr); },
        [&] { return APICreateMaterial(h, color, 1, 1, INVALID_ID, n, s, s, nullptr, &aNoTexture); },
        [&] {
            return APICreateMaterialWithTexture(h, color, 1, INFINITY, MakeJPEG('x'), true, n, s, s, nullptr, nullptr,
                                                s);
        },
        [&] { return APISetMaterialColor(h, nFace, color); },
        [&] { return APISetMaterialData(h, model.nPaint, color, 1, kNaN, INVALID_ID, &s, &s, nullptr, nullptr); },
        [&] { return APISetMaterialTexture(h, model.nPaint, 1, 1, nGone); },
        [&] { return APICreateMaterial(h, color, 0, 1, model.nTexture, n, s, s, nullptr, nullptr); },
        [&] { return APISetMaterialData(h, model.nPaint, color, 1, -1, model.nTexture, &s, &s, nullptr, nullptr); },
        [&] { return APISetMaterialTexture(h, model.nPaint, 1, 1e-13, model.nTexture); },
        [&] { return APISetObjectsMaterial(h, aFaceAndGone, model.nWallpaper); },
        [&] { return APISetObjectsMaterial(h, aFace, nFace); },
        [&] { return APISetObjectsMaterial(h, {model.nPaint}, model.nWallpaper); },
        [&] { return APISetObjectsMaterial(h, {nAttribute}, model.nWallpaper); },
        [&] { return APISetFaceBacksideMaterial(h, {model.nBody}, model.nWallpaper); },
        [&] { return APISetTextureData(h, model.nPaint, MakeJPEG('x'), true, nullptr); },
        [&] { return APISetLayersDisplayed(h, aLayerAndFace, false); },
        [&] { return APIAddObjectsLayers(h, {nFace}, aFace); },
        [&] { return APIAddObjectsLayers(h, {model.nLayer}, {nGone}); },
        [&] { return APIRemoveObjectsLayers(h, {model.nLayer}, {model.nLayer}); },
        [&] { return APICreateLevelObjects(h, aGoodAndBad, a); },
        [&] { return APISetLevelsData(h, aLevelAndFace, aTwoLevels); },
        [&] { return APISetObjectsLevels(h, aBodyAndFace, {model.nLevel}); },
        [&] { return APISetObjectsLevels(h, {model.nBody}, {nFace}); },
        [&] { return APISetObjectProperties(h, nFace, s, true, &aFace); },
        [&] { return APICreateImageObject(h, s, nFace, 1, true, aCorners, n); },
        [&] { return APICreateImageObject(h, s, INVALID_ID, 1, true, aFar, n); },
        [&] { return APISetImageData(h, model.nImage, s, nGone, 1, true, aCorners); },
        [&] { return APIRemoveSatelliteData(h, model.nImage); },
        [&] { return APICreateStringAttribute(h, "", s, aFace, n, nCopyOwn, true); },
        [&] { return APICreateStringAttribute(h, "k", s, aFaceAndGone, n, nCopyOwn, true); },
        [&] { return APICreateStringAttribute(h, "k", s, aFace, n, nCopyBehavior(3), true); },
        [&] { return APICreateStringAttribute(h, "fire class", s, aTwoFaces, n, nCopyOwn, true); },
        [&] { return APISetStringAttributeValue(h, nAttribute, s); },
        [&] { return APISetEdgesOrVerticesMarkedSmooth(h, {nGone}, true); },
        [&] { return APISetLocalCoordinateSystem(h, flat); },
    };
    for (std::size_t i = 0; i < std::size(aCalls); ++i)
    {
        SCOPED_TRACE(i);
        ExpectRefused(model, Result::nBadInput, aCalls[i]);
    }
    EXPECT_TRUE(a.empty());
    const std::vector<char> aShort{'\xFF', '\xD8', 0, 0, 0, 0, 0};
    const std::vector<char> aNoImage(100, 'x');
    const IDs aLevelTwice{model.nLevel, model.nLevel};
    const Vector2d v(1, 2);
    const std::array<std::uint64_t, 2> pixels{5, 6};
    const std::pair<Result::nResultType, std::function<Result()>> aOthers[] = {
        {Result::nTextureBadSize, [&] { return APICreateTexture(h, aShort, true, n, s); }},
        {Result::nTextureBadFormat, [&] { return APICreateTexture(h, aNoImage, true, n, s); }},
        {Result::nTextureBadFormat,
         [&] { return APICreateImageObjectWithTexture(h, s, 1, true, aCorners, aNoImage, n, s); }},
        {Result::nImageTextureAndSatellite, [&] { return APISetSatelliteData(h, model.nImage, v, v, pixels); }},
        {Result::nImageTextureAndSatellite,
         [&] { return APICreateSatelliteImageObject(h, s, model.nTexture, 1, true, aCorners, v, v, pixels, n); }},
        {Result::nCaughtException,
         [&] {
             return APISetLevelsData(h, aLevelTwice, {{"x", 5.0}});
         }},
    };
    for (const auto& [nCode, call] : aOthers)
        ExpectRefused(model, nCode, call);
    ExpectBitmapsCounted();
}
} // namespace QRV
