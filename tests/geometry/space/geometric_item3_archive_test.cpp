// The archive records of the geometric items: their layouts byte for byte, seeded round trips that
// give the same solid, and failed loads that leave the item as it was.
#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <random>
#include <string>

#include "item3_test_support.h"
#include "quillon/geometry/space/geometric_item3.h"
#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::Expect;

// A motion, rows in order.
constexpr std::initializer_list<double> kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

// The item's type id and record.
std::string Stored(GeometricItem3& item) {
    return space_test::Written([&](Archive& ar) { StoreGeometricItem3(ar, &item); });
}

// Loads a record into the item: the exception's cause, or -1 when the load succeeded.
int Load(const std::string& record, GeometricItem3& item) {
    return space_test::Cause(record, [&](Archive& ar) { item.Serialize(ar); });
}

TEST(GeometricItem3Archive, ByteForByteLayouts) {
    HalfSpace3 h(Plane3(Vector3(0, 0, 2), -10), 0.5);
    EXPECT_EQ(Stored(h), Expect().i32({3, 1}).d({0.5, 0, 0, 2, -10}).d(kIdentity).bytes);

    // A contour: a flag byte, the edge count, each edge as its type, start, centre and angle.
    BoundedHalfSpace3 b(Plane3(Vector3(0, 0, 1), 0), item_test::Circle(0, 0, 1, false), 0.25);
    Expect eb;
    eb.i32({5, 1}).d({0.25, 0, 0, 1, 0}).d(kIdentity).le(1, 1);
    eb.i32({1, 1}).d({1, 0, 0, 0, 2 * std::numbers::pi});  // one edge: type, start, centre, angle
    EXPECT_EQ(Stored(b), eb.bytes);

    Extrusion3 e(0.125);
    e.SetPath(Vector3(1, 2, 3));
    e.SetOuterContour(item_test::Polygon({{0, 0}, {4, 0}, {0, 4}}));
    e.AddInnerContour(item_test::Polygon({{1, 1}}));
    Expect ee;
    ee.i32({2, 1}).d({0.125}).d(kIdentity).le(1, 1).d({1, 2, 3});
    ee.i32({3, 0}).d({0, 0, 0, 0, 0}).i32({0}).d({4, 0, 0, 0, 0}).i32({0}).d({0, 4, 0, 0, 0});
    ee.i32({1, 1, 0}).d({1, 1, 0, 0, 0});
    EXPECT_EQ(Stored(e), ee.bytes);

    BooleanResult3 r;  // the operand's type id before its record; 0 for a missing one
    r.SetOperator(BOOL_UNION);
    r.SetFirstOperand(&h);
    EXPECT_EQ(Stored(r), Expect().i32({4, 1, 2}).bytes + Stored(h) + Expect().i32({0}).bytes);
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
    const Expect head = Expect().i32({1}).d({-1});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Load(Expect().i32({2}).bytes, h), ArchiveException::badSchema) << "version";
    EXPECT_EQ(Load(Expect(head).d({nan}).bytes, h), ArchiveException::badSchema);
    EXPECT_EQ(Load(Expect(head).d(kIdentity).le(2, 1).bytes, e), ArchiveException::badSchema);
    EXPECT_EQ(Load(Expect(head).d(kIdentity).le(1, 1).d({0, 0, 1}).i32({1, 2}).bytes, e),
              ArchiveException::badSchema)
        << "edge type";
    EXPECT_EQ(Load(Expect().i32({1, 1, 6}).bytes, r), ArchiveException::badClass);
    EXPECT_EQ(h.GetPlane().normal().z, 1);

    // Results nested past the bound fail before they can exhaust the stack.
    const auto nested = [](int levels) {
        std::string s, tail;
        for (int i = 0; i < levels; ++i, tail += Expect().i32({0}).bytes)
            s += Expect().i32({1, 1, 4}).bytes;
        return s + Expect().i32({1, 1, 0, 0}).bytes + tail;
    };
    EXPECT_EQ(Load(nested(BooleanResult3::kMaxLoadDepth), r), -1);
    EXPECT_EQ(Load(nested(BooleanResult3::kMaxLoadDepth + 1), r), ArchiveException::badSchema);
    EXPECT_EQ(Load(nested(100000), r), ArchiveException::badSchema);
}

}  // namespace
}  // namespace quillon
