#include "archive/BinaryFormatter.h"
#include "support/DressedModel.h"

#include "history/HistoryRegistry.h"

namespace QRV
{
TEST(MaterialArchive, HoldsABitmapOnceAndBringsItBackForEachTexture)
{
    const DressedModel model;
    std::uint64_t nSecond = INVALID_ID;
    APICreateTexture(model.GetID(), MakeJPEG('a'), false, nSecond, "same stripes");
    const auto& first = *model.GetHistory().Get<Texture>(model.nTexture);
    const auto& second = *model.GetHistory().Get<Texture>(nSecond);
    std::string strData;
    BinaryFormatter writer(strData);
    ASSERT_TRUE(first.Save(writer) && second.Save(writer));
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
               out.WriteDouble(0.0, nullptr);
               out.WriteDouble(1e-13, nullptr);
               out.WriteObject(nullptr, nullptr);
               BinaryFormatter in{std::string_view(strOld)};
               in.GetHeader().nVersion = 4;
               ASSERT_TRUE(texture.Load(in) && material.Load(in));
               EXPECT_EQ(in.GetReadPosition(), strOld.size());
               EXPECT_EQ(texture.GetDisplayName(), "Texture " + std::to_string(texture.GetID()));
               EXPECT_EQ(material.GetDisplayName(), "Material " + std::to_string(material.GetID()));
               EXPECT_EQ(material.GetColor(), (Color{9, 8, 7, 6}));
               EXPECT_EQ(std::pair(material.GetHScale(), material.GetVScale()), std::pair(1.0, 1.0));
           });
    ExpectSound(model);
    ExpectBitmapsCounted();
}
} // namespace QRV
