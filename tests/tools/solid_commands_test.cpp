#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/tools/run_quillon.h"

namespace quillon::tool {
namespace {

std::filesystem::path scratch(const std::string& name) {
    const auto dir = std::filesystem::temp_directory_path() / "quillon_solid_commands";
    std::filesystem::create_directories(dir);
    return dir / name;
}

void write(const std::filesystem::path& p, const std::string& text) {
    std::ofstream(p, std::ios::binary) << text;
}

// A 2 x 3 x 4 box whose faces turn clockwise seen from outside (this library's way) or the other
// way; `skip` leaves out that face.
std::string box(bool clockwise, int skip = -1) {
    std::string s = "o box\n";
    for (int i = 0; i < 8; ++i)
        s += "v " + std::to_string(i & 1 ? 2 : 0) + " " + std::to_string(i & 2 ? 3 : 0) + " " +
             std::to_string(i & 4 ? 4 : 0) + "\n";
    // Counter-clockwise seen from outside.
    const char* faces[6] = {"1342", "5687", "1265", "3784", "1573", "2486"};
    for (int f = 0; f < 6; ++f) {
        std::string face = faces[f];
        if (clockwise) std::reverse(face.begin(), face.end());
        if (f != skip)
            s += std::string("f ") + face[0] + ' ' + face[1] + ' ' + face[2] + ' ' + face[3] + "\n";
    }
    return s;
}

TEST(QuillonObjInfo, VolumeAndClosednessWhicheverWayTheFacesTurn) {
    for (const bool clockwise : {true, false}) {
        write(scratch("box.obj"), box(clockwise));
        const Outcome r = run({"obj-info", scratch("box.obj").string()});
        ASSERT_EQ(r.code, 0) << r.err;
        EXPECT_NEAR(number(r.out, "volume"), 24.0, 1e-9) << r.out;
        EXPECT_TRUE(has(r.out, "closed     yes") &&
                    has(r.out, clockwise ? "turn clockwise" : "turn counter-clockwise"))
            << r.out;
        EXPECT_TRUE(has(r.out, "x 0 to 2, y 0 to 3, z 0 to 4")) << r.out;
    }
    write(scratch("open.obj"), box(true, 3));
    const Outcome open = run({"obj-info", scratch("open.obj").string()});
    ASSERT_EQ(open.code, 0);
    EXPECT_TRUE(has(open.out, "closed     no")) << open.out;
    EXPECT_FALSE(has(open.out, "volume"));
}

TEST(QuillonObjInfo, BadFilesGiveExitCodeTwoWithTheReason) {
    write(scratch("bad.obj"), "v 1 2\nf 1 2 3\n");
    write(scratch("index.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n");
    for (const std::string name : {"bad.obj", "index.obj", "missing.obj"}) {
        const Outcome r = run({"obj-info", scratch(name).string()});
        EXPECT_EQ(r.code, kBadInput) << name;
        EXPECT_TRUE(has(r.err, name) && r.out.empty()) << r.err;
    }
    EXPECT_EQ(run({"obj-info"}).code, kUsage);
}

// Polygons of 48 pieces a turn inscribed in arcs of radius r lose at most this share of pi r^2.
constexpr double kArcShare = 0.003;

TEST(QuillonPlate, VolumeIsOutlineAreaTimesThicknessLessOpenings) {
    constexpr double kPi = 3.14159265358979323846;
    // The bundled drawing: 400 x 250 with corners of radius 30, an opening of radius 40 and one of
    // 120 x 70; four bolt holes of 18.
    const std::string drawing = std::string(QUILLON_SOURCE_DIR) + "/examples/plate.txt";
    const double area = 400.0 * 250.0 - (4.0 - kPi) * 900.0 - kPi * 1600.0 - 120.0 * 70.0;
    write(scratch("holes.txt"), "# two of the bolt holes\n360 210 18\n\n40,210,18  # last\n");
    const Outcome r =
        run({"plate", drawing, "--thickness", "10", "--hole", "40,40,18", "--hole", "360 40 18",
             "--holes", scratch("holes.txt").string(), "--out", scratch("p").string()});
    ASSERT_EQ(r.code, 0) << r.err;
    const double expected = (area - 4.0 * kPi * 81.0) * 10.0;
    const double slack = kArcShare * kPi * (900.0 + 1600.0 + 4.0 * 81.0) * 10.0;
    EXPECT_NEAR(number(r.out, "volume"), expected, slack) << r.out;
    EXPECT_NEAR(number(r.out, "mass"), expected * 1e-9 * 7850.0, 7850.0e-9 * slack * 1.01);
    EXPECT_TRUE(has(r.out, "A         858.009 cm2")) << r.out;

    // The OBJ read back is closed, of the same volume, and carries the plate material.
    const Outcome back = run({"obj-info", scratch("p.obj").string()});
    ASSERT_EQ(back.code, 0) << back.err;
    EXPECT_TRUE(has(back.out, "closed     yes")) << back.out;
    EXPECT_NEAR(number(back.out, "volume"), number(r.out, "volume"), 1e-6 * expected);
    EXPECT_TRUE(has(back.out, "material   plate")) << back.out;

    // A plate drawn as a contour text in cm, a drawn hole, a bolt hole and a cut at x = 18 that
    // takes off the strip beyond it: (18 x 10 - 2 pi 0.5^2) x 1.
    write(
        scratch("rect.txt"),
        "\"cm\"(((S((L 0 0)(L 20 0)(L 20 10)(L 0 10)) 0 ((H((A 5 5 0.5 0 6.283185307179586)))))))");
    const Outcome c =
        run({"plate", scratch("rect.txt").string(), "--thickness", "1", "--hole", "15,5,1", "--cut",
             "18,0,0,-1,0,0", "--density", "7.85 t/m^3", "--out", scratch("rect").string()});
    ASSERT_EQ(c.code, 0) << c.err;
    const double rect = 18.0 * 10.0 - 2.0 * kPi * 0.25;
    EXPECT_NEAR(number(c.out, "volume"), rect, kArcShare * 2.0 * kPi * 0.25) << c.out;
    EXPECT_TRUE(has(c.out, "x 0 to 18, y 0 to 10, z 0 to 1 cm")) << c.out;
    EXPECT_NEAR(number(c.out, "mass"), rect * 1e-6 * 7850.0, 0.01);
}

TEST(QuillonPlate, BadInputAndUsageGiveTheirExitCodes) {
    const std::string drawing = std::string(QUILLON_SOURCE_DIR) + "/examples/plate.txt";
    const std::string out = scratch("bad").string();
    // No thickness, a negative one, a hole short of its radius, a cut without a direction, a
    // density that is no density, a view that is not drawn.
    const std::vector<std::string> wrong[] = {{},
                                              {"--thickness", "-1"},
                                              {"--thickness", "5", "--hole", "1,2"},
                                              {"--thickness", "5", "--cut", "0,0,0,0,0,0"},
                                              {"--thickness", "5", "--density", "3 m"},
                                              {"--thickness", "5", "--view", "side", "--png", "x"}};
    for (std::vector<std::string> args : wrong) {
        args.insert(args.begin(), {"plate", drawing, "--out", out});
        EXPECT_EQ(run(args).code, kUsage) << args.back();
    }
    write(scratch("bad_holes.txt"), "10 10 5\n10 10\n");
    const Outcome holes =
        run({"plate", drawing, "--thickness", "5", "--holes", scratch("bad_holes.txt").string()});
    EXPECT_EQ(holes.code, kBadInput);
    EXPECT_TRUE(has(holes.err, "bad_holes.txt:2")) << holes.err;
    write(scratch("broken.txt"), "line 0 0 1\n");
    EXPECT_EQ(run({"plate", scratch("broken.txt").string(), "--thickness", "5"}).code, kBadInput);
    EXPECT_EQ(run({"plate", scratch("none.txt").string(), "--thickness", "5"}).code, kBadInput);
    // A contour text is checked like every shape input: a bow tie is refused, and --fix rebuilds
    // it into two triangles, which are not one plate.
    const std::string bowTie = "(((S((L 0 0)(L 10 10)(L 10 0)(L 0 10)) 0 ())))";
    const Outcome refused = run({"plate", bowTie, "--thickness", "1", "--out", out});
    EXPECT_EQ(refused.code, kBadInput);
    EXPECT_TRUE(has(refused.err, "crosses or runs along itself")) << refused.err;
    const Outcome fixed = run({"plate", bowTie, "--thickness", "1", "--fix", "--out", out});
    EXPECT_EQ(fixed.code, kBadInput);
    EXPECT_TRUE(has(fixed.err, "makes 2 solids")) << fixed.err;
    // A cut that takes the whole plate away.
    const Outcome all =
        run({"plate", drawing, "--thickness", "5", "--cut", "0,0,0,-1,0,0", "--out", out});
    EXPECT_EQ(all.code, kBadInput);
    EXPECT_TRUE(has(all.err, "--cut 1")) << all.err;
}

TEST(QuillonTube, ClosedTubesOfTheRingPolygonsArea) {
    // A straight run: the 48-gon's area times the length (to the nine digits printed).
    const double gon = 24.0 * 25.0 * std::sin(2.0 * 3.14159265358979 / 48);
    write(scratch("straight.txt"), "# a bar\n0 0 0\n100 0 0\n");
    const Outcome r = run({"tube", scratch("straight.txt").string(), "--diameter", "10",
                           "--segments", "48", "--out", scratch("straight").string()});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NEAR(number(r.out, "volume"), gon * 100, 1e-8 * gon * 100);
    // A bend in a plane stays closed and reads back as written. Its ring at the bend is not
    // widened into a mitre, so the legs narrow there: less than the straight legs, not by more
    // than the ring's tilt (cos 45 degrees).
    write(scratch("bent.txt"), "0 0 0\n100 0 0\n100 80 0\n");
    const Outcome bent = run({"tube", scratch("bent.txt").string(), "--diameter", "10",
                              "--segments", "48", "--out", scratch("bent").string()});
    ASSERT_EQ(bent.code, 0) << bent.err;
    const Outcome back = run({"obj-info", scratch("bent.obj").string()});
    EXPECT_TRUE(has(back.out, "closed     yes")) << back.out;
    EXPECT_DOUBLE_EQ(number(back.out, "volume"), number(bent.out, "volume"));
    EXPECT_LT(number(back.out, "volume"), gon * 180);
    EXPECT_GT(number(back.out, "volume"), gon * 180 * std::sqrt(0.5));

    write(scratch("one.txt"), "1 2 3\n");
    write(scratch("word.txt"), "1 2 3\n4 5 x\n");
    for (const std::string bad : {"one.txt", "word.txt", "missing.txt"})
        EXPECT_EQ(run({"tube", scratch(bad).string(), "--diameter", "1"}).code, kBadInput) << bad;
    EXPECT_EQ(run({"tube", scratch("bent.txt").string(), "--diameter", "0"}).code, kUsage);
}

// The pixels of a PNG file made of stored deflate blocks, as the program writes them: rows of
// RGB bytes; empty when the file is not such a PNG.
std::vector<unsigned char> pngPixels(const std::string& png, int& w, int& h) {
    auto u32 = [&](std::size_t at) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(png[at])) << 24 |
               static_cast<std::uint32_t>(static_cast<unsigned char>(png[at + 1])) << 16 |
               static_cast<std::uint32_t>(static_cast<unsigned char>(png[at + 2])) << 8 |
               static_cast<unsigned char>(png[at + 3]);
    };
    if (png.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0) return {};
    std::string z;
    for (std::size_t at = 8; at + 12 <= png.size();) {
        const std::size_t n = u32(at);
        const std::string type = png.substr(at + 4, 4);
        if (type == "IHDR") w = static_cast<int>(u32(at + 8)), h = static_cast<int>(u32(at + 12));
        if (type == "IDAT") z += png.substr(at + 8, n);
        at += 12 + n;
    }
    std::string raw;
    for (std::size_t at = 2; at + 5 <= z.size();) {
        const std::size_t n = static_cast<unsigned char>(z[at + 1]) |
                              static_cast<std::size_t>(static_cast<unsigned char>(z[at + 2])) << 8;
        raw += z.substr(at + 5, n);
        if (z[at] & 1) break;
        at += 5 + n;
    }
    std::vector<unsigned char> rgb;
    if (raw.size() != static_cast<std::size_t>(h) * (3 * w + 1)) return {};
    for (int y = 0; y < h; ++y)
        rgb.insert(rgb.end(), raw.begin() + y * (3 * w + 1) + 1,
                   raw.begin() + (y + 1) * (3 * w + 1));
    return rgb;
}

TEST(QuillonPlate, TopViewShowsThePlateWithItsHolesOpen) {
    // A 200 x 100 plate with a hole of 40 seen from above: the drawn pixels fill the outline's
    // box as the plate fills it, 1 - pi 20^2 / 20000, whatever the picture's scale.
    write(scratch("holed.txt"),
          "line 0 0 200 0\nline 200 0 200 100\nline 200 100 0 100\n"
          "line 0 100 0 0\ncircle 50 50 20\n");
    const std::string file = scratch("holed.png").string();
    for (const std::string view : {"top", "iso"}) {
        const Outcome r = run({"plate", scratch("holed.txt").string(), "--thickness", "10",
                               "--view", view, "--png", file, "--out", scratch("holed").string()});
        ASSERT_EQ(r.code, 0) << r.err;
        int w = 0, h = 0;
        const std::vector<unsigned char> rgb = pngPixels(fileText(file), w, h);
        ASSERT_FALSE(rgb.empty()) << view;
        if (view == "iso") continue;  // only well-formed: its fill depends on the projection
        long drawn = 0;
        int x0 = w, x1 = -1, y0 = h, y1 = -1;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const unsigned char* p = &rgb[(static_cast<std::size_t>(y) * w + x) * 3];
                if (p[0] == 255 && p[1] == 255 && p[2] == 255) continue;
                ++drawn;
                x0 = std::min(x0, x), x1 = std::max(x1, x), y0 = std::min(y0, y),
                y1 = std::max(y1, y);
            }
        const double box = double(x1 - x0 + 1) * (y1 - y0 + 1);
        EXPECT_NEAR(drawn / box, 1.0 - 3.14159265358979 * 400.0 / 20000.0, 0.01);
        EXPECT_NEAR(double(x1 - x0 + 1) / (y1 - y0 + 1), 2.0, 0.02);
    }
}

}  // namespace
}  // namespace quillon::tool
