// Solid booleans: the named behaviours of the face classes and the selection, and seeded random
// pairs of boxes, prisms and holed extrusions that share faces and edges, whose results must be
// closed, outward and obey the volume identities.
#include <gtest/gtest.h>

#include <cstdlib>
#include <numbers>
#include <random>
#include <sstream>

#include "quillon/geometry/space/solid3_inter.h"
#include "quillon/geometry/space/space_types.h"
#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::Closed;
using space_test::Volume;

// The box [lo, hi] as a prism over its bottom face (outward).
Solid3 Box(const Point3& lo, const Point3& hi, double eps = 1e-9) {
    Solid3 s(eps);
    const Mvector<Point3> base{
        {lo.x, lo.y, lo.z}, {hi.x, lo.y, lo.z}, {hi.x, hi.y, lo.z}, {lo.x, hi.y, lo.z}};
    EXPECT_TRUE(s.GenCuboid(base, Vector3(0, 0, hi.z - lo.z), {}));
    return s;
}

Solid3 Moved(Solid3 s, const LocalPlane& frame) {
    s <<= frame;
    return s;
}

struct Outcome {
    bool ok = false;
    int bits = 0;
    Solid3 solid;
};

Outcome Boolean(const Solid3& a, const Solid3& b, EBOOL_OPER op) {
    Outcome o;
    Solid3Inter inter(a, b);
    o.ok = inter.MakeInterData();
    if (o.ok) o.ok = inter.BoolOper(op, o.solid);
    o.bits = inter.GetErrorStat();
    return o;
}

// The shared face of two cubes side by side is an opposite twin in each; a taller box on a cube's
// base shares faces with it the same way round. Subtraction leaves the first cube, union one block.
TEST(Solid3Inter, CubesSharingFacesAreTwinsAndCombineCleanly) {
    const Solid3 a = Box({0, 0, 0}, {1, 1, 1}), b = Box({1, 0, 0}, {2, 1, 1});
    Solid3Inter beside(a, b), onBase(a, Box({0, 0, 0}, {1, 1, 2}));
    int opposite = 0, same = 0;
    for (auto* inter : {&beside, &onBase}) {
        ASSERT_TRUE(inter->MakeInterData());
        for (std::size_t i = 0; i < inter->Faces().size(); ++i) {
            const Face3Inter& f = inter->Faces()[i];
            if (!f.alive || !f.hasTwin()) continue;
            E_STATUS st;
            ASSERT_TRUE(inter->AreTwinFaces(i, f.twin, st));
            EXPECT_EQ(st, f.status);
            (st == STATUS_OPPOSITE_TWIN ? opposite : same) += 1;
        }
        // Faces meeting at an edge at a right angle are never twins.
        for (std::size_t i = 0; i < inter->Faces().size(); ++i) {
            for (std::size_t j = 0; j < inter->Faces().size(); ++j) {
                E_STATUS st;
                const double c = inter->Faces()[i].normal * inter->Faces()[j].normal;
                EXPECT_TRUE(std::fabs(c) > 0.5 || !inter->AreTwinFaces(i, j, st)) << i << "," << j;
            }
        }
    }
    EXPECT_EQ(opposite, 2) << "the shared face, once in each cube";
    EXPECT_GE(same, 2);

    Solid3 r;
    int bits = -1;
    ASSERT_TRUE(BoolSubstract(a, b, r, &bits));
    EXPECT_EQ(bits, 0);
    EXPECT_TRUE(Closed(r));
    EXPECT_NEAR(Volume(r), 1.0, 1e-12);
    EXPECT_EQ(r.Face().size(), 6u);
    const Outcome u = Boolean(a, b, BOOL_UNION);
    ASSERT_TRUE(u.ok);
    EXPECT_TRUE(Closed(u.solid) && u.solid.GetClosed());
    EXPECT_NEAR(Volume(u.solid), 2.0, 1e-12);
    for (const Face3& f : u.solid.Face()) {
        bool between = true;
        for (const auto v : f.loop) between = between && u.solid.Vertex()[v].point.x == 1.0;
        EXPECT_FALSE(between) << "no face is left between the cubes";
    }
}

