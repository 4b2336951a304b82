// Shared helpers of the geometric item tests: contours, random items of every kind, and the
// comparison of two solids.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>

#include "quillon/geometry/space/geometric_item3.h"
#include "solid3_test_support.h"

namespace quillon::item_test {

inline LAContour Polygon(const Mvector<Point2>& ring, bool reversed = false) {
    LAContour c;
    for (const Point2& p : ring) c.push_back(LAEdge(p));
    if (reversed) c.Reverse();
    return c;
}

// A full circle as one arc edge.
inline LAContour Circle(double cx, double cy, double r, bool clockwise) {
    const double a = clockwise ? -2 * std::numbers::pi : 2 * std::numbers::pi;
    return LAContour{LAEdge(Point2(cx + r, cy), Point2(cx, cy), a)};
}

// An octagon of circumradius 8 with corners rounded to radius 1: arcs of 45° that are small beside
// the outline, so the approximation splits them by its small-arc rule. Clockwise: mirrored in x.
inline LAContour RoundedOctagon(bool clockwise) {
    const double s = clockwise ? -1.0 : 1.0, q = std::numbers::pi / 8;
    LAContour c;
    for (int i = 0; i < 8; ++i) {
        const double t = i * 2 * q, vx = 8 * std::cos(t), vy = 8 * std::sin(t);
        c.push_back(LAEdge(Point2(vx + std::cos(t - q), s * (vy + std::sin(t - q))),
                           Point2(vx, s * vy), s * 2 * q));
        c.push_back(LAEdge(Point2(vx + std::cos(t + q), s * (vy + std::sin(t + q)))));
    }
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

// An outline of radius about 10 round the origin with up to two holes, each contour turning
// either way.
struct Outline {
    LAContour outer;
    Mvector<LAContour> holes;
    double area = 0.0;  // of the approximations, holes taken off
};

inline Outline RandomOutline(std::mt19937& gen) {
    std::bernoulli_distribution coin;
    Outline o;
    const int shape = std::uniform_int_distribution<int>(0, 2)(gen);
    o.outer = shape == 0   ? Polygon(solid_test::Star(gen, 7, 0, 0, 8, 10), coin(gen))
              : shape == 1 ? Circle(0, 0, 9, coin(gen))
                           : RoundedOctagon(coin(gen));
    for (int i = std::uniform_int_distribution<int>(0, 2)(gen); i > 0; --i) {
        const double x = 6.0 * i - 9.0;
        o.holes.push_back(coin(gen) ? Circle(x, 0.5, 1.2, coin(gen))
                                    : Polygon(solid_test::Star(gen, 5, x, 0, 1, 2), coin(gen)));
    }
    o.area = ApproxArea(o.outer);
    for (const LAContour& h : o.holes) o.area -= ApproxArea(h);
    return o;
}

// A path leaving the frame's xy plane on either side, slanted.
inline Vector3 RandomPath(std::mt19937& gen, const LocalPlane& f) {
    std::uniform_real_distribution<double> u(-2.0, 2.0), h(1.0, 5.0);
    return f.get_dir_x() * u(gen) + f.get_dir_y() * u(gen) +
           f.get_dir_z() * (std::bernoulli_distribution()(gen) ? h(gen) : -h(gen));
}

inline Plane3 RandomPlane(std::mt19937& gen) {
    std::uniform_real_distribution<double> u(-5.0, 5.0);
    return Plane3(Point3(u(gen), u(gen), u(gen)), Vector3(u(gen), u(gen), u(gen)));
}

// The tolerance of random items: a boolean needs its faces planar within it, and the thin faces
// of half-space models 1000 long are planar to about 1e-8 only.
inline constexpr double kEps = 1e-6;

// An item of any kind; boolean results (mostly the computed operators) nest up to `depth` levels.
inline std::unique_ptr<GeometricItem3> RandomItem(std::mt19937& gen, int depth) {
    const int kind = std::uniform_int_distribution<int>(1, depth > 0 ? 5 : 4)(gen);
    if (kind <= 2) {
        auto e = std::make_unique<Extrusion3>(kEps);
        const Outline o = RandomOutline(gen);
        e->SetLocalPlane(solid_test::RandomFrame(gen));
        e->SetOuterContour(o.outer);
        e->SetInnerContours(o.holes);
        e->SetPath(RandomPath(gen, e->GetLocalPlane()));
        if (kind == 2) return e;
        return std::unique_ptr<GeometricItem3>(e->GetSolid().Clone());
    }
    if (kind == 3) return std::make_unique<HalfSpace3>(RandomPlane(gen), kEps);
    if (kind == 4) {
        auto b =
            std::make_unique<BoundedHalfSpace3>(RandomPlane(gen), RandomOutline(gen).outer, kEps);
        b->SetLocalPlane(solid_test::RandomFrame(gen));
        return b;
    }
    auto r = std::make_unique<BooleanResult3>();
    const int ops[] = {1, 1, 1, 2, 2, 2, 0, 3, 4};
    r->SetOperator(static_cast<EBOOL_OPER>(ops[std::uniform_int_distribution<int>(0, 8)(gen)]));
    r->SetFirstOperand(RandomItem(gen, depth - 1).get());
    if (std::bernoulli_distribution(0.8)(gen))
        r->SetSecondOperand(RandomItem(gen, depth - 1).get());
    return r;
}

// Equal counts, vertices within tol of each other (in order, or of some vertex of the other when
// not `ordered`), the same face loops when ordered, and the same volume.
inline ::testing::AssertionResult Matches(const Solid3& a, const Solid3& b, double tol,
                                          bool ordered) {
    const auto& va = a.Vertex();
    const auto& vb = b.Vertex();
    if (va.size() != vb.size() || a.Face().size() != b.Face().size())
        return ::testing::AssertionFailure() << "sizes differ";
    for (std::size_t i = 0; i < va.size(); ++i) {
        const auto near = [&](const Vertex3d& v) { return v.point.distance(va[i].point) <= tol; };
        if (ordered ? !near(vb[i]) : std::none_of(vb.begin(), vb.end(), near))
            return ::testing::AssertionFailure() << "vertex " << i;
    }
    for (std::size_t i = 0; ordered && i < a.Face().size(); ++i) {
        if (a.Face()[i].loop != b.Face()[i].loop || a.Face()[i].holes != b.Face()[i].holes)
            return ::testing::AssertionFailure() << "face " << i;
    }
    const double v = solid_test::Volume(a);
    if (!(std::fabs(v - solid_test::Volume(b)) <= 1e-9 * (1 + std::fabs(v))))
        return ::testing::AssertionFailure() << "volumes differ";
    return ::testing::AssertionSuccess();
}

}  // namespace quillon::item_test
