#include "support/CommaLocale.h"

#include <QRV/JSONConversion.h>
#include <QRV/ObjectTypes.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <typeinfo>

namespace QRV
{
namespace
{
using nlohmann::json;

template <class T>
bool Read(const json& source, T& out, const std::string& strKey = {}, bool bOptional = false)
{
    return from_json_impl<T>::f(source, strKey, out, bOptional);
}

/// The value has this JSON, and the JSON reads as the value.
template <class T>
void ExpectBothWays(const T& value, const char* pText)
{
    SCOPED_TRACE(pText);
    EXPECT_EQ(to_json_impl<T>::f(value).dump(), json::parse(pText).dump());
    T read{};
    EXPECT_TRUE(Read(json::parse(pText), read));
    EXPECT_EQ(to_json_impl<T>::f(read).dump(), json::parse(pText).dump());
    const json within{{"key", json::parse(pText)}};
    T readWithin{};
    EXPECT_TRUE(Read(within, readWithin, "key"));
    EXPECT_EQ(to_json_impl<T>::f(readWithin).dump(), json::parse(pText).dump());
}

template <class T>
void ExpectRefused(std::initializer_list<const char*> aTexts)
{
    for (const char* pText : aTexts)
    {
        T read{};
        bool bGood = false;
        try
        {
            bGood = Read(json::parse(pText), read);
        }
        catch (const json::type_error&)
        {
        }
        EXPECT_FALSE(bGood) << pText;
    }
}
} // namespace

TEST(JSONConversion, GoesToAndFroForEveryValue)
{
    const CommaLocale commas;
    ExpectBothWays(true, "true");
    ExpectBothWays(-5, "-5");
    ExpectBothWays(std::uint64_t(7), "7");
    ExpectBothWays(0.1, "0.1");
    ExpectBothWays(0.5f, "0.5");
    ExpectBothWays(std::string("a\"\xc3\xbc"), "\"a\\\"\xc3\xbc\"");
    ExpectBothWays(nFaceType, "4");
    ExpectBothWays(std::vector<bool>{true, false}, "[true,false]");
    ExpectBothWays(std::vector<std::vector<std::uint64_t>>{{1, INVALID_ID}, {}}, "[[1,4294967295],[]]");
    ExpectBothWays(std::pair(std::uint64_t(1), std::string("b")), R"({"first":1,"second":"b"})");
    ExpectBothWays(Vector2d(1, 2), R"({"objectName":"Vector2d","x":1.0,"y":2.0})");
    ExpectBothWays(Point3d(1234567.5, 2, 1e300), R"({"objectName":"Point3d","x":1234567.5,"y":2.0,"z":1e300})");
    ExpectBothWays(Vector3d(1, -2, 3), R"({"objectName":"Vector3d","x":1.0,"y":-2.0,"z":3.0})");
    ExpectBothWays(UnitVector3d(Vector3d(0, 0.6, 0.8), false),
                   R"({"objectName":"UnitVector3d","x":0.0,"y":0.6,"z":0.8})");
    ExpectBothWays(Line3d({1, 2, 3}, Vector3d(4, 5, 6)),
                   R"({"objectName":"Line3d","point":{"objectName":"Point3d","x":1.0,"y":2.0,"z":3.0},
                       "vector":{"objectName":"Vector3d","x":4.0,"y":5.0,"z":6.0}})");
    ExpectBothWays(Plane(Point3d(7, 8, 2), UnitVector3d(Vector3d(0, 0, 1), false)),
                   R"({"objectName":"Plane","point":{"objectName":"Point3d","x":0.0,"y":0.0,"z":2.0},
                       "normal":{"objectName":"UnitVector3d","x":0.0,"y":0.0,"z":1.0}})");
    ExpectBothWays(Interval3d(Point3d(1, 2, 3), Point3d(4, 5, 6)),
                   R"({"objectName":"Interval3d","lower":{"objectName":"Point3d","x":1.0,"y":2.0,"z":3.0},
                       "upper":{"objectName":"Point3d","x":4.0,"y":5.0,"z":6.0}})");
    ExpectBothWays(ObjectHistoryID{1, INVALID_ID},
                   R"({"objectName":"ObjectHistoryID","History":1,"Object":4294967295})");
    ExpectBothWays(GroupInstancePath(std::vector<ObjectHistoryID>{{1, 2}, {3, 4}}),
                   R"({"objectName":"GroupInstancePath","ids":[{"objectName":"ObjectHistoryID","History":1,"Object":2},
                       {"objectName":"ObjectHistoryID","History":3,"Object":4}]})");
    ExpectBothWays(Result(Result::nBadInput), R"({"objectName":"QRV::Result","good":false,"error":5})");
    ExpectBothWays(Transf3d::translation(Vector3d(5, 6, 7)),
                   to_json_impl<Transf3d>::f(Transf3d::translation(Vector3d(5, 6, 7))).dump().c_str());
}

