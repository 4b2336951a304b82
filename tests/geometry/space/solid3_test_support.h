// Shared helpers of the solid tests: random planar polygons with holes placed anywhere in space,
// and the checks every well-formed solid passes (closed, volume by the divergence theorem).
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <random>
#include <utility>

#include "quillon/geometry/space/solid3.h"
#include "quillon/geometry/space/space_types.h"

namespace quillon::solid_test {

// A star-shaped ring of n points round (cx, cy) with radii in [r0, r1), counter-clockwise.
inline Mvector<Point2> Star(std::mt19937& gen, int n, double cx, double cy, double r0, double r1) {
    std::uniform_real_distribution<double> radius(r0, r1), jitter(-0.3, 0.3);
    Mvector<Point2> ring;
    for (int i = 0; i < n; ++i) {
        const double a = 2.0 * std::numbers::pi * (i + 0.5 + jitter(gen)) / n;
        const double r = radius(gen);
        ring.push_back(Point2(cx + r * std::cos(a), cy + r * std::sin(a)));
    }
    return ring;
}

inline double SignedArea(const Mvector<Point2>& ring) {
    double s = 0.0;
    for (std::size_t i = 0, n = ring.size(); i < n; ++i) {
        const Point2& p = ring[i];
        const Point2& q = ring[(i + 1) % n];
        s += p.x * q.y - q.x * p.y;
    }
    return s / 2.0;
}

// A random rigid placement in space.
inline LocalPlane RandomFrame(std::mt19937& gen) {
    std::uniform_real_distribution<double> u(-5.0, 5.0);
    const Point3 o(u(gen), u(gen), u(gen));
    return LocalPlane(o, Vector3(u(gen), u(gen), u(gen)));
}

inline Point3 Place(const Point2& p, const LocalPlane& frame) { return Point3(p) * frame; }

// Every undirected edge run exactly once in each direction by the loops of the faces.
inline ::testing::AssertionResult Closed(const Solid3& s) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> runs;
    for (const Face3& f : s.Face()) {
        auto add = [&](const Mvector<std::uint32_t>& l) {
            for (std::size_t i = 0; i < l.size(); ++i) ++runs[{l[i], l[(i + 1) % l.size()]}];
        };
        add(f.loop);
        for (const auto& h : f.holes) add(h);
    }
    for (const auto& [e, n] : runs) {
        const auto back = runs.find({e.second, e.first});
        if (n != 1 || back == runs.end() || back->second != 1) {
            return ::testing::AssertionFailure()
                   << "edge " << e.first << "-" << e.second << " run " << n << " times forward";
        }
    }
    return ::testing::AssertionSuccess();
}

// The volume by the divergence theorem, counting the loops as turning clockwise seen from
// outside (the library's orientation): positive for an outward-oriented closed solid.
inline double Volume(const Solid3& s) {
    double v = 0.0;
    const auto& pts = s.Vertex();
    for (const Face3& f : s.Face()) {
        auto cone = [&](const Mvector<std::uint32_t>& l) {
            for (std::size_t i = 1; i + 1 < l.size() + 1; ++i) {
                const Vector3 a = pts[l[0]].point.vec(), b = pts[l[i]].point.vec();
                const Vector3 c = pts[l[(i + 1) % l.size()]].point.vec();
                v -= a * (b % c) / 6.0;
            }
        };
        cone(f.loop);
        for (const auto& h : f.holes) cone(h);
    }
    return v;
}

}  // namespace quillon::solid_test
