#include "quillon/geometry/space/face3.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "quillon/geometry/plane/contour2.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/space_relations.h"

namespace quillon {

bool Material3::operator==(const Material3& o) const {
    const auto same = [](const Vector3& a, const Vector3& b) {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    };
    return name == o.name && same(ambient, o.ambient) && same(diffuse, o.diffuse) &&
           same(specular, o.specular) && opacity == o.opacity && illum == o.illum;
}

bool Face3::operator==(const Face3& o) const {
    const auto samePoints = [](const Mvector<Point2>& a, const Mvector<Point2>& b) {
        if (a.size() != b.size()) return false;
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (a[i].x != b[i].x || a[i].y != b[i].y) return false;
        }
        return true;
    };
    return loop == o.loop && holes == o.holes && normalLoop == o.normalLoop &&
           normalHoles == o.normalHoles && textureLoop == o.textureLoop &&
           textureHoles == o.textureHoles && samePoints(texture, o.texture) && edges == o.edges &&
           material == o.material && normal.x == o.normal.x && normal.y == o.normal.y &&
           normal.z == o.normal.z;
}

std::size_t Face3::GetAllNodesCnt() const {
    std::size_t n = loop.size();
    for (const auto& h : holes) n += h.size();
    return n;
}

void Face3::OffsetInd(std::uint32_t k) {
    if (k == 0) return;
    for (auto& i : loop) i += k;
    for (auto& h : holes) {
        for (auto& i : h) i += k;
    }
}

void Face3::Reset() { *this = Face3(); }

const Vector3& Face3::GetNormal(const Mvector<Vertex3d>& vertices, double eps) {
    if (std::fabs(normal.length() - 1.0) <= eps) return normal;
    normal.zero();
    const std::size_t n = loop.size();
    if (n < 3) return normal;
    if (std::any_of(loop.begin(), loop.end(),
                    [&](std::uint32_t i) { return i >= vertices.size(); }))
        return normal;
    const Point3& a = vertices[loop[0]].point;
    std::size_t ib = 1;
    while (ib < n && !(vertices[loop[ib]].point.distance(a) >= eps)) ++ib;
    if (ib >= n) return normal;
    const Point3& b = vertices[loop[ib]].point;
    std::size_t ic = ib + 1;
    while (ic < n && Collinear(a, b, vertices[loop[ic]].point, eps)) ++ic;
    if (ic >= n) return normal;
    const LocalPlane frame(a, b, vertices[loop[ic]].point);
    if (!frame.isDefined()) return normal;
    std::vector<Point2> flat;
    flat.reserve(n);
    for (const std::uint32_t i : loop) {
        Point3 p = vertices[i].point;
        p /= frame;
        flat.push_back(p.pnt_xy());
    }
    // Kept the reverse of PolyNormal's rule: clockwise loops (a closed solid seen from outside)
    // get the frame's z, so the normal points out of the solid.
    normal = frame.get_dir_z();
    if (Contour2(std::move(flat), eps).Orientation() < 0) normal = -normal;
    return normal;
}

namespace {

// Whether `par` has the shape of `holes`, corner for corner.
bool SameShape(const Mmatrix<std::uint32_t>& holes, const Mmatrix<std::uint32_t>& par) {
    if (par.size() != holes.size()) return false;
    for (std::size_t i = 0; i < holes.size(); ++i) {
        if (par[i].size() != holes[i].size()) return false;
    }
    return true;
}

// A[0..p], B[q + 1], ... (|B| - 2 entries), A[p + 1..].
Mvector<std::uint32_t> Splice(const Mvector<std::uint32_t>& a, std::size_t p,
                              const Mvector<std::uint32_t>& b, std::size_t q) {
    Mvector<std::uint32_t> out;
    out.reserve(a.size() + b.size() - 2);
    out.insert(out.end(), a.begin(), a.begin() + static_cast<std::ptrdiff_t>(p + 1));
    for (std::size_t k = 1; k + 1 < b.size(); ++k) out.push_back(b[(q + k) % b.size()]);
    out.insert(out.end(), a.begin() + static_cast<std::ptrdiff_t>(p + 1), a.end());
    return out;
}

}  // namespace

void Face3::GlueHoles() {
    if (holes.size() < 2) return;
    const bool normalsParallel = SameShape(holes, normalHoles);
    const bool texturesParallel = SameShape(holes, textureHoles);
    bool merged = false;
    for (std::size_t a = 0; a < holes.size(); ++a) {
        for (std::size_t b = holes.size() - 1; b > a; --b) {
            const Mvector<std::uint32_t>& A = holes[a];
            const Mvector<std::uint32_t>& B = holes[b];
            if (A.size() < 2 || B.size() < 2) continue;
            bool found = false;
            std::size_t p = 0, q = 0;
            for (p = 0; p < A.size() && !found; ++p) {
                for (q = 0; q < B.size(); ++q) {
                    if (A[p] == B[q] && A[(p + 1) % A.size()] == B[(q + B.size() - 1) % B.size()]) {
                        found = true;
                        break;
                    }
                }
                if (found) break;
            }
            if (!found) continue;
            if (normalsParallel) normalHoles[a] = Splice(normalHoles[a], p, normalHoles[b], q);
            if (texturesParallel) textureHoles[a] = Splice(textureHoles[a], p, textureHoles[b], q);
            holes[a] = Splice(A, p, B, q);
            holes.Erase(b);
            if (normalsParallel) normalHoles.Erase(b);
            if (texturesParallel) textureHoles.Erase(b);
            merged = true;
        }
    }
    if (merged) edges.clear();
}

}  // namespace quillon

namespace quillon {

bool TriangulateFaceCorners(const Face3& face, const Mvector<Vertex3d>& vertices, double eps,
                            Mmatrix<std::size_t>& corners) {
    corners.clear();
    const auto valid = [&](const Mvector<std::uint32_t>& l) {
        return std::all_of(l.begin(), l.end(),
                           [&](std::uint32_t i) { return i < vertices.size(); });
    };
    if (face.loop.size() < 3 || !valid(face.loop)) return false;
    for (const auto& h : face.holes) {
        if (!valid(h)) return false;
    }
    // The frame: z along the outer loop's area vector (Newell), robust against nearly collinear
    // first corners.
    const Point3 o = vertices[face.loop[0]].point;
    Vector3 area;
    for (std::size_t i = 0, n = face.loop.size(); i < n; ++i) {
        area += (vertices[face.loop[i]].point - o) % (vertices[face.loop[(i + 1) % n]].point - o);
    }
    const LocalPlane frame(o, area, 0.0);
    if (!frame.isDefined() || !(area.length() > 0.0)) return false;
    const auto flat = [&](const Mvector<std::uint32_t>& l) {
        std::vector<Point2> pts;
        pts.reserve(l.size());
        for (const std::uint32_t i : l) {
            Point3 p = vertices[i].point;
            p /= frame;
            pts.push_back(p.pnt_xy());
        }
        return pts;
    };
    const Contour2 outer(flat(face.loop), eps);
    Mvector<Contour2> holes;
    for (const auto& h : face.holes) holes.push_back(Contour2(flat(h), eps));
    if (!outer.TriangulateWithHoles(holes, corners)) {
        corners.clear();
        return false;
    }
    return true;
}

}  // namespace quillon
