/// Sums and tests over whole structures of faces.
#pragma once

#include <QRV/Geometry.h>

#include <vector>

namespace QRV
{
class Face;
class Object;

/// Signed volume of the faces that form closed sheets; the others count nothing.
double GetClosedVolume(const std::vector<Face*>& aFaces, const Transf3d* pTransform);
/// Sum of the contributions of all the faces given, closed or not, measured from a point near them.
double GetSignedVolume(const std::vector<Face*>& aFaces, const Transf3d* pTransform = nullptr);
/// Whether the region bounded by a body, lump or shell holds the point, boundary counted. One ray is fired, along
/// `pDirection` or a fixed direction, and its first crossing decides.
bool ContainsPoint(const Object* pObject, const Point3d& p, const Vector3d* pDirection);
/// Box of an object under a transform: for a turned one the tight box of its vertices.
Interval3d GetTransformedBox(Object& object, const Transf3d& transform);
} // namespace QRV
