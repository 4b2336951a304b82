// Archive records of the space types, solids and geometric items: layouts byte for byte, seeded
// round trips, and damaged or cut records that fail with their cause and leave the target as it
// was.
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <random>
#include <string>

#include "quillon/geometry/space/geometric_item3.h"
#include "quillon/geometry/space/solid3.h"
#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::Cause;
using space_test::Expect;
using space_test::Random;
using space_test::Written;

// The bytes a value, a solid or an item (its type id, then its record) writes.
template <typename T>
std::string Stored(const T& value) {
    return Written([&](Archive& ar) { ar << value; });
}
std::string StoredSolid(Solid3 s) {
    return Written([&](Archive& ar) { s.Serialize(ar); });
}
std::string StoredItem(GeometricItem3& item) {
    return Written([&](Archive& ar) { StoreGeometricItem3(ar, &item); });
}

// Loads: the exception's cause, or -1 when the load succeeded.
template <typename T>
int LoadInto(const std::string& bytes, T& target) {
    return Cause(bytes, [&](Archive& ar) { ar >> target; });
}
int LoadSolid(const std::string& bytes, Solid3& target) {
    return Cause(bytes, [&](Archive& ar) { target.Serialize(ar); });
}
int LoadItem(const std::string& record, GeometricItem3& item) {
    return Cause(record, [&](Archive& ar) { item.Serialize(ar); });
}

TEST(SpaceArchive, GoldenLayouts) {
    // One literal anchor: 1.0 is 00 .. f0 3f, and the defined flag is a 32-bit 1.
    EXPECT_EQ(Stored(Point3(1, 0, 0)), std::string("\0\0\0\0\0\0\xf0\x3f", 8) + std::string(16, 0));
    EXPECT_EQ(Stored(Vector3(-0.0, 2, 3)), Expect().d({-0.0, 2, 3}).bytes);
    EXPECT_EQ(Stored(Line3(Point3(1, 2, 3), Point3(5, 7, 9))),
              Expect().d({4, 5, 6, 1, 2, 3, -1}).bytes);
    EXPECT_EQ(Stored(Line3(Point3(1, 2, 3), Vector3(0, 0, 1), 1e-3)),
              Expect().d({0, 0, 1, 1, 2, 3, 1e-3}).bytes);
    EXPECT_EQ(Stored(Plane3(Point3(0, 0, 2), Vector3(0, 0, 3))), Expect().d({0, 0, 3, -6}).bytes);
    EXPECT_EQ(Stored(Sector3(Point3(1, 2, 3), Point3(4, 5, 6))),
              Expect().d({1, 2, 3, 4, 5, 6}).bytes);
    EXPECT_EQ(Stored(Arc3(Point3(1, 0, 0), Point3(0, 1, 0), Point3(-1, 0, 0))),
              Expect().d({1, 0, 0, 0, 1, 0, -1, 0, 0, Arc3::eps}).bytes);
    const Matrix3 m3(1, 2, 3, 4, 5, 6, 7, 8, 9);
    EXPECT_EQ(Stored(m3), Expect().d({1, 2, 3, 4, 5, 6, 7, 8, 9}).bytes);
    EXPECT_EQ(Stored(Anchor3(Scale3(2, 3, 4))), Expect().d({2, 0, 0, 0, 3, 0, 0, 0, 4}).bytes);
    EXPECT_EQ(Stored(Matrix4x3(m3, Vector3(10, 11, 12))),
              Expect().d({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}).bytes);
    EXPECT_EQ(Stored(Rotate3_X(0.6, 0.8)), Expect().d({0.6, 0.8}).bytes);
    EXPECT_EQ(Stored(Rotate3_Z(-1, 0)), Expect().d({-1, 0}).bytes);
    EXPECT_EQ(Stored(Translate3(1, 2, 3)), Expect().d({1, 2, 3}).bytes);

    LocalPlane f = Isometry3(Matrix4x3(Matrix3(0, 1, 0, -1, 0, 0, 0, 0, 1), Vector3(1, 2, 3)));
    f.tol = 1e-6;
    EXPECT_EQ(Stored(f),
              Expect().d({0, 1, 0, -1, 0, 0, 0, 0, 1, 1, 2, 3}).i32({1}).d({1e-6}).bytes);
    f.seterr(Point3(7, 8, 9));
    EXPECT_EQ(Stored(f), Expect().d({1, 0, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9}).i32({0}).d({1e-6}).bytes);
    LocalCoordSystem s;
    s.set(Point3(1, 2, 3), Vector3(2, 0, 0), Vector3(1, 1, 0), false);
    EXPECT_EQ(Stored(s),
              Expect().d({1, 2, 3, 2, 0, 0, 1, 1, 0, 0, 0, 2}).i32({1}).d({1e-10}).bytes);
    EXPECT_EQ(Stored(LocalPlaneYPR(0.1, 0.2, 0.3, 4, 5, 6)),
              Expect().d({4, 5, 6, 0.1, 0.2, 0.3}).bytes);
}

