// Seeded random shapes: the boolean operations keep the area identities exactly (arcs included),
// every result is a valid tree, nothing leaks, and the indexed solver gives the same nodes,
// elements and results as a straightforward solver built on linear searches.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "las_test_support.h"
#include "quillon/geometry/contours/las_solver.h"

namespace quillon {
namespace {

using las_test::Area;
using las_test::CheckTree;
using las_test::CircleContour;
using las_test::kPi;
using las_test::Polygon;
using las_test::RectContour;
using las_test::Shape;

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
            for (const Point2& p : pts) {
                if (e->IsOnEnd(p) && f->IsOnEnd(p)) continue;
                if (SplitPair(e, f, p)) return 0;
            }
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

struct ShapeMaker {
    std::mt19937 rng;
    explicit ShapeMaker(unsigned seed) : rng(seed) {}

    double Grid(double lo, double hi) {  // half-unit steps: shared edges and corners are common
        std::uniform_int_distribution<int> d(static_cast<int>(lo * 2), static_cast<int>(hi * 2));
        return d(rng) / 2.0;
    }
    double Uniform(double lo, double hi) { return std::uniform_real_distribution<>(lo, hi)(rng); }
    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }

    ProComplexContour* Make(std::string& kind) {
        switch (Pick(7)) {
            case 0: {
                kind = "rectangle";
                const double x = Grid(0, 3), y = Grid(0, 3);
                return Shape(RectContour(x, y, x + Grid(0.5, 3), y + Grid(0.5, 3)));
            }
            case 1: {
                kind = "convex polygon";
                const Point2 c(Grid(1, 3), Grid(1, 3));
                const int n = 3 + Pick(6);
                const double r = Uniform(0.5, 2), phase = Uniform(0, 2 * kPi);
                std::vector<Point2> pts;
                for (int k = 0; k < n; ++k) {
                    const double a = phase + 2 * kPi * k / n;
                    pts.emplace_back(c.x + r * std::cos(a), c.y + r * std::sin(a));
                }
                if (Pick(2)) std::reverse(pts.begin(), pts.end());
                return Shape(Polygon(pts));
            }
            case 2: {
                kind = "star";
                const Point2 c(Grid(1, 3), Grid(1, 3));
                const int n = 3 + Pick(4);
                const double r = Uniform(1, 2), phase = Uniform(0, 2 * kPi);
                std::vector<Point2> pts;
                for (int k = 0; k < 2 * n; ++k) {
                    const double a = phase + kPi * k / n, rr = k % 2 ? r * 0.45 : r;
                    pts.emplace_back(c.x + rr * std::cos(a), c.y + rr * std::sin(a));
                }
                return Shape(Polygon(pts));
            }
            case 3: {
                kind = "L shape";
                const double x = Grid(0, 2), y = Grid(0, 2), w = Grid(1, 3), h = Grid(1, 3);
                return Shape(Polygon({{x, y},
                                      {x + w, y},
                                      {x + w, y + h / 2},
                                      {x + w / 2, y + h / 2},
                                      {x + w / 2, y + h},
                                      {x, y + h}}));
            }
            case 4: {
                kind = "disc";
                return Shape(CircleContour({Grid(0.5, 3.5), Grid(0.5, 3.5)}, Grid(0.5, 2),
                                           Pick(2) ? 0.0 : Uniform(0, kPi)));
            }
            case 5: {
                kind = "annulus";
                const Point2 c(Grid(1, 3), Grid(1, 3));
                const double r = Grid(1, 2);
                const Point2 hc(c.x + Uniform(-0.2, 0.2), c.y + Uniform(-0.2, 0.2));
                return Shape(CircleContour(c, r, Uniform(0, kPi)),
                             {CircleContour(hc, r * Uniform(0.3, 0.6), Uniform(0, kPi))});
            }
            default: {
                kind = "frame";
                const double x = Grid(0, 2), y = Grid(0, 2), w = Grid(1.5, 3), h = Grid(1.5, 3);
                return Shape(RectContour(x, y, x + w, y + h),
                             {RectContour(x + 0.5, y + 0.5, x + w - 0.5, y + h - 0.5)});
            }
        }
    }
};

bool Close(double a, double b, double scale) { return std::fabs(a - b) <= 1e-9 * scale; }

TEST(LasPropertyTest, BooleanAreasAddUpAndResultsAreValidTrees) {
    const int before = ProContour::get_contour_allocs();
    ShapeMaker maker(20240611u);
    int checked = 0;
    for (int round = 0; round < 1100; ++round) {
        std::string ka, kb;
        ProComplexContour* a = maker.Make(ka);
        ProComplexContour* b = maker.Make(kb);
        const double areaA = Area(a), areaB = Area(b);
        // Through the operations layer, which runs the engine's Solv.
        ProComplexContour* u = ShapeUnion(*a, *b, kEps).release();
        ProComplexContour* m = ShapeIntersection(*a, *b, kEps).release();
        ProComplexContour* d = ShapeDifference(*a, *b, kEps).release();
        const double scale = std::max(1.0, areaA + areaB);
        SCOPED_TRACE("round " + std::to_string(round) + ": " + ka + " and " + kb);
        EXPECT_TRUE(Close(Area(u) + Area(m), areaA + areaB, scale))
            << Area(u) << " + " << Area(m) << " vs " << areaA << " + " << areaB;
        EXPECT_TRUE(Close(Area(d), areaA - Area(m), scale))
            << Area(d) << " vs " << areaA << " - " << Area(m);
        EXPECT_EQ(CheckTree(u, kEps), "");
        EXPECT_EQ(CheckTree(m, kEps), "");
        EXPECT_EQ(CheckTree(d, kEps), "");
        for (ProComplexContour* x : {a, b, u, m, d}) delete x;
        ++checked;
        if (::testing::Test::HasFailure()) break;
    }
    EXPECT_EQ(checked, 1100);
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

// Solid areas with their holes' areas, sorted: the tree of a shape up to the order of its solids.
std::vector<std::vector<double>> TreeAreas(const ProComplexContour* c) {
    std::vector<std::vector<double>> out;
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i) {
        const ProSolidContour* s = c->SolidChild(i);
        std::vector<double> holes;
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)
            holes.push_back(std::fabs(las_test::SignedArea(*s->ClosedChild(j))));
        std::sort(holes.begin(), holes.end());
        holes.insert(holes.begin(), std::fabs(las_test::SignedArea(*s)));
        out.push_back(holes);
    }
    std::sort(out.begin(), out.end());
    return out;
}

