/// What a field of each value type does in an archive, in a comparison, in a copy and in a size.
#pragma once

#include "archive/IArchive.h"
#include "model/Object.h"
#include "model/ObjectPairing.h"
#include "model/SharedObjectSet.h"

#include <array>
#include <string>
#include <type_traits>
#include <utility>

namespace QRV
{
namespace FieldValue
{
template <class T>
concept ObjectPointer = std::is_pointer_v<T> && std::is_base_of_v<Object, std::remove_pointer_t<T>>;

// --- saved form: every overload gives the archive's word
// A line for each type, so that they read as a table.
// clang-format off

inline bool Write(IArchive& archive, bool b, const char* pName) { return archive.WriteBool(b, pName); }
inline bool Write(IArchive& archive, std::uint64_t n, const char* pName) { return archive.WriteID(n, pName); }
inline bool Write(IArchive& archive, double d, const char* pName) { return archive.WriteDouble(d, pName); }
inline bool Write(IArchive& archive, float f, const char* pName) { return archive.WriteFloat(f, pName); }
template <class T>
requires std::is_enum_v<T>
bool Write(IArchive& archive, T n, const char* pName)
{
    return archive.WriteID(static_cast<std::uint64_t>(n), pName);
}
inline bool Write(IArchive& archive, const Color& color, const char* pName) { return archive.WriteColor(color, pName); }
inline bool Write(IArchive& archive, const Transf3d& t, const char* pName) { return archive.WriteTransf3d(t, pName); }
inline bool Write(IArchive& archive, const std::string& s, const char* pName) { return archive.WriteString(s, pName); }
inline bool Write(IArchive& archive, const Point3d& p, const char* pName) { return archive.WritePoint3d(p, pName); }
inline bool Write(IArchive& archive, const Vector3d& v, const char* pName) { return archive.WriteVector3d(v, pName); }
inline bool Write(IArchive& archive, const UnitVector3d& v, const char* pName)
{
    return archive.WriteUnitVector3d(v, pName);
}
inline bool Write(IArchive& archive, const Interval3d& box, const char* pName)
{
    return archive.WriteInterval3d(box, pName);
}
/// A plane goes out as normal and constant, under two names derived from the one given.
bool Write(IArchive& archive, const Plane& plane, const char* pName);
template <ObjectPointer T>
bool Write(IArchive& archive, T pObject, const char* pName)
{
    return archive.WriteObject(pObject, pName);
}
bool WriteList(IArchive& archive, const std::vector<Object*>& aObjects, const char* pName);
template <ObjectPointer T>
bool Write(IArchive& archive, const std::vector<T>& aObjects, const char* pName)
{
    return WriteList(archive, std::vector<Object*>(aObjects.begin(), aObjects.end()), pName);
}
template <class T, class Key>
bool Write(IArchive& archive, const SharedSet<T*, Key>& aObjects, const char* pName)
{
    return WriteList(archive, std::vector<Object*>(aObjects.begin(), aObjects.end()), pName);
}

/// Each point goes out under the name with its place behind it.
bool Write(IArchive& archive, const std::array<Point3d, 4>& aPoints, const char* pName);
/// The count, then each pair.
template <class First, class Second>
bool Write(IArchive& archive, const std::vector<std::pair<First, Second>>& aPairs, const char* pName)
{
    bool bGood = archive.WriteID(aPairs.size(), pName);
    for (const auto& [first, second] : aPairs)
        bGood = bGood && Write(archive, first, "key") && Write(archive, second, "value");
    return bGood;
}

inline bool Read(IArchive& archive, bool& b) { return archive.ReadBool(b); }
inline bool Read(IArchive& archive, std::uint64_t& n) { return archive.ReadID(n); }
inline bool Read(IArchive& archive, double& d) { return archive.ReadDouble(d); }
inline bool Read(IArchive& archive, float& f) { return archive.ReadFloat(f); }
template <class T>
requires std::is_enum_v<T>
bool Read(IArchive& archive, T& n)
{
    std::uint64_t nRead = 0;
    const bool bGood = archive.ReadID(nRead);
    if (bGood)
        n = static_cast<T>(nRead);
    return bGood;
}
inline bool Read(IArchive& archive, Color& color) { return archive.ReadColor(color); }
inline bool Read(IArchive& archive, Transf3d& transform) { return archive.ReadTransf3d(transform); }
inline bool Read(IArchive& archive, std::string& str) { return archive.ReadString(str); }
inline bool Read(IArchive& archive, Point3d& p) { return archive.ReadPoint3d(p); }
inline bool Read(IArchive& archive, Vector3d& v) { return archive.ReadVector3d(v); }
inline bool Read(IArchive& archive, UnitVector3d& v) { return archive.ReadUnitVector3d(v); }
inline bool Read(IArchive& archive, Interval3d& box) { return archive.ReadInterval3d(box); }
bool Read(IArchive& archive, Plane& plane);
template <ObjectPointer T>
bool Read(IArchive& archive, T& pObject)
{
    Object* pRead = nullptr;
    const bool bGood = archive.ReadObject(pRead);
    pObject = dynamic_cast<T>(pRead);
    return bGood;
}
/// Reads a list of references; objects of another class than `T` are left out.
template <ObjectPointer T>
bool Read(IArchive& archive, std::vector<T>& aObjects)
{
    std::vector<Object*> aRead;
    const bool bGood = archive.ReadObjects(aRead);
    aObjects.clear();
    for (Object* pRead : aRead)
        if (auto* pObject = dynamic_cast<T>(pRead))
            aObjects.push_back(pObject);
    return bGood;
}
template <class T, class Key>
bool Read(IArchive& archive, SharedSet<T*, Key>& aObjects)
{
    std::vector<T*> aRead;
    const bool bGood = Read(archive, aRead);
    aObjects.clear();
    for (T* pObject : aRead)
        aObjects.Insert(pObject);
    return bGood;
}

bool Read(IArchive& archive, std::array<Point3d, 4>& aPoints);
template <class First, class Second>
bool Read(IArchive& archive, std::vector<std::pair<First, Second>>& aPairs)
{
    std::uint64_t nCount = 0;
    bool bGood = archive.ReadID(nCount);
    aPairs.clear();
    // The count may lie: the list grows by what is there.
    for (std::uint64_t n = 0; bGood && n < nCount; ++n)
    {
        std::pair<First, Second> read{};
        bGood = Read(archive, read.first) && Read(archive, read.second);
        if (bGood)
            aPairs.push_back(std::move(read));
    }
    return bGood;
}

// --- sizes

inline std::size_t GetSavedSize(bool) { return 1; }
inline std::size_t GetSavedSize(std::uint64_t) { return 4; }
inline std::size_t GetSavedSize(double) { return 8; }
inline std::size_t GetSavedSize(float) { return 4; }
template <class T>
requires std::is_enum_v<T>
std::size_t GetSavedSize(T)
{
    return 4;
}
inline std::size_t GetSavedSize(const Color&) { return 4; }
inline std::size_t GetSavedSize(const Transf3d&) { return 128; }
inline std::size_t GetSavedSize(const std::array<Point3d, 4>&) { return 96; }
inline std::size_t GetSavedSize(const std::string& str) { return 4 + str.size(); }
inline std::size_t GetSavedSize(const Point3d&) { return 24; }
inline std::size_t GetSavedSize(const Vector3d&) { return 24; }
inline std::size_t GetSavedSize(const UnitVector3d&) { return 24; }
inline std::size_t GetSavedSize(const Interval3d&) { return 48; }
inline std::size_t GetSavedSize(const Plane&) { return 32; }
template <ObjectPointer T>
std::size_t GetSavedSize(T)
{
    return 4;
}
template <class T>
std::size_t GetSavedSize(const std::vector<T>& a)
{
    return 4 + 4 * a.size();
}
template <class First, class Second>
std::size_t GetSavedSize(const std::vector<std::pair<First, Second>>& aPairs)
{
    std::size_t nSize = 4;
    for (const auto& [first, second] : aPairs)
        nSize += GetSavedSize(first) + GetSavedSize(second);
    return nSize;
}
template <class T, class Key>
std::size_t GetSavedSize(const SharedSet<T, Key>& a)
{
    return 4 + 4 * a.size();
}

/// Bytes that the value holds outside itself.
template <class T>
std::size_t GetHeapSize(const T& value)
{
    if constexpr (requires { value.capacity(); })
        return value.capacity() * sizeof(typename T::value_type);
    else if constexpr (requires { value.GetSizeInBytes(); })
        return value.GetSizeInBytes();
    else if constexpr (requires { value->GetSizeInBytes(); } && !std::is_pointer_v<T>)
        return value ? value->GetSizeInBytes() : 0;
    else
        return 0;
}

// clang-format on
// --- references: plain values refer to nothing

template <class T>
Object* FindReplacement(T* pObject, const ObjectMap& map)
{
    const auto it = pObject ? map.find(pObject) : map.end();
    return it == map.end() ? pObject : it->second;
}

/// A list of pairs of a plain value and an object.
template <class T>
concept KeyedObjects = ObjectPointer<std::decay_t<decltype(std::declval<const T&>().begin()->second)>>;

template <class T>
bool RefersTo(const T& value, const ObjectMap& map)
{
    if constexpr (ObjectPointer<T>)
        return FindReplacement(value, map) != value;
    else if constexpr (KeyedObjects<T>)
    {
        for (const auto& [key, pObject] : value)
            if (FindReplacement(pObject, map) != pObject)
                return true;
        return false;
    }
    else if constexpr (requires { requires ObjectPointer<std::decay_t<decltype(*value.begin())>>; })
    {
        for (auto* pObject : value)
            if (FindReplacement(pObject, map) != pObject)
                return true;
        return false;
    }
    else
        return false;
}

template <class T>
void Replace(T& value, const ObjectMap& map)
{
    if constexpr (ObjectPointer<T>)
        value = dynamic_cast<T>(FindReplacement(value, map));
    else if constexpr (KeyedObjects<T>)
        for (auto& [key, pObject] : value)
            pObject = dynamic_cast<std::decay_t<decltype(pObject)>>(FindReplacement(pObject, map));
    else if constexpr (requires { requires ObjectPointer<std::decay_t<decltype(*value.begin())>>; })
    {
        using Pointer = std::decay_t<decltype(*value.begin())>;
        T replaced;
        for (auto* pObject : value)
            if (auto* pNew = dynamic_cast<Pointer>(FindReplacement(pObject, map)))
            {
                if constexpr (requires { replaced.push_back(pNew); })
                    replaced.push_back(pNew);
                else
                    replaced.Insert(pNew);
            }
        value.swap(replaced);
    }
}

// --- equality; references through the pairing

/// Element by element.
inline bool AreSame(const Transf3d& a, const Transf3d& b)
{
    for (std::size_t n = 0; n < 16; ++n)
        if (a(n / 4, n % 4) != b(n / 4, n % 4))
            return false;
    return true;
}

template <class T>
bool AreEquivalent(const T& a, const T& b, ObjectPairing& pairing)
{
    if constexpr (ObjectPointer<T>)
        return pairing.Pair(a, b);
    else if constexpr (KeyedObjects<T>)
    {
        bool bEqual = a.size() == b.size();
        for (std::size_t i = 0; bEqual && i < a.size(); ++i)
            bEqual = a[i].first == b[i].first && pairing.Pair(a[i].second, b[i].second);
        return bEqual;
    }
    else if constexpr (std::is_same_v<T, Transf3d>)
        return AreSame(a, b);
    else if constexpr (std::is_same_v<T, std::array<Point3d, 4>>)
    {
        for (std::size_t i = 0; i < a.size(); ++i)
            if (!AreEquivalent(a[i], b[i], pairing))
                return false;
        return true;
    }
    else if constexpr (requires { requires ObjectPointer<std::decay_t<decltype(*a.begin())>>; })
    {
        if (a.size() != b.size())
            return false;
        auto itB = b.begin();
        for (auto* pObject : a)
            if (!pairing.Pair(pObject, *itB++))
                return false;
        return true;
    }
    else if constexpr (std::is_same_v<T, Point3d> || std::is_same_v<T, Vector3d> || std::is_same_v<T, UnitVector3d>)
        return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
    else if constexpr (std::is_same_v<T, Plane>)
        return AreEquivalent(a.normal, b.normal, pairing) && a.d == b.d;
    else if constexpr (std::is_same_v<T, Interval3d>)
        return AreEquivalent(a.lower, b.lower, pairing) && AreEquivalent(a.upper, b.upper, pairing);
    else
        return a == b;
}
} // namespace FieldValue
} // namespace QRV
