/// Makes up arguments for any exported call, mostly such as a host would pass to the model that stands.
#pragma once

#include <QRV/API.h>

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace QRV
{
/// What is wrong with a place of an argument on purpose.
enum class nHostile
{
    nNothing,
    nNaN,
    nInfinite,
    nMinusInfinite,
    nHuge,           ///< 1e31
    nEmpty,          ///< a list or text without anything, a pointer to nothing
    nUnknownID,      ///< no object and no step has ever had it
    nNoID,           ///< `INVALID_ID`
    nDeadID,         ///< of an object that was deleted
    nForeignID,      ///< of an object of another History
    nOtherClass,     ///< of an object of a given class
    nUnknownHistory, ///< for the id of a History
    nNoHistory,
    nOtherHistory
};

/// Where ids come from.
struct SourceModel
{
    std::uint64_t nHistoryID = INVALID_ID;
    std::vector<std::uint64_t> aDeadIDs;
    std::uint64_t nOtherHistoryID = INVALID_ID;
    std::uint64_t nForeignID = INVALID_ID;
};

class ArgumentSource
{
public:
    ArgumentSource(SourceModel model, std::uint64_t nSeed) : m_model(std::move(model)), m_nSeed(nSeed) {}

    /// No wild ids, every list filled, with objects of one class, and every pointer given: so there is much to attack
    /// in calls that would be good.
    void BePlain() { m_bPlain = true; }
    /// Results start empty and all are wanted, as in a replay; else they start as anything, or are not wanted.
    void StartResultsEmpty() { m_bResultsEmpty = true; }
    bool AreResultsEmpty() const { return m_bResultsEmpty; }
    /// Of all places that can be bad in this way, one, counted from 0 through all arguments, is. All else stays what
    /// the same seed gives without an attack.
    void Attack(nHostile nHow, std::size_t nPlace, nObjectType nClass = nUnspecifiedType)
    {
        m_attack = {nHow, nPlace, nClass};
    }
    /// The argument that the attack found, empty if there are fewer such places.
    std::string_view GetAttacked() const { return m_strAttacked; }
    /// The class that the name of an argument speaks of, 0 if of none.
    static nObjectType GetNamedClass(std::string_view strName);

    /// The value of the next argument. Chooses by its type and by what its name says of it.
    template <class T>
    T Argument(std::string_view strName)
    {
        BeginArgument(strName);
        return Make<T>();
    }
    /// The same for an argument that is a pointer, which may be null.
    template <class T>
    std::optional<T> OptionalArgument(std::string_view strName)
    {
        BeginArgument(strName);
        const bool bGiven = m_bPlain || Chance(0.6);
        if (Strikes({nHostile::nEmpty}) || !bGiven)
            return std::nullopt;
        return Make<T>();
    }
    /// What a result happens to hold before the call. No attack is made on it.
    template <class T>
    T Leftover(std::string_view strName)
    {
        BeginArgument(strName);
        const AttackOn attack = std::exchange(m_attack, {});
        T value = Make<T>();
        m_attack = attack;
        return value;
    }

private:
    struct AttackOn
    {
        nHostile nHow = nHostile::nNothing;
        std::size_t nPlace = 0;
        nObjectType nClass = nUnspecifiedType;
    };

    /// Chance starts anew, so that no argument hangs on what became of those before it.
    void BeginArgument(std::string_view strName);
    /// At a place that can be bad in these ways: whether it is to be.
    bool Strikes(std::initializer_list<nHostile> aWays);

    std::size_t Below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(m_random); }
    bool Chance(double dPart) { return std::uniform_real_distribution<double>(0, 1)(m_random) < dPart; }
    template <class T, std::size_t N>
    T OneOf(const std::array<T, N>& aValues)
    {
        return aValues[Below(N)];
    }
    bool IsNamed(std::initializer_list<std::string_view> aParts) const;

    double Number();
    /// The number, or what the attack puts in its place.
    double Spoiled(double d);
    Point3d Point();
    std::uint64_t Unsigned();
    std::uint64_t HistoryID();
    std::uint64_t ObjectID();
    std::uint64_t DeltaID();
    std::uint64_t DeadID();
    std::string Text();
    std::vector<char> Bytes();
    Transf3d Transform();
    UnitVector3d Direction();
    /// Live objects of the class that the argument's name speaks of; of all where it speaks of none.
    std::vector<std::uint64_t> GetCandidates(bool bOtherClass);
    std::size_t ListSize();

    template <class T>
    T Make()
    {
        if constexpr (std::is_same_v<T, bool>)
            return Chance(0.5);
        else if constexpr (std::is_floating_point_v<T>)
            return static_cast<T>(Number());
        else if constexpr (std::is_same_v<T, std::uint64_t>)
            return Unsigned();
        else if constexpr (std::is_enum_v<T> || std::is_same_v<T, std::uint8_t>)
            return static_cast<T>(Below(std::is_enum_v<T> ? 24 : 256));
        else if constexpr (std::is_integral_v<T>)
            return static_cast<T>(Below(5)) - T{2};
        else if constexpr (std::is_same_v<T, std::string>)
            return Text();
        else if constexpr (std::is_same_v<T, std::vector<char>>)
            return Bytes();
        else
            return MakeCompound(std::type_identity<T>{});
    }

    Point2d MakeCompound(std::type_identity<Point2d>) { return {Number(), Number()}; }
    Vector2d MakeCompound(std::type_identity<Vector2d>) { return {Number(), Number()}; }
    Point3d MakeCompound(std::type_identity<Point3d>) { return Point(); }
    Vector3d MakeCompound(std::type_identity<Vector3d>) { return Point().toVector3d(); }
    UnitVector3d MakeCompound(std::type_identity<UnitVector3d>) { return Direction(); }
    Line3d MakeCompound(std::type_identity<Line3d>) { return {Point(), Vector3d(Direction())}; }
    Plane MakeCompound(std::type_identity<Plane>) { return Plane{Direction(), Number()}; }
    Interval3d MakeCompound(std::type_identity<Interval3d>) { return {}; } // results only
    Transf3d MakeCompound(std::type_identity<Transf3d>) { return Transform(); }
    Color MakeCompound(std::type_identity<Color>)
    {
        return {Make<std::uint8_t>(), Make<std::uint8_t>(), Make<std::uint8_t>(), 255};
    }
    ObjectHistoryID MakeCompound(std::type_identity<ObjectHistoryID>)
    {
        const std::uint64_t nHistoryID = HistoryID();
        return {nHistoryID, ObjectID()};
    }
    GroupInstancePath MakeCompound(std::type_identity<GroupInstancePath>)
    {
        return GroupInstancePath(m_model.nHistoryID, ObjectID());
    }
    Result MakeCompound(std::type_identity<Result>) { return {}; }
    template <class Signature>
    std::function<Signature> MakeCompound(std::type_identity<std::function<Signature>>)
    {
        return {};
    }
    template <class A, class B>
    std::pair<A, B> MakeCompound(std::type_identity<std::pair<A, B>>)
    {
        A first = Make<A>();
        return {std::move(first), Make<B>()};
    }
    template <class T, std::size_t N>
    std::array<T, N> MakeCompound(std::type_identity<std::array<T, N>>)
    {
        std::array<T, N> aValues;
        for (T& value : aValues)
            value = Make<T>();
        return aValues;
    }
    template <class T>
    std::vector<T> MakeCompound(std::type_identity<std::vector<T>>)
    {
        std::vector<T> aValues(ListSize());
        for (std::size_t i = 0; i < aValues.size(); ++i)
            aValues[i] = Make<T>();
        return aValues;
    }
    template <class T>
    std::set<T> MakeCompound(std::type_identity<std::set<T>>)
    {
        return {};
    }

    SourceModel m_model;
    std::uint64_t m_nSeed;
    std::minstd_rand m_random;
    bool m_bPlain = false;
    bool m_bResultsEmpty = false;
    AttackOn m_attack;
    std::size_t m_nPlaces = 0; ///< passed that the attack could have struck
    std::string_view m_strAttacked;
    std::size_t m_nParameter = 0;
    std::string_view m_strName;
    nObjectType m_nAnyClass = nUnspecifiedType; ///< of the objects of an argument whose name speaks of none, when plain
};
} // namespace QRV
