// The unit file: byte layout of every version, round trips, refusal of damaged files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
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

const Rec kRecords[16] = {
    {7, 2, L"m", L"", L"", false},      {8, 1, L"cm", L"", L"", false},
    {15, 3, L"kN", L"cm", L"", true},   {23, 2, L"kN", L"m", L"", false},
    {6, 0, L"", L"", L"", false},       {17, 4, L"Deg", L"", L"", false},
    {13, 2, L"kN", L"", L"", false},    {31, 2, L"cm", L"cm", L"", false},
    {33, 1, L"mm", L"mm", L"mm", true}, {19, 2, L"t", L"", L"", false},
    {14, 3, L"kN", L"m", L"", false},   {16, 0, L"mm", L"", L"", false},
    {5, 5, L"x", L"", L"", false},      {12, 2, L"cm", L"cm", L"", false},
    {11, 2, L"ft", L"", L"", false},    {34, 6, L"in", L"", L"", true},
};

int countFor(int version) {
    const int counts[] = {0, 6, 7, 11, 12, 15, 16, 16, 16};
    return counts[version];
}

std::wstring extraFor(int id) { return L"extra" + std::to_wstring(id); }

// A file of the given version; `firstUnit` replaces unit1 of the first record (type 7).
std::string buildFile(int version, int spare = 0, const wchar_t* firstUnit = nullptr) {
    Bytes b;
    b.u16(static_cast<unsigned>(version));
    for (int i = 0; i < countFor(std::min(version, 8)); ++i) {
        const Rec& r = kRecords[i];
        b.i32(r.precision);
        b.str(i == 0 && firstUnit ? firstUnit : r.u1), b.str(r.u2), b.str(r.u3);
        b.i32(r.exponential ? 1 : 0);
        if (version >= 7) b.i32(spare);
        if (version >= 8) b.str(extraFor(r.id));
    }
    return b.data;
}

