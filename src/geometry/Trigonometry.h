/// Every trigonometric function of the library, in one place.
#pragma once

namespace QRV
{
double Sin(double dAngle);
double Cos(double dAngle);
double ArcCos(double dCosine);
double ArcTan2(double y, double x);
/// The angle of ArcTan2 as a turn: from `dLeast`, which is about 0, to a full turn more.
double TurnFromTan2(double y, double x, double dLeast);
/// ArcCos that snaps to 0 and pi within `dTol` of 1 and -1, and takes values beyond them.
double AngleFromCosine(double dCosine, double dTol);
} // namespace QRV
