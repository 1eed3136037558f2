#include "archive/BinaryFormatter.h"
#include "history/HistoryRegistry.h"
#include "model/CircleAttribute.h"
#include "model/Coedge.h"
#include "model/Loop.h"
#include "support/PolygonModel.h"

#include <functional>

namespace QRV
{
namespace
{
/// Bytes from their hexadecimal text; blanks are for the reader.
std::string Bytes(const std::string& strHex)
{
    std::string strBytes;
    std::string strDigits;
    for (const char c : strHex)
    {
        if (c == ' ')
            continue;
        strDigits += c;
        if (strDigits.size() == 2)
            strBytes += static_cast<char>(std::stoi(std::exchange(strDigits, {}), nullptr, 16));
    }
    return strBytes;
}

// 1, -2 and 0.5 as doubles, and 1.5 as float.
const std::string kOne = "000000000000f03f ";
const std::string kMinusTwo = "00000000000000c0 ";
const std::string kHalf = "000000000000e03f ";
const std::string kZero = "0000000000000000 ";
const std::string kOneAndAHalf = "0000c03f ";

/// A value of each kind with its bytes, and how it is written and read back.
struct Form
{
    const char* pName;
    std::string strHex;
    std::function<bool(IArchive&)> write;
    std::function<bool(IArchive&, IArchive&)> copy; ///< reads from the first and writes that to the second
};

template <class T, class Write, class Read>
Form MakeForm(const char* pName, const std::string& strHex, const T& value, Write write, Read read)
{
    return {pName, strHex, [=](IArchive& archive) { return (archive.*write)(value, "name"); },
            [=](IArchive& from, IArchive& to)
            {
                T copy{};
                return (from.*read)(copy) && (to.*write)(copy, nullptr);
            }};
}

std::vector<Form> GetForms()
{
    using A = IArchive;
    const Point3d p(1, -2, 0.5);
    const Color color{1, 2, 3, 4};
    const Transf3d shift(p);
    const std::string strShift = kOne + kZero + kZero + kOne + kZero + kOne + kZero + kMinusTwo + kZero + kZero + kOne +
                                 kHalf + kZero + kZero + kZero + kOne;
    return {
        MakeForm("no objects", "00000000", std::vector<Object*>{}, &A::WriteObjects, &A::ReadObjects),
        MakeForm("null objects", "02000000 ffffffff ffffffff", std::vector<Object*>{nullptr, nullptr}, &A::WriteObjects,
                 &A::ReadObjects),
        MakeForm("colors", "02000000 04030201 ff000000", std::vector<Color>{color, Color{0, 0, 0, 255}},
                 &A::WriteColors, &A::ReadColors),
        MakeForm("numbers", "02000000 04030201 ffffffff", std::vector<std::uint32_t>{0x01020304, 0xffffffff},
                 &A::WriteUInts, &A::ReadUInts),
        MakeForm("floats", "01000000" + kOneAndAHalf, std::vector<float>{1.5f}, &A::WriteFloats, &A::ReadFloats),
        MakeForm("points", "01000000" + kOne + kMinusTwo + kHalf, std::vector<Point3d>{p}, &A::WritePoint3ds,
                 &A::ReadPoint3ds),
        MakeForm("points of the plane", "02000000" + kOne + kHalf + kHalf + kOne,
                 std::vector<Point2d>{{1, 0.5}, {0.5, 1}}, &A::WritePoint2ds, &A::ReadPoint2ds),
        MakeForm("transforms", "01000000" + strShift, std::vector<Transf3d>{shift}, &A::WriteTransf3ds,
                 &A::ReadTransf3ds),
        MakeForm("transform", strShift, shift, &A::WriteTransf3d, &A::ReadTransf3d),
        MakeForm("vector", kOne + kMinusTwo + kHalf, Vector3d(1, -2, 0.5), &A::WriteVector3d, &A::ReadVector3d),
        MakeForm("direction", kOne + kMinusTwo + kHalf, UnitVector3d(1, -2, 0.5, false), &A::WriteUnitVector3d,
                 &A::ReadUnitVector3d),
        MakeForm("point", kOne + kMinusTwo + kHalf, p, &A::WritePoint3d, &A::ReadPoint3d),
        MakeForm("point of the plane", kMinusTwo + kHalf, Point2d(-2, 0.5), &A::WritePoint2d, &A::ReadPoint2d),
        MakeForm("box", kMinusTwo + kZero + kZero + kOne + kHalf + kOne, Interval3d({-2, 0, 0}, {1, 0.5, 1}),
                 &A::WriteInterval3d, &A::ReadInterval3d),
        MakeForm("color", "04030201", color, &A::WriteColor, &A::ReadColor),
        MakeForm("string", "03000000 61006f", std::string("a\0o", 3), &A::WriteString, &A::ReadString),
        MakeForm("empty string", "00000000", std::string(), &A::WriteString, &A::ReadString),
        MakeForm("double", kMinusTwo, -2.0, &A::WriteDouble, &A::ReadDouble),
        MakeForm("float", kOneAndAHalf, 1.5f, &A::WriteFloat, &A::ReadFloat),
        MakeForm("id", "04030201", std::uint64_t(0x01020304), &A::WriteID, &A::ReadID),
        MakeForm("id above 32 bits", "04030201", std::uint64_t(0x900000001020304), &A::WriteID, &A::ReadID),
        MakeForm("no id", "ffffffff", INVALID_ID, &A::WriteID, &A::ReadID),
        MakeForm("true", "01", true, &A::WriteBool, &A::ReadBool),
    };
}
} // namespace

TEST(BinaryFormatter, WritesEachValueAsKnownBytesAndReadsItBack)
{
    for (const Form& form : GetForms())
    {
        SCOPED_TRACE(form.pName);
        std::string strData;
        BinaryFormatter writer(strData);
        EXPECT_TRUE(form.write(writer));
        EXPECT_EQ(strData, Bytes(form.strHex));
        EXPECT_EQ(writer.GetBytesWritten(), strData.size());
        BinaryFormatter reader{std::string_view(strData)};
        std::string strCopy;
        BinaryFormatter copier(strCopy);
        EXPECT_TRUE(form.copy(reader, copier));
        EXPECT_EQ(reader.GetReadPosition(), strData.size());
        EXPECT_EQ(strCopy, strData);
        EXPECT_FALSE(form.write(reader)) << "an archive that reads has nothing to write to";
    }
}

TEST(BinaryFormatter, FailsCleanlyWhereverTheDataIsCutOff)
{
    for (const Form& form : GetForms())
    {
        const std::string strData = Bytes(form.strHex);
        for (std::size_t nLength = 0; nLength < strData.size(); ++nLength)
        {
            SCOPED_TRACE(form.pName + std::string(" cut to ") + std::to_string(nLength));
            // Memory of its own, so that a sanitizer sees a read past the end.
            const std::vector<char> aCut(strData.begin(), strData.begin() + std::ptrdiff_t(nLength));
            BinaryFormatter reader(std::string_view(aCut.data(), aCut.size()));
            std::string strCopy;
            BinaryFormatter copier(strCopy);
            EXPECT_FALSE(form.copy(reader, copier));
            EXPECT_LE(reader.GetReadPosition(), nLength);
        }
    }
}

TEST(BinaryFormatter, LeavesTargetAndPositionOfAFailedReadAlone)
{
    // A number, and then what could be a string of a length that the data doesn't have.
    const std::string strData = Bytes(kMinusTwo + "04000000 616263");
    BinaryFormatter reader{std::string_view(strData)};
    double d = 0.0;
    ASSERT_TRUE(reader.ReadDouble(d));
    Point3d p(1, 2, 3);
    EXPECT_FALSE(reader.ReadPoint3d(p));
    EXPECT_EQ(p.distSqrd(Point3d(1, 2, 3)), 0.0);
    std::string str = "full";
    EXPECT_FALSE(reader.ReadString(str));
    EXPECT_TRUE(str.empty());
    EXPECT_EQ(reader.GetReadPosition(), 8u);
}

TEST(BinaryFormatter, KeepsACountThatTheDataCannotHoldFromTakingMemory)
{
    // The count, and then one element of four bytes.
    const std::pair<std::string, std::size_t> aRows[] = {
        {"03000000", 3}, {"00000100", 65536}, {"01000100", 0}, {"ffffff7f", 0}, {"ffffffff", 0}};
    for (const auto& [strCount, nSize] : aRows)
    {
        SCOPED_TRACE(strCount);
        const std::string strData = Bytes(strCount + "05000000");
        std::vector<std::uint32_t> aNumbers{1, 2};
        EXPECT_FALSE(BinaryFormatter(std::string_view(strData)).ReadUInts(aNumbers));
        std::vector<std::uint32_t> aExpected(nSize);
        if (nSize > 0)
            aExpected[0] = 5;
        EXPECT_EQ(aNumbers, aExpected);
        std::vector<Object*> aObjects;
        EXPECT_FALSE(BinaryFormatter(std::string_view(strData)).ReadObjects(aObjects));
        EXPECT_EQ(aObjects.size(), nSize);
        std::vector<Color> aColors;
        EXPECT_FALSE(BinaryFormatter(std::string_view(strData)).ReadColors(aColors));
        EXPECT_EQ(aColors.size(), nSize);
        if (nSize > 0)
        {
            EXPECT_EQ(aColors.back(), (Color{0, 0, 0, 0}));
        }
    }
}

TEST(BinaryFormatter, FindsReferencesInTheDataBeforeThoseInTheHistory)
{
    PolygonModel model;
    Step step(model);
    Vertex& live = model.AddVertex({0, 0, 0});
    Vertex coming({1, 0, 0});
    const auto nLive = std::uint32_t(live.GetID());
    std::string strData;
    BinaryFormatter writer(strData);
    writer.WriteUInts({nLive, nLive + 1, nLive + 2, 0xffffffff}, "references");

    struct Row
    {
        const char* pName;
        bool bHistory;
        std::uint64_t nMax; ///< of the span of ids in the data
        std::vector<Object*> aExpected;
        std::vector<std::uint64_t> aUnresolved;
    };
    const std::uint64_t nMissing = nLive + 2;
    for (const Row& row :
         {Row{"both", true, nLive + 1u, {&live, &coming, nullptr, nullptr}, {nMissing}},
          Row{"outside of the span", true, nLive, {&live, nullptr, nullptr, nullptr}, {nLive + 1u, nMissing}},
          Row{"no History", false, nLive + 1u, {nullptr, &coming, nullptr, nullptr}, {nLive, nMissing}}})
    {
        SCOPED_TRACE(row.pName);
        BinaryFormatter reader{std::string_view(strData)};
        reader.GetHeader().nMaxObjectID = row.nMax;
        reader.SetObjects({{nLive + 1u, &coming}, {nLive, nullptr}}); // in any order
        reader.SetHistory(row.bHistory ? &model.GetHistory() : nullptr);
        std::vector<Object*> aObjects;
        EXPECT_TRUE(reader.ReadObjects(aObjects));
        EXPECT_EQ(aObjects, row.aExpected);
        EXPECT_EQ(reader.GetUnresolvedIDs(), row.aUnresolved);
    }
}

TEST(BinaryFormatter, ShowsExcludedObjectsAsNull)
{
    PolygonModel model;
    Step step(model);
    std::vector<Object*> aVertices{&model.AddVertex({0, 0, 0}), &model.AddVertex({1, 0, 0})};
    std::string strAll;
    std::string strFiltered;
    BinaryFormatter all(strAll);
    BinaryFormatter filtered(strFiltered);
    for (BinaryFormatter* pArchive : {&all, &filtered})
        pArchive->SetExcludedObjects({aVertices[0]});
    EXPECT_TRUE(all.WriteObjects(aVertices, "list"));
    EXPECT_TRUE(filtered.WriteFilteredObjects(aVertices, "list"));
    EXPECT_EQ(strFiltered, strAll.replace(4, 4, Bytes("ffffffff")));
}

TEST(BinaryFormatter, MapsOnlyTheIdsThatItWasTold)
{
    std::string strData;
    BinaryFormatter archive(strData);
    std::uint64_t nMapped = 77;
    archive.SetMappedID(4, 5);
    EXPECT_FALSE(archive.GetMappedID(4, nMapped)) << "there is no map";
    std::map<std::uint64_t, std::uint64_t> mapIDs;
    archive.SetIDMap(&mapIDs);
    archive.SetMappedID(4, INVALID_ID);
    archive.SetMappedID(INVALID_ID, 4);
    EXPECT_TRUE(mapIDs.empty());
    archive.SetMappedID(4, 5);
    EXPECT_FALSE(archive.GetMappedID(INVALID_ID, nMapped) || archive.GetMappedID(3, nMapped));
    EXPECT_EQ(nMapped, 77u);
    EXPECT_TRUE(archive.GetMappedID(4, nMapped));
    EXPECT_EQ(nMapped, 5u);

    BinaryFormatter::RecordInfos infos;
    archive.SetRecordInfos(&infos);
    EXPECT_TRUE(archive.AddObjectRecordInfo(4, 1, 2) && archive.AddObjectRecordInfo(4, 1, 2));
    EXPECT_FALSE(archive.AddObjectRecordInfo(4, 1, 3));
}

TEST(BinaryFormatter, GivesEachReferencedHistoryOneNewOneInALoad)
{
    PolygonModel model;
    const std::uint64_t nTaken = model.GetHistory().GetID();
    HistoryRegistry& registry = HistoryRegistry::Get();
    const std::uint64_t nFree = nTaken + 5000;
    ASSERT_FALSE(registry.GetHistory(nFree));
    std::string strData;
    BinaryFormatter archive(strData);
    EXPECT_EQ(archive.MapHistoryID(nFree), nFree);
    EXPECT_FALSE(registry.GetHistory(nFree)) << "without a map nothing is made";

    HistoryIDMap map{.mapIDs = {}, .bTemporary = true};
    archive.SetHistoryIDMap(&map);
    const std::uint64_t nAside = archive.MapHistoryID(nTaken);
    EXPECT_NE(nAside, nTaken);
    EXPECT_EQ(archive.MapHistoryID(nFree), nFree);
    EXPECT_EQ(archive.MapHistoryID(nTaken), nAside);
    EXPECT_EQ(archive.MapHistoryID(INVALID_ID), INVALID_ID);
    EXPECT_EQ(map.mapIDs.size(), 2u);
    for (const std::uint64_t nID : {nAside, nFree})
    {
        ASSERT_TRUE(registry.GetHistory(nID));
        EXPECT_FALSE(registry.GetHistory(nID)->IsNonTemporary());
        Result result;
        EXPECT_TRUE(registry.DeleteHistory(nID, result));
    }
}

namespace
{
/// One object at least of each class of the topology, and some that dress it.
std::vector<Object*> MakeEveryClass(PolygonModel& model)
{
    History& history = model.GetHistory();
    model.AddBlock(GetFrames()[1], {0, 0, 0}, {1, 2, 3});
    model.AddFace({{5, 0, 0}, {9, 0, 0}, {9, 4, 0}, {5, 4, 0}}, {{{6, 1, 0}, {6, 2, 0}, {7, 2, 0}}});
    auto& circle = history.Create<CircleAttribute>(2.0, Point3d(0, 0, 0), UnitVector3d::kZDir, UnitVector3d::kXDir);
    model.AddEdge({2, 0, 0}, {0, 2, 0}).AddAttribute(&circle, true);
    history.Create<Layer>("walls", true);
    history.Create<Level>("ground", 3.5);
    history.Create<Image>(4);
    history.Create<StringAttribute>("fire class", "F90", nCopyShared, true);
    history.Create<Material>().SetAdditionalData({{"gloss", "high"}, {"", ""}});
    std::vector<Object*> aObjects;
    history.GetObjectsByType(aObjects, nUnspecifiedType, false);
    return aObjects;
}

/// An object of the class of which no member has the value that it is to get.
std::unique_ptr<Object> MakeBlank(nObjectType nType)
{
    std::unique_ptr<Object> aBlanks[] = {
        std::make_unique<Body>(),
        std::make_unique<Lump>(),
        std::make_unique<Shell>(),
        std::make_unique<Face>(Plane()),
        std::make_unique<Loop>(),
        std::make_unique<Coedge>(false),
        std::make_unique<Edge>(),
        std::make_unique<Vertex>(Point3d(-7, -7, -7)),
        std::make_unique<CircleAttribute>(-7.0, Point3d(-7, -7, -7), UnitVector3d(), UnitVector3d()),
        std::make_unique<Layer>("", false),
        std::make_unique<Level>("", -7.0),
        std::make_unique<Image>(7),
        std::make_unique<StringAttribute>("", "", nCopyNone, false),
        std::make_unique<Material>(),
    };
    for (std::unique_ptr<Object>& pBlank : aBlanks)
        if (pBlank->GetType() == nType)
            return std::move(pBlank);
    return nullptr;
}
} // namespace

TEST(BinaryFormatter, LoadsAStateOfAnObjectThatSavesToTheSameBytes)
{
    PolygonModel model;
    Step step(model);
    std::set<nObjectType> aTypes;
    for (const Object* pObject : MakeEveryClass(model))
        for (const bool bDerivable : {false, true})
        {
            std::string strData;
            BinaryFormatter writer(strData, bDerivable);
            EXPECT_TRUE(pObject->Save(writer));
            EXPECT_EQ(strData.size(), pObject->GetSizeInBytes(false, bDerivable)) << pObject->GetName();
            aTypes.insert(pObject->GetType());
            const std::unique_ptr<Object> pLoaded = MakeBlank(pObject->GetType());
            ASSERT_TRUE(pLoaded) << pObject->GetName();
            for (std::size_t nLength = 0; nLength <= strData.size(); ++nLength)
            {
                BinaryFormatter reader{std::string_view(strData).substr(0, nLength)};
                reader.GetHeader().bDerivable = bDerivable;
                reader.GetHeader().nHistoryID = model.GetHistory().GetID();
                reader.SetHistory(&model.GetHistory());
                EXPECT_EQ(pLoaded->Load(reader), nLength == strData.size()) << pObject->GetName() << ' ' << nLength;
                EXPECT_TRUE(reader.GetUnresolvedIDs().empty());
            }
            EXPECT_EQ(pLoaded->GetID(), pObject->GetID());
            EXPECT_EQ(pLoaded->GetHistoryID(), pObject->GetHistoryID());
            std::string strAgain;
            BinaryFormatter again(strAgain, bDerivable);
            EXPECT_TRUE(pLoaded->Save(again));
            EXPECT_EQ(strAgain, strData) << pObject->GetName();
        }
    EXPECT_EQ(aTypes, (std::set{nBodyType, nLumpType, nShellType, nFaceType, nLoopType, nCoedgeType, nEdgeType,
                                nVertexType, nCircleAttributeType, nLayerType, nLevelType, nImageType,
                                nStringAttributeType, nMaterialType}));
}
} // namespace QRV
