#include "archive/BinaryFormatter.h"
#include "support/DressedModel.h"

#include "history/HistoryRegistry.h"
#include "model/ObjectPairing.h"

namespace QRV
{
namespace
{
std::string SaveAll(const std::vector<const Object*>& aObjects)
{
    std::string strData;
    BinaryFormatter archive(strData);
    for (const Object* pObject : aObjects)
        EXPECT_TRUE(pObject->Save(archive));
    return strData;
}
} // namespace

TEST(MaterialArchive, HoldsABitmapOnceAndBringsItBackForEachTexture)
{
    const DressedModel model;
    std::uint64_t nSecond = INVALID_ID;
    APICreateTexture(model.GetID(), MakeJPEG('a'), false, nSecond, "same stripes");
    const auto& first = *model.GetHistory().Get<Texture>(model.nTexture);
    const auto& second = *model.GetHistory().Get<Texture>(nSecond);
    const std::string strData = SaveAll({&first, &second});
    EXPECT_EQ(strData.find("\xFF\xD8"), strData.rfind("\xFF\xD8"));
    EXPECT_EQ(strData.size(), first.GetSizeInBytes(false, false) + second.GetSizeInBytes(false, false) - 8);

    const TestModel loaded;
    InStep(loaded.GetID(),
           [&](History& history)
           {
               auto& a = history.Create<Texture>(BitmapReference(), false, "");
               auto& b = history.Create<Texture>(BitmapReference(), true, "");
               a.AddToSearch();
               b.AddToSearch();
               BinaryFormatter archive{std::string_view(strData)};
               ASSERT_TRUE(a.Load(archive) && b.Load(archive));
               EXPECT_EQ(a.GetBitmap(), first.GetBitmap());
               EXPECT_EQ(b.GetBitmap(), first.GetBitmap());
               EXPECT_EQ(b.GetDisplayName(), "same stripes");
               EXPECT_TRUE(a.UsesAlpha() && !b.UsesAlpha());
               for (std::size_t nLength = 0; nLength < strData.size(); ++nLength)
               {
                   BinaryFormatter cut{std::string_view(strData).substr(0, nLength)};
                   EXPECT_FALSE(a.Load(cut) && b.Load(cut)) << nLength;
               }
               BinaryFormatter whole{std::string_view(strData)};
               EXPECT_TRUE(a.Load(whole));
               BinaryFormatter without{std::string_view(strData).substr(whole.GetReadPosition())};
               EXPECT_TRUE(b.Load(without));
               EXPECT_EQ(b.GetBitmap(), BitmapReference()); // its bytes never came
               b.SetBitmap(first.GetBitmap());
           });
    ExpectSound(loaded);
    ExpectBitmapsCounted();
}

TEST(MaterialArchive, ReadsWhatItWroteInAWayOfItsOwn)
{
    const DressedModel model;
    const StringPairs aData{{"gloss", "high"}, {"", ""}};
    APISetMaterialData(model.GetID(), model.nPaint, {1, 2, 3, 4}, 0.0, 5.0, INVALID_ID, nullptr, nullptr, &aData,
                       nullptr);
    History& history = model.GetHistory();
    const auto& paint = *history.Get<Material>(model.nPaint);
    const auto& keyed = *history.Get<StringAttribute>(model.nKeyed);
    const std::string strData = SaveAll({&paint, &keyed});
    InStep(
        model.GetID(),
        [&](History&)
        {
            auto& newPaint = history.Create<Material>();
            auto& newKeyed = history.Create<StringAttribute>("", "", nCopyNone, false);
            BinaryFormatter archive{std::string_view(strData)};
            archive.SetHistory(&history);
            ASSERT_TRUE(newPaint.Load(archive) && newKeyed.Load(archive));
            ObjectPairing pairing;
            EXPECT_TRUE(newKeyed.IsEquivalent(keyed, pairing));
            EXPECT_EQ(newPaint.GetColor(), paint.GetColor());
            EXPECT_EQ(archive.GetReadPosition(), strData.size());
            EXPECT_EQ(newPaint.GetHScale(), 1.0);
            EXPECT_EQ(newPaint.GetAdditionalData(), aData);
        },
        true);
    ExpectSound(model);
}

TEST(MaterialArchive, NamesWhatComesFromBeforeThereWereNames)
{
    const TestModel model;
    InStep(model.GetID(),
           [&](History& history)
           {
               auto& texture =
                   history.Create<Texture>(BitmapReference(std::string(MakeJPEG('q').data(), 8)), true, "new");
               auto& material = history.Create<Material>();
               texture.AddToSearch();
               material.AddToSearch();
               std::string strOld;
               BinaryFormatter out(strOld);
               out.WriteID(7, nullptr);
               out.WriteObjects({}, nullptr);
               out.WriteID(16, nullptr); // width and height
               out.WriteID(16, nullptr);
               out.WriteString(texture.GetBitmap().GetData(), nullptr);
               out.WriteBool(true, nullptr);
               out.WriteID(8, nullptr);
               out.WriteObjects({}, nullptr);
               out.WriteColor({9, 8, 7, 6}, nullptr);
               out.WriteDouble(2.0, nullptr);
               out.WriteDouble(1e-13, nullptr);
               out.WriteObject(nullptr, nullptr);
               BinaryFormatter in{std::string_view(strOld)};
               in.GetHeader().nVersion = 4;
               ASSERT_TRUE(texture.Load(in) && material.Load(in));
               EXPECT_EQ(in.GetReadPosition(), strOld.size());
               EXPECT_EQ(texture.GetDisplayName(), "Texture " + std::to_string(texture.GetID()));
               EXPECT_EQ(material.GetDisplayName(), "Material " + std::to_string(material.GetID()));
               EXPECT_EQ(material.GetColor(), (Color{9, 8, 7, 6}));
               EXPECT_EQ(material.GetVScale(), 1.0);
           });
    ExpectSound(model);
    ExpectBitmapsCounted();
}
} // namespace QRV
