#include "proof/ArgumentSource.h"

#include <cctype>
#include <limits>
#include <numbers>

namespace QRV
{
namespace
{
std::vector<std::uint64_t> GetLive(std::uint64_t nHistoryID, nObjectType nType)
{
    std::vector<std::uint64_t> aIDs;
    APIGetAllObjectsByTypeReadOnly(nHistoryID, nType, aIDs);
    return aIDs;
}

/// Words in the names of arguments, and the class that they speak of.
struct Word
{
    std::string_view strWord;
    nObjectType nType;
};
constexpr std::array<Word, 17> kWords{{{"facet", nUnspecifiedType},
                                       {"face", nFaceType},
                                       {"coedge", nCoedgeType},
                                       {"edge", nEdgeType},
                                       {"loop", nLoopType},
                                       {"vert", nVertexType},
                                       {"bod", nBodyType},
                                       {"lump", nLumpType},
                                       {"shell", nShellType},
                                       {"material", nMaterialType},
                                       {"texture", nTextureType},
                                       {"layer", nLayerType},
                                       {"level", nLevelType},
                                       {"image", nImageType},
                                       {"attribute", nStringAttributeType},
                                       {"group", nGroupType},
                                       {"instance", nInstanceType}}};

std::string ToLower(std::string_view strText)
{
    std::string strLower(strText);
    for (char& c : strLower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return strLower;
}
} // namespace

bool ArgumentSource::IsNamed(std::initializer_list<std::string_view> aParts) const
{
    const std::string strName = ToLower(m_strName);
    return std::any_of(aParts.begin(), aParts.end(),
                       [&](std::string_view strPart) { return strName.find(strPart) != std::string::npos; });
}

double ArgumentSource::Number()
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    for (const auto& [nHow, d] : {std::pair(nHostile::nNaN, std::numeric_limits<double>::quiet_NaN()),
                                  std::pair(nHostile::nInfinite, kInf), std::pair(nHostile::nHuge, 1e31)})
        if (IsUnderAttack(nHow))
            return m_bAttacked = true, d;
    if (IsNamed({"angle"}))
        return OneOf<double, 4>({0.0, 1.0, std::numbers::pi, 2 * std::numbers::pi});
    if (IsNamed({"tol", "accuracy"}))
        return OneOf<double, 3>({0.1, 0.01, 0.3});
    return OneOf<double, 8>({1.0, 0.5, 2.0, 0.25, 3.0, 1.5, 0.0, -1.0});
}

Point3d ArgumentSource::Point()
{
    if (m_attack.nParameter == m_nParameter && m_attack.nHow != nHostile::nNothing)
    {
        const double dBad = Number();
        if (m_bAttacked)
            return OneOf<Point3d, 3>({Point3d(dBad, 1, 0), Point3d(1, dBad, 0), Point3d(1, 0, dBad)});
    }
    // A coarse grid, so that lines meet each other's ends and middles; a few places off it.
    if (Chance(0.05))
        return {0.333333 * double(Below(9)), 0.25 * double(Below(9)), 0.5 * double(Below(3))};
    return {double(Below(4)), double(Below(3)), Chance(0.7) ? 0.0 : 1.0};
}

UnitVector3d ArgumentSource::Direction()
{
    if (m_attack.nParameter == m_nParameter)
        if (const double d = Number(); m_bAttacked)
            return UnitVector3d(Vector3d(d, 0, 1), false);
    const UnitVector3d axis = OneOf<UnitVector3d, 3>({UnitVector3d::kXDir, UnitVector3d::kYDir, UnitVector3d::kZDir});
    return Chance(0.7) ? axis : -axis;
}

Transf3d ArgumentSource::Transform()
{
    if (m_attack.nParameter == m_nParameter)
        if (const double d = Number(); m_bAttacked)
            return Transf3d::translation(Vector3d(d, 0, 0));
    return Chance(0.5) ? Transf3d() : Transf3d::translation(Point().toVector3d());
}

std::size_t ArgumentSource::ListSize()
{
    if (IsUnderAttack(nHostile::nEmpty))
        return m_bAttacked = true, 0;
    return Below(5) + (Chance(0.9) ? 1 : 0);
}

std::string ArgumentSource::Text()
{
    if (IsUnderAttack(nHostile::nEmpty))
        return m_bAttacked = true, "";
    if (IsNamed({"path"}))
        return "/dev/null";
    return OneOf<std::string, 8>(
        {"a", "b", "Wall", "ground \"floor\"", "\xc3\xa9tage\\n", "two\nlines\t\x01", "]}),; \\", ""});
}

std::vector<char> ArgumentSource::Bytes()
{
    if (IsUnderAttack(nHostile::nEmpty))
        return m_bAttacked = true, std::vector<char>{};
    // The least that counts as an image.
    return {'\xff', '\xd8', '\xff', '\xe0', static_cast<char>('a' + Below(3)), 0, 0, 0};
}

std::uint64_t ArgumentSource::Unsigned()
{
    if (IsNamed({"historyid"}))
    {
        if (IsUnderAttack(nHostile::nUnknownID))
            return m_bAttacked = true, 987654321;
        return m_model.nHistoryID;
    }
    if (IsNamed({"delta"}) || m_strName == "nFrom" || m_strName == "nTo")
        return DeltaID();
    if (IsNamed({"flags", "mask", "set", "clear", "segments", "fromend", "pixel", "index", "offset"}))
        return Below(4);
    return ObjectID();
}

std::uint64_t ArgumentSource::DeltaID()
{
    if (IsUnderAttack(nHostile::nUnknownID))
        return m_bAttacked = true, 987654321;
    std::vector<std::uint64_t> aDeltas;
    APIGetAllHistoryDeltasReadOnly(m_model.nHistoryID, aDeltas);
    if (aDeltas.empty() || Chance(0.2))
        return Chance(0.5) ? INVALID_ID : Below(8);
    return aDeltas[Below(aDeltas.size())];
}

std::vector<std::uint64_t> ArgumentSource::GetCandidates(bool bOtherClass)
{
    const std::string strName = ToLower(m_strName);
    const auto itWord = std::find_if(kWords.begin(), kWords.end(),
                                     [&](const Word& word) { return strName.find(word.strWord) != std::string::npos; });
    const nObjectType nType = itWord == kWords.end() ? nUnspecifiedType : itWord->nType;
    std::vector<std::uint64_t> aIDs = GetLive(m_model.nHistoryID, bOtherClass ? nUnspecifiedType : nType);
    if (bOtherClass && nType == nUnspecifiedType)
        return {};
    if (bOtherClass)
        std::erase_if(aIDs,
                      [&](std::uint64_t nID)
                      {
                          nObjectType nOther = nUnspecifiedType;
                          APIGetObjectTypeReadOnly(m_model.nHistoryID, nID, nOther);
                          return nOther == nType;
                      });
    return aIDs;
}

std::uint64_t ArgumentSource::DeadID()
{
    return m_model.aDeadIDs.empty() ? 987654321 : m_model.aDeadIDs[Below(m_model.aDeadIDs.size())];
}

std::uint64_t ArgumentSource::ObjectID()
{
    if (IsUnderAttack(nHostile::nUnknownID))
        return m_bAttacked = true, 987654321;
    if (IsUnderAttack(nHostile::nDeadID))
        return m_bAttacked = !m_model.aDeadIDs.empty(), DeadID();
    const bool bOther = IsUnderAttack(nHostile::nWrongClass);
    const bool bWild = m_attack.nHow == nHostile::nNothing && Chance(m_dWild);
    if (bWild && Chance(0.5))
        return Chance(0.3) ? INVALID_ID : DeadID();
    const std::vector<std::uint64_t> aIDs = GetCandidates(bOther || bWild);
    if (aIDs.empty())
        return INVALID_ID;
    m_bAttacked |= bOther;
    return aIDs[Below(aIDs.size())];
}
} // namespace QRV
