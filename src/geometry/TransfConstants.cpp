#include <QRV/Geometry.h>

namespace QRV
{
// All in one file, the identity first: the views are made from it.
const Transf3d Transf3d::kIdentity;
const Transf3d Transf3d::kFrontView(kParallelProjection, Point3d(1, 0, 0), Point3d());
const Transf3d Transf3d::kBackView(kParallelProjection, Point3d(-1, 0, 0), Point3d());
const Transf3d Transf3d::kRightView(kParallelProjection, Point3d(0, 1, 0), Point3d());
const Transf3d Transf3d::kLeftView(kParallelProjection, Point3d(0, -1, 0), Point3d());
const Transf3d Transf3d::kTopView(kParallelProjection, Point3d(0, 0, 1), Point3d());
const Transf3d Transf3d::kBottomView(kParallelProjection, Point3d(0, 0, -1), Point3d());
const Transf3d Transf3d::kIsometricView(kParallelProjection, Point3d(1, 1, 1), Point3d());
const Transf3d Transf3d::kDimetricView(kParallelProjection, Point3d(0.881917103688197, 1.0 / 3.0, 1.0 / 3.0),
                                       Point3d());
} // namespace QRV
