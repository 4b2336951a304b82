#include "tools/quillon/svg.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <string_view>

#include "quillon/platform/text.h"

namespace quillon::tool {

namespace {

using platform::FormatC;

// Maps user coordinates into the picture: x shifted, y flipped about the top of the box.
struct Frame {
    double minx = 0, maxy = 0, margin = 0;
    double X(double x) const { return x - minx + margin; }
    double Y(double y) const { return maxy - y + margin; }
};

std::string num(double v) {
    std::string s = FormatC("%.6f", v);
    // Short numbers keep the file readable; trailing zeros carry nothing.
    while (!s.empty() && s.back() == '0') s.pop_back();
    if (!s.empty() && s.back() == '.') s.pop_back();
    if (s == "-0") s = "0";
    return s;
}

// Appends the pieces in order. (Chains of string + string trip a false -Wrestrict of gcc 12 at
// -O3.)
void cat(std::string& out, std::initializer_list<std::string_view> pieces) {
    for (std::string_view p : pieces) out.append(p);
}

std::string escape(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '&':
                out += "&amp;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

// One closed sub-path of a path's "d": straight edges as L, arcs as A (split in halves when they
// turn a full circle, which a single SVG arc cannot draw).
void appendContour(std::string& d, const LAContour& c, const Frame& f) {
    if (c.empty()) return;
    cat(d, {"M", num(f.X(c[0].start.x)), " ", num(f.Y(c[0].start.y))});
    for (std::size_t i = 0; i < c.size(); ++i) {
        const LAEdge& e = c[i];
        const Point2& next = c[(i + 1) % c.size()].start;
        if (e.type != 1 || e.angle == 0.0) {
            cat(d, {" L", num(f.X(next.x)), " ", num(f.Y(next.y))});
            continue;
        }
        const double r = e.rad_arc();
        const double a0 = std::atan2(e.start.y - e.centre.y, e.start.x - e.centre.x);
        const int pieces = std::fabs(e.angle) > std::numbers::pi ? 2 : 1;
        for (int k = 1; k <= pieces; ++k) {
            const double a = a0 + e.angle * k / pieces;
            // The last piece ends exactly on the next edge's start, so the outline stays closed.
            const Point2 to =
                (k == pieces) ? next
                              : Point2(e.centre.x + r * std::cos(a), e.centre.y + r * std::sin(a));
            const double part = std::fabs(e.angle) / pieces;
            // The picture looks as the shape does (y up), so a clockwise arc is drawn clockwise
            // on the screen, which is SVG's positive direction (its y runs down): sweep flag 1.
            cat(d, {" A", num(r), " ", num(r), " 0 ", (part > std::numbers::pi ? "1" : "0"),
                    (e.angle < 0 ? " 1 " : " 0 "), num(f.X(to.x)), " ", num(f.Y(to.y))});
        }
    }
    d += " Z";
}

double niceStep(double span) {
    const double raw = span / 10.0;
    const double p = std::pow(10.0, std::floor(std::log10(raw)));
    for (double m : {1.0, 2.0, 5.0, 10.0}) {
        if (m * p >= raw) return m * p;
    }
    return 10 * p;
}

// Number of grid lines from `first` to `last` at `step`; a handful in practice, never more than
// a picture can use.
int gridLines(double first, double last, double step) {
    const double n = std::floor((last - first) / step) + 1.0;
    return n > 0.0 ? static_cast<int>(std::min(n, 200.0)) : 0;
}

}  // namespace

std::string ComplexContourToSvg(const ProComplexContour& shape, const SvgOptions& options) {
    const BoundRect2 box = shape.GetBoundRect();
    Point2 lb(0, 0), rt(1, 1);
    if (box.is_valid()) {
        lb = box.get_LB();
        rt = box.get_RT();
    }
    double w = rt.x - lb.x, h = rt.y - lb.y;
    const double size = std::max({w, h, 1e-9});
    if (w < size * 1e-3) w = size * 1e-3;
    if (h < size * 1e-3) h = size * 1e-3;
    const double margin = 0.12 * size;
    const Frame f{lb.x, lb.y + h, margin};
    const double vw = w + 2 * margin, vh = h + 2 * margin;
    const double height_px = options.width_px * vh / vw;
    const double stroke = size / 400.0;
    const double font = size / 28.0;

    std::string s = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    cat(s, {"<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"", num(options.width_px),
            "\" height=\"", num(height_px), "\" viewBox=\"0 0 ", num(vw), " ", num(vh), "\">\n"});
    if (!options.title.empty()) cat(s, {"  <title>", escape(options.title), "</title>\n"});
    cat(s, {"  <rect x=\"0\" y=\"0\" width=\"", num(vw), "\" height=\"", num(vh),
            "\" fill=\"white\"/>\n"});

    // Grid at a round step in the drawing's unit, over the whole picture.
    const double step = niceStep(std::max(w, h));
    cat(s, {"  <g stroke=\"#dde3ea\" stroke-width=\"", num(stroke / 2), "\">\n"});
    // Counted loops: far from the origin adding the step may not move a coordinate at all.
    const double gx0 = std::ceil((lb.x - margin) / step) * step;
    const double gy0 = std::ceil((lb.y - margin) / step) * step;
    const int nx = gridLines(gx0, rt.x + margin, step);
    const int ny = gridLines(gy0, f.maxy + margin, step);
    for (int k = 0; k < nx; ++k) {
        const double x = f.X(gx0 + k * step);
        cat(s, {"    <line x1=\"", num(x), "\" y1=\"0\" x2=\"", num(x), "\" y2=\"", num(vh),
                "\"/>\n"});
    }
    for (int k = 0; k < ny; ++k) {
        const double y = f.Y(gy0 + k * step);
        cat(s, {"    <line x1=\"0\" y1=\"", num(y), "\" x2=\"", num(vw), "\" y2=\"", num(y),
                "\"/>\n"});
    }
    s += "  </g>\n";

    // Solids with their holes, one even-odd path each.
    cat(s, {"  <g fill=\"#8fb3d9\" fill-opacity=\"0.85\" fill-rule=\"evenodd\" stroke=\"#1f4e79\" "
            "stroke-width=\"",
            num(stroke), "\">\n"});
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        const ProSolidContour* solid = shape.SolidChild(i);
        std::string d;
        appendContour(d, solid->GetLAContour(), f);
        for (unsigned long k = 0; k < solid->ChildrenCount(); ++k) {
            d += " ";
            appendContour(d, solid->ClosedChild(k)->GetLAContour(), f);
        }
        cat(s, {"    <path d=\"", d, "\"/>\n"});
    }
    s += "  </g>\n";

