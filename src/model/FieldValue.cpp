#include "model/FieldValue.h"

namespace QRV::FieldValue
{
bool Write(IArchive& archive, const Plane& plane, const char* pName)
{
    return archive.WriteUnitVector3d(plane.normal, (std::string(pName) + "n").c_str()) &&
           archive.WriteDouble(plane.d, (std::string(pName) + "d").c_str());
}

bool WriteList(IArchive& archive, const std::vector<Object*>& aObjects, const char* pName)
{
    return archive.WriteObjects(aObjects, pName);
}

bool Read(IArchive& archive, Plane& plane)
{
    return archive.ReadUnitVector3d(plane.normal) && archive.ReadDouble(plane.d);
}
} // namespace QRV::FieldValue
