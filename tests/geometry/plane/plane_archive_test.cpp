#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "quillon/geometry/plane/plane_types.h"

namespace quillon {
namespace {

using Bytes = std::vector<unsigned char>;

// Expected records, built value by value in little-endian order independently of the host.
struct Expect {
    Bytes bytes;
    Expect& d(double v) {
        const auto bits = std::bit_cast<std::uint64_t>(v);
        for (int i = 0; i < 8; ++i) bytes.push_back(static_cast<unsigned char>(bits >> (8 * i)));
        return *this;
    }
    Expect& i32(std::int32_t v) {
        const auto bits = static_cast<std::uint32_t>(v);
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<unsigned char>(bits >> (8 * i)));
        return *this;
    }
};

template <typename T>
Bytes Stored(const T& value) {
    std::ostringstream out;
    Archive ar(out);
    ar << value;
    const std::string s = out.str();
    return Bytes(s.begin(), s.end());
}

template <typename T>
T Loaded(const Bytes& bytes, T value = T()) {
    std::istringstream in(std::string(bytes.begin(), bytes.end()));
    Archive ar(in);
    ar >> value;
    return value;
}

template <typename T>
T RoundTrip(const T& value) {
    return Loaded<T>(Stored(value));
}

TEST(PlaneArchive, GoldenLayouts) {
    // One literal anchor: the line record ends with the tolerance 1e-10.
    const Bytes line = Stored(Line2(Point2(1, 2), Point2(4, 6)));  // a = 4, b = -3, c = 2
    ASSERT_EQ(line.size(), 36u);
    EXPECT_EQ(Bytes(line.begin(), line.begin() + 4), (Bytes{0, 0, 0, 0}));
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
    std::mt19937 gen(29);
    std::uniform_real_distribution<double> u(-1e3, 1e3);
    for (int i = 0; i < 50; ++i) {
        const Point2 p(u(gen), u(gen)), q(u(gen), u(gen));
        const Rect2 r = RoundTrip(Rect2(p, q));
        EXPECT_EQ(r.pnt1().x, p.x);
        EXPECT_EQ(r.pnt1().y, p.y);
        EXPECT_EQ(r.pnt2().x, q.x);
        EXPECT_EQ(r.pnt2().y, q.y);

        const Line2 l(p, q, u(gen));  // offset form: valid, norm known
        const Line2 lb = RoundTrip(l);
        EXPECT_EQ(lb.a, l.a);
        EXPECT_EQ(lb.b, l.b);
        EXPECT_EQ(lb.c, l.c);
        EXPECT_EQ(lb.state, 0);
        EXPECT_FALSE(lb.norm_known);
        EXPECT_DOUBLE_EQ(lb.signed_distance(p), l.signed_distance(p));

        const Sector2 s = RoundTrip(Sector2(p, q));
        EXPECT_EQ(s.get_end().y, q.y);
        EXPECT_EQ(s.line().c, Sector2(p, q).line().c);
        const Ray2 ray = RoundTrip(Ray2(p, q));
        EXPECT_EQ(ray.start().x, p.x);
        EXPECT_EQ(ray.direction().y, (q - p).y);

        const Matrix3x2 m(u(gen), u(gen), u(gen), u(gen), u(gen), u(gen));
        const Matrix3x2 mb = RoundTrip(m);
        for (short row = 0; row < 3; ++row) {
            EXPECT_EQ(mb[row][0], m[row][0]);
            EXPECT_EQ(mb[row][1], m[row][1]);
        }
        const Rotate2 rot = RoundTrip(Rotate2(u(gen)));
        EXPECT_DOUBLE_EQ(rot.sin * rot.sin + rot.cos * rot.cos, 1.0);
    }
    // Reading an unset record unsets a line that had coefficients.
    const Line2 unset = Loaded(Stored(Line2()), Line2(Point2(0, 0), Point2(1, 1)));
    EXPECT_EQ(unset.state, -1);
    EXPECT_FALSE(unset.is_line());
}

TEST(PlaneArchive, BadInputThrowsArchiveExceptionAndLeavesTheTarget) {
    // A status other than 0 or -1 is not a line.
    const Line2 before(Point2(0, 0), Point2(1, 2));
    for (std::int32_t status : {1, 2, -2, 0x7fffffff}) {
        Line2 l = before;
        std::istringstream in(std::string(
            reinterpret_cast<const char*>(Expect().i32(status).d(1).d(2).d(3).d(4).bytes.data()),
            36));
        Archive ar(in);
        try {
            ar >> l;
            ADD_FAILURE() << "status " << status << " accepted";
        } catch (const ArchiveException& e) {
            EXPECT_EQ(e.cause, ArchiveException::badSchema);
        }
        EXPECT_EQ(l.c, before.c);
    }
    // Every truncation of a full sector record ends in endOfFile, the target untouched.
    const Bytes full = Stored(Sector2(Point2(1, 2), Point2(4, 6)));
    for (std::size_t n = 0; n < full.size(); ++n) {
        Sector2 s(Point2(9, 9), Point2(8, 8));
        try {
            s = Loaded(Bytes(full.begin(), full.begin() + static_cast<std::ptrdiff_t>(n)), s);
            ADD_FAILURE() << "prefix of " << n << " bytes accepted";
        } catch (const ArchiveException& e) {
            EXPECT_EQ(e.cause, ArchiveException::endOfFile);
        }
        EXPECT_EQ(s.get_beg().x, 9.0);
    }
    // Mutated records: either read or refused with ArchiveException, never anything else.
    std::mt19937 gen(31);
    int read = 0, refused = 0;
    for (int i = 0; i < 2000; ++i) {
        Bytes b = full;
        b[gen() % b.size()] = static_cast<unsigned char>(gen());
        if (gen() % 2 == 0) b[gen() % 4] = static_cast<unsigned char>(gen());  // hit the status
        b.resize(gen() % (b.size() + 1));
        try {
            const Sector2 s = Loaded<Sector2>(b);
            (void)s.has_length();
            ++read;
        } catch (const ArchiveException&) {
            ++refused;
        }
    }
    EXPECT_GT(read, 0);
    EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace quillon