// Writing then reading gives the same bytes; every proper prefix fails with endOfFile and leaves
// the target as it was. Returns the value read back.
template <typename T>
T RoundTrip(const T& value) {
    const std::string bytes = Stored(value);
    T back;
    EXPECT_EQ(LoadInto(bytes, back), -1);
    EXPECT_EQ(Stored(back), bytes);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        T copy = back;
        EXPECT_EQ(LoadInto(bytes.substr(0, n), copy), ArchiveException::endOfFile);
        EXPECT_EQ(Stored(copy), bytes) << "target changed by a read cut at " << n;
    }
    return back;
}

TEST(SpaceArchive, WhatIsWrittenReadsBackAndBadInputLeavesTheTargetAlone) {
    Random rnd(59);
    for (int i = 0; i < 20; ++i) {
        const Line3 l = RoundTrip(Line3(rnd.point(), rnd.vector(), i % 2 == 0 ? -1.0 : rnd(0, 1)));
        EXPECT_EQ(l.state, 0) << "loaded lines are unchecked";
        EXPECT_EQ(RoundTrip(Plane3(rnd.point(), rnd.vector())).state, 0);
        const Arc3 arc(rnd.point(), rnd.point(), rnd.point(), rnd(0, 1e-3));
        EXPECT_EQ(RoundTrip(arc).GetSweep(), arc.GetSweep()) << "rebuilt from the points";
        LocalPlane f(rnd.point(), rnd.point(), rnd.point(), rnd(0, 1e-3));
        if (i % 3 == 0) f.seterr(rnd.point());
        EXPECT_TRUE(RoundTrip(f).equal(f, 0.0));
        LocalCoordSystem cs;
        cs.setEps(rnd(0, 1e-3));
        cs.set(rnd.point(), rnd.vector(), rnd.vector(), rnd.vector(), i % 2 == 0);
        EXPECT_EQ(RoundTrip(cs).isDefined(), cs.isDefined());
        RoundTrip(LocalPlaneYPR(rnd(), rnd(), rnd(), rnd.point()));
        const Isometry3 iso(Rotate3(rnd(), rnd(), rnd()), Translate3(rnd.vector()));
        RoundTrip(iso);
        RoundTrip(iso.rotate());
        RoundTrip(Sector3(rnd.point(), rnd.point()));
        RoundTrip(Rotate3_Y(rnd()));
        RoundTrip(Translate3(rnd.vector()));
        RoundTrip(Scale3(rnd(), rnd(), rnd()));
    }

    // A defined flag other than 0 or 1 is a schema error; the target stays as it was.
    for (std::int32_t flag : {2, -1}) {
        LocalPlane f(Point3(1, 1, 1), Vector3(0, 1, 0));
        const std::string before = Stored(f);
        EXPECT_EQ(
            LoadInto(Expect().d({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}).i32({flag}).d({0}).bytes, f),
            ArchiveException::badSchema);
        EXPECT_EQ(Stored(f), before);
        LocalCoordSystem s;
        EXPECT_EQ(
            LoadInto(Expect().d({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}).i32({flag}).d({0}).bytes, s),
            ArchiveException::badSchema);
        EXPECT_EQ(Stored(s), Stored(LocalCoordSystem()));
    }
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
    EXPECT_EQ(StoredSolid(s), e.bytes);

    Solid3 back;
    EXPECT_EQ(LoadSolid(e.bytes, back), -1);
    EXPECT_EQ(back, s);
}

