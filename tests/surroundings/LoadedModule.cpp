// What a host does with the library between taking it in and letting go of it: a box, a callback, a journal.

#include <QRV/API.h>

#include <stdexcept>

extern "C" __attribute__((visibility("default"))) int UseLibrary()
{
    using namespace QRV;
    std::uint64_t nHistory = INVALID_ID;
    APICreateHistory(nHistory, true);
    APIEnableJournaling(nHistory, "/dev/null");
    APIRegisterModelChangedCallbackReadOnly([](const ModelChangeData&) { throw std::runtime_error("host"); });
    const auto corner = [](int n) { return Point3d(n & 1, n >> 1 & 1, n >> 2 & 1); };
    for (int n = 0; n < 8; ++n)
        for (const int nBit : {1, 2, 4})
            if ((n & nBit) == 0)
                APIConnectPoint3ds(nHistory, corner(n), corner(n | nBit));
    std::vector<std::uint64_t> aFaces;
    APIGetAllObjectsByTypeReadOnly(nHistory, nFaceType, aFaces);
    return static_cast<int>(aFaces.size()); // the History, the callback and the journal are left to the library's end
}
