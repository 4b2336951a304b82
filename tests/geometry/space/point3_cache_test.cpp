#include "quillon/geometry/space/point3_cache.h"

#include "quillon/geometry/space/detail/box_tree.h"
#include "quillon/geometry/space/detail/point_pool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace quillon {
namespace {

// The rule written out plainly: among stored points that match within the box, the least x wins,
// equal x the earliest; no match appends.
std::size_t ReferenceAdd(std::vector<Point3>& nodes, double eps, const Point3& p) {
    std::size_t best = nodes.size();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const Vector3 d = nodes[i] - p;
        if (std::fabs(d.x) <= eps && std::fabs(d.y) <= eps && std::fabs(d.z) <= eps &&
            (best == nodes.size() || nodes[i].x < nodes[best].x))
            best = i;
    }
    if (best == nodes.size()) nodes.push_back(p);
    return best;
}

// The box is inclusive (exactly eps away on every axis at once matches) and, of several matches,
// the least x wins, not the nearest; the seeded test below holds the rule everywhere else.
TEST(Point3Cache, InclusiveBoxAndFirstMatchInAscendingXNotTheNearest) {
    Point3Cache cache(0.5);
    EXPECT_EQ(cache.Add(Point3(1.0, 1.0, 1.0)) + cache.Add(Point3(1.5, 0.5, 1.5)), 0u);
    EXPECT_EQ(cache.Add(Point3(1.5625, 1.0, 1.0)), 1u);
    std::size_t i = 99;
    ASSERT_TRUE(cache.Find(Point3(1.375, 1.0, 1.0), i));
    EXPECT_EQ(i, 0u);
    EXPECT_FALSE(cache.Find(Point3(3.0, 1.0, 1.0), i));
    EXPECT_EQ(i, 0u) << "a failed search leaves the index alone";
    // A NaN coordinate matches nothing and does not disturb the ordering.
    EXPECT_EQ(cache.Add(Point3(std::nan(""), 0.0, 0.0)), 2u);
    EXPECT_EQ(cache.Add(Point3(std::nan(""), 0.0, 0.0)), 3u);
    EXPECT_EQ(cache.Add(Point3(1.0, 1.0, 1.0)), 0u);

    Point3Cache empty(-1.0);
    EXPECT_EQ(empty.GetEps(), 1e-10);
    Point3 lo(7, 7, 7), hi(7, 7, 7);
    EXPECT_FALSE(empty.GetExtents(lo, hi));
    EXPECT_EQ(lo.x, 7.0);
}

TEST(Point3Cache, SeededAgreementWithThePlainRuleThroughCopiesAndMoves) {
    std::mt19937 gen(20261124);
    for (int round = 0; round < 20; ++round) {
        const double eps = std::uniform_real_distribution<double>(0.01, 0.3)(gen);
        // Points on a coarse lattice with jitter, so many queries have several candidates.
        std::uniform_int_distribution<int> cell(-4, 4);
        std::uniform_real_distribution<double> jitter(-0.3, 0.3);
        const auto point = [&] {
            return Point3(cell(gen) * 0.25 + jitter(gen), cell(gen) * 0.25 + jitter(gen),
                          cell(gen) * 0.25 + jitter(gen));
        };
        std::vector<Point3> nodes;
        auto cache = std::make_unique<Point3Cache>(eps);
        for (int i = 0; i < 400; ++i) {
            const Point3 p = point();
            ASSERT_EQ(cache->Add(p), ReferenceAdd(nodes, eps, p)) << round << " " << i;
            if (i == 200) {
                // The copy must answer from its own nodes after the original is gone.
                auto copy = std::make_unique<Point3Cache>(*cache);
                cache = std::move(copy);
                Point3Cache moved(std::move(*cache));
                Point3Cache assigned(1.0);
                assigned = moved;
                Point3Cache& alias = assigned;
                assigned = alias;  // keeps the nodes
                *cache = std::move(assigned);
            }
        }
        ASSERT_EQ(cache->GetNodes().size(), nodes.size());

        // Range search and extents against a brute-force scan; corners on stored points: the
        // range is inclusive.
        const Point3 a = nodes[gen() % nodes.size()], b = nodes[gen() % nodes.size()];
        std::vector<std::size_t> got, want;
        Point3 lo = nodes[0], hi = nodes[0], clo, chi;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            bool in = true;
            for (int k = 0; k < 3; ++k) {
                const double q = nodes[i].tab()[k];
                lo.tab()[k] = std::min(lo.tab()[k], q);
                hi.tab()[k] = std::max(hi.tab()[k], q);
                in = in && q >= std::min(a.tab()[k], b.tab()[k]) &&
                     q <= std::max(a.tab()[k], b.tab()[k]);
            }
            if (in) want.push_back(i);
        }
        EXPECT_EQ(cache->Find(a, b, got), !want.empty());
        EXPECT_EQ(got, want);
        ASSERT_TRUE(cache->GetExtents(clo, chi));
        EXPECT_EQ(clo.distance(lo) + chi.distance(hi), 0.0);

        cache->Reset();
        EXPECT_TRUE(cache->GetNodes().empty());
        EXPECT_EQ(cache->GetEps(), eps);
        EXPECT_EQ(cache->Add(a), 0u);
    }
}