TEST(Solid3Archive, SeededRoundTripsAndDamagedDataLeaveTheTargetAsItWas) {
    std::mt19937 gen(99);
    for (int round = 0; round < 40; ++round) {
        const Solid3 s = space_test::RandomSolid(gen, true);
        const std::string bytes = StoredSolid(s);
        Solid3 back(5.0);
        ASSERT_EQ(LoadSolid(bytes, back), -1);
        EXPECT_EQ(back, s);
        // Equality sees every number: one changed texture or colour component makes them differ.
        if (!back.Face().empty()) ++back.Face()[0].texture[0].y;
        if (!back.Material().empty()) ++back.Material()[0].diffuse.z;
        EXPECT_EQ(back == s, s.Face().empty() && s.Material().empty());

        // Every cut of the record fails with endOfFile and leaves the target untouched.
        const Solid3 target = space_test::RandomSolid(gen, true);
        for (std::size_t cut = 0; cut < bytes.size(); cut += 1 + bytes.size() / 97) {
            Solid3 t = target;
            ASSERT_EQ(LoadSolid(bytes.substr(0, cut), t), 3) << cut;
            ASSERT_EQ(t, target);
        }
    }

    Solid3 t = space_test::RandomSolid(gen, true);
    const Solid3 before = t;
    const std::string bytes = StoredSolid(before);
    // A vertex count of four billion on a short record: fails at the end of the data.
    const std::string huge = Expect().i32({1}).ws("").i32({-16}).d({1, 2, 3}).bytes;
    EXPECT_EQ(LoadSolid(huge, t), 3);
    std::string badVersion = bytes;
    badVersion[0] = 2;
    EXPECT_EQ(LoadSolid(badVersion, t), 7);
    std::string badClosed = bytes;
    badClosed[badClosed.size() - 9] = 2;
    EXPECT_EQ(LoadSolid(badClosed, t), 7);
    // A face that names a vertex the solid lacks.
    Solid3 broken;
    broken.AddVertex(Point3());
    broken.AddFace(Face3(Mvector<std::uint32_t>{0, 0, 1}));
    EXPECT_EQ(LoadSolid(StoredSolid(broken), t), 5);
    broken.Face()[0].loop = {0, 0, 0};
    for (const Edge3d& e : {Edge3d(0, 1), Edge3d(1, 0)}) {
        broken.Edge().assign(1, e);
        EXPECT_EQ(LoadSolid(StoredSolid(broken), t), 5) << "an edge to a vertex the solid lacks";
    }
    broken.Edge().clear();
    broken.Face()[0].material = 0;
    EXPECT_EQ(LoadSolid(StoredSolid(broken), t), 5);
    EXPECT_EQ(t, before);
}

// A motion, rows in order.
constexpr std::initializer_list<double> kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

