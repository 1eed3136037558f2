/// The stream of named values through which objects save and load themselves.
#pragma once

#include "appearance/BitmapStore.h"

#include <QRV/Color.h>
#include <QRV/Geometry.h>
#include <QRV/Ids.h>

#include <string>
#include <vector>

namespace QRV
{
class Object;

/// Decides what a value becomes: bytes, or text for people. Writes take a field name, which may be null. All give
/// false on failure unless told otherwise. A read that fails leaves its target and the read position where they were;
/// only strings and lists are emptied first, and a list stops at the element that failed.
class IArchive
{
public:
    virtual ~IArchive() = default;
    /// The format version; when reading, that of the data.
    virtual std::uint64_t GetVersion() const = 0;

    virtual bool WriteObjects(const std::vector<Object*>& aObjects, const char* pName) = 0;
    virtual bool WriteObject(const Object* pObject, const char* pName) = 0;
    virtual bool WriteColors(const std::vector<Color>& aColors, const char* pName) = 0;
    virtual bool WriteUInts(const std::vector<std::uint32_t>& aNumbers, const char* pName) = 0;
    virtual bool WriteFloats(const std::vector<float>& aNumbers, const char* pName) = 0;
    virtual bool WritePoint3ds(const std::vector<Point3d>& aPoints, const char* pName) = 0;
    virtual bool WritePoint2ds(const std::vector<Point2d>& aPoints, const char* pName) = 0;
    virtual bool WriteTransf3ds(const std::vector<Transf3d>& aTransforms, const char* pName) = 0;
    virtual bool WriteTransf3d(const Transf3d& transform, const char* pName) = 0;
    virtual bool WriteVector3d(const Vector3d& v, const char* pName) = 0;
    virtual bool WriteUnitVector3d(const UnitVector3d& v, const char* pName) = 0;
    virtual bool WritePoint3d(const Point3d& p, const char* pName) = 0;
    virtual bool WritePoint2d(const Point2d& p, const char* pName) = 0;
    virtual bool WriteInterval3d(const Interval3d& box, const char* pName) = 0;
    virtual bool WriteColor(const Color& color, const char* pName) = 0;
    virtual bool WriteString(const std::string& str, const char* pName) = 0;
    virtual bool WriteDouble(double d, const char* pName) = 0;
    virtual bool WriteFloat(float f, const char* pName) = 0;
    virtual bool WriteID(std::uint64_t nID, const char* pName) = 0;
    virtual bool WriteBool(bool b, const char* pName) = 0;
    /// As WriteObjects, with the objects that the archive excludes written as null.
    virtual bool WriteFilteredObjects(const std::vector<Object*>& aObjects, const char* pName) = 0;
    virtual bool SavesDerivable() const = 0;
    /// A History that a saved object refers to, to be saved behind this one.
    virtual void AddReferencedHistory(std::uint64_t nHistoryID) = 0;
    /// Whether the bytes of a bitmap are to be written here: each bitmap's once in an archive.
    virtual bool NoteBitmapWritten(const BitmapReference& bitmap) = 0;

    /// Lists are resized to their count, the tail behind a failed element staying zero. A count of more elements than
    /// the data can hold fails too, and leaves the list empty when it is above 65,536.
    virtual bool ReadColors(std::vector<Color>& aColors) = 0;
    virtual bool ReadUInts(std::vector<std::uint32_t>& aNumbers) = 0;
    virtual bool ReadFloats(std::vector<float>& aNumbers) = 0;
    virtual bool ReadPoint3ds(std::vector<Point3d>& aPoints) = 0;
    virtual bool ReadPoint2ds(std::vector<Point2d>& aPoints) = 0;
    virtual bool ReadTransf3ds(std::vector<Transf3d>& aTransforms) = 0;
    virtual bool ReadTransf3d(Transf3d& transform) = 0;
    virtual bool ReadVector3d(Vector3d& v) = 0;
    virtual bool ReadUnitVector3d(UnitVector3d& v) = 0;
    virtual bool ReadPoint3d(Point3d& p) = 0;
    virtual bool ReadPoint2d(Point2d& p) = 0;
    virtual bool ReadInterval3d(Interval3d& box) = 0;
    virtual bool ReadColor(Color& color) = 0;
    virtual bool ReadString(std::string& str) = 0;
    virtual bool ReadDouble(double& d) = 0;
    virtual bool ReadFloat(float& f) = 0;
    virtual bool ReadID(std::uint64_t& nID) = 0;
    virtual bool ReadBool(bool& b) = 0;
    /// Null, and good, for an object that does not exist yet: its id is noted as unresolved.
    virtual bool ReadObject(Object*& pObject) = 0;
    virtual bool ReadObjects(std::vector<Object*>& aObjects) = 0;

    /// The History id in the header read.
    virtual std::uint64_t GetHistoryID() const = 0;
    /// The bitmap that the data read calls by a number; none for a number that has not come yet.
    virtual BitmapReference GetBitmapRead(std::uint64_t nNumber) const = 0;
    virtual void SetBitmapRead(std::uint64_t nNumber, const BitmapReference& bitmap) = 0;
    /// Whether the data read holds derivable fields.
    virtual bool HasDerivable() const = 0;
    /// The id under which a referenced History is known after a load.
    virtual std::uint64_t MapHistoryID(std::uint64_t nHistoryID) = 0;
    /// The object to save in place of a vertex or a face, or null. These and the look-ups below serve saves of a part
    /// of a model and loads into one that has content; they know nothing until told.
    virtual Object* GetVertexSubstitute(const Object* pObject) const = 0;
    virtual Object* GetFaceSubstitute(const Object* pObject) const = 0;
    virtual bool IsInIDList(std::uint64_t nID) const = 0;
    /// False, with `nMapped` left alone, for an id without an entry.
    virtual bool GetMappedID(std::uint64_t nID, std::uint64_t& nMapped) const = 0;
    virtual void SetMappedID(std::uint64_t nID, std::uint64_t nMapped) = 0;
    /// False when the id has another pair already.
    virtual bool AddObjectRecordInfo(std::uint64_t nID, std::uint64_t a, std::uint64_t b) = 0;
};
} // namespace QRV
