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

constexpr std::uint64_t kUnknownID = 987654321;

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

nObjectType ArgumentSource::GetNamedClass(std::string_view strName)
{
    const std::string strLower = ToLower(strName);
    const auto itWord =
        std::find_if(kWords.begin(), kWords.end(),
                     [&](const Word& word) { return strLower.find(word.strWord) != std::string::npos; });
    return itWord == kWords.end() ? nUnspecifiedType : itWord->nType;
}

void ArgumentSource::BeginArgument(std::string_view strName)
{
    m_strName = strName;
    std::seed_seq seeds{static_cast<std::uint32_t>(m_nSeed), static_cast<std::uint32_t>(m_nSeed >> 32),
                        static_cast<std::uint32_t>(m_nParameter++)};
    m_random.seed(seeds);
    m_nAnyClass = static_cast<nObjectType>(1 + Below(nPointMeshType));
}

bool ArgumentSource::Strikes(std::initializer_list<nHostile> aWays)
{
    if (std::find(aWays.begin(), aWays.end(), m_attack.nHow) == aWays.end() || m_nPlaces++ != m_attack.nPlace)
        return false;
    m_strAttacked = m_strName;
    return true;
}

double ArgumentSource::Number()
{
    if (IsNamed({"angle"}))
        return Spoiled(OneOf<double, 4>({0.0, 1.0, std::numbers::pi, 2 * std::numbers::pi}));
    if (IsNamed({"tol", "accuracy"}))
        return Spoiled(OneOf<double, 3>({0.1, 0.01, 0.3}));
    if (IsNamed({"scale"})) // of a texture, where the audit minds others, or of a file
        return Spoiled(OneOf<double, 3>({1.0, 0.25, 2.0}));
    return Spoiled(OneOf<double, 8>({1.0, 0.5, 2.0, 0.25, 3.0, 1.5, 0.0, -1.0}));
}

double ArgumentSource::Spoiled(double d)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    if (!Strikes({nHostile::nNaN, nHostile::nInfinite, nHostile::nMinusInfinite, nHostile::nHuge}))
        return d;
    return m_attack.nHow == nHostile::nNaN        ? std::numeric_limits<double>::quiet_NaN()
           : m_attack.nHow == nHostile::nInfinite ? kInf
           : m_attack.nHow == nHostile::nHuge     ? 1e31
                                                  : -kInf;
}

Point3d ArgumentSource::Point()
{
    // A coarse grid, so that lines meet each other's ends and middles; a few places off it.
    Point3d p(double(Below(4)), double(Below(3)), Chance(0.7) ? 0.0 : 1.0);
    if (Chance(0.05))
        p = {0.333333 * double(Below(9)), 0.25 * double(Below(9)), 0.5 * double(Below(3))};
    for (std::size_t n = 0; n < 3; ++n)
        p[n] = Spoiled(p[n]);
    return p;
}

UnitVector3d ArgumentSource::Direction()
{
    Vector3d v = OneOf<Vector3d, 3>({Vector3d::kXDir, Vector3d::kYDir, Vector3d::kZDir});
    if (Chance(0.3))
        v.negate();
    for (std::size_t n = 0; n < 3; ++n)
        v[n] = Spoiled(v[n]);
    return UnitVector3d(v, false);
}

Transf3d ArgumentSource::Transform()
{
    Transf3d transform = Chance(0.5) ? Transf3d() : Transf3d::translation(Vector3d(1, double(Below(3)), 0));
    for (std::size_t nRow = 0; nRow < 4; ++nRow)
        for (std::size_t nColumn = 0; nColumn < 4; ++nColumn)
            transform.setValue(nRow, nColumn, Spoiled(transform(nRow, nColumn)));
    return transform;
}

std::size_t ArgumentSource::ListSize()
{
    const std::size_t nSize = m_bPlain ? 2 + Below(3) : Below(5) + (Chance(0.9) ? 1 : 0);
    return Strikes({nHostile::nEmpty}) ? 0 : nSize;
}

std::string ArgumentSource::Text()
{
    if (Strikes({nHostile::nEmpty}))
        return "";
    if (IsNamed({"path"}))
        return "/dev/null";
    return OneOf<std::string, 8>(
        {"a", "b", "Wall", "ground \"floor\"", "\xc3\xa9tage\\n", "two\nlines\t\x01", "]}),; \\", ""});
}

std::vector<char> ArgumentSource::Bytes()
{
    if (Strikes({nHostile::nEmpty}))
        return {};
    // The least that counts as an image.
    return {'\xff', '\xd8', '\xff', '\xe0', static_cast<char>('a' + Below(3)), 0, 0, 0};
}

std::uint64_t ArgumentSource::Unsigned()
{
    if (IsNamed({"historyid"}))
        return HistoryID();
    if (IsNamed({"delta"}) || m_strName == "nFrom" || m_strName == "nTo")
        return DeltaID();
    if (IsNamed({"flags", "mask", "set", "clear", "segments", "fromend", "pixel", "index", "offset"}))
        return Below(4);
    return ObjectID();
}

std::uint64_t ArgumentSource::HistoryID()
{
    if (!Strikes({nHostile::nUnknownHistory, nHostile::nNoHistory, nHostile::nOtherHistory}))
        return m_model.nHistoryID;
    return m_attack.nHow == nHostile::nUnknownHistory ? kUnknownID
           : m_attack.nHow == nHostile::nNoHistory    ? INVALID_ID
                                                      : m_model.nOtherHistoryID;
}

std::uint64_t ArgumentSource::DeltaID()
{
    if (Strikes({nHostile::nUnknownID, nHostile::nNoID}))
        return m_attack.nHow == nHostile::nNoID ? INVALID_ID : kUnknownID;
    std::vector<std::uint64_t> aDeltas;
    APIGetAllHistoryDeltasReadOnly(m_model.nHistoryID, aDeltas);
    if (aDeltas.empty() || Chance(0.2))
        return Chance(0.5) ? INVALID_ID : Below(8);
    return aDeltas[Below(aDeltas.size())];
}

std::vector<std::uint64_t> ArgumentSource::GetCandidates(bool bOtherClass)
{
    const nObjectType nType = GetNamedClass(m_strName);
    if (m_bPlain && nType == nUnspecifiedType)
        return GetLive(m_model.nHistoryID, m_nAnyClass);
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
    return m_model.aDeadIDs.empty() ? kUnknownID : m_model.aDeadIDs[Below(m_model.aDeadIDs.size())];
}

std::uint64_t ArgumentSource::ObjectID()
{
    using enum nHostile;
    if (Strikes({nUnknownID, nNoID, nDeadID, nForeignID, nOtherClass}))
        switch (m_attack.nHow)
        {
        case nNoID:
            return INVALID_ID;
        case nDeadID:
            return DeadID();
        case nForeignID:
            return m_model.nForeignID;
        case nOtherClass:
            return GetLive(m_model.nHistoryID, m_attack.nClass).front();
        default:
            return kUnknownID;
        }
    if (m_bPlain && Chance(0.1))
        return INVALID_ID;
    const bool bWild = !m_bPlain && Chance(0.1);
    if (bWild && Chance(0.5))
        return Chance(0.3) ? INVALID_ID : DeadID();
    const std::vector<std::uint64_t> aIDs = GetCandidates(bWild);
    return aIDs.empty() ? INVALID_ID : aIDs[Below(aIDs.size())];
}
} // namespace QRV
