#include "geometry/Trigonometry.h"

#include <cmath>
#include <numbers>

namespace QRV
{
double Sin(double dAngle)
{
    return std::sin(dAngle);
}

double Cos(double dAngle)
{
    return std::cos(dAngle);
}

double ArcCos(double dCosine)
{
    return std::acos(dCosine);
}

double ArcTan2(double y, double x)
{
    return std::atan2(y, x);
}

double TurnFromTan2(double y, double x, double dLeast)
{
    const double dAngle = ArcTan2(y, x);
    return dAngle < dLeast ? dAngle + 2.0 * std::numbers::pi : dAngle;
}

double AngleFromCosine(double dCosine, double dTol)
{
    if (dCosine <= -(1.0 - dTol))
        return std::numbers::pi;
    return dCosine >= 1.0 - dTol ? 0.0 : ArcCos(dCosine);
}
} // namespace QRV