    // The bounding box with its extents.
    if (box.is_valid()) {
        cat(s, {"  <rect x=\"", num(f.X(lb.x)), "\" y=\"", num(f.Y(rt.y)), "\" width=\"",
                num(rt.x - lb.x), "\" height=\"", num(rt.y - lb.y),
                "\" fill=\"none\" stroke=\"#c0392b\" stroke-dasharray=\"", num(4 * stroke), " ",
                num(3 * stroke), "\" stroke-width=\"", num(stroke), "\"/>\n"});
        cat(s,
            {"  <g font-family=\"sans-serif\" font-size=\"", num(font), "\" fill=\"#c0392b\">\n"});
        cat(s, {"    <text x=\"", num(f.X(lb.x)), "\" y=\"", num(f.Y(rt.y) - font * 0.6), "\">",
                escape(FormatC("%g %s wide, x %g to %g", rt.x - lb.x, options.unit.c_str(), lb.x,
                               rt.x)),
                "</text>\n"});
        cat(s, {"    <text x=\"", num(f.X(lb.x)), "\" y=\"", num(f.Y(lb.y) + font * 1.4), "\">",
                escape(FormatC("%g %s high, y %g to %g; grid %g %s", rt.y - lb.y,
                               options.unit.c_str(), lb.y, rt.y, step, options.unit.c_str())),
                "</text>\n"});
        s += "  </g>\n";
    }
    s += "</svg>\n";
    return s;
}

}  // namespace quillon::tool
