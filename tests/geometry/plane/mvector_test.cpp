#include "quillon/geometry/plane/mvector.h"

#include <gtest/gtest.h>

#include <random>

namespace quillon {
namespace {

// Indices outside the vector make the named edits do nothing, except Insert, which appends.
TEST(Mvector, NamedEditsAndOutOfRangeIndices) {
    const int raw[] = {1, 2, 3};
    Mvector<int> a(raw, 3);
    EXPECT_TRUE(Mvector<int>(nullptr, 4).empty());
    a.Add(Mvector<int>(std::vector<int>{4, 5}));
    a.Add(a);         // appending itself doubles it
    a.Erase(5, 100);  // clamped range
    a.Insert(0, 0);
    a.Insert(99, 9);
    a.Replace(1, 10);
    a.Replace(99, 11);
    a.Erase(99);
    EXPECT_EQ(a, (std::vector<int>{0, 10, 2, 3, 4, 5, 9}));
    a.Erase(1);
    a.Erase(2, 4);
    a.Reverse();
    EXPECT_EQ(a, (std::vector<int>{9, 5, 2, 0}));
    EXPECT_EQ(Mmatrix<double>(3, 2, 1.5)[2], (std::vector<double>{1.5, 1.5}));
}

TEST(Mvector, EraseByAscendingIndexListKeepsOrderOfTheRest) {
    std::mt19937 rng(7);
    for (int round = 0; round < 200; ++round) {
        const std::size_t n = rng() % 30;
        Mvector<int> v;
        for (std::size_t i = 0; i < n; ++i) v.Add(static_cast<int>(i));
        Mvector<unsigned long long> idx;
        std::vector<int> expect;
        for (std::size_t i = 0; i < n; ++i) {
            if (rng() % 3 == 0)
                idx.Add(i);
            else
                expect.push_back(static_cast<int>(i));
        }
        if (rng() % 4 == 0) idx.Add(n + 5);  // past the end: ignored
        v.Erase(idx);
        EXPECT_EQ(v, expect);
    }
}

}  // namespace
}  // namespace quillon
