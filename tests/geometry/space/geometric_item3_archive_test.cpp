// The archive records of the geometric items: their layouts byte for byte, seeded round trips that
// give the same solid, and failed loads that leave the item as it was.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>

#include "item3_test_support.h"
#include "quillon/geometry/space/geometric_item3.h"

namespace quillon {
namespace {

// Expected records, built value by value in little-endian order independently of the host.
struct Expect {
    std::string bytes;
    Expect& le(std::uint64_t bits, int n) {
        for (int i = 0; i < n; ++i) bytes.push_back(static_cast<char>(bits >> (8 * i)));
        return *this;
    }
    Expect& d(double v) { return le(std::bit_cast<std::uint64_t>(v), 8); }
    Expect& i32(std::int32_t v) { return le(static_cast<std::uint32_t>(v), 4); }
    Expect& identity() {  // a motion, rows in order
        for (int r = 0; r < 4; ++r) d(r == 0).d(r == 1).d(r == 2);
        return *this;
    }
    Expect& edge(int type, double sx, double sy, double cx, double cy, double a) {
        return i32(type).d(sx).d(sy).d(cx).d(cy).d(a);
    }
};

// The item's type id and record.
std::string Stored(GeometricItem3& item) {
    std::ostringstream out;
    Archive ar(out);
    StoreGeometricItem3(ar, &item);
    return out.str();
}

// Loads a record into the item: the exception's cause, or -1 when the load succeeded.
int Load(const std::string& record, GeometricItem3& item) {
    std::istringstream in(record);
    Archive ar(in);
    try {
        item.Serialize(ar);
    } catch (const ArchiveException& e) {
        return e.cause;
    }
    return -1;
}

TEST(GeometricItem3Archive, ByteForByteLayouts) {
    HalfSpace3 h(Plane3(Vector3(0, 0, 2), -10), 0.5);
    EXPECT_EQ(Stored(h), Expect().i32(3).i32(1).d(0.5).d(0).d(0).d(2).d(-10).identity().bytes);

    BoundedHalfSpace3 b(Plane3(Vector3(0, 0, 1), 0), item_test::Circle(0, 0, 1, false), 0.25);
    EXPECT_EQ(Stored(b), Expect()
                             .i32(5)
                             .i32(1)
                             .d(0.25)
                             .d(0)
                             .d(0)
                             .d(1)
                             .d(0)
                             .identity()
                             .le(1, 1)
                             .i32(1)
                             .edge(1, 1, 0, 0, 0, 2 * std::numbers::pi)
                             .bytes);

    Extrusion3 e(0.125);
    e.SetPath(Vector3(1, 2, 3));
    e.SetOuterContour(item_test::Polygon({{0, 0}, {4, 0}, {0, 4}}));
    e.AddInnerContour(item_test::Polygon({{1, 1}}));
    EXPECT_EQ(Stored(e), Expect()
                             .i32(2)
                             .i32(1)
                             .d(0.125)
                             .identity()
                             .le(1, 1)
                             .d(1)
                             .d(2)
                             .d(3)
                             .i32(3)
                             .edge(0, 0, 0, 0, 0, 0)
                             .edge(0, 4, 0, 0, 0, 0)
                             .edge(0, 0, 4, 0, 0, 0)
                             .i32(1)
                             .i32(1)
                             .edge(0, 1, 1, 0, 0, 0)
                             .bytes);

    BooleanResult3 r;  // the operand's type id before its record; 0 for a missing one
    r.SetOperator(BOOL_UNION);
    r.SetFirstOperand(&h);
    EXPECT_EQ(Stored(r), Expect().i32(4).i32(1).i32(2).bytes + Stored(h) + Expect().i32(0).bytes);
}

TEST(GeometricItem3Archive, StoredItemsLoadBackWithTheSameSolidOrFailWhole) {
    std::mt19937 gen(21);
    for (int k = 0; k < 60; ++k) {
        const auto item = item_test::RandomItem(gen, 2);
        const std::string bytes = Stored(*item);
        std::istringstream in(bytes);
        Archive ar(in);
        const auto back = LoadGeometricItem3(ar);
        ASSERT_NE(back, nullptr);
        EXPECT_TRUE(back->GetSolid() == item->GetSolid()) << k;
        EXPECT_EQ(Stored(*back), bytes);

        // Every shortened record fails and leaves another item of the kind as it was.
        auto victim = item_test::RandomItem(gen, 1);
        while (victim->GetTypeID() != item->GetTypeID()) victim = item_test::RandomItem(gen, 1);
        const std::string before = Stored(*victim);
        for (std::size_t cut = 4; cut < bytes.size(); cut += 1 + cut / 16) {
            EXPECT_EQ(Load(bytes.substr(4, cut - 4), *victim), ArchiveException::endOfFile);
            ASSERT_EQ(Stored(*victim), before) << k << " cut at " << cut;
        }
    }
}

TEST(GeometricItem3Archive, DamagedRecordsFailWithTheirCause) {
    HalfSpace3 h(Plane3(Vector3(0, 0, 1), 0));
    Extrusion3 e;
    BooleanResult3 r;
    const Expect head = Expect().i32(1).d(-1);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Load(Expect().i32(2).bytes, h), ArchiveException::badSchema) << "version";
    EXPECT_EQ(Load(Expect(head).d(nan).bytes, h), ArchiveException::badSchema);
    EXPECT_EQ(Load(Expect(head).identity().le(2, 1).bytes, e), ArchiveException::badSchema);
    EXPECT_EQ(Load(Expect(head).identity().le(1, 1).d(0).d(0).d(1).i32(1).i32(2).bytes, e),
              ArchiveException::badSchema)
        << "edge type";
    EXPECT_EQ(Load(Expect().i32(1).i32(1).i32(6).bytes, r), ArchiveException::badClass);
    EXPECT_EQ(h.GetPlane().normal().z, 1);

    // Results nested past the bound fail before they can exhaust the stack.
    const auto nested = [](int levels) {
        std::string s;
        for (int i = 0; i < levels; ++i) s += Expect().i32(1).i32(1).i32(4).bytes;
        s += Expect().i32(1).i32(1).i32(0).i32(0).bytes;
        for (int i = 0; i < levels; ++i) s += Expect().i32(0).bytes;
        return s;
    };
    EXPECT_EQ(Load(nested(BooleanResult3::kMaxLoadDepth), r), -1);
    EXPECT_EQ(Load(nested(BooleanResult3::kMaxLoadDepth + 1), r), ArchiveException::badSchema);
    EXPECT_EQ(Load(nested(100000), r), ArchiveException::badSchema);
}

}  // namespace
}  // namespace quillon
