#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "quillon/geometry/plane/plane_types.h"
#include "tests/support/checks.h"

namespace quillon {
namespace {

using test_support::Bytes;
using test_support::Stored;

// Expected records, built value by value in little-endian order independently of the host.
struct Expect {
    Bytes bytes;
    Expect& le(std::uint64_t bits, int n) {
        for (int i = 0; i < n; ++i) bytes.push_back(static_cast<unsigned char>(bits >> (8 * i)));
        return *this;
    }
    Expect& d(double v) { return le(std::bit_cast<std::uint64_t>(v), 8); }
    Expect& i32(std::int32_t v) { return le(static_cast<std::uint32_t>(v), 4); }
};

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

template <typename T>
T RoundTrip(const T& value) {
    T back;
    EXPECT_EQ(LoadInto(Stored(value), back), -1);
    return back;
}

TEST(PlaneArchive, GoldenLayouts) {
    // One literal anchor: the line record ends with the tolerance 1e-10.
    const Bytes line = Stored(Line2(Point2(1, 2), Point2(4, 6)));  // a = 4, b = -3, c = 2
    ASSERT_EQ(line.size(), 36u);
    EXPECT_EQ(Bytes(line.end() - 8, line.end()),
              (Bytes{0xbb, 0xbd, 0xd7, 0xd9, 0xdf, 0x7c, 0xdb, 0x3d}));
    EXPECT_EQ(line, Expect().i32(0).d(4).d(-3).d(2).d(1e-10).bytes);
    EXPECT_EQ(Stored(Line2()), (Bytes{0xff, 0xff, 0xff, 0xff}));
    EXPECT_EQ(Stored(Line2(Point2(1, 1), Point2(1, 1))),
              Expect().i32(0).d(0).d(0).d(0).d(1e-10).bytes)
        << "an unchecked degenerate line still carries its coefficients";

    EXPECT_EQ(Stored(Point2(1.5, -2)), Expect().d(1.5).d(-2).bytes);
    EXPECT_EQ(Stored(Vector2(-0.0, 3)), Expect().d(-0.0).d(3).bytes);
    EXPECT_EQ(Stored(Node2(7, 8)), Expect().d(7).d(8).bytes);
    EXPECT_EQ(Stored(Rect2(1, 2, 3, 4)), Expect().d(3).d(1).d(4).d(2).bytes);  // x2, x1, y2, y1
    EXPECT_EQ(Stored(Ray2(Point2(1, 2), Vector2(3, 4))),
              Expect().i32(0).d(4).d(-3).d(2).d(1e-10).d(1).d(2).bytes);
    EXPECT_EQ(Stored(Sector2(Point2(1, 2), Point2(4, 6))),
              Expect().i32(0).d(4).d(-3).d(2).d(1e-10).d(1).d(2).d(4).d(6).bytes);
    EXPECT_EQ(Stored(Matrix2(1, 2, 3, 4)), Expect().d(1).d(2).d(3).d(4).bytes);
    EXPECT_EQ(Stored(Anchor2(Scale2(2, 3))), Expect().d(2).d(0).d(0).d(3).bytes);
    const Expect six = Expect().d(1).d(2).d(3).d(4).d(5).d(6);
    EXPECT_EQ(Stored(Matrix3x2(1, 2, 3, 4, 5, 6)), six.bytes);
    EXPECT_EQ(Stored(Linear2(Matrix3x2(1, 2, 3, 4, 5, 6))), six.bytes);
    EXPECT_EQ(Stored(Isometry2(Matrix3x2(1, 2, 3, 4, 5, 6))), six.bytes);
    EXPECT_EQ(Stored(Rotate2(0.6, 0.8)), Expect().d(0.6).d(0.8).bytes);  // sin, cos
    EXPECT_EQ(Stored(Translate2(5, -7)), Expect().d(5).d(-7).bytes);
    EXPECT_EQ(Stored(Scale2(2, 3)), Expect().d(2).d(3).bytes);
}

TEST(PlaneArchive, RoundTripsKeepValuesAndLinesComeBackUnchecked) {
    const Point2 p(1.25, -3), q(-7, 0.5);
    const Matrix3x2 m(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(Stored(RoundTrip(Rect2(p, q))), Stored(Rect2(p, q)));
    EXPECT_EQ(Stored(RoundTrip(Sector2(p, q))), Stored(Sector2(p, q)));
    EXPECT_EQ(Stored(RoundTrip(Ray2(p, q))), Stored(Ray2(p, q)));
    EXPECT_EQ(Stored(RoundTrip(m)), Stored(m));
    EXPECT_EQ(Stored(RoundTrip(Rotate2(0.6, 0.8))), Stored(Rotate2(0.6, 0.8)));
    const Line2 l(p, q, 0.5);  // offset form: valid, norm known
    const Line2 lb = RoundTrip(l);
    EXPECT_EQ(Stored(lb), Stored(l));
    EXPECT_TRUE(lb.state == 0 && !lb.norm_known);
    EXPECT_DOUBLE_EQ(lb.signed_distance(p), l.signed_distance(p));
    // Reading an unset record unsets a line that had coefficients.
    Line2 unset(Point2(0, 0), Point2(1, 1));
    EXPECT_EQ(LoadInto(Stored(Line2()), unset), -1);
    EXPECT_EQ(Stored(unset), Stored(Line2()));  // and it is stored as unset again
    EXPECT_EQ(unset.get_a() + unset.get_b() + unset.get_c(), 0.0);  // as a default line
}

TEST(PlaneArchive, BadInputThrowsArchiveExceptionAndLeavesTheTarget) {
    // A status other than 0 or -1 is not a line.
    const Line2 before(Point2(0, 0), Point2(1, 2));
    for (std::int32_t status : {1, 2, -2, 0x7fffffff}) {
        Line2 l = before;
        EXPECT_EQ(LoadInto(Expect().i32(status).d(1).d(2).d(3).d(4).bytes, l),
                  ArchiveException::badSchema)
            << status;
        EXPECT_EQ(l.c, before.c);
    }
    // Every truncation of a full sector record ends in endOfFile, the target untouched.
    const Bytes full = Stored(Sector2(Point2(1, 2), Point2(4, 6)));
    for (std::size_t n = 0; n < full.size(); ++n) {
        Sector2 s(Point2(9, 9), Point2(8, 8));
        const Bytes prefix(full.begin(), full.begin() + static_cast<std::ptrdiff_t>(n));
        EXPECT_EQ(LoadInto(prefix, s), ArchiveException::endOfFile) << n;
        EXPECT_EQ(s.get_beg().x, 9.0);
        EXPECT_EQ(s.line().c, Sector2(Point2(9, 9), Point2(8, 8)).line().c);
    }
}

}  // namespace
}  // namespace quillon
