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
/// What is wrong with an argument on purpose.
enum class nHostile
{
    nNothing,
    nNaN,
    nInfinite,
    nHuge,      ///< numbers of 1e31
    nEmpty,     ///< lists and texts without anything, pointers to nothing
    nUnknownID, ///< no object, step or History has ever had it
    nDeadID,
    nWrongClass
};

/// Where ids come from.
struct SourceModel
{
    std::uint64_t nHistoryID = INVALID_ID;
    std::vector<std::uint64_t> aDeadIDs;
};

class ArgumentSource
{
public:
    ArgumentSource(SourceModel model, std::uint64_t nSeed) : m_model(std::move(model)), m_random(nSeed) {}

    /// How often an id is dead, unknown or of another class than its name says.
    void SetWildness(double dPart) { m_dWild = dPart; }
    /// Results start empty and all are wanted, as in a replay; else they start as anything, or are not wanted.
    void StartResultsEmpty() { m_bResultsEmpty = true; }
    bool AreResultsEmpty() const { return m_bResultsEmpty; }
    /// One argument, counted from 0, is bad on purpose.
    void Attack(std::size_t nParameter, nHostile nHow) { m_attack = {nParameter, nHow}; }
    /// The attack found something to spoil in its argument.
    bool HasAttacked() const { return m_bAttacked; }

    /// The value of the next argument. Chooses by its type and by what its name says of it.
    template <class T>
    T Argument(std::string_view strName)
    {
        m_strName = strName;
        T value = Make<T>();
        ++m_nParameter;
        return value;
    }

    /// Whether the next argument, a pointer, points to something.
    bool IsGiven()
    {
        if (IsUnderAttack(nHostile::nEmpty))
            return m_bAttacked = true, false;
        return Chance(0.6);
    }

private:
    struct AttackOn
    {
        std::size_t nParameter = 0;
        nHostile nHow = nHostile::nNothing;
    };

    std::size_t Below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(m_random); }
    bool Chance(double dPart) { return std::uniform_real_distribution<double>(0, 1)(m_random) < dPart; }
    template <class T, std::size_t N>
    T OneOf(const std::array<T, N>& aValues)
    {
        return aValues[Below(N)];
    }
    bool IsUnderAttack(nHostile nHow) const { return m_attack.nHow == nHow && m_attack.nParameter == m_nParameter; }
    bool IsNamed(std::initializer_list<std::string_view> aParts) const;

    double Number();
    Point3d Point();
    std::uint64_t Unsigned();
    std::uint64_t ObjectID();
    std::uint64_t DeltaID();
    std::uint64_t DeadID();
    std::string Text();
    std::vector<char> Bytes();
    Transf3d Transform();
    UnitVector3d Direction();
    /// Of the class that the argument's name speaks of; of all where it speaks of none.
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
    Plane MakeCompound(std::type_identity<Plane>) { return Plane(Direction(), Number()); }
    Interval3d MakeCompound(std::type_identity<Interval3d>) { return {}; } // results only
    Transf3d MakeCompound(std::type_identity<Transf3d>) { return Transform(); }
    Color MakeCompound(std::type_identity<Color>)
    {
        return {Make<std::uint8_t>(), Make<std::uint8_t>(), Make<std::uint8_t>(), 255};
    }
    ObjectHistoryID MakeCompound(std::type_identity<ObjectHistoryID>) { return {m_model.nHistoryID, ObjectID()}; }
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
    std::mt19937_64 m_random;
    double m_dWild = 0.1;
    bool m_bResultsEmpty = false;
    AttackOn m_attack;
    bool m_bAttacked = false;
    std::size_t m_nParameter = 0;
    std::string_view m_strName;
};
} // namespace QRV
