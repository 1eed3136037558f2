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

bool Write(IArchive& archive, const std::array<Point3d, 4>& aPoints, const char* pName)
{
    bool bGood = true;
    for (std::size_t n = 0; n < aPoints.size(); ++n)
        bGood = bGood && archive.WritePoint3d(aPoints[n], (pName + std::to_string(n)).c_str());
    return bGood;
}

bool Read(IArchive& archive, std::array<Point3d, 4>& aPoints)
{
    bool bGood = true;
    for (Point3d& p : aPoints)
        bGood = bGood && archive.ReadPoint3d(p);
    return bGood;
}
} // namespace QRV::FieldValue