TEST(JSONConversion, GoesToAndFroForEveryRecord)
{
    const std::string kPoint = R"({"objectName":"Point3d","x":1.0,"y":2.0,"z":3.0})";
    const std::string kUV = R"({"objectName":"Point2d","x":0.5,"y":0.25})";
    const std::string kColor = R"({"objectName":"Color","r":1,"g":2,"b":3,"a":4})";
    const std::string kTransform = to_json_impl<Transf3d>::f(Transf3d::translation(Vector3d(5, 6, 7))).dump();
    const std::string kNormal = R"({"objectName":"UnitVector3d","x":0.0,"y":0.0,"z":1.0})";
    const Point3d point(1, 2, 3);
    const Color color{1, 2, 3, 4};
    const Transf3d transform = Transf3d::translation(Vector3d(5, 6, 7));
    ExpectBothWays(TextureData{"t", {'\0', '\x7f', '\x80', '\xff'}},
                   R"({"objectName":"TextureData","name":"t","texture":[0,127,128,255]})");
    ExpectBothWays(
        MaterialData{"m", color, 0.5, 2.0, 3},
        (R"({"objectName":"MaterialData","name":"m","h_scale":0.5,"v_scale":2.0,"texture":3,"color":)" + kColor + "}")
            .c_str());
    ExpectBothWays(LayerData{"l", false, INVALID_ID},
                   R"({"objectName":"LayerData","name":"l","displayed":false,"material":4294967295})");
    ExpectBothWays(InstanceData{"i", 1, 2, 3, transform, true},
                   (R"({"objectName":"InstanceData","name":"i","layer":1,"history":2,"material":3,"hidden":true,
                        "transform":)" +
                    kTransform + "}")
                       .c_str());
    const LoopData loop{{point, point}, {true, false}, {false, true}, true, {{0.5, 0.25}}, {}};
    const std::string kLoop =
        R"({"objectName":"LoopData","vertices_smooth":[true,false],"edges_smooth":[false,true],"is_arc":true,
            "back_uv":[],"front_uv":[)" +
        kUV + R"(],"vertices":[)" + kPoint + "," + kPoint + "]}";
    ExpectBothWays(loop, kLoop.c_str());
    ExpectBothWays(FaceData{4, UnitVector3d(Vector3d(0, 0, 1), false), loop, {loop}, {{point}, {}}, 5, 6, true},
                   (R"({"objectName":"FaceData","layer":4,"front_material":5,"back_material":6,"hidden":true,
                        "outer_loop":)" +
                    kLoop + R"(,"inner_loops":[)" + kLoop + R"(],"normal":)" + kNormal + R"(,"openings":[[)" + kPoint +
                    "],[]]}")
                       .c_str());
    ExpectBothWays(EdgeData{1, color, point, point, true, true},
                   (R"({"objectName":"EdgeData","layer":1,"smooth":true,"hidden":true,"color":)" + kColor +
                    R"(,"start_pt":)" + kPoint + R"(,"end_pt":)" + kPoint + "}")
                       .c_str());
    ExpectBothWays(CurveData{1, color, true, {point}, true},
                   (R"({"objectName":"CurveData","layer":1,"is_arc":true,"hidden":true,"color":)" + kColor +
                    R"(,"points":[)" + kPoint + "]}")
                       .c_str());
    ExpectBothWays(ImageData{"p", 1, 2, 3.5, 4.5, transform, true},
                   (R"({"objectName":"ImageData","name":"p","layer":1,"texture":2,"width":3.5,"height":4.5,
                        "hidden":true,"transform":)" +
                    kTransform + "}")
                       .c_str());
    ExpectBothWays(FacetsBodyData{{point}, {{0, 1, 2}, {}}, {7}, {color}, {8}, {color}},
                   (R"({"objectName":"FacetsBodyData","m_polygonIndices":[[0,1,2],[]],"m_polygonSmoothingIds":[7],
                        "m_polygonColorIndices":[8],"m_points":[)" +
                    kPoint + R"(],"m_colors":[)" + kColor + R"(],"m_pointColors":[)" + kColor + "]}")
                       .c_str());
    ExpectBothWays(ModelChangeData{3, nModelUndone, "APIUndo\"History", 2, INVALID_ID},
                   R"({"objectName":"ModelChangeData","historyID":3,"type":-1,"name":"APIUndo\"History",
                       "previousDelta":2,"currentDelta":4294967295})");
}

