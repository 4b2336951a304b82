// Solid boolean timings: a 1000 × 600 × 20 plate minus N bolt holes (one subtraction of a solid
// holding every hole), two overlapping boxes, and a box cut by a plane's half-space box.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/space/extrusion3.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/solid3_inter.h"

namespace {

using namespace quillon;

constexpr double kEps = 1e-6;

// The prism a plate or a hole is modelled by: an extrusion of the outline from z0 up.
Solid3 Prism(const LAContour& outline, double z0, double height) {
    Extrusion3 item(kEps);
    item.SetLocalPlane(LocalPlane(Point3(0, 0, z0), Vector3(0, 0, 1)));
    item.SetOuterContour(outline);
    item.SetPath(Vector3(0, 0, height));
    return item.GetSolid();
}

LAContour Rectangle(double x0, double y0, double x1, double y1) {
    LAContour c;
    c.push_back(LAEdge(Point2(x0, y0)));
    c.push_back(LAEdge(Point2(x1, y0)));
    c.push_back(LAEdge(Point2(x1, y1)));
    c.push_back(LAEdge(Point2(x0, y1)));
    return c;
}

LAContour Circle(double cx, double cy, double r) {
    LAContour c;
    c.push_back(LAEdge(Point2(cx + r, cy), Point2(cx, cy), std::numbers::pi));
    c.push_back(LAEdge(Point2(cx - r, cy), Point2(cx, cy), std::numbers::pi));
    return c;
}

// N holes of diameter 18 on a grid inside the plate, each reaching past both faces.
Solid3 Holes(int n) {
    const int cols = static_cast<int>(std::ceil(std::sqrt(n * 1000.0 / 600.0)));
    const int rows = (n + cols - 1) / cols;
    Solid3 all(kEps);
    for (int k = 0; k < n; ++k) {
        const double x = 1000.0 * (k % cols + 0.5) / cols;
        const double y = 600.0 * (k / cols + 0.5) / rows;
        all.Merge(Prism(Circle(x, y, 9.0), -5.0, 30.0));
    }
    return all;
}

void BM_PlateMinusHoles(benchmark::State& state) {
    const Solid3 plate = Prism(Rectangle(0, 0, 1000, 600), 0.0, 20.0);
    const Solid3 holes = Holes(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Solid3 result(kEps);
        int status = 0;
        const bool ok = BoolSubstract(plate, holes, result, &status);
        if (!ok) state.SkipWithError("the subtraction failed");
        benchmark::DoNotOptimize(result);
    }
    state.counters["faces"] = static_cast<double>(holes.Face().size());
}
BENCHMARK(BM_PlateMinusHoles)
    ->Arg(1)
    ->Arg(10)
    ->Arg(100)
    ->Arg(200)
    ->Arg(400)
    ->Unit(benchmark::kMillisecond);

void BM_OverlappingBoxes(benchmark::State& state) {
    const Solid3 a = Prism(Rectangle(0, 0, 2, 2), 0.0, 2.0);
    const Solid3 b = Prism(Rectangle(1, 1, 3, 3), 1.0, 2.0);
    for (auto _ : state) {
        Solid3Inter inter(a, b);
        inter.MakeInterData();
        Solid3 result(kEps);
        inter.BoolOper(BOOL_UNION, result);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(BM_OverlappingBoxes)->Unit(benchmark::kMicrosecond);

void BM_BoxMinusHalfSpaceBox(benchmark::State& state) {
    // The finite box a half-space stands for: 2000 × 2000 × 1000 below a tilted plane.
    const Solid3 box = Prism(Rectangle(0, 0, 300, 200), 0.0, 100.0);
    const Vector3 n = Vector3(1, 0.5, 2).get_normalized() * 1000.0;
    const Point3 p0(150, 100, 50);
    Vector3 u = n % Vector3(0, 0, 1), v;
    v = n % u;
    u = u.get_normalized() * 1000.0;
    v = v.get_normalized() * 1000.0;
    Mvector<Point3> rings{p0 + u + v, p0 + u - v, p0 - u - v, p0 - u + v};
    for (int k = 0; k < 4; ++k) rings.push_back(rings[static_cast<std::size_t>(k)] - n);
    Solid3 half(kEps);
    half.GenCuboid(rings);
    for (auto _ : state) {
        Solid3 result(kEps);
        int status = 0;
        if (!BoolSubstract(box, half, result, &status)) state.SkipWithError("the cut failed");
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(BM_BoxMinusHalfSpaceBox)->Unit(benchmark::kMicrosecond);

}  // namespace
