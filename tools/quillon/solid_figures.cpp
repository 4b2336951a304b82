#include "tools/quillon/solid_figures.h"

#include <cstdint>
#include <map>
#include <utility>

#include "quillon/platform/text.h"

namespace quillon::tool {

double SolidVolume(const Solid3& solid) {
    const auto& v = solid.Vertex();
    double sixfold = 0.0;
    for (std::size_t f = 0; f < solid.Face().size(); ++f) {
        Mmatrix<std::size_t> triangles;
        if (!solid.TriangulateFace(f, triangles)) continue;
        for (const auto& t : triangles) {
            const Point3& a = v[t[0]].point;
            const Point3& b = v[t[1]].point;
            const Point3& c = v[t[2]].point;
            const Vector3 pa(Point3(), a), pb(Point3(), b), pc(Point3(), c);
            sixfold += pa * (pb % pc);
        }
    }
    // Loops turn clockwise seen from outside, so the usual counter-clockwise sum is negated.
    return -sixfold / 6.0;
}

bool SolidIsClosed(const Solid3& solid) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, long> runs;
    auto walk = [&](const Mvector<std::uint32_t>& loop) {
        for (std::size_t i = 0; i < loop.size(); ++i) {
            const std::uint32_t a = loop[i], b = loop[(i + 1) % loop.size()];
            if (a < b)
                ++runs[{a, b}];
            else
                --runs[{b, a}];
        }
    };
    for (const Face3& f : solid.Face()) {
        walk(f.loop);
        for (const auto& h : f.holes) walk(h);
    }
    if (runs.empty()) return false;
    for (const auto& r : runs)
        if (r.second != 0) return false;
    return true;
}

std::string SolidFigures(const Solid3& solid, const std::string& unit) {
    const std::string u = unit.empty() ? "" : " " + unit;
    std::string s =
        platform::FormatC("  vertices %zu, faces %zu, materials %zu\n", solid.Vertex().size(),
                          solid.Face().size(), solid.Material().size());
    Point3 lo, hi;
    if (solid.GetExtents(lo, hi)) {
        s += platform::FormatC("  extents    x %.6g to %.6g, y %.6g to %.6g, z %.6g to %.6g%s\n",
                               lo.x, hi.x, lo.y, hi.y, lo.z, hi.z, u.c_str());
        s += platform::FormatC("  size       %.6g x %.6g x %.6g%s\n", hi.x - lo.x, hi.y - lo.y,
                               hi.z - lo.z, u.c_str());
    }
    const bool closed = SolidIsClosed(solid);
    s += std::string("  closed     ") + (closed ? "yes" : "no") + "\n";
    if (closed) {
        const double v = SolidVolume(solid);
        s += platform::FormatC("  volume     %.9g%s\n", v < 0.0 ? -v : v,
                               unit.empty() ? "" : (" " + unit + "^3").c_str());
        s += std::string("  faces turn ") +
             (v < 0.0 ? "counter-clockwise seen from outside (the common OBJ way)"
                      : "clockwise seen from outside (this library's way)") +
             "\n";
    }
    return s;
}

}  // namespace quillon::tool