// Whether a contour of the shape passes a point twice, or a hole meets its solid's outline at a
// vertex: a pinch, which a union may give either as a hole or as an outline touching itself.
bool HasPinch(const ProComplexContour* c) {
    const auto vertices = [](const LAContour& k) {
        std::vector<std::pair<double, double>> v;
        for (const LAEdge& e : k) v.emplace_back(e.start.x, e.start.y);
        if (v.size() > 1 && v.front() == v.back()) v.pop_back();  // the closing edge
        return v;
    };
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i) {
        const ProSolidContour* s = c->SolidChild(i);
        auto outline = vertices(*s);
        std::sort(outline.begin(), outline.end());
        if (std::adjacent_find(outline.begin(), outline.end()) != outline.end()) return true;
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)
            for (const auto& p : vertices(*s->ClosedChild(j)))
                if (std::binary_search(outline.begin(), outline.end(), p)) return true;
    }
    return false;
}

TEST(LasPropertyTest, ListUnionGivesTheRegionAndTreeOfTheFold) {
    const int before = ProContour::get_contour_allocs();
    ProContourFactory f;
    ShapeMaker maker(4242u);
    const int rounds = 160;
    int compared = 0;
    for (int round = 0; round < rounds; ++round) {
        std::vector<ProComplexContour*> list;
        std::string kind;
        for (int k = 0; k < 2 + round % 9; ++k) list.push_back(maker.Make(kind));
        ProComplexContour* fold = list.front();
        for (std::size_t k = 1; k < list.size(); ++k) {
            LAS_Solver step(kEps);
            ProComplexContour* next = step.Add(fold, list[k], &f);
            if (fold != list.front()) delete fold;
            fold = next;
        }
        ProComplexContour* pairs = LAS_Solver(kEps).Add(list, &f);
        SCOPED_TRACE("round " + std::to_string(round));
        ProComplexContour* extra = LAS_Solver(kEps).Sub(pairs, fold, &f);
        ProComplexContour* missing = LAS_Solver(kEps).Sub(fold, pairs, &f);
        const double scale = std::max(1.0, Area(fold));
        EXPECT_LE(Area(extra) + Area(missing), 1e-9 * scale);
        EXPECT_EQ(CheckTree(pairs, kEps), "");
        if (!HasPinch(fold) && !HasPinch(pairs)) {
            ++compared;
            const auto tf = TreeAreas(fold), tp = TreeAreas(pairs);
            EXPECT_EQ(tf.size(), tp.size());
            for (std::size_t i = 0; i < std::min(tf.size(), tp.size()); ++i) {
                ASSERT_EQ(tf[i].size(), tp[i].size());
                for (std::size_t j = 0; j < tf[i].size(); ++j)
                    EXPECT_TRUE(Close(tf[i][j], tp[i][j], scale)) << tf[i][j] << " vs " << tp[i][j];
            }
        }
        for (ProComplexContour* x : {fold, pairs, extra, missing}) delete x;
        for (ProComplexContour* x : list) delete x;
        if (::testing::Test::HasFailure()) break;
    }
    // Pinches are rare: nearly every round compares the trees.
    EXPECT_GE(compared, rounds * 9 / 10);
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

void ExpectSameGraph(const LAS_Solver& x, const LAS_Solver& y) {
    ASSERT_EQ(x.GetNodeCount(), y.GetNodeCount());
    for (int k = 0; k < x.GetNodeCount(); ++k) {
        EXPECT_EQ(x.GetPoint(k).x, y.GetPoint(k).x);
        EXPECT_EQ(x.GetPoint(k).y, y.GetPoint(k).y);
        EXPECT_EQ(x.GetSortedNodes().empty() ? -1 : x.GetNodeIndex(x.GetSortedNodes()[k]),
                  y.GetSortedNodes().empty() ? -1 : y.GetNodeIndex(y.GetSortedNodes()[k]));
    }
    ASSERT_EQ(x.GetElementCount(), y.GetElementCount());
    for (int k = 0; k < x.GetElementCount(); ++k) {
        const LAS_Element* a = x.GetElement(k);
        const LAS_Element* b = y.GetElement(k);
        EXPECT_EQ(a->GetType(), b->GetType());
        EXPECT_EQ(a->GetBegin(), b->GetBegin());
        EXPECT_EQ(a->GetEnd(), b->GetEnd());
        EXPECT_EQ(a->GetUseCount(), b->GetUseCount());
        if (a->GetType() == LAS_Element::Arc) {
            EXPECT_EQ(static_cast<const LAS_Arc*>(a)->GetCenter(),
                      static_cast<const LAS_Arc*>(b)->GetCenter());
            EXPECT_EQ(static_cast<const LAS_Arc*>(a)->GetSweep(),
                      static_cast<const LAS_Arc*>(b)->GetSweep());
        }
    }
}

void ExpectSameContour(const LAContour& a, const LAContour& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].type, b[i].type);
        EXPECT_EQ(a[i].start.x, b[i].start.x);
        EXPECT_EQ(a[i].start.y, b[i].start.y);
        EXPECT_EQ(a[i].angle, b[i].angle);
    }
}

