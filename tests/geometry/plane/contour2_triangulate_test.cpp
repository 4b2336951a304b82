#include "quillon/geometry/plane/contour2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace quillon {
namespace {

struct Face {
    Contour2 outer;
    Mvector<Contour2> holes;
    std::vector<Point2> all;  // outer then holes, the index space of the triangles
};

double TriArea(const Point2& a, const Point2& b, const Point2& c) {
    return ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x)) / 2.0;
}

bool ProperCross(const Point2& a, const Point2& b, const Point2& c, const Point2& d) {
    const double eps = 1e-9;
    const double d1 = TriArea(a, b, c), d2 = TriArea(a, b, d);
    const double d3 = TriArea(c, d, a), d4 = TriArea(c, d, b);
    return ((d1 > eps && d2 < -eps) || (d1 < -eps && d2 > eps)) &&
           ((d3 > eps && d4 < -eps) || (d3 < -eps && d4 > eps));
}

// Checks that the triangles tile the face: their areas add up to the face's area, each turns
// like the outline, none has its centroid outside the face, and no two edges properly cross.
void ExpectTiling(const Face& f, const Mmatrix<std::size_t>& tris) {
    double expect = f.outer.Area();
    for (const Contour2& h : f.holes) expect -= h.Area();
    const double sign = f.outer.SignedArea() > 0.0 ? 1.0 : -1.0;
    double sum = 0.0;
    for (const auto& t : tris) {
        ASSERT_EQ(t.Count(), 3u);
        for (std::size_t i : t) ASSERT_LT(i, f.all.size());
        const Point2 &a = f.all[t[0]], &b = f.all[t[1]], &c = f.all[t[2]];
        const double area = TriArea(a, b, c);
        EXPECT_GE(sign * area, -1e-12);
        sum += std::fabs(area);
        const Point2 g((a.x + b.x + c.x) / 3.0, (a.y + b.y + c.y) / 3.0);
        if (std::fabs(area) > 1e-9) {
            EXPECT_TRUE(f.outer.Contains(g, false));
            for (const Contour2& h : f.holes) EXPECT_FALSE(h.Contains(g, true));
        }
    }
    EXPECT_NEAR(sum, expect, 1e-9 * std::max(1.0, expect));
    for (std::size_t i = 0; i < tris.size(); ++i) {
        for (std::size_t j = i + 1; j < tris.size(); ++j) {
            for (int e = 0; e < 3; ++e) {
                for (int k = 0; k < 3; ++k) {
                    EXPECT_FALSE(ProperCross(f.all[tris[i][e]], f.all[tris[i][(e + 1) % 3]],
                                             f.all[tris[j][k]], f.all[tris[j][(k + 1) % 3]]))
                        << "triangles " << i << " and " << j;
                }
            }
        }
    }
}

Face MakeFace(std::vector<Point2> outer, std::vector<std::vector<Point2>> holes) {
    Face f{Contour2(outer, 1e-10), {}, outer};
    for (auto& h : holes) {
        f.all.insert(f.all.end(), h.begin(), h.end());
        f.holes.Add(Contour2(h, 1e-10));
    }
    return f;
}

TEST(Contour2Triangulate, ConvexConcaveAndClockwise) {
    for (bool reverse : {false, true}) {
        std::vector<Point2> u{{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}};
        if (reverse) std::reverse(u.begin(), u.end());
        const Face f = MakeFace(u, {});
        Mmatrix<std::size_t> tris;
        ASSERT_TRUE(f.outer.Triangulate(tris));
        EXPECT_EQ(tris.Count(), 6u);
        ExpectTiling(f, tris);
    }
    Mmatrix<std::size_t> tris;
    EXPECT_FALSE(Contour2({{0, 0}, {1, 1}, {2, 2}}, 1e-10).Triangulate(tris));
    EXPECT_TRUE(tris.empty());
    EXPECT_FALSE(Contour2({{0, 0}, {1, 1}}, 1e-10).Triangulate(tris));
}

