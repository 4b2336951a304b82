// One contour solver case run a given number of times, for profilers (callgrind, perf): the
// solver_bench and peers_bench cases without Google Benchmark's own repetitions around them.
//
//   solver_profile CASE [REPEAT]
//   CASE: poly<N> (two N-gons, radius 10, centres 5 apart, union), disc (two arc discs, union),
//         annU / annI / annD (two annuli: union, intersection, difference), grid<K> (union of a
//         K x K grid of unit squares at a pitch of 0.75), lines<N> (N by N crossing lines split
//         and traced). Prints the result's solid count (faces for lines) and area.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "quillon/geometry/contours/las_solver.h"

namespace {

using namespace quillon;

constexpr double kEps = 1e-7;

ProComplexContour* Solid(const LAContour& outline, const LAContour* hole = nullptr) {
    ProContourFactory f;
    ProComplexContour* c = f.CreateComplexContour();
    ProSolidContour* s = f.CreateSolidContour();
    s->SetLAContour(outline);
    if (hole != nullptr) {
        ProEmptyContour* h = f.CreateEmptyContour();
        h->SetLAContour(*hole);
        s->Attach(h);
    }
    c->Attach(s);
    return c;
}

LAContour Polygon(int n, double cx) {
    LAContour c;
    for (int k = 0; k < n; ++k) {
        const double a = 2 * kPi * k / n;
        c.push_back(LAEdge(Point2(cx + 10 * std::cos(a), 10 * std::sin(a))));
    }
    return c;
}

LAContour Circle(double cx, double r, bool ccw) {
    LAContour c;
    const double s = ccw ? kPi : -kPi;
    c.push_back(LAEdge(Point2(cx + r, 0), Point2(cx, 0), s));
    c.push_back(LAEdge(Point2(cx - r, 0), Point2(cx, 0), s));
    return c;
}

double Area(const ProComplexContour* c) {
    double area = 0.0;
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i) {
        const ProSolidContour* s = c->SolidChild(i);
        area += s->surface();
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j) area -= s->ClosedChild(j)->surface();
    }
    return area;
}

int Lines(int n, int repeat) {
    std::vector<LAContour> lines;
    for (int i = 0; i < n; ++i) {
        LAContour h, v;
        h.push_back(LAEdge(Point2(-1, i)));
        h.push_back(LAEdge(Point2(n, i)));
        v.push_back(LAEdge(Point2(i, -1)));
        v.push_back(LAEdge(Point2(i, n)));
        lines.push_back(h);
        lines.push_back(v);
    }
    std::vector<LAContour*> list;
    for (LAContour& l : lines) list.push_back(&l);
    ProContourFactory f;
    std::size_t faces = 0;
    double area = 0.0;
    for (int r = 0; r < repeat; ++r) {
        LAS_Solver s(kEps);
        s.SplitLaContours(list);
        std::vector<LAContour*> none, polylines;
        std::vector<ProClosedContour*> closed;
        s.FindContours(none, &f, closed, polylines);
        faces = closed.size();
        area = 0.0;
        for (ProClosedContour* c : closed) {
            area += c->surface();
            delete c;
        }
        for (LAContour* p : polylines) delete p;
    }
    std::printf("lines%d faces %zu area %.12g\n", n, faces, area);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: solver_profile CASE [REPEAT]\n");
        return 2;
    }
    const std::string name = argv[1];
    const int repeat = argc > 2 ? std::atoi(argv[2]) : 1;
    ProComplexContour* a = nullptr;
    ProComplexContour* b = nullptr;
    std::vector<ProComplexContour*> list;
    LAS_Solver::Operation op = LAS_Solver::Union;
    if (name.rfind("poly", 0) == 0) {
        const int n = std::atoi(name.c_str() + 4);
        a = Solid(Polygon(n, 0));
        b = Solid(Polygon(n, 5));
    } else if (name == "disc") {
        a = Solid(Circle(0, 10, true));
        b = Solid(Circle(5, 10, true));
    } else if (name == "annU" || name == "annI" || name == "annD") {
        const LAContour h1 = Circle(0, 5, false), h2 = Circle(5, 5, false);
        a = Solid(Circle(0, 10, true), &h1);
        b = Solid(Circle(5, 10, true), &h2);
        op = name == "annU"   ? LAS_Solver::Union
             : name == "annI" ? LAS_Solver::Intersection
                              : LAS_Solver::Difference;
    } else if (name.rfind("grid", 0) == 0) {
        const int k = std::atoi(name.c_str() + 4);
        for (int i = 0; i < k; ++i)
            for (int j = 0; j < k; ++j) {
                const double x = 0.75 * i, y = 0.75 * j;
                LAContour c;
                for (const Point2& p :
                     {Point2(x, y), Point2(x + 1, y), Point2(x + 1, y + 1), Point2(x, y + 1)})
                    c.push_back(LAEdge(p));
                list.push_back(Solid(c));
            }
    } else if (name.rfind("lines", 0) == 0) {
        return Lines(std::atoi(name.c_str() + 5), repeat);
    } else {
        std::fprintf(stderr, "unknown case %s\n", name.c_str());
        return 2;
    }
    ProContourFactory f;
    std::size_t solids = 0;
    double area = 0.0;
    for (int r = 0; r < repeat; ++r) {
        LAS_Solver s(kEps);
        ProComplexContour* result = list.empty() ? s.Solv(a, b, op, &f) : s.Add(list, &f);
        if (result == nullptr) continue;
        solids = result->ChildrenCount();
        area = Area(result);
        if (list.size() != 1) delete result;
    }
    std::printf("%s solids %zu area %.12g\n", name.c_str(), solids, area);
    delete a;
    delete b;
    for (ProComplexContour* c : list) delete c;
    return 0;
}
