// What holds for materials, layers, levels, images and values alike: undo, redo and the end of a History leave nothing
// behind and lose nothing.

#include "support/DressedModel.h"

#include "history/HistoryRegistry.h"

namespace QRV
{
namespace
{
using IDs = std::vector<std::uint64_t>;
using LevelPairs = std::vector<std::pair<std::string, double>>;

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

/// Does one thing or another to a dressed model, good or refused.
class RandomDresser
{
public:
    RandomDresser(DressedModel& model, std::uint64_t nSeed) : m_model(model), m_random(nSeed) {}

    void Act()
    {
        const std::uint64_t h = m_model.GetID();
        std::uint64_t n = INVALID_ID;
        const std::string sName(1, char('a' + Pick(3)));
        const Color color{std::uint8_t(Pick(2)), 0, 0, 255};
        const std::array<Point3d, 4> aCorners{Point3d(double(Pick(2)), 0, 0)};
        const std::vector<char> aBytes = MakeJPEG(char(Pick(3)));
        const IDs aOnLayers{Any(nEdgeType), Any(nFaceType)};
        const LevelPairs aLevels{{sName, double(Pick(3))}, {sName, double(Pick(3))}};
        const TexturePairs aMore{{"bump", Any(nTextureType)}, {"gloss", Any(nTextureType)}};
        const std::uint64_t nTexture = Any(nTextureType);
        const std::uint64_t nMaterial = Any(nMaterialType);
        const std::uint64_t nLayer = Any(nLayerType);
        const std::uint64_t nFace = Any(nFaceType);
        const std::uint64_t nImage = Any(nImageType);
        const bool b = Pick(2);
        IDs aMade;
        const std::function<void()> aActs[] = {
            [&] { APICreateTexture(h, aBytes, b, n, sName); },
            [&] { APISetTextureData(h, nTexture, aBytes, b, &sName); },
            [&] { APICreateMaterial(h, color, 1, 1, nTexture, n, sName, "", nullptr, nullptr); },
            [&] {
                APISetMaterialData(h, nMaterial, color, 1, 1, nTexture, &sName, nullptr, nullptr, b ? &aMore : nullptr);
            },
            [&] { APISetMaterialTexture(h, nMaterial, 1, 1, INVALID_ID); },
            [&] {
                APISetObjectsMaterial(h, {nFace, Any(nBodyType)}, nMaterial);
            },
            [&] { APISetObjectsMaterial(h, {nFace}, INVALID_ID); },
            [&] { APISetFaceBacksideMaterial(h, {nFace}, nMaterial); },
            [&] { APICreateLayer(h, sName, b, n); },
            [&] { APISetLayerData(h, nLayer, sName, b); },
            [&] { APIAddRemoveObjectsLayers(h, {nLayer}, {Any(nLayerType)}, aOnLayers); },
            [&] { APICreateLevelObjects(h, aLevels, aMade); },
            [&] { APISetLevelsData(h, {Any(nLevelType)}, aLevels); },
            [&] {
                APISetObjectsLevels(h, {Any(nBodyType)}, {Any(nLevelType), Any(nLevelType)});
            },
            [&] { APICreateStringAttribute(h, sName, sName, {Any(nEdgeType)}, n, nCopyOwn, b); },
            [&] { APISetStringAttributeValue(h, Any(nStringAttributeType), sName); },
            [&] { APICreateImageObject(h, sName, nTexture, 1, true, aCorners, n); },
            [&] { APISetImageData(h, nImage, sName, b ? nTexture : INVALID_ID, 1, true, aCorners); },
            [&] {
                APISetSatelliteData(h, nImage, {1, 2}, {3, double(Pick(3))}, {4, 5});
            },
            [&] { APIMoveImage(h, nImage, int(Pick(5)) - 2); },
            [&] {
                DeleteOne({nMaterial, nLayer, nImage, Any(nLevelType), Any(nStringAttributeType)});
            },
            [&] { DrawOverTheBox(); },
        };
        aActs[Pick(std::size(aActs))]();
    }
    std::uint64_t Pick(std::uint64_t nCount) { return m_random() % nCount; }

private:
    std::uint64_t Any(nObjectType nType)
    {
        const IDs aIDs = m_model.GetIDs(nType);
        return aIDs.empty() ? INVALID_ID : aIDs[Pick(aIDs.size())];
    }
    void DeleteOne(const IDs& aIDs)
    {
        const std::uint64_t nID = aIDs[Pick(aIDs.size())];
        if (nID != INVALID_ID)
            Delete(m_model, {nID});
    }
    void DrawOverTheBox()
    {
        const Frame& frame = GetFrames()[1];
        const double dFrom = double(Pick(9)) / 4;
        m_model.Line(frame(dFrom, -1, 2), frame(double(Pick(9)) / 4, 3, 2));
    }

