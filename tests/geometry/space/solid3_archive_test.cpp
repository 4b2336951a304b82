#include <gtest/gtest.h>

#include <random>
#include <string>

#include "quillon/geometry/space/solid3.h"
#include "tests/geometry/space/solid3_test_support.h"
#include "tests/geometry/space/space_test_support.h"

namespace quillon {
namespace {

using space_test::Expect;

std::string Stored(Solid3 s) {
    return space_test::Written([&](Archive& ar) { s.Serialize(ar); });
}

int Load(const std::string& bytes, Solid3& target) {
    return space_test::Cause(bytes, [&](Archive& ar) { target.Serialize(ar); });
}

TEST(Solid3Archive, ByteForByteLayout) {
    Solid3 s(0.25);
    s.SetName(L"ab");
    s.AddVertex(Point3(1, 2, 3));
    s.Edge().Add(Edge3d(0, 0));
    Face3 f(Mvector<std::uint32_t>{0}, 0);
    f.holes.push_back({0, 0});
    f.normalLoop = {0};
    f.texture.push_back(Point2(0.5, 0.75));
    f.textureHoles.push_back({0});
    f.edges = {0};
    f.normal = Vector3(0, 0, 1);
    s.AddFace(f);
    s.AddNormal(Vector3(0, 1, 0), false);
    Material3 m(L"m");
    m.opacity = 0.5;
    m.illum = 2;
    s.AddMaterial(m);
    s.SetClosed(false);

    Expect e;
    e.i32({1}).ws("ab").i32({1}).d({1, 2, 3});  // vertices
    e.i32({1, 0, 0});                           // edges
    e.i32({1, 1, 0, 1, 2, 0, 0});               // face: outer loop, holes
    e.i32({1, 0, 0, 0, 1, 1, 0});               // normal loop, no normal holes, texture loops
    e.i32({1}).d({0.5, 0.75});                  // texture vertices
    e.i32({1, 0, 0}).d({0, 0, 1});              // edges, material, cached normal
    e.i32({1}).d({0, 1, 0});                    // normals
    e.i32({1}).ws("m").d({0.2, 0.2, 0.2, 0.8, 0.8, 0.8, 0, 0, 0, 0.5}).i32({2});
    e.le(0, 1).d({0.25});  // closed, eps
    EXPECT_EQ(Stored(s), e.bytes);

    Solid3 back;
    EXPECT_EQ(Load(e.bytes, back), -1);
    EXPECT_EQ(back, s);
}

TEST(Solid3Archive, SeededRoundTripsAndDamagedDataLeaveTheTargetAsItWas) {
    std::mt19937 gen(99);
    for (int round = 0; round < 40; ++round) {
        const Solid3 s = solid_test::RandomSolid(gen, true);
        const std::string bytes = Stored(s);
        Solid3 back(5.0);
        ASSERT_EQ(Load(bytes, back), -1);
        EXPECT_EQ(back, s);
        // Equality sees every number: one changed texture or colour component makes them differ.
        if (!back.Face().empty()) ++back.Face()[0].texture[0].y;
        if (!back.Material().empty()) ++back.Material()[0].diffuse.z;
        EXPECT_EQ(back == s, s.Face().empty() && s.Material().empty());

        // Every cut of the record fails with endOfFile and leaves the target untouched.
        const Solid3 target = solid_test::RandomSolid(gen, true);
        for (std::size_t cut = 0; cut < bytes.size(); cut += 1 + bytes.size() / 97) {
            Solid3 t = target;
            ASSERT_EQ(Load(bytes.substr(0, cut), t), 3) << cut;
            ASSERT_EQ(t, target);
        }
    }

    Solid3 t = solid_test::RandomSolid(gen, true);
    const Solid3 before = t;
    const std::string bytes = Stored(before);
    // A vertex count of four billion on a short record: fails at the end of the data.
    const std::string huge = Expect().i32({1}).ws("").i32({-16}).d({1, 2, 3}).bytes;
    EXPECT_EQ(Load(huge, t), 3);
    std::string badVersion = bytes;
    badVersion[0] = 2;
    EXPECT_EQ(Load(badVersion, t), 7);
    std::string badClosed = bytes;
    badClosed[badClosed.size() - 9] = 2;
    EXPECT_EQ(Load(badClosed, t), 7);
    // A face that names a vertex the solid lacks.
    Solid3 broken;
    broken.AddVertex(Point3());
    broken.AddFace(Face3(Mvector<std::uint32_t>{0, 0, 1}));
    EXPECT_EQ(Load(Stored(broken), t), 5);
    broken.Face()[0].loop = {0, 0, 0};
    broken.Edge().Add(Edge3d(0, 1));
    EXPECT_EQ(Load(Stored(broken), t), 5) << "an edge to a vertex the solid lacks";
    broken.Edge().clear();
    broken.Face()[0].material = 0;
    EXPECT_EQ(Load(Stored(broken), t), 5);
    EXPECT_EQ(t, before);
}

}  // namespace
}  // namespace quillon
