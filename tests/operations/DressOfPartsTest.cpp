// What faces and edges hand on when a sketch splits them or makes one of two.

#include "support/DressedModel.h"

namespace QRV
{
namespace
{
std::set<std::string> GetKeyedValues(const TestModel& model, std::uint64_t nObject)
{
    std::set<std::string> values;
    IDs aAttributes;
    APIGetObjectAttributesReadOnly(model.GetID(), nObject, nStringAttributeType, aAttributes);
    for (const std::uint64_t nAttribute : aAttributes)
    {
        std::string sKey;
        std::string sValue;
        IDs aOwners;
        APIGetStringAttributeKeyValueReadOnly(model.GetID(), nAttribute, sKey, sValue, aOwners);
        values.insert(sKey + "=" + sValue);
    }
    return values;
}

void SetValue(const TestModel& model, std::uint64_t nObject, const std::string& sKey, const std::string& sValue,
              bool bSplit = true)
{
    std::uint64_t n = INVALID_ID;
    ExpectGood(APICreateStringAttribute(model.GetID(), sKey, sValue, {nObject}, n, nCopyOwn, bSplit));
}

/// Two squares side by side; the line between them is drawn last.
class TwoSquares : public TestModel
{
public:
    TwoSquares()
    {
        Outline({Point3d(0, 0, 0), Point3d(2, 0, 0), Point3d(2, 1, 0), Point3d(0, 1, 0)});
        nWhole = GetIDs(nFaceType).front();
    }
    /// Gives the edge.
    std::uint64_t Divide()
    {
        Line(Point3d(1, 0, 0), Point3d(1, 1, 0));
        for (const std::uint64_t nEdge : GetIDs(nEdgeType))
            if (GetFaceClass(nEdge) == nEdgeManifold)
                return nEdge;
        ADD_FAILURE() << "no edge between the squares";
        return INVALID_ID;
    }

