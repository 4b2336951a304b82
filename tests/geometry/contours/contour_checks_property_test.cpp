// Seeded solver results against the validation and the clean-up: the booleans keep the area
// identities exactly (arcs included), no false alarm on 1000 results, the clean-up keeps every
// area and the validity, and trees put together from results are found
// invalid exactly when the solver says their parts overlap.

#include <algorithm>

#include "las_test_support.h"
#include "quillon/geometry/contours/contour_simplify.h"
#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/geometry/contours/las_solver.h"

namespace quillon {
namespace {

using namespace las_test;

using ContourChecksPropertyTest = LeakChecked;

constexpr double kEps = 1e-7;
using Owned = std::unique_ptr<ProComplexContour>;

// The union of two random shapes: a solver result itself.
Owned Operand(ShapeMaker& maker) {
    std::string kind;
    const Owned a(maker.Make(kind)), b(maker.Make(kind));
    return ShapeUnion(*a, *b, kEps);
}

// Sum of the absolute areas of every contour: the scale of rounding in any area of the shape.
double ContourScale(const ProComplexContour& c) {
    double s = 0.0;
    for (unsigned long i = 0; i < c.ChildrenCount(); ++i) {
        const ProSolidContour* solid = c.SolidChild(i);
        s += std::fabs(SignedArea(*solid));
        for (unsigned long j = 0; j < solid->ChildrenCount(); ++j)
            s += std::fabs(SignedArea(*solid->ClosedChild(j)));
    }
    return s;
}

std::string FirstProblem(const ContourValidation& v) {
    return v.IsValid() ? "" : DescribeProblem(v.problems.front());
}

// Expectation from a solver area: overlap when clearly positive, none when zero to rounding, and
// no verdict in between (slivers the two tolerances may see differently).
enum class Expect { None, Some, Either };
Expect FromArea(double area) {
    return area > 1e-6 ? Expect::Some : area < 1e-9 ? Expect::None : Expect::Either;
}

void Check(const ContourValidation& v, ContourProblemKind kind, Expect e) {
    if (e == Expect::Either) return;
    EXPECT_EQ(v.Count(kind) > 0, e == Expect::Some) << FirstProblem(v);
    EXPECT_EQ(v.Count(kind), v.problems.size()) << FirstProblem(v);
}

TEST_F(ContourChecksPropertyTest, SolverResultsAreValidAndCleanUpKeepsThem) {
    ShapeMaker maker(20250117u);
    ProContourFactory f;
    int removed = 0, verdicts = 0;
    for (int round = 0; round < 200 && !::testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const Owned a = Operand(maker), b = Operand(maker);
        const Owned mul = ShapeIntersection(*a, *b, kEps), add = ShapeUnion(*a, *b, kEps),
                    sub = ShapeDifference(*a, *b, kEps);
        const double areaM = Area(mul.get()),
                     scale = 1e-9 * std::max(1.0, Area(a.get()) + Area(b.get()));
        EXPECT_NEAR(Area(add.get()) + areaM, Area(a.get()) + Area(b.get()), scale);
        EXPECT_NEAR(Area(sub.get()), Area(a.get()) - areaM, scale);
        for (const ProComplexContour* r : {a.get(), b.get(), add.get(), sub.get(), mul.get()}) {
            EXPECT_EQ(FirstProblem(ValidateComplexContour(*r, kEps)), "");
            Owned clean(static_cast<ProComplexContour*>(r->Duplicate()));
            removed += SimplifyComplexContour(*clean, kEps);
            EXPECT_NEAR(Area(clean.get()), Area(r), 1e-12 * ContourScale(*r));
            EXPECT_EQ(FirstProblem(ValidateComplexContour(*clean, kEps)), "");
        }

        // The solids of both operands in one tree overlap exactly where the product has area;
        // the pieces of the difference and the product touch all along the cuts and never overlap.
        Owned both(f.CreateComplexContour()), pieces(f.CreateComplexContour());
        const auto gather = [](ProComplexContour& to, const ProComplexContour& from) {
            for (unsigned long i = 0; i < from.ChildrenCount(); ++i)
                to.Attach(static_cast<ProSolidContour*>(from.SolidChild(i)->Duplicate()));
        };
        for (const auto& [to, from] :
             {std::pair{&both, &a}, {&both, &b}, {&pieces, &sub}, {&pieces, &mul}})
            gather(**to, **from);
        Check(ValidateComplexContour(*both, kEps), ContourProblemKind::SolidsOverlap,
              FromArea(Area(mul.get())));
        EXPECT_EQ(FirstProblem(ValidateComplexContour(*pieces, kEps)), "");

        // First outlines of the operands, as a hole of the other or both as holes of a plate.
        const LAContour& sa = *a->SolidChild(0);
        const LAContour& sb = *b->SolidChild(0);
        const Owned fa(Shape(sa)), fb(Shape(sb));
        const Owned outside = ShapeDifference(*fb, *fa, kEps),
                    common = ShapeIntersection(*fa, *fb, kEps);
        const LAContour plate = RectContour(-5, -5, 15, 15);
        Check(ValidateComplexContour(*Owned(Shape(sa, {sb})), kEps),
              ContourProblemKind::HoleOutside, FromArea(Area(outside.get())));
        Check(ValidateComplexContour(*Owned(Shape(plate, {sa, sb})), kEps),
              ContourProblemKind::HolesOverlap, FromArea(Area(common.get())));
        if (common->ChildrenCount() > 0) {
            // A piece of the common part lies in the first outline, touching it along the cuts.
            const LAContour& piece = *common->SolidChild(0);
            EXPECT_EQ(FirstProblem(ValidateComplexContour(*Owned(Shape(sa, {piece})), kEps)), "");
            Check(ValidateComplexContour(*Owned(Shape(plate, {piece, sb})), kEps),
                  ContourProblemKind::HolesOverlap, Expect::Some);
        }
        verdicts += FromArea(Area(mul.get())) != Expect::Either;
    }
    EXPECT_GT(removed, 100);   // split elements leave straight corners and arcs in pieces
    EXPECT_GT(verdicts, 190);  // the overlap checks were decided, not skipped
}

}  // namespace
}  // namespace quillon
