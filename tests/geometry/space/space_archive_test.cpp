#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::Random;
using Bytes = std::vector<unsigned char>;

// Expected records, built value by value in little-endian order independently of the host.
struct Expect {
    Bytes bytes;
    Expect& le(std::uint64_t bits, int n) {
        for (int i = 0; i < n; ++i) bytes.push_back(static_cast<unsigned char>(bits >> (8 * i)));
        return *this;
    }
    Expect& d(double v) { return le(std::bit_cast<std::uint64_t>(v), 8); }
    Expect& d(std::initializer_list<double> vs) {
        for (double v : vs) d(v);
        return *this;
    }
    Expect& i32(std::int32_t v) { return le(static_cast<std::uint32_t>(v), 4); }
};

template <typename T>
Bytes Stored(const T& value) {
    std::ostringstream out;
    Archive ar(out);
    ar << value;
    const std::string s = out.str();
    return Bytes(s.begin(), s.end());
}

// Reads `bytes` into `target`; the archive exception's cause, or -1 when the read succeeded.
template <typename T>
int LoadInto(const Bytes& bytes, T& target) {
    std::istringstream in(std::string(bytes.begin(), bytes.end()));
    Archive ar(in);
    try {
        ar >> target;
    } catch (const ArchiveException& e) {
        return e.cause;
    }
    return -1;
}

// Every proper prefix of `bytes` fails with endOfFile and leaves `target` as it was.
template <typename T>
void ExpectTruncationsFail(const Bytes& bytes, const T& target) {
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        T copy = target;
        EXPECT_EQ(LoadInto(Bytes(bytes.begin(), bytes.begin() + n), copy),
                  ArchiveException::endOfFile)
            << n;
        EXPECT_EQ(Stored(copy), Stored(target)) << "target changed by a read cut at " << n;
    }
}

TEST(SpaceArchive, GoldenLayouts) {
    // One literal anchor: 1.0 is 00 .. f0 3f, and the defined flag is a 32-bit 1.
    EXPECT_EQ(Stored(Point3(1, 0, 0)), (Bytes{0, 0, 0, 0, 0, 0, 0xf0, 0x3f, 0, 0, 0, 0,
                                              0, 0, 0, 0, 0, 0, 0,    0,    0, 0, 0, 0}));
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
    EXPECT_EQ(Stored(f), Expect().d({0, 1, 0, -1, 0, 0, 0, 0, 1, 1, 2, 3}).i32(1).d(1e-6).bytes);
    f.seterr(Point3(7, 8, 9));
    EXPECT_EQ(Stored(f), Expect().d({1, 0, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9}).i32(0).d(1e-6).bytes);
    LocalCoordSystem s;
    s.set(Point3(1, 2, 3), Vector3(2, 0, 0), Vector3(1, 1, 0), false);
    EXPECT_EQ(Stored(s), Expect().d({1, 2, 3, 2, 0, 0, 1, 1, 0, 0, 0, 2}).i32(1).d(1e-10).bytes);
    EXPECT_EQ(Stored(LocalPlaneYPR(0.1, 0.2, 0.3, 4, 5, 6)),
              Expect().d({4, 5, 6, 0.1, 0.2, 0.3}).bytes);
}

