#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "quillon/geometry/space/solid3.h"
#include "tests/geometry/space/solid3_test_support.h"

namespace quillon {
namespace {

using Bytes = std::vector<unsigned char>;

// Expected records, built value by value in little-endian order independently of the host.
struct Expect {
    Bytes bytes;
    Expect& le(std::uint64_t bits, int n) {
        for (int i = 0; i < n; ++i) bytes.push_back(static_cast<unsigned char>(bits >> (8 * i)));
        return *this;
    }
    Expect& d(double v) { return le(std::bit_cast<std::uint64_t>(v), 8); }
    Expect& u32(std::uint32_t v) { return le(v, 4); }
    Expect& u8(std::uint8_t v) { return le(v, 1); }
    Expect& ws(const char* ascii) {  // a short wide string
        u8(0xFF).le(0xFFFE, 2).u8(static_cast<std::uint8_t>(std::string(ascii).size()));
        for (const char* c = ascii; *c; ++c) le(static_cast<unsigned char>(*c), 2);
        return *this;
    }
};

Bytes Stored(const Solid3& s) {
    std::ostringstream out;
    Archive ar(out);
    Solid3 copy = s;
    copy.Serialize(ar);
    const std::string text = out.str();
    return Bytes(text.begin(), text.end());
}

// Loads into `target`; the exception's cause, or -1 when the load succeeded.
int Load(const Bytes& bytes, Solid3& target) {
    std::istringstream in(std::string(bytes.begin(), bytes.end()));
    Archive ar(in);
    try {
        target.Serialize(ar);
    } catch (const ArchiveException& e) {
        return e.cause;
    }
    return -1;
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
    e.le(1, 4).ws("ab");
    e.u32(1).d(1).d(2).d(3);                  // vertices
    e.u32(1).u32(0).u32(0);                   // edges
    e.u32(1).u32(1).u32(0);                   // face: outer loop
    e.u32(1).u32(2).u32(0).u32(0);            // holes
    e.u32(1).u32(0).u32(0);                   // normal loop, no normal holes
    e.u32(0).u32(1).u32(1).u32(0);            // texture loop, texture holes
    e.u32(1).d(0.5).d(0.75);                  // texture vertices
    e.u32(1).u32(0).le(0, 4).d(0).d(0).d(1);  // edges, material, cached normal
    e.u32(1).d(0).d(1).d(0);                  // normals
    e.u32(1).ws("m").d(0.2).d(0.2).d(0.2).d(0.8).d(0.8).d(0.8).d(0).d(0).d(0).d(0.5).le(2, 4);
    e.u8(0).d(0.25);  // closed, eps
    EXPECT_EQ(Stored(s), e.bytes);

    Solid3 back;
    EXPECT_EQ(Load(e.bytes, back), -1);
    EXPECT_EQ(back, s);
}

TEST(Solid3Archive, SeededRoundTripsAndDamagedDataLeaveTheTargetAsItWas) {
    std::mt19937 gen(99);
    for (int round = 0; round < 40; ++round) {
        const Solid3 s = solid_test::RandomSolid(gen, true);
        const Bytes bytes = Stored(s);
        Solid3 back(5.0);
        ASSERT_EQ(Load(bytes, back), -1);
        EXPECT_EQ(back, s);

        // Every cut of the record fails with endOfFile and leaves the target untouched.
        const Solid3 target = solid_test::RandomSolid(gen, true);
        for (std::size_t cut = 0; cut < bytes.size(); cut += 1 + bytes.size() / 97) {
            Solid3 t = target;
            ASSERT_EQ(Load(Bytes(bytes.begin(), bytes.begin() + cut), t), 3) << cut;
            ASSERT_EQ(t, target);
        }
    }

    Solid3 t = solid_test::RandomSolid(gen, true);
    const Solid3 before = t;
    Bytes bytes = Stored(before);
    // A vertex count of four billion on a short record: fails at the end of the data.
    Bytes huge = Expect().le(1, 4).ws("").u32(0xFFFFFFF0u).d(1).d(2).d(3).bytes;
    EXPECT_EQ(Load(huge, t), 3);
    Bytes badVersion = bytes;
    badVersion[0] = 2;
    EXPECT_EQ(Load(badVersion, t), 7);
    Bytes badClosed = bytes;
    badClosed[badClosed.size() - 9] = 2;
    EXPECT_EQ(Load(badClosed, t), 7);
    // A face that names a vertex the solid lacks.
    Solid3 broken;
    broken.AddVertex(Point3());
    broken.AddFace(Face3(Mvector<std::uint32_t>{0, 0, 1}));
    EXPECT_EQ(Load(Stored(broken), t), 5);
    broken.Face()[0].loop = {0, 0, 0};
    broken.Face()[0].material = 0;
    EXPECT_EQ(Load(Stored(broken), t), 5);
    EXPECT_EQ(t, before);
}

}  // namespace
}  // namespace quillon
