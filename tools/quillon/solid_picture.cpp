#include "tools/quillon/solid_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace quillon::tool {

namespace {

struct Camera {
    Vector3 right, up, forward;  // forward points away from the viewer
};

Camera MakeCamera(SolidView view) {
    switch (view) {
        case SolidView::Top:
            return {{1, 0, 0}, {0, 1, 0}, {0, 0, -1}};
        case SolidView::Front:
            return {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}};
        case SolidView::Iso:
            break;
    }
    const Vector3 forward = Vector3(-1, 1, -1).get_normalized();
    const Vector3 right = Vector3(1, 1, 0).get_normalized();
    return {right, right % forward, forward};
}

// The outward unit normal of a face: its outer loop turns clockwise seen from outside, so
// Newell's sum (counter-clockwise positive) is negated.
Vector3 OutwardNormal(const Solid3& s, const Face3& f) {
    Vector3 n;
    const auto& v = s.Vertex();
    for (std::size_t i = 0; i < f.loop.size(); ++i) {
        const Point3& a = v[f.loop[i]].point;
        const Point3& b = v[f.loop[(i + 1) % f.loop.size()]].point;
        n.x += (a.y - b.y) * (a.z + b.z);
        n.y += (a.z - b.z) * (a.x + b.x);
        n.z += (a.x - b.x) * (a.y + b.y);
    }
    const double len = std::sqrt(n * n);
    return len > 0.0 ? Vector3(-n.x / len, -n.y / len, -n.z / len) : Vector3();
}

std::uint32_t Crc(const std::string& bytes, std::size_t from) {
    std::uint32_t c = 0xffffffffu;
    for (std::size_t i = from; i < bytes.size(); ++i) {
        c ^= static_cast<unsigned char>(bytes[i]);
        for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xedb88320u & (0u - (c & 1u)));
    }
    return c ^ 0xffffffffu;
}

void Put32(std::string& s, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) s += static_cast<char>((v >> shift) & 0xff);
}

void Chunk(std::string& png, const char* type, const std::string& data) {
    Put32(png, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = png.size();
    png += type;
    png += data;
    Put32(png, Crc(png, start));
}

std::string EncodePng(int w, int h, const std::vector<std::uint8_t>& rgb) {
    std::string raw;
    for (int y = 0; y < h; ++y) {
        raw += '\0';  // no filter
        raw.append(reinterpret_cast<const char*>(&rgb[static_cast<std::size_t>(y) * w * 3]),
                   static_cast<std::size_t>(w) * 3);
    }
    // zlib stream of stored deflate blocks.
    std::string z = "\x78\x01";
    for (std::size_t at = 0; at < raw.size() || at == 0;) {
        const std::size_t n = std::min<std::size_t>(65535, raw.size() - at);
        const bool last = at + n == raw.size();
        z += static_cast<char>(last ? 1 : 0);
        z += static_cast<char>(n & 0xff);
        z += static_cast<char>(n >> 8);
        z += static_cast<char>(~n & 0xff);
        z += static_cast<char>((~n >> 8) & 0xff);
        z.append(raw, at, n);
        at += n;
        if (last) break;
    }
    std::uint32_t a = 1, b = 0;
    for (const char c : raw) {
        a = (a + static_cast<unsigned char>(c)) % 65521u;
        b = (b + a) % 65521u;
    }
    Put32(z, (b << 16) | a);
    std::string png = "\x89PNG\r\n\x1a\n";
    std::string header;
    Put32(header, static_cast<std::uint32_t>(w));
    Put32(header, static_cast<std::uint32_t>(h));
    header += std::string("\x08\x02\x00\x00\x00", 5);  // 8 bits, RGB
    Chunk(png, "IHDR", header);
    Chunk(png, "IDAT", z);
    Chunk(png, "IEND", "");
    return png;
}

}  // namespace

bool ParseSolidView(const std::string& name, SolidView& view) {
    if (name == "iso")
        view = SolidView::Iso;
    else if (name == "top")
        view = SolidView::Top;
    else if (name == "front")
        view = SolidView::Front;
    else
        return false;
    return true;
}