    DressedModel& m_model;
    std::mt19937_64 m_random;
};
} // namespace

TEST(Dress, IsRestoredByUndoAndRedo)
{
    const DressedModel model;
    ExpectSound(model);
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
        RandomDresser dresser(model, nSeed);
        for (int nStep = 0; nStep < 40; ++nStep)
        {
            switch (dresser.Pick(8))
            {
            case 0:
                APIUndoHistory(h, dresser.Pick(2));
                break;
            case 1:
                APIRedoHistory(h);
                break;
            case 2:
                APIDeleteAllRedoHistory(h, true);
                break;
            default:
                dresser.Act();
            }
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
    const double dNone = std::numeric_limits<double>::quiet_NaN();
    const std::uint64_t nFace = model.aFaces.front();
    const std::uint64_t nGone = 9999;
    const std::uint64_t nAttribute = model.GetIDs(nLayerAttributeType).front();
    const Color color;
    const std::string s = "s";
    const IDs aFace{nFace};
    const std::array<Point3d, 4> aCorners{};
    const std::array<Point3d, 4> aFar{Point3d(dNone, 0, 0)};
    const TexturePairs aNoTexture{{"k", nFace}};
    std::uint64_t n = 0;
    IDs a;
    const std::function<Result()> aCalls[] = {
        [&] { return APICreateMaterial(h, color, 1, 1, nFace, n, s, s, nullptr, nullptr); },
        [&] { return APICreateMaterial(h, color, dNone, 1, INVALID_ID, n, s, s, nullptr, nullptr); },
        [&] { return APICreateMaterial(h, color, 1, 1, INVALID_ID, n, s, s, nullptr, &aNoTexture); },
        [&] {
            return APICreateMaterialWithTexture(h, color, 1, INFINITY, MakeJPEG('x'), true, n, s, s, nullptr, nullptr,
                                                s);
        },
        [&] { return APISetMaterialColor(h, nFace, color); },
        [&] { return APISetMaterialData(h, model.nPaint, color, 1, dNone, INVALID_ID, &s, &s, nullptr, nullptr); },
        [&] { return APISetMaterialTexture(h, model.nPaint, 1, 1, nGone); },
        [&] { return APICreateMaterial(h, color, 0, 1, model.nTexture, n, s, s, nullptr, nullptr); },
        [&] { return APISetMaterialData(h, model.nPaint, color, 1, -1, model.nTexture, &s, &s, nullptr, nullptr); },
        [&] { return APISetMaterialTexture(h, model.nPaint, 1, 1e-13, model.nTexture); },
        [&] {
            return APISetObjectsMaterial(h, {nFace, nGone}, model.nWallpaper);
        },
        [&] { return APISetObjectsMaterial(h, aFace, nFace); },
        [&] { return APISetObjectsMaterial(h, {model.nPaint}, model.nWallpaper); },
        [&] { return APISetObjectsMaterial(h, {nAttribute}, model.nWallpaper); },
        [&] { return APISetFaceBacksideMaterial(h, {model.nBody}, model.nWallpaper); },
        [&] { return APISetTextureData(h, model.nPaint, MakeJPEG('x'), true, nullptr); },
        [&] {
            return APISetLayersDisplayed(h, {model.nLayer, nFace}, false);
        },
        [&] { return APIAddObjectsLayers(h, {nFace}, aFace); },
        [&] { return APIAddObjectsLayers(h, {model.nLayer}, {nGone}); },
        [&] { return APIRemoveObjectsLayers(h, {model.nLayer}, {model.nLayer}); },
        [&] {
            return APICreateLevelObjects(h, {{"good", 1.0}, {"bad", dNone}}, a);
        },
        [&] {
            return APISetLevelsData(h, {model.nLevel, nFace}, {{"x", 5.0}, {"y", 6.0}});
        },
        [&] {
            return APISetObjectsLevels(h, {model.nBody, nFace}, {model.nLevel});
        },
        [&] { return APISetObjectsLevels(h, {model.nBody}, {nFace}); },
        [&] { return APISetObjectProperties(h, nFace, s, true, &aFace); },
        [&] { return APICreateImageObject(h, s, nFace, 1, true, aCorners, n); },
        [&] { return APICreateImageObject(h, s, INVALID_ID, 1, true, aFar, n); },
        [&] { return APISetImageData(h, model.nImage, s, nGone, 1, true, aCorners); },
        [&] { return APIRemoveSatelliteData(h, model.nImage); },
        [&] { return APICreateStringAttribute(h, "", s, aFace, n, nCopyOwn, true); },
        [&] {
            return APICreateStringAttribute(h, "k", s, {nFace, nGone}, n, nCopyOwn, true);
        },
        [&] { return APICreateStringAttribute(h, "k", s, aFace, n, nCopyBehavior(3), true); },
        [&] {
            return APICreateStringAttribute(h, "fire class", s, {model.aFaces[2], nFace}, n, nCopyOwn, true);
        },
        [&] { return APISetStringAttributeValue(h, nAttribute, s); },
        [&] { return APISetEdgesOrVerticesMarkedSmooth(h, {nGone}, true); },
        [&] {
            return APISetLocalCoordinateSystem(h,
                                               Transf3d::projectOn(Plane(Point3d(), UnitVector3d::kZDir), Vector3d()));
        },
    };
    for (std::size_t i = 0; i < std::size(aCalls); ++i)
    {
        SCOPED_TRACE(i);
        ExpectRefused(model, Result::nBadInput, aCalls[i]);
    }
    EXPECT_TRUE(a.empty());
    ExpectRefused(model, Result::nTextureBadSize,
                  [&] {
                      return APICreateTexture(h, {'\xFF', '\xD8', 0, 0, 0, 0, 0}, true, n, s);
                  });
    ExpectRefused(model, Result::nTextureBadFormat,
                  [&] { return APICreateTexture(h, std::vector<char>(100, 'x'), true, n, s); });
    ExpectRefused(
        model, Result::nTextureBadFormat,
        [&] { return APICreateImageObjectWithTexture(h, s, 1, true, aCorners, std::vector<char>(8, 'x'), n, s); });
    ExpectRefused(model, Result::nImageTextureAndSatellite,
                  [&] {
                      return APISetSatelliteData(h, model.nImage, {1, 2}, {3, 4}, {5, 6});
                  });
    ExpectRefused(
        model, Result::nImageTextureAndSatellite,
        [&] {
            return APICreateSatelliteImageObject(h, s, model.nTexture, 1, true, aCorners, {1, 2}, {3, 4}, {5, 6}, n);
        });
    ExpectRefused(model, Result::nCaughtException,
                  [&] {
                      return APISetLevelsData(h, {model.nLevel, model.nLevel}, {{"x", 5.0}});
                  });
    ExpectBitmapsCounted();
}
} // namespace QRV