// Edges lying in a face within the tolerance are on it at any length: a beam whose
// underside sinks 0.45 eps over its 200 rests on the plate (the tilt is far below 4 degrees).
TEST(Solid3Inter, ALongEdgeTiltedWithinTheToleranceLiesOnTheFace) {
    const double eps = 1e-3, rise = -0.45 * eps;
    const Solid3 plate = Box({0, 0, -10}, {250, 50, 0}, eps);
    Solid3 beam(eps);
    ASSERT_TRUE(beam.GenCuboid({{10, 10, 0}, {210, 10, rise}, {210, 20, rise}, {10, 20, 0}},
                               Vector3(0, 0, 5), {}));
    Solid3Inter inter(plate, beam);
    ASSERT_TRUE(inter.PrepareData() && inter.GenSecondaryData() && inter.CutEdges(1) &&
                inter.CutEdges(2) && inter.SetEdgeVertexStatus());
    int under = 0;
    for (const Edge3Inter& e : inter.Edges()) {
        if (e.owner != OWNER_SECOND || inter.Vertices()[e.v0].z > eps ||
            inter.Vertices()[e.v1].z > eps)
            continue;
        ++under;
        EXPECT_EQ(e.status, STATUS_BOUNDARY) << e.v0 << "-" << e.v1;
    }
    EXPECT_EQ(under, 4);
    const Outcome u = Boolean(plate, beam, BOOL_UNION);
    ASSERT_TRUE(u.ok) << u.bits;
    EXPECT_TRUE(Closed(u.solid));
    EXPECT_NEAR(Volume(u.solid), Volume(plate) + Volume(beam), 1e-6);
}

TEST(Solid3Inter, OperatorsOutsideOneToFourGiveNothing) {
    const Solid3 a = Box({0, 0, 0}, {1, 1, 1}), b = Box({0.5, 0.5, 0.5}, {2, 2, 2});
    Solid3Inter inter(a, b);
    Solid3 r;
    EXPECT_FALSE(inter.BoolOper(BOOL_SUBTRACT, r)) << "not ready before MakeInterData";
    ASSERT_TRUE(inter.MakeInterData());
    EXPECT_FALSE(inter.BoolOper(static_cast<EBOOL_OPER>(0), r));
    EXPECT_FALSE(inter.BoolOper(static_cast<EBOOL_OPER>(5), r));
    EXPECT_TRUE(r.Face().empty() && r.Vertex().empty());
    EXPECT_TRUE(inter.BoolOper(BOOL_ALL_PIECES, r));
    EXPECT_TRUE(Closed(r, false));
    EXPECT_NEAR(Volume(r), Volume(a) + Volume(b), 1e-12) << "both surfaces, cut along each other";
}

TEST(Solid3Inter, AFaceWhoseEdgeListDoesNotMatchItsLoopIsInconsistent) {
    const Solid3 a = Box({0, 0, 0}, {1, 1, 1});
    const Solid3 b = Box({0.5, 0.5, 0.5}, {2, 2, 2});
    Solid3Inter inter(a, b);
    EXPECT_FALSE(inter.CutEdges(0)) << "neither operand";
    ASSERT_TRUE(inter.PrepareData() && inter.GenSecondaryData() && inter.CutEdges(1) &&
                inter.CutEdges(2) && inter.SetEdgeVertexStatus() && inter.GenrateNewEdges() &&
                inter.GenerateFaces());
    inter.Faces()[0].edges.pop_back();
    EXPECT_FALSE(inter.SetFaceStatus());
    EXPECT_EQ(inter.GetErrorStat(), Solid3Inter::errInconsistentFace);
}

TEST(Solid3Inter, FacesKeepTheirMaterialsByName) {
    // a: its faces across x steel, the others paint; b all paint: the result has each name once.
    Solid3 a = Box({0, 0, 0}, {2, 2, 2}), b = Box({1, 1, 1}, {3, 3, 3});
    const auto acrossX = [](const Solid3& s, const Face3& f) {
        for (const auto v : f.loop)
            if (s.Vertex()[v].point.x != s.Vertex()[f.loop[0]].point.x) return false;
        return true;
    };
    a.AddMaterial(Material3(L"steel"));
    a.AddMaterial(Material3(L"paint"));
    b.AddMaterial(Material3(L"paint"));
    for (Face3& f : a.Face()) f.material = acrossX(a, f) ? 0 : 1;
    for (Face3& f : b.Face()) f.material = 0;
    const Outcome u = Boolean(a, b, BOOL_UNION);
    ASSERT_TRUE(u.ok);
    ASSERT_EQ(u.solid.Material().size(), 2u);
    for (const Face3& f : u.solid.Face()) {
        const double x = u.solid.Vertex()[f.loop[0]].point.x;
        ASSERT_GE(f.material, 0);
        EXPECT_EQ(u.solid.Material()[static_cast<std::size_t>(f.material)].name,
                  acrossX(u.solid, f) && (x == 0 || x == 2) ? L"steel" : L"paint");
    }
}

