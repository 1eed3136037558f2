// What holds for materials, layers, levels, images and values alike: undo, redo and the end of a History leave nothing
// behind and lose nothing.

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

TEST(Dress, StaysSoundAndCountedThroughRandomCallsUndoAndRedo)
{
    for (std::uint64_t nSeed = 0; nSeed < 40; ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        DressedModel model;
        const std::uint64_t h = model.GetID();
        RandomUser user(nSeed);
        for (int nStep = 0; nStep < 40; ++nStep)
        {
            const std::function<void()> aSteps[] = {[&] { APIUndoHistory(h, user.Pick(2)); },
                                                    [&] { APIRedoHistory(h); },
                                                    [&] { APIDeleteAllRedoHistory(h, true); }};
            const std::uint64_t nAct = user.Pick(8);
            nAct < std::size(aSteps) ? aSteps[nAct]() : user.Dress(h);
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

TEST(Dress, IsRefusedWhereItMakesNoSense)
{
    const DressedModel model;
    const std::uint64_t h = model.GetID();
    const std::uint64_t nFace = model.aFaces.front();
    const std::uint64_t nAttribute = model.GetIDs(nLayerAttributeType).front();
    const Color color;
    const std::string s = "s";
    const IDs aFace{nFace};
    const IDs aTwoFaces{model.aFaces[2], nFace};
    const IDs aBodyAndFace{model.nBody, nFace};
    const IDs aLevelTwice{model.nLevel, model.nLevel};
    const LevelPairs aOneLevel{{"x", 5.0}};
    const Transf3d flat = Transf3d::projectOn(Plane(Point3d(), UnitVector3d::kZDir), Vector3d());
    const std::array<Point3d, 4> aCorners{};
    const std::vector<char> aShort{'\xFF', '\xD8', 0, 0, 0, 0, 0};
    const std::vector<char> aNoImage(100, 'x');
    const Vector2d v(1, 2);
    const std::array<std::uint64_t, 2> pixels{5, 6};
    std::uint64_t n = 0;
    const std::pair<Result::nResultType, std::function<Result()>> aCalls[] = {
        {Result::nBadInput,
         [&] { return APICreateMaterial(h, color, 0, 1, model.nTexture, n, s, s, nullptr, nullptr); }},
        {Result::nBadInput,
         [&] { return APISetMaterialData(h, model.nPaint, color, 1, -1, model.nTexture, &s, &s, nullptr, nullptr); }},
        {Result::nBadInput, [&] { return APISetMaterialTexture(h, model.nPaint, 1, 1e-13, model.nTexture); }},
        {Result::nBadInput, [&] { return APISetObjectsMaterial(h, {model.nPaint}, model.nWallpaper); }},
        {Result::nBadInput, [&] { return APISetObjectsMaterial(h, {nAttribute}, model.nWallpaper); }},
        {Result::nBadInput, [&] { return APIRemoveObjectsLayers(h, {model.nLayer}, {model.nLayer}); }},
        {Result::nBadInput, [&] { return APISetObjectsLevels(h, aBodyAndFace, {model.nLevel}); }},
        {Result::nBadInput, [&] { return APIRemoveSatelliteData(h, model.nImage); }},
        {Result::nBadInput, [&] { return APICreateStringAttribute(h, "", s, aFace, n, nCopyOwn, true); }},
        {Result::nBadInput, [&] { return APICreateStringAttribute(h, "k", s, aFace, n, nCopyBehavior(3), true); }},
        {Result::nBadInput, [&] { return APICreateStringAttribute(h, "fire class", s, aTwoFaces, n, nCopyOwn, true); }},
        {Result::nBadInput, [&] { return APISetLocalCoordinateSystem(h, flat); }},
        {Result::nTextureBadSize, [&] { return APICreateTexture(h, aShort, true, n, s); }},
        {Result::nTextureBadFormat, [&] { return APICreateTexture(h, aNoImage, true, n, s); }},
        {Result::nImageTextureAndSatellite, [&] { return APISetSatelliteData(h, model.nImage, v, v, pixels); }},
        {Result::nImageTextureAndSatellite,
         [&] { return APICreateSatelliteImageObject(h, s, model.nTexture, 1, true, aCorners, v, v, pixels, n); }},
        {Result::nCaughtException, [&] { return APISetLevelsData(h, aLevelTwice, aOneLevel); }},
    };
    std::size_t nCall = 0;
    for (const auto& [nCode, call] : aCalls)
    {
        SCOPED_TRACE(nCall++);
        ExpectRefused(model, nCode, call);
    }
    ExpectBitmapsCounted();
}
} // namespace QRV
