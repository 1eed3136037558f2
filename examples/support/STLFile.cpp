#include "STLFile.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <locale>

namespace examples
{
using namespace QRV;

namespace
{
/// Sums the tetrahedra between each triangle and the first corner of the file.
double ReadVolume(const std::filesystem::path& path, std::size_t& nTriangles)
{
    std::ifstream stream(path);
    stream.imbue(std::locale::classic());
    std::array<Point3d, 3> triangle;
    Point3d origin;
    std::size_t nCorners = 0;
    double dVolume = 0.0;
    for (std::string strWord; stream >> strWord;)
    {
        if (strWord != "vertex")
            continue;
        Point3d& corner = triangle[nCorners % 3];
        stream >> corner.x >> corner.y >> corner.z;
        if (nCorners == 0)
            origin = corner;
        if (++nCorners % 3 == 0)
            dVolume += (triangle[0] - origin) % ((triangle[1] - origin) * (triangle[2] - origin)) / 6.0;
    }
    nTriangles = nCorners / 3;
    return dVolume;
}
} // namespace

void SaveSTL(const Session& session, const std::vector<std::uint64_t>& aObjects, double dVolume,
             const std::filesystem::path& path)
{
    constexpr double kRelativeError = 1e-6;
    Expect(APISaveToFileReadOnly(session.GetID(), aObjects, path.string().c_str(), nFileTypeSTL, false, 1.0, {}, {}),
           "APISaveToFileReadOnly");
    std::size_t nTriangles = 0;
    const double dFile = ReadVolume(path, nTriangles);
    std::printf("%s: %zu triangles, volume %.9f, the model's %.9f\n", path.filename().string().c_str(), nTriangles,
                dFile, dVolume);
    Expect(std::abs(dFile - dVolume) <= kRelativeError * dVolume, "the STL file holds another volume than the model");
}
} // namespace examples