TEST(Solid3Inter, SubtractionCountsAndChecksBoxes) {
    const long before = BoolSubstractCalls();
    const Solid3 plate = Box({0, 0, 0}, {10, 6, 1});
    const Solid3 slot = Box({4, -1, -1}, {6, 7, 2});
    SetBoolSubstractChecking(true);
    EXPECT_TRUE(GetBoolSubstractChecking());
    Solid3 r;
    EXPECT_TRUE(BoolSubstract(plate, slot, r, nullptr));
    EXPECT_NEAR(Volume(r), 48.0, 1e-9);
    SetBoolSubstractChecking(false);
    EXPECT_EQ(BoolSubstractCalls(), before + 1);

    // The box rules on their own: the slot reaches past the plate in y and z only, so x keeps the
    // plate's extremes.
    EXPECT_TRUE(BoolSubstractBoxesFit(plate, slot, r));
    EXPECT_FALSE(BoolSubstractBoxesFit(plate, slot, Box({0, 0, 0}, {11, 6, 1})));
    EXPECT_FALSE(BoolSubstractBoxesFit(plate, slot, Box({1, 0, 0}, {10, 6, 1})));
    EXPECT_TRUE(BoolSubstractBoxesFit(plate, slot, Box({0, 1, 0}, {10, 5, 1})));
    EXPECT_FALSE(BoolSubstractBoxesFit(plate, slot, Box({0, 0, 0}, {9, 6, 1})));
    // A b flush against a's side meets a: what it reaches past may go.
    EXPECT_TRUE(
        BoolSubstractBoxesFit(plate, Box({-1, -1, -1}, {0, 7, 2}), Box({0, 1, 0}, {10, 5, 1})));
    EXPECT_FALSE(
        BoolSubstractBoxesFit(plate, Box({20, 0, 0}, {21, 1, 1}), Box({0, 1, 0}, {10, 6, 1})))
        << "a b that misses a takes nothing away";
    EXPECT_FALSE(BoolSubstractBoxesFit(plate, slot, Solid3()))
        << "an empty result needs a b covering a";
    EXPECT_TRUE(BoolSubstractBoxesFit(plate, Box({-1, -1, -1}, {11, 7, 2}), Solid3()));
}

// Seeded random pairs: boxes on a coarse grid (so faces and edges are often shared or flush), boxes
// turned about a vertical axis, prisms over star polygons, holed extrusions and regular prisms
// standing on the grid; the pairs are also turned and moved anywhere together.
Solid3 RandomSolid(std::mt19937& gen, int kind, const LocalPlane& frame) {
    std::uniform_int_distribution<int> cell(0, 4);
    auto coord = [&] { return 0.5 * cell(gen); };
    Solid3 s(1e-9);
    if (kind == 0 || kind == 3) {
        Point3 lo(coord(), coord(), coord()), hi(coord(), coord(), coord());
        for (int k = 0; k < 3; ++k) {
            if (lo.tab()[k] > hi.tab()[k]) std::swap(lo.tab()[k], hi.tab()[k]);
            if (lo.tab()[k] == hi.tab()[k]) hi.tab()[k] += 0.5;
        }
        s = Box(lo, hi);
        if (kind == 3) {
            const double turn = std::uniform_real_distribution<double>(0.1, 1.4)(gen);
            LocalPlane spin;
            spin.rotate(turn, Vector3(0, 0, 1));
            const Point3 c = (lo + hi) * 0.5;
            s <<= Isometry3(Translate3(-c.vec()));
            s <<= spin;
            s <<= Isometry3(Translate3(c.vec()));
        }
    } else {
        const double cx = 0.5 + 0.25 * cell(gen), cy = 0.5 + 0.25 * cell(gen);
        Mvector<Point2> ring;
        if (kind == 4) {
            for (int k = 0; k < 12; ++k)
                ring.push_back(Point2(cx + 0.6 * std::cos(k * std::numbers::pi / 6),
                                      cy + 0.6 * std::sin(k * std::numbers::pi / 6)));
        } else {
            ring = space_test::Star(gen, 5 + cell(gen), cx, cy, 0.6, 1.0);
        }
        Mvector<Point3> base;
        const double z0 = coord();
        for (const Point2& p : ring) base.push_back(Point3(p.x, p.y, z0));
        Mmatrix<Point3> holes;
        if (kind == 2) {
            holes.emplace_back();
            for (const Point2& p : space_test::Star(gen, 4 + cell(gen), cx, cy, 0.15, 0.3))
                holes.back().push_back(Point3(p.x, p.y, z0));
        }
        EXPECT_TRUE(s.GenCuboid(base, Vector3(0, 0, 0.5 + coord()), holes));
    }
    return Moved(s, frame);
}