TEST(SpaceArchive, WhatIsWrittenReadsBackAndBadInputLeavesTheTargetAlone) {
    Random rnd(59);
    for (int i = 0; i < 20; ++i) {
        const Line3 l(rnd.point(), rnd.vector(), i % 2 == 0 ? -1.0 : rnd(0, 1));
        Line3 lb;
        ASSERT_EQ(LoadInto(Stored(l), lb), -1);
        EXPECT_EQ(lb.state, 0) << "loaded lines are unchecked";
        EXPECT_EQ(Stored(lb), Stored(l));
        EXPECT_EQ(lb.is_line(), l.is_line());
        ExpectTruncationsFail(Stored(l), lb);

        const Plane3 pl(rnd.point(), rnd.vector());
        Plane3 pb;
        ASSERT_EQ(LoadInto(Stored(pl), pb), -1);
        EXPECT_EQ(pb.state, 0);
        EXPECT_EQ(Stored(pb), Stored(pl));
        ExpectTruncationsFail(Stored(pl), pb);

        const Arc3 arc(rnd.point(), rnd.point(), rnd.point(), rnd(0, 1e-3));
        Arc3 ab;
        ASSERT_EQ(LoadInto(Stored(arc), ab), -1);
        EXPECT_EQ(Stored(ab), Stored(arc));
        EXPECT_EQ(ab.IsArc(), arc.IsArc());
        EXPECT_EQ(ab.GetSweep(), arc.GetSweep()) << "derived fields rebuilt from the points";
        ExpectTruncationsFail(Stored(arc), ab);

        LocalPlane f(rnd.point(), rnd.point(), rnd.point(), rnd(0, 1e-3)), fb;
        if (i % 3 == 0) f.seterr(rnd.point());
        ASSERT_EQ(LoadInto(Stored(f), fb), -1);
        EXPECT_TRUE(fb.equal(f, 0.0));
        EXPECT_EQ(fb.tol, f.tol);
        ExpectTruncationsFail(Stored(f), fb);

        const LocalPlaneYPR ypr(rnd(), rnd(), rnd(), rnd.point());
        LocalPlaneYPR yb;
        ASSERT_EQ(LoadInto(Stored(ypr), yb), -1);
        EXPECT_EQ(Stored(yb), Stored(ypr));
        ExpectTruncationsFail(Stored(ypr), yb);

        LocalCoordSystem cs, csb;
        cs.setEps(rnd(0, 1e-3));
        cs.set(rnd.point(), rnd.vector(), rnd.vector(), rnd.vector(), i % 2 == 0);
        ASSERT_EQ(LoadInto(Stored(cs), csb), -1);
        EXPECT_EQ(Stored(csb), Stored(cs));
        EXPECT_EQ(csb.isDefined(), cs.isDefined());
        ExpectTruncationsFail(Stored(cs), csb);

        const Isometry3 iso(Rotate3(rnd(), rnd(), rnd()), Translate3(rnd.vector()));
        Isometry3 isob;
        ASSERT_EQ(LoadInto(Stored(iso), isob), -1);
        EXPECT_EQ(Stored(isob), Stored(iso));
        ExpectTruncationsFail(Stored(iso), isob);
        Rotate3 rb;
        ASSERT_EQ(LoadInto(Stored(iso.rotate()), rb), -1);
        EXPECT_EQ(Stored(rb), Stored(iso.rotate()));
    }
    const Sector3 sec(Point3(1, 2, 3), Point3(4, 5, 6));
    ExpectTruncationsFail(Stored(sec), Sector3());
    ExpectTruncationsFail(Stored(Rotate3_Y(0.5)), Rotate3_Y());
    ExpectTruncationsFail(Stored(Translate3(1, 2, 3)), Translate3());
    ExpectTruncationsFail(Stored(Scale3(1, 2, 3)), Scale3());

    // A defined flag other than 0 or 1 is a schema error; the target stays as it was.
    for (std::int32_t flag : {2, -1}) {
        LocalPlane f(Point3(1, 1, 1), Vector3(0, 1, 0));
        const Bytes before = Stored(f);
        EXPECT_EQ(
            LoadInto(Expect().d({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}).i32(flag).d(0).bytes, f),
            ArchiveException::badSchema);
        EXPECT_EQ(Stored(f), before);
        LocalCoordSystem s;
        EXPECT_EQ(
            LoadInto(Expect().d({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}).i32(flag).d(0).bytes, s),
            ArchiveException::badSchema);
        EXPECT_EQ(Stored(s), Stored(LocalCoordSystem()));
    }
}

}  // namespace
}  // namespace quillon
