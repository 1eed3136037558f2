/// The exported value classes of geometry: points, vectors, lines, planes, boxes and transforms.
#pragma once

#include <QRV/Interval2d.h>
#include <QRV/Interval3d.h>
#include <QRV/Line3d.h>
#include <QRV/Plane.h>
#include <QRV/Point2d.h>
#include <QRV/Point3d.h>
#include <QRV/Tolerances.h>
#include <QRV/Transf3d.h>
