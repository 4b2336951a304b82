#include "quillon/geometry/space/solid3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

#include "tests/geometry/space/space_test_support.h"

namespace quillon {
namespace {

using space_test::Closed;
using space_test::Volume;

using Loop = Mvector<std::uint32_t>;

std::uint32_t U32(std::size_t i) { return static_cast<std::uint32_t>(i); }

TEST(Solid3, GetVertexIndLastAddedWithinEpsWinsAsTheBackwardScan) {
    Solid3 s(0.5);
    s.AddVertex(Point3(0, 0, 0));
    s.AddVertex(Point3(0.25, 0, 0));
    EXPECT_EQ(s.GetVertexInd(Point3(0.75, 0, 0)), 2u) << "exactly eps away is not within";

    // Seeded agreement with the backward scan (the later-added wins), through appends, edits and
    // copies.
    std::mt19937 gen(7);
    for (int round = 0; round < 12; ++round) {
        const double eps = std::uniform_real_distribution<double>(0.05, 0.5)(gen);
        std::uniform_int_distribution<int> cell(-3, 3);
        std::uniform_real_distribution<double> jitter(-0.4, 0.4);
        const auto point = [&] {
            return Point3(cell(gen) * 0.5 + jitter(gen), cell(gen) * 0.5 + jitter(gen),
                          cell(gen) * 0.5 + jitter(gen));
        };
        Solid3 solid(eps);
        for (int i = 0; i < 600; ++i) {
            const Point3 p = point();
            const auto& v = std::as_const(solid).Vertex();
            std::size_t want = v.size();
            for (std::size_t j = v.size(); j-- > 0;) {
                if (v[j].point.distance(p) < eps) {
                    want = j;
                    break;
                }
            }
            ASSERT_EQ(solid.GetVertexInd(p), want) << round << " " << i;
            // Merged normals follow the same rule on their own list.
            const auto& n = std::as_const(solid).Normal();
            std::size_t last = n.size();
            for (std::size_t j = n.size(); j-- > 0 && last == n.size();) {
                if ((n[j].vec - p.vec()).length() < eps) last = j;
            }
            const std::size_t wantNormal = i % 5 ? last : n.size();
            ASSERT_EQ(solid.AddNormal(p.vec(), i % 5 != 0), wantNormal);
            if (i % 97 == 0) solid.AddVertex(point());
            if (i % 151 == 0)
                solid.Vertex()[static_cast<std::size_t>(i) % v.size()].point = point();
            if (i % 211 == 0) solid = Solid3(solid);
        }
    }
}

TEST(Solid3, GenCuboidFromTwoRingsAppendsExactlyTheListedPrism) {
    Solid3 s;
    s.AddVertex(Point3(9, 9, 9));  // b = 1: the prism extends the solid
    const Mvector<Point3> rings{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
    ASSERT_TRUE(s.GenCuboid(rings));
    EXPECT_EQ(s.Vertex()[4].point.z, 1.0);
    const Mvector<Edge3d> edges{{1, 2}, {4, 5}, {1, 4}, {2, 3}, {5, 6},
                                {2, 5}, {3, 1}, {6, 4}, {3, 6}};
    EXPECT_EQ(s.Edge(), edges);
    ASSERT_EQ(s.Face().size(), 5u);
    EXPECT_EQ(s.Face()[2].loop, (Loop{3, 6, 4, 1}));
    EXPECT_EQ(s.Face()[3].loop, (Loop{1, 2, 3}));
    EXPECT_NEAR(Volume(s), 0.5, 1e-15) << "base counter-clockwise below the top: outward";

    Solid3 t;
    EXPECT_FALSE(t.GenCuboid(Mvector<Point3>(rings.begin(), rings.begin() + 5)));
    EXPECT_TRUE(t.Vertex().empty() && t.Face().empty());
}

// Random swept prisms are covered through the extrusions; here the input rules.
TEST(Solid3, SweptPrismDropsARepeatedClosingPointAndRefusesFlatInput) {
    Solid3 s;
    const Mvector<Point3> flat{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1e-12}};
    ASSERT_TRUE(s.GenCuboid(flat, Vector3(0.5, 0, -2), {}));
    EXPECT_EQ(s.Vertex().size(), 8u);
    EXPECT_NEAR(Volume(s), 2.0, 1e-12) << "a path below the base: outward still";
    s.Clear();
    EXPECT_FALSE(s.GenCuboid(flat, Vector3(1, 0, 0), {})) << "a path in the base plane";
    EXPECT_FALSE(s.GenCuboid({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, Vector3(0, 0, 1), {}));
    EXPECT_FALSE(s.GenCuboid({{0, 0, 0}, {1, 0, 0}, {1, 1, 0.5}, {0, 1, 0}}, Vector3(0, 0, 1), {}));
    EXPECT_FALSE(s.GenCuboid(flat, Vector3(0, 0, 1), {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0.5}}}))
        << "a hole off the base plane";
    EXPECT_TRUE(s.Vertex().empty());
}

TEST(Solid3, LoftsThroughRingsAreClosedAndOutward) {
    std::mt19937 gen(21);
    for (int round = 0; round < 30; ++round) {
        const int k = 3 + round % 6, m = 2 + round % 5;
        const bool loop = round % 3 == 0 && m >= 3;
        const Mvector<Point2> ring = space_test::Star(gen, k, 0, 0, 0.5, 1.0);
        Mvector<Point3> points;
        for (int r = 0; r < m; ++r) {
            // Straight: translated copies; looped: the ring turned about an axis beside it.
            const double a = 2.0 * std::numbers::pi * r / m;
            for (const Point2& p : ring) {
                const Point3 q =
                    loop ? Point3((p.x + 3.0) * std::cos(a), (p.x + 3.0) * std::sin(a), p.y)
                         : Point3(p.x, p.y, 1.5 * r);
                points.push_back(round % 2 ? q : Point3(q.x, -q.y, q.z));
            }
        }
        Solid3 s;
        ASSERT_TRUE(s.GenComplexCuboid(points, k, loop)) << round;
        EXPECT_TRUE(Closed(s)) << round;
        EXPECT_GT(Volume(s), 0.0) << round;
        if (!loop) {
            EXPECT_NEAR(Volume(s), std::fabs(space_test::SignedArea(ring)) * 1.5 * (m - 1), 1e-12)
                << round;
        }
    }
    Solid3 s;
    EXPECT_FALSE(s.GenComplexCuboid({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, 3, false));
    EXPECT_FALSE(s.GenComplexCuboid(
        {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, 3, false))
        << "no volume";
    EXPECT_TRUE(s.Vertex().empty() && s.Face().empty());
}

TEST(Solid3, TriangulateFaceOfAHoledFaceCoversItsArea) {
    std::mt19937 gen(5);
    for (int round = 0; round < 40; ++round) {
        const LocalPlane frame = space_test::RandomFrame(gen);
        Solid3 s;
        Face3 f;
        Mvector<Point2> outer = space_test::Star(gen, 6 + round % 7, 0, 0, 4.0, 5.0);
        if (round % 2) outer.Reverse();
        double area = std::fabs(space_test::SignedArea(outer));
        for (const Point2& p : outer)
            f.loop.push_back(U32(s.AddVertex(space_test::Place(p, frame))));
        for (int h = 0; h < 1 + round % 3; ++h) {
            Mvector<Point2> hole = space_test::Star(gen, 5, -1.5 + 1.5 * h, 0.0, 0.3, 0.6);
            area -= std::fabs(space_test::SignedArea(hole));
            f.holes.push_back({});
            for (const Point2& p : hole)
                f.holes.back().push_back(U32(s.AddVertex(space_test::Place(p, frame))));
        }
        s.AddFace(f);
        Mmatrix<std::size_t> tris;
        ASSERT_TRUE(s.TriangulateFace(0, tris)) << round;
        // Areas add up, and every triangle turns as the outer loop.
        const Vector3 z = frame.get_dir_z() * (round % 2 ? -1.0 : 1.0);
        double sum = 0.0;
        for (const auto& t : tris) {
            const Point3 &a = s.Vertex()[t[0]].point, &b = s.Vertex()[t[1]].point,
                         &c = s.Vertex()[t[2]].point;
            const double twice = ((b - a) % (c - a)) * z;
            EXPECT_GT(twice, 0.0);
            sum += twice / 2.0;
        }
        EXPECT_NEAR(sum, area, 1e-9 * area) << round;
    }
    Solid3 s;
    Mmatrix<std::size_t> tris(1, 3, 0);
    EXPECT_FALSE(s.TriangulateFace(0, tris));
    EXPECT_TRUE(tris.empty());
    s.AddFace(Face3(Loop{0, 1, 2}));
    EXPECT_FALSE(s.TriangulateFace(0, tris)) << "indices outside the vertex list";
    for (int i = 0; i < 3; ++i) s.AddVertex(Point3(i, i, i));
    EXPECT_FALSE(s.TriangulateFace(0, tris)) << "no area";
}

TEST(Solid3, MergeSharesVerticesNormalsAndMaterialsByName) {
    Solid3 a(1e-6), b(1e-6);
    ASSERT_TRUE(a.GenCuboid(Mvector<Point3>{
        {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}));
    ASSERT_TRUE(b.GenCuboid(Mvector<Point3>{
        {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 0, 1}, {2, 0, 1}, {2, 1, 1}, {1, 1, 1}}));
    a.AddMaterial(Material3(L"steel"));
    b.AddMaterial(Material3(L"wood"));
    b.AddMaterial(Material3(L"steel"));
    b.AddNormal(Vector3(0, 0, 1), false);
    a.AddNormal(Vector3(0, 0, 1), false);
    b.Face()[0].material = 1;
    b.Face()[1].material = 0;
    b.Face()[1].normalLoop = Loop{0, 0, 0, 0};
    ASSERT_TRUE(a.Merge(b));
    EXPECT_EQ(a.Vertex().size(), 12u) << "the shared face's four corners are shared";
    EXPECT_EQ(a.Face()[6].loop, (Loop{1, 5, 8, 9}));
    EXPECT_EQ(a.Face()[6].material, 0);
    EXPECT_EQ(a.Face()[7].material, 1);
    EXPECT_EQ(a.Material()[1].name, L"wood");
    EXPECT_EQ(a.Normal().size(), 1u);

    const Solid3 before = a;
    b.Face()[2].loop.push_back(99);
    EXPECT_FALSE(a.Merge(b));
    b.Face()[2].loop.pop_back();
    b.Face()[2].normalHoles.push_back(Loop{1});
    EXPECT_FALSE(a.Merge(b)) << "a normal the solid lacks";
    EXPECT_EQ(a, before) << "a refused merge adds nothing";
    Solid3 self = before;
    ASSERT_TRUE(self.Merge(self));
    EXPECT_EQ(self.Vertex().size(), before.Vertex().size());
    EXPECT_EQ(self.Face().size(), 2 * before.Face().size());
}

TEST(Solid3, GenerateEdgesListsEachEdgeOnceInOrderOfFirstUse) {
    Solid3 s;
    for (int i = 0; i < 5; ++i) s.AddVertex(Point3(i, i * i, 0));
    Face3 f(Loop{0, 1, 2});
    f.holes.push_back(Loop{3, 4});
    s.AddFace(f);
    s.AddFace(Face3(Loop{2, 1, 4}));
    s.GenerateEdges();
    const Mvector<Edge3d> want{{0, 1}, {1, 2}, {2, 0}, {3, 4}, {1, 4}, {4, 2}};
    EXPECT_EQ(s.Edge(), want);
    EXPECT_EQ(s.Face()[0].edges, (Loop{0, 1, 2, 3, 3}));
    EXPECT_EQ(s.Face()[1].edges, (Loop{1, 4, 5}));
    Point3 lo, hi;
    ASSERT_TRUE(s.GetExtents(lo, hi));
    EXPECT_EQ(hi.y, 16.0);
    s.Clear();
    EXPECT_FALSE(s.GetExtents(lo, hi));
}

// Vertices from their coordinates, three by three.
Mvector<Vertex3d> Vertices(std::initializer_list<double> xyz) {
    Mvector<Vertex3d> v;
    const double* c = xyz.begin();
    for (std::size_t i = 0; i + 2 < xyz.size(); i += 3)
        v.push_back(Vertex3d(Point3(c[i], c[i + 1], c[i + 2])));
    return v;
}

// The reverse of PolyNormal: loops turn clockwise seen from outside. The first distinct vertex and
// the first one off their line make the frame; a start at a reflex corner still gives the loop's
// sign.
TEST(Face3, GetNormalSignIsTheReverseOfPolyNormal) {
    const Mvector<Vertex3d> w = Vertices({0, 0, 0, 0, 0, 0, 0.5, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1,
                                          0, 2, 1, 0, 1, 1, 0,   1, 2, 0, 0, 2, 0, 2, 0, 0});
    Face3 g(Loop{0, 1, 2, 3, 4, 5});
    EXPECT_EQ(g.GetNormal(w, 1e-9).z, -1.0);
    Face3 l(Loop{6, 7, 8, 9, 0, 10});  // an L turning counter-clockwise from its reflex side
    EXPECT_EQ(l.GetNormal(w, 1e-9).z, -1.0);
    Face3 cw(Loop{10, 0, 9, 8, 7, 6});
    EXPECT_EQ(cw.GetNormal(w, 1e-9).z, 1.0);

    // Cached while the length is within eps of 1, recomputed otherwise.
    g.normal = Vector3(0, 1, 0);
    EXPECT_EQ(g.GetNormal(w, 1e-9).y, 1.0);
    g.normal = Vector3(0, 1.5, 0);
    EXPECT_EQ(g.GetNormal(w, 1e-9).z, -1.0);

    EXPECT_EQ(Face3(Loop{0, 3, 4}).GetNormal(w, 1e-9).z, -1.0) << "a triangle";
    // Upright: the loop is laid flat in its own plane first.
    const Mvector<Vertex3d> up = Vertices({0, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1});
    EXPECT_NEAR(Face3(Loop{0, 1, 2, 3}).GetNormal(up, 1e-9).x, -1.0, 1e-15);
    for (const Loop& bad : {Loop{0, 2, 3}, Loop{0, 4}, Loop{0, 4, 99}})
        EXPECT_EQ(Face3(bad).GetNormal(w, 1e-9).length(), 0.0);
}

TEST(Face3, GlueHolesSplicesLaterHolesFromTheLastBack) {
    Face3 f(Loop{90, 91, 92});
    EXPECT_EQ(Face3(Loop{0, 1}, 3).GetAllNodesCnt(), 2u);
    // B and C both run A's edge 2 -> 3 backwards; C, the last, is taken first and B then finds no
    // shared edge left.
    f.holes = {Loop{1, 2, 3, 4}, Loop{10, 3, 2, 11}, Loop{20, 3, 2, 21}, Loop{30}};
    f.normalHoles = {Loop{0, 0, 0, 1}, Loop{2, 2, 2, 2}, Loop{3, 4, 5, 6}, Loop{7}};
    f.edges = {1, 2, 3};
    f.GlueHoles();
    ASSERT_EQ(f.holes.size(), 3u);
    EXPECT_EQ(f.holes[0], (Loop{1, 2, 21, 20, 3, 4}));
    EXPECT_EQ(f.holes[1], (Loop{10, 3, 2, 11}));
    EXPECT_EQ(f.normalHoles[0], (Loop{0, 0, 6, 3, 0, 1}));
    EXPECT_EQ(f.normalHoles.size(), 3u);
    EXPECT_EQ(f.GetAllNodesCnt(), 3u + 6u + 4u + 1u);
    EXPECT_TRUE(f.edges.empty());
    f.OffsetInd(10);
    EXPECT_EQ(f.holes[2], (Loop{40}));
    EXPECT_EQ(f.normalHoles[0], (Loop{0, 0, 6, 3, 0, 1})) << "only vertex indices move";
    f.Reset();
    EXPECT_EQ(f, Face3());

    // Two-vertex holes take part; holes apart stay as they are, and so does the edge list.
    Face3 two(Loop{0, 1, 2});
    two.holes = {Loop{1, 2}, Loop{10, 2, 1, 11}};
    two.GlueHoles();
    EXPECT_EQ(two.holes, (Mmatrix<std::uint32_t>{Loop{1, 11, 10, 2}}));
    Face3 apart(Loop{0, 1, 2});
    apart.holes = {Loop{1, 2, 3}, Loop{4, 5, 6}};
    apart.edges = {7};
    const Face3 before = apart;
    apart.GlueHoles();
    EXPECT_EQ(apart, before);
}

}  // namespace
}  // namespace quillon
