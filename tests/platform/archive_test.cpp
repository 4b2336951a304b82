#include "quillon/platform/archive.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/checks.h"

namespace quillon {
namespace {

using test_support::Bytes;
using test_support::Stored;

std::istringstream streamOf(const Bytes& bytes) {
    return std::istringstream(std::string(bytes.begin(), bytes.end()));
}

template <typename T>
T loaded(const Bytes& bytes) {
    auto in = streamOf(bytes);
    Archive ar(in);
    T value{};
    ar >> value;
    return value;
}

// The cause of the ArchiveException that f throws, or -1 when it throws none.
template <typename F>
int causeOf(F f) {
    try {
        f();
    } catch (const ArchiveException& e) {
        return e.cause;
    }
    return -1;
}

// The value is stored as exactly these bytes, and they read back as the value.
template <typename T>
void ExpectBytes(T value, const Bytes& bytes) {
    EXPECT_EQ(Stored(value), bytes) << +value;
    const T back = loaded<T>(bytes);
    EXPECT_TRUE(back == value && std::signbit(back) == std::signbit(value)) << +value;
}

TEST(Archive, NumbersAreLittleEndianInTheirWidthAndRoundTrip) {
    ExpectBytes(std::int8_t{-2}, {0xFE});
    ExpectBytes(std::int8_t{-128}, {0x80});
    ExpectBytes(std::uint8_t{255}, {0xFF});
    ExpectBytes(std::uint16_t{0x1234}, {0x34, 0x12});
    ExpectBytes(std::int16_t{-32768}, {0x00, 0x80});
    ExpectBytes(std::int32_t{0x01020304}, {0x04, 0x03, 0x02, 0x01});
    ExpectBytes(std::uint32_t{0xFFFFFFFEu}, {0xFE, 0xFF, 0xFF, 0xFF});
    ExpectBytes(std::int64_t{-1}, Bytes(8, 0xFF));
    ExpectBytes(std::uint64_t{0x0102030405060708ull}, {8, 7, 6, 5, 4, 3, 2, 1});
    ExpectBytes(1.0, {0, 0, 0, 0, 0, 0, 0xF0, 0x3F});
    ExpectBytes(-2.5f, {0, 0, 0x20, 0xC0});
    ExpectBytes(-0.0f, {0, 0, 0, 0x80});
}

// Each boundary of the length prefix, by its exact bytes, then read back.
TEST(Archive, WideStringLengthPrefixesAtEveryBoundary) {
    struct Case {
        std::size_t length;
        Bytes prefix;
    };
    const std::vector<Case> cases = {
        {0, {0xFF, 0xFE, 0xFF, 0x00}},
        {254, {0xFF, 0xFE, 0xFF, 0xFE}},
        {255, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0x00}},
        {65533, {0xFF, 0xFE, 0xFF, 0xFF, 0xFD, 0xFF}},
        {65534, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
        {65535, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}},
        {70000, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0x70, 0x11, 0x01, 0x00}},
    };
    for (const auto& c : cases) {
        std::wstring text(c.length, L'x');
        if (c.length) text.back() = L'\u00e9';
        const Bytes bytes = Stored(text);
        ASSERT_EQ(bytes.size(), c.prefix.size() + 2 * c.length) << c.length;
        EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + c.prefix.size()), c.prefix) << c.length;
        if (c.length) {
            EXPECT_EQ(bytes[c.prefix.size()], 'x');
            EXPECT_EQ(bytes[c.prefix.size() + 1], 0);
            EXPECT_EQ(bytes[bytes.size() - 2], 0xE9);
            EXPECT_EQ(bytes[bytes.size() - 1], 0x00);
        }
        EXPECT_EQ(loaded<std::wstring>(bytes), text) << c.length;
    }
}