TEST(Contour2Triangulate, CollinearRunsAndRepeatedPoints) {
    const Face f = MakeFace({{0, 0},
                             {1, 0},
                             {2, 0},
                             {2, 0},
                             {3, 0},
                             {3, 1},
                             {3, 2},
                             {3, 3},
                             {1.5, 3},
                             {0, 3},
                             {0, 3},
                             {0, 1.5}},
                            {});
    Mmatrix<std::size_t> tris;
    ASSERT_TRUE(f.outer.Triangulate(tris));
    ExpectTiling(f, tris);
}

TEST(Contour2Triangulate, HolesTouchingNothingInEitherOrientation) {
    std::vector<Point2> h1{{1, 1}, {2, 1}, {2, 2}, {1, 2}};
    std::vector<Point2> h2{{5, 5}, {5, 7}, {7, 7}, {7, 5}};  // clockwise
    std::vector<Point2> h3{{3, 1}, {4, 1}, {4, 1}};          // no area: ignored
    const Face f = MakeFace({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {h1, h2, h3});
    Mmatrix<std::size_t> tris;
    ASSERT_TRUE(f.outer.TriangulateWithHoles(f.holes, tris));
    ExpectTiling(f, tris);
}

TEST(Contour2Triangulate, RandomStarsWithHolesAreTiledExactly) {
    std::mt19937 rng(2024);
    for (int round = 0; round < 40; ++round) {
        std::uniform_real_distribution<double> radius(2.5, 6.0), jitter(-0.3, 0.3);
        const int n = 6 + round % 25;
        std::vector<Point2> outer;
        for (int i = 0; i < n; ++i) {
            const double a = 2.0 * std::numbers::pi * (i + 0.5 + jitter(rng)) / n;
            const double r = radius(rng);
            outer.push_back({r * std::cos(a), r * std::sin(a)});
        }
        if (round % 2 == 1) std::reverse(outer.begin(), outer.end());
        // Holes in the disc of radius 2 (always inside the star), one per quadrant cell.
        std::vector<std::vector<Point2>> holes;
        const int nholes = round % 4;
        for (int h = 0; h < nholes; ++h) {
            const double cx = (h % 2 == 0 ? -0.7 : 0.7), cy = (h < 2 ? -0.7 : 0.7);
            const int m = 3 + static_cast<int>(rng() % 5);
            std::vector<Point2> hole;
            std::uniform_real_distribution<double> hr(0.2, 0.5);
            for (int i = 0; i < m; ++i) {
                const double a = 2.0 * std::numbers::pi * (i + 0.5 + jitter(rng)) / m;
                const double r = hr(rng);
                hole.push_back({cx + r * std::cos(a), cy + r * std::sin(a)});
            }
            if (rng() % 2) std::reverse(hole.begin(), hole.end());
            holes.push_back(hole);
        }
        const Face f = MakeFace(outer, holes);
        Mmatrix<std::size_t> tris;
        ASSERT_TRUE(f.outer.TriangulateWithHoles(f.holes, tris)) << round;
        ExpectTiling(f, tris);
    }
}

TEST(Contour2Triangulate, LargeContourAndMiddlePoint) {
    std::vector<Point2> comb;  // a comb with 400 teeth: many reflex vertices
    for (int i = 0; i < 400; ++i) {
        comb.push_back({i * 1.0, 0});
        comb.push_back({i + 0.5, 5});
    }
    comb.push_back({400, 0});
    comb.push_back({400, -1});
    comb.push_back({0, -1});
    const Face f = MakeFace(comb, {});
    Mmatrix<std::size_t> tris;
    ASSERT_TRUE(f.outer.Triangulate(tris));
    double sum = 0.0;
    for (const auto& t : tris) sum += std::fabs(TriArea(f.all[t[0]], f.all[t[1]], f.all[t[2]]));
    EXPECT_NEAR(sum, f.outer.Area(), 1e-8);
    const auto mid = f.outer.GetMiddleUniquePoint();
    ASSERT_TRUE(mid.second);
    EXPECT_TRUE(f.outer.Contains(mid.first, true));
    EXPECT_FALSE(Contour2({{0, 0}, {1, 0}, {2, 0}}, 1e-10).GetMiddleUniquePoint().second);
}

}  // namespace
}  // namespace quillon
