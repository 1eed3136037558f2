#include "archive/BinaryFormatter.h"

#include "archive/ArchiveBase.inl"

#include <array>
#include <bit>
#include <concepts>
#include <limits>

namespace QRV
{
namespace
{
constexpr std::uint32_t kInvalidID32 = 0xffffffff;
constexpr std::uint32_t kLowestBadCount = 0xfffffffe;
constexpr std::size_t kLargestDamagedList = 65536; ///< elements that are set aside for a count that cannot be true

template <std::unsigned_integral T>
void AppendLittleEndian(std::string& strData, T n)
{
    std::array<char, sizeof(T)> bytes;
    for (char& byte : bytes)
    {
        byte = static_cast<char>(n & 0xff);
        n = static_cast<T>(std::uint64_t(n) >> 8);
    }
    strData.append(bytes.data(), bytes.size());
}

template <std::unsigned_integral T>
T GetLittleEndian(const char* pData)
{
    T n = 0;
    for (std::size_t i = sizeof(T); i-- > 0;)
        n = static_cast<T>(std::uint64_t(n) << 8 | static_cast<unsigned char>(pData[i]));
    return n;
}

double GetDouble(const char* pData)
{
    return std::bit_cast<double>(GetLittleEndian<std::uint64_t>(pData));
}
} // namespace

template class ArchiveBase_T<BinaryFormatter>;

bool BinaryFormatter::OpenList(std::size_t nSize, const char* pName)
{
    return nSize < kLowestBadCount && WriteUInt(static_cast<std::uint32_t>(nSize), pName);
}

bool BinaryFormatter::WriteUInt(std::uint32_t n, const char*)
{
    if (!m_pData)
        return false;
    AppendLittleEndian(*m_pData, n);
    m_nBytesWritten += sizeof(n);
    return true;
}

bool BinaryFormatter::WriteDoubles(const double* pNumbers, std::size_t nCount)
{
    if (!m_pData)
        return false;
    for (std::size_t i = 0; i < nCount; ++i)
        AppendLittleEndian(*m_pData, std::bit_cast<std::uint64_t>(pNumbers[i]));
    m_nBytesWritten += nCount * sizeof(double);
    return true;
}

bool BinaryFormatter::WriteObject(const Object* pObject, const char* pName)
{
    return WriteID(pObject ? pObject->GetID() : INVALID_ID, pName);
}

bool BinaryFormatter::WriteTransf3d(const Transf3d& transform, const char*)
{
    double aElements[16];
    for (std::size_t n = 0; n < 16; ++n)
        aElements[n] = transform(n / 4, n % 4);
    return WriteDoubles(aElements, 16);
}

bool BinaryFormatter::WriteVector3d(const Vector3d& v, const char*)
{
    const double aNumbers[]{v.x, v.y, v.z};
    return WriteDoubles(aNumbers, 3);
}

bool BinaryFormatter::WriteUnitVector3d(const UnitVector3d& v, const char* pName)
{
    return WriteVector3d(v, pName);
}

bool BinaryFormatter::WritePoint3d(const Point3d& p, const char*)
{
    const double aNumbers[]{p.x, p.y, p.z};
    return WriteDoubles(aNumbers, 3);
}

bool BinaryFormatter::WritePoint2d(const Point2d& p, const char*)
{
    const double aNumbers[]{p.x, p.y};
    return WriteDoubles(aNumbers, 2);
}

bool BinaryFormatter::WriteInterval3d(const Interval3d& box, const char* pName)
{
    return WritePoint3d(box.lower, pName) && WritePoint3d(box.upper, pName);
}

// As one number of 32 bits, the first member being the highest byte.
bool BinaryFormatter::WriteColor(const Color& color, const char* pName)
{
    return WriteUInt(
        std::uint32_t(color.r) << 24 | std::uint32_t(color.g) << 16 | std::uint32_t(color.b) << 8 | color.a, pName);
}

bool BinaryFormatter::WriteString(const std::string& str, const char* pName)
{
    if (str.size() > std::numeric_limits<std::uint32_t>::max() ||
        !WriteUInt(static_cast<std::uint32_t>(str.size()), pName))
        return false;
    m_pData->append(str);
    m_nBytesWritten += str.size();
    return true;
}

bool BinaryFormatter::WriteDouble(double d, const char*)
{
    return WriteDoubles(&d, 1);
}

bool BinaryFormatter::WriteFloat(float f, const char* pName)
{
    return WriteUInt(std::bit_cast<std::uint32_t>(f), pName);
}

bool BinaryFormatter::WriteID(std::uint64_t nID, const char* pName)
{
    return WriteUInt(static_cast<std::uint32_t>(nID), pName);
}

bool BinaryFormatter::WriteBool(bool b, const char*)
{
    if (!m_pData)
        return false;
    m_pData->push_back(b ? 1 : 0);
    ++m_nBytesWritten;
    return true;
}

bool BinaryFormatter::ReadUInt(std::uint32_t& n)
{
    if (GetRemaining() < sizeof(n))
        return false;
    n = GetLittleEndian<std::uint32_t>(m_input.data() + m_nReadPosition);
    m_nReadPosition += sizeof(n);
    return true;
}

template <std::size_t kCount>
bool BinaryFormatter::ReadDoubles(double (&aNumbers)[kCount])
{
    if (GetRemaining() < sizeof(aNumbers))
        return false;
    for (double& d : aNumbers)
    {
        d = GetDouble(m_input.data() + m_nReadPosition);
        m_nReadPosition += sizeof(d);
    }
    return true;
}

/// The list takes the size that its count tells, filled with `zero`, and then element by element what is there. A count
/// that the data cannot hold fails; a large one then sets no memory aside.
template <class T, class Read>
bool BinaryFormatter::ReadList(std::vector<T>& aElements, std::size_t nElementSize, const T& zero, Read read)
{
    aElements.clear();
    std::uint32_t nCount = 0;
    if (!ReadUInt(nCount) || nCount >= kLowestBadCount)
        return false;
    const bool bFits = nCount <= GetRemaining() / nElementSize;
    if (!bFits && nCount > kLargestDamagedList)
        return false;
    aElements.resize(nCount, zero);
    return std::ranges::all_of(aElements, read);
}

bool BinaryFormatter::ReadColors(std::vector<Color>& aColors)
{
    return ReadList(aColors, 4, Color{0, 0, 0, 0}, [&](Color& color) { return ReadColor(color); });
}

bool BinaryFormatter::ReadUInts(std::vector<std::uint32_t>& aNumbers)
{
    return ReadList(aNumbers, 4, std::uint32_t(0), [&](std::uint32_t& n) { return ReadUInt(n); });
}

bool BinaryFormatter::ReadFloats(std::vector<float>& aNumbers)
{
    return ReadList(aNumbers, 4, 0.0f, [&](float& f) { return ReadFloat(f); });
}

bool BinaryFormatter::ReadPoint3ds(std::vector<Point3d>& aPoints)
{
    return ReadList(aPoints, 24, Point3d(), [&](Point3d& p) { return ReadPoint3d(p); });
}

bool BinaryFormatter::ReadPoint2ds(std::vector<Point2d>& aPoints)
{
    return ReadList(aPoints, 16, Point2d(), [&](Point2d& p) { return ReadPoint2d(p); });
}

bool BinaryFormatter::ReadTransf3ds(std::vector<Transf3d>& aTransforms)
{
    return ReadList(aTransforms, 128, Transf3d(), [&](Transf3d& transform) { return ReadTransf3d(transform); });
}

bool BinaryFormatter::ReadTransf3d(Transf3d& transform)
{
    double m[16];
    if (!ReadDoubles(m))
        return false;
    transform = Transf3d({m[3], m[7], m[11]}, {m[0], m[4], m[8]}, {m[1], m[5], m[9]}, {m[2], m[6], m[10]}, true);
    for (std::size_t n = 0; n < 4; ++n)
        transform.setValue(3, n, m[12 + n]);
    return true;
}

bool BinaryFormatter::ReadVector3d(Vector3d& v)
{
    double a[3];
    if (!ReadDoubles(a))
        return false;
    v = Vector3d(a[0], a[1], a[2]);
    return true;
}

bool BinaryFormatter::ReadUnitVector3d(UnitVector3d& v)
{
    double a[3];
    if (!ReadDoubles(a))
        return false;
    v = UnitVector3d(a[0], a[1], a[2], false); // as it was, so that it saves to the same bytes
    return true;
}

bool BinaryFormatter::ReadPoint3d(Point3d& p)
{
    double a[3];
    if (!ReadDoubles(a))
        return false;
    p = Point3d(a[0], a[1], a[2]);
    return true;
}

bool BinaryFormatter::ReadPoint2d(Point2d& p)
{
    double a[2];
    if (!ReadDoubles(a))
        return false;
    p = Point2d(a[0], a[1]);
    return true;
}

bool BinaryFormatter::ReadInterval3d(Interval3d& box)
{
    double a[6];
    if (!ReadDoubles(a))
        return false;
    box.lower = Point3d(a[0], a[1], a[2]);
    box.upper = Point3d(a[3], a[4], a[5]);
    return true;
}

bool BinaryFormatter::ReadColor(Color& color)
{
    std::uint32_t n = 0;
    if (!ReadUInt(n))
        return false;
    color = {std::uint8_t(n >> 24), std::uint8_t(n >> 16), std::uint8_t(n >> 8), std::uint8_t(n)};
    return true;
}

bool BinaryFormatter::ReadString(std::string& str)
{
    str.clear();
    const std::size_t nStart = m_nReadPosition;
    std::uint32_t nLength = 0;
    if (!ReadUInt(nLength))
        return false;
    if (nLength > GetRemaining())
    {
        m_nReadPosition = nStart;
        return false;
    }
    str.assign(m_input.substr(m_nReadPosition, nLength));
    m_nReadPosition += nLength;
    return true;
}

bool BinaryFormatter::ReadDouble(double& d)
{
    double a[1];
    if (!ReadDoubles(a))
        return false;
    d = a[0];
    return true;
}

bool BinaryFormatter::ReadFloat(float& f)
{
    std::uint32_t n = 0;
    if (!ReadUInt(n))
        return false;
    f = std::bit_cast<float>(n);
    return true;
}

bool BinaryFormatter::ReadID(std::uint64_t& nID)
{
    std::uint32_t n = 0;
    if (!ReadUInt(n))
        return false;
    nID = n == kInvalidID32 ? INVALID_ID : n;
    return true;
}

bool BinaryFormatter::ReadBool(bool& b)
{
    if (GetRemaining() < 1)
        return false;
    b = m_input[m_nReadPosition++] != 0;
    return true;
}

bool BinaryFormatter::ReadObject(Object*& pObject)
{
    std::uint64_t nID = INVALID_ID;
    if (!ReadID(nID))
        return false;
    pObject = nID == INVALID_ID ? nullptr : FindObject(nID);
    return true;
}

bool BinaryFormatter::ReadObjects(std::vector<Object*>& aObjects)
{
    return ReadList(aObjects, 4, static_cast<Object*>(nullptr), [&](Object*& pObject) { return ReadObject(pObject); });
}

bool BinaryFormatter::GetMappedID(std::uint64_t nID, std::uint64_t& nMapped) const
{
    if (!m_pIDMap || nID == INVALID_ID)
        return false;
    const auto it = m_pIDMap->find(nID);
    if (it == m_pIDMap->end())
        return false;
    nMapped = it->second;
    return true;
}

void BinaryFormatter::SetMappedID(std::uint64_t nID, std::uint64_t nMapped)
{
    if (m_pIDMap && nID != INVALID_ID && nMapped != INVALID_ID)
        (*m_pIDMap)[nID] = nMapped;
}

bool BinaryFormatter::AddObjectRecordInfo(std::uint64_t nID, std::uint64_t a, std::uint64_t b)
{
    return !m_pRecordInfos || m_pRecordInfos->emplace(nID, std::pair(a, b)).first->second == std::pair(a, b);
}
} // namespace QRV