TEST(Archive, CharactersAboveTheBasicPlaneTravelAsSurrogatePairs) {
    std::wstring text = L"a";
    if constexpr (sizeof(wchar_t) == 2) {
        text += L"\xD83D\xDE00";
    } else {
        text += static_cast<wchar_t>(0x1F600);
    }
    const Bytes bytes = Stored(text);
    EXPECT_EQ(bytes, (Bytes{0xFF, 0xFE, 0xFF, 3, 'a', 0, 0x3D, 0xD8, 0x00, 0xDE}));
    EXPECT_EQ(loaded<std::wstring>(bytes), text);
}

TEST(Archive, ReadsTheNarrowStringForm) {
    EXPECT_EQ(loaded<std::wstring>(Bytes{3, 'a', 'b', 0x80}), L"ab\u20ac");  // 0x80 is the euro
    EXPECT_EQ(loaded<std::wstring>(Bytes{1, 0xE9}), L"\u00e9");
    Bytes longer{0xFF, 0x2C, 0x01};  // 300 characters in the 16-bit form
    longer.insert(longer.end(), 300, 'z');
    EXPECT_EQ(loaded<std::wstring>(longer), std::wstring(300, L'z'));
    // All ones in 32 bits escapes to a 64-bit length, even for a short text.
    EXPECT_EQ(loaded<std::wstring>(Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 0, 0,
                                         0, 0, 'o', 'k'}),
              L"ok");
}

TEST(Archive, ReadingPastTheEndThrowsEndOfFile) {
    const int eof = ArchiveException::endOfFile;
    EXPECT_EQ(causeOf([] { (void)loaded<std::int32_t>({}); }), eof);
    EXPECT_EQ(causeOf([] { (void)loaded<std::int32_t>({1, 2, 3}); }), eof);
    EXPECT_EQ(causeOf([] { (void)loaded<double>({1, 2, 3, 4, 5, 6, 7}); }), eof);
    EXPECT_EQ(causeOf([] { (void)loaded<std::wstring>({0xFF, 0xFE, 0xFF, 4, 'a', 0}); }), eof);
    // A damaged length that promises four billion characters fails without allocating them.
    const Bytes huge{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 'a', 0};
    EXPECT_EQ(causeOf([&] { (void)loaded<std::wstring>(huge); }), eof);
    const Bytes narrow{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                       0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F};
    EXPECT_EQ(causeOf([&] { (void)loaded<std::wstring>(narrow); }), eof);
}

TEST(Archive, DirectionIsEnforced) {
    std::ostringstream out;
    Archive st(out);
    EXPECT_TRUE(st.IsStoring());
    EXPECT_FALSE(st.IsLoading());
    std::int32_t v = 0;
    EXPECT_EQ(causeOf([&] { st >> v; }), ArchiveException::writeOnly);
    std::istringstream in("abcd");
    Archive ld(in);
    EXPECT_TRUE(ld.IsLoading());
    EXPECT_EQ(causeOf([&] { ld << v; }), ArchiveException::readOnly);
}

// Random byte soup must give a string or endOfFile, nothing else, and random texts round-trip.
TEST(Archive, RandomStringsRoundTripAndGarbageOnlyEndsInEndOfFile) {
    std::mt19937 rng(1234);
    for (int round = 0; round < 300; ++round) {
        std::wstring text;
        const int n = static_cast<int>(rng() % 400);
        for (int i = 0; i < n; ++i) {
            std::uint32_t c = rng() % 0x11000;
            if (c >= 0xD800 && c < 0xE000) c = 'q';
            if constexpr (sizeof(wchar_t) == 2) {
                if (c > 0xFFFF) c = 'w';
            }
            text.push_back(static_cast<wchar_t>(c));
        }
        EXPECT_EQ(loaded<std::wstring>(Stored(text)), text);

        Bytes garbage(rng() % 24);
        for (auto& b : garbage) b = static_cast<unsigned char>(rng());
        const int cause = causeOf([&] { (void)loaded<std::wstring>(garbage); });
        EXPECT_TRUE(cause == -1 || cause == ArchiveException::endOfFile) << cause;
    }
}

}  // namespace
}  // namespace quillon
