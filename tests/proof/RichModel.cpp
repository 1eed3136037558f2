#include "proof/RichModel.h"

#include <set>

namespace QRV
{
RichModel::RichModel()
{
    const std::uint64_t h = GetID();
    // A face with a hole and a face in it, an arc, and lines and a vertex that belong to nothing.
    Outline({{0, 0, 0}, {3, 0, 0}, {3, 2, 0}, {0, 2, 0}});
    Outline({{1, 0.5, 0}, {2, 0.5, 0}, {2, 1.5, 0}});
    Circle({5, 1, 0}, 0.5, UnitVector3d::kXDir, UnitVector3d::kYDir, 0.1);
    Line({0, 0, 1}, {1, 1, 1});
    Line({1, 1, 1}, {3, 1, 1});
    Vertex({3, 2, 1});

    std::uint64_t nSatellite = INVALID_ID;
    std::uint64_t nOther = INVALID_ID;
    const std::array<Point3d, 4> aCorners{Point3d(0, 0, 0), Point3d(1, 0, 0), Point3d(1, 1, 0), Point3d(0, 1, 0)};
    ExpectGood(
        APICreateSatelliteImageObject(h, "earth", INVALID_ID, 1, true, aCorners, {1, 2}, {3, 4}, {5, 6}, nSatellite));
    ExpectGood(APICreateEmptyBody(h, nOther));
    ExpectGood(APISetLocalCoordinateSystem(h, Transf3d::translation({1, 2, 3})));
    ExpectGood(APISetHalyxFamilyInformation(h, "a", "b", "c", "d"));
    ExpectGood(APISetOstrelModelInformation(h, "a", "b", "c", "d"));
    ExpectGood(APISetEdgesOrVerticesMarkedSmooth(h, {GetIDs(nEdgeType).front()}, true));
    ExpectGood(APICreateMaterial(h, {1, 2, 3, 255}, 1, 1, nTexture, nOther, "wood", "w", nullptr, nullptr));
    MakeLayer(*this, "roof");

    m_aDeadIDs = {Vertex({8, 8, 8}), MakeLayer(*this, "gone"), MakeMaterial(*this, {9, 9, 9, 255})};
    Delete(*this, m_aDeadIDs);
    EnsureRedo();
}

std::vector<nObjectType> RichModel::GetClasses() const
{
    std::set<nObjectType> aClasses;
    for (const std::uint64_t nID : GetIDs(nUnspecifiedType))
        aClasses.insert(GetHistory().GetObject(nID)->GetType());
    return {aClasses.begin(), aClasses.end()};
}

void RichModel::EnsureRedo() const
{
    std::uint64_t nVertex = INVALID_ID;
    if (GetHistory().CanRedo())
        return;
    ExpectGood(APICreateVertex(GetID(), {7, 7, 7}, nVertex));
    ExpectGood(APIUndoHistory(GetID()));
}
} // namespace QRV