class UnitFileTest : public MUnitFixture {
protected:
    void SetUp() override {
        MUnitFixture::SetUp();
        dir_ = fs::temp_directory_path() /
               ("munit_file_test_" +
                std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(dir_);
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(dir_, ec);
        MUnitFixture::TearDown();
    }

    fs::path Write(const std::string& name, const std::string& bytes) {
        const fs::path p = dir_ / name;
        std::ofstream(p, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return p;
    }
    static std::string Read(const fs::path& p) {
        std::ifstream in(p, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    fs::path dir_;
};

TEST_F(UnitFileTest, EveryVersionReadsItsRecords) {
    MUnit mu;
    for (int version = 0; version <= 8; ++version) {
        table_.clear();
        ASSERT_EQ(mu.SetTypeUnit(T(9), 2, L"mm", L"", L"", false), 0);  // never in a file
        ASSERT_TRUE(mu.InitFromFile(Write("v", buildFile(version, 12345)))) << version;
        const int count = countFor(version);
        EXPECT_EQ(table_.size(), static_cast<std::size_t>(count)) << version;  // 9 is gone
        for (int i = 0; i < 16; ++i) {
            const Rec& r = kRecords[i];
            const TypeUnit t = mu.GetTypeUnit(T(r.id));
            if (i >= count) {
                EXPECT_EQ(t.id, -1) << version << " " << r.id;
                continue;
            }
            const std::wstring extra = version >= 8 ? extraFor(r.id) : L"";
            TypeUnit expected{T(r.id),       N,     N, N,  r.u1, r.u2, r.u3, r.precision,
                              r.exponential, extra, 0, L""};
            MUnit::GetTypeMunit(T(r.id), expected.kind1, expected.kind2, expected.kind3);
            EXPECT_EQ(t, expected) << version << " " << r.id;
        }
    }
    // Version 5 stops before 34; factors and names come from UpDateUnit.
    ASSERT_TRUE(mu.InitFromFile(Write("five", buildFile(5))));
    EXPECT_EQ(mu.GetTypeUnit(T(11)).unit1, L"ft");
    EXPECT_EQ(mu.GetTypeUnit(T(34)).id, -1);
    ASSERT_EQ(mu.UpDateUnit(), 0);
    EXPECT_DOUBLE_EQ(mu.GetTypeUnit(T(15)).coefficient, 1e7);
    EXPECT_EQ(mu.GetTypeUnit(T(15)).fullName, L"kN/cm2");
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
    const fs::path p = dir_ / "written";
    ASSERT_TRUE(mu.WriteToFile(p));

    Bytes expected;
    expected.u16(8);
    for (const Rec& given : kRecords) {
        const Rec r = given.id == 16 ? Rec{16, 0, L"", L"", L"", false} : given;
        expected.i32(r.precision);
        expected.str(r.u1), expected.str(r.u2), expected.str(r.u3);
        expected.i32(r.exponential ? 1 : 0);
        expected.i32(0);
        expected.str(r.id == 16 ? L"" : extraFor(r.id));
    }
    EXPECT_EQ(Read(p), expected.data);

    // Read back: the same records, except 9 (not stored) and 16 (an empty unit does not validate).
    TypeUnitTable before = table_;
    std::erase_if(before, [](const TypeUnit& t) { return t.id == 9; });
    ASSERT_TRUE(mu.InitFromFile(p));
    EXPECT_EQ(table_, before);
    ASSERT_TRUE(mu.WriteToFile(p));
    EXPECT_EQ(Read(p), expected.data);
}

TEST_F(UnitFileTest, InvalidRecordsAreDroppedSilently) {
    MUnit mu;
    const std::string bytes = buildFile(8, 0, L"kN");  // type 7 names a force
    ASSERT_TRUE(mu.InitFromFile(Write("bad", bytes)));
    EXPECT_EQ(mu.GetTypeUnit(T(7)).id, -1);
    EXPECT_EQ(table_.size(), 15u);
    GetMInit()->SetCorrectQuantity(false);  // with the check off the record is kept
    ASSERT_TRUE(mu.InitFromFile(Write("bad", bytes)));
    EXPECT_EQ(mu.GetTypeUnit(T(7)).unit1, L"kN");
}

// A newer version, a missing file and every truncation of a good file fail and leave the table as
// it was (random damage is the unit_file fuzz target's job); an unwritable path fails too.
TEST_F(UnitFileTest, NewerOrDamagedFilesLeaveTheTableIntact) {
    MUnit mu;
    ASSERT_EQ(mu.SetTypeUnit(T(7), 2, L"cm", L"", L"", false), 0);
    ASSERT_EQ(mu.SetTypeUnit(T(14), 2, L"kN", L"m", L"", false), 0);
    const TypeUnitTable before = table_;
    const std::string good = buildFile(8);
    // The cause of the ArchiveException that reading 'bytes' throws, -1 when it reads.
    const auto causeOf = [&](const std::string& bytes) {
        std::istringstream in(bytes);
        Archive ar(in);
        try {
            mu.Serialize(ar);
            return -1;
        } catch (const ArchiveException& e) {
            return static_cast<int>(e.cause);
        }
    };
    std::string nine = good;
    nine[0] = 9;
    EXPECT_EQ(causeOf(nine), ArchiveException::badSchema);
    EXPECT_FALSE(mu.InitFromFile(Write("nine", nine)));
    for (std::size_t n = 0; n < good.size(); ++n) {
        ASSERT_NE(causeOf(good.substr(0, n)), -1) << n;
        ASSERT_EQ(table_, before) << n;
    }
    ASSERT_FALSE(mu.InitFromFile(Write("cut", good.substr(0, good.size() - 1))));
    EXPECT_FALSE(mu.InitFromFile(dir_ / "missing"));
    EXPECT_FALSE(mu.WriteToFile(dir_));  // a folder cannot be written as a file
    EXPECT_FALSE(mu.WriteToFile(dir_ / "no" / "such" / "folder"));
    EXPECT_EQ(table_, before);
}

}  // namespace
}  // namespace quillon::munit::testing
