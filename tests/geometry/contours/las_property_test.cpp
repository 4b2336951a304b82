// Seeded random shapes: the list union is the region of the fold of pairwise unions, the indexed
// solver gives the same nodes, elements and results as a straightforward solver built on linear
// searches, and garbage input neither crashes nor leaks.

#include <algorithm>
#include <limits>
#include <sstream>

#include "las_test_support.h"
#include "quillon/geometry/contours/contour_text.h"
#include "quillon/geometry/contours/las_solver.h"

namespace quillon {
namespace {

using namespace las_test;

using LasPropertyTest = LeakChecked;
using LasRobustnessTest = LeakChecked;

constexpr double kEps = 1e-7;

// The solver as first written: linear point and duplicate searches, every later element tried in
// list order, nodes sorted by insertion.
class ReferenceSolver : public LAS_Solver {
public:
    using LAS_Solver::LAS_Solver;

    int SplitEdge(int i) override {
        LAS_Element* e = GetElement(i);
        std::vector<Point2> pts;
        for (int j = i + 1; j < GetElementCount(); ++j) {
            LAS_Element* f = GetElement(j);
            e->Cross(f, pts, 4);
            for (const Point2& p : pts)
                if (!(e->IsOnEnd(p) && f->IsOnEnd(p)) && SplitPair(e, f, p)) return 0;
        }
        return 1;
    }

