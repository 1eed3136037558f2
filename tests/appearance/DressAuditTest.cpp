// One thing broken in a sound dressed model is found, and nothing else is.

#include "support/DressedModel.h"

#include "model/LayerAttribute.h"

#include <algorithm>

namespace QRV
{
namespace
{
using Codes = std::vector<unsigned>;

Codes GetAllFindings(History& history)
{
    std::vector<Result> aResults;
    history.CheckAllValidity(aResults);
    Codes aCodes;
    for (const Result& result : aResults)
        aCodes.push_back(result.GetErrorCode());
    std::ranges::sort(aCodes);
    return aCodes;
}

void TakeOut(Object& object)
{
    object.RecordChange();
    EXPECT_TRUE(object.RemoveFromSearch());
}

/// Puts the attribute on its target beside the one that is there, which the target would not have.
template <class A, class Target>
void ForceOn(Target& target)
{
    A& attribute = target.GetHistory()->template Create<A>(target);
    target.RecordChange();
    target.AddAttribute(&attribute, false);
    attribute.AddOwner(target);
}
} // namespace

TEST(DressAudit, FindsTheOneThingThatIsBroken)
{
    const DressedModel model;
    History& history = model.GetHistory();
    auto& texture = *history.Get<Texture>(model.nTexture);
    auto& paint = *history.Get<Material>(model.nPaint);
    auto& wallpaper = *history.Get<Material>(model.nWallpaper);
    auto& layer = *history.Get<Layer>(model.nLayer);
    auto& level = *history.Get<Level>(model.nLevel);
    auto& image = *history.Get<Image>(model.nImage);
    Object& face = *history.GetObject(model.aFaces[3]);
    const std::pair<std::function<void()>, Codes> aBreaks[] = {
        {[&] { texture.RemoveOwner(wallpaper); }, {Result::nTextureOwnerMismatch}},
        {[&] { texture.RemoveOwner(image); }, {Result::nTextureOwnerMismatch}},
        {[&] { texture.AddOwner(face); }, {Result::nTextureOwnerMismatch}},
        {[&]
         {
             auto& passing = history.Create<Layer>("", true);
             texture.AddOwner(passing);
             passing.DeleteSelf();
         },
         {Result::nTextureBadOwner}},
        {[&] { texture.SetBitmap(BitmapReference("short")); }, {Result::nTextureBadSize}},
        {[&] { texture.SetBitmap(BitmapReference("long enough")); }, {Result::nTextureBadFormat}},
        {[&] { TakeOut(texture); }, {Result::nHistoryBadTextureSet, Result::nTextureNotInSet}},
        {[&] { TakeOut(paint); }, {Result::nHistoryBadMaterialSet, Result::nMaterialNotInSet}},
        {[&] { TakeOut(layer); }, {Result::nHistoryBadLayerSet, Result::nLayerNotInSet}},
        {[&] { TakeOut(level); }, {Result::nHistoryBadLevelSet, Result::nLevelNotInSet}},
        {[&] { wallpaper.SetScales(1.0, 1e-13); }, {Result::nMaterialBadData}},
        {[&] { ForceOn<MaterialAttribute>(paint); }, {Result::nMaterialBadAttribute}},
        {[&] { ForceOn<MaterialAttribute>(wallpaper); },
         {Result::nMaterialBadAttribute, Result::nMaterialManyAttributes}},
        {[&] { ForceOn<LayerAttribute>(layer); }, {Result::nLayerManyAttributes}},
        {[&] { ForceOn<LevelAttribute>(level); }, {Result::nLevelManyAttributes}},
        {[&] { face.AddAttribute(&history.Create<MaterialAttribute>(paint), true); },
         {Result::nMaterialAttributeBadMaterial}},
        {[&] { face.AddAttribute(&history.Create<LayerAttribute>(layer), true); }, {Result::nLayerAttributeBadLayer}},
        {[&] { face.AddAttribute(&history.Create<LevelAttribute>(level), true); }, {Result::nLevelAttributeBadLevel}},
        {[&] { history.Create<StringAttribute>("", "", nCopyOwn, true).AddToSearch(); },
         {Result::nStringAttributeEmptyKey}},
        {[&]
         {
             for (int n = 0; n < 2; ++n)
                 history.Create<GeneratedGeometryInformation>().AddToSearch();
         },
         {Result::nHistoryManyGeneratedInfo}},
    };
    std::size_t nBreak = 0;
    for (const auto& [breakOne, aExpected] : aBreaks)
    {
        SCOPED_TRACE(nBreak++);
        ASSERT_TRUE(history.StartDelta());
        breakOne();
        EXPECT_EQ(GetAllFindings(history), aExpected);
        history.Rollback();
        ExpectSound(model);
    }
    // What would break it is not taken.
    ASSERT_TRUE(history.StartDelta());
    EXPECT_FALSE(layer.AddAttribute(&history.Create<LayerAttribute>(layer), true));
    EXPECT_FALSE(paint.AddAttribute(&wallpaper.GetJoinAttribute(true), true));
    EXPECT_TRUE(paint.AddAttribute(&layer.GetJoinAttribute(), true));
    history.Rollback();
    ExpectBitmapsCounted();
}
} // namespace QRV