    std::uint64_t nWhole = INVALID_ID;
};
} // namespace

TEST(DressOfParts, IsHandedOnToTheFaceSplitOff)
{
    TwoSquares model;
    const std::uint64_t h = model.GetID();
    const std::uint64_t nFront = MakeMaterial(model, {255, 0, 0, 255});
    const std::uint64_t nBack = MakeMaterial(model, {0, 0, 255, 255});
    const std::uint64_t nLayer = MakeLayer(model, "floor");
    APISetObjectsMaterial(h, {model.nWhole}, nFront);
    APISetFaceBacksideMaterial(h, {model.nWhole}, nBack);
    APIAddObjectsLayers(h, {nLayer}, {model.nWhole});
    SetValue(model, model.nWhole, "goes", "along");
    SetValue(model, model.nWhole, "stays", "here", false);
    model.Divide();
    const IDs aFaces = model.GetIDs(nFaceType);
    ASSERT_EQ(aFaces.size(), 2u);
    for (const std::uint64_t nFace : aFaces)
    {
        EXPECT_EQ(GetMaterial(model, nFace), nFront);
        EXPECT_EQ(GetMaterial(model, nFace, true), nBack);
        EXPECT_EQ(GetLayers(model, nFace), IDs{nLayer});
        const std::set<std::string> whole{"goes=along", "stays=here"};
        EXPECT_EQ(GetKeyedValues(model, nFace), nFace == model.nWhole ? whole : std::set<std::string>{"goes=along"});
    }
    ExpectUndoRedoRestores(model);
}

TEST(DressOfParts, IsHandedOnToTheEdgeSplitOffAndOutlivesTheVertexThatGoes)
{
    TestModel model;
    const std::uint64_t h = model.GetID();
    model.Line(Point3d(0, 0, 0), Point3d(2, 0, 0));
    const std::uint64_t nEdge = model.GetIDs(nEdgeType).front();
    const std::uint64_t nLayer = MakeLayer(model, "grid");
    APIAddObjectsLayers(h, {nLayer}, {nEdge});
    APISetObjectProperties(h, nEdge, "axis", false);
    APISetEdgesOrVerticesMarkedSmooth(h, {nEdge}, true);
    model.Line(Point3d(1, 0, 0), Point3d(1, 1, 0));
    for (const std::uint64_t nPart : model.GetIDs(nEdgeType))
    {
        Point3d a;
        Point3d b;
        std::string sName;
        bool bFlag = false;
        APIGetEdgePointsReadOnly(h, nPart, a, b);
        const bool bOnAxis = a.y == 0.0 && b.y == 0.0;
        APIGetObjectPropertiesReadOnly(h, nPart, sName, bFlag);
        EXPECT_EQ(GetLayers(model, nPart), bOnAxis ? IDs{nLayer} : IDs{});
        EXPECT_EQ(sName, bOnAxis ? "axis" : "");
        EXPECT_EQ(model.IsSmooth(nPart), bOnAxis);
    }
    ExpectSound(model);
    Delete(model, {model.GetIDs(nEdgeType).back()});
    for (const std::uint64_t nPart : model.GetIDs(nEdgeType))
        EXPECT_EQ(GetLayers(model, nPart), IDs{nLayer});
    ExpectUndoRedoRestores(model);
}

TEST(DressOfParts, IsMergedWithTheFaces)
{
    TwoSquares model;
    const std::uint64_t h = model.GetID();
    const std::uint64_t nBetween = model.Divide();
    const IDs aBefore = model.GetIDs(nFaceType);
    Delete(model, {nBetween});
    ASSERT_EQ(model.Count(nFaceType), 1u);
    const std::uint64_t nKept = model.GetIDs(nFaceType).front();
    const std::uint64_t nGone = aBefore[0] == nKept ? aBefore[1] : aBefore[0];
    APIUndoHistory(h, true);

    const std::uint64_t nRed = MakeMaterial(model, {255, 0, 0, 255});
    const std::uint64_t nGreen = MakeMaterial(model, {0, 255, 0, 255});
    const std::uint64_t nBlue = MakeMaterial(model, {0, 0, 255, 255});
    const std::uint64_t nShown = MakeLayer(model, "shown");
    const std::uint64_t nOtherShown = MakeLayer(model, "other");
    const std::uint64_t nHidden = MakeLayer(model, "hidden", false);
    APISetObjectsMaterial(h, {nKept}, nRed);
    APISetObjectsMaterial(h, {nGone}, nGreen);
    APISetFaceBacksideMaterial(h, {nGone}, nBlue);
    APIAddObjectsLayers(h, {nShown}, {nKept});
    APIAddObjectsLayers(h, {nOtherShown, nHidden}, {nGone});
    SetValue(model, nKept, "key", "kept");
    SetValue(model, nGone, "key", "gone");
    SetValue(model, nGone, "other", "gone");
    ExpectSound(model);
    Delete(model, {nBetween});

    EXPECT_EQ(GetMaterial(model, nKept), nRed);
    EXPECT_EQ(GetMaterial(model, nKept, true), nBlue);
    // A second layer that is shown would say nothing new; one that is hidden does.
    EXPECT_EQ(GetLayers(model, nKept), (IDs{nShown, nHidden}));
    EXPECT_EQ(GetKeyedValues(model, nKept), (std::set<std::string>{"key=kept", "other=gone"}));
    EXPECT_EQ(model.Count(nStringAttributeType), 2u); // what only the other had is gone with it
    bool bUsed = true;
    APIIsMaterialUsedReadOnly(h, nGreen, bUsed);
    EXPECT_FALSE(bUsed);
    ExpectUndoRedoRestores(model);
}

TEST(DressOfParts, LeavesNoOwnersWhereFacesDie)
{
    DressedModel model;
    Delete(model, model.GetIDs(nEdgeType));
    EXPECT_EQ(model.Count(nFaceType), 0u);
    EXPECT_EQ(model.Count(nStringAttributeType), 0u);
    EXPECT_EQ(model.Count(nMaterialAttributeType), 3u); // carried by their materials
    ExpectUndoRedoRestores(model);
}
} // namespace QRV
