/// The archive that prints values for people.
#pragma once

#include "archive/ArchiveBase.h"

#include <initializer_list>
#include <ostream>
#include <string_view>

namespace QRV
{
/// Prints each value on a line of its own behind its name, indented by depth. It cannot read: all reads give true and
/// leave their target alone.
class TextFormatter final : public ArchiveBase_T<TextFormatter>
{
public:
    /// The stream is the caller's.
    /// @param nIndentStep  blanks for each level
    TextFormatter(std::ostream& stream, bool bSaveDerivable, unsigned nIndentStep)
        : ArchiveBase_T(bSaveDerivable), m_stream(stream), m_nIndentStep(nIndentStep)
    {
    }

    bool OpenList(std::size_t nSize, const char* pName);
    bool CloseList();
    bool WriteUInt(std::uint32_t n, const char* pName);

    /// Class and id; at depth 0 also the sizes of the object.
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
    /// Bitmaps are no reading for people.
    bool NoteBitmapWritten(const BitmapReference&) override { return false; }

    bool ReadColors(std::vector<Color>&) override { return true; }
    bool ReadUInts(std::vector<std::uint32_t>&) override { return true; }
    bool ReadFloats(std::vector<float>&) override { return true; }
    bool ReadPoint3ds(std::vector<Point3d>&) override { return true; }
    bool ReadPoint2ds(std::vector<Point2d>&) override { return true; }
    bool ReadTransf3ds(std::vector<Transf3d>&) override { return true; }
    bool ReadTransf3d(Transf3d&) override { return true; }
    bool ReadVector3d(Vector3d&) override { return true; }
    bool ReadUnitVector3d(UnitVector3d&) override { return true; }
    bool ReadPoint3d(Point3d&) override { return true; }
    bool ReadPoint2d(Point2d&) override { return true; }
    bool ReadInterval3d(Interval3d&) override { return true; }
    bool ReadColor(Color&) override { return true; }
    bool ReadString(std::string&) override { return true; }
    bool ReadDouble(double&) override { return true; }
    bool ReadFloat(float&) override { return true; }
    bool ReadID(std::uint64_t&) override { return true; }
    bool ReadBool(bool&) override { return true; }
    bool ReadObject(Object*&) override { return true; }
    bool ReadObjects(std::vector<Object*>&) override { return true; }

    bool GetMappedID(std::uint64_t, std::uint64_t&) const override { return false; }
    void SetMappedID(std::uint64_t, std::uint64_t) override {}
    bool AddObjectRecordInfo(std::uint64_t, std::uint64_t, std::uint64_t) override { return true; }

private:
    std::string GetIndent() const { return std::string(std::size_t(GetDepth()) * m_nIndentStep, ' '); }
    bool Print(std::string_view text);
    bool PrintValue(const char* pName, std::string_view value);
    bool PrintNumbers(const char* pName, const char* pForm, std::initializer_list<double> aNumbers);

    std::ostream& m_stream;
    unsigned m_nIndentStep;
};
extern template class ArchiveBase_T<TextFormatter>;
} // namespace QRV