void CheckIdentities(const Solid3& a, const Solid3& b, const std::string& label, int& refused) {
    const double va = Volume(a), vb = Volume(b);
    Outcome u = Boolean(a, b, BOOL_UNION), i = Boolean(a, b, BOOL_INTERSECT),
            d = Boolean(a, b, BOOL_SUBTRACT);
    for (const Outcome* o : {&u, &i, &d}) {
        if (!o->ok) {
            ++refused;
            ADD_FAILURE() << label << " refused with bits " << o->bits << " op " << (o - &u);
            EXPECT_NE(o->bits, 0) << label << ": a refusal always says why";
            return;
        }
        EXPECT_TRUE(Closed(o->solid, false)) << label;
        EXPECT_TRUE(o->solid.GetClosed()) << label;
    }
    const double scale = va + vb;
    EXPECT_NEAR(Volume(u.solid) + Volume(i.solid), va + vb, 1e-9 * scale) << label;
    EXPECT_NEAR(Volume(d.solid), va - Volume(i.solid), 1e-9 * scale) << label;
    EXPECT_GE(Volume(i.solid), -1e-9 * scale) << label;
}

TEST(Solid3Inter, RandomPairsGiveClosedResultsThatAddUp) {
    const int rounds = std::getenv("QUILLON_LONG_TESTS") ? 3000 : 300;
    std::mt19937 gen(2026);
    int refused = 0;
    for (int round = 0; round < rounds; ++round) {
        LocalPlane frame;
        if (round % 3 == 1) frame = space_test::RandomFrame(gen);
        const int ka = round % 2 == 0 ? 0 : round % 5, kb = round % 3 == 0 ? 0 : (round / 3) % 5;
        const Solid3 a = RandomSolid(gen, ka, frame), b = RandomSolid(gen, kb, frame);
        std::ostringstream label;
        label << "round " << round << " kinds " << ka << "," << kb;
        CheckIdentities(a, b, label.str(), refused);
        // Results keep the pieces of split faces side by side in one plane: booleans on them again
        // must hold as well.
        if (round % 4 == 0) {
            const Outcome u = Boolean(a, b, BOOL_UNION);
            if (u.ok)
                CheckIdentities(u.solid, RandomSolid(gen, round % 5, frame), label.str() + " again",
                                refused);
        }
    }
    EXPECT_EQ(refused, 0);
}

TEST(Solid3Inter, AHoleOfThreeCornersStaysAHole) {
    Solid3 plate(1e-9);  // 4 × 4 × 1 with a hole of area 2
    ASSERT_TRUE(plate.GenCuboid({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}}, Vector3(0, 0, 1),
                                {{{1, 1, 0}, {3, 1, 0}, {2, 3, 0}}}));
    const Outcome cut = Boolean(plate, Box({3.5, -1, -1}, {5, 5, 2}), BOOL_SUBTRACT);
    ASSERT_TRUE(cut.ok);
    EXPECT_TRUE(Closed(cut.solid));
    EXPECT_NEAR(Volume(cut.solid), 16 - 2 - 2, 1e-12);
    // A block standing on the plate across the hole's rim: its bottom edges lie in the plate's top
    // and cross the hole's sides there, where the part of its underside over the hole splits off.
    const Outcome on = Boolean(plate, Box({1.2, 2, 1}, {5, 5, 2}), BOOL_UNION);
    ASSERT_TRUE(on.ok);
    EXPECT_TRUE(Closed(on.solid));
    EXPECT_NEAR(Volume(on.solid), 14 + 3.8 * 3, 1e-9);
}

}  // namespace
}  // namespace quillon