TEST(JSONConversion, KeepsWhatARecordMayLeaveOut)
{
    LayerData layer{"before", false, 9};
    EXPECT_TRUE(Read(json::parse(R"({"objectName":"LayerData","name":"l","displayed":true})"), layer));
    EXPECT_TRUE(layer.name == "l" && layer.displayed && layer.material == 9);
    EXPECT_FALSE(Read(json::parse(R"({"objectName":"LayerData","name":"l"})"), layer));
    MaterialData material;
    EXPECT_TRUE(Read(json::parse(R"({"objectName":"MaterialData","name":"m"})"), material));
    EXPECT_EQ(material.h_scale, 10.0);
    EXPECT_EQ(material.texture, INVALID_ID);
    EXPECT_EQ(material.color.a, 255);
    FaceData face;
    EXPECT_FALSE(Read(json::parse(R"({"objectName":"FaceData","normal":{"objectName":"UnitVector3d","x":0.0,"y":0.0,
                                     "z":1.0}})"),
                      face))
        << "a face without its outline";
}

TEST(JSONConversion, TakesTheShortAndTheForeignForms)
{
    const CommaLocale commas;
    Vector3d vector;
    EXPECT_TRUE(Read(to_json_impl<UnitVector3d>::f(UnitVector3d(Vector3d(0, 1, 0), false)), vector));
    EXPECT_EQ(vector[1], 1.0);
    UnitVector3d unit;
    EXPECT_TRUE(Read(to_json_impl<Vector3d>::f(Vector3d(0, 0, 1)), unit));
    ObjectHistoryID id;
    EXPECT_TRUE(Read(json::parse("[1,-1]"), id));
    EXPECT_EQ(id, (ObjectHistoryID{1, INVALID_ID}));
    GroupInstancePath path;
    EXPECT_TRUE(Read(json::parse("[[1,2],[3,4]]"), path));
    EXPECT_EQ(path.GetFinalObjectID(), 4u);
    std::vector<std::uint64_t> aIDs;
    EXPECT_TRUE(Read(json::parse("7"), aIDs));
    EXPECT_EQ(aIDs, std::vector<std::uint64_t>{7});
    std::uint64_t nID = 0;
    EXPECT_TRUE(Read(json::parse("7.9"), nID));
    EXPECT_EQ(nID, 7u);
    EXPECT_TRUE(Read(json::parse("18446744073709551615"), nID));
    EXPECT_EQ(nID, INVALID_ID);

    // A record in a string, under a key only, and the source stays as it is.
    const json text{{"p", R"({"objectName":"Point3d","x":1,"y":2,"z":3.5})"}};
    const json before = text;
    Point3d point;
    EXPECT_TRUE(Read(text, point, "p"));
    EXPECT_EQ(point[2], 3.5);
    EXPECT_EQ(text, before);
    EXPECT_FALSE(Read(text["p"], point));
    EXPECT_THROW(Read(json{{"p", "{\"objectName\""}}, point, "p"), json::parse_error);
    EXPECT_THROW(Read(json{{"p", R"({"objectName":"Point3d","x":1e400,"y":2,"z":3})"}}, point, "p"),
                 json::out_of_range);
    EXPECT_FALSE(Read(json{{"p", std::string(100000, '[')}}, point, "p"));
}