// The boolean's working points: the earliest point within the tolerance, as a plain scan finds it.
TEST(PointPool, AgreesWithAPlainScan) {
    std::mt19937 gen(8);
    std::uniform_int_distribution<int> cell(-3, 3);
    std::uniform_real_distribution<double> jitter(-0.2, 0.2);
    for (const double tol : {0.05, 0.25}) {
        detail::PointPool pool(tol);
        std::vector<Point3> plain;
        for (int i = 0; i < 600; ++i) {
            const Point3 p(cell(gen) * 0.2 + jitter(gen), cell(gen) * 0.2 + jitter(gen),
                           i % 50 ? cell(gen) * 0.2 : 1e300);
            std::size_t want = 0;
            while (want < plain.size() && !(plain[want].distance(p) <= tol)) ++want;
            if (want == plain.size()) plain.push_back(p);
            ASSERT_EQ(pool.add(p), want) << tol << " " << i;
        }
    }
    // A tolerance that is no positive finite number merges equal points only.
    detail::PointPool exact(std::numeric_limits<double>::infinity());
    EXPECT_EQ(exact.add(Point3(0, 0, 0)), 0u);
    EXPECT_EQ(exact.add(Point3(0, 0, 1e-100)), 1u);
    EXPECT_EQ(exact.add(Point3(0, 0, 0)), 0u);
}

// Box queries of the tree report what a plain scan of the boxes finds; a ray from outside a box
// meets it when aimed at a point inside and misses it when aimed away.
TEST(BoxTree, QueriesFindWhatAPlainScanFinds) {
    // Boxes are closed: a ray along a face or through a corner only meets the box.
    detail::Box3 cube;
    cube.add(Point3());
    cube.add(Point3(1, 1, 1));
    const detail::BoxTree one(std::vector<detail::Box3>{cube});
    std::vector<std::uint32_t> hits;
    one.ray(Point3(2, 1, 0.5), Vector3(-1, 0, 0), hits);
    one.ray(Point3(2, 2, 0), Vector3(-1, -1, 1), hits);
    EXPECT_EQ(hits, (std::vector<std::uint32_t>{0, 0}));
    std::mt19937 gen(9);
    std::uniform_real_distribution<double> u(-5, 5), size(0, 1.5), unit(0, 1);
    const auto box = [&] {
        detail::Box3 b;
        const Point3 p(u(gen), u(gen), u(gen));
        b.add(p);
        b.add(p + Vector3(size(gen), size(gen), size(gen)));
        return b;
    };
    for (int round = 0; round < 20; ++round) {
        std::vector<detail::Box3> boxes(40 * round + 1);
        for (std::size_t i = 0; i < boxes.size(); ++i)
            if (i % 7) boxes[i] = box();  // every seventh empty
        const detail::BoxTree tree(boxes);
        for (std::uint32_t j = 1; j < boxes.size(); j += 7) {
            detail::Box3 q = box();
            q.inflate(0.25);
            std::vector<std::uint32_t> got, want;
            tree.query(q, got);
            for (std::uint32_t i = 0; i < boxes.size(); ++i)
                if (!boxes[i].empty() && boxes[i].overlaps(q)) want.push_back(i);
            std::sort(got.begin(), got.end());
            ASSERT_EQ(got, want) << round << " " << j;

            const detail::Box3& b = boxes[j];
            Point3 p, o(u(gen), u(gen), u(gen));
            for (int a = 0; a < 3; ++a)
                p.tab()[a] = b.lo.tab()[a] + unit(gen) * (b.hi.tab()[a] - b.lo.tab()[a]);
            if (j % 3 == 0) o.y = p.y;  // a ray in a plane of constant y
            if (b.contains(o)) continue;
            got.clear();
            tree.ray(o, p - o, got);
            EXPECT_NE(std::find(got.begin(), got.end(), j), got.end()) << round << " " << j;
            got.clear();
            tree.ray(o, o - p, got);
            EXPECT_EQ(std::find(got.begin(), got.end(), j), got.end()) << round << " " << j;
            got.clear();  // level with the box but beside it
            tree.ray(o + Vector3(0, b.hi.y - o.y + 0.5, 0), Vector3(p.x - o.x, 0, p.z - o.z), got);
            EXPECT_EQ(std::find(got.begin(), got.end(), j), got.end()) << round << " " << j;
        }
    }
}

}  // namespace
}  // namespace quillon
