#include "quillon/geometry/space/face3.h"

#include <gtest/gtest.h>

#include "quillon/geometry/space/space_types.h"

namespace quillon {
namespace {

using Loop = Mvector<std::uint32_t>;

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

TEST(Face3, CountsOffsetsAndReset) {
    Face3 f(Loop{0, 1, 2}, 3);
    f.holes = {Loop{4, 5, 6}, Loop{7, 8}};
    f.normalLoop = {1, 1, 1};
    EXPECT_EQ(f.GetAllNodesCnt(), 8u);
    const Face3 before = f;
    f.OffsetInd(0);
    EXPECT_EQ(f, before);
    f.OffsetInd(10);
    EXPECT_EQ(f.loop, (Loop{10, 11, 12}));
    EXPECT_EQ(f.holes[1], (Loop{17, 18}));
    EXPECT_EQ(f.normalLoop, (Loop{1, 1, 1})) << "only vertex indices move";
    f.Reset();
    EXPECT_EQ(f, Face3());
    EXPECT_EQ(f.material, -1);
}

TEST(Face3, GlueHolesSplicesLaterHolesFromTheLastBack) {
    Face3 f(Loop{90, 91, 92});
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
    EXPECT_EQ(f.loop, (Loop{90, 91, 92}));
    EXPECT_TRUE(f.edges.empty());

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
