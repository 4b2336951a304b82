// Shared helpers of the space tests: a seeded source of random values, near-equality checks,
// expected archive records; random planar polygons placed anywhere in space and the checks every
// well-formed solid passes (closed, volume by the divergence theorem); contours, random items of
// every kind, and the comparison of two solids.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <numbers>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include "quillon/geometry/space/geometric_item3.h"
#include "quillon/geometry/space/solid3.h"
#include "quillon/geometry/space/space_types.h"

namespace quillon::space_test {

struct Random {
    std::mt19937 gen;
    explicit Random(unsigned seed) : gen(seed) {}
    double operator()(double lo = -2.0, double hi = 2.0) {
        return std::uniform_real_distribution<double>(lo, hi)(gen);
    }
    Point3 point(double r = 2.0) { return Point3((*this)(-r, r), (*this)(-r, r), (*this)(-r, r)); }
    Vector3 vector(double r = 2.0) { return point(r).vec(); }
    Matrix3 matrix() {
        Random& g = *this;
        return Matrix3(g(), g(), g(), g(), g(), g(), g(), g(), g());
    }
    Matrix4x3 matrix4x3() { return Matrix4x3(matrix(), vector()); }
};

inline void ExpectNear(const Point3& got, const Point3& want, double tol = 1e-12) {
    EXPECT_NEAR(got.x, want.x, tol);
    EXPECT_NEAR(got.y, want.y, tol);
    EXPECT_NEAR(got.z, want.z, tol);
}
inline void ExpectNear(const Vector3& got, const Vector3& want, double tol = 1e-12) {
    ExpectNear(got.pnt(), want.pnt(), tol);
}
inline void ExpectNear(const Matrix4x3& got, const Matrix4x3& want, double tol = 1e-12) {
    for (short i = 0; i < 4; ++i) {
        for (short j = 0; j < 3; ++j) EXPECT_NEAR(got[i][j], want[i][j], tol) << i << "," << j;
    }
}
inline void ExpectNear(const Matrix3& got, const Matrix3& want, double tol = 1e-12) {
    ExpectNear(Matrix4x3(got), Matrix4x3(want), tol);
}

// Expected records, built value by value in little-endian order independently of the host.
struct Expect {
    std::string bytes;
    Expect& le(std::uint64_t bits, int n) {
        for (int i = 0; i < n; ++i) bytes.push_back(static_cast<char>(bits >> (8 * i)));
        return *this;
    }
    Expect& d(std::initializer_list<double> vs) {
        for (double v : vs) le(std::bit_cast<std::uint64_t>(v), 8);
        return *this;
    }
    Expect& i32(std::initializer_list<std::int32_t> vs) {
        for (std::int32_t v : vs) le(static_cast<std::uint32_t>(v), 4);
        return *this;
    }
    Expect& ws(const char* ascii) {  // a short wide string
        le(0xFF, 1).le(0xFFFE, 2).le(std::string(ascii).size(), 1);
        for (const char* c = ascii; *c; ++c) le(static_cast<unsigned char>(*c), 2);
        return *this;
    }
};

// The bytes `write` puts into an archive.
template <typename F>
std::string Written(F write) {
    std::ostringstream out;
    Archive ar(out);
    write(ar);
    return out.str();
}

// Runs `read` on an archive over `bytes`: the exception's cause, or -1 when the read succeeded.
template <typename F>
int Cause(const std::string& bytes, F read) {
    std::istringstream in(bytes);
    Archive ar(in);
    try {
        read(ar);
    } catch (const ArchiveException& e) {
        return e.cause;
    }
    return -1;
}

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
    return std::fabs(SignedArea(ring));
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
    o.outer = shape == 0   ? Polygon(Star(gen, 7, 0, 0, 8, 10), coin(gen))
              : shape == 1 ? Circle(0, 0, 9, coin(gen))
                           : RoundedOctagon(coin(gen));
    for (int i = std::uniform_int_distribution<int>(0, 2)(gen); i > 0; --i) {
        const double x = 6.0 * i - 9.0;
        o.holes.push_back(coin(gen) ? Circle(x, 0.5, 1.2, coin(gen))
                                    : Polygon(Star(gen, 5, x, 0, 1, 2), coin(gen)));
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
        e->SetLocalPlane(RandomFrame(gen));
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
        b->SetLocalPlane(RandomFrame(gen));
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
    const double v = Volume(a);
    if (!(std::fabs(v - Volume(b)) <= 1e-9 * (1 + std::fabs(v))))
        return ::testing::AssertionFailure() << "volumes differ";
    return ::testing::AssertionSuccess();
}

}  // namespace quillon::space_test