TEST(JSONConversion, RefusesWhatDoesNotFit)
{
    ExpectRefused<std::uint64_t>({"-2", "1e300", "-1e300", "18446744073709551616", "\"7\"", "true", "null", "{}"});
    ExpectRefused<int>({"2147483648", "-2147483649", "1e10", "\"1\"", "null"});
    ExpectRefused<float>({"1e300", "-1e39", "\"1\""});
    ExpectRefused<double>({"\"1\"", "true", "null", "[]"});
    ExpectRefused<bool>({"1", "\"true\"", "null"});
    ExpectRefused<std::string>({"1", "null", "[]"});
    ExpectRefused<std::vector<std::uint64_t>>({"[1,null]", "[\"a\"]", "[-7]", "{}", "\"a\""});
    ExpectRefused<Point3d>({"{}", "[]", "null", "7", R"({"x":1,"y":2,"z":3})",
                            R"({"objectName":"Vector3d","x":1,"y":2,"z":3})", R"({"objectName":"Point3d","x":1,"y":2})",
                            R"({"objectName":"Point3d","x":1,"y":2,"z":"3"})", R"({"objectName":7,"x":1,"y":2,"z":3})",
                            "[1,2,3]"});
    ExpectRefused<Vector3d>({R"({"objectName":"Point3d","x":1,"y":2,"z":3})"});
    ExpectRefused<Color>(
        {R"({"objectName":"Color","r":256,"g":0,"b":0,"a":0})", R"({"objectName":"Color","r":-1,"g":0,"b":0,"a":0})",
         R"({"objectName":"Color","r":0,"g":0,"b":0})", R"({"objectName":"Color","r":1e9,"g":0,"b":0,"a":0})"});
    ExpectRefused<ObjectHistoryID>({R"({"History":1,"Object":2})", "[1]", "[1,2,3]", "[]", "[1,\"2\"]", "[null,2]"});
    ExpectRefused<GroupInstancePath>({"[7]", "[[1,2],null]", R"({"objectName":"GroupInstancePath"})"});
    ExpectRefused<Transf3d>({R"({"objectName":"Transf3d","data":[1,2,3]})", R"({"objectName":"Transf3d","data":7})"});
    ExpectRefused<ModelChangeData>(
        {R"({"objectName":"ModelChangeData","historyID":3,"type":0,"name":"","previousDelta":2})",
         R"({"objectName":"ModelChangeData","historyID":3,"type":3000000000,"name":"","previousDelta":2,"currentDelta":3})",
         R"({"objectName":"ModelChangeData","historyID":3,"type":0,"name":7,"previousDelta":2,"currentDelta":3})"});
    ExpectRefused<Result>({R"({"objectName":"Result","error":5})", R"({"objectName":"QRV::Result","error":-1})"});
}

