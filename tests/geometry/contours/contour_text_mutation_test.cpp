// Seeded garbage and truncations for the contour text readers: every input ends in a tree or in
// ContourTextError, nothing leaks (the sanitizers watch the rest), and an accepted tree writes and
// reads back with the same shape.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_text.h"

namespace quillon {
namespace {

const std::wstring kSeeds[] = {
    L"\"m\"(((S((L 0.000000 0.000000)(L 1.000000 0.000000)(L 1.000000 1.000000)(L 0.000000 "
    L"1.000000)) 0 ((H((L 0.200000 0.200000)(L 0.400000 0.200000)(L 0.300000 0.400000)))))))",
    L"\"mm\"(((S((A 0.000000 0.000000 2.000000 0.000000 3.141593)(A 0.000000 0.000000 2.000000 "
    L"3.141593 3.141593)) -4 ((H((L -1 -1)(L 1 -1)(L 0 1)) x)(S((L 5 5)) 1 ())))(S() ())) ext)",
    L"\"a\\\"b\"(())",
    L"\"\"(((s((l 1 2)(a 3 4 5 6 7)) ())))",
};

int CountNodes(const ProContour& node) {
    int n = 1;
    for (unsigned long i = 0; i < node.ChildrenCount(); ++i) n += CountNodes(*node.ContourChild(i));
    return n;
}

// Reads `text` as a complex contour with unit; the result, or null after a ContourTextError.
std::unique_ptr<ProComplexContour> TryRead(const std::wstring& text, std::wstring& unit) {
    try {
        ProComplexContourAndUnitReader reader(text);
        return std::unique_ptr<ProComplexContour>(reader.read(unit));
    } catch (const ContourTextError&) {
        return nullptr;
    }
}

std::wstring Mutate(std::wstring text, std::mt19937& rng) {
    static const wchar_t alphabet[] = L"()\"\\ \n\tSHLAsx0123456789.-+e";
    std::uniform_int_distribution<int> pickChar(0, static_cast<int>(std::size(alphabet)) - 2);
    const int edits = std::uniform_int_distribution<int>(1, 4)(rng);
    for (int k = 0; k < edits; ++k) {
        const std::size_t n = text.size();
        const std::size_t at =
            n == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, n - 1)(rng);
        switch (std::uniform_int_distribution<int>(0, 4)(rng)) {
            case 0:
                if (n > 0) text.erase(at, 1);
                break;
            case 1:
                text.insert(at, 1, alphabet[pickChar(rng)]);
                break;
            case 2:
                if (n > 0) text[at] = alphabet[pickChar(rng)];
                break;
            case 3:
                text.resize(at);
                break;
            default: {  // repeat a slice
                const std::size_t len = std::uniform_int_distribution<std::size_t>(0, 12)(rng);
                text.insert(at, text.substr(at, len));
                break;
            }
        }
    }
    return text;
}

TEST(ContourTextMutation, ProperPrefixesNeverReadAsComplete) {
    const int before = ProContour::get_contour_allocs();
    for (const std::wstring& seed : kSeeds) {
        std::wstring unit;
        ASSERT_NE(TryRead(seed, unit), nullptr);
        for (std::size_t len = 0; len < seed.size(); ++len) {
            EXPECT_EQ(TryRead(seed.substr(0, len), unit), nullptr) << len;
            EXPECT_EQ(ProContour::get_contour_allocs(), before);
        }
    }
}

TEST(ContourTextMutation, SeededGarbageIsAnsweredCleanly) {
    const int before = ProContour::get_contour_allocs();
    std::mt19937 rng(77031);
    int accepted = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::wstring& seed = kSeeds[static_cast<std::size_t>(round) % std::size(kSeeds)];
        const std::wstring text = Mutate(seed, rng);
        std::wstring unit;
        auto tree = TryRead(text, unit);
        if (tree) {
            ++accepted;
            const int nodes = CountNodes(*tree);
            EXPECT_EQ(ProContour::get_contour_allocs(), before + nodes);
            ProComplexContourAndUnitWriter writer(unit);
            const std::wstring written = writer.write(*tree);
            std::wstring unit2;
            auto back = TryRead(written, unit2);
            ASSERT_NE(back, nullptr) << "rewritten text did not read: round " << round;
            EXPECT_EQ(unit2, unit);
            EXPECT_EQ(CountNodes(*back), nodes);
        }
        tree.reset();
        EXPECT_EQ(ProContour::get_contour_allocs(), before) << "round " << round;

        // The line-arc reader reports by its result alone.
        LAContourReader la(text);
        (void)la.read();
    }
    // The mutations are mild enough that some texts still read; both paths are exercised.
    EXPECT_GT(accepted, 50);
    EXPECT_LT(accepted, 3900);
}

}  // namespace
}  // namespace quillon
