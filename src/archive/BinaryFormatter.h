/// The archive that packs values into bytes.
#pragma once

#include "archive/ArchiveBase.h"

#include <string_view>

namespace QRV
{
/// Writes values behind one another at the end of a string, or reads them from one; names are not stored. Little-endian
/// in fixed width: ids have 32 bits, with all bits set for INVALID_ID, and strings and lists a count of 32 bits before
/// them.
class BinaryFormatter final : public ArchiveBase_T<BinaryFormatter>
{
public:
    /// Writes. The string is the caller's.
    explicit BinaryFormatter(std::string& strData, bool bSaveDerivable = false)
        : ArchiveBase_T(bSaveDerivable), m_pData(&strData)
    {
    }
    /// Reads; the bytes are the caller's and are not copied.
    explicit BinaryFormatter(std::string_view data) : ArchiveBase_T(false), m_input(data) {}

    std::uint64_t GetBytesWritten() const { return m_nBytesWritten; }
    std::size_t GetReadPosition() const { return m_nReadPosition; }
    /// The maps behind GetMappedID and AddObjectRecordInfo; the caller's, and missing until set.
    void SetIDMap(std::map<std::uint64_t, std::uint64_t>* pMap) { m_pIDMap = pMap; }
    using RecordInfos = std::map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>>;
    void SetRecordInfos(RecordInfos* pInfos) { m_pRecordInfos = pInfos; }

    bool OpenList(std::size_t nSize, const char* pName);
    bool CloseList() { return true; }
    bool WriteUInt(std::uint32_t n, const char* pName);

    bool WriteObject(const Object* pObject, const char* pName) override;
    bool WriteTransf3d(const Transf3d& transform, const char* pName) override;
    bool WriteVector3d(const Vector3d& v, const char* pName) override;
    bool WriteUnitVector3d(const UnitVector3d& v, const char* pName) override;
    bool WritePoint3d(const Point3d& p, const char* pName) override;
    bool WritePoint2d(const Point2d& p, const char* pName) override;
    bool WriteInterval3d(const Interval3d& box, const char* pName) override;
    bool WriteColor(const Color& color, const char* pName) override;
    bool WriteString(const std::string& str, const char* pName) override;
    bool WriteDouble(double d, const char* pName) override;
    bool WriteFloat(float f, const char* pName) override;
    bool WriteID(std::uint64_t nID, const char* pName) override;
    bool WriteBool(bool b, const char* pName) override;

    bool ReadColors(std::vector<Color>& aColors) override;
    bool ReadUInts(std::vector<std::uint32_t>& aNumbers) override;
    bool ReadFloats(std::vector<float>& aNumbers) override;
    bool ReadPoint3ds(std::vector<Point3d>& aPoints) override;
    bool ReadPoint2ds(std::vector<Point2d>& aPoints) override;
    bool ReadTransf3ds(std::vector<Transf3d>& aTransforms) override;
    bool ReadTransf3d(Transf3d& transform) override;
    bool ReadVector3d(Vector3d& v) override;
    bool ReadUnitVector3d(UnitVector3d& v) override;
    bool ReadPoint3d(Point3d& p) override;
    bool ReadPoint2d(Point2d& p) override;
    bool ReadInterval3d(Interval3d& box) override;
    bool ReadColor(Color& color) override;
    bool ReadString(std::string& str) override;
    bool ReadDouble(double& d) override;
    bool ReadFloat(float& f) override;
    bool ReadID(std::uint64_t& nID) override;
    bool ReadBool(bool& b) override;
    bool ReadObject(Object*& pObject) override;
    bool ReadObjects(std::vector<Object*>& aObjects) override;

    bool GetMappedID(std::uint64_t nID, std::uint64_t& nMapped) const override;
    void SetMappedID(std::uint64_t nID, std::uint64_t nMapped) override;
    bool AddObjectRecordInfo(std::uint64_t nID, std::uint64_t a, std::uint64_t b) override;

private:
    std::size_t GetRemaining() const { return m_input.size() - m_nReadPosition; }
    bool WriteDoubles(const double* pNumbers, std::size_t nCount);
    template <std::size_t kCount>
    bool ReadDoubles(double (&aNumbers)[kCount]);
    bool ReadUInt(std::uint32_t& n);
    template <class T, class Read>
    bool ReadList(std::vector<T>& aElements, std::size_t nElementSize, const T& zero, Read read);

    std::string* m_pData = nullptr;
    std::string_view m_input;
    std::uint64_t m_nBytesWritten = 0;
    std::size_t m_nReadPosition = 0;
    std::map<std::uint64_t, std::uint64_t>* m_pIDMap = nullptr;
    RecordInfos* m_pRecordInfos = nullptr;
};
extern template class ArchiveBase_T<BinaryFormatter>;
} // namespace QRV