    void SortNodesFromTopLeft() override {
        std::vector<LAS_NodeInfo*> sorted;
        for (int k = 0; k < GetNodeCount(); ++k) {
            LAS_NodeInfo* n = GetNode(k);
            auto it = sorted.begin();
            while (it != sorted.end() && IsNextTopLeft((*it)->GetPoint(), n->GetPoint())) ++it;
            sorted.insert(it, n);
        }
        SetSortedNodes(std::move(sorted));
    }

protected:
    int FindNode(const Point2& p) override {
        for (int k = 0; k < GetNodeCount(); ++k)
            if (GetSolver2D().AreEqual(GetPoint(k), p)) return k;
        return -1;
    }
    LAS_Element* FindEqualLine(const LAS_Line& l) override {
        for (int k = 0; k < GetElementCount(); ++k)
            if (LAS_Line* x = GetLine(k); x != nullptr && *x == l) return x;
        return nullptr;
    }
    LAS_Element* FindEqualArc(const LAS_Arc& a) override {
        for (int k = 0; k < GetElementCount(); ++k)
            if (LAS_Arc* x = GetArc(k); x != nullptr && *x == a) return x;
        return nullptr;
    }
};

TEST_F(LasPropertyTest, ListUnionGivesTheRegionOfTheFold) {
    ProContourFactory f;
    ShapeMaker maker(4242u);
    for (int round = 0; round < 160 && !::testing::Test::HasFailure(); ++round) {
        std::vector<ProComplexContour*> list;
        std::string kind;
        for (int k = 0; k < 2 + round % 9; ++k) list.push_back(maker.Make(kind));
        ShapePtr fold(static_cast<ProComplexContour*>(list.front()->Duplicate()));
        for (std::size_t k = 1; k < list.size(); ++k)
            fold.reset(LAS_Solver(kEps).Add(fold.get(), list[k], &f));
        const ShapePtr pairs(LAS_Solver(kEps).Add(list, &f));
        SCOPED_TRACE("round " + std::to_string(round));
        const ShapePtr extra(LAS_Solver(kEps).Sub(pairs.get(), fold.get(), &f));
        const ShapePtr missing(LAS_Solver(kEps).Sub(fold.get(), pairs.get(), &f));
        EXPECT_LE(Area(extra.get()) + Area(missing.get()), 1e-9 * std::max(1.0, Area(fold.get())));
        EXPECT_EQ(CheckTree(pairs.get(), kEps), "");
        for (ProComplexContour* x : list) delete x;
    }
}

// Every number of a solver's graph, exactly: points, node order, elements and their use counts.
std::string Graph(const LAS_Solver& s) {
    std::ostringstream o;
    o << std::hexfloat;
    for (int k = 0; k < s.GetNodeCount(); ++k)
        o << s.GetPoint(k).x << ' ' << s.GetPoint(k).y << ' '
          << (s.GetSortedNodes().empty() ? -1 : s.GetNodeIndex(s.GetSortedNodes()[k])) << '\n';
    for (int k = 0; k < s.GetElementCount(); ++k) {
        const LAS_Element* e = s.GetElement(k);
        o << e->GetType() << ' ' << e->GetBegin() << ' ' << e->GetEnd() << ' ' << e->GetUseCount();
        if (const auto* a = dynamic_cast<const LAS_Arc*>(e))
            o << ' ' << a->GetCenter() << ' ' << a->GetSweep();
        o << '\n';
    }
    return o.str();
}

std::wstring Text(const ProComplexContour* c) {
    ProComplexContourWriter w;
    w.SetFullPrecision(true);
    return w.write(*c);
}

TEST_F(LasPropertyTest, IndexedSolverMatchesTheStraightforwardOne) {
    ProContourFactory f;
    ShapeMaker maker(777u);
    for (int round = 0; round < 150 && !::testing::Test::HasFailure(); ++round) {
        std::vector<ShapePtr> shapes;
        std::string kind;
        for (int k = 0; k < 3; ++k) shapes.emplace_back(maker.Make(kind));
        const auto op = static_cast<LAS_Solver::Operation>(round % 3);
        LAS_Solver fast(kEps);
        ReferenceSolver slow(kEps);
        // Three shapes in one graph: the first two combined, the third only adding elements.
        fast.AddComplexContour(shapes[2].get());
        slow.AddComplexContour(shapes[2].get());
        const ShapePtr rf(fast.Solv(shapes[0].get(), shapes[1].get(), op, &f));
        const ShapePtr rs(slow.Solv(shapes[0].get(), shapes[1].get(), op, &f));
        SCOPED_TRACE("round " + std::to_string(round));
        EXPECT_EQ(Graph(fast), Graph(slow));
        EXPECT_EQ(Text(rf.get()), Text(rs.get()));
    }
}

// Garbage in: degenerate, non-finite, huge and self-crossing input must not crash, hang or leak.
LAContour RandomContour(std::mt19937& rng) {
    std::uniform_real_distribution<> u(-3.0, 3.0);
    std::uniform_int_distribution<int> pick(0, 15);
    const double specials[] = {0.0,
                               1e-12,
                               -1e-12,
                               1e12,
                               std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(),
                               2 * kPi,
                               -2 * kPi,
                               100.0};
    const auto value = [&]() {
        const int k = pick(rng);
        return k < 9 && pick(rng) < 3 ? specials[k] : std::round(u(rng) * 2.0) / 2.0;
    };
    LAContour c;
    for (int i = pick(rng) % 7; i > 0; --i) {
        LAEdge e{Point2(value(), value())};
        if (pick(rng) < 5) {
            e.type = pick(rng) < 14 ? 1 : 7;  // now and then a type that is neither
            e.centre = Point2(value(), value());
            e.angle = value();
        }
        c.push_back(e);
    }
    return c;
}

TEST_F(LasRobustnessTest, GarbageInputNeitherCrashesNorLeaks) {
    std::mt19937 rng(31337u);
    ProContourFactory f;
    for (int round = 0; round < 300; ++round) {
        LAContour a = RandomContour(rng), b = RandomContour(rng);
        const ShapePtr sa = MakeShape(a, {RandomContour(rng)}), sb = MakeShape(b);
        for (auto op :
             {ShapeOperation::Union, ShapeOperation::Difference, ShapeOperation::Intersection})
            CombineShapes(*sa, *sb, op, round % 2 ? 1e-7 : 0.0);
        NormalizeShape(*sa, 1e-6);
        ShapeAbove(*sa->SolidChild(0), 0.25, 1e-6);
        LAS_Solver w(1e-6);
        std::vector<LAContour*> list = {&a, &b}, none, polylines;
        std::vector<ProClosedContour*> closed;
        w.SplitLaContours(list);
        w.FindContours(none, &f, closed, polylines);
        for (auto* c : closed) delete c;
        for (auto* p : polylines) delete p;
        SegmentInsideShape(*sa, Sector2({-5, 0.3}, {5, 0.1}), 1e-6);
    }
}

}  // namespace
}  // namespace quillon
