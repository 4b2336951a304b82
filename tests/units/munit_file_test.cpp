// The unit file: byte layout of every version, round trips, refusal of damaged files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "munit_fixture.h"

namespace quillon::munit::testing {
namespace {

namespace fs = std::filesystem;
constexpr MUNIT_T N = MUNIT_NONE;

// Builds file bytes by hand, independently of the archive class.
struct Bytes {
    std::string data;
    void u8(unsigned v) { data.push_back(static_cast<char>(v & 0xFF)); }
    void u16(unsigned v) { u8(v), u8(v >> 8); }
    void i32(std::int32_t v) {
        const auto u = static_cast<std::uint32_t>(v);
        u16(u & 0xFFFF), u16(u >> 16);
    }
    void str(const std::wstring& s) {  // short texts only
        u8(0xFF), u16(0xFFFE), u8(static_cast<unsigned>(s.size()));
        for (wchar_t c : s) u16(static_cast<unsigned>(c));
    }
};

// A plausible record for each type, in the order of the file.
struct Rec {
    int id;
    std::int32_t precision;
    const wchar_t* u1;
    const wchar_t* u2;
    const wchar_t* u3;
    bool exponential;
};

// clang-format off
const Rec kRecords[16] = {
    {7, 2, L"m", L"", L"", false}, {8, 1, L"cm", L"", L"", false}, {15, 3, L"kN", L"cm", L"", true},
    {23, 2, L"kN", L"m", L"", false}, {6, 0, L"", L"", L"", false}, {17, 4, L"Deg", L"", L"", false},
    {13, 2, L"kN", L"", L"", false}, {31, 2, L"cm", L"cm", L"", false},
    {33, 1, L"mm", L"mm", L"mm", true}, {19, 2, L"t", L"", L"", false},
    {14, 3, L"kN", L"m", L"", false}, {16, 0, L"mm", L"", L"", false}, {5, 5, L"x", L"", L"", false},
    {12, 2, L"cm", L"cm", L"", false}, {11, 2, L"ft", L"", L"", false}, {34, 6, L"in", L"", L"", true}};
// clang-format on

// Records in a file of each version 0 to 8.
constexpr int kCounts[] = {0, 6, 7, 11, 12, 15, 16, 16, 16};

std::wstring extraFor(int id) { return L"extra" + std::to_wstring(id); }

// A file of the given version; `firstUnit` replaces unit1 of the first record (type 7), and with
// `no16` type 16 is written as the default record a table without it gives.
std::string buildFile(int version, int spare = 0, const wchar_t* firstUnit = nullptr,
                      bool no16 = false) {
    Bytes b;
    b.u16(static_cast<unsigned>(version));
    for (int i = 0; i < kCounts[std::min(version, 8)]; ++i) {
        const Rec r = no16 && kRecords[i].id == 16 ? Rec{16, 0, L"", L"", L"", false} : kRecords[i];
        b.i32(r.precision);
        b.str(i == 0 && firstUnit ? firstUnit : r.u1), b.str(r.u2), b.str(r.u3);
        b.i32(r.exponential ? 1 : 0);
        if (version >= 7) b.i32(spare);
        if (version >= 8) b.str(no16 && r.id == 16 ? L"" : extraFor(r.id));
    }
    return b.data;
}

// Reads `bytes` as a unit file: the cause of the ArchiveException it throws, -1 when it reads.
int Load(MUnit& mu, const std::string& bytes) {
    std::istringstream in(bytes);
    Archive ar(in);
    try {
        mu.Serialize(ar);
        return -1;
    } catch (const ArchiveException& e) {
        return static_cast<int>(e.cause);
    }
}

std::string Store(MUnit& mu) {
    std::ostringstream out;
    Archive ar(out);
    mu.Serialize(ar);
    return out.str();
}

using UnitFileTest = MUnitFixture;

TEST_F(UnitFileTest, EveryVersionReadsItsRecords) {
    MUnit mu;
    for (int version = 0; version <= 8; ++version) {
        table_.clear();
        ASSERT_EQ(mu.SetTypeUnit(T(9), 2, L"mm", L"", L"", false), 0);  // never in a file
        ASSERT_EQ(Load(mu, buildFile(version, 12345)), -1) << version;
        EXPECT_EQ(table_.size(), static_cast<std::size_t>(kCounts[version])) << version;  // no 9
        for (int i = 0; i < kCounts[version]; ++i) {  // absent records: the count says it
            const Rec& r = kRecords[i];
            TypeUnit expected{T(r.id),       N,  N, N, r.u1, r.u2, r.u3, r.precision,
                              r.exponential, {}, 0, {}};
            if (version >= 8) expected.extraText = extraFor(r.id);
            MUnit::GetTypeMunit(T(r.id), expected.kind1, expected.kind2, expected.kind3);
            EXPECT_EQ(mu.GetTypeUnit(T(r.id)), expected) << version << " " << r.id;
        }
    }
}

TEST_F(UnitFileTest, WritesVersionEightByteForByteAndReadsItBack) {
    MUnit mu;
    for (const Rec& r : kRecords) {
        if (r.id == 16) continue;  // absent: written as a default record
        ASSERT_EQ(
            mu.SetTypeUnit(T(r.id), r.precision, r.u1, r.u2, r.u3, r.exponential, extraFor(r.id)),
            0);
    }
    ASSERT_EQ(mu.SetTypeUnit(T(9), 2, L"mm", L"", L"", false), 0);  // not part of the file
    const std::string expected = buildFile(8, 0, nullptr, true);
    EXPECT_EQ(Store(mu), expected);
    // Read back: the same records, except 9 (not stored) and 16 (an empty unit does not validate).
    TypeUnitTable before = table_;
    std::erase_if(before, [](const TypeUnit& t) { return t.id == 9; });
    const fs::path p =
        fs::temp_directory_path() / ("munit_file_test_" + std::to_string(std::random_device()()));
    ASSERT_TRUE(mu.WriteToFile(p));
    ASSERT_TRUE(mu.InitFromFile(p));
    EXPECT_EQ(table_, before);
    EXPECT_EQ(Store(mu), expected);
    // A newer version, a missing file or an unwritable path fail and leave the table as it was.
    std::string nine = expected;
    nine[0] = 9;
    std::ofstream(p, std::ios::binary) << nine;
    EXPECT_FALSE(mu.InitFromFile(p));
    fs::remove(p);
    EXPECT_FALSE(mu.InitFromFile(p));
    EXPECT_FALSE(mu.WriteToFile(fs::temp_directory_path()));  // a folder is no file
    EXPECT_FALSE(mu.WriteToFile(p / "no" / "such" / "folder"));
    EXPECT_EQ(table_, before);
}

TEST_F(UnitFileTest, InvalidRecordsAreDroppedSilently) {
    MUnit mu;
    const std::string bytes = buildFile(8, 0, L"kN");  // type 7 names a force
    ASSERT_EQ(Load(mu, bytes), -1);
    EXPECT_EQ(mu.GetTypeUnit(T(7)).id, -1);
    EXPECT_EQ(table_.size(), 15u);
    GetMInit()->SetCorrectQuantity(false);  // with the check off the record is kept
    ASSERT_EQ(Load(mu, bytes), -1);
    EXPECT_EQ(mu.GetTypeUnit(T(7)).unit1, L"kN");
}

// A newer version and every truncation of a good file fail and leave the table as it was (random
// damage is the unit_file fuzz target's job).
TEST_F(UnitFileTest, NewerOrDamagedFilesLeaveTheTableIntact) {
    MUnit mu;
    ASSERT_EQ(mu.SetTypeUnit(T(7), 2, L"cm", L"", L"", false), 0);
    ASSERT_EQ(mu.SetTypeUnit(T(14), 2, L"kN", L"m", L"", false), 0);
    const TypeUnitTable before = table_;
    std::string good = buildFile(8);
    for (std::size_t n = 0; n < good.size(); ++n) {
        ASSERT_NE(Load(mu, good.substr(0, n)), -1) << n;
        ASSERT_EQ(table_, before) << n;
    }
    good[0] = 9;
    EXPECT_EQ(Load(mu, good), ArchiveException::badSchema);
    EXPECT_EQ(table_, before);
}

}  // namespace
}  // namespace quillon::munit::testing
