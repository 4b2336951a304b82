#include "quillon/geometry/space/tube3d.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "quillon/geometry/space/space_matrix.h"
#include "quillon/geometry/space/space_relations.h"

namespace quillon {

namespace {

constexpr double kFloatEps = 1.1920928955078125e-7;
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kMaxArcSteps = 100000.0;

// The fixed reference vector of the seam; false when the path gives none.
bool ReferenceVector(const Mvector<Point3>& path, Vector3& w) {
    const Point3& p0 = path[0];
    const Point3& p1 = path[1];
    for (std::size_t k = 2; k < path.size(); ++k) {
        if (!Collinear(p0, p1, path[k], kFloatEps)) {
            w = (path[k] - p0) % (p1 - path[k]);
            return true;
        }
    }
    w = (p1 - p0) % Vector3::_Oz;
    if (!(w.length() < kFloatEps)) return true;
    w = (p1 - p0) % Vector3::_Ox;
    return !(w.length() < kFloatEps);
}

// Appends `count` points of the circle of radius r about p perpendicular to t, starting along
// t × w and turning by 2π / count about t. Rings and caps go through here alike, so that a cap
// with as many points as the rings repeats the end ring's points exactly. Writes the unit radial
// directions into `radial` when it is given.
void Circle(const Point3& p, const Vector3& t, const Vector3& w, double r, std::size_t count,
            Mvector<Point3>& points, Mvector<Vector3>* radial) {
    const double step = kTwoPi / static_cast<double>(count);
    Matrix3 turn;
    _Rot_V(t, std::sin(step), std::cos(step), turn);
    Vector3 u = (t % w).get_normalized();
    for (std::size_t j = 0; j < count; ++j) {
        points.Add(p + u * r);
        if (radial != nullptr) radial->Add(r < 0.0 ? -u : u);
        u = u * turn;
    }
}

}  // namespace

bool BRNF_Tube3D(Mvector<Point3>& points, Mvector<Vector3>& normals, Mmatrix<std::size_t>& faces,
                 const Mvector<Point3>& path, double diameter, int ringSegments, int capSegments) {
    if (capSegments == -1) capSegments = ringSegments;
    points.clear();
    normals.clear();
    faces.clear();
    const std::size_t N = path.size();
    if (N < 2) return true;
    if (ringSegments < 3 || capSegments < 3) return false;
    const std::size_t n = static_cast<std::size_t>(ringSegments);
    const std::size_t m = static_cast<std::size_t>(capSegments);
    points.reserve(N * n + 2 * m);
    normals.reserve(N * n + 2 * m);
    faces.reserve((N - 1) * n + 2);

    Vector3 w;
    if (!ReferenceVector(path, w)) return false;
    const double r = diameter * 0.5;
    for (std::size_t i = 0; i < N; ++i) {
        const Vector3 t = path[std::min(i + 1, N - 1)] - path[i == 0 ? 0 : i - 1];
        const std::size_t b = points.size();
        Circle(path[i], t, w, r, n, points, &normals);
        if (i == 0) continue;
        for (std::size_t j = 0; j < n; ++j) {
            const std::size_t next = (j + 1) % n;
            faces.Add(Mvector<std::size_t>{b - n + next, b - n + j, b + j, b + next});
        }
    }

    // The caps: the start one in rotation order, the end one in reverse from its first point, so
    // that every face of the tube turns the same way.
    const Vector3 t0 = path[1] - path[0], t1 = path[N - 1] - path[N - 2];
    for (int end = 0; end < 2; ++end) {
        const Vector3& t = end == 0 ? t0 : t1;
        const std::size_t c = points.size();
        Circle(path[end == 0 ? 0 : N - 1], t, w, r, m, points, nullptr);
        const Vector3 normal = end == 0 ? -t.get_normalized() : t.get_normalized();
        Mvector<std::size_t> face(m);
        for (std::size_t j = 0; j < m; ++j) {
            normals.Add(normal);
            face[j] = end == 0 || j == 0 ? c + j : c + m - j;
        }
        faces.Add(face);
    }
    return true;
}

void BRNF_SegmentsApprox(const Mvector<RNF_SEG>& segments, Mvector<Point2>& points,
                         double tolerance) {
    points.clear();
    const double step = tolerance > 0.0 ? tolerance : kTwoPi / 48.0;
    auto add = [&](const Point2& p) {
        if (points.empty() || !(points.back().distance(p) <= 1e-10)) points.Add(p);
    };
    for (const RNF_SEG& s : segments) {
        add(s.start);
        if (s.type != RNF_SEG::arc) {
            points.Add(s.end);
            continue;
        }
        double n = std::trunc(std::fabs(s.angle) / step);
        if (!(n >= 1.0)) n = 1.0;
        n = std::min(n, kMaxArcSteps);
        const int steps = static_cast<int>(n);
        const Vector2 radius = s.start - s.centre;
        for (int k = 1; k <= steps; ++k) {
            const double a = s.angle * k / steps;
            const double c = std::cos(a), sn = std::sin(a);
            points.Add(s.centre +
                       Vector2(radius.x * c - radius.y * sn, radius.x * sn + radius.y * c));
        }
    }
}

}  // namespace quillon
