/// The corners that a face has at a vertex.
#pragma once

#include "spatial/ShortList.h"

#include <QRV/Geometry.h>

namespace QRV
{
class Coedge;
class Face;
class Vertex;

/// For one direction after another while the loops of the face stay as they are. A corner goes by the coedge that ends
/// at the vertex.
class CornersAtVertex
{
public:
    CornersAtVertex(Face& face, const Vertex& vertex);

    /// The corner into which the direction falls; null if none.
    Coedge* Find(const Vector3d& direction) const;

private:
    const UnitVector3d m_normal;
    ShortList<Coedge*> m_aCorners;
};
} // namespace QRV