void ExpectSameShape(const ProComplexContour* a, const ProComplexContour* b) {
    ASSERT_EQ(a->ChildrenCount(), b->ChildrenCount());
    for (unsigned long i = 0; i < a->ChildrenCount(); ++i) {
        const ProSolidContour* sa = a->SolidChild(i);
        const ProSolidContour* sb = b->SolidChild(i);
        ExpectSameContour(*sa, *sb);
        ASSERT_EQ(sa->ChildrenCount(), sb->ChildrenCount());
        for (unsigned long j = 0; j < sa->ChildrenCount(); ++j)
            ExpectSameContour(*sa->ClosedChild(j), *sb->ClosedChild(j));
    }
}

TEST(LasPropertyTest, IndexedSolverMatchesTheStraightforwardOne) {
    ProContourFactory f;
    ShapeMaker maker(777u);
    for (int round = 0; round < 150; ++round) {
        std::vector<ProComplexContour*> shapes;
        std::string kind;
        for (int k = 0; k < 3; ++k) shapes.push_back(maker.Make(kind));
        const auto op = static_cast<LAS_Solver::Operation>(round % 3);
        LAS_Solver fast(kEps);
        ReferenceSolver slow(kEps);
        // Three shapes in one graph: the first two combined, the third only adding elements.
        fast.AddComplexContour(shapes[2]);
        slow.AddComplexContour(shapes[2]);
        ProComplexContour* rf = fast.Solv(shapes[0], shapes[1], op, &f);
        ProComplexContour* rs = slow.Solv(shapes[0], shapes[1], op, &f);
        SCOPED_TRACE("round " + std::to_string(round));
        ExpectSameGraph(fast, slow);
        ExpectSameShape(rf, rs);
        for (ProComplexContour* x : {rf, rs}) delete x;
        for (ProComplexContour* x : shapes) delete x;
        if (::testing::Test::HasFailure()) break;
    }
    // Loose crossing lines and arcs, split and walked.
    std::mt19937 rng(99u);
    std::uniform_real_distribution<> u(0.0, 10.0);
    for (int round = 0; round < 40; ++round) {
        std::vector<LAContour> chains;
        for (int k = 0; k < 12; ++k) {
            LAContour c;
            c.push_back(LAEdge(Point2(u(rng), u(rng))));
            if (k % 3 == 0) c.push_back(LAEdge(Point2(u(rng), u(rng)), Point2(5, 5), 1.0));
            c.push_back(LAEdge(Point2(std::round(u(rng)), std::round(u(rng)))));
            chains.push_back(c);
        }
        // Make the arcs consistent: start on the circle about (5, 5) through the first point.
        for (int k = 0; k < 12; k += 3) {
            LAContour& c = chains[static_cast<std::size_t>(k)];
            const Vector2 r = c[1].start - Point2(5, 5);
            c[1].centre = Point2(5, 5);
            c[2].start = Point2(5 + r.x * std::cos(1.0) - r.y * std::sin(1.0),
                                5 + r.x * std::sin(1.0) + r.y * std::cos(1.0));
        }
        std::vector<LAContour*> list;
        for (LAContour& c : chains) list.push_back(&c);
        LAS_Solver fast(kEps);
        ReferenceSolver slow(kEps);
        fast.SplitLaContours(list);
        slow.SplitLaContours(list);
        std::vector<LAContour*> none, pf, ps;
        std::vector<ProClosedContour*> cf, cs;
        fast.FindContours(none, &f, cf, pf);
        slow.FindContours(none, &f, cs, ps);
        SCOPED_TRACE("lines round " + std::to_string(round));
        ExpectSameGraph(fast, slow);
        ASSERT_EQ(cf.size(), cs.size());
        for (std::size_t i = 0; i < cf.size(); ++i) ExpectSameContour(*cf[i], *cs[i]);
        ASSERT_EQ(pf.size(), ps.size());
        for (std::size_t i = 0; i < pf.size(); ++i) ExpectSameContour(*pf[i], *ps[i]);
        for (auto* c : cf) delete c;
        for (auto* c : cs) delete c;
        for (auto* c : pf) delete c;
        for (auto* c : ps) delete c;
        if (::testing::Test::HasFailure()) break;
    }
}

}  // namespace
}  // namespace quillon