TEST(JSONConversion, LeavesAMissingOptionalValueAlone)
{
    const auto expect = [](const char* pText, const char* pKey, bool bExpected)
    {
        Point3d point(1, 2, 3);
        EXPECT_EQ(Read(json::parse(pText), point, pKey, true), bExpected) << pText;
        EXPECT_EQ(point[0], 1.0);
    };
    expect("null", "", true);
    expect("null", "p", true);
    expect("{}", "p", true);
    expect("7", "p", true);
    expect(R"({"p":null})", "p", true);
    expect(R"({"p":{}})", "p", true);
    expect(R"({"p":[]})", "p", true);
    expect(R"({"p":{"objectName":"Plane"}})", "p", true);
    expect(R"({"p":{"x":1}})", "p", false);
    expect(R"({"p":7})", "p", false);
    double dValue = 9.0;
    EXPECT_TRUE(Read(json::parse("{}"), dValue, "d", true));
    EXPECT_EQ(dValue, 9.0);
    EXPECT_THROW(Read(json::parse(R"({"d":null})"), dValue, "d", true), json::type_error);
}

TEST(JSONConversion, CarriesValuesThatOnlyTheHostKnows)
{
    struct Door
    {
        int nWidth;
    };
    const std::map<std::string, utils::any> aKnown{
        {"b", true}, {"d", 0.5}, {"f", 0.25f}, {"i", -3}, {"n", INVALID_ID}, {"s", std::string("t")}, {"z", {}}};
    const char* pText = R"({"b":true,"d":0.5,"f":0.25,"i":-3,"n":4294967295,"s":"t","z":null})";
    EXPECT_EQ(to_json_impl<decltype(aKnown)>::f(aKnown).dump(), pText);
    EXPECT_TRUE(to_json_impl<utils::any>::f(Door{80}).is_null());
    std::map<std::string, utils::any> aBack;
    EXPECT_TRUE(Read(json::parse(pText), aBack));
    EXPECT_EQ(to_json_impl<decltype(aBack)>::f(aBack).dump(), pText);
    EXPECT_EQ(std::any_cast<std::uint64_t>(aBack["n"]), INVALID_ID);

    std::string strTried;
    RegisterAnyToJSON([&](const utils::any&, json&) { return strTried += "1", false; });
    RegisterAnyToJSON(
        [&](const utils::any& value, json& out)
        {
            strTried += "2";
            out = json{{"width", std::any_cast<Door>(value).nWidth}};
            return true;
        });
    RegisterAnyToJSON([&](const utils::any&, json&) { return strTried += "3", true; });
    RegisterJSONToAny([](const json& source, const std::string& key, utils::any& out)
                      { return out = Door{(key.empty() ? source : source[key]).value("width", 0)}, true; });
    EXPECT_EQ(to_json_impl<utils::any>::f(Door{80}).dump(), R"({"width":80})");
    EXPECT_EQ(strTried, "12");

    std::map<std::string, utils::any> aRead;
    EXPECT_TRUE(Read(json::parse(R"({"a":[1],"b":true,"d":{"width":70},"f":0.5,"i":-3,"l":-3000000000,"n":3,"s":"t"})"),
                     aRead));
    EXPECT_EQ(aRead.size(), 8u);
    EXPECT_FALSE(aRead["a"].has_value());
    EXPECT_FALSE(aRead["l"].has_value());
    EXPECT_EQ(std::any_cast<Door>(aRead["d"]).nWidth, 70);
    EXPECT_EQ(std::any_cast<int>(aRead["i"]), -3);
    EXPECT_EQ(std::any_cast<std::uint64_t>(aRead["n"]), 3u);
    ClearConverters();
    utils::any value;
    EXPECT_FALSE(Read(json::parse("{}"), value));
}

TEST(JSONConversion, WritesBytesWithoutSignAndTakesThemWithEither)
{
    const std::vector<char> aBytes{0, 127, '\x80', '\xFF'};
    ExpectBothWays(aBytes, "[0,127,128,255]");
    std::vector<char> aRead;
    EXPECT_TRUE(Read(json::parse("[0,127,-128,-1]"), aRead));
    EXPECT_EQ(aRead, aBytes);
    for (const char* pBad : {"[256]", "[-129]", "[\"a\"]", "[true]", "[1e300]", "[null]"})
        EXPECT_FALSE(Read(json::parse(pBad), aRead)) << pBad;

    std::array<std::uint64_t, 2> pair{7, 7};
    EXPECT_TRUE(Read(json::parse("[1,4294967295]"), pair));
    EXPECT_EQ(pair, (std::array<std::uint64_t, 2>{1, INVALID_ID}));
    for (const char* pBad : {"[1]", "[1,2,3]", "3", "[1,\"a\"]"})
        EXPECT_FALSE(Read(json::parse(pBad), pair)) << pBad;
}

