#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "quillon/geometry/space/solid3.h"
#include "tests/geometry/space/space_test_support.h"

namespace quillon {
namespace {

using Loop = Mvector<std::uint32_t>;
std::uint32_t U(int i) { return static_cast<std::uint32_t>(i); }
namespace fs = std::filesystem;

// Each test writes in a directory of its own, removed afterwards.
class Solid3Obj : public ::testing::Test {
protected:
    fs::path dir =
        fs::temp_directory_path() /
        ("quillon_obj_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
         ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { fs::create_directories(dir); }
    void TearDown() override { fs::remove_all(dir); }
    std::string Read(const fs::path& p) const {
        std::stringstream ss;
        ss << std::ifstream(p, std::ios::binary).rdbuf();
        return ss.str();
    }
    fs::path Write(const std::string& name, const std::string& text) const {
        std::ofstream(dir / name, std::ios::binary) << text;
        return dir / name;
    }
};

const char* const kHeader =
    "#\n# Wavefront OBJ file \n# Converted by Quillon \n# Quillon solid model exchange\n#\n";

TEST_F(Solid3Obj, WritesTheExactTextsAndOrders) {
    Solid3 s;
    s.AddVertex(Point3(0, 0, 0));
    s.AddVertex(Point3(1, 0, 0));
    s.AddVertex(Point3(0, 1, 0));
    s.AddVertex(Point3(0, 0, -1.5));
    s.AddNormal(Vector3(0, 0, 1), false);
    Material3 red(L"red");
    red.diffuse = Vector3(1, 0, 0);
    s.AddMaterial(red);
    s.AddMaterial(Material3(L"blue"));
    Face3 f0(Loop{0, 1, 2}, 0);
    f0.normalLoop = {0, 0, 0};
    Face3 f1(Loop{0, 3, 1}, 0);
    f1.normalLoop = {0, 0, 0};
    f1.texture = {Point2(0, 0), Point2(1, 0), Point2(0, 1)};
    f1.textureLoop = {0, 1, 2};
    Face3 f2(Loop{1, 3, 2}, 1);
    f2.texture = {Point2(0.5, 0.5)};
    f2.textureLoop = {0, 0, 0};
    f2.normalLoop = {0};  // not parallel to the loop: not written
    for (const Face3& f : {f0, f1, f2, Face3(Loop{0, 2, 3}), Face3(Loop{0, 2, 3}, 1)}) s.AddFace(f);

    ASSERT_EQ(s.SavetoObj(dir / "t.obj"), 1);
    EXPECT_EQ(Read(dir / "t.obj"),
              std::string(kHeader) +
                  "\nmtllib t.mtl\n"
                  "\n# 4 Verticies \n"
                  "v 0.000000 0.000000 0.000000\nv 1.000000 0.000000 0.000000\n"
                  "v 0.000000 1.000000 0.000000\nv 0.000000 0.000000 -1.500000\n"
                  "\n# 1 Normals\nvn 0.000000 0.000000 1.000000\n"
                  "usemtl red\nf 1//1 2//1 3//1\nf 1/1/1 4/2/1 2/3/1\n"
                  "usemtl blue\nf 2/4/ 4/4/ 3/4/\nf 1 3 4\nusemtl blue\nf 1 3 4\n"
                  "\n# 4 Texture verticies \nvt 0.000000 0.000000\nvt 1.000000 0.000000\n"
                  "vt 0.000000 1.000000\nvt 0.500000 0.500000\n");
    EXPECT_EQ(Read(dir / "t.mtl"),
              "#\n# Wavefront MTL file \n# Converted by Quillon \n# Quillon solid model "
              "exchange\n#\n"
              "\nnewmtl red\nKa 0.200000 0.200000 0.200000\nKd 1.000000 0.000000 0.000000\n"
              "Ks 0.000000 0.000000 0.000000\nd 1.000000\nillum 1\n"
              "\nnewmtl blue\nKa 0.200000 0.200000 0.200000\nKd 0.800000 0.800000 0.800000\n"
              "Ks 0.000000 0.000000 0.000000\nd 1.000000\nillum 1\n");

    // Without materials: no library line, no usemtl, no MTL file; "." whatever the locale; a wide
    // name beyond ASCII reaches the file system as UTF-8.
    s.Material().clear();
    for (Face3& f : s.Face()) f.material = -1;
    const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
    const bool comma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    ASSERT_EQ(s.SavetoObj((dir.wstring() + L"/plain \u00e9.obj").c_str()), 1);
    std::setlocale(LC_NUMERIC, saved.c_str());
    const std::string plain = Read(dir / fs::path(u8"plain \u00e9.obj"));
    EXPECT_EQ(plain.find("mtl"), std::string::npos);
    EXPECT_FALSE(fs::exists(dir / fs::path(u8"plain \u00e9.mtl")));
    EXPECT_NE(plain.find("v 0.000000 0.000000 -1.500000\n"), std::string::npos) << comma;

    // Inconsistent solids and unwritable places give 0 and leave no file.
    s.Face()[0].material = 0;  // one past the (now empty) material list
    EXPECT_EQ(s.SavetoObj(dir / "bad.obj"), 0);
    EXPECT_FALSE(fs::exists(dir / "bad.obj"));
    s.Face()[0].material = -1;
    EXPECT_EQ(s.SavetoObj(dir / "missing" / "x.obj"), 0);
    EXPECT_EQ(s.SavetoObj(static_cast<const wchar_t*>(nullptr)), 0);
}

// Random solids without holes: what is read back writes the same two files again, and keeps the
// face loops and edges.
TEST_F(Solid3Obj, SeededRoundTripWritesTheSameFilesAgain) {
    std::mt19937 gen(3);
    fs::create_directories(dir / "b");
    for (int round = 0; round < 30; ++round) {
        const Solid3 s = space_test::RandomSolid(gen, false);
        ASSERT_EQ(s.SavetoObj(dir / "r.obj"), 1);
        Solid3 back;
        ASSERT_EQ(back.ImportFromObj((dir / "r.obj").wstring().c_str()), 1) << round;
        ASSERT_EQ(back.SavetoObj(dir / "b" / "r.obj"), 1);
        EXPECT_EQ(Read(dir / "b" / "r.obj"), Read(dir / "r.obj")) << round;
        EXPECT_EQ(Read(dir / "b" / "r.mtl"), Read(dir / "r.mtl")) << round;
        ASSERT_EQ(back.Face().size(), s.Face().size());
        for (std::size_t i = 0; i < s.Face().size(); ++i)
            EXPECT_EQ(back.Face()[i].loop, s.Face()[i].loop);
        EXPECT_EQ(back.Edge(), s.Edge());
    }
}

TEST_F(Solid3Obj, ReadsWhatRealFilesHold) {
    Write("lib2.mtl", "newmtl extra\n");
    Write("lib one.mtl",
          "# library\nnewmtl steel\r\nKa 0.1 0.2 0.3\nKd 0.5\nKs 0 0 0\nTr 0.25\nillum 2\n"
          "Ns 10\nmap_Kd steel.png\nnewmtl glass\nd -halo 0.5\nKa spectral x.rfl\n");
    const fs::path obj = Write("in.obj",
                               "\xEF\xBB\xBF# a file as tools write them\r\n"
                               "mtllib lib one.mtl\r\nmtllib absent.mtl lib2.mtl\n"
                               "o block \r\n"
                               "v 0 0 0\nv 1 0 0 1\nv 1 1 0 0.5 0.5 0.5\nv 0 1 0\n\n"
                               "vt 0 0\nvt 1\nvt 1 1 0\n"
                               "vn 0 0 -1\n"
                               "g side\ns off\nusemtl steel\n"
                               "f 1/1/1 2/2/1 3/3/1   # trailing comment\n"
                               "f -4//-1 -2//1 \\\n -1//1\n"
                               "usemtl paint\n"
                               "f 1/1 3/3 4/2\n"
                               "l 1 2\n"
                               "usemtl glass\nf 4 3 2 1\n");
    Solid3 s(1e-6);
    s.SetName(L"kept unless named");
    ASSERT_EQ(s.ImportFromObj(obj), 1);
    EXPECT_EQ(s.GetName(), L"block");
    ASSERT_EQ(s.Vertex().size(), 4u);
    ASSERT_EQ(s.Face().size(), 4u);
    EXPECT_EQ(s.Face()[0].textureLoop, (Loop{0, 1, 2}));
    EXPECT_EQ(s.Face()[0].texture[1].x + s.Face()[0].texture[1].y, 1.0);
    EXPECT_EQ(s.Face()[1].loop, (Loop{0, 2, 3}));
    EXPECT_EQ(s.Face()[1].normalLoop, (Loop{0, 0, 0}));
    EXPECT_TRUE(s.Face()[2].normalLoop.empty());
    ASSERT_EQ(s.Material().size(), 4u);
    const Material3& steel = s.Material()[0];
    EXPECT_EQ(steel.name + s.Material()[2].name + s.Material()[3].name, L"steelextrapaint");
    EXPECT_EQ(
        Point3(steel.ambient.y, steel.diffuse.z, steel.opacity).distance(Point3(0.2, 0.5, 0.75)),
        0.0);
    EXPECT_EQ(steel.illum, 2);
    EXPECT_EQ(s.Material()[1].opacity, 0.5);
    EXPECT_EQ(Loop({U(s.Face()[0].material), U(s.Face()[2].material), U(s.Face()[3].material)}),
              (Loop{0, 3, 1}));
    EXPECT_FALSE(s.GetClosed());
    EXPECT_EQ(s.Edge().size(), 5u);
    // Closed is judged from the loops: a tetrahedron is, one quadrilateral is not.
    const std::string four = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\n";
    ASSERT_EQ(s.ImportFromObj(Write("t.obj", four + "f 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n")), 1);
    EXPECT_TRUE(s.GetClosed());
    ASSERT_EQ(s.ImportFromObj(Write("q.obj", four + "f 1 2 3 4\n")), 1);
    EXPECT_FALSE(s.GetClosed());
}

TEST_F(Solid3Obj, MalformedOrTruncatedFilesGiveZeroAndLeaveTheSolidAsItWas) {
    Solid3 s;
    ASSERT_TRUE(s.GenCuboid(
        Mvector<Point3>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}}));
    s.SetName(L"prism");
    const Solid3 before = s;
    const std::string good = "v 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 0 1\nvt 0 0\n";
    // Each a last line after good ones.
    std::istringstream lines(
        "v 0 0;v 0 0 0 x;v 1e999 0 0;v nan 0 0;vn 0 0;vt;f 1 2;f 1 2 4;f 0 1 2;f 1 2 -4;f 1/1 2 "
        "3;f 1//1 2/1/1 3//1;f 1/2 2/1 3/1;f 1//2 2//1 3//1;f 1/ 2/ 3/;f 1/1/1/1 2 3;f 1 2 "
        "99999999999999999999;f 1 2 3x;bogus 1 2 3;f 1 2 3\nvt 1 2 3 4;mtllib");
    for (std::string bad; std::getline(lines, bad, ';');) {
        const fs::path p = Write("bad.obj", good + bad + "\n");
        EXPECT_EQ(s.ImportFromObj(p), 0) << bad;
        EXPECT_EQ(s, before) << bad;
    }
    Write("broken.mtl", "newmtl a\nKd 1 x 0\n");
    EXPECT_EQ(s.ImportFromObj(Write("m.obj", good + "mtllib broken.mtl\n")), 0);
    EXPECT_EQ(s.ImportFromObj(dir / "absent.obj"), 0);
    EXPECT_EQ(s.ImportFromObj(dir), 0) << "a directory is not a file";
    EXPECT_EQ(s, before);
    // An empty file is a valid, empty solid; a missing library just gives no materials.
    ASSERT_EQ(s.ImportFromObj(Write("e.obj", "mtllib nowhere.mtl\nusemtl x\n")), 1);
    EXPECT_TRUE(s.Vertex().empty());
    EXPECT_EQ(s.Material().size(), 1u);
}

}  // namespace
}  // namespace quillon