TEST(GeometricItem3Archive, ByteForByteLayouts) {
    HalfSpace3 h(Plane3(Vector3(0, 0, 2), -10), 0.5);
    EXPECT_EQ(StoredItem(h), Expect().i32({3, 1}).d({0.5, 0, 0, 2, -10}).d(kIdentity).bytes);

    // A contour: a flag byte, the edge count, each edge as its type, start, centre and angle.
    BoundedHalfSpace3 b(Plane3(Vector3(0, 0, 1), 0), space_test::Circle(0, 0, 1, false), 0.25);
    Expect eb;
    eb.i32({5, 1}).d({0.25, 0, 0, 1, 0}).d(kIdentity).le(1, 1);
    eb.i32({1, 1}).d({1, 0, 0, 0, 2 * std::numbers::pi});  // one edge: type, start, centre, angle
    EXPECT_EQ(StoredItem(b), eb.bytes);

    Extrusion3 e(0.125);
    e.SetPath(Vector3(1, 2, 3));
    e.SetOuterContour(space_test::Polygon({{0, 0}, {4, 0}, {0, 4}}));
    e.AddInnerContour(space_test::Polygon({{1, 1}}));
    Expect ee;
    ee.i32({2, 1}).d({0.125}).d(kIdentity).le(1, 1).d({1, 2, 3});
    ee.i32({3, 0}).d({0, 0, 0, 0, 0}).i32({0}).d({4, 0, 0, 0, 0}).i32({0}).d({0, 4, 0, 0, 0});
    ee.i32({1, 1, 0}).d({1, 1, 0, 0, 0});
    EXPECT_EQ(StoredItem(e), ee.bytes);

    BooleanResult3 r;  // the operand's type id before its record; 0 for a missing one
    r.SetOperator(BOOL_UNION);
    r.SetFirstOperand(&h);
    EXPECT_EQ(StoredItem(r),
              Expect().i32({4, 1, 2}).bytes + StoredItem(h) + Expect().i32({0}).bytes);
}

TEST(GeometricItem3Archive, StoredItemsLoadBackWithTheSameSolidOrFailWhole) {
    std::mt19937 gen(21);
    for (int k = 0; k < 60; ++k) {
        const auto item = space_test::RandomItem(gen, 2);
        const std::string bytes = StoredItem(*item);
        std::istringstream in(bytes);
        Archive ar(in);
        const auto back = LoadGeometricItem3(ar);
        ASSERT_NE(back, nullptr);
        EXPECT_TRUE(back->GetSolid() == item->GetSolid()) << k;
        EXPECT_EQ(StoredItem(*back), bytes);

        // Every shortened record fails and leaves another item of the kind as it was.
        auto victim = space_test::RandomItem(gen, 1);
        while (victim->GetTypeID() != item->GetTypeID()) victim = space_test::RandomItem(gen, 1);
        const std::string before = StoredItem(*victim);
        for (std::size_t cut = 4; cut < bytes.size(); cut += 1 + cut / 16) {
            EXPECT_EQ(LoadItem(bytes.substr(4, cut - 4), *victim), ArchiveException::endOfFile);
            ASSERT_EQ(StoredItem(*victim), before) << k << " cut at " << cut;
        }
    }
}

TEST(GeometricItem3Archive, DamagedRecordsFailWithTheirCause) {
    HalfSpace3 h(Plane3(Vector3(0, 0, 1), 0));
    Extrusion3 e;
    BooleanResult3 r;
    const Expect head = Expect().i32({1}).d({-1});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(LoadItem(Expect().i32({2}).bytes, h), ArchiveException::badSchema) << "version";
    EXPECT_EQ(LoadItem(Expect(head).d({nan}).bytes, h), ArchiveException::badSchema);
    EXPECT_EQ(LoadItem(Expect(head).d(kIdentity).le(2, 1).bytes, e), ArchiveException::badSchema);
    EXPECT_EQ(LoadItem(Expect(head).d(kIdentity).le(1, 1).d({0, 0, 1}).i32({1, 2}).bytes, e),
              ArchiveException::badSchema)
        << "edge type";
    EXPECT_EQ(LoadItem(Expect().i32({1, 1, 6}).bytes, r), ArchiveException::badClass);
    EXPECT_EQ(h.GetPlane().normal().z, 1);

    // Results nested past the bound fail before they can exhaust the stack.
    const auto nested = [](int levels) {
        std::string s, tail;
        for (int i = 0; i < levels; ++i, tail += Expect().i32({0}).bytes)
            s += Expect().i32({1, 1, 4}).bytes;
        return s + Expect().i32({1, 1, 0, 0}).bytes + tail;
    };
    EXPECT_EQ(LoadItem(nested(BooleanResult3::kMaxLoadDepth), r), -1);
    EXPECT_EQ(LoadItem(nested(BooleanResult3::kMaxLoadDepth + 1), r), ArchiveException::badSchema);
    EXPECT_EQ(LoadItem(nested(100000), r), ArchiveException::badSchema);
}

}  // namespace
}  // namespace quillon
