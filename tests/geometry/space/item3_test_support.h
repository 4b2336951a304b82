// Shared helpers of the geometric item tests: random contours and items of every kind, and the
// comparison of two solids vertex by vertex.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <set>
#include <vector>

#include "quillon/geometry/space/geometric_item3.h"
#include "solid3_test_support.h"

namespace quillon::item_test {

// A polygon contour from a ring, or its reverse.
inline LAContour Polygon(const Mvector<Point2>& ring, bool reversed) {
    LAContour c;
    for (const Point2& p : ring) c.push_back(LAEdge(p));
    if (reversed) c.Reverse();
    return c;
}

// A full circle as one arc edge, turning either way.
inline LAContour Circle(double cx, double cy, double r, bool clockwise) {
    LAContour c;
    c.push_back(LAEdge(Point2(cx + r, cy), Point2(cx, cy),
                       clockwise ? -2 * std::numbers::pi : 2 * std::numbers::pi));
    return c;
}

// The area of a contour's approximation, as the items build it.
inline double ApproxArea(const LAContour& c) {
    LAContour a;
    c.approximate(a, 48, 24, 1.0);
    Mvector<Point2> ring;
    for (const LAEdge& e : a) ring.push_back(e.start);
    return std::fabs(solid_test::SignedArea(ring));
}

// A circle of eight arcs of 45°, each short enough to be approximated as a small arc.
inline LAContour Rounded(double r, bool clockwise) {
    LAContour c;
    for (int i = 0; i < 8; ++i) {
        const double a = (clockwise ? -i : i) * std::numbers::pi / 4;
        c.push_back(LAEdge(Point2(r * std::cos(a), r * std::sin(a)), Point2(0, 0),
                           clockwise ? -std::numbers::pi / 4 : std::numbers::pi / 4));
    }
    return c;
}

// An outline of radius about 10 round the origin (a star or a circle of one or eight arcs) with up
// to two holes, each of either orientation.
struct Outline {
    LAContour outer;
    Mvector<LAContour> holes;
    double area = 0.0;  // of the approximations, holes taken off
};

inline Outline RandomOutline(std::mt19937& gen) {
    std::bernoulli_distribution coin;
    std::uniform_real_distribution<double> r(0.8, 1.5);
    Outline o;
    switch (std::uniform_int_distribution<int>(0, 2)(gen)) {
        case 0:
            o.outer = Polygon(solid_test::Star(gen, 7, 0, 0, 8, 10), coin(gen));
            break;
        case 1:
            o.outer = Circle(0, 0, 9, coin(gen));
            break;
        default:
            o.outer = Rounded(9, coin(gen));
    }
    const int holes = std::uniform_int_distribution<int>(0, 2)(gen);
    for (int i = 0; i < holes; ++i) {
        const double cx = i == 0 ? -3.0 : 3.0;
        o.holes.push_back(coin(gen) ? Circle(cx, 0.5, r(gen), coin(gen))
                                    : Polygon(solid_test::Star(gen, 5, cx, -0.5, 1, 2), coin(gen)));
    }
    o.area = ApproxArea(o.outer);
    for (const LAContour& h : o.holes) o.area -= ApproxArea(h);
    return o;
}

// A path that leaves the frame's xy plane on either side, possibly slanted.
inline Vector3 RandomPath(std::mt19937& gen, const LocalPlane& frame) {
    std::uniform_real_distribution<double> u(-2.0, 2.0), h(1.0, 5.0);
    std::bernoulli_distribution coin;
    return frame.get_dir_x() * u(gen) + frame.get_dir_y() * u(gen) +
           frame.get_dir_z() * (coin(gen) ? h(gen) : -h(gen));
}

// The tolerance of random items: a boolean's faces must be planar within it, and faces of
// half-space models 1000 long and a few hundredths wide are planar to about 1e-8 only.
inline constexpr double kEps = 1e-6;

inline std::unique_ptr<Extrusion3> RandomExtrusion(std::mt19937& gen) {
    auto e = std::make_unique<Extrusion3>(kEps);
    const Outline o = RandomOutline(gen);
    const LocalPlane frame = solid_test::RandomFrame(gen);
    e->SetLocalPlane(frame);
    e->SetOuterContour(o.outer);
    e->SetInnerContours(o.holes);
    e->SetPath(RandomPath(gen, frame));
    return e;
}

inline Plane3 RandomPlane(std::mt19937& gen) {
    std::uniform_real_distribution<double> u(-5.0, 5.0);
    return Plane3(Point3(u(gen), u(gen), u(gen)), Vector3(u(gen), u(gen), u(gen)));
}

// An item of any kind; boolean results nest up to `depth` levels.
inline std::unique_ptr<GeometricItem3> RandomItem(std::mt19937& gen, int depth) {
    switch (std::uniform_int_distribution<int>(1, depth > 0 ? 5 : 4)(gen)) {
        case 1:
            return std::unique_ptr<GeometricItem3>(RandomExtrusion(gen)->GetSolid().Clone());
        case 2:
            return RandomExtrusion(gen);
        case 3:
            return std::make_unique<HalfSpace3>(RandomPlane(gen), kEps);
        case 4: {
            auto b = std::make_unique<BoundedHalfSpace3>(RandomPlane(gen), RandomOutline(gen).outer,
                                                         kEps);
            b->SetLocalPlane(solid_test::RandomFrame(gen));
            return b;
        }
        default: {
            auto r = std::make_unique<BooleanResult3>();
            // Mostly the computed operators.
            const int ops[] = {1, 1, 1, 2, 2, 2, 0, 3, 4};
            r->SetOperator(
                static_cast<EBOOL_OPER>(ops[std::uniform_int_distribution<int>(0, 8)(gen)]));
            const auto a = RandomItem(gen, depth - 1);
            r->SetFirstOperand(a.get());
            if (std::bernoulli_distribution(0.8)(gen)) {
                const auto b = RandomItem(gen, depth - 1);
                r->SetSecondOperand(b.get());
            }
            return r;
        }
    }
}

// The same faces over vertices within tol of each other, in the same order.
inline ::testing::AssertionResult SameSolid(const Solid3& a, const Solid3& b, double tol) {
    if (a.Vertex().size() != b.Vertex().size() || a.Face().size() != b.Face().size())
        return ::testing::AssertionFailure() << "sizes differ";
    for (std::size_t i = 0; i < a.Face().size(); ++i) {
        if (a.Face()[i].loop != b.Face()[i].loop || a.Face()[i].holes != b.Face()[i].holes)
            return ::testing::AssertionFailure() << "face " << i << " differs";
    }
    for (std::size_t i = 0; i < a.Vertex().size(); ++i) {
        if (a.Vertex()[i].point.distance(b.Vertex()[i].point) > tol)
            return ::testing::AssertionFailure() << "vertex " << i << " differs";
    }
    return ::testing::AssertionSuccess();
}

// The same faces over vertices within tol of each other, whatever the order of the vertices and
// of the faces (booleans computed in two placements may number them differently).
inline ::testing::AssertionResult SameShape(const Solid3& a, const Solid3& b, double tol) {
    const auto& va = a.Vertex();
    const auto& vb = b.Vertex();
    if (va.size() != vb.size() || a.Face().size() != b.Face().size())
        return ::testing::AssertionFailure() << "sizes differ";
    std::vector<std::uint32_t> to(va.size());
    for (std::size_t i = 0; i < va.size(); ++i) {
        const auto it = std::find_if(vb.begin(), vb.end(), [&](const Vertex3d& v) {
            return v.point.distance(va[i].point) <= tol;
        });
        if (it == vb.end()) return ::testing::AssertionFailure() << "vertex " << i << " unmatched";
        to[i] = static_cast<std::uint32_t>(it - vb.begin());
    }
    // A face as its loops, each started at its smallest index, the holes in order.
    using Key = std::vector<std::vector<std::uint32_t>>;
    const auto key = [](const Face3& f, const std::vector<std::uint32_t>* map) {
        auto loop = [&](const Mvector<std::uint32_t>& l) {
            std::vector<std::uint32_t> r;
            for (std::uint32_t v : l) r.push_back(map ? (*map)[v] : v);
            std::rotate(r.begin(), std::min_element(r.begin(), r.end()), r.end());
            return r;
        };
        Key k{loop(f.loop)};
        for (const auto& h : f.holes) k.push_back(loop(h));
        std::sort(k.begin() + 1, k.end());
        return k;
    };
    std::multiset<Key> fa, fb;
    for (const Face3& f : a.Face()) fa.insert(key(f, &to));
    for (const Face3& f : b.Face()) fb.insert(key(f, nullptr));
    if (fa != fb) return ::testing::AssertionFailure() << "faces differ";
    return ::testing::AssertionSuccess();
}

}  // namespace quillon::item_test