std::string SolidToPng(const Solid3& solid, SolidView view, int width) {
    const Camera cam = MakeCamera(view);
    const auto& verts = solid.Vertex();
    std::vector<Vector3> p(verts.size());  // screen x, screen y, depth
    double x0 = std::numeric_limits<double>::max(), x1 = -x0, y0 = x0, y1 = -x0;
    for (std::size_t i = 0; i < verts.size(); ++i) {
        const Vector3 q(Point3(), verts[i].point);
        p[i] = Vector3(q * cam.right, q * cam.up, q * cam.forward);
        x0 = std::min(x0, p[i].x), x1 = std::max(x1, p[i].x);
        y0 = std::min(y0, p[i].y), y1 = std::max(y1, p[i].y);
    }
    const int w = std::max(width, 16);
    const double margin = 0.05 * w;
    const double spanX = x1 - x0, spanY = y1 - y0;
    const double scale = verts.empty() || !(spanX > 0.0 || spanY > 0.0)
                             ? 1.0
                             : std::min((w - 2 * margin) / std::max(spanX, 1e-300),
                                        (2.0 * w - 2 * margin) / std::max(spanY, 1e-300));
    const int h =
        verts.empty() ? w / 2 : std::clamp(static_cast<int>(spanY * scale + 2 * margin), 16, 2 * w);
    for (Vector3& q : p) {
        q.x = margin + (q.x - x0) * scale;
        q.y = h - margin - (q.y - y0) * scale;  // pixel rows run down
    }

    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(w) * h * 3, 255);
    std::vector<double> depth(static_cast<std::size_t>(w) * h,
                              std::numeric_limits<double>::infinity());
    Vector3 colour(0.62, 0.64, 0.68);
    if (!solid.Material().empty()) colour = solid.Material()[0].diffuse;
    const Vector3 light = Vector3(-0.3, -0.5, 1.0).get_normalized();

    std::vector<Vector3> normals(solid.Face().size());
    for (std::size_t f = 0; f < solid.Face().size(); ++f) {
        const Vector3 n = OutwardNormal(solid, solid.Face()[f]);
        normals[f] = n;
        // Lit from above, front and left; the sides turned away keep an ambient share.
        const double shade = 0.35 + 0.65 * std::max(0.0, n * light);
        std::array<std::uint8_t, 3> c;
        for (int k = 0; k < 3; ++k)
            c[k] = static_cast<std::uint8_t>(std::clamp(255.0 * shade *
                                                            (k == 0   ? colour.x
                                                             : k == 1 ? colour.y
                                                                      : colour.z),
                                                        0.0, 255.0));
        Mmatrix<std::size_t> triangles;
        if (!solid.TriangulateFace(f, triangles)) continue;
        for (const auto& t : triangles) {
            const Vector3 &a = p[t[0]], &b = p[t[1]], &d = p[t[2]];
            const double area = (b.x - a.x) * (d.y - a.y) - (b.y - a.y) * (d.x - a.x);
            if (std::fabs(area) < 1e-12) continue;
            const int px0 = std::max(0, static_cast<int>(std::floor(std::min({a.x, b.x, d.x}))));
            const int px1 = std::min(w - 1, static_cast<int>(std::ceil(std::max({a.x, b.x, d.x}))));
            const int py0 = std::max(0, static_cast<int>(std::floor(std::min({a.y, b.y, d.y}))));
            const int py1 = std::min(h - 1, static_cast<int>(std::ceil(std::max({a.y, b.y, d.y}))));
            for (int y = py0; y <= py1; ++y)
                for (int x = px0; x <= px1; ++x) {
                    const double sx = x + 0.5, sy = y + 0.5;
                    const double l1 = ((d.x - b.x) * (sy - b.y) - (d.y - b.y) * (sx - b.x)) / area;
                    const double l2 = ((a.x - d.x) * (sy - d.y) - (a.y - d.y) * (sx - d.x)) / area;
                    const double l3 = 1.0 - l1 - l2;
                    if (l1 < -1e-9 || l2 < -1e-9 || l3 < -1e-9) continue;
                    const double z = l1 * a.z + l2 * b.z + l3 * d.z;
                    const std::size_t i = static_cast<std::size_t>(y) * w + x;
                    if (z >= depth[i]) continue;
                    depth[i] = z;
                    for (int k = 0; k < 3; ++k) rgb[i * 3 + k] = c[k];
                }
        }
    }

    // Creases: edges whose two faces turn apart by more than 20 degrees, or that bound one face.
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::size_t>> edgeFaces;
    for (std::size_t f = 0; f < solid.Face().size(); ++f) {
        const Face3& face = solid.Face()[f];
        auto walk = [&](const Mvector<std::uint32_t>& loop) {
            for (std::size_t i = 0; i < loop.size(); ++i) {
                std::uint32_t u = loop[i], v = loop[(i + 1) % loop.size()];
                if (u > v) std::swap(u, v);
                edgeFaces[{u, v}].push_back(f);
            }
        };
        walk(face.loop);
        for (const auto& hole : face.holes) walk(hole);
    }
    double zmin = std::numeric_limits<double>::max(), zmax = -zmin;
    for (const Vector3& q : p) zmin = std::min(zmin, q.z), zmax = std::max(zmax, q.z);
    const double bias = 1e-3 * std::max(zmax - zmin, 1e-9) + 1e-9;
    for (const auto& [edge, faces] : edgeFaces) {
        bool crease = faces.size() != 2;
        if (!crease)
            crease =
                normals[faces[0]] * normals[faces[1]] < std::cos(20.0 * 3.14159265358979 / 180.0);
        if (!crease) continue;
        const Vector3 &a = p[edge.first], &b = p[edge.second];
        const int steps = std::max(
            1,
            static_cast<int>(std::ceil(std::max(std::fabs(b.x - a.x), std::fabs(b.y - a.y)) * 2)));
        for (int s = 0; s <= steps; ++s) {
            const double t = static_cast<double>(s) / steps;
            const int x = static_cast<int>(a.x + t * (b.x - a.x));
            const int y = static_cast<int>(a.y + t * (b.y - a.y));
            if (x < 0 || y < 0 || x >= w || y >= h) continue;
            const double z = a.z + t * (b.z - a.z);
            const std::size_t i = static_cast<std::size_t>(y) * w + x;
            // Near the surface seen there, or on the border of it (a pixel whose own surface lies
            // behind the edge).
            if (z > depth[i] + bias) continue;
            for (int k = 0; k < 3; ++k) rgb[i * 3 + k] = 40;
        }
    }
    return EncodePng(w, h, rgb);
}

}  // namespace quillon::tool
