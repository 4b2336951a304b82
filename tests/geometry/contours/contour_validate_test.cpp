// Validation of structured contours: each kind of problem on a small shape, the shapes that only
// look suspicious (touching, islands, pinched outlines), and a large grid of holes.
#include "quillon/geometry/contours/contour_validate.h"

#include <limits>

#include "las_test_support.h"
#include "quillon/geometry/contours/contour_text.h"

namespace quillon {
namespace {

using namespace las_test;

using Kind = ContourProblemKind;

std::unique_ptr<ProComplexContour> Read(const std::wstring& text) {
    ProComplexContourReader reader(text);
    return std::unique_ptr<ProComplexContour>(reader.read());
}

const std::wstring kSquare = L"(L 0 0)(L 10 0)(L 10 10)(L 0 10)";

// A solid of the given edges and holes, a hole, and a complex contour of the given solids.
std::wstring S(const std::wstring& edges, const std::wstring& holes = L"") {
    return L"(S(" + edges + L") 0 (" + holes + L"))";
}
std::wstring H(const std::wstring& edges) { return L"(H(" + edges + L"))"; }
std::wstring C(const std::wstring& solids) { return L"((" + solids + L"))"; }

TEST(ContourValidateTest, EachProblemIsFoundWithItsPathAndPlace) {
    using enum ContourProblemKind;
    const std::wstring frame = H(L"(L 2 2)(L 8 2)(L 8 8)(L 2 8)");
    const ContourPath outer{0, -1}, hole{0, 0};
    const struct {
        const char* name;
        std::wstring text;
        Kind kind;
        ContourPath path;
    } cases[] = {
        {"hole outside", C(S(kSquare, H(L"(L 20 20)(L 30 20)(L 30 30)"))), HoleOutside, hole},
        {"hole across", C(S(kSquare, H(L"(L 5 5)(L 15 5)(L 15 8)"))), HoleOutside, hole},
        // Out by 1.5 eps between crossings 1.5 eps short of its corners: one edge shows it.
        {"hole just outside",
         C(S(kSquare, H(L"(L 4 5)(L 4 10.00000015)(L 6 10.00000015)(L 6 5)(L 6 3)(L 4 3)"))),
         HoleOutside, hole},
        {"bow-tie", C(S(L"(L 0 0)(L 10 0)(L 0 10)(L 10 10)")), SelfCrossing, outer},
        {"vertex passed twice", C(S(L"(L 0 0)(L 10 0)(L 5 5)(L 0 10)(L 10 10)(L 5 5)")),
         SelfCrossing, outer},
        {"arc crossing the edge before it",
         C(S(L"(L -2 0)(A 0 0 1 0 -3.9269908169872414)(L -0.7071067811865476 0.7071067811865476)")),
         SelfCrossing, outer},
        {"spike", C(S(L"(L 0 0)(L 10 0)(L 0 0)(L 0 10)(L -5 5)")), SelfCrossing, outer},
        {"folding back", C(S(L"(L 0 0)(L 10 0)(L 10 10)(L 10 5)(L 0 10)")), SelfCrossing, outer},
        {"overflow", C(S(L"(L 0 0)(L 1e308 0)(L 0 1e308)")), Overflow, outer},
        {"two points", C(S(L"(L 0 0)(L 10 0)")), NotClosed, outer},
        {"within epsilon", C(S(L"(L 0 0)(L 0.00000001 0)(L 0 0.00000001)")), NotClosed, outer},
        {"arc missing", C(S(L"(L 0 0)(A 0 0 1 0 1.5)(L 0 1)")), ArcMismatch, outer},
        {"arc over a turn", C(S(L"(A 0 0 1 0 7)")), SelfCrossing, outer},
        {"crossing holes",
         C(S(kSquare, H(L"(L 1 1)(L 5 1)(L 5 5)(L 1 5)") + H(L"(L 3 3)(L 7 3)(L 7 7)"))),
         HolesOverlap, hole},
        {"hole within a hole", C(S(kSquare, frame + H(L"(L 3 3)(L 4 3)(L 4 4)"))), HolesOverlap,
         hole},
        {"equal holes", C(S(kSquare, H(L"(L 1 1)(L 5 1)(L 5 5)") + H(L"(L 5 5)(L 1 1)(L 5 1)"))),
         HolesOverlap, hole},
        {"crossing solids", C(S(kSquare) + S(L"(L 5 5)(L 15 5)(L 15 15)")), SolidsOverlap, outer},
        {"solid in a solid", C(S(kSquare) + S(L"(L 2 2)(L 3 2)(L 3 3)")), SolidsOverlap, outer},
        {"equal solids", C(S(kSquare) + S(L"(L 10 10)(L 0 10)(L 0 0)(L 10 0)")), SolidsOverlap,
         outer},
        {"island over a hole edge", C(S(kSquare, frame) + S(L"(L 1 4)(L 5 4)(L 5 6)(L 1 6)")),
         SolidsOverlap, outer},
        {"island on material", C(S(kSquare, frame) + S(L"(L 0.5 0.5)(L 1.5 0.5)(L 1.5 1.5)")),
         SolidsOverlap, outer},
        {"solid child", C(S(kSquare, S(L"(L 1 1)(L 2 1)(L 2 2)"))), NotAHole, hole},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto shape = Read(c.text);
        const ContourValidation v = ValidateComplexContour(*shape, 1e-7);
        ASSERT_EQ(v.problems.size(), 1u);
        const ContourProblem& p = v.problems.front();
        EXPECT_EQ(p.kind, c.kind);
        EXPECT_EQ(p.path, c.path);
        EXPECT_FALSE(DescribeProblem(p).empty());
        // The point lies on the contour named or, for an overlap, on a contour of the solids
        // named (a stretch of one boundary inside the other region).
        const Solver2d rel(1e-6);
        const bool overlap = c.kind == Kind::SolidsOverlap || c.kind == Kind::HolesOverlap;
        if (overlap) {
            EXPECT_EQ(p.edge, -1);  // a whole contour
        }
        bool on = false;
        for (const ContourPath& at : {p.path, overlap ? p.other : p.path}) {
            const ProSolidContour* s = shape->SolidChild(static_cast<unsigned long>(at.solid));
            for (long h = -1; h < static_cast<long>(s->ChildrenCount()); ++h)
                if (overlap || h == at.hole)
                    on =
                        on || rel.IsPointOnContour(p.where, h < 0 ? static_cast<const LAContour*>(s)
                                                                  : s->ClosedChild(h));
        }
        const bool placed =
            c.kind != Kind::NotClosed && c.kind != Kind::Overflow && c.kind != Kind::NotAHole;
        EXPECT_TRUE(on || !placed) << p.where.x << ", " << p.where.y;
    }

    // Numbers that text cannot hold: a vertex, or an arc's sweep.
    for (int arc = 0; arc < 2; ++arc) {
        LAContour nan = RectContour(0, 0, 1, 1);
        nan[2].start.y = std::numeric_limits<double>::quiet_NaN();
        if (arc)
            nan[2] = LAEdge(Point2(1, 1), Point2(0.5, 1), std::numeric_limits<double>::infinity());
        std::unique_ptr<ProComplexContour> shape(Shape(RectContour(0, 0, 5, 5), {nan}));
        const ContourValidation v = ValidateComplexContour(*shape, 1e-7);
        ASSERT_EQ(v.problems.size(), 1u);
        EXPECT_EQ(v.problems[0].kind, Kind::NotFinite);
        EXPECT_EQ(v.problems[0].path, (ContourPath{0, 0}));
        EXPECT_EQ(v.problems[0].edge, 2);
    }
    // A tolerance that is not a number asks for the default 1e-10, as a negative one does: an arc
    // missing by 3e-8 is found.
    const auto nearly = Read(C(S(L"(L 0 0)(A 0 0 1 0 1.57079630)(L 0 1)")));
    EXPECT_TRUE(ValidateComplexContour(*nearly, 1e-7).IsValid());
    for (double eps : {-1.0, std::nan("")})
        EXPECT_EQ(ValidateComplexContour(*nearly, eps).Count(Kind::ArcMismatch), 1u);
}

TEST(ContourValidateTest, TouchingIslandsAndPinchedOutlinesAreValid) {
    const std::wstring quarter = L"(L 0 0)(A 0 0 1 0 1.5707963267948966)(L 0 1)";
    const std::vector<std::wstring> valid = {
        C(S(kSquare, H(L"(L 0 0)(L 4 2)(L 2 4)"))),  // hole touching a corner
        C(S(kSquare, H(L"(L 0 2)(L 0 8)(L 4 5)"))),  // hole along the outer
        C(S(kSquare, H(L"(L 1 1)(L 5 1)(L 5 5)") + H(L"(L 5 5)(L 9 5)(L 9 9)"))),
        C(S(kSquare, H(L"(L 1 1)(L 5 1)(L 5 5)") + H(L"(L 1 1)(L 5 5)(L 1 5)"))),
        C(S(kSquare, H(L"(L 2 2)(L 8 2)(L 8 8)(L 2 8)")) +  // island in a hole,
          S(L"(L 2 2)(L 5 2)(L 5 5)(L 2 5)")),              // touching it
        C(S(kSquare, H(L"(L 2 2)(L 8 2)(L 8 8)(L 2 8)")) +
          S(L"(L 2 2)(L 8 2)(L 8 8)(L 2 8)")),                     // island filling it
        C(S(kSquare) + S(L"(L 10 0)(L 20 0)(L 20 10)(L 10 10)")),  // shared edge
        C(S(L"(L 0 0)(L 10 0)(L 5 5)(L 10 10)(L 0 10)(L 5 5)")),   // two lobes, one point
        C(S(L"(A 0 0 1 0 6.283185307179586)")),                    // a full circle
        C(S(L"(L 0 0)(L 10 0)(L 10 10)(L 0 10)(L 0 0)")),          // zero closing edge
        C(S(L"(L 0 0)(A 10 0 0 0 1)(L 10 0)(L 10 10)(L 0 10)")),   // arc of no radius
        C(S(quarter + L"(L 0 0.5)")),                              // collinear corner
        // A sharp corner cut by an edge shorter than eps: its edges cross 1.8 eps from it.
        C(S(L"(L -1 0)(L 0 0)(L 0 9e-8)(L -1 -0.5)")),
        C(S(L"(A 0 0 2 0 3.141592653589793)(A 0 0 2 3.141592653589793 3.141592653589793)",
            H(L"(A 0 0 1 0 -6.283185307179586)"))),  // annulus
    };
    for (const std::wstring& text : valid) {
        const auto shape = Read(text);
        const ContourValidation v = ValidateComplexContour(*shape, 1e-7);
        EXPECT_TRUE(v.IsValid()) << std::string(text.begin(), text.end()) << ": "
                                 << (v.IsValid() ? "" : DescribeProblem(v.problems[0]));
    }
}

TEST(ContourValidateTest, LargeGridOfHolesIsCheckedWholeAndOneOverlapFound) {
    // 3600 holes in one solid and 400 islands in some of them: every contour near many others.
    ProContourFactory f;
    std::unique_ptr<ProComplexContour> shape(f.CreateComplexContour());
    ProSolidContour* plate = shape->Attach(f.CreateSolidContour());
    plate->SetLAContour(RectContour(0, 0, 120, 120));
    for (int i = 0; i < 60; ++i)
        for (int j = 0; j < 60; ++j) {
            const double x = 2.0 * i + 0.5, y = 2.0 * j + 0.5;
            plate->Attach(f.CreateEmptyContour())
                ->SetLAContour(i % 3 == 0 ? CircleContour({x + 0.5, y + 0.5}, 0.5)
                                          : RectContour(x, y, x + 1, y + 1));
            if (i % 3 == 1 && j % 3 == 0)
                shape->Attach(f.CreateSolidContour())
                    ->SetLAContour(RectContour(x + 0.25, y + 0.25, x + 0.75, y + 0.75));
        }
    EXPECT_TRUE(ValidateComplexContour(*shape, 1e-7).IsValid());
    // One hole moved onto its neighbour.
    plate->ClosedChild(61)->Move(Vector2(0.0, 1.5));
    const ContourValidation v = ValidateComplexContour(*shape, 1e-7);
    ASSERT_EQ(v.problems.size(), 1u);
    EXPECT_EQ(v.problems[0].kind, Kind::HolesOverlap);
    EXPECT_EQ(v.problems[0].path, (ContourPath{0, 61}));
    EXPECT_EQ(v.problems[0].other, (ContourPath{0, 62}));
}

}  // namespace
}  // namespace quillon
