#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tools/quillon/cli.h"

namespace quillon::tool {
namespace {

struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
};

Outcome run(std::vector<std::string> args) {
    std::istringstream in;
    std::ostringstream out, err;
    Outcome r;
    r.code = RunQuillon(args, in, out, err);
    r.out = out.str();
    r.err = err.str();
    return r;
}

// The number after "label" in a command's output, NaN when it is not there.
double number(const std::string& text, const std::string& label) {
    std::smatch m;
    if (!std::regex_search(text, m, std::regex(label + " +(-?[0-9.e+-]+)"))) return std::nan("");
    return std::stod(m[1]);
}

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
    const int faces[6][4] = {{1, 3, 4, 2}, {5, 6, 8, 7}, {1, 2, 6, 5},
                             {3, 7, 8, 4}, {1, 5, 7, 3}, {2, 4, 8, 6}};
    for (int f = 0; f < 6; ++f) {
        if (f == skip) continue;
        s += "f";
        for (int k = 0; k < 4; ++k) s += " " + std::to_string(faces[f][clockwise ? 3 - k : k]);
        s += "\n";
    }
    return s;
}

TEST(QuillonObjInfo, VolumeAndClosednessWhicheverWayTheFacesTurn) {
    for (const bool clockwise : {true, false}) {
        write(scratch("box.obj"), box(clockwise));
        const Outcome r = run({"obj-info", scratch("box.obj").string()});
        ASSERT_EQ(r.code, 0) << r.err;
        EXPECT_NEAR(number(r.out, "volume"), 24.0, 1e-9) << r.out;
        EXPECT_NE(r.out.find("closed     yes"), std::string::npos) << r.out;
        EXPECT_NE(r.out.find(clockwise ? "turn clockwise" : "turn counter-clockwise"),
                  std::string::npos);
        EXPECT_NE(r.out.find("x 0 to 2, y 0 to 3, z 0 to 4"), std::string::npos) << r.out;
    }
    write(scratch("open.obj"), box(true, 3));
    const Outcome open = run({"obj-info", scratch("open.obj").string()});
    EXPECT_EQ(open.code, 0);
    EXPECT_NE(open.out.find("closed     no"), std::string::npos) << open.out;
    EXPECT_EQ(open.out.find("volume"), std::string::npos);
}

TEST(QuillonObjInfo, BadFilesGiveExitCodeTwoWithTheReason) {
    write(scratch("bad.obj"), "v 1 2\nf 1 2 3\n");
    write(scratch("index.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n");
    for (const std::string name : {"bad.obj", "index.obj", "missing.obj"}) {
        const Outcome r = run({"obj-info", scratch(name).string()});
        EXPECT_EQ(r.code, kBadInput) << name;
        EXPECT_NE(r.err.find(name), std::string::npos) << r.err;
        EXPECT_TRUE(r.out.empty());
    }
    EXPECT_EQ(run({"obj-info"}).code, kUsage);
}

}  // namespace
}  // namespace quillon::tool
