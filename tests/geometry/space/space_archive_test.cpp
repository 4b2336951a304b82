#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::Cause;
using space_test::Expect;
using space_test::Random;
using space_test::Written;

template <typename T>
std::string Stored(const T& value) {
    return Written([&](Archive& ar) { ar << value; });
}

template <typename T>
int LoadInto(const std::string& bytes, T& target) {
    return Cause(bytes, [&](Archive& ar) { ar >> target; });
}

TEST(SpaceArchive, GoldenLayouts) {
    // One literal anchor: 1.0 is 00 .. f0 3f, and the defined flag is a 32-bit 1.
    EXPECT_EQ(Stored(Point3(1, 0, 0)), std::string("\0\0\0\0\0\0\xf0\x3f", 8) + std::string(16, 0));
    EXPECT_EQ(Stored(Vector3(-0.0, 2, 3)), Expect().d({-0.0, 2, 3}).bytes);
    EXPECT_EQ(Stored(Node3(4, 5, 6)), Expect().d({4, 5, 6}).bytes);
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
    const Expect twelve = Expect().d({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    EXPECT_EQ(Stored(Matrix4x3(m3, Vector3(10, 11, 12))), twelve.bytes);
    EXPECT_EQ(Stored(Isometry3(Matrix4x3(m3, Vector3(10, 11, 12)))), twelve.bytes);
    EXPECT_EQ(Stored(Linear3(Matrix4x3(m3, Vector3(10, 11, 12)))), twelve.bytes);
    EXPECT_EQ(Stored(Rotate3_X(0.6, 0.8)), Expect().d({0.6, 0.8}).bytes);
    EXPECT_EQ(Stored(Rotate3_Y(0.8, 0.6)), Expect().d({0.8, 0.6}).bytes);
    EXPECT_EQ(Stored(Rotate3_Z(-1, 0)), Expect().d({-1, 0}).bytes);
    EXPECT_EQ(Stored(Translate3(1, 2, 3)), Expect().d({1, 2, 3}).bytes);
    EXPECT_EQ(Stored(Scale3(1, 2, 3)), Expect().d({1, 2, 3}).bytes);

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

}  // namespace
}  // namespace quillon
