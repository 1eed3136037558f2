#include <QRV/API.h>

#include <cstdio>

int main()
{
    std::uint64_t nHistory = QRV::INVALID_ID;
    QRV::APICreateHistory(nHistory, true);

    // Two squares and four uprights: the six faces and the solid form by themselves.
    std::vector<QRV::Point3d> aBottom, aTop;
    QRV::APICreateRectangle(nHistory, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, aBottom, false);
    QRV::APICreateRectangle(nHistory, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, aTop, false);
    for (std::size_t i = 0; i < aBottom.size(); ++i)
        QRV::APIConnectPoint3ds(nHistory, aBottom[i], aTop[i]);

    std::vector<std::uint64_t> aBodies;
    QRV::APIGetAllObjectsByTypeReadOnly(nHistory, QRV::nBodyType, aBodies);
    double dVolume = 0;
    if (aBodies.size() != 1 || !QRV::APIComputeVolumeReadOnly(nHistory, aBodies[0], dVolume).IsGood())
        return 1;
    std::printf("one body of volume %g\n", dVolume);
    return dVolume > 0.999999 && dVolume < 1.000001 ? 0 : 1;
}