namespace
{
/// Neither the whole document nor what it has under a key is a `T`, and reading it does no harm.
template <class T>
void ExpectHarmless(const json& hostile)
{
    for (const char* pKey : {"", "key"})
        for (const bool bOptional : {false, true})
            try
            {
                T read{};
                const bool bRead = Read(hostile, read, pKey, bOptional);
                EXPECT_TRUE(!bRead || bOptional) << typeid(T).name() << ' ' << pKey;
            }
            catch (const json::exception&)
            {
            }
}

/// So many arrays or objects, each within the next.
json Nest(std::size_t nDepth, bool bObjects)
{
    json inner = bObjects ? json{{"objectName", "Point3d"}} : json(1);
    for (std::size_t n = 0; n < nDepth; ++n)
    {
        json outer = bObjects ? json::object() : json::array();
        if (bObjects)
            outer.emplace("key", std::move(inner));
        else
            outer.push_back(std::move(inner));
        inner = std::move(outer);
    }
    return inner;
}
} // namespace

TEST(JSONConversion, StandsHostileDocuments)
{
    const std::string kBracket(100000, '[');
    const std::string kBalanced = kBracket + std::string(100000, ']');
    std::string strObjects;
    for (int n = 0; n < 100000; ++n)
        strObjects += R"({"key":)";
    json aHostile[] = {
        Nest(100000, false),
        Nest(100000, true),
        json{{"key", kBracket}},
        json{{"key", kBalanced}},
        json{{"key", strObjects}},
        json{{"key", "\xff\xfe{"}},
        json{
            {"key", json(json(R"({"objectName":"Point3d","x":1,"y":2,"z":3})").dump()).dump()}}, // text in text in text
        json{{"key", R"({"objectName":"\ud800"})"}},
        json{{"key", json::binary({1, 2, 3})}},
        json{{"key", {{"objectName", "Point3d"}, {"x", std::numeric_limits<double>::quiet_NaN()}, {"y", kBalanced}}}},
    };
    for (const json& hostile : aHostile)
    {
        ExpectHarmless<Point3d>(hostile);
        ExpectHarmless<UnitVector3d>(hostile);
        ExpectHarmless<Plane>(hostile);
        ExpectHarmless<Transf3d>(hostile);
        ExpectHarmless<Color>(hostile);
        ExpectHarmless<ObjectHistoryID>(hostile);
        ExpectHarmless<GroupInstancePath>(hostile);
        ExpectHarmless<Result>(hostile);
        ExpectHarmless<ModelChangeData>(hostile);
        ExpectHarmless<std::vector<std::vector<std::uint64_t>>>(hostile);
        ExpectHarmless<std::pair<int, Point3d>>(hostile);
        // Values that are carried as they come may be taken.
        for (const char* pKey : {"", "key"})
        {
            utils::any value;
            std::map<std::string, utils::any> aValues;
            Read(hostile, value, pKey);
            Read(hostile, aValues, pKey);
        }
    }
    // What cannot be parsed at all.
    for (const double d :
         {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), std::nan("")})
    {
        std::uint64_t nID = 7;
        int nInt = 7;
        float fValue = 7.0f;
        Color color;
        EXPECT_FALSE(Read(json(d), nID));
        EXPECT_FALSE(Read(json(d), nInt));
        EXPECT_FALSE(Read(json{{"objectName", "Color"}, {"r", d}, {"g", 0}, {"b", 0}, {"a", 0}}, color));
        EXPECT_TRUE(Read(json(d), fValue));
        EXPECT_FALSE(std::isfinite(fValue));
        EXPECT_TRUE(nID == 7 && nInt == 7);
    }
}

} // namespace QRV
