#include "archive/TextFormatter.h"

#include <gtest/gtest.h>

#include <sstream>

namespace QRV
{
TEST(TextFormatter, PrintsEachValueBehindItsNameOnALine)
{
    std::ostringstream text;
    TextFormatter archive(text, false, 2);
    archive.WriteColors({Color{1, 2, 3, 4}}, "colors");
    archive.WriteUInts({7, 8}, "numbers");
    archive.WriteFloats({0.5f}, "floats");
    archive.WritePoint3ds({}, "points");
    archive.WritePoint2ds({{1, 2}}, "points2");
    archive.WriteTransf3ds({Transf3d(Point3d(1, 2, 3))}, "transforms");
    archive.EnterLevel();
    archive.WriteVector3d({1e-13, -1e-12, 1.1e-12}, "vector");
    archive.WriteUnitVector3d({0, 0, -1, false}, "unit");
    archive.WritePoint3d({0.1, 1e30, -100}, "point");
    archive.LeaveLevel();
    archive.WriteInterval3d(Interval3d({0, 0, 0}, {1, 2, 3}), "box");
    archive.WriteInterval3d(Interval3d(), "nobox");
    archive.WriteString("a \"b\"", "text");
    archive.WriteDouble(1.0 / 3.0, "third");
    archive.WriteDouble(1e-13, nullptr);
    archive.WriteID(12, "id");
    archive.WriteBool(true, "yes");
    archive.WriteBool(false, "no");
    EXPECT_EQ(text.str(), "colors [1] {\n"
                          "  color(1, 2, 3, 4)\n"
                          "}\n"
                          "numbers [2] {\n"
                          "  7\n"
                          "  8\n"
                          "}\n"
                          "floats [1] {\n"
                          "  0.5\n"
                          "}\n"
                          "points [0] {\n"
                          "}\n"
                          "points2 [1] {\n"
                          "  point2d(1, 2)\n"
                          "}\n"
                          "transforms [1] {\n"
                          "  Transf(1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1)\n"
                          "}\n"
                          "  vector Vector(0, 0, 1.1e-12)\n"
                          "  unit unitVector(0, 0, -1)\n"
                          "  point point3d(0.1, 1e+30, -100)\n"
                          "box interval3d(point3d(0, 0, 0), point3d(1, 2, 3))\n"
                          "nobox interval3d(UNDEFINED)\n"
                          "text string(\"a \"b\"\")\n"
                          "third 0.3333333333333333\n"
                          "0\n"
                          "id 12\n"
                          "yes true\n"
                          "no false\n");
}

} // namespace QRV
