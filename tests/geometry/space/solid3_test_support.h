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

// Every undirected edge run exactly once in each direction by the loops of the faces; or, not
// `manifold`, as often one way as the other (solids touching along an edge unite into a surface
// whose edge there four faces share, twice each way: closed, not a 2-manifold).
inline ::testing::AssertionResult Closed(const Solid3& s, bool manifold = true) {
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
        if ((manifold && n != 1) || back == runs.end() || back->second != n) {
            return ::testing::AssertionFailure()
                   << "edge " << e.first << "-" << e.second << " run " << n << " times forward";
        }
    }
    return ::testing::AssertionSuccess();
}

// The volume by the divergence theorem, counting the loops as turning clockwise seen from outside
// (the library's orientation): positive for an outward-oriented closed solid.
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

// A random solid with every part filled (sizes past the archive's reserve step now and then): face
// loops over random vertices, with holes when asked, normal loops when there are normals, one
// texture vertex per face, a material for every face when there are materials.
inline Solid3 RandomSolid(std::mt19937& gen, bool holes) {
    std::uniform_real_distribution<double> u(-10, 10), unit(0, 1);
    std::uniform_int_distribution<int> small(0, 5);
    Solid3 s(std::uniform_real_distribution<double>(1e-9, 1e-3)(gen));
    s.SetName(small(gen) ? L"part \u00e9\u4e2d" : L"");
    const int nv = 1 + small(gen) * (small(gen) == 5 ? 1000 : 3);
    for (int i = 0; i < nv; ++i) s.AddVertex(Point3(u(gen), u(gen), u(gen)));
    for (int i = small(gen); i-- > 0;) s.AddNormal(Vector3(u(gen), u(gen), u(gen)), false);
    for (int i = small(gen); i-- > 0;) {
        Material3 m(std::wstring(i + 1, L'\u00e9'));
        m.diffuse = Vector3(unit(gen), unit(gen), unit(gen));
        m.opacity = unit(gen);
        m.illum = small(gen);
        s.AddMaterial(m);
    }
    const auto loop = [&](std::size_t n, std::size_t bound) {
        Mvector<std::uint32_t> l;
        for (std::size_t i = 0; i < n; ++i) l.push_back(static_cast<std::uint32_t>(gen() % bound));
        return l;
    };
    for (int i = small(gen); i-- > 0;) {
        Face3 f(loop(3 + small(gen), nv),
                s.Material().empty() ? -1 : small(gen) % static_cast<int>(s.Material().size()));
        for (int h = holes ? small(gen) % 3 : 0; h-- > 0;) f.holes.push_back(loop(3, nv));
        if (!s.Normal().empty()) f.normalLoop = loop(f.loop.size(), s.Normal().size());
        f.texture.push_back(Point2(u(gen), u(gen)));
        f.textureLoop = loop(f.loop.size(), 1);
        f.normal = Vector3(u(gen), u(gen), u(gen));
        s.AddFace(f);
    }
    s.GenerateEdges();
    s.SetClosed(small(gen) % 2);
    return s;
}

}  // namespace quillon::solid_test
